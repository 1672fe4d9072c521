// Tests of the JSON form of colours in KEZSysJsonConverters.

#include <KEZSysJsonConverters.h>

#include "KEZSysColorWords_p.h"

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace {

// The exact content of a colour, as its stream form shows it: the oracle for
// "the colour came back exactly".
QByteArray rawBytes(const QColor &color)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_0);
    out << color;
    return bytes;
}

QColor roundTrip(const QColor &color)
{
    QColor result(Qt::magenta);
    EXPECT_TRUE(KEZSysJsonConverters::Convert(KEZSysJsonConverters::Convert(color), result));
    return result;
}

QColor roundTripThroughText(const QColor &color)
{
    QJsonObject holder;
    holder.insert(QStringLiteral("c"), KEZSysJsonConverters::Convert(color));
    const QByteArray text = QJsonDocument(holder).toJson(QJsonDocument::Compact);
    const QJsonObject read = QJsonDocument::fromJson(text).object();
    QColor result(Qt::magenta);
    EXPECT_TRUE(KEZSysJsonConverters::Convert(read.value(QStringLiteral("c")), result));
    return result;
}

// A colour of every colour model and every kind: plain, random 16-bit, converted (which
// makes hues of 360 degrees and achromatic hues), and extended.
QList<QColor> manyColors()
{
    QList<QColor> colors = {
        QColor(),
        QColor(255, 0, 0),
        QColor(0, 0, 0, 0),
        QColor(12, 34, 56, 78),
        QColor(Qt::white),
        QColor(Qt::transparent),
        QColor::fromHsv(120, 255, 128),
        QColor::fromHsv(-1, 0, 200, 100),
        QColor::fromHsl(359, 10, 20, 30),
        QColor::fromHsl(-1, 0, 0),
        QColor::fromCmyk(1, 2, 3, 4, 5),
        QColor::fromCmykF(0.25f, 0.5f, 0.75f, 1.0f, 0.125f),
        QColor::fromRgbF(1.5f, -0.25f, 0.5f, 0.75f),
        QColor::fromRgbF(-100.0f, 1000.0f, 0.0f, 1.0f),
        QColor::fromRgba64(65535, 0, 1).toHsv(),
        QColor::fromRgba64(65535, 0, 1).toHsl(),
        QColor::fromRgba64(65535, 0, 1).toCmyk(),
        QColor::fromRgba64(1, 2, 3, 4).toExtendedRgb(),
    };
    QRandomGenerator random(20240607);
    for (int i = 0; i < 200; ++i) {
        const QColor rgb = QColor::fromRgba64(ushort(random.bounded(65536)), ushort(random.bounded(65536)),
                                              ushort(random.bounded(65536)), ushort(random.bounded(65536)));
        colors << rgb << rgb.toHsv() << rgb.toHsl() << rgb.toCmyk() << rgb.toExtendedRgb();
    }
    return colors;
}

} // namespace

TEST(SysJsonConverters, WritesAnRgbColourAsModelAndUnitComponents)
{
    const QJsonObject expected{{"model", "rgb"}, {"r", 1.0}, {"g", 0.0}, {"b", 0.0}, {"a", 1.0}};
    EXPECT_EQ(KEZSysJsonConverters::Convert(QColor(255, 0, 0)), QJsonValue(expected));
}

TEST(SysJsonConverters, WritesEightBitComponentsAsTheirSixteenBitFraction)
{
    // QColor keeps 8-bit 128 as the word 128 * 257 = 32896.
    const QJsonObject expected{{"model", "rgb"}, {"r", 32896 / 65535.0}, {"g", 0.0},
                               {"b", 65535 / 65535.0}, {"a", 0.0}};
    EXPECT_EQ(KEZSysJsonConverters::Convert(QColor(128, 0, 255, 0)), QJsonValue(expected));
}

TEST(SysJsonConverters, WritesTheInvalidColourAsItsModelAlone)
{
    const QJsonObject expected{{"model", "invalid"}};
    EXPECT_EQ(KEZSysJsonConverters::Convert(QColor()), QJsonValue(expected));
}

