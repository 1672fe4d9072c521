// The topology vertex: its geometry, which it neither owns nor counts.

#include "KEZTopVertex.h"

#include <QPointer>

#include <gtest/gtest.h>

#include <memory>

namespace {

std::unique_ptr<KEZGeoComboPoint> MakePoint()
{
    return std::make_unique<KEZGeoComboPoint>(KEZMathPoint(1.0, 2.0, 3.0));
}

} // namespace

TEST(TopVertex, VertexGivesBackItsGeometry)
{
    const auto geometry = MakePoint();
    const KEZTopVertex vertex(geometry.get());
    EXPECT_EQ(vertex.GetPoint(), geometry.get());
}

TEST(TopVertex, VertexCountsNoReferenceOnItsGeometry)
{
    const auto geometry = MakePoint();
    const KEZTopVertex vertex(geometry.get());
    EXPECT_EQ(geometry->GetReferenceCount(), 0);
}

TEST(TopVertex, GeometryOutlivesTheVertex)
{
    const auto geometry = MakePoint();
    const QPointer<KEZGeoComboPoint> watch(geometry.get());
    delete new KEZTopVertex(geometry.get());
    EXPECT_FALSE(watch.isNull());
}

TEST(TopVertex, VertexAnswersNullOnceItsGeometryIsDeleted)
{
    auto geometry = MakePoint();
    const KEZTopVertex vertex(geometry.get());
    geometry.reset();
    EXPECT_EQ(vertex.GetPoint(), nullptr);
}

TEST(TopVertex, VertexWithoutGeometryAnswersNull)
{
    const KEZTopVertex vertex(nullptr);
    EXPECT_EQ(vertex.GetPoint(), nullptr);
}

TEST(TopVertex, VertexTakesAQObjectParentThatDeletesIt)
{
    const auto geometry = MakePoint();
    auto parent = std::make_unique<QObject>();
    const QPointer<KEZTopVertex> vertex(new KEZTopVertex(geometry.get(), parent.get()));
    EXPECT_EQ(vertex->parent(), parent.get());
    parent.reset();
    EXPECT_TRUE(vertex.isNull());
    EXPECT_EQ(geometry->GetReferenceCount(), 0);
}

TEST(TopVertex, VertexCastsToItsOwnClassThroughItsStaticMetaObject)
{
    KEZTopVertex vertex(nullptr);
    QObject *object = &vertex;
    EXPECT_EQ(KEZTopVertex::staticMetaObject.cast(object), &vertex);
    EXPECT_STREQ(vertex.metaObject()->className(), "KEZTopVertex");
}
