// Helpers of the triangulator tests: polygons, input generators, the polygon files, and a validity
// check of a triangulation that is computed independently of the triangulator.
#ifndef KEZ_TRIANGULATOR_TEST_SUPPORT_H
#define KEZ_TRIANGULATOR_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace p2t {
struct Point;
}

namespace triangulator_test {

struct Pt
{
    double x = 0.0;
    double y = 0.0;
    bool operator==(const Pt &o) const { return x == o.x && y == o.y; }
    bool operator<(const Pt &o) const { return x != o.x ? x < o.x : y < o.y; }
};

using Ring = std::vector<Pt>;
using Tri = std::array<Pt, 3>;

struct Polygon
{
    Ring outline;
    std::vector<Ring> holes;
    std::size_t PointCount() const;
};

// Result of one triangulation through the public interface.
struct Result
{
    std::vector<Tri> triangles;
    // Every corner pointer handed out was one of the input points.
    bool cornersAreInputPoints = true;
};

Result Triangulate(const Polygon &polygon);

// Signed area (shoelace) of a ring, in long double.
long double SignedArea(const Ring &ring);

// Checks a triangulation of a polygon whose rings are simple, pairwise disjoint and holes inside
// the outline: every triangle counter-clockwise, total area equal to the outline's minus the holes',
// every ring edge present (possibly split at points lying on it), every edge between two triangles
// that is not on a ring edge locally Delaunay.
::testing::AssertionResult IsValidTriangulation(const Polygon &polygon, const std::vector<Tri> &triangles);

// True if the rings of the polygon are simple, pairwise disjoint, without repeated points, and all
// holes lie inside the outline and outside each other (checked by brute force on segment pairs and
// point-in-ring tests).
bool IsCleanPolygon(const Polygon &polygon);

// Reads one outline of a polygon file: "x y" a line, CR LF and blank lines tolerated.
Ring ReadPolygonFile(const std::string &path);
std::vector<std::string> PolygonFileNames();
std::string PolygonFilePath(const std::string &name);

// Generators, deterministic for a given seed.
Polygon Star(int points, std::uint32_t seed, double scale = 1.0, double offsetX = 0.0, double offsetY = 0.0);
// A square outline with rows x rows square holes on a regular grid.
// An outline of `points` points evenly spaced in angle on the curve r = 1 + amplitude sin(lobes angle).
Polygon Rosette(int points, double lobes, double amplitude);
Polygon RegularHoleGrid(int rows, double size = 1000.0);
// A square outline with rows x rows quadrilateral holes, each jittered inside its own cell.
Polygon JitteredHoleGrid(int rows, std::uint32_t seed, double size = 1000.0);
Polygon Transformed(const Polygon &polygon, double scale, double offsetX, double offsetY);

} // namespace triangulator_test

#endif
