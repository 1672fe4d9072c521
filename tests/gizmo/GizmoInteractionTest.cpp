// Tests of the gizmo under the mouse, driven through the environment's
// MouseEvent() signal with a recording client attached.

#include "GizmoTestSupport.h"

#include <QRandomGenerator>

#include <cmath>
#include <limits>

using namespace GizmoTest;

namespace {

KEZMathAxis At(double x, double y, double z)
{
    KEZMathAxis axis;
    axis.SetOrigin(KEZMathPoint(x, y, z));
    return axis;
}

} // namespace

// --- the state table, row by row ---

TEST_F(GizmoScene, PressOnAPartMakesThePartsUnselectable)
{
    Press(KEZVisGizmo::PartOrigin, KEZMathPoint());
    EXPECT_TRUE(AllParts(&KEZVisObject::IsSelectable, false));
    EXPECT_EQ(Marker(), nullptr);
    EXPECT_EQ(spy->count(), 0);
}

TEST_F(GizmoScene, PressOnAShaftShowsThePivotMarkerAtThePressPoint)
{
    Press(KEZVisGizmo::PartSecondShaft, KEZMathPoint(0, 20, 0));
    ASSERT_NE(Marker(), nullptr);
    EXPECT_TRUE(Marker()->IsVisible());
    EXPECT_TRUE(Near(Marker()->GetPosition().GetOrigin(), KEZMathPoint(0, 20, 0)));
    EXPECT_TRUE(log.entries.contains("client:OnObjectAdded()"));
}

TEST_F(GizmoScene, PressNotOnAPartChangesNothing)
{
    Press(0, KEZMathPoint());
    Move(KEZMathPoint());
    Move(KEZMathPoint(5, 0, 0));
    Release();
    EXPECT_TRUE(AllParts(&KEZVisObject::IsSelectable, true));
    EXPECT_EQ(spy->count(), 0);
    EXPECT_EQ(environment->GetVirtualObjects().size(), 7);
}

TEST_F(GizmoScene, TheFirstMoveOfADragOnlyTakesUpTheSlack)
{
    Press(KEZVisGizmo::PartOrigin, KEZMathPoint());
    Move(KEZMathPoint(3, 0, 0));
    EXPECT_EQ(spy->count(), 0);
    EXPECT_EQ(CountGhosts(), 0);
    EXPECT_TRUE(gizmo->GetPosition() == KEZMathAxis());
}

TEST_F(GizmoScene, DraggingTheSphereMovesTheOriginAndTheGhostWhileThePartsStay)
{
    Press(KEZVisGizmo::PartOrigin, KEZMathPoint());
    Move(KEZMathPoint(3, 0, 0));
    Move(KEZMathPoint(7, 1, 0));
    ASSERT_EQ(spy->count(), 1);
    EXPECT_TRUE(Emitted(0) == At(7, 1, 0));
    ASSERT_EQ(CountGhosts(), 1);
    EXPECT_TRUE(Ghost()->IsVisible());
    EXPECT_TRUE(Ghost()->GetPosition() == At(7, 1, 0));
    EXPECT_TRUE(AllParts(&KEZVisObject::IsVisible, false));
    EXPECT_TRUE(AllPartsAt(KEZMathAxis()));
}

TEST_F(GizmoScene, AMoveOfAtMostTheThresholdFromTheFirstMovePointDoesNothing)
{
    Press(KEZVisGizmo::PartOrigin, KEZMathPoint());
    Move(KEZMathPoint(3, 0, 0));
    Move(KEZMathPoint(3.009, 0, 0));
    EXPECT_EQ(spy->count(), 0);
    EXPECT_EQ(CountGhosts(), 0);
}

TEST_F(GizmoScene, TheSphereDragKeepsMeasuringTheThresholdFromTheFirstMovePoint)
{
    Press(KEZVisGizmo::PartOrigin, KEZMathPoint());
    Move(KEZMathPoint(3, 0, 0));
    Move(KEZMathPoint(8, 0, 0));
    Move(KEZMathPoint(3.005, 0, 0));
    EXPECT_EQ(spy->count(), 1);
    EXPECT_TRUE(gizmo->GetPosition() == At(8, 0, 0));
}

