#include "KEZSysFileOpenException.h"

KEZSysFileOpenException::KEZSysFileOpenException(const QString &path, const QString &errorText)
    : KEZSysFileException(QStringLiteral("cannot open file \"%1\": %2").arg(path, errorText))
    , m_path(path)
    , m_errorText(errorText)
{
}

KEZSysFileOpenException::KEZSysFileOpenException(const KEZSysFileOpenException &other) = default;

KEZSysFileOpenException &KEZSysFileOpenException::operator=(const KEZSysFileOpenException &other) = default;

KEZSysFileOpenException::~KEZSysFileOpenException() = default;

void KEZSysFileOpenException::raise() const
{
    throw *this;
}

KEZSysFileOpenException *KEZSysFileOpenException::clone() const
{
    return new KEZSysFileOpenException(*this);
}
