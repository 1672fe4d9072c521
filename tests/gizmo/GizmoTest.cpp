// Tests of the gizmo's parts, appearance, placement and lifetime.

#include "GizmoTestSupport.h"

#include "KEZVisOptions.h"
#include "KEZVisRepFactory.h"
#include "KEZVisSurfacePrimitive.h"

#include <QColor>

#include <cmath>
#include <vector>

using namespace GizmoTest;

namespace {

QList<double> Vertices(const KEZVisPrimitive *primitive)
{
    auto *surface = dynamic_cast<const KEZVisSurfacePrimitive *>(primitive);
    return surface ? surface->GetVertexCoordinatesAsDouble() : QList<double>();
}

KEZVisOptions Expected(const QColor &color, int priority = -1)
{
    KEZVisOptions options;
    options.SetDepthEnabled(false);
    options.SetColor(color);
    if (priority >= 0)
        options.SetPriority(priority);
    return options;
}

const double Root32 = std::sqrt(32.0);

} // namespace

TEST_F(GizmoScene, ANewGizmoIsInvisibleAtTheDefaultAxisWithSevenSelectableInvisibleParts)
{
    EXPECT_FALSE(gizmo->IsVisible());
    EXPECT_TRUE(gizmo->GetPosition() == KEZMathAxis());
    EXPECT_EQ(environment->GetVirtualObjects().size(), 7);
    EXPECT_TRUE(AllParts(&KEZVisObject::IsSelectable, true));
    EXPECT_TRUE(AllParts(&KEZVisObject::IsVisible, false));
}

TEST(Gizmo, TheParentArgumentDoesNotBecomeTheParent)
{
    KEZVisEnvironment environment;
    QObject parent;
    auto *gizmo = new KEZVisGizmo(&environment, &parent);
    const QList<KEZVisVirtualObject *> parts = environment.GetVirtualObjects();
    EXPECT_EQ(gizmo->parent(), nullptr);
    EXPECT_TRUE(parent.children().isEmpty());
    delete gizmo;
    // The destructor takes the parts out of the environment and leaves them alive.
    qDeleteAll(parts);
}

TEST_F(GizmoScene, SetPositionOnAHiddenGizmoShowsItAndEmitsNothing)
{
    KEZMathAxis axis;
    axis.SetOrigin(KEZMathPoint(1, 2, 3));
    gizmo->SetPosition(axis);
    EXPECT_TRUE(gizmo->IsVisible());
    EXPECT_TRUE(AllParts(&KEZVisObject::IsVisible, true));
    EXPECT_TRUE(AllPartsAt(axis));
    EXPECT_EQ(spy->count(), 0);
}

TEST_F(GizmoScene, ShowFalseAfterSetPositionHidesAllSevenParts)
{
    gizmo->SetPosition(KEZMathAxis());
    gizmo->Show(true);
    gizmo->Show(false);
    EXPECT_TRUE(AllParts(&KEZVisObject::IsVisible, false));
    EXPECT_FALSE(gizmo->IsVisible());
}

TEST_F(GizmoScene, OnePartMadeVisibleByOtherCodeMakesTheGizmoVisible)
{
    parts[KEZVisGizmo::PartSecondTip]->SetVisibility(true);
    EXPECT_TRUE(gizmo->IsVisible());
}

TEST_F(GizmoScene, ShowLeavesTheGhostAndThePivotMarkerAlone)
{
    Press(KEZVisGizmo::PartFirstShaft, KEZMathPoint(20, 0, 0));
    ASSERT_NE(Marker(), nullptr);
    gizmo->Show(false);
    EXPECT_TRUE(Marker()->IsVisible());
}

TEST_F(GizmoScene, EachPartHasTheGeometryAndOptionsOfItsFactory)
{
    const KEZMathVector directions[3] = {KEZMathVector(1, 0, 0), KEZMathVector(0, 1, 0), KEZMathVector(0, 0, 1)};
    const QColor colors[3] = {QColor(128, 0, 0, 255), QColor(0, 128, 0, 255), QColor(0, 0, 128, 255)};
    std::vector<std::unique_ptr<KEZVisRep>> expected(8);
    expected[1].reset(KEZVisRepFactory::CreateSphereRep(KEZMathPoint(), 6.0, 16, Expected(QColor(0, 0, 0, 255), 10)));
    for (int i = 0; i < 3; ++i) {
        const KEZMathPoint base = KEZMathPoint() + directions[i] * Root32;
        expected[2 + i].reset(KEZVisRepFactory::CreatePrismRep(base, directions[i], 2.0, 50.0, 16, Expected(colors[i])));
        expected[5 + i].reset(KEZVisRepFactory::CreatePyramidRep(base + directions[i] * 50.0, directions[i], 4.0, 10.0,
                                                                  16, Expected(colors[i])));
    }
    for (int part = 1; part <= 7; ++part) {
        SCOPED_TRACE(PartNames[part]);
        QList<const KEZVisPrimitive *> actualPrimitives, expectedPrimitives;
        QList<KEZVisOptions> actualOptions, expectedOptions;
        parts[part]->GetRep()->GetPrimitives(actualPrimitives, actualOptions);
        expected[part]->GetPrimitives(expectedPrimitives, expectedOptions);
        ASSERT_EQ(actualPrimitives.size(), 1);
        ASSERT_EQ(expectedPrimitives.size(), 1);
        EXPECT_FALSE(Vertices(expectedPrimitives[0]).isEmpty());
        EXPECT_EQ(Vertices(actualPrimitives[0]), Vertices(expectedPrimitives[0]));
        EXPECT_TRUE(actualOptions[0] == expectedOptions[0]);
        EXPECT_EQ(actualOptions[0].GetPriority(), part == 1 ? 10 : KEZVisOptions().GetPriority());
        EXPECT_FALSE(actualOptions[0].IsDepthEnabled());
    }
}

