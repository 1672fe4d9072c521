#include "KEZMathLine.h"

KEZMathLine::~KEZMathLine() = default;

KEZMathPoint KEZMathLine::ProjectPoint(const KEZMathPoint &point) const
{
    if (!m_vector.IsValid())
        return m_origin;
    const double t = ((point - m_origin) * m_vector) / m_vector.GetSquaredMagnitude();
    return m_origin + m_vector * t;
}
