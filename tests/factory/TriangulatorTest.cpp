// Tests of the sweep-line constrained Delaunay triangulator (p2t::CDT).
#include "TriangulatorTestSupport.h"

#include "triangulation/CDT.h"
#include "triangulation/Predicates_p.h"
#include "triangulation/TestHooks_p.h"
#include "triangulation/TriangulationLogging_p.h"

#include <QLoggingCategory>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <set>

using namespace triangulator_test;

namespace {

// Collects the debug lines of the triangulator's logging category while alive.
class TriangulationLog
{
public:
    TriangulationLog() { s_lines.clear(); m_previous = qInstallMessageHandler(&TriangulationLog::Handle); }
    ~TriangulationLog() { qInstallMessageHandler(m_previous); }
    const QStringList &Lines() const { return s_lines; }

private:
    static void Handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (type == QtDebugMsg && context.category && QString::fromLatin1(context.category) == "kez.visualization.triangulation")
            s_lines.append(message);
    }
    static QStringList s_lines;
    QtMessageHandler m_previous;
};
QStringList TriangulationLog::s_lines;

// Installs test hooks for the lifetime of the object.
class ScopedHooks
{
public:
    ScopedHooks() { p2t::detail::SetTestHooks(&hooks); }
    ~ScopedHooks() { p2t::detail::SetTestHooks(nullptr); }
    p2t::detail::TestHooks hooks;
};

std::set<Tri> AsSet(const std::vector<Tri> &triangles)
{
    // A triangle as the rotation of its corners that starts with the smallest one.
    std::set<Tri> set;
    for (Tri t : triangles) {
        while (!(t[0] < t[1] && t[0] < t[2]))
            t = {t[1], t[2], t[0]};
        set.insert(t);
    }
    return set;
}

long double TotalArea(const std::vector<Tri> &triangles)
{
    long double area = 0;
    for (const Tri &t : triangles)
        area += ((static_cast<long double>(t[1].x) - t[0].x) * (t[2].y - static_cast<long double>(t[0].y))
                 - (static_cast<long double>(t[1].y) - t[0].y) * (t[2].x - static_cast<long double>(t[0].x)))
                / 2;
    return area;
}

Polygon Square(double size = 1.0)
{
    Polygon polygon;
    polygon.outline = {{0, 0}, {size, 0}, {size, size}, {0, size}};
    return polygon;
}

} // namespace

// ---------------------------------------------------------------------------------------------
// Exact predicates

TEST(TriangulatorPredicates, CornersOfASquareAreCoCircularAtAnyOffsetAndScale)
{
    int checked = 0;
    for (const double offset : {0.0, 0.75, 1024.5, 3e8, -7.25e12}) {
        for (const double size : {1.0, 0.125, 4096.0, std::ldexp(1.0, -30)}) {
            const double x0 = offset, y0 = offset / 2, x1 = offset + size, y1 = offset / 2 + size;
            if (x1 - x0 != size || y1 - y0 != size)
                continue; // the size is below the offset's resolution
            ++checked;
            EXPECT_EQ(p2t::detail::InCircleSign(x0, y0, x1, y0, x1, y1, x0, y1), 0) << offset << " " << size;
            // One ulp further out (up) leaves the circle, one ulp in (down) enters it.
            EXPECT_EQ(p2t::detail::InCircleSign(x0, y0, x1, y0, x1, y1, x0, std::nextafter(y1, 1e300)), -1);
            EXPECT_EQ(p2t::detail::InCircleSign(x0, y0, x1, y0, x1, y1, x0, std::nextafter(y1, -1e300)), 1);
        }
    }
    EXPECT_GE(checked, 15);
}

TEST(TriangulatorPredicates, OrientationIsExactOneUlpOffTheLine)
{
    for (const double offset : {0.0, 1.5, 1e9, -3e15}) {
        const double ax = offset, ay = offset, bx = offset + 3, by = offset + 1, cx = offset + 6, cy = offset + 2;
        EXPECT_EQ(p2t::detail::OrientSign(ax, ay, bx, by, cx, cy), 0) << offset;
        EXPECT_EQ(p2t::detail::OrientSign(ax, ay, bx, by, cx, std::nextafter(cy, 1e300)), 1) << offset;
        EXPECT_EQ(p2t::detail::OrientSign(ax, ay, bx, by, cx, std::nextafter(cy, -1e300)), -1) << offset;
    }
}

TEST(TriangulatorPredicates, ToleranceOrientationTreatsTinyAreasAsCollinear)
{
    EXPECT_EQ(p2t::detail::OrientWithTolerance(0, 0, 1, 0, 0.5, 0.9e-12), 0);
    EXPECT_EQ(p2t::detail::OrientWithTolerance(0, 0, 1, 0, 0.5, 4e-12), 1);
    EXPECT_EQ(p2t::detail::OrientWithTolerance(0, 0, 1, 0, 0.5, -4e-12), -1);
}

// ---------------------------------------------------------------------------------------------
// Plain contract

TEST(Triangulator, ArtificialPointsLieBelowTheCloudByThreeTenthsOfItsExtent)
{
    ScopedHooks scoped;
    Polygon polygon;
    polygon.outline = {{-2.0, 1.0}, {8.0, 1.0}, {8.0, 5.0}, {3.0, 6.0}, {-2.0, 5.0}};
    Triangulate(polygon);
    // Extent 10 in x and 5 in y.
    EXPECT_DOUBLE_EQ(scoped.hooks.tailX, -2.0 - 0.3 * 10.0);
    EXPECT_DOUBLE_EQ(scoped.hooks.tailY, 1.0 - 0.3 * 5.0);
    EXPECT_DOUBLE_EQ(scoped.hooks.headX, 8.0 + 0.3 * 10.0);
    EXPECT_DOUBLE_EQ(scoped.hooks.headY, 1.0 - 0.3 * 5.0);
}

TEST(Triangulator, SquareGivesTwoCounterClockwiseTriangles)
{
    const Polygon square = Square();
    const Result result = Triangulate(square);
    ASSERT_EQ(result.triangles.size(), 2u);
    EXPECT_TRUE(IsValidTriangulation(square, result.triangles));
}

TEST(Triangulator, CornersAreTheCallersOwnPoints)
{
    p2t::Point a(0, 0), b(2, 0), c(1, 2);
    p2t::CDT cdt({&a, &b, &c});
    cdt.Triangulate();
    const std::vector<p2t::Triangle *> triangles = cdt.GetTriangles();
    ASSERT_EQ(triangles.size(), 1u);
    const std::set<p2t::Point *> corners{triangles[0]->GetPoint(0), triangles[0]->GetPoint(1), triangles[0]->GetPoint(2)};
    EXPECT_EQ(corners, (std::set<p2t::Point *>{&a, &b, &c}));
    EXPECT_EQ(triangles[0]->GetPoint(3), nullptr);
    EXPECT_EQ(triangles[0]->GetPoint(-1), nullptr);
}

TEST(Triangulator, ClockwiseOutlineGivesTheSameTrianglesAsCounterClockwise)
{
    const Polygon star = Star(40, 7);
    Polygon reversed = star;
    std::reverse(reversed.outline.begin(), reversed.outline.end());
    const Result forward = Triangulate(star);
    const Result backward = Triangulate(reversed);
    EXPECT_TRUE(IsValidTriangulation(star, forward.triangles));
    EXPECT_EQ(AsSet(forward.triangles), AsSet(backward.triangles));
}

TEST(Triangulator, SquareWithSquareHoleHasEightTriangles)
{
    Polygon polygon = Square(10);
    polygon.holes.push_back({{3, 3}, {7, 3}, {7, 7}, {3, 7}});
    const Result result = Triangulate(polygon);
    // A polygon with v vertices and h holes has v + 2h - 2 triangles.
    EXPECT_EQ(result.triangles.size(), 8u + 2u - 2u);
    EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
}

TEST(Triangulator, HoleOrientationDoesNotMatter)
{
    Polygon polygon = Square(10);
    polygon.holes.push_back({{3, 3}, {7, 3.5}, {6.5, 7}, {3, 6}});
    Polygon reversed = polygon;
    std::reverse(reversed.holes[0].begin(), reversed.holes[0].end());
    EXPECT_EQ(AsSet(Triangulate(polygon).triangles), AsSet(Triangulate(reversed).triangles));
}

