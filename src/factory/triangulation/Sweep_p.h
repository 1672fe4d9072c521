// The sweep-line constrained Delaunay triangulation behind p2t::CDT.
#ifndef KEZ_TRIANGULATION_SWEEP_P_H
#define KEZ_TRIANGULATION_SWEEP_P_H

#include "FrontIndex_p.h"
#include "Point.h"
#include "Triangle.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace p2t {
namespace detail {

struct TestHooks;

// One triangulation run. Vertices are numbered in order of x (then y); the two artificial points
// follow the real ones. Triangles live in one pool and refer to each other by index: vertex i of a
// triangle faces edge i, neighbour i lies across edge i, and bit i of constrained marks edge i as an
// outline or hole edge. Every triangle is counter-clockwise.
class Sweep
{
public:
    explicit Sweep(const std::vector<std::vector<Point *>> &rings);

    // Triangulates and appends the triangles inside the outline to out.
    void Run(std::vector<Triangle> &out);

private:
    struct Tri
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
    void SweepPoints();
    void PointEvent(int p);
    void FillVertex(int n);
    void FillSmallHoles(int p);
    void FillBasin(int p);
    void EdgeEvents(int p);
    void EdgeEvent(int start, int p);
    int FillBelowSegment(int start, int end);
    int InsertSegment(int from, int to);
    bool FindEdge(int u, int w, int &t, int &i);
    void Finalize(std::vector<Triangle> &out);
    int FindStartTriangle(int v0, int v1, bool insideOnLeft);
    void BreakFrontAround(int v);
    std::string FindInconsistency() const;
    void Verify(const char *where, int p);

    int NewTriangle(int a, int b, int c);
    void LinkToExisting(int t, int edge, int other);
    void MarkConstrained(int t, int a, int b);
    void Flip(int t, int i, int o, int j);
    bool Legalize(bool general);
    void MapFront(int t);
    void CollectFan(int v);
    void RemoveFromFront(int v);

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
    int Rank(int v) const { return v < m_count ? v + 1 : (v == Tail() ? 0 : m_count + 1); }
    int VertexOfRank(int r) const { return r == 0 ? Tail() : (r == m_count + 1 ? Head() : r - 1); }
    int Tail() const { return m_count; }
    int Head() const { return m_count + 1; }
    bool IsArtificial(int v) const { return v >= m_count; }
    int Orient(int a, int b, int c) const;
    int OrientExact(int a, int b, int c) const;

    const std::vector<std::vector<Point *>> &m_rings;
    TestHooks *m_hooks = nullptr;

    int m_count = 0;                   // real vertices
    std::vector<double> m_x, m_y;      // scaled coordinates, real vertices then tail and head
    std::vector<Point *> m_points;     // representative input point of each real vertex
    std::vector<int> m_sweepOrder;     // real vertices in order of y, then x
    std::vector<int> m_edgeOffsets;    // constrained edges by upper vertex: m_edgeStarts[m_edgeOffsets[v]..]
    std::vector<int> m_edgeStarts;
    std::vector<int> m_outline;        // vertices of the outline, without repeats

    std::vector<Tri> m_tris;
    std::vector<int> m_vertexTriangle; // some triangle around each vertex
    std::vector<int> m_next, m_prev;   // the advancing front, -1 off the front
    std::vector<int> m_frontTriangle;  // triangle below the front edge from v to m_next[v]
    FrontIndex m_front;

    std::vector<std::pair<int, int>> m_legalize; // (triangle, edge) pairs waiting for the in-circle test
    std::vector<int> m_fan;
    std::vector<EdgeEntry> m_visited;
    std::vector<std::pair<int, int>> m_crossed;  // edges crossed by the constrained edge being inserted
    std::vector<std::pair<int, int>> m_newEdges; // edges made by its flips
};

} // namespace detail
} // namespace p2t

#endif
