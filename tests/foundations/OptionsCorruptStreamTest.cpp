// Tests of KEZVisOptions' stream reader on bytes that no writer produced: the
// font inside the options is checked before Qt's font reader sees it, so that
// counts and values inside it cannot make the reader allocate without bound or
// hand an impossible font to the application.

#include <KEZVisOptions.h>

#include <KEZSysColorHash.h>

#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QColor>
#include <QDataStream>
#include <QFont>
#include <QIODevice>
#include <QStringList>

#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

#include <iterator>
#include <limits>

using namespace KEZTest;

namespace {

// Settings of one stream, applied alike to the writer and the reader.
struct StreamSettings
{
    int version = QDataStream::Qt_DefaultCompiledVersion;
    QDataStream::ByteOrder order = QDataStream::BigEndian;
    QDataStream::FloatingPointPrecision precision = QDataStream::DoublePrecision;
};

void Apply(QDataStream &stream, const StreamSettings &settings)
{
    stream.setVersion(settings.version);
    stream.setByteOrder(settings.order);
    stream.setFloatingPointPrecision(settings.precision);
}

template <typename T>
QByteArray Streamed(const T &value, const StreamSettings &settings = StreamSettings())
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    Apply(out, settings);
    out << value;
    return bytes;
}

// A font away from its defaults in every field that its stream form carries.
QFont RichFont()
{
    QFont font(QStringLiteral("Sample Sans"), 14);
    font.setFamilies({QStringLiteral("Sample Sans"), QStringLiteral("Fallback One"), QStringLiteral("Fallback Two")});
    font.setStyleName(QStringLiteral("Condensed"));
    font.setWeight(QFont::DemiBold);
    font.setItalic(true);
    font.setUnderline(true);
    font.setStretch(QFont::SemiCondensed);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 1.5);
    font.setWordSpacing(2.25);
    font.setCapitalization(QFont::SmallCaps);
    font.setHintingPreference(QFont::PreferVerticalHinting);
    font.setStyleHint(QFont::Serif, QFont::PreferQuality);
    return font;
}

// The stream form of a colour from version Qt_4_0 on, big-endian: its colour
// model as a signed byte, then alpha, three components and a fourth or padding.
QByteArray ColourBytes(qint8 model, quint16 alpha, quint16 first, quint16 second, quint16 third, quint16 fourth)
{
    QByteArray bytes(1, char(model));
    for (quint16 word : {alpha, first, second, third, fourth})
        bytes.append(char(word >> 8)).append(char(word & 0xff));
    return bytes;
}

// The stream form of options with the given colour bytes and the plain font.
QByteArray OptionsWithColour(const QByteArray &colourBytes)
{
    QByteArray bytes = colourBytes;
    bytes += Streamed(qint32(2));
    bytes += Streamed(2.5);
    bytes += Streamed(qint32(1));
    bytes += Streamed(QFont(QStringLiteral("A"), 10));
    bytes += Streamed(false);
    bytes += Streamed(qint32(9));
    return bytes;
}

// An input that fuzzing found, checked in with the fuzz regressions: the fuzz
// target's own first byte of stream settings, then the stream.
QByteArray FuzzRegression(const char *target, const char *name)
{
    QFile file(QStringLiteral(KEZ_FUZZ_REGRESSIONS_DIR "/%1/%2").arg(QLatin1String(target), QLatin1String(name)));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    return file.readAll();
}

// The stream form of options around the given bytes of a font, default settings.
QByteArray OptionsAround(const QByteArray &fontBytes)
{
    QByteArray bytes = Streamed(QColor(10, 20, 30));
    bytes += Streamed(qint32(2));
    bytes += Streamed(2.5);
    bytes += Streamed(qint32(1));
    bytes += fontBytes;
    bytes += Streamed(false);
    bytes += Streamed(qint32(9));
    return bytes;
}

