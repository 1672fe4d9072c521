// Tests of KEZVisVectorText: its settings, the layout's documented cases in
// the built-in font, the rep it creates, and its enumerations with labels.

#include "VectorTextTestSupport.h"

#include <KEZVisOptions.h>
#include <KEZVisPolylinePrimitive.h>
#include <KEZVisRepGraphics.h>
#include <KEZVisVectorText.h>

#include <KEZMathPlane.h>
#include <KEZMathVector.h>

#include <QColor>
#include <QList>
#include <QStringList>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <memory>

using KEZTest::ExpectPoint;

namespace {

using Points = std::vector<std::array<double, 3>>;

void ExpectPoints(const KEZMathSetOfPoints &actual, const Points &expected)
{
    ASSERT_EQ(actual.size(), qsizetype(expected.size()));
    for (size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(testing::Message() << "point " << i);
        ExpectPoint(actual.at(qsizetype(i)), expected[i][0], expected[i][1], expected[i][2]);
    }
}

KEZVisVectorText SizedText(const QString &text, double size = 7.0)
{
    KEZVisVectorText vectorText(text, KEZVisVectorFont());
    vectorText.SetTextSize(size);
    return vectorText;
}

// The first point of each polyline.
QList<KEZMathPoint> FirstPoints(const QList<KEZMathSetOfPoints> &polylines)
{
    QList<KEZMathPoint> points;
    for (const KEZMathSetOfPoints &polyline : polylines)
        points.append(polyline.first());
    return points;
}

const Points GlyphA0{{0, 0, 0}, {0, 5, 0}, {1, 6, 0}, {3, 6, 0}, {4, 5, 0}, {4, 0, 0}};
const Points GlyphA1{{4, 3, 0}, {0, 3, 0}};

} // namespace

// Settings

TEST(VectorText, DefaultsAreNullTextSimpleFontBottomLeftAndSizeZero)
{
    const KEZVisVectorText text;
    EXPECT_TRUE(text.GetText().isNull());
    EXPECT_EQ(text.GetFont().GetName(), QStringLiteral("simple"));
    EXPECT_EQ(text.GetAnchor(), KEZVisVectorText::BottomLeft);
    EXPECT_EQ(text.GetLineSpacing(), 5.0);
    EXPECT_EQ(text.GetCharacterSpacing(), 0.0);
    EXPECT_EQ(text.GetOrientation(), KEZVisVectorText::LeftToRight);
    EXPECT_EQ(text.GetJustification(), KEZVisVectorText::JustifyLeft);
    EXPECT_EQ(text.GetDecorations(), QFlags<KEZVisVectorText::Decoration>());
    EXPECT_EQ(text.GetTextSize(), 0.0);
    EXPECT_EQ(text.GetTiltAngle(), 0.0);
    ExpectPoint(text.GetPlane().GetOrigin(), 0, 0, 0);
    KEZTest::ExpectVector(text.GetPlane().GetNormal(), 0, 0, 1);
}

TEST(VectorText, ConstructorWithTextAndFontKeepsTheOtherDefaults)
{
    const KEZVisVectorText text(QStringLiteral("ab\ncd"), KEZVisVectorFont(QStringLiteral("simple")));
    EXPECT_EQ(text.GetText(), QStringLiteral("ab\ncd"));
    EXPECT_EQ(text.GetFont().GetName(), QStringLiteral("simple"));
    EXPECT_EQ(text.GetLineSpacing(), 5.0);
    EXPECT_EQ(text.GetTextSize(), 0.0);
}

