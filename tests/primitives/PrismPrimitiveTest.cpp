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

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <memory>
#include <new>
#include <optional>

namespace {

constexpr double Pi = 3.141592653589793;

KEZMathPoint VertexAt(const QList<double> &coords, qsizetype index)
{
    return KEZMathPoint(coords.at(3 * index), coords.at(3 * index + 1), coords.at(3 * index + 2));
}

KEZMathVector VectorAt(const QList<double> &coords, qsizetype index)
{
    return KEZMathVector(coords.at(3 * index), coords.at(3 * index + 1), coords.at(3 * index + 2));
}

void ExpectPointNear(const KEZMathPoint &actual, double x, double y, double z)
{
    EXPECT_NEAR(actual.GetX(), x, 1e-12);
    EXPECT_NEAR(actual.GetY(), y, 1e-12);
    EXPECT_NEAR(actual.GetZ(), z, 1e-12);
}

template <typename Make>
std::optional<KEZSysOutOfBoundsException> OutOfBoundsFrom(Make make)
{
    try {
        std::unique_ptr<KEZVisPrismPrimitive> prism(make());
    } catch (const KEZSysOutOfBoundsException &exception) {
        return exception;
    }
    return std::nullopt;
}

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
        ExpectPointNear(VertexAt(coords, 2 * i), cx + radius * std::cos(angle), cy + radius * std::sin(angle), cz);
        ExpectPointNear(VertexAt(coords, 2 * i + 1), cx + radius * std::cos(angle), cy + radius * std::sin(angle),
                        cz + height);
    }
}

TEST(PrismPrimitive, FirstVertexOfAFourSidedPrismAlongZLiesOnPlusX)
{
    const KEZVisPrismPrimitive prism(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 2.0, 4);

    const QList<double> coords = prism.GetVertexCoordinatesAsDouble();
    ExpectPointNear(VertexAt(coords, 0), 1, 0, 0);
    ExpectPointNear(VertexAt(coords, 1), 1, 0, 2);
    ExpectPointNear(VertexAt(coords, 2), 0, 1, 0);
    ExpectPointNear(VertexAt(coords, 3), 0, 1, 2);
    ExpectPointNear(VertexAt(coords, 4), -1, 0, 0);
    ExpectPointNear(VertexAt(coords, 6), 0, -1, 0);
    ExpectPointNear(VertexAt(coords, 7), 0, -1, 2);
}

TEST(PrismPrimitive, HeightRunsAlongTheNormalisedDirection)
{
    const KEZVisPrismPrimitive prism(KEZMathPoint(0, 0, 1), KEZMathVector(0, 0, 4), 1.0, 5.0, 3);

    const QList<double> coords = prism.GetVertexCoordinatesAsDouble();
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(VertexAt(coords, 2 * i).GetZ(), 1.0, 1e-12);
        EXPECT_NEAR(VertexAt(coords, 2 * i + 1).GetZ(), 6.0, 1e-12);
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
        EXPECT_NEAR(VectorAt(normals, 2 * i).GetX(), lower.GetX(), 1e-12);
        EXPECT_NEAR(VectorAt(normals, 2 * i).GetY(), lower.GetY(), 1e-12);
        EXPECT_NEAR(VectorAt(normals, 2 * i).GetZ(), lower.GetZ(), 1e-12);
        EXPECT_NEAR(VectorAt(normals, 2 * i + 1).GetX(), upper.GetX(), 1e-12);
        EXPECT_NEAR(VectorAt(normals, 2 * i + 1).GetY(), upper.GetY(), 1e-12);
        EXPECT_NEAR(VectorAt(normals, 2 * i + 1).GetZ(), upper.GetZ(), 1e-12);
        EXPECT_NEAR(VectorAt(normals, 2 * i).GetMagnitude(), radius, 1e-12);
        EXPECT_NEAR(VectorAt(normals, 2 * i + 1).GetMagnitude(), radius, 1e-12);
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
        EXPECT_NEAR(fromCenter.GetMagnitude(), radius, 1e-12);
        EXPECT_NEAR(fromCenter * unit, 0.0, 1e-12);
        const KEZMathVector up = VertexAt(coords, 2 * i + 1) - VertexAt(coords, 2 * i);
        EXPECT_NEAR(up.GetX(), unit.GetX() * height, 1e-12);
        EXPECT_NEAR(up.GetY(), unit.GetY() * height, 1e-12);
        EXPECT_NEAR(up.GetZ(), unit.GetZ() * height, 1e-12);
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
    const auto exception = OutOfBoundsFrom(
        [] { return new KEZVisPrismPrimitive(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0, 0); });

    ASSERT_TRUE(exception.has_value());
    EXPECT_EQ(exception->GetValue().typeId(), QMetaType::Int);
    EXPECT_EQ(exception->GetValue().toInt(), 0);
    EXPECT_EQ(exception->GetLowerLimit().typeId(), QMetaType::Int);
    EXPECT_EQ(exception->GetLowerLimit().toInt(), 1);
    EXPECT_FALSE(exception->GetUpperLimit().isValid());
    EXPECT_TRUE(exception->IsLowerLimitIncluded());
    EXPECT_TRUE(exception->IsUpperLimitIncluded());
}

TEST(PrismPrimitive, NegativeSideCountRaisesOutOfBoundsCarryingThatCount)
{
    const auto exception = OutOfBoundsFrom(
        [] { return new KEZVisPrismPrimitive(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0, -5); });

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