// The stream form of the given font with the big-endian quint32 at the given
// offset from its end replaced.
QByteArray FontWithUInt32FromEnd(const QFont &font, int fromEnd, quint32 value)
{
    QByteArray bytes = Streamed(font);
    const int at = bytes.size() - fromEnd;
    for (int i = 0; i < 4; ++i)
        bytes[at + i] = static_cast<char>((value >> (8 * (3 - i))) & 0xff);
    return bytes;
}

// The stream form of a font of the one family "A": its list of families ends
// it as the count 1 and the string "A", ten bytes.
QByteArray FontOfOneFamilyWithCount(quint32 families)
{
    const QFont font(QStringLiteral("A"));
    return FontWithUInt32FromEnd(font, 10, families);
}

// Byte offsets inside the stream form of a font of the one family "A" with no
// style name, default settings: family (4 + 2 bytes), style name (4), point
// size (8), pixel size (4), style hint (1), strategy (2), weight (2).
constexpr int PointSizeOffset = 10;
constexpr int PixelSizeOffset = 18;
constexpr int WeightOffset = 25;

QByteArray PlainFontBytes()
{
    QFont font(QStringLiteral("A"), 10);
    return Streamed(font);
}

// A buffer that, like a pipe or a socket, cannot tell how much is left.
class Pipe : public QBuffer
{
public:
    using QBuffer::QBuffer;
    bool isSequential() const override { return true; }
};

QByteArray WithBytesAt(QByteArray bytes, int at, const QByteArray &replacement)
{
    bytes.replace(at, replacement.size(), replacement);
    return bytes;
}

} // namespace

TEST(OptionsCorruptStream, FontAnnouncingBillionsOfFamiliesFailsWithoutReservingForThem)
{
    // Reserving room for the announced strings would ask for tens of
    // gigabytes; the reader must find out from the data that they are not there.
    for (quint32 families : {0xffffffffu, 0xfffffffeu, 0x7fffffffu}) {
        const QByteArray bytes = OptionsAround(FontOfOneFamilyWithCount(families));
        QDataStream in(bytes);
        KEZVisOptions read;
        EXPECT_NO_THROW(in >> read) << families;
        EXPECT_EQ(in.status(), QDataStream::ReadPastEnd) << families;
        EXPECT_EQ(read.GetFont(), QFont()) << families;
    }
}

TEST(OptionsCorruptStream, FontAnnouncingMoreFamiliesThanFollowFailsAsAShortStream)
{
    const QByteArray bytes = OptionsAround(FontOfOneFamilyWithCount(1000));
    QDataStream in(bytes);
    KEZVisOptions read;
    in >> read;
    EXPECT_EQ(in.status(), QDataStream::ReadPastEnd);
    EXPECT_EQ(read.GetFont(), QFont());
}

TEST(OptionsCorruptStream, FontAnnouncingBillionsOfFamiliesOnASequentialDeviceFailsAsWell)
{
    // A device that cannot tell how much is left: the families are read one by
    // one until the data ends.
    QByteArray bytes = OptionsAround(FontOfOneFamilyWithCount(0xffffffffu));
    Pipe pipe(&bytes);
    ASSERT_TRUE(pipe.open(QIODevice::ReadOnly));
    QDataStream in(&pipe);
    KEZVisOptions read;
    EXPECT_NO_THROW(in >> read);
    EXPECT_EQ(in.status(), QDataStream::ReadPastEnd);
    EXPECT_EQ(read.GetFont(), QFont());
}

TEST(OptionsCorruptStream, NaNPointSizeIsRefusedAsCorruptAndLeavesTheFont)
{
    const QByteArray font = WithBytesAt(PlainFontBytes(), PointSizeOffset,
                                        Streamed(std::numeric_limits<double>::quiet_NaN()));
    const QByteArray bytes = OptionsAround(font);
    QDataStream in(bytes);
    KEZVisOptions read;
    in >> read;
    EXPECT_EQ(in.status(), QDataStream::ReadCorruptData);
    EXPECT_EQ(read.GetFont(), QFont());
}

