#include "KEZMathVector2D.h"

#include <algorithm>
#include <cmath>

KEZMathVector2D::~KEZMathVector2D() = default;

double KEZMathVector2D::GetMagnitude() const
{
    return std::hypot(m_xy[0], m_xy[1]);
}

bool KEZMathVector2D::IsValid() const
{
    return GetMagnitude() >= ValidityThreshold;
}

KEZMathVector2D &KEZMathVector2D::Normalize()
{
    if (!IsValid())
        return *this;
    const double magnitude = GetMagnitude();
    m_xy[0] /= magnitude;
    m_xy[1] /= magnitude;
    return *this;
}

double KEZMathVector2D::GetAngleTo(const KEZMathVector2D &other) const
{
    if (!IsValid() || !other.IsValid())
        return 0.0;
    const double cosine = (*this * other) / (GetMagnitude() * other.GetMagnitude());
    return std::acos(std::clamp(cosine, -1.0, 1.0));
}

bool KEZMathVector2D::operator==(const KEZMathVector2D &other) const
{
    return std::abs(m_xy[0] - other.m_xy[0]) <= Tolerance
        && std::abs(m_xy[1] - other.m_xy[1]) <= Tolerance;
}
