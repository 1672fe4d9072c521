// Tests of KEZVisVectorFontChar: the fallback glyph, the record parser with its
// pen-up marks, widths, Latin-1 characters and bad input, and the bounds of
// GetPolyline().

#include "VectorTextTestSupport.h"

#include <KEZVisVectorFontChar.h>

#include <KEZSysOutOfBoundsException.h>

#include <QByteArray>
#include <QVariant>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using KEZTextTest::ExpectPolyline;

TEST(VectorFontChar, DefaultConstructedGlyphIsTheTildeBox)
{
    const KEZVisVectorFontChar glyph;
    EXPECT_EQ(glyph.GetCharacter(), QChar(u'~'));
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    ExpectPolyline(glyph.GetPolyline(0), {{0, 0}, {0, 6}, {4, 6}, {4, 0}, {0, 0}});
}

TEST(VectorFontChar, DefaultConstructedGlyphHasNoWidthOfItsOwn)
{
    EXPECT_TRUE(std::isnan(KEZVisVectorFontChar().GetCharWidth()));
}

TEST(VectorFontChar, EmptyRecordHasNullCharacterNoPolylinesAndNanWidth)
{
    const KEZVisVectorFontChar glyph{QByteArray()};
    EXPECT_TRUE(glyph.GetCharacter().isNull());
    EXPECT_EQ(glyph.GetNumPolylines(), 0);
    EXPECT_TRUE(std::isnan(glyph.GetCharWidth()));
}

TEST(VectorFontChar, SecondNumberOfTheCountLineIsTheWidth)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n2 3.5\n0 0 1 1"));
    EXPECT_EQ(glyph.GetCharacter(), QChar(u'X'));
    EXPECT_EQ(glyph.GetCharWidth(), 3.5);
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    ExpectPolyline(glyph.GetPolyline(0), {{0, 0}, {1, 1}});
}

TEST(VectorFontChar, CountIsIgnoredAndPenUpMarksSplitStrokes)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n9\n0 0 -2 -2 1 1 -1 -1"));
    ASSERT_EQ(glyph.GetNumPolylines(), 2);
    ExpectPolyline(glyph.GetPolyline(0), {{0, 0}});
    ExpectPolyline(glyph.GetPolyline(1), {{1, 1}});
    EXPECT_TRUE(std::isnan(glyph.GetCharWidth()));
}

TEST(VectorFontChar, PairOffTheNegativeDiagonalIsAPoint)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n3\n0 0 -1 -2 3 -1"));
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    ExpectPolyline(glyph.GetPolyline(0), {{0, 0}, {-1, -2}, {3, -1}});
}

TEST(VectorFontChar, PenUpAsFirstPairDrawsNothing)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n3\n-4 -4 1 2 3 4"));
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    ExpectPolyline(glyph.GetPolyline(0), {{1, 2}, {3, 4}});
}

TEST(VectorFontChar, RepeatedPenUpMarksMakeNoEmptyStrokes)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n6\n-1 -1 -1 -1 0 1 -4 -4 -1 -1 2 3 -1 -1"));
    ASSERT_EQ(glyph.GetNumPolylines(), 2);
    ExpectPolyline(glyph.GetPolyline(0), {{0, 1}});
    ExpectPolyline(glyph.GetPolyline(1), {{2, 3}});
}

TEST(VectorFontChar, CoordinateLinesMayBreakAnywhereBetweenNumbers)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n3\n0\n1 2\n3 -1 -1\n5 6"));
    ASSERT_EQ(glyph.GetNumPolylines(), 2);
    ExpectPolyline(glyph.GetPolyline(0), {{0, 1}, {2, 3}});
    ExpectPolyline(glyph.GetPolyline(1), {{5, 6}});
}

TEST(VectorFontChar, RunsOfWhiteSpaceInCoordinatesCountAsOneBlank)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n2\n  0 \t 1   2\r\n 3  "));
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    ExpectPolyline(glyph.GetPolyline(0), {{0, 1}, {2, 3}});
}

TEST(VectorFontChar, LoneLastTokenIsIgnored)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n2\n0 1 2 3 4"));
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    ExpectPolyline(glyph.GetPolyline(0), {{0, 1}, {2, 3}});
}

