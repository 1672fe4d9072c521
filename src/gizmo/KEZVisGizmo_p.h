#ifndef KEZVISGIZMO_P_H
#define KEZVISGIZMO_P_H

#include "KEZVisGizmo.h"

#include "KEZMathAxis.h"
#include "KEZMathPoint.h"
#include "KEZMathVector.h"

#include <QHash>
#include <QList>
#include <QPointer>

#include <memory>

class KEZVisEnvironment;
class KEZVisMouseContext;
class KEZVisObject;
class KEZVisVirtualObject;

class KEZVisGizmoPrivate
{
public:
    KEZVisGizmoPrivate(KEZVisGizmo *q, KEZVisEnvironment *environment);
    ~KEZVisGizmoPrivate();

    // ghost true: the drag's ghost; false: the seven parts.
    void BuildObjects(bool ghost);
    void RemoveObjects(bool ghost);
    void UpdateObjects(bool ghost);
    void SetPartsSelectable(bool selectable);
    void ShowPivotMarker();
    void SetPivotMarkerVisible(bool visible);

    void OnMouseClick(const KEZVisMouseContext &context);
    void OnMouseDoubleClick(const KEZVisMouseContext &context);
    void OnMouseMove(const KEZVisMouseContext &context);
    void OnMousePress(const KEZVisMouseContext &context);
    void OnMouseRelease(const KEZVisMouseContext &context);
    void MoveAlongAxis(int part, const KEZMathPoint &point, const KEZMathVector &viewDirection);
    void RotateAroundAxis(int part, const KEZMathPoint &point, const KEZMathVector &viewDirection);

    int PartOf(const KEZVisObject *object) const;
    void EmitPositionChanged();

    QPointer<KEZVisEnvironment> environment;
    QHash<const KEZVisObject *, int> parts;
    QList<KEZVisObject *> ghosts;
    qint32 activePart = 0;
    KEZMathAxis position;
    KEZMathPoint dragStart;
    KEZMathPoint lastPoint;
    bool dragging = false;
    bool dragStarted = false;
    qint32 pendingPart = 0;
    std::unique_ptr<KEZVisVirtualObject> pivotMarker;
    QFlags<KEZVisGizmo::GizmoInteractionFlag> enabledInteractions = QFlags<KEZVisGizmo::GizmoInteractionFlag>(63);
    KEZVisGizmo *q_ptr;
};

#endif // KEZVISGIZMO_P_H
