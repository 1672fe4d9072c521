// The layout of KEZVisVectorText on random settings, against a computation of
// the layout rules written here from scratch: glyphs from the tests' own copy
// of the font tables, every anchor, justification, orientation, decoration,
// tilt, spacing and plane, texts of several lines with blank lines and
// characters without a glyph, in the built-in font and in a font with glyph
// widths of its own.

#include "SimpleFontTable.h"
#include "VectorTextTestSupport.h"

#include <KEZVisOptions.h>
#include <KEZVisPolylinePrimitive.h>
#include <KEZVisRep.h>
#include <KEZVisVectorText.h>

#include <KEZMathPlane.h>
#include <KEZMathVector.h>

#include <QHash>
#include <QString>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <memory>
#include <random>

namespace {

using Point3 = std::array<double, 3>;
using Polyline3 = std::vector<Point3>;

struct ModelGlyph
{
    std::vector<KEZTextTest::Stroke> strokes;
    double width = std::nan("");
};

struct ModelFont
{
    QHash<char16_t, ModelGlyph> glyphs;
    double height = 0;
    double defaultWidth = 0;

    const ModelGlyph &Glyph(char16_t c) const
    {
        static const ModelGlyph box{{{{0, 0}, {0, 6}, {4, 6}, {4, 0}, {0, 0}}}, std::nan("")};
        const auto found = glyphs.constFind(c);
        return found == glyphs.cend() ? box : found.value();
    }

    double Width(char16_t c) const
    {
        const double width = Glyph(c).width;
        return std::isnan(width) ? defaultWidth : width;
    }
};

ModelFont SimpleModel()
{
    ModelFont font;
    font.height = 7;
    font.defaultWidth = 6;
    for (const SimpleFont::Row &row : SimpleFont::Rows)
        font.glyphs.insert(char16_t(row.byte), ModelGlyph{KEZTextTest::ExpectedStrokes(row.coordinates), std::nan("")});
    return font;
}

// The test font "wide" (tests/text/fonts/wide.vct), described by hand.
ModelFont WideModel()
{
    ModelFont font;
    font.height = 10;
    font.defaultWidth = 4;
    font.glyphs.insert(u'A', ModelGlyph{{{{0, 0}, {2, 6}, {4, 0}}}, 5.0});
    font.glyphs.insert(u'B', ModelGlyph{{{{0, 0}, {0, 10}}}, 2.5});
    font.glyphs.insert(u'C', ModelGlyph{{{{0, 0}, {1, 1}}}, std::nan("")});
    return font;
}

struct Settings
{
    QString text;
    int anchor = 0;
    double lineSpacing = 5;
    double characterSpacing = 0;
    int orientation = 1;
    int justification = 0;
    int decorations = 0;
    double size = 0;
    double tilt = 0;
    KEZMathPlane plane;
};

QStringList ModelLines(const QString &text)
{
    if (text.isEmpty())
        return QStringList();
    QStringList lines = text.split(QChar(u'\n'));
    if (text.endsWith(QChar(u'\n')))
        lines.removeLast();
    return lines;
}

Point3 OnPlane(const KEZMathPlane &plane, double u, double v)
{
    const KEZMathPoint o = plane.GetOrigin();
    const KEZMathVector x = plane.GetFirstDirection();
    const KEZMathVector y = plane.GetSecondDirection();
    return {o.GetX() + u * x.GetX() + v * y.GetX(), o.GetY() + u * x.GetY() + v * y.GetY(),
            o.GetZ() + u * x.GetZ() + v * y.GetZ()};
}

std::vector<Polyline3> ModelLayout(const ModelFont &font, const Settings &settings)
{
    const QStringList lines = ModelLines(settings.text);
    const int n = int(lines.size());
    const double s = settings.size / font.height;
    const double lean = std::tan(settings.tilt);

    std::vector<double> widths;
    double blockWidth = 0;
    for (const QString &line : lines) {
        double advanceSum = 0;
        for (QChar c : line)
            advanceSum += font.Width(c.unicode());
        const double width = 1.5 * s * advanceSum + (line.size() - 1) * settings.characterSpacing;
        widths.push_back(width);
        blockWidth = std::max(blockWidth, width);
    }
    const double blockHeight = n * settings.size + (n - 1) * (0.5 * settings.size + settings.lineSpacing);
    const double factors[] = {0.0, -0.5, -1.0};
    const double originX = factors[settings.anchor % 3] * blockWidth;
    const double originY = factors[settings.anchor / 3] * blockHeight;

    std::vector<Polyline3> result;
    const auto output = [&](const std::vector<std::pair<double, double>> &points) {
        Polyline3 polyline;
        for (auto [u, v] : points) {
            if (settings.orientation == -1)
                u = 2 * originX + blockWidth - u;
            polyline.push_back(OnPlane(settings.plane, u, v));
        }
        result.push_back(polyline);
    };

    for (int i = 0; i < n; ++i) {
        const QString &line = lines.at(i);
        const double baseline = originY + (n - 1 - i) * (1.5 * settings.size + settings.lineSpacing);
        double startX = originX;
        if (settings.justification == 1)
            startX = (blockWidth - widths[size_t(i)]) / 2;
        else if (settings.justification == 2)
            startX = blockWidth - widths[size_t(i)];
        double cursor = startX;
        for (QChar c : line) {
            if (c != QChar(u' ')) {
                for (const KEZTextTest::Stroke &stroke : font.Glyph(c.unicode()).strokes) {
                    std::vector<std::pair<double, double>> points;
                    for (auto [gx, gy] : stroke)
                        points.emplace_back(cursor + s * (gx + lean * gy), baseline + s * gy);
                    output(points);
                }
            }
            cursor += s * font.Width(c.unicode()) + settings.characterSpacing;
        }
        const double heights[] = {-0.1, 0.5, 1.1};
        for (int bit = 0; bit < 3; ++bit) {
            if (settings.decorations & (1 << bit)) {
                const double y = baseline + heights[bit] * settings.size;
                output({{startX, y}, {startX + widths[size_t(i)], y}});
            }
        }
    }
    return result;
}

bool Near(double actual, double expected)
{
    return std::abs(actual - expected) <= 1e-9 * std::max(1.0, std::abs(expected));
}

std::string Compare(const QList<KEZMathSetOfPoints> &actual, const std::vector<Polyline3> &expected)
{
    if (actual.size() != qsizetype(expected.size()))
        return "polyline count " + std::to_string(actual.size()) + " instead of " + std::to_string(expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        const KEZMathSetOfPoints &polyline = actual.at(qsizetype(i));
        if (polyline.size() != qsizetype(expected[i].size()))
            return "size of polyline " + std::to_string(i);
        for (size_t j = 0; j < expected[i].size(); ++j) {
            const KEZMathPoint &p = polyline.at(qsizetype(j));
            if (!Near(p.GetX(), expected[i][j][0]) || !Near(p.GetY(), expected[i][j][1])
                || !Near(p.GetZ(), expected[i][j][2]))
                return "point " + std::to_string(j) + " of polyline " + std::to_string(i);
        }
    }
    return std::string();
}

class SettingsMaker
{
public:
    explicit SettingsMaker(unsigned seed) : m_random(seed) {}

