// Ring cleaning for the filled polygons of KEZVisRepFactory: SimplifyRing and the repeat walk, which turn
// the input rings into the points that the triangulator gets.

#include "factory/KEZVisRepFactoryRingCleaning_p.h"

#include <KEZMathPoint.h>

namespace KEZVisFilledPolygon {

namespace {

// Rings up to this size walk with a plain scan, which is faster there than the grid.
constexpr int kSmallRing = 32;

// Where the look-ups of a walk have met more than this many points a point, and a few thousand in all,
// the grid's wide cells are crowded, and it narrows them. Rings sampled at a few thousandths meet some
// twenty a look-up; a lattice of points a thousandth apart meets hundreds.
constexpr std::size_t kCrowded = 64;
constexpr std::size_t kCrowdedAtFirst = 4096;

// Walks over the kept points of a ring and accepts points until one lies within 0.001 in x and in y of a
// point accepted before: there the walk ends and the rest of the ring is ignored. A repeated first point
// thus closes the ring, and a ring that revisits a point is cut at that visit. Accepted points become p2t
// points in `walked.points`; when `grid` is given, it receives them too, and `near` (where given) tells
// whether two accepted points may lie within 0.001 of each other in x and in y, bounds included, or an
// accepted point has a coordinate that is not finite.
void RepeatWalk(WalkedRing &walked, PointArena &arena, PointGrid *grid, bool *near = nullptr)
{
    const KEZMathPoint *const ring = walked.ring->constData();
    const std::vector<qsizetype> &kept = walked.kept;
    const qsizetype size = qsizetype(kept.size());
    PointVector &accepted = walked.points;
    accepted.reserve(kept.size());
    if (grid == nullptr && size <= kSmallRing) {
        for (const qsizetype position : kept) {
            const KEZMathPoint &point = ring[position];
            const double x = point.GetX();
            const double y = point.GetY();
            for (const p2t::Point *earlier : accepted) {
                if (std::abs(x - earlier->x) < kTolerance && std::abs(y - earlier->y) < kTolerance)
                    return;
            }
            accepted.push_back(arena.Make(x, y));
        }
        return;
    }
    PointGrid localGrid;
    if (grid == nullptr) {
        localGrid.Reset(kept.size());
        grid = &localGrid;
    }
    // The probe of each point is made kAhead points before its turn, when its buckets are prefetched, and
    // serves its look-up and its insertion.
    constexpr qsizetype kAhead = 16;
    PointGrid::Probe probes[kAhead];
    for (qsizetype i = 0; i < std::min(kAhead, size); ++i) {
        const KEZMathPoint &point = ring[kept[std::size_t(i)]];
        grid->FillProbe(point.GetX(), point.GetY(), probes[i]);
        grid->Prefetch(probes[i]);
    }
    // Where the caller asks, the look-up also notes a partner on the bounds, within 0.001 in x and in y
    // but not below it in both. The grid offers every point closer than 0.001 * (1 + 2^-51) on each axis
    // to the predicate, so no such pair goes unseen; points with a coordinate that is not finite are
    // never offered, and count as near themselves.
    bool closeOnBounds = false;
    for (qsizetype i = 0; i < size; ++i) {
        PointGrid::Probe &probe = probes[i % kAhead];
        const double x = probe.x;
        const double y = probe.y;
        if (probe.count == 0)
            closeOnBounds = true;
        if (grid->Any(probe, [x, y, &closeOnBounds](const p2t::Point &earlier) {
                const double dx = std::abs(x - earlier.x);
                const double dy = std::abs(y - earlier.y);
                if (dx < kTolerance && dy < kTolerance)
                    return true;
                if (dx <= kTolerance && dy <= kTolerance)
                    closeOnBounds = true;
                return false;
            }))
            break;
        p2t::Point *made = arena.Make(x, y);
        accepted.push_back(made);
        grid->Insert(made, probe);
        const std::size_t allowance = kCrowded * std::size_t(i + 1) + kCrowdedAtFirst;
        if (grid->CellScale() != PointGrid::kNarrowCells && grid->Visited() > allowance)
            grid->Refine();
        if (i + kAhead < size) {
            const KEZMathPoint &ahead = ring[kept[std::size_t(i + kAhead)]];
            grid->FillProbe(ahead.GetX(), ahead.GetY(), probe);
            grid->Prefetch(probe);
        }
    }
    if (near != nullptr)
        *near = closeOnBounds;
}

} // namespace

// ---------------------------------------------------------------------------
// SimplifyRing

bool SamePoint(const KEZMathPoint &a, const KEZMathPoint &b)
{
    // A difference of more than 1e-9 in one coordinate decides "apart" on its own: with rounding to
    // nearest, sqrt(d * d) is |d| again, and the sum of the other squares only adds, so the distance that
    // == works out is at least |d|. Only points that close in every coordinate (or with a NaN, which
    // fails the comparisons below) are measured as == measures them.
    if (std::abs(a.GetX() - b.GetX()) > KEZMathPoint::Tolerance
        || std::abs(a.GetY() - b.GetY()) > KEZMathPoint::Tolerance
        || std::abs(a.GetZ() - b.GetZ()) > KEZMathPoint::Tolerance)
        return false;
    return a == b;
}

Continuation ContinuationOf(const KEZMathPoint &a, const KEZMathPoint &b, const KEZMathPoint &p)
{
    const double ux = a.GetX() - p.GetX();
    const double uy = a.GetY() - p.GetY();
    const double vx = p.GetX() - b.GetX();
    const double vy = p.GetY() - b.GetY();

    // Most corners turn by far more than the comparison's 1e-9, and the cross product tells so without
    // normalising. Let U and V be the exact unit vectors of (ux, uy) and (vx, vy). Where both squared
    // lengths lie in [1e-20, 1e100], both are longer than 1e-12, so Normalised divides by hypot; the
    // components it gives are within 4e-16 of those of U and V (hypot within an ulp, the quotient within
    // half of one). If u == v, then |U - V| <= sqrt(2) * (1e-9 + 8e-16) per the Euclidean norm, and
    // |U x V| = |U x (V - U)| <= |V - U| < 1.4143e-9; if u == v * -1, the same holds with U + V. So a cross
    // product of at least 1.5e-9 |u| |v| rules both out.
    // The test below asks cross^2 > 4e-18 * lu * lv with the rounded cross product and squared lengths. The
    // rounded cross product is within 3.4e-16 |u| |v| of the exact one (two products and a difference,
    // |ux vy| + |uy vx| <= |u| |v|), and the other roundings change the sides by relative amounts below
    // 1e-15. Where the test holds, the exact cross product is thus above (2e-9 - 4e-16) |u| |v|, far above
    // 1.5e-9 |u| |v|. In the range asked for, no product here overflows, and one that underflows is below
    // the right side, which is at least 4e-58, so the test fails and the normalised comparison decides.
    // NaNs and infinities fail the range test and go the same way.
    const double lu = ux * ux + uy * uy;
    const double lv = vx * vx + vy * vy;
    if (lu >= 1e-20 && lu <= 1e100 && lv >= 1e-20 && lv <= 1e100) {
        const double cross = ux * vy - uy * vx;
        if (cross * cross > 4e-18 * lu * lv)
            return Continuation::Turn;
    }

    const KEZMathVector2D u = Normalised(ux, uy);
    const KEZMathVector2D v = Normalised(vx, vy);
    if (u == v)
        return Continuation::Back;
    if (u == v * -1.0)
        return Continuation::Beyond;
    return Continuation::Turn;
}

void SimplifyRingPositions(const KEZMathSetOfPoints &ring, std::vector<qsizetype> &kept)
{
    const KEZMathPoint *const points = ring.constData();
    const qsizetype size = ring.size();
    kept.clear();
    kept.reserve(std::size_t(size));
    for (qsizetype i = 0; i < size; ++i) {
        const KEZMathPoint &p = points[i];
        if (kept.size() < 2) {
            if (kept.empty() || !SamePoint(points[kept.front()], p))
                kept.push_back(i);
            continue;
        }
        const KEZMathPoint &a = points[kept[kept.size() - 2]];
        const KEZMathPoint &b = points[kept.back()];
        if (SamePoint(a, p)) {
            // A spike that returns to its start goes away.
            kept.pop_back();
            continue;
        }
        if (SamePoint(p, b))
            continue;
        switch (ContinuationOf(a, b, p)) {
        case Continuation::Back:
            continue; // p lies back on the segment from a to b: keep b.
        case Continuation::Beyond:
            // a, b and p on one line with p beyond b: b is a middle point.
            kept.back() = i;
            continue;
        case Continuation::Turn:
            kept.push_back(i);
            continue;
        }
    }
}

void SimplifyRing(KEZMathSetOfPoints &ring)
{
    std::vector<qsizetype> kept;
    SimplifyRingPositions(ring, kept);
    if (kept.size() == std::size_t(ring.size()))
        return;
    KEZMathSetOfPoints simplified;
    simplified.reserve(qsizetype(kept.size()));
    for (const qsizetype position : kept)
        simplified.append(ring.at(position));
    ring = simplified;
}

// ---------------------------------------------------------------------------
// The stage

bool CleanRings(const QList<KEZMathSetOfPoints> &rings, CleanedRings &cleaned)
{
    WalkedRing &outline = cleaned.outline;
    outline.ring = &rings.first();
    SimplifyRingPositions(*outline.ring, outline.kept);
    cleaned.outlineGrid.Reset(outline.kept.size());
    bool near = true;
    RepeatWalk(outline, cleaned.arena, &cleaned.outlineGrid, &near);
    cleaned.outlineKeysDistinct = !near;
    if (outline.points.size() < 3)
        return false;

    for (qsizetype i = 1; i < rings.size(); ++i) {
        const KEZMathSetOfPoints &ring = rings.at(i);
        if (ring.size() < 3)
            continue;
        cleaned.holes.emplace_back();
        WalkedRing &hole = cleaned.holes.back();
        hole.ring = &ring;
        SimplifyRingPositions(ring, hole.kept);
        RepeatWalk(hole, cleaned.arena, nullptr);
    }
    return true;
}

} // namespace KEZVisFilledPolygon
