// Helpers of the filled-polygon tests: building rings, reading the result of the factory, a plain model
// of the ring cleaning and hole selection written as the rules read (every point against every point,
// every edge against every edge), a validity check of a triangulation, the polygon files and input
// generators.
#ifndef KEZ_FILLED_POLYGON_TEST_SUPPORT_H
#define KEZ_FILLED_POLYGON_TEST_SUPPORT_H

#include <KEZMathSetOfPoints.h>

#include <QByteArray>
#include <QList>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

class KEZVisSurfacePrimitive;

namespace filled_polygon_test {

struct Pt
{
    double x = 0.0;
    double y = 0.0;
};
using Ring2D = std::vector<Pt>;

// A ring at height z.
KEZMathSetOfPoints MakeRing(std::initializer_list<std::pair<double, double>> points, double z = 0.0);
KEZMathSetOfPoints MakeRing(const Ring2D &points, double z = 0.0);

// The arrays of a surface primitive.
struct Mesh
{
    std::vector<std::array<double, 3>> vertices;
    std::vector<std::array<int, 3>> triangles;
};
Mesh MeshOf(const KEZVisSurfacePrimitive &surface);

// The vertex key: QByteArray::number of x, y, z with three decimals, joined by commas.
QByteArray KeyOf(double x, double y, double z);

// What the rules say about the input before triangulation, computed the plain way.
struct Model
{
    bool null = false;                 // the primitive is null
    KEZMathSetOfPoints meshPoints;     // the vertices that come first, in order
    Ring2D outline;                    // the outline's accepted points
    std::vector<Ring2D> insideHoles;   // holes that passed the inside test, in order
    std::vector<bool> crossing;        // per inside hole: crosses another inside hole
    // The rings handed to the triangulator: the outline, then the inside holes that don't cross.
    std::vector<Ring2D> TriangulatedHoles() const;
};
Model ModelOf(const QList<KEZMathSetOfPoints> &rings);

// The cleaning of a ring, as written in the rules.
KEZMathSetOfPoints SimplifiedRing(const KEZMathSetOfPoints &ring);

// Checks a triangulation of a polygon (outline and holes simple, pairwise disjoint, holes inside): every
// triangle counter-clockwise, the area of all triangles equal to the outline's area minus the holes'
// areas, every ring edge in the mesh (possibly split at points on it), and every edge between two
// triangles that lies on no ring edge locally Delaunay. Corners are read from the mesh's vertices.
::testing::AssertionResult IsValidTriangulation(const Mesh &mesh, const Ring2D &outline,
                                                const std::vector<Ring2D> &holes);

// Checks the rebuilt index: the first vertices are `model.meshPoints` exactly; every other vertex lies at
// z = 0 and has a key of its own that no earlier vertex has; every triangle corner that is a mesh point has
// a key ending in z "0.000" and is the last mesh point of its key; every index is in range.
::testing::AssertionResult IsConsistentIndex(const Mesh &mesh, const Model &model);

// Absolute signed area (shoelace) of a ring, in long double.
long double RingArea(const Ring2D &ring);

// The polygon files: one "x y" point a line, the outline first; a line "HOLE" starts a hole, and the
// points after a line "STEINER" (free points inside, which the factory has no input for) are skipped.
std::vector<std::string> PolygonFileNames();
std::vector<Ring2D> ReadPolygonFile(const std::string &name);

// Generators, deterministic for a seed.
// A star-shaped ring of `points` points round (cx, cy): radius alternating between about r and r / 2.
Ring2D Star(int points, std::uint32_t seed, double r = 1.0, double cx = 0.0, double cy = 0.0);
// A square outline of side `size` at the origin with rows x rows square holes, one centred in each cell.
std::vector<Ring2D> HoleGrid(int rows, double size = 1000.0);
Ring2D Scaled(const Ring2D &ring, double scale, double offsetX, double offsetY);

QList<KEZMathSetOfPoints> ToRings(const std::vector<Ring2D> &rings, double z = 0.0);

} // namespace filled_polygon_test

#endif
