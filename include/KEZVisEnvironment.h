#ifndef KEZVISENVIRONMENT_H
#define KEZVISENVIRONMENT_H

#include "kezvisualization_export.h"

#include <QFlags>
#include <QList>
#include <QObject>
#include <QSet>

#include <functional>

#include "KEZVisMouseContext.h"
#include "KEZVisObject.h"

class KEZMathBoundingBox;
class KEZMathPlane;
class KEZMathVector;
class KEZVisClientChangeRequest;
class KEZVisEnvironmentPrivate;
class KEZVisMouseEvent;
class KEZVisSelectionFilter;
class KEZVisVirtualObject;

Q_MOC_INCLUDE("KEZVisClientChangeRequest.h")
Q_MOC_INCLUDE("KEZVisMouseEvent.h")
Q_MOC_INCLUDE("KEZVisSelectionFilter.h")

/*!
    The hub of a scene.

    The environment keeps the list of objects, the selection and the
    preselection, the selection filter and a few interaction settings. It has no
    view and draws nothing: whatever it wants of a view (fit, direction,
    orientation, mouse settings, selection enabled) goes out as a
    KEZVisClientChangeRequest through ClientChangeRequested(), and everything
    that happens in it reaches the rest of the system through its signals,
    delivered directly.

    Ownership: the environment owns neither objects nor clients and never
    deletes an object. It owns the installed selection filter. Objects and
    clients hold it weakly, so objects, clients and environment may die in any
    order.

    Batches: a batch is a bracket that tells listeners that more is coming.
    Nothing inside a batch is deferred, merged or queued. Batches nest; only the
    outermost opening emits BatchStarted() and only the outermost closing
    BatchFinished(). Both signals go out while IsBatch() answers false. Batches
    are opened and closed by KEZVisEnvironmentBatchContext; selection batches,
    with their own count and signals, by KEZVisEnvironmentBatchSelectionContext.

    Selection is a transaction (see BeginSelection() and EndSelection()): the
    public operations collect pending additions and removals through the
    filter, and EndSelection() writes each object's SelectionState, emits one
    VisualizationSelectionChanged() with the deltas and closes the batch that
    BeginSelection() opened. The selection logic reads neither the objects'
    IsSelectable() nor IsVisible(), nor IsSelectionEnabled(): selectability is
    a matter for filters and viewers.

    Null objects: the public selection operations ignore null pointers (a null
    object is never selected, AddToSelection(nullptr) answers false without
    creating a filter), and the raw collecting operations and
    SetPreselectedVisualization() drop them, so that no state is ever written
    through a null pointer. The registry, in contrast, lists a null pointer
    handed to AddVirtualObject() like any other.

    Scale: adding, removing and the death of an object cost amortised constant
    time, whatever the number of listed objects; the list keeps the order of
    addition.

    Six operations are virtual for subclasses: GetObjects(),
    SetSelectionFilter(), AddToSelection(), RemoveFromSelection(),
    SetSelection() and SetPreSelectedObjects(). The protected raw selection
    layer lets a subclass that holds objects of its own kind run selection
    transactions and commit a preselection.
*/
class KEZVISUALIZATION_EXPORT KEZVisEnvironment : public QObject
{
    Q_OBJECT

public:
    /*!
        The mouse interactions that the environment wants of its viewers. The
        library stores and forwards these flags without interpreting them; the
        enumerators other than NoMouseInteraction are for viewers to agree on.
    */
    enum MouseInteractionFlag {
        NoMouseInteraction = 0x00,          //!< none; the initial value
        SelectionInteraction = 0x01,        //!< clicks select
        PreselectionInteraction = 0x02,     //!< hovering preselects
        SnapInteraction = 0x04,             //!< the mouse snaps to geometry
        DragInteraction = 0x08,             //!< objects may be dragged
        MouseEventInteraction = 0x10        //!< mouse events are sent to the environment
    };
    //! A combination of MouseInteractionFlag values.
    Q_DECLARE_FLAGS(MouseInteractionFlags, MouseInteractionFlag)
    Q_FLAG(MouseInteractionFlags)

