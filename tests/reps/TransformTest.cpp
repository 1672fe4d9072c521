// Tests of KEZVisTransform, the implicitly shared display transform.

#include "KEZVisTransform.h"

#include "KEZMathPoint.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

TEST(Transform, DefaultHasPixelScaleOneAndAHalfAndBehaviourMinusOne)
{
    const KEZVisTransform transform;
    EXPECT_EQ(transform.GetPixelScale(), 1.5);
    EXPECT_EQ(int(transform.GetDisplayTransformBehavior()), -1);
    EXPECT_EQ(transform.GetAnchorPoint().GetX(), 0.0);
    EXPECT_EQ(transform.GetAnchorPoint().GetY(), 0.0);
    EXPECT_EQ(transform.GetAnchorPoint().GetZ(), 0.0);
}

TEST(Transform, SettersStoreTheirValues)
{
    KEZVisTransform transform;
    transform.SetAnchorPoint(KEZMathPoint(1.0, 2.0, 3.0));
    transform.SetPixelScale(4.25);
    transform.SetDisplayTransformBehavior(KEZVisTransform::DisplayTransformBehavior(17));
    EXPECT_EQ(transform.GetAnchorPoint().GetY(), 2.0);
    EXPECT_EQ(transform.GetPixelScale(), 4.25);
    EXPECT_EQ(int(transform.GetDisplayTransformBehavior()), 17);
}

TEST(Transform, SettingAValueOnACopyLeavesTheFirstAsItWas)
{
    KEZVisTransform first;
    first.SetPixelScale(2.0);
    KEZVisTransform copy(first);
    copy.SetPixelScale(3.0);
    copy.SetAnchorPoint(KEZMathPoint(9.0, 9.0, 9.0));
    copy.SetDisplayTransformBehavior(KEZVisTransform::DisplayTransformFixedPixelSize);
    EXPECT_EQ(first.GetPixelScale(), 2.0);
    EXPECT_EQ(first.GetAnchorPoint().GetX(), 0.0);
    EXPECT_EQ(int(first.GetDisplayTransformBehavior()), -1);
}

TEST(Transform, DetachingClonesAllThreeFields)
{
    KEZVisTransform first;
    first.SetAnchorPoint(KEZMathPoint(1.0, 2.0, 3.0));
    first.SetPixelScale(7.0);
    first.SetDisplayTransformBehavior(KEZVisTransform::DisplayTransformFixedScreenPosition);
    KEZVisTransform copy = first;
    copy.SetPixelScale(8.0);
    EXPECT_EQ(copy.GetAnchorPoint().GetZ(), 3.0);
    EXPECT_EQ(copy.GetDisplayTransformBehavior(), KEZVisTransform::DisplayTransformFixedScreenPosition);
    EXPECT_EQ(copy.GetPixelScale(), 8.0);
}

TEST(Transform, AssignmentSharesAndSelfAssignmentKeepsTheValues)
{
    KEZVisTransform first;
    first.SetPixelScale(5.0);
    KEZVisTransform second;
    second = first;
    EXPECT_EQ(second.GetPixelScale(), 5.0);
    KEZVisTransform &alias = second;
    second = alias;
    EXPECT_EQ(second.GetPixelScale(), 5.0);
    EXPECT_TRUE(second == first);
}

TEST(Transform, PixelScalesThatDifferInTheLastBitAreUnequal)
{
    KEZVisTransform a;
    KEZVisTransform b;
    a.SetPixelScale(1.0);
    b.SetPixelScale(std::nextafter(1.0, 2.0));
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a != b);
}

TEST(Transform, AnchorPointsCompareWithThePointTolerance)
{
    KEZVisTransform a;
    KEZVisTransform b;
    a.SetAnchorPoint(KEZMathPoint(1.0, 1.0, 1.0));
    b.SetAnchorPoint(KEZMathPoint(1.0 + 1e-12, 1.0, 1.0));
    EXPECT_TRUE(a == b);
    b.SetAnchorPoint(KEZMathPoint(1.1, 1.0, 1.0));
    EXPECT_FALSE(a == b);
}

TEST(Transform, DifferentBehavioursAreUnequal)
{
    KEZVisTransform a;
    KEZVisTransform b;
    b.SetDisplayTransformBehavior(KEZVisTransform::DisplayTransformFixedPixelSize);
    EXPECT_TRUE(a != b);
}

TEST(Transform, TwoDefaultTransformsAreEqual)
{
    EXPECT_TRUE(KEZVisTransform() == KEZVisTransform());
    EXPECT_FALSE(KEZVisTransform() != KEZVisTransform());
}

TEST(Transform, SharedDataIsEqualEvenWithANanPixelScale)
{
    KEZVisTransform a;
    a.SetPixelScale(std::numeric_limits<double>::quiet_NaN());
    const KEZVisTransform shared = a;
    EXPECT_TRUE(a == shared);
    KEZVisTransform separate;
    separate.SetPixelScale(std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(a == separate);
}
