#ifndef KEZVISVIRTUALOBJECT_H
#define KEZVISVIRTUALOBJECT_H

#include "KEZVisObject.h"

class KEZVisVirtualObjectPrivate;

/*!
    The concrete scene object of this library, the kind that a KEZVisEnvironment
    lists.

    It keeps its visibility, selectability, label and position in its own
    fields. A new object is visible and not selectable; call EnableSelection()
    or SetSelectability(true) to make it selectable.

    Every setter compares first and stays silent if nothing changes; otherwise
    it stores the value, emits the specific signal, then ChangeOccurred() with
    the one bit of the change.
*/
class KEZVISUALIZATION_EXPORT KEZVisVirtualObject : public KEZVisObject
{
    Q_OBJECT

public:
    /*!
        A visible, unselectable object without rep and without position.
        \a environment is held weakly and may be null; the object is not added
        to it. \a parent owns the object if given.
    */
    explicit KEZVisVirtualObject(const KEZVisEnvironment *environment, QObject *parent = nullptr);
    ~KEZVisVirtualObject() override;

    bool IsVisible() const override;
    bool IsSelectable() const override;
    QString GetLabel() const override;
    //! True once a position has been set and not cleared since.
    bool IsPosition() const override;
    //! The stored axis; kept when the position is cleared.
    KEZMathAxis GetPosition() const override;

    //! Replaces the rep and takes ownership of \a rep; see KEZVisObject::UpdateRep().
    void SetRep(const KEZVisRep *rep);

    /*!
        Sets or clears the position.

        With a non-null \a position: if the stored axis equals it, nothing
        happens, and the has-position flag stays as it is (setting a default axis
        on an object without a position therefore leaves IsPosition() false,
        since nothing has moved). Otherwise the flag becomes true, the axis is
        stored, and PositionChanged(*position) and ChangeOccurred(PositionChange)
        go out.

        With null: if there is no position, nothing happens. Otherwise the flag
        becomes false and the stored axis is kept, so GetPosition() goes on
        answering it. If that axis equals a default axis nothing further happens;
        else PositionChanged() with a default axis and ChangeOccurred(PositionChange)
        go out.
    */
    void SetPosition(const KEZMathAxis *position);

public slots:
    //! SetVisibility(false).
    void Hide();
    //! SetVisibility(true).
    void Show();
    //! Stores \a state; VisibilityChanged(state), then ChangeOccurred(VisibilityChange).
    void SetVisibility(bool state);
    //! SetSelectability(true).
    void EnableSelection();
    //! SetSelectability(false).
    void DisableSelection();
    /*!
        Stores \a state; SelectabilityChanged(state), then
        ChangeOccurred(SelectabilityChange). A selected object that becomes
        unselectable stays selected: only filters and viewers read this flag.
    */
    void SetSelectability(bool state);
    /*!
        Stores \a label if it differs (by size, then case-sensitively);
        LabelChanged(label), then ChangeOccurred(LabelChange).
    */
    void SetLabel(const QString &label);

private:
    Q_DECLARE_PRIVATE(KEZVisVirtualObject)
    Q_DISABLE_COPY(KEZVisVirtualObject)
};

#endif // KEZVISVIRTUALOBJECT_H
