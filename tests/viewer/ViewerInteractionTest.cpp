// The mouse on the viewer widget: hover, clicks, filters and the gizmo, with
// QTest events on the shown widget.

#include "ViewerTestSupport.h"

#include <KEZVisGizmo.h>
#include <KEZVisMouseEvent.h>
#include <KEZVisPolylinePrimitive.h>

#include <KEZMathAxis.h>
#include <KEZMathVector.h>

#include <QSignalSpy>

#include <cmath>

using namespace ViewerTest;

namespace {

const QColor Red(200, 30, 30);
const QColor Blue(40, 60, 200);

void ExpectPoint(const KEZMathPoint &point, double x, double y, double z)
{
    EXPECT_NEAR(point.GetX(), x, 1e-9);
    EXPECT_NEAR(point.GetY(), y, 1e-9);
    EXPECT_NEAR(point.GetZ(), z, 1e-9);
}

void ExpectVector(const KEZMathVector &vector, double x, double y, double z)
{
    EXPECT_NEAR(vector.GetX(), x, 1e-9);
    EXPECT_NEAR(vector.GetY(), y, 1e-9);
    EXPECT_NEAR(vector.GetZ(), z, 1e-9);
}

// Records the actions of the mouse events that reach the environment.
struct ActionLog : QObject
{
    explicit ActionLog(KEZVisEnvironment *environment)
    {
        QObject::connect(environment, &KEZVisEnvironment::MouseEvent, this,
                         [this](const KEZVisMouseEvent &event) { actions.append(event.GetActionType()); });
    }
    QList<int> actions;
};

class ViewerWithGizmo : public Viewer
{
protected:
    void SetUp() override
    {
        Viewer::SetUp();
        gizmo = std::make_unique<KEZVisGizmo>(&environment);
        parts = environment.GetVirtualObjects();
        gizmo->SetPosition(KEZMathAxis());
        widget->SetGizmo(gizmo.get());
    }
    void TearDown() override
    {
        gizmo.reset();
        qDeleteAll(parts); // the gizmo leaves its parts alive
        Viewer::TearDown();
    }
    std::unique_ptr<KEZVisGizmo> gizmo;
    QList<KEZVisVirtualObject *> parts;
};

// A pixel on the sphere that neither the third shaft nor the third tip, which
// point at the eye from its centre, cover: 4.95 units from the centre, beyond
// the tip's radius of 4 and within the sphere's of 6.
QPoint OnTheSphere()
{
    return Pixel(-3.5, -3.5);
}

} // namespace

TEST_F(Viewer, HoveringAnObjectPreselectsItAndChangesItsColour)
{
    KEZVisVirtualObject *object = Add(Rectangle(-20, -20, 20, 20, Red));
    QTest::mouseMove(widget.get(), Pixel(0, 0));
    EXPECT_EQ(object->GetSelectionState(), KEZVisObject::PreSelected);
    EXPECT_EQ(environment.GetPreSelectedObjects(), QSet<KEZVisObject *>{object});
    EXPECT_EQ(At(Pixel(0, 0)), SceneRenderer::PreselectedColor);
}

TEST_F(Viewer, MovingAwayFromAnObjectClearsItsPreselection)
{
    KEZVisVirtualObject *object = Add(Rectangle(-20, -20, 20, 20, Red));
    QTest::mouseMove(widget.get(), Pixel(0, 0));
    QTest::mouseMove(widget.get(), Pixel(60, 60));
    EXPECT_EQ(object->GetSelectionState(), KEZVisObject::NotSelected);
    EXPECT_TRUE(environment.GetPreSelectedObjects().isEmpty());
    EXPECT_EQ(At(Pixel(0, 0)), Red);
}

TEST_F(Viewer, HoveringAnUnselectableObjectPreselectsNothing)
{
    KEZVisVirtualObject *object = Add(Rectangle(-20, -20, 20, 20, Red), false);
    QTest::mouseMove(widget.get(), Pixel(0, 0));
    EXPECT_EQ(object->GetSelectionState(), KEZVisObject::NotSelected);
    EXPECT_EQ(At(Pixel(0, 0)), Red);
}

