// Drawing, fitting, batches and bad geometry of the viewer widget.

#include "ViewerTestSupport.h"

#include <KEZVisEnvironmentBatchContext.h>
#include <KEZVisPolylinePrimitive.h>

#include <KEZMathVector.h>

#include <QElapsedTimer>
#include <QSignalSpy>

#include <limits>

using namespace ViewerTest;

namespace {

const QColor Red(200, 30, 30);
const QColor Green(30, 160, 60);
const QColor Blue(40, 60, 200);
const QColor Yellow(220, 200, 20);

bool Contains(const QImage &image, const QColor &color)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y) == color)
                return true;
    return false;
}

} // namespace

TEST_F(Viewer, DrawsAFaceFacingTheViewInItsOwnColourAndLeavesTheRestBackground)
{
    Add(Rectangle(-20, -20, 20, 20, Red));
    EXPECT_EQ(At(Pixel(0, 0)), Red);
    EXPECT_EQ(At(Pixel(50, 50)), SceneRenderer::BackgroundColor);
}

TEST_F(Viewer, ShadesAFaceSeenEdgeOnDarkerThanAFaceSeenFullOn)
{
    // A face tilted by 60 degrees about the y axis: |n . d| = cos 60 = 0.5,
    // so it is drawn at 0.35 + 0.65 * 0.5 = 0.675 of its colour.
    const double c = 0.5;
    const double s = std::sqrt(3.0) / 2.0;
    double *coords = new double[12]{-20 * c, -20, -20 * s, 20 * c, -20, 20 * s, 20 * c, 20, 20 * s, -20 * c, 20, -20 * s};
    int *triangles = new int[6]{0, 1, 2, 0, 2, 3};
    KEZVisOptions options;
    options.SetColor(QColor(200, 100, 40));
    Add(new KEZVisRepGraphics(QList<const KEZVisPrimitive *>{new KEZVisSurfacePrimitive(4, coords, 2, triangles, nullptr)},
                              options));
    EXPECT_EQ(At(Pixel(0, 0)), QColor(std::lround(200 * 0.675), std::lround(100 * 0.675), std::lround(40 * 0.675)));
}

TEST_F(Viewer, DrawsTheNearerOfTwoOverlappingFacesOnTop)
{
    Add(Rectangle(-20, -20, 20, 20, Red, 5.0));
    Add(Rectangle(-10, -10, 30, 30, Blue, -5.0)); // farther away, added later
    EXPECT_EQ(At(Pixel(0, 0)), Red);
    EXPECT_EQ(At(Pixel(25, 25)), Blue);
}

TEST_F(Viewer, DrawsAFaceWithDepthDisabledOverANearerOne)
{
    Add(Rectangle(-20, -20, 20, 20, Red, 5.0));
    KEZVisOptions options;
    options.SetColor(Blue);
    options.SetDepthEnabled(false);
    Add(Rectangle(-10, -10, 10, 10, options, -5.0));
    EXPECT_EQ(At(Pixel(0, 0)), Blue);
    EXPECT_EQ(At(Pixel(15, 15)), Red);
}

TEST_F(Viewer, DrawsTheHigherPriorityOfTwoFacesAtTheSameDepthOnTop)
{
    KEZVisOptions high;
    high.SetColor(Red);
    high.SetPriority(5);
    Add(Rectangle(-20, -20, 20, 20, high));
    Add(Rectangle(-20, -20, 20, 20, Blue)); // added later, default priority
    EXPECT_EQ(At(Pixel(0, 0)), Red);
}

TEST_F(Viewer, AFitRequestBringsEveryObjectInsideTheFrame)
{
    Add(Rectangle(1000, 500, 1040, 540, Red));
    Add(Rectangle(3000, 500, 3040, 540, Green));
    Add(Rectangle(1000, 2500, 1040, 2540, Blue));
    Add(Rectangle(3000, 2500, 3040, 2540, Yellow));
    const QImage before = Frame();
    EXPECT_FALSE(Contains(before, Red));
    environment.FitToObjects(environment.GetObjects());
    const QImage after = Frame();
    EXPECT_TRUE(Contains(after, Red));
    EXPECT_TRUE(Contains(after, Green));
    EXPECT_TRUE(Contains(after, Blue));
    EXPECT_TRUE(Contains(after, Yellow));
}

