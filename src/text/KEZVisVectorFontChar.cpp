#include "KEZVisVectorFontChar.h"
#include "KEZVisVectorFontChar_p.h"

#include <KEZSysOutOfBoundsException.h>

#include <QByteArrayList>

namespace {

// A pen-up mark: both coordinates below zero and equal. The marks that occur in
// font files are -1 -1 and -4 -4; any pair on the negative diagonal counts.
bool IsPenUp(double x, double y)
{
    return x < 0.0 && y < 0.0 && x == y;
}

void ParseRecord(const QByteArray &data, KEZVisVectorFontCharPrivate &record)
{
    if (data.isEmpty())
        return;

    const QByteArrayList lines = data.split('\n');
    const QByteArray &characterLine = lines.at(0);
    if (!characterLine.isEmpty())
        // The byte is the code point (Latin-1); font files apply no code page.
        record.character = QChar::fromLatin1(characterLine.at(0));
    if (lines.size() < 2)
        return;

    // The count line: the count itself is ignored, only an optional width is read.
    const QByteArrayList countParts = lines.at(1).split(' ');
    if (countParts.size() > 1)
        record.width = countParts.at(1).toDouble();

    // Coordinate lines may break anywhere between numbers, so they are read as one list.
    const QByteArrayList tokens = lines.mid(2).join(' ').simplified().split(' ');
    const qsizetype pairs = tokens.size() / 2; // a lone last token is ignored

    KEZMathSetOfPoints2D current;
    for (qsizetype pair = 0; pair < pairs; ++pair) {
        const double x = tokens.at(2 * pair).toDouble();
        const double y = tokens.at(2 * pair + 1).toDouble();
        if (IsPenUp(x, y)) {
            if (!current.isEmpty())
                record.polylines.append(current);
            current = KEZMathSetOfPoints2D();
        } else {
            current.append(KEZMathPoint2D(x, y));
        }
    }
    if (!current.isEmpty())
        record.polylines.append(current);
}

} // namespace

KEZVisVectorFontChar::KEZVisVectorFontChar()
    : KEZVisVectorFontChar(QByteArrayLiteral("~\n5\n0 0 0 6 4 6 4 0 0 0"))
{
}

KEZVisVectorFontChar::KEZVisVectorFontChar(const QByteArray &data)
    : d(new KEZVisVectorFontCharPrivate)
{
    ParseRecord(data, *d);
}

KEZVisVectorFontChar::KEZVisVectorFontChar(const KEZVisVectorFontChar &other) = default;

KEZVisVectorFontChar &KEZVisVectorFontChar::operator=(const KEZVisVectorFontChar &other) = default;

KEZVisVectorFontChar::~KEZVisVectorFontChar() = default;

QChar KEZVisVectorFontChar::GetCharacter() const
{
    return d->character;
}

double KEZVisVectorFontChar::GetCharWidth() const
{
    return d->width;
}

int KEZVisVectorFontChar::GetNumPolylines() const
{
    return int(d->polylines.size());
}

KEZMathSetOfPoints2D KEZVisVectorFontChar::GetPolyline(int index) const
{
    const int count = GetNumPolylines();
    if (index < 0 || index >= count)
        throw KEZSysOutOfBoundsException(index, 0, count - 1, true, true);
    return d->polylines.at(index);
}
