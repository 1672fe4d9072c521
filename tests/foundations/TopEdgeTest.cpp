// The topology edge: its geometry, which it neither owns nor counts.

#include "KEZTopEdge.h"

#include <QPointer>

#include <gtest/gtest.h>

#include <memory>

namespace {

std::unique_ptr<KEZGeoComboCurve> MakeCurve()
{
    KEZMathSetOfPoints points;
    points.append(KEZMathPoint(0.0, 0.0, 0.0));
    points.append(KEZMathPoint(1.0, 0.0, 0.0));
    return std::make_unique<KEZGeoComboCurve>(points, false);
}

} // namespace

TEST(TopEdge, EdgeGivesBackItsGeometry)
{
    const auto geometry = MakeCurve();
    const KEZTopEdge edge(geometry.get());
    EXPECT_EQ(edge.GetCurve(), geometry.get());
}

TEST(TopEdge, EdgeCountsNoReferenceOnItsGeometry)
{
    const auto geometry = MakeCurve();
    const KEZTopEdge edge(geometry.get());
    EXPECT_EQ(geometry->GetReferenceCount(), 0);
}

TEST(TopEdge, GeometryOutlivesTheEdge)
{
    const auto geometry = MakeCurve();
    const QPointer<KEZGeoComboCurve> watch(geometry.get());
    delete new KEZTopEdge(geometry.get());
    EXPECT_FALSE(watch.isNull());
}

TEST(TopEdge, EdgeAnswersNullOnceItsGeometryIsDeleted)
{
    auto geometry = MakeCurve();
    const KEZTopEdge edge(geometry.get());
    geometry.reset();
    EXPECT_EQ(edge.GetCurve(), nullptr);
}

TEST(TopEdge, EdgeWithoutGeometryAnswersNull)
{
    const KEZTopEdge edge(nullptr);
    EXPECT_EQ(edge.GetCurve(), nullptr);
}

TEST(TopEdge, EdgeTakesAQObjectParentThatDeletesIt)
{
    const auto geometry = MakeCurve();
    auto parent = std::make_unique<QObject>();
    const QPointer<KEZTopEdge> edge(new KEZTopEdge(geometry.get(), parent.get()));
    EXPECT_EQ(edge->parent(), parent.get());
    parent.reset();
    EXPECT_TRUE(edge.isNull());
    EXPECT_EQ(geometry->GetReferenceCount(), 0);
}

TEST(TopEdge, EdgeCastsToItsOwnClassThroughItsStaticMetaObject)
{
    KEZTopEdge edge(nullptr);
    QObject *object = &edge;
    EXPECT_EQ(KEZTopEdge::staticMetaObject.cast(object), &edge);
    EXPECT_STREQ(edge.metaObject()->className(), "KEZTopEdge");
}
