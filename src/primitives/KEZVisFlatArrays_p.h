#ifndef KEZVISFLATARRAYS_P_H
#define KEZVISFLATARRAYS_P_H

// Helpers for the flat coordinate arrays of the primitives: boxes, narrowing,
// and bulk reading and writing on a QDataStream. Never installed.
//
// The stream helpers write and read exactly the bytes that QDataStream's own
// operators for qint32 and double would, value after value, honouring the
// stream's byte order and floating-point precision, but convert whole blocks
// at a time instead of calling the device once per value.

#include "KEZMathBoundingBox.h"

#include <QDataStream>
#include <QtGlobal>

#include <cstddef>
#include <memory>

namespace KEZVisFlatArrays {

// The box of numPoints points given as x, y, z one after the other: the box of
// the first point, expanded by each further one. The default box when there
// are none.
KEZMathBoundingBox BoundingBox(const double *coords, qint64 numPoints);

// dest[i] = float(source[i]) for count values.
void Narrow(const double *source, qint64 count, float *dest);

// Asks the kernel to back the whole 2 MiB pages inside a fresh array of 4 MiB
// or more with huge pages, where it gives them on request. Meshes of a million
// triangles write tens of megabytes of new arrays, and with small pages a page
// fault for every 4 KiB costs more than the writing. Only a hint: nothing else
// changes, and smaller arrays or other systems are left as they are.
void AdviseHugePages(void *array, std::size_t bytes);

// Writes count values as `stream << double(v)` would, one after the other.
void WriteDoubles(QDataStream &stream, const double *values, qint64 count);

// Writes count values as `stream << qint32(v)` would, one after the other.
void WriteInt32s(QDataStream &stream, const int *values, qint64 count);

// Reads count values as `stream >> double` would, into a new array in out (null
// for a count of 0). Memory grows with the bytes the stream delivers: a count
// that the device cannot satisfy is found out by reading, in pieces of bounded
// size, never by allocating for the count up front. Answers false when the
// stream ran short (the stream then says QDataStream::ReadPastEnd) or cannot
// be read; out is then left empty.
bool ReadDoubles(QDataStream &stream, qint64 count, std::unique_ptr<double[]> &out);

// As ReadDoubles, for values written as qint32.
bool ReadInt32s(QDataStream &stream, qint64 count, std::unique_ptr<int[]> &out);

// Judges one reading on its own, the way Qt's container readers do: the status
// is reset on entry unless a device transaction is running, and a failure that
// the stream had before is set again on exit.
class StreamStatusScope
{
public:
    explicit StreamStatusScope(QDataStream &stream);
    ~StreamStatusScope();

private:
    Q_DISABLE_COPY(StreamStatusScope)

    QDataStream &m_stream;
    QDataStream::Status m_previous;
};

} // namespace KEZVisFlatArrays

#endif // KEZVISFLATARRAYS_P_H
