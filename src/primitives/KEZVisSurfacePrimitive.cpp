#include "KEZVisSurfacePrimitive.h"
#include "KEZVisSurfacePrimitive_p.h"

#include "KEZVisFlatArrays_p.h"

#include "KEZMathPoint.h"
#include "KEZMathVector.h"

#include <cmath>
#include <QDataStream>

#include <algorithm>

namespace {

// The own arrays hold what the counts announce. False only for a primitive
// built from a surface, which has counts but no arrays.
bool hasOwnMesh(const KEZVisSurfacePrimitivePrivate *d)
{
    return (d->numVertexes == 0 || d->vertexCoords) && (d->numTriangles == 0 || d->triangleVertexes);
}

} // namespace

KEZVisSurfacePrimitivePrivate::~KEZVisSurfacePrimitivePrivate() = default;

void KEZVisSurfacePrimitivePrivate::SetMesh(int newNumVertexes, double *newVertexCoords, int newNumTriangles,
                                            int *newTriangleVertexes, double *newTriangleNormals)
{
    vertexCoords.reset(newVertexCoords);
    triangleVertexes.reset(newTriangleVertexes);
    triangleNormals.reset(newTriangleNormals);
    numVertexes = (newVertexCoords && newNumVertexes > 0) ? newNumVertexes : 0;
    numTriangles = (newTriangleVertexes && newNumTriangles > 0) ? newNumTriangles : 0;
    if (!triangleNormals)
        ComputeNormals();
    boundingBox = KEZMathBoundingBox();
    ComputeBoundingBox();
}

void KEZVisSurfacePrimitivePrivate::ComputeNormals()
{
    if (numTriangles <= 0) {
        triangleNormals.reset();
        return;
    }
    const size_t count = 3 * size_t(numTriangles);
    triangleNormals.reset(new double[count]);
    KEZVisFlatArrays::AdviseHugePages(triangleNormals.get(), count * sizeof(double));
    const double *coords = vertexCoords.get();
    const int *indexes = triangleVertexes.get();
    double *normals = triangleNormals.get();
    const auto inRange = [this](int index) { return unsigned(index) < unsigned(numVertexes); };
    for (size_t t = 0; t < count; t += 3) {
        const int a = indexes[t];
        const int b = indexes[t + 1];
        const int c = indexes[t + 2];
        if (!inRange(a) || !inRange(b) || !inRange(c)) {
            normals[t] = normals[t + 1] = normals[t + 2] = 0.0;
            continue;
        }
        // u = pc - pa and w = pb - pa; the operands stand in this order on
        // purpose, so the normal points against the right-handed sense of
        // a, b, c. The cross product and KEZMathVector::Normalize are written
        // out (the same operations in the same order, so the same bits),
        // which spares two calls and a second square root per triangle on
        // millions of triangles.
        const double *pa = coords + 3 * size_t(a);
        const double *pb = coords + 3 * size_t(b);
        const double *pc = coords + 3 * size_t(c);
        const double u[3] = {pc[0] - pa[0], pc[1] - pa[1], pc[2] - pa[2]};
        const double w[3] = {pb[0] - pa[0], pb[1] - pa[1], pb[2] - pa[2]};
        double normal[3] = {u[1] * w[2] - u[2] * w[1], u[2] * w[0] - u[0] * w[2], u[0] * w[1] - u[1] * w[0]};
        const double magnitude = std::sqrt(normal[0] * normal[0] + normal[1] * normal[1] + normal[2] * normal[2]);
        if (magnitude >= KEZMathVector::ValidityThreshold) {
            normal[0] /= magnitude;
            normal[1] /= magnitude;
            normal[2] /= magnitude;
        }
        normals[t] = normal[0];
        normals[t + 1] = normal[1];
        normals[t + 2] = normal[2];
    }
}

void KEZVisSurfacePrimitivePrivate::ComputeBoundingBox() const
{
    if (numVertexes > 0 && vertexCoords)
        boundingBox = KEZVisFlatArrays::BoundingBox(vertexCoords.get(), numVertexes);
    boundingBoxValid = true;
}

KEZVisSurfacePrimitive::KEZVisSurfacePrimitive()
    : d_ptr(new KEZVisSurfacePrimitivePrivate)
{
}

KEZVisSurfacePrimitive::KEZVisSurfacePrimitive(const KEZVisSurfacePrimitive &)
    : KEZVisPrimitive()
    , d_ptr(new KEZVisSurfacePrimitivePrivate)
{
    // Deliberately copies nothing: the meta-type system needs the constructor,
    // and a primitive is never duplicated by value.
}

