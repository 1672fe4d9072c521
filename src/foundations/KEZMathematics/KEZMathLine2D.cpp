#include "KEZMathLine2D.h"

KEZMathLine2D::~KEZMathLine2D() = default;

KEZMathPoint2D KEZMathLine2D::ProjectPoint(const KEZMathPoint2D &point) const
{
    if (!m_vector.IsValid())
        return m_origin;
    const double t = ((point - m_origin) * m_vector) / (m_vector * m_vector);
    return m_origin + m_vector * t;
}
