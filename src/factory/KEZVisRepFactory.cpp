// The shape operations of KEZVisRepFactory: polylines, planes, regular shapes,
// spheres, arrows, axes and origins. Other families of factory operations live
// in files of their own beside this one.

#include "KEZVisRepFactory.h"
#include "factory/KEZVisRepFactory_p.h"
#include "primitives/KEZVisRegularShapes_p.h"

#include "KEZVisPointPrimitive.h"

#include <KEZSysOutOfBoundsException.h>

#include <QVariant>

#include <cmath>
#include <memory>
#include <vector>

using namespace KEZVisRegularShapes;

KEZVisRepGraphics *KEZVisRepFactoryPrivate::WrapInRep(std::unique_ptr<const KEZVisPrimitive> primitive,
                                                      const KEZVisOptions &options)
{
    auto *rep = new KEZVisRepGraphics(QList<const KEZVisPrimitive *>{primitive.get()}, options);
    primitive.release(); // the rep owns it now
    return rep;
}

KEZVisSurfacePrimitive *KEZVisRepFactoryPrivate::CreateSurface(qint64 numVertexes, std::unique_ptr<double[]> coords,
                                                               qint64 numTriangles, std::unique_ptr<int[]> indexes,
                                                               std::unique_ptr<double[]> normals)
{
    // The allocation of the object comes before the arguments are evaluated,
    // so the arrays are released only once there is a surface to take them.
    return new KEZVisSurfacePrimitive(int(numVertexes), coords.release(), int(numTriangles), indexes.release(),
                                      normals.release());
}

// ---------------------------------------------------------------------------
// Reps of one primitive

KEZVisRep *KEZVisRepFactory::CreatePolylineRep(KEZMathSetOfPoints const &points, KEZVisOptions const &options)
{
    return KEZVisRepFactoryPrivate::WrapInRep(
        std::make_unique<KEZVisPolylinePrimitive>(points, KEZVisPolylinePrimitive::StructureConnected), options);
}

KEZVisRep *KEZVisRepFactory::CreatePlaneBoundaryEdgesRep(KEZMathSetOfPoints const &points,
                                                         KEZVisOptions const &options)
{
    return KEZVisRepFactoryPrivate::WrapInRep(
        std::unique_ptr<const KEZVisPrimitive>(CreatePlaneBoundaryEdgesPrimitive(points)), options);
}

KEZVisRep *KEZVisRepFactory::CreatePlaneSurfaceRep(KEZMathSetOfPoints const &points, KEZMathVector const &normal,
                                                   KEZVisOptions const &options)
{
    return KEZVisRepFactoryPrivate::WrapInRep(
        std::unique_ptr<const KEZVisPrimitive>(CreatePlaneSurfacePrimitive(points, normal)), options);
}

KEZVisRep *KEZVisRepFactory::CreatePolygonRep(KEZMathPoint const &origin, KEZMathVector const &normal, double radius,
                                              int sides, KEZVisOptions const &options)
{
    return KEZVisRepFactoryPrivate::WrapInRep(
        std::unique_ptr<const KEZVisPrimitive>(CreatePolygonPrimitive(origin, normal, radius, sides)), options);
}

KEZVisRep *KEZVisRepFactory::CreatePrismRep(KEZMathPoint const &origin, KEZMathVector const &axis, double radius,
                                            double height, int sides, KEZVisOptions const &options)
{
    return KEZVisRepFactoryPrivate::WrapInRep(
        std::unique_ptr<const KEZVisPrimitive>(CreatePrismPrimitive(origin, axis, radius, height, sides)), options);
}

KEZVisRep *KEZVisRepFactory::CreatePyramidRep(KEZMathPoint const &origin, KEZMathVector const &axis, double radius,
                                              double height, int sides, KEZVisOptions const &options)
{
    return KEZVisRepFactoryPrivate::WrapInRep(
        std::unique_ptr<const KEZVisPrimitive>(CreatePyramidPrimitive(origin, axis, radius, height, sides)), options);
}

