// Tests of KEZVisTextPrimitive: its values and its font-measured box.

#include "KEZVisOptions.h"
#include "KEZVisTextPrimitive.h"

#include "KEZMathBoundingBox.h"
#include "KEZMathPoint.h"

#include <QFont>
#include <QFontMetrics>
#include <QRect>

#include <gtest/gtest.h>

namespace {

KEZVisOptions optionsWithPointSize(int pointSize)
{
    KEZVisOptions options;
    QFont font = options.GetFont();
    font.setPointSize(pointSize);
    options.SetFont(font);
    return options;
}

// The rectangle that QFontMetrics reports for the text in the font of the options.
QRect metricsRect(const KEZVisOptions &options, const QString &text)
{
    return QFontMetrics(options.GetFont()).boundingRect(text);
}

// Expects the box made of the corners (left, bottom, z) and (right, top, z) of rect.
void expectBoxOfRect(const KEZMathBoundingBox &box, const QRect &rect, double z)
{
    EXPECT_EQ(box.GetLowerPoint().GetX(), double(rect.left()));
    EXPECT_EQ(box.GetUpperPoint().GetX(), double(rect.right()));
    EXPECT_EQ(box.GetLowerPoint().GetY(), double(qMin(rect.top(), rect.bottom())));
    EXPECT_EQ(box.GetUpperPoint().GetY(), double(qMax(rect.top(), rect.bottom())));
    EXPECT_EQ(box.GetLowerPoint().GetZ(), z);
    EXPECT_EQ(box.GetUpperPoint().GetZ(), z);
}

} // namespace

TEST(TextPrimitive, KeepsTheValuesGiven)
{
    const KEZVisTextPrimitive text(QStringLiteral("Hi"), KEZMathPoint(1.0, 2.0, 3.0),
                                   KEZVisTextPrimitive::AnchorTopRight, KEZVisTextPrimitive::ScalabilityFixedSize);
    EXPECT_EQ(text.GetText(), QStringLiteral("Hi"));
    EXPECT_EQ(text.GetAnchor().GetX(), 1.0);
    EXPECT_EQ(text.GetAnchor().GetY(), 2.0);
    EXPECT_EQ(text.GetAnchor().GetZ(), 3.0);
    EXPECT_EQ(text.GetAnchorLocation(), KEZVisTextPrimitive::AnchorTopRight);
    EXPECT_EQ(text.GetScalability(), KEZVisTextPrimitive::ScalabilityFixedSize);
}

TEST(TextPrimitive, AnchorLocationsAreCountedColumnByColumn)
{
    EXPECT_EQ(int(KEZVisTextPrimitive::AnchorBottomLeft), 0);
    EXPECT_EQ(int(KEZVisTextPrimitive::AnchorLeft), 1);
    EXPECT_EQ(int(KEZVisTextPrimitive::AnchorTopLeft), 2);
    EXPECT_EQ(int(KEZVisTextPrimitive::AnchorBottom), 3);
    EXPECT_EQ(int(KEZVisTextPrimitive::AnchorCenter), 4);
    EXPECT_EQ(int(KEZVisTextPrimitive::AnchorTop), 5);
    EXPECT_EQ(int(KEZVisTextPrimitive::AnchorBottomRight), 6);
    EXPECT_EQ(int(KEZVisTextPrimitive::AnchorRight), 7);
    EXPECT_EQ(int(KEZVisTextPrimitive::AnchorTopRight), 8);
    EXPECT_EQ(sizeof(KEZVisTextPrimitive::AnchorLocation), sizeof(int));
    EXPECT_EQ(sizeof(KEZVisTextPrimitive::Scalability), sizeof(int));
}

TEST(TextPrimitive, KeepsAnAnchorLocationOutsideTheEnumeration)
{
    const KEZVisTextPrimitive text(QStringLiteral("x"), KEZMathPoint(), KEZVisTextPrimitive::AnchorLocation(42),
                                   KEZVisTextPrimitive::Scalability(-7));
    EXPECT_EQ(int(text.GetAnchorLocation()), 42);
    EXPECT_EQ(int(text.GetScalability()), -7);
}

