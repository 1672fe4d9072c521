// Ring cleaning for the filled polygons of KEZVisRepFactory: SimplifyRing and the repeat walk, which turn
// the input rings into the points that the triangulator gets.

#include "factory/KEZVisRepFactoryRingCleaning_p.h"

#include <KEZMathPoint.h>

namespace KEZVisFilledPolygon {

namespace {

// Rings up to this size walk with a plain scan, which is faster there than the grid.
constexpr int kSmallRing = 32;

// Walks over the simplified ring and accepts points until one lies within 0.001 in x and in y of a point
// accepted before: there the walk ends and the rest of the ring is ignored. A repeated first point thus
// closes the ring, and a ring that revisits a point is cut at that visit. Accepted points become p2t
// points in `accepted`; when `grid` is given, it receives them too.
void RepeatWalk(const KEZMathSetOfPoints &ring, PointArena &arena, PointVector &accepted, PointGrid *grid)
{
    accepted.reserve(std::size_t(ring.size()));
    if (grid == nullptr && ring.size() <= kSmallRing) {
        for (const KEZMathPoint &point : ring) {
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
        localGrid.Reset(std::size_t(ring.size()));
        grid = &localGrid;
    }
    // The probe of each point is made kAhead points before its turn, when its buckets are prefetched, and
    // serves its look-up and its insertion.
    constexpr qsizetype kAhead = 16;
    PointGrid::Probe probes[kAhead];
    for (qsizetype i = 0; i < std::min(kAhead, ring.size()); ++i) {
        probes[i] = grid->MakeProbe(ring.at(i).GetX(), ring.at(i).GetY());
        grid->Prefetch(probes[i]);
    }
    for (qsizetype i = 0; i < ring.size(); ++i) {
        PointGrid::Probe &probe = probes[i % kAhead];
        const double x = probe.x;
        const double y = probe.y;
        if (grid->Any(probe, [x, y](const p2t::Point &earlier) {
                return std::abs(x - earlier.x) < kTolerance && std::abs(y - earlier.y) < kTolerance;
            }))
            return;
        p2t::Point *made = arena.Make(x, y);
        accepted.push_back(made);
        grid->Insert(made, probe);
        if (i + kAhead < ring.size()) {
            probe = grid->MakeProbe(ring.at(i + kAhead).GetX(), ring.at(i + kAhead).GetY());
            grid->Prefetch(probe);
        }
    }
}

} // namespace

// ---------------------------------------------------------------------------
// SimplifyRing

void SimplifyRing(KEZMathSetOfPoints &ring)
{
    const KEZMathSetOfPoints points = ring;
    ring.clear();
    ring.reserve(points.size());
    for (const KEZMathPoint &p : points) {
        if (ring.size() < 2) {
            if (!ring.contains(p))
                ring.append(p);
            continue;
        }
        const KEZMathPoint a = ring.at(ring.size() - 2);
        const KEZMathPoint b = ring.last();
        if (a == p) {
            // A spike that returns to its start goes away.
            ring.removeLast();
            continue;
        }
        if (p == b)
            continue;
        const KEZMathVector2D u = Normalised(a.GetX() - p.GetX(), a.GetY() - p.GetY());
        const KEZMathVector2D v = Normalised(p.GetX() - b.GetX(), p.GetY() - b.GetY());
        if (u == v)
            continue; // p lies back on the segment from a to b: keep b.
        if (u == v * -1.0) {
            // a, b and p on one line with p beyond b: b is a middle point.
            ring.removeLast();
            ring.append(p);
            continue;
        }
        ring.append(p);
    }
}

// ---------------------------------------------------------------------------
// The stage

bool CleanRings(const QList<KEZMathSetOfPoints> &rings, CleanedRings &cleaned)
{
    KEZMathSetOfPoints &outlineRing = cleaned.outline.simplified;
    outlineRing = rings.first();
    SimplifyRing(outlineRing);
    cleaned.outlineGrid.Reset(std::size_t(outlineRing.size()));
    RepeatWalk(outlineRing, cleaned.arena, cleaned.outline.points, &cleaned.outlineGrid);
    if (cleaned.outline.points.size() < 3)
        return false;

    for (qsizetype i = 1; i < rings.size(); ++i) {
        const KEZMathSetOfPoints &ring = rings.at(i);
        if (ring.size() < 3)
            continue;
        cleaned.holes.emplace_back();
        WalkedRing &hole = cleaned.holes.back();
        hole.simplified = ring;
        SimplifyRing(hole.simplified);
        RepeatWalk(hole.simplified, cleaned.arena, hole.points, nullptr);
    }
    return true;
}

} // namespace KEZVisFilledPolygon