TEST(Triangulator, TriangulatingAgainGivesTheSameTriangles)
{
    std::vector<std::unique_ptr<p2t::Point>> points;
    std::vector<p2t::Point *> ring;
    for (const Pt &p : Star(60, 3).outline) {
        points.push_back(std::make_unique<p2t::Point>(p.x, p.y));
        ring.push_back(points.back().get());
    }
    p2t::CDT cdt(ring);
    cdt.Triangulate();
    std::vector<std::array<p2t::Point *, 3>> first;
    for (p2t::Triangle *t : cdt.GetTriangles())
        first.push_back({t->GetPoint(0), t->GetPoint(1), t->GetPoint(2)});
    cdt.Triangulate();
    std::vector<std::array<p2t::Point *, 3>> second;
    for (p2t::Triangle *t : cdt.GetTriangles())
        second.push_back({t->GetPoint(0), t->GetPoint(1), t->GetPoint(2)});
    EXPECT_FALSE(first.empty());
    EXPECT_EQ(first, second);
}

TEST(Triangulator, CoCircularPointsGiveTheSameTrianglesEveryTime)
{
    // A regular grid of square holes is full of co-circular corners: the choice among the Delaunay
    // triangulations must not vary between runs or between CDT objects.
    const Polygon grid = RegularHoleGrid(12);
    const std::set<Tri> first = AsSet(Triangulate(grid).triangles);
    EXPECT_FALSE(first.empty());
    for (int run = 0; run < 3; ++run)
        EXPECT_EQ(AsSet(Triangulate(grid).triangles), first);
}

TEST(Triangulator, RepeatedPointsAreMergedIntoTheFirstOfThem)
{
    p2t::Point a(0, 0), b(4, 0), bAgain(4, 0), c(4, 4), d(0, 4), aAgain(0, 0);
    p2t::CDT cdt({&a, &b, &bAgain, &c, &d, &aAgain});
    cdt.Triangulate();
    const auto triangles = cdt.GetTriangles();
    ASSERT_EQ(triangles.size(), 2u);
    for (p2t::Triangle *t : triangles) {
        for (int k = 0; k < 3; ++k) {
            EXPECT_NE(t->GetPoint(k), &bAgain);
            EXPECT_NE(t->GetPoint(k), &aAgain);
        }
    }
}

TEST(Triangulator, PointOnAnOutlineEdgeSplitsThatEdge)
{
    Polygon polygon;
    polygon.outline = {{0, 0}, {2, 0}, {4, 0}, {4, 4}, {0, 4}};
    const Result result = Triangulate(polygon);
    EXPECT_EQ(result.triangles.size(), 3u);
    EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
}

TEST(Triangulator, CollinearRunsAlongTheOutlineAreKept)
{
    Polygon polygon;
    for (int k = 0; k <= 10; ++k)
        polygon.outline.push_back({double(k), 0});
    for (int k = 1; k <= 10; ++k)
        polygon.outline.push_back({10, double(k)});
    for (int k = 9; k >= 0; --k)
        polygon.outline.push_back({double(k), 10});
    for (int k = 9; k >= 1; --k)
        polygon.outline.push_back({0, double(k)});
    const Result result = Triangulate(polygon);
    EXPECT_EQ(result.triangles.size(), polygon.outline.size() - 2);
    EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
}

TEST(Triangulator, HolesMeetingInOneCornerAreBothCutOut)
{
    Polygon polygon = Square(10);
    polygon.holes.push_back({{2, 2}, {5, 2}, {5, 5}, {2, 5}});
    polygon.holes.push_back({{5, 5}, {8, 5}, {8, 8}, {5, 8}});
    const Result result = Triangulate(polygon);
    EXPECT_TRUE(result.cornersAreInputPoints);
    EXPECT_NEAR(static_cast<double>(TotalArea(result.triangles)), 100.0 - 9.0 - 9.0, 1e-9);
    // The shared corner is one vertex. The angles of the domain add up to 12 pi: 4 outline corners of
    // pi/2, 6 free hole corners of 3 pi/2 and pi at the shared corner; so 12 triangles.
    EXPECT_EQ(result.triangles.size(), 12u);
}

TEST(Triangulator, HoleTouchingTheOutlineFromInsideIsCutOut)
{
    Polygon polygon = Square(10);
    polygon.holes.push_back({{0, 4}, {3, 3}, {3, 6}}); // its first corner lies on the outline's left edge
    const Result result = Triangulate(polygon);
    EXPECT_NEAR(static_cast<double>(TotalArea(result.triangles)), 100.0 - 4.5, 1e-9);
}

TEST(Triangulator, PointInsideAHoleRingOfOnePointBecomesAVertex)
{
    Polygon polygon = Square(10);
    polygon.holes.push_back({{4, 6}});
    const Result result = Triangulate(polygon);
    EXPECT_EQ(result.triangles.size(), 4u);
    EXPECT_NEAR(static_cast<double>(TotalArea(result.triangles)), 100.0, 1e-9);
}

TEST(Triangulator, FewerThanThreeOutlinePointsGiveNoTriangles)
{
    Polygon polygon;
    polygon.outline = {{0, 0}, {1, 1}};
    EXPECT_TRUE(Triangulate(polygon).triangles.empty());
    polygon.outline = {{0, 0}, {1, 1}, {0, 0}, {1, 1}};
    EXPECT_TRUE(Triangulate(polygon).triangles.empty());
    polygon.outline.clear();
    EXPECT_TRUE(Triangulate(polygon).triangles.empty());
}

TEST(Triangulator, CollinearOutlineGivesNoTriangles)
{
    Polygon horizontal;
    horizontal.outline = {{0, 0}, {1, 0}, {2, 0}, {3, 0}};
    EXPECT_TRUE(Triangulate(horizontal).triangles.empty());
    Polygon slanted;
    slanted.outline = {{0, 0}, {1, 1}, {2, 2}, {3, 3}};
    EXPECT_TRUE(Triangulate(slanted).triangles.empty());
}

TEST(Triangulator, NonFiniteCoordinatesGiveNoTriangles)
{
    const double values[] = {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                             -std::numeric_limits<double>::infinity()};
    for (double value : values) {
        Polygon polygon = Square();
        polygon.outline[2].x = value;
        EXPECT_TRUE(Triangulate(polygon).triangles.empty());
        Polygon withHole = Square(10);
        withHole.holes.push_back({{3, 3}, {value, 3}, {5, 5}});
        EXPECT_TRUE(Triangulate(withHole).triangles.empty());
    }
}

TEST(Triangulator, NullPointsInARingAreSkipped)
{
    p2t::Point a(0, 0), b(4, 0), c(4, 4), d(0, 4);
    p2t::CDT cdt({&a, nullptr, &b, &c, nullptr, &d});
    cdt.Triangulate();
    EXPECT_EQ(cdt.GetTriangles().size(), 2u);
}

// ---------------------------------------------------------------------------------------------
// Real and generated polygons

TEST(Triangulator, PolygonFilesThatAreCleanGiveValidTriangulations)
{
    int clean = 0;
    for (const std::string &name : PolygonFileNames()) {
        Polygon polygon;
        polygon.outline = ReadPolygonFile(PolygonFilePath(name));
        ASSERT_GE(polygon.outline.size(), 3u) << name;
        const Result result = Triangulate(polygon);
        EXPECT_TRUE(result.cornersAreInputPoints) << name;
        if (!IsCleanPolygon(polygon))
            continue; // robustness only; see the test below
        ++clean;
        EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles)) << name;
        EXPECT_EQ(result.triangles.size(), polygon.outline.size() - 2) << name;
    }
    // Most files are simple polygons; if this drops, the reader or the check went wrong.
    EXPECT_GE(clean, 15);
}

TEST(Triangulator, PolygonFilesThatAreNotCleanStillGiveCounterClockwiseTrianglesOfTheirPoints)
{
    int dirty = 0;
    for (const std::string &name : PolygonFileNames()) {
        Polygon polygon;
        polygon.outline = ReadPolygonFile(PolygonFilePath(name));
        if (IsCleanPolygon(polygon))
            continue;
        ++dirty;
        const Result result = Triangulate(polygon);
        EXPECT_TRUE(result.cornersAreInputPoints) << name;
        for (const Tri &t : result.triangles)
            EXPECT_GT((t[1].x - t[0].x) * (t[2].y - t[0].y) - (t[1].y - t[0].y) * (t[2].x - t[0].x), 0.0) << name;
    }
    EXPECT_GE(dirty, 1);
}

