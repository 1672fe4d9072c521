#ifndef KEZVISREPFACTORYRINGCLEANING_P_H
#define KEZVISREPFACTORYRINGCLEANING_P_H

// Ring cleaning, the first stage of a filled polygon. Every ring is simplified (SimplifyRing), which
// keeps some of its points in their order, and the repeat walk turns the kept points into points for the
// triangulator, up to the first point that repeats an earlier one. The rings are not copied: a cleaned
// ring is the positions of its kept points in the input ring.
//
// What the stage promises the others: the walked points of a ring are made, in order, from its first
// kept points, so the k-th walked point and the k-th kept point are one point; every point is made once,
// in the arena of the call, and stays where it is until the arena goes; the walked points of the outline
// are in a grid, for the hole tests. Never installed.

#include "factory/KEZVisRepFactoryFilledPolygon_p.h"
#include "triangulation/LargeArray_p.h"

#include <KEZMathSetOfPoints.h>

#include <QList>
#include <QtGlobal>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <vector>

namespace KEZVisFilledPolygon {

// ---------------------------------------------------------------------------
// SimplifyRing

// Cleans a ring in place: drops points equal to their predecessor, spikes that return to their start, and
// middle points of three on a line. The first and last points are never compared with each other; the
// repeat walk deals with the seam, so three points on a line across the seam survive.
void SimplifyRing(KEZMathSetOfPoints &ring);

// The same cleaning without a copy: `kept` receives, in order, the positions in `ring` of the points that
// SimplifyRing keeps.
void SimplifyRingPositions(const KEZMathSetOfPoints &ring, std::vector<qsizetype> &kept);

// Two of SimplifyRing's questions, answered as KEZMathPoint's == and the comparison of KEZMathVector2D
// would answer them, but mostly without a square root or a normalisation.
//
// SamePoint(a, b) is a == b, a distance of at most 1e-9.
bool SamePoint(const KEZMathPoint &a, const KEZMathPoint &b);

// How p continues the two kept points a and b: with u the normalised a - p and v the normalised p - b
// (each normalised as Normalised does it, compared as KEZMathVector2D compares),
// Back when u == v (p lies back on the segment from a to b), Beyond when u == v * -1 (p lies beyond b on
// their line), and Turn otherwise.
enum class Continuation { Turn, Back, Beyond };
Continuation ContinuationOf(const KEZMathPoint &a, const KEZMathPoint &b, const KEZMathPoint &p);

// ---------------------------------------------------------------------------
// A hash grid of points for the questions "is some point within 0.001 of this one in x and in y" and "is
// some point within squared distance 1e-6". Both need a partner whose coordinates differ by less than
// 0.001 * (1 + 2^-51) per axis. Cells are 0.004 * s wide, for a scale s of 1 or 8, taken as
// floor(v * 250 / s): for any two finite values that close the cells differ by at most one, also where
// v * 250 / s is rounded coarsely (beyond 2^40 / s), since two such values are then at most a few units in
// the last place apart. Where rounding is fine the position inside the cell tells which neighbour can
// hold a partner, so most look-ups probe one cell, or two to four near the edges. Cells may share a
// bucket: that costs time, never a wrong answer, as every point found is judged by the caller's own test.
// Points with a coordinate that is not finite are never entered and never found: the distances to them
// are not finite, and no rule takes them for near.
//
// A grid starts with wide cells (s = 8). Points on a ring mostly lie farther apart than 0.004, and a
// look-up then costs a read of memory that is far from the last one; in cells of 0.032 neighbouring points
// of a ring share cells and their buckets, a look-up mostly probes one cell instead of two or more, and a
// million points take about a third less time. Wide cells hold up to some thousand points that are not
// within 0.001 of each other, against some twenty-five in narrow ones: Refine narrows the cells where the
// look-ups meet too many points (see Visited).

class PointGrid
{
public:
    // The scales of the cells: 0.004 * kWideCells wide at first, 0.004 wide after Refine.
    static constexpr int kWideCells = 8;
    static constexpr int kNarrowCells = 1;

    explicit PointGrid(std::size_t expected = 16, int cellScale = kWideCells) { Reset(expected, cellScale); }

    // Gives the memory back; the grid must be Reset before it is used again.
    void Release()
    {
        p2t::detail::LargeVector<Bucket>().swap(m_buckets);
        p2t::detail::LargeVector<const p2t::Point *>().swap(m_points);
        p2t::detail::LargeVector<int>().swap(m_next);
        m_mask = 0;
    }

