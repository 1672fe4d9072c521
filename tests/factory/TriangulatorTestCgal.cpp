// The triangulator against CGAL's constrained Delaunay triangulation: where the constrained
// Delaunay triangulation is unique, both must give the very same triangles, whether the sweep or
// incremental insertion builds the mesh.
#include "TriangulatorTestSupport.h"

#include "triangulation/TestHooks_p.h"

#include <CGAL/Constrained_Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Triangulation_face_base_with_info_2.h>

#include <gtest/gtest.h>

#include <set>

using namespace triangulator_test;

namespace {

using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
struct FaceInfo
{
    int nesting = -1;
};
using Vb = CGAL::Triangulation_vertex_base_2<Kernel>;
using Fbi = CGAL::Triangulation_face_base_with_info_2<FaceInfo, Kernel>;
using Fb = CGAL::Constrained_triangulation_face_base_2<Kernel, Fbi>;
using Tds = CGAL::Triangulation_data_structure_2<Vb, Fb>;
using Cdt = CGAL::Constrained_Delaunay_triangulation_2<Kernel, Tds, CGAL::Exact_predicates_tag>;

struct CgalResult
{
    std::set<Tri> triangles;
    // Some edge inside the domain has its two opposite points on one circle: the constrained
    // Delaunay triangulation is not unique there.
    bool ambiguous = false;
};

Tri Canonical(Tri t)
{
    while (!(t[0] < t[1] && t[0] < t[2]))
        t = {t[1], t[2], t[0]};
    return t;
}

// Marks the faces by how many constraints separate them from the outside: odd means inside the
// outline and outside every hole.
CgalResult TriangulateWithCgal(const Polygon &polygon)
{
    Cdt cdt;
    auto insertRing = [&cdt](const Ring &ring) {
        std::vector<Cdt::Vertex_handle> vertices;
        for (const Pt &p : ring)
            vertices.push_back(cdt.insert(Kernel::Point_2(p.x, p.y)));
        for (std::size_t i = 0; i < vertices.size(); ++i)
            if (vertices[i] != vertices[(i + 1) % vertices.size()])
                cdt.insert_constraint(vertices[i], vertices[(i + 1) % vertices.size()]);
    };
    insertRing(polygon.outline);
    for (const Ring &hole : polygon.holes)
        insertRing(hole);

    std::vector<Cdt::Face_handle> queue{cdt.infinite_face()};
    cdt.infinite_face()->info().nesting = 0;
    std::vector<Cdt::Face_handle> next;
    int level = 0;
    while (!queue.empty()) {
        next.clear();
        while (!queue.empty()) {
            const Cdt::Face_handle face = queue.back();
            queue.pop_back();
            for (int i = 0; i < 3; ++i) {
                const Cdt::Face_handle neighbour = face->neighbor(i);
                if (neighbour->info().nesting != -1)
                    continue;
                if (cdt.is_constrained(Cdt::Edge(face, i))) {
                    neighbour->info().nesting = level + 1;
                    next.push_back(neighbour);
                } else {
                    neighbour->info().nesting = level;
                    queue.push_back(neighbour);
                }
            }
        }
        std::swap(queue, next);
        ++level;
    }

    CgalResult result;
    for (auto face = cdt.finite_faces_begin(); face != cdt.finite_faces_end(); ++face) {
        if (face->info().nesting % 2 != 1)
            continue;
        Tri t;
        for (int k = 0; k < 3; ++k)
            t[static_cast<std::size_t>(k)] = {face->vertex(k)->point().x(), face->vertex(k)->point().y()};
        result.triangles.insert(Canonical(t));
        for (int i = 0; i < 3; ++i) {
            const Cdt::Face_handle neighbour = face->neighbor(i);
            if (cdt.is_infinite(neighbour) || cdt.is_constrained(Cdt::Edge(face, i)))
                continue;
            const auto &opposite = neighbour->vertex(neighbour->index(face))->point();
            if (CGAL::side_of_oriented_circle(face->vertex(0)->point(), face->vertex(1)->point(),
                                              face->vertex(2)->point(), opposite)
                == CGAL::ON_ORIENTED_BOUNDARY)
                result.ambiguous = true;
        }
    }
    return result;
}

using Insertion = p2t::detail::TestHooks::Insertion;

// Our triangles, built the given way; empty if the mesh was not built that way.
std::set<Tri> OurTriangles(const Polygon &polygon, Insertion insertion)
{
    p2t::detail::TestHooks hooks;
    hooks.insertion = insertion;
    p2t::detail::SetTestHooks(&hooks);
    const Result result = Triangulate(polygon);
    p2t::detail::SetTestHooks(nullptr);
    if (hooks.insertedIncrementally != (insertion == Insertion::IncrementalFirst))
        return {};
    std::set<Tri> set;
    for (const Tri &t : result.triangles)
        set.insert(Canonical(t));
    return set;
}

// Same triangles where the triangulation is unique; the same number of triangles anyway. Checked for
// the sweep and for incremental insertion.
::testing::AssertionResult MatchesCgal(const Polygon &polygon, bool expectUnique = true)
{
    const CgalResult cgal = TriangulateWithCgal(polygon);
    if (cgal.triangles.empty())
        return ::testing::AssertionFailure() << "CGAL gave no triangles";
    if (expectUnique && cgal.ambiguous)
        return ::testing::AssertionFailure() << "input has co-circular points";
    for (const Insertion insertion : {Insertion::SweepOnly, Insertion::IncrementalFirst}) {
        const char *const way = insertion == Insertion::SweepOnly ? "sweep: " : "incremental insertion: ";
        const std::set<Tri> ours = OurTriangles(polygon, insertion);
        if (ours.size() != cgal.triangles.size())
            return ::testing::AssertionFailure() << way << ours.size() << " triangles instead of " << cgal.triangles.size();
        if (!cgal.ambiguous && ours != cgal.triangles) {
            std::size_t differing = 0;
            for (const Tri &t : ours)
                differing += cgal.triangles.count(t) ? 0 : 1;
            return ::testing::AssertionFailure() << way << differing << " of " << ours.size() << " triangles differ";
        }
    }
    return ::testing::AssertionSuccess();
}

} // namespace

