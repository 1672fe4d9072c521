// Triangulation for the filled polygons of KEZVisRepFactory: the rings go to the triangulator, the
// corners of its triangles come back.

#include "factory/KEZVisRepFactoryTriangulation_p.h"
#include "triangulation/CDT.h"

#include <memory>

namespace KEZVisFilledPolygon {

std::vector<const p2t::Point *> TriangulateRings(const PointVector &outline,
                                                 const std::vector<const PointVector *> &holes)
{
    std::vector<const p2t::Point *> corners;
    auto cdt = std::make_unique<p2t::CDT>(outline);
    for (const PointVector *hole : holes)
        cdt->AddHole(*hole);
    cdt->Triangulate();
    const std::vector<p2t::Triangle *> triangles = cdt->GetTriangles();
    corners.reserve(3 * triangles.size());
    for (const p2t::Triangle *triangle : triangles) {
        const p2t::Point *a = triangle ? triangle->GetPoint(0) : nullptr;
        const p2t::Point *b = triangle ? triangle->GetPoint(1) : nullptr;
        const p2t::Point *c = triangle ? triangle->GetPoint(2) : nullptr;
        if (a == nullptr || b == nullptr || c == nullptr)
            continue; // never handed out; a triangle without its corners adds nothing
        corners.insert(corners.end(), {a, b, c});
    }
    // The triangulator goes first; the points stay until the surface is built.
    return corners;
}

} // namespace KEZVisFilledPolygon
