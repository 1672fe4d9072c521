// The ring cleaning of the filled polygons: SimplifyRing's decisions, which points it keeps, and its two
// quick answers, SamePoint and ContinuationOf, at the edges where they must agree with KEZMathPoint's ==
// and with the comparison of normalised KEZMathVector2D directions.
#include "factory/KEZVisRepFactoryRingCleaning_p.h"

#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>
#include <KEZMathVector2D.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

using namespace KEZVisFilledPolygon;

namespace {

KEZMathPoint P(double x, double y, double z = 0.0)
{
    return KEZMathPoint(x, y, z);
}

// The rule written out: u is a - p and v is p - b, each scaled to unit length where it is at least 1e-12
// long, compared per component within 1e-9.
Continuation ByTheRule(const KEZMathPoint &a, const KEZMathPoint &b, const KEZMathPoint &p)
{
    KEZMathVector2D u(a.GetX() - p.GetX(), a.GetY() - p.GetY());
    KEZMathVector2D v(p.GetX() - b.GetX(), p.GetY() - b.GetY());
    u.Normalize();
    v.Normalize();
    if (std::abs(u.GetX() - v.GetX()) <= 1e-9 && std::abs(u.GetY() - v.GetY()) <= 1e-9)
        return Continuation::Back;
    if (std::abs(u.GetX() + v.GetX()) <= 1e-9 && std::abs(u.GetY() + v.GetY()) <= 1e-9)
        return Continuation::Beyond;
    return Continuation::Turn;
}

std::vector<qsizetype> Kept(const KEZMathSetOfPoints &ring)
{
    std::vector<qsizetype> kept;
    SimplifyRingPositions(ring, kept);
    return kept;
}

// ---------------------------------------------------------------------------
// SamePoint

TEST(RingCleaningTest, PointsAtADistanceOfExactlyTheToleranceAreTheSamePoint)
{
    EXPECT_TRUE(SamePoint(P(0, 0), P(1e-9, 0)));
    EXPECT_TRUE(SamePoint(P(0, 0), P(0, 0, -1e-9)));
}

TEST(RingCleaningTest, PointsJustBeyondTheToleranceOnOneAxisAreApart)
{
    const double beyond = std::nextafter(1e-9, 1.0);
    EXPECT_FALSE(SamePoint(P(0, 0), P(beyond, 0)));
    EXPECT_FALSE(SamePoint(P(0, 0), P(0, -beyond)));
    EXPECT_FALSE(SamePoint(P(5, 5, 0), P(5, 5, beyond)));
}

TEST(RingCleaningTest, PointsCloseOnEveryAxisButFartherThanTheToleranceAreApart)
{
    // 8e-10 on each of two axes is 1.13e-9 apart.
    EXPECT_FALSE(SamePoint(P(0, 0), P(8e-10, 8e-10)));
    // 7e-10 on each is 0.99e-9 apart.
    EXPECT_TRUE(SamePoint(P(0, 0), P(7e-10, 7e-10)));
}

TEST(RingCleaningTest, PointsThatDifferOnlyInZAreComparedInSpace)
{
    EXPECT_FALSE(SamePoint(P(1, 2, 0), P(1, 2, 1e-6)));
}

TEST(RingCleaningTest, APointWithANaNCoordinateIsNotTheSameAsAnyPoint)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(SamePoint(P(nan, 0), P(nan, 0)));
    EXPECT_FALSE(SamePoint(P(0, 0), P(0, nan)));
}

TEST(RingCleaningTest, HugeCoordinatesOneUlpApartAreTheSamePointOnlyWhereTheUlpIsBelowTheTolerance)
{
    EXPECT_FALSE(SamePoint(P(1e12, 0), P(std::nextafter(1e12, 2e12), 0))); // an ulp of 1.2e-4
    EXPECT_TRUE(SamePoint(P(1e3, 0), P(std::nextafter(1e3, 2e3), 0)));     // an ulp of 1.1e-13
}

// ---------------------------------------------------------------------------
// ContinuationOf

TEST(RingCleaningTest, APointBeyondTheLastOnTheirLineContinuesBeyond)
{
    EXPECT_EQ(ContinuationOf(P(0, 0), P(1, 0), P(2, 0)), Continuation::Beyond);
    EXPECT_EQ(ContinuationOf(P(0, 0), P(1, 1), P(3, 3)), Continuation::Beyond);
}