TEST(VectorFontChar, SingleTokenGivesNoStroke)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n1\n7"));
    EXPECT_EQ(glyph.GetNumPolylines(), 0);
}

TEST(VectorFontChar, RecordWithoutCoordinateLineHasNoStrokes)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n4 2"));
    EXPECT_EQ(glyph.GetCharacter(), QChar(u'X'));
    EXPECT_EQ(glyph.GetCharWidth(), 2.0);
    EXPECT_EQ(glyph.GetNumPolylines(), 0);
}

TEST(VectorFontChar, RecordOfOneLineHasOnlyItsCharacter)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("Q0 0 1 1"));
    EXPECT_EQ(glyph.GetCharacter(), QChar(u'Q'));
    EXPECT_EQ(glyph.GetNumPolylines(), 0);
    EXPECT_TRUE(std::isnan(glyph.GetCharWidth()));
}

TEST(VectorFontChar, EmptyFirstLineGivesTheNullCharacter)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("\n2\n0 0 1 1"));
    EXPECT_TRUE(glyph.GetCharacter().isNull());
    EXPECT_EQ(glyph.GetNumPolylines(), 1);
}

TEST(VectorFontChar, OnlyTheFirstByteOfTheCharacterLineCounts)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("AB\n2\n0 0 1 1"));
    EXPECT_EQ(glyph.GetCharacter(), QChar(u'A'));
}

TEST(VectorFontChar, CharacterByteIsReadAsLatin1CodePoint)
{
    QByteArray record("?\n2\n0 0 1 1");
    record[0] = char(0x82);
    const KEZVisVectorFontChar glyph(record);
    EXPECT_EQ(glyph.GetCharacter().unicode(), 0x0082);
}

TEST(VectorFontChar, HighestByteIsCodePointFF)
{
    QByteArray record("?\n2\n0 0 1 1");
    record[0] = char(0xFF);
    EXPECT_EQ(KEZVisVectorFontChar(record).GetCharacter().unicode(), 0x00FF);
}

TEST(VectorFontChar, NumbersThatDoNotParseReadAsZero)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n2 wide\nabc 1 2 0x10"));
    EXPECT_EQ(glyph.GetCharWidth(), 0.0);
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    ExpectPolyline(glyph.GetPolyline(0), {{0, 1}, {2, 0}});
}

TEST(VectorFontChar, NanTextGivesANanCoordinate)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n1\nnan 2"));
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    const KEZMathSetOfPoints2D stroke = glyph.GetPolyline(0);
    ASSERT_EQ(stroke.size(), 1);
    EXPECT_TRUE(std::isnan(stroke.at(0).GetX()));
    EXPECT_EQ(stroke.at(0).GetY(), 2.0);
}

TEST(VectorFontChar, NanPairIsNotAPenUp)
{
    // NaN compares unequal to itself, so it never lies on the negative diagonal.
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n3\n0 0 nan nan 1 1"));
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    EXPECT_EQ(glyph.GetPolyline(0).size(), 3);
}

TEST(VectorFontChar, MinusInfinityPairLiftsThePen)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n3\n0 0 -inf -inf 1 1"));
    ASSERT_EQ(glyph.GetNumPolylines(), 2);
    ExpectPolyline(glyph.GetPolyline(0), {{0, 0}});
    ExpectPolyline(glyph.GetPolyline(1), {{1, 1}});
}

TEST(VectorFontChar, InfinityTextGivesAnInfiniteCoordinate)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n1\ninf -inf"));
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    EXPECT_EQ(glyph.GetPolyline(0).at(0).GetX(), std::numeric_limits<double>::infinity());
    EXPECT_EQ(glyph.GetPolyline(0).at(0).GetY(), -std::numeric_limits<double>::infinity());
}

TEST(VectorFontChar, NumbersOfTenThousandDigitsReadAsQtReadsThem)
{
    const QByteArray huge(10000, '9');
    const QByteArray tiny = "0." + QByteArray(9998, '0') + "1";
    const KEZVisVectorFontChar glyph("X\n1 " + huge + "\n" + huge + " " + tiny);
    EXPECT_EQ(glyph.GetCharWidth(), huge.toDouble());
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    EXPECT_EQ(glyph.GetPolyline(0).at(0).GetX(), huge.toDouble());
    EXPECT_EQ(glyph.GetPolyline(0).at(0).GetY(), tiny.toDouble());
}

