#ifndef KEZVISPRISMPRIMITIVE_H
#define KEZVISPRISMPRIMITIVE_H

#include "KEZVisSurfacePrimitive.h"
#include "kezvisualization_export.h"

#include <KEZMathPoint.h>
#include <KEZMathVector.h>

class KEZVisPrismPrimitivePrivate;

/*!
 * The side wall of a regular prism, without caps, for display.
 *
 * The wall stands on a circle of \a radius round \a center in the plane
 * perpendicular to \a direction, and reaches \a height along the normalised
 * \a direction. The circle is given \a direction as its normal and no start
 * direction, so the circle itself decides where corner 0 lies; with the normal
 * (0, 0, 1) that is \a center + (radius, 0, 0), and the corners run
 * counter-clockwise seen from the tip of the normal. Corner i lies at the angle
 * (2 i) pi / numSides.
 *
 * Vertexes: for each corner i, vertex 2i on the base circle and vertex 2i + 1
 * at the same angle on the circle round the top centre
 * (\a center + normalised \a direction * \a height). Bottom and top vertexes
 * alternate. The vertex normal of each is the vector from its own circle's
 * centre to it, not normalised, so it is \a radius long.
 *
 * Triangles: with n = 2 * numSides, triangle t, for t from 0 to n - 1, is
 * (t, (t + 1) mod n, (t + 2) mod n): a closed strip round the wall. The
 * winding is not alternated, so neighbouring triangles wind opposite ways in
 * space.
 *
 * The shape keeps its arrays in a record of its own, and the data of the
 * surface part stays empty. Three things follow, and they are kept as they
 * are: GetBoundingBox() answers the default box, the triangle normal lists
 * (GetTriangleNormalCoordsAsDouble(), GetTriangleNormalCoordsAsFloat()) are
 * empty, and the stream operators of KEZVisSurfacePrimitive write two zero
 * counts, so a rep saves a prism as an empty surface.
 *
 * The radius and the height are taken as they come: zero or negative values
 * give degenerate shapes.
 *
 * Like every primitive it has no QObject parent and is owned by the rep that
 * it is given to. It cannot be copied.
 */
class KEZVISUALIZATION_EXPORT KEZVisPrismPrimitive : public KEZVisSurfacePrimitive
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZVisPrismPrimitive)

public:
    /*!
     * Builds all vertexes, vertex normals and triangles at once.
     *
     * Throws KEZSysOutOfBoundsException with \a numSides as the value, 1 as
     * the lower limit, no upper limit (an invalid QVariant) and both limits
     * included when \a numSides is below 1. Throws std::bad_array_new_length
     * (a std::bad_alloc) when 2 * \a numSides vertexes could not be numbered
     * by an int, and std::bad_alloc when memory runs out. A \a direction
     * without magnitude is refused by the circle with
     * KEZMathZeroMagnitudeVectorException. Nothing leaks in any of these cases.
     */
    KEZVisPrismPrimitive(const KEZMathPoint &center, const KEZMathVector &direction,
                         double radius, double height, int numSides);
    ~KEZVisPrismPrimitive() override;

    //! 2 * numSides.
    int GetNumTriangles() const override;
    //! 2 * numSides.
    int GetNumVertexes() const override;
    //! x, y, z of each vertex, in vertex order.
    QList<double> GetVertexCoordinatesAsDouble() const override;
    //! Three zero-based vertex indexes per triangle.
    QList<long> GetTriangleVertexIndexes() const override;
    //! x, y, z of the normal of each vertex, not normalised.
    QList<double> GetVertexNormalCoordsAsDouble() const override;

private:
    Q_DISABLE_COPY(KEZVisPrismPrimitive)
};

#endif // KEZVISPRISMPRIMITIVE_H