TEST_F(GizmoScene, ReleaseAfterADragMovesThePartsMakesThemSelectableEmitsOnceAndRemovesTheGhost)
{
    Press(KEZVisGizmo::PartOrigin, KEZMathPoint());
    Move(KEZMathPoint(3, 0, 0));
    Move(KEZMathPoint(7, 1, 0));
    QPointer<KEZVisVirtualObject> ghost = Ghost();
    spy->clear();
    log.Clear();
    Release();
    ASSERT_EQ(spy->count(), 1);
    EXPECT_TRUE(Emitted(0) == At(7, 1, 0));
    EXPECT_TRUE(AllPartsAt(At(7, 1, 0)));
    EXPECT_TRUE(AllParts(&KEZVisObject::IsVisible, true));
    EXPECT_TRUE(AllParts(&KEZVisObject::IsSelectable, true));
    EXPECT_EQ(CountGhosts(), 0);
    EXPECT_TRUE(ghost.isNull());
    EXPECT_TRUE(log.entries.contains("client:OnObjectRemoved()"));
}

TEST_F(GizmoScene, ReleaseAfterAShaftDragHidesThePivotMarkerButKeepsIt)
{
    Press(KEZVisGizmo::PartFirstShaft, KEZMathPoint(20, 0, 0));
    Release();
    ASSERT_NE(Marker(), nullptr);
    EXPECT_FALSE(Marker()->IsVisible());
}

TEST_F(GizmoScene, APressAndReleaseWithoutMoveEmitsOnceWithAnUnchangedPosition)
{
    Press(KEZVisGizmo::PartFirstTip, KEZMathPoint(60, 0, 0));
    Release();
    ASSERT_EQ(spy->count(), 1);
    EXPECT_TRUE(Emitted(0) == KEZMathAxis());
}

TEST_F(GizmoScene, AReleaseWhileNotDraggingEmitsNothing)
{
    Release();
    EXPECT_EQ(spy->count(), 0);
    EXPECT_TRUE(log.entries.isEmpty());
}

TEST_F(GizmoScene, AClickOnAPartArmsItWithoutEffect)
{
    Click(KEZVisGizmo::PartOrigin);
    EXPECT_EQ(spy->count(), 0);
    Mouse snap;
    snap.snapType = KEZVisMouseContext::SnapToPoint;
    snap.snapPoint = KEZMathPoint(4, 5, 6);
    Click(0, snap);
    ASSERT_EQ(spy->count(), 1);
    EXPECT_TRUE(Emitted(0) == At(4, 5, 6));
    EXPECT_TRUE(AllPartsAt(At(4, 5, 6)));
    EXPECT_TRUE(AllParts(&KEZVisObject::IsVisible, true));
}

TEST_F(GizmoScene, AClickOnAnotherPartReplacesThePendingPart)
{
    Click(KEZVisGizmo::PartOrigin);
    Click(KEZVisGizmo::PartSecondShaft);
    Mouse snap;
    snap.snapType = KEZVisMouseContext::SnapToPoint | KEZVisMouseContext::SnapToAxis;
    snap.snapPoint = KEZMathPoint(4, 5, 6);
    snap.snapAxis = KEZMathVector(0, 0, 2);
    Click(0, snap);
    ASSERT_EQ(spy->count(), 1);
    EXPECT_TRUE(gizmo->GetPosition().GetOrigin() == KEZMathPoint());
    EXPECT_TRUE(Near(gizmo->GetPosition().GetSecondDirection(), KEZMathVector(0, 0, 2)));
}

TEST_F(GizmoScene, AClickElsewhereWithoutSnapPointDoesNothingAndDisarms)
{
    Click(KEZVisGizmo::PartOrigin);
    Click(0);
    Mouse snap;
    snap.snapType = KEZVisMouseContext::SnapToPoint;
    snap.snapPoint = KEZMathPoint(4, 5, 6);
    Click(0, snap);
    EXPECT_EQ(spy->count(), 0);
    EXPECT_TRUE(gizmo->GetPosition() == KEZMathAxis());
}

TEST_F(GizmoScene, AClickOnATipIsClearedByTheNextClickElsewhere)
{
    Click(KEZVisGizmo::PartThirdTip);
    Mouse snap;
    snap.snapType = KEZVisMouseContext::SnapToPoint | KEZVisMouseContext::SnapToAxis;
    snap.snapPoint = KEZMathPoint(4, 5, 6);
    snap.snapAxis = KEZMathVector(0, 1, 0);
    Click(0, snap);
    EXPECT_EQ(spy->count(), 0);
    EXPECT_TRUE(gizmo->GetPosition() == KEZMathAxis());
}

