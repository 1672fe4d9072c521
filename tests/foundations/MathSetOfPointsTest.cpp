// Tests of KEZMathSetOfPoints.

#include <KEZMathSetOfPoints.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

int countPoints(const QList<KEZMathPoint> &points)
{
    return int(points.size());
}

} // namespace

TEST(MathSetOfPoints, DefaultIsEmptyWithTheDefaultBox)
{
    const KEZMathSetOfPoints set;
    EXPECT_TRUE(set.isEmpty());
    EXPECT_TRUE(set.GetBoundingBox() == KEZMathBoundingBox());
}

TEST(MathSetOfPoints, ListOperationsAreQListsOwn)
{
    KEZMathSetOfPoints set;
    set.append(KEZMathPoint(1, 2, 3));
    set.append(KEZMathPoint(4, 5, 6));
    set << KEZMathPoint(7, 8, 9);
    EXPECT_EQ(set.size(), 3);
    EXPECT_EQ(set.at(1).GetY(), 5.0);
    EXPECT_EQ(set.first().GetX(), 1.0);
    set[2].SetZ(0);
    EXPECT_EQ(set.last().GetZ(), 0.0);
    set.removeLast();
    EXPECT_EQ(set.size(), 2);
    double sum = 0;
    for (const KEZMathPoint &point : set)
        sum += point.GetX();
    EXPECT_EQ(sum, 5.0);
    set.clear();
    EXPECT_TRUE(set.isEmpty());
}

TEST(MathSetOfPoints, PassesWhereAQListOfPointsIsRead)
{
    const KEZMathSetOfPoints set = {KEZMathPoint(), KEZMathPoint(1, 1, 1)};
    EXPECT_EQ(countPoints(set), 2);
}

TEST(MathSetOfPoints, BoundingBoxTakesInEveryPoint)
{
    const KEZMathSetOfPoints set = {KEZMathPoint(1, 5, -1), KEZMathPoint(3, 2, 0), KEZMathPoint(2, 4, 8)};
    const KEZMathBoundingBox box = set.GetBoundingBox();
    EXPECT_EQ(box.GetLowerPoint().GetX(), 1.0);
    EXPECT_EQ(box.GetLowerPoint().GetY(), 2.0);
    EXPECT_EQ(box.GetLowerPoint().GetZ(), -1.0);
    EXPECT_EQ(box.GetUpperPoint().GetX(), 3.0);
    EXPECT_EQ(box.GetUpperPoint().GetY(), 5.0);
    EXPECT_EQ(box.GetUpperPoint().GetZ(), 8.0);
}

TEST(MathSetOfPoints, BoundingBoxOfPointsAwayFromTheOriginDoesNotTakeInTheOrigin)
{
    const KEZMathSetOfPoints set = {KEZMathPoint(10, 10, 10), KEZMathPoint(11, 12, 13)};
    const KEZMathBoundingBox box = set.GetBoundingBox();
    EXPECT_EQ(box.GetLowerPoint().GetX(), 10.0);
    EXPECT_EQ(box.GetDeltaZ(), 3.0);
}

TEST(MathSetOfPoints, CopyAndAssignmentCopyThePoints)
{
    KEZMathSetOfPoints original = {KEZMathPoint(1, 2, 3)};
    const KEZMathSetOfPoints copy(original);
    KEZMathSetOfPoints assigned;
    assigned = original;
    original[0].SetX(100);
    EXPECT_EQ(copy.at(0).GetX(), 1.0);
    EXPECT_EQ(assigned.at(0).GetX(), 1.0);
}

TEST(MathSetOfPoints, MadeFromAQList)
{
    const QList<KEZMathPoint> list = {KEZMathPoint(1, 1, 1), KEZMathPoint(2, 2, 2)};
    const KEZMathSetOfPoints set(list);
    EXPECT_EQ(set.size(), 2);
    EXPECT_EQ(set.at(1).GetZ(), 2.0);
}

TEST(MathSetOfPoints, DestroysThroughItsOwnPointer)
{
    std::unique_ptr<KEZMathSetOfPoints> set(new KEZMathSetOfPoints{KEZMathPoint(1, 2, 3)});
    EXPECT_EQ(set->size(), 1);
    set.reset();
    EXPECT_EQ(set.get(), nullptr);
}