TEST(OptionsCorruptStream, InfinitePointSizeIsRefusedAsCorrupt)
{
    const QByteArray font = WithBytesAt(PlainFontBytes(), PointSizeOffset,
                                        Streamed(std::numeric_limits<double>::infinity()));
    const QByteArray bytes = OptionsAround(font);
    QDataStream in(bytes);
    KEZVisOptions read;
    in >> read;
    EXPECT_EQ(in.status(), QDataStream::ReadCorruptData);
}

TEST(OptionsCorruptStream, ZeroOrNegativePointSizeOtherThanUnsetIsRefusedAsCorrupt)
{
    for (double size : {0.0, -0.5, -2.0, -1e300}) {
        const QByteArray font = WithBytesAt(PlainFontBytes(), PointSizeOffset, Streamed(size));
        const QByteArray bytes = OptionsAround(font);
        QDataStream in(bytes);
        KEZVisOptions read;
        in >> read;
        EXPECT_EQ(in.status(), QDataStream::ReadCorruptData) << size;
    }
}

TEST(OptionsCorruptStream, ZeroOrNegativePixelSizeOtherThanUnsetIsRefusedAsCorrupt)
{
    for (qint32 size : {0, -2, std::numeric_limits<qint32>::min()}) {
        const QByteArray font = WithBytesAt(PlainFontBytes(), PixelSizeOffset, Streamed(size));
        const QByteArray bytes = OptionsAround(font);
        QDataStream in(bytes);
        KEZVisOptions read;
        in >> read;
        EXPECT_EQ(in.status(), QDataStream::ReadCorruptData) << size;
    }
}

TEST(OptionsCorruptStream, PixelSizedFontWithUnsetPointSizeIsAccepted)
{
    QFont font(QStringLiteral("A"));
    font.setPixelSize(17);
    ASSERT_EQ(font.pointSizeF(), -1.0);
    const QByteArray bytes = OptionsAround(Streamed(font));
    QDataStream in(bytes);
    KEZVisOptions read;
    in >> read;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_EQ(read.GetFont().pixelSize(), 17);
    EXPECT_TRUE(in.atEnd());
}

TEST(OptionsCorruptStream, WeightOutsideOneToAThousandIsRefusedAsCorrupt)
{
    for (quint16 weight : {quint16(0), quint16(1001), quint16(0xffff)}) {
        QByteArray raw;
        raw.append(char(weight >> 8)).append(char(weight & 0xff));
        const QByteArray font = WithBytesAt(PlainFontBytes(), WeightOffset, raw);
        const QByteArray bytes = OptionsAround(font);
        QDataStream in(bytes);
        KEZVisOptions read;
        in >> read;
        EXPECT_EQ(in.status(), QDataStream::ReadCorruptData) << weight;
    }
}

TEST(OptionsCorruptStream, WeightOfThePlainFontSitsWhereTheCorruptionTestsPutIt)
{
    // Guards the offsets above: the plain font's weight is Normal, 400.
    const QByteArray font = PlainFontBytes();
    EXPECT_EQ(font.mid(WeightOffset, 2).toHex(), QByteArray("0190"));
    EXPECT_EQ(font.mid(PointSizeOffset, 8), Streamed(10.0));
    EXPECT_EQ(font.mid(PixelSizeOffset, 4), Streamed(qint32(-1)));
}

TEST(OptionsCorruptStream, CorruptFontStillLetsTheOtherFieldsBeRead)
{
    const QByteArray font = WithBytesAt(PlainFontBytes(), PointSizeOffset,
                                        Streamed(std::numeric_limits<double>::quiet_NaN()));
    const QByteArray bytes = OptionsAround(font);
    QDataStream in(bytes);
    KEZVisOptions read;
    in >> read;
    // The fields before the font are in; the verdict is the stream's.
    EXPECT_EQ(read.GetColor(), QColor(10, 20, 30));
    EXPECT_EQ(static_cast<int>(read.GetLineStyle()), 2);
    EXPECT_EQ(read.GetLineThickness(), 2.5);
    EXPECT_EQ(in.status(), QDataStream::ReadCorruptData);
}

