// Tests of KEZVisPrismPrimitive: the side wall of a regular prism with vertex
// normals, generated in arrays of its own.

#include "KEZVisOptions.h"
#include "KEZVisPrismPrimitive.h"

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

// The closed strip (t, (t + 1) mod n, (t + 2) mod n), written out from the rule.
QList<long> StripRule(int numSides)
{
    const long n = 2L * numSides;
    QList<long> indexes;
    for (long t = 0; t < n; ++t)
        indexes << t << (t + 1) % n << (t + 2) % n;
    return indexes;
}

} // namespace

TEST(PrismPrimitive, WithFourSidesHasEightVertexesAndEightTriangles)
{
    const KEZVisPrismPrimitive prism(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 2.0, 4);

    EXPECT_EQ(prism.GetNumVertexes(), 8);
    EXPECT_EQ(prism.GetNumTriangles(), 8);
    const QList<long> indexes = prism.GetTriangleVertexIndexes();
    ASSERT_EQ(indexes.size(), 24);
    EXPECT_EQ(indexes.mid(0, 3), (QList<long>{0, 1, 2}));
    EXPECT_EQ(indexes.mid(21, 3), (QList<long>{7, 0, 1}));
}

TEST(PrismPrimitive, TrianglesFormAClosedStripRoundTheWall)
{
    const KEZVisPrismPrimitive prism(KEZMathPoint(1, 2, 3), KEZMathVector(0, 1, 0), 2.0, 3.0, 5);

    EXPECT_EQ(prism.GetTriangleVertexIndexes(), StripRule(5));
}

TEST(PrismPrimitive, VertexesAlternateBetweenBaseAndTopCircleAlongZ)
{
    const double cx = 1.0, cy = -2.0, cz = 0.5, radius = 2.0, height = 5.0;
    const int sides = 6;
    const KEZVisPrismPrimitive prism(KEZMathPoint(cx, cy, cz), KEZMathVector(0, 0, 1), radius, height, sides);

    const QList<double> coords = prism.GetVertexCoordinatesAsDouble();
    ASSERT_EQ(coords.size(), 3 * 2 * sides);
    // With the normal (0, 0, 1) the circle starts on +x and turns towards +y.
    for (int i = 0; i < sides; ++i) {
        const double angle = 2.0 * i * Pi / sides;
        SCOPED_TRACE(i);
        ExpectPointNear(VertexAt(coords, 2 * i), cx + radius * std::cos(angle),
                        cy + radius * std::sin(angle), cz, Tolerance);
        ExpectPointNear(VertexAt(coords, 2 * i + 1), cx + radius * std::cos(angle), cy + radius * std::sin(angle),
                        cz + height, Tolerance);
    }
}

TEST(PrismPrimitive, FirstVertexOfAFourSidedPrismAlongZLiesOnPlusX)
{
    const KEZVisPrismPrimitive prism(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 2.0, 4);

    const QList<double> coords = prism.GetVertexCoordinatesAsDouble();
    ExpectPointNear(VertexAt(coords, 0), 1, 0, 0, Tolerance);
    ExpectPointNear(VertexAt(coords, 1), 1, 0, 2, Tolerance);
    ExpectPointNear(VertexAt(coords, 2), 0, 1, 0, Tolerance);
    ExpectPointNear(VertexAt(coords, 3), 0, 1, 2, Tolerance);
    ExpectPointNear(VertexAt(coords, 4), -1, 0, 0, Tolerance);
    ExpectPointNear(VertexAt(coords, 6), 0, -1, 0, Tolerance);
    ExpectPointNear(VertexAt(coords, 7), 0, -1, 2, Tolerance);
}

TEST(PrismPrimitive, HeightRunsAlongTheNormalisedDirection)
{
    const KEZVisPrismPrimitive prism(KEZMathPoint(0, 0, 1), KEZMathVector(0, 0, 4), 1.0, 5.0, 3);

    const QList<double> coords = prism.GetVertexCoordinatesAsDouble();
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(VertexAt(coords, 2 * i).GetZ(), 1.0, Tolerance);
        EXPECT_NEAR(VertexAt(coords, 2 * i + 1).GetZ(), 6.0, Tolerance);
    }
}

TEST(PrismPrimitive, VertexNormalsPointFromTheirCircleCentreAndAreNotNormalised)
{
    const KEZMathPoint center(1, 1, 1);
    const double radius = 3.0, height = 2.0;
    const KEZVisPrismPrimitive prism(center, KEZMathVector(0, 0, 2), radius, height, 5);

    const QList<double> coords = prism.GetVertexCoordinatesAsDouble();
    const QList<double> normals = prism.GetVertexNormalCoordsAsDouble();
    ASSERT_EQ(normals.size(), coords.size());
    const KEZMathPoint topCenter(1, 1, 3);
    for (int i = 0; i < 5; ++i) {
        SCOPED_TRACE(i);
        const KEZMathVector lower = VertexAt(coords, 2 * i) - center;
        const KEZMathVector upper = VertexAt(coords, 2 * i + 1) - topCenter;
        ExpectVectorNear(VectorAt(normals, 2 * i), lower.GetX(), lower.GetY(), lower.GetZ(), Tolerance);
        ExpectVectorNear(VectorAt(normals, 2 * i + 1), upper.GetX(), upper.GetY(), upper.GetZ(), Tolerance);
        EXPECT_NEAR(VectorAt(normals, 2 * i).GetMagnitude(), radius, Tolerance);
        EXPECT_NEAR(VectorAt(normals, 2 * i + 1).GetMagnitude(), radius, Tolerance);
    }
}

