#ifndef KEZVISVECTORFONTCHAR_H
#define KEZVISVECTORFONTCHAR_H

#include "kezvisualization_export.h"

#include "KEZMathSetOfPoints2D.h"

#include <QByteArray>
#include <QChar>
#include <QSharedDataPointer>

class KEZVisVectorFontCharPrivate;

/*!
    \class KEZVisVectorFontChar
    \brief One glyph of a stroked font: a character, its strokes and its advance width.

    A glyph is read from one record of a \c .vct font file (see KEZVisVectorFont
    for the whole file). A record is text of lines separated by line feeds:

    - the character line: its first byte is the character, read as Latin-1,
        that is, the byte value is the Unicode code point. No code page is
        applied: the byte 0x82 is U+0082, not e acute.
    - the count line: a number, then optionally a blank and the advance width.
        Only the width is read; the count is ignored, the pairs that are there
        are what counts.
    - any number of coordinate lines of blank-separated numbers, read as
        x y x y ... across all lines.

    A pair with x below 0, y below 0 and x equal to y lifts the pen: it ends the
    current stroke (when that has points) and draws nothing. -1 -1 and -4 -4 are
    the marks that font files use. Every other pair is a point of the current
    stroke, so -1 -2 or 3 -1 are ordinary points. A stroke is never empty.

    Numbers go through QByteArray::toDouble(): text that does not parse reads
    as 0, "nan" and "inf" read as themselves, and there is no syntax check of
    any kind. A lone last token, left over from an odd number of tokens, is
    ignored. A record whose first line is empty has the null character.

    Coordinates are in grid units of the font; the layout of KEZVisVectorText
    scales them.

    The value is implicitly shared with an atomic reference count: copies share
    one record, and a glyph never changes after its constructor.
*/
class KEZVISUALIZATION_EXPORT KEZVisVectorFontChar
{
public:
    /*!
        The fallback glyph, drawn for every character that a font lacks: the
        record "~", "5", "0 0 0 6 4 6 4 0 0 0", parsed as if from a file. Its
        character is the tilde and its one stroke is a closed box of five
        points, (0,0) (0,6) (4,6) (4,0) (0,0). Its width is NaN, so the font's
        default width applies.
    */
    KEZVisVectorFontChar();
    /*!
        Parses one glyph record. Empty \a data gives the null character, no
        strokes and a NaN width; data of one line only gives its character and
        nothing else.
    */
    explicit KEZVisVectorFontChar(const QByteArray &data);
    //! Shares the record of \a other.
    KEZVisVectorFontChar(const KEZVisVectorFontChar &other);
    //! Shares the record of \a other; nothing happens when it is the same record.
    KEZVisVectorFontChar &operator=(const KEZVisVectorFontChar &other);
    ~KEZVisVectorFontChar();

    //! The character that this glyph draws.
    QChar GetCharacter() const;
    //! The advance width stated in the record, in grid units; NaN when it stated none.
    double GetCharWidth() const;
    //! The number of strokes.
    int GetNumPolylines() const;
    /*!
        A copy of the stroke at \a index, in file order. An index outside 0 to
        GetNumPolylines() - 1 throws KEZSysOutOfBoundsException(index, 0,
        GetNumPolylines() - 1, true, true).
    */
    KEZMathSetOfPoints2D GetPolyline(int index) const;

private:
    QSharedDataPointer<KEZVisVectorFontCharPrivate> d;
};

#endif // KEZVISVECTORFONTCHAR_H
