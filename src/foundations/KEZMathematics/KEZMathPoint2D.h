#ifndef KEZMATHPOINT2D_H
#define KEZMATHPOINT2D_H

#include "KEZMathVector2D.h"
#include "kezmathematics_export.h"

/*!
    A point in a plane: x, y. A default-constructed point is the origin.
    Two points compare equal when their distance is at most Tolerance (1e-9),
    as for KEZMathPoint.
*/
class KEZMATHEMATICS_EXPORT KEZMathPoint2D
{
public:
    static constexpr double Tolerance = 1e-9;

    KEZMathPoint2D() = default;
    KEZMathPoint2D(double x, double y) : m_xy{x, y} {}
    KEZMathPoint2D(const KEZMathPoint2D &other) = default;
    KEZMathPoint2D &operator=(const KEZMathPoint2D &other) = default;
    virtual ~KEZMathPoint2D();

    double GetX() const { return m_xy[0]; }
    double GetY() const { return m_xy[1]; }
    void SetX(double x) { m_xy[0] = x; }
    void SetY(double y) { m_xy[1] = y; }

    //! Scales both coordinates, that is, the point's position vector.
    KEZMathPoint2D &operator*=(double factor)
    {
        m_xy[0] *= factor;
        m_xy[1] *= factor;
        return *this;
    }

    //! The vector from \a other to this point.
    KEZMathVector2D operator-(const KEZMathPoint2D &other) const
    {
        return KEZMathVector2D(m_xy[0] - other.m_xy[0], m_xy[1] - other.m_xy[1]);
    }

    //! Euclidean distance.
    double GetDistanceTo(const KEZMathPoint2D &other) const;

    //! True when the distance between the points is at most Tolerance.
    bool operator==(const KEZMathPoint2D &other) const { return GetDistanceTo(other) <= Tolerance; }
    bool operator!=(const KEZMathPoint2D &other) const { return !(*this == other); }

private:
    double m_xy[2] = {0.0, 0.0};
};

//! Translates the point by the vector.
inline KEZMathPoint2D &operator+=(KEZMathPoint2D &point, const KEZMathVector2D &vector)
{
    point.SetX(point.GetX() + vector.GetX());
    point.SetY(point.GetY() + vector.GetY());
    return point;
}

//! The point translated by the vector.
inline KEZMathPoint2D operator+(const KEZMathPoint2D &point, const KEZMathVector2D &vector)
{
    return KEZMathPoint2D(point.GetX() + vector.GetX(), point.GetY() + vector.GetY());
}

Q_DECLARE_TYPEINFO(KEZMathPoint2D, Q_RELOCATABLE_TYPE);

#endif // KEZMATHPOINT2D_H
