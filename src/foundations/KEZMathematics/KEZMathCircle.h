#ifndef KEZMATHCIRCLE_H
#define KEZMATHCIRCLE_H

#include "KEZMathPoint.h"
#include "KEZMathVector.h"
#include "kezmathematics_export.h"

/*!
    A circle in space: origin (centre), radius, unit normal and unit start
    direction perpendicular to the normal.

    A default-constructed circle has origin (0, 0, 0), radius 1, normal
    (0, 0, 1) and start direction (1, 0, 0). The radius is taken as given.
*/
class KEZMATHEMATICS_EXPORT KEZMathCircle
{
public:
    KEZMathCircle() = default;
    KEZMathCircle(const KEZMathCircle &other) = default;
    KEZMathCircle &operator=(const KEZMathCircle &other) = default;
    virtual ~KEZMathCircle();

    KEZMathPoint GetOrigin() const { return m_origin; }
    void SetOrigin(const KEZMathPoint &origin) { m_origin = origin; }
    double GetRadius() const { return m_radius; }
    void SetRadius(double radius) { m_radius = radius; }
    KEZMathVector GetNormal() const { return m_normal; }
    KEZMathVector GetStartDirection() const { return m_start; }

    /*!
        Sets the normal, normalised, and the start direction, from which
        EvalAngle counts.

        A null \a startDirection lets the circle choose: normal.GetPerpendicular()
        (see KEZMathVector), so the normal (0, 0, 1) starts at (1, 0, 0). A given
        start direction loses its part along the normal and is normalised; when
        nothing is left of it (null, or along the normal) the circle chooses as
        for null.

        Throws KEZMathZeroMagnitudeVectorException, and leaves the circle as it
        was, for a normal without magnitude.
    */
    void SetDirections(const KEZMathVector &normal, const KEZMathVector *startDirection);

    /*!
        The point at \a angle radians from the start direction, turning
        counter-clockwise seen from the tip of the normal:
        origin + radius * (cos(angle) * start + sin(angle) * (normal ^ start)).
        With normal (0, 0, 1), angle pi/2 lies at origin + (0, radius, 0).
    */
    KEZMathPoint EvalAngle(double angle) const;

private:
    KEZMathPoint m_origin;
    double m_radius = 1.0;
    KEZMathVector m_normal = KEZMathVector(0.0, 0.0, 1.0);
    KEZMathVector m_start = KEZMathVector(1.0, 0.0, 0.0);
};

#endif // KEZMATHCIRCLE_H
