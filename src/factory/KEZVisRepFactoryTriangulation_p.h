#ifndef KEZVISREPFACTORYTRIANGULATION_P_H
#define KEZVISREPFACTORYTRIANGULATION_P_H

// Triangulation, the third stage of a filled polygon: the outline and the holes that passed the hole
// tests go to the constrained Delaunay triangulator, and the corners of its triangles come back.
//
// What the stage promises: three corners a triangle, in the order of the triangulator's triangles and of
// their points 0, 1 and 2; every corner is one of the points handed in, which stay owned by the caller.
// A triangulator that gives up part of the way gives fewer triangles, never an error. Never installed.

#include "factory/KEZVisRepFactoryFilledPolygon_p.h"

#include <vector>

namespace KEZVisFilledPolygon {

// The corners of the triangles of `outline` with `holes`, the holes added in the order given.
std::vector<const p2t::Point *> TriangulateRings(const PointVector &outline,
                                                 const std::vector<const PointVector *> &holes);

} // namespace KEZVisFilledPolygon

#endif // KEZVISREPFACTORYTRIANGULATION_P_H