TEST_F(Viewer, AFitToABoxThatIsOnePointCentresItAndKeepsTheScale)
{
    Add(Rectangle(500, 500, 510, 510, Red));
    environment.FitToBoundingBox(KEZMathBoundingBox(KEZMathPoint(505, 505, 0)));
    // Still 1.8 pixels per unit: the 10-unit square is 18 pixels wide around the centre.
    EXPECT_EQ(At(QPoint(200 + 7, 200)), Red);
    EXPECT_EQ(At(QPoint(200 + 11, 200)), SceneRenderer::BackgroundColor);
}

TEST_F(Viewer, ABatchOfTenThousandAdditionsRepaintsOnce)
{
    QSignalSpy redraws(&widget->GetClient(), &SceneClient::RedrawNeeded);
    QCoreApplication::processEvents();
    const int framesBefore = widget->GetFrameCount();
    {
        KEZVisEnvironmentBatchContext batch(&environment);
        for (int n = 0; n < 10000; ++n)
            Add(Rectangle(n % 100 - 50, n / 100 - 50, n % 100 - 49.5, n / 100 - 49.5, Green));
        EXPECT_EQ(redraws.count(), 0);
        EXPECT_TRUE(widget->GetClient().IsInBatch());
    }
    EXPECT_EQ(redraws.count(), 1);
    QElapsedTimer waited;
    waited.start();
    while (widget->GetFrameCount() == framesBefore && waited.elapsed() < 5000)
        QTest::qWait(10);
    QTest::qWait(50);
    EXPECT_EQ(widget->GetFrameCount(), framesBefore + 1);
}

TEST_F(Viewer, AnAdditionOutsideABatchRedrawsAtOnce)
{
    QSignalSpy redraws(&widget->GetClient(), &SceneClient::RedrawNeeded);
    Add(Rectangle(-5, -5, 5, 5, Green));
    EXPECT_EQ(redraws.count(), 1);
}

TEST_F(Viewer, DrawsTheSelectedAndThePreselectedStatesInTheirOwnColours)
{
    KEZVisVirtualObject *object = Add(Rectangle(-20, -20, 20, 20, Red));
    environment.AddToSelection(object);
    EXPECT_EQ(At(Pixel(0, 0)), SceneRenderer::SelectedColor);
    environment.SetPreSelectedObjects({object});
    EXPECT_EQ(At(Pixel(0, 0)), SceneRenderer::PreselectedColor);
    EXPECT_NE(SceneRenderer::SelectedColor, SceneRenderer::PreselectedColor);
}

TEST_F(Viewer, AHiddenObjectIsNotDrawn)
{
    KEZVisVirtualObject *object = Add(Rectangle(-20, -20, 20, 20, Red));
    object->Hide();
    EXPECT_EQ(At(Pixel(0, 0)), SceneRenderer::BackgroundColor);
}

TEST_F(Viewer, AMovedObjectIsDrawnAtItsPosition)
{
    KEZVisVirtualObject *object = Add(Rectangle(-10, -10, 10, 10, Red));
    KEZMathAxis position;
    position.SetOrigin(KEZMathPoint(50, 0, 0));
    object->SetPosition(&position);
    EXPECT_EQ(At(Pixel(50, 0)), Red);
    EXPECT_EQ(At(Pixel(0, 0)), SceneRenderer::BackgroundColor);
}

TEST_F(Viewer, ALookFromBelowMirrorsTheSceneAndKeepsTheFit)
{
    Add(Rectangle(40, -10, 60, 10, Red));
    environment.SetViewDirection(KEZMathVector(0, 0, 1));
    EXPECT_EQ(At(Pixel(-50, 0)), Red);
    EXPECT_EQ(At(Pixel(50, 0)), SceneRenderer::BackgroundColor);
}