KEZVisSurfacePrimitive::KEZVisSurfacePrimitive(int numVertexes, double *vertexCoords, int numTriangles,
                                               int *triangleVertexes, double *triangleNormals)
    : d_ptr(new KEZVisSurfacePrimitivePrivate)
{
    Q_D(KEZVisSurfacePrimitive);
    d->SetMesh(numVertexes, vertexCoords, numTriangles, triangleVertexes, triangleNormals);
}

KEZVisSurfacePrimitive::KEZVisSurfacePrimitive(const KEZGeoSurface *surface)
    : d_ptr(new KEZVisSurfacePrimitivePrivate)
{
    Q_D(KEZVisSurfacePrimitive);
    if (!surface)
        return;
    try {
        d->surface = surface;
        d->numTriangles = surface->GetNumTriangles();
        d->numVertexes = surface->GetNumVertices();
        d->boundingBox = surface->GetBoundingBox();
        d->boundingBoxValid = true;
    } catch (...) {
        // A surface may fail to answer. The destructor does not run for a
        // constructor that throws, so the record goes here.
        delete d_ptr;
        d_ptr = nullptr;
        throw;
    }
}

KEZVisSurfacePrimitive::KEZVisSurfacePrimitive(KEZVisSurfacePrimitivePrivate *d)
    : d_ptr(d)
{
}

KEZVisSurfacePrimitive::~KEZVisSurfacePrimitive()
{
    delete d_ptr;
}

KEZMathBoundingBox KEZVisSurfacePrimitive::GetBoundingBox(const KEZVisOptions &) const
{
    Q_D(const KEZVisSurfacePrimitive);
    if (!d->boundingBoxValid)
        d->ComputeBoundingBox();
    return d->boundingBox;
}

int KEZVisSurfacePrimitive::GetNumTriangles() const
{
    Q_D(const KEZVisSurfacePrimitive);
    return d->numTriangles;
}

int KEZVisSurfacePrimitive::GetNumVertexes() const
{
    Q_D(const KEZVisSurfacePrimitive);
    return d->numVertexes;
}

QList<float> KEZVisSurfacePrimitive::GetVertexCoordinatesAsFloat() const
{
    // The range constructor converts value by value in one pass, with no
    // zero-filling of the list first.
    const QList<double> coords = GetVertexCoordinatesAsDouble();
    return QList<float>(coords.cbegin(), coords.cend());
}

QList<double> KEZVisSurfacePrimitive::GetVertexCoordinatesAsDouble() const
{
    Q_D(const KEZVisSurfacePrimitive);
    if (const KEZGeoSurface *surface = d->surface.data()) {
        QList<double> result(3 * qsizetype(d->numVertexes));
        double *xyz = result.data();
        for (int i = 0; i < d->numVertexes; ++i, xyz += 3)
            surface->GetVertex(i).GetCoord(xyz[0], xyz[1], xyz[2]);
        return result;
    }
    if (d->numVertexes <= 0 || !d->vertexCoords)
        return {};
    const double *begin = d->vertexCoords.get();
    return QList<double>(begin, begin + 3 * qsizetype(d->numVertexes));
}

QList<long> KEZVisSurfacePrimitive::GetTriangleVertexIndexes() const
{
    Q_D(const KEZVisSurfacePrimitive);
    if (const KEZGeoSurface *surface = d->surface.data()) {
        QList<long> result(3 * qsizetype(d->numTriangles));
        long *abc = result.data();
        for (int i = 1; i <= d->numTriangles; ++i, abc += 3) {
            int a = 0;
            int b = 0;
            int c = 0;
            surface->GetVertices(i, a, b, c);
            abc[0] = a;
            abc[1] = b;
            abc[2] = c;
        }
        return result;
    }
    if (d->numTriangles <= 0 || !d->triangleVertexes)
        return {};
    const int *begin = d->triangleVertexes.get();
    return QList<long>(begin, begin + 3 * qsizetype(d->numTriangles));
}

QList<double> KEZVisSurfacePrimitive::GetTriangleNormalCoordsAsDouble() const
{
    Q_D(const KEZVisSurfacePrimitive);
    if (const KEZGeoSurface *surface = d->surface.data()) {
        QList<double> result(3 * qsizetype(d->numTriangles));
        double *xyz = result.data();
        for (int i = 1; i <= d->numTriangles; ++i, xyz += 3)
            surface->GetNormal(i).Normalized().GetCoord(xyz[0], xyz[1], xyz[2]);
        return result;
    }
    if (d->numTriangles <= 0 || !d->triangleNormals)
        return {};
    const double *begin = d->triangleNormals.get();
    return QList<double>(begin, begin + 3 * qsizetype(d->numTriangles));
}

