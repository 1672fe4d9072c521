// The point geometry of topology vertices.

#include "KEZGeoComboPoint.h"

#include <QPointer>

#include <gtest/gtest.h>

TEST(GeoComboPoint, PointKeepsTheGivenCoordinates)
{
    const KEZGeoComboPoint point(KEZMathPoint(1.5, -2.0, 3.25));
    const KEZMathPoint math = point.GetMathPoint();
    EXPECT_EQ(math.GetX(), 1.5);
    EXPECT_EQ(math.GetY(), -2.0);
    EXPECT_EQ(math.GetZ(), 3.25);
}

TEST(GeoComboPoint, PointKeepsItsOwnCopy)
{
    KEZMathPoint math(1.0, 2.0, 3.0);
    const KEZGeoComboPoint point(math);
    math.SetX(10.0);
    EXPECT_EQ(point.GetMathPoint().GetX(), 1.0);
}

TEST(GeoComboPoint, PointTakesAQObjectParentThatDeletesIt)
{
    auto *parent = new QObject;
    const QPointer<KEZGeoComboPoint> point(new KEZGeoComboPoint(KEZMathPoint(), parent));
    EXPECT_EQ(point->parent(), parent);
    delete parent;
    EXPECT_TRUE(point.isNull());
}
