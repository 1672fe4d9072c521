#ifndef KEZSYSFILEOPENEXCEPTION_H
#define KEZSYSFILEOPENEXCEPTION_H

#include "KEZSysFileException.h"

/*!
    A file could not be opened. It keeps the path and the error text that the
    file system gave (for instance QFile::errorString()); its message reads

        cannot open file "<path>": <error text>
*/
class KEZSYSTEM_EXPORT KEZSysFileOpenException : public KEZSysFileException
{
public:
    KEZSysFileOpenException(const QString &path, const QString &errorText);
    KEZSysFileOpenException(const KEZSysFileOpenException &other);
    KEZSysFileOpenException &operator=(const KEZSysFileOpenException &other);
    ~KEZSysFileOpenException() override;

    //! The path of the file that could not be opened, as given.
    QString GetPath() const { return m_path; }
    //! Why it could not be opened, as given.
    QString GetErrorText() const { return m_errorText; }

    void raise() const override;
    KEZSysFileOpenException *clone() const override;

private:
    QString m_path;
    QString m_errorText;
};

#endif // KEZSYSFILEOPENEXCEPTION_H
