// Hole tests for the filled polygons of KEZVisRepFactory: whether a hole lies inside the outline, and
// which holes cross each other.
//
// Several of these rules are written as scans over all points or all pairs of edges. The code below gives
// exactly the results of those scans, but finds the candidates through a hash grid, box trees and a
// recursive split of the hole points, so that the whole runs in about n log n: every index only narrows
// down the candidates, and the decision on each candidate is the rule's own formula, evaluated as written.

#include "factory/KEZVisRepFactoryHoleTests_p.h"

#include <KEZMathLine2D.h>
#include <KEZMathPoint2D.h>
#include <KEZMathVector.h>
#include <KEZMathVector2D.h>

#include <QList>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace KEZVisFilledPolygon {

namespace {

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

} // namespace

// ---------------------------------------------------------------------------
// The stage

HoleSelection SelectHoles(const CleanedRings &rings)
{
    HoleSelection selection;
    const PointVector &outline = rings.outline.points;
    if (!rings.holes.empty()) {
        // The crossing numbers of all hole points are counted in one go.
        std::vector<const p2t::Point *> holePoints;
        for (const WalkedRing &hole : rings.holes)
            holePoints.insert(holePoints.end(), hole.points.begin(), hole.points.end());
        const CrossingCounter counts(outline, holePoints);
        Box region{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(),
                   -std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
        for (const p2t::Point *p : holePoints) {
            if (std::isfinite(p->x) && std::isfinite(p->y))
                region = Box{std::min(region.minX, p->x), std::min(region.minY, p->y), std::max(region.maxX, p->x),
                             std::max(region.maxY, p->y)};
        }
        const OutlineIndex outlineIndex(outline, rings.outlineGrid, region);
        std::size_t firstCount = 0;
        for (const WalkedRing &hole : rings.holes) {
            if (IsHoleInsideOutline(outlineIndex, hole.points, counts, firstCount))
                selection.inside.push_back(&hole);
            firstCount += hole.points.size();
        }
    }

    std::vector<const PointVector *> holes;
    holes.reserve(selection.inside.size());
    for (const WalkedRing *hole : selection.inside)
        holes.push_back(&hole->points);
    const QList<int> crossing = FindIntersectingHoles(holes);
    std::vector<bool> dropped(holes.size(), false);
    for (int hole : crossing)
        dropped[std::size_t(hole)] = true;
    for (std::size_t h = 0; h < holes.size(); ++h) {
        if (!dropped[h])
            selection.triangulated.push_back(holes[h]);
    }
    return selection;
}

} // namespace KEZVisFilledPolygon
