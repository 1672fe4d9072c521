#include "KEZGeoComboCurve.h"
#include "KEZGeoComboCurve_p.h"

#include "KEZSysOutOfBoundsException.h"

#include <QVariant>

namespace {

// Checks the vertices before anything is allocated, so that a refused curve
// leaves nothing behind.
KEZGeoComboCurvePrivate *createRecord(const KEZMathSetOfPoints &vertices, bool closed)
{
    if (vertices.size() < 2)
        throw KEZSysOutOfBoundsException(int(vertices.size()), 2, QVariant(), true, true);
    auto *d = new KEZGeoComboCurvePrivate;
    d->vertices = vertices;
    d->closed = closed;
    d->boundingBox = vertices.GetBoundingBox();
    return d;
}

} // namespace

KEZGeoComboCurve::KEZGeoComboCurve(const KEZMathSetOfPoints &vertices, bool closed, QObject *parent)
    : KEZGeoCurve(createRecord(vertices, closed), parent)
{
}

KEZGeoComboCurve::~KEZGeoComboCurve() = default;

KEZGeoLocationOnCurve KEZGeoComboCurve::GetLocation(int vertexIndex) const
{
    Q_D(const KEZGeoComboCurve);
    const int last = int(d->vertices.size()) - 1;
    if (vertexIndex < 0 || vertexIndex > last)
        throw KEZSysOutOfBoundsException(vertexIndex, 0, last, true, true);
    if (!d->closed && vertexIndex == last)
        return KEZGeoLocationOnCurve(this, last - 1, 1.0);
    return KEZGeoLocationOnCurve(this, vertexIndex, 0.0);
}

KEZMathBoundingBox KEZGeoComboCurve::GetBoundingBox() const
{
    Q_D(const KEZGeoComboCurve);
    return d->boundingBox;
}

int KEZGeoComboCurve::GetNumVertices() const
{
    Q_D(const KEZGeoComboCurve);
    return int(d->vertices.size());
}

KEZMathPoint KEZGeoComboCurve::GetVertex(int vertexIndex) const
{
    Q_D(const KEZGeoComboCurve);
    const int last = int(d->vertices.size()) - 1;
    if (vertexIndex < 0 || vertexIndex > last)
        throw KEZSysOutOfBoundsException(vertexIndex, 0, last, true, true);
    return d->vertices.at(vertexIndex);
}

int KEZGeoComboCurve::GetNumSegments() const
{
    Q_D(const KEZGeoComboCurve);
    const int count = int(d->vertices.size());
    return d->closed ? count : count - 1;
}

bool KEZGeoComboCurve::IsClosed() const
{
    Q_D(const KEZGeoComboCurve);
    return d->closed;
}