TEST_F(GizmoScene, ClickingTheSecondShaftThenAValidSnapAxisSetsTheSecondDirection)
{
    Click(KEZVisGizmo::PartSecondShaft);
    Mouse snap;
    snap.snapType = KEZVisMouseContext::SnapToAxis;
    snap.snapAxis = KEZMathVector(1, 1, 0);
    Click(0, snap);
    ASSERT_EQ(spy->count(), 1);
    EXPECT_TRUE(Near(gizmo->GetPosition().GetSecondDirection(), KEZMathVector(1, 1, 0)));
    EXPECT_TRUE(Near(gizmo->GetPosition().GetFirstDirection(), KEZMathVector(1, 0, 0)));
}

TEST_F(GizmoScene, ASnapAxisWithoutMagnitudeLeavesTheFrame)
{
    Click(KEZVisGizmo::PartFirstShaft);
    Mouse snap;
    snap.snapType = KEZVisMouseContext::SnapToAxis;
    snap.snapAxis = KEZMathVector(0, 0, 0);
    Click(0, snap);
    EXPECT_EQ(spy->count(), 0);
    EXPECT_TRUE(gizmo->GetPosition() == KEZMathAxis());
}

TEST_F(GizmoScene, SnappingTheOriginIsRefusedWhenTheFlagIsCleared)
{
    gizmo->SetEnabledInteraction(KEZVisGizmo::GizmoInteractionFlags(63 & ~KEZVisGizmo::InteractionSnapOrigin));
    Click(KEZVisGizmo::PartOrigin);
    Mouse snap;
    snap.snapType = KEZVisMouseContext::SnapToPoint;
    snap.snapPoint = KEZMathPoint(4, 5, 6);
    Click(0, snap);
    EXPECT_EQ(spy->count(), 0);
}

// --- further cases ---

TEST_F(GizmoScene, ASnapPointAloneCarriesTheSphereExactlyOntoIt)
{
    Press(KEZVisGizmo::PartOrigin, KEZMathPoint());
    Move(KEZMathPoint(3, 0, 0));
    Mouse mouse;
    mouse.point = KEZMathPoint(9, 9, 0);
    mouse.snapType = KEZVisMouseContext::SnapToPoint;
    mouse.snapPoint = KEZMathPoint(10.125, 9.5, 0.25);
    Send(KEZVisMouseEvent::MouseMoved, nullptr, mouse);
    ASSERT_EQ(spy->count(), 1);
    EXPECT_EQ(Emitted(0).GetOrigin().GetX(), 10.125);
    EXPECT_EQ(Emitted(0).GetOrigin().GetY(), 9.5);
    EXPECT_EQ(Emitted(0).GetOrigin().GetZ(), 0.25);
}

TEST_F(GizmoScene, ASnapPointWithASnapAxisIsIgnoredForTheMousePoint)
{
    Press(KEZVisGizmo::PartOrigin, KEZMathPoint());
    Move(KEZMathPoint(3, 0, 0));
    Mouse mouse;
    mouse.point = KEZMathPoint(9, 9, 0);
    mouse.snapType = KEZVisMouseContext::SnapToPoint | KEZVisMouseContext::SnapToAxis;
    mouse.snapPoint = KEZMathPoint(10, 10, 10);
    mouse.snapAxis = KEZMathVector(0, 0, 1);
    Send(KEZVisMouseEvent::MouseMoved, nullptr, mouse);
    ASSERT_EQ(spy->count(), 1);
    EXPECT_TRUE(Emitted(0) == At(9, 9, 0));
}

TEST_F(GizmoScene, DraggingATipThatPointsAlongTheViewEmitsAtEachStepAndKeepsThePosition)
{
    Press(KEZVisGizmo::PartThirdTip, KEZMathPoint(0, 0, 60));
    Move(KEZMathPoint(0, 0, 60));
    Move(KEZMathPoint(5, 0, 60));
    Move(KEZMathPoint(5, 5, 60));
    EXPECT_EQ(spy->count(), 2);
    EXPECT_TRUE(gizmo->GetPosition() == KEZMathAxis());
    EXPECT_EQ(CountGhosts(), 1);
}

