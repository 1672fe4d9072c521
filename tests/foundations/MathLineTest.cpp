// Tests of KEZMathLine.

#include <KEZMathLine.h>

#include <gtest/gtest.h>

TEST(MathLine, DefaultIsTheXAxis)
{
    const KEZMathLine line;
    EXPECT_EQ(line.GetOrigin().GetX(), 0.0);
    EXPECT_EQ(line.GetVector().GetX(), 1.0);
    EXPECT_EQ(line.GetVector().GetY(), 0.0);
    EXPECT_EQ(line.GetVector().GetZ(), 0.0);
    const KEZMathPoint foot = line.ProjectPoint(KEZMathPoint(3, 4, 5));
    EXPECT_EQ(foot.GetX(), 3.0);
    EXPECT_EQ(foot.GetY(), 0.0);
    EXPECT_EQ(foot.GetZ(), 0.0);
}

TEST(MathLine, SettersTakeOriginAndVector)
{
    KEZMathLine line;
    line.SetOrigin(KEZMathPoint(1, 2, 3));
    line.SetVector(KEZMathVector(0, 0, 2));
    EXPECT_EQ(line.GetOrigin().GetY(), 2.0);
    EXPECT_EQ(line.GetVector().GetZ(), 2.0);
}

TEST(MathLine, ProjectPointIsTheFootOfThePerpendicular)
{
    KEZMathLine line;
    line.SetOrigin(KEZMathPoint(1, 1, 0));
    line.SetVector(KEZMathVector(2, 2, 0));
    // The line y = x in z = 0; the foot of (3, 1, 7) is (2, 2, 0).
    const KEZMathPoint foot = line.ProjectPoint(KEZMathPoint(3, 1, 7));
    EXPECT_DOUBLE_EQ(foot.GetX(), 2.0);
    EXPECT_DOUBLE_EQ(foot.GetY(), 2.0);
    EXPECT_DOUBLE_EQ(foot.GetZ(), 0.0);
}

TEST(MathLine, ProjectPointReachesBeyondTheOriginBothWays)
{
    const KEZMathLine line(KEZMathPoint(0, 0, 5), KEZMathVector(0, 0, 1));
    EXPECT_EQ(line.ProjectPoint(KEZMathPoint(1, 1, -3)).GetZ(), -3.0);
    EXPECT_EQ(line.ProjectPoint(KEZMathPoint(1, 1, 30)).GetZ(), 30.0);
}

TEST(MathLine, LineWithoutDirectionProjectsToItsOrigin)
{
    const KEZMathLine line(KEZMathPoint(1, 2, 3), KEZMathVector());
    const KEZMathPoint foot = line.ProjectPoint(KEZMathPoint(7, 8, 9));
    EXPECT_EQ(foot.GetX(), 1.0);
    EXPECT_EQ(foot.GetY(), 2.0);
    EXPECT_EQ(foot.GetZ(), 3.0);
}