    Settings Make(const QString &alphabet)
    {
        Settings settings;
        const int lines = Pick(6);
        for (int i = 0; i < lines; ++i) {
            if (i > 0)
                settings.text.append(QChar(u'\n'));
            const int length = Pick(4) == 0 ? 0 : Pick(14);
            for (int j = 0; j < length; ++j)
                settings.text.append(alphabet.at(Pick(int(alphabet.size()))));
        }
        if (Pick(4) == 0)
            settings.text.append(QChar(u'\n'));
        settings.anchor = Pick(9);
        settings.justification = Pick(3);
        const int orientations[] = {1, -1, 1, -1, 0, 2};
        settings.orientation = orientations[Pick(6)];
        settings.decorations = Pick(8);
        settings.size = Pick(10) == 0 ? 0.0 : Real(0.1, 30);
        settings.tilt = Pick(3) == 0 ? 0.0 : Real(-1.2, 1.2);
        settings.lineSpacing = Real(-3, 10);
        settings.characterSpacing = Pick(3) == 0 ? 0.0 : Real(-2, 4);
        settings.plane.SetOrigin(KEZMathPoint(Real(-100, 100), Real(-100, 100), Real(-100, 100)));
        if (Pick(4) != 0) {
            const KEZMathVector x(Real(-1, 1), Real(-1, 1), Real(-1, 1));
            const KEZMathVector y(Real(-1, 1), Real(-1, 1), Real(-1, 1));
            try {
                settings.plane.SetDirections(x, y);
            } catch (...) {
                // Directions without magnitude leave the default frame.
            }
        }
        return settings;
    }

