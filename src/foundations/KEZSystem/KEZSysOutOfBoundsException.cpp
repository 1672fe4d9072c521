#include "KEZSysOutOfBoundsException.h"

namespace {

QString describe(const QVariant &value)
{
    if (!value.isValid())
        return QStringLiteral("(none)");
    if (value.canConvert<QString>())
        return value.toString();
    // A type without a text form is named by its type.
    return QStringLiteral("<%1>").arg(QString::fromLatin1(value.typeName()));
}

QString buildMessage(const QVariant &value, const QVariant &lowerLimit,
                     const QVariant &upperLimit, bool lowerIncluded, bool upperIncluded)
{
    const QString lower = lowerLimit.isValid()
        ? (lowerIncluded ? QStringLiteral("[") : QStringLiteral("(")) + describe(lowerLimit)
        : QStringLiteral("(-inf");
    const QString upper = upperLimit.isValid()
        ? describe(upperLimit) + (upperIncluded ? QStringLiteral("]") : QStringLiteral(")"))
        : QStringLiteral("+inf)");
    return QStringLiteral("value %1 is out of bounds %2, %3").arg(describe(value), lower, upper);
}

} // namespace

KEZSysOutOfBoundsException::KEZSysOutOfBoundsException(const QVariant &value,
                                                       const QVariant &lowerLimit,
                                                       const QVariant &upperLimit,
                                                       bool lowerIncluded, bool upperIncluded)
    : KEZSysException(buildMessage(value, lowerLimit, upperLimit, lowerIncluded, upperIncluded))
    , m_value(value)
    , m_lowerLimit(lowerLimit)
    , m_upperLimit(upperLimit)
    , m_lowerIncluded(lowerIncluded)
    , m_upperIncluded(upperIncluded)
{
}

KEZSysOutOfBoundsException::KEZSysOutOfBoundsException(const KEZSysOutOfBoundsException &other) = default;

KEZSysOutOfBoundsException &
KEZSysOutOfBoundsException::operator=(const KEZSysOutOfBoundsException &other) = default;

KEZSysOutOfBoundsException::~KEZSysOutOfBoundsException() = default;

void KEZSysOutOfBoundsException::raise() const
{
    throw *this;
}

KEZSysOutOfBoundsException *KEZSysOutOfBoundsException::clone() const
{
    return new KEZSysOutOfBoundsException(*this);
}