TEST(Triangulator, StarPolygonsGiveValidTriangulations)
{
    for (int points : {5, 8, 33, 100, 1000, 5000}) {
        for (std::uint32_t seed : {1u, 2u}) {
            const Polygon star = Star(points, seed);
            ASSERT_TRUE(IsCleanPolygon(star));
            const Result result = Triangulate(star);
            EXPECT_EQ(result.triangles.size(), static_cast<std::size_t>(points - 2)) << points;
            EXPECT_TRUE(IsValidTriangulation(star, result.triangles)) << points << " seed " << seed;
        }
    }
}

TEST(Triangulator, RegularGridOfSquareHolesGivesValidTriangulation)
{
    const Polygon grid = RegularHoleGrid(20);
    const Result result = Triangulate(grid);
    EXPECT_EQ(result.triangles.size(), grid.PointCount() + 2 * grid.holes.size() - 2);
    EXPECT_TRUE(IsValidTriangulation(grid, result.triangles));
}

TEST(Triangulator, JitteredGridOfHolesGivesValidTriangulation)
{
    for (std::uint32_t seed : {1u, 2u, 3u}) {
        const Polygon grid = JitteredHoleGrid(25, seed);
        ASSERT_TRUE(IsCleanPolygon(grid));
        const Result result = Triangulate(grid);
        EXPECT_EQ(result.triangles.size(), grid.PointCount() + 2 * grid.holes.size() - 2);
        EXPECT_TRUE(IsValidTriangulation(grid, result.triangles)) << seed;
    }
}

TEST(Triangulator, TinyAndHugeCoordinatesGiveTheSameMeshAsUnitCoordinates)
{
    // Scaling by a power of two changes no rounding, so the mesh must map one to one.
    const Polygon star = Star(500, 11);
    const Result unit = Triangulate(star);
    for (double scale : {std::ldexp(1.0, -60), std::ldexp(1.0, -20), std::ldexp(1.0, 30), std::ldexp(1.0, 900)}) {
        const Polygon scaled = Transformed(star, scale, 0, 0);
        const Result result = Triangulate(scaled);
        std::vector<Tri> back;
        for (const Tri &t : result.triangles)
            back.push_back({Pt{t[0].x / scale, t[0].y / scale}, Pt{t[1].x / scale, t[1].y / scale},
                            Pt{t[2].x / scale, t[2].y / scale}});
        EXPECT_EQ(AsSet(back), AsSet(unit.triangles)) << scale;
    }
}

TEST(Triangulator, TinyHugeAndFarAwayPolygonsGiveValidTriangulations)
{
    const Polygon star = Star(300, 5);
    const Polygon grid = JitteredHoleGrid(6, 9, 1.0);
    for (const auto &[scale, offset] : std::vector<std::pair<double, double>>{
                 {1e-9, 0.0}, {1e-9, 3e-7}, {1e12, 0.0}, {1e12, -5e14}, {1.0, 1e7}, {1e-300, 0.0}, {1e300, 0.0}}) {
        const Polygon s = Transformed(star, scale, offset, offset);
        EXPECT_TRUE(IsValidTriangulation(s, Triangulate(s).triangles)) << scale << " " << offset;
        const Polygon g = Transformed(grid, scale, offset, -offset);
        EXPECT_TRUE(IsValidTriangulation(g, Triangulate(g).triangles)) << scale << " " << offset;
    }
}

TEST(Triangulator, PointsThatMeetWhenScaledGiveNoTriangles)
{
    // 2^1000 high: the scaling takes 1001 binary places off every coordinate, and x coordinates near
    // 2^-60 become subnormal. Upper corners 2^-112 apart in x, far below the smallest subnormal step
    // of 2^-1074 once scaled, meet: the polygon cannot be triangulated. 2^-60 apart, they stay apart.
    const double height = std::ldexp(1.0, 1000);
    const double x = std::ldexp(1.0, -60);
    for (const double apart : {std::ldexp(1.0, -112), x}) {
        Polygon polygon;
        polygon.outline = {{0.0, 0.0}, {2 * x, 0.0}, {x + apart, height}, {x, height}};
        const Result result = Triangulate(polygon);
        if (apart < x) {
            EXPECT_TRUE(result.triangles.empty());
        } else {
            EXPECT_EQ(result.triangles.size(), 2u);
            EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
        }
    }
}

TEST(Triangulator, StarsOfThousandsOfPointsGiveTheSameMeshAtEveryScale)
{
    // Enough points for the sorts of the vertices to take their radix path, over extents from 2^-900
    // to 2^1000 (further down, coordinates near the axes would lose bits to the subnormal range):
    // sorting by buckets of the coordinates must give the order of the coordinates at any scale.
    const Polygon star = Star(3000, 17);
    const Result unit = Triangulate(star);
    ASSERT_EQ(unit.triangles.size(), star.outline.size() - 2);
    for (double scale : {std::ldexp(1.0, -900), std::ldexp(1.0, -40), std::ldexp(1.0, 50), std::ldexp(1.0, 1000)}) {
        const Result result = Triangulate(Transformed(star, scale, 0, 0));
        std::vector<Tri> back;
        for (const Tri &t : result.triangles)
            back.push_back({Pt{t[0].x / scale, t[0].y / scale}, Pt{t[1].x / scale, t[1].y / scale},
                            Pt{t[2].x / scale, t[2].y / scale}});
        EXPECT_EQ(AsSet(back), AsSet(unit.triangles)) << scale;
    }
}

// ---------------------------------------------------------------------------------------------
// Failure handling

TEST(Triangulator, LoggingCategoryIsNamedAndEnabledForDebugByDefault)
{
    EXPECT_STREQ(lcKezTriangulation().categoryName(), "kez.visualization.triangulation");
    EXPECT_TRUE(lcKezTriangulation().isDebugEnabled());
}

TEST(Triangulator, BowTieOutlineStopsTheSweepAndGivesNoTriangles)
{
    // The outline's edges cross; the sweep stops at the crossing, before the outline's first edge
    // exists, so nothing is reachable.
    ScopedHooks scoped;
    Polygon bowTie;
    bowTie.outline = {{0, 0}, {2, 2}, {2, 0}, {0, 2}};
    const Result result = Triangulate(bowTie);
    EXPECT_EQ(scoped.hooks.caughtError, "[Unsupported] Opposing point on constrained edge");
    EXPECT_TRUE(result.triangles.empty());
}

TEST(Triangulator, CrossingHolesStopTheSweepAndGiveThePartialMesh)
{
    ScopedHooks scoped;
    Polygon polygon = Square(10);
    polygon.holes.push_back({{2, 6}, {6, 6}, {6, 8}, {2, 8}});
    polygon.holes.push_back({{4, 7}, {8, 7}, {8, 9}, {4, 9}});
    const Result result = Triangulate(polygon);
    EXPECT_EQ(scoped.hooks.caughtError, "[Unsupported] Opposing point on constrained edge");
    EXPECT_LT(scoped.hooks.sweptPoints, 12);
    ASSERT_FALSE(result.triangles.empty());
    EXPECT_TRUE(result.cornersAreInputPoints);
    // Everything handed out is inside the outline and below the holes' crossing, counter-clockwise.
    long double area = 0;
    for (const Tri &t : result.triangles) {
        const double doubled = (t[1].x - t[0].x) * (t[2].y - t[0].y) - (t[1].y - t[0].y) * (t[2].x - t[0].x);
        EXPECT_GT(doubled, 0.0);
        area += doubled / 2;
        for (const Pt &p : t) {
            EXPECT_LE(p.y, 8.0);
        }
    }
    EXPECT_LT(static_cast<double>(area), 100.0);
    EXPECT_GT(static_cast<double>(area), 0.0);
}

// The other sweep errors cannot be reached by a consistent mesh: a point on a constrained edge splits
// the edge (so collinear points are supported), the front is filled below every constrained edge
// before it is inserted (so no triangle is missing), and neighbours always point back (so no opposite
// point is missing). Their handling is the same catch around the sweep; it is driven here directly.
class TriangulatorSweepError : public ::testing::TestWithParam<const char *>
{
};

TEST_P(TriangulatorSweepError, IsCaughtAndLeavesThePartialMeshOfThePointsSweptSoFar)
{
    const Polygon star = Star(400, 21);
    const std::size_t full = Triangulate(star).triangles.size();
    ScopedHooks scoped;
    scoped.hooks.throwBeforeSweepIndex = 250;
    scoped.hooks.throwMessage = GetParam();
    const Result result = Triangulate(star);
    EXPECT_EQ(scoped.hooks.caughtError, GetParam());
    EXPECT_EQ(scoped.hooks.sweptPoints, 250);
    EXPECT_TRUE(scoped.hooks.closingPassRan);
    EXPECT_TRUE(result.cornersAreInputPoints);
    EXPECT_GT(result.triangles.size(), 0u);
    EXPECT_LT(result.triangles.size(), full);
    // Points above the 250 lowest ones were never reached.
    std::vector<double> ys;
    for (const Pt &p : star.outline)
        ys.push_back(p.y);
    std::sort(ys.begin(), ys.end());
    for (const Tri &t : result.triangles)
        for (const Pt &p : t)
            EXPECT_LE(p.y, ys[249]);
}

