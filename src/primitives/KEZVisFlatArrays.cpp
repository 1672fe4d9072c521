#include "KEZVisFlatArrays_p.h"

#include "KEZMathPoint.h"

#include <QIODevice>
#include <QtEndian>

#include <algorithm>
#include <cstdint>
#include <vector>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace {

// Values converted per block when the stream's byte order differs from the
// machine's: 64 KiB of doubles.
constexpr qint64 WriteBlock = 8192;

// When the device cannot promise all the bytes of a count, reading starts with
// a piece of this many values and each further piece is as large as what has
// arrived so far, so memory stays within a small multiple of the bytes read.
constexpr qint64 FirstReadPiece = 4096;

// Largest length handed to one readRawData() or writeRawData() call, whose
// length is an int.
constexpr qint64 MaxRawBytes = qint64(1) << 30;

bool isHostOrder(const QDataStream &stream)
{
    return (stream.byteOrder() == QDataStream::BigEndian) == (Q_BYTE_ORDER == Q_BIG_ENDIAN);
}

// Doubles go out as floats when the stream asks for single precision, as
// QDataStream's own operators do from version Qt_4_6 on.
bool writesDoublesAsFloats(const QDataStream &stream)
{
    return stream.version() >= QDataStream::Qt_4_6
        && stream.floatingPointPrecision() == QDataStream::SinglePrecision;
}

template <typename T>
void toStreamOrder(const QDataStream &stream, const T *source, qint64 count, void *dest)
{
    if (stream.byteOrder() == QDataStream::BigEndian)
        qToBigEndian<T>(source, count, dest);
    else
        qToLittleEndian<T>(source, count, dest);
}

template <typename T>
void fromStreamOrder(const QDataStream &stream, const void *source, qint64 count, T *dest)
{
    if (stream.byteOrder() == QDataStream::BigEndian)
        qFromBigEndian<T>(source, count, dest);
    else
        qFromLittleEndian<T>(source, count, dest);
}

bool writeRaw(QDataStream &stream, const char *data, qint64 bytes)
{
    while (bytes > 0) {
        const int piece = int(qMin(bytes, MaxRawBytes));
        if (stream.writeRawData(data, piece) != piece)
            return false;
        data += piece;
        bytes -= piece;
    }
    return true;
}

bool readRaw(QDataStream &stream, char *data, qint64 bytes)
{
    while (bytes > 0) {
        const int piece = int(qMin(bytes, MaxRawBytes));
        if (stream.readRawData(data, piece) != piece) {
            // QDataStream has said ReadPastEnd already unless it had failed
            // before; setStatus() never overwrites an earlier failure.
            stream.setStatus(QDataStream::ReadPastEnd);
            return false;
        }
        data += piece;
        bytes -= piece;
    }
    return true;
}

// Writes count values of sizeof(T) bytes each in the stream's byte order.
template <typename T>
void writeValues(QDataStream &stream, const T *values, qint64 count)
{
    // QDataStream's own writers do nothing once the stream has failed.
    if (count <= 0 || !stream.device() || stream.status() != QDataStream::Ok)
        return;
    if (isHostOrder(stream)) {
        writeRaw(stream, reinterpret_cast<const char *>(values), count * qint64(sizeof(T)));
        return;
    }
    std::vector<T> block(size_t(qMin(count, WriteBlock)));
    for (qint64 done = 0; done < count;) {
        const qint64 n = qMin(count - done, WriteBlock);
        toStreamOrder<T>(stream, values + done, n, block.data());
        if (!writeRaw(stream, reinterpret_cast<const char *>(block.data()), n * qint64(sizeof(T))))
            return;
        done += n;
    }
}

// Reads count values of sizeof(T) bytes each, in the stream's byte order, into
// a new array. See ReadDoubles for how memory is bounded.
template <typename T>
bool readValues(QDataStream &stream, qint64 count, std::unique_ptr<T[]> &out)
{
    out.reset();
    if (count == 0)
        return true;
    QIODevice *device = stream.device();
    if (count < 0 || !device)
        return false;

    const qint64 bytes = count * qint64(sizeof(T));
    std::unique_ptr<T[]> values;
    if (!device->isSequential() && device->bytesAvailable() >= bytes) {
        // The device holds all of it: one allocation, one read.
        values.reset(new T[size_t(count)]);
        if (!readRaw(stream, reinterpret_cast<char *>(values.get()), bytes))
            return false;
    } else {
        // The count may be a lie: grow with what actually arrives.
        std::vector<T> grown;
        qint64 have = 0;
        while (have < count) {
            const qint64 piece = qMin(count - have, qMax(FirstReadPiece, have));
            grown.resize(size_t(have + piece));
            if (!readRaw(stream, reinterpret_cast<char *>(grown.data() + have), piece * qint64(sizeof(T))))
                return false;
            have += piece;
        }
        values.reset(new T[size_t(count)]);
        std::copy(grown.cbegin(), grown.cend(), values.get());
    }
    fromStreamOrder<T>(stream, values.get(), count, values.get());
    out = std::move(values);
    return true;
}

} // namespace