TEST_F(GizmoScene, DraggingATipAtSixtyDegreesToTheViewPlaneDoublesTheDistance)
{
    // The first direction leaves the view plane (normal z) at 60 degrees.
    KEZMathAxis frame;
    frame.SetFirstDirection(KEZMathVector(0.5, 0.0, std::sqrt(3.0) / 2.0));
    frame.SetThirdDirection(KEZMathVector(-std::sqrt(3.0) / 2.0, 0.0, 0.5));
    gizmo->SetPosition(frame);
    Press(KEZVisGizmo::PartFirstTip, KEZMathPoint(30, 0, 0));
    Move(KEZMathPoint(30, 0, 0));
    Move(KEZMathPoint(33, 0, 0));
    ASSERT_EQ(spy->count(), 1);
    // Three units on the screen along the foreshortened direction: six in space.
    const KEZMathPoint expected = KEZMathPoint(0, 0, 0) + frame.GetFirstDirection() * 6.0;
    EXPECT_TRUE(Near(Emitted(0).GetOrigin(), expected, 1e-9));
}

TEST_F(GizmoScene, DraggingAShaftWithRotationClearedShowsNoMarkerKeepsTheFrameButShowsTheGhost)
{
    gizmo->SetEnabledInteraction(KEZVisGizmo::GizmoInteractionFlags(63 & ~KEZVisGizmo::InteractionRotate));
    Press(KEZVisGizmo::PartFirstShaft, KEZMathPoint(20, 0, 0));
    Move(KEZMathPoint(20, 5, 0));
    Move(KEZMathPoint(10, 10, 0));
    EXPECT_EQ(Marker(), nullptr);
    EXPECT_EQ(spy->count(), 0);
    ASSERT_EQ(CountGhosts(), 1);
    EXPECT_TRUE(Ghost()->IsVisible());
    EXPECT_TRUE(Ghost()->GetPosition() == KEZMathAxis());
}

TEST_F(GizmoScene, WithMoveOriginClearedASphereDragEmitsOnlyAtRelease)
{
    gizmo->SetEnabledInteraction(KEZVisGizmo::GizmoInteractionFlags(63 & ~KEZVisGizmo::InteractionMoveOrigin));
    Press(KEZVisGizmo::PartOrigin, KEZMathPoint());
    Move(KEZMathPoint(3, 0, 0));
    Move(KEZMathPoint(9, 0, 0));
    EXPECT_EQ(spy->count(), 0);
    Release();
    ASSERT_EQ(spy->count(), 1);
    EXPECT_TRUE(Emitted(0) == KEZMathAxis());
}

TEST_F(GizmoScene, ADoubleClickOnATipReversesOnlyThatDirectionAndEmitsOnce)
{
    DoubleClick(KEZVisGizmo::PartSecondTip);
    ASSERT_EQ(spy->count(), 1);
    EXPECT_TRUE(Near(Emitted(0).GetSecondDirection(), KEZMathVector(0, -1, 0)));
    EXPECT_TRUE(Near(Emitted(0).GetFirstDirection(), KEZMathVector(1, 0, 0)));
    EXPECT_TRUE(Near(Emitted(0).GetThirdDirection(), KEZMathVector(0, 0, 1)));
    EXPECT_TRUE(AllParts(&KEZVisObject::IsVisible, true));
}

TEST_F(GizmoScene, ADoubleClickOnAShaftOrTheSphereDoesNothing)
{
    DoubleClick(KEZVisGizmo::PartFirstShaft);
    DoubleClick(KEZVisGizmo::PartOrigin);
    DoubleClick(0);
    EXPECT_EQ(spy->count(), 0);
    EXPECT_TRUE(log.entries.isEmpty());
}

TEST_F(GizmoScene, DraggingTheThirdShaftTurnsTheFrameAboutTheThirdDirectionWithTheMouse)
{
    Press(KEZVisGizmo::PartThirdShaft, KEZMathPoint(20, 0, 0));
    Move(KEZMathPoint(30, 0, 0));
    Move(KEZMathPoint(20, 10, 0));
    ASSERT_EQ(spy->count(), 1);
    // A quarter turn of the mouse about the pivot, counterclockwise seen from +z.
    EXPECT_TRUE(Near(Emitted(0).GetFirstDirection(), KEZMathVector(0, 1, 0), 1e-9));
    EXPECT_TRUE(Near(Emitted(0).GetThirdDirection(), KEZMathVector(0, 0, 1), 1e-9));
}

