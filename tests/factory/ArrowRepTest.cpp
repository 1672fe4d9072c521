// Tests of KEZVisArrowRep: the solid arrow as a rep class, made of a prism,
// a polygon and a pyramid primitive with one options entry.

#include "KEZVisArrowRep.h"
#include "KEZVisOptions.h"
#include "KEZVisPolygonPrimitive.h"
#include "KEZVisPrismPrimitive.h"
#include "KEZVisPyramidPrimitive.h"
#include "KEZVisRepGraphics.h"

#include <KEZMathBoundingBox.h>
#include <KEZMathPoint.h>
#include <KEZMathVector.h>
#include <KEZMathZeroMagnitudeVectorException.h>
#include <KEZSysOutOfBoundsException.h>

#include <QColor>
#include <QDataStream>
#include <QIODevice>

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <optional>

namespace {

KEZMathPoint VertexAt(const QList<double> &coords, qsizetype index)
{
    return KEZMathPoint(coords.at(3 * index), coords.at(3 * index + 1), coords.at(3 * index + 2));
}

void ExpectPointNear(const KEZMathPoint &actual, const KEZMathPoint &expected)
{
    EXPECT_NEAR(actual.GetX(), expected.GetX(), 1e-12);
    EXPECT_NEAR(actual.GetY(), expected.GetY(), 1e-12);
    EXPECT_NEAR(actual.GetZ(), expected.GetZ(), 1e-12);
}

KEZVisOptions RedOptions()
{
    KEZVisOptions options;
    options.SetColor(Qt::red);
    options.SetLineThickness(2.5);
    options.SetPriority(7);
    return options;
}

struct Flattened
{
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
};

Flattened Flatten(const KEZVisRep &rep)
{
    Flattened flat;
    rep.GetPrimitives(flat.primitives, flat.options);
    return flat;
}

// The arrow along +z from the origin, of length 10 with ratios 0.05, 0.1, 0.8.
std::unique_ptr<KEZVisArrowRep> StandardArrow(const KEZMathVector &direction = KEZMathVector(0, 0, 1))
{
    return std::make_unique<KEZVisArrowRep>(KEZMathPoint(), direction, 10.0, RedOptions(), 8, 0.05, 0.1, 0.8);
}

} // namespace

TEST(ArrowRep, GetPrimitivesAnswersPrismPolygonPyramidWithThreeEqualOptions)
{
    const auto arrow = StandardArrow();

    const Flattened flat = Flatten(*arrow);
    ASSERT_EQ(flat.primitives.size(), 3);
    EXPECT_NE(qobject_cast<const KEZVisPrismPrimitive *>(flat.primitives.at(0)), nullptr);
    EXPECT_NE(qobject_cast<const KEZVisPolygonPrimitive *>(flat.primitives.at(1)), nullptr);
    EXPECT_NE(qobject_cast<const KEZVisPyramidPrimitive *>(flat.primitives.at(2)), nullptr);
    ASSERT_EQ(flat.options.size(), 3);
    EXPECT_EQ(flat.options.at(0), RedOptions());
    EXPECT_EQ(flat.options.at(1), RedOptions());
    EXPECT_EQ(flat.options.at(2), RedOptions());
}

