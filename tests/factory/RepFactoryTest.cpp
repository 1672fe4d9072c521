// Tests of the shape operations of KEZVisRepFactory: polylines, planes,
// regular polygons, prisms, pyramids, spheres, arrows, axes and origins.

#include "KEZVisOptions.h"
#include "KEZVisPointPrimitive.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisRepFactory.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisSurfacePrimitive.h"

#include <KEZMathBoundingBox.h>
#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>
#include <KEZMathVector.h>
#include <KEZMathZeroMagnitudeVectorException.h>
#include <KEZSysOutOfBoundsException.h>

#include <QColor>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <vector>

namespace {

constexpr double Pi = 3.141592653589793;

KEZMathPoint VertexAt(const QList<double> &coords, qsizetype index)
{
    return KEZMathPoint(coords.at(3 * index), coords.at(3 * index + 1), coords.at(3 * index + 2));
}

KEZMathPoint PointAt(const std::vector<double> &coords, size_t index)
{
    return KEZMathPoint(coords.at(3 * index), coords.at(3 * index + 1), coords.at(3 * index + 2));
}

void ExpectPointNear(const KEZMathPoint &actual, const KEZMathPoint &expected, double tolerance = 1e-12)
{
    EXPECT_NEAR(actual.GetX(), expected.GetX(), tolerance);
    EXPECT_NEAR(actual.GetY(), expected.GetY(), tolerance);
    EXPECT_NEAR(actual.GetZ(), expected.GetZ(), tolerance);
}

KEZVisOptions Options(const QColor &color, double thickness = 1.0)
{
    KEZVisOptions options;
    options.SetColor(color);
    options.SetLineThickness(thickness);
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

const KEZVisSurfacePrimitive *SurfaceAt(const Flattened &flat, qsizetype index)
{
    return qobject_cast<const KEZVisSurfacePrimitive *>(flat.primitives.at(index));
}

std::optional<KEZSysOutOfBoundsException> OutOfBoundsFrom(const std::function<void()> &call)
{
    try {
        call();
    } catch (const KEZSysOutOfBoundsException &exception) {
        return exception;
    }
    return std::nullopt;
}

void ExpectSideCountException(const std::optional<KEZSysOutOfBoundsException> &exception, int sides)
{
    ASSERT_TRUE(exception.has_value());
    EXPECT_EQ(exception->GetValue().typeId(), QMetaType::Int);
    EXPECT_EQ(exception->GetValue().toInt(), sides);
    EXPECT_EQ(exception->GetLowerLimit().typeId(), QMetaType::Int);
    EXPECT_EQ(exception->GetLowerLimit().toInt(), 1);
    EXPECT_FALSE(exception->GetUpperLimit().isValid());
    EXPECT_TRUE(exception->IsLowerLimitIncluded());
    EXPECT_TRUE(exception->IsUpperLimitIncluded());
}

KEZMathSetOfPoints Square()
{
    KEZMathSetOfPoints points;
    points << KEZMathPoint(0, 0, 1) << KEZMathPoint(2, 0, 1) << KEZMathPoint(2, 2, 1) << KEZMathPoint(0, 2, 1);
    return points;
}

// The triangle normal rule of the surface: ((pc - pa) ^ (pb - pa)) normalised.
KEZMathVector RuleNormal(const QList<double> &coords, long a, long b, long c)
{
    const KEZMathPoint pa = VertexAt(coords, a), pb = VertexAt(coords, b), pc = VertexAt(coords, c);
    return ((pc - pa) ^ (pb - pa)).Normalized();
}

// The sphere's triangles, written out from the rules of its layout.
QList<long> SphereTrianglesByRule(int d)
{
    const long rings = 2L * d - 1;
    const long m = 4L * d;
    const auto a = [m](long k, long j) { return 2 + k * m + ((j % m) + m) % m; };
    QList<long> list;
    for (long j = 0; j < m; ++j)
        list << 0 << a(0, j - 1) << a(0, j);
    for (long k = 0; k <= rings - 2; ++k) {
        for (long j = 0; j < m; ++j) {
            list << a(k, j) << a(k, j - 1) << a(k + 1, j);
            list << a(k + 1, j) << a(k, j - 1) << a(k + 1, j - 1);
        }
    }
    for (long j = 0; j < m; ++j)
        list << 1 << a(rings - 1, j) << a(rings - 1, j - 1);
    return list;
}

// The sphere's vertexes, written out from the rules with the same running sums.
QList<double> SphereVertexesByRule(const KEZMathPoint &center, double radius, int d)
{
    const int rings = 2 * d - 1;
    const int m = 4 * d;
    const double step = (Pi / 2) / d;
    QList<double> list;
    list << center.GetX() << center.GetY() << center.GetZ() + radius;
    list << center.GetX() << center.GetY() << center.GetZ() - radius;
    double polar = step;
    for (int k = 0; k < rings; ++k) {
        double longitude = 0.0;
        for (int j = 0; j < m; ++j) {
            const double rho = std::sin(polar) * radius;
            list << center.GetX() + std::sin(longitude) * rho << center.GetY() + std::cos(longitude) * rho
                 << center.GetZ() + std::cos(polar) * radius;
            longitude += step;
        }
        polar += step;
    }
    return list;
}

} // namespace

// ---------------------------------------------------------------------------
// Polylines and planes

TEST(RepFactory, PolylineRepHoldsOneConnectedPolylineThroughThePoints)
{
    const KEZVisOptions options = Options(Qt::red);
    const std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreatePolylineRep(Square(), options));

    const Flattened flat = Flatten(*rep);
    ASSERT_EQ(flat.primitives.size(), 1);
    const auto *polyline = qobject_cast<const KEZVisPolylinePrimitive *>(flat.primitives.first());
    ASSERT_NE(polyline, nullptr);
    EXPECT_EQ(polyline->GetStructure(), KEZVisPolylinePrimitive::StructureConnected);
    EXPECT_EQ(polyline->GetCoordsAsDouble(), (std::vector<double>{0, 0, 1, 2, 0, 1, 2, 2, 1, 0, 2, 1}));
    EXPECT_EQ(flat.options, QList<KEZVisOptions>{options});
}

