// Tests of KEZVisPolygonPrimitive: a filled regular polygon with vertex normals,
// generated in arrays of its own.

#include "KEZVisOptions.h"
#include "KEZVisPolygonPrimitive.h"

#include <KEZMathBoundingBox.h>
#include <KEZMathPoint.h>
#include <KEZMathVector.h>
#include <KEZMathZeroMagnitudeVectorException.h>
#include <KEZSysOutOfBoundsException.h>

#include <QDataStream>
#include <QIODevice>

#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <new>
#include <optional>

using namespace KEZTest;

namespace {

constexpr double Pi = 3.141592653589793;

// How far a computed coordinate may lie from the one worked out by hand.
constexpr double Tolerance = 1e-12;

} // namespace

TEST(PolygonPrimitive, WithThreeSidesHasOneTriangle012)
{
    const KEZVisPolygonPrimitive polygon(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 3);

    EXPECT_EQ(polygon.GetNumVertexes(), 3);
    EXPECT_EQ(polygon.GetNumTriangles(), 1);
    EXPECT_EQ(polygon.GetTriangleVertexIndexes(), (QList<long>{0, 1, 2}));
}

TEST(PolygonPrimitive, WithTwoSidesHasTwoVertexesAndNoTriangles)
{
    const KEZVisPolygonPrimitive polygon(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 2);

    EXPECT_EQ(polygon.GetNumVertexes(), 2);
    EXPECT_EQ(polygon.GetVertexCoordinatesAsDouble().size(), 6);
    EXPECT_EQ(polygon.GetNumTriangles(), 0);
    EXPECT_TRUE(polygon.GetTriangleVertexIndexes().isEmpty());
}

TEST(PolygonPrimitive, WithOneSideEndsInTheStandardBadAllocation)
{
    // The side count passes its check; the triangle count of -1 does not pass
    // the allocation. Nothing allocated before leaks (the sanitizer build checks).
    EXPECT_THROW(KEZVisPolygonPrimitive(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1), std::bad_alloc);
    EXPECT_THROW(KEZVisPolygonPrimitive(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1), std::bad_array_new_length);
}

TEST(PolygonPrimitive, TrianglesFanFromVertexZero)
{
    const KEZVisPolygonPrimitive polygon(KEZMathPoint(), KEZMathVector(0, 1, 0), 1.0, 7);

    QList<long> expected;
    for (long t = 0; t <= 4; ++t)
        expected << 0 << t + 1 << t + 2;
    EXPECT_EQ(polygon.GetTriangleVertexIndexes(), expected);
}

TEST(PolygonPrimitive, VertexesLieOnTheCircleStartingOnPlusXAlongZ)
{
    const double cx = 4.0, cy = 5.0, cz = -6.0, radius = 2.5;
    const int sides = 8;
    const KEZVisPolygonPrimitive polygon(KEZMathPoint(cx, cy, cz), KEZMathVector(0, 0, 1), radius, sides);

    const QList<double> coords = polygon.GetVertexCoordinatesAsDouble();
    ASSERT_EQ(coords.size(), 3 * sides);
    for (int i = 0; i < sides; ++i) {
        SCOPED_TRACE(i);
        const double angle = 2.0 * i * Pi / sides;
        ExpectPointNear(VertexAt(coords, i), cx + radius * std::cos(angle),
                        cy + radius * std::sin(angle), cz, Tolerance);
    }
    ExpectPointNear(VertexAt(coords, 2), cx, cy + radius, cz, Tolerance);
}

