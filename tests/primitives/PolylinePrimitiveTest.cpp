// Tests of KEZVisPolylinePrimitive: explicit points, the curve constructor with
// its range arithmetic, the two coordinate getters, the counted pointer to
// the curve, and the stream operators with their deliberate width mismatch.

#include "KEZVisPolylinePrimitive.h"

#include "KEZVisOptions.h"

#include "KEZGeoComboCurve.h"
#include "KEZGeoLocationOnCurve.h"
#include "KEZGeoRangeOfCurve.h"
#include "KEZMathBoundingBox.h"
#include "KEZMathSetOfPoints.h"
#include "KEZSysException.h"

#include "StreamBytes.h"

#include <QBuffer>
#include <QDataStream>
#include <QMetaType>
#include <QPointer>

#include "KEZPipeLikeDevice.h"
#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

using namespace KEZTest;

namespace {

using Xyz = std::array<double, 3>;

// Five vertices with distinct coordinates in every axis.
const std::vector<Xyz> FiveVertices = {
    {0.0, 0.0, 0.0}, {1.0, 0.0, 0.5}, {1.0, 2.0, 1.0}, {0.0, 2.0, 1.5}, {-1.0, 1.0, 2.0}};
// Four vertices of a closed curve.
const std::vector<Xyz> FourVertices = {{0.0, 0.0, 0.0}, {2.0, 0.0, 1.0}, {2.0, 3.0, 2.0}, {0.0, 3.0, 3.0}};

KEZMathSetOfPoints toSet(const std::vector<Xyz> &points)
{
    KEZMathSetOfPoints set;
    for (const Xyz &p : points)
        set.append(KEZMathPoint(p[0], p[1], p[2]));
    return set;
}

// The point at parameter t between a and b, as a polygonal curve defines it.
Xyz lerp(const Xyz &a, const Xyz &b, double t)
{
    return {a[0] + (b[0] - a[0]) * t, a[1] + (b[1] - a[1]) * t, a[2] + (b[2] - a[2]) * t};
}

std::vector<double> flatten(const std::vector<Xyz> &points)
{
    std::vector<double> flat;
    for (const Xyz &p : points)
        flat.insert(flat.end(), p.begin(), p.end());
    return flat;
}

void expectDoubles(const std::vector<double> &actual, const std::vector<Xyz> &expected)
{
    ASSERT_EQ(actual.size(), 3 * expected.size());
    for (size_t i = 0; i < expected.size(); ++i)
        for (size_t k = 0; k < 3; ++k)
            EXPECT_DOUBLE_EQ(actual[3 * i + k], expected[i][k]) << "point " << i << " coordinate " << k;
}

void expectFloats(const std::vector<float> &actual, const std::vector<Xyz> &expected)
{
    ASSERT_EQ(actual.size(), 3 * expected.size());
    for (size_t i = 0; i < expected.size(); ++i)
        for (size_t k = 0; k < 3; ++k)
            EXPECT_FLOAT_EQ(actual[3 * i + k], float(expected[i][k])) << "point " << i << " coordinate " << k;
}

void expectBox(const KEZMathBoundingBox &box, const Xyz &lower, const Xyz &upper)
{
    EXPECT_DOUBLE_EQ(box.GetLowerPoint().GetX(), lower[0]);
    EXPECT_DOUBLE_EQ(box.GetLowerPoint().GetY(), lower[1]);
    EXPECT_DOUBLE_EQ(box.GetLowerPoint().GetZ(), lower[2]);
    EXPECT_DOUBLE_EQ(box.GetUpperPoint().GetX(), upper[0]);
    EXPECT_DOUBLE_EQ(box.GetUpperPoint().GetY(), upper[1]);
    EXPECT_DOUBLE_EQ(box.GetUpperPoint().GetZ(), upper[2]);
}

const Xyz Zero = {0.0, 0.0, 0.0};

} // namespace

TEST(PolylinePrimitive, TypeAndStructureAreRegisteredWithTheMetaTypeSystemAtLoad)
{
    const QMetaType structure = QMetaType::fromName("KEZVisPolylinePrimitive::Structure");
    ASSERT_TRUE(structure.isValid());
    EXPECT_EQ(structure, QMetaType::fromType<KEZVisPolylinePrimitive::Structure>());
    const QMetaType type = QMetaType::fromName("KEZVisPolylinePrimitive");
    ASSERT_TRUE(type.isValid());
    EXPECT_EQ(type, QMetaType::fromType<KEZVisPolylinePrimitive>());
    EXPECT_TRUE(type.hasRegisteredDataStreamOperators());
}

// --- explicit points -------------------------------------------------------

