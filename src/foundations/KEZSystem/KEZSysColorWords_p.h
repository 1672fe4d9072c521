#ifndef KEZSYSCOLORWORDS_P_H
#define KEZSYSCOLORWORDS_P_H

// Internal: the raw content of a QColor, the words that its documented
// QDataStream form carries. Not installed.

#include <QColor>
#include <QtGlobal>

#include <initializer_list>

namespace KEZSysColorWords {

/*!
    The colour model of a colour as QColor numbers it: QColor::Invalid, Rgb,
    Hsv, Cmyk, Hsl or ExtendedRgb; no allocation.

    Converting a colour to its own model gives the colour itself, and colours
    of different models compare unequal, except that RGB and extended RGB
    colours compare by value. Those two differ in storage: a red of one half
    is exact in the half floats of an extended colour and is rounded to a
    16-bit step in an RGB colour.
*/
inline int ModelOf(const QColor &color)
{
    if (!color.isValid())
        return QColor::Invalid;
    for (const auto model : {QColor::Hsv, QColor::Hsl, QColor::Cmyk}) {
        if (color.convertTo(model) == color)
            return model;
    }
    QColor probe = color;
    probe.setRedF(0.5f);
    return probe.redF() == 0.5f ? QColor::ExtendedRgb : QColor::Rgb;
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