TEST_F(Viewer, TheWheelZoomsAtTheCursorAndKeepsThePointUnderIt)
{
    Add(Rectangle(40, -10, 60, 10, Red));
    // 25 pixels right of the square's centre lies 13.9 units away, outside it.
    EXPECT_EQ(At(Pixel(50, 0) + QPoint(25, 0)), SceneRenderer::BackgroundColor);
    for (int n = 0; n < 3; ++n) {
        QWheelEvent wheel(QPointF(Pixel(50, 0)), widget->mapToGlobal(QPointF(Pixel(50, 0))), QPoint(), QPoint(0, 120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(widget.get(), &wheel);
    }
    // Three steps of 1.2: 25 pixels are 25 / (1.8 * 1.728) = 8.0 units now, inside.
    EXPECT_EQ(At(Pixel(50, 0)), Red);
    EXPECT_EQ(At(Pixel(50, 0) + QPoint(25, 0)), Red);
}

TEST_F(Viewer, DrawsTheValidTrianglesOfAMeshWithNanAndInfiniteCoordinates)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    double *coords = new double[18]{-20, -20, 0, 20, -20, 0, 20, 20, 0, nan, 0, 0, 0, inf, 0, 50, 50, 0};
    int *triangles = new int[9]{0, 1, 2, 3, 4, 5, 0, 2, 9}; // the last two use a NaN vertex and an index out of range
    KEZVisOptions options;
    options.SetColor(Red);
    Add(new KEZVisRepGraphics(QList<const KEZVisPrimitive *>{new KEZVisSurfacePrimitive(6, coords, 3, triangles, nullptr)},
                              options));
    const SceneClient::Item *item = widget->GetClient().FindItem(objects.back().get());
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->triangles.size(), 1u);
    EXPECT_EQ(At(Pixel(10, -10)), Red);
}

TEST_F(Viewer, AFitToANonFiniteBoxLeavesTheViewAsItWas)
{
    Add(Rectangle(-20, -20, 20, 20, Red));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    environment.FitToBoundingBox(KEZMathBoundingBox(KEZMathPoint(nan, 0, 0), KEZMathPoint(1, 1, 1)));
    EXPECT_EQ(At(Pixel(0, 0)), Red);
    EXPECT_EQ(At(Pixel(19, 19)), Red);
    EXPECT_EQ(At(Pixel(22, 22)), SceneRenderer::BackgroundColor);
}

TEST_F(Viewer, AnObjectWithoutRepOrWithAnEmptyRepIsMirroredWithoutGeometry)
{
    KEZVisVirtualObject *bare = Add(nullptr);
    KEZVisVirtualObject *empty = Add(new KEZVisRepGraphics());
    for (KEZVisVirtualObject *object : {bare, empty}) {
        const SceneClient::Item *item = widget->GetClient().FindItem(object);
        ASSERT_NE(item, nullptr);
        EXPECT_FALSE(item->hasBox);
        EXPECT_TRUE(item->triangles.empty() && item->lines.empty() && item->points.empty());
    }
    environment.FitToObjects(environment.GetObjects());
    EXPECT_EQ(At(Pixel(0, 0)), SceneRenderer::BackgroundColor);
}

TEST_F(Viewer, DrawsAPointWhereItsZeroSizeBoxIs)
{
    KEZVisOptions options;
    options.SetColor(Green);
    Add(new KEZVisRepGraphics(QList<const KEZVisPrimitive *>{new KEZVisPointPrimitive(new double[3]{30, 30, 0}, 1)},
                              options));
    EXPECT_EQ(At(Pixel(30, 30)), Green);
}

TEST_F(Viewer, DrawsAPolylineInItsColour)
{
    KEZVisOptions options;
    options.SetColor(Blue);
    options.SetLineThickness(3.0);
    Add(new KEZVisRepGraphics(QList<const KEZVisPrimitive *>{new KEZVisPolylinePrimitive(
                                  new double[6]{-50, 20, 0, 50, 20, 0}, 2, KEZVisPolylinePrimitive::StructureConnected)},
                              options));
    EXPECT_EQ(At(Pixel(0, 20)), Blue);
    EXPECT_EQ(At(Pixel(0, 30)), SceneRenderer::BackgroundColor);
}

TEST_F(Viewer, AnOrientationRequestTurnsThatDirectionUpOnTheScreen)
{
    Add(Rectangle(40, -10, 60, 10, Red));
    environment.SetViewOrientation(KEZMathVector(1, 0, 0));
    // x now points up: the square right of the centre shows above it.
    EXPECT_EQ(At(Pixel(0, 50)), Red);
    EXPECT_EQ(At(Pixel(50, 0)), SceneRenderer::BackgroundColor);
}

