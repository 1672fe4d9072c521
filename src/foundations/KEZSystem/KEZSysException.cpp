#include "KEZSysException.h"

KEZSysException::KEZSysException(const QString &message)
    : m_message(message)
    , m_utf8(message.toUtf8())
{
}

KEZSysException::KEZSysException(const KEZSysException &other) = default;

KEZSysException &KEZSysException::operator=(const KEZSysException &other) = default;

KEZSysException::~KEZSysException() = default;

const char *KEZSysException::what() const noexcept
{
    return m_utf8.constData();
}

void KEZSysException::raise() const
{
    throw *this;
}

KEZSysException *KEZSysException::clone() const
{
    return new KEZSysException(*this);
}
