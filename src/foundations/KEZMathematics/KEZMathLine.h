#ifndef KEZMATHLINE_H
#define KEZMATHLINE_H

#include "KEZMathPoint.h"
#include "KEZMathVector.h"
#include "kezmathematics_export.h"

/*!
    An infinite line in space through an origin along a direction vector.
    The vector need not have unit length. A default-constructed line is the
    x axis: origin (0, 0, 0), vector (1, 0, 0).
*/
class KEZMATHEMATICS_EXPORT KEZMathLine
{
public:
    KEZMathLine() = default;
    KEZMathLine(const KEZMathPoint &origin, const KEZMathVector &vector) : m_origin(origin), m_vector(vector) {}
    KEZMathLine(const KEZMathLine &other) = default;
    KEZMathLine &operator=(const KEZMathLine &other) = default;
    virtual ~KEZMathLine();

    KEZMathPoint GetOrigin() const { return m_origin; }
    void SetOrigin(const KEZMathPoint &origin) { m_origin = origin; }
    KEZMathVector GetVector() const { return m_vector; }
    void SetVector(const KEZMathVector &vector) { m_vector = vector; }

    /*!
        The foot of the perpendicular from \a point on the line. A line whose
        vector has no magnitude is the origin alone, which is then the answer.
    */
    KEZMathPoint ProjectPoint(const KEZMathPoint &point) const;

private:
    KEZMathPoint m_origin;
    KEZMathVector m_vector = KEZMathVector(1.0, 0.0, 0.0);
};

#endif // KEZMATHLINE_H
