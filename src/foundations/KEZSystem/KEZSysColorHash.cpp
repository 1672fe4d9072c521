#include "KEZSysColorHash.h"

#include "KEZSysColorWords_p.h"

namespace {

// Qt's 64-bit integer mixing, written out so that the hash is fixed by this
// library and not by a Qt release.
constexpr quint64 mix(quint64 key, quint64 seed) noexcept
{
    key ^= seed;
    key ^= key >> 32;
    key *= 0xd6e8feb86659fd93ULL;
    key ^= key >> 32;
    key *= 0xd6e8feb86659fd93ULL;
    key ^= key >> 32;
    return key;
}

} // namespace

size_t qHash(const QColor &color, size_t seed) noexcept
{
    KEZSysColorWords::Words words = KEZSysColorWords::FromColor(color);
    if (words.colorModel == QColor::Hsv)
        words.word[1] = quint16(words.word[1] % 36000);   // hues compare modulo a full turn
    if (words.colorModel == QColor::ExtendedRgb) {
        for (quint16 &word : words.word) {
            if (word == 0x8000)
                word = 0;                                   // -0.0 equals +0.0
        }
    }
    const quint64 k1 = (quint64(quint8(words.colorModel)) << 32) | (quint64(words.word[0]) << 16)
                       | quint64(words.word[1]);
    const quint64 k2 = (quint64(words.word[2]) << 32) | (quint64(words.word[3]) << 16)
                       | quint64(words.word[4]);
    return size_t(mix(k2, mix(k1, seed)));
}
