// The filled-polygon operations of KEZVisRepFactory: an outline with holes becomes a triangle mesh, and
// optionally a solid with caps and walls.
//
// The work around the triangulator is rule-bound: the rings are cleaned, a ring that revisits a point is
// cut there, holes that leave the outline, touch it or cross another hole are left out, and the mesh is
// indexed again by vertex keys of three decimals. Several of these rules are written as scans over all
// points or all pairs of edges. The code below gives exactly the results of those scans, but finds the
// candidates through a hash grid, box trees and a recursive split of the hole points, so that the whole
// runs in about n log n: every index only narrows down the candidates, and the decision on each candidate
// is the rule's own formula, evaluated as written.

#include "KEZVisRepFactory.h"
#include "factory/KEZVisRepFactory_p.h"
#include "triangulation/CDT.h"

#include <KEZMathLine2D.h>
#include <KEZMathPoint2D.h>
#include <KEZMathVector2D.h>

#include <QByteArray>
#include <QHash>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace {

// ---------------------------------------------------------------------------
// Tolerances

// Largest spread of z; per-axis distance under which a point repeats an earlier one; |dy| under which an
// edge counts as horizontal; smallest angle between two perpendiculars that tells two sides apart.
constexpr double kTolerance = 0.001;
// Squared distance under which two points are one point.
constexpr double kSamePointSquared = 1e-6;

using PointVector = std::vector<p2t::Point *>;

// ---------------------------------------------------------------------------
// Small geometry

// The z of the cross product (ux, uy, 0) ^ (vx, vy, 0), written as KEZMathVector::operator^ computes it.
inline double CrossZ(double ux, double uy, double vx, double vy)
{
    return ux * vy - uy * vx;
}

inline double SquaredDistance(const p2t::Point &a, const p2t::Point &b)
{
    const double dx = a.x - b.x;
    const double dy = a.y - b.y;
    return dx * dx + dy * dy;
}

inline KEZMathVector2D Normalised(double x, double y)
{
    KEZMathVector2D vector(x, y);
    vector.Normalize();
    return vector;
}

// True if normalised (b - x) equals normalised (x - a): x lies on the segment from a to b, between its ends.
inline bool LiesBetween(const p2t::Point &x, const p2t::Point &a, const p2t::Point &b)
{
    return Normalised(b.x - x.x, b.y - x.y) == Normalised(x.x - a.x, x.y - a.y);
}

// True if x touches the segment from a to b: it is one point with an end, or lies between the ends.
inline bool TouchesSegment(const p2t::Point &x, const p2t::Point &a, const p2t::Point &b)
{
    return SquaredDistance(x, a) < kSamePointSquared || SquaredDistance(x, b) < kSamePointSquared
        || LiesBetween(x, a, b);
}

// An axis-aligned box of a segment, its ends compared as std::min and std::max do.
struct Box
{
    double minX, minY, maxX, maxY;
};

inline Box SegmentBox(const p2t::Point &a, const p2t::Point &b)
{
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

// Boxes are apart only if one box's minimum is strictly above the other's maximum, in x or in y; boxes
// that touch overlap.
inline bool BoxesApart(const Box &a, const Box &b)
{
    return a.minX > b.maxX || b.minX > a.maxX || a.minY > b.maxY || b.minY > a.maxY;
}

inline bool IsFinite(const Box &box)
{
    return std::isfinite(box.minX) && std::isfinite(box.minY) && std::isfinite(box.maxX)
        && std::isfinite(box.maxY);
}

// True if the segments a-b and c-d meet: their boxes overlap and neither segment has both ends of the other
// strictly on one side of its line. Touching counts as meeting, since a product of exactly 0 is not above 0.
inline bool SegmentsMeet(const p2t::Point &a, const p2t::Point &b, const p2t::Point &c, const p2t::Point &d)
{
    if (BoxesApart(SegmentBox(a, b), SegmentBox(c, d)))
        return false;
    const double d1 = CrossZ(b.x - a.x, b.y - a.y, c.x - a.x, c.y - a.y);
    const double d2 = CrossZ(b.x - a.x, b.y - a.y, d.x - a.x, d.y - a.y);
    const double d3 = CrossZ(d.x - c.x, d.y - c.y, a.x - c.x, a.y - c.y);
    const double d4 = CrossZ(d.x - c.x, d.y - c.y, b.x - c.x, b.y - c.y);
    return !(d1 * d2 > 0) && !(d3 * d4 > 0);
}

// Whether the edge a-b counts for the crossing number of p: it is not horizontal, p.y lies in its half-open
// y range, and it passes to the right of p. An edge with a NaN y never counts.
inline bool EdgeCounts(const p2t::Point &a, const p2t::Point &b, const p2t::Point &p)
{
    if (std::abs(a.y - b.y) < kTolerance)
        return false;
    if (!(std::min(a.y, b.y) <= p.y && p.y < std::max(a.y, b.y)))
        return false;
    return (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x > p.x;
}

// The x at which the edge a-b passes y, by the formula of EdgeCounts.
inline double EdgeXAt(const p2t::Point &a, const p2t::Point &b, double y)
{
    return (b.x - a.x) * (y - a.y) / (b.y - a.y) + a.x;
}

// ---------------------------------------------------------------------------
// SimplifyRing

// Cleans a ring in place: drops points equal to their predecessor, spikes that return to their start, and
// middle points of three on a line. The first and last points are never compared with each other; the
// repeat walk deals with the seam, so three points on a line across the seam survive.
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
// A hash grid of points for the questions "is some point within 0.001 of this one in x and in y" and "is
// some point within squared distance 1e-6". Both need a partner whose coordinates differ by less than
// 0.001 * (1 + 2^-51) per axis. Cells are 0.004 wide, taken as floor(v * 250): for any two finite values
// that close the cells differ by at most one, also where v * 250 is rounded coarsely (beyond 2^40), since
// two such values are then at most a few units in the last place apart. Where rounding is fine the
// position inside the cell tells which neighbour can hold a partner, so most look-ups probe one to four
// cells. Cells may share a bucket: that costs time, never a wrong answer, as every point found is judged
// by the caller's own test. Points with a coordinate that is not finite are never entered and never
// found: the distances to them are not finite, and no rule takes them for near.

class PointGrid
{
public:
    explicit PointGrid(std::size_t expected = 16) { Reset(expected); }

    void Reset(std::size_t expected)
    {
        std::size_t buckets = 16;
        while (buckets < 2 * expected)
            buckets *= 2;
        m_buckets.assign(buckets, Bucket{-1, 0});
        m_mask = buckets - 1;
        m_points.clear();
        m_next.clear();
    }

    void Insert(const p2t::Point *point)
    {
        if (!std::isfinite(point->x) || !std::isfinite(point->y))
            return;
        if (m_points.size() + 1 > m_buckets.size())
            Grow();
        Enter(int(m_points.size()), point);
        m_points.push_back(point);
    }

    // Asks the processor to fetch the buckets of a point that is going to be looked up soon.
    void Prefetch(double x, double y) const
    {
#if defined(__GNUC__) || defined(__clang__)
        if (!std::isfinite(x) || !std::isfinite(y))
            return;
        std::uint64_t cellsX[3];
        std::uint64_t cellsY[3];
        const int countX = Neighbours(x, cellsX);
        const int countY = Neighbours(y, cellsY);
        for (int i = 0; i < countX; ++i) {
            for (int j = 0; j < countY; ++j) {
                const Bucket *bucket = m_buckets.data() + BucketOf(cellsX[i], cellsY[j]);
                // GCC drops a prefetch whose address it can see through here; the empty statement hides it.
                asm volatile("" : "+r"(bucket));
                __builtin_prefetch(bucket);
            }
        }
#else
        Q_UNUSED(x);
        Q_UNUSED(y);
#endif
    }

    // True if the predicate holds for some entered point that may lie within the distances above. Cells
    // may share a bucket; the predicate decides on every point found.
    template <typename Predicate>
    bool Any(double x, double y, Predicate &&predicate) const
    {
        if (!std::isfinite(x) || !std::isfinite(y) || m_points.empty())
            return false;
        std::uint64_t cellsX[3];
        std::uint64_t cellsY[3];
        const int countX = Neighbours(x, cellsX);
        const int countY = Neighbours(y, cellsY);
        std::size_t walked[9];
        int walkedCount = 0;
        for (int i = 0; i < countX; ++i) {
            for (int j = 0; j < countY; ++j) {
                const std::size_t index = BucketOf(cellsX[i], cellsY[j]);
                const Bucket &bucket = m_buckets[index];
                if ((bucket.cells & CellBit(cellsX[i], cellsY[j])) == 0
                    || std::find(walked, walked + walkedCount, index) != walked + walkedCount)
                    continue;
                walked[walkedCount++] = index;
                for (int k = bucket.head; k >= 0; k = m_next[std::size_t(k)]) {
                    if (predicate(*m_points[std::size_t(k)]))
                        return true;
                }
            }
        }
        return false;
    }

private:
    // The head of a chain of points, and one bit for each cell of which it may hold points.
    struct Bucket
    {
        int head;
        std::uint32_t cells;
    };

    static double CellOf(double v) { return std::floor(v * 250.0) + 0.0; } // + 0.0 turns -0.0 into 0.0

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
        Bucket &bucket = m_buckets[BucketOf(cx, cy)];
        if (std::size_t(k) < m_next.size())
            m_next[std::size_t(k)] = bucket.head;
        else
            m_next.push_back(bucket.head);
        bucket.head = k;
        bucket.cells |= CellBit(cx, cy);
    }

    // The cells that may hold a partner of v.
    static int Neighbours(double v, std::uint64_t *cells)
    {
        const double q = v * 250.0;
        const double cell = std::floor(q) + 0.0;
        int count = 0;
        if (std::abs(q) < 0x1p40) {
            // q is exact to 2^-14 here; a partner lies within 0.2502 cells.
            const double offset = q - cell;
            if (offset < 0.2504)
                cells[count++] = Code(cell - 1.0);
            cells[count++] = Code(cell);
            if (offset > 0.7496)
                cells[count++] = Code(cell + 1.0);
            return count;
        }
        cells[count++] = Code(cell);
        for (double other : {cell - 1.0, cell + 1.0}) {
            const std::uint64_t code = Code(other + 0.0);
            if (std::find(cells, cells + count, code) == cells + count)
                cells[count++] = code;
        }
        return count;
    }

    void Grow()
    {
        m_buckets.assign(m_buckets.size() * 2, Bucket{-1, 0});
        m_mask = m_buckets.size() - 1;
        for (std::size_t k = 0; k < m_points.size(); ++k)
            Enter(int(k), m_points[k]);
    }

    std::vector<Bucket> m_buckets;
    std::size_t m_mask = 0;
    std::vector<const p2t::Point *> m_points;
    std::vector<int> m_next;
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

private:
    std::vector<p2t::Point> m_points;
};

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
    constexpr qsizetype kAhead = 16;
    for (qsizetype i = 0; i < ring.size(); ++i) {
        if (i + kAhead < ring.size())
            grid->Prefetch(ring.at(i + kAhead).GetX(), ring.at(i + kAhead).GetY());
        const double x = ring.at(i).GetX();
        const double y = ring.at(i).GetY();
        if (grid->Any(x, y, [x, y](const p2t::Point &earlier) {
                return std::abs(x - earlier.x) < kTolerance && std::abs(y - earlier.y) < kTolerance;
            }))
            return;
        p2t::Point *made = arena.Make(x, y);
        accepted.push_back(made);
        grid->Insert(made);
    }
}

