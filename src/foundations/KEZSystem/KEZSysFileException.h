#ifndef KEZSYSFILEEXCEPTION_H
#define KEZSYSFILEEXCEPTION_H

#include "KEZSysException.h"

/*!
    Base of the exceptions about files: a KEZSysException whose message tells
    what went wrong with a file. Catch it to handle every file failure alike.
*/
class KEZSYSTEM_EXPORT KEZSysFileException : public KEZSysException
{
public:
    explicit KEZSysFileException(const QString &message);
    KEZSysFileException(const KEZSysFileException &other);
    KEZSysFileException &operator=(const KEZSysFileException &other);
    ~KEZSysFileException() override;

    void raise() const override;
    KEZSysFileException *clone() const override;
};

#endif // KEZSYSFILEEXCEPTION_H