TEST(PolylinePrimitive, DefaultPolylineIsEmptyAndConnected)
{
    KEZVisPolylinePrimitive polyline;
    EXPECT_EQ(polyline.GetNumPoints(), 0);
    EXPECT_EQ(polyline.GetStructure(), KEZVisPolylinePrimitive::StructureConnected);
    EXPECT_TRUE(polyline.GetCoordsAsDouble().empty());
    EXPECT_TRUE(polyline.GetCoordsAsFloat().empty());
    EXPECT_EQ(polyline.GetBoundingBox(KEZVisOptions()), KEZMathBoundingBox());
}

TEST(PolylinePrimitive, SetOfNoPointsGivesNoPointsEmptyListAndDefaultBox)
{
    KEZVisPolylinePrimitive polyline(KEZMathSetOfPoints(), KEZVisPolylinePrimitive::StructureSeparateSegments);
    EXPECT_EQ(polyline.GetNumPoints(), 0);
    EXPECT_TRUE(polyline.GetCoordsAsDouble().empty());
    EXPECT_TRUE(polyline.GetCoordsAsFloat().empty());
    EXPECT_EQ(polyline.GetBoundingBox(KEZVisOptions()), KEZMathBoundingBox());
}

TEST(PolylinePrimitive, PointsAreCopiedInOrderWithTheirStructure)
{
    KEZVisPolylinePrimitive polyline(toSet(FiveVertices), KEZVisPolylinePrimitive::StructureSeparateSegments);
    EXPECT_EQ(polyline.GetNumPoints(), 5);
    EXPECT_EQ(polyline.GetStructure(), KEZVisPolylinePrimitive::StructureSeparateSegments);
    expectDoubles(polyline.GetCoordsAsDouble(), FiveVertices);
    expectFloats(polyline.GetCoordsAsFloat(), FiveVertices);
    expectBox(polyline.GetBoundingBox(KEZVisOptions()), {-1.0, 0.0, 0.0}, {1.0, 2.0, 2.0});
}

TEST(PolylinePrimitive, OnePointFromExplicitCoordinatesIsAllowed)
{
    KEZVisPolylinePrimitive polyline(NewArray({3.0, 4.0, 5.0}), 1, KEZVisPolylinePrimitive::StructureConnected);
    EXPECT_EQ(polyline.GetNumPoints(), 1);
    expectDoubles(polyline.GetCoordsAsDouble(), {{3.0, 4.0, 5.0}});
    expectBox(polyline.GetBoundingBox(KEZVisOptions()), {3.0, 4.0, 5.0}, {3.0, 4.0, 5.0});
}

TEST(PolylinePrimitive, ArrayIsTakenOverAndNarrowedForTheFloatList)
{
    const std::vector<Xyz> points = {{0.1, 0.2, 0.3}, {1e10, -2.5, 7.25}};
    KEZVisPolylinePrimitive polyline(NewArray(flatten(points)), 2, KEZVisPolylinePrimitive::StructureConnected);
    expectDoubles(polyline.GetCoordsAsDouble(), points);
    const std::vector<float> floats = polyline.GetCoordsAsFloat();
    ASSERT_EQ(floats.size(), 6u);
    EXPECT_EQ(floats[0], float(0.1));
    EXPECT_EQ(floats[3], float(1e10));
    expectBox(polyline.GetBoundingBox(KEZVisOptions()), {0.1, -2.5, 0.3}, {1e10, 0.2, 7.25});
}

TEST(PolylinePrimitive, NegativeCountOrNullArrayGivesNoPoints)
{
    KEZVisPolylinePrimitive negative(NewArray({1.0, 2.0, 3.0}), -4, KEZVisPolylinePrimitive::StructureConnected);
    EXPECT_EQ(negative.GetNumPoints(), 0);
    EXPECT_TRUE(negative.GetCoordsAsDouble().empty());
    KEZVisPolylinePrimitive null(nullptr, 3, KEZVisPolylinePrimitive::StructureConnected);
    EXPECT_EQ(null.GetNumPoints(), 0);
    EXPECT_TRUE(null.GetCoordsAsFloat().empty());
}

TEST(PolylinePrimitive, CopyOfNonEmptyPolylineHasNoPoints)
{
    KEZVisPolylinePrimitive original(toSet(FiveVertices), KEZVisPolylinePrimitive::StructureSeparateSegments);
    KEZVisPolylinePrimitive copy(original);
    EXPECT_EQ(copy.GetNumPoints(), 0);
    EXPECT_EQ(copy.GetStructure(), KEZVisPolylinePrimitive::StructureConnected);
    EXPECT_TRUE(copy.GetCoordsAsDouble().empty());
    EXPECT_EQ(copy.GetBoundingBox(KEZVisOptions()), KEZMathBoundingBox());
    EXPECT_EQ(original.GetNumPoints(), 5);
}