TEST(RepFactory, PlaneBoundaryEdgesCloseTheOutlineOnItsFirstPoint)
{
    const std::unique_ptr<KEZVisPolylinePrimitive> edges(KEZVisRepFactory::CreatePlaneBoundaryEdgesPrimitive(Square()));

    EXPECT_EQ(edges->GetNumPoints(), 5);
    EXPECT_EQ(edges->GetStructure(), KEZVisPolylinePrimitive::StructureConnected);
    EXPECT_EQ(edges->GetCoordsAsDouble(), (std::vector<double>{0, 0, 1, 2, 0, 1, 2, 2, 1, 0, 2, 1, 0, 0, 1}));
}

TEST(RepFactory, PlaneBoundaryEdgesOfAnEmptyListAreAnEmptyPolyline)
{
    const std::unique_ptr<KEZVisPolylinePrimitive> edges(
        KEZVisRepFactory::CreatePlaneBoundaryEdgesPrimitive(KEZMathSetOfPoints()));

    EXPECT_EQ(edges->GetNumPoints(), 0);
    EXPECT_TRUE(edges->GetCoordsAsDouble().empty());
}

TEST(RepFactory, PlaneBoundaryEdgesRepWrapsTheClosedOutlineWithTheOptions)
{
    const KEZVisOptions options = Options(Qt::green, 2.0);
    const std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreatePlaneBoundaryEdgesRep(Square(), options));

    const Flattened flat = Flatten(*rep);
    ASSERT_EQ(flat.primitives.size(), 1);
    const auto *edges = qobject_cast<const KEZVisPolylinePrimitive *>(flat.primitives.first());
    ASSERT_NE(edges, nullptr);
    EXPECT_EQ(edges->GetNumPoints(), 5);
    EXPECT_EQ(flat.options, QList<KEZVisOptions>{options});
}

TEST(RepFactory, PlaneSurfaceIsAFanFromVertexZeroOverThePointsInOrder)
{
    KEZMathSetOfPoints pentagon = Square();
    pentagon.insert(2, KEZMathPoint(3, 1, 1));
    const std::unique_ptr<KEZVisSurfacePrimitive> surface(
        KEZVisRepFactory::CreatePlaneSurfacePrimitive(pentagon, KEZMathVector(0, 0, 1)));

    EXPECT_EQ(surface->GetNumVertexes(), 5);
    EXPECT_EQ(surface->GetNumTriangles(), 3);
    EXPECT_EQ(surface->GetVertexCoordinatesAsDouble(),
              (QList<double>{0, 0, 1, 2, 0, 1, 3, 1, 1, 2, 2, 1, 0, 2, 1}));
    EXPECT_EQ(surface->GetTriangleVertexIndexes(), (QList<long>{0, 1, 2, 0, 2, 3, 0, 3, 4}));
}

TEST(RepFactory, PlaneSurfaceNormalsAreTheNormalAsGivenNotNormalised)
{
    const std::unique_ptr<KEZVisSurfacePrimitive> surface(
        KEZVisRepFactory::CreatePlaneSurfacePrimitive(Square(), KEZMathVector(0, 0, 2)));

    EXPECT_EQ(surface->GetTriangleNormalCoordsAsDouble(), (QList<double>{0, 0, 2, 0, 0, 2}));
}

TEST(RepFactory, PlaneSurfaceOfFewerThanThreePointsHasNoTriangles)
{
    KEZMathSetOfPoints two;
    two << KEZMathPoint(1, 2, 3) << KEZMathPoint(4, 5, 6);
    const std::unique_ptr<KEZVisSurfacePrimitive> fromTwo(
        KEZVisRepFactory::CreatePlaneSurfacePrimitive(two, KEZMathVector(0, 0, 1)));
    const std::unique_ptr<KEZVisSurfacePrimitive> fromOne(
        KEZVisRepFactory::CreatePlaneSurfacePrimitive(two.mid(0, 1), KEZMathVector(0, 0, 1)));
    const std::unique_ptr<KEZVisSurfacePrimitive> fromNone(
        KEZVisRepFactory::CreatePlaneSurfacePrimitive(KEZMathSetOfPoints(), KEZMathVector(0, 0, 1)));

    EXPECT_EQ(fromTwo->GetNumVertexes(), 2);
    EXPECT_EQ(fromTwo->GetNumTriangles(), 0);
    EXPECT_EQ(fromOne->GetNumVertexes(), 1);
    EXPECT_EQ(fromOne->GetNumTriangles(), 0);
    EXPECT_EQ(fromNone->GetNumVertexes(), 0);
    EXPECT_TRUE(fromNone->GetTriangleVertexIndexes().isEmpty());
}

TEST(RepFactory, PlaneSurfaceRepWrapsTheSurfaceWithTheOptions)
{
    const KEZVisOptions options = Options(Qt::cyan);
    const std::unique_ptr<KEZVisRep> rep(
        KEZVisRepFactory::CreatePlaneSurfaceRep(Square(), KEZMathVector(0, 0, 1), options));

    const Flattened flat = Flatten(*rep);
    ASSERT_EQ(flat.primitives.size(), 1);
    ASSERT_NE(SurfaceAt(flat, 0), nullptr);
    EXPECT_EQ(SurfaceAt(flat, 0)->GetNumTriangles(), 2);
    EXPECT_EQ(flat.options, QList<KEZVisOptions>{options});
}

