// KEZVisRepFactory::CreateFilledPolygonPrimitive and CreateFilledPolygonRep: the documented cases one by
// one, the rep with caps and walls, and valid triangulations of real and generated polygons.
#include "FilledPolygonTestSupport.h"

#include <KEZVisOptions.h>
#include <KEZVisRepFactory.h>
#include <KEZVisRepGraphics.h>
#include <KEZVisSurfacePrimitive.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <set>
#include <utility>

using namespace filled_polygon_test;

namespace {

std::unique_ptr<KEZVisSurfacePrimitive> Fill(const QList<KEZMathSetOfPoints> &rings)
{
    return std::unique_ptr<KEZVisSurfacePrimitive>(KEZVisRepFactory::CreateFilledPolygonPrimitive(rings));
}

std::set<int> Referenced(const Mesh &mesh)
{
    std::set<int> used;
    for (const auto &t : mesh.triangles)
        used.insert(t.begin(), t.end());
    return used;
}

long double Area(const Mesh &mesh)
{
    long double area = 0;
    for (const auto &t : mesh.triangles) {
        const auto &a = mesh.vertices[std::size_t(t[0])];
        const auto &b = mesh.vertices[std::size_t(t[1])];
        const auto &c = mesh.vertices[std::size_t(t[2])];
        area += (((long double)b[0] - a[0]) * ((long double)c[1] - a[1]) - ((long double)b[1] - a[1]) * ((long double)c[0] - a[0])) / 2;
    }
    return area;
}

const KEZMathSetOfPoints kSquare10 = MakeRing({{0, 0}, {10, 0}, {10, 10}, {0, 10}});

// Runs the factory, checks the index against the model and, where the model's rings are clean, the
// triangulation; gives the mesh.
Mesh FillAndCheck(const QList<KEZMathSetOfPoints> &rings, bool expectValid = true)
{
    const Model model = ModelOf(rings);
    const auto surface = Fill(rings);
    EXPECT_EQ(surface == nullptr, model.null);
    if (!surface)
        return Mesh{};
    const Mesh mesh = MeshOf(*surface);
    EXPECT_TRUE(IsConsistentIndex(mesh, model));
    if (expectValid) {
        EXPECT_TRUE(IsValidTriangulation(mesh, model.outline, model.TriangulatedHoles()));
    }
    return mesh;
}

} // namespace

// ---------------------------------------------------------------------------
// Null and less geometry

TEST(FilledPolygon, NoRingsGiveNull)
{
    EXPECT_EQ(Fill({}), nullptr);
    EXPECT_EQ(KEZVisRepFactory::CreateFilledPolygonRep({}, KEZVisOptions(), 1.0, true), nullptr);
}

TEST(FilledPolygon, FewerThanThreePointsInAllRingsGiveNull)
{
    EXPECT_EQ(Fill({MakeRing({{0, 0}}), MakeRing({{1, 0}})}), nullptr);
    EXPECT_EQ(Fill({MakeRing({{0, 0}, {1, 0}})}), nullptr);
    EXPECT_EQ(Fill({KEZMathSetOfPoints(), KEZMathSetOfPoints()}), nullptr);
}

TEST(FilledPolygon, ThreePointsSpreadOverRingsPassTheCountButAnOutlineOfTwoGivesNull)
{
    // Three points in all, but the outline keeps only two.
    EXPECT_EQ(Fill({MakeRing({{0, 0}, {1, 0}}), MakeRing({{0, 1}})}), nullptr);
}

