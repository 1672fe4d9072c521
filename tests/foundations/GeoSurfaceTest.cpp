// The triangulated surface: counts, zero-based vertices, one-based
// triangles, unnormalised normals, the box and the refusal of bad input.

#include "KEZGeoSurface.h"

#include "KEZSysException.h"
#include "KEZSysOutOfBoundsException.h"

#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

#include <optional>

using namespace KEZTest;

namespace {

// Two triangles on five vertices; vertex 4 is used by none of them.
//   triangle 1: 0, 1, 2 = (0, 0, 0), (2, 0, 0), (0, 3, 0)
//   triangle 2: 3, 1, 2 = (1, 1, 1), (2, 0, 0), (0, 3, 0)
KEZMathSetOfPoints FiveVertices()
{
    return Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(2.0, 0.0, 0.0), KEZMathPoint(0.0, 3.0, 0.0),
                   KEZMathPoint(1.0, 1.0, 1.0), KEZMathPoint(-5.0, 7.0, -2.0)});
}

const QList<int> TwoTriangles = {0, 1, 2, 3, 1, 2};

} // namespace

TEST(GeoSurface, SurfaceCountsItsVerticesAndTriangles)
{
    const KEZGeoSurface surface(FiveVertices(), TwoTriangles);
    EXPECT_EQ(surface.GetNumVertices(), 5);
    EXPECT_EQ(surface.GetNumTriangles(), 2);
}

TEST(GeoSurface, VerticesAreNumberedFromZero)
{
    const KEZGeoSurface surface(FiveVertices(), TwoTriangles);
    ExpectPoint(surface.GetVertex(0), 0.0, 0.0, 0.0);
    ExpectPoint(surface.GetVertex(3), 1.0, 1.0, 1.0);
    ExpectPoint(surface.GetVertex(4), -5.0, 7.0, -2.0);
}

TEST(GeoSurface, TrianglesAreNumberedFromOneAndGiveZeroBasedIndexes)
{
    const KEZGeoSurface surface(FiveVertices(), TwoTriangles);
    int a = -1;
    int b = -1;
    int c = -1;
    surface.GetVertices(1, a, b, c);
    EXPECT_EQ(a, 0);
    EXPECT_EQ(b, 1);
    EXPECT_EQ(c, 2);
    surface.GetVertices(2, a, b, c);
    EXPECT_EQ(a, 3);
    EXPECT_EQ(b, 1);
    EXPECT_EQ(c, 2);
}

TEST(GeoSurface, NormalIsTheCrossProductOfTheTwoEdgesFromTheFirstVertexUnnormalised)
{
    const KEZGeoSurface surface(FiveVertices(), TwoTriangles);
    // (b - a) ^ (c - a) = (2, 0, 0) ^ (0, 3, 0) = (0, 0, 6): twice the area,
    // not a unit vector.
    ExpectVector(surface.GetNormal(1), 0.0, 0.0, 6.0);
}

TEST(GeoSurface, NormalOfTheSecondTriangleUsesItsOwnVertices)
{
    const KEZGeoSurface surface(FiveVertices(), TwoTriangles);
    // b - a = (2, 0, 0) - (1, 1, 1) = (1, -1, -1); c - a = (0, 3, 0) - (1, 1, 1) = (-1, 2, -1).
    // Cross product: (-1 * -1 - -1 * 2, -1 * -1 - 1 * -1, 1 * 2 - -1 * -1) = (3, 2, 1).
    ExpectVector(surface.GetNormal(2), 3.0, 2.0, 1.0);
}

TEST(GeoSurface, NormalTurnsOverWhenTheVertexOrderIsReversed)
{
    const KEZGeoSurface surface(FiveVertices(), {0, 2, 1});
    ExpectVector(surface.GetNormal(1), 0.0, 0.0, -6.0);
}

TEST(GeoSurface, BoundingBoxSpansAllVerticesAlsoThoseOfNoTriangle)
{
    const KEZGeoSurface surface(FiveVertices(), TwoTriangles);
    const KEZMathBoundingBox box = surface.GetBoundingBox();
    ExpectPoint(box.GetLowerPoint(), -5.0, 0.0, -2.0);
    ExpectPoint(box.GetUpperPoint(), 2.0, 7.0, 1.0);
}