TEST(TriangulatorVersusCgal, CleanPolygonFilesGiveCgalsTriangles)
{
    int compared = 0;
    for (const std::string &name : PolygonFileNames()) {
        Polygon polygon;
        polygon.outline = ReadPolygonFile(PolygonFilePath(name));
        if (!IsCleanPolygon(polygon))
            continue;
        const CgalResult cgal = TriangulateWithCgal(polygon);
        if (cgal.ambiguous) {
            EXPECT_TRUE(MatchesCgal(polygon, false)) << name;
            continue;
        }
        ++compared;
        EXPECT_TRUE(MatchesCgal(polygon)) << name;
    }
    EXPECT_GE(compared, 12);
}

TEST(TriangulatorVersusCgal, StarsGiveCgalsTriangles)
{
    for (int points : {7, 50, 500, 5000})
        for (std::uint32_t seed : {3u, 4u, 5u})
            EXPECT_TRUE(MatchesCgal(Star(points, seed))) << points << " seed " << seed;
    EXPECT_TRUE(MatchesCgal(Star(30000, 6)));
}

// Smooth outlines: their edges are Delaunay already, and the sweep's legalisation does nearly all the
// work (an egg's points below the sweep line are triangulated quite unlike all of them).
TEST(TriangulatorVersusCgal, SmoothOutlinesGiveCgalsTriangles)
{
    struct Shape
    {
        int points;
        double lobes, amplitude;
    };
    for (const Shape &shape : {Shape{3000, 64.0, 0.2}, Shape{2000, 4.0, 0.2}, Shape{1500, 1.0, 0.3}}) {
        const Polygon polygon = Rosette(shape.points, shape.lobes, shape.amplitude);
        EXPECT_TRUE(MatchesCgal(polygon)) << shape.lobes << " lobes";
        EXPECT_TRUE(IsValidTriangulation(polygon, Triangulate(polygon).triangles)) << shape.lobes << " lobes";
    }
}

TEST(TriangulatorVersusCgal, JitteredHoleGridsGiveCgalsTriangles)
{
    for (int rows : {1, 3, 10, 40})
        for (std::uint32_t seed : {6u, 7u})
            EXPECT_TRUE(MatchesCgal(JitteredHoleGrid(rows, seed))) << rows << " seed " << seed;
}

TEST(TriangulatorVersusCgal, TinyHugeAndFarAwayPolygonsGiveCgalsTriangles)
{
    const Polygon star = Star(2000, 12);
    const Polygon grid = JitteredHoleGrid(12, 13, 1.0);
    for (const auto &[scale, offset] : std::vector<std::pair<double, double>>{
                 {1e-9, 0.0}, {1e-9, 3e-7}, {1e12, 0.0}, {1e12, -5e14}, {1.0, 1e6}, {1e-200, 1e-199}, {1e200, 0.0}}) {
        EXPECT_TRUE(MatchesCgal(Transformed(star, scale, offset, offset))) << scale << " " << offset;
        EXPECT_TRUE(MatchesCgal(Transformed(grid, scale, offset, -offset))) << scale << " " << offset;
    }
}

TEST(TriangulatorVersusCgal, RegularHoleGridWithCoCircularPointsGivesAsManyTrianglesAsCgal)
{
    const Polygon grid = RegularHoleGrid(15);
    EXPECT_TRUE(MatchesCgal(grid, false));
    EXPECT_TRUE(IsValidTriangulation(grid, Triangulate(grid).triangles));
}
