// Tests of KEZVisPointPrimitive: a bare list of points with its box.

#include "KEZVisPointPrimitive.h"

#include "KEZVisOptions.h"

#include "KEZMathBoundingBox.h"
#include "KEZMathSetOfPoints.h"

#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

#include <vector>

using namespace KEZTest;

TEST(PointPrimitive, PointsFromASetAreCopiedInOrder)
{
    KEZMathSetOfPoints points;
    points.append(KEZMathPoint(1.0, 2.0, 3.0));
    points.append(KEZMathPoint(-4.0, 0.5, 6.0));
    points.append(KEZMathPoint(0.1, 8.0, -9.0));
    KEZVisPointPrimitive primitive(points);
    EXPECT_EQ(primitive.GetNumPoints(), 3);
    const std::vector<double> expected = {1.0, 2.0, 3.0, -4.0, 0.5, 6.0, 0.1, 8.0, -9.0};
    EXPECT_EQ(primitive.GetCoordsAsDouble(), expected);
    const std::vector<float> floats = primitive.GetCoordsAsFloat();
    ASSERT_EQ(floats.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(floats[i], float(expected[i]));
}

TEST(PointPrimitive, ArrayIsTakenOverWithItsCount)
{
    KEZVisPointPrimitive primitive(NewArray({1.0, 1.0, 1.0, 2.0, -2.0, 0.0}), 2);
    EXPECT_EQ(primitive.GetNumPoints(), 2);
    EXPECT_EQ(primitive.GetCoordsAsDouble(), (std::vector<double>{1.0, 1.0, 1.0, 2.0, -2.0, 0.0}));
}

TEST(PointPrimitive, BoxStartsFromTheFirstPointAndTakesInEveryOther)
{
    KEZVisPointPrimitive primitive(NewArray({5.0, 5.0, 5.0, 6.0, 4.0, 5.5, 5.5, 7.0, 3.0}), 3);
    const KEZMathBoundingBox box = primitive.GetBoundingBox(KEZVisOptions());
    EXPECT_EQ(box, KEZMathBoundingBox(KEZMathPoint(5.0, 4.0, 3.0), KEZMathPoint(6.0, 7.0, 5.5)));
}

TEST(PointPrimitive, NoPointsGiveEmptyListsAndTheDefaultBox)
{
    KEZVisPointPrimitive primitive{KEZMathSetOfPoints()};
    EXPECT_EQ(primitive.GetNumPoints(), 0);
    EXPECT_TRUE(primitive.GetCoordsAsDouble().empty());
    EXPECT_TRUE(primitive.GetCoordsAsFloat().empty());
    EXPECT_EQ(primitive.GetBoundingBox(KEZVisOptions()), KEZMathBoundingBox());
}

TEST(PointPrimitive, NegativeCountOrNullArrayGivesNoPoints)
{
    KEZVisPointPrimitive negative(NewArray({1.0, 2.0, 3.0}), -1);
    EXPECT_EQ(negative.GetNumPoints(), 0);
    EXPECT_TRUE(negative.GetCoordsAsDouble().empty());
    KEZVisPointPrimitive null(nullptr, 2);
    EXPECT_EQ(null.GetNumPoints(), 0);
    EXPECT_EQ(null.GetBoundingBox(KEZVisOptions()), KEZMathBoundingBox());
}

TEST(PointPrimitive, BoundingBoxIsTheSameForAnyOptions)
{
    KEZVisPointPrimitive primitive(NewArray({1.0, 2.0, 3.0, 4.0, 5.0, 6.0}), 2);
    KEZVisOptions other;
    QFont font;
    font.setPointSize(40);
    other.SetFont(font);
    other.SetPointSymbol(KEZVisOptions::PointSymbolMarker);
    EXPECT_EQ(primitive.GetBoundingBox(KEZVisOptions()), primitive.GetBoundingBox(other));
}

TEST(PointPrimitive, HasNoParentAndIsAPrimitive)
{
    KEZVisPointPrimitive primitive(NewArray({0.0, 0.0, 0.0}), 1);
    EXPECT_EQ(primitive.parent(), nullptr);
    EXPECT_TRUE(primitive.inherits("KEZVisPrimitive"));
    EXPECT_STREQ(KEZVisPrimitive::staticMetaObject.className(), "KEZVisPrimitive");
}
