#include "KEZVisPolylinePrimitive.h"
#include "KEZVisPolylinePrimitive_p.h"

#include "KEZVisFlatArrays_p.h"

#include "KEZGeoLocationOnCurve.h"
#include "KEZSysException.h"

#include <QDataStream>

namespace {

// Writes the point into place `place` of a flat x, y, z list.
template <typename T>
void putPoint(std::vector<T> &list, int place, const KEZMathPoint &point)
{
    T *xyz = list.data() + 3 * size_t(place);
    xyz[0] = T(point.GetX());
    xyz[1] = T(point.GetY());
    xyz[2] = T(point.GetZ());
}

// Writes vertex `index` of the curve into place `place`, where index counts on
// past the last vertex of a curve of vertexCount vertices and wraps round to
// vertex 0 once. An index that still lies outside the curve leaves the place
// as it is, so that a range that does not fit its curve cannot read beyond it.
template <typename T>
void putVertex(std::vector<T> &list, int place, const KEZGeoCurve *curve, int index, int vertexCount)
{
    const int vertex = index > vertexCount - 1 ? index - vertexCount : index;
    if (vertex >= 0 && vertex < vertexCount)
        putPoint(list, place, curve->GetVertex(vertex));
}

// The getters read the curve while the range is valid and the curve is still
// there; otherwise they answer from the explicit coordinates.
bool readsCurve(const KEZVisPolylinePrimitivePrivate *d)
{
    return d->curve.Get() && d->range.IsValid();
}

// The explicit coordinates as a flat list of T, narrowed value by value in
// one pass; empty when there are none.
template <typename T>
std::vector<T> storedCoords(const KEZVisPolylinePrimitivePrivate *d)
{
    if (!d->coords)
        return {};
    const double *begin = d->coords.get();
    return std::vector<T>(begin, begin + 3 * size_t(d->numPoints));
}

// The box of the points that the polyline yields: from the explicit array, or
// along the curve from the points that GetCoordsAsDouble() gives.
void updateBoundingBox(const KEZVisPolylinePrimitive &polyline, KEZVisPolylinePrimitivePrivate *d)
{
    if (readsCurve(d)) {
        const std::vector<double> points = polyline.GetCoordsAsDouble();
        d->boundingBox = KEZVisFlatArrays::BoundingBox(points.data(), qint64(points.size() / 3));
    } else {
        d->boundingBox = KEZVisFlatArrays::BoundingBox(d->coords.get(), d->coords ? d->numPoints : 0);
    }
}

} // namespace

KEZVisPolylinePrimitivePrivate::~KEZVisPolylinePrimitivePrivate() = default;

void KEZVisPolylinePrimitivePrivate::SetCoords(double *newCoords, int newNumPoints)
{
    coords.reset(newCoords);
    numPoints = (newCoords && newNumPoints > 0) ? newNumPoints : 0;
}

KEZVisPolylinePrimitive::KEZVisPolylinePrimitive()
    : d_ptr(new KEZVisPolylinePrimitivePrivate)
{
}

KEZVisPolylinePrimitive::KEZVisPolylinePrimitive(const KEZVisPolylinePrimitive &)
    : KEZVisPrimitive()
    , d_ptr(new KEZVisPolylinePrimitivePrivate)
{
    // Deliberately copies nothing: the meta-type system needs the constructor,
    // and a primitive is never duplicated by value.
}

KEZVisPolylinePrimitive::KEZVisPolylinePrimitive(const KEZMathSetOfPoints &points, Structure structure)
    : d_ptr(new KEZVisPolylinePrimitivePrivate)
{
    Q_D(KEZVisPolylinePrimitive);
    const int count = int(points.size());
    double *coords = count > 0 ? new double[3 * size_t(count)] : nullptr;
    for (int i = 0; i < count; ++i)
        points.at(i).GetCoord(coords[3 * i], coords[3 * i + 1], coords[3 * i + 2]);
    d->SetCoords(coords, count);
    d->structure = structure;
    updateBoundingBox(*this, d);
}

KEZVisPolylinePrimitive::KEZVisPolylinePrimitive(double *coords, int numPoints, Structure structure)
    : d_ptr(new KEZVisPolylinePrimitivePrivate)
{
    Q_D(KEZVisPolylinePrimitive);
    d->SetCoords(coords, numPoints);
    d->structure = structure;
    updateBoundingBox(*this, d);
}

KEZVisPolylinePrimitive::KEZVisPolylinePrimitive(const KEZGeoCurve *curve, const KEZGeoRangeOfCurve &range)
    : d_ptr(new KEZVisPolylinePrimitivePrivate)
{
    Q_D(KEZVisPolylinePrimitive);
    try {
        d->range = range;
        d->curve.Reset(curve);

        if (!range.IsValid()) {
            // The whole curve. A range whose two ends are the same location
            // marks it for the getters.
            d->numPoints = curve->GetNumVertices();
            const KEZGeoLocationOnCurve origin = curve->GetLocation(0);
            d->range = KEZGeoRangeOfCurve(origin, origin);
            if (curve->IsClosed())
                ++d->numPoints;
            d->boundingBox = curve->GetBoundingBox();
            return;
        }

        KEZGeoLocationOnCurve start;
        KEZGeoLocationOnCurve end;
        range.GetLocations(start, end);
        int endSegment = end.GetSegment();
        if (start > end)
            endSegment += curve->GetNumSegments(); // the range runs across the seam
        int numPoints = endSegment - start.GetSegment() + 2;
        if (start.GetEndPoint() == 1)
            --numPoints; // starts on the end of its segment: that vertex is the next one's start
        if (end.GetEndPoint() == -1)
            --numPoints; // ends on the start of its segment
        d->numPoints = numPoints;
        if (numPoints < 2)
            throw KEZSysException(QStringLiteral("polyline contains less than 2 points"));
        updateBoundingBox(*this, d);
    } catch (...) {
        // The destructor does not run for a constructor that throws: release
        // the record, and with it the reference on the curve, here.
        delete d_ptr;
        d_ptr = nullptr;
        throw;
    }
}