TEST(PolylinePrimitive, BoundingBoxIsTheSameForAnyOptions)
{
    KEZVisPolylinePrimitive polyline(toSet(FiveVertices), KEZVisPolylinePrimitive::StructureConnected);
    KEZVisOptions other;
    other.SetLineThickness(9.0);
    QFont font;
    font.setPointSize(72);
    other.SetFont(font);
    other.SetColor(Qt::red);
    EXPECT_EQ(polyline.GetBoundingBox(KEZVisOptions()), polyline.GetBoundingBox(other));
}

// --- curve constructor ------------------------------------------------------

TEST(PolylinePrimitive, CurveBasedPolylineIsConnected)
{
    KEZGeoComboCurve curve(toSet(FiveVertices), false);
    KEZVisPolylinePrimitive whole(&curve, KEZGeoRangeOfCurve());
    EXPECT_EQ(whole.GetStructure(), KEZVisPolylinePrimitive::StructureConnected);
    KEZVisPolylinePrimitive part(&curve, KEZGeoRangeOfCurve(KEZGeoLocationOnCurve(&curve, 0, 0.5),
                                                             KEZGeoLocationOnCurve(&curve, 2, 0.5)));
    EXPECT_EQ(part.GetStructure(), KEZVisPolylinePrimitive::StructureConnected);
}

TEST(PolylinePrimitive, WholeOpenCurveYieldsEveryVertex)
{
    KEZGeoComboCurve curve(toSet(FiveVertices), false);
    KEZVisPolylinePrimitive polyline(&curve, KEZGeoRangeOfCurve());
    EXPECT_EQ(polyline.GetNumPoints(), 5);
    expectDoubles(polyline.GetCoordsAsDouble(), FiveVertices);
    EXPECT_EQ(polyline.GetBoundingBox(KEZVisOptions()), curve.GetBoundingBox());
}

TEST(PolylinePrimitive, WholeOpenCurveFloatListEndsOnTheStartAndLeavesAGap)
{
    // No whole-curve case in the float routine: the start location (vertex 0)
    // first, vertices 1 up to index 5 - 2 exclusive, a gap of zeros, and the
    // end location, which is the start location again.
    KEZGeoComboCurve curve(toSet(FiveVertices), false);
    KEZVisPolylinePrimitive polyline(&curve, KEZGeoRangeOfCurve());
    const auto &v = FiveVertices;
    expectFloats(polyline.GetCoordsAsFloat(), {v[0], v[1], v[2], Zero, v[0]});
}

TEST(PolylinePrimitive, WholeClosedCurveOfFourVerticesHasFivePointsEndingOnVertexZero)
{
    KEZGeoComboCurve curve(toSet(FourVertices), true);
    KEZVisPolylinePrimitive polyline(&curve, KEZGeoRangeOfCurve());
    EXPECT_EQ(polyline.GetNumPoints(), 5);
    const auto &v = FourVertices;
    expectDoubles(polyline.GetCoordsAsDouble(), {v[0], v[1], v[2], v[3], v[0]});
    EXPECT_EQ(polyline.GetBoundingBox(KEZVisOptions()), curve.GetBoundingBox());
}

TEST(PolylinePrimitive, FloatListOfWholeClosedCurveEndsOnItsFirstPoint)
{
    KEZGeoComboCurve curve(toSet(FourVertices), true);
    KEZVisPolylinePrimitive polyline(&curve, KEZGeoRangeOfCurve());
    const std::vector<float> floats = polyline.GetCoordsAsFloat();
    ASSERT_EQ(floats.size(), 15u);
    EXPECT_EQ(floats[12], floats[0]);
    EXPECT_EQ(floats[13], floats[1]);
    EXPECT_EQ(floats[14], floats[2]);
    const auto &v = FourVertices;
    // Vertices 1 and 2 (indexes below 5 - 2), then a gap where vertex 3 would be.
    expectFloats(floats, {v[0], v[1], v[2], Zero, v[0]});
}

TEST(PolylinePrimitive, PartialRangeInsideSegmentsOfOpenCurve)
{
    KEZGeoComboCurve curve(toSet(FiveVertices), false);
    const KEZGeoRangeOfCurve range(KEZGeoLocationOnCurve(&curve, 0, 0.5), KEZGeoLocationOnCurve(&curve, 2, 0.25));
    KEZVisPolylinePrimitive polyline(&curve, range);
    // 2 - 0 + 2 points; neither end on a vertex.
    EXPECT_EQ(polyline.GetNumPoints(), 4);
    const auto &v = FiveVertices;
    const Xyz start = lerp(v[0], v[1], 0.5);
    const Xyz end = lerp(v[2], v[3], 0.25);
    expectDoubles(polyline.GetCoordsAsDouble(), {start, v[1], v[2], end});
    // The float loop stops below index 4 - 2: vertex 2 is left out.
    expectFloats(polyline.GetCoordsAsFloat(), {start, v[1], Zero, end});
    expectBox(polyline.GetBoundingBox(KEZVisOptions()), {0.5, 0.0, 0.25}, {1.0, 2.0, 1.125});
}

