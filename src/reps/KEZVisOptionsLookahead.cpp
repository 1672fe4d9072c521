#include "KEZVisOptionsLookahead_p.h"

#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

namespace {

// Walks the bytes of the entry ahead of the stream's position.
class Lookahead
{
public:
    explicit Lookahead(QDataStream &stream)
        : m_stream(stream)
        , m_device(stream.device())
        , m_available(m_device ? m_device->bytesAvailable() : 0)
    {
    }

    // Skips a value of fixed size; false once the device holds no more.
    bool Skip(qint64 bytes)
    {
        m_offset += bytes;
        return m_offset <= m_available;
    }

    // Reads a quint32 at the current offset without consuming it.
    bool PeekUInt32(quint32 &value)
    {
        if (m_offset + 4 > m_available)
            return false;
        const QByteArray head = m_device->peek(m_offset + 4);
        if (head.size() < m_offset + 4)
            return false;
        const char *bytes = head.constData() + m_offset;
        value = m_stream.byteOrder() == QDataStream::BigEndian ? qFromBigEndian<quint32>(bytes)
                                                               : qFromLittleEndian<quint32>(bytes);
        return true;
    }

    // Skips a QString the way Qt's reader consumes it: a quint32 byte count
    // (0xffffffff for a null string) and that many bytes. An odd count is
    // corrupt, and the reader then stops after the count itself while the
    // font reader goes on from there, so the look ahead does the same.
    bool SkipString()
    {
        quint32 bytes = 0;
        if (!PeekUInt32(bytes))
            return false;
        if (bytes == 0xffffffffu || (bytes & 1u))
            return Skip(4);
        return Skip(4 + qint64(bytes));
    }

    qint64 Remaining() const { return m_available - m_offset; }

private:
    QDataStream &m_stream;
    QIODevice *m_device;
    qint64 m_available;
    qint64 m_offset = 0;
};

} // namespace

namespace KEZVisOptionsLookahead {

bool FontFamiliesFit(QDataStream &stream)
{
    const int version = stream.version();
    if (!stream.device() || version < QDataStream::Qt_5_13)
        return true;
    const bool singlePrecision = stream.floatingPointPrecision() == QDataStream::SinglePrecision;
    const qint64 doubleSize = singlePrecision ? 4 : 8;

    Lookahead ahead(stream);
    // The options before the font: the colour (its kind, alpha, red, green, blue
    // and padding), the line style, the thickness, the point symbol.
    if (!ahead.Skip(1 + 5 * 2) || !ahead.Skip(4) || !ahead.Skip(doubleSize) || !ahead.Skip(4))
        return true;
    // The font up to its families, as QFont writes it from Qt_5_13 on: family
    // and style name, point size (double) and pixel size (qint32), style hint
    // (quint8) and strategy (quint16), weight (two bytes either way), bits
    // (quint8), stretch (quint16), extended bits (quint8), letter and word
    // spacing (two ints), hinting preference and capitalisation (quint8 each).
    if (!ahead.SkipString() || !ahead.SkipString())
        return true;
    if (!ahead.Skip(doubleSize + 4 + 1 + 2 + 2 + 1 + 2 + 1 + 4 + 4 + 1 + 1))
        return true;
    quint32 families = 0;
    if (!ahead.PeekUInt32(families))
        return true;
    // Every string of the list takes at least its 4-byte count.
    return qint64(families) * 4 <= ahead.Remaining() - 4;
}

} // namespace KEZVisOptionsLookahead
