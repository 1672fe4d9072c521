// Reference counting and lifetime of geometry objects, seen through the
// concrete classes, since KEZGeoGeometry itself is only a base.

#include "KEZGeoComboCurve.h"
#include "KEZGeoComboPoint.h"
#include "KEZGeoSurface.h"

#include <QPointer>

#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

#include <memory>

using namespace KEZTest;

namespace {

KEZMathSetOfPoints ThreePoints()
{
    return Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0), KEZMathPoint(0.0, 1.0, 0.0)});
}

} // namespace

TEST(GeoGeometry, ReferenceCountStartsAtZeroForEveryKindOfGeometry)
{
    const KEZGeoComboPoint point(KEZMathPoint(1.0, 2.0, 3.0));
    const KEZGeoComboCurve curve(ThreePoints(), false);
    const KEZGeoSurface surface(ThreePoints(), {0, 1, 2});
    EXPECT_EQ(point.GetReferenceCount(), 0);
    EXPECT_EQ(curve.GetReferenceCount(), 0);
    EXPECT_EQ(surface.GetReferenceCount(), 0);
}

TEST(GeoGeometry, EachAddReferenceCountsOneMoreUser)
{
    const KEZGeoComboCurve curve(ThreePoints(), true);
    curve.AddReference();
    EXPECT_EQ(curve.GetReferenceCount(), 1);
    curve.AddReference();
    curve.AddReference();
    EXPECT_EQ(curve.GetReferenceCount(), 3);
}

TEST(GeoGeometry, RemoveReferenceReleasesOneUserAndAnswersTrue)
{
    const KEZGeoComboCurve curve(ThreePoints(), true);
    curve.AddReference();
    curve.AddReference();
    EXPECT_TRUE(curve.RemoveReference());
    EXPECT_EQ(curve.GetReferenceCount(), 1);
    EXPECT_TRUE(curve.RemoveReference());
    EXPECT_EQ(curve.GetReferenceCount(), 0);
}

TEST(GeoGeometry, RemoveReferenceAtZeroAnswersFalseAndTheCountStaysZero)
{
    const KEZGeoComboPoint point{KEZMathPoint()};
    EXPECT_FALSE(point.RemoveReference());
    EXPECT_EQ(point.GetReferenceCount(), 0);

    point.AddReference();
    EXPECT_TRUE(point.RemoveReference());
    EXPECT_FALSE(point.RemoveReference());
    EXPECT_EQ(point.GetReferenceCount(), 0);

    // The unbalanced calls left no debt behind: one new user counts one.
    point.AddReference();
    EXPECT_EQ(point.GetReferenceCount(), 1);
}

TEST(GeoGeometry, ReferencesOfOneGeometryDoNotTouchAnother)
{
    const KEZGeoComboPoint first{KEZMathPoint()};
    const KEZGeoComboPoint second{KEZMathPoint()};
    first.AddReference();
    first.AddReference();
    second.AddReference();
    EXPECT_EQ(first.GetReferenceCount(), 2);
    EXPECT_EQ(second.GetReferenceCount(), 1);
}

TEST(GeoGeometry, ReferencesAreCountedThroughTheBaseClass)
{
    const KEZGeoSurface surface(ThreePoints(), {0, 1, 2});
    const KEZGeoGeometry *geometry = &surface;
    geometry->AddReference();
    geometry->AddReference();
    EXPECT_TRUE(geometry->RemoveReference());
    EXPECT_EQ(surface.GetReferenceCount(), 1);
}

TEST(GeoGeometry, GeometryDoesNotDeleteItselfWhenTheLastUserLeaves)
{
    auto *curve = new KEZGeoComboCurve(ThreePoints(), false);
    const QPointer<KEZGeoComboCurve> watch(curve);
    curve->AddReference();
    EXPECT_TRUE(curve->RemoveReference());
    EXPECT_FALSE(curve->RemoveReference());
    ASSERT_FALSE(watch.isNull());
    EXPECT_EQ(watch->GetNumVertices(), 3);
    delete curve;
}

TEST(GeoGeometry, QPointerNoticesThatAGeometryWasDeletedDespiteUsers)
{
    auto *point = new KEZGeoComboPoint(KEZMathPoint(1.0, 1.0, 1.0));
    const QPointer<const KEZGeoGeometry> watch(point);
    point->AddReference();
    EXPECT_EQ(watch.data(), point);
    delete point;
    EXPECT_TRUE(watch.isNull());
}

TEST(GeoGeometry, GeometryIsDeletedWithItsQObjectParent)
{
    auto parent = std::make_unique<QObject>();
    auto *surface = new KEZGeoSurface(ThreePoints(), {0, 1, 2}, parent.get());
    const QPointer<KEZGeoSurface> watch(surface);
    EXPECT_EQ(surface->parent(), parent.get());
    parent.reset();
    EXPECT_TRUE(watch.isNull());
}

TEST(GeoGeometry, EveryKindOfGeometryIsAKEZGeoGeometryForQObjectCasts)
{
    KEZGeoComboPoint point{KEZMathPoint()};
    KEZGeoComboCurve curve(ThreePoints(), false);
    KEZGeoSurface surface(ThreePoints(), {});
    QObject *objects[] = {&point, &curve, &surface};
    for (QObject *object : objects)
        EXPECT_NE(qobject_cast<KEZGeoGeometry *>(object), nullptr) << object->metaObject()->className();
    EXPECT_NE(qobject_cast<KEZGeoCurve *>(&curve), nullptr);
    EXPECT_EQ(qobject_cast<KEZGeoCurve *>(&surface), nullptr);
    EXPECT_EQ(qobject_cast<KEZGeoCurve *>(&point), nullptr);
    EXPECT_STREQ(curve.metaObject()->className(), "KEZGeoComboCurve");
    EXPECT_STREQ(curve.metaObject()->superClass()->className(), "KEZGeoCurve");
    EXPECT_STREQ(curve.metaObject()->superClass()->superClass()->className(), "KEZGeoGeometry");
}