TEST(PrismPrimitive, TiltedPrismStandsOnItsCirclesWithEvenCorners)
{
    const KEZMathPoint center(2, -1, 4);
    const KEZMathVector direction(1, 1, 1);
    const KEZMathVector unit = direction.Normalized();
    const double radius = 1.5, height = 2.5;
    const int sides = 7;
    const KEZVisPrismPrimitive prism(center, direction, radius, height, sides);

    const QList<double> coords = prism.GetVertexCoordinatesAsDouble();
    for (int i = 0; i < sides; ++i) {
        SCOPED_TRACE(i);
        const KEZMathVector fromCenter = VertexAt(coords, 2 * i) - center;
        EXPECT_NEAR(fromCenter.GetMagnitude(), radius, Tolerance);
        EXPECT_NEAR(fromCenter * unit, 0.0, Tolerance);
        const KEZMathVector up = VertexAt(coords, 2 * i + 1) - VertexAt(coords, 2 * i);
        ExpectVectorNear(up, unit.GetX() * height, unit.GetY() * height, unit.GetZ() * height, Tolerance);
        const KEZMathVector next = VertexAt(coords, 2 * ((i + 1) % sides)) - center;
        EXPECT_NEAR(fromCenter.GetAngleTo(next), 2 * Pi / sides, 1e-9);
        // Counter-clockwise seen from the tip of the direction.
        EXPECT_GT((fromCenter ^ next) * unit, 0.0);
    }
}

TEST(PrismPrimitive, WithOneSideHasTwoVertexesAndTwoDegenerateTriangles)
{
    const KEZVisPrismPrimitive prism(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0, 1);

    EXPECT_EQ(prism.GetNumVertexes(), 2);
    EXPECT_EQ(prism.GetTriangleVertexIndexes(), (QList<long>{0, 1, 0, 1, 0, 1}));
}

TEST(PrismPrimitive, ZeroSidesRaiseOutOfBoundsWithTheCountAndAnInclusiveLowerLimitOfOne)
{
    const auto exception = OutOfBoundsThrownBy(
        [] { return std::make_unique<KEZVisPrismPrimitive>(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0, 0); });

    ExpectSideCountRefused(exception, 0);
}

TEST(PrismPrimitive, NegativeSideCountRaisesOutOfBoundsCarryingThatCount)
{
    const auto exception = OutOfBoundsThrownBy(
        [] { return std::make_unique<KEZVisPrismPrimitive>(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0, -5); });

    ASSERT_TRUE(exception.has_value());
    EXPECT_EQ(exception->GetValue(), QVariant(-5));
    EXPECT_EQ(exception->GetLowerLimit(), QVariant(1));
}

TEST(PrismPrimitive, SideCountBeyondIntVertexNumbersThrowsBadArrayNewLength)
{
    EXPECT_THROW(KEZVisPrismPrimitive(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0, INT_MAX / 2 + 1),
                 std::bad_array_new_length);
}

TEST(PrismPrimitive, ZeroDirectionIsRefusedByTheCircle)
{
    EXPECT_THROW(KEZVisPrismPrimitive(KEZMathPoint(), KEZMathVector(), 1.0, 1.0, 4),
                 KEZMathZeroMagnitudeVectorException);
}

TEST(PrismPrimitive, BoundingBoxIsTheDefaultBoxWhateverTheGeometry)
{
    const KEZVisPrismPrimitive prism(KEZMathPoint(10, 20, 30), KEZMathVector(1, 2, 3), 4.0, 5.0, 8);

    const KEZMathBoundingBox box = prism.GetBoundingBox(KEZVisOptions());
    EXPECT_EQ(box, KEZMathBoundingBox());
    EXPECT_EQ(box.GetLowerPoint().GetX(), 0.0);
    EXPECT_EQ(box.GetUpperPoint().GetZ(), 0.0);
}

TEST(PrismPrimitive, TriangleNormalsAreEmptyWhileTriangleIndexesAreNot)
{
    const KEZVisPrismPrimitive prism(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0, 4);

    EXPECT_TRUE(prism.GetTriangleNormalCoordsAsDouble().isEmpty());
    EXPECT_TRUE(prism.GetTriangleNormalCoordsAsFloat().isEmpty());
    EXPECT_EQ(prism.GetTriangleVertexIndexes().size(), 24);
}

TEST(PrismPrimitive, FloatCoordinatesAreTheDoubleOnesNarrowed)
{
    const KEZVisPrismPrimitive prism(KEZMathPoint(0.1, 0.2, 0.3), KEZMathVector(0, 1, 1), 1.7, 2.9, 5);

    const QList<double> coords = prism.GetVertexCoordinatesAsDouble();
    const QList<float> narrowed = prism.GetVertexCoordinatesAsFloat();
    ASSERT_EQ(narrowed.size(), coords.size());
    ASSERT_EQ(narrowed.size(), 30);
    for (qsizetype i = 0; i < coords.size(); ++i)
        EXPECT_EQ(narrowed.at(i), float(coords.at(i)));
}

TEST(PrismPrimitive, StreamsAsASurfaceWithTwoZeroCounts)
{
    const KEZVisPrismPrimitive prism(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0, 4);

    QByteArray bytes;
    {
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream << static_cast<const KEZVisSurfacePrimitive &>(prism);
    }
    EXPECT_EQ(bytes, QByteArray(8, '\0'));
}

TEST(PrismPrimitive, IsASurfacePrimitiveWithoutParent)
{
    const KEZVisPrismPrimitive prism(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0, 3);

    EXPECT_NE(qobject_cast<const KEZVisSurfacePrimitive *>(&prism), nullptr);
    EXPECT_STREQ(prism.metaObject()->className(), "KEZVisPrismPrimitive");
    EXPECT_EQ(prism.parent(), nullptr);
}
