// Tests of KEZMathVector.

#include <KEZMathVector.h>

#include <KEZSysOutOfBoundsException.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {
const double pi = std::acos(-1.0);
}

TEST(MathVector, DefaultIsNullAndNotValid)
{
    const KEZMathVector vector;
    EXPECT_EQ(vector.GetX(), 0.0);
    EXPECT_EQ(vector.GetY(), 0.0);
    EXPECT_EQ(vector.GetZ(), 0.0);
    EXPECT_FALSE(KEZMathVector().IsValid());
}

TEST(MathVector, ComponentsInOrder)
{
    const KEZMathVector vector(1, -2, 3.5);
    double x = 0, y = 0, z = 0;
    vector.GetCoord(x, y, z);
    EXPECT_EQ(x, 1.0);
    EXPECT_EQ(y, -2.0);
    EXPECT_EQ(z, 3.5);
    EXPECT_EQ(vector.GetX(), 1.0);
    EXPECT_EQ(vector.GetY(), -2.0);
    EXPECT_EQ(vector.GetZ(), 3.5);
}

TEST(MathVector, SettersAndIndex)
{
    KEZMathVector vector;
    vector.SetX(1);
    vector.SetY(2);
    vector.SetZ(3);
    EXPECT_EQ(vector[0], 1.0);
    EXPECT_EQ(vector[1], 2.0);
    EXPECT_EQ(vector[2], 3.0);
    vector[1] = 5;
    EXPECT_EQ(vector.GetY(), 5.0);
    vector.SetCoord(7, 8, 9);
    EXPECT_EQ(vector.GetZ(), 9.0);
    EXPECT_THROW(vector[3], KEZSysOutOfBoundsException);
    const KEZMathVector &constant = vector;
    EXPECT_THROW((void)constant[-1], KEZSysOutOfBoundsException);
}

TEST(MathVector, MagnitudeIsTheEuclideanLength)
{
    EXPECT_DOUBLE_EQ(KEZMathVector(2, 3, 6).GetMagnitude(), 7.0);
    EXPECT_DOUBLE_EQ(KEZMathVector(2, 3, 6).GetSquaredMagnitude(), 49.0);
}

TEST(MathVector, ValidityThresholdIsOneEMinusTwelve)
{
    EXPECT_TRUE(KEZMathVector(1e-12, 0, 0).IsValid());
    EXPECT_TRUE(KEZMathVector(0, 0, 1.1e-12).IsValid());
    EXPECT_FALSE(KEZMathVector(0.9e-12, 0, 0).IsValid());
    // Each component below the threshold, the length (about 1.04e-12) above it.
    EXPECT_TRUE(KEZMathVector(0.6e-12, 0.6e-12, 0.6e-12).IsValid());
}

TEST(MathVector, NanIsNotValid)
{
    EXPECT_FALSE(KEZMathVector(std::numeric_limits<double>::quiet_NaN(), 1, 0).IsValid());
}

TEST(MathVector, NormalizeGivesUnitLengthInPlace)
{
    KEZMathVector vector(0, 3, 4);
    vector.Normalize();
    EXPECT_DOUBLE_EQ(vector.GetX(), 0.0);
    EXPECT_DOUBLE_EQ(vector.GetY(), 0.6);
    EXPECT_DOUBLE_EQ(vector.GetZ(), 0.8);
}

TEST(MathVector, NormalizedLeavesTheOriginalAlone)
{
    const KEZMathVector vector(0, 0, -5);
    const KEZMathVector unit = vector.Normalized();
    EXPECT_EQ(unit.GetZ(), -1.0);
    EXPECT_EQ(vector.GetZ(), -5.0);
}

TEST(MathVector, NormalizeOfANullVectorLeavesIt)
{
    KEZMathVector null;
    null.Normalize();
    EXPECT_EQ(null.GetX(), 0.0);
    EXPECT_EQ(null.GetY(), 0.0);
    EXPECT_EQ(null.GetZ(), 0.0);
    KEZMathVector tiny(1e-13, 0, 0);
    tiny.Normalize();
    EXPECT_EQ(tiny.GetX(), 1e-13);
    const KEZMathVector normalized = KEZMathVector().Normalized();
    EXPECT_FALSE(std::isnan(normalized.GetX()));
    EXPECT_EQ(normalized.GetX(), 0.0);
}

