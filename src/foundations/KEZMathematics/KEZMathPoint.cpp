#include "KEZMathPoint.h"

#include <KEZSysOutOfBoundsException.h>

#include <cmath>

KEZMathPoint::~KEZMathPoint() = default;

double &KEZMathPoint::operator[](int index)
{
    if (index < 0 || index > 2)
        throw KEZSysOutOfBoundsException(index, 0, 2, true, true);
    return m_xyz[index];
}

double KEZMathPoint::operator[](int index) const
{
    if (index < 0 || index > 2)
        throw KEZSysOutOfBoundsException(index, 0, 2, true, true);
    return m_xyz[index];
}

double KEZMathPoint::GetDistanceTo(const KEZMathPoint &other) const
{
    return std::sqrt(GetSquaredDistanceTo(other));
}
