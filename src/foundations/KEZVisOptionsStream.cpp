#include "KEZVisOptionsStream_p.h"

#include <QByteArray>
#include <QColor>
#include <QDataStream>
#include <QFont>
#include <QIODevice>
#include <QString>
#include <QStringList>

#include <cmath>
#include <type_traits>

// The walk below knows the stream form of a font as Qt up to 6.5 writes it.
// Later versions append fields of their own, which the walk must learn first.
static_assert(QT_VERSION < QT_VERSION_CHECK(6, 6, 0),
              "the font walk knows the stream form of Qt 6.0 to 6.5; teach it the newer fields");

namespace {

// Copies fields from the caller's stream to a buffer of the same settings,
// checking each one, and keeps the first verdict.
class FieldWalk
{
public:
    FieldWalk(QDataStream &in, QByteArray &buffer)
        : m_in(in)
        , m_out(&buffer, QIODevice::WriteOnly)
    {
        m_out.setVersion(in.version());
        m_out.setByteOrder(in.byteOrder());
        m_out.setFloatingPointPrecision(in.floatingPointPrecision());
    }

    // Reads one value and writes it on; false once the data has ended.
    template <typename T>
    bool Copy(T &value)
    {
        if constexpr (std::is_same_v<T, QString>) {
            if (!ReadString(value))
                return false;
        } else {
            m_in >> value;
        }
        if (m_in.status() != QDataStream::Ok)
            return false;
        m_out << value;
        return true;
    }

    template <typename T>
    bool Skip()
    {
        T value{};
        return Copy(value);
    }

    // Reads a string as QDataStream writes it (a quint32 length in bytes,
    // 0xFFFFFFFF for a null string, then UTF-16 in the stream's byte order).
    // Qt's own reader makes room for the whole announced length first; this
    // one grows with the bytes that actually arrive, so a lying length ends at
    // the data's end, and on a device that knows its size it is refused as
    // corrupt before anything is read.
    bool ReadString(QString &text)
    {
        quint32 bytes = 0;
        m_in >> bytes;
        if (m_in.status() != QDataStream::Ok)
            return false;
        if (bytes == 0xFFFFFFFFu) {
            text = QString();
            return true;
        }
        QIODevice *device = m_in.device();
        if (bytes % 2 != 0 || (device && !device->isSequential() && qint64(bytes) > device->bytesAvailable()))
            return Corrupt();
        QByteArray data;
        while (quint32(data.size()) < bytes) {
            const qsizetype piece = qsizetype(qMin<quint32>(bytes - quint32(data.size()), qMax<quint32>(4096, quint32(data.size()))));
            const qsizetype had = data.size();
            data.resize(had + piece);
            if (m_in.readRawData(data.data() + had, int(piece)) != piece) {
                m_in.setStatus(QDataStream::ReadPastEnd);
                return false;
            }
        }
        text.resize(data.size() / 2);
        for (qsizetype i = 0; i < text.size(); ++i) {
            const uchar high = uchar(data[2 * i]), low = uchar(data[2 * i + 1]);
            text[i] = m_in.byteOrder() == QDataStream::BigEndian ? QChar(ushort(high << 8 | low))
                                                                 : QChar(ushort(low << 8 | high));
        }
        return true;
    }

    // Marks the data corrupt; always false, so that a check can return it.
    bool Corrupt()
    {
        m_in.setStatus(QDataStream::ReadCorruptData);
        return false;
    }

    // A font's list of families, string by string. The count is not trusted
    // for any reservation: a count beyond the data ends at the data's end.
    // From version Qt_6_0 on the list replaces the font's families, and a font
    // without any cannot even be written again (Qt's writer takes the first):
    // an empty list there is corrupt.
    bool CopyFamilies()
    {
        quint32 count = 0;
        m_in >> count;
        if (m_in.status() != QDataStream::Ok)
            return false;
        if (count == 0 && m_in.version() >= QDataStream::Qt_6_0)
            return Corrupt();
        QStringList families;
        for (quint32 i = 0; i < count; ++i) {
            QString family;
            if (!ReadString(family))
                return false;
            families.append(family);
        }
        m_out << families;
        return true;
    }