TEST(MathVector, AngleIsUnsignedInRadians)
{
    EXPECT_DOUBLE_EQ(KEZMathVector(1, 0, 0).GetAngleTo(KEZMathVector(0, 2, 0)), pi / 2);
    EXPECT_DOUBLE_EQ(KEZMathVector(0, 2, 0).GetAngleTo(KEZMathVector(1, 0, 0)), pi / 2);
    EXPECT_DOUBLE_EQ(KEZMathVector(1, 0, 0).GetAngleTo(KEZMathVector(1, 1, 0)), pi / 4);
    EXPECT_DOUBLE_EQ(KEZMathVector(1, 0, 0).GetAngleTo(KEZMathVector(-3, 0, 0)), pi);
    EXPECT_DOUBLE_EQ(KEZMathVector(0, 0, 1).GetAngleTo(KEZMathVector(0, -1, -1)), 3 * pi / 4);
}

TEST(MathVector, AngleOfParallelVectorsIsNeverNan)
{
    // Without clamping, rounding makes this cosine a hair above 1.
    const KEZMathVector a(0.1, 0.2, 0.3);
    const KEZMathVector b = a * 3.0;
    const double angle = a.GetAngleTo(b);
    EXPECT_FALSE(std::isnan(angle));
    EXPECT_NEAR(angle, 0.0, 1e-7);
    const double opposite = a.GetAngleTo(a * -7.0);
    EXPECT_FALSE(std::isnan(opposite));
    EXPECT_NEAR(opposite, pi, 1e-7);
    for (int i = 1; i < 1000; ++i) {
        const KEZMathVector v(i * 0.37, i * -1.13, i * 0.011);
        EXPECT_FALSE(std::isnan(v.GetAngleTo(v * 1.7))) << i;
        EXPECT_FALSE(std::isnan(v.GetAngleTo(v * -0.3))) << i;
    }
}

TEST(MathVector, AngleWithANullVectorIsZero)
{
    EXPECT_EQ(KEZMathVector().GetAngleTo(KEZMathVector(1, 0, 0)), 0.0);
    EXPECT_EQ(KEZMathVector(1, 0, 0).GetAngleTo(KEZMathVector()), 0.0);
}

TEST(MathVector, ScalingFromEitherSide)
{
    const KEZMathVector a = KEZMathVector(1, -2, 3) * 2.0;
    const KEZMathVector b = -0.5 * KEZMathVector(1, -2, 3);
    EXPECT_EQ(a.GetX(), 2.0);
    EXPECT_EQ(a.GetY(), -4.0);
    EXPECT_EQ(a.GetZ(), 6.0);
    EXPECT_EQ(b.GetX(), -0.5);
    EXPECT_EQ(b.GetY(), 1.0);
    EXPECT_EQ(b.GetZ(), -1.5);
}

TEST(MathVector, StarOfTwoVectorsIsTheDotProduct)
{
    // 1*4 + 2*(-5) + 3*6 = 12
    EXPECT_EQ(KEZMathVector(1, 2, 3) * KEZMathVector(4, -5, 6), 12.0);
}

TEST(MathVector, CaretIsTheRightHandedCrossProduct)
{
    const KEZMathVector z = KEZMathVector(1, 0, 0) ^ KEZMathVector(0, 1, 0);
    EXPECT_EQ(z.GetX(), 0.0);
    EXPECT_EQ(z.GetY(), 0.0);
    EXPECT_EQ(z.GetZ(), 1.0);
    // (1,2,3) x (4,5,6) = (2*6-3*5, 3*4-1*6, 1*5-2*4) = (-3, 6, -3)
    const KEZMathVector c = KEZMathVector(1, 2, 3) ^ KEZMathVector(4, 5, 6);
    EXPECT_EQ(c.GetX(), -3.0);
    EXPECT_EQ(c.GetY(), 6.0);
    EXPECT_EQ(c.GetZ(), -3.0);
}