TEST(VectorText, SettersStoreEachValue)
{
    KEZVisVectorText text;
    KEZMathPlane plane;
    plane.SetOrigin(KEZMathPoint(1, 2, 3));
    text.SetText(QStringLiteral("x"));
    text.SetAnchor(KEZVisVectorText::TopRight);
    text.SetLineSpacing(2.5);
    text.SetCharacterSpacing(-0.5);
    text.SetOrientation(KEZVisVectorText::RightToLeft);
    text.SetJustification(KEZVisVectorText::JustifyCenter);
    text.SetDecorations(KEZVisVectorText::Underline | KEZVisVectorText::Overline);
    text.SetTextSize(3.5);
    text.SetTiltAngle(0.25);
    text.SetPlane(plane);
    EXPECT_EQ(text.GetText(), QStringLiteral("x"));
    EXPECT_EQ(text.GetAnchor(), KEZVisVectorText::TopRight);
    EXPECT_EQ(text.GetLineSpacing(), 2.5);
    EXPECT_EQ(text.GetCharacterSpacing(), -0.5);
    EXPECT_EQ(text.GetOrientation(), KEZVisVectorText::RightToLeft);
    EXPECT_EQ(text.GetJustification(), KEZVisVectorText::JustifyCenter);
    EXPECT_EQ(text.GetDecorations(), KEZVisVectorText::Underline | KEZVisVectorText::Overline);
    EXPECT_EQ(text.GetTextSize(), 3.5);
    EXPECT_EQ(text.GetTiltAngle(), 0.25);
    ExpectPoint(text.GetPlane().GetOrigin(), 1, 2, 3);
}

TEST(VectorText, SettingACopyLeavesTheOriginalAsItWas)
{
    const KEZVisVectorText original = SizedText(QStringLiteral("A"));
    KEZVisVectorText copy(original);
    copy.SetTextSize(14.0);
    copy.SetText(QStringLiteral("B"));
    EXPECT_EQ(original.GetTextSize(), 7.0);
    EXPECT_EQ(original.GetText(), QStringLiteral("A"));
    EXPECT_EQ(copy.GetTextSize(), 14.0);
}

TEST(VectorText, AssignmentTakesTheSettingsAndSelfAssignmentKeepsThem)
{
    KEZVisVectorText text;
    text = SizedText(QStringLiteral("A"), 3.0);
    KEZVisVectorText &same = text;
    text = same;
    EXPECT_EQ(text.GetText(), QStringLiteral("A"));
    EXPECT_EQ(text.GetTextSize(), 3.0);
}

// Layout

TEST(VectorText, EmptyTextGivesNoPolylines)
{
    EXPECT_TRUE(SizedText(QString()).GetPolylines().isEmpty());
    EXPECT_TRUE(SizedText(QStringLiteral("")).GetPolylines().isEmpty());
}

TEST(VectorText, TextWithoutSizeCollapsesEveryGlyphToOnePoint)
{
    const KEZVisVectorText text(QStringLiteral("AB g"), KEZVisVectorFont());
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 2 + 1 + 2);
    for (const KEZMathSetOfPoints &polyline : polylines) {
        for (const KEZMathPoint &point : polyline)
            ExpectPoint(point, 0, 0, 0);
    }
}

TEST(VectorText, LetterAOfSizeSevenIsItsGridPoints)
{
    const QList<KEZMathSetOfPoints> polylines = SizedText(QStringLiteral("A")).GetPolylines();
    ASSERT_EQ(polylines.size(), 2);
    ExpectPoints(polylines.at(0), GlyphA0);
    ExpectPoints(polylines.at(1), GlyphA1);
}

TEST(VectorText, PointsTakeTheirZFromThePlane)
{
    KEZVisVectorText text = SizedText(QStringLiteral("l"));
    KEZMathPlane plane;
    plane.SetOrigin(KEZMathPoint(10, 20, 30));
    text.SetPlane(plane);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 1);
    ExpectPoints(polylines.at(0), {{12, 26, 30}, {12, 20, 30}});
}

