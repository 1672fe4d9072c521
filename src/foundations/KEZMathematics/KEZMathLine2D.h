#ifndef KEZMATHLINE2D_H
#define KEZMATHLINE2D_H

#include "KEZMathPoint2D.h"
#include "KEZMathVector2D.h"
#include "kezmathematics_export.h"

/*!
    An infinite line in a plane through an origin along a direction vector.
    The vector need not have unit length. A default-constructed line is the
    x axis: origin (0, 0), vector (1, 0).
*/
class KEZMATHEMATICS_EXPORT KEZMathLine2D
{
public:
    KEZMathLine2D() = default;
    KEZMathLine2D(const KEZMathPoint2D &origin, const KEZMathVector2D &vector) : m_origin(origin), m_vector(vector) {}
    KEZMathLine2D(const KEZMathLine2D &other) = default;
    KEZMathLine2D &operator=(const KEZMathLine2D &other) = default;
    virtual ~KEZMathLine2D();

    KEZMathPoint2D GetOrigin() const { return m_origin; }
    void SetOrigin(const KEZMathPoint2D &origin) { m_origin = origin; }
    KEZMathVector2D GetVector() const { return m_vector; }
    void SetVector(const KEZMathVector2D &vector) { m_vector = vector; }

    //! The foot of the perpendicular from \a point on the line; the origin when the vector has no magnitude.
    KEZMathPoint2D ProjectPoint(const KEZMathPoint2D &point) const;

private:
    KEZMathPoint2D m_origin;
    KEZMathVector2D m_vector = KEZMathVector2D(1.0, 0.0);
};

#endif // KEZMATHLINE2D_H
