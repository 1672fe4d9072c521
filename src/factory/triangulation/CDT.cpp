#include "CDT.h"

#include "Sweep_p.h"
#include "TriangulationLogging_p.h"

Q_LOGGING_CATEGORY(lcKezTriangulation, "kez.visualization.triangulation", QtDebugMsg)

namespace p2t {

CDT::CDT(const std::vector<Point *> &polyline)
{
    m_rings.push_back(polyline);
}

CDT::~CDT() = default;

void CDT::AddHole(const std::vector<Point *> &polyline)
{
    m_rings.push_back(polyline);
}

void CDT::Triangulate()
{
    m_triangles.clear();
    const detail::LargeArrayRecycling recycling;
    detail::Sweep sweep(m_rings);
    sweep.Run(m_triangles);
}

std::vector<Triangle *> CDT::GetTriangles() const
{
    std::vector<Triangle *> triangles;
    triangles.reserve(m_triangles.size());
    // The caller gets handles to the triangles that this CDT owns, as non-const pointers.
    for (const Triangle &triangle : m_triangles)
        triangles.push_back(const_cast<Triangle *>(&triangle));
    return triangles;
}

} // namespace p2t