TEST(VectorText, UnderlineOfLetterARunsAlongTheMeasuredWidthOfNine)
{
    KEZVisVectorText text = SizedText(QStringLiteral("A"));
    text.SetDecorations(KEZVisVectorText::Underline);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 3);
    ASSERT_EQ(polylines.at(2).size(), 2);
    EXPECT_EQ(polylines.at(2).at(0).GetX(), 0.0);
    EXPECT_EQ(polylines.at(2).at(1).GetX(), 9.0);
    EXPECT_DOUBLE_EQ(polylines.at(2).at(0).GetY(), -0.7);
    EXPECT_DOUBLE_EQ(polylines.at(2).at(1).GetY(), -0.7);
}

TEST(VectorText, DecorationsFollowTheGlyphsInBitOrder)
{
    KEZVisVectorText text = SizedText(QStringLiteral("A"), 10.0);
    text.SetDecorations(KEZVisVectorText::Overline | KEZVisVectorText::Underline | KEZVisVectorText::StrikeThrough);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 5);
    EXPECT_DOUBLE_EQ(polylines.at(2).at(0).GetY(), -1.0);
    EXPECT_DOUBLE_EQ(polylines.at(3).at(0).GetY(), 5.0);
    EXPECT_DOUBLE_EQ(polylines.at(4).at(0).GetY(), 11.0);
    // The measured width: 6 grid units times 1.5 times the scale 10/7.
    EXPECT_DOUBLE_EQ(polylines.at(4).at(1).GetX(), 6.0 * 1.5 * 10.0 / 7.0);
}

TEST(VectorText, BlankDrawsNothingAndAdvancesBySix)
{
    const QList<KEZMathSetOfPoints> polylines = SizedText(QStringLiteral("A B")).GetPolylines();
    ASSERT_EQ(polylines.size(), 3);
    ASSERT_EQ(polylines.at(2).size(), 11);
    // B's first grid point is (3, 3); its glyph starts at x = 12.
    ExpectPoint(polylines.at(2).at(0), 15, 3, 0);
    ExpectPoint(polylines.at(2).at(5), 12, 6, 0);
}

TEST(VectorText, CharacterSpacingAddsToEachAdvance)
{
    KEZVisVectorText text = SizedText(QStringLiteral("lll"));
    text.SetCharacterSpacing(0.5);
    const QList<KEZMathPoint> starts = FirstPoints(text.GetPolylines());
    ASSERT_EQ(starts.size(), 3);
    EXPECT_EQ(starts.at(0).GetX(), 2.0);
    EXPECT_EQ(starts.at(1).GetX(), 8.5);
    EXPECT_EQ(starts.at(2).GetX(), 15.0);
}

TEST(VectorText, TwoLinesOfSizeSevenLieFifteenAndAHalfApart)
{
    const QList<KEZMathSetOfPoints> polylines = SizedText(QStringLiteral("A\nA")).GetPolylines();
    ASSERT_EQ(polylines.size(), 4);
    ExpectPoint(polylines.at(0).at(0), 0, 15.5, 0);
    ExpectPoint(polylines.at(2).at(0), 0, 0, 0);
}

TEST(VectorText, TopLeftAnchorPutsTwoLinesOfSizeSevenBelowTheOrigin)
{
    KEZVisVectorText text = SizedText(QStringLiteral("A\nA"));
    text.SetAnchor(KEZVisVectorText::TopLeft);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 4);
    ExpectPoint(polylines.at(0).at(0), 0, -7, 0);
    ExpectPoint(polylines.at(2).at(0), 0, -22.5, 0);
}

TEST(VectorText, MiddleAnchorMovesBlockDownByHalfItsHeightAndLeftByHalfItsWidth)
{
    // H = 22.5 for two lines of size 7; W = 9 for one letter.
    KEZVisVectorText text = SizedText(QStringLiteral("A\nA"));
    text.SetAnchor(KEZVisVectorText::Middle);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ExpectPoint(polylines.at(2).at(0), -4.5, -11.25, 0);
}

