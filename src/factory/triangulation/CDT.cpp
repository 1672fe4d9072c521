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
    m_trianglePointers.clear();
    detail::Sweep sweep(m_rings);
    sweep.Run(m_triangles);
    m_trianglePointers.reserve(m_triangles.size());
    for (Triangle &triangle : m_triangles)
        m_trianglePointers.push_back(&triangle);
}

std::vector<Triangle *> CDT::GetTriangles() const
{
    return m_trianglePointers;
}

} // namespace p2t