TEST(RepFactory, PlaneRepIsOneRepOfSurfaceAndOutlineEachWithItsOwnOptions)
{
    const KEZVisOptions surfaceOptions = Options(Qt::yellow);
    const KEZVisOptions edgeOptions = Options(Qt::black, 3.0);
    const std::unique_ptr<KEZVisRep> rep(
        KEZVisRepFactory::CreatePlaneRep(Square(), KEZMathVector(0, 0, 1), surfaceOptions, edgeOptions));

    ASSERT_NE(qobject_cast<const KEZVisRepGraphics *>(rep.get()), nullptr);
    const Flattened flat = Flatten(*rep);
    ASSERT_EQ(flat.primitives.size(), 2);
    ASSERT_NE(SurfaceAt(flat, 0), nullptr);
    EXPECT_EQ(SurfaceAt(flat, 0)->GetNumVertexes(), 4);
    const auto *edges = qobject_cast<const KEZVisPolylinePrimitive *>(flat.primitives.at(1));
    ASSERT_NE(edges, nullptr);
    EXPECT_EQ(edges->GetNumPoints(), 5);
    ASSERT_EQ(flat.options.size(), 2);
    EXPECT_EQ(flat.options.at(0), surfaceOptions);
    EXPECT_EQ(flat.options.at(1), edgeOptions);
    EXPECT_NE(flat.options.at(0), flat.options.at(1));
}

// ---------------------------------------------------------------------------
// Regular polygons

TEST(RepFactory, PolygonPrimitiveWithThreeSidesGivesOneTriangle)
{
    const std::unique_ptr<KEZVisSurfacePrimitive> polygon(
        KEZVisRepFactory::CreatePolygonPrimitive(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 3));

    EXPECT_EQ(polygon->GetNumVertexes(), 3);
    EXPECT_EQ(polygon->GetTriangleVertexIndexes(), (QList<long>{0, 1, 2}));
}

TEST(RepFactory, PolygonPrimitiveWithTwoSidesGivesTwoVertexesAndNoTriangles)
{
    const std::unique_ptr<KEZVisSurfacePrimitive> polygon(
        KEZVisRepFactory::CreatePolygonPrimitive(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 2));

    EXPECT_EQ(polygon->GetNumVertexes(), 2);
    EXPECT_EQ(polygon->GetNumTriangles(), 0);
    EXPECT_TRUE(polygon->GetTriangleVertexIndexes().isEmpty());
}

TEST(RepFactory, PolygonPrimitiveWithOneSideFailsInTheAllocationOfItsArrays)
{
    EXPECT_THROW(KEZVisRepFactory::CreatePolygonPrimitive(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1),
                 std::bad_alloc);
}

TEST(RepFactory, PolygonPrimitiveBelowOneSideThrowsOutOfBounds)
{
    ExpectSideCountException(OutOfBoundsFrom([] {
                                 delete KEZVisRepFactory::CreatePolygonPrimitive(KEZMathPoint(),
                                                                                 KEZMathVector(0, 0, 1), 1.0, 0);
                             }),
                             0);
}

TEST(RepFactory, PolygonPrimitiveVertexesStartOnPlusXAndTurnTowardsPlusYAlongZ)
{
    const KEZMathPoint origin(1, 2, 3);
    const double radius = 2.0;
    const int sides = 6;
    const std::unique_ptr<KEZVisSurfacePrimitive> polygon(
        KEZVisRepFactory::CreatePolygonPrimitive(origin, KEZMathVector(0, 0, 1), radius, sides));

    const QList<double> coords = polygon->GetVertexCoordinatesAsDouble();
    ASSERT_EQ(coords.size(), 3 * sides);
    for (int i = 0; i < sides; ++i) {
        SCOPED_TRACE(i);
        const double angle = double(2 * i) * Pi / double(sides);
        ExpectPointNear(VertexAt(coords, i),
                        KEZMathPoint(1 + radius * std::cos(angle), 2 + radius * std::sin(angle), 3));
    }
}

TEST(RepFactory, PolygonPrimitiveTrianglesCarryTheNormalisedNormal)
{
    const std::unique_ptr<KEZVisSurfacePrimitive> polygon(
        KEZVisRepFactory::CreatePolygonPrimitive(KEZMathPoint(), KEZMathVector(0, 0, 5), 1.0, 5));

    EXPECT_EQ(polygon->GetTriangleNormalCoordsAsDouble(), (QList<double>{0, 0, 1, 0, 0, 1, 0, 0, 1}));
    EXPECT_EQ(polygon->GetTriangleVertexIndexes(), (QList<long>{0, 1, 2, 0, 2, 3, 0, 3, 4}));
    // A plain surface: it has a real box and no vertex normals.
    EXPECT_TRUE(polygon->GetVertexNormalCoordsAsDouble().isEmpty());
    EXPECT_NEAR(polygon->GetBoundingBox(KEZVisOptions()).GetUpperPoint().GetX(), 1.0, 1e-12);
}

TEST(RepFactory, PolygonRepWrapsThePolygonWithTheOptions)
{
    const KEZVisOptions options = Options(Qt::magenta);
    const std::unique_ptr<KEZVisRep> rep(
        KEZVisRepFactory::CreatePolygonRep(KEZMathPoint(), KEZMathVector(1, 0, 0), 1.0, 8, options));

    const Flattened flat = Flatten(*rep);
    ASSERT_EQ(flat.primitives.size(), 1);
    ASSERT_NE(SurfaceAt(flat, 0), nullptr);
    EXPECT_EQ(SurfaceAt(flat, 0)->GetNumVertexes(), 8);
    EXPECT_EQ(flat.options, QList<KEZVisOptions>{options});
}

TEST(RepFactory, PolygonRepPassesTheOutOfBoundsExceptionOnUnchanged)
{
    ExpectSideCountException(OutOfBoundsFrom([] {
                                 delete KEZVisRepFactory::CreatePolygonRep(KEZMathPoint(), KEZMathVector(0, 0, 1),
                                                                           1.0, -2, KEZVisOptions());
                             }),
                             -2);
}

// ---------------------------------------------------------------------------
// Prisms

TEST(RepFactory, PrismPrimitiveOfThreeSidesHasSixVertexesAndSixTrianglesEndingIn501)
{
    const std::unique_ptr<KEZVisSurfacePrimitive> prism(
        KEZVisRepFactory::CreatePrismPrimitive(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 2.0, 3));

    EXPECT_EQ(prism->GetNumVertexes(), 6);
    EXPECT_EQ(prism->GetNumTriangles(), 6);
    EXPECT_EQ(prism->GetTriangleVertexIndexes(),
              (QList<long>{0, 1, 2, 1, 2, 3, 2, 3, 4, 3, 4, 5, 4, 5, 0, 5, 0, 1}));
}

