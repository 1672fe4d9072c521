#include "KEZMathVector.h"

#include <KEZSysOutOfBoundsException.h>

#include <algorithm>
#include <cmath>

KEZMathVector::~KEZMathVector() = default;

double &KEZMathVector::operator[](int index)
{
    if (index < 0 || index > 2)
        throw KEZSysOutOfBoundsException(index, 0, 2, true, true);
    return m_xyz[index];
}

double KEZMathVector::operator[](int index) const
{
    if (index < 0 || index > 2)
        throw KEZSysOutOfBoundsException(index, 0, 2, true, true);
    return m_xyz[index];
}

double KEZMathVector::GetMagnitude() const
{
    return std::sqrt(GetSquaredMagnitude());
}

bool KEZMathVector::IsValid() const
{
    // Written so that a NaN magnitude answers false.
    return GetMagnitude() >= ValidityThreshold;
}

KEZMathVector &KEZMathVector::Normalize()
{
    if (!IsValid())
        return *this;
    const double magnitude = GetMagnitude();
    m_xyz[0] /= magnitude;
    m_xyz[1] /= magnitude;
    m_xyz[2] /= magnitude;
    return *this;
}

KEZMathVector KEZMathVector::Normalized() const
{
    KEZMathVector copy(*this);
    copy.Normalize();
    return copy;
}

double KEZMathVector::GetAngleTo(const KEZMathVector &other) const
{
    if (!IsValid() || !other.IsValid())
        return 0.0;
    const double cosine = (*this * other) / (GetMagnitude() * other.GetMagnitude());
    return std::acos(std::clamp(cosine, -1.0, 1.0));
}

KEZMathVector KEZMathVector::GetPerpendicular() const
{
    const KEZMathVector unit = Normalized();
    int smallest = 0;
    for (int i = 1; i < 3; ++i) {
        if (std::abs(unit.m_xyz[i]) < std::abs(unit.m_xyz[smallest]))
            smallest = i;
    }
    KEZMathVector axis;
    axis.m_xyz[smallest] = 1.0;
    if (!unit.IsValid())
        return axis;
    return (axis - unit * (axis * unit)).Normalize();
}

bool KEZMathVector::operator==(const KEZMathVector &other) const
{
    return std::abs(m_xyz[0] - other.m_xyz[0]) <= Tolerance
        && std::abs(m_xyz[1] - other.m_xyz[1]) <= Tolerance
        && std::abs(m_xyz[2] - other.m_xyz[2]) <= Tolerance;
}
