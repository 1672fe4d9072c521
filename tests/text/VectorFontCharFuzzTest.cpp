// Fuzz test of the glyph record parser: random records and mutated records of
// the built-in font, each compared with a plain model of the record rules. The
// parser must return for every input and keep exactly the complete pairs.

#include "SimpleFontTable.h"
#include "VectorTextTestSupport.h"

#include <KEZVisVectorFontChar.h>

#include <QByteArray>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

// What a record must give, by the rules: the first byte as Latin-1 character,
// the second number of the second line as width, and the strokes of all later
// lines taken together.
struct ModelGlyph
{
    QChar character;
    double width = std::nan("");
    std::vector<KEZTextTest::Stroke> strokes;
};

ModelGlyph Model(const QByteArray &data)
{
    ModelGlyph model;
    if (data.isEmpty())
        return model;
    const qsizetype firstEnd = data.indexOf('\n');
    if (firstEnd != 0)
        model.character = QChar(char16_t(static_cast<unsigned char>(data.at(0))));
    if (firstEnd < 0)
        return model;
    const qsizetype secondEnd = data.indexOf('\n', firstEnd + 1);
    const QByteArray second = data.mid(firstEnd + 1, secondEnd < 0 ? -1 : secondEnd - firstEnd - 1);
    const qsizetype blank = second.indexOf(' ');
    if (blank >= 0) {
        const qsizetype next = second.indexOf(' ', blank + 1);
        model.width = second.mid(blank + 1, next < 0 ? -1 : next - blank - 1).toDouble();
    }
    if (secondEnd >= 0)
        model.strokes = KEZTextTest::ExpectedStrokes(data.mid(secondEnd + 1));
    return model;
}

// Compares a parsed glyph with the model; the text of the first difference, or empty.
std::string Difference(const KEZVisVectorFontChar &glyph, const ModelGlyph &model)
{
    if (glyph.GetCharacter() != model.character)
        return "character";
    if (!KEZTextTest::SameValue(glyph.GetCharWidth(), model.width))
        return "width";
    if (glyph.GetNumPolylines() != int(model.strokes.size()))
        return "number of strokes";
    for (int i = 0; i < glyph.GetNumPolylines(); ++i) {
        if (!KEZTextTest::SamePolyline(glyph.GetPolyline(i), model.strokes[size_t(i)]))
            return "stroke " + std::to_string(i);
    }
    return std::string();
}

class RecordMaker
{
public:
    explicit RecordMaker(unsigned seed) : m_random(seed) {}

    // A record of plausible pieces: a character, a count line with or without
    // a width, and coordinate tokens broken over lines with odd counts, pen-up
    // marks, unparsable and special numbers and runs of white space.
    QByteArray Random()
    {
        static const char *const tokens[] = {
            "0", "1", "2", "3", "4", "6", "-1", "-2", "-4", "-1", "-4", "0.5", "-0.5", "1e2",
            "nan", "inf", "-inf", "x", "--1", "1.2.3", "99999999999999999999999", "-0"};
        static const char *const spaces[] = {" ", " ", " ", "  ", "\t", " \r", "\n", "\n", "\r\n", "\v"};
        QByteArray record;
        if (Pick(20) != 0)
            record.append(char(Pick(256)));
        if (Pick(15) == 0)
            return record;
        record.append('\n');
        record.append(QByteArray::number(Pick(30)));
        if (Pick(4) == 0) {
            record.append(' ');
            record.append(tokens[Pick(int(std::size(tokens)))]);
        }
        if (Pick(10) == 0)
            return record;
        record.append('\n');
        const int count = Pick(24);
        for (int i = 0; i < count; ++i) {
            if (i > 0)
                record.append(spaces[Pick(int(std::size(spaces)))]);
            if (Pick(6) == 0) {
                const char *mark = Pick(2) ? "-1 -1" : "-4 -4";
                record.append(mark);
            } else {
                record.append(tokens[Pick(int(std::size(tokens)))]);
            }
        }
        return record;
    }

    // A record of the built-in font with a few bytes flipped, inserted or removed.
    QByteArray Mutated()
    {
        const SimpleFont::Row &row = SimpleFont::Rows[Pick(SimpleFont::RowCount)];
        QByteArray record;
        record.append(char(row.byte));
        record.append('\n');
        record.append(QByteArray::number(row.count));
        record.append('\n');
        record.append(row.coordinates);
        static const char alphabet[] = "0123456789 -\n\r\t.e";
        const int edits = 1 + Pick(4);
        for (int i = 0; i < edits && !record.isEmpty(); ++i) {
            const int at = Pick(int(record.size()));
            switch (Pick(4)) {
            case 0: record[at] = char(Pick(256)); break;
            case 1: record[at] = alphabet[Pick(int(sizeof(alphabet) - 1))]; break;
            case 2: record.insert(at, alphabet[Pick(int(sizeof(alphabet) - 1))]); break;
            default: record.remove(at, 1 + Pick(3)); break;
            }
        }
        return record;
    }

private:
    int Pick(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(m_random); }

    std::mt19937 m_random;
};

constexpr unsigned Seed = 16;
constexpr int RecordsEachKind = 50000;

} // namespace

TEST(VectorFontCharFuzz, RandomRecordsKeepExactlyTheirCompletePairs)
{
    RecordMaker maker(Seed);
    for (int i = 0; i < RecordsEachKind; ++i) {
        const QByteArray record = maker.Random();
        const std::string difference = Difference(KEZVisVectorFontChar(record), Model(record));
        ASSERT_EQ(difference, std::string()) << "record " << i << ": " << record.toPercentEncoding().constData();
    }
}

TEST(VectorFontCharFuzz, MutatedFontRecordsKeepExactlyTheirCompletePairs)
{
    RecordMaker maker(Seed + 1);
    for (int i = 0; i < RecordsEachKind; ++i) {
        const QByteArray record = maker.Mutated();
        const std::string difference = Difference(KEZVisVectorFontChar(record), Model(record));
        ASSERT_EQ(difference, std::string()) << "record " << i << ": " << record.toPercentEncoding().constData();
    }
}