TEST(VectorText, TopRightAnchorPutsTheRightEndOfTheWidestMeasuredLineAtZero)
{
    KEZVisVectorText text = SizedText(QStringLiteral("AB\nA"));
    text.SetAnchor(KEZVisVectorText::TopRight);
    text.SetDecorations(KEZVisVectorText::Underline);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    // Line one: A (2), B (1), underline; line two: A (2), underline.
    ASSERT_EQ(polylines.size(), 7);
    EXPECT_EQ(polylines.at(3).at(0).GetX(), -18.0);
    EXPECT_EQ(polylines.at(3).at(1).GetX(), 0.0);
    EXPECT_EQ(polylines.at(0).at(0).GetX(), -18.0);
    EXPECT_EQ(polylines.at(4).at(0).GetX(), -18.0);
}

TEST(VectorText, RightJustificationReplacesTheAnchorsHorizontalPart)
{
    KEZVisVectorText text = SizedText(QStringLiteral("AB\nA"));
    text.SetAnchor(KEZVisVectorText::TopRight);
    text.SetJustification(KEZVisVectorText::JustifyRight);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 5);
    // The widest line starts at 0, the shorter one at W - w = 18 - 9.
    EXPECT_EQ(polylines.at(0).at(0).GetX(), 0.0);
    EXPECT_EQ(polylines.at(3).at(0).GetX(), 9.0);
    // The vertical part of the anchor holds.
    EXPECT_EQ(polylines.at(0).at(0).GetY(), -7.0);
}

TEST(VectorText, CenterJustificationStartsLinesAtHalfTheirShortfall)
{
    KEZVisVectorText text = SizedText(QStringLiteral("AB\nA"));
    text.SetAnchor(KEZVisVectorText::BottomRight);
    text.SetJustification(KEZVisVectorText::JustifyCenter);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 5);
    EXPECT_EQ(polylines.at(0).at(0).GetX(), 0.0);
    EXPECT_EQ(polylines.at(3).at(0).GetX(), 4.5);
}

TEST(VectorText, RightToLeftMirrorsWithinTheMeasuredWidth)
{
    KEZVisVectorText text = SizedText(QStringLiteral("A"));
    text.SetOrientation(KEZVisVectorText::RightToLeft);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 2);
    ExpectPoints(polylines.at(0), {{9, 0, 0}, {9, 5, 0}, {8, 6, 0}, {6, 6, 0}, {5, 5, 0}, {5, 0, 0}});
}

TEST(VectorText, RightToLeftMirrorsGlyphOrderToo)
{
    KEZVisVectorText text = SizedText(QStringLiteral("ll"));
    text.SetOrientation(KEZVisVectorText::RightToLeft);
    const QList<KEZMathPoint> starts = FirstPoints(text.GetPolylines());
    // W = 18; the first l (x = 2) goes to 16, the second (x = 8) to 10.
    ASSERT_EQ(starts.size(), 2);
    EXPECT_EQ(starts.at(0).GetX(), 16.0);
    EXPECT_EQ(starts.at(1).GetX(), 10.0);
}

TEST(VectorText, OrientationsOtherThanMinusOneLayOutLeftToRight)
{
    const QList<KEZMathSetOfPoints> expected = SizedText(QStringLiteral("Ab")).GetPolylines();
    for (int value : {0, 2, -2, 7}) {
        KEZVisVectorText text = SizedText(QStringLiteral("Ab"));
        text.SetOrientation(KEZVisVectorText::Orientation(value));
        EXPECT_EQ(text.GetPolylines(), expected) << value;
    }
}

TEST(VectorText, TiltOfAQuarterTurnMovesTheTopBySixScaledUnits)
{
    KEZVisVectorText text = SizedText(QStringLiteral("l"), 14.0);
    text.SetTiltAngle(M_PI / 4);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 1);
    // l is (2, 6) to (2, 0); s = 2.
    KEZTest::ExpectPointNear(polylines.at(0).at(0), 4 + 6 * 2, 12, 0, 1e-12);
    ExpectPoint(polylines.at(0).at(1), 4, 0, 0);
}

