#ifndef STREAMBYTES_H
#define STREAMBYTES_H

// Composes the bytes that a QDataStream is expected to hold, value by value,
// with explicit byte order, so that tests state stream forms without calling
// the code under test.

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <cstring>

class StreamBytes
{
public:
    enum Order { BigEndian, LittleEndian };

    explicit StreamBytes(Order order = BigEndian)
        : m_order(order)
    {
    }

    StreamBytes &UInt8(quint8 value)
    {
        m_bytes.append(char(value));
        return *this;
    }

    StreamBytes &Int32(qint32 value) { return Unsigned(quint32(value), 4); }
    StreamBytes &UInt32(quint32 value) { return Unsigned(value, 4); }
    StreamBytes &Int64(qint64 value) { return Unsigned(quint64(value), 8); }

    StreamBytes &Double(double value)
    {
        quint64 bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        return Unsigned(bits, 8);
    }

    StreamBytes &Float(float value)
    {
        quint32 bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        return Unsigned(bits, 4);
    }

    // QString's form: the byte length as quint32, then UTF-16 code units in
    // the stream's byte order.
    StreamBytes &String(const QString &text)
    {
        UInt32(quint32(text.size() * 2));
        for (QChar c : text)
            Unsigned(c.unicode(), 2);
        return *this;
    }

    // The const char * form: the length with the closing NUL as quint32, then
    // the bytes and the NUL.
    StreamBytes &CString(const char *text)
    {
        const quint32 length = quint32(std::strlen(text)) + 1;
        UInt32(length);
        m_bytes.append(text, qsizetype(length));
        return *this;
    }

    StreamBytes &Raw(const QByteArray &bytes)
    {
        m_bytes.append(bytes);
        return *this;
    }

    const QByteArray &Bytes() const { return m_bytes; }

private:
    StreamBytes &Unsigned(quint64 value, int size)
    {
        for (int i = 0; i < size; ++i) {
            const int shift = m_order == BigEndian ? 8 * (size - 1 - i) : 8 * i;
            m_bytes.append(char((value >> shift) & 0xff));
        }
        return *this;
    }

    Order m_order;
    QByteArray m_bytes;
};

#endif // STREAMBYTES_H