INSTANTIATE_TEST_SUITE_P(Messages, TriangulatorSweepError,
                         ::testing::Values("EdgeEvent - collinear points not supported",
                                           "[BUG:FIXME] FLIP failed due to missing triangle",
                                           "[BUG:FIXME] FLIP failed due to missing opposite point",
                                           "[Unsupported] Opposing point on constrained edge"));

TEST(Triangulator, SweepErrorBeforeTheSecondPointGivesNoTriangles)
{
    ScopedHooks scoped;
    scoped.hooks.throwBeforeSweepIndex = 1;
    scoped.hooks.throwMessage = "EdgeEvent - collinear points not supported";
    EXPECT_TRUE(Triangulate(Star(50, 4)).triangles.empty());
    EXPECT_EQ(scoped.hooks.caughtError, "EdgeEvent - collinear points not supported");
}

TEST(Triangulator, EdgeEventThatComesBackToTheSameStateLogsEndlessLoopAndGivesUpTheEdge)
{
    // A real edge event always moves on along its edge; the guard is driven by re-entering unchanged.
    TriangulationLog log;
    ScopedHooks scoped;
    scoped.hooks.stallEdgeEvents = true;
    const Result result = Triangulate(Star(30, 2));
    EXPECT_TRUE(scoped.hooks.caughtError.empty());
    EXPECT_EQ(scoped.hooks.sweptPoints, 30);
    // One line for each of the 30 outline edges, all given up; without constrained edges there is no
    // start triangle on the outline.
    EXPECT_EQ(log.Lines(), QStringList(QVector<QString>(30, QStringLiteral("[BUG:FIXME] Endless loop")).toList()));
    EXPECT_TRUE(result.triangles.empty());
}

TEST(Triangulator, FlipStepWithoutOppositePointLogsAndGivesUpTheEdge)
{
    TriangulationLog log;
    ScopedHooks scoped;
    scoped.hooks.loseOppositePoints = 1;
    const Polygon star = Star(200, 8);
    const Result result = Triangulate(star);
    EXPECT_EQ(scoped.hooks.loseOppositePoints, 0);
    EXPECT_EQ(log.Lines(), QStringList{"Sweep::FlipEdgeEvent() FLIP failed due to missing triangle opposite point."});
    EXPECT_TRUE(scoped.hooks.caughtError.empty());
    EXPECT_TRUE(result.cornersAreInputPoints);
    // The edge is given up with whatever flips it made unlegalised: the closing pass runs.
    EXPECT_TRUE(scoped.hooks.closingPassRan);
}

TEST(Triangulator, FinalStageSurvivesABrokenFront)
{
    ScopedHooks scoped;
    scoped.hooks.breakFrontBeforeFinalization = true;
    const Polygon star = Star(200, 8);
    const Result result = Triangulate(star);
    EXPECT_TRUE(result.cornersAreInputPoints);
    EXPECT_LT(result.triangles.size(), 198u);
}

TEST(Triangulator, ClosingPassAloneMakesTheResultConstrainedDelaunay)
{
    // Without legalisation during the sweep, the closing pass has all the flipping to do.
    const Polygon star = Star(2000, 17);
    const Polygon grid = JitteredHoleGrid(12, 18);
    const std::set<Tri> starExpected = AsSet(Triangulate(star).triangles);
    const std::set<Tri> gridExpected = AsSet(Triangulate(grid).triangles);
    ScopedHooks scoped;
    scoped.hooks.skipSweepLegalization = true;
    const Result starResult = Triangulate(star);
    EXPECT_TRUE(scoped.hooks.closingPassRan);
    EXPECT_GT(scoped.hooks.closingFlips, 100);
    EXPECT_TRUE(IsValidTriangulation(star, starResult.triangles));
    EXPECT_EQ(AsSet(starResult.triangles), starExpected);
    const Result gridResult = Triangulate(grid);
    EXPECT_GT(scoped.hooks.closingFlips, 100);
    EXPECT_TRUE(IsValidTriangulation(grid, gridResult.triangles));
    EXPECT_EQ(AsSet(gridResult.triangles), gridExpected);
}

TEST(Triangulator, SweepLeavesNothingForTheClosingPass)
{
    ScopedHooks scoped;
    scoped.hooks.forceClosingPass = true;
    for (const Polygon &polygon : {Star(3000, 19), JitteredHoleGrid(15, 20), RegularHoleGrid(15)}) {
        Triangulate(polygon);
        EXPECT_TRUE(scoped.hooks.closingPassRan);
        EXPECT_EQ(scoped.hooks.closingFlips, 0);
    }
}

TEST(Triangulator, ClosingPassIsSkippedAfterASweepThatRanThrough)
{
    ScopedHooks scoped;
    for (const Polygon &polygon : {Star(3000, 19), JitteredHoleGrid(15, 20)}) {
        const Result result = Triangulate(polygon);
        EXPECT_FALSE(result.triangles.empty());
        EXPECT_FALSE(scoped.hooks.closingPassRan);
        EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
    }
}

TEST(Triangulator, NoDebugLinesForCleanInput)
{
    TriangulationLog log;
    Triangulate(JitteredHoleGrid(10, 4));
    Triangulate(Star(1000, 4));
    EXPECT_TRUE(log.Lines().isEmpty());
}

// ---------------------------------------------------------------------------------------------
// Dirty input

namespace {

Ring DirtyRing(std::mt19937 &random, double scale, double offset)
{
    std::uniform_int_distribution<int> size(0, 12);
    std::uniform_int_distribution<int> kind(0, 9);
    std::uniform_real_distribution<double> coordinate(-1.0, 1.0);
    std::uniform_int_distribution<int> grid(-3, 3);
    Ring ring;
    const int n = size(random);
    for (int k = 0; k < n; ++k) {
        Pt p{offset + scale * coordinate(random), offset + scale * coordinate(random)};
        switch (kind(random)) {
        case 0: // repeat the previous point
            if (!ring.empty())
                p = ring.back();
            break;
        case 1: // on a coarse grid: collinear runs and exact touches
            p = {offset + scale * grid(random) / 3.0, offset + scale * grid(random) / 3.0};
            break;
        case 2: // a spike back to an earlier point
            if (!ring.empty())
                p = ring[std::uniform_int_distribution<std::size_t>(0, ring.size() - 1)(random)];
            break;
        case 3: // nearly on the previous point: slivers
            if (!ring.empty())
                p = {ring.back().x + scale * 1e-13 * coordinate(random), ring.back().y + scale * 1e-13 * coordinate(random)};
            break;
        case 4: // continuing the previous direction: a collinear run
            if (ring.size() >= 2)
                p = {2 * ring.back().x - ring[ring.size() - 2].x, 2 * ring.back().y - ring[ring.size() - 2].y};
            break;
        default:
            break;
        }
        ring.push_back(p);
    }
    return ring;
}

// An outline with up to six holes, all dirty, at one of five scales (from 1e-300 to 1e300), some far
// from the origin; every 50th has an infinite or NaN coordinate.
Polygon DirtyPolygon(std::uint32_t seed)
{
    std::mt19937 random(seed);
    const double scales[] = {1.0, 1e-12, 1e12, 1e-300, 1e300};
    const double scale = scales[seed % 5];
    const double offset = (seed % 7 == 0) ? 1e6 * scale : 0.0;
    Polygon polygon;
    polygon.outline = DirtyRing(random, scale, offset);
    const int holes = std::uniform_int_distribution<int>(0, 6)(random);
    for (int h = 0; h < holes; ++h)
        polygon.holes.push_back(DirtyRing(random, scale / 2, offset));
    if (seed % 50 == 0 && !polygon.outline.empty())
        polygon.outline.back().x = (seed % 100 == 0) ? std::numeric_limits<double>::quiet_NaN()
                                                      : std::numeric_limits<double>::infinity();
    return polygon;
}

} // namespace