// ---------------------------------------------------------------------------
// A static box tree: boxes are split at the median of their centres along the longer side, four to a
// leaf. Queries find every box that overlaps a query box (touching counts), with the same comparisons as
// BoxesApart, so they miss nothing. Only finite boxes are entered.

class BoxTree
{
public:
    // Enters the boxes with their ids. With `inOrder` the boxes are taken to follow each other in space,
    // as the edges of a ring do, and the tree is cut into runs of neighbours without sorting; otherwise
    // it is split at medians.
    void Build(const std::vector<Box> &boxes, const std::vector<int> &ids, bool inOrder = false)
    {
        m_items.clear();
        m_nodes.clear();
        m_items.reserve(boxes.size());
        for (std::size_t i = 0; i < boxes.size(); ++i) {
            const Box &box = boxes[i];
            m_items.push_back(Item{box, box.minX * 0.5 + box.maxX * 0.5, box.minY * 0.5 + box.maxY * 0.5, ids[i]});
        }
        if (m_items.empty())
            return;
        m_inOrder = inOrder;
        m_nodes.reserve(2 * m_items.size() / kLeafSize + 2);
        m_nodes.push_back(Node{});
        BuildNode(0, 0, int(m_items.size()));
    }

    // Calls visit(id) for each entered box that overlaps `query`, until visit returns true; returns
    // whether it did.
    template <typename Visit>
    bool Any(const Box &query, Visit &&visit) const
    {
        if (m_nodes.empty())
            return false;
        int stack[128];
        int top = 0;
        stack[top++] = 0;
        while (top > 0) {
            const Node &node = m_nodes[std::size_t(stack[--top])];
            if (BoxesApart(node.box, query))
                continue;
            if (node.count > 0) {
                for (int i = node.first; i < node.first + node.count; ++i) {
                    const Item &item = m_items[std::size_t(i)];
                    if (!BoxesApart(item.box, query) && visit(item.id))
                        return true;
                }
            } else {
                stack[top++] = node.first;
                stack[top++] = node.first + 1;
            }
        }
        return false;
    }

