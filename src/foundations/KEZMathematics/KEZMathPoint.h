#ifndef KEZMATHPOINT_H
#define KEZMATHPOINT_H

#include "KEZMathVector.h"
#include "kezmathematics_export.h"

/*!
    A point in space: x, y, z, in model units. A default-constructed point is
    the origin.

    Two points compare equal when their distance is at most Tolerance (1e-9):
    duplicates that differ only by rounding count as the same point.
*/
class KEZMATHEMATICS_EXPORT KEZMathPoint
{
public:
    //! Largest distance at which two points still compare equal.
    static constexpr double Tolerance = 1e-9;

    KEZMathPoint() = default;
    KEZMathPoint(double x, double y, double z) : m_xyz{x, y, z} {}
    KEZMathPoint(const KEZMathPoint &other) = default;
    KEZMathPoint &operator=(const KEZMathPoint &other) = default;
    virtual ~KEZMathPoint();

    double GetX() const { return m_xyz[0]; }
    double GetY() const { return m_xyz[1]; }
    double GetZ() const { return m_xyz[2]; }
    void SetX(double x) { m_xyz[0] = x; }
    void SetY(double y) { m_xyz[1] = y; }
    void SetZ(double z) { m_xyz[2] = z; }
    void GetCoord(double &x, double &y, double &z) const { x = m_xyz[0]; y = m_xyz[1]; z = m_xyz[2]; }
    void SetCoord(double x, double y, double z) { m_xyz[0] = x; m_xyz[1] = y; m_xyz[2] = z; }

    //! Writable coordinate 0 (x), 1 (y) or 2 (z); another index throws KEZSysOutOfBoundsException.
    double &operator[](int index);
    double operator[](int index) const;

    //! True when the distance between the points is at most Tolerance.
    bool operator==(const KEZMathPoint &other) const { return GetDistanceTo(other) <= Tolerance; }
    bool operator!=(const KEZMathPoint &other) const { return !(*this == other); }

    //! The vector from \a other to this point.
    KEZMathVector operator-(const KEZMathPoint &other) const
    {
        return KEZMathVector(m_xyz[0] - other.m_xyz[0], m_xyz[1] - other.m_xyz[1], m_xyz[2] - other.m_xyz[2]);
    }

    //! Euclidean distance.
    double GetDistanceTo(const KEZMathPoint &other) const;
    //! Square of the Euclidean distance.
    double GetSquaredDistanceTo(const KEZMathPoint &other) const
    {
        return (*this - other).GetSquaredMagnitude();
    }

private:
    double m_xyz[3] = {0.0, 0.0, 0.0};
};

//! The point translated by the vector.
inline KEZMathPoint operator+(const KEZMathPoint &point, const KEZMathVector &vector)
{
    return KEZMathPoint(point.GetX() + vector.GetX(), point.GetY() + vector.GetY(),
                        point.GetZ() + vector.GetZ());
}

//! The point translated by the opposite of the vector.
inline KEZMathPoint operator-(const KEZMathPoint &point, const KEZMathVector &vector)
{
    return KEZMathPoint(point.GetX() - vector.GetX(), point.GetY() - vector.GetY(),
                        point.GetZ() - vector.GetZ());
}

Q_DECLARE_TYPEINFO(KEZMathPoint, Q_RELOCATABLE_TYPE);

#endif // KEZMATHPOINT_H
