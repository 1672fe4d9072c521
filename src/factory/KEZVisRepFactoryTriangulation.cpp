// Triangulation for the filled polygons of KEZVisRepFactory: the rings go to the triangulator, the
// corners of its triangles come back as positions in the arena of the call.

#include "factory/KEZVisRepFactoryTriangulation_p.h"
#include "primitives/KEZVisFlatArrays_p.h"
#include "triangulation/CDT.h"

#include <climits>

namespace KEZVisFilledPolygon {

CornerPositions TriangulateRings(const PointVector &outline, const std::vector<const PointVector *> &holes,
                                 const PointArena &arena)
{
    CornerPositions corners;
    auto cdt = std::make_unique<p2t::CDT>(outline);
    for (const PointVector *hole : holes)
        cdt->AddHole(*hole);
    cdt->Triangulate();
    const std::vector<p2t::Triangle *> triangles = cdt->GetTriangles();
    corners.positions.reset(new int[3 * triangles.size()]);
    KEZVisFlatArrays::AdviseHugePages(corners.positions.get(), 3 * triangles.size() * sizeof(int));
    int *out = corners.positions.get();
    const auto write = [&corners, &arena, &out](const p2t::Point *point) {
        const std::ptrdiff_t position = arena.IndexOf(point);
        if (position >= 0 && position <= INT_MAX) {
            *out++ = int(position);
        } else {
            *out++ = -1 - int(corners.foreign.size());
            corners.foreign.push_back(point);
        }
    };
    for (const p2t::Triangle *triangle : triangles) {
        const p2t::Point *a = triangle ? triangle->GetPoint(0) : nullptr;
        const p2t::Point *b = triangle ? triangle->GetPoint(1) : nullptr;
        const p2t::Point *c = triangle ? triangle->GetPoint(2) : nullptr;
        if (a == nullptr || b == nullptr || c == nullptr)
            continue; // never handed out; a triangle without its corners adds nothing
        write(a);
        write(b);
        write(c);
    }
    corners.count = std::size_t(out - corners.positions.get());
    // The triangulator goes first; the points stay until the surface is built.
    return corners;
}

} // namespace KEZVisFilledPolygon