TEST(GeoSurface, SurfaceWithoutVerticesHasNoTrianglesAndTheDefaultBox)
{
    const KEZGeoSurface surface(KEZMathSetOfPoints(), {});
    EXPECT_EQ(surface.GetNumVertices(), 0);
    EXPECT_EQ(surface.GetNumTriangles(), 0);
    EXPECT_TRUE(surface.GetBoundingBox() == KEZMathBoundingBox());
}

TEST(GeoSurface, SurfaceWithVerticesButNoTrianglesKeepsItsVertices)
{
    const KEZGeoSurface surface(FiveVertices(), {});
    EXPECT_EQ(surface.GetNumVertices(), 5);
    EXPECT_EQ(surface.GetNumTriangles(), 0);
    ExpectPoint(surface.GetBoundingBox().GetUpperPoint(), 2.0, 7.0, 1.0);
}

TEST(GeoSurface, SurfaceKeepsItsOwnCopiesOfTheLists)
{
    KEZMathSetOfPoints vertices = FiveVertices();
    QList<int> indexes = TwoTriangles;
    const KEZGeoSurface surface(vertices, indexes);
    vertices[1] = KEZMathPoint(100.0, 100.0, 100.0);
    indexes[0] = 4;
    indexes.append({0, 0, 0});
    EXPECT_EQ(surface.GetNumTriangles(), 2);
    ExpectPoint(surface.GetVertex(1), 2.0, 0.0, 0.0);
    int a = -1;
    int b = -1;
    int c = -1;
    surface.GetVertices(1, a, b, c);
    EXPECT_EQ(a, 0);
}

TEST(GeoSurface, IndexCountThatIsNoMultipleOfThreeIsRefused)
{
    for (const QList<int> &indexes : {QList<int>{0}, QList<int>{0, 1}, QList<int>{0, 1, 2, 3},
                                      QList<int>{0, 1, 2, 3, 1}}) {
        SCOPED_TRACE(indexes.size());
        const auto exception = ThrownBy<KEZSysException>([&] { KEZGeoSurface surface(FiveVertices(), indexes); });
        ASSERT_TRUE(exception.has_value());
        EXPECT_FALSE(exception->GetMessage().isEmpty());
    }
}

TEST(GeoSurface, IndexOutsideTheVerticesIsRefused)
{
    for (int bad : {-1, 5, 1000}) {
        SCOPED_TRACE(bad);
        const auto exception = ThrownBy<KEZSysOutOfBoundsException>(
            [&] { KEZGeoSurface surface(FiveVertices(), {0, 1, 2, 3, bad, 2}); });
        ASSERT_TRUE(exception.has_value());
        EXPECT_EQ(exception->GetValue(), QVariant(bad));
        EXPECT_EQ(exception->GetLowerLimit(), QVariant(0));
        EXPECT_EQ(exception->GetUpperLimit(), QVariant(4));
        EXPECT_TRUE(exception->IsLowerLimitIncluded());
        EXPECT_TRUE(exception->IsUpperLimitIncluded());
    }
}

TEST(GeoSurface, AnyIndexIsRefusedWhenThereAreNoVertices)
{
    const auto exception =
        ThrownBy<KEZSysOutOfBoundsException>([] { KEZGeoSurface surface(KEZMathSetOfPoints(), {0, 0, 0}); });
    ASSERT_TRUE(exception.has_value());
    EXPECT_EQ(exception->GetValue(), QVariant(0));
    EXPECT_EQ(exception->GetUpperLimit(), QVariant(-1));
}

TEST(GeoSurface, RefusedSurfaceLeavesNoChildWithTheParent)
{
    QObject parent;
    EXPECT_THROW(new KEZGeoSurface(FiveVertices(), {0, 1}, &parent), KEZSysException);
    EXPECT_THROW(new KEZGeoSurface(FiveVertices(), {0, 1, 9}, &parent), KEZSysOutOfBoundsException);
    EXPECT_TRUE(parent.children().isEmpty());
}