TEST(OptionsCorruptStream, EarlierFailureOfTheStreamIsKept)
{
    const QByteArray bytes = OptionsAround(FontOfOneFamilyWithCount(0xffffffffu));
    QDataStream in(bytes);
    in.setStatus(QDataStream::WriteFailed);
    KEZVisOptions read;
    in >> read;
    EXPECT_EQ(in.status(), QDataStream::WriteFailed);
}

TEST(OptionsCorruptStream, RichFontComesBackWholeOnEveryStreamVersionOrderAndPrecision)
{
    const QFont font = RichFont();
    for (int version = 1; version <= QDataStream::Qt_DefaultCompiledVersion; ++version) {
        for (auto order : {QDataStream::BigEndian, QDataStream::LittleEndian}) {
            for (auto precision : {QDataStream::DoublePrecision, QDataStream::SinglePrecision}) {
                const StreamSettings settings{version, order, precision};
                KEZVisOptions written;
                written.SetFont(font);
                written.SetPriority(-5);
                const QByteArray bytes = Streamed(written, settings);

                // What Qt's own reader makes of the font's bytes of this version.
                QFont expected;
                {
                    QDataStream fontIn(Streamed(font, settings));
                    Apply(fontIn, settings);
                    fontIn >> expected;
                    ASSERT_EQ(fontIn.status(), QDataStream::Ok);
                }

                QDataStream in(bytes);
                Apply(in, settings);
                KEZVisOptions read;
                in >> read;
                EXPECT_EQ(in.status(), QDataStream::Ok) << version << " " << order << " " << precision;
                EXPECT_TRUE(in.atEnd()) << version << " " << order << " " << precision;
                EXPECT_EQ(read.GetFont(), expected) << version << " " << order << " " << precision;
                EXPECT_EQ(read.GetFont().families(), expected.families()) << version;
                EXPECT_EQ(read.GetPriority(), -5) << version;
            }
        }
    }
}

TEST(OptionsCorruptStream, TruncationAtEveryByteOfEveryVersionNeverSucceeds)
{
    const QFont font = RichFont();
    for (int version = 1; version <= QDataStream::Qt_DefaultCompiledVersion; ++version) {
        StreamSettings settings;
        settings.version = version;
        KEZVisOptions written;
        written.SetFont(font);
        const QByteArray bytes = Streamed(written, settings);
        for (int length = 0; length < bytes.size(); ++length) {
            QDataStream in(bytes.left(length));
            Apply(in, settings);
            KEZVisOptions read;
            in >> read;
            EXPECT_NE(in.status(), QDataStream::Ok) << "version " << version << " length " << length;
        }
    }
}

TEST(OptionsCorruptStream, EveryFlippedByteOfTheFontEndsWithAVerdictAndNoImpossibleSize)
{
    // Which flips are refused depends on the field, and a flipped length can
    // make the rest read as other fields; every read must end, and a font that
    // the stream calls good holds sizes that a font can hold.
    const QByteArray fontBytes = Streamed(RichFont());
    for (int offset = 0; offset < fontBytes.size(); ++offset) {
        for (unsigned char mask : {0xffu, 0x80u, 0x01u}) {
            QByteArray corrupt = fontBytes;
            corrupt[offset] = static_cast<char>(static_cast<unsigned char>(corrupt.at(offset)) ^ mask);
            const QByteArray bytes = OptionsAround(corrupt);
            QDataStream in(bytes);
            KEZVisOptions read;
            in >> read;
            if (in.status() == QDataStream::Ok) {
                const QFont readFont = read.GetFont();
                EXPECT_TRUE(readFont.pointSizeF() == -1.0 || readFont.pointSizeF() > 0.0) << "offset " << offset;
                EXPECT_TRUE(readFont.pixelSize() == -1 || readFont.pixelSize() > 0) << "offset " << offset;
            }
        }
    }
}