TEST_F(GizmoScene, DraggingTheFirstShaftTurnsTheFrameAboutTheFirstDirection)
{
    const KEZMathVector view(1, 0, 0);
    Press(KEZVisGizmo::PartFirstShaft, KEZMathPoint(0, 0, 0), view);
    Move(KEZMathPoint(0, 10, 0), view);
    Move(KEZMathPoint(0, 0, 10), view);
    ASSERT_EQ(spy->count(), 1);
    EXPECT_TRUE(Near(Emitted(0).GetFirstDirection(), KEZMathVector(1, 0, 0), 1e-9));
    EXPECT_TRUE(Near(Emitted(0).GetSecondDirection(), KEZMathVector(0, 0, 1), 1e-9));
}

TEST_F(GizmoScene, DraggingTheSecondShaftTurnsTheFrameAboutTheSecondDirection)
{
    const KEZMathVector view(0, 1, 0);
    Press(KEZVisGizmo::PartSecondShaft, KEZMathPoint(0, 0, 0), view);
    Move(KEZMathPoint(0, 0, 10), view);
    Move(KEZMathPoint(10, 0, 0), view);
    ASSERT_EQ(spy->count(), 1);
    EXPECT_TRUE(Near(Emitted(0).GetSecondDirection(), KEZMathVector(0, 1, 0), 1e-9));
    EXPECT_TRUE(Near(Emitted(0).GetThirdDirection(), KEZMathVector(1, 0, 0), 1e-9));
}

TEST_F(GizmoScene, ARotationStepWithTheMouseOnTheDragStartDoesNothingAndTheNextUsesTheEarlierLastPoint)
{
    Press(KEZVisGizmo::PartThirdShaft, KEZMathPoint(20, 0, 0));
    Move(KEZMathPoint(30, 0, 0));
    Move(KEZMathPoint(20, 0, 0));
    EXPECT_EQ(spy->count(), 0);
    Move(KEZMathPoint(20, 10, 0));
    ASSERT_EQ(spy->count(), 1);
    EXPECT_TRUE(Near(Emitted(0).GetFirstDirection(), KEZMathVector(0, 1, 0), 1e-9));
}

// --- random drags against an independent computation ---

TEST_F(GizmoScene, RandomTipDragsMoveTheOriginByTheMouseOnTheForeshortenedDirection)
{
    QRandomGenerator random(17);
    auto uniform = [&random](double low, double high) { return low + (high - low) * random.generateDouble(); };
    for (int trial = 0; trial < 50; ++trial) {
        KEZMathVector view(uniform(-1, 1), uniform(-1, 1), uniform(-1, 1));
        if (view.GetMagnitude() < 0.2)
            continue;
        view = view * (1.0 / view.GetMagnitude());
        KEZMathVector a(uniform(-1, 1), uniform(-1, 1), uniform(-1, 1));
        a = a * (1.0 / a.GetMagnitude());
        const double along = a * view;
        if (std::abs(along) > 0.9)
            continue;
        KEZMathAxis frame;
        frame.SetOrigin(KEZMathPoint(uniform(-50, 50), uniform(-50, 50), uniform(-50, 50)));
        frame.SetFirstDirection(a);
        gizmo->SetPosition(frame);
        spy->clear();
        KEZMathPoint last(uniform(-50, 50), uniform(-50, 50), uniform(-50, 50));
        Press(KEZVisGizmo::PartFirstTip, last, view);
        Move(last, view);
        KEZMathPoint origin = frame.GetOrigin();
        // p: the direction on the view plane; the origin moves by the mouse's
        // displacement on p, divided by the cosine |p| of the foreshortening.
        const KEZMathVector p = a - view * along;
        for (int step = 0; step < 5; ++step) {
            const KEZMathPoint point(last.GetX() + uniform(-5, 5), last.GetY() + uniform(-5, 5),
                                     last.GetZ() + uniform(-5, 5));
            Move(point, view);
            const double t = ((point - last) * p) / (p * p);
            origin = origin + a * t;
            last = point;
        }
        Release();
        EXPECT_TRUE(Near(gizmo->GetPosition().GetOrigin(), origin, 1e-7)) << "trial " << trial;
        EXPECT_EQ(spy->count(), 6);
    }
}