KEZVisRep *KEZVisRepFactory::CreateSphereRep(KEZMathPoint const &center, double radius, int divisions,
                                             KEZVisOptions const &options)
{
    return KEZVisRepFactoryPrivate::WrapInRep(
        std::unique_ptr<const KEZVisPrimitive>(CreateSpherePrimitive(center, radius, divisions)), options);
}

KEZVisRep *KEZVisRepFactory::CreatePlaneRep(KEZMathSetOfPoints const &points, KEZMathVector const &normal,
                                            KEZVisOptions const &surfaceOptions, KEZVisOptions const &edgeOptions)
{
    std::unique_ptr<const KEZVisPrimitive> surface(CreatePlaneSurfacePrimitive(points, normal));
    std::unique_ptr<const KEZVisPrimitive> edges(CreatePlaneBoundaryEdgesPrimitive(points));
    auto *rep = new KEZVisRepGraphics(QList<const KEZVisPrimitive *>{surface.get(), edges.get()},
                                      QList<KEZVisOptions>{surfaceOptions, edgeOptions});
    surface.release();
    edges.release();
    return rep;
}

// ---------------------------------------------------------------------------
// Primitives

KEZVisPolylinePrimitive *KEZVisRepFactory::CreatePlaneBoundaryEdgesPrimitive(KEZMathSetOfPoints const &points)
{
    KEZMathSetOfPoints closed;
    if (!points.isEmpty()) {
        closed.reserve(points.size() + 1);
        closed.append(points);
        closed.append(points.first());
    }
    return new KEZVisPolylinePrimitive(closed, KEZVisPolylinePrimitive::StructureConnected);
}

KEZVisSurfacePrimitive *KEZVisRepFactory::CreatePlaneSurfacePrimitive(KEZMathSetOfPoints const &points,
                                                                      KEZMathVector const &normal)
{
    const qint64 numVertexes = CheckedCount(points.size());
    const qint64 numTriangles = numVertexes < 3 ? 0 : numVertexes - 2;

    std::unique_ptr<double[]> coords(new double[3 * numVertexes]);
    std::unique_ptr<int[]> indexes(new int[3 * numTriangles]);
    // One normal per vertex: more than the triangles need, and harmless.
    std::unique_ptr<double[]> normals(new double[3 * numVertexes]);

    double normal3[3];
    normal.GetCoord(normal3[0], normal3[1], normal3[2]);
    for (qint64 i = 0; i < numVertexes; ++i) {
        double *vertex = coords.get() + 3 * i;
        points.at(i).GetCoord(vertex[0], vertex[1], vertex[2]);
        double *n = normals.get() + 3 * i;
        n[0] = normal3[0];
        n[1] = normal3[1];
        n[2] = normal3[2];
    }
    FillPolygonTriangles(int(numVertexes), indexes.get());

    return KEZVisRepFactoryPrivate::CreateSurface(numVertexes, std::move(coords), numTriangles, std::move(indexes),
                                                  std::move(normals));
}

KEZVisSurfacePrimitive *KEZVisRepFactory::CreatePolygonPrimitive(KEZMathPoint const &origin,
                                                                 KEZMathVector const &normal, double radius,
                                                                 int sides)
{
    CheckSideCount(sides);
    const qint64 numVertexes = sides;
    // Negative for one side: the allocation of the triangle array then throws
    // std::bad_array_new_length, which is passed on as it is.
    const qint64 numTriangles = qint64(sides) - 2;

    std::unique_ptr<double[]> coords(new double[3 * numVertexes]);
    std::unique_ptr<int[]> indexes(new int[3 * numTriangles]);
    std::unique_ptr<double[]> normals(new double[3 * numTriangles]);

    FillPolygonVertexes(origin, normal, radius, sides, coords.get());
    FillPolygonTriangles(sides, indexes.get());
    double unit[3];
    normal.Normalized().GetCoord(unit[0], unit[1], unit[2]);
    for (qint64 t = 0; t < numTriangles; ++t) {
        double *n = normals.get() + 3 * t;
        n[0] = unit[0];
        n[1] = unit[1];
        n[2] = unit[2];
    }

    return KEZVisRepFactoryPrivate::CreateSurface(numVertexes, std::move(coords), numTriangles, std::move(indexes),
                                                  std::move(normals));
}

