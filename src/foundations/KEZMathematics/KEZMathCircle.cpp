#include "KEZMathCircle.h"

#include "KEZMathZeroMagnitudeVectorException.h"

#include <cmath>

KEZMathCircle::~KEZMathCircle() = default;

void KEZMathCircle::SetDirections(const KEZMathVector &normal, const KEZMathVector *startDirection)
{
    if (!normal.IsValid())
        throw KEZMathZeroMagnitudeVectorException();
    const KEZMathVector unitNormal = normal.Normalized();
    KEZMathVector start;
    if (startDirection)
        start = *startDirection - unitNormal * (*startDirection * unitNormal);
    if (start.IsValid())
        start.Normalize();
    else
        start = unitNormal.GetPerpendicular();
    m_normal = unitNormal;
    m_start = start;
}

KEZMathPoint KEZMathCircle::EvalAngle(double angle) const
{
    const KEZMathVector across = m_normal ^ m_start;
    return m_origin + (m_start * std::cos(angle) + across * std::sin(angle)) * m_radius;
}