TEST_F(GizmoScene, RandomThirdShaftDragsTurnTheFrameByTheAngleOfTheMouseAboutThePressPoint)
{
    QRandomGenerator random(18);
    auto uniform = [&random](double low, double high) { return low + (high - low) * random.generateDouble(); };
    const KEZMathVector view(0, 0, 1);
    for (int trial = 0; trial < 30; ++trial) {
        gizmo->SetPosition(At(uniform(-20, 20), uniform(-20, 20), 0));
        const KEZMathPoint pivot(uniform(-20, 20), uniform(-20, 20), uniform(-5, 5));
        Press(KEZVisGizmo::PartThirdShaft, pivot, view);
        double angle = uniform(0, 6.28);
        Move(KEZMathPoint(pivot.GetX() + 10 * std::cos(angle), pivot.GetY() + 10 * std::sin(angle), 0), view);
        double total = 0.0;
        for (int step = 0; step < 6; ++step) {
            const double turn = uniform(-1.2, 1.2);
            angle += turn;
            total += turn;
            const double radius = uniform(3, 30);
            Move(KEZMathPoint(pivot.GetX() + radius * std::cos(angle), pivot.GetY() + radius * std::sin(angle),
                              uniform(-5, 5)),
                 view);
        }
        Release();
        const KEZMathVector expected(std::cos(total), std::sin(total), 0);
        EXPECT_TRUE(Near(gizmo->GetPosition().GetFirstDirection(), expected, 1e-7)) << "trial " << trial;
    }
}

// --- bad input ---

TEST_F(GizmoScene, AMouseEventWithoutContextIsIgnored)
{
    Press(KEZVisGizmo::PartOrigin, KEZMathPoint());
    KEZVisMouseEvent event(KEZVisMouseEvent::MouseReleased, nullptr);
    emit environment->MouseEvent(event);
    EXPECT_EQ(spy->count(), 0);
    EXPECT_TRUE(AllParts(&KEZVisObject::IsSelectable, false));
}

TEST_F(GizmoScene, AnActionValueOfCombinedBitsDoesNothing)
{
    Send(static_cast<KEZVisMouseEvent::MouseActionFlag>(0x41),
         parts[KEZVisGizmo::PartOrigin]);
    EXPECT_TRUE(AllParts(&KEZVisObject::IsSelectable, true));
}

TEST_F(GizmoScene, AnInvalidViewDirectionLeavesTheFrameOfATipDrag)
{
    Press(KEZVisGizmo::PartFirstTip, KEZMathPoint(60, 0, 0));
    Move(KEZMathPoint(60, 0, 0), KEZMathVector(0, 0, 0));
    Move(KEZMathPoint(70, 0, 0), KEZMathVector(0, 0, 0));
    Move(KEZMathPoint(80, 0, 0), KEZMathVector(std::numeric_limits<double>::quiet_NaN(), 0, 1));
    EXPECT_EQ(spy->count(), 2);
    EXPECT_TRUE(gizmo->GetPosition() == KEZMathAxis());
}

TEST_F(GizmoScene, AnInvalidViewDirectionLeavesTheFrameOfAShaftDrag)
{
    Press(KEZVisGizmo::PartThirdShaft, KEZMathPoint(20, 0, 0));
    Move(KEZMathPoint(30, 0, 0), KEZMathVector(0, 0, 0));
    Move(KEZMathPoint(20, 10, 0), KEZMathVector(0, 0, 0));
    EXPECT_EQ(spy->count(), 0);
    EXPECT_TRUE(gizmo->GetPosition() == KEZMathAxis());
}

TEST_F(GizmoScene, NonFinitePointsLeaveTheFrame)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    Press(KEZVisGizmo::PartOrigin, KEZMathPoint());
    Move(KEZMathPoint(3, 0, 0));
    Move(KEZMathPoint(nan, 0, 0));
    Move(KEZMathPoint(inf, 0, 0));
    EXPECT_EQ(spy->count(), 0);
    Release();
    ASSERT_EQ(spy->count(), 1);
    EXPECT_TRUE(Emitted(0) == KEZMathAxis());
    Click(KEZVisGizmo::PartOrigin);
    Mouse snap;
    snap.snapType = KEZVisMouseContext::SnapToPoint;
    snap.snapPoint = KEZMathPoint(0, -inf, 0);
    Click(0, snap);
    EXPECT_EQ(spy->count(), 1);
    EXPECT_TRUE(gizmo->GetPosition() == KEZMathAxis());
}