TEST(RepFactory, PrismPrimitiveVertexesAlternateBetweenBaseAndFarCircleAlongZ)
{
    const double radius = 1.5, height = 4.0;
    const int sides = 5;
    const std::unique_ptr<KEZVisSurfacePrimitive> prism(
        KEZVisRepFactory::CreatePrismPrimitive(KEZMathPoint(0, 0, -1), KEZMathVector(0, 0, 3), radius, height, sides));

    const QList<double> coords = prism->GetVertexCoordinatesAsDouble();
    ASSERT_EQ(coords.size(), 6 * sides);
    for (int i = 0; i < sides; ++i) {
        SCOPED_TRACE(i);
        const double angle = double(2 * i) * Pi / double(sides);
        const double x = radius * std::cos(angle), y = radius * std::sin(angle);
        ExpectPointNear(VertexAt(coords, 2 * i), KEZMathPoint(x, y, -1));
        ExpectPointNear(VertexAt(coords, 2 * i + 1), KEZMathPoint(x, y, 3));
    }
}

TEST(RepFactory, PrismPrimitiveNormalsFollowTheSurfaceRuleAndAlternateInSpace)
{
    const std::unique_ptr<KEZVisSurfacePrimitive> prism(
        KEZVisRepFactory::CreatePrismPrimitive(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0, 4));

    const QList<double> coords = prism->GetVertexCoordinatesAsDouble();
    const QList<long> indexes = prism->GetTriangleVertexIndexes();
    const QList<double> normals = prism->GetTriangleNormalCoordsAsDouble();
    ASSERT_EQ(normals.size(), 24);
    for (int t = 0; t < 8; ++t) {
        SCOPED_TRACE(t);
        const KEZMathVector expected = RuleNormal(coords, indexes.at(3 * t), indexes.at(3 * t + 1),
                                                  indexes.at(3 * t + 2));
        EXPECT_NEAR(normals.at(3 * t), expected.GetX(), 1e-12);
        EXPECT_NEAR(normals.at(3 * t + 1), expected.GetY(), 1e-12);
        EXPECT_NEAR(normals.at(3 * t + 2), expected.GetZ(), 1e-12);
    }
    // Triangles 0 and 1 cover the same face of the wall and wind opposite ways.
    EXPECT_NEAR(normals.at(0), -normals.at(3), 1e-12);
    EXPECT_NEAR(normals.at(1), -normals.at(4), 1e-12);
    EXPECT_GT(std::abs(normals.at(0)) + std::abs(normals.at(1)), 0.5);
}

TEST(RepFactory, PrismPrimitiveBelowOneSideThrowsOutOfBounds)
{
    ExpectSideCountException(OutOfBoundsFrom([] {
                                 delete KEZVisRepFactory::CreatePrismPrimitive(KEZMathPoint(), KEZMathVector(0, 0, 1),
                                                                               1.0, 1.0, 0);
                             }),
                             0);
}

TEST(RepFactory, PrismPrimitiveBeyondIntVertexNumbersThrowsBadArrayNewLength)
{
    EXPECT_THROW(KEZVisRepFactory::CreatePrismPrimitive(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 1.0,
                                                        std::numeric_limits<int>::max()),
                 std::bad_array_new_length);
}

TEST(RepFactory, PrismRepWrapsThePrismWithTheOptions)
{
    const KEZVisOptions options = Options(Qt::gray);
    const std::unique_ptr<KEZVisRep> rep(
        KEZVisRepFactory::CreatePrismRep(KEZMathPoint(), KEZMathVector(0, 1, 0), 1.0, 2.0, 6, options));

    const Flattened flat = Flatten(*rep);
    ASSERT_EQ(flat.primitives.size(), 1);
    ASSERT_NE(SurfaceAt(flat, 0), nullptr);
    EXPECT_EQ(SurfaceAt(flat, 0)->GetNumVertexes(), 12);
    EXPECT_EQ(flat.options, QList<KEZVisOptions>{options});
}

TEST(RepFactory, PrismRepPassesTheOutOfBoundsExceptionOnUnchanged)
{
    ExpectSideCountException(OutOfBoundsFrom([] {
                                 delete KEZVisRepFactory::CreatePrismRep(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0,
                                                                         1.0, 0, KEZVisOptions());
                             }),
                             0);
}

// ---------------------------------------------------------------------------
// Pyramids

TEST(RepFactory, PyramidPrimitiveOfOneSideHasTwoVertexesAndTheDegenerateTriangle011)
{
    const std::unique_ptr<KEZVisSurfacePrimitive> pyramid(
        KEZVisRepFactory::CreatePyramidPrimitive(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 2.0, 1));

    EXPECT_EQ(pyramid->GetNumVertexes(), 2);
    EXPECT_EQ(pyramid->GetNumTriangles(), 1);
    EXPECT_EQ(pyramid->GetTriangleVertexIndexes(), (QList<long>{0, 1, 1}));
}

TEST(RepFactory, PyramidPrimitiveApexComesFirstThenTheBaseCornersAlongZ)
{
    const double radius = 2.0, height = 3.0;
    const int sides = 4;
    const std::unique_ptr<KEZVisSurfacePrimitive> pyramid(
        KEZVisRepFactory::CreatePyramidPrimitive(KEZMathPoint(1, 1, 1), KEZMathVector(0, 0, 10), radius, height, sides));

    const QList<double> coords = pyramid->GetVertexCoordinatesAsDouble();
    ASSERT_EQ(coords.size(), 15);
    ExpectPointNear(VertexAt(coords, 0), KEZMathPoint(1, 1, 4));
    ExpectPointNear(VertexAt(coords, 1), KEZMathPoint(3, 1, 1));
    ExpectPointNear(VertexAt(coords, 2), KEZMathPoint(1, 3, 1));
    ExpectPointNear(VertexAt(coords, 3), KEZMathPoint(-1, 1, 1));
    ExpectPointNear(VertexAt(coords, 4), KEZMathPoint(1, -1, 1));
    EXPECT_EQ(pyramid->GetTriangleVertexIndexes(), (QList<long>{0, 1, 2, 0, 2, 3, 0, 3, 4, 0, 4, 1}));
}

