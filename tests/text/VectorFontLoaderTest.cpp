// Tests of the font file loader: the record boundaries that its line counter
// draws, the header line, what follows it, the exceptions of loading a file,
// and bad bytes of every kind. The loader is reached through the font's
// private record, fed from memory.

#include "VectorTextTestSupport.h"

#include "KEZVisVectorFont_p.h"

#include <KEZSysException.h>
#include <KEZSysFileOpenException.h>

#include <QBuffer>
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>

using KEZTextTest::ExpectPolyline;

namespace {

KEZVisVectorFontPrivate Read(const QByteArray &bytes)
{
    QByteArray data = bytes;
    QBuffer buffer(&data);
    buffer.open(QIODevice::ReadOnly);
    KEZVisVectorFontPrivate record;
    record.Read(buffer);
    return record;
}

} // namespace

TEST(VectorFontLoader, RecordsTheEmptyLineAndTheHeaderMakeAFont)
{
    const KEZVisVectorFontPrivate font = Read("A\n2\n0 0 1 1\nB\n3\n0 0 -1 -1 2 2\n\n9 8 7\n");
    EXPECT_EQ(font.characters.size(), 2);
    EXPECT_EQ(font.height, 9);
    EXPECT_EQ(font.defaultWidth, 8);
    ASSERT_TRUE(font.characters.contains(QChar(u'B')));
    EXPECT_EQ(font.characters.value(QChar(u'B')).GetNumPolylines(), 2);
}

TEST(VectorFontLoader, CarriageReturnLineFeedAndLineFeedReadAlike)
{
    const KEZVisVectorFontPrivate font = Read("A\r\n2\r\n0 0 1 1\r\n\r\n7 6 3\r\n");
    ASSERT_EQ(font.characters.size(), 1);
    ExpectPolyline(font.characters.value(QChar(u'A')).GetPolyline(0), {{0, 0}, {1, 1}});
    EXPECT_EQ(font.height, 7);
    EXPECT_EQ(font.defaultWidth, 6);
}

TEST(VectorFontLoader, LaterRecordOfTheSameCharacterWins)
{
    const KEZVisVectorFontPrivate font = Read("A\n2\n0 0 1 1\nA\n2\n5 5 6 6\n\n7 6\n");
    ASSERT_EQ(font.characters.size(), 1);
    ExpectPolyline(font.characters.value(QChar(u'A')).GetPolyline(0), {{5, 5}, {6, 6}});
}

TEST(VectorFontLoader, CoordinatesMaySpanSeveralLines)
{
    const KEZVisVectorFontPrivate font = Read("A\n4\n0 0 1 1\n2 2\n3 3 -1 -1\n\n7 6\n");
    const KEZVisVectorFontChar glyph = font.characters.value(QChar(u'A'));
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    ExpectPolyline(glyph.GetPolyline(0), {{0, 0}, {1, 1}, {2, 2}, {3, 3}});
}

TEST(VectorFontLoader, WidthOnTheCountLineIsKept)
{
    const KEZVisVectorFontPrivate font = Read("A\n2 4.5\n0 0 1 1\n\n7 6\n");
    EXPECT_EQ(font.characters.value(QChar(u'A')).GetCharWidth(), 4.5);
}

TEST(VectorFontLoader, FirstCoordinateLineOfTheFirstRecordIsExamined)
{
    // The first record's lines are all counted, so its first coordinate line,
    // here without a blank, already ends it: the record keeps no strokes.
    const KEZVisVectorFontPrivate font = Read("A\n1\n5\n6 7\nB\n1\n8 9\n\n7 6\n");
    ASSERT_TRUE(font.characters.contains(QChar(u'A')));
    EXPECT_EQ(font.characters.value(QChar(u'A')).GetNumPolylines(), 0);
}

TEST(VectorFontLoader, FirstCoordinateLineOfALaterRecordIsNotExamined)
{
    const KEZVisVectorFontPrivate font = Read("A\n2\n0 0 1 1\nB\n2\n0\n1 2 3\n\n7 6\n");
    const KEZVisVectorFontChar glyph = font.characters.value(QChar(u'B'));
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    ExpectPolyline(glyph.GetPolyline(0), {{0, 1}, {2, 3}});
}