    // Empties the grid for about `expected` points, with cells of 0.004 * cellScale (kWideCells or
    // kNarrowCells).
    void Reset(std::size_t expected, int cellScale = kWideCells)
    {
        SetCellScale(cellScale);
        m_visited = 0;
        ++m_generation;
        // A bucket a point: the cells' bits keep most look-ups from walking chains of other cells, and
        // the smaller table stays in the cache and costs fewer fresh pages than one of twice the size.
        std::size_t buckets = 16;
        while (buckets < expected)
            buckets *= 2;
        m_buckets.assign(buckets, Bucket{-1, 0});
        m_mask = buckets - 1;
        m_points.clear();
        m_next.clear();
        // The chains are sized once: grown by doubling, they would be copied and their fresh memory
        // faulted in again at every step.
        m_points.reserve(expected);
        m_next.reserve(expected);
    }

    // What a look-up of one point needs of the grid, worked out once and used for its prefetch, its
    // look-up and its insertion: the buckets of the cells that may hold a partner, with the bit of each
    // cell, and the bucket and bit of the point's own cell. A probe is made for the grid's bucket count
    // of the time; the grid works it out again where it has grown or changed its cells since.
    struct Probe
    {
        double x = 0.0, y = 0.0;
        std::uint64_t generation = 0;
        int count = 0; // 0 for a point with a coordinate that is not finite
        std::size_t buckets[9];
        std::uint32_t bits[9];
        std::size_t ownBucket = 0;
        std::uint32_t ownBit = 0;
    };

    Probe MakeProbe(double x, double y) const
    {
        Probe probe;
        FillProbe(x, y, probe);
        return probe;
    }

    // MakeProbe into a probe that is there already, which spares the copy of the probe.
    void FillProbe(double x, double y, Probe &probe) const
    {
        probe.x = x;
        probe.y = y;
        probe.generation = m_generation;
        probe.count = 0;
        if (!std::isfinite(x) || !std::isfinite(y))
            return;
        std::uint64_t cellsX[3];
        std::uint64_t cellsY[3];
        std::uint64_t cx, cy;
        const int countX = Neighbours(x, cellsX, cx);
        const int countY = Neighbours(y, cellsY, cy);
        for (int i = 0; i < countX; ++i) {
            for (int j = 0; j < countY; ++j) {
                probe.buckets[probe.count] = BucketOf(cellsX[i], cellsY[j]);
                probe.bits[probe.count] = CellBit(cellsX[i], cellsY[j]);
                ++probe.count;
            }
        }
        probe.ownBucket = BucketOf(cx, cy);
        probe.ownBit = CellBit(cx, cy);
    }

    // Enters a point with the probe made of its coordinates.
    void Insert(const p2t::Point *point, const Probe &probe)
    {
        if (probe.count == 0)
            return;
        if (m_points.size() + 1 > m_buckets.size())
            Grow();
        if (probe.generation != m_generation) {
            Insert(point, MakeProbe(probe.x, probe.y));
            return;
        }
        Enter(int(m_points.size()), probe.ownBucket, probe.ownBit);
        m_points.push_back(point);
    }

    // Asks the processor to fetch the buckets of a point that is going to be looked up soon.
    void Prefetch(const Probe &probe) const
    {
#if defined(__GNUC__) || defined(__clang__)
        for (int i = 0; i < probe.count; ++i) {
            const Bucket *bucket = m_buckets.data() + (probe.buckets[i] & m_mask);
            // GCC drops a prefetch whose address it can see through here; the empty statement hides it.
            asm volatile("" : "+r"(bucket));
            __builtin_prefetch(bucket);
        }
#else
        Q_UNUSED(probe);
#endif
    }

    // True if the predicate holds for some entered point that may lie within the distances above. Cells
    // may share a bucket; the predicate decides on every point found.
    template <typename Predicate>
    bool Any(double x, double y, Predicate &&predicate) const
    {
        return Any(MakeProbe(x, y), predicate);
    }

    template <typename Predicate>
    bool Any(const Probe &probe, Predicate &&predicate) const
    {
        if (probe.count == 0 || m_points.empty())
            return false;
        if (probe.generation != m_generation)
            return Any(MakeProbe(probe.x, probe.y), predicate);
        std::size_t walked[9];
        int walkedCount = 0;
        for (int i = 0; i < probe.count; ++i) {
            const std::size_t index = probe.buckets[i];
            const Bucket &bucket = m_buckets[index];
            if ((bucket.cells & probe.bits[i]) == 0
                || std::find(walked, walked + walkedCount, index) != walked + walkedCount)
                continue;
            walked[walkedCount++] = index;
            for (int k = bucket.head; k >= 0; k = m_next[std::size_t(k)]) {
                ++m_visited;
                if (predicate(*m_points[std::size_t(k)]))
                    return true;
            }
        }
        return false;
    }