    // Calls visit(idA, idB) once for every pair of two different entries whose boxes overlap.
    template <typename Visit>
    void ForEachOverlappingPair(Visit &&visit) const
    {
        if (m_nodes.empty())
            return;
        std::vector<std::pair<int, int>> stack{{0, 0}};
        while (!stack.empty()) {
            const auto [a, b] = stack.back();
            stack.pop_back();
            const Node &nodeA = m_nodes[std::size_t(a)];
            const Node &nodeB = m_nodes[std::size_t(b)];
            if (a == b) {
                if (nodeA.count > 0) {
                    for (int i = nodeA.first; i < nodeA.first + nodeA.count; ++i) {
                        for (int j = i + 1; j < nodeA.first + nodeA.count; ++j)
                            VisitIfOverlapping(i, j, visit);
                    }
                } else {
                    stack.emplace_back(nodeA.first, nodeA.first);
                    stack.emplace_back(nodeA.first + 1, nodeA.first + 1);
                    stack.emplace_back(nodeA.first, nodeA.first + 1);
                }
                continue;
            }
            if (BoxesApart(nodeA.box, nodeB.box))
                continue;
            if (nodeA.count > 0 && nodeB.count > 0) {
                for (int i = nodeA.first; i < nodeA.first + nodeA.count; ++i) {
                    for (int j = nodeB.first; j < nodeB.first + nodeB.count; ++j)
                        VisitIfOverlapping(i, j, visit);
                }
                continue;
            }
            // Go down on the side of the inner node, the larger one if both are inner.
            const bool downA = nodeB.count > 0 || (nodeA.count == 0 && !(Size(nodeA.box) < Size(nodeB.box)));
            if (downA) {
                stack.emplace_back(nodeA.first, b);
                stack.emplace_back(nodeA.first + 1, b);
            } else {
                stack.emplace_back(a, nodeB.first);
                stack.emplace_back(a, nodeB.first + 1);
            }
        }
    }

private:
    static constexpr int kLeafSize = 4;

    struct Item
    {
        Box box;
        double centreX, centreY;
        int id;
    };

    struct Node
    {
        Box box;
        int first; // first item of a leaf, or the first of two consecutive children
        int count; // items of a leaf; 0 for an inner node
    };

    static double Size(const Box &box) { return (box.maxX - box.minX) + (box.maxY - box.minY); }

    template <typename Visit>
    void VisitIfOverlapping(int i, int j, Visit &visit) const
    {
        const Item &first = m_items[std::size_t(i)];
        const Item &second = m_items[std::size_t(j)];
        if (!BoxesApart(first.box, second.box))
            visit(first.id, second.id);
    }

    void BuildNode(int index, int begin, int end)
    {
        if (end - begin <= kLeafSize) {
            Box bounds = m_items[std::size_t(begin)].box;
            for (int i = begin + 1; i < end; ++i)
                bounds = Union(bounds, m_items[std::size_t(i)].box);
            m_nodes[std::size_t(index)] = Node{bounds, begin, end - begin};
            return;
        }
        const int middle = begin + (end - begin) / 2;
        if (!m_inOrder) {
            double lowX = m_items[std::size_t(begin)].centreX, highX = lowX;
            double lowY = m_items[std::size_t(begin)].centreY, highY = lowY;
            for (int i = begin + 1; i < end; ++i) {
                const Item &item = m_items[std::size_t(i)];
                lowX = std::min(lowX, item.centreX);
                highX = std::max(highX, item.centreX);
                lowY = std::min(lowY, item.centreY);
                highY = std::max(highY, item.centreY);
            }
            const auto first = m_items.begin() + begin;
            if (highX - lowX >= highY - lowY)
                std::nth_element(first, m_items.begin() + middle, m_items.begin() + end,
                                 [](const Item &l, const Item &r) { return l.centreX < r.centreX; });
            else
                std::nth_element(first, m_items.begin() + middle, m_items.begin() + end,
                                 [](const Item &l, const Item &r) { return l.centreY < r.centreY; });
        }
        const int children = int(m_nodes.size());
        m_nodes.push_back(Node{});
        m_nodes.push_back(Node{});
        BuildNode(children, begin, middle);
        BuildNode(children + 1, middle, end);
        m_nodes[std::size_t(index)] =
            Node{Union(m_nodes[std::size_t(children)].box, m_nodes[std::size_t(children) + 1].box), children, 0};
    }

    static Box Union(const Box &a, const Box &b)
    {
        return Box{std::min(a.minX, b.minX), std::min(a.minY, b.minY), std::max(a.maxX, b.maxX),
                   std::max(a.maxY, b.maxY)};
    }

    std::vector<Item> m_items;
    std::vector<Node> m_nodes;
    bool m_inOrder = false;
};

// ---------------------------------------------------------------------------
// The outline, indexed for the boundary and edge tests of IsHoleInsideOutline.
//
// - Points on the boundary: the outline's vertices are in the grid of the repeat walk; the edges sit in a
//   box tree with boxes grown by a margin that the test "normalised (b - p) equals normalised (p - a)" can
//   never pass beyond: with two unit vectors within 1e-9 of each other p lies within about 5e-10 times the
//   edge's length of its box, and with two vectors too short to be normalised within 1e-12 of its ends.
// - Edges that meet a hole edge: the box tree again, every candidate decided by SegmentsMeet.
// Edges whose grown box is not finite are tried every time. The tree holds only the edges whose box
// reaches the region of the questions, the box of all hole points with finite coordinates: a hole edge
// with a finite box lies in it, and a point with an infinite coordinate overlaps no finite box.

class OutlineIndex
{
public:
    OutlineIndex(const PointVector &outline, const PointGrid &vertices, const Box &region)
        : m_outline(outline), m_vertices(vertices)
    {
        const int n = int(outline.size());
        std::vector<Box> boxes;
        std::vector<int> ids;
        boxes.reserve(std::size_t(n));
        ids.reserve(std::size_t(n));
        for (int i = 0; i < n; ++i) {
            const p2t::Point &a = Start(i);
            const p2t::Point &b = End(i);
            const Box box = SegmentBox(a, b);
            const double margin = 1e-7 * (std::abs(b.x - a.x) + std::abs(b.y - a.y)) + 2e-12
                + 1e-14 * (std::abs(a.x) + std::abs(a.y) + std::abs(b.x) + std::abs(b.y));
            const Box grown{box.minX - margin, box.minY - margin, box.maxX + margin, box.maxY + margin};
            if (!IsFinite(grown)) {
                m_wildEdges.push_back(i);
                // Between the ends of an edge with a coordinate that is not finite lies nothing: one of
                // the two directions then holds a NaN.
                if (std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(b.x) && std::isfinite(b.y))
                    m_wildFiniteEdges.push_back(i);
            } else if (!BoxesApart(grown, region)) {
                boxes.push_back(grown);
                ids.push_back(i);
            }
        }
        m_tree.Build(boxes, ids, true);
    }

    // True if p is one point with an outline vertex or lies between the ends of an outline edge.
    bool IsOnBoundary(const p2t::Point &p) const
    {
        if (m_vertices.Any(p.x, p.y, [&p](const p2t::Point &v) { return SquaredDistance(p, v) < kSamePointSquared; }))
            return true;
        // A NaN coordinate lies between no ends; the tree would take it for overlapping every box.
        if (std::isnan(p.x) || std::isnan(p.y))
            return false;
        if (m_tree.Any(Box{p.x, p.y, p.x, p.y}, [this, &p](int edge) { return LiesBetween(p, Start(edge), End(edge)); }))
            return true;
        for (int edge : m_wildFiniteEdges) {
            if (LiesBetween(p, Start(edge), End(edge)))
                return true;
        }
        return false;
    }

    // True if some outline edge meets the segment c-d.
    bool MeetsEdge(const p2t::Point &c, const p2t::Point &d) const
    {
        const Box box = SegmentBox(c, d);
        if (!IsFinite(box)) {
            for (int edge = 0; edge < int(m_outline.size()); ++edge) {
                if (SegmentsMeet(Start(edge), End(edge), c, d))
                    return true;
            }
            return false;
        }
        if (m_tree.Any(box, [&](int edge) { return SegmentsMeet(Start(edge), End(edge), c, d); }))
            return true;
        for (int edge : m_wildEdges) {
            if (SegmentsMeet(Start(edge), End(edge), c, d))
                return true;
        }
        return false;
    }

private:
    const p2t::Point &Start(int edge) const { return *m_outline[std::size_t(edge)]; }
    const p2t::Point &End(int edge) const { return *m_outline[std::size_t(edge + 1) % m_outline.size()]; }