TEST(PolylinePrimitive, RangeFromSegmentStartToSegmentEndCoversWholeSegments)
{
    KEZGeoComboCurve curve(toSet(FiveVertices), false);
    const KEZGeoRangeOfCurve range(KEZGeoLocationOnCurve(&curve, 1, 0.0), KEZGeoLocationOnCurve(&curve, 2, 1.0));
    KEZVisPolylinePrimitive polyline(&curve, range);
    EXPECT_EQ(polyline.GetNumPoints(), 3);
    const auto &v = FiveVertices;
    expectDoubles(polyline.GetCoordsAsDouble(), {v[1], v[2], v[3]});
    expectFloats(polyline.GetCoordsAsFloat(), {v[1], Zero, v[3]});
}

TEST(PolylinePrimitive, RangeStartingOnSegmentEndAndEndingOnSegmentStartDropsBoth)
{
    KEZGeoComboCurve curve(toSet(FiveVertices), false);
    const KEZGeoRangeOfCurve range(KEZGeoLocationOnCurve(&curve, 0, 1.0), KEZGeoLocationOnCurve(&curve, 3, 0.0));
    KEZVisPolylinePrimitive polyline(&curve, range);
    // 3 - 0 + 2 - 1 - 1.
    EXPECT_EQ(polyline.GetNumPoints(), 3);
    const auto &v = FiveVertices;
    expectDoubles(polyline.GetCoordsAsDouble(), {v[1], v[2], v[3]});
    // Float: first index 0 + 2, below 3 - 2: no vertex at all.
    expectFloats(polyline.GetCoordsAsFloat(), {v[1], Zero, v[3]});
}

TEST(PolylinePrimitive, RangeFromEndOfSegmentToStartOfNextThrows)
{
    KEZGeoComboCurve curve(toSet(FiveVertices), false);
    const KEZGeoRangeOfCurve range(KEZGeoLocationOnCurve(&curve, 1, 1.0), KEZGeoLocationOnCurve(&curve, 2, 0.0));
    try {
        KEZVisPolylinePrimitive polyline(&curve, range);
        FAIL() << "a range of 1 point was accepted";
    } catch (const KEZSysException &exception) {
        EXPECT_EQ(exception.GetMessage(), QStringLiteral("polyline contains less than 2 points"));
    }
}

TEST(PolylinePrimitive, RefusedRangeGivesTheCurveReferenceBack)
{
    KEZGeoComboCurve curve(toSet(FiveVertices), false);
    const KEZGeoRangeOfCurve range(KEZGeoLocationOnCurve(&curve, 1, 1.0), KEZGeoLocationOnCurve(&curve, 2, 0.0));
    ASSERT_EQ(curve.GetReferenceCount(), 0);
    EXPECT_THROW(KEZVisPolylinePrimitive(&curve, range), KEZSysException);
    EXPECT_EQ(curve.GetReferenceCount(), 0);
}

TEST(PolylinePrimitive, RangeWithinOneSegmentHasTwoPoints)
{
    KEZGeoComboCurve curve(toSet(FiveVertices), false);
    const KEZGeoRangeOfCurve range(KEZGeoLocationOnCurve(&curve, 2, 0.25), KEZGeoLocationOnCurve(&curve, 2, 0.75));
    KEZVisPolylinePrimitive polyline(&curve, range);
    EXPECT_EQ(polyline.GetNumPoints(), 2);
    const auto &v = FiveVertices;
    expectDoubles(polyline.GetCoordsAsDouble(), {lerp(v[2], v[3], 0.25), lerp(v[2], v[3], 0.75)});
    expectFloats(polyline.GetCoordsAsFloat(), {lerp(v[2], v[3], 0.25), lerp(v[2], v[3], 0.75)});
}

TEST(PolylinePrimitive, RangeToTheLastVertexOfOpenCurve)
{
    KEZGeoComboCurve curve(toSet(FiveVertices), false);
    const KEZGeoRangeOfCurve range(KEZGeoLocationOnCurve(&curve, 1, 0.5), curve.GetLocation(4));
    KEZVisPolylinePrimitive polyline(&curve, range);
    // The last vertex is the end of segment 3: 3 - 1 + 2 points.
    EXPECT_EQ(polyline.GetNumPoints(), 4);
    const auto &v = FiveVertices;
    const Xyz start = lerp(v[1], v[2], 0.5);
    expectDoubles(polyline.GetCoordsAsDouble(), {start, v[2], v[3], v[4]});
    expectFloats(polyline.GetCoordsAsFloat(), {start, Zero, Zero, v[4]});
}

