// Tests of fonts that an application adds to the font directory with a Qt
// resource of its own: listing, loading once, and layouts in fonts whose
// height is 0 or missing. This program's resource adds the fonts "wide",
// "zero", "Zeta" and "headless" and two files that are no fonts.

#include "VectorTextTestSupport.h"

#include <KEZVisVectorFont.h>
#include <KEZVisVectorText.h>

#include <QList>
#include <QString>

#include <gtest/gtest.h>

#include <cmath>

namespace {

bool ShareRecord(const KEZVisVectorFont &a, const KEZVisVectorFont &b)
{
    return a.GetName().constData() == b.GetName().constData();
}

} // namespace

TEST(VectorFontResource, FontNamesListEveryVctFileByNameIgnoringCase)
{
    EXPECT_EQ(KEZVisVectorFont::GetFontNames(),
              (QList<QString>{QStringLiteral("headless"), QStringLiteral("simple"), QStringLiteral("wide"),
                              QStringLiteral("zero"), QStringLiteral("Zeta")}));
}

TEST(VectorFontResource, AddedFontLoadsWithItsHeightWidthsAndName)
{
    const KEZVisVectorFont font(QStringLiteral("wide"));
    EXPECT_EQ(font.GetName(), QStringLiteral("wide"));
    EXPECT_EQ(font.GetCharacterHeight(), 10.0);
    EXPECT_EQ(font.GetCharacterWidth(QChar(u'A')), 5.0);
    EXPECT_EQ(font.GetCharacterWidth(QChar(u'B')), 2.5);
    EXPECT_EQ(font.GetCharacterWidth(QChar(u'C')), 4.0);
    EXPECT_EQ(font.GetCharacterWidth(QChar(u'Q')), 4.0);
}

TEST(VectorFontResource, AddedFontIsLoadedOnceAndShared)
{
    EXPECT_TRUE(ShareRecord(KEZVisVectorFont(QStringLiteral("Zeta")), KEZVisVectorFont(QStringLiteral("Zeta"))));
    EXPECT_FALSE(ShareRecord(KEZVisVectorFont(QStringLiteral("Zeta")), KEZVisVectorFont()));
}

TEST(VectorFontResource, NamesCompareCaseSensitively)
{
    EXPECT_EQ(KEZVisVectorFont(QStringLiteral("zeta")).GetName(), QStringLiteral("simple"));
    EXPECT_EQ(KEZVisVectorFont(QStringLiteral("Zeta")).GetName(), QStringLiteral("Zeta"));
}

TEST(VectorFontResource, FileWithAnotherLastSuffixIsNoFont)
{
    // old.vct.bak has the base name "old" but the suffix "bak".
    EXPECT_EQ(KEZVisVectorFont(QStringLiteral("old")).GetName(), QStringLiteral("simple"));
}

TEST(VectorFontResource, FontWithoutEmptyLineHasHeightAndWidthMinusOne)
{
    const KEZVisVectorFont font(QStringLiteral("headless"));
    EXPECT_EQ(font.GetCharacterHeight(), -1.0);
    EXPECT_EQ(font.GetCharacterWidth(QChar(u'A')), -1.0);
    EXPECT_EQ(font.GetCharacter(QChar(u'A')).GetCharacter(), QChar(u'A'));
    EXPECT_EQ(font.GetCharacter(QChar(u'B')).GetCharacter(), QChar(u'~'));
}

TEST(VectorFontResource, LayoutInAFontOfHeightMinusOneScalesByMinusTheSize)
{
    KEZVisVectorText text(QStringLiteral("A"), KEZVisVectorFont(QStringLiteral("headless")));
    text.SetTextSize(7.0);
    text.SetDecorations(KEZVisVectorText::Underline);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 2);
    KEZTest::ExpectPoint(polylines.at(0).at(1), -7, -7, 0);
    // The measured width: -1 grid unit times 1.5 times the scale -7.
    EXPECT_EQ(polylines.at(1).at(1).GetX(), 10.5);
}

TEST(VectorFontResource, LayoutInAFontOfHeightZeroGivesNonFinitePointsWithoutCrashing)
{
    const KEZVisVectorFont font(QStringLiteral("zero"));
    ASSERT_EQ(font.GetCharacterHeight(), 0.0);
    KEZVisVectorText text(QStringLiteral("A\nA"), font);
    text.SetTextSize(7.0);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 2);
    ASSERT_EQ(polylines.at(0).size(), 2);
    EXPECT_FALSE(std::isfinite(polylines.at(0).at(0).GetX()));
    EXPECT_FALSE(std::isfinite(polylines.at(0).at(1).GetX()));
}