TEST(Triangulator, DirtyInputAlwaysReturnsWithTrianglesOfTheInputPoints)
{
    for (std::uint32_t seed = 1; seed <= 400; ++seed) {
        const Result result = Triangulate(DirtyPolygon(seed));
        EXPECT_TRUE(result.cornersAreInputPoints) << seed;
    }
}

TEST(Triangulator, DirtyInputThatSweepsThroughLeavesNothingForTheClosingPass)
{
    // The closing pass is skipped after a sweep that ran through; forcing it there must find nothing.
    ScopedHooks scoped;
    int checked = 0;
    for (std::uint32_t seed = 1; seed <= 4000; ++seed) {
        const Polygon polygon = DirtyPolygon(seed);
        scoped.hooks.forceClosingPass = false;
        Triangulate(polygon);
        if (scoped.hooks.closingPassRan)
            continue; // the sweep left legalisation undone
        scoped.hooks.forceClosingPass = true;
        Triangulate(polygon);
        if (!scoped.hooks.closingPassRan)
            continue; // nothing inside the outline to pass over
        ++checked;
        EXPECT_EQ(scoped.hooks.closingFlips, 0) << seed;
    }
    EXPECT_GT(checked, 100);
}

// ---------------------------------------------------------------------------------------------
// Incremental insertion

namespace {

using Insertion = p2t::detail::TestHooks::Insertion;

// An ellipse of `points` points, `width` times as wide as it is high, each point moved off the curve
// by a random fraction of up to 1e-4 of its radius, so that no four points are co-circular.
Polygon JitteredEllipse(int points, double width, std::uint32_t seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> jitter(-1e-4, 1e-4);
    const double pi = std::acos(-1.0);
    Polygon polygon;
    for (int k = 0; k < points; ++k) {
        const double angle = 2 * pi * k / points;
        const double r = 1.0 + jitter(random);
        polygon.outline.push_back({width * r * std::cos(angle), r * std::sin(angle)});
    }
    return polygon;
}

// A quadrilateral whose edges are each divided into `perEdge` equal parts: four long collinear runs.
Polygon SubdividedQuadrilateral(int perEdge)
{
    const Pt corners[] = {{0, 0}, {1, 0.1}, {1.1, 1.2}, {0.1, 1}};
    Polygon polygon;
    for (int k = 0; k < 4; ++k) {
        const Pt a = corners[k], b = corners[(k + 1) % 4];
        for (int s = 0; s < perEdge; ++s) {
            const double f = static_cast<double>(s) / perEdge;
            polygon.outline.push_back({a.x + f * (b.x - a.x), a.y + f * (b.y - a.y)});
        }
    }
    return polygon;
}

// A regular polygon: all its points lie on one circle, as exactly as cos and sin give them.
Polygon RegularPolygon(int points)
{
    const double pi = std::acos(-1.0);
    Polygon polygon;
    for (int k = 0; k < points; ++k)
        polygon.outline.push_back({std::cos(2 * pi * k / points), std::sin(2 * pi * k / points)});
    return polygon;
}

} // namespace

TEST(TriangulatorIncremental, LongSmoothAndStraightOutlinesGiveWayToIncrementalInsertion)
{
    ScopedHooks scoped;
    for (const Polygon &polygon : {JitteredEllipse(20000, 2.0, 31), JitteredEllipse(20000, 0.5, 32),
                                   Rosette(20000, 1.0, 0.3), SubdividedQuadrilateral(5000)}) {
        const Result result = Triangulate(polygon);
        EXPECT_TRUE(scoped.hooks.insertedIncrementally) << polygon.PointCount();
        EXPECT_TRUE(scoped.hooks.caughtError.empty());
        EXPECT_EQ(scoped.hooks.sweptPoints, static_cast<int>(polygon.PointCount()));
        // Either the rings sent the input to incremental insertion at once, or the sweep gave way
        // after at most 32 units of work a point and a fixed allowance; incremental insertion needs
        // a few flips a point: the whole run stays linear.
        EXPECT_LT(scoped.hooks.work, 48u * polygon.PointCount());
        EXPECT_FALSE(scoped.hooks.closingPassRan);
        EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
    }
}

TEST(TriangulatorIncremental, OutlinesOfManyFeaturesAndGridsOfHolesStayWithTheSweep)
{
    ScopedHooks scoped;
    for (const Polygon &polygon : {Star(20000, 33), JitteredHoleGrid(40, 34), RegularHoleGrid(40), Rosette(20000, 64.0, 0.2)}) {
        Triangulate(polygon);
        EXPECT_FALSE(scoped.hooks.insertedIncrementally) << polygon.PointCount();
        EXPECT_EQ(scoped.hooks.sweepsStarted, 1);
        EXPECT_LT(scoped.hooks.work, 32u * polygon.PointCount());
    }
}

TEST(TriangulatorIncremental, MostlyConvexOrStraightRingsAreInsertedIncrementallyWithoutSweeping)
{
    ScopedHooks scoped;
    for (const Polygon &polygon : {Rosette(2000, 1.0, 0.3), RegularPolygon(2000), SubdividedQuadrilateral(500)}) {
        const Result result = Triangulate(polygon);
        EXPECT_TRUE(scoped.hooks.insertedIncrementally) << polygon.PointCount();
        EXPECT_EQ(scoped.hooks.sweepsStarted, 0) << polygon.PointCount();
        EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
    }
}

namespace {

// A regular polygon of 100 points on the unit circle with the points at the given positions pulled
// in to radius 0.9: each pulled point is a concave corner of the outline, every other point a convex
// one.
Polygon RegularPolygonWithDents(const std::vector<int> &dents)
{
    Polygon polygon = RegularPolygon(100);
    for (int k : dents) {
        polygon.outline[static_cast<std::size_t>(k)].x *= 0.9;
        polygon.outline[static_cast<std::size_t>(k)].y *= 0.9;
    }
    return polygon;
}

std::vector<int> EveryFifthUpTo(int last)
{
    std::vector<int> positions;
    for (int k = 0; k <= last; k += 5)
        positions.push_back(k);
    return positions;
}

} // namespace

TEST(TriangulatorIncremental, AFifthOfConcaveCornersSendsAnOutlineToTheSweep)
{
    ScopedHooks scoped;
    const Polygon nineteen = RegularPolygonWithDents(EveryFifthUpTo(90));
    ASSERT_EQ(nineteen.outline.size(), 100u);
    Triangulate(nineteen);
    EXPECT_EQ(scoped.hooks.sweepsStarted, 0);
    EXPECT_TRUE(scoped.hooks.insertedIncrementally);

    const Polygon twenty = RegularPolygonWithDents(EveryFifthUpTo(95));
    Triangulate(twenty);
    EXPECT_EQ(scoped.hooks.sweepsStarted, 1);
    EXPECT_FALSE(scoped.hooks.insertedIncrementally);
}

TEST(TriangulatorIncremental, TheConvexCornersOfHolesCountAsTurningAwayFromTheInside)
{
    // A square with one hole, a regular 100-gon: 100 of 104 ring vertices turn away from the inside,
    // whichever way the hole runs.
    ScopedHooks scoped;
    for (bool reversed : {false, true}) {
        Polygon polygon = Square(10);
        std::vector<Pt> hole;
        for (const Pt &p : RegularPolygon(100).outline)
            hole.push_back({5 + 2 * p.x, 5 + 2 * p.y});
        if (reversed)
            std::reverse(hole.begin(), hole.end());
        polygon.holes.push_back(hole);
        const Result result = Triangulate(polygon);
        EXPECT_EQ(scoped.hooks.sweepsStarted, 1) << reversed;
        EXPECT_FALSE(scoped.hooks.insertedIncrementally) << reversed;
        EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
    }
}

TEST(TriangulatorIncremental, LongSmoothLobesSendAnOutlineToIncrementalInsertion)
{
    // Eight lobes of 2,500 points: about two fifths of the vertices are concave, but they lie in runs
    // of hundreds that turn one way. The 64 lobes of the same size stay with the sweep (see above).
    ScopedHooks scoped;
    const Polygon lobes = Rosette(20000, 8.0, 0.2);
    const Result result = Triangulate(lobes);
    EXPECT_TRUE(scoped.hooks.insertedIncrementally);
    EXPECT_EQ(scoped.hooks.sweepsStarted, 0);
    EXPECT_TRUE(IsValidTriangulation(lobes, result.triangles));
}