KEZVisSurfacePrimitive *KEZVisRepFactory::CreatePrismPrimitive(KEZMathPoint const &origin, KEZMathVector const &axis,
                                                               double radius, double height, int sides)
{
    CheckSideCount(sides);
    const qint64 numVertexes = CheckedCount(2 * qint64(sides));
    const qint64 numTriangles = numVertexes;

    std::unique_ptr<double[]> coords(new double[3 * numVertexes]);
    std::unique_ptr<int[]> indexes(new int[3 * numTriangles]);
    FillPrismVertexes(origin, axis, radius, height, sides, coords.get(), nullptr);
    FillPrismTriangles(sides, indexes.get());

    return KEZVisRepFactoryPrivate::CreateSurface(numVertexes, std::move(coords), numTriangles, std::move(indexes),
                                                  nullptr);
}

KEZVisSurfacePrimitive *KEZVisRepFactory::CreatePyramidPrimitive(KEZMathPoint const &origin,
                                                                 KEZMathVector const &axis, double radius,
                                                                 double height, int sides)
{
    CheckSideCount(sides);
    const qint64 numVertexes = CheckedCount(qint64(sides) + 1);
    const qint64 numTriangles = sides;

    std::unique_ptr<double[]> coords(new double[3 * numVertexes]);
    std::unique_ptr<int[]> indexes(new int[3 * numTriangles]);
    FillPyramidVertexes(origin, axis, radius, height, sides, coords.get(), nullptr);
    FillPyramidTriangles(sides, indexes.get());

    return KEZVisRepFactoryPrivate::CreateSurface(numVertexes, std::move(coords), numTriangles, std::move(indexes),
                                                  nullptr);
}

KEZVisSurfacePrimitive *KEZVisRepFactory::CreateSpherePrimitive(KEZMathPoint const &center, double radius,
                                                                int divisions)
{
    // Written as a negation so that a NaN radius fails as well.
    if (!(radius >= 0.001))
        throw KEZSysOutOfBoundsException(QVariant(radius), QVariant(0.0), QVariant(), false, false);
    if (divisions < 1)
        throw KEZSysOutOfBoundsException(QVariant(divisions), QVariant(1), QVariant(), true, true);

    const qint64 d = divisions;
    const qint64 rings = 2 * d - 1;
    const qint64 perRing = 4 * d;
    const qint64 ringVertexes = rings * perRing;
    const qint64 numTriangles = CheckedCount(2 * ringVertexes);
    const qint64 numVertexes = CheckedCount(ringVertexes + 2);
    const double step = (Pi / 2.0) / double(divisions);

    std::unique_ptr<double[]> coords(new double[3 * numVertexes]);
    std::unique_ptr<int[]> indexes(new int[3 * numTriangles]);

    // The longitudes run through the same sums on every ring, so their sines
    // and cosines are worked out once.
    std::vector<double> sinLongitude(static_cast<size_t>(perRing));
    std::vector<double> cosLongitude(static_cast<size_t>(perRing));
    double longitude = 0.0;
    for (qint64 j = 0; j < perRing; ++j) {
        sinLongitude[size_t(j)] = std::sin(longitude);
        cosLongitude[size_t(j)] = std::cos(longitude);
        longitude += step;
    }

    double cx, cy, cz;
    center.GetCoord(cx, cy, cz);
    double *vertex = coords.get();
    const KEZMathPoint north = center + KEZMathVector(0.0, 0.0, radius);
    const KEZMathPoint south = center + KEZMathVector(0.0, 0.0, -radius);
    north.GetCoord(vertex[0], vertex[1], vertex[2]);
    south.GetCoord(vertex[3], vertex[4], vertex[5]);
    vertex += 6;
    double polar = step;
    for (qint64 k = 0; k < rings; ++k) {
        const double z = std::cos(polar) * radius;
        const double rho = std::sin(polar) * radius;
        for (qint64 j = 0; j < perRing; ++j) {
            vertex[0] = cx + sinLongitude[size_t(j)] * rho;
            vertex[1] = cy + cosLongitude[size_t(j)] * rho;
            vertex[2] = cz + z;
            vertex += 3;
        }
        polar += step;
    }

    // A(k, j) with j - 1 wrapping round the ring.
    const int m = int(perRing);
    const auto ringVertex = [m](qint64 k, int j) { return int(2 + k * m + j); };
    int *triangle = indexes.get();
    const auto put = [&triangle](int a, int b, int c) {
        triangle[0] = a;
        triangle[1] = b;
        triangle[2] = c;
        triangle += 3;
    };
    for (int j = 0; j < m; ++j) {
        const int previous = j == 0 ? m - 1 : j - 1;
        put(0, ringVertex(0, previous), ringVertex(0, j));
    }
    for (qint64 k = 0; k + 1 < rings; ++k) {
        for (int j = 0; j < m; ++j) {
            const int previous = j == 0 ? m - 1 : j - 1;
            put(ringVertex(k, j), ringVertex(k, previous), ringVertex(k + 1, j));
            put(ringVertex(k + 1, j), ringVertex(k, previous), ringVertex(k + 1, previous));
        }
    }
    for (int j = 0; j < m; ++j) {
        const int previous = j == 0 ? m - 1 : j - 1;
        put(1, ringVertex(rings - 1, j), ringVertex(rings - 1, previous));
    }

    return KEZVisRepFactoryPrivate::CreateSurface(numVertexes, std::move(coords), numTriangles, std::move(indexes),
                                                  nullptr);
}

