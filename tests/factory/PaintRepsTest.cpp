// What KEZVisRepFactory's 2D painter hands to a QPainter: the order by
// priority, the pens, the draw calls per primitive, text placement and the
// fills of extra sets, recorded by a paint engine of the test's own.

#include "PaintingTestSupport.h"
#include "RecordingPaintDevice.h"

#include "KEZVisPointPrimitive.h"
#include "KEZVisPolygonPrimitive.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisPrismPrimitive.h"
#include "KEZVisPyramidPrimitive.h"
#include "KEZVisRepExtraSet.h"
#include "KEZVisRepFactory.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisRepSet.h"
#include "KEZVisRepTransformedGraphics.h"
#include "KEZVisSurfacePrimitive.h"
#include "KEZVisTextPrimitive.h"
#include "KEZVisTransform.h"

#include <KEZMathPlane.h>

#include <QDebug>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <memory>

using namespace KEZPaintTest;

namespace {

const KEZVisPolylinePrimitive::Structure Separate = KEZVisPolylinePrimitive::StructureSeparateSegments;
const KEZVisPolylinePrimitive::Structure Connected = KEZVisPolylinePrimitive::StructureConnected;

// Paints \a reps with PaintReps on the default plane into a recording device,
// under \a transform, and gives the calls that reached the engine.
QList<RecordedDrawCall> PaintFlat(const QList<const KEZVisRep *> &reps, const QTransform &transform = QTransform())
{
    RecordingPaintDevice device;
    QPainter painter(&device);
    painter.setWorldTransform(transform);
    KEZVisRepFactory::PaintReps(KEZMathPlane(), &painter, reps);
    painter.end();
    return device.Calls();
}

QList<RecordedDrawCall> PaintTree(const QList<const KEZVisRep *> &reps)
{
    RecordingPaintDevice device;
    QPainter painter(&device);
    KEZVisRepFactory::PaintRepsRecursively(KEZMathPlane(), &painter, reps);
    painter.end();
    return device.Calls();
}

// A short horizontal segment, drawn as one line, in the colour given.
void AddMarkedSegment(RepList &reps, const QColor &color, int priority)
{
    reps.AddPolyline(PointsOf({0, 0, 0, 1, 0, 0}), Separate, Options(color, priority));
}

QColor ColorNumber(int n)
{
    return QColor(n % 256, n / 256, 7);
}

int NumberOfColor(const QColor &color)
{
    return color.red() + 256 * color.green();
}

QString DebugTextOf(const QColor &color)
{
    QString text;
    QDebug(&text).nospace().noquote() << color;
    return text;
}

} // namespace

// ---------------------------------------------------------------------------
// Order

TEST(PaintReps, PaintsALowerPriorityFirstSoThatAHigherOneLandsOnTop)
{
    RepList reps;
    AddMarkedSegment(reps, ColorNumber(0), 5);
    AddMarkedSegment(reps, ColorNumber(1), 1);
    AddMarkedSegment(reps, ColorNumber(2), 3);
    const QList<RecordedDrawCall> calls = PaintFlat(reps.List());
    ASSERT_EQ(calls.size(), 3);
    EXPECT_EQ(NumberOfColor(calls[0].pen.color()), 1);
    EXPECT_EQ(NumberOfColor(calls[1].pen.color()), 2);
    EXPECT_EQ(NumberOfColor(calls[2].pen.color()), 0);
}

TEST(PaintReps, ThreeEqualPrioritiesSwapTheFirstAndTheLast)
{
    RepList reps;
    for (int n = 0; n < 3; ++n)
        AddMarkedSegment(reps, ColorNumber(n), 1);
    const QList<RecordedDrawCall> calls = PaintFlat(reps.List());
    ASSERT_EQ(calls.size(), 3);
    EXPECT_EQ(NumberOfColor(calls[0].pen.color()), 2);
    EXPECT_EQ(NumberOfColor(calls[1].pen.color()), 1);
    EXPECT_EQ(NumberOfColor(calls[2].pen.color()), 0);
}

TEST(PaintReps, OrdersTiesExactlyAsTheDocumentedQuicksortDoes)
{
    QRandomGenerator random(20261125);
    for (int round = 0; round < 20; ++round) {
        const int count = 1 + random.bounded(80);
        QList<int> priorities;
        RepList reps;
        for (int n = 0; n < count; ++n) {
            priorities.append(random.bounded(4) - 1);
            AddMarkedSegment(reps, ColorNumber(n), priorities.last());
        }
        const QList<int> expected = PaintOrderOf(priorities);
        const QList<RecordedDrawCall> calls = PaintFlat(reps.List());
        ASSERT_EQ(calls.size(), count);
        for (int n = 0; n < count; ++n)
            EXPECT_EQ(NumberOfColor(calls[n].pen.color()), expected[n]) << "round " << round << " position " << n;
    }
}