TEST(OptionsCorruptStream, ColourModelThatQColorDoesNotKnowIsRefusedAsCorruptAndLeavesTheColour)
{
    for (qint8 model : {qint8(6), qint8(95), qint8(-1), qint8(-128)}) {
        const QByteArray bytes = OptionsWithColour(ColourBytes(model, 0xffff, 1, 2, 3, 0));
        QDataStream in(bytes);
        KEZVisOptions read;
        read.SetColor(QColor(Qt::green));
        in >> read;
        EXPECT_EQ(in.status(), QDataStream::ReadCorruptData) << int(model);
        EXPECT_EQ(read.GetColor(), QColor(Qt::green)) << int(model);
        // The fields after the colour are read all the same.
        EXPECT_EQ(read.GetPriority(), 9) << int(model);
    }
}

TEST(OptionsCorruptStream, HueAboveAFullTurnIsRefusedForHsvAndHsl)
{
    for (qint8 model : {qint8(QColor::Hsv), qint8(QColor::Hsl)}) {
        const QByteArray bytes = OptionsWithColour(ColourBytes(model, 0xffff, 36001, 100, 100, 0));
        QDataStream in(bytes);
        KEZVisOptions read;
        in >> read;
        EXPECT_EQ(in.status(), QDataStream::ReadCorruptData) << int(model);
    }
}

TEST(OptionsCorruptStream, FullTurnAndNoHueAreAcceptedForHsv)
{
    for (quint16 hue : {quint16(36000), quint16(0xffff)}) {
        const QByteArray bytes = OptionsWithColour(ColourBytes(qint8(QColor::Hsv), 0xffff, hue, 0, 0x8000, 0));
        QDataStream in(bytes);
        KEZVisOptions read;
        in >> read;
        EXPECT_EQ(in.status(), QDataStream::Ok) << hue;
        // What Qt's own reader makes of the same colour bytes.
        QColor expected;
        QDataStream colourIn(ColourBytes(qint8(QColor::Hsv), 0xffff, hue, 0, 0x8000, 0));
        colourIn >> expected;
        EXPECT_EQ(read.GetColor(), expected) << hue;
        EXPECT_TRUE(read.GetColor().isValid()) << hue;
    }
}

TEST(OptionsCorruptStream, ColourOfEveryColourModelComesBackAsWritten)
{
    const QColor colours[] = {QColor(), QColor(10, 20, 30, 40), QColor::fromHsv(200, 100, 50, 25),
                              QColor::fromCmyk(1, 2, 3, 4, 5), QColor::fromHsl(300, 40, 60),
                              QColor::fromRgbF(1.5f, -0.25f, 0.5f).toExtendedRgb(), QColor::fromHsv(-1, 0, 90)};
    for (int i = 0; i < int(std::size(colours)); ++i) {
        const QColor &colour = colours[i];
        KEZVisOptions written;
        written.SetColor(colour);
        const QByteArray bytes = Streamed(written);
        QDataStream in(bytes);
        KEZVisOptions read;
        in >> read;
        EXPECT_EQ(in.status(), QDataStream::Ok) << i;
        EXPECT_EQ(read.GetColor(), colour) << i;
        EXPECT_TRUE(in.atEnd());
    }
}

TEST(OptionsCorruptStream, ColourOfAnOldVersionIsAnyWord)
{
    StreamSettings settings;
    settings.version = QDataStream::Qt_3_3;
    KEZVisOptions written;
    written.SetColor(QColor(1, 2, 3, 4));
    const QByteArray bytes = Streamed(written, settings);
    QDataStream in(bytes);
    Apply(in, settings);
    KEZVisOptions read;
    in >> read;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_TRUE(in.atEnd());
    EXPECT_EQ(read.GetColor().rgb(), QColor(1, 2, 3).rgb());
}

TEST(OptionsCorruptStream, FontWithAnEmptyListOfFamiliesIsRefusedAsCorrupt)
{
    // The list of the plain font "A" is its count 1 and the string "A"; a list
    // of none would leave a font without any family, which Qt cannot write.
    QByteArray font = PlainFontBytes();
    ASSERT_EQ(font.right(10).toHex(), QByteArray("00000001000000020041"));
    font.chop(10);
    font += Streamed(quint32(0));
    const QByteArray bytes = OptionsAround(font);
    QDataStream in(bytes);
    KEZVisOptions read;
    in >> read;
    EXPECT_EQ(in.status(), QDataStream::ReadCorruptData);
    EXPECT_EQ(read.GetFont(), QFont());
}