TEST(RingCleaningTest, APointBackOnTheSegmentContinuesBack)
{
    EXPECT_EQ(ContinuationOf(P(0, 0), P(1, 0), P(0.5, 0)), Continuation::Back);
}

TEST(RingCleaningTest, APointBehindTheFirstOnTheirLineContinuesBeyondAsWell)
{
    // a - p and p - b then point in opposite ways, as for a point beyond b: the rule takes the reversal
    // past a for a straight continuation, and b gives way to p.
    EXPECT_EQ(ContinuationOf(P(0, 0), P(1, 0), P(-1, 0)), Continuation::Beyond);
}

TEST(RingCleaningTest, ACornerTurns)
{
    EXPECT_EQ(ContinuationOf(P(0, 0), P(1, 0), P(1, 1)), Continuation::Turn);
    EXPECT_EQ(ContinuationOf(P(0, 0), P(1, 0), P(2, 1e-3)), Continuation::Turn);
}

TEST(RingCleaningTest, AnAngleWellBelowTheToleranceCountsAsOnTheLine)
{
    // p is 1e-10 off the line through a and b, at a distance of 1 from b: the directions differ by 1e-10.
    EXPECT_EQ(ContinuationOf(P(0, 0), P(1, 0), P(2, 1e-10)), Continuation::Beyond);
    EXPECT_EQ(ContinuationOf(P(0, 0), P(2, 0), P(1, 1e-10)), Continuation::Back);
}

TEST(RingCleaningTest, AnAngleWellAboveTheToleranceTurns)
{
    EXPECT_EQ(ContinuationOf(P(0, 0), P(1, 0), P(2, 1e-8)), Continuation::Turn);
    EXPECT_EQ(ContinuationOf(P(0, 0), P(2, 0), P(1, 1e-8)), Continuation::Turn);
}

TEST(RingCleaningTest, AnglesAroundTheToleranceAreDecidedAsTheNormalisedComparisonDecides)
{
    // Offsets from 0.5e-9 to 3.5e-9 of a unit step, in every direction of the line and at several
    // scales: the band where the quick test must give way to the normalised comparison.
    int turns = 0, straight = 0;
    for (double scale : {1e-9, 1e-3, 1.0, 1e3, 1e9}) {
        for (double angle : {0.0, 0.3, 1.0, 2.0, 3.0, 4.5, 5.5}) {
            const double cx = std::cos(angle), cy = std::sin(angle);
            for (int k = 50; k <= 350; ++k) {
                const double offset = k * 1e-11;
                const KEZMathPoint a = P(0, 0);
                const KEZMathPoint b = P(scale * cx, scale * cy);
                const KEZMathPoint p = P(scale * (2 * cx - offset * cy), scale * (2 * cy + offset * cx));
                const Continuation expected = ByTheRule(a, b, p);
                EXPECT_EQ(ContinuationOf(a, b, p), expected) << scale << " " << angle << " " << offset;
                (expected == Continuation::Turn ? turns : straight)++;
            }
        }
    }
    // The band holds both answers, so the edge itself was crossed.
    EXPECT_GT(turns, 0);
    EXPECT_GT(straight, 0);
}

TEST(RingCleaningTest, TinyStepsAreComparedWithoutNormalisingThem)
{
    // Steps shorter than 1e-12 (between points that differ mostly in z) keep their length, so any two of
    // them compare equal as directions, and p counts as back on the segment although it turns by a right
    // angle.
    const KEZMathPoint a = P(0, 0), b = P(2e-13, 0), p = P(2e-13, 2e-13);
    EXPECT_EQ(ContinuationOf(a, b, p), Continuation::Back);
    EXPECT_EQ(ContinuationOf(a, b, p), ByTheRule(a, b, p));
}

TEST(RingCleaningTest, OneTinyStepAgainstANormalOneTurns)
{
    // v is normalised to unit length, u stays below 1e-12: they differ by about 1.
    EXPECT_EQ(ContinuationOf(P(0, 0), P(-1, 0), P(1e-13, 0)), Continuation::Turn);
}