    // How many entered points the look-ups since the last Reset or Refine have offered to their
    // predicates.
    std::size_t Visited() const { return m_visited; }

    int CellScale() const { return m_cellScale; }

    // Narrows the cells to 0.004 and enters every point again. Probes made before are worked out again
    // where they are used.
    void Refine()
    {
        SetCellScale(kNarrowCells);
        m_visited = 0;
        ++m_generation;
        std::fill(m_buckets.begin(), m_buckets.end(), Bucket{-1, 0});
        for (std::size_t k = 0; k < m_points.size(); ++k)
            Enter(int(k), m_points[k]);
    }

private:
    // The head of a chain of points, and one bit for each cell of which it may hold points.
    struct Bucket
    {
        int head;
        std::uint32_t cells;
    };

    void SetCellScale(int cellScale)
    {
        Q_ASSERT(cellScale == kWideCells || cellScale == kNarrowCells);
        // Both scales are powers of two, so these are exact, and a value's place in a wide cell is its
        // place in the narrow ones divided by the scale, roundings included.
        m_cellScale = cellScale;
        m_perUnit = 250.0 / cellScale;
        m_fineLimit = 0x1p40 / cellScale;
        m_nearEdge = 0.2504 / cellScale;
    }

    double CellOf(double v) const { return std::floor(v * m_perUnit) + 0.0; } // + 0.0 turns -0.0 into 0.0

    // A number for a cell: the cell itself where it fits 64 bits, else the bits of the double.
    static std::uint64_t Code(double cell)
    {
        if (std::abs(cell) < 0x1p62)
            return std::uint64_t(std::int64_t(cell));
        std::uint64_t bits;
        std::memcpy(&bits, &cell, sizeof bits);
        return bits;
    }

    // The buckets of a block of 2 x 4 cells lie side by side, in one cache line, so that the cells round
    // a point are mostly read at once.
    std::size_t BucketOf(std::uint64_t cx, std::uint64_t cy) const
    {
        std::uint64_t block = (cx >> 1) * 0x9E3779B97F4A7C15ull ^ ((cy >> 2) + 0x632BE59BD9B4E019ull) * 0xBF58476D1CE4E5B9ull;
        block ^= block >> 31;
        return std::size_t((block << 3) | ((cy & 3) << 1) | (cx & 1)) & m_mask;
    }

    static std::uint32_t CellBit(std::uint64_t cx, std::uint64_t cy)
    {
        return std::uint32_t(1) << ((cx * 0xD6E8FEB86659FD93ull + cy * 0x9E3779B97F4A7C15ull) >> 59);
    }

    void Enter(int k, const p2t::Point *point)
    {
        const std::uint64_t cx = Code(CellOf(point->x));
        const std::uint64_t cy = Code(CellOf(point->y));
        Enter(k, BucketOf(cx, cy), CellBit(cx, cy));
    }

    void Enter(int k, std::size_t index, std::uint32_t bit)
    {
        Bucket &bucket = m_buckets[index];
        if (std::size_t(k) < m_next.size())
            m_next[std::size_t(k)] = bucket.head;
        else
            m_next.push_back(bucket.head);
        bucket.head = k;
        bucket.cells |= bit;
    }

    // The cells that may hold a partner of v, and in `own` the cell of v itself (CellOf(v)).
    int Neighbours(double v, std::uint64_t *cells, std::uint64_t &own) const
    {
        const double q = v * m_perUnit;
        int count = 0;
        if (std::abs(q) < m_fineLimit) {
            // In narrow cells, q is exact to 2^-14 here and a partner lies within 0.2502 cells; in wide
            // ones q, its rounding and the partner's distance are all divided by the scale. The floor is
            // taken on integers, which is cheaper and the same: the truncation of q is exact here, and one
            // less where q lies below it; the codes of the cells are the cells themselves.
            std::int64_t whole = std::int64_t(q);
            if (q < double(whole))
                --whole;
            const double offset = q - double(whole);
            own = std::uint64_t(whole);
            if (offset < m_nearEdge)
                cells[count++] = std::uint64_t(whole - 1);
            cells[count++] = own;
            if (offset > 1.0 - m_nearEdge)
                cells[count++] = std::uint64_t(whole + 1);
            return count;
        }
        const double cell = std::floor(q) + 0.0;
        own = Code(cell);
        cells[count++] = own;
        for (double other : {cell - 1.0, cell + 1.0}) {
            const std::uint64_t code = Code(other + 0.0);
            if (std::find(cells, cells + count, code) == cells + count)
                cells[count++] = code;
        }
        return count;
    }