TEST(VectorText, TiltLeavesTheGlyphPositionsAlongTheLine)
{
    KEZVisVectorText text = SizedText(QStringLiteral("ll"));
    text.SetTiltAngle(0.4);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 2);
    ExpectPoint(polylines.at(0).at(1), 2, 0, 0);
    ExpectPoint(polylines.at(1).at(1), 8, 0, 0);
}

TEST(VectorText, PlaneMapsTheLayoutIntoSpace)
{
    KEZVisVectorText text = SizedText(QStringLiteral("l"));
    KEZMathPlane plane;
    plane.SetOrigin(KEZMathPoint(1, 1, 1));
    plane.SetDirections(KEZMathVector(0, 1, 0), KEZMathVector(0, 0, 1));
    text.SetPlane(plane);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 1);
    ExpectPoints(polylines.at(0), {{1, 3, 7}, {1, 3, 1}});
}

TEST(VectorText, FinalLineBreakAddsNoLine)
{
    EXPECT_EQ(SizedText(QStringLiteral("A\n")).GetPolylines(), SizedText(QStringLiteral("A")).GetPolylines());
    EXPECT_EQ(SizedText(QStringLiteral("A\nB\n")).GetPolylines(), SizedText(QStringLiteral("A\nB")).GetPolylines());
}

TEST(VectorText, BlankLineKeepsItsPlaceInTheBlock)
{
    const QList<KEZMathSetOfPoints> polylines = SizedText(QStringLiteral("l\n\nl")).GetPolylines();
    ASSERT_EQ(polylines.size(), 2);
    EXPECT_EQ(polylines.at(0).at(1).GetY(), 31.0);
    EXPECT_EQ(polylines.at(1).at(1).GetY(), 0.0);
}

TEST(VectorText, BlankLineCarriesDecorationsOfMinusTheCharacterSpacing)
{
    KEZVisVectorText text = SizedText(QStringLiteral("l\n\nl"));
    text.SetCharacterSpacing(0.5);
    text.SetDecorations(KEZVisVectorText::StrikeThrough);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 2 + 1 + 2);
    ExpectPoints(polylines.at(2), {{0, 15.5 + 3.5, 0}, {-0.5, 15.5 + 3.5, 0}});
}

TEST(VectorText, CharacterWithoutGlyphDrawsTheBox)
{
    const QList<KEZMathSetOfPoints> polylines = SizedText(QStringLiteral("@")).GetPolylines();
    ASSERT_EQ(polylines.size(), 1);
    ExpectPoints(polylines.at(0), {{0, 0, 0}, {0, 6, 0}, {4, 6, 0}, {4, 0, 0}, {0, 0, 0}});
}

TEST(VectorText, LineOfBlanksHasNoPolylinesButAMeasuredWidth)
{
    KEZVisVectorText text = SizedText(QStringLiteral("  "));
    EXPECT_TRUE(text.GetPolylines().isEmpty());
    text.SetDecorations(KEZVisVectorText::Overline);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 1);
    EXPECT_EQ(polylines.at(0).at(1).GetX(), 18.0);
}

// Bad numbers

TEST(VectorText, NanSizeGivesNanPointsWithoutCrashing)
{
    KEZVisVectorText text = SizedText(QStringLiteral("A\nB"), std::nan(""));
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 3);
    EXPECT_TRUE(std::isnan(polylines.at(0).at(0).GetX()));
}

TEST(VectorText, InfiniteSizeGivesNonFinitePointsWithoutCrashing)
{
    KEZVisVectorText text = SizedText(QStringLiteral("l\nl"), std::numeric_limits<double>::infinity());
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 2);
    ASSERT_EQ(polylines.at(0).size(), 2);
    EXPECT_FALSE(std::isfinite(polylines.at(0).at(1).GetX()));
}