TEST(PaintReps, SortsAllPrimitivesOfAllRepsTogether)
{
    RepList reps;
    QList<const KEZVisPrimitive *> primitives{
        new KEZVisPolylinePrimitive(PointsOf({0, 0, 0, 1, 0, 0}), Separate),
        new KEZVisPolylinePrimitive(PointsOf({0, 0, 0, 2, 0, 0}), Separate)};
    reps.Add(new KEZVisRepGraphics(primitives, QList<KEZVisOptions>{Options(ColorNumber(0), 4), Options(ColorNumber(1), 2)}));
    AddMarkedSegment(reps, ColorNumber(2), 3);
    const QList<RecordedDrawCall> calls = PaintFlat(reps.List());
    ASSERT_EQ(calls.size(), 3);
    EXPECT_EQ(NumberOfColor(calls[0].pen.color()), 1);
    EXPECT_EQ(NumberOfColor(calls[1].pen.color()), 2);
    EXPECT_EQ(NumberOfColor(calls[2].pen.color()), 0);
}

TEST(PaintReps, SkipsNullReps)
{
    RepList reps;
    reps.AddNull();
    AddMarkedSegment(reps, ColorNumber(4), 0);
    reps.AddNull();
    const QList<RecordedDrawCall> calls = PaintFlat(reps.List());
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(NumberOfColor(calls[0].pen.color()), 4);
}

// ---------------------------------------------------------------------------
// Pens

TEST(PaintReps, GivesEachLineStyleItsDashPattern)
{
    const QList<QList<qreal>> table{{},
                                    {3, 2},
                                    {1, 2},
                                    {3, 2, 1, 2},
                                    {5, 1, 3, 1},
                                    {3, 2, 1, 2, 1, 2},
                                    {3, 2, 1, 2, 1, 2, 1, 2},
                                    {3, 2, 3, 2, 1, 2, 1, 2},
                                    {5, 1, 5, 1, 3, 1},
                                    {3, 2, 3, 2, 1, 2, 1, 2, 1, 2},
                                    {7, 2, 1, 2},
                                    {7, 2, 1, 2, 1, 2},
                                    {7, 2, 1, 2, 1, 2, 1, 2}};
    for (int style = 1; style <= 12; ++style) {
        RepList reps;
        reps.AddPolyline(PointsOf({0, 0, 0, 1, 0, 0}), Separate, Options(Qt::red, 0, style));
        const QList<RecordedDrawCall> calls = PaintFlat(reps.List());
        ASSERT_EQ(calls.size(), 1);
        EXPECT_EQ(calls[0].pen.style(), Qt::CustomDashLine) << "style " << style;
        EXPECT_EQ(calls[0].pen.dashPattern(), table[style]) << "style " << style;
    }
}

TEST(PaintReps, DrawsStyleZeroAndEveryStyleAboveTwelveSolid)
{
    for (int style : {0, 13, 14, 100}) {
        RepList reps;
        reps.AddPolyline(PointsOf({0, 0, 0, 1, 0, 0}), Separate, Options(Qt::red, 0, style));
        const QList<RecordedDrawCall> calls = PaintFlat(reps.List());
        ASSERT_EQ(calls.size(), 1);
        EXPECT_EQ(calls[0].pen.style(), Qt::SolidLine) << "style " << style;
        EXPECT_TRUE(calls[0].pen.dashPattern().isEmpty()) << "style " << style;
    }
}

TEST(PaintReps, MakesThePenWidthTheThicknessOverTheUnitScale)
{
    RepList reps;
    reps.AddPolyline(PointsOf({0, 0, 0, 1, 0, 0}), Separate, Options(Qt::red, 0, 0, 2.0));
    const QList<RecordedDrawCall> calls = PaintFlat(reps.List(), QTransform::fromScale(10, 10));
    ASSERT_EQ(calls.size(), 1);
    EXPECT_DOUBLE_EQ(calls[0].pen.widthF(), 0.2);
}

TEST(PaintReps, TakesTheUnitScaleFromTheImageOfTheUnitXStep)
{
    // A rotation does not change the length of the unit step, a scale of 4
    // in x and 9 in y gives 4.
    RepList reps;
    reps.AddPolyline(PointsOf({0, 0, 0, 1, 0, 0}), Separate, Options(Qt::red, 0, 0, 2.0));
    QTransform transform;
    transform.rotate(30).scale(4, 9);
    const QList<RecordedDrawCall> calls = PaintFlat(reps.List(), transform);
    ASSERT_EQ(calls.size(), 1);
    EXPECT_NEAR(calls[0].pen.widthF(), 0.5, 1e-12);
}