TEST_F(Viewer, ARemovedObjectIsNoLongerDrawnOrMirrored)
{
    KEZVisVirtualObject *object = Add(Rectangle(-20, -20, 20, 20, Red));
    environment.RemoveVirtualObject(object);
    EXPECT_EQ(widget->GetClient().FindItem(object), nullptr);
    EXPECT_EQ(At(Pixel(0, 0)), SceneRenderer::BackgroundColor);
}

TEST_F(Viewer, AnObjectListedTwiceIsMirroredOnce)
{
    KEZVisVirtualObject *object = Add(Rectangle(-20, -20, 20, 20, Red));
    environment.AddVirtualObject(object);
    EXPECT_EQ(widget->GetClient().GetItems().size(), 1u);
}

TEST_F(Viewer, ANewRepIsDrawnInPlaceOfTheOldOne)
{
    KEZVisVirtualObject *object = Add(Rectangle(-20, -20, 20, 20, Red));
    object->SetRep(Rectangle(30, 30, 50, 50, Blue));
    EXPECT_EQ(At(Pixel(0, 0)), SceneRenderer::BackgroundColor);
    EXPECT_EQ(At(Pixel(40, 40)), Blue);
}

TEST_F(Viewer, NestedBatchesRedrawOnceAtTheEndOfTheOutermost)
{
    QSignalSpy redraws(&widget->GetClient(), &SceneClient::RedrawNeeded);
    {
        KEZVisEnvironmentBatchContext outer(&environment);
        {
            KEZVisEnvironmentBatchContext inner(&environment);
            Add(Rectangle(-5, -5, 5, 5, Green));
        }
        Add(Rectangle(10, 10, 15, 15, Green));
        EXPECT_EQ(redraws.count(), 0);
    }
    EXPECT_EQ(redraws.count(), 1);
}

TEST_F(Viewer, AnAttachedClientMirrorsTheObjectsThatWereThereBefore)
{
    Add(Rectangle(-20, -20, 20, 20, Red));
    Add(Rectangle(30, 30, 50, 50, Blue));
    ViewerWidget second;
    second.resize(400, 400);
    second.SetEnvironment(&environment);
    EXPECT_EQ(second.GetClient().GetItems().size(), 2u);
}

namespace {

KEZVisRep *HorizontalLine(double y, const KEZVisOptions &options)
{
    return new KEZVisRepGraphics(QList<const KEZVisPrimitive *>{new KEZVisPolylinePrimitive(
                                     new double[6]{-50, y, 0, 50, y, 0}, 2, KEZVisPolylinePrimitive::StructureConnected)},
                                 options);
}

// The pixels of the row of the line from x = -40 to 40 that show the background.
int GapsAlong(const QImage &image, double y)
{
    int gaps = 0;
    for (int x = Pixel(-40, y).x(); x <= Pixel(40, y).x(); ++x)
        gaps += image.pixelColor(x, Pixel(0, y).y()) == SceneRenderer::BackgroundColor ? 1 : 0;
    return gaps;
}

} // namespace

TEST_F(Viewer, DrawsADashedLineWithGapsAndASolidOneWithout)
{
    KEZVisOptions solid;
    solid.SetColor(Blue);
    KEZVisOptions dashed = solid;
    dashed.SetLineStyle(KEZVisOptions::LineStyleDash);
    Add(HorizontalLine(20, solid));
    Add(HorizontalLine(-20, dashed));
    const QImage frame = Frame();
    EXPECT_EQ(GapsAlong(frame, 20), 0);
    // Dashes of 3 and gaps of 2 pen widths: two fifths of the row is gap.
    const int length = Pixel(40, 0).x() - Pixel(-40, 0).x() + 1;
    EXPECT_NEAR(GapsAlong(frame, -20), length * 2 / 5, 4);
}

TEST_F(Viewer, DrawsAThickLineWiderThanAThinOne)
{
    KEZVisOptions thin;
    thin.SetColor(Blue);
    KEZVisOptions thick = thin;
    thick.SetLineThickness(7.0);
    Add(HorizontalLine(20, thin));
    Add(HorizontalLine(-20, thick));
    EXPECT_EQ(At(Pixel(0, 20) + QPoint(0, 3)), SceneRenderer::BackgroundColor);
    EXPECT_EQ(At(Pixel(0, -20) + QPoint(0, 3)), Blue);
}
