// Tests of the built-in font "simple": the bytes of the compiled-in file, its
// place and compression in the resources, and every one of its glyphs against
// the tests' own copy of the glyph table.

#include "SimpleFontTable.h"
#include "VectorTextTestSupport.h"

#include <KEZVisVectorFont.h>

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QResource>
#include <QSet>

#include <gtest/gtest.h>

#include <cmath>

namespace {

const QString FontPath = QStringLiteral(":/vector-fonts/simple.vct");

// The file as it must be: one record a row in table order, CR LF line ends,
// the empty line, the header line and the closing line without a line end.
QByteArray ExpectedFileBytes()
{
    QByteArray bytes;
    for (const SimpleFont::Row &row : SimpleFont::Rows) {
        bytes.append(char(row.byte));
        bytes.append("\r\n");
        bytes.append(QByteArray::number(row.count));
        bytes.append("\r\n");
        bytes.append(row.coordinates);
        bytes.append("\r\n");
    }
    bytes.append("\r\n");
    bytes.append("7 6 3\r\n");
    bytes.append("SIMPLEX");
    bytes.append(char(0x1A));
    return bytes;
}

QByteArray ResourceBytes()
{
    QFile file(FontPath);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}

} // namespace

TEST(BuiltInFont, FileStandsInTheVectorFontDirectory)
{
    EXPECT_TRUE(QFileInfo(FontPath).isFile());
}

TEST(BuiltInFont, FileIsZlibCompressedInTheResource)
{
    const QResource resource(FontPath);
    ASSERT_TRUE(resource.isValid());
    EXPECT_EQ(resource.compressionAlgorithm(), QResource::ZlibCompression);
    EXPECT_LT(resource.size(), ExpectedFileBytes().size());
}

TEST(BuiltInFont, FileBytesAreTheTableWrittenOut)
{
    const QByteArray actual = ResourceBytes();
    const QByteArray expected = ExpectedFileBytes();
    ASSERT_EQ(actual.size(), expected.size());
    EXPECT_TRUE(actual == expected);
}

TEST(BuiltInFont, FileEndsInSimplexAndSubstituteWithoutLineEnd)
{
    EXPECT_TRUE(ResourceBytes().endsWith(QByteArray("\r\n\r\n7 6 3\r\nSIMPLEX\x1A")));
}

TEST(BuiltInFont, EveryLineOfTheFileEndsInCarriageReturnLineFeed)
{
    const QByteArray bytes = ResourceBytes();
    ASSERT_FALSE(bytes.isEmpty());
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (bytes.at(i) == '\n') {
            ASSERT_GT(i, 0);
            EXPECT_EQ(bytes.at(i - 1), '\r') << "at byte " << i;
        }
    }
}

TEST(BuiltInFont, TableHasTheHundredAndTwentyTwoCharactersOfTheFont)
{
    // Guards the tests' own table: the printable ASCII range without the at
    // sign and the grave accent, and the 34 upper bytes.
    QSet<int> expected;
    for (int byte = 0x21; byte <= 0x7A; ++byte) {
        if (byte != 0x40 && byte != 0x60)
            expected.insert(byte);
    }
    for (int byte = 0x80; byte <= 0x9D; ++byte)
        expected.insert(byte);
    for (int byte : {0xA0, 0xA1, 0xF1, 0xF8})
        expected.insert(byte);
    QSet<int> table;
    for (const SimpleFont::Row &row : SimpleFont::Rows)
        table.insert(row.byte);
    EXPECT_EQ(SimpleFont::RowCount, 122);
    EXPECT_EQ(table, expected);
}

TEST(BuiltInFont, EveryGlyphHasTheStrokesOfItsRecord)
{
    const KEZVisVectorFont font;
    for (const SimpleFont::Row &row : SimpleFont::Rows) {
        SCOPED_TRACE(testing::Message() << "glyph 0x" << std::hex << int(row.byte));
        const std::vector<KEZTextTest::Stroke> strokes = KEZTextTest::ExpectedStrokes(row.coordinates);
        const KEZVisVectorFontChar glyph = font.GetCharacter(QChar(char16_t(row.byte)));
        EXPECT_EQ(glyph.GetCharacter().unicode(), row.byte);
        EXPECT_TRUE(std::isnan(glyph.GetCharWidth()));
        ASSERT_EQ(glyph.GetNumPolylines(), int(strokes.size()));
        for (size_t i = 0; i < strokes.size(); ++i)
            KEZTextTest::ExpectPolyline(glyph.GetPolyline(int(i)), strokes[i]);
    }
}

TEST(BuiltInFont, CountOfEveryRecordIsItsNumberOfPairs)
{
    // The loader ignores the count; the file states it truthfully all the same.
    for (const SimpleFont::Row &row : SimpleFont::Rows) {
        const qsizetype tokens = KEZTextTest::Tokens(row.coordinates).size();
        EXPECT_EQ(tokens % 2, 0) << int(row.byte);
        EXPECT_EQ(tokens / 2, row.count) << int(row.byte);
    }
}

TEST(BuiltInFont, GlyphsLieOnTheGridOfTheFont)
{
    const KEZVisVectorFont font;
    for (const SimpleFont::Row &row : SimpleFont::Rows) {
        const KEZVisVectorFontChar glyph = font.GetCharacter(QChar(char16_t(row.byte)));
        double maxX = 0;
        for (int i = 0; i < glyph.GetNumPolylines(); ++i) {
            for (const KEZMathPoint2D &point : glyph.GetPolyline(i)) {
                EXPECT_GE(point.GetY(), -2.0) << int(row.byte);
                EXPECT_LE(point.GetY(), 8.0) << int(row.byte);
                EXPECT_GE(point.GetX(), 0.0) << int(row.byte);
                maxX = std::max(maxX, point.GetX());
            }
        }
        if (row.byte == 0x8F)
            EXPECT_EQ(maxX, 5.0);
        else if (row.byte == 0x92)
            EXPECT_EQ(maxX, 7.0);
        else
            EXPECT_LE(maxX, 4.0) << int(row.byte);
    }
}

TEST(BuiltInFont, CharactersWithoutARecordGetTheBox)
{
    const KEZVisVectorFont font;
    for (int code = 0; code < 0x100; ++code) {
        bool inTable = false;
        for (const SimpleFont::Row &row : SimpleFont::Rows)
            inTable = inTable || row.byte == code;
        if (inTable)
            continue;
        const KEZVisVectorFontChar glyph = font.GetCharacter(QChar(char16_t(code)));
        EXPECT_EQ(glyph.GetCharacter(), QChar(u'~')) << code;
        EXPECT_EQ(glyph.GetNumPolylines(), 1) << code;
    }
}