TEST(FilledPolygon, ZSpreadAboveAThousandthGivesNull)
{
    KEZMathSetOfPoints ring = MakeRing({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    ring[2].SetZ(0.0011);
    EXPECT_EQ(Fill({ring}), nullptr);
    EXPECT_EQ(KEZVisRepFactory::CreateFilledPolygonRep({ring}, KEZVisOptions(), 1.0, true), nullptr);
}

TEST(FilledPolygon, ZSpreadIsMeasuredFromTheVeryFirstPointAcrossAllRings)
{
    // The first point is at 0.0008; a hole point at -0.0008 lies 0.0016 away from it.
    KEZMathSetOfPoints outline = kSquare10;
    outline[0].SetZ(0.0008);
    EXPECT_NE(Fill({outline}), nullptr);
    EXPECT_EQ(Fill({outline, MakeRing({{4, 4}, {6, 4}, {5, 6}}, -0.0008)}), nullptr);
    // An empty first ring: the very first point is the first of the next ring.
    EXPECT_EQ(Fill({KEZMathSetOfPoints(), MakeRing({{0, 0}, {1, 0}, {1, 1}}, 0.0), MakeRing({{0, 0}}, 0.002)}), nullptr);
}

TEST(FilledPolygon, ZSpreadOfExactlyAThousandthIsAccepted)
{
    KEZMathSetOfPoints ring = MakeRing({{0, 0}, {1, 0}, {1, 1}, {0, 1}}, 1.0);
    ring[3].SetZ(1.0 + 0.0009765625); // 2^-10, exactly representable and below 0.001
    EXPECT_NE(Fill({ring}), nullptr);
    KEZMathSetOfPoints atZero = MakeRing({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    atZero[3].SetZ(0.001);
    EXPECT_NE(Fill({atZero}), nullptr);
}

TEST(FilledPolygon, OutlineWithFewerThanThreeDistinctPointsAfterCleaningGivesNull)
{
    EXPECT_EQ(Fill({MakeRing({{0, 0}, {1, 0}, {0, 0}, {1, 0}})}), nullptr);
    EXPECT_EQ(Fill({MakeRing({{0, 0}, {0, 0}, {0, 0}, {0, 0}})}), nullptr);
    // Collinear: the middle point goes.
    EXPECT_EQ(Fill({MakeRing({{0, 0}, {1, 0}, {2, 0}})}), nullptr);
    // The walk stops at the third point, which repeats the first within 0.001.
    EXPECT_EQ(Fill({MakeRing({{0, 0}, {5, 0}, {0.0009, -0.0009}, {5, 5}})}), nullptr);
}

TEST(FilledPolygon, RepOfANullPrimitiveIsNullAlsoWithoutSolid)
{
    EXPECT_EQ(KEZVisRepFactory::CreateFilledPolygonRep({MakeRing({{0, 0}, {1, 0}})}, KEZVisOptions(), 0.0, false),
              nullptr);
}

// ---------------------------------------------------------------------------
// Cleaning and the repeat walk

TEST(FilledPolygon, SquareWithRepeatedFirstPointGivesTheSameSurfaceAsWithout)
{
    const auto plain = Fill({MakeRing({{0, 0}, {1, 0}, {1, 1}, {0, 1}})});
    const auto closed = Fill({MakeRing({{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}})});
    ASSERT_NE(plain, nullptr);
    ASSERT_NE(closed, nullptr);
    EXPECT_EQ(closed->GetVertexCoordinatesAsDouble(), plain->GetVertexCoordinatesAsDouble());
    EXPECT_EQ(closed->GetTriangleVertexIndexes(), plain->GetTriangleVertexIndexes());
    EXPECT_EQ(plain->GetNumVertexes(), 4);
    EXPECT_EQ(plain->GetNumTriangles(), 2);
}

TEST(FilledPolygon, RingIsCutAtThePointThatRevisitsAnEarlierOne)
{
    // After the square the ring comes back within 0.001 of its start and goes on; the rest is ignored.
    const QList<KEZMathSetOfPoints> rings{
        MakeRing({{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0.0009, 0.0009}, {-3, 2}, {-5, -5}})};
    const Mesh mesh = FillAndCheck(rings);
    ASSERT_EQ(mesh.vertices.size(), 4u);
    EXPECT_EQ(mesh.triangles.size(), 2u);
    EXPECT_DOUBLE_EQ(double(Area(mesh)), 16.0);
}

TEST(FilledPolygon, PointJustOutsideTheRepeatDistanceIsKept)
{
    // 0.001 in x is not below 0.001, so the point is kept.
    const Mesh mesh = FillAndCheck({MakeRing({{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0.001, 0.0}})}, false);
    EXPECT_EQ(mesh.vertices.size(), 5u);
}

TEST(FilledPolygon, CollinearMiddlePointIsDropped)
{
    const Mesh mesh = FillAndCheck({MakeRing({{0, 0}, {1, 0}, {2, 0}, {2, 2}, {0, 2}})});
    ASSERT_EQ(mesh.vertices.size(), 4u);
    EXPECT_EQ(mesh.vertices[1][0], 2.0);
    EXPECT_EQ(mesh.vertices[1][1], 0.0);
    EXPECT_EQ(mesh.triangles.size(), 2u);
}

TEST(FilledPolygon, CollinearPointAtTheSeamSurvives)
{
    // (0, 0), (1, 0) and (2, 0) are on one line, but across the seam of the ring.
    const Mesh mesh = FillAndCheck({MakeRing({{1, 0}, {2, 0}, {2, 2}, {0, 2}, {0, 0}})});
    ASSERT_EQ(mesh.vertices.size(), 5u);
    EXPECT_EQ(mesh.vertices[0][0], 1.0);
    EXPECT_EQ(mesh.triangles.size(), 3u);
    EXPECT_DOUBLE_EQ(double(Area(mesh)), 4.0);
}

TEST(FilledPolygon, PointThatGoesBackOnTheLastSegmentIsDropped)
{
    // (1, 0) lies back between (0, 0) and (2, 0): it goes, and (2, 0) stays.
    const Mesh mesh = FillAndCheck({MakeRing({{0, 0}, {2, 0}, {1, 0}, {2, 2}, {0, 2}})});
    ASSERT_EQ(mesh.vertices.size(), 4u);
    EXPECT_EQ(mesh.vertices[1][0], 2.0);
}

TEST(FilledPolygon, SpikeThatReturnsToItsStartIsRemoved)
{
    const Mesh mesh = FillAndCheck({MakeRing({{0, 0}, {2, 0}, {3, 5}, {2, 0}, {2, 2}, {0, 2}})});
    ASSERT_EQ(mesh.vertices.size(), 4u);
    EXPECT_EQ(mesh.vertices[2][0], 2.0);
    EXPECT_EQ(mesh.vertices[2][1], 2.0);
    EXPECT_DOUBLE_EQ(double(Area(mesh)), 4.0);
}

TEST(FilledPolygon, RepeatedPointsInARowAreDropped)
{
    const Mesh mesh = FillAndCheck({MakeRing({{0, 0}, {0, 0}, {2, 0}, {2, 0}, {2, 0}, {2, 2}, {0, 2}, {0, 2}})});
    EXPECT_EQ(mesh.vertices.size(), 4u);
}

TEST(FilledPolygon, OrientationOfTheRingsDoesNotMatter)
{
    const Ring2D outline{{0, 0}, {0, 10}, {10, 10}, {10, 0}}; // clockwise
    const Ring2D hole{{3, 3}, {6, 3}, {6, 6}, {3, 6}};       // counter-clockwise
    const Mesh mesh = FillAndCheck(ToRings({outline, hole}));
    EXPECT_DOUBLE_EQ(double(Area(mesh)), 91.0);
}

// ---------------------------------------------------------------------------
// Holes

TEST(FilledPolygon, HoleInsideIsCutOut)
{
    const Mesh mesh = FillAndCheck({kSquare10, MakeRing({{4, 4}, {6, 4}, {6, 6}, {4, 6}})});
    EXPECT_EQ(mesh.vertices.size(), 8u);
    EXPECT_DOUBLE_EQ(double(Area(mesh)), 96.0);
}

TEST(FilledPolygon, TwoOverlappingHoleSquaresAreBothLost)
{
    const QList<KEZMathSetOfPoints> rings{kSquare10, MakeRing({{2, 2}, {5, 2}, {5, 5}, {2, 5}}),
                                          MakeRing({{4, 4}, {7, 4}, {7, 7}, {4, 7}})};
    const Mesh mesh = FillAndCheck(rings);
    // Both holes passed the inside test, so their points stay, unreferenced.
    ASSERT_EQ(mesh.vertices.size(), 12u);
    EXPECT_EQ(Referenced(mesh), (std::set<int>{0, 1, 2, 3}));
    EXPECT_DOUBLE_EQ(double(Area(mesh)), 100.0);
}

TEST(FilledPolygon, HoleThatCrossesTwoOthersIsLostWithBoth)
{
    const QList<KEZMathSetOfPoints> rings{kSquare10, MakeRing({{1, 1}, {3, 1}, {3, 3}, {1, 3}}),
                                          MakeRing({{2, 2}, {8, 2}, {8, 2.5}, {2, 2.5}}),
                                          MakeRing({{7, 1}, {9, 1}, {9, 3}, {7, 3}}),
                                          MakeRing({{4, 6}, {6, 6}, {6, 8}, {4, 8}})};
    const Mesh mesh = FillAndCheck(rings);
    ASSERT_EQ(mesh.vertices.size(), 20u);
    EXPECT_DOUBLE_EQ(double(Area(mesh)), 96.0); // only the last hole is cut out
}

TEST(FilledPolygon, HoleWithACornerOnTheOutlineIsLost)
{
    const Mesh mesh = FillAndCheck({kSquare10, MakeRing({{0, 5}, {3, 4}, {3, 6}})});
    EXPECT_EQ(mesh.vertices.size(), 4u);
    EXPECT_DOUBLE_EQ(double(Area(mesh)), 100.0);
}

TEST(FilledPolygon, HoleSharingAnOutlineVertexIsLost)
{
    const Mesh mesh = FillAndCheck({kSquare10, MakeRing({{0, 0}, {3, 1}, {1, 3}})});
    EXPECT_EQ(mesh.vertices.size(), 4u);
}

TEST(FilledPolygon, HoleWithAnEdgeAlongTheOutlineIsLost)
{
    const Mesh mesh = FillAndCheck({kSquare10, MakeRing({{2, 0}, {5, 0}, {4, 3}})});
    EXPECT_EQ(mesh.vertices.size(), 4u);
}

TEST(FilledPolygon, HoleOutsideTheOutlineIsIgnored)
{
    const Mesh mesh = FillAndCheck({kSquare10, MakeRing({{12, 2}, {15, 2}, {14, 5}})});
    EXPECT_EQ(mesh.vertices.size(), 4u);
}

TEST(FilledPolygon, HoleCrossingTheOutlineIsIgnored)
{
    const Mesh mesh = FillAndCheck({kSquare10, MakeRing({{8, 4}, {12, 4}, {12, 6}, {8, 6}})});
    EXPECT_EQ(mesh.vertices.size(), 4u);
}

TEST(FilledPolygon, HoleAroundTheOutlineIsIgnored)
{
    const Mesh mesh = FillAndCheck({kSquare10, MakeRing({{-1, -1}, {11, -1}, {11, 11}, {-1, 11}})});
    EXPECT_EQ(mesh.vertices.size(), 4u);
}

TEST(FilledPolygon, HoleInTheNotchOfAConcaveOutlineIsIgnored)
{
    // A U shape; the hole sits in the notch, outside the outline.
    const QList<KEZMathSetOfPoints> rings{MakeRing({{0, 0}, {9, 0}, {9, 9}, {6, 9}, {6, 3}, {3, 3}, {3, 9}, {0, 9}}),
                                          MakeRing({{4, 5}, {5, 5}, {5, 6}, {4, 6}})};
    const Mesh mesh = FillAndCheck(rings);
    EXPECT_EQ(mesh.vertices.size(), 8u);
    EXPECT_DOUBLE_EQ(double(Area(mesh)), 63.0);
}

TEST(FilledPolygon, HoleWithFewerThanThreePointsIsIgnored)
{
    const Mesh mesh = FillAndCheck({kSquare10, MakeRing({{4, 4}, {6, 6}}), MakeRing({{5, 5}})});
    EXPECT_EQ(mesh.vertices.size(), 4u);
    EXPECT_EQ(mesh.triangles.size(), 2u);
}

TEST(FilledPolygon, HoleThatCleansDownToOnePointStaysAsAVertex)
{
    // Three points that are one: the hole keeps a single point, which lies inside.
    const Mesh mesh = FillAndCheck({kSquare10, MakeRing({{5, 5}, {5, 5}, {5, 5}})});
    ASSERT_EQ(mesh.vertices.size(), 5u);
    EXPECT_EQ(Referenced(mesh).count(4), 1u);
    EXPECT_DOUBLE_EQ(double(Area(mesh)), 100.0);
}

TEST(FilledPolygon, TwoHolesMeetingInASingleCornerAreBothKept)
{
    const QList<KEZMathSetOfPoints> rings{kSquare10, MakeRing({{2, 2}, {4, 2}, {4, 4}, {2, 4}}),
                                          MakeRing({{4, 4}, {6, 4}, {6, 6}, {4, 6}})};
    const Model model = ModelOf(rings);
    ASSERT_EQ(model.insideHoles.size(), 2u);
    EXPECT_FALSE(model.crossing[0]);
    EXPECT_FALSE(model.crossing[1]);
    const Mesh mesh = FillAndCheck(rings, false);
    EXPECT_EQ(mesh.vertices.size(), 12u);
    EXPECT_DOUBLE_EQ(double(Area(mesh)), 92.0);
}

TEST(FilledPolygon, TwoHolesSharingAnEdgeAreBothKept)
{
    const QList<KEZMathSetOfPoints> rings{kSquare10, MakeRing({{2, 2}, {4, 2}, {4, 4}, {2, 4}}),
                                          MakeRing({{4, 2}, {6, 2}, {6, 4}, {4, 4}})};
    const Model model = ModelOf(rings);
    ASSERT_EQ(model.insideHoles.size(), 2u);
    EXPECT_FALSE(model.crossing[0]);
    EXPECT_FALSE(model.crossing[1]);
    const Mesh mesh = FillAndCheck(rings, false);
    EXPECT_EQ(mesh.vertices.size(), 12u);
    EXPECT_DOUBLE_EQ(double(Area(mesh)), 92.0);
}

TEST(FilledPolygon, HoleCornerOnAnotherHolesEdgePointingInwardIsACrossing)
{
    // The second hole's corner (4, 3) lies on the first hole's edge x = 4, and its neighbours (5, 2) and
    // (3.5, 3.5) lie on both sides of that edge's line: the rings cross.
    const QList<KEZMathSetOfPoints> rings{kSquare10, MakeRing({{2, 2}, {4, 2}, {4, 4}, {2, 4}}),
                                          MakeRing({{4, 3}, {5, 2}, {6, 4}, {3.5, 3.5}})};
    const Model model = ModelOf(rings);
    ASSERT_EQ(model.insideHoles.size(), 2u);
    EXPECT_TRUE(model.crossing[0]);
    const Mesh mesh = FillAndCheck(rings);
    EXPECT_DOUBLE_EQ(double(Area(mesh)), 100.0);
}

TEST(FilledPolygon, HoleCornerTouchingAnotherHolesEdgeFromOutsideKeepsBoth)
{
    const QList<KEZMathSetOfPoints> rings{kSquare10, MakeRing({{2, 2}, {4, 2}, {4, 4}, {2, 4}}),
                                          MakeRing({{4, 3}, {6, 2}, {6, 4}})};
    const Model model = ModelOf(rings);
    ASSERT_EQ(model.insideHoles.size(), 2u);
    EXPECT_FALSE(model.crossing[0]);
    EXPECT_FALSE(model.crossing[1]);
    const Mesh mesh = FillAndCheck(rings, false);
    EXPECT_EQ(mesh.vertices.size(), 11u);
    EXPECT_DOUBLE_EQ(double(Area(mesh)), 94.0);
}

// ---------------------------------------------------------------------------
// Vertices and keys

TEST(FilledPolygon, SquareAtZFiveGivesTrianglesAtZeroAndFourUnreferencedVerticesFirst)
{
    const auto surface = Fill({MakeRing({{0, 0}, {1, 0}, {1, 1}, {0, 1}}, 5.0)});
    ASSERT_NE(surface, nullptr);
    const Mesh mesh = MeshOf(*surface);
    ASSERT_EQ(mesh.vertices.size(), 8u);
    const double ring[4][3] = {{0, 0, 5}, {1, 0, 5}, {1, 1, 5}, {0, 1, 5}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(mesh.vertices[std::size_t(i)][0], ring[i][0]);
        EXPECT_EQ(mesh.vertices[std::size_t(i)][1], ring[i][1]);
        EXPECT_EQ(mesh.vertices[std::size_t(i)][2], ring[i][2]);
    }
    for (std::size_t i = 4; i < 8; ++i)
        EXPECT_EQ(mesh.vertices[i][2], 0.0);
    ASSERT_EQ(mesh.triangles.size(), 2u);
    for (int corner : Referenced(mesh))
        EXPECT_GE(corner, 4);
    // The bounding box still covers the ring at z = 5.
    EXPECT_EQ(surface->GetBoundingBox(KEZVisOptions()).GetUpperPoint().GetZ(), 5.0);
    EXPECT_EQ(surface->GetBoundingBox(KEZVisOptions()).GetLowerPoint().GetZ(), 0.0);
}

TEST(FilledPolygon, LargePolygonAtZFiveGetsEveryCornerOnceAsANewVertexAtZero)
{
    // A circle of 1,000 points with a square hole, every point a key of its own: the 1,004 ring points
    // come first at z = 5, and the corners, all at z = 0, add one new vertex for each of them.
    constexpr int kCount = 1000;
    const double pi = std::acos(-1.0);
    Ring2D circle;
    for (int k = 0; k < kCount; ++k)
        circle.push_back(Pt{100.0 * std::cos(2.0 * pi * k / kCount), 100.0 * std::sin(2.0 * pi * k / kCount)});
    const Ring2D hole{{-10, -10}, {10, -10}, {10, 10}, {-10, 10}};
    const auto surface = Fill({MakeRing(circle, 5.0), MakeRing(hole, 5.0)});
    ASSERT_NE(surface, nullptr);
    const Mesh mesh = MeshOf(*surface);

    constexpr std::size_t kRingPoints = kCount + 4;
    ASSERT_EQ(mesh.vertices.size(), 2 * kRingPoints);
    std::set<std::pair<double, double>> ringPoints;
    for (std::size_t i = 0; i < kRingPoints; ++i) {
        EXPECT_EQ(mesh.vertices[i][2], 5.0);
        ringPoints.insert({mesh.vertices[i][0], mesh.vertices[i][1]});
    }
    std::set<std::pair<double, double>> newPoints;
    for (std::size_t i = kRingPoints; i < mesh.vertices.size(); ++i) {
        EXPECT_EQ(mesh.vertices[i][2], 0.0);
        newPoints.insert({mesh.vertices[i][0], mesh.vertices[i][1]});
    }
    EXPECT_EQ(newPoints, ringPoints);
    // A triangulation of 1,004 points with one hole has 1,004 + 2 - 2 triangles, none on a ring vertex.
    EXPECT_EQ(mesh.triangles.size(), kRingPoints);
    for (int corner : Referenced(mesh))
        EXPECT_GE(corner, int(kRingPoints));
}

TEST(FilledPolygon, ZOfMinusATenThousandthGivesAllNewVertices)
{
    ASSERT_EQ(QByteArray::number(-0.0001, 'f', 3), QByteArray("-0.000"));
    const QList<KEZMathSetOfPoints> rings{MakeRing({{0, 0}, {1, 0}, {1, 1}, {0, 1}}, -0.0001)};
    const auto surface = Fill(rings);
    ASSERT_NE(surface, nullptr);
    const Mesh mesh = MeshOf(*surface);
    ASSERT_EQ(mesh.vertices.size(), 8u);
    for (int corner : Referenced(mesh))
        EXPECT_GE(corner, 4);
    EXPECT_TRUE(IsConsistentIndex(mesh, ModelOf(rings)));
}

TEST(FilledPolygon, ZThatReadsZeroAtThreeDecimalsReusesTheRingVertices)
{
    const QList<KEZMathSetOfPoints> rings{MakeRing({{0, 0}, {1, 0}, {1, 1}, {0, 1}}, 0.0004)};
    const auto surface = Fill(rings);
    ASSERT_NE(surface, nullptr);
    const Mesh mesh = MeshOf(*surface);
    EXPECT_EQ(mesh.vertices.size(), 4u);
    EXPECT_EQ(Referenced(mesh), (std::set<int>{0, 1, 2, 3}));
    // The vertices keep their z, so the triangles lie at 0.0004 here.
    EXPECT_EQ(mesh.vertices[0][2], 0.0004);
}

TEST(FilledPolygon, KeysThatDifferOnlyBelowHalfAThousandthMergeVertices)
{
    // The hole's first point lies within 0.001 of the outline's corner (0, 0), so it counts as on the
    // boundary and passes; its edges stay clear of the outline. Both points have the key
    // "0.000,0.000,0.000": the hole's point, entered later, takes the key, and the corner (0, 0) is left
    // unreferenced.
    const QList<KEZMathSetOfPoints> rings{kSquare10, MakeRing({{0.0003, 0.0003}, {1, 0.5}, {0.5, 1}})};
    const Mesh mesh = FillAndCheck(rings, false);
    ASSERT_EQ(mesh.vertices.size(), 7u);
    const std::set<int> used = Referenced(mesh);
    EXPECT_EQ(used.count(0), 0u);
    EXPECT_EQ(used.count(4), 1u);
}

TEST(FilledPolygon, KeysFollowTheTextOfThreeDecimalsAtEveryMagnitude)
{
    // An outline corner at (X, Y) and a hole point at (X + d, Y + d) with d under 0.0007: they share a
    // vertex exactly when the texts of their keys are equal. X and Y are picked close to the halves of a
    // thousandth, where rounding decides, over many magnitudes and both signs.
    std::mt19937 random(20240611u);
    const double bases[] = {0.0, -0.002, 0.5, -3.25, 1234.5, -98765.4321, 999999999.0, -999999999.5,
                            1000000000.5, 4503599627.0, -12345678901.0, 0.0625};
    std::uniform_int_distribution<int> thousandths(-20, 20);
    std::uniform_real_distribution<double> offset(-0.0007, 0.0002);
    std::uniform_real_distribution<double> step(0.00001, 0.00069);
    int merged = 0, apart = 0;
    for (int i = 0; i < 600; ++i) {
        const double base = bases[i % std::size(bases)];
        const double x = base + thousandths(random) * 0.001 + 0.0005 + offset(random);
        const double y = base + thousandths(random) * 0.001 + 0.0005 + offset(random);
        const double d = step(random);
        const QList<KEZMathSetOfPoints> rings{
            MakeRing({{x, y}, {x + 10, y}, {x + 10, y + 10}, {x, y + 10}}),
            MakeRing({{x + d, y + d}, {x + 1, y + 0.5}, {x + 0.5, y + 1}})};
        const Model model = ModelOf(rings);
        ASSERT_FALSE(model.null);
        if (model.insideHoles.size() != 1)
            continue;
        const auto surface = Fill(rings);
        ASSERT_NE(surface, nullptr);
        const Mesh mesh = MeshOf(*surface);
        ASSERT_TRUE(IsConsistentIndex(mesh, model)) << "x " << x << " y " << y << " d " << d;
        const bool sameKey = KeyOf(x, y, 0.0) == KeyOf(x + d, y + d, 0.0);
        EXPECT_EQ(Referenced(mesh).count(0) == 0, sameKey) << "x " << x << " y " << y << " d " << d;
        ++(sameKey ? merged : apart);
    }
    EXPECT_GT(merged, 50);
    EXPECT_GT(apart, 50);
}

TEST(FilledPolygon, NegativeZeroCoordinatesShareTheKeyOfZero)
{
    ASSERT_EQ(QByteArray::number(-0.0, 'f', 3), QByteArray("0.000"));
    const QList<KEZMathSetOfPoints> rings{MakeRing({{-0.0, -0.0}, {1, 0}, {1, 1}, {0, 1}}, -0.0)};
    const auto surface = Fill(rings);
    ASSERT_NE(surface, nullptr);
    const Mesh mesh = MeshOf(*surface);
    EXPECT_EQ(mesh.vertices.size(), 4u);
    EXPECT_TRUE(IsConsistentIndex(mesh, ModelOf(rings)));
}

TEST(FilledPolygon, PolygonBeyondTwoToTheFiftyThreeKeepsItsKeys)
{
    const Ring2D outline = Scaled(Star(40, 7u), 1e15, 1e17, -3e16);
    const Mesh mesh = FillAndCheck(ToRings({outline}));
    EXPECT_EQ(mesh.vertices.size(), 40u);
}

// ---------------------------------------------------------------------------
// Sweep failures

TEST(FilledPolygon, SweepThatFailsBeforeAnyTriangleIsReachableGivesVerticesAndNoTriangles)
{
    // The outline's first edge is its top edge, which the sweep reaches last; the self-crossing hole near
    // the bottom stops the sweep long before.
    const QList<KEZMathSetOfPoints> rings{MakeRing({{10, 10}, {0, 10}, {0, 0}, {10, 0}}),
                                          MakeRing({{2, 1}, {8, 3}, {8, 1}, {2, 3}})};
    const auto surface = Fill(rings);
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(surface->GetNumVertexes(), 8);
    EXPECT_EQ(surface->GetNumTriangles(), 0);
    EXPECT_TRUE(IsConsistentIndex(MeshOf(*surface), ModelOf(rings)));
}

TEST(FilledPolygon, SweepThatFailsHalfwayGivesAPartialSurface)
{
    const QList<KEZMathSetOfPoints> rings{kSquare10, MakeRing({{2, 7}, {8, 9}, {8, 7}, {2, 9}})};
    const auto surface = Fill(rings);
    ASSERT_NE(surface, nullptr);
    const Mesh mesh = MeshOf(*surface);
    EXPECT_EQ(mesh.vertices.size(), 8u);
    EXPECT_GT(mesh.triangles.size(), 0u);
    EXPECT_LT(double(Area(mesh)), 100.0 - 1.0);
    EXPECT_TRUE(IsConsistentIndex(mesh, ModelOf(rings)));
}

TEST(FilledPolygon, OutlineWithANonFiniteCoordinateGivesVerticesAndNoTriangles)
{
    const double inf = std::numeric_limits<double>::infinity();
    for (double bad : {std::nan(""), inf, -inf}) {
        const QList<KEZMathSetOfPoints> rings{MakeRing({{0, 0}, {10, 0}, {bad, 5}, {10, 10}, {0, 10}}),
                                              MakeRing({{4, 4}, {6, 4}, {6, 6}, {4, 6}})};
        const auto surface = Fill(rings);
        ASSERT_NE(surface, nullptr);
        const Mesh mesh = MeshOf(*surface);
        EXPECT_EQ(mesh.triangles.size(), 0u);
        EXPECT_TRUE(IsConsistentIndex(mesh, ModelOf(rings)));
    }
}

TEST(FilledPolygon, HoleWithANonFinitePointIsIgnored)
{
    const double inf = std::numeric_limits<double>::infinity();
    for (double bad : {std::nan(""), inf, -inf}) {
        const Mesh mesh = FillAndCheck({kSquare10, MakeRing({{4, 4}, {6, 4}, {6, bad}, {4, 6}})});
        EXPECT_EQ(mesh.vertices.size(), 4u);
        EXPECT_DOUBLE_EQ(double(Area(mesh)), 100.0);
    }
}

// ---------------------------------------------------------------------------
// The rep and the solid

TEST(FilledPolygonRep, WithoutSolidHoldsTheBaseOnlyWithTheOptions)
{
    KEZVisOptions options;
    options.SetColor(QColor(10, 20, 30));
    std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreateFilledPolygonRep({kSquare10}, options, 7.0, false));
    ASSERT_NE(rep, nullptr);
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> optionsOut;
    rep->GetPrimitives(primitives, optionsOut);
    ASSERT_EQ(primitives.size(), 1);
    ASSERT_EQ(optionsOut.size(), 1);
    EXPECT_EQ(optionsOut[0], options);
    const auto *surface = qobject_cast<const KEZVisSurfacePrimitive *>(primitives[0]);
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(surface->GetNumTriangles(), 2);
    // The extrusion is ignored without solid.
    EXPECT_EQ(surface->GetBoundingBox(KEZVisOptions()).GetUpperPoint().GetZ(), 0.0);
    EXPECT_NE(qobject_cast<const KEZVisRepGraphics *>(rep.get()), nullptr);
}

namespace {

struct Solid
{
    std::unique_ptr<KEZVisRep> rep;
    std::vector<Mesh> meshes;
};

Solid MakeSolid(const QList<KEZMathSetOfPoints> &rings, double extrusion)
{
    Solid solid;
    solid.rep.reset(KEZVisRepFactory::CreateFilledPolygonRep(rings, KEZVisOptions(), extrusion, true));
    if (!solid.rep)
        return solid;
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    solid.rep->GetPrimitives(primitives, options);
    for (const KEZVisPrimitive *primitive : primitives) {
        const auto *surface = qobject_cast<const KEZVisSurfacePrimitive *>(primitive);
        EXPECT_NE(surface, nullptr);
        if (surface)
            solid.meshes.push_back(MeshOf(*surface));
    }
    return solid;
}

} // namespace

TEST(FilledPolygonRep, SolidTopCapIsTheBaseRaisedWithTheSameTriangles)
{
    const Solid solid = MakeSolid({kSquare10, MakeRing({{4, 4}, {6, 4}, {6, 6}, {4, 6}})}, 2.5);
    ASSERT_EQ(solid.meshes.size(), 3u);
    const Mesh &base = solid.meshes[0];
    const Mesh &top = solid.meshes[1];
    ASSERT_EQ(top.vertices.size(), base.vertices.size());
    for (std::size_t i = 0; i < base.vertices.size(); ++i) {
        EXPECT_EQ(top.vertices[i][0], base.vertices[i][0]);
        EXPECT_EQ(top.vertices[i][1], base.vertices[i][1]);
        EXPECT_EQ(top.vertices[i][2], base.vertices[i][2] + 2.5);
    }
    EXPECT_EQ(top.triangles, base.triangles);
}

TEST(FilledPolygonRep, SolidWallsFollowEachRingWithTwoTrianglesASide)
{
    const Solid solid = MakeSolid({MakeRing({{0, 0}, {1, 0}, {1, 1}, {0, 1}})}, 2.0);
    ASSERT_EQ(solid.meshes.size(), 3u);
    const Mesh &wall = solid.meshes[2];
    const std::vector<std::array<double, 3>> vertices{{0, 0, 0}, {0, 0, 2}, {1, 0, 0}, {1, 0, 2},
                                                      {1, 1, 0}, {1, 1, 2}, {0, 1, 0}, {0, 1, 2}};
    const std::vector<std::array<int, 3>> triangles{{0, 1, 2}, {2, 1, 3}, {2, 3, 4}, {4, 3, 5},
                                                    {4, 5, 6}, {6, 5, 7}, {0, 7, 1}, {6, 7, 0}};
    EXPECT_EQ(wall.vertices, vertices);
    EXPECT_EQ(wall.triangles, triangles);
}

TEST(FilledPolygonRep, SolidWithExtrusionZeroStillHasThreePrimitives)
{
    const Solid solid = MakeSolid({kSquare10}, 0.0);
    ASSERT_EQ(solid.meshes.size(), 3u);
    EXPECT_EQ(solid.meshes[1].vertices, solid.meshes[0].vertices);
    EXPECT_EQ(solid.meshes[2].vertices.size(), 8u);
    EXPECT_EQ(solid.meshes[2].triangles.size(), 8u);
}

TEST(FilledPolygonRep, SolidWithARingOfOnePointAddsTwoWallPointsAndNoTriangles)
{
    const Solid solid = MakeSolid({kSquare10, MakeRing({{5, 5}})}, 3.0);
    ASSERT_EQ(solid.meshes.size(), 3u);
    const Mesh &wall = solid.meshes[2];
    ASSERT_EQ(wall.vertices.size(), 10u);
    EXPECT_EQ(wall.triangles.size(), 8u);
    EXPECT_EQ(wall.vertices[8], (std::array<double, 3>{5, 5, 0}));
    EXPECT_EQ(wall.vertices[9], (std::array<double, 3>{5, 5, 3}));
    for (const auto &t : wall.triangles)
        EXPECT_LT(*std::max_element(t.begin(), t.end()), 8);
}

TEST(FilledPolygonRep, SolidWallsOfTwoPointsCloseWithFourTriangles)
{
    const Solid solid = MakeSolid({kSquare10, MakeRing({{2, 2}, {3, 3}})}, 1.0);
    ASSERT_EQ(solid.meshes.size(), 3u);
    const Mesh &wall = solid.meshes[2];
    ASSERT_EQ(wall.vertices.size(), 12u);
    const std::vector<std::array<int, 3>> second{{8, 9, 10}, {10, 9, 11}, {8, 11, 9}, {10, 11, 8}};
    ASSERT_EQ(wall.triangles.size(), 12u);
    const std::vector<std::array<int, 3>> last(wall.triangles.begin() + 8, wall.triangles.end());
    EXPECT_EQ(last, second);
}

TEST(FilledPolygonRep, SolidWallsStandOnEveryRingIncludingRejectedHolesWithoutTheRepeatWalk)
{
    // The outline repeats its first point (the wall keeps it: no walk), one hole lies outside, one has
    // a collinear middle point (cleaned away).
    const QList<KEZMathSetOfPoints> rings{MakeRing({{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}}),
                                          MakeRing({{20, 20}, {22, 20}, {21, 22}}),
                                          MakeRing({{4, 4}, {5, 4}, {6, 4}, {6, 6}, {4, 6}})};
    const Solid solid = MakeSolid(rings, 1.0);
    ASSERT_EQ(solid.meshes.size(), 3u);
    const Mesh &wall = solid.meshes[2];
    EXPECT_EQ(wall.vertices.size(), std::size_t(2 * (5 + 3 + 4)));
    EXPECT_EQ(wall.triangles.size(), std::size_t(2 * (5 + 3 + 4)));
    EXPECT_EQ(wall.vertices[10], (std::array<double, 3>{20, 20, 0}));
}

TEST(FilledPolygonRep, SolidWallsKeepTheRingsZWhileTheCapsLieAtZeroAndTheExtrusion)
{
    const Solid solid = MakeSolid({MakeRing({{0, 0}, {1, 0}, {1, 1}, {0, 1}}, 5.0)}, 2.0);
    ASSERT_EQ(solid.meshes.size(), 3u);
    for (const auto &t : solid.meshes[0].triangles)
        for (int corner : t)
            EXPECT_EQ(solid.meshes[0].vertices[std::size_t(corner)][2], 0.0);
    for (const auto &t : solid.meshes[1].triangles)
        for (int corner : t)
            EXPECT_EQ(solid.meshes[1].vertices[std::size_t(corner)][2], 2.0);
    for (const auto &v : solid.meshes[2].vertices)
        EXPECT_TRUE(v[2] == 5.0 || v[2] == 7.0);
}

// ---------------------------------------------------------------------------
// Valid triangulations of real and generated polygons

namespace {

// True if the ring has no repeated point and no two of its edges meet except neighbours at their
// common end.
bool IsSimpleRing(const Ring2D &ring)
{
    const std::size_t n = ring.size();
    if (n < 3)
        return false;
    struct Segment
    {
        double minX, maxX;
        std::size_t index;
    };
    std::vector<Segment> segments;
    for (std::size_t i = 0; i < n; ++i) {
        const Pt &a = ring[i], &b = ring[(i + 1) % n];
        segments.push_back({std::min(a.x, b.x), std::max(a.x, b.x), i});
    }
    std::sort(segments.begin(), segments.end(), [](const Segment &l, const Segment &r) { return l.minX < r.minX; });
    const auto orient = [](const Pt &a, const Pt &b, const Pt &c) {
        const long double value = ((long double)b.x - a.x) * ((long double)c.y - a.y) - ((long double)b.y - a.y) * ((long double)c.x - a.x);
        return value > 0 ? 1 : value < 0 ? -1 : 0;
    };
    const auto onSegment = [](const Pt &a, const Pt &b, const Pt &c) {
        return std::min(a.x, b.x) <= c.x && c.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= c.y
            && c.y <= std::max(a.y, b.y);
    };
    for (std::size_t s = 0; s < segments.size(); ++s) {
        for (std::size_t t = s + 1; t < segments.size() && segments[t].minX <= segments[s].maxX; ++t) {
            std::size_t i = segments[s].index, j = segments[t].index;
            if (i > j)
                std::swap(i, j);
            const Pt &a = ring[i], &b = ring[(i + 1) % n], &c = ring[j], &d = ring[(j + 1) % n];
            const bool neighbours = j == i + 1 || (i == 0 && j == n - 1);
            const int o1 = orient(a, b, c), o2 = orient(a, b, d), o3 = orient(c, d, a), o4 = orient(c, d, b);
            if (neighbours) {
                // Neighbours may only share their common point: not fold back onto each other.
                const Pt &common = j == i + 1 ? b : a;
                const Pt &far1 = j == i + 1 ? a : b;
                const Pt &far2 = j == i + 1 ? d : c;
                if (orient(far1, common, far2) == 0
                    && ((far2.x - common.x) * (far1.x - common.x) + (far2.y - common.y) * (far1.y - common.y)) > 0)
                    return false;
                continue;
            }
            if (o1 != o2 && o3 != o4)
                return false;
            if ((o1 == 0 && onSegment(a, b, c)) || (o2 == 0 && onSegment(a, b, d)) || (o3 == 0 && onSegment(c, d, a))
                || (o4 == 0 && onSegment(c, d, b)))
                return false;
        }
    }
    return true;
}

} // namespace

class FilledPolygonFile : public ::testing::TestWithParam<std::string>
{
};

TEST_P(FilledPolygonFile, GivesTheDocumentedIndexAndAValidTriangulationWhereTheOutlineIsSimple)
{
    const std::vector<Ring2D> file = ReadPolygonFile(GetParam());
    ASSERT_FALSE(file.empty());
    ASSERT_GE(file[0].size(), 3u);
    const QList<KEZMathSetOfPoints> rings = ToRings(file);
    const Model model = ModelOf(rings);
    const auto surface = Fill(rings);
    ASSERT_EQ(surface == nullptr, model.null);
    if (!surface)
        return;
    const Mesh mesh = MeshOf(*surface);
    EXPECT_TRUE(IsConsistentIndex(mesh, model));
    const std::vector<Ring2D> holes = model.TriangulatedHoles();
    const bool simple = IsSimpleRing(model.outline)
        && std::all_of(holes.begin(), holes.end(), [](const Ring2D &hole) { return IsSimpleRing(hole); });
    if (simple)
        EXPECT_TRUE(IsValidTriangulation(mesh, model.outline, holes));
    else
        std::printf("[ note ] %s: a cleaned ring is not simple; index checked only\n", GetParam().c_str());
}

INSTANTIATE_TEST_SUITE_P(PolygonFiles, FilledPolygonFile, ::testing::ValuesIn(PolygonFileNames()),
                         [](const ::testing::TestParamInfo<std::string> &info) {
                             std::string name = info.param.substr(0, info.param.rfind('.'));
                             for (char &c : name)
                                 if (!std::isalnum(static_cast<unsigned char>(c)))
                                     c = '_';
                             return name;
                         });

TEST(FilledPolygonFiles, AreThere)
{
    EXPECT_GE(PolygonFileNames().size(), 20u);
}

TEST(FilledPolygonGenerated, StarsOfManySizesAreValid)
{
    for (int points : {6, 25, 100, 1001, 5000}) {
        SCOPED_TRACE(points);
        const Ring2D star = Star(points, 100u + std::uint32_t(points), 1000.0);
        FillAndCheck(ToRings({star}));
    }
}

// A long smooth curve, where the triangulator leaves its sweep for incremental insertion, gives a
// whole triangulation too.
TEST(FilledPolygonGenerated, DenselySampledEllipseIsValid)
{
    const double pi = std::acos(-1.0);
    Ring2D ellipse;
    for (int k = 0; k < 20000; ++k)
        ellipse.push_back({1000.0 * std::cos(2 * pi * k / 20000), 500.0 * std::sin(2 * pi * k / 20000)});
    const Mesh mesh = FillAndCheck(ToRings({ellipse}));
    EXPECT_EQ(mesh.vertices.size(), ellipse.size());
    EXPECT_EQ(mesh.triangles.size(), ellipse.size() - 2);
}

TEST(FilledPolygonGenerated, GridsOfHolesAreValid)
{
    for (int rows : {1, 3, 10, 30}) {
        SCOPED_TRACE(rows);
        const std::vector<Ring2D> rings = HoleGrid(rows);
        const Mesh mesh = FillAndCheck(ToRings(rings));
        EXPECT_EQ(mesh.vertices.size(), std::size_t(4 + 4 * rows * rows));
    }
}

TEST(FilledPolygonGenerated, StarWithStarHolesIsValid)
{
    std::vector<Ring2D> rings{Star(400, 5u, 100.0)};
    for (int k = 0; k < 12; ++k) {
        const double angle = k * 2.0 * std::acos(-1.0) / 12;
        rings.push_back(Star(9 + k, 50u + std::uint32_t(k), 5.0, 25.0 * std::cos(angle), 25.0 * std::sin(angle)));
    }
    const Mesh mesh = FillAndCheck(ToRings(rings));
    EXPECT_EQ(ModelOf(ToRings(rings)).TriangulatedHoles().size(), 12u);
    EXPECT_GT(mesh.triangles.size(), 400u);
}

TEST(FilledPolygonGenerated, LargeCoordinatesAreValid)
{
    for (const auto &[scale, offset] : {std::pair<double, double>{1e3, 1e6}, {1e4, 1e9}, {1e6, -3e11}, {1e9, 1e12}}) {
        SCOPED_TRACE(offset);
        std::vector<Ring2D> rings = HoleGrid(4, 1.0);
        for (Ring2D &ring : rings)
            ring = Scaled(ring, scale, offset, -offset / 2);
        FillAndCheck(ToRings(rings));
        FillAndCheck(ToRings({Scaled(Star(300, 9u), scale, offset, offset)}));
    }
}

TEST(FilledPolygonGenerated, SmallCoordinatesAreValidWhilePointsStayApart)
{
    // Points some 0.005 apart: above the repeat distance of 0.001.
    FillAndCheck(ToRings({Star(60, 3u, 0.05)}));
    std::vector<Ring2D> rings = HoleGrid(3, 1.0);
    for (Ring2D &ring : rings)
        ring = Scaled(ring, 0.03, -0.01, 0.02);
    FillAndCheck(ToRings(rings));
}

TEST(FilledPolygonGenerated, TinyPolygonsCollapseUnderTheRepeatDistance)
{
    // A polygon a thousandth across: the walk stops at the second point.
    EXPECT_EQ(Fill(ToRings({Scaled(Star(20, 4u), 0.0004, 0.0, 0.0)})), nullptr);
    // At 1e-6 the whole ring is one point for the walk, even far from the origin.
    EXPECT_EQ(Fill(ToRings({Scaled(Star(20, 4u), 1e-6, 123.0, -7.0)})), nullptr);
}
