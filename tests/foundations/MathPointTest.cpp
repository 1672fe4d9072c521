// Tests of KEZMathPoint.

#include <KEZMathPoint.h>

#include <KEZSysOutOfBoundsException.h>

#include <gtest/gtest.h>

#include <cmath>

TEST(MathPoint, DefaultIsTheOrigin)
{
    const KEZMathPoint point;
    EXPECT_EQ(point.GetX(), 0.0);
    EXPECT_EQ(point.GetY(), 0.0);
    EXPECT_EQ(point.GetZ(), 0.0);
}

TEST(MathPoint, ConstructorSetsTheCoordinatesInOrder)
{
    const KEZMathPoint point(1.5, -2.5, 3.25);
    EXPECT_EQ(point.GetX(), 1.5);
    EXPECT_EQ(point.GetY(), -2.5);
    EXPECT_EQ(point.GetZ(), 3.25);
}

TEST(MathPoint, SettersChangeOneCoordinateEach)
{
    KEZMathPoint point(1, 2, 3);
    point.SetX(10);
    EXPECT_EQ(point.GetX(), 10.0);
    EXPECT_EQ(point.GetY(), 2.0);
    point.SetY(20);
    EXPECT_EQ(point.GetY(), 20.0);
    EXPECT_EQ(point.GetZ(), 3.0);
    point.SetZ(30);
    EXPECT_EQ(point.GetZ(), 30.0);
    EXPECT_EQ(point.GetX(), 10.0);
}

TEST(MathPoint, GetCoordAndSetCoordHandleAllThree)
{
    KEZMathPoint point;
    point.SetCoord(4, 5, 6);
    double x = 0, y = 0, z = 0;
    point.GetCoord(x, y, z);
    EXPECT_EQ(x, 4.0);
    EXPECT_EQ(y, 5.0);
    EXPECT_EQ(z, 6.0);
}

TEST(MathPoint, IndexGivesAWritableReferenceToEachCoordinate)
{
    KEZMathPoint point(1, 2, 3);
    EXPECT_EQ(point[0], 1.0);
    EXPECT_EQ(point[1], 2.0);
    EXPECT_EQ(point[2], 3.0);
    point[0] = 7;
    point[1] += 1;
    point[2] *= 2;
    EXPECT_EQ(point.GetX(), 7.0);
    EXPECT_EQ(point.GetY(), 3.0);
    EXPECT_EQ(point.GetZ(), 6.0);
    const KEZMathPoint &constant = point;
    EXPECT_EQ(constant[2], 6.0);
}

TEST(MathPoint, IndexOutsideZeroToTwoThrowsOutOfBounds)
{
    KEZMathPoint point;
    EXPECT_THROW(point[3], KEZSysOutOfBoundsException);
    EXPECT_THROW(point[-1], KEZSysOutOfBoundsException);
    const KEZMathPoint &constant = point;
    try {
        (void)constant[5];
        FAIL() << "no exception";
    } catch (const KEZSysOutOfBoundsException &exception) {
        EXPECT_EQ(exception.GetValue(), QVariant(5));
        EXPECT_EQ(exception.GetLowerLimit(), QVariant(0));
        EXPECT_EQ(exception.GetUpperLimit(), QVariant(2));
        EXPECT_TRUE(exception.IsLowerLimitIncluded());
        EXPECT_TRUE(exception.IsUpperLimitIncluded());
    }
}

TEST(MathPoint, PointsWithinTheToleranceAreEqual)
{
    const KEZMathPoint a(1, 2, 3);
    EXPECT_TRUE(a == KEZMathPoint(1, 2, 3));
    EXPECT_TRUE(a == KEZMathPoint(1 + 0.9e-9, 2, 3));
    // 0.6e-9 along each of two axes is about 0.85e-9 away.
    EXPECT_TRUE(a == KEZMathPoint(1 + 0.6e-9, 2 - 0.6e-9, 3));
    EXPECT_FALSE(a != KEZMathPoint(1, 2, 3 + 0.9e-9));
}

TEST(MathPoint, PointsJustOutsideTheToleranceDiffer)
{
    const KEZMathPoint a(1, 2, 3);
    EXPECT_FALSE(a == KEZMathPoint(1 + 1.1e-9, 2, 3));
    // 0.8e-9 along each of two axes is about 1.13e-9 away: each coordinate is
    // close, but the distance is not.
    EXPECT_FALSE(a == KEZMathPoint(1 + 0.8e-9, 2 + 0.8e-9, 3));
    EXPECT_TRUE(a != KEZMathPoint(1, 2, 3 - 1.1e-9));
}

TEST(MathPoint, DifferenceIsTheVectorFromTheArgument)
{
    const KEZMathVector v = KEZMathPoint(5, 7, 9) - KEZMathPoint(1, 2, 3);
    EXPECT_EQ(v.GetX(), 4.0);
    EXPECT_EQ(v.GetY(), 5.0);
    EXPECT_EQ(v.GetZ(), 6.0);
}

TEST(MathPoint, DistanceIsEuclidean)
{
    // 2, 3, 6 is a Pythagorean quadruple with length 7.
    EXPECT_DOUBLE_EQ(KEZMathPoint(1, 1, 1).GetDistanceTo(KEZMathPoint(3, 4, 7)), 7.0);
    EXPECT_DOUBLE_EQ(KEZMathPoint(1, 1, 1).GetSquaredDistanceTo(KEZMathPoint(3, 4, 7)), 49.0);
    EXPECT_EQ(KEZMathPoint(1, 1, 1).GetDistanceTo(KEZMathPoint(1, 1, 1)), 0.0);
}

TEST(MathPoint, AddingAVectorTranslates)
{
    const KEZMathPoint moved = KEZMathPoint(1, 2, 3) + KEZMathVector(0.5, -2, 10);
    EXPECT_EQ(moved.GetX(), 1.5);
    EXPECT_EQ(moved.GetY(), 0.0);
    EXPECT_EQ(moved.GetZ(), 13.0);
}

TEST(MathPoint, SubtractingAVectorTranslatesBack)
{
    const KEZMathPoint moved = KEZMathPoint(1, 2, 3) - KEZMathVector(0.5, -2, 10);
    EXPECT_EQ(moved.GetX(), 0.5);
    EXPECT_EQ(moved.GetY(), 4.0);
    EXPECT_EQ(moved.GetZ(), -7.0);
}

TEST(MathPoint, CopyAndAssignmentKeepTheCoordinates)
{
    const KEZMathPoint original(1, 2, 3);
    const KEZMathPoint copy(original);
    KEZMathPoint assigned;
    assigned = original;
    EXPECT_EQ(copy.GetY(), 2.0);
    EXPECT_EQ(assigned.GetZ(), 3.0);
}
