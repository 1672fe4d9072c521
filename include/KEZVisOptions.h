#ifndef KEZVISOPTIONS_H
#define KEZVISOPTIONS_H

#include "kezvisualization_export.h"

#include <QColor>
#include <QFlags>
#include <QFont>
#include <QJsonValue>
#include <QMetaType>
#include <QObject>
#include <QSharedDataPointer>
#include <QtGlobal>

#include <cstddef>

QT_BEGIN_NAMESPACE
class QDataStream;
QT_END_NAMESPACE

class KEZVisOptionsData;

/*!
 * \class KEZVisOptions
 * \brief How one primitive is to look: colour, line style and thickness,
 * point symbol, font, depth test, fixed perspective and drawing priority.
 *
 * A small implicitly shared value that travels beside every primitive: a rep
 * keeps one per primitive, clients read it, the 2D painter turns it into a pen.
 * Copies share one record; every setter, operator>>() and FromJson() detach
 * first, so writing to one copy never shows in another. Setters store what
 * they are given without validation and raise no signal.
 *
 * Defaults: an invalid colour (QColor()), LineStyleSolid, thickness 1.0,
 * PointSymbolDefault, no fixed perspective, QFont(), depth test enabled,
 * priority 1.
 *
 * Comparison, hashing and the stream form leave the fixed-perspective flag out;
 * only the JSON form carries it. operator==() and operator!=() are written out
 * separately and treat line thicknesses with a tolerance of 0.001 (see there).
 *
 * KEZVisOptions, KEZVisOptions::LineStyle and KEZVisOptions::PointSymbol are
 * registered with Qt's meta-type system under exactly these names when the
 * library is loaded.
 */
class KEZVISUALIZATION_EXPORT KEZVisOptions
{
    Q_GADGET

public:
    /*!
     * Dash pattern of lines, kept in one signed byte. The patterns alternate on
     * and off lengths in units of the pen's width. A value outside 1 to 12
     * draws as a solid line; the options store any byte without checking.
     */
    enum LineStyle : qint8 {
        LineStyleSolid = 0,                 ///< continuous line, no pattern
        LineStyleDash = 1,                  ///< 3, 2
        LineStyleDot = 2,                   ///< 1, 2
        LineStyleDashDot = 3,               ///< 3, 2, 1, 2
        LineStyleLongShort = 4,             ///< 5, 1, 3, 1
        LineStyleDashDotDot = 5,            ///< 3, 2, 1, 2, 1, 2
        LineStyleDashDotDotDot = 6,         ///< 3, 2, 1, 2, 1, 2, 1, 2
        LineStyleDashDashDotDot = 7,        ///< 3, 2, 3, 2, 1, 2, 1, 2
        LineStyleLongLongShort = 8,         ///< 5, 1, 5, 1, 3, 1
        LineStyleDashDashDotDotDot = 9,     ///< 3, 2, 3, 2, 1, 2, 1, 2, 1, 2
        LineStyleLongDashDot = 10,          ///< 7, 2, 1, 2
        LineStyleLongDashDotDot = 11,       ///< 7, 2, 1, 2, 1, 2
        LineStyleLongDashDotDotDot = 12     ///< 7, 2, 1, 2, 1, 2, 1, 2
    };
    Q_ENUM(LineStyle)

    /*!
     * Symbol of a point primitive, kept in one signed byte. The library stores,
     * compares, hashes and persists it; drawing the symbol is the client's
     * business, and values beyond the two named here are the client's to give a
     * meaning.
     */
    enum PointSymbol : qint8 {
        PointSymbolDefault = 0,             ///< the client's ordinary point
        PointSymbolMarker = 1               ///< a marker, such as the gizmo's pivot
    };
    Q_ENUM(PointSymbol)

    /*!
     * Which parts of a topology body a rep shows, combined as
     * QFlags<KEZVisOptions::VisibleGeometry> (also named VisibleGeometries).
     */
    enum VisibleGeometry {
        VisibleVertices = 1,
        VisibleEdges = 2,
        VisibleFaces = 4
    };
    /*! A combination of VisibleGeometry values. */
    Q_DECLARE_FLAGS(VisibleGeometries, VisibleGeometry)
    Q_FLAG(VisibleGeometries)

    /*! Options with the defaults listed in the class description. */
    KEZVisOptions();
    /*! Shares the record of \a other: one atomic increment, no field is copied. */
    KEZVisOptions(const KEZVisOptions &other);
    /*! Shares the record of \a other; does nothing when both already share it. */
    KEZVisOptions &operator=(const KEZVisOptions &other);
    virtual ~KEZVisOptions();

    /*! Colour of lines, points, fills and text; invalid by default. */
    QColor GetColor() const;
    /*! Sets the colour that GetColor() answers, as it is given. */
    void SetColor(const QColor &color);

    /*! Dash pattern of lines; any byte is stored as it is. */
    LineStyle GetLineStyle() const;
    /*! Sets the line style that GetLineStyle() answers, as it is given. */
    void SetLineStyle(LineStyle lineStyle);

    /*! Line width; the 2D painter divides it by its scale. */
    double GetLineThickness() const;
    /*! Sets the thickness that GetLineThickness() answers, without validation. */
    void SetLineThickness(double lineThickness);

    /*! Symbol of a point primitive; any byte is stored as it is. */
    PointSymbol GetPointSymbol() const;
    /*! Sets the symbol that GetPointSymbol() answers, as it is given. */
    void SetPointSymbol(PointSymbol pointSymbol);

