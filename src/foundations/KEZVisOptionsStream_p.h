#ifndef KEZVISOPTIONSSTREAM_P_H
#define KEZVISOPTIONSSTREAM_P_H

// Checked readers of the colour and the font inside the stream form of
// KEZVisOptions. Never installed.
//
// Qt's own readers trust what they read. The colour reader stores whatever
// byte it finds as the colour's model, and code that later asks the colour
// anything (isValid(), a conversion, a hash) then works on an enumeration
// value that does not exist. From stream version Qt_5_13 on a font ends with
// a list of families whose reader reserves room for as many strings as its
// count announces before it reads any of them, so a few bytes can ask for
// gigabytes; and sizes and weights go into the font unchecked, NaN and zero
// included. These readers walk the fields themselves, check each value, read
// lists item by item so that memory grows only with the data that really
// arrives, and write what they read into a buffer of the same stream settings.
// Only that buffer, whose counts agree with its contents, goes to Qt's reader.
//
// Both judge their value on its own bytes, as Qt's container readers do: the
// status is reset on entry unless a device transaction is running, and a
// failure that the stream had before is set again on exit. On failure the
// target is left as it was and the stream's status says why:
// QDataStream::ReadPastEnd when the data ended (also when a count announced
// more than followed), QDataStream::ReadCorruptData for a value that the type
// cannot hold. Each answers whether its value was read.

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QColor;
class QDataStream;
class QFont;
QT_END_NAMESPACE

namespace KEZVisOptionsStream {

// Reads one colour as `stream >> color` would. Corrupt: a colour model that
// QColor does not know, a hue above 36000 (other than the 65535 of an
// achromatic colour) for the HSV and HSL models. Streams of versions before Qt_4_0 hold a
// plain RGBA word, which is any colour.
bool ReadColor(QDataStream &stream, QColor &color);

// Reads one font as `stream >> font` would. Corrupt: a point size that is
// neither -1 nor a positive finite number, a pixel size that is neither -1
// nor positive, a weight outside 1 to 1000, a stretch above 4000, a string of
// an odd number of bytes, an empty list of families from version Qt_6_0 on
// (where the list is all the families the font has).
bool ReadFont(QDataStream &stream, QFont &font);

} // namespace KEZVisOptionsStream

#endif // KEZVISOPTIONSSTREAM_P_H