TEST(GizmoLifetime, AGizmoWhoseEnvironmentDiedIgnoresMouseEvents)
{
    auto environment = std::make_unique<KEZVisEnvironment>();
    auto gizmo = std::make_unique<KEZVisGizmo>(environment.get());
    QSignalSpy spy(gizmo.get(), &KEZVisGizmo::PositionChanged);
    const QList<KEZVisVirtualObject *> parts = environment->GetVirtualObjects();
    KEZVisEnvironment other;
    KEZVisMouseContext context;
    context.SetVisObject(parts.first());
    environment.reset();
    // The slot can still be reached by a signal connected by hand.
    QObject::connect(&other, SIGNAL(MouseEvent(KEZVisMouseEvent)), gizmo.get(), SLOT(OnMouseEvent(KEZVisMouseEvent)));
    KEZVisMouseEvent press(KEZVisMouseEvent::MousePressed, &context);
    KEZVisMouseEvent release(KEZVisMouseEvent::MouseReleased, &context);
    emit other.MouseEvent(press);
    emit other.MouseEvent(release);
    EXPECT_EQ(spy.count(), 0);
    EXPECT_TRUE(parts.first()->IsSelectable());
    gizmo.reset();
    qDeleteAll(parts);
}

// --- receivers acting from inside the signal ---

TEST_F(GizmoScene, AReceiverMaySetThePositionFromInsideTheSignalAndTheDragReadsItAnew)
{
    QObject::connect(gizmo.get(), &KEZVisGizmo::PositionChanged, gizmo.get(), [this](const KEZMathAxis &axis) {
        if (axis.GetOrigin().GetX() > 5)
            gizmo->SetPosition(At(100, 0, 0));
    });
    Press(KEZVisGizmo::PartFirstTip, KEZMathPoint(60, 0, 0));
    Move(KEZMathPoint(60, 0, 0));
    Move(KEZMathPoint(70, 0, 0));
    EXPECT_TRUE(gizmo->GetPosition() == At(100, 0, 0));
    Move(KEZMathPoint(72, 0, 0));
    EXPECT_TRUE(Near(gizmo->GetPosition().GetOrigin(), KEZMathPoint(100, 0, 0)));
    Release();
    EXPECT_TRUE(AllParts(&KEZVisObject::IsVisible, true));
}

TEST_F(GizmoScene, AReceiverMayHideTheGizmoAndDeleteOtherObjectsFromInsideTheSignal)
{
    KEZVisVirtualObject *other = new KEZVisVirtualObject(environment.get());
    environment->AddVirtualObject(other);
    QPointer<KEZVisVirtualObject> watch = other;
    QObject::connect(gizmo.get(), &KEZVisGizmo::PositionChanged, gizmo.get(), [this, &watch](const KEZMathAxis &) {
        gizmo->Show(false);
        delete watch.data();
    });
    Press(KEZVisGizmo::PartOrigin, KEZMathPoint());
    Move(KEZMathPoint(3, 0, 0));
    Move(KEZMathPoint(9, 0, 0));
    Release();
    EXPECT_TRUE(watch.isNull());
    EXPECT_EQ(spy->count(), 2);
    // The other object is gone, the ghost too; the parts were hidden after the release put them in place.
    EXPECT_EQ(environment->GetVirtualObjects().size(), 7);
    EXPECT_TRUE(AllParts(&KEZVisObject::IsVisible, false));
    EXPECT_TRUE(AllPartsAt(At(9, 0, 0)));
}

TEST_F(GizmoScene, AReceiverMayDeleteTheEnvironmentFromInsideTheSignal)
{
    QObject::connect(gizmo.get(), &KEZVisGizmo::PositionChanged, gizmo.get(), [this](const KEZMathAxis &) {
        client.reset();
        environment.reset();
    });
    Press(KEZVisGizmo::PartOrigin, KEZMathPoint());
    Move(KEZMathPoint(3, 0, 0));
    Move(KEZMathPoint(9, 0, 0));
    EXPECT_EQ(spy->count(), 1);
    gizmo.reset();
    EXPECT_TRUE(environment == nullptr);
}

// --- no growth over a long session ---

TEST_F(GizmoScene, TenThousandDragsLeaveTheObjectCountsWhereTheyStarted)
{
    const int objectsBefore = environment->GetVirtualObjects().size();
    // Every object that the drags add is counted alive until it is destroyed.
    int live = 0;
    int added = 0;
    QObject::connect(environment.get(), &KEZVisEnvironment::ObjectAdded, environment.get(),
                     [&live, &added](KEZVisObject *object) {
                         ++live;
                         ++added;
                         QObject::connect(object, &QObject::destroyed, [&live]() { --live; });
                     });
    for (int drag = 0; drag < 10000; ++drag) {
        Press(KEZVisGizmo::PartOrigin, KEZMathPoint());
        Move(KEZMathPoint(1, 0, 0));
        Move(KEZMathPoint(2 + drag % 7, 0, 0));
        Release();
    }
    EXPECT_EQ(added, 10000);
    EXPECT_EQ(live, 0);
    EXPECT_EQ(environment->GetVirtualObjects().size(), objectsBefore);
    EXPECT_EQ(spy->count(), 20000);
}

