#ifndef KEZGEOSURFACE_H
#define KEZGEOSURFACE_H

#include "KEZGeoGeometry.h"
#include "kezgeometry_export.h"

#include "KEZMathBoundingBox.h"
#include "KEZMathPoint.h"
#include "KEZMathSetOfPoints.h"
#include "KEZMathVector.h"

#include <QList>

class KEZGeoSurfacePrivate;

/*!
    A triangulated surface: a list of vertices and a list of triangles, each
    triangle three zero-based vertex indexes. It keeps a copy of both lists
    and never changes after construction.

    Vertices are addressed by zero-based index, triangles by one-based number
    (1 to GetNumTriangles()). An index or number out of range is refused with
    KEZSysOutOfBoundsException, with the inclusive limits of its range.

    The queries are virtual, as those of a modeller's surfaces are: a subclass
    may work its mesh out on demand, and whatever it throws from a query
    reaches the one who asked.
*/
class KEZGEOMETRY_EXPORT KEZGeoSurface : public KEZGeoGeometry
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZGeoSurface)
public:
    //! triangleVertexIndexes holds three zero-based vertex indexes per
    //! triangle, one triangle after the other. Bad input is refused before
    //! anything is built:
    //! - a list whose length is not a multiple of 3 throws KEZSysException;
    //! - an index outside [0, vertex count - 1] throws
    //!   KEZSysOutOfBoundsException with that index and both limits included.
    KEZGeoSurface(const KEZMathSetOfPoints &vertices, const QList<int> &triangleVertexIndexes,
                  QObject *parent = nullptr);
    ~KEZGeoSurface() override;

    virtual int GetNumVertices() const;
    virtual int GetNumTriangles() const;

    //! The vertex at a zero-based index.
    virtual KEZMathPoint GetVertex(int vertexIndex) const;
    //! The three zero-based vertex indexes of the triangle with the one-based
    //! number, in the order given to the constructor.
    virtual void GetVertices(int triangleNumber, int &a, int &b, int &c) const;
    //! (b - a) ^ (c - a) for the triangle with the one-based number, where a, b
    //! and c are its vertices in the order given. Deliberately not normalised:
    //! its length is twice the triangle's area, and readers that want a unit
    //! normal normalise it themselves.
    virtual KEZMathVector GetNormal(int triangleNumber) const;

    //! The box of all vertices, also of those that no triangle uses; the
    //! default box when there are no vertices.
    virtual KEZMathBoundingBox GetBoundingBox() const;

private:
    Q_DISABLE_COPY(KEZGeoSurface)
};

#endif // KEZGEOSURFACE_H