TEST(PaintReps, UsesANonCosmeticPenEvenWhenTheCallersPenIsCosmetic)
{
    RepList reps;
    reps.AddPolyline(PointsOf({0, 0, 0, 1, 0, 0}), Separate, Options(Qt::red));
    RecordingPaintDevice device;
    QPainter painter(&device);
    QPen cosmetic(Qt::blue);
    cosmetic.setCosmetic(true);
    painter.setPen(cosmetic);
    KEZVisRepFactory::PaintReps(KEZMathPlane(), &painter, reps.List());
    painter.end();
    ASSERT_EQ(device.Calls().size(), 1);
    EXPECT_FALSE(device.Calls()[0].pen.isCosmetic());
}

TEST(PaintReps, PutsTheColourOnThePensBrushAndLeavesThePaintersBrush)
{
    RepList reps;
    reps.AddPolyline(PointsOf({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 0, 0}), Connected, Options(QColor(10, 20, 30)));
    RecordingPaintDevice device;
    QPainter painter(&device);
    painter.setBrush(QBrush(Qt::green, Qt::Dense3Pattern));
    KEZVisRepFactory::PaintReps(KEZMathPlane(), &painter, reps.List());
    painter.end();
    ASSERT_EQ(device.Calls().size(), 1);
    EXPECT_EQ(device.Calls()[0].pen.brush().color(), QColor(10, 20, 30));
    EXPECT_EQ(device.Calls()[0].pen.color(), QColor(10, 20, 30));
    EXPECT_EQ(device.Calls()[0].brush.color(), QColor(Qt::green));
    EXPECT_EQ(device.Calls()[0].brush.style(), Qt::Dense3Pattern);
}

TEST(PaintReps, SetsTheOptionsFontOnThePainter)
{
    QFont font(QStringLiteral("DejaVu Sans"), 31);
    KEZVisOptions options = Options(Qt::red);
    options.SetFont(font);
    RepList reps;
    reps.AddPrimitive(new KEZVisTextPrimitive(QStringLiteral("A"), KEZMathPoint(10, 10, 0),
                                              KEZVisTextPrimitive::AnchorCenter, KEZVisTextPrimitive::ScalabilityFixedSize),
                      options);
    const QList<RecordedDrawCall> calls = PaintFlat(reps.List());
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].font.pointSize(), 31);
}

TEST(PaintReps, LeavesTheCallersPenFontAndBrushAsTheyWere)
{
    RepList reps;
    reps.AddPolyline(PointsOf({0, 0, 0, 1, 0, 0}), Separate, Options(Qt::red, 0, 3, 7.0));
    RecordingPaintDevice device;
    QPainter painter(&device);
    const QPen pen(QBrush(Qt::blue), 3.5, Qt::DotLine);
    const QFont font(QStringLiteral("DejaVu Serif"), 17);
    const QBrush brush(Qt::yellow, Qt::CrossPattern);
    painter.setPen(pen);
    painter.setFont(font);
    painter.setBrush(brush);
    KEZVisRepFactory::PaintReps(KEZMathPlane(), &painter, reps.List());
    EXPECT_EQ(painter.pen(), pen);
    EXPECT_EQ(painter.font(), font);
    EXPECT_EQ(painter.brush(), brush);
    painter.end();
}

// ---------------------------------------------------------------------------
// Draw calls by primitive

TEST(PaintReps, DrawsAPointPrimitiveOnceForEachPointAllAtItsFirstPoint)
{
    RepList reps;
    reps.AddPrimitive(new KEZVisPointPrimitive(PointsOf({1, 2, 0, 5, 6, 0, 9, 9, 0})), Options(Qt::red));
    const QList<RecordedDrawCall> calls = PaintFlat(reps.List());
    ASSERT_EQ(calls.size(), 3);
    for (const RecordedDrawCall &call : calls) {
        EXPECT_EQ(call.kind, RecordedDrawCall::Points);
        EXPECT_EQ(call.points, QList<QPointF>{QPointF(1, 2)});
    }
}

TEST(PaintReps, DrawsNothingForAPointPrimitiveWithoutPoints)
{
    RepList reps;
    reps.AddPrimitive(new KEZVisPointPrimitive(KEZMathSetOfPoints()), Options(Qt::red));
    EXPECT_TRUE(PaintFlat(reps.List()).isEmpty());
}

