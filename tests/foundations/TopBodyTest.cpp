// Topology bodies: entities by dimension in order of addition, ownership,
// refusals, and telling the entity classes apart.

#include "KEZTopBody.h"
#include "KEZTopEdge.h"
#include "KEZTopFace.h"
#include "KEZTopVertex.h"

#include "KEZSysException.h"
#include "KEZSysOutOfBoundsException.h"

#include <QPointer>

#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>

using namespace KEZTest;

namespace {

KEZMathSetOfPoints Triangle()
{
    return Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0), KEZMathPoint(0.0, 1.0, 0.0)});
}

// A body answering its dimensions backwards, to show that readers reach the
// query through the virtual table.
class ReversedBody : public KEZTopBody
{
public:
    QList<QObject *> GetEntitiesOfDimension(int dimension) const override
    {
        QList<QObject *> entities = KEZTopBody::GetEntitiesOfDimension(dimension);
        std::reverse(entities.begin(), entities.end());
        return entities;
    }
};

} // namespace

TEST(TopBody, NewBodyHasNoEntitiesOfAnyDimension)
{
    const KEZTopBody body;
    for (int dimension = -1; dimension <= 3; ++dimension) {
        SCOPED_TRACE(dimension);
        EXPECT_TRUE(body.GetEntitiesOfDimension(dimension).isEmpty());
    }
}

TEST(TopBody, EntitiesOfEachDimensionComeInTheOrderOfTheirAddition)
{
    KEZTopBody body;
    auto *v1 = new KEZTopVertex(nullptr);
    auto *e1 = new KEZTopEdge(nullptr);
    auto *v2 = new KEZTopVertex(nullptr);
    auto *f1 = new KEZTopFace(nullptr);
    auto *e2 = new KEZTopEdge(nullptr);
    auto *v3 = new KEZTopVertex(nullptr);
    body.AddEntity(0, v1);
    body.AddEntity(1, e1);
    body.AddEntity(0, v2);
    body.AddEntity(2, f1);
    body.AddEntity(1, e2);
    body.AddEntity(0, v3);
    EXPECT_EQ(body.GetEntitiesOfDimension(0), (QList<QObject *>{v1, v2, v3}));
    EXPECT_EQ(body.GetEntitiesOfDimension(1), (QList<QObject *>{e1, e2}));
    EXPECT_EQ(body.GetEntitiesOfDimension(2), (QList<QObject *>{f1}));
}

TEST(TopBody, DimensionsOtherThanZeroOneAndTwoGiveEmptyLists)
{
    KEZTopBody body;
    body.AddEntity(0, new KEZTopVertex(nullptr));
    body.AddEntity(1, new KEZTopEdge(nullptr));
    body.AddEntity(2, new KEZTopFace(nullptr));
    for (int dimension : {-1, 3, 100}) {
        SCOPED_TRACE(dimension);
        EXPECT_TRUE(body.GetEntitiesOfDimension(dimension).isEmpty());
    }
}

TEST(TopBody, AddEntityMakesTheBodyTheParentOfTheEntity)
{
    KEZTopBody body;
    QObject formerParent;
    auto *vertex = new KEZTopVertex(nullptr, &formerParent);
    body.AddEntity(0, vertex);
    EXPECT_EQ(vertex->parent(), &body);
    EXPECT_TRUE(formerParent.children().isEmpty());
    EXPECT_TRUE(body.children().contains(vertex));
}

TEST(TopBody, EntitiesAreDeletedWithTheBody)
{
    auto body = std::make_unique<KEZTopBody>();
    const QPointer<QObject> vertex(new KEZTopVertex(nullptr));
    const QPointer<QObject> edge(new KEZTopEdge(nullptr));
    const QPointer<QObject> face(new KEZTopFace(nullptr));
    body->AddEntity(0, vertex);
    body->AddEntity(1, edge);
    body->AddEntity(2, face);
    body.reset();
    EXPECT_TRUE(vertex.isNull());
    EXPECT_TRUE(edge.isNull());
    EXPECT_TRUE(face.isNull());
}