    const PointVector &m_outline;
    const PointGrid &m_vertices;
    BoxTree m_tree;
    std::vector<int> m_wildEdges;       // edges whose grown box is not finite
    std::vector<int> m_wildFiniteEdges; // those of them with finite coordinates
};

// ---------------------------------------------------------------------------
// Crossing numbers of many points at once
//
// The count of a point is the number of outline edges for which EdgeCounts holds. All hole points are
// counted together. They are split into groups, again and again, at the median along the longer side of
// their box, and each edge is followed down only while it can't be decided for a whole group: an edge
// that passes no y of a group drops out; one whose x, over the part of its y range that the group spans,
// lies left of the group's box counts for none of its points; one that lies right of it counts for each
// point of the group within its y range. The bounds of that x come from the formula at both ends of the
// part, widened by far more than rounding can move the formula (a few units in the last place of
// |a.x| + |b.x|, or less than 1e-300 where products underflow), so no decision differs from evaluating
// the formula. Edges still undecided at a group of a few points are evaluated point by point.
//
// Edges with a NaN never count. Edges with a coordinate that is infinite or beyond 1e150, where the
// formula may overflow, are evaluated for every point. Points with a NaN are counted by no edge, and
// points with an infinite y by none of the other edges.

class CrossingCounter
{
public:
    CrossingCounter(const PointVector &outline, const std::vector<const p2t::Point *> &points)
        : m_outline(outline), m_counts(points.size(), 0)
    {
        std::vector<int> edges;
        std::vector<int> wild;
        for (int e = 0; e < int(outline.size()); ++e) {
            const p2t::Point &a = Start(e);
            const p2t::Point &b = End(e);
            if (std::isnan(a.x) || std::isnan(a.y) || std::isnan(b.x) || std::isnan(b.y))
                continue; // the formula or the y range gives NaN or nothing for every point
            if (std::abs(a.y - b.y) < kTolerance)
                continue;
            (IsTame(a) && IsTame(b) ? edges : wild).push_back(e);
        }
        std::vector<Query> queries;
        queries.reserve(points.size());
        for (std::size_t i = 0; i < points.size(); ++i) {
            const p2t::Point &p = *points[i];
            if (std::isnan(p.x) || std::isnan(p.y))
                continue;
            for (int e : wild) {
                if (EdgeCounts(Start(e), End(e), p))
                    ++m_counts[i];
            }
            if (std::isfinite(p.y))
                queries.push_back(Query{p.x, p.y, i});
        }
        if (!queries.empty() && !edges.empty())
            CountGroup(queries.data(), queries.data() + queries.size(), edges);
    }

    int Count(std::size_t point) const { return m_counts[point]; }

private:
    struct Query
    {
        double x, y;
        std::size_t index;
    };

    static constexpr std::ptrdiff_t kGroupSize = 8;

    const p2t::Point &Start(int edge) const { return *m_outline[std::size_t(edge)]; }
    const p2t::Point &End(int edge) const { return *m_outline[std::size_t(edge + 1) % m_outline.size()]; }

    static bool IsTame(const p2t::Point &p) { return std::abs(p.x) <= 1e150 && std::abs(p.y) <= 1e150; }

    void CountGroup(Query *begin, Query *end, const std::vector<int> &edges)
    {
        double x0 = begin->x, x1 = begin->x, y0 = begin->y, y1 = begin->y;
        for (const Query *q = begin + 1; q != end; ++q) {
            x0 = std::min(x0, q->x);
            x1 = std::max(x1, q->x);
            y0 = std::min(y0, q->y);
            y1 = std::max(y1, q->y);
        }
        const bool last = end - begin <= kGroupSize;
        std::vector<int> undecided;
        std::vector<std::pair<double, double>> rightOf; // y ranges of edges right of the whole group
        for (int e : edges) {
            const p2t::Point &a = Start(e);
            const p2t::Point &b = End(e);
            const double low = std::min(a.y, b.y);
            const double high = std::max(a.y, b.y);
            if (high <= y0 || low > y1)
                continue;
            if (last) {
                undecided.push_back(e);
                continue;
            }
            const double xa = EdgeXAt(a, b, std::max(low, y0));
            const double xb = EdgeXAt(a, b, std::min(high, y1));
            const double slack = 2.0 * (1e-14 * (std::abs(a.x) + std::abs(b.x)) + 1e-290);
            if (std::max(xa, xb) + slack < x0)
                continue;
            if (std::min(xa, xb) - slack > x1)
                rightOf.emplace_back(low, high);
            else
                undecided.push_back(e);
        }
        // Each edge right of the group counts for its points with low <= y < high: for all of them where
        // its y range holds the group's.
        int forAll = 0;
        rightOf.erase(std::remove_if(rightOf.begin(), rightOf.end(),
                                     [&forAll, y0, y1](const std::pair<double, double> &range) {
                                         const bool all = range.first <= y0 && y1 < range.second;
                                         forAll += all ? 1 : 0;
                                         return all;
                                     }),
                      rightOf.end());
        if (forAll > 0) {
            for (const Query *q = begin; q != end; ++q)
                m_counts[q->index] += forAll;
        }
        if (!rightOf.empty()) {
            std::sort(begin, end, [](const Query &l, const Query &r) { return l.y < r.y; });
            std::vector<int> steps(std::size_t(end - begin) + 1, 0);
            const auto firstNotBelow = [begin, end](double y) {
                return std::lower_bound(begin, end, y, [](const Query &q, double v) { return q.y < v; }) - begin;
            };
            for (const auto &[low, high] : rightOf) {
                ++steps[std::size_t(firstNotBelow(low))];
                --steps[std::size_t(firstNotBelow(high))];
            }
            int running = 0;
            for (std::ptrdiff_t i = 0; i < end - begin; ++i) {
                running += steps[std::size_t(i)];
                m_counts[begin[i].index] += running;
            }
        }
        if (undecided.empty())
            return;
        if (last) {
            for (const Query *q = begin; q != end; ++q) {
                const p2t::Point p(q->x, q->y);
                for (int e : undecided) {
                    if (EdgeCounts(Start(e), End(e), p))
                        ++m_counts[q->index];
                }
            }
            return;
        }
        Query *middle = begin + (end - begin) / 2;
        if (!(x1 - x0 < y1 - y0)) // also for an infinite extent in x
            std::nth_element(begin, middle, end, [](const Query &l, const Query &r) { return l.x < r.x; });
        else
            std::nth_element(begin, middle, end, [](const Query &l, const Query &r) { return l.y < r.y; });
        CountGroup(begin, middle, undecided);
        CountGroup(middle, end, undecided);
    }

    const PointVector &m_outline;
    std::vector<int> m_counts;
};

// ---------------------------------------------------------------------------
// IsHoleInsideOutline

