// The filled-polygon operations of KEZVisRepFactory: an outline with holes becomes a triangle mesh, and
// optionally a solid with caps and walls.
//
// The work around the triangulator is rule-bound: the rings are cleaned, a ring that revisits a point is
// cut there, holes that leave the outline, touch it or cross another hole are left out, and the mesh is
// indexed again by vertex keys of three decimals. Each stage has a file of its own; this one checks the
// input and calls them in order.

#include "KEZVisRepFactory.h"
#include "factory/KEZVisRepFactoryExtrusion_p.h"
#include "factory/KEZVisRepFactoryHoleTests_p.h"
#include "factory/KEZVisRepFactoryRingCleaning_p.h"
#include "factory/KEZVisRepFactorySurfaceRebuild_p.h"
#include "factory/KEZVisRepFactoryTriangulation_p.h"

#include <cmath>
#include <memory>

using namespace KEZVisFilledPolygon;

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

    CleanedRings cleaned{std::size_t(total)};
    if (!CleanRings(rings, cleaned))
        return nullptr;

    const HoleSelection holes = SelectHoles(cleaned);
    // The grid of the outline has served the hole tests: its memory goes back before the triangulator
    // asks for its own.
    cleaned.outlineGrid.Release();

    TriangleCorners corners;
    corners.arena = &cleaned.arena;
    corners.corners = TriangulateRings(cleaned.outline.points, holes.triangulated, cleaned.arena);
    corners.meshKeysDistinct = cleaned.outlineKeysDistinct && holes.inside.empty();

    const MeshPoints meshPoints = CollectMeshPoints(cleaned, holes.inside, corners.meshPointOfArena);
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
        top = CreateTopCap(*base, extrusion);
        // The walls stand on the input rings themselves, rejected holes included, at their own z.
        walls = CreateWalls(rings, extrusion);
        if (!walls)
            return nullptr;
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