TEST(PolylinePrimitive, RangeAcrossTheSeamOfClosedCurveWrapsToVertexZero)
{
    KEZGeoComboCurve curve(toSet(FourVertices), true);
    const KEZGeoRangeOfCurve range(KEZGeoLocationOnCurve(&curve, 2, 0.5), KEZGeoLocationOnCurve(&curve, 1, 0.5));
    KEZVisPolylinePrimitive polyline(&curve, range);
    // The end lies before the start: its segment counts as 1 + 4 segments.
    EXPECT_EQ(polyline.GetNumPoints(), 5);
    const auto &v = FourVertices;
    const Xyz start = lerp(v[2], v[3], 0.5);
    const Xyz end = lerp(v[1], v[2], 0.5);
    expectDoubles(polyline.GetCoordsAsDouble(), {start, v[3], v[0], v[1], end});
    // Float: first index 3, below 5 - 2: nothing between the two ends.
    expectFloats(polyline.GetCoordsAsFloat(), {start, Zero, Zero, Zero, end});
    expectBox(polyline.GetBoundingBox(KEZVisOptions()), {0.0, 0.0, 0.0}, {2.0, 3.0, 3.0});
}

TEST(PolylinePrimitive, RangeOnTheClosingSegmentEndsOnVertexZero)
{
    KEZGeoComboCurve curve(toSet(FourVertices), true);
    const KEZGeoRangeOfCurve range(KEZGeoLocationOnCurve(&curve, 2, 0.0), KEZGeoLocationOnCurve(&curve, 3, 1.0));
    KEZVisPolylinePrimitive polyline(&curve, range);
    EXPECT_EQ(polyline.GetNumPoints(), 3);
    const auto &v = FourVertices;
    expectDoubles(polyline.GetCoordsAsDouble(), {v[2], v[3], v[0]});
    expectFloats(polyline.GetCoordsAsFloat(), {v[2], Zero, v[0]});
}

TEST(PolylinePrimitive, SeamRangeStartingOnSegmentEndSkipsThatVertex)
{
    KEZGeoComboCurve curve(toSet(FourVertices), true);
    // From the end of segment 2 (vertex 3) round to the middle of segment 0.
    const KEZGeoRangeOfCurve range(KEZGeoLocationOnCurve(&curve, 2, 1.0), KEZGeoLocationOnCurve(&curve, 0, 0.5));
    KEZVisPolylinePrimitive polyline(&curve, range);
    // 0 + 4 - 2 + 2 - 1.
    EXPECT_EQ(polyline.GetNumPoints(), 3);
    const auto &v = FourVertices;
    expectDoubles(polyline.GetCoordsAsDouble(), {v[3], v[0], lerp(v[0], v[1], 0.5)});
    expectFloats(polyline.GetCoordsAsFloat(), {v[3], Zero, lerp(v[0], v[1], 0.5)});
}

TEST(PolylinePrimitive, CoordinatesAreReadFromTheCurveAtEveryCall)
{
    KEZGeoComboCurve curve(toSet(FiveVertices), false);
    KEZVisPolylinePrimitive polyline(&curve, KEZGeoRangeOfCurve());
    expectDoubles(polyline.GetCoordsAsDouble(), FiveVertices);
    expectDoubles(polyline.GetCoordsAsDouble(), FiveVertices);
}

// --- the counted pointer to the curve ---------------------------------------

TEST(PolylinePrimitive, CurveReferenceCountRisesAndFallsWithItsPolylines)
{
    KEZGeoComboCurve curve(toSet(FourVertices), true);
    EXPECT_EQ(curve.GetReferenceCount(), 0);
    auto first = std::make_unique<KEZVisPolylinePrimitive>(&curve, KEZGeoRangeOfCurve());
    EXPECT_EQ(curve.GetReferenceCount(), 1);
    auto second = std::make_unique<KEZVisPolylinePrimitive>(
        &curve, KEZGeoRangeOfCurve(KEZGeoLocationOnCurve(&curve, 0, 0.5), KEZGeoLocationOnCurve(&curve, 2, 0.5)));
    EXPECT_EQ(curve.GetReferenceCount(), 2);
    first.reset();
    EXPECT_EQ(curve.GetReferenceCount(), 1);
    second.reset();
    EXPECT_EQ(curve.GetReferenceCount(), 0);
}

TEST(PolylinePrimitive, PolylineOutlivesItsCurve)
{
    auto *curve = new KEZGeoComboCurve(toSet(FourVertices), true);
    QPointer<KEZGeoComboCurve> watch(curve);
    auto polyline = std::make_unique<KEZVisPolylinePrimitive>(curve, KEZGeoRangeOfCurve());
    const KEZMathBoundingBox box = polyline->GetBoundingBox(KEZVisOptions());
    EXPECT_EQ(curve->GetReferenceCount(), 1);

    delete curve;
    ASSERT_TRUE(watch.isNull());
    // The polyline noticed: no coordinates are read from the dead curve.
    EXPECT_EQ(polyline->GetNumPoints(), 5);
    EXPECT_EQ(polyline->GetBoundingBox(KEZVisOptions()), box);
    EXPECT_TRUE(polyline->GetCoordsAsDouble().empty());
    EXPECT_TRUE(polyline->GetCoordsAsFloat().empty());
    // Deleting it does not give a reference back to the dead curve (the
    // sanitizer build catches any touch of freed memory).
    polyline.reset();
}

