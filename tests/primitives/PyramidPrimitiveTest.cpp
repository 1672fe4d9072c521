// Tests of KEZVisPyramidPrimitive: the mantle of a regular pyramid with vertex
// normals, generated in arrays of its own.

#include "KEZVisOptions.h"
#include "KEZVisPyramidPrimitive.h"

#include <KEZMathBoundingBox.h>
#include <KEZMathPoint.h>
#include <KEZMathVector.h>
#include <KEZMathZeroMagnitudeVectorException.h>
#include <KEZSysOutOfBoundsException.h>

#include <QDataStream>
#include <QIODevice>

#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

#include <climits>
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

TEST(PyramidPrimitive, WithThreeSidesHasFourVertexesAndAFanClosingOnVertexOne)
{
    const KEZVisPyramidPrimitive pyramid(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 2.0, 3);

    EXPECT_EQ(pyramid.GetNumVertexes(), 4);
    EXPECT_EQ(pyramid.GetNumTriangles(), 3);
    EXPECT_EQ(pyramid.GetTriangleVertexIndexes(), (QList<long>{0, 1, 2, 0, 2, 3, 0, 3, 1}));
}

TEST(PyramidPrimitive, WithOneSideHasTwoVertexesAndTheSingleTriangle011)
{
    const KEZVisPyramidPrimitive pyramid(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 2.0, 1);

    EXPECT_EQ(pyramid.GetNumVertexes(), 2);
    EXPECT_EQ(pyramid.GetVertexCoordinatesAsDouble().size(), 6);
    EXPECT_EQ(pyramid.GetTriangleVertexIndexes(), (QList<long>{0, 1, 1}));
}

TEST(PyramidPrimitive, TrianglesFanFromTheApexForSixSides)
{
    const KEZVisPyramidPrimitive pyramid(KEZMathPoint(), KEZMathVector(1, 0, 0), 1.0, 2.0, 6);

    QList<long> expected;
    for (long k = 1; k <= 5; ++k)
        expected << 0 << k << k + 1;
    expected << 0 << 6 << 1;
    EXPECT_EQ(pyramid.GetTriangleVertexIndexes(), expected);
}

TEST(PyramidPrimitive, ApexComesFirstThenTheCornersAlongZ)
{
    const double cx = -1.0, cy = 3.0, cz = 2.0, radius = 0.5, height = 4.0;
    const int sides = 5;
    const KEZVisPyramidPrimitive pyramid(KEZMathPoint(cx, cy, cz), KEZMathVector(0, 0, 1), radius, height, sides);

    const QList<double> coords = pyramid.GetVertexCoordinatesAsDouble();
    ASSERT_EQ(coords.size(), 3 * (sides + 1));
    ExpectPointNear(VertexAt(coords, 0), cx, cy, cz + height, Tolerance);
    for (int i = 0; i < sides; ++i) {
        SCOPED_TRACE(i);
        const double angle = 2.0 * i * Pi / sides;
        ExpectPointNear(VertexAt(coords, i + 1), cx + radius * std::cos(angle),
                        cy + radius * std::sin(angle), cz, Tolerance);
    }
}

TEST(PyramidPrimitive, ApexNormalIsTheDirectionAsGivenAndCornerNormalsAreNotNormalised)
{
    const KEZMathPoint center(1, 2, 3);
    const double radius = 2.0;
    const KEZVisPyramidPrimitive pyramid(center, KEZMathVector(0, 0, 3), radius, 6.0, 4);

    const QList<double> coords = pyramid.GetVertexCoordinatesAsDouble();
    const QList<double> normals = pyramid.GetVertexNormalCoordsAsDouble();
    ASSERT_EQ(normals.size(), 15);
    // The apex lies one height along the unit axis, not along the given vector.
    ExpectPointNear(VertexAt(coords, 0), 1, 2, 9, Tolerance);
    EXPECT_EQ(normals.mid(0, 3), (QList<double>{0, 0, 3}));
    for (int i = 1; i <= 4; ++i) {
        SCOPED_TRACE(i);
        const KEZMathVector expected = VertexAt(coords, i) - center;
        ExpectVectorNear(VectorAt(normals, i), expected.GetX(), expected.GetY(), expected.GetZ(), Tolerance);
        EXPECT_NEAR(expected.GetMagnitude(), radius, Tolerance);
    }
}

TEST(PyramidPrimitive, ZeroSidesRaiseOutOfBoundsWithTheCountAndAnInclusiveLowerLimitOfOne)
{
    const auto exception = OutOfBoundsThrownBy(
        [] { return std::make_unique<KEZVisPyramidPrimitive>(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0, 0); });

    ExpectSideCountRefused(exception, 0);
}

TEST(PyramidPrimitive, NegativeSideCountRaisesOutOfBoundsCarryingThatCount)
{
    const auto exception = OutOfBoundsThrownBy(
        [] { return std::make_unique<KEZVisPyramidPrimitive>(
            KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0, INT_MIN); });

    ASSERT_TRUE(exception.has_value());
    EXPECT_EQ(exception->GetValue(), QVariant(INT_MIN));
}

TEST(PyramidPrimitive, SideCountBeyondIntVertexNumbersThrowsBadArrayNewLength)
{
    EXPECT_THROW(KEZVisPyramidPrimitive(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0, INT_MAX),
                 std::bad_array_new_length);
}

TEST(PyramidPrimitive, BoundingBoxIsTheDefaultBoxWhateverTheGeometry)
{
    const KEZVisPyramidPrimitive pyramid(KEZMathPoint(-5, 6, 7), KEZMathVector(0, 1, 0), 3.0, 9.0, 6);

    EXPECT_EQ(pyramid.GetBoundingBox(KEZVisOptions()), KEZMathBoundingBox());
}

TEST(PyramidPrimitive, TriangleNormalsAreEmptyWhileTriangleIndexesAreNot)
{
    const KEZVisPyramidPrimitive pyramid(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0, 4);

    EXPECT_TRUE(pyramid.GetTriangleNormalCoordsAsDouble().isEmpty());
    EXPECT_TRUE(pyramid.GetTriangleNormalCoordsAsFloat().isEmpty());
    EXPECT_EQ(pyramid.GetTriangleVertexIndexes().size(), 12);
}

TEST(PyramidPrimitive, StreamsAsASurfaceWithTwoZeroCounts)
{
    const KEZVisPyramidPrimitive pyramid(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0, 4);

    QByteArray bytes;
    {
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream << static_cast<const KEZVisSurfacePrimitive &>(pyramid);
    }
    EXPECT_EQ(bytes, QByteArray(8, '\0'));
}

TEST(PyramidPrimitive, IsASurfacePrimitiveWithoutParent)
{
    const KEZVisPyramidPrimitive pyramid(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0, 3);

    EXPECT_NE(qobject_cast<const KEZVisSurfacePrimitive *>(&pyramid), nullptr);
    EXPECT_STREQ(pyramid.metaObject()->className(), "KEZVisPyramidPrimitive");
    EXPECT_EQ(pyramid.parent(), nullptr);
}

TEST(PyramidPrimitive, ZeroDirectionIsRefusedByTheCircle)
{
    EXPECT_THROW(KEZVisPyramidPrimitive(KEZMathPoint(), KEZMathVector(), 1.0, 1.0, 4),
                 KEZMathZeroMagnitudeVectorException);
}
