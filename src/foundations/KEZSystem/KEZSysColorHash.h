#ifndef KEZSYSCOLORHASH_H
#define KEZSYSCOLORHASH_H

#include "kezsystem_export.h"

#include <QColor>

#include <cstddef>

/*!
    64-bit hash of a colour, so that QColor can key a QHash or QSet and take part
    in the hashes of values that hold a colour.

    What it hashes: the colour's model s and the five 16-bit words w0..w4 that hold
    the colour, in the order of QColor's QDataStream form (alpha, the three
    components, then the black of a CMYK colour or else the padding word, which
    enters as 0). The words are read without allocating. Two keys are packed
    from them,

        k1 = (s << 32) | (w0 << 16) | w1
        k2 = (w2 << 32) | (w3 << 16) | w4

    and the result is mix(k2, mix(k1, seed)), where mix(k, seed) is the 64-bit
    integer mixing that Qt uses for its integer qHash:

        k ^= seed; k ^= k >> 32; k *= 0xd6e8feb86659fd93;
        k ^= k >> 32; k *= 0xd6e8feb86659fd93; k ^= k >> 32

    Equal colours hash alike: because QColor::operator== compares HSV hues modulo
    36000 (hundredths of a degree), an HSV hue word enters as w1 % 36000, and a
    negative zero component of an extended RGB colour enters as positive zero.
    One limit remains: QColor::operator== compares an extended RGB colour with an
    RGB or extended RGB colour within a relative tolerance, which no hash can
    follow; such colours hash alike only when their words are the same.
*/
KEZSYSTEM_EXPORT size_t qHash(const QColor &color, size_t seed = 0) noexcept;

#endif // KEZSYSCOLORHASH_H
