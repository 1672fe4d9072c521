#ifndef KEZVISVECTORFONT_H
#define KEZVISVECTORFONT_H

#include "kezvisualization_export.h"

#include "KEZVisVectorFontChar.h"

#include <QChar>
#include <QList>
#include <QSharedDataPointer>
#include <QString>

class KEZVisVectorFontPrivate;
class KEZVisVectorFontCache;

/*!
    \class KEZVisVectorFont
    \brief A stroked font: glyphs made of polylines, read from a \c .vct file.

    Fonts live in the Qt resource directory ":/vector-fonts", one file a font,
    named after the font with the suffix \c vct. The library brings one, "simple",
    compiled in and registered when the library is loaded; an application adds
    fonts by supplying more files in the same resource directory. Files on disk
    are not searched.

    \section vectorfont_finding Finding a font

    Every font that is loaded goes into one process-wide cache and stays there
    until the library is unloaded; the cache is never pruned. Constructing a
    font:
    1. shares the record of the first cached font whose name equals \a name
        (case-sensitively): no parsing, a walk of the cache and an atomic
        increment;
    1. otherwise, when GetFontNames() does not hold \a name exactly, gives the
        font "simple" instead. This is the whole fallback: an empty, unknown or
        differently capitalised name yields "simple" silently, and GetName()
        then says "simple". No cache entry is made under the unknown name.
    1. otherwise loads the file from the resource directory and appends the
        font to the cache after its last line is read, so a failure leaves no
        half-loaded font behind.

    Loading throws KEZSysException("Could not load the font.") when no file of
    the name is there (possible only when the resources change meanwhile, or
    when "simple" itself is missing, which is reported the same way instead of
    falling back to itself), and KEZSysFileOpenException(absolute path, the
    device's error text) when the file cannot be opened.

    The cache is guarded by a lock, so fonts may be constructed from several
    threads at once; a font is loaded once all the same.

    \section vectorfont_format The file format

    A \c .vct file is text lines; every line is passed through
    QByteArray::simplified(), so line ends (CR LF or LF) and runs of white space
    do not matter. It holds, in this order:
    1. glyph records, one after the other, as KEZVisVectorFontChar describes
        them: a character line, a count line, one or more coordinate lines;
    1. one empty line;
    1. the header line: the character height, then the default width, as
        decimal integers; further numbers are ignored. The header line is
        split as it stands, without simplifying.
    A record ends at the first line without a blank from the third line after
    its character line on, so a record always has its count line and first
    coordinate line, whatever they hold; only the very first record of a file
    can already end at its first coordinate line. A record without coordinate
    lines therefore takes the next record's character line as its
    coordinates. A later record of the same character
    replaces an earlier one. Since a simplified line of one blank is empty,
    no file can hold a glyph for the blank. Up to two lines may follow the
    header; the built-in file ends in "SIMPLEX" and the byte 0x1A. A file
    without the empty line never stores its last record, and its height and
    default width stay -1. An empty line that is the last line of the file
    gives the header an empty line: the height reads as 0 and the default width
    stays -1. Numbers that do not parse read as 0.

    \section vectorfont_simple The built-in font "simple"

    122 glyphs on a grid where the baseline is y = 0, capitals reach 6, small
    letters 3 and descenders -2; height 7, default width 6, no glyph with a
    width of its own. It has the printable ASCII characters from 0x21 to 0x7A
    except the at sign and the grave accent, and the bytes 0x80 to 0x9D, 0xA0,
    0xA1, 0xF1 and 0xF8, which hold accented letters in the order of an old DOS
    code page. Because the character byte is read as Latin-1, those glyphs are
    reached through U+0080 and the following code points, and a real e acute
    (U+00E9) draws the box. That is how the format works and is kept.

    The value is implicitly shared with an atomic reference count; a font never
    changes after loading.
*/
class KEZVISUALIZATION_EXPORT KEZVisVectorFont
{
public:
    /*!
        Finds or loads the font \a name, see above. The empty default name gives
        "simple".
    */
    KEZVisVectorFont(const QString &name = QString());
    //! Shares the record of \a other.
    KEZVisVectorFont(const KEZVisVectorFont &other);
    //! Shares the record of \a other; nothing happens when it is the same record.
    KEZVisVectorFont &operator=(const KEZVisVectorFont &other);
    ~KEZVisVectorFont();

    /*!
        The glyph of \a c, sharing the font's record of it. A character that the
        font lacks (the blank among them) gets the fallback glyph of
        KEZVisVectorFontChar(), whose own character is the tilde; that is never
        an error.
    */
    KEZVisVectorFontChar GetCharacter(const QChar &c) const;
    //! The character height in grid units: the divisor of every text scale. -1 when the file had no header.
    double GetCharacterHeight() const;
    //! The advance width of GetCharacter(c); when that is NaN, the font's default width.
    double GetCharacterWidth(const QChar &c) const;
    //! The font's name, the base name of its file.
    const QString GetName() const;

    /*!
        The names of all fonts available: for each entry of
        QDir(":/vector-fonts").entryInfoList(), in QDir's default order (by name,
        ignoring case), whose suffix is exactly "vct", its base name. With the
        built-in font alone that is the one name "simple".
    */
    static QList<QString> GetFontNames();

private:
    friend class KEZVisVectorFontCache;
    explicit KEZVisVectorFont(KEZVisVectorFontPrivate *record);

    QSharedDataPointer<KEZVisVectorFontPrivate> d;
};

#endif // KEZVISVECTORFONT_H