TEST(VectorFontLoader, LinesAreSimplifiedBeforeTheyAreExamined)
{
    // The padded character lines hold no blank once simplified, and so still end records.
    const KEZVisVectorFontPrivate font = Read("A \n 2\t\n0   0  1 1 \n\tB  \n2\n2 2 3 3\n  \n7 6\n");
    EXPECT_EQ(font.characters.size(), 2);
    ExpectPolyline(font.characters.value(QChar(u'A')).GetPolyline(0), {{0, 0}, {1, 1}});
    EXPECT_EQ(font.height, 7);
}

TEST(VectorFontLoader, HeaderLineIsSplitAsItStands)
{
    // Not simplified: the leading blank makes an empty first part, read as 0.
    const KEZVisVectorFontPrivate font = Read("A\n2\n0 0 1 1\n\n 7 6\n");
    EXPECT_EQ(font.height, 0);
    EXPECT_EQ(font.defaultWidth, 7);
}

TEST(VectorFontLoader, FurtherNumbersOfTheHeaderAreIgnored)
{
    const KEZVisVectorFontPrivate font = Read("A\n2\n0 0 1 1\n\n12 5 3 99 100\n");
    EXPECT_EQ(font.height, 12);
    EXPECT_EQ(font.defaultWidth, 5);
}

TEST(VectorFontLoader, HeaderWithOneNumberLeavesTheDefaultWidthAtMinusOne)
{
    const KEZVisVectorFontPrivate font = Read("A\n2\n0 0 1 1\n\n12\n");
    EXPECT_EQ(font.height, 12);
    EXPECT_EQ(font.defaultWidth, -1);
}

TEST(VectorFontLoader, HeaderNumbersThatDoNotParseReadAsZero)
{
    const KEZVisVectorFontPrivate font = Read("A\n2\n0 0 1 1\n\nseven 6.5\n");
    EXPECT_EQ(font.height, 0);
    EXPECT_EQ(font.defaultWidth, 0);
}

TEST(VectorFontLoader, FileWithoutTheEmptyLineNeverStoresItsLastRecord)
{
    const KEZVisVectorFontPrivate font = Read("A\n2\n0 0 1 1\nB\n2\n2 2 3 3\n");
    EXPECT_TRUE(font.characters.contains(QChar(u'A')));
    EXPECT_FALSE(font.characters.contains(QChar(u'B')));
    EXPECT_EQ(font.height, -1);
    EXPECT_EQ(font.defaultWidth, -1);
}

TEST(VectorFontLoader, EmptyLineAtTheEndOfTheFileGivesAnEmptyHeader)
{
    const KEZVisVectorFontPrivate font = Read("A\n2\n0 0 1 1\n\n");
    EXPECT_TRUE(font.characters.contains(QChar(u'A')));
    EXPECT_EQ(font.height, 0);
    EXPECT_EQ(font.defaultWidth, -1);
}

TEST(VectorFontLoader, TwoLinesAfterTheHeaderAreIgnored)
{
    const KEZVisVectorFontPrivate font = Read("A\n2\n0 0 1 1\n\n7 6 3\nSIMPLEX\x1A\nmore\n");
    EXPECT_EQ(font.characters.size(), 1);
    EXPECT_EQ(font.height, 7);
}

TEST(VectorFontLoader, ThirdLineAfterTheHeaderMakesARecordOfTheHeaderLine)
{
    // The loader goes on gathering lines after the header; a third line without
    // a blank completes a record whose character line is the header line. The
    // header line keeps its own line end, so the record's count line is empty
    // and X Y are its coordinates, both read as 0.
    const KEZVisVectorFontPrivate font = Read("A\n2\n0 0 1 1\n\n7 6 3\nX\nY\nZ\n");
    EXPECT_EQ(font.characters.size(), 2);
    ASSERT_TRUE(font.characters.contains(QChar(u'7')));
    const KEZVisVectorFontChar glyph = font.characters.value(QChar(u'7'));
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    ExpectPolyline(glyph.GetPolyline(0), {{0, 0}});
}