TEST(MathVector, SumDifferenceAndNegation)
{
    const KEZMathVector sum = KEZMathVector(1, 2, 3) + KEZMathVector(10, 20, 30);
    const KEZMathVector difference = KEZMathVector(1, 2, 3) - KEZMathVector(10, 20, 30);
    const KEZMathVector negated = -KEZMathVector(1, -2, 0);
    EXPECT_EQ(sum.GetZ(), 33.0);
    EXPECT_EQ(difference.GetY(), -18.0);
    EXPECT_EQ(negated.GetX(), -1.0);
    EXPECT_EQ(negated.GetY(), 2.0);
}

TEST(MathVector, EqualityAllowsOneEMinusNinePerComponent)
{
    const KEZMathVector a(1, 2, 3);
    EXPECT_TRUE(a == KEZMathVector(1 + 0.9e-9, 2 - 0.9e-9, 3 + 0.9e-9));
    EXPECT_FALSE(a == KEZMathVector(1, 2, 3 + 1.1e-9));
    EXPECT_TRUE(a != KEZMathVector(1 - 1.1e-9, 2, 3));
}

TEST(MathVector, PerpendicularOfTheZAxisIsTheXAxis)
{
    const KEZMathVector up = KEZMathVector(0, 0, 1).GetPerpendicular();
    EXPECT_EQ(up.GetX(), 1.0);
    EXPECT_EQ(up.GetY(), 0.0);
    EXPECT_EQ(up.GetZ(), 0.0);
    const KEZMathVector down = KEZMathVector(0, 0, -3).GetPerpendicular();
    EXPECT_EQ(down.GetX(), 1.0);
    EXPECT_EQ(down.GetY(), 0.0);
    EXPECT_EQ(down.GetZ(), 0.0);
}

TEST(MathVector, PerpendicularTakesTheLeastAlignedAxis)
{
    const KEZMathVector ofX = KEZMathVector(2, 0, 0).GetPerpendicular();
    EXPECT_EQ(ofX.GetY(), 1.0);
    EXPECT_EQ(ofX.GetX(), 0.0);
    // (1, 0.5, 0.2): z is least aligned; z minus its part along the unit vector
    // is (0,0,1) - 0.2/1.29 * (1, 0.5, 0.2), then normalised.
    const double n2 = 1 + 0.25 + 0.04;
    KEZMathVector expected(-0.2 / n2, -0.1 / n2, 1 - 0.04 / n2);
    const double length = std::sqrt(expected.GetX() * expected.GetX() + expected.GetY() * expected.GetY()
                                    + expected.GetZ() * expected.GetZ());
    const KEZMathVector perpendicular = KEZMathVector(1, 0.5, 0.2).GetPerpendicular();
    EXPECT_NEAR(perpendicular.GetX(), expected.GetX() / length, 1e-15);
    EXPECT_NEAR(perpendicular.GetY(), expected.GetY() / length, 1e-15);
    EXPECT_NEAR(perpendicular.GetZ(), expected.GetZ() / length, 1e-15);
}

TEST(MathVector, PerpendicularIsUnitAndPerpendicularForManyVectors)
{
    for (int i = -5; i <= 5; ++i) {
        for (int j = -5; j <= 5; ++j) {
            for (int k = -5; k <= 5; ++k) {
                const KEZMathVector v(i, j * 0.7, k * 1.3);
                if (i == 0 && j == 0 && k == 0)
                    continue;
                const KEZMathVector p = v.GetPerpendicular();
                EXPECT_NEAR(p.GetX() * v.GetX() + p.GetY() * v.GetY() + p.GetZ() * v.GetZ(), 0.0, 1e-12);
                EXPECT_NEAR(p.GetX() * p.GetX() + p.GetY() * p.GetY() + p.GetZ() * p.GetZ(), 1.0, 1e-12);
            }
        }
    }
}

TEST(MathVector, PerpendicularOfANullVectorIsTheXAxis)
{
    const KEZMathVector p = KEZMathVector().GetPerpendicular();
    EXPECT_EQ(p.GetX(), 1.0);
    EXPECT_EQ(p.GetY(), 0.0);
    EXPECT_EQ(p.GetZ(), 0.0);
}