KEZVisPolylinePrimitive::KEZVisPolylinePrimitive(KEZVisPolylinePrimitivePrivate *d)
    : d_ptr(d)
{
}

KEZVisPolylinePrimitive::~KEZVisPolylinePrimitive()
{
    delete d_ptr;
}

KEZMathBoundingBox KEZVisPolylinePrimitive::GetBoundingBox(const KEZVisOptions &) const
{
    Q_D(const KEZVisPolylinePrimitive);
    return d->boundingBox;
}

std::vector<double> KEZVisPolylinePrimitive::GetCoordsAsDouble() const
{
    Q_D(const KEZVisPolylinePrimitive);
    const int places = d->numPoints;
    if (places <= 0)
        return {};
    if (!readsCurve(d))
        return storedCoords<double>(d);

    std::vector<double> result(3 * size_t(places), 0.0);
    KEZGeoLocationOnCurve start;
    KEZGeoLocationOnCurve end;
    d->range.GetLocations(start, end);
    const KEZGeoCurve *curve = d->range.GetCurve();
    const int vertexCount = curve->GetNumVertices();

    if (start == end) {
        // A whole curve: all vertices from vertex 0, and vertex 0 once more at
        // the end of a closed curve.
        const int count = qMin(vertexCount, places);
        for (int i = 0; i < count; ++i)
            putPoint(result, i, curve->GetVertex(i));
        if (curve->IsClosed() && vertexCount > 0)
            putPoint(result, places - 1, curve->GetVertex(0));
        return result;
    }

    putPoint(result, 0, start.GetMathPoint());
    const int first = start.GetSegment() + (start.GetEndPoint() == 1 ? 2 : 1);
    for (int i = first; i < first + places - 1; ++i)
        putVertex(result, i - first + 1, curve, i, vertexCount);
    putPoint(result, places - 1, end.GetMathPoint());
    return result;
}

std::vector<float> KEZVisPolylinePrimitive::GetCoordsAsFloat() const
{
    Q_D(const KEZVisPolylinePrimitive);
    const int places = d->numPoints;
    if (places <= 0)
        return {};
    if (!readsCurve(d))
        return storedCoords<float>(d);

    // A routine of its own on purpose, not the narrowed double list: there is
    // no whole-curve case, and the loop bound does not move with the start.
    // Callers that take floats rely on this shape of the list.
    std::vector<float> result(3 * size_t(places), 0.0f);
    KEZGeoLocationOnCurve start;
    KEZGeoLocationOnCurve end;
    d->range.GetLocations(start, end);
    const KEZGeoCurve *curve = d->range.GetCurve();
    const int vertexCount = curve->GetNumVertices();

    putPoint(result, 0, start.GetMathPoint());
    const int first = start.GetSegment() + 1 + (start.GetEndPoint() == 1 ? 1 : 0);
    for (int i = first; i < places - 2; ++i)
        putVertex(result, i - first + 1, curve, i, vertexCount);
    putPoint(result, places - 1, end.GetMathPoint());
    return result;
}

int KEZVisPolylinePrimitive::GetNumPoints() const
{
    Q_D(const KEZVisPolylinePrimitive);
    return d->numPoints;
}

KEZVisPolylinePrimitive::Structure KEZVisPolylinePrimitive::GetStructure() const
{
    Q_D(const KEZVisPolylinePrimitive);
    return d->structure;
}

QDataStream &operator<<(QDataStream &stream, const KEZVisPolylinePrimitive &polyline)
{
    const KEZVisPolylinePrimitivePrivate *d = polyline.d_func();
    stream << qint32(d->structure);
    if (readsCurve(d)) {
        // A curve-based polyline goes out as plain points.
        const std::vector<double> coords = polyline.GetCoordsAsDouble();
        stream << qint64(coords.size() / 3);
        KEZVisFlatArrays::WriteDoubles(stream, coords.data(), qint64(coords.size()));
    } else {
        // The same points as GetCoordsAsDouble(), without the copy.
        const qint64 count = d->coords ? qMax(d->numPoints, 0) : 0;
        stream << count;
        KEZVisFlatArrays::WriteDoubles(stream, d->coords.get(), 3 * count);
    }
    return stream;
}

QDataStream &operator>>(QDataStream &stream, KEZVisPolylinePrimitive &polyline)
{
    KEZVisPolylinePrimitivePrivate *d = polyline.d_func();
    KEZVisFlatArrays::StreamStatusScope scope(stream);

    qint32 structure = 0;
    stream >> structure;
    // Deliberately 32 bits although the writer puts 64: see the header.
    qint32 count = 0;
    stream >> count;

    std::unique_ptr<double[]> coords;
    bool ok = stream.status() == QDataStream::Ok;
    if (ok && count < 0) {
        stream.setStatus(QDataStream::ReadCorruptData);
        ok = false;
    }
    if (ok)
        ok = KEZVisFlatArrays::ReadDoubles(stream, 3 * qint64(count), coords);

    if (!ok) {
        d->SetCoords(nullptr, 0);
        d->boundingBox = KEZMathBoundingBox();
        return stream;
    }
    d->structure = KEZVisPolylinePrimitive::Structure(structure);
    d->SetCoords(coords.release(), count);
    updateBoundingBox(polyline, d);
    return stream;
}