    int Version() const { return m_in.version(); }

private:
    QDataStream &m_in;
    QDataStream m_out;
};

// A point size that a font can hold: unset (-1) or a positive finite number.
bool IsPointSize(double size)
{
    return size == -1.0 || (std::isfinite(size) && size > 0.0);
}

// A pixel size that a font can hold: unset (-1) or positive.
bool IsPixelSize(qint32 size)
{
    return size == -1 || size > 0;
}

// The fields of a font in the order and widths in which QFont writes them for
// the stream's version.
bool WalkFont(FieldWalk &walk)
{
    const int version = walk.Version();

    if (version == 1) {
        QByteArray family;
        if (!walk.Copy(family))
            return false;
    } else {
        QString family;
        if (!walk.Copy(family))
            return false;
        if (version >= QDataStream::Qt_5_4) {
            QString styleName;
            if (!walk.Copy(styleName))
                return false;
        }
    }

    if (version >= QDataStream::Qt_4_0) {
        double pointSize = 0.0;
        qint32 pixelSize = 0;
        if (!walk.Copy(pointSize) || !walk.Copy(pixelSize))
            return false;
        if (!IsPointSize(pointSize) || !IsPixelSize(pixelSize))
            return walk.Corrupt();
    } else {
        // Tenths of a point, and from version 4 on a pixel size, in 16 bits.
        qint16 pointSize = 0;
        if (!walk.Copy(pointSize))
            return false;
        if (!IsPointSize(pointSize / 10.0))
            return walk.Corrupt();
        if (version >= 4) {
            qint16 pixelSize = 0;
            if (!walk.Copy(pixelSize))
                return false;
            if (!IsPixelSize(pixelSize))
                return walk.Corrupt();
        }
    }

    if (!walk.Skip<quint8>()) // style hint
        return false;
    if (version >= QDataStream::Qt_5_4) {
        if (!walk.Skip<quint16>()) // style strategy
            return false;
    } else if (version >= QDataStream::Qt_3_1) {
        if (!walk.Skip<quint8>())
            return false;
    }

    if (version >= QDataStream::Qt_6_0) {
        quint16 weight = 0;
        if (!walk.Copy(weight))
            return false;
        if (weight < 1 || weight > 1000)
            return walk.Corrupt();
    } else {
        // A character set that nothing reads any more, then the weight on the
        // old scale, which Qt's reader maps onto the new one.
        if (!walk.Skip<quint8>() || !walk.Skip<quint8>())
            return false;
    }

    if (!walk.Skip<quint8>()) // style bits
        return false;
    if (version >= QDataStream::Qt_4_3) {
        quint16 stretch = 0;
        if (!walk.Copy(stretch))
            return false;
        if (stretch > 4000)
            return walk.Corrupt();
    }
    if (version >= QDataStream::Qt_4_4 && !walk.Skip<quint8>()) // extended bits
        return false;
    if (version >= QDataStream::Qt_4_5 && (!walk.Skip<qint32>() || !walk.Skip<qint32>())) // spacings
        return false;
    if (version >= QDataStream::Qt_5_4 && !walk.Skip<quint8>()) // hinting preference
        return false;
    if (version >= QDataStream::Qt_5_6 && !walk.Skip<quint8>()) // capitalisation
        return false;
    if (version >= QDataStream::Qt_5_13 && !walk.CopyFamilies())
        return false;
    return true;
}

// The fields of a colour from stream version Qt_4_0 on: its colour model as a
// signed byte, then five 16-bit words whose meaning depends on the model (alpha and
// three components, then padding or a fourth component).
bool WalkColor(FieldWalk &walk)
{
    qint8 model = 0;
    quint16 alpha = 0;
    quint16 first = 0;
    if (!walk.Copy(model) || !walk.Copy(alpha) || !walk.Copy(first))
        return false;
    if (!walk.Skip<quint16>() || !walk.Skip<quint16>() || !walk.Skip<quint16>())
        return false;
    if (model < QColor::Invalid || model > QColor::ExtendedRgb)
        return walk.Corrupt();
    // The first component of these two is the hue in hundredths of a degree,
    // or 65535 for a colour without hue.
    if ((model == QColor::Hsv || model == QColor::Hsl) && first > 36000 && first != 0xffff)
        return walk.Corrupt();
    return true;
}

/*
    Reads one value of type T through walk(): the value is judged on its own
    bytes, as Qt's container readers judge their contents, and an earlier
    failure is set again afterwards. Inside a device transaction the status
    stays, so that a failed transaction reads nothing more. Qt's reader must
    then take exactly the bytes that the walk copied; any disagreement is data
    that these readers do not understand, and counts as corrupt.
*/
template <typename T, typename Walk>
bool ReadChecked(QDataStream &stream, T &value, Walk walk)
{
    const QDataStream::Status previous = stream.status();
    if (!stream.isDeviceTransactionStarted())
        stream.resetStatus();

    QByteArray buffer;
    bool read = false;
    {
        FieldWalk fields(stream, buffer);
        read = walk(fields);
    }
    if (read) {
        QDataStream checked(buffer);
        checked.setVersion(stream.version());
        checked.setByteOrder(stream.byteOrder());
        checked.setFloatingPointPrecision(stream.floatingPointPrecision());
        T candidate;
        checked >> candidate;
        if (checked.status() == QDataStream::Ok && checked.atEnd()) {
            value = candidate;
        } else {
            stream.setStatus(QDataStream::ReadCorruptData);
            read = false;
        }
    }

    if (previous != QDataStream::Ok) {
        stream.resetStatus();
        stream.setStatus(previous);
    }
    return read;
}

} // namespace

namespace KEZVisOptionsStream {

bool ReadColor(QDataStream &stream, QColor &color)
{
    if (stream.version() < QDataStream::Qt_4_0) {
        // A plain RGBA word: every value is a colour.
        return ReadChecked(stream, color, [](FieldWalk &walk) { return walk.Skip<quint32>(); });
    }
    return ReadChecked(stream, color, WalkColor);
}

bool ReadFont(QDataStream &stream, QFont &font)
{
    return ReadChecked(stream, font, WalkFont);
}

} // namespace KEZVisOptionsStream
