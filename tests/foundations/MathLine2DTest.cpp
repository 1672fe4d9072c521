// Tests of KEZMathLine2D.

#include <KEZMathLine2D.h>

#include <gtest/gtest.h>

TEST(MathLine2D, DefaultIsTheXAxis)
{
    const KEZMathLine2D line;
    EXPECT_EQ(line.GetVector().GetX(), 1.0);
    EXPECT_EQ(line.GetVector().GetY(), 0.0);
    const KEZMathPoint2D foot = line.ProjectPoint(KEZMathPoint2D(3, 4));
    EXPECT_EQ(foot.GetX(), 3.0);
    EXPECT_EQ(foot.GetY(), 0.0);
}

TEST(MathLine2D, ProjectPointIsTheFootOfThePerpendicular)
{
    KEZMathLine2D line;
    line.SetOrigin(KEZMathPoint2D(0, 1));
    line.SetVector(KEZMathVector2D(3, 3));
    EXPECT_EQ(line.GetOrigin().GetY(), 1.0);
    EXPECT_EQ(line.GetVector().GetX(), 3.0);
    // The line y = x + 1; the foot of (2, 1) is (1, 2).
    const KEZMathPoint2D foot = line.ProjectPoint(KEZMathPoint2D(2, 1));
    EXPECT_DOUBLE_EQ(foot.GetX(), 1.0);
    EXPECT_DOUBLE_EQ(foot.GetY(), 2.0);
}

TEST(MathLine2D, LineWithoutDirectionProjectsToItsOrigin)
{
    const KEZMathLine2D line(KEZMathPoint2D(1, 2), KEZMathVector2D());
    const KEZMathPoint2D foot = line.ProjectPoint(KEZMathPoint2D(5, 5));
    EXPECT_EQ(foot.GetX(), 1.0);
    EXPECT_EQ(foot.GetY(), 2.0);
}