TEST(TopBody, GeometryOfTheEntitiesSurvivesTheBody)
{
    const KEZGeoComboPoint point(KEZMathPoint(1.0, 2.0, 3.0));
    const KEZGeoComboCurve curve(Triangle(), true);
    const KEZGeoSurface surface(Triangle(), {0, 1, 2});
    {
        KEZTopBody body;
        body.AddEntity(0, new KEZTopVertex(&point));
        body.AddEntity(1, new KEZTopEdge(&curve));
        body.AddEntity(2, new KEZTopFace(&surface));
    }
    EXPECT_EQ(point.GetMathPoint().GetZ(), 3.0);
    EXPECT_EQ(curve.GetNumVertices(), 3);
    EXPECT_EQ(surface.GetNumTriangles(), 1);
}

TEST(TopBody, EntityDeletedElsewhereDropsOutOfTheList)
{
    KEZTopBody body;
    auto *first = new KEZTopEdge(nullptr);
    auto *second = new KEZTopEdge(nullptr);
    auto *third = new KEZTopEdge(nullptr);
    body.AddEntity(1, first);
    body.AddEntity(1, second);
    body.AddEntity(1, third);
    delete second;
    EXPECT_EQ(body.GetEntitiesOfDimension(1), (QList<QObject *>{first, third}));
}

TEST(TopBody, BodyTakesAnyQObjectAsAnEntity)
{
    KEZTopBody body;
    auto *stranger = new QObject;
    auto *vertex = new KEZTopVertex(nullptr);
    body.AddEntity(0, stranger);
    body.AddEntity(0, vertex);
    EXPECT_EQ(body.GetEntitiesOfDimension(0), (QList<QObject *>{stranger, vertex}));
    EXPECT_EQ(stranger->parent(), &body);
}

TEST(TopBody, EntityAddedTwiceIsListedTwice)
{
    KEZTopBody body;
    auto *face = new KEZTopFace(nullptr);
    body.AddEntity(2, face);
    body.AddEntity(2, face);
    EXPECT_EQ(body.GetEntitiesOfDimension(2), (QList<QObject *>{face, face}));
    EXPECT_EQ(body.children().count(face), 1);
}

TEST(TopBody, DimensionOutsideZeroToTwoIsRefusedAndTheEntityStaysAsItWas)
{
    KEZTopBody body;
    QObject owner;
    auto *vertex = new KEZTopVertex(nullptr, &owner);
    for (int dimension : {-1, 3}) {
        SCOPED_TRACE(dimension);
        const auto exception = ThrownBy<KEZSysOutOfBoundsException>([&] { body.AddEntity(dimension, vertex); });
        ASSERT_TRUE(exception.has_value());
        EXPECT_EQ(exception->GetValue(), QVariant(dimension));
        EXPECT_EQ(exception->GetLowerLimit(), QVariant(0));
        EXPECT_EQ(exception->GetUpperLimit(), QVariant(2));
        EXPECT_TRUE(exception->IsLowerLimitIncluded());
        EXPECT_TRUE(exception->IsUpperLimitIncluded());
        EXPECT_EQ(vertex->parent(), &owner);
    }
    for (int dimension = 0; dimension <= 2; ++dimension)
        EXPECT_TRUE(body.GetEntitiesOfDimension(dimension).isEmpty());
}

TEST(TopBody, NullEntityIsRefused)
{
    KEZTopBody body;
    const auto exception = ThrownBy<KEZSysException>([&] { body.AddEntity(0, nullptr); });
    ASSERT_TRUE(exception.has_value());
    EXPECT_FALSE(exception->GetMessage().isEmpty());
    EXPECT_TRUE(body.GetEntitiesOfDimension(0).isEmpty());
}