TEST(RingCleaningTest, HugeCoordinatesOnALineContinueBeyond)
{
    EXPECT_EQ(ContinuationOf(P(0, 0), P(1e60, 1e60), P(2e60, 2e60)), Continuation::Beyond);
    EXPECT_EQ(ContinuationOf(P(0, 0), P(1e60, 0), P(2e60, 1e60)), Continuation::Turn);
}

TEST(RingCleaningTest, CoordinatesFarFromTheOriginKeepTheirDecisions)
{
    const double far = 1e8;
    EXPECT_EQ(ContinuationOf(P(far, far), P(far + 1, far), P(far + 2, far)), Continuation::Beyond);
    EXPECT_EQ(ContinuationOf(P(far, far), P(far + 1, far), P(far + 2, far + 1)), Continuation::Turn);
}

TEST(RingCleaningTest, ANaNCoordinateTurns)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(ContinuationOf(P(0, 0), P(1, 0), P(nan, 0)), Continuation::Turn);
}

TEST(RingCleaningTest, RandomNearlyStraightCornersAreDecidedAsTheNormalisedComparisonDecides)
{
    std::mt19937 random(2026u);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    std::uniform_int_distribution<int> exponent(-14, 14);
    for (int i = 0; i < 20000; ++i) {
        const double scale = std::pow(10.0, exponent(random));
        const double dx = unit(random), dy = unit(random);
        const double t = 2.0 * unit(random);
        const double off = std::pow(10.0, -8.0 - 2.0 * std::abs(unit(random))) * unit(random);
        const KEZMathPoint a = P(scale * unit(random), scale * unit(random));
        const KEZMathPoint b = P(a.GetX() + scale * dx, a.GetY() + scale * dy);
        const KEZMathPoint p = P(a.GetX() + scale * (t * dx - off * dy),
                                 a.GetY() + scale * (t * dy + off * dx));
        ASSERT_EQ(ContinuationOf(a, b, p), ByTheRule(a, b, p)) << i;
    }
}

// ---------------------------------------------------------------------------
// SimplifyRing

TEST(RingCleaningTest, SimplifyRingKeepsThePositionsOfTheCorners)
{
    const KEZMathSetOfPoints ring{P(0, 0), P(1, 0), P(1, 1), P(0, 1)};
    EXPECT_EQ(Kept(ring), (std::vector<qsizetype>{0, 1, 2, 3}));
}

TEST(RingCleaningTest, SimplifyRingDropsARepeatedPoint)
{
    const KEZMathSetOfPoints ring{P(0, 0), P(1, 0), P(1, 0), P(1, 1)};
    EXPECT_EQ(Kept(ring), (std::vector<qsizetype>{0, 1, 3}));
}

TEST(RingCleaningTest, SimplifyRingDropsARepeatOfTheFirstPointBeforeTheSecondIsKept)
{
    const KEZMathSetOfPoints ring{P(0, 0), P(0, 5e-10), P(1, 0), P(1, 1)};
    EXPECT_EQ(Kept(ring), (std::vector<qsizetype>{0, 2, 3}));
}

TEST(RingCleaningTest, SimplifyRingReplacesAMiddlePointByThePointBeyondIt)
{
    // (1, 0) lies between (0, 0) and (2, 0); the later point takes its place.
    const KEZMathSetOfPoints ring{P(0, 0), P(1, 0), P(2, 0), P(2, 2)};
    EXPECT_EQ(Kept(ring), (std::vector<qsizetype>{0, 2, 3}));
}

TEST(RingCleaningTest, SimplifyRingKeepsTheFartherPointWhenTheNextLiesBackOnTheSegment)
{
    const KEZMathSetOfPoints ring{P(0, 0), P(2, 0), P(1, 0), P(1, 1)};
    EXPECT_EQ(Kept(ring), (std::vector<qsizetype>{0, 1, 3}));
}

TEST(RingCleaningTest, SimplifyRingRemovesASpikeThatReturnsToItsStart)
{
    // (5, 5) goes out and back to (1, 0): the tip goes, and the return is not kept twice.
    const KEZMathSetOfPoints ring{P(0, 0), P(1, 0), P(5, 5), P(1, 0), P(1, 1)};
    EXPECT_EQ(Kept(ring), (std::vector<qsizetype>{0, 1, 4}));
}

