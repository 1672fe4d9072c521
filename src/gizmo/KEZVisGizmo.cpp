#include "KEZVisGizmo.h"
#include "KEZVisGizmo_p.h"

#include "KEZVisEnvironment.h"
#include "KEZVisMouseContext.h"
#include "KEZVisMouseEvent.h"
#include "KEZVisOptions.h"
#include "KEZVisPointPrimitive.h"
#include "KEZVisRepFactory.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisSurfacePrimitive.h"
#include "KEZVisVirtualObject.h"

#include "KEZMathLine.h"
#include "KEZMathPlane.h"
#include "KEZMathSetOfPoints.h"

#include <QColor>

#include <algorithm>
#include <cmath>

namespace {

// Sizes of the gizmo in scene units; it has no scale of its own.
constexpr double SphereRadius = 6.0;
constexpr int SphereDivisions = 16;
constexpr int SpherePriority = 10;
constexpr double ShaftRadius = 2.0;
constexpr double ShaftHeight = 50.0;
constexpr double TipRadius = 4.0;
constexpr double TipHeight = 10.0;
constexpr int Sides = 16;
// A move of the mouse by this much or less does nothing.
constexpr double MoveThreshold = 0.01;
constexpr double PivotTolerance = 1e-6;

bool IsFinite(const KEZMathPoint &point)
{
    return std::isfinite(point.GetX()) && std::isfinite(point.GetY()) && std::isfinite(point.GetZ());
}

bool IsFinite(const KEZMathVector &vector)
{
    return std::isfinite(vector.GetX()) && std::isfinite(vector.GetY()) && std::isfinite(vector.GetZ());
}

// A view direction that a plane can take as its normal.
bool IsUsableDirection(const KEZMathVector &vector)
{
    return IsFinite(vector) && vector.IsValid();
}

KEZVisOptions PartOptions(const QColor &color)
{
    KEZVisOptions options;
    options.SetDepthEnabled(false);
    options.SetColor(color);
    return options;
}

KEZVisOptions SphereOptions()
{
    KEZVisOptions options = PartOptions(QColor(0, 0, 0, 255));
    options.SetPriority(SpherePriority);
    return options;
}

const QColor DirectionColors[3] = {QColor(128, 0, 0, 255), QColor(0, 128, 0, 255), QColor(0, 0, 128, 255)};

KEZMathVector DirectionOf(const KEZMathAxis &axis, int index)
{
    switch (index) {
    case 0:
        return axis.GetFirstDirection();
    case 1:
        return axis.GetSecondDirection();
    default:
        return axis.GetThirdDirection();
    }
}

void SetDirectionOf(KEZMathAxis &axis, int index, const KEZMathVector &direction)
{
    switch (index) {
    case 0:
        axis.SetFirstDirection(direction);
        break;
    case 1:
        axis.SetSecondDirection(direction);
        break;
    default:
        axis.SetThirdDirection(direction);
        break;
    }
}

} // namespace

KEZVisGizmoPrivate::KEZVisGizmoPrivate(KEZVisGizmo *q, KEZVisEnvironment *environment)
    : environment(environment)
    , q_ptr(q)
{
}

KEZVisGizmoPrivate::~KEZVisGizmoPrivate() = default;

int KEZVisGizmoPrivate::PartOf(const KEZVisObject *object) const
{
    return parts.value(object, 0);
}

void KEZVisGizmoPrivate::EmitPositionChanged()
{
    // A copy: receivers may set the position while the signal is on its way.
    const KEZMathAxis copy = position;
    emit q_ptr->PositionChanged(copy);
}

