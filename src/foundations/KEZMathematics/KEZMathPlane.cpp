#include "KEZMathPlane.h"

#include "KEZMathZeroMagnitudeVectorException.h"

KEZMathPlane::~KEZMathPlane() = default;

void KEZMathPlane::SetNormal(const KEZMathVector &normal)
{
    if (!normal.IsValid())
        throw KEZMathZeroMagnitudeVectorException();
    m_normal = normal.Normalized();
    m_xDirection = m_normal.GetPerpendicular();
    m_yDirection = (m_normal ^ m_xDirection).Normalize();
}

void KEZMathPlane::SetDirections(const KEZMathVector &xDirection, const KEZMathVector &yDirection)
{
    if (!xDirection.IsValid())
        throw KEZMathZeroMagnitudeVectorException();
    const KEZMathVector x = xDirection.Normalized();
    const KEZMathVector yAcross = yDirection - x * (yDirection * x);
    if (!yAcross.IsValid())
        throw KEZMathZeroMagnitudeVectorException();
    const KEZMathVector y = yAcross.Normalized();
    m_xDirection = x;
    m_yDirection = y;
    m_normal = (x ^ y).Normalize();
}

KEZMathPoint KEZMathPlane::Project(const KEZMathPoint &point) const
{
    return point - m_normal * ((point - m_origin) * m_normal);
}

KEZMathVector KEZMathPlane::Project(const KEZMathVector &vector) const
{
    return vector - m_normal * (vector * m_normal);
}

void KEZMathPlane::Project(const KEZMathPoint &point, KEZMathPoint2D &point2D) const
{
    const KEZMathVector offset = point - m_origin;
    point2D.SetX(offset * m_xDirection);
    point2D.SetY(offset * m_yDirection);
}

KEZMathPoint KEZMathPlane::Evaluate(const KEZMathPoint2D &point2D) const
{
    return m_origin + m_xDirection * point2D.GetX() + m_yDirection * point2D.GetY();
}