TEST(OptionsCorruptStream, EmptyListOfExtraFamiliesBeforeQt6IsAccepted)
{
    // Before Qt_6_0 the list holds the families after the first, none for a
    // font of one family.
    StreamSettings settings;
    settings.version = QDataStream::Qt_5_15;
    KEZVisOptions written;
    written.SetFont(QFont(QStringLiteral("A"), 10));
    const QByteArray bytes = Streamed(written, settings);
    QDataStream in(bytes);
    Apply(in, settings);
    KEZVisOptions read;
    in >> read;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_EQ(read.GetFont().family(), QStringLiteral("A"));
}

TEST(OptionsCorruptStream, FuzzFoundColourModel95IsRefusedAndTheOptionsAreSafeToHash)
{
    // Found by OptionsStreamFuzzer: Qt's reader stored the colour model byte 95, and
    // hashing the options then loaded an enumeration value that does not exist.
    const QByteArray input = FuzzRegression("OptionsStreamFuzzer", "colour-model-95");
    ASSERT_EQ(input.left(2).toHex(), QByteArray("005f"));
    QDataStream in(input.mid(1));
    KEZVisOptions read;
    in >> read;
    EXPECT_EQ(in.status(), QDataStream::ReadCorruptData);
    EXPECT_FALSE(read.GetColor().isValid());
    // The colour is left as it was, the invalid colour, and hashes as one.
    EXPECT_EQ(qHash(read.GetColor()), qHash(QColor()));
}

namespace {

// The stream form of the font of the one family "A" whose first string, its
// family, announces the given length in bytes.
QByteArray FontWithFamilyLength(quint32 length)
{
    return WithBytesAt(PlainFontBytes(), 0, Streamed(length));
}

} // namespace

TEST(OptionsCorruptStream, FontNameAnnouncingGigabytesIsRefusedWithoutMakingRoomForThem)
{
    // Qt's string reader makes room for the whole announced length first.
    for (quint32 length : {0x7ffffffeu, 0xfffffffeu, 0x00100000u}) {
        const QByteArray bytes = OptionsAround(FontWithFamilyLength(length));
        QDataStream in(bytes);
        KEZVisOptions read;
        EXPECT_NO_THROW(in >> read) << length;
        EXPECT_EQ(in.status(), QDataStream::ReadCorruptData) << length;
        EXPECT_EQ(read.GetFont(), QFont()) << length;
    }
}

TEST(OptionsCorruptStream, FamilyListStringAnnouncingGigabytesIsRefusedWithoutMakingRoomForIt)
{
    // The last string of the font is the one name of its family list.
    const QByteArray bytes = OptionsAround(FontWithUInt32FromEnd(QFont(QStringLiteral("A")), 6, 0x7ffffffeu));
    QDataStream in(bytes);
    KEZVisOptions read;
    EXPECT_NO_THROW(in >> read);
    EXPECT_EQ(in.status(), QDataStream::ReadCorruptData);
    EXPECT_EQ(read.GetFont(), QFont());
}

TEST(OptionsCorruptStream, FontNameAnnouncingGigabytesOnASequentialDeviceEndsWithTheData)
{
    // A device that cannot tell how much is left: the string grows with what
    // arrives, and the data ends long before the announced length.
    QByteArray bytes = OptionsAround(FontWithFamilyLength(0x7ffffffeu));
    Pipe pipe(&bytes);
    ASSERT_TRUE(pipe.open(QIODevice::ReadOnly));
    QDataStream in(&pipe);
    KEZVisOptions read;
    EXPECT_NO_THROW(in >> read);
    EXPECT_EQ(in.status(), QDataStream::ReadPastEnd);
    EXPECT_EQ(read.GetFont(), QFont());
}