TEST(SysJsonConverters, WritesAnHsvColourWithItsHueInDegrees)
{
    const QJsonObject expected{{"model", "hsv"}, {"h", 120.0}, {"s", 1.0}, {"v", 32896 / 65535.0}, {"a", 1.0}};
    EXPECT_EQ(KEZSysJsonConverters::Convert(QColor::fromHsv(120, 255, 128)), QJsonValue(expected));
}

TEST(SysJsonConverters, WritesAnAchromaticHueAsMinusOne)
{
    const QJsonObject object = KEZSysJsonConverters::Convert(QColor::fromHsl(-1, 0, 0)).toObject();
    EXPECT_EQ(object.value("model"), QJsonValue("hsl"));
    EXPECT_EQ(object.value("h"), QJsonValue(-1.0));
    EXPECT_EQ(object.value("l"), QJsonValue(0.0));
}

TEST(SysJsonConverters, WritesACmykColourWithItsFiveComponents)
{
    const QJsonObject expected{{"model", "cmyk"}, {"c", 257 / 65535.0}, {"m", 514 / 65535.0},
                               {"y", 771 / 65535.0}, {"k", 1028 / 65535.0}, {"a", 1285 / 65535.0}};
    EXPECT_EQ(KEZSysJsonConverters::Convert(QColor::fromCmyk(1, 2, 3, 4, 5)), QJsonValue(expected));
}

TEST(SysJsonConverters, WritesExtendedComponentsAsTheNumbersTheyAre)
{
    // 1.5, -0.25, 0.5 and 0.75 are exact half-precision values.
    const QJsonObject expected{{"model", "extendedRgb"}, {"r", 1.5}, {"g", -0.25}, {"b", 0.5}, {"a", 0.75}};
    EXPECT_EQ(KEZSysJsonConverters::Convert(QColor::fromRgbF(1.5f, -0.25f, 0.5f, 0.75f)), QJsonValue(expected));
}

TEST(SysJsonConverters, ReadsAHandWrittenRgbObject)
{
    QColor color;
    const QJsonObject object{{"model", "rgb"}, {"r", 1}, {"g", 0.5}, {"b", 0}, {"a", 1}};
    ASSERT_TRUE(KEZSysJsonConverters::Convert(object, color));
    EXPECT_EQ(KEZSysColorWords::ModelOf(color), QColor::Rgb);
    // 0.5 * 65535 = 32767.5 rounds to 32768.
    EXPECT_EQ(color.rgba64(), QRgba64::fromRgba64(65535, 32768, 0, 65535));
}

TEST(SysJsonConverters, RoundTripsEveryKindOfColourExactly)
{
    for (const QColor &color : manyColors()) {
        const QColor back = roundTrip(color);
        EXPECT_EQ(KEZSysColorWords::ModelOf(back), KEZSysColorWords::ModelOf(color)) << color.name(QColor::HexArgb).toStdString();
        EXPECT_TRUE(back == color) << color.name(QColor::HexArgb).toStdString();
        EXPECT_EQ(rawBytes(back), rawBytes(color)) << color.name(QColor::HexArgb).toStdString();
    }
}

TEST(SysJsonConverters, RoundTripsEveryKindOfColourThroughJsonText)
{
    for (const QColor &color : manyColors()) {
        const QColor back = roundTripThroughText(color);
        EXPECT_EQ(rawBytes(back), rawBytes(color)) << color.name(QColor::HexArgb).toStdString();
    }
}

TEST(SysJsonConverters, RoundTripsTheInvalidColour)
{
    const QColor back = roundTrip(QColor());
    EXPECT_FALSE(back.isValid());
    EXPECT_TRUE(back == QColor());
}

TEST(SysJsonConverters, InfiniteExtendedComponentsSurviveInTheJsonValue)
{
    // 1e6 lies beyond the largest half-precision value, so QColor keeps infinity.
    const QColor color = QColor::fromRgbF(1e6f, -1e6f, 0.5f, 1.0f);
    ASSERT_EQ(KEZSysColorWords::ModelOf(color), QColor::ExtendedRgb);
    EXPECT_EQ(rawBytes(roundTrip(color)), rawBytes(color));
}