void KEZVisGizmoPrivate::BuildObjects(bool ghost)
{
    if (ghost)
        ghosts.clear();
    else
        parts.clear();

    // Built around a default frame; each object is placed as a whole.
    const KEZMathAxis axis;
    const KEZMathPoint origin = axis.GetOrigin();
    const KEZVisOptions sphereOptions = SphereOptions();

    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    QList<QPair<KEZVisRep *, int>> reps;

    if (ghost) {
        primitives.append(KEZVisRepFactory::CreateSpherePrimitive(origin, SphereRadius, SphereDivisions));
        options.append(sphereOptions);
    } else {
        reps.append({KEZVisRepFactory::CreateSphereRep(origin, SphereRadius, SphereDivisions, sphereOptions),
                     KEZVisGizmo::PartOrigin});
    }

    for (int index = 0; index < 3; ++index) {
        const KEZVisOptions directionOptions = PartOptions(DirectionColors[index]);
        const KEZMathVector d = DirectionOf(axis, index).Normalized();
        // The rim of the shaft meets the sphere at this distance.
        const KEZMathPoint base = origin + d * std::sqrt(32.0);
        const KEZMathPoint end = base + d * ShaftHeight;
        if (ghost) {
            primitives.append(KEZVisRepFactory::CreatePrismPrimitive(base, d, ShaftRadius, ShaftHeight, Sides));
            options.append(directionOptions);
            primitives.append(KEZVisRepFactory::CreatePyramidPrimitive(end, d, TipRadius, TipHeight, Sides));
            options.append(directionOptions);
        } else {
            reps.append({KEZVisRepFactory::CreatePrismRep(base, d, ShaftRadius, ShaftHeight, Sides, directionOptions),
                         KEZVisGizmo::PartFirstShaft + index});
            reps.append({KEZVisRepFactory::CreatePyramidRep(end, d, TipRadius, TipHeight, Sides, directionOptions),
                         KEZVisGizmo::PartFirstTip + index});
        }
    }

    if (ghost) {
        auto *object = new KEZVisVirtualObject(environment.data());
        object->SetRep(new KEZVisRepGraphics(primitives, options));
        object->SetSelectability(false);
        object->SetVisibility(false);
        ghosts.append(object);
        if (environment)
            environment->AddVirtualObject(object);
        return;
    }

    // Parts in the order sphere, shafts, tips.
    std::stable_sort(reps.begin(), reps.end(),
                     [](const QPair<KEZVisRep *, int> &a, const QPair<KEZVisRep *, int> &b) { return a.second < b.second; });
    for (const auto &entry : reps) {
        auto *object = new KEZVisVirtualObject(environment.data());
        object->SetRep(entry.first);
        object->SetSelectability(true);
        object->SetVisibility(false);
        parts.insert(object, entry.second);
        if (environment)
            environment->AddVirtualObject(object);
    }
}

void KEZVisGizmoPrivate::RemoveObjects(bool ghost)
{
    if (ghost) {
        const QList<KEZVisObject *> objects = ghosts;
        ghosts.clear();
        for (KEZVisObject *object : objects) {
            auto *virtualObject = qobject_cast<KEZVisVirtualObject *>(object);
            if (!virtualObject)
                continue;
            if (environment)
                environment->RemoveVirtualObject(virtualObject);
            // Clients let go of an object when told of its removal, so the
            // ghost can go: a session of drags doesn't accumulate ghosts.
            delete virtualObject;
        }
        return;
    }
    const QList<const KEZVisObject *> objects = parts.keys();
    parts.clear();
    for (const KEZVisObject *object : objects) {
        auto *virtualObject = qobject_cast<KEZVisVirtualObject *>(const_cast<KEZVisObject *>(object));
        if (virtualObject && environment)
            environment->RemoveVirtualObject(virtualObject);
    }
}

void KEZVisGizmoPrivate::UpdateObjects(bool ghost)
{
    QList<KEZVisObject *> objects;
    if (ghost) {
        objects = ghosts;
    } else {
        for (auto it = parts.cbegin(); it != parts.cend(); ++it)
            objects.append(const_cast<KEZVisObject *>(it.key()));
    }
    for (KEZVisObject *object : objects) {
        auto *virtualObject = qobject_cast<KEZVisVirtualObject *>(object);
        if (!virtualObject)
            continue;
        const KEZMathAxis axis = position;
        virtualObject->SetPosition(&axis);
        virtualObject->SetVisibility(true);
    }
}

void KEZVisGizmoPrivate::SetPartsSelectable(bool selectable)
{
    const QList<const KEZVisObject *> objects = parts.keys();
    for (const KEZVisObject *object : objects) {
        if (auto *virtualObject = qobject_cast<KEZVisVirtualObject *>(const_cast<KEZVisObject *>(object)))
            virtualObject->SetSelectability(selectable);
    }
}

