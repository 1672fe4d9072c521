#ifndef KEZPIPELIKEDEVICE_H
#define KEZPIPELIKEDEVICE_H

// A read-only device over given bytes that, like a pipe or a socket whose
// writer has already written everything, is sequential: it cannot seek and
// tells only how many bytes are left, not its size. Header-only, shared by
// the tests and the fuzz targets that read from such devices.

#include <QByteArray>
#include <QIODevice>

#include <algorithm>
#include <cstring>

namespace KEZTest {

class PipeLikeDevice : public QIODevice
{
public:
    explicit PipeLikeDevice(const QByteArray &bytes)
        : m_bytes(bytes)
    {
        open(QIODevice::ReadOnly);
    }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return m_bytes.size() - m_offset + QIODevice::bytesAvailable(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 count = std::min<qint64>(maxSize, m_bytes.size() - m_offset);
        std::memcpy(data, m_bytes.constData() + m_offset, size_t(count));
        m_offset += count;
        return count;
    }

    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
    qint64 m_offset = 0;
};

} // namespace KEZTest

#endif // KEZPIPELIKEDEVICE_H
