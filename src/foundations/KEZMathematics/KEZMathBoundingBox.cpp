#include "KEZMathBoundingBox.h"

#include <algorithm>

KEZMathBoundingBox::KEZMathBoundingBox(const KEZMathPoint &first, const KEZMathPoint &second)
    : m_lower(first)
    , m_upper(first)
{
    Expand(second);
}

KEZMathBoundingBox::~KEZMathBoundingBox() = default;

void KEZMathBoundingBox::Expand(const KEZMathPoint &point)
{
    for (int i = 0; i < 3; ++i) {
        m_lower[i] = std::min(m_lower[i], point[i]);
        m_upper[i] = std::max(m_upper[i], point[i]);
    }
}

void KEZMathBoundingBox::Expand(const KEZMathBoundingBox &box)
{
    Expand(box.m_lower);
    Expand(box.m_upper);
}

bool KEZMathBoundingBox::operator==(const KEZMathBoundingBox &other) const
{
    return m_lower.GetX() == other.m_lower.GetX() && m_lower.GetY() == other.m_lower.GetY()
        && m_lower.GetZ() == other.m_lower.GetZ() && m_upper.GetX() == other.m_upper.GetX()
        && m_upper.GetY() == other.m_upper.GetY() && m_upper.GetZ() == other.m_upper.GetZ();
}