void KEZVisGizmoPrivate::ShowPivotMarker()
{
    if (activePart < KEZVisGizmo::PartFirstShaft || activePart > KEZVisGizmo::PartThirdShaft
        || !enabledInteractions.testFlag(KEZVisGizmo::InteractionRotate))
        return;
    if (!pivotMarker) {
        KEZVisOptions options;
        options.SetColor(QColor(255, 255, 0, 255));
        options.SetPointSymbol(KEZVisOptions::PointSymbolMarker);
        options.SetDepthEnabled(false);
        const QList<const KEZVisPrimitive *> primitives{
            new KEZVisPointPrimitive(KEZMathSetOfPoints(QList<KEZMathPoint>{KEZMathPoint()}))};
        pivotMarker.reset(new KEZVisVirtualObject(environment.data()));
        pivotMarker->SetRep(new KEZVisRepGraphics(primitives, QList<KEZVisOptions>{options}));
        pivotMarker->SetSelectability(false);
        if (environment)
            environment->AddVirtualObject(pivotMarker.get());
    }
    KEZMathAxis axis;
    axis.SetOrigin(dragStart);
    pivotMarker->SetPosition(&axis);
    pivotMarker->SetVisibility(true);
}

void KEZVisGizmoPrivate::SetPivotMarkerVisible(bool visible)
{
    if (pivotMarker)
        pivotMarker->SetVisibility(visible);
}

void KEZVisGizmoPrivate::OnMousePress(const KEZVisMouseContext &context)
{
    const int part = PartOf(context.GetVisObject());
    if (part == 0) {
        dragging = false;
        return;
    }
    activePart = part;
    dragging = true;
    dragStarted = false;
    dragStart = context.GetMousePoint();
    lastPoint = dragStart;
    SetPartsSelectable(false);
    ShowPivotMarker();
}

void KEZVisGizmoPrivate::OnMouseMove(const KEZVisMouseContext &context)
{
    if (!dragging) {
        RemoveObjects(true);
        return;
    }
    if (!dragStarted) {
        lastPoint = context.GetMousePoint();
        dragStarted = true;
        return;
    }
    const KEZMathPoint point = context.GetSnapType() == QFlags<KEZVisMouseContext::SnapType>(KEZVisMouseContext::SnapToPoint)
                                   ? context.GetSnapPoint()
                                   : context.GetMousePoint();
    // A point that isn't finite is no mouse position: the step is skipped.
    if (!IsFinite(point) || !IsFinite(lastPoint))
        return;
    if (point.GetDistanceTo(lastPoint) <= MoveThreshold)
        return;

    const KEZMathVector viewDirection = context.GetViewDirection();
    switch (activePart) {
    case KEZVisGizmo::PartOrigin:
        if (enabledInteractions.testFlag(KEZVisGizmo::InteractionMoveOrigin)) {
            position.SetOrigin(point);
            EmitPositionChanged();
        }
        break;
    case KEZVisGizmo::PartFirstShaft:
    case KEZVisGizmo::PartSecondShaft:
    case KEZVisGizmo::PartThirdShaft:
        if (enabledInteractions.testFlag(KEZVisGizmo::InteractionRotate))
            RotateAroundAxis(activePart, point, viewDirection);
        break;
    case KEZVisGizmo::PartFirstTip:
    case KEZVisGizmo::PartSecondTip:
    case KEZVisGizmo::PartThirdTip:
        if (enabledInteractions.testFlag(KEZVisGizmo::InteractionMoveAlongAxis)) {
            MoveAlongAxis(activePart, point, viewDirection);
            EmitPositionChanged();
        }
        break;
    default:
        break;
    }
    // A receiver may have deleted the environment.
    if (!environment)
        return;
    if (ghosts.isEmpty())
        BuildObjects(true);
    UpdateObjects(true);
}