    /*!
        The kinds of geometry that a viewer should snap to. Stored and forwarded
        without interpretation, like MouseInteractionFlag.
    */
    enum MouseSnapGeometryType {
        NoSnapGeometry = 0x00,          //!< snap to nothing; the initial value
        PointSnapGeometry = 0x01,       //!< points and vertices
        CurveSnapGeometry = 0x02,       //!< curves and edges
        SurfaceSnapGeometry = 0x04,     //!< surfaces and faces
        AxisSnapGeometry = 0x08,        //!< axes and directions
        GridSnapGeometry = 0x10         //!< a grid
    };
    //! A combination of MouseSnapGeometryType values.
    Q_DECLARE_FLAGS(MouseSnapGeometryTypes, MouseSnapGeometryType)
    Q_FLAG(MouseSnapGeometryTypes)

    //! A new, empty environment.
    explicit KEZVisEnvironment(QObject *parent = nullptr);
    /*!
        Deletes the private object: an open selection scope first (which closes
        its batch), then the sets and the filter. Neither objects nor clients are
        told; their weak pointers answer null afterwards.
    */
    ~KEZVisEnvironment() override;

    // --- Virtual operations -------------------------------------------------

    //! A new list with the listed objects, in list order.
    virtual QList<KEZVisObject *> GetObjects() const;

    /*!
        Installs \a filter and takes ownership of it; null installs the default,
        a KEZVisCompoundFilter with multi-selection and no sub-filters, which
        accepts everything. The old filter is deleted. Then, in one selection
        transaction (BatchStarted() and BatchFinished() go out even if nothing
        changes), every selected object that the new filter refuses is
        deselected; the new filter's multi-selection flag isn't looked at. Last,
        SelectionFilterChanged() announces the filter in use. Installing the
        filter already in use keeps it.

        A subclass that overrides this operation hides the overload from a
        function; a using-declaration of KEZVisEnvironment::SetSelectionFilter
        brings it back.

        If the transaction can't start because modifications are pending, the
        exception "previous selection modifications were not committed" leaves
        with the new filter installed and no SelectionFilterChanged().
    */
    virtual void SetSelectionFilter(KEZVisSelectionFilter *filter);

    /*!
        Adds \a object to the selection through the filter. Answers false if the
        filter refuses it or it is selected already, else true. Under a filter
        without multi-selection the old selection is deselected in the same
        transaction. Raises KEZSysException "previous selection modifications
        were not committed" if called while a transaction is being committed.
    */
    virtual bool AddToSelection(KEZVisObject *object);

    //! Deselects \a object if it is selected; the filter isn't consulted, and none is created.
    virtual void RemoveFromSelection(KEZVisObject *object);

    /*!
        Makes the selection \a objects, through the filter.

        If \a objects equals the selection, answers true with no signal. Else
        the filter picks the candidates among \a objects (under a filter without
        multi-selection one of them, which one being arbitrary); if none is left
        of a non-empty request, answers false and changes nothing. Otherwise
        every selected object not named in \a objects (compared with the request
        as handed in, not with the candidates) is deselected and the candidates
        are committed as additions. Deliberately, a selected object that is named
        but refused or dropped stays selected, and under a single-selection
        filter two objects may remain selected. An empty request deselects
        everything without consulting the filter, and answers true.
    */
    virtual bool SetSelection(const QSet<KEZVisObject *> &objects);

    /*!
        A query in this class: answers true if \a objects is empty or the filter
        accepts one of its non-null entries. Nothing is stored and nothing is
        emitted. A subclass may override it to filter and then commit with
        SetPreselectedVisualization().
    */
    virtual bool SetPreSelectedObjects(QSet<KEZVisObject *> objects);

    // --- Registry --------------------------------------------------------

    /*!
        Appends \a object to the list and emits ObjectAdded(object). There is no
        check: an object added twice is listed twice and announced twice. No
        ownership is taken and nothing is connected to the object. An object may
        be added to an environment other than the one named in its constructor;
        it reports its death to the latter only, so the application must remove
        it from any other environment before it dies: RemoveVirtualObject() and
        RemoveAllVirtualObjects() take null or living objects.
    */
    void AddVirtualObject(KEZVisVirtualObject *object);

