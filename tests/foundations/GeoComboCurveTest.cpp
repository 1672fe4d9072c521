// The polygonal curve: vertices, segment counts, locations of vertices, box,
// and the refusal of bad counts and indexes.

#include "KEZGeoComboCurve.h"

#include "KEZSysOutOfBoundsException.h"

#include <QPointer>

#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

using namespace KEZTest;

namespace {

// The corners of a unit square in the plane z = 2, counter-clockwise.
KEZMathSetOfPoints Square()
{
    return Points({KEZMathPoint(0.0, 0.0, 2.0), KEZMathPoint(1.0, 0.0, 2.0),
                   KEZMathPoint(1.0, 1.0, 2.0), KEZMathPoint(0.0, 1.0, 2.0)});
}

} // namespace

TEST(GeoComboCurve, OpenCurveHasOneSegmentFewerThanVertices)
{
    const KEZGeoComboCurve curve(Square(), false);
    EXPECT_FALSE(curve.IsClosed());
    EXPECT_EQ(curve.GetNumVertices(), 4);
    EXPECT_EQ(curve.GetNumSegments(), 3);
}

TEST(GeoComboCurve, ClosedCurveHasAsManySegmentsAsVertices)
{
    const KEZGeoComboCurve curve(Square(), true);
    EXPECT_TRUE(curve.IsClosed());
    EXPECT_EQ(curve.GetNumVertices(), 4);
    EXPECT_EQ(curve.GetNumSegments(), 4);
}

TEST(GeoComboCurve, TwoVerticesMakeOneSegmentOpenAndTwoClosed)
{
    const KEZMathSetOfPoints two = Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(3.0, 0.0, 0.0)});
    EXPECT_EQ(KEZGeoComboCurve(two, false).GetNumSegments(), 1);
    EXPECT_EQ(KEZGeoComboCurve(two, true).GetNumSegments(), 2);
}

TEST(GeoComboCurve, VerticesComeBackInTheOrderGiven)
{
    const KEZGeoComboCurve curve(Square(), true);
    ExpectPoint(curve.GetVertex(0), 0.0, 0.0, 2.0);
    ExpectPoint(curve.GetVertex(1), 1.0, 0.0, 2.0);
    ExpectPoint(curve.GetVertex(2), 1.0, 1.0, 2.0);
    ExpectPoint(curve.GetVertex(3), 0.0, 1.0, 2.0);
}

TEST(GeoComboCurve, CurveKeepsItsOwnCopyOfTheVertices)
{
    KEZMathSetOfPoints points = Square();
    const KEZGeoComboCurve curve(points, false);
    points[0] = KEZMathPoint(9.0, 9.0, 9.0);
    points.append(KEZMathPoint(5.0, 5.0, 5.0));
    EXPECT_EQ(curve.GetNumVertices(), 4);
    ExpectPoint(curve.GetVertex(0), 0.0, 0.0, 2.0);
}

TEST(GeoComboCurve, LocationOfAVertexIsTheStartOfItsSegment)
{
    const KEZGeoComboCurve curve(Square(), false);
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        const KEZGeoLocationOnCurve location = curve.GetLocation(i);
        EXPECT_EQ(location.GetCurve(), &curve);
        EXPECT_EQ(location.GetSegment(), i);
        EXPECT_EQ(location.GetParameter(), 0.0);
        EXPECT_EQ(location.GetEndPoint(), -1);
    }
}

TEST(GeoComboCurve, LastVertexOfAnOpenCurveIsTheEndOfTheLastSegment)
{
    const KEZGeoComboCurve curve(Square(), false);
    const KEZGeoLocationOnCurve location = curve.GetLocation(3);
    EXPECT_EQ(location.GetCurve(), &curve);
    EXPECT_EQ(location.GetSegment(), 2);
    EXPECT_EQ(location.GetParameter(), 1.0);
    EXPECT_EQ(location.GetEndPoint(), 1);
}

TEST(GeoComboCurve, LastVertexOfAClosedCurveIsTheStartOfTheClosingSegment)
{
    const KEZGeoComboCurve curve(Square(), true);
    const KEZGeoLocationOnCurve location = curve.GetLocation(3);
    EXPECT_EQ(location.GetSegment(), 3);
    EXPECT_EQ(location.GetParameter(), 0.0);
    EXPECT_EQ(location.GetEndPoint(), -1);
}

TEST(GeoComboCurve, SecondVertexOfATwoVertexOpenCurveIsTheEndOfSegmentZero)
{
    const KEZGeoComboCurve curve(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(3.0, 0.0, 0.0)}), false);
    const KEZGeoLocationOnCurve location = curve.GetLocation(1);
    EXPECT_EQ(location.GetSegment(), 0);
    EXPECT_EQ(location.GetParameter(), 1.0);
}

