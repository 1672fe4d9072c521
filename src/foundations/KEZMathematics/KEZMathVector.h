#ifndef KEZMATHVECTOR_H
#define KEZMATHVECTOR_H

#include "kezmathematics_export.h"

#include <QtGlobal>

/*!
    A vector in space: x, y, z, in model units.

    A default-constructed vector is (0, 0, 0), which has no magnitude, so
    IsValid() says false for it. A vector counts as without magnitude when its
    length is below ValidityThreshold (1e-12), or when a component is NaN.
*/
class KEZMATHEMATICS_EXPORT KEZMathVector
{
public:
    //! Below this length a vector has no magnitude.
    static constexpr double ValidityThreshold = 1e-12;
    //! Two vectors compare equal when each component differs by at most this.
    static constexpr double Tolerance = 1e-9;

    KEZMathVector() = default;
    KEZMathVector(double x, double y, double z) : m_xyz{x, y, z} {}
    KEZMathVector(const KEZMathVector &other) = default;
    KEZMathVector &operator=(const KEZMathVector &other) = default;
    virtual ~KEZMathVector();

    double GetX() const { return m_xyz[0]; }
    double GetY() const { return m_xyz[1]; }
    double GetZ() const { return m_xyz[2]; }
    void SetX(double x) { m_xyz[0] = x; }
    void SetY(double y) { m_xyz[1] = y; }
    void SetZ(double z) { m_xyz[2] = z; }
    void GetCoord(double &x, double &y, double &z) const { x = m_xyz[0]; y = m_xyz[1]; z = m_xyz[2]; }
    void SetCoord(double x, double y, double z) { m_xyz[0] = x; m_xyz[1] = y; m_xyz[2] = z; }

    //! Component 0, 1 or 2; another index throws KEZSysOutOfBoundsException.
    double &operator[](int index);
    double operator[](int index) const;

    //! The Euclidean length.
    double GetMagnitude() const;
    //! The square of the length.
    double GetSquaredMagnitude() const { return *this * *this; }

    //! True when the vector has a magnitude of at least ValidityThreshold.
    bool IsValid() const;

    /*!
        Scales the vector to unit length and returns it. A vector without
        magnitude (see IsValid) is left as it is: no NaN, no exception.
    */
    KEZMathVector &Normalize();
    //! A unit-length copy; a copy unchanged for a vector without magnitude.
    KEZMathVector Normalized() const;

    /*!
        The unsigned angle between the two vectors, in radians, from 0 to pi.
        The cosine is clamped to [-1, 1], so rounding never yields NaN. The angle
        to or from a vector without magnitude is 0.
    */
    double GetAngleTo(const KEZMathVector &other) const;

    /*!
        A unit vector perpendicular to this one, chosen deterministically: of
        the axes (1, 0, 0), (0, 1, 0), (0, 0, 1), take the one whose component
        along this vector is smallest in absolute value (the first of them on a
        tie), remove its part along this vector and normalise. So (0, 0, 1) and
        (0, 0, -1) give (1, 0, 0), and (1, 0, 0) gives (0, 1, 0). A vector
        without magnitude gives (1, 0, 0).
    */
    KEZMathVector GetPerpendicular() const;

    //! Scaling.
    KEZMathVector operator*(double factor) const
    {
        return KEZMathVector(m_xyz[0] * factor, m_xyz[1] * factor, m_xyz[2] * factor);
    }
    //! Dot product.
    double operator*(const KEZMathVector &other) const
    {
        return m_xyz[0] * other.m_xyz[0] + m_xyz[1] * other.m_xyz[1] + m_xyz[2] * other.m_xyz[2];
    }
    //! Cross product.
    KEZMathVector operator^(const KEZMathVector &other) const
    {
        return KEZMathVector(m_xyz[1] * other.m_xyz[2] - m_xyz[2] * other.m_xyz[1],
                             m_xyz[2] * other.m_xyz[0] - m_xyz[0] * other.m_xyz[2],
                             m_xyz[0] * other.m_xyz[1] - m_xyz[1] * other.m_xyz[0]);
    }
    KEZMathVector operator+(const KEZMathVector &other) const
    {
        return KEZMathVector(m_xyz[0] + other.m_xyz[0], m_xyz[1] + other.m_xyz[1], m_xyz[2] + other.m_xyz[2]);
    }
    KEZMathVector operator-(const KEZMathVector &other) const
    {
        return KEZMathVector(m_xyz[0] - other.m_xyz[0], m_xyz[1] - other.m_xyz[1], m_xyz[2] - other.m_xyz[2]);
    }
    KEZMathVector operator-() const { return KEZMathVector(-m_xyz[0], -m_xyz[1], -m_xyz[2]); }

    //! True when each component differs by at most Tolerance.
    bool operator==(const KEZMathVector &other) const;
    bool operator!=(const KEZMathVector &other) const { return !(*this == other); }

private:
    double m_xyz[3] = {0.0, 0.0, 0.0};
};

//! Scaling with the factor in front.
inline KEZMathVector operator*(double factor, const KEZMathVector &vector)
{
    return vector * factor;
}

Q_DECLARE_TYPEINFO(KEZMathVector, Q_RELOCATABLE_TYPE);

#endif // KEZMATHVECTOR_H