TEST(PolylinePrimitive, CurveBasedPolylineIsWrittenAfterItsCurveHasGoneAsNoPoints)
{
    auto *curve = new KEZGeoComboCurve(toSet(FourVertices), true);
    KEZVisPolylinePrimitive polyline(curve, KEZGeoRangeOfCurve());
    delete curve;
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << polyline;
    EXPECT_EQ(bytes, StreamBytes().Int32(1).Int64(0).Bytes());
}

// --- stream form --------------------------------------------------------------

TEST(PolylinePrimitive, StreamFormIsStructureCountAsQint64AndPoints)
{
    KEZVisPolylinePrimitive polyline(NewArray({1.0, 2.0, 3.0, -4.5, 0.25, 1e-3}), 2,
                                     KEZVisPolylinePrimitive::StructureSeparateSegments);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << polyline;
    const QByteArray expected =
        StreamBytes().Int32(0).Int64(2).Double(1.0).Double(2.0).Double(3.0).Double(-4.5).Double(0.25).Double(1e-3).Bytes();
    EXPECT_EQ(bytes, expected);
    EXPECT_EQ(out.status(), QDataStream::Ok);
}

TEST(PolylinePrimitive, StreamFormFollowsLittleEndianStreams)
{
    KEZVisPolylinePrimitive polyline(NewArray({1.0, 2.0, 3.0}), 1, KEZVisPolylinePrimitive::StructureConnected);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    out << polyline;
    const QByteArray expected =
        StreamBytes(StreamBytes::LittleEndian).Int32(1).Int64(1).Double(1.0).Double(2.0).Double(3.0).Bytes();
    EXPECT_EQ(bytes, expected);
}

TEST(PolylinePrimitive, StreamFormFollowsSinglePrecisionStreams)
{
    KEZVisPolylinePrimitive polyline(NewArray({1.5, -2.0, 0.1}), 1, KEZVisPolylinePrimitive::StructureConnected);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setFloatingPointPrecision(QDataStream::SinglePrecision);
    out << polyline;
    EXPECT_EQ(bytes, StreamBytes().Int32(1).Int64(1).Float(1.5f).Float(-2.0f).Float(0.1f).Bytes());

    // Read back by hand-written bytes with a 32-bit count.
    const QByteArray input = StreamBytes().Int32(1).Int32(1).Float(1.5f).Float(-2.0f).Float(0.1f).Bytes();
    QDataStream in(input);
    in.setFloatingPointPrecision(QDataStream::SinglePrecision);
    KEZVisPolylinePrimitive read;
    in >> read;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    expectDoubles(read.GetCoordsAsDouble(), {{1.5, -2.0, double(0.1f)}});
}

TEST(PolylinePrimitive, CurveBasedPolylineIsWrittenAsPlainPoints)
{
    KEZGeoComboCurve curve(toSet(FourVertices), true);
    KEZVisPolylinePrimitive polyline(&curve, KEZGeoRangeOfCurve());
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << polyline;
    StreamBytes expected;
    expected.Int32(1).Int64(5);
    for (const Xyz &p : {FourVertices[0], FourVertices[1], FourVertices[2], FourVertices[3], FourVertices[0]})
        expected.Double(p[0]).Double(p[1]).Double(p[2]);
    EXPECT_EQ(bytes, expected.Bytes());
}

TEST(PolylinePrimitive, ReaderTakesA32BitCount)
{
    const QByteArray input =
        StreamBytes().Int32(0).Int32(2).Double(1.0).Double(-2.0).Double(3.0).Double(4.0).Double(5.0).Double(-6.0).Bytes();
    QDataStream in(input);
    KEZVisPolylinePrimitive polyline;
    in >> polyline;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_TRUE(in.atEnd());
    EXPECT_EQ(polyline.GetNumPoints(), 2);
    EXPECT_EQ(polyline.GetStructure(), KEZVisPolylinePrimitive::StructureSeparateSegments);
    expectDoubles(polyline.GetCoordsAsDouble(), {{1.0, -2.0, 3.0}, {4.0, 5.0, -6.0}});
    expectBox(polyline.GetBoundingBox(KEZVisOptions()), {1.0, -2.0, -6.0}, {4.0, 5.0, 3.0});
}