// True if every hole point lies inside the outline by an odd crossing number or on its boundary, and no
// edge of the outline meets an edge of the hole. A point on the boundary passes the first test, but its
// edges meet the outline in the second, so a hole that shares a point with the outline is refused.
// `counts` holds the crossing numbers of the hole's points, in order.
bool IsHoleInsideOutline(const OutlineIndex &outline, const PointVector &hole, const CrossingCounter &counts,
                         std::size_t firstCount)
{
    for (std::size_t k = 0; k < hole.size(); ++k) {
        if (counts.Count(firstCount + k) % 2 == 0 && !outline.IsOnBoundary(*hole[k]))
            return false;
    }
    const std::size_t m = hole.size();
    for (std::size_t k = 0; k < m; ++k) {
        if (outline.MeetsEdge(*hole[k], *hole[(k + 1) % m]))
            return false;
    }
    return true;
}

// ---------------------------------------------------------------------------
// SegmentsCross and FindIntersectingHoles

// The vector from the line through a and b to x, square to the line.
KEZMathVector2D PerpendicularFromLine(const p2t::Point &a, const p2t::Point &b, const p2t::Point &x)
{
    KEZMathLine2D line;
    line.SetOrigin(KEZMathPoint2D(a.x, a.y));
    line.SetVector(KEZMathVector2D(b.x - a.x, b.y - a.y));
    const KEZMathPoint2D foot = line.ProjectPoint(KEZMathPoint2D(x.x, x.y));
    return KEZMathPoint2D(x.x, x.y) - foot;
}

// True if x touches the segment a-b and its two neighbours lie on the same side of the segment's line:
// then the rings only touch there.
bool OnlyTouches(const p2t::Point &x, const p2t::Point &a, const p2t::Point &b, const p2t::Point *neighbour1,
                 const p2t::Point *neighbour2)
{
    if (neighbour1 == nullptr || neighbour2 == nullptr || !TouchesSegment(x, a, b))
        return false;
    return PerpendicularFromLine(a, b, *neighbour1).GetAngleTo(PerpendicularFromLine(a, b, *neighbour2))
        < kTolerance;
}

// Tells a true crossing of the segments p-q and r-s from a touch; holes that merely touch stay.
bool SegmentsCross(const p2t::Point *p, const p2t::Point *q, const p2t::Point *r, const p2t::Point *s,
                   const p2t::Point *beforeP, const p2t::Point *afterQ, const p2t::Point *beforeR,
                   const p2t::Point *afterS)
{
    if (p == nullptr || q == nullptr || r == nullptr || s == nullptr)
        return false;
    if (BoxesApart(SegmentBox(*p, *q), SegmentBox(*r, *s)))
        return false;
    const KEZMathVector pq(q->x - p->x, q->y - p->y, 0.0);
    const KEZMathVector rs(s->x - r->x, s->y - r->y, 0.0);
    if ((pq ^ KEZMathVector(r->x - p->x, r->y - p->y, 0.0)).GetZ()
            * (pq ^ KEZMathVector(s->x - p->x, s->y - p->y, 0.0)).GetZ()
        > 0)
        return false;
    if ((rs ^ KEZMathVector(p->x - r->x, p->y - r->y, 0.0)).GetZ()
            * (rs ^ KEZMathVector(q->x - r->x, q->y - r->y, 0.0)).GetZ()
        > 0)
        return false;
    if (OnlyTouches(*r, *p, *q, s, beforeR))
        return false;
    if (OnlyTouches(*s, *p, *q, r, afterS))
        return false;
    if (OnlyTouches(*p, *r, *s, q, beforeP))
        return false;
    if (OnlyTouches(*q, *r, *s, p, afterQ))
        return false;
    return true;
}

// The holes that cross another hole: for each pair i < j with a crossing of their edges, i and then j,
// each once, the pairs taken in the order of (i, j). Only the existence of a crossing matters for a pair,
// so the order in which its edges are tried doesn't change the result. Candidate pairs are the holes
// whose boxes overlap, found by a box tree of the holes; between two candidates, the edges of the lower
// hole, as p to q, go against those edges of the other whose boxes overlap theirs, all of them for small
// holes, else those that a box tree of the larger hole's edges finds. A hole with a coordinate that isn't
// finite goes against every other hole, edge by edge.
QList<int> FindIntersectingHoles(const std::vector<const PointVector *> &holes)
{
    QList<int> result;
    const int count = int(holes.size());
    if (count < 2)
        return result;

    const auto point = [&holes](int hole, int index) {
        const PointVector &ring = *holes[std::size_t(hole)];
        const int m = int(ring.size());
        return ring[std::size_t(((index % m) + m) % m)];
    };
    const auto edgeBox = [&point](int hole, int k) { return SegmentBox(*point(hole, k), *point(hole, k + 1)); };
    // Edge k of hole i, the lower, against edge l of hole j.
    const auto cross = [&point](int i, int k, int j, int l) {
        return SegmentsCross(point(i, k), point(i, k + 1), point(j, l), point(j, l + 1), point(i, k - 1),
                             point(i, k + 2), point(j, l - 1), point(j, l + 2));
    };

    std::vector<Box> holeBoxes;
    std::vector<int> ids;
    std::vector<int> wild;
    for (int h = 0; h < count; ++h) {
        const PointVector &hole = *holes[std::size_t(h)];
        Box box = edgeBox(h, 0);
        for (int k = 1; k < int(hole.size()); ++k) {
            const Box next = edgeBox(h, k);
            box = Box{std::min(box.minX, next.minX), std::min(box.minY, next.minY), std::max(box.maxX, next.maxX),
                      std::max(box.maxY, next.maxY)};
        }
        bool finite = IsFinite(box);
        for (const p2t::Point *p : hole)
            finite = finite && std::isfinite(p->x) && std::isfinite(p->y);
        if (finite) {
            holeBoxes.push_back(box);
            ids.push_back(h);
        } else {
            wild.push_back(h);
        }
    }

    std::vector<std::unique_ptr<BoxTree>> edgeTrees(holes.size());
    const auto edgeTree = [&](int h) -> const BoxTree & {
        std::unique_ptr<BoxTree> &tree = edgeTrees[std::size_t(h)];
        if (!tree) {
            const int m = int(holes[std::size_t(h)]->size());
            std::vector<Box> boxes;
            std::vector<int> edges;
            for (int k = 0; k < m; ++k) {
                boxes.push_back(edgeBox(h, k));
                edges.push_back(k);
            }
            tree = std::make_unique<BoxTree>();
            tree->Build(boxes, edges, true); // a ring: its edges follow each other
        }
        return *tree;
    };
    constexpr std::size_t kDirectPairs = 256;
    // Whether the finite holes i < j cross.
    const auto holesCross = [&](int i, int j) {
        const int mi = int(holes[std::size_t(i)]->size());
        const int mj = int(holes[std::size_t(j)]->size());
        if (std::size_t(mi) * std::size_t(mj) <= kDirectPairs) {
            for (int k = 0; k < mi; ++k) {
                for (int l = 0; l < mj; ++l) {
                    if (cross(i, k, j, l))
                        return true;
                }
            }
            return false;
        }
        if (mi >= mj) {
            const BoxTree &tree = edgeTree(i);
            for (int l = 0; l < mj; ++l) {
                if (tree.Any(edgeBox(j, l), [&](int k) { return cross(i, k, j, l); }))
                    return true;
            }
            return false;
        }
        const BoxTree &tree = edgeTree(j);
        for (int k = 0; k < mi; ++k) {
            if (tree.Any(edgeBox(i, k), [&](int l) { return cross(i, k, j, l); }))
                return true;
        }
        return false;
    };

    std::vector<std::pair<int, int>> pairs;
    BoxTree tree;
    tree.Build(holeBoxes, ids);
    tree.ForEachOverlappingPair([&](int a, int b) {
        const int i = std::min(a, b), j = std::max(a, b);
        if (holesCross(i, j))
            pairs.emplace_back(i, j);
    });
    for (int w : wild) {
        for (int other = 0; other < count; ++other) {
            if (other == w || (other < w && std::binary_search(wild.begin(), wild.end(), other)))
                continue; // the same hole, or a pair of two such holes tried already
            const int i = std::min(w, other), j = std::max(w, other);
            bool found = false;
            for (int k = 0; k < int(holes[std::size_t(i)]->size()) && !found; ++k) {
                for (int l = 0; l < int(holes[std::size_t(j)]->size()) && !found; ++l)
                    found = cross(i, k, j, l);
            }
            if (found)
                pairs.emplace_back(i, j);
        }
    }

    std::sort(pairs.begin(), pairs.end());
    std::vector<bool> listed(holes.size(), false);
    for (const auto &[i, j] : pairs) {
        for (int hole : {i, j}) {
            if (!listed[std::size_t(hole)]) {
                listed[std::size_t(hole)] = true;
                result.append(hole);
            }
        }
    }
    return result;
}

