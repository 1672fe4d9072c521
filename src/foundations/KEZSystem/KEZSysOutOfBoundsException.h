#ifndef KEZSYSOUTOFBOUNDSEXCEPTION_H
#define KEZSYSOUTOFBOUNDSEXCEPTION_H

#include "KEZSysException.h"

#include <QVariant>

/*!
    A value lies outside the range that it must lie in: a count, an index, a radius.

    The range is given by two limits. An invalid QVariant as a limit means that
    the range is open on that side. The two flags say whether each limit belongs
    to the allowed range: an index from 0 to count - 1 is (index, 0, count - 1,
    true, true), a radius above zero is (radius, 0.0, QVariant(), false, false).

    The message shows the value and the range in interval notation, with "[" or
    "]" for an included limit, "(" or ")" for an excluded one and -inf / +inf for
    a side without limit:

        value 7 is out of bounds [0, 4]
        value 0 is out of bounds (0, +inf)
*/
class KEZSYSTEM_EXPORT KEZSysOutOfBoundsException : public KEZSysException
{
public:
    KEZSysOutOfBoundsException(const QVariant &value, const QVariant &lowerLimit,
                               const QVariant &upperLimit, bool lowerIncluded,
                               bool upperIncluded);
    KEZSysOutOfBoundsException(const KEZSysOutOfBoundsException &other);
    KEZSysOutOfBoundsException &operator=(const KEZSysOutOfBoundsException &other);
    ~KEZSysOutOfBoundsException() override;

    //! The offending value.
    QVariant GetValue() const { return m_value; }
    //! The lower limit; invalid when there is none.
    QVariant GetLowerLimit() const { return m_lowerLimit; }
    //! The upper limit; invalid when there is none.
    QVariant GetUpperLimit() const { return m_upperLimit; }
    //! Whether the lower limit itself is allowed.
    bool IsLowerLimitIncluded() const { return m_lowerIncluded; }
    //! Whether the upper limit itself is allowed.
    bool IsUpperLimitIncluded() const { return m_upperIncluded; }

    void raise() const override;
    KEZSysOutOfBoundsException *clone() const override;

private:
    QVariant m_value;
    QVariant m_lowerLimit;
    QVariant m_upperLimit;
    bool m_lowerIncluded;
    bool m_upperIncluded;
};

#endif // KEZSYSOUTOFBOUNDSEXCEPTION_H