TEST(TextPrimitive, AnchorAtFractionalPointWithTopLeftMovesTheRectToTheTruncatedAnchor)
{
    const KEZVisOptions options;
    const KEZVisTextPrimitive text(QStringLiteral("Label"), KEZMathPoint(10.7, 20.9, 3.0),
                                   KEZVisTextPrimitive::AnchorTopLeft, KEZVisTextPrimitive::ScalabilityScalable);
    QRect expected = metricsRect(options, QStringLiteral("Label"));
    expected.moveTo(10, 20);
    expectBoxOfRect(text.GetBoundingBox(options), expected, 3.0);
}

TEST(TextPrimitive, EveryLocationPlacesTheRectByItsRowAndColumn)
{
    const KEZVisOptions options;
    const QString label = QStringLiteral("Wide text");
    const QRect base = metricsRect(options, label);
    const double w = base.width();
    const double h = base.height();
    const double X = 100.0;
    const double Y = 50.0;
    // Rows, y up: bottom row adds h, middle adds h / 2, top adds nothing.
    const double tops[3] = {Y + h, Y + h * 0.5, Y};
    const double lefts[3] = {X, X - w * 0.5, X - w};
    for (int location = 0; location <= 8; ++location) {
        SCOPED_TRACE(location);
        const KEZVisTextPrimitive text(label, KEZMathPoint(X, Y, -2.0),
                                       KEZVisTextPrimitive::AnchorLocation(location),
                                       KEZVisTextPrimitive::ScalabilityScalable);
        QRect expected = base;
        expected.moveTo(int(lefts[location / 3]), int(tops[location % 3]));
        expectBoxOfRect(text.GetBoundingBox(options), expected, -2.0);
    }
}

TEST(TextPrimitive, BottomLeftAndTopLeftDifferByTheHeightInYOnly)
{
    const KEZVisOptions options;
    const QString label = QStringLiteral("Gap");
    const double h = metricsRect(options, label).height();
    ASSERT_GT(h, 0.0);
    const KEZVisTextPrimitive bottom(label, KEZMathPoint(5.0, 5.0, 1.0), KEZVisTextPrimitive::AnchorBottomLeft,
                                     KEZVisTextPrimitive::ScalabilityScalable);
    const KEZVisTextPrimitive top(label, KEZMathPoint(5.0, 5.0, 1.0), KEZVisTextPrimitive::AnchorTopLeft,
                                  KEZVisTextPrimitive::ScalabilityScalable);
    const KEZMathBoundingBox a = bottom.GetBoundingBox(options);
    const KEZMathBoundingBox b = top.GetBoundingBox(options);
    EXPECT_EQ(a.GetLowerPoint().GetY() - b.GetLowerPoint().GetY(), h);
    EXPECT_EQ(a.GetUpperPoint().GetY() - b.GetUpperPoint().GetY(), h);
    EXPECT_EQ(a.GetLowerPoint().GetX(), b.GetLowerPoint().GetX());
    EXPECT_EQ(a.GetUpperPoint().GetX(), b.GetUpperPoint().GetX());
    EXPECT_EQ(a.GetLowerPoint().GetZ(), b.GetLowerPoint().GetZ());
}

TEST(TextPrimitive, LocationOutsideZeroToEightLeavesTheRectWhereTheMetricsPutIt)
{
    const KEZVisOptions options;
    const QString label = QStringLiteral("Stay");
    const QRect reported = metricsRect(options, label);
    const KEZVisTextPrimitive text(label, KEZMathPoint(1000.0, -500.0, 7.5), KEZVisTextPrimitive::AnchorLocation(9),
                                   KEZVisTextPrimitive::ScalabilityScalable);
    expectBoxOfRect(text.GetBoundingBox(options), reported, 7.5);
}

