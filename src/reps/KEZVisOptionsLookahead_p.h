#ifndef KEZVISOPTIONSLOOKAHEAD_P_H
#define KEZVISOPTIONSLOOKAHEAD_P_H

// A look ahead at the stream form of one KEZVisOptions entry, before it is
// read. Never installed.
//
// The entry holds a QFont, and from stream version Qt_5_13 on Qt's QFont
// reader ends with a QStringList of families whose reader reserves room for
// as many strings as the count announces before it reads any of them. A
// corrupt count would thus allocate gigabytes for a few bytes of data. The
// look ahead finds that count without consuming anything and compares it with
// the bytes that the device actually holds.

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QDataStream;
QT_END_NAMESPACE

namespace KEZVisOptionsLookahead {

// False when the next options entry announces more font families than the
// rest of the device could hold (each takes at least 4 bytes). True when the
// count fits, when the stream version has no such list, or when the device
// ends before the count: the reader then stops at the end on its own, before
// it reaches the list.
bool FontFamiliesFit(QDataStream &stream);

} // namespace KEZVisOptionsLookahead

#endif // KEZVISOPTIONSLOOKAHEAD_P_H