TEST(PaintReps, DrawsFivePointsOfSeparateSegmentsAsTwoLinesOneCallEach)
{
    RepList reps;
    reps.AddPolyline(PointsOf({0, 0, 0, 1, 0, 0, 2, 0, 0, 3, 1, 0, 4, 4, 0}), Separate, Options(Qt::red));
    const QList<RecordedDrawCall> calls = PaintFlat(reps.List());
    ASSERT_EQ(calls.size(), 2);
    EXPECT_EQ(calls[0].kind, RecordedDrawCall::Lines);
    EXPECT_EQ(calls[0].lines, QList<QLineF>{QLineF(0, 0, 1, 0)});
    EXPECT_EQ(calls[1].lines, QList<QLineF>{QLineF(2, 0, 3, 1)});
}

TEST(PaintReps, SkipsASegmentWhoseEndsAreEqual)
{
    RepList reps;
    reps.AddPolyline(PointsOf({0, 0, 0, 1, 0, 0, 2, 2, 2, 2, 2, 2, 5, 0, 0, 6, 0, 0}), Separate, Options(Qt::red));
    const QList<RecordedDrawCall> calls = PaintFlat(reps.List());
    ASSERT_EQ(calls.size(), 2);
    EXPECT_EQ(calls[0].lines, QList<QLineF>{QLineF(0, 0, 1, 0)});
    EXPECT_EQ(calls[1].lines, QList<QLineF>{QLineF(5, 0, 6, 0)});
}

TEST(PaintReps, DrawsNothingForSeparateSegmentsOfFewerThanTwoPoints)
{
    RepList reps;
    reps.AddPolyline(PointsOf({1, 1, 0}), Separate, Options(Qt::red));
    reps.AddPolyline(KEZMathSetOfPoints(), Separate, Options(Qt::red));
    EXPECT_TRUE(PaintFlat(reps.List()).isEmpty());
}

TEST(PaintReps, DrawsAnOpenConnectedLineAsOnePolyline)
{
    RepList reps;
    reps.AddPolyline(PointsOf({0, 0, 0, 1, 0, 0, 1, 1, 0, 0.002, 0, 0}), Connected, Options(Qt::red));
    const QList<RecordedDrawCall> calls = PaintFlat(reps.List());
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].kind, RecordedDrawCall::Polyline);
    EXPECT_EQ(calls[0].points, (QList<QPointF>{{0, 0}, {1, 0}, {1, 1}, {0.002, 0}}));
}

TEST(PaintReps, DrawsALineClosedWithinAThousandthAsAnOddEvenPolygon)
{
    RepList reps;
    reps.AddPolyline(PointsOf({0, 0, 0, 1, 0, 0, 1, 1, 0, 0.0005, 0.0005, 0}), Connected, Options(Qt::red));
    const QList<RecordedDrawCall> calls = PaintFlat(reps.List());
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].kind, RecordedDrawCall::Polygon);
    EXPECT_EQ(calls[0].fillRule, Qt::OddEvenFill);
    EXPECT_EQ(calls[0].points.size(), 4);
}

TEST(PaintReps, JudgesClosureInTheTwoDimensionsOfThePlane)
{
    // The last point lies 5 above the first in z, which the plane drops.
    RepList reps;
    reps.AddPolyline(PointsOf({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 0, 5}), Connected, Options(Qt::red));
    const QList<RecordedDrawCall> calls = PaintFlat(reps.List());
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].kind, RecordedDrawCall::Polygon);
}

TEST(PaintReps, ProjectsPointsOntoThePlane)
{
    KEZMathPlane plane;
    plane.SetOrigin(KEZMathPoint(1, 1, 1));
    plane.SetDirections(KEZMathVector(0, 1, 0), KEZMathVector(0, 0, 1));
    RepList reps;
    reps.AddPolyline(PointsOf({5, 3, 4, 7, 2, 9}), Separate, Options(Qt::red));
    RecordingPaintDevice device;
    QPainter painter(&device);
    KEZVisRepFactory::PaintReps(plane, &painter, reps.List());
    painter.end();
    ASSERT_EQ(device.Calls().size(), 1);
    EXPECT_EQ(device.Calls()[0].lines, QList<QLineF>{QLineF(2, 3, 1, 8)});
}

TEST(PaintReps, PaintsNothingForASurfaceOfAnyKind)
{
    RepList reps;
    reps.AddPrimitive(new KEZVisSurfacePrimitive(3, new double[9]{0, 0, 0, 1, 0, 0, 0, 1, 0}, 1, new int[3]{0, 1, 2},
                                                 nullptr),
                      Options(Qt::red));
    reps.AddPrimitive(new KEZVisPolygonPrimitive(KEZMathPoint(0, 0, 0), KEZMathVector(0, 0, 1), 2.0, 6), Options(Qt::red));
    reps.AddPrimitive(new KEZVisPrismPrimitive(KEZMathPoint(0, 0, 0), KEZMathVector(0, 0, 1), 2.0, 3.0, 6), Options(Qt::red));
    reps.AddPrimitive(new KEZVisPyramidPrimitive(KEZMathPoint(0, 0, 0), KEZMathVector(0, 0, 1), 2.0, 3.0, 6),
                      Options(Qt::red));
    reps.Add(KEZVisRepFactory::CreateSphereRep(KEZMathPoint(0, 0, 0), 3.0, 8, Options(Qt::red)));
    EXPECT_TRUE(PaintFlat(reps.List()).isEmpty());
}

