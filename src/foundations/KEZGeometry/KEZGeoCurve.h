#ifndef KEZGEOCURVE_H
#define KEZGEOCURVE_H

#include "KEZGeoGeometry.h"
#include "KEZGeoLocationOnCurve.h"
#include "kezgeometry_export.h"

#include "KEZMathBoundingBox.h"
#include "KEZMathPoint.h"

/*!
    A curve, seen through its polygonal form: a sequence of vertices joined by
    straight segments. Segment s runs from vertex s to vertex s + 1; on a
    closed curve one more segment runs from the last vertex back to vertex 0.
    Positions on the curve are KEZGeoLocationOnCurve values: a segment number
    and a parameter from 0 (the segment's start) to 1 (its end).

    This class is abstract; KEZGeoComboCurve is the concrete curve of the
    family. A subclass implements the six operations below consistently with
    the rule above: KEZGeoLocationOnCurve interpolates between GetVertex(s) and
    the vertex after it (vertex 0 after the last one), and checks segment
    numbers against GetNumSegments().
*/
class KEZGEOMETRY_EXPORT KEZGeoCurve : public KEZGeoGeometry
{
    Q_OBJECT
public:
    ~KEZGeoCurve() override;

    //! The location of the vertex at a zero-based index.
    virtual KEZGeoLocationOnCurve GetLocation(int vertexIndex) const = 0;
    //! The box around all vertices.
    virtual KEZMathBoundingBox GetBoundingBox() const = 0;
    //! The number of vertices of the polygonal form.
    virtual int GetNumVertices() const = 0;
    //! The vertex at a zero-based index.
    virtual KEZMathPoint GetVertex(int vertexIndex) const = 0;
    //! The number of segments of the polygonal form.
    virtual int GetNumSegments() const = 0;
    //! True when the last vertex is joined back to the first one.
    virtual bool IsClosed() const = 0;

protected:
    //! For subclasses outside the library: a curve with a plain record.
    explicit KEZGeoCurve(QObject *parent = nullptr);
    //! Lets a subclass bring a record derived from KEZGeoGeometryPrivate; the
    //! curve takes ownership of it.
    KEZGeoCurve(KEZGeoGeometryPrivate *d, QObject *parent);

private:
    Q_DISABLE_COPY(KEZGeoCurve)
};

#endif // KEZGEOCURVE_H
