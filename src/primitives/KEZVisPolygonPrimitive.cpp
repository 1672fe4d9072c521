#include "KEZVisPolygonPrimitive.h"
#include "KEZVisPolygonPrimitive_p.h"
#include "KEZVisRegularShapes_p.h"

namespace {

// The counts follow from the side count alone.
qsizetype NumVertexes(const KEZVisPolygonPrimitivePrivate *d)
{
    return qsizetype(d->numSides);
}

qsizetype NumTriangles(const KEZVisPolygonPrimitivePrivate *d)
{
    return qsizetype(d->numSides) - 2;
}

} // namespace

KEZVisPolygonPrimitive::KEZVisPolygonPrimitive(const KEZMathPoint &center, const KEZMathVector &direction,
                                               double radius, int numSides)
    : KEZVisSurfacePrimitive(new KEZVisPolygonPrimitivePrivate)
{
    // Whatever is allocated below belongs to the record at once, so that the
    // surface part frees it when a later step throws.
    KEZVisRegularShapes::CheckSideCount(numSides);
    Q_D(KEZVisPolygonPrimitive);
    d->center = center;
    d->direction = direction;
    d->radius = radius;
    d->numSides = numSides;

    const qint64 numVertexes = numSides;
    // Negative for one side: the allocation of the triangle array then throws
    // std::bad_array_new_length, which leaves the constructor as it is.
    const qint64 numTriangles = qint64(numSides) - 2;
    d->vertexCoords.reset(new double[3 * numVertexes]);
    d->vertexNormals.reset(new double[3 * numVertexes]);
    d->triangleVertexes.reset(new int[3 * numTriangles]);
    KEZVisRegularShapes::FillPolygonVertexes(center, direction, radius, numSides, d->vertexCoords.get());
    double direction3[3];
    direction.GetCoord(direction3[0], direction3[1], direction3[2]);
    for (qint64 i = 0; i < numVertexes; ++i) {
        double *normal = d->vertexNormals.get() + 3 * i;
        normal[0] = direction3[0];
        normal[1] = direction3[1];
        normal[2] = direction3[2];
    }
    KEZVisRegularShapes::FillPolygonTriangles(numSides, d->triangleVertexes.get());
}

KEZVisPolygonPrimitive::~KEZVisPolygonPrimitive() = default;

int KEZVisPolygonPrimitive::GetNumTriangles() const
{
    Q_D(const KEZVisPolygonPrimitive);
    return int(NumTriangles(d));
}

int KEZVisPolygonPrimitive::GetNumVertexes() const
{
    Q_D(const KEZVisPolygonPrimitive);
    return int(NumVertexes(d));
}

QList<double> KEZVisPolygonPrimitive::GetVertexCoordinatesAsDouble() const
{
    Q_D(const KEZVisPolygonPrimitive);
    const double *coords = d->vertexCoords.get();
    return QList<double>(coords, coords + 3 * NumVertexes(d));
}

QList<long> KEZVisPolygonPrimitive::GetTriangleVertexIndexes() const
{
    Q_D(const KEZVisPolygonPrimitive);
    const int *indexes = d->triangleVertexes.get();
    return QList<long>(indexes, indexes + 3 * NumTriangles(d));
}

QList<double> KEZVisPolygonPrimitive::GetVertexNormalCoordsAsDouble() const
{
    Q_D(const KEZVisPolygonPrimitive);
    const double *normals = d->vertexNormals.get();
    return QList<double>(normals, normals + 3 * NumVertexes(d));
}