TEST_F(GizmoScene, APressAndReleaseBeforeAClickLeaveTheGizmoArmedWithOneSignal)
{
    Press(KEZVisGizmo::PartOrigin, KEZMathPoint());
    Release();
    Click(KEZVisGizmo::PartOrigin);
    EXPECT_EQ(spy->count(), 1);
    Mouse snap;
    snap.snapType = KEZVisMouseContext::SnapToPoint;
    snap.snapPoint = KEZMathPoint(1, 2, 3);
    Click(0, snap);
    ASSERT_EQ(spy->count(), 2);
    EXPECT_TRUE(Emitted(1) == At(1, 2, 3));
}

TEST_F(GizmoScene, APressOffThePartsWhileArmedKeepsThePendingPart)
{
    Click(KEZVisGizmo::PartOrigin);
    Press(0, KEZMathPoint());
    Release();
    EXPECT_EQ(spy->count(), 0);
    Mouse snap;
    snap.snapType = KEZVisMouseContext::SnapToPoint;
    snap.snapPoint = KEZMathPoint(1, 2, 3);
    Click(0, snap);
    ASSERT_EQ(spy->count(), 1);
    EXPECT_TRUE(Emitted(0) == At(1, 2, 3));
}

TEST_F(GizmoScene, AMoveWhileNotDraggingAddsNothingToTheScene)
{
    Move(KEZMathPoint(3, 0, 0));
    Move(KEZMathPoint(9, 0, 0));
    EXPECT_EQ(spy->count(), 0);
    EXPECT_TRUE(log.entries.isEmpty());
    EXPECT_EQ(environment->GetVirtualObjects().size(), 7);
}

TEST_F(GizmoScene, RandomShaftDragsInRandomFramesAndViewsTurnTheFrameWithTheMouseAboutTheShaft)
{
    QRandomGenerator random(19);
    auto uniform = [&random](double low, double high) { return low + (high - low) * random.generateDouble(); };
    auto unit = [](const KEZMathVector &v) { return v * (1.0 / v.GetMagnitude()); };
    for (int trial = 0; trial < 30; ++trial) {
        // The third direction looks along the view; the first two span the screen.
        const KEZMathVector view = unit(KEZMathVector(uniform(-1, 1), uniform(-1, 1), uniform(-1, 1) + 0.1));
        const KEZMathVector helper = std::abs(view.GetX()) < 0.5 ? KEZMathVector(1, 0, 0) : KEZMathVector(0, 1, 0);
        const KEZMathVector e1 = unit(helper - view * (helper * view));
        const KEZMathVector e2 = view ^ e1;
        KEZMathAxis frame;
        frame.SetOrigin(KEZMathPoint(uniform(-20, 20), uniform(-20, 20), uniform(-20, 20)));
        frame.SetFirstDirection(e1);
        frame.SetSecondDirection(e2);
        frame.SetThirdDirection(view);
        gizmo->SetPosition(frame);
        const KEZMathPoint pivot(uniform(-20, 20), uniform(-20, 20), uniform(-20, 20));
        auto around = [&](double angle, double radius, double depth) {
            return pivot + e1 * (radius * std::cos(angle)) + e2 * (radius * std::sin(angle)) + view * depth;
        };
        Press(KEZVisGizmo::PartThirdShaft, pivot, view);
        double angle = uniform(0, 6.28);
        Move(around(angle, 10, 0), view);
        double total = 0.0;
        for (int step = 0; step < 6; ++step) {
            const double turn = uniform(-1.2, 1.2);
            angle += turn;
            total += turn;
            Move(around(angle, uniform(3, 30), uniform(-5, 5)), view);
        }
        Release();
        // A right-handed turn of the mouse about the view turns the frame right-handed about its third direction.
        const KEZMathVector expectedFirst = e1 * std::cos(total) + e2 * std::sin(total);
        EXPECT_TRUE(Near(gizmo->GetPosition().GetFirstDirection(), expectedFirst, 1e-7)) << "trial " << trial;
        EXPECT_TRUE(Near(gizmo->GetPosition().GetThirdDirection(), view, 1e-7)) << "trial " << trial;
        EXPECT_TRUE(gizmo->GetPosition().GetOrigin() == frame.GetOrigin());
    }
}
