#ifndef KEZVISREPFACTORYTRIANGULATION_P_H
#define KEZVISREPFACTORYTRIANGULATION_P_H

// Triangulation, the third stage of a filled polygon: the outline and the holes that passed the hole
// tests go to the constrained Delaunay triangulator, and the corners of its triangles come back.
//
// What the stage promises: three corners a triangle, in the order of the triangulator's triangles and of
// their points 0, 1 and 2; every corner is one of the points handed in, which stay owned by the caller.
// A triangulator that gives up part of the way gives fewer triangles, never an error. Never installed.

#include "factory/KEZVisRepFactoryRingCleaning_p.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace KEZVisFilledPolygon {

// The corners of the triangles, each written as the position of its point in the arena of the call.
// They are written into an array of ints that can become the index array of the surface, so that the
// surface rebuild turns positions into vertices in place. A point that the arena did not make, which
// the triangulator never hands out, is written as -1 - k for the k-th entry of `foreign`.
struct CornerPositions
{
    std::unique_ptr<int[]> positions;
    std::size_t count = 0; // three a triangle
    std::vector<const p2t::Point *> foreign;
};

// The corners of the triangles of `outline` with `holes`, the holes added in the order given; every
// point handed in should come from `arena`.
CornerPositions TriangulateRings(const PointVector &outline, const std::vector<const PointVector *> &holes,
                                 const PointArena &arena);

} // namespace KEZVisFilledPolygon

#endif // KEZVISREPFACTORYTRIANGULATION_P_H