    double Real(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_random); }
    int Pick(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(m_random); }

private:
    std::mt19937 m_random;
};

KEZVisVectorText TextOf(const Settings &settings, const KEZVisVectorFont &font)
{
    KEZVisVectorText text(settings.text, font);
    text.SetAnchor(KEZVisVectorText::Anchor(settings.anchor));
    text.SetJustification(KEZVisVectorText::Justification(settings.justification));
    text.SetOrientation(KEZVisVectorText::Orientation(settings.orientation));
    text.SetDecorations(QFlags<KEZVisVectorText::Decoration>::fromInt(settings.decorations));
    text.SetTextSize(settings.size);
    text.SetTiltAngle(settings.tilt);
    text.SetLineSpacing(settings.lineSpacing);
    text.SetCharacterSpacing(settings.characterSpacing);
    text.SetPlane(settings.plane);
    return text;
}

QString SimpleAlphabet()
{
    QString alphabet = QStringLiteral("AaBbgjlMW0159.,-_  @~{|`");
    alphabet.append(QChar(char16_t(0x82)));
    alphabet.append(QChar(char16_t(0x92)));
    alphabet.append(QChar(char16_t(0xE9)));
    return alphabet;
}

} // namespace

TEST(VectorTextRandom, LayoutInTheBuiltInFontFollowsTheRules)
{
    const ModelFont model = SimpleModel();
    const KEZVisVectorFont font;
    SettingsMaker maker(1601);
    for (int run = 0; run < 1500; ++run) {
        const Settings settings = maker.Make(SimpleAlphabet());
        const std::string difference = Compare(TextOf(settings, font).GetPolylines(), ModelLayout(model, settings));
        ASSERT_EQ(difference, std::string()) << "run " << run << ", text \"" << settings.text.toStdString() << "\"";
    }
}

TEST(VectorTextRandom, LayoutInAFontWithGlyphWidthsFollowsTheRules)
{
    const ModelFont model = WideModel();
    const KEZVisVectorFont font(QStringLiteral("wide"));
    ASSERT_EQ(font.GetName(), QStringLiteral("wide"));
    SettingsMaker maker(1602);
    for (int run = 0; run < 1500; ++run) {
        const Settings settings = maker.Make(QStringLiteral("ABCx  "));
        const std::string difference = Compare(TextOf(settings, font).GetPolylines(), ModelLayout(model, settings));
        ASSERT_EQ(difference, std::string()) << "run " << run << ", text \"" << settings.text.toStdString() << "\"";
    }
}

TEST(VectorTextRandom, DoubledRepsFollowTheRulesWithTheirCopiesOffsetInZ)
{
    const ModelFont model = SimpleModel();
    const KEZVisVectorFont font;
    SettingsMaker maker(1603);
    for (int run = 0; run < 200; ++run) {
        const Settings settings = maker.Make(SimpleAlphabet());
        const double offset = maker.Real(-5, 5);
        const std::vector<Polyline3> expected = ModelLayout(model, settings);
        const std::unique_ptr<KEZVisRep> rep(TextOf(settings, font).CreateRep(KEZVisOptions(), true, offset));
        QList<const KEZVisPrimitive *> primitives;
        QList<KEZVisOptions> options;
        rep->GetPrimitives(primitives, options);
        ASSERT_EQ(primitives.size(), qsizetype(2 * expected.size())) << "run " << run;
        for (size_t i = 0; i < expected.size(); ++i) {
            for (int copy = 0; copy < 2; ++copy) {
                const auto *polyline = qobject_cast<const KEZVisPolylinePrimitive *>(primitives.at(qsizetype(2 * i + copy)));
                ASSERT_NE(polyline, nullptr);
                ASSERT_EQ(polyline->GetStructure(), KEZVisPolylinePrimitive::StructureConnected);
                const std::vector<double> coords = polyline->GetCoordsAsDouble();
                ASSERT_EQ(coords.size(), 3 * expected[i].size());
                for (size_t j = 0; j < expected[i].size(); ++j) {
                    ASSERT_TRUE(Near(coords[3 * j], expected[i][j][0])) << "run " << run;
                    ASSERT_TRUE(Near(coords[3 * j + 1], expected[i][j][1])) << "run " << run;
                    ASSERT_TRUE(Near(coords[3 * j + 2], expected[i][j][2] + (copy ? offset : 0.0))) << "run " << run;
                }
            }
        }
    }
}