void KEZVisGizmoPrivate::MoveAlongAxis(int part, const KEZMathPoint &point, const KEZMathVector &viewDirection)
{
    if (!IsUsableDirection(viewDirection))
        return;
    const KEZMathPoint origin = position.GetOrigin();
    const KEZMathVector a = part == KEZVisGizmo::PartFirstTip    ? position.GetFirstDirection()
                            : part == KEZVisGizmo::PartSecondTip ? position.GetSecondDirection()
                                                                  : position.GetThirdDirection();
    KEZMathPlane plane;
    plane.SetOrigin(origin);
    plane.SetNormal(viewDirection);
    const KEZMathPoint L = plane.Project(lastPoint);
    const KEZMathPoint C = plane.Project(point);
    const KEZMathPoint Q = plane.Project(origin);
    const KEZMathVector p = plane.Project(a);
    // The direction points straight at the viewer.
    if (!p.IsValid())
        return;
    const KEZMathLine line(Q, p);
    const KEZMathPoint A = line.ProjectPoint(L);
    const KEZMathPoint B = line.ProjectPoint(C);
    double t = B.GetDistanceTo(A);
    if (p * (B - A) < 0.0)
        t *= -1.0;
    // Undo the foreshortening of the direction on the view plane.
    t /= std::cos(a.GetAngleTo(p));
    const KEZMathPoint newOrigin = origin + a * t;
    if (!IsFinite(newOrigin))
        return;
    lastPoint = point;
    position.SetOrigin(newOrigin);
}

void KEZVisGizmoPrivate::RotateAroundAxis(int part, const KEZMathPoint &point, const KEZMathVector &viewDirection)
{
    if (part < KEZVisGizmo::PartFirstShaft || part > KEZVisGizmo::PartThirdShaft)
        return;
    const KEZMathAxis before = position;
    if (point.GetSquaredDistanceTo(dragStart) < PivotTolerance)
        return;
    if (lastPoint.GetSquaredDistanceTo(dragStart) < PivotTolerance) {
        lastPoint = point;
        return;
    }
    if (!IsUsableDirection(viewDirection) || !IsFinite(dragStart))
        return;
    const int index = part - KEZVisGizmo::PartFirstShaft;
    const KEZMathVector a = DirectionOf(position, index);
    KEZMathPlane plane;
    plane.SetOrigin(dragStart);
    plane.SetNormal(viewDirection);
    const KEZMathPoint S = plane.Project(dragStart);
    const KEZMathPoint C = plane.Project(point);
    const KEZMathPoint L = plane.Project(lastPoint);
    const KEZMathVector u = (C - S).Normalized();
    const KEZMathVector v = (L - S).Normalized();
    const KEZMathVector n = (u ^ v).Normalized();
    double angle = v.GetAngleTo(u);
    if (n * a > 0.0)
        angle *= -1.0;
    lastPoint = point;
    if (!std::isfinite(angle))
        return;
    static const KEZMathAxis::AxisPlane planes[3] = {KEZMathAxis::AxisPlaneSecondThird, KEZMathAxis::AxisPlaneThirdFirst,
                                                     KEZMathAxis::AxisPlaneFirstSecond};
    position.Tilt(planes[index], angle);
    if (position != before)
        EmitPositionChanged();
}

void KEZVisGizmoPrivate::OnMouseRelease(const KEZVisMouseContext &)
{
    if (dragging) {
        dragging = false;
        activePart = 0;
        UpdateObjects(false);
        SetPartsSelectable(true);
        SetPivotMarkerVisible(false);
        EmitPositionChanged();
    }
    RemoveObjects(true);
}

void KEZVisGizmoPrivate::OnMouseClick(const KEZVisMouseContext &context)
{
    const int part = PartOf(context.GetVisObject());
    if (part != 0) {
        pendingPart = part;
        return;
    }
    const auto snapType = context.GetSnapType();
    switch (pendingPart) {
    case KEZVisGizmo::PartFirstShaft:
    case KEZVisGizmo::PartSecondShaft:
    case KEZVisGizmo::PartThirdShaft: {
        const KEZMathVector axis = context.GetSnapAxis();
        if (!snapType.testFlag(KEZVisMouseContext::SnapToAxis)
            || !enabledInteractions.testFlag(KEZVisGizmo::InteractionSnapDirection) || !axis.IsValid()
            || !IsFinite(axis)) {
            pendingPart = 0;
            return;
        }
        SetDirectionOf(position, pendingPart - KEZVisGizmo::PartFirstShaft, axis);
        break;
    }
    case KEZVisGizmo::PartOrigin: {
        const KEZMathPoint point = context.GetSnapPoint();
        if (!snapType.testFlag(KEZVisMouseContext::SnapToPoint)
            || !enabledInteractions.testFlag(KEZVisGizmo::InteractionSnapOrigin) || !IsFinite(point)) {
            pendingPart = 0;
            return;
        }
        position.SetOrigin(point);
        break;
    }
    default:
        pendingPart = 0;
        return;
    }
    pendingPart = 0;
    EmitPositionChanged();
    UpdateObjects(false);
}

