// Tests of KEZVisVectorFont with the built-in resources: finding fonts, the
// fall-back to "simple", the shared cache records, the font's measures and
// its glyph lookup with the fallback box.

#include "VectorTextTestSupport.h"

#include <KEZVisVectorFont.h>

#include <QList>
#include <QString>

#include <gtest/gtest.h>

#include <cmath>

using KEZTextTest::ExpectPolyline;

namespace {

// The strokes of the fallback box, written out.
const KEZTextTest::Stroke &BoxStroke()
{
    static const KEZTextTest::Stroke box{{0, 0}, {0, 6}, {4, 6}, {4, 0}, {0, 0}};
    return box;
}

void ExpectBox(const KEZVisVectorFontChar &glyph)
{
    EXPECT_EQ(glyph.GetCharacter(), QChar(u'~'));
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    ExpectPolyline(glyph.GetPolyline(0), BoxStroke());
}

// Two fonts hold one record when their names are one string: every record that
// is loaded builds its own name.
bool ShareRecord(const KEZVisVectorFont &a, const KEZVisVectorFont &b)
{
    return a.GetName().constData() == b.GetName().constData();
}

} // namespace

TEST(VectorFont, DefaultConstructedFontIsSimple)
{
    EXPECT_EQ(KEZVisVectorFont().GetName(), QStringLiteral("simple"));
}

TEST(VectorFont, FontByItsNameIsSimple)
{
    EXPECT_EQ(KEZVisVectorFont(QStringLiteral("simple")).GetName(), QStringLiteral("simple"));
}

TEST(VectorFont, DefaultAndNamedFontShareTheCachedRecord)
{
    EXPECT_TRUE(ShareRecord(KEZVisVectorFont(), KEZVisVectorFont(QStringLiteral("simple"))));
}

TEST(VectorFont, UnknownNameFallsBackToSimpleAndSharesItsRecord)
{
    const KEZVisVectorFont font(QStringLiteral("no-such-font"));
    EXPECT_EQ(font.GetName(), QStringLiteral("simple"));
    EXPECT_TRUE(ShareRecord(font, KEZVisVectorFont(QStringLiteral("simple"))));
}

TEST(VectorFont, NameInCapitalsIsAnUnknownNameThatComesToSimple)
{
    const KEZVisVectorFont font(QStringLiteral("SIMPLE"));
    EXPECT_EQ(font.GetName(), QStringLiteral("simple"));
    EXPECT_TRUE(ShareRecord(font, KEZVisVectorFont()));
}

TEST(VectorFont, NameWithTheSuffixIsAnUnknownName)
{
    EXPECT_TRUE(ShareRecord(KEZVisVectorFont(QStringLiteral("simple.vct")), KEZVisVectorFont()));
}

TEST(VectorFont, UnknownNamesLeaveNoEntryOfTheirOwn)
{
    // Asking for an unknown name again still gives the record of "simple", not
    // one made for the unknown name the first time.
    const KEZVisVectorFont first(QStringLiteral("Unknown"));
    const KEZVisVectorFont second(QStringLiteral("Unknown"));
    EXPECT_EQ(second.GetName(), QStringLiteral("simple"));
    EXPECT_TRUE(ShareRecord(first, second));
}

TEST(VectorFont, FontNamesOfTheBuiltInResourcesAreSimpleAlone)
{
    EXPECT_EQ(KEZVisVectorFont::GetFontNames(), QList<QString>{QStringLiteral("simple")});
}

TEST(VectorFont, CharacterHeightIsSeven)
{
    EXPECT_EQ(KEZVisVectorFont().GetCharacterHeight(), 7.0);
}

TEST(VectorFont, CharacterWidthIsSixForEveryCharacterInTheFontOrNot)
{
    const KEZVisVectorFont font;
    for (const char16_t c : {u'A', u'l', u'~', u'@', u' ', u'{', char16_t(0x00E9), char16_t(0x0082), char16_t(0x2603)})
        EXPECT_EQ(font.GetCharacterWidth(QChar(c)), 6.0) << int(c);
}

TEST(VectorFont, TildeGetsTheBox)
{
    ExpectBox(KEZVisVectorFont().GetCharacter(QChar(u'~')));
}

TEST(VectorFont, AtSignGetsTheBox)
{
    ExpectBox(KEZVisVectorFont().GetCharacter(QChar(u'@')));
}

