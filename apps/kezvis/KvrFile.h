#ifndef KEZVIS_KVRFILE_H
#define KEZVIS_KVRFILE_H

// The .kvr file: a short header of our own, then records of reps.
//
//   8 bytes   magic: 0x89 'K' 'V' 'R' '\r' '\n' 0x1A '\n'
//   quint32   format version, 1
//   quint32   number of records
//   records   each: a quint8 kind, then its data
//
// Everything after the magic is written with QDataStream, big-endian, in the
// stream version Qt_6_4. Kinds:
//
//   1  a KEZVisRepGraphics in the library's rep stream form (KEZVisRepGraphics::Save):
//      polylines and surfaces. It is read back as Save() writes it, with the
//      polyline's point count as a qint64: the library's own Load() reads
//      that count as a qint32, on purpose, and cannot read a polyline back.
//   2  a rep of one KEZVisPointPrimitive: its KEZVisOptions, a qint32 point count,
//      then x, y, z of each point as doubles
//   3  a rep of one KEZVisTextPrimitive: its KEZVisOptions, the text (QString), x, y, z
//      of the anchor as doubles, the anchor location and the scalability as qint32
//
// The library's rep stream carries polylines and surfaces only, so points and
// text travel in records of their own. Sets have no stream form: a file holds
// the primitives of the reps written, in the order GetPrimitives() gives them,
// so that the reps read back paint exactly as the reps written (by priority,
// flat). Consecutive polylines and surfaces of one rep share one record.

#include <KEZVisRep.h>

#include <QList>
#include <QString>

#include <memory>
#include <vector>

class QIODevice;

namespace Kvr {

// The reps read from a file, owned; or the reason why none were.
struct ReadResult
{
    std::vector<std::unique_ptr<KEZVisRep>> reps;
    QString error; // empty on success
    QList<const KEZVisRep *> List() const;
};

// Writes \a reps to \a device; false with \a error set when the device
// refuses the bytes.
bool Write(QIODevice &device, const QList<const KEZVisRep *> &reps, QString *error);

// Reads a whole file from \a device. A wrong magic, an unknown version or
// kind, a count that the bytes cannot hold, or data that ends early or does
// not parse give an error and no reps. Memory stays bounded by the size of
// the device: counts are checked against the bytes left before anything is
// allocated. A sequential device (a pipe, a socket) tells nothing of the
// bytes left; there the points of a record grow with the bytes that actually
// arrive, whatever count the record announces. Such a device must hold the
// whole file when the read begins: a part that is still to come reads as the
// end of the file.
ReadResult Read(QIODevice &device);

} // namespace Kvr

#endif // KEZVIS_KVRFILE_H