TEST_F(Viewer, AClickSelectsTheObjectUnderTheMouse)
{
    KEZVisVirtualObject *object = Add(Rectangle(-20, -20, 20, 20, Red));
    QTest::mouseClick(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(0, 0));
    EXPECT_EQ(environment.GetVisualizationSelection(), QSet<KEZVisObject *>{object});
    QTest::mouseMove(widget.get(), Pixel(60, 60));
    EXPECT_EQ(object->GetSelectionState(), KEZVisObject::Selected);
    EXPECT_EQ(At(Pixel(0, 0)), SceneRenderer::SelectedColor);
}

TEST_F(Viewer, AClickOnAnotherObjectReplacesTheSelection)
{
    KEZVisVirtualObject *first = Add(Rectangle(-60, -20, -20, 20, Red));
    KEZVisVirtualObject *second = Add(Rectangle(20, -20, 60, 20, Blue));
    QTest::mouseClick(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(-40, 0));
    QTest::mouseClick(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(40, 0));
    EXPECT_EQ(environment.GetVisualizationSelection(), QSet<KEZVisObject *>{second});
    EXPECT_EQ(first->GetSelectionState(), KEZVisObject::NotSelected);
}

TEST_F(Viewer, ACtrlClickAddsToTheSelectionAndASecondOneTakesOut)
{
    KEZVisVirtualObject *first = Add(Rectangle(-60, -20, -20, 20, Red));
    KEZVisVirtualObject *second = Add(Rectangle(20, -20, 60, 20, Blue));
    QTest::mouseClick(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(-40, 0));
    QTest::mouseClick(widget.get(), Qt::LeftButton, Qt::ControlModifier, Pixel(40, 0));
    EXPECT_EQ(environment.GetVisualizationSelection(), (QSet<KEZVisObject *>{first, second}));
    QTest::mouseClick(widget.get(), Qt::LeftButton, Qt::ControlModifier, Pixel(-40, 0));
    EXPECT_EQ(environment.GetVisualizationSelection(), QSet<KEZVisObject *>{second});
}

TEST_F(Viewer, AClickOnEmptySpaceClearsTheSelection)
{
    Add(Rectangle(-20, -20, 20, 20, Red));
    QTest::mouseClick(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(0, 0));
    ASSERT_EQ(environment.GetVisualizationSelection().size(), 1);
    QTest::mouseClick(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(70, 70));
    EXPECT_TRUE(environment.GetVisualizationSelection().isEmpty());
}

TEST_F(Viewer, ASelectionFilterThatRefusesAnObjectKeepsItUnselected)
{
    KEZVisVirtualObject *refused = Add(Rectangle(-20, -20, 20, 20, Red));
    environment.SetSelectionFilter(true, [refused](const KEZVisObject *object) { return object != refused; });
    QTest::mouseClick(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(0, 0));
    EXPECT_TRUE(environment.GetVisualizationSelection().isEmpty());
    QTest::mouseClick(widget.get(), Qt::LeftButton, Qt::ControlModifier, Pixel(0, 0));
    EXPECT_TRUE(environment.GetVisualizationSelection().isEmpty());
    EXPECT_NE(refused->GetSelectionState(), KEZVisObject::Selected);
}

TEST_F(Viewer, AFilterThatRefusesAnObjectKeepsHoverFromPreselectingIt)
{
    KEZVisVirtualObject *refused = Add(Rectangle(-20, -20, 20, 20, Red));
    environment.SetSelectionFilter(true, [refused](const KEZVisObject *object) { return object != refused; });
    QTest::mouseMove(widget.get(), Pixel(0, 0));
    EXPECT_EQ(refused->GetSelectionState(), KEZVisObject::NotSelected);
}

TEST_F(Viewer, AClickSelectsNothingWhileSelectionIsDisabled)
{
    Add(Rectangle(-20, -20, 20, 20, Red));
    environment.SetSelectionEnabled(false);
    QTest::mouseClick(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(0, 0));
    EXPECT_TRUE(environment.GetVisualizationSelection().isEmpty());
}

