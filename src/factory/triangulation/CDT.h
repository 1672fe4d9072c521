// Constrained Delaunay triangulation of a polygon with holes.
#ifndef KEZ_TRIANGULATION_CDT_H
#define KEZ_TRIANGULATION_CDT_H

#include "LargeArray_p.h"
#include "Point.h"
#include "Triangle.h"

#include <vector>

namespace p2t {

// Triangulates the inside of an outline with holes by a sweep-line constrained Delaunay
// triangulation (Domiter and Zalik): the points are swept in order of y and then x over an advancing
// front that starts on two artificial points placed below the point cloud, every new triangle is
// legalised by edge flips, basins and small holes of the front are filled, every constrained edge is
// inserted when the sweep reaches its upper end, and the triangles inside the outline are collected at
// the end.
//
// The result is a true constrained Delaunay triangulation: every edge between two result triangles
// that is not an outline or hole edge is locally Delaunay, judged with exact predicates. Where several
// such triangulations exist (four or more co-circular points) the result is still a deterministic
// function of the input.
//
// Cost: about n log n for n points. Where the Delaunay triangulation of the points below the sweep
// line differs from that of all points in a part that grows with the input (outlines along long
// smooth curves or densely sampled straight edges), the sweep's flips and front walks per point grow
// with the input. Such input is recognised before the sweep by its rings, and the mesh is built by
// incremental insertion from the start, where fewer than a fifth of the ring vertices turn away from
// the inside (an outline's concave corners, a hole's convex ones; nearly straight turns count as
// none), or where a ring vertex lies on average in a run of 192 or more consecutive vertices that
// turn the same way (nearly straight ones join either way; runs are counted from each ring's first
// point, and the mean is weighted by vertices: the sum of the runs' squared lengths over all ring
// vertices). A single convex outline (no holes, every turn the same way or exactly straight on,
// winding once) is built without locating any point: its vertices are taken away one by one, in rounds
// drawn at random (from a fixed seed) and along the outline within a round, and put back in the
// reverse order, each next to the edge between its former neighbours, with flips; beyond 16 flips a
// vertex (and a fixed allowance) it gives way to incremental insertion. Otherwise the sweep runs, and
// once its work exceeds a budget linear in the points swept, it gives way to incremental insertion.
// Incremental insertion builds the same constrained Delaunay triangulation by inserting the points
// into an enclosing triangle in a random order (from a fixed seed) sorted along a Hilbert curve
// within rounds of doubling size, then inserting the constrained edges ring by ring along each ring,
// each as the sweep's edge event does. If that fails
// (constrained edges that cross, or any other trouble), the sweep runs to its end without a budget
// and its result, partial or whole, is the result. Where four or more points are co-circular, the two
// ways may choose different (each deterministic) triangles among them; near-collinear points within
// the tolerance below may be judged differently in the two meshes.
//
// Input conventions:
// - Rings are closed implicitly: the last point connects to the first. Orientation does not matter;
//   the inside of the outline is the side its signed area says.
// - Points are borrowed, never owned; result triangles refer to them. Points with identical
//   coordinates are merged into one vertex, represented by the first of them that was passed in (the
//   outline before the holes, each in order). Null pointers in a ring are skipped.
// - Holes are only constraints: a hole ring of one point adds a vertex, of two points a segment.
// - A point lying on a constrained edge splits that edge there. Constrained edges that cross each
//   other are not supported: the sweep stops at the first such crossing (see below).
// - Outlines with fewer than three distinct points, a point cloud without extent in x or in y, or any
//   coordinate that is not finite give no triangles.
// - Collinearity is judged with the tolerance 1e-12 on coordinates scaled by a power of two to bring
//   the extent of the point cloud into [0.5, 1), so tiny and huge polygons behave like unit-sized
//   ones. The artificial points lie 0.3 times the cloud's extent in x and in y beyond its lower
//   corners.
//
// Robustness: Triangulate never throws for trouble in the geometry and never hangs.
// - If the sweep hits a situation it cannot handle, a std::runtime_error raised while sweeping ends
//   it there: points not yet reached stay out, the final stage collects what is reachable from the
//   outline's first edge, and GetTriangles gives that partial mesh (possibly empty). Constrained
//   edges that cross each other raise "[Unsupported] Opposing point on constrained edge". The other
//   messages guard states that a consistent mesh does not reach: "EdgeEvent - collinear points not
//   supported" (a vertex on a constrained edge's line but outside the edge), "[BUG:FIXME] FLIP failed
//   due to missing triangle" (a constrained edge leaving the mesh elsewhere than through the front)
//   and "[BUG:FIXME] FLIP failed due to missing opposite point" (a neighbour that does not point
//   back).
// - Inserting a constrained edge cannot loop: an edge event that comes back to a state it was in
//   before, or whose flips do not drain, writes "[BUG:FIXME] Endless loop" to the Qt debug log and
//   gives up that edge. A flip step that finds no opposite point writes "Sweep::FlipEdgeEvent() FLIP
//   failed due to missing triangle opposite point." and gives up the edge as well.
// - The final stage survives a broken front: the turn for its start triangle ends at a missing
//   neighbour, and the inside is collected with an explicit stack that skips missing neighbours.
// Debug lines go to the logging category "kez.visualization.triangulation", enabled for debug
// messages by default.
class CDT
{
public:
    // Starts a triangulation of the inside of polyline.
    explicit CDT(const std::vector<Point *> &polyline);
    ~CDT();

    CDT(const CDT &) = delete;
    CDT &operator=(const CDT &) = delete;

    // Adds a hole; holes are cut out of the outline's inside.
    void AddHole(const std::vector<Point *> &polyline);

    // Computes the triangulation. Calling it again recomputes it from the same input.
    void Triangulate();

    // The triangles inside the outline and outside the holes, each counter-clockwise. The pointers
    // stay valid until the CDT is deleted or triangulated again.
    std::vector<Triangle *> GetTriangles() const;

private:
    std::vector<std::vector<Point *>> m_rings;
    detail::LargeVector<Triangle> m_triangles;
};

} // namespace p2t

#endif