TEST(SysJsonConverters, ReadsAnArrayOfThreeIntegersAsAnOpaqueColour)
{
    QColor color;
    ASSERT_TRUE(KEZSysJsonConverters::Convert(QJsonArray{10, 20, 30}, color));
    EXPECT_TRUE(color == QColor(10, 20, 30, 255));
}

TEST(SysJsonConverters, ReadsAnArrayOfFourIntegersWithAlpha)
{
    QColor color;
    ASSERT_TRUE(KEZSysJsonConverters::Convert(QJsonArray{10, 20, 30, 40}, color));
    EXPECT_TRUE(color == QColor(10, 20, 30, 40));
}

TEST(SysJsonConverters, AnswersFalseForValuesThatAreNoColour)
{
    const QList<QJsonValue> notColours = {
        QJsonValue(),
        QJsonValue(42),
        QJsonValue(0.5),
        QJsonValue(true),
        QJsonValue("red"),
        QJsonValue(QJsonValue::Undefined),
        QJsonArray{},
        QJsonArray{1},
        QJsonArray{1, 2},
        QJsonArray{1, 2, 3, 4, 5},
        QJsonArray{1, 2, 256},
        QJsonArray{1, 2, -1},
        QJsonArray{1, 2, 3.5},
        QJsonArray{1, 2, "3"},
        QJsonObject{},
        QJsonObject{{"r", 1}, {"g", 0}, {"b", 0}, {"a", 1}},
        QJsonObject{{"model", "lab"}, {"r", 1}, {"g", 0}, {"b", 0}, {"a", 1}},
        QJsonObject{{"model", 1}, {"r", 1}, {"g", 0}, {"b", 0}, {"a", 1}},
        QJsonObject{{"model", "rgb"}, {"r", 1}, {"g", 0}, {"b", 0}},
        QJsonObject{{"model", "rgb"}, {"r", 1}, {"g", 0}, {"a", 1}},
        QJsonObject{{"model", "rgb"}, {"r", "1"}, {"g", 0}, {"b", 0}, {"a", 1}},
        QJsonObject{{"model", "rgb"}, {"r", 1.01}, {"g", 0}, {"b", 0}, {"a", 1}},
        QJsonObject{{"model", "rgb"}, {"r", -0.01}, {"g", 0}, {"b", 0}, {"a", 1}},
        QJsonObject{{"model", "hsv"}, {"h", 360.01}, {"s", 0}, {"v", 0}, {"a", 1}},
        QJsonObject{{"model", "hsv"}, {"h", -0.5}, {"s", 0}, {"v", 0}, {"a", 1}},
        QJsonObject{{"model", "hsl"}, {"h", 10}, {"s", 0}, {"v", 0}, {"a", 1}},
        QJsonObject{{"model", "cmyk"}, {"c", 0}, {"m", 0}, {"y", 0}, {"a", 1}},
        QJsonObject{{"model", "extendedRgb"}, {"r", 2}, {"g", 0}, {"b", QJsonValue()}, {"a", 1}},
    };
    for (const QJsonValue &value : notColours) {
        QColor color(1, 2, 3, 4);
        EXPECT_FALSE(KEZSysJsonConverters::Convert(value, color))
            << QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact).toStdString();
        EXPECT_TRUE(color == QColor(1, 2, 3, 4)) << "the colour must stay untouched on false";
    }
}

TEST(SysJsonConverters, AcceptsHueOfExactlyThreeHundredSixtyDegrees)
{
    QColor color;
    const QJsonObject object{{"model", "hsv"}, {"h", 360}, {"s", 1}, {"v", 1}, {"a", 1}};
    ASSERT_TRUE(KEZSysJsonConverters::Convert(object, color));
    EXPECT_EQ(KEZSysColorWords::ModelOf(color), QColor::Hsv);
    EXPECT_FLOAT_EQ(color.hsvHueF(), 1.0f);
}