TEST_F(Viewer, ReportsPressReleaseAndClickOfAClickInThatOrder)
{
    ActionLog log(&environment);
    QTest::mouseClick(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(0, 0));
    EXPECT_EQ(log.actions, (QList<int>{KEZVisMouseEvent::MousePressed, KEZVisMouseEvent::MouseReleased,
                                       KEZVisMouseEvent::MouseClicked}));
}

TEST_F(Viewer, ReportsAMoveAndADoubleClick)
{
    ActionLog log(&environment);
    QTest::mouseMove(widget.get(), Pixel(10, 10));
    EXPECT_EQ(log.actions, QList<int>{KEZVisMouseEvent::MouseMoved});
    QTest::mouseDClick(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(10, 10));
    EXPECT_TRUE(log.actions.contains(KEZVisMouseEvent::MouseDoubleClicked));
}

TEST_F(Viewer, FillsTheContextWithTheObjectThePointOnItTheSnapsAndTheViewDirection)
{
    KEZVisVirtualObject *object = Add(Rectangle(-20, -20, 20, 20, Red, 7.0));
    // 2 pixels inside the corner (20, 20): a vertex and two edges are within the snap radius.
    QTest::mouseMove(widget.get(), Pixel(20, 20) + QPoint(-2, 2));
    const KEZVisMouseContext &context = widget->GetContext();
    EXPECT_EQ(context.GetVisObject(), object);
    EXPECT_NEAR(context.GetMousePoint().GetZ(), 7.0, 1e-9);
    EXPECT_EQ(context.GetSnapType(), KEZVisMouseContext::SnapToPoint | KEZVisMouseContext::SnapToAxis);
    ExpectPoint(context.GetSnapPoint(), 20, 20, 7);
    ExpectVector(context.GetViewDirection(), 0, 0, -1);
    EXPECT_EQ(context.GetGeometrySelectionType(), KEZVisMouseContext::FaceGeometrySelection);
}

TEST_F(Viewer, PutsTheMousePointOnTheViewPlaneThroughTheCentreWhenNothingIsUnderIt)
{
    QTest::mouseMove(widget.get(), Pixel(50, -25));
    const KEZVisMouseContext &context = widget->GetContext();
    EXPECT_EQ(context.GetVisObject(), nullptr);
    ExpectPoint(context.GetMousePoint(), 50, -25, 0);
    EXPECT_EQ(context.GetSnapType(), QFlags<KEZVisMouseContext::SnapType>());
}

TEST_F(Viewer, PicksTheNearerOfTwoOverlappingObjects)
{
    Add(Rectangle(-20, -20, 20, 20, Red, -3.0));
    KEZVisVirtualObject *nearer = Add(Rectangle(-20, -20, 20, 20, Blue, 3.0));
    QTest::mouseMove(widget.get(), Pixel(5, 5));
    EXPECT_EQ(widget->GetContext().GetVisObject(), nearer);
}

TEST_F(Viewer, APickFollowsAnObjectThatMoved)
{
    KEZVisVirtualObject *object = Add(Rectangle(-10, -10, 10, 10, Red));
    KEZMathAxis position;
    position.SetOrigin(KEZMathPoint(60, 0, 0));
    object->SetPosition(&position);
    QTest::mouseMove(widget.get(), Pixel(0, 0));
    EXPECT_EQ(widget->GetContext().GetVisObject(), nullptr);
    QTest::mouseMove(widget.get(), Pixel(60, 0));
    EXPECT_EQ(widget->GetContext().GetVisObject(), object);
}