TEST(TriangulatorIncremental, RunsOf192VerticesTurningOneWaySendAnOutlineToIncrementalInsertion)
{
    // A square wave of 16 teeth: each tooth's top and each gap's bottom is an arc sampled at m
    // points, bulging outwards on the teeth and inwards in the gaps, so that the runs alternate
    // between m vertices turning left and m turning right, with half the vertices concave. The mean
    // run is about m: 256 goes to incremental insertion, 128 to the sweep.
    auto wave = [](int m) {
        Polygon polygon;
        const double pi = std::acos(-1.0);
        for (int tooth = 0; tooth < 16; ++tooth) {
            const double left = 4.0 * tooth;
            for (int k = 0; k < m; ++k) { // tooth top: an arc over [left, left + 2] at height 10
                const double angle = pi - pi * (k + 0.5) / m;
                polygon.outline.push_back({left + 1.0 + std::cos(angle), 10.0 + 0.5 * std::sin(angle)});
            }
            for (int k = 0; k < m; ++k) { // gap bottom: an arc under [left + 2, left + 4] at height 5
                const double angle = pi + pi * (k + 0.5) / m;
                polygon.outline.push_back({left + 3.0 + std::cos(angle), 5.0 + 0.5 * std::sin(angle)});
            }
        }
        polygon.outline.push_back({64.0, 0.0});
        polygon.outline.push_back({-1.0, 0.0});
        return polygon;
    };
    ScopedHooks scoped;
    const Polygon fine = wave(256);
    const Result result = Triangulate(fine);
    EXPECT_EQ(scoped.hooks.sweepsStarted, 0);
    EXPECT_TRUE(scoped.hooks.insertedIncrementally);
    EXPECT_TRUE(IsValidTriangulation(fine, result.triangles));
    Triangulate(wave(128));
    EXPECT_EQ(scoped.hooks.sweepsStarted, 1);
}

namespace {

// Points at random angles on the ellipse x = 2 cos t, y = sin t: a strictly convex outline on which no
// four points are co-circular, so that its Delaunay triangulation is unique.
Polygon RandomPointsOnAnEllipse(int points, std::uint32_t seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> angle(0.0, 2.0 * std::acos(-1.0));
    std::vector<double> angles(static_cast<std::size_t>(points));
    for (double &a : angles)
        a = angle(random);
    std::sort(angles.begin(), angles.end());
    Polygon polygon;
    for (double a : angles)
        polygon.outline.push_back({2.0 * std::cos(a), std::sin(a)});
    return polygon;
}

} // namespace

TEST(TriangulatorConvexOutline, IsBuiltWithoutLocatingPointsAndGivesTheSweepsTriangles)
{
    ScopedHooks scoped;
    for (bool reversed : {false, true}) {
        Polygon polygon = RandomPointsOnAnEllipse(3000, 51);
        if (reversed)
            std::reverse(polygon.outline.begin(), polygon.outline.end());
        const Result result = Triangulate(polygon);
        EXPECT_TRUE(scoped.hooks.insertedAroundConvexOutline) << reversed;
        EXPECT_TRUE(scoped.hooks.insertedIncrementally);
        EXPECT_EQ(scoped.hooks.sweepsStarted, 0);
        EXPECT_EQ(result.triangles.size(), polygon.outline.size() - 2);
        EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
        EXPECT_TRUE(result.cornersAreInputPoints);
        // A few flips a vertex, far below the budget of 16 a vertex.
        EXPECT_LT(scoped.hooks.work, 4u * polygon.outline.size());
        scoped.hooks.insertion = Insertion::SweepOnly;
        const Result swept = Triangulate(polygon);
        scoped.hooks.insertion = Insertion::Automatic;
        EXPECT_EQ(AsSet(result.triangles), AsSet(swept.triangles)) << reversed;
    }
}

TEST(TriangulatorConvexOutline, IsDeterministicAmongCoCircularPoints)
{
    ScopedHooks scoped;
    const Polygon polygon = RegularPolygon(2000);
    const Result first = Triangulate(polygon);
    EXPECT_TRUE(scoped.hooks.insertedAroundConvexOutline);
    const Result second = Triangulate(polygon);
    ASSERT_EQ(first.triangles.size(), 1998u);
    EXPECT_TRUE(first.triangles == second.triangles);
    EXPECT_TRUE(IsValidTriangulation(polygon, first.triangles));
}

TEST(TriangulatorConvexOutline, KeepsTheMeshConsistentAfterEveryStep)
{
    ScopedHooks scoped;
    scoped.hooks.verifyEveryStep = true;
    const Polygon polygon = RandomPointsOnAnEllipse(200, 52);
    const Result result = Triangulate(polygon);
    EXPECT_TRUE(scoped.hooks.insertedAroundConvexOutline);
    EXPECT_EQ(scoped.hooks.inconsistency, "");
    EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
}

TEST(TriangulatorConvexOutline, IsNotUsedForHolesAnOutlineThatWindsTwiceOrOneThatTurnsBack)
{
    Polygon withHole = RandomPointsOnAnEllipse(500, 53);
    withHole.holes.push_back({{-0.1, -0.1}, {0.1, -0.1}, {0.1, 0.1}, {-0.1, 0.1}});
    // A pentagram: every corner turns the same way, but the outline goes round twice.
    Polygon pentagram;
    const double pi = std::acos(-1.0);
    for (int k = 0; k < 5; ++k)
        pentagram.outline.push_back({std::cos(pi / 2 + 4 * pi * k / 5), std::sin(pi / 2 + 4 * pi * k / 5)});
    // A square with a spike: from (1, 1) out to (1, 2) and straight back down the same line; the
    // turn at the spike's tip is straight, but backwards.
    Polygon spike;
    spike.outline = {{0, 0}, {1, 0}, {1, 1}, {1, 2}, {1, 1.5}, {0, 1}};
    ScopedHooks scoped;
    for (const Polygon &polygon : {withHole, pentagram, spike}) {
        Triangulate(polygon);
        EXPECT_FALSE(scoped.hooks.insertedAroundConvexOutline) << polygon.PointCount();
    }
}

namespace {

// The square [0, side] x [0, side] with a point at every integer position along its edges: exactly
// straight runs between four corners, and many co-circular points across it.
Polygon SquareWithIntegerPointsAlongItsEdges(int side)
{
    Polygon polygon;
    for (int k = 0; k < side; ++k)
        polygon.outline.push_back({double(k), 0.0});
    for (int k = 0; k < side; ++k)
        polygon.outline.push_back({double(side), double(k)});
    for (int k = side; k > 0; --k)
        polygon.outline.push_back({double(k), double(side)});
    for (int k = side; k > 0; --k)
        polygon.outline.push_back({0.0, double(k)});
    return polygon;
}

} // namespace

TEST(TriangulatorConvexOutline, TakesExactlyStraightRunsAlongTheOutline)
{
    ScopedHooks scoped;
    for (const Polygon &polygon : {SquareWithIntegerPointsAlongItsEdges(300), SquareWithIntegerPointsAlongItsEdges(3)}) {
        const Result result = Triangulate(polygon);
        EXPECT_TRUE(scoped.hooks.insertedAroundConvexOutline) << polygon.PointCount();
        EXPECT_EQ(result.triangles.size(), polygon.outline.size() - 2);
        EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
        const Result again = Triangulate(polygon);
        EXPECT_TRUE(result.triangles == again.triangles);
    }
}

TEST(Triangulator, ThousandsOfPointsSharingOneCoordinateAreSortedLikeAnyOthers)
{
    // A square with 4,500 points along each edge: each side has more points on one x or one y than
    // the sorts put in one bucket, so they sort those points by their coordinates instead.
    const Polygon polygon = SquareWithIntegerPointsAlongItsEdges(4500);
    const Result result = Triangulate(polygon);
    EXPECT_EQ(result.triangles.size(), polygon.outline.size() - 2);
    EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
}

TEST(Triangulator, ThousandsOfPointsInOneBucketOfTheSortsAreSortedByTheirCoordinates)
{
    // A left side of 5,000 points that zigzags within a millionth in x, and a right side a million
    // away: the buckets of the sorts are some thirty wide, so the left side's points, all of them on
    // different x but for those on the axis, fall into one bucket and are sorted by their coordinates.
    // A hole of one point repeats a point of the zigzag: only a correct order brings the two together,
    // and they become one vertex.
    Polygon polygon;
    for (int k = 0; k < 5000; ++k)
        polygon.outline.push_back({k % 2 == 0 ? 0.0 : 1e-10 * k, double(k)});
    polygon.outline.push_back({1e6, 4999.0});
    polygon.outline.push_back({1e6, 0.0});
    Polygon withRepeat = polygon;
    withRepeat.holes.push_back({polygon.outline[2501]});
    ScopedHooks scoped;
    for (const Insertion insertion : {Insertion::Automatic, Insertion::SweepOnly}) {
        scoped.hooks.insertion = insertion;
        const Result result = Triangulate(polygon);
        EXPECT_EQ(result.triangles.size(), polygon.outline.size() - 2) << int(insertion);
        EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles)) << int(insertion);
        const Result merged = Triangulate(withRepeat);
        EXPECT_EQ(AsSet(merged.triangles), AsSet(result.triangles)) << int(insertion);
    }
}