TEST_F(GizmoScene, TheFirstShaftBeginsAtTheSquareRootOf32AndTheArrowEndsSixtyFurther)
{
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    parts[KEZVisGizmo::PartFirstShaft]->GetRep()->GetPrimitives(primitives, options);
    const QList<double> shaft = Vertices(primitives[0]);
    primitives.clear();
    parts[KEZVisGizmo::PartFirstTip]->GetRep()->GetPrimitives(primitives, options);
    const QList<double> tip = Vertices(primitives[0]);
    double shaftMinX = 1e9, tipMaxX = -1e9;
    for (int i = 0; i < shaft.size(); i += 3)
        shaftMinX = std::min(shaftMinX, shaft[i]);
    for (int i = 0; i < tip.size(); i += 3)
        tipMaxX = std::max(tipMaxX, tip[i]);
    EXPECT_NEAR(shaftMinX, 5.656854249492381, 1e-12);
    EXPECT_NEAR(tipMaxX, 5.656854249492381 + 60.0, 1e-12);
}

TEST_F(GizmoScene, TheGhostIsOneUnselectableObjectOfSevenPrimitivesInSphereShaftTipOrder)
{
    Press(KEZVisGizmo::PartOrigin, KEZMathPoint());
    Move(KEZMathPoint(0, 0, 0));
    Move(KEZMathPoint(5, 0, 0));
    KEZVisVirtualObject *ghost = Ghost();
    ASSERT_NE(ghost, nullptr);
    EXPECT_FALSE(ghost->IsSelectable());
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    ghost->GetRep()->GetPrimitives(primitives, options);
    ASSERT_EQ(primitives.size(), 7);
    const KEZMathVector directions[3] = {KEZMathVector(1, 0, 0), KEZMathVector(0, 1, 0), KEZMathVector(0, 0, 1)};
    const QColor colors[3] = {QColor(128, 0, 0, 255), QColor(0, 128, 0, 255), QColor(0, 0, 128, 255)};
    std::unique_ptr<KEZVisSurfacePrimitive> sphere(KEZVisRepFactory::CreateSpherePrimitive(KEZMathPoint(), 6.0, 16));
    EXPECT_EQ(Vertices(primitives[0]), sphere->GetVertexCoordinatesAsDouble());
    EXPECT_TRUE(options[0] == Expected(QColor(0, 0, 0, 255), 10));
    for (int i = 0; i < 3; ++i) {
        const KEZMathPoint base = KEZMathPoint() + directions[i] * Root32;
        std::unique_ptr<KEZVisSurfacePrimitive> shaft(
            KEZVisRepFactory::CreatePrismPrimitive(base, directions[i], 2.0, 50.0, 16));
        std::unique_ptr<KEZVisSurfacePrimitive> tip(
            KEZVisRepFactory::CreatePyramidPrimitive(base + directions[i] * 50.0, directions[i], 4.0, 10.0, 16));
        EXPECT_EQ(Vertices(primitives[1 + 2 * i]), shaft->GetVertexCoordinatesAsDouble());
        EXPECT_EQ(Vertices(primitives[2 + 2 * i]), tip->GetVertexCoordinatesAsDouble());
        EXPECT_TRUE(options[1 + 2 * i] == Expected(colors[i]));
        EXPECT_TRUE(options[2 + 2 * i] == Expected(colors[i]));
    }
}

TEST_F(GizmoScene, ThePivotMarkerIsAnUnselectableYellowMarkerPointWithoutDepthTest)
{
    Press(KEZVisGizmo::PartThirdShaft, KEZMathPoint(0, 0, 30));
    KEZVisVirtualObject *marker = Marker();
    ASSERT_NE(marker, nullptr);
    EXPECT_FALSE(marker->IsSelectable());
    EXPECT_TRUE(marker->IsVisible());
    EXPECT_TRUE(Near(marker->GetPosition().GetOrigin(), KEZMathPoint(0, 0, 30)));
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    marker->GetRep()->GetPrimitives(primitives, options);
    ASSERT_EQ(primitives.size(), 1);
    EXPECT_EQ(options[0].GetColor(), QColor(255, 255, 0, 255));
    EXPECT_EQ(options[0].GetPointSymbol(), KEZVisOptions::PointSymbolMarker);
    EXPECT_FALSE(options[0].IsDepthEnabled());
}

TEST_F(GizmoScene, TheDestructorResetsTheNativeSelectionTypeAndTakesEveryObjectOut)
{
    environment->SetNativeGeometrySelectionType(KEZVisMouseContext::FaceGeometrySelection);
    Press(KEZVisGizmo::PartFirstShaft, KEZMathPoint(20, 0, 0));
    gizmo.reset();
    EXPECT_EQ(environment->GetNativeGeometrySelectionType(), KEZVisMouseContext::NoGeometrySelection);
    EXPECT_TRUE(environment->GetVirtualObjects().isEmpty());
    // The parts live on, unowned.
    for (int part = 1; part <= 7; ++part)
        EXPECT_FALSE(parts[part].isNull());
}

TEST(Gizmo, DeletingTheEnvironmentFirstLetsTheGizmoDestroyCleanly)
{
    auto environment = std::make_unique<KEZVisEnvironment>();
    auto gizmo = std::make_unique<KEZVisGizmo>(environment.get());
    const QList<KEZVisVirtualObject *> parts = environment->GetVirtualObjects();
    environment.reset();
    gizmo->SetPosition(KEZMathAxis());
    EXPECT_TRUE(gizmo->IsVisible());
    gizmo.reset();
    qDeleteAll(parts);
}
