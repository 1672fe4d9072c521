#include "KEZSysFileException.h"

KEZSysFileException::KEZSysFileException(const QString &message)
    : KEZSysException(message)
{
}

KEZSysFileException::KEZSysFileException(const KEZSysFileException &other) = default;

KEZSysFileException &KEZSysFileException::operator=(const KEZSysFileException &other) = default;

KEZSysFileException::~KEZSysFileException() = default;

void KEZSysFileException::raise() const
{
    throw *this;
}

KEZSysFileException *KEZSysFileException::clone() const
{
    return new KEZSysFileException(*this);
}
