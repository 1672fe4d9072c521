// Extrusion for the filled polygons of KEZVisRepFactory: the top cap and the walls of a solid.

#include "factory/KEZVisRepFactoryExtrusion_p.h"
#include "factory/KEZVisRepFactoryRingCleaning_p.h"
#include "factory/KEZVisRepFactory_p.h"

#include <KEZMathPoint.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <vector>

namespace KEZVisFilledPolygon {

namespace {

// ---------------------------------------------------------------------------
// The walls of a solid

struct Mesh
{
    std::vector<double> coords;
    std::vector<int> indexes;
};

// Appends the wall of one ring: each point of the simplified ring, then the same point raised by
// `extrusion`, with two triangles between neighbours and two that close the ring.
void AppendWall(Mesh &wall, const KEZMathSetOfPoints &ring, double extrusion)
{
    KEZMathSetOfPoints simplified = ring;
    SimplifyRing(simplified);
    const int b = int(wall.coords.size() / 3);
    const int count = int(simplified.size());
    for (int j = 0; j < count; ++j) {
        const KEZMathPoint &point = simplified.at(j);
        wall.coords.insert(wall.coords.end(), {point.GetX(), point.GetY(), point.GetZ()});
        wall.coords.insert(wall.coords.end(), {point.GetX(), point.GetY(), point.GetZ() + extrusion});
        if (j >= 1) {
            wall.indexes.insert(wall.indexes.end(), {b + 2 * j - 2, b + 2 * j - 1, b + 2 * j});
            wall.indexes.insert(wall.indexes.end(), {b + 2 * j, b + 2 * j - 1, b + 2 * j + 1});
            if (j == count - 1) {
                wall.indexes.insert(wall.indexes.end(), {b, b + 2 * j + 1, b + 1});
                wall.indexes.insert(wall.indexes.end(), {b + 2 * j, b + 2 * j + 1, b});
            }
        }
    }
}

template <typename T>
std::unique_ptr<T[]> ArrayOf(const std::vector<T> &values)
{
    std::unique_ptr<T[]> array(new T[values.size()]);
    std::copy(values.begin(), values.end(), array.get());
    return array;
}

} // namespace

std::unique_ptr<KEZVisSurfacePrimitive> CreateTopCap(const KEZVisSurfacePrimitive &base, double extrusion)
{
    const QList<double> baseCoords = base.GetVertexCoordinatesAsDouble();
    const QList<long> baseIndexes = base.GetTriangleVertexIndexes();
    std::unique_ptr<double[]> coords(new double[std::size_t(baseCoords.size())]);
    for (qsizetype i = 0; i < baseCoords.size(); ++i)
        coords[std::size_t(i)] = i % 3 == 2 ? baseCoords.at(i) + extrusion : baseCoords.at(i);
    std::unique_ptr<int[]> indexes(new int[std::size_t(baseIndexes.size())]);
    for (qsizetype i = 0; i < baseIndexes.size(); ++i)
        indexes[std::size_t(i)] = int(baseIndexes.at(i));
    return std::unique_ptr<KEZVisSurfacePrimitive>(KEZVisRepFactoryPrivate::CreateSurface(
        base.GetNumVertexes(), std::move(coords), base.GetNumTriangles(), std::move(indexes), nullptr));
}

std::unique_ptr<KEZVisSurfacePrimitive> CreateWalls(const QList<KEZMathSetOfPoints> &rings, double extrusion)
{
    Mesh wall;
    for (const KEZMathSetOfPoints &ring : rings)
        AppendWall(wall, ring, extrusion);
    const std::size_t wallVertexes = wall.coords.size() / 3;
    const std::size_t wallTriangles = wall.indexes.size() / 3;
    if (wallVertexes > std::size_t(INT_MAX) / 3 || wallTriangles > std::size_t(INT_MAX) / 3)
        return nullptr;
    return std::unique_ptr<KEZVisSurfacePrimitive>(KEZVisRepFactoryPrivate::CreateSurface(
        qint64(wallVertexes), ArrayOf(wall.coords), qint64(wallTriangles), ArrayOf(wall.indexes), nullptr));
}

} // namespace KEZVisFilledPolygon