TEST(VectorText, TiltOfAQuarterTurnAboutTheBaselineKeepsBaselinePoints)
{
    // At pi/2 the shear factor is huge but finite; baseline points stay put.
    KEZVisVectorText text = SizedText(QStringLiteral("l"));
    text.SetTiltAngle(M_PI / 2);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 1);
    ExpectPoint(polylines.at(0).at(1), 2, 0, 0);
    EXPECT_GT(polylines.at(0).at(0).GetX(), 1e15);
}

TEST(VectorText, PlaneWithNanOriginGivesNanPoints)
{
    KEZVisVectorText text = SizedText(QStringLiteral("l"));
    KEZMathPlane plane;
    plane.SetOrigin(KEZMathPoint(std::nan(""), 0, 0));
    text.SetPlane(plane);
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    ASSERT_EQ(polylines.size(), 1);
    EXPECT_TRUE(std::isnan(polylines.at(0).at(0).GetX()));
    EXPECT_EQ(polylines.at(0).at(0).GetY(), 6.0);
}

// The rep

TEST(VectorText, RepOfAnEmptyTextIsAGraphicsRepWithoutPrimitives)
{
    const std::unique_ptr<KEZVisRep> rep(SizedText(QString()).CreateRep(KEZVisOptions(), true, 1.0));
    ASSERT_NE(dynamic_cast<KEZVisRepGraphics *>(rep.get()), nullptr);
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    rep->GetPrimitives(primitives, options);
    EXPECT_TRUE(primitives.isEmpty());
}

TEST(VectorText, RepHoldsOneConnectedPolylinePerPolylineWithTheOptions)
{
    KEZVisOptions options;
    options.SetColor(QColor(10, 20, 30));
    const KEZVisVectorText text = SizedText(QStringLiteral("A"));
    const std::unique_ptr<KEZVisRep> rep(text.CreateRep(options, false, 5.0));
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> optionsList;
    rep->GetPrimitives(primitives, optionsList);
    ASSERT_EQ(primitives.size(), 2);
    ASSERT_EQ(optionsList.size(), 2);
    EXPECT_EQ(optionsList.at(0), options);
    const auto *first = qobject_cast<const KEZVisPolylinePrimitive *>(primitives.at(0));
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->GetStructure(), KEZVisPolylinePrimitive::StructureConnected);
    EXPECT_EQ(first->GetCoordsAsDouble(),
              (std::vector<double>{0, 0, 0, 0, 5, 0, 1, 6, 0, 3, 6, 0, 4, 5, 0, 4, 0, 0}));
}

TEST(VectorText, DoubledRepFollowsEachPolylineWithACopyOffsetInWorldZ)
{
    KEZVisVectorText text = SizedText(QStringLiteral("l"));
    KEZMathPlane plane; // the plane's normal is along world x: the offset still goes along z
    plane.SetDirections(KEZMathVector(0, 1, 0), KEZMathVector(0, 0, 1));
    text.SetPlane(plane);
    text.SetDecorations(KEZVisVectorText::Underline);
    const std::unique_ptr<KEZVisRep> rep(text.CreateRep(KEZVisOptions(), true, 2.5));
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    rep->GetPrimitives(primitives, options);
    ASSERT_EQ(primitives.size(), 4);
    const auto coords = [&](int i) {
        return qobject_cast<const KEZVisPolylinePrimitive *>(primitives.at(i))->GetCoordsAsDouble();
    };
    EXPECT_EQ(coords(0), (std::vector<double>{0, 2, 6, 0, 2, 0}));
    EXPECT_EQ(coords(1), (std::vector<double>{0, 2, 8.5, 0, 2, 2.5}));
    EXPECT_EQ(coords(3).at(2), coords(2).at(2) + 2.5);
    EXPECT_EQ(coords(3).at(1), coords(2).at(1));
}

TEST(VectorText, EachCallLaysOutAnewWithTheCurrentSettings)
{
    KEZVisVectorText text = SizedText(QStringLiteral("l"));
    const QList<KEZMathSetOfPoints> before = text.GetPolylines();
    text.SetTextSize(14.0);
    const QList<KEZMathSetOfPoints> after = text.GetPolylines();
    ExpectPoint(before.at(0).at(0), 2, 6, 0);
    ExpectPoint(after.at(0).at(0), 4, 12, 0);
}

