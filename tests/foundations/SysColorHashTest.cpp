// Tests of qHash(const QColor &).

#include <KEZSysColorHash.h>

#include "KEZSysColorWords_p.h"

#include <QByteArray>
#include <QColor>
#include <QDataStream>
#include <QIODevice>
#include <QRandomGenerator>
#include <QSet>

#include <gtest/gtest.h>

#include <cstdint>

namespace {

// The documented mixing, written out here once more.
std::uint64_t referenceMix(std::uint64_t key, std::uint64_t seed)
{
    key ^= seed;
    key ^= key >> 32;
    key *= 0xd6e8feb86659fd93ULL;
    key ^= key >> 32;
    key *= 0xd6e8feb86659fd93ULL;
    key ^= key >> 32;
    return key;
}

// The documented hash, computed from the words that QColor's own stream form shows.
size_t referenceHash(const QColor &color)
{
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out.setVersion(QDataStream::Qt_6_0);
        out << color;
    }
    QDataStream in(bytes);
    in.setVersion(QDataStream::Qt_6_0);
    qint8 colorModel = 0;
    quint16 w[5] = {};
    in >> colorModel >> w[0] >> w[1] >> w[2] >> w[3] >> w[4];
    if (colorModel == QColor::Hsv)
        w[1] = quint16(w[1] % 36000);
    if (colorModel == QColor::ExtendedRgb) {
        for (quint16 &word : w)
            word = word == 0x8000 ? 0 : word;
    }
    const std::uint64_t k1 = (std::uint64_t(quint8(colorModel)) << 32) | (std::uint64_t(w[0]) << 16) | w[1];
    const std::uint64_t k2 = (std::uint64_t(w[2]) << 32) | (std::uint64_t(w[3]) << 16) | w[4];
    return size_t(referenceMix(k2, referenceMix(k1, 0)));
}

} // namespace

TEST(SysColorHash, MatchesTheWordsOfTheStreamFormForManyColours)
{
    QList<QColor> colors = {QColor(), QColor::fromHsv(-1, 0, 9), QColor::fromHsl(-1, 0, 9),
                            QColor::fromRgba64(65535, 0, 1).toHsv(), QColor::fromRgba64(65535, 0, 1).toHsl(),
                            QColor::fromRgbF(1.5f, -0.25f, 0.5f, 0.75f), QColor::fromRgbF(1e6f, 0, 0, 1)};
    QRandomGenerator random(77);
    for (int i = 0; i < 300; ++i) {
        const QColor rgb = QColor::fromRgba64(ushort(random.bounded(65536)), ushort(random.bounded(65536)),
                                              ushort(random.bounded(65536)), ushort(random.bounded(65536)));
        colors << rgb << rgb.toHsv() << rgb.toHsl() << rgb.toCmyk() << rgb.toExtendedRgb();
    }
    for (const QColor &color : colors)
        EXPECT_EQ(qHash(color), referenceHash(color)) << color.name(QColor::HexArgb).toStdString();
}

// The model read without allocation is the one that QColor's stream form
// names in its first byte, for every model, including the colours whose red
// is one half already and the RGB colour whose red word is closest to a half.
TEST(SysColorHash, ModelOfAColourIsTheOneItsStreamFormNames)
{
    const QColor halfRed = QColor::fromRgba64(32768, 0, 0);
    QList<QColor> colors = {QColor(), halfRed, QColor::fromRgbF(0.5f, 0.5f, 0.5f).toExtendedRgb(),
                            QColor::fromRgbF(0.5f, 2.0f, -1.0f), QColor::fromRgbF(0.0f, 0.0f, 0.0f, 0.0f),
                            QColor::fromHsv(-1, 0, 0), QColor::fromHsl(-1, 0, 255), QColor::fromCmykF(1, 1, 1, 1, 1)};
    for (const QColor &base : {halfRed, QColor(Qt::white), QColor(Qt::transparent)})
        colors << base.toHsv() << base.toHsl() << base.toCmyk() << base.toExtendedRgb();
    QRandomGenerator random(78);
    for (int i = 0; i < 300; ++i) {
        const QColor rgb = QColor::fromRgba64(ushort(random.bounded(65536)), ushort(random.bounded(65536)),
                                              ushort(random.bounded(65536)), ushort(random.bounded(65536)));
        colors << rgb << rgb.toHsv() << rgb.toHsl() << rgb.toCmyk() << rgb.toExtendedRgb();
    }
    QList<int> seen;
    for (const QColor &color : colors) {
        QByteArray bytes;
        {
            QDataStream out(&bytes, QIODevice::WriteOnly);
            out.setVersion(QDataStream::Qt_6_0);
            out << color;
        }
        const int streamed = int(qint8(bytes.at(0)));
        EXPECT_EQ(KEZSysColorWords::ModelOf(color), streamed) << color.name(QColor::HexArgb).toStdString();
        if (!seen.contains(streamed))
            seen << streamed;
    }
    // Every model took part.
    EXPECT_EQ(seen.size(), 6);
}

