#ifndef KEZGEOCOMBOCURVE_H
#define KEZGEOCOMBOCURVE_H

#include "KEZGeoCurve.h"
#include "KEZGeoLocationOnCurve.h"
#include "kezgeometry_export.h"

#include "KEZMathSetOfPoints.h"

class KEZGeoComboCurvePrivate;

/*!
    The polygonal curve through a list of vertices, open or closed; the curve
    that topology edges hold. It keeps a copy of the vertices and never
    changes after construction.

    With n vertices, segment s runs from vertex s to vertex s + 1. An open
    curve has n - 1 segments. A closed curve has n: its last segment runs from
    vertex n - 1 back to vertex 0.

    Vertex indexes are zero-based. An index outside [0, n - 1] is refused with
    KEZSysOutOfBoundsException (limits 0 and n - 1, both included) by
    GetVertex() and GetLocation(); nothing is clamped.
*/
class KEZGEOMETRY_EXPORT KEZGeoComboCurve : public KEZGeoCurve
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZGeoComboCurve)
public:
    //! Throws KEZSysOutOfBoundsException (the vertex count, lower limit 2
    //! included, no upper limit) for fewer than two vertices, since such a
    //! curve has no segment to place its vertices on.
    KEZGeoComboCurve(const KEZMathSetOfPoints &vertices, bool closed, QObject *parent = nullptr);
    ~KEZGeoComboCurve() override;

    //! The start of segment i (parameter 0), except the last vertex of an open
    //! curve, which has no segment of its own: it is the end of segment n - 2
    //! (parameter 1).
    KEZGeoLocationOnCurve GetLocation(int vertexIndex) const override;
    //! The box of the vertices.
    KEZMathBoundingBox GetBoundingBox() const override;
    int GetNumVertices() const override;
    KEZMathPoint GetVertex(int vertexIndex) const override;
    //! n - 1 when open, n when closed.
    int GetNumSegments() const override;
    bool IsClosed() const override;

private:
    Q_DISABLE_COPY(KEZGeoComboCurve)
};

#endif // KEZGEOCOMBOCURVE_H