TEST_F(ViewerWithGizmo, DraggingTheSphereMovesTheOriginWithTheMouse)
{
    QSignalSpy moves(gizmo.get(), &KEZVisGizmo::PositionChanged);
    QTest::mousePress(widget.get(), Qt::LeftButton, Qt::NoModifier, OnTheSphere());
    QTest::mouseMove(widget.get(), Pixel(10, 0)); // takes up the slack
    EXPECT_EQ(moves.count(), 0);
    QTest::mouseMove(widget.get(), Pixel(25, 25));
    EXPECT_EQ(moves.count(), 1);
    ExpectPoint(gizmo->GetPosition().GetOrigin(), 25, 25, 0);
    QTest::mouseMove(widget.get(), Pixel(50, 10));
    EXPECT_EQ(moves.count(), 2);
    QTest::mouseRelease(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(50, 10));
    EXPECT_EQ(moves.count(), 3);
    ExpectPoint(gizmo->GetPosition().GetOrigin(), 50, 10, 0);
}

TEST_F(ViewerWithGizmo, DraggingATipSlidesTheOriginAlongItsDirection)
{
    QSignalSpy moves(gizmo.get(), &KEZVisGizmo::PositionChanged);
    // The first tip runs from sqrt(32) + 50 to sqrt(32) + 60 along x.
    QTest::mousePress(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(60, 0));
    QTest::mouseMove(widget.get(), Pixel(65, 0));
    QTest::mouseMove(widget.get(), Pixel(80, 10));
    EXPECT_EQ(moves.count(), 1);
    // From 65 to 80 along x, the sideways 10 projected away.
    ExpectPoint(gizmo->GetPosition().GetOrigin(), 15, 0, 0);
    QTest::mouseRelease(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(80, 10));
    EXPECT_EQ(moves.count(), 2);
    ExpectPoint(gizmo->GetPosition().GetOrigin(), 15, 0, 0);
}

TEST_F(ViewerWithGizmo, DraggingAShaftTurnsTheFrameAboutItsDirection)
{
    QSignalSpy moves(gizmo.get(), &KEZVisGizmo::PositionChanged);
    // Press the first shaft at x = 30, then sweep a quarter turn around that
    // point in the view plane: from 25 units above it to 25 units right of it.
    QTest::mousePress(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(30, 0));
    QTest::mouseMove(widget.get(), Pixel(30, 25));
    QTest::mouseMove(widget.get(), Pixel(55, 0));
    EXPECT_EQ(moves.count(), 1);
    // u x v points along the view, at right angles to x, so the angle stays
    // +90 degrees about the first direction: the second direction turns to
    // the third.
    const KEZMathAxis position = gizmo->GetPosition();
    ExpectVector(position.GetFirstDirection(), 1, 0, 0);
    ExpectVector(position.GetSecondDirection(), 0, 0, 1);
    ExpectVector(position.GetThirdDirection(), 0, -1, 0);
    ExpectPoint(position.GetOrigin(), 0, 0, 0);
    QTest::mouseRelease(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(55, 0));
    EXPECT_EQ(moves.count(), 2);
}

TEST_F(ViewerWithGizmo, ASnapClickMovesTheOriginOntoAVertex)
{
    Add(Rectangle(50, 50, 90, 90, Red));
    QTest::mouseClick(widget.get(), Qt::LeftButton, Qt::NoModifier, OnTheSphere()); // arms the sphere
    QTest::mouseClick(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(50, 50) + QPoint(3, -3));
    ExpectPoint(gizmo->GetPosition().GetOrigin(), 50, 50, 0);
}

TEST_F(ViewerWithGizmo, ASnapClickGivesAShaftTheDirectionOfAnEdge)
{
    KEZVisOptions options;
    options.SetColor(Blue);
    Add(new KEZVisRepGraphics(QList<const KEZVisPrimitive *>{new KEZVisPolylinePrimitive(
                                  new double[6]{50, 60, 0, 90, 100, 0}, 2, KEZVisPolylinePrimitive::StructureConnected)},
                              options));
    QTest::mouseClick(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(30, 0)); // arms the first shaft
    QTest::mouseClick(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(70, 80) + QPoint(1, 1));
    const double half = std::sqrt(0.5);
    ExpectVector(gizmo->GetPosition().GetFirstDirection(), half, half, 0);
}

TEST_F(ViewerWithGizmo, ADoubleClickOnATipReversesItsDirection)
{
    QTest::mouseDClick(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(60, 0));
    ExpectVector(gizmo->GetPosition().GetFirstDirection(), -1, 0, 0);
}

