#ifndef KEZVISREPFACTORYSURFACEREBUILD_P_H
#define KEZVISREPFACTORYSURFACEREBUILD_P_H

// Surface rebuild, the last stage of a filled polygon: the accepted points and the corners of the
// triangles become one indexed surface, its vertices merged by keys of three decimals.
//
// What the stage promises: the accepted points come first in the surface, in their order and with the z
// they came with, used by a triangle or not; the corners, which stand at z 0.0, take the vertex of an
// equal key or else become new vertices after them. Never installed.

#include "factory/KEZVisRepFactoryRingCleaning_p.h"
#include "factory/KEZVisRepFactoryTriangulation_p.h"

#include "KEZVisSurfacePrimitive.h"

#include <KEZMathSetOfPoints.h>

#include <vector>

namespace KEZVisFilledPolygon {

// The accepted points, the mesh points, with the z they came with: the walked points of the outline, then
// those of every hole in `insideHoles`, in order. They are the kept points of the input rings themselves,
// not copies, so they live as long as the input. `meshPointOfArena` receives for each point
// of the arena the mesh point that it was made from, or -1.
using MeshPoints = std::vector<const KEZMathPoint *>;
MeshPoints CollectMeshPoints(const CleanedRings &rings, const std::vector<const WalkedRing *> &insideHoles,
                             std::vector<int> &meshPointOfArena);

// The corners of the triangles, three a triangle as the triangulator gave them, as positions in the
// arena (see CornerPositions); corner k stands for KEZMathPoint(x, y, 0.0) of its point. A point met in
// several triangles is thus looked up once.
struct TriangleCorners
{
    CornerPositions corners;
    const PointArena *arena = nullptr;
    // The mesh point that each arena point was made from, or -1 for the points of holes left out.
    std::vector<int> meshPointOfArena;
    // True where no two mesh points can have the same key (CleanedRings::outlineKeysDistinct, with no hole
    // inside): each mesh point is then the last of its key, and the map needs the mesh keys only once a
    // corner is looked up.
    bool meshKeysDistinct = false;
};

// The surface of the mesh points and the triangles. Mesh points enter the key map in order, a later equal
// key replacing the earlier position; a corner whose key is there takes that vertex, any other becomes a
// new vertex at the end. All vertices are written, used or not. Null when the counts can't be numbered by
// an int. The array of corner positions becomes the index array of the surface: the corners are taken
// over, and `triangleCorners` is left without them.
//
// Two shortcuts give the same result with fewer look-ups: the mesh points enter from the last to the
// first and only where their key is new, so that each learns the last mesh point of its key, which is
// what entering them in order with replacement leaves in the map; and a corner made from a mesh point
// whose key reads "0.000" in z has that mesh point's key, x and y being the same numbers, so it takes
// that last mesh point without a look-up.
KEZVisSurfacePrimitive *BuildSurfaceFromTriangles(const MeshPoints &meshPoints, TriangleCorners &triangleCorners);

} // namespace KEZVisFilledPolygon

#endif // KEZVISREPFACTORYSURFACEREBUILD_P_H
