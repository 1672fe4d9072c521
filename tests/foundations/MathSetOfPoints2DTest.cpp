// Tests of KEZMathSetOfPoints2D.

#include <KEZMathSetOfPoints2D.h>

#include <gtest/gtest.h>

namespace {

double sumOfX(const QList<KEZMathPoint2D> &points)
{
    double sum = 0;
    for (const KEZMathPoint2D &point : points)
        sum += point.GetX();
    return sum;
}

} // namespace

TEST(MathSetOfPoints2D, DefaultIsEmpty)
{
    EXPECT_TRUE(KEZMathSetOfPoints2D().isEmpty());
}

TEST(MathSetOfPoints2D, ListOperationsAreQListsOwn)
{
    KEZMathSetOfPoints2D set;
    set.append(KEZMathPoint2D(1, 2));
    set.append(KEZMathPoint2D(3, 4));
    EXPECT_EQ(set.size(), 2);
    EXPECT_EQ(set.at(1).GetY(), 4.0);
    set[0].SetX(5);
    EXPECT_EQ(set.first().GetX(), 5.0);
    set.removeLast();
    EXPECT_EQ(set.size(), 1);
}

TEST(MathSetOfPoints2D, PassesWhereAQListIsRead)
{
    const KEZMathSetOfPoints2D set = {KEZMathPoint2D(1, 0), KEZMathPoint2D(2, 0)};
    EXPECT_EQ(sumOfX(set), 3.0);
}

TEST(MathSetOfPoints2D, CopyAndAssignmentCopyThePoints)
{
    KEZMathSetOfPoints2D original = {KEZMathPoint2D(1, 2)};
    const KEZMathSetOfPoints2D copy(original);
    KEZMathSetOfPoints2D assigned;
    assigned = original;
    original[0].SetX(9);
    EXPECT_EQ(copy.at(0).GetX(), 1.0);
    EXPECT_EQ(assigned.at(0).GetX(), 1.0);
    const KEZMathSetOfPoints2D fromList(QList<KEZMathPoint2D>{KEZMathPoint2D(7, 7)});
    EXPECT_EQ(fromList.at(0).GetY(), 7.0);
}