TEST(RepFactory, PyramidPrimitiveBelowOneSideThrowsOutOfBounds)
{
    ExpectSideCountException(OutOfBoundsFrom([] {
                                 delete KEZVisRepFactory::CreatePyramidPrimitive(KEZMathPoint(),
                                                                                 KEZMathVector(0, 0, 1), 1.0, 1.0, -1);
                             }),
                             -1);
}

TEST(RepFactory, PyramidRepWrapsThePyramidWithTheOptions)
{
    const KEZVisOptions options = Options(Qt::darkRed);
    const std::unique_ptr<KEZVisRep> rep(
        KEZVisRepFactory::CreatePyramidRep(KEZMathPoint(), KEZMathVector(0, 0, 1), 1.0, 2.0, 5, options));

    const Flattened flat = Flatten(*rep);
    ASSERT_EQ(flat.primitives.size(), 1);
    ASSERT_NE(SurfaceAt(flat, 0), nullptr);
    EXPECT_EQ(SurfaceAt(flat, 0)->GetNumVertexes(), 6);
    EXPECT_EQ(flat.options, QList<KEZVisOptions>{options});
}

// ---------------------------------------------------------------------------
// Spheres

TEST(RepFactory, SphereOfOneDivisionIsAnOctahedron)
{
    const std::unique_ptr<KEZVisSurfacePrimitive> sphere(
        KEZVisRepFactory::CreateSpherePrimitive(KEZMathPoint(), 1.0, 1));

    EXPECT_EQ(sphere->GetNumVertexes(), 6);
    EXPECT_EQ(sphere->GetNumTriangles(), 8);
    const QList<double> coords = sphere->GetVertexCoordinatesAsDouble();
    ExpectPointNear(VertexAt(coords, 0), KEZMathPoint(0, 0, 1));
    ExpectPointNear(VertexAt(coords, 1), KEZMathPoint(0, 0, -1));
    ExpectPointNear(VertexAt(coords, 2), KEZMathPoint(0, 1, 0));
    ExpectPointNear(VertexAt(coords, 3), KEZMathPoint(1, 0, 0));
    ExpectPointNear(VertexAt(coords, 4), KEZMathPoint(0, -1, 0));
    ExpectPointNear(VertexAt(coords, 5), KEZMathPoint(-1, 0, 0));
    // North cap, no bands, south cap, written out by hand.
    EXPECT_EQ(sphere->GetTriangleVertexIndexes(),
              (QList<long>{0, 5, 2, 0, 2, 3, 0, 3, 4, 0, 4, 5, 1, 2, 5, 1, 3, 2, 1, 4, 3, 1, 5, 4}));
}

TEST(RepFactory, SphereOfOneDivisionHasTheTrianglesOfTheRules)
{
    const std::unique_ptr<KEZVisSurfacePrimitive> sphere(
        KEZVisRepFactory::CreateSpherePrimitive(KEZMathPoint(), 1.0, 1));

    EXPECT_EQ(sphere->GetTriangleVertexIndexes(), SphereTrianglesByRule(1));
}

TEST(RepFactory, SphereOfTwoDivisionsHasTheTrianglesOfTheRules)
{
    const std::unique_ptr<KEZVisSurfacePrimitive> sphere(
        KEZVisRepFactory::CreateSpherePrimitive(KEZMathPoint(1, 2, 3), 2.0, 2));

    EXPECT_EQ(sphere->GetNumVertexes(), 26);
    EXPECT_EQ(sphere->GetNumTriangles(), 48);
    const QList<long> indexes = sphere->GetTriangleVertexIndexes();
    EXPECT_EQ(indexes, SphereTrianglesByRule(2));
    // The first band triangle, by hand: A(0, 0), A(0, 7), A(1, 0).
    EXPECT_EQ(indexes.mid(3 * 8, 6), (QList<long>{2, 9, 10, 10, 9, 17}));
}

TEST(RepFactory, SphereVertexesFollowLatitudeAndLongitudeFromTheNorthPole)
{
    const KEZMathPoint center(-1, 0.5, 2);
    const double radius = 3.0;
    for (int d = 1; d <= 4; ++d) {
        SCOPED_TRACE(d);
        const std::unique_ptr<KEZVisSurfacePrimitive> sphere(
            KEZVisRepFactory::CreateSpherePrimitive(center, radius, d));
        const QList<double> coords = sphere->GetVertexCoordinatesAsDouble();
        const QList<double> expected = SphereVertexesByRule(center, radius, d);
        ASSERT_EQ(coords.size(), expected.size());
        for (qsizetype i = 0; i < coords.size(); ++i)
            EXPECT_DOUBLE_EQ(coords.at(i), expected.at(i)) << "value " << i;
    }
}

TEST(RepFactory, SphereLongitudeZeroLiesOnPlusYAndRisesTowardsPlusX)
{
    const std::unique_ptr<KEZVisSurfacePrimitive> sphere(
        KEZVisRepFactory::CreateSpherePrimitive(KEZMathPoint(), 1.0, 3));

    const QList<double> coords = sphere->GetVertexCoordinatesAsDouble();
    // Ring 2 of 5 is the equator; its point 0 lies on +y, point 3 of 12 on +x.
    const int m = 12;
    ExpectPointNear(VertexAt(coords, 2 + 2 * m), KEZMathPoint(0, 1, 0));
    ExpectPointNear(VertexAt(coords, 2 + 2 * m + 3), KEZMathPoint(1, 0, 0));
}

