#ifndef KEZMATHPLANE_H
#define KEZMATHPLANE_H

#include "KEZMathPoint.h"
#include "KEZMathPoint2D.h"
#include "KEZMathVector.h"
#include "kezmathematics_export.h"

/*!
    A plane in space: an origin and a right-handed orthonormal frame of a first
    (x) direction, a second (y) direction and the normal, with normal = x ^ y.

    A default-constructed plane has origin (0, 0, 0), x direction (1, 0, 0),
    y direction (0, 1, 0) and normal (0, 0, 1): it maps model x and y to plane
    x and y unchanged, and projects (3, 4, 5) to the 2D point (3, 4).

    The frame is always kept orthonormal, so the 2D coordinates of a plane are
    lengths in model units.
*/
class KEZMATHEMATICS_EXPORT KEZMathPlane
{
public:
    KEZMathPlane() = default;
    KEZMathPlane(const KEZMathPlane &other) = default;
    KEZMathPlane &operator=(const KEZMathPlane &other) = default;
    virtual ~KEZMathPlane();

    KEZMathPoint GetOrigin() const { return m_origin; }
    void SetOrigin(const KEZMathPoint &origin) { m_origin = origin; }

    /*!
        Sets the normal, normalised; the in-plane directions follow from it: the
        x direction is normal.GetPerpendicular() (see KEZMathVector) and the y
        direction normal ^ x. So (0, 0, 1) gives back the default frame, and
        (0, 0, -1) gives x (1, 0, 0) and y (0, -1, 0).
        Throws KEZMathZeroMagnitudeVectorException for a normal without magnitude.
    */
    void SetNormal(const KEZMathVector &normal);

    /*!
        Sets the x and y directions and the normal x ^ y. The directions are
        made orthonormal first: x is normalised, and y loses its part along x
        and is normalised, so y keeps its side of x. Orthonormal directions, such
        as (1, 0, 0) and (0, -1, 0), are taken as they are.
        Throws KEZMathZeroMagnitudeVectorException, and leaves the plane as it
        was, when x has no magnitude or y has none beside x (y along x).
    */
    void SetDirections(const KEZMathVector &xDirection, const KEZMathVector &yDirection);

    KEZMathVector GetNormal() const { return m_normal; }
    KEZMathVector GetFirstDirection() const { return m_xDirection; }
    KEZMathVector GetSecondDirection() const { return m_yDirection; }

    //! The point of the plane nearest to \a point.
    KEZMathPoint Project(const KEZMathPoint &point) const;

    //! The component of the vector in the plane; without magnitude for a vector along the normal.
    KEZMathVector Project(const KEZMathVector &vector) const;

    //! The plane's 2D coordinates of the point: its offsets from the origin along the x and y directions.
    void Project(const KEZMathPoint &point, KEZMathPoint2D &point2D) const;

    //! The 3D point of 2D plane coordinates: origin + x * u + y * v. The inverse of the former for points in the plane.
    KEZMathPoint Evaluate(const KEZMathPoint2D &point2D) const;

private:
    KEZMathPoint m_origin;
    KEZMathVector m_xDirection = KEZMathVector(1.0, 0.0, 0.0);
    KEZMathVector m_yDirection = KEZMathVector(0.0, 1.0, 0.0);
    KEZMathVector m_normal = KEZMathVector(0.0, 0.0, 1.0);
};

#endif // KEZMATHPLANE_H