TEST(VectorFontLoader, CharacterLineOfABlankEndsTheGlyphs)
{
    // Simplified, a line of one blank is empty, and so it is taken for the line
    // that ends the glyphs: the line after it becomes the header.
    const KEZVisVectorFontPrivate font = Read("A\n2\n0 0 1 1\n \n2\n0 0 1 1\n\n7 6\n");
    EXPECT_FALSE(font.characters.contains(QChar(u' ')));
    EXPECT_EQ(font.height, 2);
    EXPECT_EQ(font.defaultWidth, -1);
}

TEST(VectorFontLoader, EmptyDeviceGivesAnEmptyFont)
{
    const KEZVisVectorFontPrivate font = Read(QByteArray());
    EXPECT_TRUE(font.characters.isEmpty());
    EXPECT_EQ(font.height, -1);
    EXPECT_EQ(font.defaultWidth, -1);
}

TEST(VectorFontLoader, RecordWithoutCoordinateLineTakesTheNextCharacterLineAsCoordinates)
{
    // B's record has no coordinate line, so C's character line is B's second
    // counted line and does not end it; C's count line does. B keeps the lone
    // token C and no strokes, and C is never stored.
    const KEZVisVectorFontPrivate font = Read("A\n2\n0 0 1 1\nB\n2\nC\n2\n1 1 2 2\n");
    ASSERT_TRUE(font.characters.contains(QChar(u'B')));
    EXPECT_EQ(font.characters.value(QChar(u'B')).GetNumPolylines(), 0);
    EXPECT_FALSE(font.characters.contains(QChar(u'C')));
}

TEST(VectorFontLoader, OddTokenCountsLoseOnlyTheLoneToken)
{
    const KEZVisVectorFontPrivate font = Read("A\n2\n0 0 1\nB\n1\n4 5 6\n\n7 6\n");
    ExpectPolyline(font.characters.value(QChar(u'A')).GetPolyline(0), {{0, 0}});
    ExpectPolyline(font.characters.value(QChar(u'B')).GetPolyline(0), {{4, 5}});
}

TEST(VectorFontLoader, LineOfAMegabyteIsRead)
{
    QByteArray line;
    while (line.size() < 1100000)
        line += "1 2 3 4 ";
    const KEZVisVectorFontPrivate font = Read("A\n2\n" + line + "\nB\n2\n0 0 1 1\n\n7 6\n");
    ASSERT_EQ(font.characters.value(QChar(u'A')).GetNumPolylines(), 1);
    EXPECT_EQ(font.characters.value(QChar(u'A')).GetPolyline(0).size(), line.size() / 4);
    EXPECT_EQ(font.height, 7);
}

TEST(VectorFontLoader, RandomBytesNeverCrashTheLoader)
{
    std::mt19937 random(20261125);
    std::uniform_int_distribution<int> byteOf(0, 255);
    std::uniform_int_distribution<int> lengthOf(0, 400);
    // Bytes that shape records: line ends, blanks, digits, signs, pen-up marks.
    const QByteArray alphabet("\n\n\n\r  0123456789-.eA~\x1A\t");
    std::uniform_int_distribution<int> letterOf(0, int(alphabet.size()) - 1);
    for (int run = 0; run < 3000; ++run) {
        QByteArray bytes;
        const int length = lengthOf(random);
        for (int i = 0; i < length; ++i)
            bytes.append(run % 2 ? char(byteOf(random)) : alphabet.at(letterOf(random)));
        const KEZVisVectorFontPrivate font = Read(bytes);
        // Every stored glyph is filed under its own character and has no empty stroke.
        for (auto it = font.characters.cbegin(); it != font.characters.cend(); ++it) {
            ASSERT_EQ(it.key(), it.value().GetCharacter());
            for (int i = 0; i < it.value().GetNumPolylines(); ++i)
                ASSERT_FALSE(it.value().GetPolyline(i).isEmpty());
        }
    }
}

