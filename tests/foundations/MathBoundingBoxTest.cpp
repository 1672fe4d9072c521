// Tests of KEZMathBoundingBox.

#include <KEZMathBoundingBox.h>

#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

using namespace KEZTest;

TEST(MathBoundingBox, DefaultHasBothCornersAtTheOrigin)
{
    const KEZMathBoundingBox box;
    ExpectPoint(box.GetLowerPoint(), 0, 0, 0);
    ExpectPoint(box.GetUpperPoint(), 0, 0, 0);
    EXPECT_EQ(box.GetDeltaX(), 0.0);
    EXPECT_EQ(box.GetDeltaY(), 0.0);
    EXPECT_EQ(box.GetDeltaZ(), 0.0);
}

TEST(MathBoundingBox, BoxOfOnePointHasBothCornersThere)
{
    const KEZMathBoundingBox box(KEZMathPoint(1, -2, 3));
    ExpectPoint(box.GetLowerPoint(), 1, -2, 3);
    ExpectPoint(box.GetUpperPoint(), 1, -2, 3);
    EXPECT_EQ(box.GetDeltaX(), 0.0);
}

TEST(MathBoundingBox, BoxOfTwoPointsSortsTheCoordinates)
{
    const KEZMathBoundingBox box(KEZMathPoint(4, -2, 3), KEZMathPoint(1, 5, -6));
    ExpectPoint(box.GetLowerPoint(), 1, -2, -6);
    ExpectPoint(box.GetUpperPoint(), 4, 5, 3);
}

TEST(MathBoundingBox, ExpandByAPointGrowsEachSideAsNeeded)
{
    KEZMathBoundingBox box(KEZMathPoint(1, 1, 1));
    box.Expand(KEZMathPoint(3, 0, 1));
    ExpectPoint(box.GetLowerPoint(), 1, 0, 1);
    ExpectPoint(box.GetUpperPoint(), 3, 1, 1);
    box.Expand(KEZMathPoint(2, 0.5, -4));
    ExpectPoint(box.GetLowerPoint(), 1, 0, -4);
    ExpectPoint(box.GetUpperPoint(), 3, 1, 1);
    EXPECT_EQ(box.GetDeltaX(), 2.0);
    EXPECT_EQ(box.GetDeltaY(), 1.0);
    EXPECT_EQ(box.GetDeltaZ(), 5.0);
}

TEST(MathBoundingBox, ExpandingTheDefaultBoxTakesInTheOrigin)
{
    KEZMathBoundingBox box;
    box.Expand(KEZMathPoint(2, 3, 4));
    ExpectPoint(box.GetLowerPoint(), 0, 0, 0);
    ExpectPoint(box.GetUpperPoint(), 2, 3, 4);
}

TEST(MathBoundingBox, ExpandByABoxTakesInBothItsCorners)
{
    KEZMathBoundingBox box(KEZMathPoint(0, 0, 0), KEZMathPoint(1, 1, 1));
    box.Expand(KEZMathBoundingBox(KEZMathPoint(-1, 0.5, 0.5), KEZMathPoint(0.5, 0.5, 9)));
    ExpectPoint(box.GetLowerPoint(), -1, 0, 0);
    ExpectPoint(box.GetUpperPoint(), 1, 1, 9);
}

TEST(MathBoundingBox, EqualityComparesCornersExactly)
{
    const KEZMathBoundingBox a(KEZMathPoint(0, 0, 0), KEZMathPoint(1, 2, 3));
    EXPECT_TRUE(a == KEZMathBoundingBox(KEZMathPoint(1, 2, 3), KEZMathPoint(0, 0, 0)));
    EXPECT_FALSE(a != KEZMathBoundingBox(KEZMathPoint(0, 0, 0), KEZMathPoint(1, 2, 3)));
    // Far below any tolerance of points, still a difference for boxes.
    EXPECT_FALSE(a == KEZMathBoundingBox(KEZMathPoint(0, 0, 1e-15), KEZMathPoint(1, 2, 3)));
    EXPECT_TRUE(a != KEZMathBoundingBox(KEZMathPoint(0, 0, 0), KEZMathPoint(1, 2 + 1e-15, 3)));
    EXPECT_TRUE(KEZMathBoundingBox() == KEZMathBoundingBox(KEZMathPoint()));
}

TEST(MathBoundingBox, CopyAndAssignmentKeepTheCorners)
{
    const KEZMathBoundingBox original(KEZMathPoint(0, 0, 0), KEZMathPoint(1, 2, 3));
    KEZMathBoundingBox assigned;
    assigned = original;
    const KEZMathBoundingBox copy(original);
    EXPECT_TRUE(assigned == original);
    EXPECT_TRUE(copy == original);
}