TEST(TopBody, BodyCannotHoldItselfOrItsAncestors)
{
    QObject grandparent;
    QObject parent(&grandparent);
    KEZTopBody body(&parent);
    EXPECT_THROW(body.AddEntity(0, &body), KEZSysException);
    EXPECT_THROW(body.AddEntity(1, &parent), KEZSysException);
    EXPECT_THROW(body.AddEntity(2, &grandparent), KEZSysException);
    EXPECT_EQ(body.parent(), &parent);
    EXPECT_EQ(parent.parent(), &grandparent);
    for (int dimension = 0; dimension <= 2; ++dimension)
        EXPECT_TRUE(body.GetEntitiesOfDimension(dimension).isEmpty());
}

TEST(TopBody, EntityClassesAreToldApartWithQMetaObjectCast)
{
    const KEZGeoComboPoint point(KEZMathPoint(1.0, 2.0, 3.0));
    const KEZGeoComboCurve curve(Triangle(), false);
    const KEZGeoSurface surface(Triangle(), {0, 1, 2});
    KEZTopBody body;
    body.AddEntity(0, new KEZTopVertex(&point));
    body.AddEntity(0, new QObject);
    body.AddEntity(1, new KEZTopEdge(&curve));
    body.AddEntity(2, new KEZTopFace(&surface));

    const QList<QObject *> vertices = body.GetEntitiesOfDimension(0);
    ASSERT_EQ(vertices.size(), 2);
    const auto *vertex = qobject_cast<const KEZTopVertex *>(KEZTopVertex::staticMetaObject.cast(vertices[0]));
    ASSERT_NE(vertex, nullptr);
    EXPECT_EQ(vertex->GetPoint(), &point);
    EXPECT_EQ(KEZTopVertex::staticMetaObject.cast(vertices[1]), nullptr);
    EXPECT_EQ(KEZTopEdge::staticMetaObject.cast(vertices[0]), nullptr);
    EXPECT_EQ(KEZTopFace::staticMetaObject.cast(vertices[0]), nullptr);

    QObject *edge = body.GetEntitiesOfDimension(1).value(0);
    ASSERT_NE(KEZTopEdge::staticMetaObject.cast(edge), nullptr);
    EXPECT_EQ(KEZTopVertex::staticMetaObject.cast(edge), nullptr);
    EXPECT_EQ(KEZTopFace::staticMetaObject.cast(edge), nullptr);
    EXPECT_EQ(static_cast<KEZTopEdge *>(KEZTopEdge::staticMetaObject.cast(edge))->GetCurve(), &curve);

    QObject *face = body.GetEntitiesOfDimension(2).value(0);
    ASSERT_NE(KEZTopFace::staticMetaObject.cast(face), nullptr);
    EXPECT_EQ(KEZTopVertex::staticMetaObject.cast(face), nullptr);
    EXPECT_EQ(KEZTopEdge::staticMetaObject.cast(face), nullptr);
    EXPECT_EQ(static_cast<KEZTopFace *>(KEZTopFace::staticMetaObject.cast(face))->GetSurface(), &surface);
}

TEST(TopBody, EntitiesOfDimensionIsAskedThroughTheVirtualTable)
{
    ReversedBody reversed;
    auto *first = new KEZTopVertex(nullptr);
    auto *second = new KEZTopVertex(nullptr);
    reversed.AddEntity(0, first);
    reversed.AddEntity(0, second);
    const KEZTopBody &body = reversed;
    EXPECT_EQ(body.GetEntitiesOfDimension(0), (QList<QObject *>{second, first}));
}

TEST(TopBody, BodyIsDeletedWithItsQObjectParent)
{
    auto parent = std::make_unique<QObject>();
    auto *body = new KEZTopBody(parent.get());
    const QPointer<QObject> vertex(new KEZTopVertex(nullptr));
    body->AddEntity(0, vertex);
    parent.reset();
    EXPECT_TRUE(vertex.isNull());
}