// ---------------------------------------------------------------------------
// Vertex keys
//
// A vertex key is QByteArray::number(x, 'f', 3), a comma, the same of y, a comma, the same of z. The keys
// are not built as text: each coordinate is reduced to what its text says, a whole number of thousandths
// with a flag for "-0.000", which is what the text of a negative value that rounds to zero reads. Where
// the rounding of v * 1000 can't be told safely (near a half, or beyond 1e9) the text itself is made and
// read back, and beyond 2^53 or for NaN and infinities the text is kept as it is. Equal texts thus give
// equal parts and different texts different parts, as the text keys would.

// One coordinate of a key: a value and its kind, 0 for a number of thousandths, 1 for "-0.000" and 2 for
// the number of a kept text.
struct KeyPart
{
    std::int64_t value;
    std::uint8_t kind;
};

struct VertexKey
{
    std::int64_t value[3];
    std::uint8_t kind[3];
    bool operator==(const VertexKey &other) const
    {
        return value[0] == other.value[0] && value[1] == other.value[1] && value[2] == other.value[2]
            && kind[0] == other.kind[0] && kind[1] == other.kind[1] && kind[2] == other.kind[2];
    }
};

class KeyMaker
{
public:
    VertexKey Make(double x, double y, double z)
    {
        const KeyPart px = Part(x), py = Part(y), pz = Part(z);
        return VertexKey{{px.value, py.value, pz.value}, {px.kind, py.kind, pz.kind}};
    }

private:
    KeyPart Part(double v)
    {
        if (std::abs(v) < 1e9) {
            const double thousandths = v * 1000.0; // off by at most 2^-13 here
            const double whole = std::floor(thousandths);
            const double fraction = thousandths - whole;
            if (std::abs(fraction - 0.5) > 1e-3) {
                const std::int64_t value = std::int64_t(whole) + (fraction > 0.5 ? 1 : 0);
                return KeyPart{value, std::uint8_t(value == 0 && v < 0 ? 1 : 0)};
            }
        }
        return FromText(v);
    }

    KeyPart FromText(double v)
    {
        const QByteArray text = QByteArray::number(v, 'f', 3);
        if (std::abs(v) < 0x1p53) {
            // "[-]digits.ddd": at most 16 digits before the point, so the thousandths fit 64 bits.
            std::int64_t value = 0;
            for (char c : text) {
                if (c >= '0' && c <= '9')
                    value = value * 10 + (c - '0');
            }
            const bool negative = text.startsWith('-');
            if (value == 0)
                return KeyPart{0, std::uint8_t(negative ? 1 : 0)};
            return KeyPart{negative ? -value : value, 0};
        }
        const auto known = m_texts.constFind(text);
        if (known != m_texts.constEnd())
            return KeyPart{*known, 2};
        const std::int64_t number = m_texts.size();
        m_texts.insert(text, number);
        return KeyPart{number, 2};
    }

    QHash<QByteArray, std::int64_t> m_texts;
};

inline std::uint64_t HashOf(const VertexKey &key)
{
    std::uint64_t h = 0x84222325CBF29CE4ull;
    for (int i = 0; i < 3; ++i) {
        h ^= std::uint64_t(key.value[i]) + 0x9E3779B97F4A7C15ull + std::uint64_t(key.kind[i]) * 0x100000001B3ull;
        h *= 0xBF58476D1CE4E5B9ull;
        h ^= h >> 29;
    }
    h *= 0x94D049BB133111EBull;
    h ^= h >> 32;
    return h;
}

// An open-addressing map from vertex keys to vertex positions. The keys themselves live in `keys`, one a
// position; a slot holds a position and part of the key's hash.
class VertexMap
{
public:
    VertexMap(const std::vector<VertexKey> &keys, std::size_t expected) : m_keys(keys)
    {
        std::size_t capacity = 16;
        while (capacity < 2 * expected)
            capacity *= 2;
        m_slots.assign(capacity, Slot{0, -1});
        m_mask = capacity - 1;
    }

    // Asks the processor to fetch the first slot of a hash that is going to be looked up soon.
    void Prefetch(std::uint64_t hash) const
    {
#if defined(__GNUC__) || defined(__clang__)
        const Slot *slot = m_slots.data() + (std::size_t(hash >> 32) & m_mask);
        asm volatile("" : "+r"(slot)); // keeps GCC from dropping the prefetch
        __builtin_prefetch(slot);
#else
        Q_UNUSED(hash);
#endif
    }

    // The position of the key if it is there; otherwise enters it with `position` (keys[position] must be
    // the key) and gives -1.
    int InsertIfAbsent(const VertexKey &key, std::uint64_t hash, int position)
    {
        if (2 * (m_used + 1) > m_slots.size())
            Grow();
        Slot &slot = m_slots[Find(key, hash)];
        if (slot.position >= 0)
            return slot.position;
        ++m_used;
        slot = Slot{std::uint32_t(hash), position};
        return -1;
    }

private:
    struct Slot
    {
        std::uint32_t hash;
        int position;
    };

    std::size_t Find(const VertexKey &key, std::uint64_t hash) const
    {
        std::size_t index = std::size_t(hash >> 32) & m_mask;
        while (m_slots[index].position >= 0
               && (m_slots[index].hash != std::uint32_t(hash) || !(m_keys[std::size_t(m_slots[index].position)] == key)))
            index = (index + 1) & m_mask;
        return index;
    }

    void Grow()
    {
        std::vector<Slot> old;
        old.swap(m_slots);
        m_slots.assign(old.size() * 2, Slot{0, -1});
        m_mask = m_slots.size() - 1;
        for (const Slot &slot : old) {
            if (slot.position >= 0) {
                const VertexKey &key = m_keys[std::size_t(slot.position)];
                m_slots[Find(key, HashOf(key))] = slot;
            }
        }
    }

