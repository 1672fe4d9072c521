#include "KEZMathZeroMagnitudeVectorException.h"

KEZMathZeroMagnitudeVectorException::KEZMathZeroMagnitudeVectorException()
    : KEZSysException(QStringLiteral("vector has zero magnitude"))
{
}

KEZMathZeroMagnitudeVectorException::KEZMathZeroMagnitudeVectorException(
    const KEZMathZeroMagnitudeVectorException &other) = default;

KEZMathZeroMagnitudeVectorException &KEZMathZeroMagnitudeVectorException::operator=(
    const KEZMathZeroMagnitudeVectorException &other) = default;

KEZMathZeroMagnitudeVectorException::~KEZMathZeroMagnitudeVectorException() = default;

void KEZMathZeroMagnitudeVectorException::raise() const
{
    throw *this;
}

KEZMathZeroMagnitudeVectorException *KEZMathZeroMagnitudeVectorException::clone() const
{
    return new KEZMathZeroMagnitudeVectorException(*this);
}
