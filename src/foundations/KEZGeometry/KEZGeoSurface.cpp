#include "KEZGeoSurface.h"
#include "KEZGeoSurface_p.h"

#include "KEZSysException.h"
#include "KEZSysOutOfBoundsException.h"

#include <QVariant>

namespace {

// Checks the input before anything is allocated, so that a refused surface
// leaves nothing behind.
KEZGeoSurfacePrivate *createRecord(const KEZMathSetOfPoints &vertices,
                                   const QList<int> &triangleVertexIndexes)
{
    if (triangleVertexIndexes.size() % 3 != 0) {
        throw KEZSysException(QStringLiteral("triangle vertex index count %1 is not a multiple of 3")
                                  .arg(triangleVertexIndexes.size()));
    }
    const int lastVertex = int(vertices.size()) - 1;
    for (int index : triangleVertexIndexes) {
        if (index < 0 || index > lastVertex)
            throw KEZSysOutOfBoundsException(index, 0, lastVertex, true, true);
    }
    auto *d = new KEZGeoSurfacePrivate;
    d->vertices = vertices;
    d->triangleVertexIndexes = triangleVertexIndexes;
    d->boundingBox = vertices.GetBoundingBox();
    return d;
}

} // namespace

KEZGeoSurface::KEZGeoSurface(const KEZMathSetOfPoints &vertices, const QList<int> &triangleVertexIndexes,
                             QObject *parent)
    : KEZGeoGeometry(createRecord(vertices, triangleVertexIndexes), parent)
{
}

KEZGeoSurface::~KEZGeoSurface() = default;

int KEZGeoSurface::GetNumVertices() const
{
    Q_D(const KEZGeoSurface);
    return int(d->vertices.size());
}

int KEZGeoSurface::GetNumTriangles() const
{
    Q_D(const KEZGeoSurface);
    return int(d->triangleVertexIndexes.size() / 3);
}

KEZMathPoint KEZGeoSurface::GetVertex(int vertexIndex) const
{
    Q_D(const KEZGeoSurface);
    const int last = int(d->vertices.size()) - 1;
    if (vertexIndex < 0 || vertexIndex > last)
        throw KEZSysOutOfBoundsException(vertexIndex, 0, last, true, true);
    return d->vertices.at(vertexIndex);
}

void KEZGeoSurface::GetVertices(int triangleNumber, int &a, int &b, int &c) const
{
    Q_D(const KEZGeoSurface);
    // The own record's count, not a subclass's: the indexes read below are
    // this record's.
    const int count = int(d->triangleVertexIndexes.size() / 3);
    if (triangleNumber < 1 || triangleNumber > count)
        throw KEZSysOutOfBoundsException(triangleNumber, 1, count, true, true);
    const qsizetype first = 3 * qsizetype(triangleNumber - 1);
    a = d->triangleVertexIndexes.at(first);
    b = d->triangleVertexIndexes.at(first + 1);
    c = d->triangleVertexIndexes.at(first + 2);
}

KEZMathVector KEZGeoSurface::GetNormal(int triangleNumber) const
{
    Q_D(const KEZGeoSurface);
    int a = 0;
    int b = 0;
    int c = 0;
    KEZGeoSurface::GetVertices(triangleNumber, a, b, c); // this record's indexes, to read this record's vertices
    const KEZMathPoint &pa = d->vertices.at(a);
    return (d->vertices.at(b) - pa) ^ (d->vertices.at(c) - pa);
}

KEZMathBoundingBox KEZGeoSurface::GetBoundingBox() const
{
    Q_D(const KEZGeoSurface);
    return d->boundingBox;
}
