#ifndef KEZMATHAXIS_H
#define KEZMATHAXIS_H

#include "KEZMathBoundingBox.h"
#include "KEZMathPoint.h"
#include "KEZMathVector.h"
#include "kezmathematics_export.h"

/*!
    A frame in space: an origin and three directions, called first, second and
    third. It serves as the position of a thing: a point (x, y, z) of the
    thing's own space lies at origin + first * x + second * y + third * z in the
    space around it.

    A default-constructed axis is the identity: origin (0, 0, 0) and directions
    (1, 0, 0), (0, 1, 0), (0, 0, 1). The setters take the directions as given,
    without normalising them.
*/
class KEZMATHEMATICS_EXPORT KEZMathAxis
{
public:
    //! The plane in which Tilt turns the frame, named by its two directions.
    enum AxisPlane {
        AxisPlaneThirdFirst = 0,   //!< turns about the second direction
        AxisPlaneFirstSecond = 1,  //!< turns about the third direction
        AxisPlaneSecondThird = 2,  //!< turns about the first direction
    };

    //! operator!= sees a difference when a coordinate or component differs by more than this.
    static constexpr double Tolerance = 1e-9;

    KEZMathAxis() = default;
    KEZMathAxis(const KEZMathAxis &other) = default;
    KEZMathAxis &operator=(const KEZMathAxis &other) = default;
    virtual ~KEZMathAxis();

    KEZMathPoint GetOrigin() const { return m_origin; }
    void SetOrigin(const KEZMathPoint &origin) { m_origin = origin; }
    KEZMathVector GetFirstDirection() const { return m_first; }
    KEZMathVector GetSecondDirection() const { return m_second; }
    KEZMathVector GetThirdDirection() const { return m_third; }
    void SetFirstDirection(const KEZMathVector &direction) { m_first = direction; }
    void SetSecondDirection(const KEZMathVector &direction) { m_second = direction; }
    void SetThirdDirection(const KEZMathVector &direction) { m_third = direction; }

    /*!
        Turns the frame about its own origin by \a angle radians, in \a plane:
        the two directions that name the plane turn about the third one, which
        stays as it is, and so does the origin. A positive angle turns
        counter-clockwise seen from the tip of the direction turned about (the
        right-hand rule). For a right-handed frame a turn of +pi/2 takes
        - AxisPlaneFirstSecond: the first direction to the second,
        - AxisPlaneSecondThird: the second direction to the third,
        - AxisPlaneThirdFirst: the third direction to the first.
        Throws KEZSysOutOfBoundsException for a plane value other than 0, 1 or 2,
        and KEZMathZeroMagnitudeVectorException when the direction turned about
        has no magnitude; the frame is then left as it was.
    */
    void Tilt(AxisPlane plane, double angle);

    /*!
        True when the origins differ by more than Tolerance in a coordinate, or
        a direction differs by more than Tolerance in a component.
    */
    bool operator!=(const KEZMathAxis &other) const;
    bool operator==(const KEZMathAxis &other) const { return !(*this != other); }

    //! A point of the frame's own space mapped into the space around it.
    KEZMathPoint operator*(const KEZMathPoint &point) const;
    //! A vector of the frame's own space mapped into the space around it (the origin plays no part).
    KEZMathVector operator*(const KEZMathVector &vector) const;
    /*!
        A box of the frame's own space mapped into the space around it: the
        axis-aligned box around the eight mapped corners.
    */
    KEZMathBoundingBox operator*(const KEZMathBoundingBox &box) const;

private:
    KEZMathPoint m_origin;
    KEZMathVector m_first = KEZMathVector(1.0, 0.0, 0.0);
    KEZMathVector m_second = KEZMathVector(0.0, 1.0, 0.0);
    KEZMathVector m_third = KEZMathVector(0.0, 0.0, 1.0);
};

#endif // KEZMATHAXIS_H