TEST_F(ViewerWithGizmo, ThePartPointingAtTheEyeCoversTheCentreOfTheSphere)
{
    QTest::mouseMove(widget.get(), Pixel(0, 0));
    EXPECT_EQ(widget->GetContext().GetVisObject(), environment.GetVirtualObjects()[6]); // the third tip
    QTest::mouseMove(widget.get(), OnTheSphere());
    EXPECT_EQ(widget->GetContext().GetVisObject(), environment.GetVirtualObjects()[0]);
}

TEST_F(ViewerWithGizmo, DraggingEmptySpaceTurnsTheViewAndLeavesTheGizmo)
{
    QSignalSpy moves(gizmo.get(), &KEZVisGizmo::PositionChanged);
    const KEZMathVector before = widget->GetCamera().GetDirection();
    QTest::mousePress(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(-60, -60));
    QTest::mouseMove(widget.get(), Pixel(-40, -60));
    QTest::mouseMove(widget.get(), Pixel(-20, -50));
    QTest::mouseRelease(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(-20, -50));
    EXPECT_EQ(moves.count(), 0);
    EXPECT_GT(widget->GetCamera().GetDirection().GetAngleTo(before), 0.01);
}

TEST_F(ViewerWithGizmo, SurvivesTheEnvironmentDeletingObjectsDuringADrag)
{
    KEZVisVirtualObject *other = Add(Rectangle(50, 50, 90, 90, Red));
    QTest::mouseMove(widget.get(), Pixel(70, 70)); // preselects it
    QTest::mousePress(widget.get(), Qt::LeftButton, Qt::NoModifier, OnTheSphere());
    QTest::mouseMove(widget.get(), Pixel(10, 0));
    QTest::mouseMove(widget.get(), Pixel(70, 70));
    // Delete the object under the mouse in the middle of the drag.
    for (auto it = objects.begin(); it != objects.end(); ++it) {
        if (it->get() == other) {
            objects.erase(it);
            break;
        }
    }
    EXPECT_EQ(widget->GetClient().FindItem(other), nullptr);
    QTest::mouseMove(widget.get(), Pixel(75, 75));
    QTest::mouseRelease(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(75, 75));
    ExpectPoint(gizmo->GetPosition().GetOrigin(), 75, 75, 0);
    EXPECT_EQ(widget->GetContext().GetVisObject(), nullptr);
    Frame();
}

TEST_F(Viewer, SurvivesTheObjectUnderAPressedButtonBeingDeleted)
{
    Add(Rectangle(-20, -20, 20, 20, Red));
    QObject::connect(&environment, &KEZVisEnvironment::MouseEvent, &environment, [this](const KEZVisMouseEvent &event) {
        if (event.GetActionType() == KEZVisMouseEvent::MousePressed)
            objects.clear();
    });
    QTest::mousePress(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(0, 0));
    QTest::mouseMove(widget.get(), Pixel(1, 0));
    QTest::mouseRelease(widget.get(), Qt::LeftButton, Qt::NoModifier, Pixel(1, 0));
    EXPECT_TRUE(environment.GetVisualizationSelection().isEmpty());
    EXPECT_TRUE(widget->GetClient().GetItems().empty());
}

TEST_F(Viewer, PicksAPolylineWithinFourPixelsOfIt)
{
    KEZVisOptions options;
    options.SetColor(Blue);
    KEZVisVirtualObject *line = Add(new KEZVisRepGraphics(
        QList<const KEZVisPrimitive *>{new KEZVisPolylinePrimitive(new double[6]{-50, 20, 0, 50, 20, 0}, 2,
                                                                   KEZVisPolylinePrimitive::StructureConnected)},
        options));
    QTest::mouseMove(widget.get(), Pixel(0, 20) + QPoint(0, 4));
    EXPECT_EQ(widget->GetContext().GetVisObject(), line);
    EXPECT_EQ(widget->GetContext().GetGeometrySelectionType(), KEZVisMouseContext::EdgeGeometrySelection);
    QTest::mouseMove(widget.get(), Pixel(0, 20) + QPoint(0, 6));
    EXPECT_EQ(widget->GetContext().GetVisObject(), nullptr);
}