TEST(PaintReps, SavesAndRestoresThePainterAroundEveryPrimitive)
{
    // Each primitive starts from the caller's pen: a dashed style of the
    // first does not reach the second, whose style is solid.
    RepList reps;
    reps.AddPolyline(PointsOf({0, 0, 0, 1, 0, 0}), Separate, Options(Qt::red, 0, 1));
    reps.AddPolyline(PointsOf({0, 0, 0, 1, 0, 0}), Separate, Options(Qt::blue, 1, 0));
    const QList<RecordedDrawCall> calls = PaintFlat(reps.List());
    ASSERT_EQ(calls.size(), 2);
    EXPECT_EQ(calls[0].pen.style(), Qt::CustomDashLine);
    EXPECT_EQ(calls[1].pen.style(), Qt::SolidLine);
}

TEST(PaintReps, PaintsATransformedGraphicsRepWithoutItsTransforms)
{
    KEZVisTransform transform;
    transform.SetPixelScale(40.0);
    QList<KEZVisOptions> options{Options(Qt::red, 0, 2, 3.0)};
    QList<KEZVisTransform> transforms{transform};
    RepList plain;
    plain.AddPolyline(PointsOf({0, 0, 0, 3, 4, 0}), Separate, Options(Qt::red, 0, 2, 3.0));
    RepList transformed;
    transformed.Add(new KEZVisRepTransformedGraphics(
        QList<const KEZVisPrimitive *>{new KEZVisPolylinePrimitive(PointsOf({0, 0, 0, 3, 4, 0}), Separate)},
        options, transforms));
    const QList<RecordedDrawCall> expected = PaintFlat(plain.List(), QTransform::fromScale(2, 2));
    const QList<RecordedDrawCall> actual = PaintFlat(transformed.List(), QTransform::fromScale(2, 2));
    ASSERT_EQ(actual.size(), 1);
    ASSERT_EQ(expected.size(), 1);
    EXPECT_EQ(actual[0].lines, expected[0].lines);
    EXPECT_EQ(actual[0].pen, expected[0].pen);
}

// ---------------------------------------------------------------------------
// Text

namespace {

// The rectangle of \a text in \a font placed at \a pt by anchor location
// \a location, as the painter's table says.
QRect ExpectedTextRect(const QFont &font, const QString &text, const QPoint &pt, int location)
{
    QRect rect = QFontMetrics(font).boundingRect(text);
    switch (location) {
    case 0: rect.moveBottomLeft(pt); break;
    case 1: rect.moveCenter(pt); rect.moveLeft(pt.x()); break;
    case 2: rect.moveTopLeft(pt); break;
    case 3: rect.moveCenter(pt); rect.moveBottom(pt.y()); break;
    case 4: rect.moveCenter(pt); break;
    case 5: rect.moveCenter(pt); rect.moveTop(pt.y()); break;
    case 6: rect.moveBottomRight(pt); break;
    case 7: rect.moveCenter(pt); rect.moveRight(pt.x()); break;
    case 8: rect.moveTopRight(pt); break;
    default: break;
    }
    return rect;
}

KEZVisOptions TextOptions()
{
    KEZVisOptions options = Options(Qt::black);
    options.SetFont(QFont(QStringLiteral("DejaVu Sans"), 20));
    return options;
}

// Paints one text primitive at (40.7, 30.2) with \a location on a page whose
// y runs up, and gives the recorded calls and the font the painter used.
QList<RecordedDrawCall> PaintTextOnYUpPage(int location, QFont &usedFont)
{
    RepList reps;
    reps.AddPrimitive(new KEZVisTextPrimitive(QStringLiteral("Hg"), KEZMathPoint(40.7, 30.2, 0),
                                              static_cast<KEZVisTextPrimitive::AnchorLocation>(location),
                                              KEZVisTextPrimitive::ScalabilityFixedSize),
                      TextOptions());
    RecordingPaintDevice device;
    QPainter painter(&device);
    painter.setWorldTransform(QTransform(1, 0, 0, -1, 0, 300));
    painter.setFont(TextOptions().GetFont());
    usedFont = painter.font();
    KEZVisRepFactory::PaintReps(KEZMathPlane(), &painter, reps.List());
    painter.end();
    return device.Calls();
}

} // namespace

