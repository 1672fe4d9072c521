#ifndef KEZVISPYRAMIDPRIMITIVE_H
#define KEZVISPYRAMIDPRIMITIVE_H

#include "KEZVisSurfacePrimitive.h"
#include "kezvisualization_export.h"

#include <KEZMathPoint.h>
#include <KEZMathVector.h>

class KEZVisPyramidPrimitivePrivate;

/*!
 * The mantle of a regular pyramid, a cone-like fan without a base, for display.
 *
 * The base corners lie on a circle of \a radius round \a center in the plane
 * perpendicular to \a direction; the apex lies at \a center + normalised
 * \a direction * \a height. The circle is given \a direction as its normal and
 * no start direction, so the circle decides where corner 0 lies; with the
 * normal (0, 0, 1) that is \a center + (radius, 0, 0), and the corners run
 * counter-clockwise seen from the tip of the normal. Corner i lies at the angle
 * (2 i) pi / numSides.
 *
 * Vertexes: vertex 0 is the apex, with \a direction as given as its normal;
 * vertex i + 1 is corner i, with the vector from \a center to it as its
 * normal, not normalised.
 *
 * Triangles: a fan from the apex, (0, k, k + 1) for k from 1 to numSides - 1,
 * closed by (0, numSides, 1). With one side this is the single degenerate
 * triangle (0, 1, 1).
 *
 * The shape keeps its arrays in a record of its own, and the data of the
 * surface part stays empty. Three things follow, and they are kept as they
 * are: GetBoundingBox() answers the default box, the triangle normal lists
 * are empty, and the stream operators of KEZVisSurfacePrimitive write two
 * zero counts, so a rep saves a pyramid as an empty surface.
 *
 * The radius and the height are taken as they come: zero or negative values
 * give degenerate shapes.
 *
 * Like every primitive it has no QObject parent and is owned by the rep that
 * it is given to. It cannot be copied.
 */
class KEZVISUALIZATION_EXPORT KEZVisPyramidPrimitive : public KEZVisSurfacePrimitive
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZVisPyramidPrimitive)

public:
    /*!
     * Builds all vertexes, vertex normals and triangles at once.
     *
     * Throws KEZSysOutOfBoundsException with \a numSides as the value, 1 as
     * the lower limit, no upper limit (an invalid QVariant) and both limits
     * included when \a numSides is below 1. Throws std::bad_array_new_length
     * (a std::bad_alloc) when \a numSides + 1 vertexes could not be numbered
     * by an int, and std::bad_alloc when memory runs out. A \a direction
     * without magnitude is refused by the circle with
     * KEZMathZeroMagnitudeVectorException. Nothing leaks in any of these cases.
     */
    KEZVisPyramidPrimitive(const KEZMathPoint &center, const KEZMathVector &direction,
                           double radius, double height, int numSides);
    ~KEZVisPyramidPrimitive() override;

    //! numSides.
    int GetNumTriangles() const override;
    //! numSides + 1.
    int GetNumVertexes() const override;
    //! x, y, z of each vertex, the apex first.
    QList<double> GetVertexCoordinatesAsDouble() const override;
    //! Three zero-based vertex indexes per triangle.
    QList<long> GetTriangleVertexIndexes() const override;
    //! x, y, z of the normal of each vertex, not normalised.
    QList<double> GetVertexNormalCoordsAsDouble() const override;

private:
    Q_DISABLE_COPY(KEZVisPyramidPrimitive)
};

#endif // KEZVISPYRAMIDPRIMITIVE_H