QList<float> KEZVisSurfacePrimitive::GetTriangleNormalCoordsAsFloat() const
{
    Q_D(const KEZVisSurfacePrimitive);
    if (const KEZGeoSurface *surface = d->surface.data()) {
        // Deliberately not normalised, unlike the double list.
        QList<float> result(3 * qsizetype(d->numTriangles));
        float *xyz = result.data();
        for (int i = 1; i <= d->numTriangles; ++i, xyz += 3) {
            const KEZMathVector normal = surface->GetNormal(i);
            xyz[0] = float(normal.GetX());
            xyz[1] = float(normal.GetY());
            xyz[2] = float(normal.GetZ());
        }
        return result;
    }
    if (d->numTriangles <= 0 || !d->triangleNormals)
        return {};
    const double *begin = d->triangleNormals.get();
    return QList<float>(begin, begin + 3 * qsizetype(d->numTriangles));
}

QList<double> KEZVisSurfacePrimitive::GetVertexNormalCoordsAsDouble() const
{
    return {};
}

QDataStream &operator<<(QDataStream &stream, const KEZVisSurfacePrimitive &surface)
{
    const KEZVisSurfacePrimitivePrivate *d = surface.d_func();
    if (hasOwnMesh(d)) {
        stream << qint32(d->numVertexes) << qint32(d->numTriangles);
        KEZVisFlatArrays::WriteDoubles(stream, d->vertexCoords.get(), 3 * qint64(d->numVertexes));
        KEZVisFlatArrays::WriteInt32s(stream, d->triangleVertexes.get(), 3 * qint64(d->numTriangles));
        return stream;
    }

    // Built from a surface: no arrays of its own. Write the surface's mesh in
    // the same form while it lives, and an empty mesh once it has gone.
    const KEZGeoSurface *source = d->surface.data();
    if (!source) {
        stream << qint32(0) << qint32(0);
        return stream;
    }
    const int numVertexes = d->numVertexes;
    const int numTriangles = d->numTriangles;
    std::unique_ptr<double[]> coords(new double[3 * size_t(numVertexes)]);
    for (int i = 0; i < numVertexes; ++i)
        source->GetVertex(i).GetCoord(coords[3 * i], coords[3 * i + 1], coords[3 * i + 2]);
    std::unique_ptr<int[]> indexes(new int[3 * size_t(numTriangles)]);
    for (int i = 0; i < numTriangles; ++i)
        source->GetVertices(i + 1, indexes[3 * i], indexes[3 * i + 1], indexes[3 * i + 2]);
    stream << qint32(numVertexes) << qint32(numTriangles);
    KEZVisFlatArrays::WriteDoubles(stream, coords.get(), 3 * qint64(numVertexes));
    KEZVisFlatArrays::WriteInt32s(stream, indexes.get(), 3 * qint64(numTriangles));
    return stream;
}

QDataStream &operator>>(QDataStream &stream, KEZVisSurfacePrimitive &surface)
{
    KEZVisSurfacePrimitivePrivate *d = surface.d_func();
    KEZVisFlatArrays::StreamStatusScope scope(stream);

    qint32 numVertexes = 0;
    qint32 numTriangles = 0;
    stream >> numVertexes >> numTriangles;

    bool ok = stream.status() == QDataStream::Ok;
    if (ok && (numVertexes < 0 || numTriangles < 0)) {
        stream.setStatus(QDataStream::ReadCorruptData);
        ok = false;
    }
    std::unique_ptr<double[]> coords;
    std::unique_ptr<int[]> indexes;
    if (ok)
        ok = KEZVisFlatArrays::ReadDoubles(stream, 3 * qint64(numVertexes), coords);
    if (ok)
        ok = KEZVisFlatArrays::ReadInt32s(stream, 3 * qint64(numTriangles), indexes);
    if (ok) {
        // Indexes are only meaningful within the vertices; anything else is a
        // corrupt stream, and no reader of the lists should ever see it.
        const int *begin = indexes.get();
        const int *end = begin + 3 * qint64(numTriangles);
        if (std::any_of(begin, end, [numVertexes](int index) { return unsigned(index) >= unsigned(numVertexes); })) {
            stream.setStatus(QDataStream::ReadCorruptData);
            ok = false;
        }
    }

    if (!ok) {
        d->SetMesh(0, nullptr, 0, nullptr, nullptr);
        return stream;
    }
    d->SetMesh(numVertexes, coords.release(), numTriangles, indexes.release(), nullptr);
    return stream;
}
