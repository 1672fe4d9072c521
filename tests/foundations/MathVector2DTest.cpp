// Tests of KEZMathVector2D.

#include <KEZMathVector2D.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {
const double pi = std::acos(-1.0);
}

TEST(MathVector2D, DefaultIsNullAndNotValid)
{
    const KEZMathVector2D vector;
    EXPECT_EQ(vector.GetX(), 0.0);
    EXPECT_EQ(vector.GetY(), 0.0);
    EXPECT_FALSE(vector.IsValid());
}

TEST(MathVector2D, ConstructorAndSetters)
{
    KEZMathVector2D vector(3, -4);
    EXPECT_EQ(vector.GetX(), 3.0);
    EXPECT_EQ(vector.GetY(), -4.0);
    EXPECT_EQ(vector.GetMagnitude(), 5.0);
    vector.SetX(1);
    vector.SetY(2);
    EXPECT_EQ(vector.GetX(), 1.0);
    EXPECT_EQ(vector.GetY(), 2.0);
}

TEST(MathVector2D, NormalizeGivesUnitLength)
{
    KEZMathVector2D vector(3, -4);
    vector.Normalize();
    EXPECT_DOUBLE_EQ(vector.GetX(), 0.6);
    EXPECT_DOUBLE_EQ(vector.GetY(), -0.8);
}

TEST(MathVector2D, NormalizeOfANullVectorLeavesIt)
{
    KEZMathVector2D vector;
    vector.Normalize();
    EXPECT_EQ(vector.GetX(), 0.0);
    EXPECT_EQ(vector.GetY(), 0.0);
}

TEST(MathVector2D, ValidityThresholdIsOneEMinusTwelve)
{
    EXPECT_TRUE(KEZMathVector2D(0, 1e-12).IsValid());
    EXPECT_FALSE(KEZMathVector2D(0.9e-12, 0).IsValid());
}

TEST(MathVector2D, Scaling)
{
    const KEZMathVector2D scaled = KEZMathVector2D(1, -2) * 3.0;
    EXPECT_EQ(scaled.GetX(), 3.0);
    EXPECT_EQ(scaled.GetY(), -6.0);
}

TEST(MathVector2D, DotProduct)
{
    EXPECT_EQ(KEZMathVector2D(1, 2) * KEZMathVector2D(3, -4), -5.0);
}

TEST(MathVector2D, EqualityAllowsOneEMinusNinePerComponent)
{
    const KEZMathVector2D a(1, 2);
    EXPECT_TRUE(a == KEZMathVector2D(1 + 0.9e-9, 2 - 0.9e-9));
    EXPECT_FALSE(a == KEZMathVector2D(1 + 1.1e-9, 2));
    EXPECT_FALSE(a == KEZMathVector2D(1, 2 - 1.1e-9));
    EXPECT_TRUE(a != KEZMathVector2D(1, 2 + 1.1e-9));
    EXPECT_FALSE(a != KEZMathVector2D(1, 2 + 0.9e-9));
}

TEST(MathVector2D, AngleIsUnsignedInRadians)
{
    EXPECT_DOUBLE_EQ(KEZMathVector2D(1, 0).GetAngleTo(KEZMathVector2D(0, 1)), pi / 2);
    EXPECT_DOUBLE_EQ(KEZMathVector2D(1, 0).GetAngleTo(KEZMathVector2D(0, -1)), pi / 2);
    EXPECT_DOUBLE_EQ(KEZMathVector2D(1, 0).GetAngleTo(KEZMathVector2D(-1, 0)), pi);
    EXPECT_DOUBLE_EQ(KEZMathVector2D(1, 1).GetAngleTo(KEZMathVector2D(0, 5)), pi / 4);
}

TEST(MathVector2D, AngleOfParallelVectorsIsZeroNotNan)
{
    const KEZMathVector2D a(0.1, 0.7);
    for (int i = 1; i < 1000; ++i) {
        const double angle = a.GetAngleTo(a * (i * 0.13));
        EXPECT_FALSE(std::isnan(angle));
        EXPECT_LT(angle, 0.001);
    }
}

TEST(MathVector2D, AngleWithANullVectorIsZero)
{
    EXPECT_EQ(KEZMathVector2D().GetAngleTo(KEZMathVector2D(1, 0)), 0.0);
}
