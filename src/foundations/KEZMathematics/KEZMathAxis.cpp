#include "KEZMathAxis.h"

#include "KEZMathZeroMagnitudeVectorException.h"

#include <KEZSysOutOfBoundsException.h>

#include <cmath>

namespace {

// Rodrigues' rotation of v about the unit vector k by the angle whose cosine
// and sine are given, counter-clockwise seen from the tip of k.
KEZMathVector rotate(const KEZMathVector &v, const KEZMathVector &k, double cosine, double sine)
{
    return v * cosine + (k ^ v) * sine + k * ((k * v) * (1.0 - cosine));
}

bool differs(double a, double b, double tolerance)
{
    // Written so that a NaN counts as a difference.
    return !(std::abs(a - b) <= tolerance);
}

bool differs(const KEZMathVector &a, const KEZMathVector &b, double tolerance)
{
    return differs(a.GetX(), b.GetX(), tolerance) || differs(a.GetY(), b.GetY(), tolerance)
        || differs(a.GetZ(), b.GetZ(), tolerance);
}

} // namespace

KEZMathAxis::~KEZMathAxis() = default;

void KEZMathAxis::Tilt(AxisPlane plane, double angle)
{
    KEZMathVector *about = nullptr;
    KEZMathVector *turned1 = nullptr;
    KEZMathVector *turned2 = nullptr;
    switch (plane) {
    case AxisPlaneThirdFirst:
        about = &m_second;
        turned1 = &m_third;
        turned2 = &m_first;
        break;
    case AxisPlaneFirstSecond:
        about = &m_third;
        turned1 = &m_first;
        turned2 = &m_second;
        break;
    case AxisPlaneSecondThird:
        about = &m_first;
        turned1 = &m_second;
        turned2 = &m_third;
        break;
    default:
        throw KEZSysOutOfBoundsException(int(plane), 0, 2, true, true);
    }
    if (!about->IsValid())
        throw KEZMathZeroMagnitudeVectorException();
    const KEZMathVector k = about->Normalized();
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    *turned1 = rotate(*turned1, k, cosine, sine);
    *turned2 = rotate(*turned2, k, cosine, sine);
}

bool KEZMathAxis::operator!=(const KEZMathAxis &other) const
{
    return differs(m_origin - KEZMathPoint(), other.m_origin - KEZMathPoint(), Tolerance)
        || differs(m_first, other.m_first, Tolerance) || differs(m_second, other.m_second, Tolerance)
        || differs(m_third, other.m_third, Tolerance);
}

KEZMathPoint KEZMathAxis::operator*(const KEZMathPoint &point) const
{
    return m_origin + m_first * point.GetX() + m_second * point.GetY() + m_third * point.GetZ();
}

KEZMathVector KEZMathAxis::operator*(const KEZMathVector &vector) const
{
    return m_first * vector.GetX() + m_second * vector.GetY() + m_third * vector.GetZ();
}

KEZMathBoundingBox KEZMathAxis::operator*(const KEZMathBoundingBox &box) const
{
    const KEZMathPoint lower = box.GetLowerPoint();
    const KEZMathPoint upper = box.GetUpperPoint();
    KEZMathBoundingBox result(*this * lower);
    for (int corner = 1; corner < 8; ++corner) {
        const KEZMathPoint point((corner & 1) ? upper.GetX() : lower.GetX(),
                                 (corner & 2) ? upper.GetY() : lower.GetY(),
                                 (corner & 4) ? upper.GetZ() : lower.GetZ());
        result.Expand(*this * point);
    }
    return result;
}