TEST(TriangulatorConvexOutline, LeavesNearlyStraightRunsToIncrementalInsertion)
{
    // Points interpolated along the edges of a quadrilateral are straight only within rounding:
    // some turn the wrong way by a hair, so the outline is not convex.
    ScopedHooks scoped;
    const Polygon polygon = SubdividedQuadrilateral(300);
    const Result result = Triangulate(polygon);
    EXPECT_FALSE(scoped.hooks.insertedAroundConvexOutline);
    EXPECT_TRUE(scoped.hooks.insertedIncrementally);
    EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
}

TEST(TriangulatorConvexOutline, KeepsTheMeshConsistentAlongStraightRuns)
{
    ScopedHooks scoped;
    scoped.hooks.verifyEveryStep = true;
    const Polygon polygon = SquareWithIntegerPointsAlongItsEdges(20);
    const Result result = Triangulate(polygon);
    EXPECT_TRUE(scoped.hooks.insertedAroundConvexOutline);
    EXPECT_EQ(scoped.hooks.inconsistency, "");
    EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
}

TEST(TriangulatorConvexOutline, GivesWayToIncrementalInsertionBeyondItsBudget)
{
    const Polygon polygon = RandomPointsOnAnEllipse(1000, 55);
    ScopedHooks scoped;
    scoped.hooks.insertion = Insertion::SweepOnly;
    const Result swept = Triangulate(polygon);
    scoped.hooks.insertion = Insertion::Automatic;
    scoped.hooks.convexOutlineWorkBudget = 10;
    const Result result = Triangulate(polygon);
    EXPECT_FALSE(scoped.hooks.insertedAroundConvexOutline);
    EXPECT_TRUE(scoped.hooks.insertedIncrementally);
    EXPECT_EQ(scoped.hooks.sweepsStarted, 0);
    EXPECT_EQ(AsSet(result.triangles), AsSet(swept.triangles));
}

TEST(TriangulatorConvexOutline, ARepeatedPointIsOneVertex)
{
    Polygon polygon = RandomPointsOnAnEllipse(300, 54);
    polygon.outline.insert(polygon.outline.begin() + 10, polygon.outline[10]);
    ScopedHooks scoped;
    const Result result = Triangulate(polygon);
    EXPECT_TRUE(scoped.hooks.insertedAroundConvexOutline);
    EXPECT_EQ(result.triangles.size(), 298u);
    EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
}

TEST(TriangulatorIncremental, AMostlyConvexOutlineWhoseInsertionFailsIsSwept)
{
    // A round outline with two crossing square holes: 8 of 208 ring vertices turn away from the
    // inside, so incremental insertion goes first; the crossing stops it, and the sweep decides as
    // it does on its own.
    Polygon polygon;
    for (const Pt &p : RegularPolygon(200).outline)
        polygon.outline.push_back({10 * p.x, 10 * p.y});
    polygon.holes.push_back({{-2, 0}, {2, 0}, {2, 2}, {-2, 2}});
    polygon.holes.push_back({{0, 1}, {4, 1}, {4, 3}, {0, 3}});
    ScopedHooks scoped;
    scoped.hooks.insertion = Insertion::SweepOnly;
    const Result swept = Triangulate(polygon);
    scoped.hooks.insertion = Insertion::Automatic;
    const Result result = Triangulate(polygon);
    EXPECT_FALSE(scoped.hooks.insertedIncrementally);
    EXPECT_EQ(scoped.hooks.sweepsStarted, 1);
    EXPECT_EQ(scoped.hooks.caughtError, "[Unsupported] Opposing point on constrained edge");
    EXPECT_TRUE(result.triangles == swept.triangles);
}

TEST(TriangulatorIncremental, AReversedOutlineIsJudgedByItsOwnOrientation)
{
    ScopedHooks scoped;
    Polygon clockwise = RegularPolygonWithDents(EveryFifthUpTo(95));
    std::reverse(clockwise.outline.begin(), clockwise.outline.end());
    Triangulate(clockwise);
    EXPECT_EQ(scoped.hooks.sweepsStarted, 1);
    Polygon convex = RegularPolygon(100);
    std::reverse(convex.outline.begin(), convex.outline.end());
    Triangulate(convex);
    EXPECT_EQ(scoped.hooks.sweepsStarted, 0);
}

TEST(TriangulatorIncremental, GivesTheSweepsTrianglesWhereTheTriangulationIsUnique)
{
    ScopedHooks scoped;
    for (const Polygon &polygon : {Star(3000, 35), JitteredHoleGrid(15, 36), JitteredEllipse(3000, 3.0, 37),
                                   Transformed(Star(1000, 38), 1e-250, 3e-247, 0.0)}) {
        scoped.hooks.insertion = Insertion::SweepOnly;
        const Result swept = Triangulate(polygon);
        EXPECT_FALSE(scoped.hooks.insertedIncrementally);
        scoped.hooks.insertion = Insertion::IncrementalFirst;
        const Result inserted = Triangulate(polygon);
        EXPECT_TRUE(scoped.hooks.insertedIncrementally);
        EXPECT_FALSE(swept.triangles.empty());
        EXPECT_EQ(AsSet(inserted.triangles), AsSet(swept.triangles)) << polygon.PointCount();
        EXPECT_TRUE(inserted.cornersAreInputPoints);
    }
}

TEST(TriangulatorIncremental, EnclosesCloudsFarFromTheOriginAndAcrossIt)
{
    // The enclosing triangle's corners sit a few times the cloud's size around its rounded centre;
    // every point must lie inside it, or locating a point fails and the sweep takes over.
    ScopedHooks scoped;
    scoped.hooks.insertion = Insertion::IncrementalFirst;
    const Polygon base = SubdividedQuadrilateral(400);
    for (const auto &[scale, offset] : std::vector<std::pair<double, double>>{
                 {1.0, 0.0}, {1.0, -0.55}, {1e-3, 1e6}, {1e-3, -3e9}, {7.0, 1e12}, {1e-200, 1e-190}}) {
        const Polygon polygon = Transformed(base, scale, offset, -offset / 3);
        const Result result = Triangulate(polygon);
        EXPECT_TRUE(scoped.hooks.insertedIncrementally) << scale << " " << offset;
        EXPECT_EQ(scoped.hooks.caughtError, "") << scale << " " << offset;
        EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles)) << scale << " " << offset;
    }
}

TEST(TriangulatorIncremental, PointsFallingOnEdgesSplitThem)
{
    ScopedHooks scoped;
    scoped.hooks.insertion = Insertion::IncrementalFirst;
    for (const Polygon &polygon : {SubdividedQuadrilateral(200), RegularHoleGrid(12)}) {
        const Result result = Triangulate(polygon);
        EXPECT_TRUE(scoped.hooks.insertedIncrementally);
        EXPECT_GT(scoped.hooks.pointsOnEdges, 10);
        EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
    }
}

TEST(TriangulatorIncremental, PointLocationStartsNextToTheRingNeighbours)
{
    // Along a smooth outline, a point's neighbour on the ring inserted before it touches the triangle
    // that contains it, or nearly: the walks cross about two edges a point. Started from the previous
    // point of the insertion order or from the last point in its cell, they crossed three and a half
    // at 20,000 points, and more the larger the flower.
    ScopedHooks scoped;
    scoped.hooks.insertion = Insertion::IncrementalFirst;
    for (const Polygon &polygon : {Rosette(20000, 64.0, 0.2), SubdividedQuadrilateral(5000)}) {
        const Result result = Triangulate(polygon);
        ASSERT_TRUE(scoped.hooks.insertedIncrementally);
        EXPECT_FALSE(scoped.hooks.insertedAroundConvexOutline);
        EXPECT_GT(scoped.hooks.locateSteps, 0u);
        EXPECT_LT(scoped.hooks.locateSteps, 5u * polygon.PointCount() / 2) << polygon.PointCount();
        EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
    }
    // Neither the sweep nor the insertion around a convex outline locates points.
    scoped.hooks.insertion = Insertion::SweepOnly;
    Triangulate(Rosette(2000, 64.0, 0.2));
    EXPECT_EQ(scoped.hooks.locateSteps, 0u);
    scoped.hooks.insertion = Insertion::Automatic;
    Triangulate(RegularPolygon(2000));
    EXPECT_TRUE(scoped.hooks.insertedAroundConvexOutline);
    EXPECT_EQ(scoped.hooks.locateSteps, 0u);
}