// ---------------------------------------------------------------------------
// Arrows, axes and origins

KEZVisRep *KEZVisRepFactory::CreateArrowRep(KEZMathPoint const &start, KEZMathVector const &direction,
                                            double shaftLength, double shaftRadius, double headLength,
                                            double headRadius, int sides, KEZVisOptions const &options)
{
    const KEZMathVector axis = direction.Normalized();
    const KEZMathPoint headBase = start + axis * shaftLength;
    std::unique_ptr<const KEZVisPrimitive> shaft(CreatePrismPrimitive(start, axis, shaftRadius, shaftLength, sides));
    std::unique_ptr<const KEZVisPrimitive> foot(CreatePolygonPrimitive(start, axis, shaftRadius, sides));
    std::unique_ptr<const KEZVisPrimitive> head(CreatePyramidPrimitive(headBase, axis, headRadius, headLength, sides));
    auto *rep = new KEZVisRepGraphics(QList<const KEZVisPrimitive *>{shaft.get(), foot.get(), head.get()}, options);
    shaft.release();
    foot.release();
    head.release();
    return rep;
}

KEZVisRep *KEZVisRepFactory::CreateArrowRep(KEZMathPoint const &start, KEZMathVector const &direction, double length,
                                            KEZVisOptions const &options, int sides, double shaftRadiusRatio,
                                            double headRadiusRatio, double shaftLengthRatio)
{
    return CreateArrowRep(start, direction, length * shaftLengthRatio, length * shaftRadiusRatio,
                          (1.0 - shaftLengthRatio) * length, length * headRadiusRatio, sides, options);
}

KEZVisRepGraphics *KEZVisRepFactory::CreateAxisRep(KEZMathPoint const &start, KEZMathVector const &direction,
                                                   double length, KEZVisOptions const &options)
{
    const KEZMathVector axis = direction.Normalized();
    KEZMathSetOfPoints ends;
    ends.append(start);
    ends.append(start + axis * length);
    return KEZVisRepFactoryPrivate::WrapInRep(
        std::make_unique<KEZVisPolylinePrimitive>(ends, KEZVisPolylinePrimitive::StructureSeparateSegments),
        options);
}

KEZVisRepGraphics *KEZVisRepFactory::CreateOirginRep(KEZMathPoint const &point, KEZVisOptions const &options)
{
    KEZMathSetOfPoints single;
    single.append(point);
    return KEZVisRepFactoryPrivate::WrapInRep(std::make_unique<KEZVisPointPrimitive>(single), options);
}