    /*!
        Removes every occurrence of \a object from the list; if there was none,
        nothing happens. Otherwise the object leaves the selection set (and that
        set alone), every signal of the object is disconnected from the
        environment's private object, and ObjectRemoved(object) goes out. The
        object isn't deleted. Deliberately no VisualizationSelectionChanged()
        follows: the object's selection state stays as it was, and it stays in
        the preselection and the pending sets.
    */
    void RemoveVirtualObject(KEZVisVirtualObject *object);
    //! RemoveVirtualObject() for each entry of a copy of the list, in list order.
    void RemoveAllVirtualObjects();
    //! The object list in order of addition, sharing the environment's list.
    QList<KEZVisVirtualObject *> GetVirtualObjects() const;

    //! Whether a batch is open.
    bool IsBatch() const;
    //! Whether a selection batch is open.
    bool IsBatchSelection() const;

    // --- Interaction settings and view requests -----------------------------

    //! The value last given to SetSelectionEnabled(); false initially.
    bool IsSelectionEnabled();
    //! Stores \a enabled and requests it of the clients, also when nothing changed.
    void SetSelectionEnabled(bool enabled);

    //! The flags last stored by SetMouseInteraction(); NoMouseInteraction initially.
    MouseInteractionFlags GetMouseInteraction() const;
    //! The types last stored by SetMouseSnapGeometryTypes(); NoSnapGeometry initially.
    MouseSnapGeometryTypes GetMouseSnapGeometryTypes() const;
    //! The type last stored by SetNativeGeometrySelectionType(); KEZVisMouseContext::NoGeometrySelection initially.
    KEZVisMouseContext::NativeGeometrySelectionType GetNativeGeometrySelectionType() const;
    //! Stores \a flags and requests them; nothing happens if they equal the stored value.
    void SetMouseInteraction(const QFlags<MouseInteractionFlag> &flags);
    //! Stores \a types and requests them; nothing happens if they equal the stored value.
    void SetMouseSnapGeometryTypes(const QFlags<MouseSnapGeometryType> &types);
    //! Stores \a type; no request and no signal.
    void SetNativeGeometrySelectionType(const KEZVisMouseContext::NativeGeometrySelectionType &type);

    //! Requests a fit to \a box.
    void FitToBoundingBox(const KEZMathBoundingBox &box);
    /*!
        Requests a fit to the world box of \a object, unless it is null, has no
        rep or is invisible. A box that is one point is accepted.
    */
    void FitToObject(KEZVisObject *object);
    /*!
        Requests one fit to the union of the world boxes of \a objects. Objects
        that are invisible or have no rep are skipped, and so, deliberately, are
        boxes that are one point. Nothing is requested if nothing is left.
    */
    void FitToObjects(const QList<KEZVisObject *> &objects);
    //! FitToObjects() of the selection; nothing if the selection is empty.
    void FitToSelection();

    //! Requests \a direction; raises KEZMathZeroMagnitudeVectorException, with no request, if it isn't valid.
    void SetViewDirection(const KEZMathVector &direction);
    //! Requests \a orientation; raises KEZMathZeroMagnitudeVectorException, with no request, if it isn't valid.
    void SetViewOrientation(const KEZMathVector &orientation);
    //! One request: the plane's second direction as orientation, its normal as direction.
    void SetViewPlane(const KEZMathPlane &plane);

    // --- Selection -----------------------------------------------------------

    /*!
        Deselects \a object if it is selected and returns false; else calls
        AddToSelection() and returns true, deliberately also when the filter
        refused the object.
    */
    bool ToggleSelection(KEZVisObject *object);
    //! The committed selection, a shared copy.
    QSet<KEZVisObject *> GetVisualizationSelection() const;
    //! The committed preselection, a shared copy.
    QSet<KEZVisObject *> GetPreSelectedObjects() const;
    //! Installs a new KEZVisFunctionFilter(multiSelection, function) through SetSelectionFilter().
    void SetSelectionFilter(bool multiSelection, const std::function<bool(const KEZVisObject *)> &function);
    //! The filter in use, never null: the default is installed first if there is none. Owned by the environment.
    KEZVisSelectionFilter *GetSelectionFilter() const;