void KEZVisGizmoPrivate::OnMouseDoubleClick(const KEZVisMouseContext &context)
{
    const int part = PartOf(context.GetVisObject());
    if (part < KEZVisGizmo::PartFirstTip || part > KEZVisGizmo::PartThirdTip
        || !enabledInteractions.testFlag(KEZVisGizmo::InteractionFlipDirection))
        return;
    const int index = part - KEZVisGizmo::PartFirstTip;
    SetDirectionOf(position, index, DirectionOf(position, index) * -1.0);
    EmitPositionChanged();
    UpdateObjects(false);
}

KEZVisGizmo::KEZVisGizmo(KEZVisEnvironment *environment, QObject *parent)
    : QObject(nullptr)
    , d_ptr(new KEZVisGizmoPrivate(this, environment))
{
    // The parent is accepted and deliberately ignored.
    Q_UNUSED(parent);
    d_ptr->BuildObjects(false);
    if (environment)
        connect(environment, &KEZVisEnvironment::MouseEvent, this, &KEZVisGizmo::OnMouseEvent);
}

KEZVisGizmo::~KEZVisGizmo()
{
    Q_D(KEZVisGizmo);
    if (d->environment)
        d->environment->SetNativeGeometrySelectionType(KEZVisMouseContext::NoGeometrySelection);
    if (d->pivotMarker && d->environment) {
        d->environment->RemoveVirtualObject(d->pivotMarker.get());
        d->pivotMarker.reset();
    }
    d->RemoveObjects(true);
    d->RemoveObjects(false);
    delete d_ptr;
    d_ptr = nullptr;
}

KEZMathAxis KEZVisGizmo::GetPosition() const
{
    Q_D(const KEZVisGizmo);
    return d->position;
}

void KEZVisGizmo::SetPosition(const KEZMathAxis &position)
{
    Q_D(KEZVisGizmo);
    d->position = position;
    d->UpdateObjects(false);
}

void KEZVisGizmo::Show(bool show)
{
    Q_D(KEZVisGizmo);
    const QList<const KEZVisObject *> objects = d->parts.keys();
    for (const KEZVisObject *object : objects) {
        if (auto *virtualObject = qobject_cast<KEZVisVirtualObject *>(const_cast<KEZVisObject *>(object)))
            virtualObject->SetVisibility(show);
    }
}

bool KEZVisGizmo::IsVisible() const
{
    Q_D(const KEZVisGizmo);
    for (auto it = d->parts.cbegin(); it != d->parts.cend(); ++it) {
        if (it.key()->IsVisible())
            return true;
    }
    return false;
}

void KEZVisGizmo::SetEnabledInteraction(const QFlags<GizmoInteractionFlag> &flags)
{
    Q_D(KEZVisGizmo);
    d->enabledInteractions = flags;
}

void KEZVisGizmo::OnMouseEvent(const KEZVisMouseEvent &mouseEvent)
{
    Q_D(KEZVisGizmo);
    // Without an environment the gizmo has nothing left to act on.
    if (!d->environment)
        return;
    const KEZVisMouseContext *context = mouseEvent.GetContext();
    if (!context)
        return;
    switch (int(mouseEvent.GetActionType())) {
    case KEZVisMouseEvent::MouseClicked:
        d->OnMouseClick(*context);
        break;
    case KEZVisMouseEvent::MouseDoubleClicked:
        d->OnMouseDoubleClick(*context);
        break;
    case KEZVisMouseEvent::MouseMoved:
        d->OnMouseMove(*context);
        break;
    case KEZVisMouseEvent::MousePressed:
        d->OnMousePress(*context);
        break;
    case KEZVisMouseEvent::MouseReleased:
        d->OnMouseRelease(*context);
        break;
    default:
        break;
    }
}