TEST(RingCleaningTest, SimplifyRingLeavesThreePointsOnALineAcrossTheSeam)
{
    // The last point lies between the one before it and the first, which are never compared.
    const KEZMathSetOfPoints ring{P(0, 0), P(1, 1), P(-1, 1), P(-1, 0), P(-0.5, 0)};
    EXPECT_EQ(Kept(ring), (std::vector<qsizetype>{0, 1, 2, 3, 4}));
}

TEST(RingCleaningTest, SimplifyRingInPlaceKeepsTheSamePointsAsThePositions)
{
    KEZMathSetOfPoints ring{P(0, 0, 1), P(1, 0, 1), P(2, 0, 1), P(2, 0, 1),
                            P(2, 2, 1), P(7, 7, 1), P(2, 2, 1), P(0, 2, 1)};
    SimplifyRing(ring);
    const KEZMathSetOfPoints expected{P(0, 0, 1), P(2, 0, 1), P(2, 2, 1), P(0, 2, 1)};
    ASSERT_EQ(ring.size(), expected.size());
    for (qsizetype i = 0; i < ring.size(); ++i) {
        EXPECT_EQ(ring.at(i).GetX(), expected.at(i).GetX());
        EXPECT_EQ(ring.at(i).GetY(), expected.at(i).GetY());
        EXPECT_EQ(ring.at(i).GetZ(), expected.at(i).GetZ());
    }
}

TEST(RingCleaningTest, SimplifyRingOfAnEmptyRingKeepsNothing)
{
    EXPECT_TRUE(Kept(KEZMathSetOfPoints()).empty());
}

// ---------------------------------------------------------------------------
// PointGrid: every entered point closer than 0.001 on each axis is offered to the predicate

// True if the grid, holding only `entered`, offers it to a query at (x, y).
bool Offered(const p2t::Point &entered, double x, double y, int cellScale = PointGrid::kWideCells)
{
    PointGrid grid(4, cellScale);
    grid.Insert(&entered, grid.MakeProbe(entered.x, entered.y));
    return grid.Any(x, y, [&entered](const p2t::Point &point) { return &point == &entered; });
}

// Points on both sides of the cell boundaries near `bases`, with partners just under 0.001 away on each
// axis: the grid must offer every one.
void ExpectPartnersOfferedAround(std::initializer_list<double> bases, int cellScale)
{
    int checked = 0;
    for (double base : bases) {
        for (double shift = -0.0012; shift <= 0.0012; shift += 0.0001) {
            const double v = base + shift;
            const p2t::Point entered(v, -v);
            for (double dx : {-0.000999, -0.0005, 0.0, 0.0005, 0.000999}) {
                for (double dy : {-0.000999, 0.0, 0.000999}) {
                    EXPECT_TRUE(Offered(entered, v + dx, -v + dy, cellScale)) << v << " " << dx << " " << dy;
                    ++checked;
                }
            }
        }
    }
    EXPECT_GT(checked, 1000);
}

TEST(RingCleaningTest, TheGridOffersAPartnerAcrossEveryNarrowCellBoundaryNearby)
{
    // Narrow cells are 0.004 wide: boundaries at k * 0.004, near zero, on the negative side and far out.
    ExpectPartnersOfferedAround({0.0, -0.004, 0.004, -1.0, 123.456, -98765.432, 4e6}, PointGrid::kNarrowCells);
}

TEST(RingCleaningTest, TheGridOffersAPartnerAcrossEveryWideCellBoundaryNearby)
{
    // Wide cells are 0.032 wide: boundaries at k * 0.032, and the narrow ones' between them.
    ExpectPartnersOfferedAround({0.0, -0.032, 0.032, -0.004, 0.012, -1.024, 123.456, -98765.44, 4e6, 3.2e7},
                                PointGrid::kWideCells);
}

TEST(RingCleaningTest, TheGridOffersAPartnerBeyondTheFineRange)
{
    // Beyond 2^40 cells the grid looks at both neighbouring cells whatever the position in the cell.
    for (int cellScale : {PointGrid::kNarrowCells, PointGrid::kWideCells}) {
        const double far = 0x1p40 / 250.0 * cellScale * 3.0;
        const p2t::Point entered(far, far);
        EXPECT_TRUE(Offered(entered, std::nextafter(far, 0.0), std::nextafter(far, 1e300), cellScale)) << cellScale;
        EXPECT_TRUE(Offered(entered, far, far, cellScale)) << cellScale;
    }
}

