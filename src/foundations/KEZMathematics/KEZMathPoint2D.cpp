#include "KEZMathPoint2D.h"

#include <cmath>

KEZMathPoint2D::~KEZMathPoint2D() = default;

double KEZMathPoint2D::GetDistanceTo(const KEZMathPoint2D &other) const
{
    return std::hypot(m_xy[0] - other.m_xy[0], m_xy[1] - other.m_xy[1]);
}