TEST(RepFactory, SphereCountsAre8d2Minus4dPlus2VertexesAndTwiceVMinus2Triangles)
{
    for (int d = 1; d <= 12; ++d) {
        SCOPED_TRACE(d);
        const std::unique_ptr<KEZVisSurfacePrimitive> sphere(
            KEZVisRepFactory::CreateSpherePrimitive(KEZMathPoint(), 1.0, d));
        const int vertexes = 8 * d * d - 4 * d + 2;
        EXPECT_EQ(sphere->GetNumVertexes(), vertexes);
        EXPECT_EQ(sphere->GetNumTriangles(), 2 * (vertexes - 2));
        EXPECT_EQ(sphere->GetVertexCoordinatesAsDouble().size(), 3 * vertexes);
        EXPECT_EQ(sphere->GetTriangleVertexIndexes().size(), 6 * (vertexes - 2));
    }
}

TEST(RepFactory, EverySphereVertexLiesAtTheRadiusFromTheCentre)
{
    const KEZMathPoint center(10, -20, 30);
    const double radius = 2.5;
    const std::unique_ptr<KEZVisSurfacePrimitive> sphere(
        KEZVisRepFactory::CreateSpherePrimitive(center, radius, 7));

    const QList<double> coords = sphere->GetVertexCoordinatesAsDouble();
    ASSERT_EQ(coords.size() / 3, sphere->GetNumVertexes());
    for (qsizetype i = 0; i < coords.size() / 3; ++i)
        EXPECT_NEAR(VertexAt(coords, i).GetDistanceTo(center), radius, 1e-12) << "vertex " << i;
}

TEST(RepFactory, SphereTrianglesFaceOutwardsByTheSurfaceNormalRule)
{
    const KEZMathPoint center(1, 1, 1);
    const std::unique_ptr<KEZVisSurfacePrimitive> sphere(
        KEZVisRepFactory::CreateSpherePrimitive(center, 1.0, 4));

    const QList<double> coords = sphere->GetVertexCoordinatesAsDouble();
    const QList<long> indexes = sphere->GetTriangleVertexIndexes();
    const QList<double> normals = sphere->GetTriangleNormalCoordsAsDouble();
    for (qsizetype t = 0; t < indexes.size() / 3; ++t) {
        const KEZMathPoint a = VertexAt(coords, indexes.at(3 * t));
        const KEZMathPoint b = VertexAt(coords, indexes.at(3 * t + 1));
        const KEZMathPoint c = VertexAt(coords, indexes.at(3 * t + 2));
        const KEZMathVector outwards((a.GetX() + b.GetX() + c.GetX()) / 3 - center.GetX(),
                                     (a.GetY() + b.GetY() + c.GetY()) / 3 - center.GetY(),
                                     (a.GetZ() + b.GetZ() + c.GetZ()) / 3 - center.GetZ());
        const KEZMathVector normal(normals.at(3 * t), normals.at(3 * t + 1), normals.at(3 * t + 2));
        EXPECT_GT(normal * outwards, 0.0) << "triangle " << t;
    }
}

TEST(RepFactory, SphereOfRadiusExactlyOneThousandthSucceeds)
{
    const std::unique_ptr<KEZVisSurfacePrimitive> sphere(
        KEZVisRepFactory::CreateSpherePrimitive(KEZMathPoint(), 0.001, 2));

    EXPECT_EQ(sphere->GetNumVertexes(), 26);
}

TEST(RepFactory, SphereOfRadiusUnderOneThousandthThrowsWithAnExclusiveLowerLimitOfZero)
{
    const auto exception = OutOfBoundsFrom(
        [] { delete KEZVisRepFactory::CreateSpherePrimitive(KEZMathPoint(), 0.0009, 2); });

    ASSERT_TRUE(exception.has_value());
    EXPECT_EQ(exception->GetValue().typeId(), QMetaType::Double);
    EXPECT_EQ(exception->GetValue().toDouble(), 0.0009);
    EXPECT_EQ(exception->GetLowerLimit().typeId(), QMetaType::Double);
    EXPECT_EQ(exception->GetLowerLimit().toDouble(), 0.0);
    EXPECT_FALSE(exception->GetUpperLimit().isValid());
    EXPECT_FALSE(exception->IsLowerLimitIncluded());
    EXPECT_FALSE(exception->IsUpperLimitIncluded());
}

TEST(RepFactory, SphereWithANaNRadiusThrowsOutOfBounds)
{
    const auto exception = OutOfBoundsFrom([] {
        delete KEZVisRepFactory::CreateSpherePrimitive(KEZMathPoint(), std::numeric_limits<double>::quiet_NaN(), 2);
    });

    ASSERT_TRUE(exception.has_value());
    EXPECT_TRUE(std::isnan(exception->GetValue().toDouble()));
    EXPECT_FALSE(exception->IsLowerLimitIncluded());
}

TEST(RepFactory, SphereWithZeroDivisionsThrowsWithAnInclusiveLowerLimitOfOne)
{
    ExpectSideCountException(
        OutOfBoundsFrom([] { delete KEZVisRepFactory::CreateSpherePrimitive(KEZMathPoint(), 1.0, 0); }), 0);
}

TEST(RepFactory, SphereTestsTheRadiusBeforeTheDivisions)
{
    const auto exception =
        OutOfBoundsFrom([] { delete KEZVisRepFactory::CreateSpherePrimitive(KEZMathPoint(), 0.0, 0); });

    ASSERT_TRUE(exception.has_value());
    EXPECT_EQ(exception->GetValue().typeId(), QMetaType::Double);
    EXPECT_EQ(exception->GetValue().toDouble(), 0.0);
}

TEST(RepFactory, SphereBeyondIntTriangleNumbersThrowsBadArrayNewLength)
{
    EXPECT_THROW(KEZVisRepFactory::CreateSpherePrimitive(KEZMathPoint(), 1.0, 11586), std::bad_array_new_length);
}

TEST(RepFactory, SphereRepWrapsTheSphereWithTheOptions)
{
    const KEZVisOptions options = Options(Qt::blue);
    const std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreateSphereRep(KEZMathPoint(), 1.0, 3, options));

    const Flattened flat = Flatten(*rep);
    ASSERT_EQ(flat.primitives.size(), 1);
    ASSERT_NE(SurfaceAt(flat, 0), nullptr);
    EXPECT_EQ(SurfaceAt(flat, 0)->GetNumVertexes(), 62);
    EXPECT_EQ(flat.options, QList<KEZVisOptions>{options});
}