TEST(GeoSurface, VertexIndexOutsideTheSurfaceIsRefused)
{
    const KEZGeoSurface surface(FiveVertices(), TwoTriangles);
    for (int index : {-1, 5}) {
        SCOPED_TRACE(index);
        const auto exception = ThrownBy<KEZSysOutOfBoundsException>([&] { surface.GetVertex(index); });
        ASSERT_TRUE(exception.has_value());
        EXPECT_EQ(exception->GetValue(), QVariant(index));
        EXPECT_EQ(exception->GetLowerLimit(), QVariant(0));
        EXPECT_EQ(exception->GetUpperLimit(), QVariant(4));
    }
}

TEST(GeoSurface, TriangleNumberOutsideOneToCountIsRefusedAndTheOutputsStayUntouched)
{
    const KEZGeoSurface surface(FiveVertices(), TwoTriangles);
    for (int number : {0, 3, -1}) {
        SCOPED_TRACE(number);
        int a = 7;
        int b = 8;
        int c = 9;
        const auto exception = ThrownBy<KEZSysOutOfBoundsException>([&] { surface.GetVertices(number, a, b, c); });
        ASSERT_TRUE(exception.has_value());
        EXPECT_EQ(exception->GetValue(), QVariant(number));
        EXPECT_EQ(exception->GetLowerLimit(), QVariant(1));
        EXPECT_EQ(exception->GetUpperLimit(), QVariant(2));
        EXPECT_EQ(a, 7);
        EXPECT_EQ(b, 8);
        EXPECT_EQ(c, 9);
    }
}

TEST(GeoSurface, NormalOfATriangleNumberOutsideOneToCountIsRefused)
{
    const KEZGeoSurface surface(FiveVertices(), TwoTriangles);
    const auto zero = ThrownBy<KEZSysOutOfBoundsException>([&] { surface.GetNormal(0); });
    ASSERT_TRUE(zero.has_value());
    EXPECT_EQ(zero->GetLowerLimit(), QVariant(1));
    EXPECT_EQ(zero->GetUpperLimit(), QVariant(2));
    EXPECT_THROW(surface.GetNormal(3), KEZSysOutOfBoundsException);
}

namespace {

// A surface that answers one triangle more than it holds, and a box of its
// own: a subclass that works its answers out by itself.
class GrowingSurface : public KEZGeoSurface
{
public:
    using KEZGeoSurface::KEZGeoSurface;
    int GetNumTriangles() const override { return KEZGeoSurface::GetNumTriangles() + 1; }
    KEZMathBoundingBox GetBoundingBox() const override { return KEZMathBoundingBox(KEZMathPoint(9.0, 9.0, 9.0)); }
};

} // namespace

TEST(GeoSurface, QueriesOfASubclassAreReachedThroughTheBase)
{
    const GrowingSurface growing(FiveVertices(), TwoTriangles);
    const KEZGeoSurface &surface = growing;
    EXPECT_EQ(surface.GetNumTriangles(), 3);
    ExpectPoint(surface.GetBoundingBox().GetLowerPoint(), 9.0, 9.0, 9.0);
}

TEST(GeoSurface, TrianglesAndNormalsOfTheBaseStayWithinItsOwnTriangles)
{
    // The subclass claims a third triangle; the base's own readers still
    // refuse it, since the base holds only two.
    const GrowingSurface surface(FiveVertices(), TwoTriangles);
    int a = 0;
    int b = 0;
    int c = 0;
    const std::optional<KEZSysOutOfBoundsException> refused =
        OutOfBoundsThrownBy([&] { surface.GetVertices(3, a, b, c); });
    ASSERT_TRUE(refused.has_value());
    EXPECT_EQ(refused->GetUpperLimit().toInt(), 2);
    EXPECT_TRUE(OutOfBoundsThrownBy([&] { surface.GetNormal(3); }).has_value());
    ExpectVector(surface.GetNormal(1), 0.0, 0.0, 6.0);
}
