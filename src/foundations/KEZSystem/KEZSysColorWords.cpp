#include "KEZSysColorWords_p.h"

#include <QByteArray>
#include <QDataStream>
#include <QFloat16>
#include <QIODevice>

#include <cstring>

namespace KEZSysColorWords {

namespace {

// A unit component as QColor keeps it: the word w shows as w / 65535 in float,
// and rounding the product back gives w exactly (the float's error is far
// below half a step).
quint16 unitWord(float value)
{
    return quint16(qRound(double(value) * 65535.0));
}

// A hue as QColor keeps it: hundredths of a degree, shown as a fraction of a
// full turn, or -1 for an achromatic colour, kept as 0xffff.
quint16 hueWord(float value)
{
    return value < 0.0f ? quint16(0xffff) : quint16(qRound(double(value) * 36000.0));
}

// A component of an extended colour: the half-precision float itself. Widening
// a half to float and narrowing it back is exact.
quint16 halfWord(float value)
{
    const qfloat16 half{value};
    quint16 bits = 0;
    std::memcpy(&bits, static_cast<const void *>(&half), sizeof bits);
    return bits;
}

} // namespace

Words FromColor(const QColor &color)
{
    // Read through the accessors, which cost no allocation; the padding word,
    // which no accessor shows, is 0 in every colour that QColor's API makes.
    Words words;
    const int model = ModelOf(color);
    words.colorModel = qint8(model);
    switch (model) {
    case QColor::Invalid:
    case QColor::Rgb: {
        const QRgba64 rgba = color.rgba64();
        words.word[0] = rgba.alpha();
        words.word[1] = rgba.red();
        words.word[2] = rgba.green();
        words.word[3] = rgba.blue();
        break;
    }
    case QColor::Hsv:
        words.word[0] = unitWord(color.alphaF());
        words.word[1] = hueWord(color.hsvHueF());
        words.word[2] = unitWord(color.hsvSaturationF());
        words.word[3] = unitWord(color.valueF());
        break;
    case QColor::Hsl:
        words.word[0] = unitWord(color.alphaF());
        words.word[1] = hueWord(color.hslHueF());
        words.word[2] = unitWord(color.hslSaturationF());
        words.word[3] = unitWord(color.lightnessF());
        break;
    case QColor::Cmyk:
        words.word[0] = unitWord(color.alphaF());
        words.word[1] = unitWord(color.cyanF());
        words.word[2] = unitWord(color.magentaF());
        words.word[3] = unitWord(color.yellowF());
        words.word[4] = unitWord(color.blackF());
        break;
    case QColor::ExtendedRgb:
        words.word[0] = halfWord(color.alphaF());
        words.word[1] = halfWord(color.redF());
        words.word[2] = halfWord(color.greenF());
        words.word[3] = halfWord(color.blueF());
        break;
    }
    return words;
}

QColor ToColor(const Words &words)
{
    // QColor's stream form (a qint8 colour model, then the five quint16 words) is the
    // one public way to set the words exactly, whatever the colour model; a fixed
    // stream version keeps it independent of the Qt release at hand.
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out.setVersion(QDataStream::Qt_6_0);
        out << words.colorModel;
        for (quint16 word : words.word)
            out << word;
    }
    QColor color;
    QDataStream in(bytes);
    in.setVersion(QDataStream::Qt_6_0);
    in >> color;
    return color;
}

} // namespace KEZSysColorWords