// Enumerations and labels

TEST(VectorText, AnchorsAreListedFromBottomLeftToTopRight)
{
    const QList<KEZVisVectorText::Anchor> anchors = KEZVisVectorText::GetAnchors();
    ASSERT_EQ(anchors.size(), 9);
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(int(anchors.at(i)), i);
}

TEST(VectorText, JustificationsAreListedLeftCenterRight)
{
    EXPECT_EQ(KEZVisVectorText::GetJustifications(),
              (QList<KEZVisVectorText::Justification>{KEZVisVectorText::Justification(0),
                                                      KEZVisVectorText::Justification(1),
                                                      KEZVisVectorText::Justification(2)}));
}

TEST(VectorText, OrientationsAreOneThenMinusOne)
{
    EXPECT_EQ(KEZVisVectorText::GetOrientations(),
              (QList<KEZVisVectorText::Orientation>{KEZVisVectorText::Orientation(1),
                                                    KEZVisVectorText::Orientation(-1)}));
}

TEST(VectorText, AnchorLabelsAreTheirNames)
{
    const QStringList expected{"Bottom Left", "Bottom Middle", "Bottom Right", "Middle Left", "Middle",
                               "Middle Right", "Top Left", "Top Middle", "Top Right"};
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(KEZVisVectorText::GetAnchorLabel(KEZVisVectorText::Anchor(i)), expected.at(i));
}

TEST(VectorText, JustificationLabelsKeepTheirCapitalization)
{
    EXPECT_EQ(KEZVisVectorText::GetJustificationLabel(KEZVisVectorText::JustifyLeft), QStringLiteral("Left"));
    EXPECT_EQ(KEZVisVectorText::GetJustificationLabel(KEZVisVectorText::JustifyCenter), QStringLiteral("center"));
    EXPECT_EQ(KEZVisVectorText::GetJustificationLabel(KEZVisVectorText::JustifyRight), QStringLiteral("right"));
}

TEST(VectorText, OrientationLabelsAreTheirNames)
{
    EXPECT_EQ(KEZVisVectorText::GetOrientationLabel(KEZVisVectorText::LeftToRight), QStringLiteral("Left To Right"));
    EXPECT_EQ(KEZVisVectorText::GetOrientationLabel(KEZVisVectorText::RightToLeft), QStringLiteral("Right To Left"));
}

TEST(VectorText, OrientationLabelOfZeroIsInvalidOrientation)
{
    EXPECT_EQ(KEZVisVectorText::GetOrientationLabel(KEZVisVectorText::Orientation(0)),
              QStringLiteral("Invalid Orientation"));
    EXPECT_EQ(KEZVisVectorText::GetOrientationLabel(KEZVisVectorText::Orientation(2)),
              QStringLiteral("Invalid Orientation"));
}

TEST(VectorText, AnchorLabelOutsideTheRangeIsEmpty)
{
    EXPECT_TRUE(KEZVisVectorText::GetAnchorLabel(KEZVisVectorText::Anchor(9)).isEmpty());
    EXPECT_TRUE(KEZVisVectorText::GetAnchorLabel(KEZVisVectorText::Anchor(-1)).isEmpty());
}

TEST(VectorText, JustificationLabelOutsideTheRangeIsEmpty)
{
    EXPECT_TRUE(KEZVisVectorText::GetJustificationLabel(KEZVisVectorText::Justification(3)).isEmpty());
    EXPECT_TRUE(KEZVisVectorText::GetJustificationLabel(KEZVisVectorText::Justification(-1)).isEmpty());
}

TEST(VectorText, TrTranslatesInTheClassContextWithoutATranslator)
{
    EXPECT_EQ(KEZVisVectorText::tr("Middle"), QStringLiteral("Middle"));
}