TEST(VectorFontLoader, MissingFileIsReportedAsAFontThatCouldNotBeLoaded)
{
    QTemporaryDir directory;
    ASSERT_TRUE(directory.isValid());
    KEZVisVectorFontPrivate font;
    const auto exception = KEZTest::ThrownBy<KEZSysException>(
        [&] { font.Load(QFileInfo(directory.filePath(QStringLiteral("none.vct")))); });
    ASSERT_TRUE(exception.has_value());
    EXPECT_EQ(exception->GetMessage(), QStringLiteral("Could not load the font."));
}

TEST(VectorFontLoader, EmptyFileEntryIsReportedAsAFontThatCouldNotBeLoaded)
{
    KEZVisVectorFontPrivate font;
    const auto exception = KEZTest::ThrownBy<KEZSysException>([&] { font.Load(QFileInfo()); });
    ASSERT_TRUE(exception.has_value());
    EXPECT_EQ(exception->GetMessage(), QStringLiteral("Could not load the font."));
}

TEST(VectorFontLoader, FileThatCannotBeOpenedThrowsWithItsPathAndTheDeviceError)
{
    QTemporaryDir directory;
    ASSERT_TRUE(directory.isValid());
    ASSERT_TRUE(QDir(directory.path()).mkdir(QStringLiteral("folder.vct")));
    const QFileInfo entry(directory.filePath(QStringLiteral("folder.vct")));
    QFile probe(entry.absoluteFilePath());
    ASSERT_FALSE(probe.open(QIODevice::ReadOnly)); // a directory does not open as a file

    KEZVisVectorFontPrivate font;
    const auto exception = KEZTest::ThrownBy<KEZSysFileOpenException>([&] { font.Load(entry); });
    ASSERT_TRUE(exception.has_value());
    EXPECT_EQ(exception->GetPath(), entry.absoluteFilePath());
    EXPECT_EQ(exception->GetErrorText(), probe.errorString());
}

TEST(VectorFontLoader, LoadedFileGivesItsBaseNameToTheFont)
{
    QTemporaryDir directory;
    ASSERT_TRUE(directory.isValid());
    QFile file(directory.filePath(QStringLiteral("thin.vct")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("A\r\n2\r\n0 0 1 1\r\n\r\n10 4\r\n");
    file.close();

    KEZVisVectorFontPrivate font;
    font.Load(QFileInfo(file.fileName()));
    EXPECT_EQ(font.name, QStringLiteral("thin"));
    EXPECT_EQ(font.height, 10);
    EXPECT_EQ(font.defaultWidth, 4);
    EXPECT_EQ(font.characters.size(), 1);
}

TEST(VectorFontLoader, AdoptedRecordMakesAFontThatReadsAsTheRecord)
{
    auto *record = new KEZVisVectorFontPrivate;
    record->name = QStringLiteral("adopted-record");
    QByteArray data("A\n3 4.5\n0 0 2 6 4 0\n\n9 8\n");
    QBuffer buffer(&data);
    buffer.open(QIODevice::ReadOnly);
    record->Read(buffer);

    const KEZVisVectorFont font = KEZVisVectorFontPrivate::Adopt(record);
    EXPECT_EQ(font.GetName(), QStringLiteral("adopted-record"));
    EXPECT_EQ(font.GetCharacterHeight(), 9.0);
    EXPECT_EQ(font.GetCharacterWidth(QChar(u'A')), 4.5);
    EXPECT_EQ(font.GetCharacterWidth(QChar(u'B')), 8.0);
    ExpectPolyline(font.GetCharacter(QChar(u'A')).GetPolyline(0), {{0, 0}, {2, 6}, {4, 0}});
}

TEST(VectorFontLoader, AdoptedRecordStaysOutOfTheCache)
{
    auto *record = new KEZVisVectorFontPrivate;
    record->name = QStringLiteral("never-cached");
    const KEZVisVectorFont adopted = KEZVisVectorFontPrivate::Adopt(record);
    ASSERT_EQ(adopted.GetName(), QStringLiteral("never-cached"));
    // The name is no file of the font directory, so asking for it gives the
    // built-in font rather than the adopted record.
    EXPECT_EQ(KEZVisVectorFont(QStringLiteral("never-cached")).GetName(), QStringLiteral("simple"));
}
