#include "KEZVisPyramidPrimitive.h"
#include "KEZVisPyramidPrimitive_p.h"
#include "KEZVisRegularShapes_p.h"

namespace {

// The counts follow from the side count alone.
qsizetype NumVertexes(const KEZVisPyramidPrimitivePrivate *d)
{
    return qsizetype(d->numSides) + 1;
}

qsizetype NumTriangles(const KEZVisPyramidPrimitivePrivate *d)
{
    return qsizetype(d->numSides);
}

} // namespace

KEZVisPyramidPrimitive::KEZVisPyramidPrimitive(const KEZMathPoint &center, const KEZMathVector &direction,
                                               double radius, double height, int numSides)
    : KEZVisSurfacePrimitive(new KEZVisPyramidPrimitivePrivate)
{
    // Whatever is allocated below belongs to the record at once, so that the
    // surface part frees it when a later step throws.
    KEZVisRegularShapes::CheckSideCount(numSides);
    Q_D(KEZVisPyramidPrimitive);
    d->center = center;
    d->direction = direction;
    d->radius = radius;
    d->height = height;
    d->numSides = numSides;

    const qint64 numVertexes = KEZVisRegularShapes::CheckedCount(qint64(numSides) + 1);
    const qint64 numTriangles = numSides;
    d->vertexCoords.reset(new double[3 * numVertexes]);
    d->vertexNormals.reset(new double[3 * numVertexes]);
    d->triangleVertexes.reset(new int[3 * numTriangles]);
    // The apex is all that is needed round the top: no second circle is built there.
    KEZVisRegularShapes::FillPyramidVertexes(center, direction, radius, height, numSides,
                                             d->vertexCoords.get(), d->vertexNormals.get());
    KEZVisRegularShapes::FillPyramidTriangles(numSides, d->triangleVertexes.get());
}

KEZVisPyramidPrimitive::~KEZVisPyramidPrimitive() = default;

int KEZVisPyramidPrimitive::GetNumTriangles() const
{
    Q_D(const KEZVisPyramidPrimitive);
    return int(NumTriangles(d));
}

int KEZVisPyramidPrimitive::GetNumVertexes() const
{
    Q_D(const KEZVisPyramidPrimitive);
    return int(NumVertexes(d));
}

QList<double> KEZVisPyramidPrimitive::GetVertexCoordinatesAsDouble() const
{
    Q_D(const KEZVisPyramidPrimitive);
    const double *coords = d->vertexCoords.get();
    return QList<double>(coords, coords + 3 * NumVertexes(d));
}

QList<long> KEZVisPyramidPrimitive::GetTriangleVertexIndexes() const
{
    Q_D(const KEZVisPyramidPrimitive);
    const int *indexes = d->triangleVertexes.get();
    return QList<long>(indexes, indexes + 3 * NumTriangles(d));
}

QList<double> KEZVisPyramidPrimitive::GetVertexNormalCoordsAsDouble() const
{
    Q_D(const KEZVisPyramidPrimitive);
    const double *normals = d->vertexNormals.get();
    return QList<double>(normals, normals + 3 * NumVertexes(d));
}
