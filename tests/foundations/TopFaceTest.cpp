// The topology face: its geometry, which it neither owns nor counts.

#include "KEZTopFace.h"

#include <QPointer>

#include <gtest/gtest.h>

#include <memory>

namespace {

std::unique_ptr<KEZGeoSurface> MakeSurface()
{
    KEZMathSetOfPoints points;
    points.append(KEZMathPoint(0.0, 0.0, 0.0));
    points.append(KEZMathPoint(1.0, 0.0, 0.0));
    points.append(KEZMathPoint(0.0, 1.0, 0.0));
    return std::make_unique<KEZGeoSurface>(points, QList<int>{0, 1, 2});
}

} // namespace

TEST(TopFace, FaceGivesBackItsGeometry)
{
    const auto geometry = MakeSurface();
    const KEZTopFace face(geometry.get());
    EXPECT_EQ(face.GetSurface(), geometry.get());
}

TEST(TopFace, FaceCountsNoReferenceOnItsGeometry)
{
    const auto geometry = MakeSurface();
    const KEZTopFace face(geometry.get());
    EXPECT_EQ(geometry->GetReferenceCount(), 0);
}

TEST(TopFace, GeometryOutlivesTheFace)
{
    const auto geometry = MakeSurface();
    const QPointer<KEZGeoSurface> watch(geometry.get());
    delete new KEZTopFace(geometry.get());
    EXPECT_FALSE(watch.isNull());
}

TEST(TopFace, FaceAnswersNullOnceItsGeometryIsDeleted)
{
    auto geometry = MakeSurface();
    const KEZTopFace face(geometry.get());
    geometry.reset();
    EXPECT_EQ(face.GetSurface(), nullptr);
}

TEST(TopFace, FaceWithoutGeometryAnswersNull)
{
    const KEZTopFace face(nullptr);
    EXPECT_EQ(face.GetSurface(), nullptr);
}

TEST(TopFace, FaceTakesAQObjectParentThatDeletesIt)
{
    const auto geometry = MakeSurface();
    auto parent = std::make_unique<QObject>();
    const QPointer<KEZTopFace> face(new KEZTopFace(geometry.get(), parent.get()));
    EXPECT_EQ(face->parent(), parent.get());
    parent.reset();
    EXPECT_TRUE(face.isNull());
    EXPECT_EQ(geometry->GetReferenceCount(), 0);
}

TEST(TopFace, FaceCastsToItsOwnClassThroughItsStaticMetaObject)
{
    KEZTopFace face(nullptr);
    QObject *object = &face;
    EXPECT_EQ(KEZTopFace::staticMetaObject.cast(object), &face);
    EXPECT_STREQ(face.metaObject()->className(), "KEZTopFace");
}