TEST(PaintReps, PlacesTextByEachAnchorLocationOfTheTable)
{
    for (int location = 0; location <= 8; ++location) {
        QFont font;
        const QList<RecordedDrawCall> calls = PaintTextOnYUpPage(location, font);
        ASSERT_EQ(calls.size(), 1) << "location " << location;
        EXPECT_EQ(calls[0].kind, RecordedDrawCall::Pixmap);
        EXPECT_EQ(calls[0].target, QRectF(ExpectedTextRect(font, QStringLiteral("Hg"), QPoint(40, 30), location)))
            << "location " << location;
    }
}

TEST(PaintReps, LeavesTheTextRectWhereFontMetricsPutItForALocationOutsideTheTable)
{
    for (int location : {-1, 9, 42}) {
        QFont font;
        const QList<RecordedDrawCall> calls = PaintTextOnYUpPage(location, font);
        ASSERT_EQ(calls.size(), 1) << "location " << location;
        EXPECT_EQ(calls[0].target, QRectF(QFontMetrics(font).boundingRect(QStringLiteral("Hg"))))
            << "location " << location;
    }
}

TEST(PaintReps, DrawsTextDirectlyIntoItsRectWhereYRunsDown)
{
    RepList reps;
    reps.AddPrimitive(new KEZVisTextPrimitive(QStringLiteral("Hg"), KEZMathPoint(40.7, 30.2, 0),
                                              KEZVisTextPrimitive::AnchorTopLeft, KEZVisTextPrimitive::ScalabilityFixedSize),
                      TextOptions());
    RecordingPaintDevice device;
    QPainter painter(&device);
    painter.setFont(TextOptions().GetFont());
    const QFont font = painter.font();
    KEZVisRepFactory::PaintReps(KEZMathPlane(), &painter, reps.List());
    painter.end();
    ASSERT_EQ(device.Calls().size(), 1);
    EXPECT_EQ(device.Calls()[0].kind, RecordedDrawCall::Text);
    EXPECT_EQ(device.Calls()[0].text, QStringLiteral("Hg"));
    // Flags 0 put the text at the top left of its rect: its baseline lies an
    // ascent below the rect's top.
    const QRect rect = ExpectedTextRect(font, QStringLiteral("Hg"), QPoint(40, 30), 2);
    EXPECT_EQ(device.Calls()[0].textPosition.x(), rect.left());
    EXPECT_EQ(device.Calls()[0].textPosition.y(), rect.top() + QFontMetricsF(font).ascent());
}

TEST(PaintReps, DrawsTextUprightOnAPageWhoseYRunsUp)
{
    // An upright "T" has its bar at the top: in a y-up page drawn into an
    // image, the rows of most ink are the first rows of the glyph's ink.
    RepList reps;
    KEZVisOptions options = Options(Qt::black);
    options.SetFont(QFont(QStringLiteral("DejaVu Sans"), 40));
    reps.AddPrimitive(new KEZVisTextPrimitive(QStringLiteral("T"), KEZMathPoint(50, 50, 0),
                                              KEZVisTextPrimitive::AnchorCenter, KEZVisTextPrimitive::ScalabilityFixedSize),
                      options);
    QImage image(100, 100, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setWorldTransform(QTransform(1, 0, 0, -1, 0, 100));
    KEZVisRepFactory::PaintReps(KEZMathPlane(), &painter, reps.List());
    painter.end();

    int top = -1, bottom = -1, fullestRow = -1, fullest = 0;
    for (int y = 0; y < image.height(); ++y) {
        int ink = 0;
        for (int x = 0; x < image.width(); ++x)
            ink += qAlpha(image.pixel(x, y)) > 128 ? 1 : 0;
        if (ink > 0) {
            bottom = y;
            if (top < 0)
                top = y;
        }
        if (ink > fullest) {
            fullest = ink;
            fullestRow = y;
        }
    }
    ASSERT_GE(top, 0) << "no text was drawn";
    EXPECT_LT(fullestRow - top, (bottom - top) / 4);
}

TEST(PaintReps, DrawsNothingForAnEmptyTextOnAPageWhoseYRunsUp)
{
    RepList reps;
    reps.AddPrimitive(new KEZVisTextPrimitive(QString(), KEZMathPoint(5, 5, 0), KEZVisTextPrimitive::AnchorCenter,
                                              KEZVisTextPrimitive::ScalabilityFixedSize),
                      TextOptions());
    EXPECT_TRUE(PaintFlat(reps.List(), QTransform::fromScale(1, -1)).isEmpty());
}

// ---------------------------------------------------------------------------
// Extra sets and the tree

namespace {

// A closed triangle, which takes the painter's brush.
KEZVisRep *ClosedTriangle(const QColor &color, int priority = 0)
{
    return new KEZVisRepGraphics(
        QList<const KEZVisPrimitive *>{new KEZVisPolylinePrimitive(PointsOf({0, 0, 0, 4, 0, 0, 0, 4, 0, 0, 0, 0}),
                                                                   KEZVisPolylinePrimitive::StructureConnected)},
        Options(color, priority));
}

} // namespace

TEST(PaintRepsRecursively, FillsClosedLinesBelowAnExtraSetWithItsSolidColour)
{
    RepList reps;
    reps.Add(new KEZVisRepExtraSet(QList<const KEZVisRep *>{ClosedTriangle(Qt::black)}, Options(QColor(1, 2, 3))));
    const QList<RecordedDrawCall> calls = PaintTree(reps.List());
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].kind, RecordedDrawCall::Polygon);
    EXPECT_EQ(calls[0].brush.color(), QColor(1, 2, 3));
    EXPECT_EQ(calls[0].brush.style(), Qt::SolidPattern);
}

