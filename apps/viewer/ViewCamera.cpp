#include "ViewCamera.h"

#include <algorithm>
#include <cmath>

namespace {

bool IsFinite(const KEZMathVector &v)
{
    return std::isfinite(v.GetX()) && std::isfinite(v.GetY()) && std::isfinite(v.GetZ());
}

bool IsFinite(const KEZMathPoint &p)
{
    return std::isfinite(p.GetX()) && std::isfinite(p.GetY()) && std::isfinite(p.GetZ());
}

// v turned by angle about the unit vector axis (Rodrigues' formula).
KEZMathVector Turned(const KEZMathVector &v, const KEZMathVector &axis, double angle)
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return v * c + (axis ^ v) * s + axis * ((axis * v) * (1.0 - c));
}

} // namespace

ViewCamera::ViewCamera() = default;

void ViewCamera::Orthogonalise()
{
    m_direction.Normalize();
    KEZMathVector up = m_up - m_direction * (m_up * m_direction);
    if (!up.IsValid() || up.GetMagnitude() < 1e-9)
        up = m_direction.GetPerpendicular();
    m_up = up.Normalized();
    m_right = (m_direction ^ m_up).Normalized();
}

void ViewCamera::SetDirection(const KEZMathVector &direction)
{
    if (!IsFinite(direction) || !direction.IsValid())
        return;
    m_direction = direction.Normalized();
    Orthogonalise();
}

void ViewCamera::SetOrientation(const KEZMathVector &orientation)
{
    if (!IsFinite(orientation) || !orientation.IsValid())
        return;
    const KEZMathVector up = orientation - m_direction * (orientation * m_direction.Normalized());
    if (!up.IsValid() || up.GetMagnitude() < 1e-9 * orientation.GetMagnitude())
        return;
    m_up = up.Normalized();
    Orthogonalise();
}

void ViewCamera::SetScale(double scale)
{
    if (std::isfinite(scale) && scale > 0.0)
        m_scale = std::clamp(scale, 1e-9, 1e9);
}

bool ViewCamera::Fit(const KEZMathBoundingBox &box)
{
    const KEZMathPoint lower = box.GetLowerPoint();
    const KEZMathPoint upper = box.GetUpperPoint();
    if (!IsFinite(lower) || !IsFinite(upper))
        return false;
    m_centre = KEZMathPoint((lower.GetX() + upper.GetX()) / 2.0, (lower.GetY() + upper.GetY()) / 2.0,
                            (lower.GetZ() + upper.GetZ()) / 2.0);
    // The projection of the box on the screen axes: half the sum of the
    // projected edge lengths.
    const KEZMathVector extent = upper - lower;
    const double ex = std::abs(extent.GetX());
    const double ey = std::abs(extent.GetY());
    const double ez = std::abs(extent.GetZ());
    const double width = ex * std::abs(m_right.GetX()) + ey * std::abs(m_right.GetY()) + ez * std::abs(m_right.GetZ());
    const double height = ex * std::abs(m_up.GetX()) + ey * std::abs(m_up.GetY()) + ez * std::abs(m_up.GetZ());
    const double frameWidth = std::max(1, m_size.width()) * FitFill;
    const double frameHeight = std::max(1, m_size.height()) * FitFill;
    double scale = 0.0;
    if (width > 0.0 && height > 0.0)
        scale = std::min(frameWidth / width, frameHeight / height);
    else if (width > 0.0)
        scale = frameWidth / width;
    else if (height > 0.0)
        scale = frameHeight / height;
    if (scale > 0.0)
        SetScale(scale);
    return true;
}

void ViewCamera::Rotate(double yaw, double pitch)
{
    if (!std::isfinite(yaw) || !std::isfinite(pitch))
        return;
    m_direction = Turned(m_direction, m_up, yaw);
    Orthogonalise();
    m_direction = Turned(m_direction, m_right, pitch);
    m_up = Turned(m_up, m_right, pitch);
    Orthogonalise();
}

void ViewCamera::Pan(const QPointF &pixels)
{
    m_centre = m_centre - m_right * (pixels.x() / m_scale) + m_up * (pixels.y() / m_scale);
}

void ViewCamera::ZoomAt(const QPointF &screenPoint, double factor)
{
    if (!std::isfinite(factor) || factor <= 0.0)
        return;
    const KEZMathPoint before = FromScreen(screenPoint, 0.0);
    SetScale(m_scale * factor);
    const KEZMathPoint after = FromScreen(screenPoint, 0.0);
    m_centre = m_centre + (before - after);
}

QPointF ViewCamera::ToScreen(const KEZMathPoint &point) const
{
    const KEZMathVector v = point - m_centre;
    return QPointF(m_size.width() / 2.0 + (v * m_right) * m_scale, m_size.height() / 2.0 - (v * m_up) * m_scale);
}

QPointF ViewCamera::ToScreen(const double *xyz) const
{
    const double x = xyz[0] - m_centre.GetX();
    const double y = xyz[1] - m_centre.GetY();
    const double z = xyz[2] - m_centre.GetZ();
    return QPointF(m_size.width() / 2.0 + (x * m_right.GetX() + y * m_right.GetY() + z * m_right.GetZ()) * m_scale,
                   m_size.height() / 2.0 - (x * m_up.GetX() + y * m_up.GetY() + z * m_up.GetZ()) * m_scale);
}

double ViewCamera::Depth(const KEZMathPoint &point) const
{
    return (point - m_centre) * m_direction;
}

double ViewCamera::Depth(const double *xyz) const
{
    return (xyz[0] - m_centre.GetX()) * m_direction.GetX() + (xyz[1] - m_centre.GetY()) * m_direction.GetY()
           + (xyz[2] - m_centre.GetZ()) * m_direction.GetZ();
}

KEZMathPoint ViewCamera::FromScreen(const QPointF &screenPoint, double depth) const
{
    const double right = (screenPoint.x() - m_size.width() / 2.0) / m_scale;
    const double up = (m_size.height() / 2.0 - screenPoint.y()) / m_scale;
    return m_centre + m_right * right + m_up * up + m_direction * depth;
}
