#ifndef KEZVISFONTSTREAM_P_H
#define KEZVISFONTSTREAM_P_H

// A checked reader of a QFont's stream form. Never installed.
//
// Qt's own font reader trusts what it reads: from stream version Qt_5_13 on a
// font ends with a list of families whose reader reserves room for as many
// strings as its count announces before it reads any of them, so a few bytes
// can ask for gigabytes; and sizes and weights go into the font unchecked, NaN
// and zero included. This reader walks the font's stream form field by field
// itself, checks each value, reads the families one by one so that memory
// grows only with the data that really arrives, and writes what it read into a
// buffer of the same stream settings. Only that buffer, whose counts agree with
// its contents, goes to Qt's reader.

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QDataStream;
class QFont;
QT_END_NAMESPACE

namespace KEZVisFontStream {

// Reads one font as `stream >> font` would, with the stream's version, byte
// order and floating-point precision. On success font holds what Qt's reader
// makes of the bytes. On failure font is left as it was and the stream's status
// says why: QDataStream::ReadPastEnd when the data ended (also when a count
// announced more than followed), QDataStream::ReadCorruptData for a value that
// no font can hold: a point size that is neither -1 nor a positive finite
// number, a pixel size that is neither -1 nor positive, a weight outside 1 to
// 1000, a stretch above 4000, a string of an odd number of bytes. A failure
// that the stream had before the call is kept; the font is judged on its own
// bytes all the same, as Qt's container readers do. Answers whether the font
// was read.
bool Read(QDataStream &stream, QFont &font);

} // namespace KEZVisFontStream

#endif // KEZVISFONTSTREAM_P_H