TEST(PaintRepsRecursively, LetsASetInsideAnExtraSetInheritItsFill)
{
    RepList reps;
    auto *inner = new KEZVisRepSet(QList<const KEZVisRep *>{ClosedTriangle(Qt::black)});
    reps.Add(new KEZVisRepExtraSet(QList<const KEZVisRep *>{inner}, Options(QColor(1, 2, 3))));
    const QList<RecordedDrawCall> calls = PaintTree(reps.List());
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].brush.color(), QColor(1, 2, 3));
}

TEST(PaintRepsRecursively, LetsAnInnerExtraSetReplaceTheFillUntilItIsDone)
{
    RepList reps;
    auto *inner = new KEZVisRepExtraSet(QList<const KEZVisRep *>{ClosedTriangle(Qt::black)}, Options(QColor(9, 9, 9)));
    reps.Add(new KEZVisRepExtraSet(QList<const KEZVisRep *>{ClosedTriangle(Qt::black), inner, ClosedTriangle(Qt::black)},
                                   Options(QColor(1, 2, 3))));
    const QList<RecordedDrawCall> calls = PaintTree(reps.List());
    ASSERT_EQ(calls.size(), 3);
    EXPECT_EQ(calls[0].brush.color(), QColor(1, 2, 3));
    EXPECT_EQ(calls[1].brush.color(), QColor(9, 9, 9));
    EXPECT_EQ(calls[2].brush.color(), QColor(1, 2, 3));
}

TEST(PaintRepsRecursively, LeavesTheBrushAsItIsForAPlainSet)
{
    RepList reps;
    reps.Add(new KEZVisRepSet(QList<const KEZVisRep *>{ClosedTriangle(Qt::black)}));
    RecordingPaintDevice device;
    QPainter painter(&device);
    painter.setBrush(QBrush(Qt::cyan, Qt::Dense5Pattern));
    KEZVisRepFactory::PaintRepsRecursively(KEZMathPlane(), &painter, reps.List());
    painter.end();
    ASSERT_EQ(device.Calls().size(), 1);
    EXPECT_EQ(device.Calls()[0].brush.color(), QColor(Qt::cyan));
    EXPECT_EQ(device.Calls()[0].brush.style(), Qt::Dense5Pattern);
}

TEST(PaintRepsRecursively, OrdersByPriorityOnlyWithinEachLeaf)
{
    // Painted flat, priority 1 would come first; leaf by leaf, list order wins.
    RepList reps;
    reps.Add(ClosedTriangle(ColorNumber(0), 5));
    reps.Add(ClosedTriangle(ColorNumber(1), 1));
    const QList<RecordedDrawCall> calls = PaintTree(reps.List());
    ASSERT_EQ(calls.size(), 2);
    EXPECT_EQ(NumberOfColor(calls[0].pen.color()), 0);
    EXPECT_EQ(NumberOfColor(calls[1].pen.color()), 1);
}

TEST(PaintRepsRecursively, SkipsNullRepsAtEveryLevel)
{
    RepList reps;
    reps.AddNull();
    reps.Add(new KEZVisRepSet(QList<const KEZVisRep *>{nullptr, ClosedTriangle(Qt::black)}));
    EXPECT_EQ(PaintTree(reps.List()).size(), 1);
}

// ---------------------------------------------------------------------------
// The debug log