TEST(SysColorHash, IsSixtyFourBitsWide)
{
    EXPECT_EQ(sizeof(qHash(QColor())), 8u);
}

TEST(SysColorHash, HashesModelAndWordsOfAnOpaqueRed)
{
    // QColor(255, 0, 0): model Rgb (1); words alpha 0xffff, red 0xffff, green 0, blue 0, pad 0.
    const std::uint64_t k1 = (std::uint64_t(1) << 32) | (std::uint64_t(0xffff) << 16) | 0xffff;
    const std::uint64_t k2 = 0;
    EXPECT_EQ(qHash(QColor(255, 0, 0)), size_t(referenceMix(k2, referenceMix(k1, 0))));
}

TEST(SysColorHash, HashesTheInvalidColour)
{
    // QColor(): model Invalid (0); words alpha 0xffff and zeros.
    const std::uint64_t k1 = std::uint64_t(0xffff) << 16;
    EXPECT_EQ(qHash(QColor()), size_t(referenceMix(0, referenceMix(k1, 0))));
}

TEST(SysColorHash, HashesACmykColourWithItsBlackWord)
{
    // fromCmyk(1, 2, 3, 4, 5): model Cmyk (3); words 5*257, 1*257, 2*257, 3*257, 4*257.
    const std::uint64_t k1 = (std::uint64_t(3) << 32) | (std::uint64_t(1285) << 16) | 257;
    const std::uint64_t k2 = (std::uint64_t(514) << 32) | (std::uint64_t(771) << 16) | 1028;
    EXPECT_EQ(qHash(QColor::fromCmyk(1, 2, 3, 4, 5)), size_t(referenceMix(k2, referenceMix(k1, 0))));
}

TEST(SysColorHash, UsesTheSeed)
{
    const std::uint64_t k1 = (std::uint64_t(1) << 32) | (std::uint64_t(0xffff) << 16) | 0xffff;
    EXPECT_EQ(qHash(QColor(255, 0, 0), 1234), size_t(referenceMix(0, referenceMix(k1, 1234))));
    EXPECT_NE(qHash(QColor(255, 0, 0), 1234), qHash(QColor(255, 0, 0)));
}

TEST(SysColorHash, EqualColoursHashAlike)
{
    const QColor a(10, 20, 30, 40);
    const QColor b = QColor::fromRgba64(10 * 257, 20 * 257, 30 * 257, 40 * 257);
    ASSERT_TRUE(a == b);
    EXPECT_EQ(qHash(a), qHash(b));
}

TEST(SysColorHash, HsvHuesOfZeroAndAFullTurnHashAlike)
{
    // Pure red with a blue word of 1 has a hue just short of 360 degrees, which
    // QColor rounds to the word 36000: a full turn, equal to the hue 0.
    const QColor fullTurn = QColor::fromRgba64(65535, 0, 1).toHsv();
    ASSERT_EQ(fullTurn.hsvHueF(), 1.0f);
    const QColor zero = QColor::fromHsvF(0.0f, fullTurn.hsvSaturationF(), fullTurn.valueF(), fullTurn.alphaF());
    ASSERT_EQ(zero.hsvHueF(), 0.0f);
    ASSERT_TRUE(zero == fullTurn);
    EXPECT_EQ(qHash(zero), qHash(fullTurn));
}

TEST(SysColorHash, ExtendedNegativeZeroHashesAsZero)
{
    const QColor positive = QColor::fromRgbF(2.0f, 0.0f, 0.0f, 1.0f);
    const QColor negative = QColor::fromRgbF(2.0f, -0.0f, 0.0f, 1.0f);
    ASSERT_EQ(KEZSysColorWords::ModelOf(positive), QColor::ExtendedRgb);
    ASSERT_TRUE(positive == negative);
    EXPECT_EQ(qHash(positive), qHash(negative));
}

TEST(SysColorHash, DifferentColoursHashDifferently)
{
    const QList<QColor> colors = {QColor(), QColor(0, 0, 0), QColor(255, 0, 0), QColor(0, 255, 0),
                                  QColor(0, 0, 255), QColor(0, 0, 0, 0), QColor::fromHsv(0, 0, 0),
                                  QColor::fromCmyk(0, 0, 0, 0), QColor::fromHsl(0, 0, 0)};
    QSet<size_t> hashes;
    for (const QColor &color : colors)
        hashes.insert(qHash(color));
    EXPECT_EQ(hashes.size(), colors.size());
}

TEST(SysColorHash, LetsColoursKeyAQSet)
{
    QSet<QColor> set;
    set.insert(QColor(1, 2, 3));
    set.insert(QColor(1, 2, 3));
    set.insert(QColor(3, 2, 1));
    EXPECT_EQ(set.size(), 2);
    EXPECT_TRUE(set.contains(QColor(3, 2, 1)));
}