TEST(PolygonPrimitive, TiltedPolygonLiesInThePlanePerpendicularToItsDirection)
{
    const KEZMathPoint center(1, 2, 3);
    const KEZMathVector direction(-1, 2, 0.5);
    const KEZMathVector unit = direction.Normalized();
    const int sides = 9;
    const KEZVisPolygonPrimitive polygon(center, direction, 3.0, sides);

    const QList<double> coords = polygon.GetVertexCoordinatesAsDouble();
    for (int i = 0; i < sides; ++i) {
        SCOPED_TRACE(i);
        const KEZMathVector fromCenter = VertexAt(coords, i) - center;
        const KEZMathVector next = VertexAt(coords, (i + 1) % sides) - center;
        EXPECT_NEAR(fromCenter.GetMagnitude(), 3.0, Tolerance);
        EXPECT_NEAR(fromCenter * unit, 0.0, Tolerance);
        EXPECT_NEAR(fromCenter.GetAngleTo(next), 2 * Pi / sides, 1e-9);
        EXPECT_GT((fromCenter ^ next) * unit, 0.0);
    }
}

TEST(PolygonPrimitive, EveryVertexNormalIsTheDirectionAsGiven)
{
    const KEZVisPolygonPrimitive polygon(KEZMathPoint(), KEZMathVector(0, 0, 7), 1.0, 4);

    EXPECT_EQ(polygon.GetVertexNormalCoordsAsDouble(), (QList<double>{0, 0, 7, 0, 0, 7, 0, 0, 7, 0, 0, 7}));
}

TEST(PolygonPrimitive, ZeroSidesRaiseOutOfBoundsWithTheCountAndAnInclusiveLowerLimitOfOne)
{
    const auto exception = OutOfBoundsThrownBy(
        [] { return std::make_unique<KEZVisPolygonPrimitive>(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 0); });

    ExpectSideCountRefused(exception, 0);
}

TEST(PolygonPrimitive, NegativeSideCountRaisesOutOfBoundsCarryingThatCount)
{
    const auto exception = OutOfBoundsThrownBy(
        [] { return std::make_unique<KEZVisPolygonPrimitive>(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, -3); });

    ASSERT_TRUE(exception.has_value());
    EXPECT_EQ(exception->GetValue(), QVariant(-3));
}

TEST(PolygonPrimitive, BoundingBoxIsTheDefaultBoxWhateverTheGeometry)
{
    const KEZVisPolygonPrimitive polygon(KEZMathPoint(7, 8, 9), KEZMathVector(0, 0, 1), 2.0, 5);

    EXPECT_EQ(polygon.GetBoundingBox(KEZVisOptions()), KEZMathBoundingBox());
}

TEST(PolygonPrimitive, TriangleNormalsAreEmptyWhileTriangleIndexesAreNot)
{
    const KEZVisPolygonPrimitive polygon(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 5);

    EXPECT_TRUE(polygon.GetTriangleNormalCoordsAsDouble().isEmpty());
    EXPECT_TRUE(polygon.GetTriangleNormalCoordsAsFloat().isEmpty());
    EXPECT_EQ(polygon.GetTriangleVertexIndexes().size(), 9);
}

TEST(PolygonPrimitive, StreamsAsASurfaceWithTwoZeroCounts)
{
    const KEZVisPolygonPrimitive polygon(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 6);

    QByteArray bytes;
    {
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream << static_cast<const KEZVisSurfacePrimitive &>(polygon);
    }
    EXPECT_EQ(bytes, QByteArray(8, '\0'));
}

TEST(PolygonPrimitive, IsASurfacePrimitiveWithoutParent)
{
    const KEZVisPolygonPrimitive polygon(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 3);

    EXPECT_NE(qobject_cast<const KEZVisSurfacePrimitive *>(&polygon), nullptr);
    EXPECT_STREQ(polygon.metaObject()->className(), "KEZVisPolygonPrimitive");
    EXPECT_EQ(polygon.parent(), nullptr);
}

TEST(PolygonPrimitive, ZeroDirectionIsRefusedByTheCircle)
{
    EXPECT_THROW(KEZVisPolygonPrimitive(KEZMathPoint(), KEZMathVector(), 1.0, 4), KEZMathZeroMagnitudeVectorException);
}