TEST(PaintReps, WritesOneBrushLineWithThePaintersBrushColourPerPrimitive)
{
    MessageCapture capture;
    RepList reps;
    AddMarkedSegment(reps, Qt::red, 0);
    reps.AddPrimitive(new KEZVisPointPrimitive(PointsOf({1, 1, 1})), Options(Qt::blue));
    reps.AddPrimitive(new KEZVisPolygonPrimitive(KEZMathPoint(0, 0, 0), KEZMathVector(0, 0, 1), 2.0, 6), Options(Qt::red));
    RecordingPaintDevice device;
    QPainter painter(&device);
    painter.setBrush(QColor(11, 22, 33));
    KEZVisRepFactory::PaintReps(KEZMathPlane(), &painter, reps.List());
    painter.end();
    const QList<LoggedMessage> lines =
        capture.Matching(QStringLiteral("kez.visualization.painter"), QStringLiteral("  The painter brush color is: "));
    ASSERT_EQ(lines.size(), 3);
    for (const LoggedMessage &line : lines) {
        EXPECT_EQ(line.type, QtDebugMsg);
        EXPECT_EQ(line.text, QStringLiteral("  The painter brush color is: ") + DebugTextOf(QColor(11, 22, 33)));
    }
}

TEST(PaintRepsRecursively, WritesOneFillLinePerExtraSet)
{
    MessageCapture capture;
    RepList reps;
    auto *inner = new KEZVisRepExtraSet(QList<const KEZVisRep *>{ClosedTriangle(Qt::black)}, Options(QColor(9, 9, 9)));
    reps.Add(new KEZVisRepExtraSet(QList<const KEZVisRep *>{inner}, Options(QColor(1, 2, 3))));
    PaintTree(reps.List());
    const QList<LoggedMessage> lines =
        capture.Matching(QStringLiteral("kez.visualization.painter"), QStringLiteral("The fill color is: "));
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0].text, QStringLiteral("The fill color is: ") + DebugTextOf(QColor(1, 2, 3)));
    EXPECT_EQ(lines[1].text, QStringLiteral("The fill color is: ") + DebugTextOf(QColor(9, 9, 9)));
    EXPECT_EQ(capture.Matching(QStringLiteral("kez.visualization.painter"), QStringLiteral("  The painter brush")).size(), 1);
}

TEST(PaintReps, WritesNoDebugLinesWhenThePainterCategoryIsSwitchedOff)
{
    MessageCapture capture;
    QLoggingCategory::setFilterRules(QStringLiteral("kez.visualization.painter.debug=false"));
    RepList reps;
    reps.Add(new KEZVisRepExtraSet(QList<const KEZVisRep *>{ClosedTriangle(Qt::black)}, Options(QColor(1, 2, 3))));
    AddMarkedSegment(reps, Qt::red, 0);
    PaintTree(reps.List());
    PaintFlat(reps.List());
    EXPECT_TRUE(capture.Matching(QStringLiteral("kez.visualization.painter"), QString()).isEmpty());
}

// ---------------------------------------------------------------------------
// Bad painters

TEST(PaintReps, DrawsNothingAndWarnsOnceWithoutAPainter)
{
    MessageCapture capture;
    RepList reps;
    AddMarkedSegment(reps, Qt::red, 0);
    AddMarkedSegment(reps, Qt::red, 0);
    KEZVisRepFactory::PaintReps(KEZMathPlane(), nullptr, reps.List());
    KEZVisRepFactory::PaintRep(KEZMathPlane(), nullptr, reps.List().first());
    KEZVisRepFactory::PaintRepsRecursively(KEZMathPlane(), nullptr, reps.List());
    const QList<LoggedMessage> warnings = capture.Matching(QStringLiteral("kez.visualization.painter"), QString());
    ASSERT_EQ(warnings.size(), 3); // one for each of the three calls
    for (const LoggedMessage &warning : warnings)
        EXPECT_EQ(warning.type, QtWarningMsg);
}

TEST(PaintReps, DrawsNothingAndWarnsOnceWithAPainterThatIsNotActive)
{
    MessageCapture capture;
    RepList reps;
    AddMarkedSegment(reps, Qt::red, 0);
    reps.Add(new KEZVisRepExtraSet(QList<const KEZVisRep *>{ClosedTriangle(Qt::black)}, Options(QColor(1, 2, 3))));
    RecordingPaintDevice device;
    QPainter painter;
    KEZVisRepFactory::PaintReps(KEZMathPlane(), &painter, reps.List());
    EXPECT_EQ(capture.Messages().size(), 1);
    KEZVisRepFactory::PaintRepsRecursively(KEZMathPlane(), &painter, reps.List());
    const QList<LoggedMessage> messages = capture.Messages();
    ASSERT_EQ(messages.size(), 2);
    for (const LoggedMessage &message : messages) {
        EXPECT_EQ(message.type, QtWarningMsg);
        EXPECT_EQ(message.category, QStringLiteral("kez.visualization.painter"));
    }
    EXPECT_TRUE(device.Calls().isEmpty());
}
