// The sweep-line constrained Delaunay triangulation behind p2t::CDT.
#ifndef KEZ_TRIANGULATION_SWEEP_P_H
#define KEZ_TRIANGULATION_SWEEP_P_H

#include "FrontIndex_p.h"
#include "LargeArray_p.h"
#include "Point.h"
#include "Predicates_p.h"
#include "Triangle.h"

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace p2t {
namespace detail {

struct TestHooks;

// The stack of (triangle, edge) pairs that wait for the in-circle test. Every point and every flip
// pushes a few, so a push is a store and a compare inline; only growing the storage is a call.
class EdgeStack
{
public:
    bool empty() const { return m_size == 0; }
    void clear() { m_size = 0; }
    const std::pair<int, int> &back() const { return m_items[m_size - 1]; }
    void pop_back() { --m_size; }
    void emplace_back(int triangle, int edge)
    {
        if (m_size == m_items.size())
            Grow();
        m_items[m_size++] = {triangle, edge};
    }

private:
    void Grow() { m_items.resize(m_items.empty() ? 64 : 2 * m_items.size()); }

    std::vector<std::pair<int, int>> m_items;
    std::size_t m_size = 0;
};

// One triangulation run, by the sweep or, where the sweep's work outgrows its budget, by incremental
// insertion. Vertices are numbered in sweep order (y, then x), and renumbered in their order of
// insertion while incremental insertion runs; the two artificial points of the sweep follow the real
// ones, and incremental insertion adds the three corners of its enclosing triangle after them.
// Triangles live in one pool and refer to each other by index: vertex i of a triangle faces edge i,
// neighbour i lies across edge i, and bit i of constrained marks edge i as an outline or hole edge.
// Every triangle is counter-clockwise.
class Sweep
{
public:
    explicit Sweep(const std::vector<std::vector<Point *>> &rings);

    // Triangulates and appends the triangles inside the outline to out.
    void Run(LargeVector<Triangle> &out);

private:
    struct alignas(32) Tri
    {
        int v[3];
        int n[3];
        std::uint8_t constrained;
    };

    // One entry of an edge event, remembered to detect an edge event that comes back to where it was.
    struct EdgeEntry
    {
        const void *context;
        int edgeStart;
        int edgeEnd;
        int triangle;
        int point;
        bool operator==(const EdgeEntry &o) const
        {
            return context == o.context && edgeStart == o.edgeStart && edgeEnd == o.edgeEnd
                   && triangle == o.triangle && point == o.point;
        }
    };

    bool Prepare();
    struct RingShape
    {
        std::size_t reflex = 0;   // vertices turning away from the region
        double squaredRuns = 0.0; // sum of the squared lengths of runs turning one way
    };
    void MeasureRing(const std::vector<int> &ring, bool outline, RingShape &shape) const;
    template <typename Visit>
    void ForEachRingEdge(Visit visit) const;
    void FileEdgesByUpperEnd();
    void StartSweep();
    void SweepPoints();
    void PointEvent(int p);
    void FillVertex(int n);
    void FillSmallHoles(int p);
    void FillBasin(int p);
    void EdgeEvents(int p);
    void EdgeEvent(int start, int p);
    int FillPocket(int from, int to, int boundary);
    int InsertSegment(int from, int to, int &pocket);
    struct EdgeRef
    {
        int u, w; // the edge's vertices
        int hint; // a triangle that had the edge when it was noted
    };
    bool FindEdge(const EdgeRef &edge, int &t, int &i);
    bool InsertIncrementally();
    bool IsConvexOutline() const;
    bool InsertAroundConvexOutline();
    void AddOutsideOutlineEdge(int inner, int edge, int u, int w, int v);
    void SplitOutlineEdge(int t, int i, int v);
    void InsertPointsIncrementally();
    void RelabelInInsertionOrder(const LargeVector<int> &order);
    LargeVector<int> RingAnchors() const;
    void UndoRelabelling();
    // A vertex's number during incremental insertion, from its number in sweep order.
    int InsertedAs(int v) const { return m_insertedAs.empty() ? v : m_insertedAs[static_cast<std::size_t>(v)]; }
    int Locate(int p, int start, int &edge, std::uint64_t &steps) const;
    void SplitTriangle(int t, int p);
    void SplitEdge(int t, int e, int p);
    void Finalize(LargeVector<Triangle> &out);
    void ReleaseBuildingArrays();
    void RestoreDelaunay(const LargeVector<int> &result, const LargeVector<char> &inside);
    int FindStartTriangle(int v0, int v1, bool insideOnLeft);
    void BreakFrontAround(int v);
    std::string FindInconsistency() const;
    void Verify(const char *where, int p);

    int NewTriangle(int a, int b, int c);
    void LinkToExisting(int t, int edge, int other);
    void MarkConstrained(int t, int a, int b);
    void Flip(int t, int i, int o, int j);
    void Repoint(int neighbor, int previous, int replacement);
    // Adds work (flips, steps along the front) to the run's count; beyond the budget the sweep gives
    // way to incremental insertion.
    void Charge(std::uint64_t work);
    bool Legalize(bool general);
    void MapFront(int t);
    // Calls visit(t, i) for the triangles t around v (vertex i of t is v), counter-clockwise from
    // some triangle and, if the fan is open, then clockwise from it, until visit answers true.
    template <typename Visit>
    void TurnAround(int v, Visit visit);
    void RemoveFromFront(int v);

    Tri &TriangleAt(int t) { return m_tris[static_cast<std::size_t>(t)]; }
    int IndexOf(int t, int v) const
    {
        const Tri &tri = m_tris[static_cast<std::size_t>(t)];
        return tri.v[0] == v ? 0 : tri.v[1] == v ? 1 : tri.v[2] == v ? 2 : -1;
    }
    int IndexOfNeighbor(int t, int neighbor) const
    {
        const Tri &tri = m_tris[static_cast<std::size_t>(t)];
        return tri.n[0] == neighbor ? 0 : tri.n[1] == neighbor ? 1 : tri.n[2] == neighbor ? 2 : -1;
    }
    // Index of the vertex of t that is neither a nor b.
    int IndexOfThird(int t, int a, int b) const
    {
        const Tri &tri = m_tris[static_cast<std::size_t>(t)];
        for (int k = 0; k < 3; ++k)
            if (tri.v[k] != a && tri.v[k] != b)
                return k;
        return -1;
    }
    int Rank(int v) const { return m_rank[static_cast<std::size_t>(v)]; }
    int VertexOfRank(int r) const { return m_vertexOfRank[static_cast<std::size_t>(r)]; }
    double X(int v) const { return m_xy[static_cast<std::size_t>(v)].x; }
    double Y(int v) const { return m_xy[static_cast<std::size_t>(v)].y; }
    int &NextOf(int v) { return m_links[static_cast<std::size_t>(v)].next; }
    int NextOf(int v) const { return m_links[static_cast<std::size_t>(v)].next; }
    int &PrevOf(int v) { return m_links[static_cast<std::size_t>(v)].prev; }
    int PrevOf(int v) const { return m_links[static_cast<std::size_t>(v)].prev; }
    int &FrontTriangleOf(int v) { return m_links[static_cast<std::size_t>(v)].frontTriangle; }
    int FrontTriangleOf(int v) const { return m_links[static_cast<std::size_t>(v)].frontTriangle; }
    int &TriangleOf(int v) { return m_links[static_cast<std::size_t>(v)].triangle; }
    int TriangleOf(int v) const { return m_links[static_cast<std::size_t>(v)].triangle; }
    int Tail() const { return m_count; }
    int Head() const { return m_count + 1; }
    bool IsArtificial(int v) const { return v >= m_count; }
    int Orient(int a, int b, int c) const
    {
        return OrientWithTolerance(X(a), Y(a), X(b), Y(b), X(c), Y(c));
    }
    int OrientExact(int a, int b, int c) const { return OrientSign(X(a), Y(a), X(b), Y(b), X(c), Y(c)); }

    const std::vector<std::vector<Point *>> &m_rings;
    TestHooks *m_hooks = nullptr;

    int m_count = 0;                   // real vertices
    // What the sweep knows about a vertex, in two arrays of 16-byte records: its scaled coordinates
    // (all that the walks along constrained edges and the predicates read), and its links: its
    // neighbours on the advancing front (-1 off the front), the triangle below the front edge to its
    // successor, and some triangle around it.
    struct alignas(16) Coordinates
    {
        double x, y;
    };
    struct alignas(16) Links
    {
        int next = -1, prev = -1;
        int frontTriangle = -1;
        int triangle = -1;
    };
    LargeVector<Coordinates> m_xy; // real vertices, tail and head, then any enclosing-triangle corners
    LargeVector<Links> m_links;
    LargeVector<Point *> m_points; // representative input point of each real vertex
    LargeVector<int> m_rank; // rank of each vertex in order of x, then y
    LargeVector<int> m_vertexOfRank;
    LargeVector<int> m_edgeOffsets;    // constrained edges by upper vertex: m_edgeStarts[m_edgeOffsets[v]..]
    LargeVector<int> m_edgeStarts;
    LargeVector<int> m_ringVertices;   // the vertex of every ring point, ring by ring in input order
    std::vector<int> m_ringBegin;      // ring r's points are m_ringVertices[m_ringBegin[r]..m_ringBegin[r + 1]]
    std::vector<int> m_outline;        // vertices of the outline, without repeats
    // While incremental insertion runs: the number of each vertex (by its number in sweep order) in
    // the order of insertion, which it then goes by; empty otherwise.
    LargeVector<int> m_insertedAs;

    LargeVector<Tri> m_tris;
    FrontIndex m_front;
    // False once the sweep has dropped legalisation work: after a failure, or an edge given up with
    // its flips made. The final stage then restores the Delaunay property itself.
    bool m_legalizationComplete = true;
    // Work done by the current run (flips and steps along the front), and whether the run may still
    // switch from the sweep to incremental insertion (when that work outgrows a budget linear in the
    // points swept).
    std::uint64_t m_work = 0;
    std::uint64_t m_workBudget = ~std::uint64_t(0); // the sweep gives way beyond it
    bool m_mayInsertIncrementally = false;
    // Whether few vertices of the rings turn away from the region, or the rings run smoothly for
    // long stretches (see Prepare): such input is built by incremental insertion from the start.
    bool m_smoothRings = false;
    bool m_incremental = false; // the mesh is being built by incremental insertion
    bool m_aroundConvexOutline = false; // ... around a convex outline, without point location

    EdgeStack m_legalize; // (triangle, edge) pairs waiting for the in-circle test
    std::vector<EdgeEntry> m_visited;
    std::vector<EdgeRef> m_crossed;  // edges crossed by the constrained edge being inserted
    std::vector<EdgeRef> m_newEdges; // edges made by its flips
};

extern const char *const kFanBrokenError;

template <typename Visit>
void Sweep::TurnAround(int v, Visit visit)
{
    const int start = TriangleOf(v);
    int i = start < 0 ? -1 : IndexOf(start, v);
    if (i < 0)
        throw std::runtime_error(kFanBrokenError);
    const std::size_t limit = m_tris.size();
    std::size_t steps = 0;
    int t = start;
    for (;;) {
        if (visit(t, i))
            return;
        const int next = m_tris[static_cast<std::size_t>(t)].n[i == 2 ? 0 : i + 1];
        if (next < 0)
            break;
        if (next == start)
            return;
        t = next;
        i = IndexOf(t, v);
        if (i < 0 || ++steps > limit)
            throw std::runtime_error(kFanBrokenError);
    }
    t = start;
    i = IndexOf(t, v);
    for (;;) {
        const int next = m_tris[static_cast<std::size_t>(t)].n[i == 0 ? 2 : i - 1];
        if (next < 0)
            return;
        t = next;
        i = IndexOf(t, v);
        if (i < 0 || ++steps > limit)
            throw std::runtime_error(kFanBrokenError);
        if (visit(t, i))
            return;
    }
}

} // namespace detail
} // namespace p2t

#endif