TEST(RepFactory, SphereRepPassesTheOutOfBoundsExceptionOnUnchanged)
{
    const auto exception = OutOfBoundsFrom(
        [] { delete KEZVisRepFactory::CreateSphereRep(KEZMathPoint(), -1.0, 3, KEZVisOptions()); });

    ASSERT_TRUE(exception.has_value());
    EXPECT_EQ(exception->GetValue().toDouble(), -1.0);
    EXPECT_EQ(exception->GetLowerLimit().toDouble(), 0.0);
}

// ---------------------------------------------------------------------------
// Arrows

TEST(RepFactory, ArrowFromRatiosOfLengthTenHasShaftEightRadiusHalfHeadTwoRadiusOne)
{
    const std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreateArrowRep(KEZMathPoint(), KEZMathVector(0, 0, 1),
                                                                          10.0, KEZVisOptions(), 8, 0.05, 0.1, 0.8));

    const Flattened flat = Flatten(*rep);
    ASSERT_EQ(flat.primitives.size(), 3);
    const QList<double> shaft = SurfaceAt(flat, 0)->GetVertexCoordinatesAsDouble();
    const QList<double> foot = SurfaceAt(flat, 1)->GetVertexCoordinatesAsDouble();
    const QList<double> head = SurfaceAt(flat, 2)->GetVertexCoordinatesAsDouble();
    // Shaft: radius 0.5 from z 0 to z 8.
    ExpectPointNear(VertexAt(shaft, 0), KEZMathPoint(0.5, 0, 0));
    ExpectPointNear(VertexAt(shaft, 1), KEZMathPoint(0.5, 0, 8));
    // Foot: the disc of the shaft's radius at the start.
    ExpectPointNear(VertexAt(foot, 0), KEZMathPoint(0.5, 0, 0));
    // Head: radius 1 at z 8, apex 2 further.
    ExpectPointNear(VertexAt(head, 0), KEZMathPoint(0, 0, 10));
    ExpectPointNear(VertexAt(head, 1), KEZMathPoint(1, 0, 8));
}

TEST(RepFactory, ArrowPrimitivesComeInTheOrderShaftDiscHead)
{
    const int sides = 6;
    const std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreateArrowRep(
        KEZMathPoint(), KEZMathVector(1, 0, 0), 5.0, 0.2, 1.0, 0.5, sides, KEZVisOptions()));

    const Flattened flat = Flatten(*rep);
    ASSERT_EQ(flat.primitives.size(), 3);
    for (int i = 0; i < 3; ++i)
        ASSERT_NE(SurfaceAt(flat, i), nullptr);
    // Prism wall: 2 sides vertexes and triangles. Disc: a fan. Head: apex and corners.
    EXPECT_EQ(SurfaceAt(flat, 0)->GetNumVertexes(), 2 * sides);
    EXPECT_EQ(SurfaceAt(flat, 0)->GetNumTriangles(), 2 * sides);
    EXPECT_EQ(SurfaceAt(flat, 1)->GetNumVertexes(), sides);
    EXPECT_EQ(SurfaceAt(flat, 1)->GetNumTriangles(), sides - 2);
    EXPECT_EQ(SurfaceAt(flat, 2)->GetNumVertexes(), sides + 1);
    EXPECT_EQ(SurfaceAt(flat, 2)->GetNumTriangles(), sides);
}

TEST(RepFactory, ArrowApexLiesAtStartPlusUnitDirectionTimesBothLengths)
{
    const std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreateArrowRep(
        KEZMathPoint(1, 2, 3), KEZMathVector(0, 4, 0), 5.0, 0.2, 1.5, 0.5, 4, KEZVisOptions()));

    const Flattened flat = Flatten(*rep);
    ASSERT_EQ(flat.primitives.size(), 3);
    ExpectPointNear(VertexAt(SurfaceAt(flat, 2)->GetVertexCoordinatesAsDouble(), 0), KEZMathPoint(1, 8.5, 3));
    // The head stands on the end of the shaft: the far circle of the shaft and
    // the base corners of the head lie 5 along the unit direction.
    const QList<double> shaft = SurfaceAt(flat, 0)->GetVertexCoordinatesAsDouble();
    const QList<double> head = SurfaceAt(flat, 2)->GetVertexCoordinatesAsDouble();
    for (int i = 0; i < 4; ++i) {
        EXPECT_NEAR(VertexAt(shaft, 2 * i).GetY(), 2.0, 1e-12);
        EXPECT_NEAR(VertexAt(shaft, 2 * i + 1).GetY(), 7.0, 1e-12);
        EXPECT_NEAR(VertexAt(head, i + 1).GetY(), 7.0, 1e-12);
        EXPECT_NEAR(VertexAt(head, i + 1).GetDistanceTo(KEZMathPoint(1, 7, 3)), 0.5, 1e-12);
    }
}

TEST(RepFactory, ArrowWithShaftLengthRatioOneHasAFlatHeadAndStillThreePrimitives)
{
    const std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreateArrowRep(KEZMathPoint(), KEZMathVector(0, 0, 1),
                                                                          4.0, KEZVisOptions(), 5, 0.1, 0.2, 1.0));

    const Flattened flat = Flatten(*rep);
    ASSERT_EQ(flat.primitives.size(), 3);
    const QList<double> head = SurfaceAt(flat, 2)->GetVertexCoordinatesAsDouble();
    // Apex and base corners all at z 4: a head of height 0.
    for (qsizetype i = 0; i < head.size() / 3; ++i)
        EXPECT_NEAR(VertexAt(head, i).GetZ(), 4.0, 1e-12);
}