    const std::vector<VertexKey> &m_keys;
    std::vector<Slot> m_slots;
    std::size_t m_mask = 0;
    std::size_t m_used = 0;
};

// ---------------------------------------------------------------------------
// BuildSurfaceFromTriangles

// The corners of the triangles, three a triangle as the triangulator gave them; corner k stands for
// KEZMathPoint(x, y, 0.0) of its point. Kept as pointers into the arena, so that a point met in several
// triangles is looked up once.
struct TriangleCorners
{
    std::vector<const p2t::Point *> points;
    const PointArena *arena = nullptr;
    // The mesh point that each arena point was made from, or -1 for the points of holes left out.
    std::vector<int> meshPointOfArena;
};

// The surface of the mesh points and the triangles. Mesh points enter the key map in order, a later equal
// key replacing the earlier position; a corner whose key is there takes that vertex, any other becomes a
// new vertex at the end. All vertices are written, used or not. Null when the counts can't be numbered by
// an int.
//
// Two shortcuts give the same result with fewer look-ups: the mesh points enter from the last to the
// first and only where their key is new, so that each learns the last mesh point of its key, which is
// what entering them in order with replacement leaves in the map; and a corner made from a mesh point
// whose key reads "0.000" in z has that mesh point's key, x and y being the same numbers, so it takes
// that last mesh point without a look-up.
KEZVisSurfacePrimitive *BuildSurfaceFromTriangles(const KEZMathSetOfPoints &meshPoints,
                                                  const TriangleCorners &triangleCorners)
{
    const std::size_t cornerCount = triangleCorners.points.size();
    const std::size_t triangleCount = cornerCount / 3;
    const std::size_t meshCount = std::size_t(meshPoints.size());
    constexpr std::size_t kMaxCount = std::size_t(INT_MAX) / 3;
    if (triangleCount > kMaxCount || meshCount > kMaxCount)
        return nullptr;

    KeyMaker keyMaker;
    std::vector<VertexKey> keys; // the key of each vertex position
    keys.reserve(meshCount + triangleCorners.arena->Size());
    for (std::size_t i = 0; i < meshCount; ++i) {
        const KEZMathPoint &point = meshPoints.at(qsizetype(i));
        keys.push_back(keyMaker.Make(point.GetX(), point.GetY(), point.GetZ()));
    }
    std::vector<std::uint64_t> hashes(meshCount);
    for (std::size_t i = 0; i < meshCount; ++i)
        hashes[i] = HashOf(keys[i]);
    VertexMap map(keys, meshCount + triangleCorners.arena->Size());
    std::vector<int> lastOfKey(meshCount);
    constexpr std::size_t kAhead = 16;
    for (std::size_t i = meshCount; i-- > 0;) {
        if (i >= kAhead)
            map.Prefetch(hashes[i - kAhead]);
        const int later = map.InsertIfAbsent(keys[i], hashes[i], int(i));
        lastOfKey[i] = later >= 0 ? later : int(i);
    }

    // The vertex of each point of the triangulator, where it follows from its mesh point; -1 where it is
    // still to be looked up.
    const VertexKey zero = keyMaker.Make(0.0, 0.0, 0.0);
    const std::size_t arenaSize = triangleCorners.arena->Size();
    std::vector<int> vertexOfArena(arenaSize, -1);
    for (std::size_t a = 0; a < arenaSize; ++a) {
        const int mesh = triangleCorners.meshPointOfArena[a];
        if (mesh >= 0 && keys[std::size_t(mesh)].value[2] == zero.value[2]
            && keys[std::size_t(mesh)].kind[2] == zero.kind[2])
            vertexOfArena[a] = lastOfKey[std::size_t(mesh)];
    }

    std::vector<const p2t::Point *> added; // corners that became new vertices
    std::unique_ptr<int[]> indexes(new int[3 * triangleCount]);
    std::size_t vertexCount = meshCount;
    for (std::size_t c = 0; c < 3 * triangleCount; ++c) {
        const p2t::Point *corner = triangleCorners.points[c];
        const std::ptrdiff_t slot = triangleCorners.arena->IndexOf(corner);
        int vertex = slot >= 0 ? vertexOfArena[std::size_t(slot)] : -1;
        if (vertex < 0) {
            const VertexKey key = keyMaker.Make(corner->x, corner->y, 0.0);
            keys.push_back(key);
            vertex = map.InsertIfAbsent(key, HashOf(key), int(vertexCount));
            if (vertex < 0) {
                if (vertexCount >= kMaxCount)
                    return nullptr;
                vertex = int(vertexCount++);
                added.push_back(corner);
            } else {
                keys.pop_back();
            }
            if (slot >= 0)
                vertexOfArena[std::size_t(slot)] = vertex;
        }
        indexes[c] = vertex;
    }

    std::unique_ptr<double[]> coords(new double[3 * vertexCount]);
    for (std::size_t i = 0; i < meshCount; ++i) {
        double *v = coords.get() + 3 * i;
        meshPoints.at(qsizetype(i)).GetCoord(v[0], v[1], v[2]);
    }
    for (std::size_t i = 0; i < added.size(); ++i) {
        double *v = coords.get() + 3 * (meshCount + i);
        v[0] = added[i]->x;
        v[1] = added[i]->y;
        v[2] = 0.0;
    }
    return KEZVisRepFactoryPrivate::CreateSurface(qint64(vertexCount), std::move(coords), qint64(triangleCount),
                                                  std::move(indexes), nullptr);
}

// ---------------------------------------------------------------------------
// The walls of a solid

struct Mesh
{
    std::vector<double> coords;
    std::vector<int> indexes;
};

// Appends the wall of one ring: each point of the simplified ring, then the same point raised by
// `extrusion`, with two triangles between neighbours and two that close the ring.
void AppendWall(Mesh &wall, const KEZMathSetOfPoints &ring, double extrusion)
{
    KEZMathSetOfPoints simplified = ring;
    SimplifyRing(simplified);
    const int b = int(wall.coords.size() / 3);
    const int count = int(simplified.size());
    for (int j = 0; j < count; ++j) {
        const KEZMathPoint &point = simplified.at(j);
        wall.coords.insert(wall.coords.end(), {point.GetX(), point.GetY(), point.GetZ()});
        wall.coords.insert(wall.coords.end(), {point.GetX(), point.GetY(), point.GetZ() + extrusion});
        if (j >= 1) {
            wall.indexes.insert(wall.indexes.end(), {b + 2 * j - 2, b + 2 * j - 1, b + 2 * j});
            wall.indexes.insert(wall.indexes.end(), {b + 2 * j, b + 2 * j - 1, b + 2 * j + 1});
            if (j == count - 1) {
                wall.indexes.insert(wall.indexes.end(), {b, b + 2 * j + 1, b + 1});
                wall.indexes.insert(wall.indexes.end(), {b + 2 * j, b + 2 * j + 1, b});
            }
        }
    }
}

template <typename T>
std::unique_ptr<T[]> ArrayOf(const std::vector<T> &values)
{
    std::unique_ptr<T[]> array(new T[values.size()]);
    std::copy(values.begin(), values.end(), array.get());
    return array;
}

} // namespace

// ---------------------------------------------------------------------------
// The operations