TEST_F(Viewer, PicksAPointWithinFourPixelsOfIt)
{
    KEZVisOptions options;
    options.SetColor(Blue);
    KEZVisVirtualObject *point = Add(
        new KEZVisRepGraphics(QList<const KEZVisPrimitive *>{new KEZVisPointPrimitive(new double[3]{30, 30, 0}, 1)},
                              options));
    QTest::mouseMove(widget.get(), Pixel(30, 30) + QPoint(3, 0));
    EXPECT_EQ(widget->GetContext().GetVisObject(), point);
    EXPECT_EQ(widget->GetContext().GetGeometrySelectionType(), KEZVisMouseContext::VertexGeometrySelection);
    QTest::mouseMove(widget.get(), Pixel(30, 30) + QPoint(6, 0));
    EXPECT_EQ(widget->GetContext().GetVisObject(), nullptr);
}

TEST_F(Viewer, PrefersALineOverAFaceAtTheSameDepth)
{
    Add(Rectangle(-20, -20, 20, 20, Red));
    KEZVisOptions options;
    options.SetColor(Blue);
    KEZVisVirtualObject *line = Add(new KEZVisRepGraphics(
        QList<const KEZVisPrimitive *>{new KEZVisPolylinePrimitive(new double[6]{-20, 0, 0, 20, 0, 0}, 2,
                                                                   KEZVisPolylinePrimitive::StructureConnected)},
        options));
    QTest::mouseMove(widget.get(), Pixel(0, 0) + QPoint(0, 2));
    EXPECT_EQ(widget->GetContext().GetVisObject(), line);
}

TEST_F(Viewer, DoesNotPickAHiddenObject)
{
    KEZVisVirtualObject *object = Add(Rectangle(-20, -20, 20, 20, Red));
    object->Hide();
    QTest::mouseMove(widget.get(), Pixel(0, 0));
    EXPECT_EQ(widget->GetContext().GetVisObject(), nullptr);
}

TEST_F(Viewer, SnapsToTheNearestEdgeDirectionAwayFromVertices)
{
    KEZVisOptions options;
    options.SetColor(Blue);
    Add(new KEZVisRepGraphics(QList<const KEZVisPrimitive *>{new KEZVisPolylinePrimitive(
                                  new double[6]{-50, -50, 0, 50, -10, 0}, 2, KEZVisPolylinePrimitive::StructureConnected)},
                              options));
    QTest::mouseMove(widget.get(), Pixel(0, -30) + QPoint(0, 5));
    const KEZVisMouseContext &context = widget->GetContext();
    EXPECT_EQ(context.GetSnapType(), QFlags<KEZVisMouseContext::SnapType>(KEZVisMouseContext::SnapToAxis));
    const double length = std::sqrt(100.0 * 100.0 + 40.0 * 40.0);
    ExpectVector(context.GetSnapAxis(), 100.0 / length, 40.0 / length, 0);
}

TEST_F(Viewer, PicksTheValidPartOfAMeshWithANanCoordinate)
{
    const double nan = std::nan("");
    double *coords = new double[15]{-20, -20, 0, 20, -20, 0, 20, 20, 0, nan, nan, nan, 0, 0, 0};
    int *triangles = new int[6]{0, 1, 2, 2, 3, 4};
    KEZVisOptions options;
    options.SetColor(Red);
    KEZVisVirtualObject *object = Add(new KEZVisRepGraphics(
        QList<const KEZVisPrimitive *>{new KEZVisSurfacePrimitive(5, coords, 2, triangles, nullptr)}, options));
    QTest::mouseMove(widget.get(), Pixel(10, -10));
    EXPECT_EQ(widget->GetContext().GetVisObject(), object);
    QTest::mouseMove(widget.get(), Pixel(-10, 10));
    EXPECT_EQ(widget->GetContext().GetVisObject(), nullptr);
}