TEST(PolylinePrimitive, WrittenAndReadOnBigEndianStreamComesBackWithNoPoints)
{
    KEZVisPolylinePrimitive written(toSet(FiveVertices), KEZVisPolylinePrimitive::StructureConnected);
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out << written;
    }
    QDataStream in(bytes);
    KEZVisPolylinePrimitive read(toSet(FourVertices), KEZVisPolylinePrimitive::StructureSeparateSegments);
    in >> read;
    // The reader took the upper half of the qint64 count: 0 points.
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_EQ(read.GetNumPoints(), 0);
    EXPECT_TRUE(read.GetCoordsAsDouble().empty());
    EXPECT_EQ(read.GetStructure(), KEZVisPolylinePrimitive::StructureConnected);
    EXPECT_EQ(read.GetBoundingBox(KEZVisOptions()), KEZMathBoundingBox());
    // The lower half stays in the stream for whatever is read next.
    qint32 lowerHalf = 0;
    in >> lowerHalf;
    EXPECT_EQ(lowerHalf, 5);
    double firstX = -1.0;
    in >> firstX;
    EXPECT_EQ(firstX, FiveVertices[0][0]);
}

TEST(PolylinePrimitive, ReadingReplacesOldPointsAndKeepsTheCurve)
{
    KEZGeoComboCurve curve(toSet(FourVertices), true);
    KEZVisPolylinePrimitive polyline(&curve, KEZGeoRangeOfCurve());
    const QByteArray input = StreamBytes().Int32(0).Int32(1).Double(7.0).Double(8.0).Double(9.0).Bytes();
    QDataStream in(input);
    in >> polyline;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_EQ(polyline.GetNumPoints(), 1);
    EXPECT_EQ(curve.GetReferenceCount(), 1);
    // The range is left alone: the whole-curve getter still reads the curve,
    // now for the one point that was read.
    expectDoubles(polyline.GetCoordsAsDouble(), {FourVertices[0]});
}

TEST(PolylinePrimitive, ReaderFlagsNegativeCountAsCorrupt)
{
    const QByteArray input = StreamBytes().Int32(1).Int32(-3).Double(1.0).Double(2.0).Double(3.0).Bytes();
    QDataStream in(input);
    KEZVisPolylinePrimitive polyline(toSet(FiveVertices), KEZVisPolylinePrimitive::StructureSeparateSegments);
    in >> polyline;
    EXPECT_EQ(in.status(), QDataStream::ReadCorruptData);
    EXPECT_EQ(polyline.GetNumPoints(), 0);
    EXPECT_TRUE(polyline.GetCoordsAsDouble().empty());
    EXPECT_EQ(polyline.GetStructure(), KEZVisPolylinePrimitive::StructureSeparateSegments);
}

TEST(PolylinePrimitive, ReaderOfHugeCountOnShortStreamFailsWithoutAllocatingForTheCount)
{
    // 2^31 - 1 points would be 48 GiB: reading must find out from the data.
    const QByteArray input = StreamBytes().Int32(1).Int32(0x7fffffff).Double(1.0).Double(2.0).Bytes();
    QDataStream in(input);
    KEZVisPolylinePrimitive polyline;
    in >> polyline;
    EXPECT_EQ(in.status(), QDataStream::ReadPastEnd);
    EXPECT_EQ(polyline.GetNumPoints(), 0);
}

TEST(PolylinePrimitive, ReaderOnSequentialDeviceGrowsWithTheData)
{
    // A device that cannot tell its size up front takes the chunked path.
    StreamBytes bytes;
    bytes.Int32(1).Int32(3000);
    std::vector<Xyz> points;
    for (int i = 0; i < 3000; ++i) {
        points.push_back({double(i), -double(i), 0.5 * i});
        bytes.Double(i).Double(-double(i)).Double(0.5 * i);
    }
    KEZTest::PipeLikeDevice device(bytes.Bytes());
    QDataStream in(&device);
    KEZVisPolylinePrimitive polyline;
    in >> polyline;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    expectDoubles(polyline.GetCoordsAsDouble(), points);
}

TEST(PolylinePrimitive, ReaderOfHugeCountOnSequentialDeviceFailsWhenTheDataEnds)
{
    // A header that announces 2^31 - 1 points, then 1 MiB of zeros, then the
    // end: the reader takes what comes and fails when it stops coming.
    class HeaderThenZeros : public QIODevice
    {
    public:
        explicit HeaderThenZeros(const QByteArray &header)
            : m_header(header)
        {
        }
        bool isSequential() const override { return true; }

    protected:
        qint64 readData(char *data, qint64 maxSize) override
        {
            const qint64 total = m_header.size() + (qint64(1) << 20);
            const qint64 n = qMin(maxSize, total - m_offset);
            for (qint64 i = 0; i < n; ++i, ++m_offset)
                data[i] = m_offset < m_header.size() ? m_header[m_offset] : char(0);
            return n;
        }
        qint64 writeData(const char *, qint64) override { return -1; }

    private:
        QByteArray m_header;
        qint64 m_offset = 0;
    };
    HeaderThenZeros device(StreamBytes().Int32(1).Int32(0x7fffffff).Bytes());
    device.open(QIODevice::ReadOnly);
    QDataStream in(&device);
    KEZVisPolylinePrimitive polyline(toSet(FiveVertices), KEZVisPolylinePrimitive::StructureConnected);
    in >> polyline;
    EXPECT_EQ(in.status(), QDataStream::ReadPastEnd);
    EXPECT_EQ(polyline.GetNumPoints(), 0);
    EXPECT_TRUE(device.atEnd());
}