    //! The private object.
    inline KEZVisEnvironmentPrivate *d_func() { return d_ptr; }
    //! The private object.
    inline const KEZVisEnvironmentPrivate *d_func() const { return d_ptr; }

signals:
    //! \a object was appended to the list.
    void ObjectAdded(KEZVisObject *object);
    //! \a object was removed from the list, or died while naming this environment.
    void ObjectRemoved(KEZVisObject *object);
    /*!
        A selection transaction committed. \a selected holds what was committed
        as additions (objects that were selected already may be among them: read
        it as a statement of what is now selected); \a deselected holds only the
        objects that really left the selection.
    */
    void VisualizationSelectionChanged(const QSet<KEZVisObject *> &selected,
                                       const QSet<KEZVisObject *> &deselected);
    //! The preselection was replaced.
    void VisualizationPreselectionChanged(const QSet<KEZVisObject *> &oldSelection,
                                          const QSet<KEZVisObject *> &newSelection);
    //! \a filter was installed; also sent for the default filter.
    void SelectionFilterChanged(KEZVisSelectionFilter *filter);
    //! A wish of the environment for its viewers.
    void ClientChangeRequested(const KEZVisClientChangeRequest &request);
    //! Emitted by viewers: a mouse action in the scene. Must be delivered directly.
    void MouseEvent(const KEZVisMouseEvent &mouseEvent);
    //! The outermost batch opened.
    void BatchStarted();
    //! The outermost batch closed.
    void BatchFinished();
    //! The outermost selection batch opened.
    void BatchSelectionStarted();
    //! The outermost selection batch closed.
    void BatchSelectionFinished();

protected:
    //! Adopts a private object made by a subclass.
    KEZVisEnvironment(KEZVisEnvironmentPrivate *d, QObject *parent);

    // --- Raw selection layer -------------------------------------------------
    //
    // Use in this order: BeginSelection(), any number of AddSelectedVisualization(),
    // RemoveSelectedVisualization() and SetSelectedVisualization(), then
    // EndSelection(). The collecting operations check neither that a transaction
    // is open nor the filter.

    /*!
        Opens the transaction: raises KEZSysException "previous selection
        modifications were not committed" if the pending additions or removals
        aren't empty; otherwise opens a batch, held until EndSelection(), unless
        one is held already (calling it twice in a row is harmless).
    */
    void BeginSelection();
    /*!
        Commits the transaction, in this order: pending removals beat pending
        additions of the same object; the removals are reduced to selected
        objects; each addition's state becomes Selected unless it is
        PreSelected; the additions enter the selection; each removal's state
        becomes NotSelected unless it is preselected; the removals leave the
        selection. If nothing is pending then, the batch closes with no
        selection signal. Otherwise VisualizationSelectionChanged(additions,
        removals) goes out, the pending sets are cleared and the batch closes.
        With nothing pending and no batch held, nothing happens.

        Within the additions, and within the removals, the order of the state
        signals is unspecified: the objects are visited in order of their
        addresses, which is cheapest for memory in large scenes. Don't rely
        on it.

        Listeners run inside the commit. One that destroys an object takes it
        out of the pending sets at once, and the commit skips it. One that lets
        an exception escape doesn't leave the environment stuck: the commit
        still takes effect in the selection set, the remaining signals are
        skipped, the pending sets are cleared, the batch closes, and the
        exception goes on to the caller.
    */
    void EndSelection();
    //! Inserts \a object into the pending additions.
    void AddSelectedVisualization(KEZVisObject *object);
    //! Inserts \a object into the pending removals.
    void RemoveSelectedVisualization(KEZVisObject *object);
    //! Adds the unselected objects of \a objects to the pending additions, the selected objects not in it to the removals.
    void SetSelectedVisualization(const QSet<KEZVisObject *> &objects);
    /*!
        Replaces the preselection with \a objects: those that leave it return to
        Selected or NotSelected as the selection says, those that enter become
        PreSelected, and if the set changed VisualizationPreselectionChanged(old,
        new) goes out. Opens no batch and consults no filter.
    */
    void SetPreselectedVisualization(const QSet<KEZVisObject *> &objects);

    KEZVisEnvironmentPrivate *d_ptr;

private:
    friend class KEZVisEnvironmentPrivate;
    Q_DISABLE_COPY(KEZVisEnvironment)
};

Q_DECLARE_OPERATORS_FOR_FLAGS(KEZVisEnvironment::MouseInteractionFlags)
Q_DECLARE_OPERATORS_FOR_FLAGS(KEZVisEnvironment::MouseSnapGeometryTypes)

#endif // KEZVISENVIRONMENT_H