    /*!
     * Whether the thing keeps a fixed perspective in the view. Clients decide
     * what that means. It takes no part in comparison, hashing or the stream
     * form; only the JSON form carries it.
     */
    bool IsFixedPerspective() const;
    /*! Sets the flag that IsFixedPerspective() answers. */
    void SetFixedPerspective(bool fixedPerspective);

    /*! Font of a text primitive. */
    QFont GetFont() const;
    /*! Sets the font that GetFont() answers. */
    void SetFont(const QFont &font);

    /*! Whether the depth test applies when a client draws the thing. */
    bool IsDepthEnabled() const;
    /*! Sets the flag that IsDepthEnabled() answers. */
    void SetDepthEnabled(bool depthEnabled);

    /*! Drawing priority; the 2D painter draws in the order of priorities. */
    int GetPriority() const;
    /*! Sets the priority that GetPriority() answers. */
    void SetPriority(int priority);

    /*!
     * True when both share one record. Otherwise compares colour, line style,
     * thickness, point symbol, font, depth test and priority, in this order,
     * and stops at the first difference. Thicknesses count as equal when they
     * differ by strictly less than 0.001. The fixed-perspective flag takes no
     * part.
     *
     * operator==() and operator!=() are deliberately not each other's
     * negation: for thicknesses exactly 0.001 apart, or when a thickness is
     * NaN, with everything else alike, both answer false. The asymmetry is
     * deliberate and kept: callers see exactly the two rules written here.
     */
    bool operator==(const KEZVisOptions &other) const;

    /*!
     * False when both share one record. Otherwise true when the colours differ
     * (QColor::operator!=), the line styles differ, the thicknesses differ by
     * strictly more than 0.001, the point symbols differ, the fonts differ
     * (QFont::operator!=), the depth tests differ or the priorities differ. See
     * operator==() for the cases where neither answers true.
     */
    bool operator!=(const KEZVisOptions &other) const;

    /*!
     * The options as a JSON object with exactly eight keys: "c" (the colour in
     * the form of KEZSysJsonConverters), "ls" (line style, sign-extended
     * integer), "lt" (thickness), "ps" (point symbol, sign-extended integer),
     * "fp" (fixed perspective), "f" (QFont::toString()), "de" (depth test) and
     * "p" (priority).
     */
    QJsonValue ToJson() const;

    /*!
     * Reads the form that ToJson() writes; detaches first. Answers false when
     * \a value is no object, when "c" holds no colour, when one of "ls", "lt",
     * "ps", "fp", "de", "p" is missing (checked in this order) or when "f" is
     * no font description that QFont::fromString() accepts.
     *
     * The colour is written as soon as "c" is read and is not rolled back on a
     * later failure; the font changes only when it parses, and the six plain
     * fields change only when everything else succeeded. A key of the wrong
     * type gives 0 or false for its field and is no failure. Line style and
     * point symbol keep the low byte of their integers. Raises no exception.
     */
    bool FromJson(const QJsonValue &value);

private:
    friend KEZVISUALIZATION_EXPORT QDataStream &operator>>(QDataStream &stream, KEZVisOptions &options);

    QSharedDataPointer<KEZVisOptionsData> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(KEZVisOptions::VisibleGeometries)
Q_DECLARE_METATYPE(KEZVisOptions)

/*!
 * Writes, with no header, length or version: the colour (QColor's stream
 * form), the line style as qint32 sign-extended from its byte, the thickness
 * as double, the point symbol as qint32 sign-extended from its byte, the font
 * (QFont's stream form), the depth test as a one-byte bool and the priority as
 * qint32. The fixed-perspective flag is deliberately not written.
 */
KEZVISUALIZATION_EXPORT QDataStream &operator<<(QDataStream &stream, const KEZVisOptions &options);

/*!
 * Reads the seven values that operator<<() writes, in the same order, into
 * \a options after detaching it; the line style and point symbol keep the low
 * byte of their qint32. The fixed-perspective flag stays as it was. The
 * stream's status is not examined: a short or corrupt stream is the caller's
 * to detect through QDataStream::status().
 *
 * The colour and the font are checked before Qt's own readers see them, so
 * that any bytes are safe to read. The font's list of families is read string
 * by string, never by reserving for the count it announces: a count beyond the
 * data gives QDataStream::ReadPastEnd. A value that the type cannot hold sets
 * QDataStream::ReadCorruptData: a colour model that QColor does not know, a hue above
 * 36000 hundredths of a degree (other than 65535, no hue) for HSV and HSL; a
 * point size that is neither -1 nor positive and finite, a pixel size that is
 * neither -1 nor positive, a weight outside 1 to 1000, a stretch above 4000, a
 * string of an odd number of bytes, an empty list of families from stream
 * version Qt_6_0 on. A colour or font that fails leaves that field of
 * \a options as it was; the fields after it are read all the same. Each of the
 * two is judged on its own bytes, as Qt's container readers judge theirs: a
 * failure that the stream had before is set again afterwards.
 */
KEZVISUALIZATION_EXPORT QDataStream &operator>>(QDataStream &stream, KEZVisOptions &options);

/*!
 * The exclusive or of six terms: the integer hashes of priority, point symbol
 * and line style (each sign-extended to 64 bits and mixed as Qt's qHash of an
 * integer with seed 0), qHash(font, 0), qHash(lineThickness, 0) on the exact
 * bits of the double, and qHash(color) of the family. Depth test and fixed
 * perspective do not enter. As thicknesses are hashed exactly but compared
 * with a tolerance, options that compare equal may hash differently.
 */
KEZVISUALIZATION_EXPORT size_t qHash(const KEZVisOptions &options);

#endif // KEZVISOPTIONS_H
