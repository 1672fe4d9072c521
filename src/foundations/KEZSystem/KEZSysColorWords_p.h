#ifndef KEZSYSCOLORWORDS_P_H
#define KEZSYSCOLORWORDS_P_H

// Internal: the raw content of a QColor, the words that its documented
// QDataStream form carries. Not installed.

#include <QColor>
#include <QtGlobal>

namespace KEZSysColorWords {

//! The colour model of a colour as QColor numbers it: QColor::Invalid, Rgb, Hsv,
//! Cmyk, Hsl or ExtendedRgb. The one place that asks QColor for it.
inline int ModelOf(const QColor &color)
{
    return int(color.spec());
}

//! A colour's model and its five 16-bit words: alpha, three components, black or padding.
struct Words
{
    qint8 colorModel = 0;
    quint16 word[5] = {0, 0, 0, 0, 0};
};

//! The words of a colour, exactly as QColor holds them; no allocation.
Words FromColor(const QColor &color);

//! The colour that holds exactly these words.
QColor ToColor(const Words &words);

} // namespace KEZSysColorWords

#endif // KEZSYSCOLORWORDS_P_H