TEST(VectorFontChar, CoordinateLineOfAMegabyteIsReadWhole)
{
    QByteArray line;
    const int pairs = 100000; // six bytes a pair, then as many blanks: over a megabyte in all
    for (int i = 0; i < pairs; ++i)
        line += (i % 1000 == 999) ? "-1 -1 " : "10 20 ";
    line += QByteArray(600000, ' ');
    ASSERT_GT(line.size(), 1000000);
    const KEZVisVectorFontChar glyph("X\n0\n" + line);
    ASSERT_EQ(glyph.GetNumPolylines(), 100);
    EXPECT_EQ(glyph.GetPolyline(0).size(), 999);
    EXPECT_EQ(glyph.GetPolyline(99).size(), 999);
}

TEST(VectorFontChar, GetPolylineBelowZeroThrowsWithTheRange)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n5\n0 0 1 1 -1 -1 2 2 3 3"));
    const auto exception = KEZTest::OutOfBoundsThrownBy([&] { glyph.GetPolyline(-1); });
    ASSERT_TRUE(exception.has_value());
    EXPECT_EQ(exception->GetValue(), QVariant(-1));
    EXPECT_EQ(exception->GetLowerLimit(), QVariant(0));
    EXPECT_EQ(exception->GetUpperLimit(), QVariant(1));
    EXPECT_TRUE(exception->IsLowerLimitIncluded());
    EXPECT_TRUE(exception->IsUpperLimitIncluded());
}

TEST(VectorFontChar, GetPolylineAtTheCountThrowsWithTheRange)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n5\n0 0 1 1 -1 -1 2 2 3 3"));
    const auto exception = KEZTest::OutOfBoundsThrownBy([&] { glyph.GetPolyline(2); });
    ASSERT_TRUE(exception.has_value());
    EXPECT_EQ(exception->GetValue(), QVariant(2));
    EXPECT_EQ(exception->GetLowerLimit(), QVariant(0));
    EXPECT_EQ(exception->GetUpperLimit(), QVariant(1));
}

TEST(VectorFontChar, GetPolylineOfAGlyphWithoutStrokesThrowsWithUpperLimitMinusOne)
{
    const KEZVisVectorFontChar glyph{QByteArray()};
    const auto exception = KEZTest::OutOfBoundsThrownBy([&] { glyph.GetPolyline(0); });
    ASSERT_TRUE(exception.has_value());
    EXPECT_EQ(exception->GetUpperLimit(), QVariant(-1));
}

TEST(VectorFontChar, CopyKeepsEverything)
{
    const KEZVisVectorFontChar original(QByteArrayLiteral("X\n2 3.5\n0 0 1 1"));
    const KEZVisVectorFontChar copy(original);
    EXPECT_EQ(copy.GetCharacter(), QChar(u'X'));
    EXPECT_EQ(copy.GetCharWidth(), 3.5);
    ASSERT_EQ(copy.GetNumPolylines(), 1);
    ExpectPolyline(copy.GetPolyline(0), {{0, 0}, {1, 1}});
}

TEST(VectorFontChar, AssignmentReplacesTheGlyphAndSelfAssignmentKeepsIt)
{
    KEZVisVectorFontChar glyph;
    glyph = KEZVisVectorFontChar(QByteArrayLiteral("Y\n1\n3 4"));
    KEZVisVectorFontChar &same = glyph;
    glyph = same;
    EXPECT_EQ(glyph.GetCharacter(), QChar(u'Y'));
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    ExpectPolyline(glyph.GetPolyline(0), {{3, 4}});
}

TEST(VectorFontChar, ReturnedPolylineIsACopy)
{
    const KEZVisVectorFontChar glyph(QByteArrayLiteral("X\n2\n0 0 1 1"));
    KEZMathSetOfPoints2D stroke = glyph.GetPolyline(0);
    stroke[0] = KEZMathPoint2D(9, 9);
    stroke.append(KEZMathPoint2D(5, 5));
    ExpectPolyline(glyph.GetPolyline(0), {{0, 0}, {1, 1}});
}