TEST(VectorFont, BlankGetsTheBox)
{
    ExpectBox(KEZVisVectorFont().GetCharacter(QChar(u' ')));
}

TEST(VectorFont, GraveAccentBracesAndBarGetTheBox)
{
    const KEZVisVectorFont font;
    for (const char16_t c : {u'`', u'{', u'}', u'|'})
        ExpectBox(font.GetCharacter(QChar(c)));
}

TEST(VectorFont, GlyphOfCapitalAHasStrokesOfSixAndTwoPoints)
{
    const KEZVisVectorFontChar glyph = KEZVisVectorFont().GetCharacter(QChar(u'A'));
    EXPECT_EQ(glyph.GetCharacter(), QChar(u'A'));
    ASSERT_EQ(glyph.GetNumPolylines(), 2);
    ExpectPolyline(glyph.GetPolyline(0), {{0, 0}, {0, 5}, {1, 6}, {3, 6}, {4, 5}, {4, 0}});
    ExpectPolyline(glyph.GetPolyline(1), {{4, 3}, {0, 3}});
}

TEST(VectorFont, GlyphOfSmallLIsOneStrokeOfTwoPoints)
{
    const KEZVisVectorFontChar glyph = KEZVisVectorFont().GetCharacter(QChar(u'l'));
    ASSERT_EQ(glyph.GetNumPolylines(), 1);
    ExpectPolyline(glyph.GetPolyline(0), {{2, 6}, {2, 0}});
}

TEST(VectorFont, OpeningMinusFourPenUpOfSmallARingYieldsNothing)
{
    const KEZVisVectorFontChar glyph = KEZVisVectorFont().GetCharacter(QChar(char16_t(0x86)));
    ASSERT_EQ(glyph.GetNumPolylines(), 3);
    ExpectPolyline(glyph.GetPolyline(0), {{3, 4}, {2, 5}, {3, 6}, {4, 5}, {3, 4}});
}

TEST(VectorFont, OpeningMinusOnePenUpOfCapitalARingYieldsNothing)
{
    const KEZVisVectorFontChar glyph = KEZVisVectorFont().GetCharacter(QChar(char16_t(0x8F)));
    ASSERT_EQ(glyph.GetNumPolylines(), 3);
    ExpectPolyline(glyph.GetPolyline(2), {{3, 6}, {2, 7}, {3, 8}, {4, 7}, {3, 6}});
}

TEST(VectorFont, CodePoint82GetsTheGlyphOfSmallEAcute)
{
    const KEZVisVectorFontChar glyph = KEZVisVectorFont().GetCharacter(QChar(char16_t(0x82)));
    EXPECT_EQ(glyph.GetCharacter().unicode(), 0x82);
    ASSERT_EQ(glyph.GetNumPolylines(), 2);
    ExpectPolyline(glyph.GetPolyline(1), {{3, 6}, {1, 5}});
}

TEST(VectorFont, RealSmallEAcuteGetsTheBox)
{
    ExpectBox(KEZVisVectorFont().GetCharacter(QChar(char16_t(0x00E9))));
}

TEST(VectorFont, GlyphsOfTheBuiltInFontStateNoWidth)
{
    EXPECT_TRUE(std::isnan(KEZVisVectorFont().GetCharacter(QChar(u'W')).GetCharWidth()));
}

TEST(VectorFont, GlyphLookupSharesThePointsOfTheFont)
{
    const KEZVisVectorFont font;
    const KEZMathSetOfPoints2D first = font.GetCharacter(QChar(u'B')).GetPolyline(0);
    const KEZMathSetOfPoints2D second = font.GetCharacter(QChar(u'B')).GetPolyline(0);
    EXPECT_EQ(first.constData(), second.constData());
}

TEST(VectorFont, CopyAndAssignmentShareTheRecord)
{
    const KEZVisVectorFont font;
    const KEZVisVectorFont copy(font);
    KEZVisVectorFont assigned(QStringLiteral("x"));
    assigned = copy;
    KEZVisVectorFont &same = assigned;
    assigned = same;
    EXPECT_TRUE(ShareRecord(font, copy));
    EXPECT_TRUE(ShareRecord(font, assigned));
    EXPECT_EQ(assigned.GetCharacterHeight(), 7.0);
}