TEST(ArrowRep, LengthTenWithRatiosGivesShaftEightRadiusHalfHeadTwoRadiusOne)
{
    const auto arrow = StandardArrow();

    const Flattened flat = Flatten(*arrow);
    ASSERT_EQ(flat.primitives.size(), 3);
    const auto *shaft = qobject_cast<const KEZVisPrismPrimitive *>(flat.primitives.at(0));
    const auto *foot = qobject_cast<const KEZVisPolygonPrimitive *>(flat.primitives.at(1));
    const auto *head = qobject_cast<const KEZVisPyramidPrimitive *>(flat.primitives.at(2));
    ASSERT_TRUE(shaft && foot && head);
    const QList<double> shaftCoords = shaft->GetVertexCoordinatesAsDouble();
    const QList<double> footCoords = foot->GetVertexCoordinatesAsDouble();
    const QList<double> headCoords = head->GetVertexCoordinatesAsDouble();
    for (int i = 0; i < 8; ++i) {
        SCOPED_TRACE(i);
        // Shaft radius 0.5 from z 0 to z 8.
        EXPECT_NEAR(VertexAt(shaftCoords, 2 * i).GetDistanceTo(KEZMathPoint(0, 0, 0)), 0.5, 1e-12);
        EXPECT_NEAR(VertexAt(shaftCoords, 2 * i).GetZ(), 0.0, 1e-12);
        EXPECT_NEAR(VertexAt(shaftCoords, 2 * i + 1).GetDistanceTo(KEZMathPoint(0, 0, 8)), 0.5, 1e-12);
        EXPECT_NEAR(VertexAt(shaftCoords, 2 * i + 1).GetZ(), 8.0, 1e-12);
        // The foot closes the shaft with its radius at the start.
        EXPECT_NEAR(VertexAt(footCoords, i).GetDistanceTo(KEZMathPoint(0, 0, 0)), 0.5, 1e-12);
        // Head radius 1 at z 8, two long.
        EXPECT_NEAR(VertexAt(headCoords, i + 1).GetDistanceTo(KEZMathPoint(0, 0, 8)), 1.0, 1e-12);
        EXPECT_NEAR(VertexAt(headCoords, i + 1).GetZ(), 8.0, 1e-12);
    }
    ExpectPointNear(VertexAt(headCoords, 0), KEZMathPoint(0, 0, 10));
}

TEST(ArrowRep, DirectionNeedNotBeAUnitVector)
{
    const auto unit = StandardArrow(KEZMathVector(0, 0, 1));
    const auto longer = StandardArrow(KEZMathVector(0, 0, 5));

    const Flattened a = Flatten(*unit);
    const Flattened b = Flatten(*longer);
    ASSERT_EQ(a.primitives.size(), 3);
    ASSERT_EQ(b.primitives.size(), 3);
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        const auto *first = qobject_cast<const KEZVisSurfacePrimitive *>(a.primitives.at(i));
        const auto *second = qobject_cast<const KEZVisSurfacePrimitive *>(b.primitives.at(i));
        EXPECT_EQ(first->GetVertexCoordinatesAsDouble(), second->GetVertexCoordinatesAsDouble());
        EXPECT_EQ(first->GetVertexNormalCoordsAsDouble(), second->GetVertexNormalCoordsAsDouble());
        EXPECT_EQ(first->GetTriangleVertexIndexes(), second->GetTriangleVertexIndexes());
    }
}

TEST(ArrowRep, HeadApexOfAnArrowAlongZWithShaftEightAndHeadTwoIsAt0010)
{
    const KEZVisArrowRep arrow(KEZMathPoint(), KEZMathVector(0, 0, 1), 8.0, 0.5, 2.0, 1.0, 6, KEZVisOptions());

    const Flattened flat = Flatten(arrow);
    ASSERT_EQ(flat.primitives.size(), 3);
    const auto *head = qobject_cast<const KEZVisPyramidPrimitive *>(flat.primitives.at(2));
    ASSERT_NE(head, nullptr);
    ExpectPointNear(VertexAt(head->GetVertexCoordinatesAsDouble(), 0), KEZMathPoint(0, 0, 10));
}

TEST(ArrowRep, ShapesGetTheUnitAxisSoTheirNormalsAreUnitToo)
{
    const KEZVisArrowRep arrow(KEZMathPoint(), KEZMathVector(0, 0, 4), 8.0, 0.5, 2.0, 1.0, 4, KEZVisOptions());

    const Flattened flat = Flatten(arrow);
    const auto *foot = qobject_cast<const KEZVisPolygonPrimitive *>(flat.primitives.at(1));
    const auto *head = qobject_cast<const KEZVisPyramidPrimitive *>(flat.primitives.at(2));
    ASSERT_TRUE(foot && head);
    // The disc's normals and the apex normal are the direction that the shape
    // was given: the normalised one, not (0, 0, 4).
    EXPECT_EQ(foot->GetVertexNormalCoordsAsDouble().mid(0, 3), (QList<double>{0, 0, 1}));
    EXPECT_EQ(head->GetVertexNormalCoordsAsDouble().mid(0, 3), (QList<double>{0, 0, 1}));
}