TEST(RepFactory, ArrowDirectionNeedNotBeAUnitVector)
{
    const std::unique_ptr<KEZVisRep> unit(KEZVisRepFactory::CreateArrowRep(KEZMathPoint(), KEZMathVector(0, 0, 1),
                                                                           10.0, KEZVisOptions(), 8, 0.05, 0.1, 0.8));
    const std::unique_ptr<KEZVisRep> longer(KEZVisRepFactory::CreateArrowRep(
        KEZMathPoint(), KEZMathVector(0, 0, 5), 10.0, KEZVisOptions(), 8, 0.05, 0.1, 0.8));

    const Flattened a = Flatten(*unit);
    const Flattened b = Flatten(*longer);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(SurfaceAt(a, i)->GetVertexCoordinatesAsDouble(), SurfaceAt(b, i)->GetVertexCoordinatesAsDouble());
        EXPECT_EQ(SurfaceAt(a, i)->GetTriangleVertexIndexes(), SurfaceAt(b, i)->GetTriangleVertexIndexes());
    }
}

TEST(RepFactory, ArrowHasOneOptionsEntryServingAllThreePrimitives)
{
    const KEZVisOptions options = Options(Qt::red, 2.0);
    const std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreateArrowRep(KEZMathPoint(), KEZMathVector(0, 0, 1),
                                                                          10.0, options, 8, 0.05, 0.1, 0.8));

    const Flattened flat = Flatten(*rep);
    EXPECT_EQ(flat.options, (QList<KEZVisOptions>{options, options, options}));
    ASSERT_NE(qobject_cast<KEZVisRepGraphics *>(rep.get()), nullptr);
}

TEST(RepFactory, ArrowBelowOneSideThrowsOutOfBoundsFromTheShaft)
{
    ExpectSideCountException(OutOfBoundsFrom([] {
                                 delete KEZVisRepFactory::CreateArrowRep(KEZMathPoint(), KEZMathVector(0, 0, 1), 8.0,
                                                                         0.5, 2.0, 1.0, 0, KEZVisOptions());
                             }),
                             0);
}

TEST(RepFactory, ArrowWithOneSideFailsInTheDiscWithABadAllocation)
{
    // The shaft is made and must be freed again: the sanitizer build checks for leaks.
    EXPECT_THROW(KEZVisRepFactory::CreateArrowRep(KEZMathPoint(), KEZMathVector(0, 0, 1), 10.0, KEZVisOptions(), 1,
                                                  0.05, 0.1, 0.8),
                 std::bad_alloc);
}

// ---------------------------------------------------------------------------
// Axes and origins

TEST(RepFactory, AxisRepEndsLengthUnitsFromItsStartWhateverTheDirectionsLength)
{
    const KEZMathPoint start(1, 1, 1);
    const KEZVisOptions options = Options(Qt::darkGreen);
    const std::unique_ptr<KEZVisRepGraphics> rep(
        KEZVisRepFactory::CreateAxisRep(start, KEZMathVector(3, 4, 0), 2.0, options));

    const Flattened flat = Flatten(*rep);
    ASSERT_EQ(flat.primitives.size(), 1);
    const auto *line = qobject_cast<const KEZVisPolylinePrimitive *>(flat.primitives.first());
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->GetStructure(), KEZVisPolylinePrimitive::StructureSeparateSegments);
    ASSERT_EQ(line->GetNumPoints(), 2);
    const std::vector<double> coords = line->GetCoordsAsDouble();
    ExpectPointNear(PointAt(coords, 0), start);
    ExpectPointNear(PointAt(coords, 1), KEZMathPoint(2.2, 2.6, 1));
    EXPECT_NEAR(PointAt(coords, 1).GetDistanceTo(start), 2.0, 1e-12);
    EXPECT_EQ(flat.options, QList<KEZVisOptions>{options});
}

TEST(RepFactory, OriginRepHoldsOnePointPrimitiveAtThePoint)
{
    const KEZVisOptions options = Options(Qt::white);
    const std::unique_ptr<KEZVisRepGraphics> rep(KEZVisRepFactory::CreateOirginRep(KEZMathPoint(4, 5, 6), options));

    const Flattened flat = Flatten(*rep);
    ASSERT_EQ(flat.primitives.size(), 1);
    const auto *point = qobject_cast<const KEZVisPointPrimitive *>(flat.primitives.first());
    ASSERT_NE(point, nullptr);
    EXPECT_EQ(point->GetCoordsAsDouble(), (std::vector<double>{4, 5, 6}));
    EXPECT_EQ(flat.options, QList<KEZVisOptions>{options});
}

TEST(RepFactory, ShapesWithAZeroNormalOrAxisAreRefusedByTheCircle)
{
    EXPECT_THROW(KEZVisRepFactory::CreatePolygonPrimitive(KEZMathPoint(), KEZMathVector(), 1.0, 4),
                 KEZMathZeroMagnitudeVectorException);
    EXPECT_THROW(KEZVisRepFactory::CreatePrismPrimitive(KEZMathPoint(), KEZMathVector(), 1.0, 1.0, 4),
                 KEZMathZeroMagnitudeVectorException);
    EXPECT_THROW(KEZVisRepFactory::CreatePyramidPrimitive(KEZMathPoint(), KEZMathVector(), 1.0, 1.0, 4),
                 KEZMathZeroMagnitudeVectorException);
}

TEST(RepFactory, ArrowWithAZeroDirectionIsRefusedByTheShaftsCircle)
{
    EXPECT_THROW(KEZVisRepFactory::CreateArrowRep(KEZMathPoint(), KEZMathVector(), 10.0, KEZVisOptions(), 8, 0.05,
                                                  0.1, 0.8),
                 KEZMathZeroMagnitudeVectorException);
}

TEST(RepFactory, AxisRepWithAZeroDirectionHasBothEndsOnItsStart)
{
    const std::unique_ptr<KEZVisRepGraphics> rep(
        KEZVisRepFactory::CreateAxisRep(KEZMathPoint(1, 2, 3), KEZMathVector(), 5.0, KEZVisOptions()));

    const Flattened flat = Flatten(*rep);
    const auto *line = qobject_cast<const KEZVisPolylinePrimitive *>(flat.primitives.first());
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->GetCoordsAsDouble(), (std::vector<double>{1, 2, 3, 1, 2, 3}));
}