KEZVisSurfacePrimitive *KEZVisRepFactory::CreateFilledPolygonPrimitive(QList<KEZMathSetOfPoints> const &rings)
{
    if (rings.isEmpty())
        return nullptr;

    qsizetype total = 0;
    const KEZMathPoint *first = nullptr;
    for (const KEZMathSetOfPoints &ring : rings) {
        total += ring.size();
        if (first == nullptr && !ring.isEmpty())
            first = &ring.first();
    }
    if (total < 3)
        return nullptr;

    // The polygon must lie in a plane of constant z, that of the very first point.
    const double z0 = first->GetZ();
    for (const KEZMathSetOfPoints &ring : rings) {
        for (const KEZMathPoint &point : ring) {
            if (std::abs(z0 - point.GetZ()) > kTolerance)
                return nullptr;
        }
    }

    PointArena arena{std::size_t(total)};
    KEZMathSetOfPoints meshPoints;

    KEZMathSetOfPoints outlineRing = rings.first();
    SimplifyRing(outlineRing);
    PointVector outline;
    PointGrid outlineGrid(std::size_t(outlineRing.size()));
    RepeatWalk(outlineRing, arena, outline, &outlineGrid);
    if (outline.size() < 3)
        return nullptr;
    meshPoints.reserve(total);
    for (std::size_t i = 0; i < outline.size(); ++i)
        meshPoints.append(outlineRing.at(qsizetype(i)));

    // Every walked hole stays here until the triangulator is gone, the rejected ones too.
    struct WalkedHole
    {
        KEZMathSetOfPoints simplified;
        PointVector points;
    };
    std::vector<WalkedHole> walkedHoles;
    for (qsizetype i = 1; i < rings.size(); ++i) {
        const KEZMathSetOfPoints &ring = rings.at(i);
        if (ring.size() < 3)
            continue;
        walkedHoles.emplace_back();
        WalkedHole &hole = walkedHoles.back();
        hole.simplified = ring;
        SimplifyRing(hole.simplified);
        RepeatWalk(hole.simplified, arena, hole.points, nullptr);
    }

    std::vector<int> meshPointOfArena(arena.Size(), -1);
    for (std::size_t i = 0; i < outline.size(); ++i)
        meshPointOfArena[i] = int(i);
    std::vector<const PointVector *> holes;
    if (!walkedHoles.empty()) {
        // The crossing numbers of all hole points are counted in one go.
        std::vector<const p2t::Point *> holePoints;
        for (const WalkedHole &hole : walkedHoles)
            holePoints.insert(holePoints.end(), hole.points.begin(), hole.points.end());
        const CrossingCounter counts(outline, holePoints);
        Box region{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(),
                   -std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
        for (const p2t::Point *p : holePoints) {
            if (std::isfinite(p->x) && std::isfinite(p->y))
                region = Box{std::min(region.minX, p->x), std::min(region.minY, p->y), std::max(region.maxX, p->x),
                             std::max(region.maxY, p->y)};
        }
        const OutlineIndex outlineIndex(outline, outlineGrid, region);
        std::size_t firstCount = 0;
        for (const WalkedHole &hole : walkedHoles) {
            if (IsHoleInsideOutline(outlineIndex, hole.points, counts, firstCount)) {
                holes.push_back(&hole.points);
                for (std::size_t k = 0; k < hole.points.size(); ++k) {
                    meshPointOfArena[std::size_t(arena.IndexOf(hole.points[k]))] = int(meshPoints.size());
                    meshPoints.append(hole.simplified.at(qsizetype(k)));
                }
            }
            firstCount += hole.points.size();
        }
    }

    TriangleCorners corners;
    corners.arena = &arena;
    corners.meshPointOfArena = std::move(meshPointOfArena);
    {
        auto cdt = std::make_unique<p2t::CDT>(outline);
        const QList<int> crossing = FindIntersectingHoles(holes);
        std::vector<bool> dropped(holes.size(), false);
        for (int hole : crossing)
            dropped[std::size_t(hole)] = true;
        for (std::size_t h = 0; h < holes.size(); ++h) {
            if (!dropped[h])
                cdt->AddHole(*holes[h]);
        }
        cdt->Triangulate();
        const std::vector<p2t::Triangle *> triangles = cdt->GetTriangles();
        corners.points.reserve(3 * triangles.size());
        for (const p2t::Triangle *triangle : triangles) {
            const p2t::Point *a = triangle ? triangle->GetPoint(0) : nullptr;
            const p2t::Point *b = triangle ? triangle->GetPoint(1) : nullptr;
            const p2t::Point *c = triangle ? triangle->GetPoint(2) : nullptr;
            if (a == nullptr || b == nullptr || c == nullptr)
                continue; // never handed out; a triangle without its corners adds nothing
            corners.points.insert(corners.points.end(), {a, b, c});
        }
        // The triangulator goes first; the points stay until the surface is built.
    }

    return BuildSurfaceFromTriangles(meshPoints, corners);
}

KEZVisRep *KEZVisRepFactory::CreateFilledPolygonRep(QList<KEZMathSetOfPoints> const &rings,
                                                    KEZVisOptions const &options, double extrusion, bool solid)
{
    std::unique_ptr<KEZVisSurfacePrimitive> base(CreateFilledPolygonPrimitive(rings));
    if (!base)
        return nullptr;

    std::unique_ptr<KEZVisSurfacePrimitive> top;
    std::unique_ptr<KEZVisSurfacePrimitive> walls;
    if (solid) {
        // The top cap: the base raised by `extrusion`, with the same triangles in the same order, so that
        // the winding isn't turned.
        const QList<double> baseCoords = base->GetVertexCoordinatesAsDouble();
        const QList<long> baseIndexes = base->GetTriangleVertexIndexes();
        std::unique_ptr<double[]> coords(new double[std::size_t(baseCoords.size())]);
        for (qsizetype i = 0; i < baseCoords.size(); ++i)
            coords[std::size_t(i)] = i % 3 == 2 ? baseCoords.at(i) + extrusion : baseCoords.at(i);
        std::unique_ptr<int[]> indexes(new int[std::size_t(baseIndexes.size())]);
        for (qsizetype i = 0; i < baseIndexes.size(); ++i)
            indexes[std::size_t(i)] = int(baseIndexes.at(i));
        top.reset(KEZVisRepFactoryPrivate::CreateSurface(base->GetNumVertexes(), std::move(coords),
                                                         base->GetNumTriangles(), std::move(indexes), nullptr));

        // The walls stand on the input rings themselves, rejected holes included, at their own z.
        Mesh wall;
        for (const KEZMathSetOfPoints &ring : rings)
            AppendWall(wall, ring, extrusion);
        const std::size_t wallVertexes = wall.coords.size() / 3;
        const std::size_t wallTriangles = wall.indexes.size() / 3;
        if (wallVertexes > std::size_t(INT_MAX) / 3 || wallTriangles > std::size_t(INT_MAX) / 3)
            return nullptr;
        walls.reset(KEZVisRepFactoryPrivate::CreateSurface(qint64(wallVertexes), ArrayOf(wall.coords),
                                                           qint64(wallTriangles), ArrayOf(wall.indexes), nullptr));
    }

    QList<const KEZVisPrimitive *> primitives{base.get()};
    if (top)
        primitives.append(top.get());
    if (walls)
        primitives.append(walls.get());
    auto *rep = new KEZVisRepGraphics(primitives, options);
    base.release();
    top.release();
    walls.release();
    return rep;
}