    void Grow()
    {
        ++m_generation;
        m_buckets.assign(m_buckets.size() * 2, Bucket{-1, 0});
        m_mask = m_buckets.size() - 1;
        for (std::size_t k = 0; k < m_points.size(); ++k)
            Enter(int(k), m_points[k]);
    }

    p2t::detail::LargeVector<Bucket> m_buckets;
    std::size_t m_mask = 0;
    p2t::detail::LargeVector<const p2t::Point *> m_points;
    p2t::detail::LargeVector<int> m_next;
    int m_cellScale = kWideCells;
    double m_perUnit = 0.0;
    double m_fineLimit = 0.0;
    double m_nearEdge = 0.0;
    // Changes whenever the buckets of the cells do; a probe of another generation is made again.
    std::uint64_t m_generation = 0;
    mutable std::size_t m_visited = 0;
};

// ---------------------------------------------------------------------------
// The repeat walk

// Owns the p2t points of one call. The storage is reserved once for every input point, so the pointers
// stay valid while points are added.
class PointArena
{
public:
    explicit PointArena(std::size_t capacity) { m_points.reserve(capacity); }

    p2t::Point *Make(double x, double y)
    {
        m_points.emplace_back(x, y);
        return &m_points.back();
    }

    // The position of a point made here, or -1.
    std::ptrdiff_t IndexOf(const p2t::Point *point) const
    {
        if (m_points.empty())
            return -1;
        const std::less<const p2t::Point *> before;
        if (before(point, m_points.data()) || !before(point, m_points.data() + m_points.size()))
            return -1;
        return point - m_points.data();
    }

    std::size_t Size() const { return m_points.size(); }

    // The point at a position.
    const p2t::Point &At(std::size_t position) const { return m_points[position]; }

private:
    p2t::detail::LargeVector<p2t::Point> m_points;
};

// A ring after cleaning: the input ring, the positions in it of the points that SimplifyRing keeps, and
// the walked points, made from the first kept points.
struct WalkedRing
{
    const KEZMathSetOfPoints *ring = nullptr;
    std::vector<qsizetype> kept;
    PointVector points;

    // The k-th kept point.
    const KEZMathPoint &Kept(std::size_t k) const { return ring->at(kept[k]); }
};

// The rings of one call after cleaning. The arena owns every point of the call; the triangulator and the
// surface rebuild use them up to the end of the call.
struct CleanedRings
{
    // `pointCount` is the number of points of all rings together, which no walk can exceed.
    explicit CleanedRings(std::size_t pointCount) : arena(pointCount) { }
    CleanedRings(const CleanedRings &) = delete;
    CleanedRings &operator=(const CleanedRings &) = delete;

    PointArena arena;
    WalkedRing outline;
    PointGrid outlineGrid; // the walked points of the outline
    // True where no two walked points of the outline can have the same vertex key of three decimals: the
    // walk found every two of them 0.001 or more apart in x or in y, with a computed difference above
    // 0.001 on that axis where it is not below it on the other, and all their coordinates finite. Two
    // values with the same text of three decimals differ by at most 1/1000 exactly, and a computed
    // difference can't exceed 0.001 where the exact one is at most 1/1000 (0.001 as a double lies above
    // 1/1000, and rounding keeps the order), so equal keys would need a pair within 0.001 in x and in y,
    // bounds included, which the walk reports.
    bool outlineKeysDistinct = false;
    // Every further ring of at least 3 points, walked, in input order. Every walked hole stays here until
    // the triangulator is gone, the rejected ones too.
    std::vector<WalkedRing> holes;
};

// Cleans the outline, rings.first(), and then every further ring of at least 3 points. Gives false, with
// no hole walked, when fewer than 3 points of the outline are accepted: nothing is triangulated then.
// The cleaned rings point into `rings`, which must outlive them.
bool CleanRings(const QList<KEZMathSetOfPoints> &rings, CleanedRings &cleaned);

} // namespace KEZVisFilledPolygon

#endif // KEZVISREPFACTORYRINGCLEANING_P_H
