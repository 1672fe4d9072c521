// Tests of KEZMathPoint2D.

#include <KEZMathPoint2D.h>

#include <gtest/gtest.h>

TEST(MathPoint2D, DefaultIsTheOrigin)
{
    const KEZMathPoint2D point;
    EXPECT_EQ(point.GetX(), 0.0);
    EXPECT_EQ(point.GetY(), 0.0);
}

TEST(MathPoint2D, ConstructorAndSetters)
{
    KEZMathPoint2D point(1.5, -2);
    EXPECT_EQ(point.GetX(), 1.5);
    EXPECT_EQ(point.GetY(), -2.0);
    point.SetX(3);
    point.SetY(4);
    EXPECT_EQ(point.GetX(), 3.0);
    EXPECT_EQ(point.GetY(), 4.0);
}

TEST(MathPoint2D, TimesEqualsScalesBothCoordinates)
{
    KEZMathPoint2D point(1.5, -2);
    point *= 2.0;
    EXPECT_EQ(point.GetX(), 3.0);
    EXPECT_EQ(point.GetY(), -4.0);
}

TEST(MathPoint2D, PlusEqualsAVectorTranslates)
{
    KEZMathPoint2D point(1, 2);
    KEZMathPoint2D &result = (point += KEZMathVector2D(0.5, -3));
    EXPECT_EQ(&result, &point);
    EXPECT_EQ(point.GetX(), 1.5);
    EXPECT_EQ(point.GetY(), -1.0);
}

TEST(MathPoint2D, PlusAVectorGivesANewPoint)
{
    const KEZMathPoint2D point(1, 2);
    const KEZMathPoint2D moved = point + KEZMathVector2D(1, 1);
    EXPECT_EQ(moved.GetX(), 2.0);
    EXPECT_EQ(moved.GetY(), 3.0);
    EXPECT_EQ(point.GetX(), 1.0);
}

TEST(MathPoint2D, DifferenceAndDistance)
{
    const KEZMathVector2D v = KEZMathPoint2D(4, 6) - KEZMathPoint2D(1, 2);
    EXPECT_EQ(v.GetX(), 3.0);
    EXPECT_EQ(v.GetY(), 4.0);
    EXPECT_EQ(KEZMathPoint2D(4, 6).GetDistanceTo(KEZMathPoint2D(1, 2)), 5.0);
}

TEST(MathPoint2D, EqualityWithinOneEMinusNine)
{
    EXPECT_TRUE(KEZMathPoint2D(1, 1) == KEZMathPoint2D(1 + 0.9e-9, 1));
    EXPECT_FALSE(KEZMathPoint2D(1, 1) == KEZMathPoint2D(1, 1 + 1.1e-9));
    EXPECT_TRUE(KEZMathPoint2D(1, 1) != KEZMathPoint2D(1 + 0.8e-9, 1 + 0.8e-9));
}
