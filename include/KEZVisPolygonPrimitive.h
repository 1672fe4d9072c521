#ifndef KEZVISPOLYGONPRIMITIVE_H
#define KEZVISPOLYGONPRIMITIVE_H

#include "KEZVisSurfacePrimitive.h"
#include "kezvisualization_export.h"

#include <KEZMathPoint.h>
#include <KEZMathVector.h>

class KEZVisPolygonPrimitivePrivate;

/*!
 * A filled regular polygon for display.
 *
 * The corners lie on a circle of \a radius round \a center in the plane
 * perpendicular to \a direction. The circle is given \a direction as its
 * normal and no start direction, so the circle decides where corner 0 lies;
 * with the normal (0, 0, 1) that is \a center + (radius, 0, 0), and the
 * corners run counter-clockwise seen from the tip of the normal. Corner i, at
 * the angle (2 i) pi / numSides, is vertex i. Every vertex normal is
 * \a direction as given, not normalised.
 *
 * Triangles: a fan from vertex 0, triangle t being (0, t + 1, t + 2) for t
 * from 0 to numSides - 3. With two sides there are no triangles.
 *
 * One side passes the side-count check, but its triangle count of -1 gives
 * the triangle array a negative length: the constructor then ends in
 * std::bad_array_new_length, a std::bad_alloc. This is deliberate and kept;
 * whatever was allocated before is freed again.
 *
 * The shape keeps its arrays in a record of its own, and the data of the
 * surface part stays empty. Three things follow, and they are kept as they
 * are: GetBoundingBox() answers the default box, the triangle normal lists
 * are empty, and the stream operators of KEZVisSurfacePrimitive write two
 * zero counts, so a rep saves a polygon as an empty surface.
 *
 * The radius is taken as it comes: zero or a negative value gives a
 * degenerate or turned polygon.
 *
 * Like every primitive it has no QObject parent and is owned by the rep that
 * it is given to. It cannot be copied.
 */
class KEZVISUALIZATION_EXPORT KEZVisPolygonPrimitive : public KEZVisSurfacePrimitive
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZVisPolygonPrimitive)

public:
    /*!
     * Builds all vertexes, vertex normals and triangles at once.
     *
     * Throws KEZSysOutOfBoundsException with \a numSides as the value, 1 as
     * the lower limit, no upper limit (an invalid QVariant) and both limits
     * included when \a numSides is below 1, std::bad_array_new_length for one
     * side (see above), and std::bad_alloc when memory runs out. A
     * \a direction without magnitude is refused by the circle with
     * KEZMathZeroMagnitudeVectorException. Nothing leaks in any of these cases.
     */
    KEZVisPolygonPrimitive(const KEZMathPoint &center, const KEZMathVector &direction,
                           double radius, int numSides);
    ~KEZVisPolygonPrimitive() override;

    //! numSides - 2.
    int GetNumTriangles() const override;
    //! numSides.
    int GetNumVertexes() const override;
    //! x, y, z of each vertex, in corner order.
    QList<double> GetVertexCoordinatesAsDouble() const override;
    //! Three zero-based vertex indexes per triangle.
    QList<long> GetTriangleVertexIndexes() const override;
    //! x, y, z of the normal of each vertex: the direction as given.
    QList<double> GetVertexNormalCoordsAsDouble() const override;

private:
    Q_DISABLE_COPY(KEZVisPolygonPrimitive)
};

#endif // KEZVISPOLYGONPRIMITIVE_H
