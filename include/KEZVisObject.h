#ifndef KEZVISOBJECT_H
#define KEZVISOBJECT_H

#include "kezvisualization_export.h"

#include <QFlags>
#include <QObject>
#include <QString>

#include "KEZMathAxis.h"
#include "KEZMathBoundingBox.h"

class KEZVisEnvironment;
class KEZVisObjectPrivate;
class KEZVisRep;

/*!
    One thing that can stand in a scene.

    An object owns one rep, knows the environment that it was made for, holds a
    selection state and announces every change of itself through signals. The
    class is abstract: visibility, selectability and the label are answered by
    subclasses; KEZVisVirtualObject is the concrete object of this library.

    Constructing an object does not put it in an environment: only
    KEZVisEnvironment::AddVirtualObject() lists it. The environment handed to the
    constructor is a weak back pointer: GetEnvironment() answers it while it
    lives, and the destructor reports the object's death to it, so that it
    leaves every list and set of that environment and ObjectRemoved() goes out.

    Every notification follows one order: the specific signal first, then
    ChangeOccurred() with the one bit of ChangeType that names the change. A
    listener of the specific signal may delete the object: ChangeOccurred()
    then doesn't go out, and the environment carries on without the object.

    The selection state has no public setter: the environment's selection
    operations write it, through the private record.
*/
class KEZVISUALIZATION_EXPORT KEZVisObject : public QObject
{
    Q_OBJECT

public:
    //! Where an object stands with respect to the selection of its environment.
    enum SelectionState {
        NotSelected = 0,  //!< neither selected nor preselected
        Selected = 1,     //!< in the environment's selection
        PreSelected = 2   //!< in the environment's preselection; outranks Selected
    };
    Q_ENUM(SelectionState)

    //! The bit that ChangeOccurred() carries after each specific signal.
    enum ChangeType {
        RepChange = 0x01,             //!< after RepChanged()
        LabelChange = 0x02,           //!< after LabelChanged()
        VisibilityChange = 0x04,      //!< after VisibilityChanged()
        SelectionStateChange = 0x08,  //!< after SelectionStateChanged()
        SelectabilityChange = 0x10,   //!< after SelectabilityChanged()
        PositionChange = 0x20         //!< after PositionChanged()
    };
    //! A combination of ChangeType bits.
    Q_DECLARE_FLAGS(ChangeTypes, ChangeType)
    Q_FLAG(ChangeTypes)

    /*!
        If the environment named in the constructor still lives, tells it that
        this object is gone: it leaves the object list, the selection, the
        preselection and both pending sets of that environment, and the
        environment emits ObjectRemoved(). This runs when the subclass part of
        the object is already destroyed, so a listener of ObjectRemoved() may
        use only what KEZVisObject itself holds. Then the rep is deleted.
    */
    ~KEZVisObject() override;

    //! Whether the object is shown.
    virtual bool IsVisible() const = 0;
    //! Whether the object may be selected; read by filters and viewers only.
    virtual bool IsSelectable() const = 0;
    //! The text shown for the object.
    virtual QString GetLabel() const = 0;
    //! Whether the object has a position of its own. False here.
    virtual bool IsPosition() const;
    //! The position of the object. A default-constructed axis here.
    virtual KEZMathAxis GetPosition() const;

    /*!
        The bounding box of the rep; a default-constructed box when there is no
        rep. The rep is asked once after each UpdateRep() and the answer is
        cached. With \a inWorld false the box is given in the rep's own frame;
        with \a inWorld true it is mapped by GetPosition(), whether or not
        IsPosition() says true, so an object whose position was cleared is still
        mapped by the axis that it stored.
    */
    virtual KEZMathBoundingBox GetBoundingBox(bool inWorld) const;

    //! The environment named in the constructor; null if none or destroyed.
    const KEZVisEnvironment *GetEnvironment() const;
    //! The rep, still owned by the object; null if there is none.
    const KEZVisRep *GetRep() const;
    //! The selection state, written by the environment.
    SelectionState GetSelectionState() const;

    //! The private record.
    inline KEZVisObjectPrivate *d_func() { return d_ptr; }
    //! The private record.
    inline const KEZVisObjectPrivate *d_func() const { return d_ptr; }

signals:
    //! The rep was replaced or refreshed; \a rep is the rep now held, possibly null.
    void RepChanged(const KEZVisRep *rep);
    //! The selection state changed to \a state.
    void SelectionStateChanged(SelectionState state);
    //! The visibility changed to \a state.
    void VisibilityChanged(bool state);
    //! The selectability changed to \a state.
    void SelectabilityChanged(bool state);
    //! The label changed to \a label.
    void LabelChanged(const QString &label);
    //! The position changed to \a position; a default axis when it was cleared.
    void PositionChanged(const KEZMathAxis &position);
    //! Sent after each specific signal, with the bit that names it.
    void ChangeOccurred(KEZVisObject::ChangeTypes changes);

protected:
    //! Makes the private record; \a environment may be null and is held weakly.
    KEZVisObject(const KEZVisEnvironment *environment, QObject *parent);
    //! Adopts a record made by a subclass; the object owns it from now on.
    KEZVisObject(KEZVisObjectPrivate *d, QObject *parent);

    /*!
        Replaces the rep. The cached bounding box becomes stale in every case.
        If \a rep differs from the held rep, it is stored and the old one is
        deleted; handing in the rep already held deletes nothing, so a caller
        that changed its rep in place calls this with the same pointer to make
        the box stale and tell the listeners. Then RepChanged(rep) and
        ChangeOccurred(RepChange) go out, also for the same pointer.
        The object takes ownership of \a rep.
    */
    void UpdateRep(const KEZVisRep *rep);

    KEZVisObjectPrivate *d_ptr;

private:
    friend class KEZVisObjectPrivate;
    Q_DISABLE_COPY(KEZVisObject)
};

Q_DECLARE_OPERATORS_FOR_FLAGS(KEZVisObject::ChangeTypes)

#endif // KEZVISOBJECT_H
