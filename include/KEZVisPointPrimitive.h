#ifndef KEZVISPOINTPRIMITIVE_H
#define KEZVISPOINTPRIMITIVE_H

#include "KEZVisPrimitive.h"
#include "kezvisualization_export.h"

#include "KEZMathSetOfPoints.h"

#include <vector>

class KEZVisPointPrimitivePrivate;

/*!
 * \class KEZVisPointPrimitive
 * \brief A bare list of points.
 *
 * The coordinates live in one flat array of doubles, x, y, z of one point
 * after the other, owned by the primitive. The box around the points is
 * computed once, at construction: from the first point, expanded by every
 * further one; a primitive without points has the default box.
 *
 * The point primitive has no stream form of its own: a rep's stream writes
 * it as a bare tag, and it does not come back on loading.
 */
class KEZVISUALIZATION_EXPORT KEZVisPointPrimitive : public KEZVisPrimitive
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZVisPointPrimitive)

public:
    /*! Copies the points, in the order of the set. */
    explicit KEZVisPointPrimitive(const KEZMathSetOfPoints &points);

    /*!
     * Takes ownership of \a coords, which holds x, y, z of \a numPoints
     * points and must come from array \c new: it is freed with
     * \c delete[] together with the primitive. Nothing is copied.
     *
     * A negative \a numPoints, or a null \a coords, gives a primitive
     * without points (a non-null array is still taken and freed).
     */
    KEZVisPointPrimitive(double *coords, int numPoints);

    ~KEZVisPointPrimitive() override;

    /*! The box computed at construction; the options are ignored. */
    KEZMathBoundingBox GetBoundingBox(const KEZVisOptions &options) const override;

    /*! A copy of the coordinates: 3 x GetNumPoints() values. */
    std::vector<double> GetCoordsAsDouble() const;

    /*! The coordinates narrowed to float: 3 x GetNumPoints() values. */
    std::vector<float> GetCoordsAsFloat() const;

    /*! The number of points. */
    int GetNumPoints() const;

protected:
    /*!
     * Lets a subclass bring a record derived from KEZVisPointPrimitivePrivate;
     * the primitive takes ownership of it.
     */
    explicit KEZVisPointPrimitive(KEZVisPointPrimitivePrivate *d);

    KEZVisPointPrimitivePrivate *d_ptr;

private:
    Q_DISABLE_COPY(KEZVisPointPrimitive)
};

#endif // KEZVISPOINTPRIMITIVE_H
