#ifndef KEZMATHVECTOR2D_H
#define KEZMATHVECTOR2D_H

#include "kezmathematics_export.h"

#include <QtGlobal>

/*!
    A vector in a plane: x, y. A default-constructed vector is (0, 0) and has no
    magnitude. As for KEZMathVector, a vector is without magnitude below a
    length of ValidityThreshold (1e-12).

    Two vectors compare equal when each component differs by at most Tolerance
    (1e-9).
*/
class KEZMATHEMATICS_EXPORT KEZMathVector2D
{
public:
    static constexpr double ValidityThreshold = 1e-12;
    static constexpr double Tolerance = 1e-9;

    KEZMathVector2D() = default;
    KEZMathVector2D(double x, double y) : m_xy{x, y} {}
    KEZMathVector2D(const KEZMathVector2D &other) = default;
    KEZMathVector2D &operator=(const KEZMathVector2D &other) = default;
    virtual ~KEZMathVector2D();

    double GetX() const { return m_xy[0]; }
    double GetY() const { return m_xy[1]; }
    void SetX(double x) { m_xy[0] = x; }
    void SetY(double y) { m_xy[1] = y; }

    //! The Euclidean length.
    double GetMagnitude() const;
    //! True when the vector has a magnitude of at least ValidityThreshold.
    bool IsValid() const;

    //! Scales to unit length and returns the vector; one without magnitude stays as it is.
    KEZMathVector2D &Normalize();

    //! The unsigned angle between the two vectors, in radians, from 0 to pi; 0 when either has no magnitude.
    double GetAngleTo(const KEZMathVector2D &other) const;

    //! Scaling.
    KEZMathVector2D operator*(double factor) const { return KEZMathVector2D(m_xy[0] * factor, m_xy[1] * factor); }
    //! Dot product.
    double operator*(const KEZMathVector2D &other) const { return m_xy[0] * other.m_xy[0] + m_xy[1] * other.m_xy[1]; }

    //! True when each component differs by at most Tolerance.
    bool operator==(const KEZMathVector2D &other) const;
    bool operator!=(const KEZMathVector2D &other) const { return !(*this == other); }

private:
    double m_xy[2] = {0.0, 0.0};
};

Q_DECLARE_TYPEINFO(KEZMathVector2D, Q_RELOCATABLE_TYPE);

#endif // KEZMATHVECTOR2D_H