TEST(PolylinePrimitive, ReaderJudgesItsOwnReadingAndRestoresAnEarlierFailure)
{
    const QByteArray input = StreamBytes().Int32(0).Int32(1).Double(1.0).Double(2.0).Double(3.0).Bytes();
    QDataStream in(input);
    in.setStatus(QDataStream::ReadCorruptData);
    KEZVisPolylinePrimitive polyline;
    in >> polyline;
    EXPECT_EQ(polyline.GetNumPoints(), 1);
    EXPECT_EQ(in.status(), QDataStream::ReadCorruptData);
}

TEST(PolylinePrimitive, WrittenAndReadOnLittleEndianStreamLeavesFourBytesBehind)
{
    KEZVisPolylinePrimitive written(toSet(FiveVertices), KEZVisPolylinePrimitive::StructureSeparateSegments);
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out.setByteOrder(QDataStream::LittleEndian);
        out << written;
    }
    QDataStream in(bytes);
    in.setByteOrder(QDataStream::LittleEndian);
    KEZVisPolylinePrimitive read;
    in >> read;
    // The low half of the count comes first and reads as 5; the points are
    // then read from 4 bytes too early, and 4 bytes stay behind.
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_EQ(read.GetNumPoints(), 5);
    EXPECT_EQ(in.device()->bytesAvailable(), 4);
}

TEST(PolylinePrimitive, ReaderSurvivesEveryTruncation)
{
    StreamBytes bytes;
    bytes.Int32(0).Int32(5);
    for (const Xyz &p : FiveVertices)
        bytes.Double(p[0]).Double(p[1]).Double(p[2]);
    const QByteArray valid = bytes.Bytes();
    for (qsizetype cut = 0; cut < valid.size(); ++cut) {
        QDataStream in(valid.left(cut));
        KEZVisPolylinePrimitive polyline(toSet(FourVertices), KEZVisPolylinePrimitive::StructureConnected);
        in >> polyline;
        EXPECT_EQ(in.status(), QDataStream::ReadPastEnd) << "cut at " << cut;
        EXPECT_EQ(polyline.GetNumPoints(), 0) << "cut at " << cut;
        EXPECT_TRUE(polyline.GetCoordsAsDouble().empty()) << "cut at " << cut;
        EXPECT_EQ(polyline.GetBoundingBox(KEZVisOptions()), KEZMathBoundingBox()) << "cut at " << cut;
    }
    QDataStream in(valid);
    KEZVisPolylinePrimitive polyline;
    in >> polyline;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    expectDoubles(polyline.GetCoordsAsDouble(), FiveVertices);
}

TEST(PolylinePrimitive, ReaderSurvivesFlippedBytes)
{
    const QByteArray valid = [] {
        StreamBytes bytes;
        bytes.Int32(1).Int32(5);
        for (const Xyz &p : FiveVertices)
            bytes.Double(p[0]).Double(p[1]).Double(p[2]);
        return bytes.Bytes();
    }();
    for (qsizetype position = 0; position < valid.size(); ++position) {
        for (char mask : {char(0x01), char(0x80), char(0xff)}) {
            QByteArray corrupt = valid;
            corrupt[position] = char(corrupt[position] ^ mask);
            QDataStream in(corrupt);
            KEZVisPolylinePrimitive polyline;
            in >> polyline;
            // Whatever the verdict, the polyline is consistent with it.
            if (in.status() == QDataStream::Ok)
                EXPECT_EQ(polyline.GetCoordsAsDouble().size(), 3 * size_t(polyline.GetNumPoints()));
            else
                EXPECT_EQ(polyline.GetNumPoints(), 0);
        }
    }
}

TEST(PolylinePrimitive, ReaderSurvivesRandomBytes)
{
    std::mt19937 generator(20240611);
    std::uniform_int_distribution<int> byte(0, 255);
    std::uniform_int_distribution<int> length(0, 200);
    for (int round = 0; round < 2000; ++round) {
        QByteArray data(length(generator), Qt::Uninitialized);
        for (char &c : data)
            c = char(byte(generator));
        QDataStream in(data);
        KEZVisPolylinePrimitive polyline;
        in >> polyline;
        if (in.status() == QDataStream::Ok)
            EXPECT_EQ(polyline.GetCoordsAsDouble().size(), 3 * size_t(polyline.GetNumPoints()));
        else
            EXPECT_EQ(polyline.GetNumPoints(), 0);
    }
}
