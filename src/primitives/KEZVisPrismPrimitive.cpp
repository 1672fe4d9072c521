#include "KEZVisPrismPrimitive.h"
#include "KEZVisPrismPrimitive_p.h"
#include "KEZVisRegularShapes_p.h"

namespace {

// The counts follow from the side count alone.
qsizetype NumVertexes(const KEZVisPrismPrimitivePrivate *d)
{
    return 2 * qsizetype(d->numSides);
}

qsizetype NumTriangles(const KEZVisPrismPrimitivePrivate *d)
{
    return 2 * qsizetype(d->numSides);
}

} // namespace

KEZVisPrismPrimitive::KEZVisPrismPrimitive(const KEZMathPoint &center, const KEZMathVector &direction,
                                           double radius, double height, int numSides)
    : KEZVisSurfacePrimitive(new KEZVisPrismPrimitivePrivate)
{
    // Whatever is allocated below belongs to the record at once, so that the
    // surface part frees it when a later step throws.
    KEZVisRegularShapes::CheckSideCount(numSides);
    Q_D(KEZVisPrismPrimitive);
    d->center = center;
    d->direction = direction;
    d->radius = radius;
    d->height = height;
    d->numSides = numSides;

    const qint64 numVertexes = KEZVisRegularShapes::CheckedCount(2 * qint64(numSides));
    const qint64 numTriangles = numVertexes;
    d->vertexCoords.reset(new double[3 * numVertexes]);
    d->vertexNormals.reset(new double[3 * numVertexes]);
    d->triangleVertexes.reset(new int[3 * numTriangles]);
    KEZVisRegularShapes::FillPrismVertexes(center, direction, radius, height, numSides,
                                           d->vertexCoords.get(), d->vertexNormals.get());
    KEZVisRegularShapes::FillPrismTriangles(numSides, d->triangleVertexes.get());
}

KEZVisPrismPrimitive::~KEZVisPrismPrimitive() = default;

int KEZVisPrismPrimitive::GetNumTriangles() const
{
    Q_D(const KEZVisPrismPrimitive);
    return int(NumTriangles(d));
}

int KEZVisPrismPrimitive::GetNumVertexes() const
{
    Q_D(const KEZVisPrismPrimitive);
    return int(NumVertexes(d));
}

QList<double> KEZVisPrismPrimitive::GetVertexCoordinatesAsDouble() const
{
    Q_D(const KEZVisPrismPrimitive);
    const double *coords = d->vertexCoords.get();
    return QList<double>(coords, coords + 3 * NumVertexes(d));
}

QList<long> KEZVisPrismPrimitive::GetTriangleVertexIndexes() const
{
    Q_D(const KEZVisPrismPrimitive);
    const int *indexes = d->triangleVertexes.get();
    return QList<long>(indexes, indexes + 3 * NumTriangles(d));
}

QList<double> KEZVisPrismPrimitive::GetVertexNormalCoordsAsDouble() const
{
    Q_D(const KEZVisPrismPrimitive);
    const double *normals = d->vertexNormals.get();
    return QList<double>(normals, normals + 3 * NumVertexes(d));
}