namespace KEZVisFlatArrays {

KEZMathBoundingBox BoundingBox(const double *coords, qint64 numPoints)
{
    if (numPoints <= 0 || !coords)
        return KEZMathBoundingBox();
    // The same as a box of the first point expanded by each further one, with
    // the comparisons of KEZMathBoundingBox::Expand, but without a call per
    // point: the corners are gathered first and the box built from them.
    double lower[3] = {coords[0], coords[1], coords[2]};
    double upper[3] = {coords[0], coords[1], coords[2]};
    for (qint64 i = 1; i < numPoints; ++i) {
        const double *p = coords + 3 * i;
        for (int k = 0; k < 3; ++k) {
            lower[k] = std::min(lower[k], p[k]);
            upper[k] = std::max(upper[k], p[k]);
        }
    }
    KEZMathBoundingBox box(KEZMathPoint(lower[0], lower[1], lower[2]));
    box.Expand(KEZMathPoint(upper[0], upper[1], upper[2]));
    return box;
}

void Narrow(const double *source, qint64 count, float *dest)
{
    for (qint64 i = 0; i < count; ++i)
        dest[i] = float(source[i]);
}

void AdviseHugePages(void *array, std::size_t bytes)
{
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    constexpr std::size_t kLarge = std::size_t(4) << 20;
    constexpr std::uintptr_t kPage = 4096;
    if (array == nullptr || bytes < kLarge)
        return;
    // The advice covers whole pages inside the array only, so that no memory next to it is touched.
    const auto begin = (reinterpret_cast<std::uintptr_t>(array) + kPage - 1) & ~(kPage - 1);
    const auto end = (reinterpret_cast<std::uintptr_t>(array) + bytes) & ~(kPage - 1);
    madvise(reinterpret_cast<void *>(begin), end - begin, MADV_HUGEPAGE);
#else
    Q_UNUSED(array);
    Q_UNUSED(bytes);
#endif
}

void WriteDoubles(QDataStream &stream, const double *values, qint64 count)
{
    if (!writesDoublesAsFloats(stream)) {
        writeValues<double>(stream, values, count);
        return;
    }
    std::vector<float> block(size_t(qMin(qMax(count, qint64(0)), WriteBlock)));
    for (qint64 done = 0; done < count;) {
        const qint64 n = qMin(count - done, WriteBlock);
        Narrow(values + done, n, block.data());
        writeValues<float>(stream, block.data(), n);
        done += n;
    }
}

void WriteInt32s(QDataStream &stream, const int *values, qint64 count)
{
    static_assert(sizeof(int) == sizeof(qint32), "indexes are written as qint32");
    writeValues<int>(stream, values, count);
}

bool ReadDoubles(QDataStream &stream, qint64 count, std::unique_ptr<double[]> &out)
{
    if (!writesDoublesAsFloats(stream))
        return readValues<double>(stream, count, out);
    out.reset();
    std::unique_ptr<float[]> floats;
    if (!readValues<float>(stream, count, floats))
        return false;
    if (count > 0) {
        out.reset(new double[size_t(count)]);
        std::copy(floats.get(), floats.get() + count, out.get());
    }
    return true;
}

bool ReadInt32s(QDataStream &stream, qint64 count, std::unique_ptr<int[]> &out)
{
    return readValues<int>(stream, count, out);
}

StreamStatusScope::StreamStatusScope(QDataStream &stream)
    : m_stream(stream)
    , m_previous(stream.status())
{
    if (!m_stream.isDeviceTransactionStarted())
        m_stream.resetStatus();
}

StreamStatusScope::~StreamStatusScope()
{
    if (m_previous != QDataStream::Ok) {
        m_stream.resetStatus();
        m_stream.setStatus(m_previous);
    }
}

} // namespace KEZVisFlatArrays