TEST(TextPrimitive, NegativeLocationAlsoLeavesTheRectWhereTheMetricsPutIt)
{
    const KEZVisOptions options;
    const QString label = QStringLiteral("Stay");
    const KEZVisTextPrimitive text(label, KEZMathPoint(30.0, 40.0, 0.0), KEZVisTextPrimitive::AnchorLocation(-1),
                                   KEZVisTextPrimitive::ScalabilityScalable);
    expectBoxOfRect(text.GetBoundingBox(options), metricsRect(options, label), 0.0);
}

TEST(TextPrimitive, EmptyTextCollapsesTheBoxNearTheAnchorAtItsZ)
{
    const KEZVisOptions options;
    const KEZVisTextPrimitive text(QString(), KEZMathPoint(10.0, 20.0, 4.0), KEZVisTextPrimitive::AnchorTopLeft,
                                   KEZVisTextPrimitive::ScalabilityScalable);
    const KEZMathBoundingBox box = text.GetBoundingBox(options);
    // An empty QRect moved to (10, 20) has right 9 and bottom 19.
    EXPECT_EQ(box.GetLowerPoint().GetX(), 9.0);
    EXPECT_EQ(box.GetUpperPoint().GetX(), 10.0);
    EXPECT_EQ(box.GetLowerPoint().GetY(), 19.0);
    EXPECT_EQ(box.GetUpperPoint().GetY(), 20.0);
    EXPECT_EQ(box.GetLowerPoint().GetZ(), 4.0);
    EXPECT_EQ(box.GetUpperPoint().GetZ(), 4.0);
}

TEST(TextPrimitive, TwoFontSizesGiveTwoDifferentBoxes)
{
    const KEZVisTextPrimitive text(QStringLiteral("Size"), KEZMathPoint(0.0, 0.0, 0.0),
                                   KEZVisTextPrimitive::AnchorTopLeft, KEZVisTextPrimitive::ScalabilityScalable);
    const KEZMathBoundingBox small = text.GetBoundingBox(optionsWithPointSize(8));
    const KEZMathBoundingBox large = text.GetBoundingBox(optionsWithPointSize(40));
    EXPECT_NE(small, large);
    EXPECT_LT(small.GetDeltaX(), large.GetDeltaX());
}

TEST(TextPrimitive, NegativeAnchorTruncatesTowardsZero)
{
    const KEZVisOptions options;
    const QString label = QStringLiteral("Neg");
    const KEZVisTextPrimitive text(label, KEZMathPoint(-10.7, -20.9, 0.0), KEZVisTextPrimitive::AnchorTopLeft,
                                   KEZVisTextPrimitive::ScalabilityScalable);
    QRect expected = metricsRect(options, label);
    expected.moveTo(-10, -20);
    expectBoxOfRect(text.GetBoundingBox(options), expected, 0.0);
}

TEST(TextPrimitive, NanAndHugeAnchorsGiveAFiniteBoxWithoutCrashing)
{
    const KEZVisOptions options;
    const QString label = QStringLiteral("Bad");
    const KEZVisTextPrimitive nanText(label, KEZMathPoint(qQNaN(), qQNaN(), 0.0), KEZVisTextPrimitive::AnchorCenter,
                                      KEZVisTextPrimitive::ScalabilityScalable);
    QRect atZero = metricsRect(options, label);
    atZero.moveTo(0, 0);
    expectBoxOfRect(nanText.GetBoundingBox(options), atZero, 0.0);

    const KEZVisTextPrimitive hugeText(label, KEZMathPoint(1e300, -qInf(), 0.0), KEZVisTextPrimitive::AnchorTopLeft,
                                       KEZVisTextPrimitive::ScalabilityScalable);
    QRect clamped = metricsRect(options, label);
    clamped.moveTo(1 << 30, -(1 << 30));
    expectBoxOfRect(hugeText.GetBoundingBox(options), clamped, 0.0);
}