TEST(ArrowRep, SavingWritesThreeSurfaceTagsWithZeroCounts)
{
    const auto arrow = StandardArrow();

    QByteArray saved;
    {
        QDataStream stream(&saved, QIODevice::WriteOnly);
        arrow->Save(stream);
    }
    QByteArray expected;
    {
        QDataStream stream(&expected, QIODevice::WriteOnly);
        stream << qint32(3) << qint32(1) << RedOptions();
        for (int i = 0; i < 3; ++i)
            stream << QString("KEZVisSurfacePrimitive") << qint32(0) << qint32(0);
    }
    EXPECT_EQ(saved.toHex(), expected.toHex());
}

TEST(ArrowRep, BoundingBoxIsTheDefaultBox)
{
    const KEZVisArrowRep arrow(KEZMathPoint(3, 4, 5), KEZMathVector(1, 1, 0), 8.0, 0.5, 2.0, 1.0, 6, KEZVisOptions());

    EXPECT_EQ(arrow.GetBoundingBox(), KEZMathBoundingBox());
}

TEST(ArrowRep, BelowOneSideRaisesTheOutOfBoundsExceptionOfThePrism)
{
    std::optional<KEZSysOutOfBoundsException> caught;
    try {
        KEZVisArrowRep arrow(KEZMathPoint(), KEZMathVector(0, 0, 1), 8.0, 0.5, 2.0, 1.0, 0, KEZVisOptions());
    } catch (const KEZSysOutOfBoundsException &exception) {
        caught = exception;
    }
    ASSERT_TRUE(caught.has_value());
    EXPECT_EQ(caught->GetValue(), QVariant(0));
    EXPECT_EQ(caught->GetLowerLimit(), QVariant(1));
    EXPECT_FALSE(caught->GetUpperLimit().isValid());
    EXPECT_TRUE(caught->IsLowerLimitIncluded());
    EXPECT_TRUE(caught->IsUpperLimitIncluded());
}

TEST(ArrowRep, OneSideGetsThroughThePrismAndFailsInThePolygon)
{
    // The prism made first is freed on the way out: the sanitizer build checks for leaks.
    EXPECT_THROW(KEZVisArrowRep(KEZMathPoint(), KEZMathVector(0, 0, 1), 8.0, 0.5, 2.0, 1.0, 1, KEZVisOptions()),
                 std::bad_alloc);
}

TEST(ArrowRep, SetColorRecoloursTheOneOptionsEntry)
{
    const auto arrow = StandardArrow();

    arrow->SetColor(Qt::blue);
    const Flattened flat = Flatten(*arrow);
    ASSERT_EQ(flat.options.size(), 3);
    for (const KEZVisOptions &options : flat.options) {
        EXPECT_EQ(options.GetColor(), QColor(Qt::blue));
        EXPECT_EQ(options.GetPriority(), 7);
    }
}

TEST(ArrowRep, RemovePrimitiveHandsTheHeadBackAndKeepsTheSharedOptions)
{
    const auto arrow = StandardArrow();
    const KEZVisPrimitive *head = Flatten(*arrow).primitives.at(2);

    arrow->RemovePrimitive(head);
    const std::unique_ptr<const KEZVisPrimitive> owned(head);
    const Flattened flat = Flatten(*arrow);
    ASSERT_EQ(flat.primitives.size(), 2);
    EXPECT_NE(qobject_cast<const KEZVisPrismPrimitive *>(flat.primitives.at(0)), nullptr);
    EXPECT_NE(qobject_cast<const KEZVisPolygonPrimitive *>(flat.primitives.at(1)), nullptr);
    EXPECT_EQ(flat.options, (QList<KEZVisOptions>{RedOptions(), RedOptions()}));
}

TEST(ArrowRep, IsAGraphicsRepOfItsOwnClass)
{
    const auto arrow = StandardArrow();

    EXPECT_NE(qobject_cast<KEZVisRepGraphics *>(arrow.get()), nullptr);
    EXPECT_STREQ(arrow->metaObject()->className(), "KEZVisArrowRep");
    EXPECT_EQ(arrow->parent(), nullptr);
}

TEST(ArrowRep, ZeroDirectionIsRefusedByTheShaftsCircle)
{
    EXPECT_THROW(KEZVisArrowRep(KEZMathPoint(), KEZMathVector(), 8.0, 0.5, 2.0, 1.0, 6, KEZVisOptions()),
                 KEZMathZeroMagnitudeVectorException);
}