TEST(RingCleaningTest, ARefinedGridStillOffersEveryPointEnteredBefore)
{
    PointGrid grid(4);
    std::vector<p2t::Point> points;
    for (int i = 0; i < 200; ++i)
        points.emplace_back(0.0123 * i, -0.0071 * i);
    for (const p2t::Point &point : points)
        grid.Insert(&point, grid.MakeProbe(point.x, point.y));
    // A probe made before the grid narrowed its cells is worked out again where it is used.
    const PointGrid::Probe early = grid.MakeProbe(points[150].x + 0.0009, points[150].y - 0.0009);
    grid.Refine();
    ASSERT_EQ(grid.CellScale(), PointGrid::kNarrowCells);
    for (const p2t::Point &point : points) {
        const double x = point.x - 0.000999, y = point.y + 0.000999;
        EXPECT_TRUE(grid.Any(x, y, [&point](const p2t::Point &offered) { return &offered == &point; })) << point.x;
    }
    EXPECT_TRUE(grid.Any(early, [&points](const p2t::Point &offered) { return &offered == &points[150]; }));
}

TEST(RingCleaningTest, TheGridNeverOffersAPointThatIsNotFinite)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const p2t::Point entered(nan, 0.0);
    EXPECT_FALSE(Offered(entered, nan, 0.0));
    EXPECT_FALSE(Offered(p2t::Point(1.0, 1.0), nan, 1.0));
}

TEST(RingCleaningTest, TheGridDoesNotOfferAPointFarAway)
{
    // Not a promise of the grid, which may offer more than the near points, but with one point and a
    // query 1 away the buckets differ: the test shows that the offers above are not unconditional.
    EXPECT_FALSE(Offered(p2t::Point(0.0, 0.0), 1.0, 1.0));
}

// ---------------------------------------------------------------------------
// CleanRings: whether the outline's vertex keys are known to be distinct

bool KeysDistinct(const KEZMathSetOfPoints &outline)
{
    const QList<KEZMathSetOfPoints> rings{outline};
    CleanedRings cleaned{std::size_t(outline.size())};
    EXPECT_TRUE(CleanRings(rings, cleaned));
    return cleaned.outlineKeysDistinct;
}

TEST(RingCleaningTest, AnOutlineOfPointsFarApartHasDistinctKeys)
{
    EXPECT_TRUE(KeysDistinct({P(0, 0), P(1, 0), P(1, 1), P(0, 1)}));
}

TEST(RingCleaningTest, PointsCloseOnOneAxisOnlyKeepTheKeysDistinct)
{
    // 0.0005 apart in x, but 1 apart in y.
    EXPECT_TRUE(KeysDistinct({P(0, 0), P(1, 0), P(1, 1), P(0.0005, 1), P(0, 0.5)}));
}

TEST(RingCleaningTest, TwoPointsExactlyTheRepeatDistanceApartOnBothAxesMayShareAKey)
{
    // Accepted by the walk, for 0.001 is not below 0.001, but on the bounds on both axes.
    EXPECT_FALSE(KeysDistinct({P(0, 0), P(0.001, 0.001), P(1, 0), P(1, 1)}));
}

TEST(RingCleaningTest, APointThatIsNotFiniteLeavesTheKeysUnknown)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(KeysDistinct({P(0, 0), P(1, 0), P(1, 1), P(nan, 1), P(0, 1)}));
}

TEST(RingCleaningTest, AWalkCutAtARepeatJudgesOnlyThePointsBeforeTheCut)
{
    // (0.0009, 0.0002) repeats the first point: the walk ends there, and the points it accepted are far
    // apart.
    EXPECT_TRUE(KeysDistinct({P(0, 0), P(1, 0), P(1, 1), P(0.0009, 0.0002), P(0.5, 0.5)}));
}

// ---------------------------------------------------------------------------
// CleanRings: the repeat walk, whatever the cells of its grid