TEST(GeoComboCurve, LocationOfEachVertexLiesOnThatVertex)
{
    for (bool closed : {false, true}) {
        SCOPED_TRACE(closed);
        const KEZGeoComboCurve curve(Square(), closed);
        ExpectPoint(curve.GetLocation(0).GetMathPoint(), 0.0, 0.0, 2.0);
        ExpectPoint(curve.GetLocation(1).GetMathPoint(), 1.0, 0.0, 2.0);
        ExpectPoint(curve.GetLocation(2).GetMathPoint(), 1.0, 1.0, 2.0);
        ExpectPoint(curve.GetLocation(3).GetMathPoint(), 0.0, 1.0, 2.0);
    }
}

TEST(GeoComboCurve, BoundingBoxSpansAllVertices)
{
    const KEZGeoComboCurve curve(Points({KEZMathPoint(1.0, -2.0, 3.0), KEZMathPoint(4.0, 5.0, -6.0),
                                         KEZMathPoint(0.0, 0.0, 0.0)}),
                                 false);
    const KEZMathBoundingBox box = curve.GetBoundingBox();
    ExpectPoint(box.GetLowerPoint(), 0.0, -2.0, -6.0);
    ExpectPoint(box.GetUpperPoint(), 4.0, 5.0, 3.0);
}

TEST(GeoComboCurve, FewerThanTwoVerticesAreRefused)
{
    for (bool closed : {false, true}) {
        SCOPED_TRACE(closed);
        const auto none = OutOfBoundsThrownBy([&] { KEZGeoComboCurve curve(KEZMathSetOfPoints(), closed); });
        ASSERT_TRUE(none.has_value());
        EXPECT_EQ(none->GetValue(), QVariant(0));
        EXPECT_EQ(none->GetLowerLimit(), QVariant(2));
        EXPECT_FALSE(none->GetUpperLimit().isValid());
        EXPECT_TRUE(none->IsLowerLimitIncluded());

        const auto one = OutOfBoundsThrownBy(
            [&] { KEZGeoComboCurve curve(Points({KEZMathPoint(1.0, 2.0, 3.0)}), closed); });
        ASSERT_TRUE(one.has_value());
        EXPECT_EQ(one->GetValue(), QVariant(1));
        EXPECT_EQ(one->GetLowerLimit(), QVariant(2));
    }
}

TEST(GeoComboCurve, RefusedCurveLeavesNoChildWithTheParent)
{
    QObject parent;
    EXPECT_THROW(new KEZGeoComboCurve(KEZMathSetOfPoints(), false, &parent), KEZSysOutOfBoundsException);
    EXPECT_TRUE(parent.children().isEmpty());
}

TEST(GeoComboCurve, VertexIndexOutsideTheCurveIsRefused)
{
    const KEZGeoComboCurve curve(Square(), true);
    for (int index : {-1, 4, 100}) {
        SCOPED_TRACE(index);
        const auto exception = OutOfBoundsThrownBy([&] { curve.GetVertex(index); });
        ASSERT_TRUE(exception.has_value());
        EXPECT_EQ(exception->GetValue(), QVariant(index));
        EXPECT_EQ(exception->GetLowerLimit(), QVariant(0));
        EXPECT_EQ(exception->GetUpperLimit(), QVariant(3));
        EXPECT_TRUE(exception->IsLowerLimitIncluded());
        EXPECT_TRUE(exception->IsUpperLimitIncluded());
    }
}

TEST(GeoComboCurve, LocationIndexOutsideTheCurveIsRefused)
{
    for (bool closed : {false, true}) {
        SCOPED_TRACE(closed);
        const KEZGeoComboCurve curve(Square(), closed);
        for (int index : {-1, 4}) {
            SCOPED_TRACE(index);
            const auto exception = OutOfBoundsThrownBy([&] { curve.GetLocation(index); });
            ASSERT_TRUE(exception.has_value());
            EXPECT_EQ(exception->GetValue(), QVariant(index));
            EXPECT_EQ(exception->GetLowerLimit(), QVariant(0));
            EXPECT_EQ(exception->GetUpperLimit(), QVariant(3));
        }
    }
}

TEST(GeoComboCurve, CurveAnswersThroughTheAbstractCurveInterface)
{
    const KEZGeoComboCurve combo(Square(), true);
    const KEZGeoCurve &curve = combo;
    EXPECT_EQ(curve.GetNumVertices(), 4);
    EXPECT_EQ(curve.GetNumSegments(), 4);
    EXPECT_TRUE(curve.IsClosed());
    ExpectPoint(curve.GetVertex(2), 1.0, 1.0, 2.0);
    EXPECT_EQ(curve.GetLocation(1).GetSegment(), 1);
    ExpectPoint(curve.GetBoundingBox().GetUpperPoint(), 1.0, 1.0, 2.0);
}
