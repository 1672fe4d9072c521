#ifndef KEZSYSEXCEPTION_H
#define KEZSYSEXCEPTION_H

#include "kezsystem_export.h"

#include <QByteArray>
#include <QException>
#include <QString>

/*!
    Base of every exception of the family. It carries a human-readable message
    and is thrown by value:

    \code
    throw KEZSysException(QStringLiteral("batch count already zero"));
    \endcode

    As a QException it can also travel between threads: clone() makes a heap
    copy of the most derived type and raise() throws *this by value, again as
    the most derived type. Every subclass overrides both.

    what() answers the message encoded as UTF-8. The bytes are kept inside the
    exception object, so the pointer stays valid as long as the exception lives.
*/
class KEZSYSTEM_EXPORT KEZSysException : public QException
{
public:
    explicit KEZSysException(const QString &message);
    KEZSysException(const KEZSysException &other);
    KEZSysException &operator=(const KEZSysException &other);
    ~KEZSysException() override;

    //! The message given to the constructor.
    QString GetMessage() const { return m_message; }

    //! The message as a null-terminated UTF-8 string, owned by this object.
    const char *what() const noexcept override;

    //! Throws a copy of this exception, typed as the most derived class.
    void raise() const override;

    //! A heap copy of this exception, typed as the most derived class; the caller owns it.
    KEZSysException *clone() const override;

private:
    QString m_message;
    QByteArray m_utf8;
};

#endif // KEZSYSEXCEPTION_H