// The walk's rule written out: the number of kept points before the first one that lies within 0.001 in
// x and in y of an earlier one.
std::size_t AcceptedByTheRule(const KEZMathSetOfPoints &ring)
{
    const std::vector<qsizetype> kept = Kept(ring);
    for (std::size_t i = 0; i < kept.size(); ++i) {
        const KEZMathPoint &p = ring.at(kept[i]);
        for (std::size_t j = 0; j < i; ++j) {
            const KEZMathPoint &q = ring.at(kept[j]);
            if (std::abs(p.GetX() - q.GetX()) < 0.001 && std::abs(p.GetY() - q.GetY()) < 0.001)
                return i;
        }
    }
    return kept.size();
}

// A ring that zigzags along the rows of a lattice 0.0011 apart in x and 0.0015 in y, no two of its points
// closer than 0.001 on both axes and no three on a line: thousands of its points share a wide cell.
KEZMathSetOfPoints Lattice(int rows, int columns)
{
    KEZMathSetOfPoints ring;
    for (int row = 0; row < rows; ++row) {
        for (int k = 0; k < columns; ++k) {
            const int column = row % 2 == 0 ? k : columns - 1 - k;
            ring.append(P(column * 0.0011, row * 0.0015 + (k % 2) * 0.0003));
        }
    }
    return ring;
}

struct Walked
{
    std::size_t accepted;
    int cellScale;
};

Walked WalkOutline(const KEZMathSetOfPoints &outline)
{
    const QList<KEZMathSetOfPoints> rings{outline};
    CleanedRings cleaned{std::size_t(outline.size())};
    CleanRings(rings, cleaned);
    return Walked{cleaned.outline.points.size(), cleaned.outlineGrid.CellScale()};
}

TEST(RingCleaningTest, ARingOfPointsFarApartIsWalkedInWideCells)
{
    KEZMathSetOfPoints ring;
    for (int k = 0; k < 5000; ++k) {
        const double angle = 2.0 * std::acos(-1.0) * k / 5000;
        ring.append(P(250.0 * std::cos(angle), 125.0 * std::sin(angle)));
    }
    const Walked walked = WalkOutline(ring);
    EXPECT_EQ(walked.accepted, std::size_t(5000));
    EXPECT_EQ(walked.cellScale, PointGrid::kWideCells);
}

TEST(RingCleaningTest, ACrowdedRingNarrowsTheCellsAndAcceptsWhatTheRuleAccepts)
{
    const KEZMathSetOfPoints ring = Lattice(60, 60);
    const Walked walked = WalkOutline(ring);
    EXPECT_EQ(walked.accepted, AcceptedByTheRule(ring));
    EXPECT_EQ(walked.accepted, std::size_t(3600));
    EXPECT_EQ(walked.cellScale, PointGrid::kNarrowCells);
}

TEST(RingCleaningTest, ARepeatAfterTheCellsNarrowedEndsTheWalkWhereTheRuleEndsIt)
{
    KEZMathSetOfPoints ring = Lattice(60, 60);
    ring.append(P(30 * 0.0011 + 0.0004, 40 * 0.0015 - 0.0006)); // near the lattice point of row 40, column 30
    ring.append(P(-1.0, 2.0));
    const Walked walked = WalkOutline(ring);
    EXPECT_EQ(walked.accepted, std::size_t(3600));
    EXPECT_EQ(walked.accepted, AcceptedByTheRule(ring));
    EXPECT_EQ(walked.cellScale, PointGrid::kNarrowCells);
}

TEST(RingCleaningTest, RandomRingsWithRepeatsEndWhereTheRuleEndsThem)
{
    std::mt19937 random(2026);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    int cut = 0;
    for (int t = 0; t < 60; ++t) {
        // Points spread over a square of side 0.05 to 50, so that some rings have near pairs and some
        // crowd the wide cells.
        const double side = 0.05 * std::pow(10.0, 3.0 * unit(random));
        KEZMathSetOfPoints ring;
        const int count = 40 + int(unit(random) * 400);
        for (int k = 0; k < count; ++k)
            ring.append(P(side * unit(random), side * unit(random)));
        const std::size_t expected = AcceptedByTheRule(ring);
        EXPECT_EQ(WalkOutline(ring).accepted, expected) << t;
        cut += expected < Kept(ring).size() ? 1 : 0;
    }
    EXPECT_GT(cut, 10);
    EXPECT_LT(cut, 55);
}

} // namespace
