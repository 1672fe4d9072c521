#ifndef KEZVISGIZMO_H
#define KEZVISGIZMO_H

#include "kezvisualization_export.h"

#include "KEZMathAxis.h"

#include <QFlags>
#include <QObject>

class KEZVisEnvironment;
class KEZVisGizmoPrivate;
class KEZVisMouseEvent;

/*!
    \class KEZVisGizmo
    \brief A manipulator for one coordinate frame, drawn and picked in an environment.

    The gizmo puts seven selectable, invisible virtual objects into its
    environment: a sphere at the origin (radius 6.0, priority 10), and for each
    direction a shaft (radius 2.0, height 50.0, starting at the square root of
    32.0 from the origin) and a tip (radius 4.0, height 10.0). The parts are
    built once around a default frame and are placed as a whole through their
    position. They are added to the environment in the order of their part
    numbers. Nothing shows until Show(true) or SetPosition() is called.

    The gizmo listens to KEZVisEnvironment::MouseEvent(): dragging the sphere
    moves the origin, dragging a tip slides the origin along that direction,
    dragging a shaft turns the frame about that direction, a click on a part
    followed by a click on snapped geometry snaps the origin or a direction,
    and a double click on a tip reverses that direction. During a drag one
    unselectable ghost object shows the frame; the parts stay where the drag
    began until the release.

    The ghost object of a drag is deleted as soon as it has been taken out of
    the environment: clients let go of an object when they are told of its
    removal, so no client can hold it afterwards, and a long session of drags
    does not grow memory. The seven part objects are taken out of the
    environment by the destructor and are left alive, unowned.

    The environment is held weakly. A gizmo whose environment died ignores
    every call that would reach it and destroys cleanly.

    Bad mouse input (no context, an invalid or non-finite view direction,
    non-finite points, a snap axis without magnitude) leaves the frame as it
    is and never throws.
*/
class KEZVISUALIZATION_EXPORT KEZVisGizmo : public QObject
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZVisGizmo)

public:
    //! What the mouse may do with the gizmo; all are allowed by default.
    enum GizmoInteractionFlag {
        InteractionMoveOrigin = 1,       //!< drag the sphere: the origin follows the mouse
        InteractionMoveAlongAxis = 2,    //!< drag a tip: the origin slides along that direction
        InteractionRotate = 4,           //!< drag a shaft: the frame turns about that direction
        InteractionFlipDirection = 8,    //!< double click a tip: that direction is reversed
        InteractionSnapDirection = 16,   //!< click a shaft, then a snap axis: the direction takes it
        InteractionSnapOrigin = 32       //!< click the sphere, then a snap point: the origin takes it
    };
    //! A combination of GizmoInteractionFlag values.
    Q_DECLARE_FLAGS(GizmoInteractionFlags, GizmoInteractionFlag)

    //! The numbers of the seven parts; 0 means no part.
    enum Part {
        PartOrigin = 1,       //!< the sphere
        PartFirstShaft = 2,   //!< shaft along the first direction
        PartSecondShaft = 3,  //!< shaft along the second direction
        PartThirdShaft = 4,   //!< shaft along the third direction
        PartFirstTip = 5,     //!< tip of the first direction
        PartSecondTip = 6,    //!< tip of the second direction
        PartThirdTip = 7      //!< tip of the third direction
    };

    /*!
        Builds the seven parts, invisible, adds them to \a environment (which
        must be alive) and connects to its MouseEvent() signal. \a parent is
        accepted and deliberately has no effect: the gizmo has no parent.
    */
    explicit KEZVisGizmo(KEZVisEnvironment *environment, QObject *parent = nullptr);
    /*!
        Resets the environment's native geometry selection type to 0, removes
        and deletes the pivot marker, removes the ghost (deleting it) and the
        parts (leaving them alive).
    */
    ~KEZVisGizmo() override;

    //! A copy of the frame.
    KEZMathAxis GetPosition() const;
    //! Stores \a position and places and shows every part. Emits nothing.
    void SetPosition(const KEZMathAxis &position);
    //! Shows or hides the seven parts; the ghost and the pivot marker are untouched.
    void Show(bool show);
    //! True if at least one part is visible.
    bool IsVisible() const;
    //! Allowed interactions from the next mouse event on.
    void SetEnabledInteraction(const QFlags<GizmoInteractionFlag> &flags);

signals:
    //! The user changed the frame, or a drag ended (then also without change).
    void PositionChanged(const KEZMathAxis &position);

private slots:
    void OnMouseEvent(const KEZVisMouseEvent &mouseEvent);

private:
    KEZVisGizmoPrivate *d_ptr;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(KEZVisGizmo::GizmoInteractionFlags)

#endif // KEZVISGIZMO_H