TEST(TriangulatorIncremental, IsDeterministicAmongCoCircularPoints)
{
    ScopedHooks scoped;
    scoped.hooks.insertion = Insertion::IncrementalFirst;
    for (const Polygon &polygon : {RegularPolygon(2000), RegularHoleGrid(10)}) {
        const Result first = Triangulate(polygon);
        const Result second = Triangulate(polygon);
        EXPECT_TRUE(scoped.hooks.insertedIncrementally);
        ASSERT_EQ(first.triangles.size(), second.triangles.size());
        EXPECT_TRUE(first.triangles == second.triangles);
        EXPECT_TRUE(IsValidTriangulation(polygon, first.triangles));
    }
}

TEST(TriangulatorIncremental, FailureLeavesItToTheSweep)
{
    // Crossing constrained edges stop incremental insertion too; the sweep then runs and its partial
    // mesh is the result, exactly as without incremental insertion.
    Polygon crossing = Square(10);
    crossing.holes.push_back({{2, 6}, {6, 6}, {6, 8}, {2, 8}});
    crossing.holes.push_back({{4, 7}, {8, 7}, {8, 9}, {4, 9}});
    Polygon bowTie;
    bowTie.outline = {{0, 0}, {2, 2}, {2, 0}, {0, 2}};
    ScopedHooks scoped;
    for (const Polygon &polygon : {crossing, bowTie}) {
        scoped.hooks.insertion = Insertion::SweepOnly;
        const Result swept = Triangulate(polygon);
        const int sweptPoints = scoped.hooks.sweptPoints;
        scoped.hooks.insertion = Insertion::IncrementalFirst;
        const Result result = Triangulate(polygon);
        EXPECT_FALSE(scoped.hooks.insertedIncrementally);
        EXPECT_EQ(scoped.hooks.caughtError, "[Unsupported] Opposing point on constrained edge");
        EXPECT_EQ(scoped.hooks.sweptPoints, sweptPoints);
        EXPECT_TRUE(result.triangles == swept.triangles);
    }
}

TEST(TriangulatorIncremental, SweepOverBudgetWhoseIncrementalInsertionFailsRunsToItsEnd)
{
    // A long smooth outline makes the sweep give way; two crossing holes near its top make incremental
    // insertion fail. The sweep then runs again without a budget and stops at the crossing, as it does
    // on its own.
    Polygon polygon = JitteredEllipse(6000, 2.0, 42);
    polygon.holes.push_back({{-0.2, 0.6}, {0.2, 0.6}, {0.2, 0.8}, {-0.2, 0.8}});
    polygon.holes.push_back({{0.0, 0.7}, {0.4, 0.7}, {0.4, 0.9}, {0.0, 0.9}});
    ScopedHooks scoped;
    scoped.hooks.insertion = Insertion::SweepOnly;
    const Result swept = Triangulate(polygon);
    const int sweptPoints = scoped.hooks.sweptPoints;
    const unsigned long long sweepWork = scoped.hooks.work;
    ASSERT_EQ(scoped.hooks.caughtError, "[Unsupported] Opposing point on constrained edge");
    scoped.hooks.insertion = Insertion::Automatic;
    const Result result = Triangulate(polygon);
    EXPECT_FALSE(scoped.hooks.insertedIncrementally);
    EXPECT_EQ(scoped.hooks.caughtError, "[Unsupported] Opposing point on constrained edge");
    EXPECT_EQ(scoped.hooks.sweptPoints, sweptPoints);
    EXPECT_GT(sweptPoints, 4000);
    // The abandoned sweep and the failed insertion add to the work of the sweep that decided.
    EXPECT_GT(scoped.hooks.work, sweepWork + 8192);
    EXPECT_FALSE(result.triangles.empty());
    EXPECT_TRUE(result.triangles == swept.triangles);
}

TEST(TriangulatorIncremental, KeepsTheMeshConsistentAfterEveryStep)
{
    ScopedHooks scoped;
    scoped.hooks.insertion = Insertion::IncrementalFirst;
    scoped.hooks.verifyEveryStep = true;
    for (const Polygon &polygon : {Star(300, 39), JitteredHoleGrid(5, 40), SubdividedQuadrilateral(40)}) {
        const Result result = Triangulate(polygon);
        EXPECT_TRUE(scoped.hooks.insertedIncrementally);
        EXPECT_EQ(scoped.hooks.inconsistency, "");
        EXPECT_TRUE(IsValidTriangulation(polygon, result.triangles));
    }
}

TEST(TriangulatorIncremental, HooksThatDisturbTheSweepKeepTheSweep)
{
    ScopedHooks scoped;
    scoped.hooks.insertion = Insertion::IncrementalFirst;
    scoped.hooks.throwBeforeSweepIndex = 100;
    scoped.hooks.throwMessage = "EdgeEvent - collinear points not supported";
    Triangulate(Star(300, 41));
    EXPECT_FALSE(scoped.hooks.insertedIncrementally);
    EXPECT_EQ(scoped.hooks.sweptPoints, 100);
    EXPECT_EQ(scoped.hooks.caughtError, "EdgeEvent - collinear points not supported");
}

namespace {

// True if no point of the polygon comes closer than a billionth of the polygon's extent to a ring
// edge that it is not an end of. Closer than that, the sweep and incremental insertion may judge
// collinearity (with its tolerance of 1e-12 of the extent) in different meshes and differ.
bool FarFromDegenerate(const Polygon &polygon)
{
    std::vector<const Ring *> rings{&polygon.outline};
    for (const Ring &hole : polygon.holes)
        rings.push_back(&hole);
    double minX = 1e308, maxX = -1e308, minY = 1e308, maxY = -1e308;
    for (const Ring *ring : rings)
        for (const Pt &p : *ring) {
            minX = std::min(minX, p.x);
            maxX = std::max(maxX, p.x);
            minY = std::min(minY, p.y);
            maxY = std::max(maxY, p.y);
        }
    const long double limit = 1e-9L * std::max<long double>(static_cast<long double>(maxX) - minX, static_cast<long double>(maxY) - minY);
    for (const Ring *ring : rings)
        for (std::size_t k = 0; k < ring->size(); ++k) {
            const Pt a = (*ring)[k], b = (*ring)[(k + 1) % ring->size()];
            const long double dx = static_cast<long double>(b.x) - a.x, dy = static_cast<long double>(b.y) - a.y;
            const long double length2 = dx * dx + dy * dy;
            for (const Ring *other : rings)
                for (const Pt &p : *other) {
                    if (p == a || p == b)
                        continue;
                    const long double px = static_cast<long double>(p.x) - a.x, py = static_cast<long double>(p.y) - a.y;
                    const long double along = length2 > 0 ? std::clamp((px * dx + py * dy) / length2, 0.0L, 1.0L) : 0.0L;
                    const long double ex = px - along * dx, ey = py - along * dy;
                    if (ex * ex + ey * ey <= limit * limit)
                        return false;
                }
        }
    return true;
}

} // namespace

TEST(TriangulatorIncremental, DirtyInputAlwaysReturnsAndCleanInputGivesTheSweepsTriangleCount)
{
    ScopedHooks scoped;
    int inserted = 0, compared = 0;
    for (std::uint32_t seed = 1; seed <= 20000; ++seed) {
        const Polygon polygon = DirtyPolygon(seed);
        scoped.hooks.insertion = Insertion::IncrementalFirst;
        const Result result = Triangulate(polygon);
        EXPECT_TRUE(result.cornersAreInputPoints) << seed;
        if (!scoped.hooks.insertedIncrementally)
            continue;
        ++inserted;
        if (!IsCleanPolygon(polygon) || !FarFromDegenerate(polygon))
            continue;
        scoped.hooks.insertion = Insertion::SweepOnly;
        const Result swept = Triangulate(polygon);
        ++compared;
        EXPECT_EQ(result.triangles.size(), swept.triangles.size()) << seed;
    }
    EXPECT_GT(inserted, 1000);
    EXPECT_GT(compared, 100);
}
