#ifndef KEZVISVECTORTEXT_H
#define KEZVISVECTORTEXT_H

#include "kezvisualization_export.h"

#include "KEZMathPlane.h"
#include "KEZMathSetOfPoints.h"
#include "KEZVisVectorFont.h"

#include <QCoreApplication>
#include <QFlags>
#include <QList>
#include <QObject>
#include <QSharedDataPointer>
#include <QString>

class KEZVisOptions;
class KEZVisRep;
class KEZVisVectorTextPrivate;

/*!
    \class KEZVisVectorText
    \brief Text laid out as line strokes of a KEZVisVectorFont on a plane.

    The text may hold several lines. Its glyphs are scaled to the text size,
    sheared by the tilt angle, placed by the anchor, justified, decorated with
    under-, strike- and overlines, mirrored for RightToLeft, and mapped into 3D
    through the plane (KEZMathPlane::Evaluate()). GetPolylines() gives the
    strokes as point lists; CreateRep() wraps them into a graphics rep. Nothing
    is cached: each call computes everything anew from the current settings.

    \section vectortext_layout Layout

    All layout happens in the plane's 2D space, y upward, with the anchor at
    the plane's origin. The scale s is GetTextSize() divided by the font's
    character height, so the font's height becomes the text size; cw(c) is the
    font's width of c.

    - The text is split into lines as QTextStream::readLine() splits it: a
        final line break adds no empty line, and an empty text has no lines.
    - A glyph's grid point (x, y) becomes ((x + y * tan(tilt)) * s, y * s),
        moved by the cursor: the shear acts before scaling, about the glyph's
        own baseline. A blank draws nothing; every other character draws its
        glyph or the font's fallback box.
    - After each character the cursor moves right by cw(c) * s plus the
        character spacing; a blank advances too.
    - The measured width of a line is the sum of cw(c) * 1.5 * s over its
        characters plus (length - 1) times the character spacing: the factor
        1.5 stands in the measure only, so the measured width exceeds the drawn
        width on purpose. An empty line measures minus the character spacing.
        Anchoring, justification, mirroring and decorations all use the
        measured width; W is the greatest measured width, and at least 0.
    - The block height H is (0.5 * size + line spacing) * (n - 1) + n * size
        for n lines. Lines are (1.5 * size + line spacing) apart; the last line's
        baseline lies at the block origin, the first line is on top.
    - The block origin starts at (0, 0) and the anchor moves it: the Middle
        row by -H / 2, the Top row by -H in y; the Middle column by -W / 2, the
        Right column by -W in x.
    - JustifyCenter sets a line's start x to (W - w) / 2 and JustifyRight to
        W - w. These replace the anchor's x instead of adding to it, so the
        horizontal part of the anchor holds for left-justified lines only; the
        vertical part always holds. This is how the layout behaves and is kept.
    - Each decoration is a two-point stroke along the line's measured width,
        at -0.1 (Underline), 0.5 (StrikeThrough) and 1.1 (Overline) times the
        text size above the line's baseline, appended after the line's glyphs
        in that order.
    - With RightToLeft each point's x becomes O.x + (R - x), R being the
        block's right edge O.x + W: a mirror image of glyphs and order, not a
        change of reading direction. Any orientation value other than
        RightToLeft lays out as LeftToRight.

    The result is ordered by line from top to bottom, within a line by
    characters and each glyph's strokes, then the decorations.

    The defaults are deliberate and stay: a text size of 0.0, so text without
    a size collapses each glyph to one point (call SetTextSize()), and a line
    spacing of 5.0. A font height of 0 or -1, NaN or infinite sizes and a
    degenerate plane give what the arithmetic gives; nothing throws.

    Labels of the enumerations go through QCoreApplication::translate() with the
    context "KEZVisVectorText"; the library ships a German translation.

    The value is implicitly shared with an atomic reference count; every setter
    detaches first. It holds no scene state and sends no signals.
*/
class KEZVISUALIZATION_EXPORT KEZVisVectorText
{
    Q_GADGET
    Q_DECLARE_TR_FUNCTIONS(KEZVisVectorText)

public:
    //! Which point of the text block lies at the plane's origin.
    enum Anchor : qint32 {
        BottomLeft = 0,
        BottomMiddle = 1,
        BottomRight = 2,
        MiddleLeft = 3,
        Middle = 4,
        MiddleRight = 5,
        TopLeft = 6,
        TopMiddle = 7,
        TopRight = 8
    };
    Q_ENUM(Anchor)

    //! Where lines shorter than the widest one start.
    enum Justification : qint32 {
        JustifyLeft = 0,
        JustifyCenter = 1,
        JustifyRight = 2
    };
    Q_ENUM(Justification)

    //! LeftToRight lays text out as it is; RightToLeft mirrors it within its block.
    enum Orientation : qint32 {
        LeftToRight = 1,
        RightToLeft = -1
    };
    Q_ENUM(Orientation)

    //! Lines along the measured width of each text line.
    enum Decoration : qint32 {
        Underline = 1,     //!< at -0.1 times the text size
        StrikeThrough = 2, //!< at 0.5 times the text size
        Overline = 4       //!< at 1.1 times the text size
    };
    //! A combination of decorations.
    Q_DECLARE_FLAGS(Decorations, Decoration)
    Q_FLAG(Decorations)

    //! A null text in the font "simple", with every other setting at its default.
    KEZVisVectorText();
    //! The text \a text in \a font, with every other setting at its default.
    KEZVisVectorText(const QString &text, const KEZVisVectorFont &font);
    //! Shares the record of \a other.
    KEZVisVectorText(const KEZVisVectorText &other);
    //! Shares the record of \a other; nothing happens when it is the same record.
    KEZVisVectorText &operator=(const KEZVisVectorText &other);
    ~KEZVisVectorText();

    //! The text, with line breaks; null by default.
    QString GetText() const;
    //! Sets what GetText() answers, detaching from any shared copy first.
    void SetText(const QString &text);

    //! The font; "simple" by default.
    KEZVisVectorFont GetFont() const;
    //! Sets what GetFont() answers, detaching from any shared copy first.
    void SetFont(const KEZVisVectorFont &font);

    //! BottomLeft by default.
    Anchor GetAnchor() const;
    //! Sets what GetAnchor() answers, detaching from any shared copy first.
    void SetAnchor(Anchor anchor);

    //! Extra distance between lines, in plane units; 5.0 by default.
    double GetLineSpacing() const;
    //! Sets what GetLineSpacing() answers, detaching from any shared copy first.
    void SetLineSpacing(double spacing);

    //! Extra distance between characters, in plane units; 0.0 by default.
    double GetCharacterSpacing() const;
    //! Sets what GetCharacterSpacing() answers, detaching from any shared copy first.
    void SetCharacterSpacing(double spacing);

    //! LeftToRight by default.
    Orientation GetOrientation() const;
    //! Sets what GetOrientation() answers, detaching from any shared copy first.
    void SetOrientation(Orientation orientation);

    //! JustifyLeft by default.
    Justification GetJustification() const;
    //! Sets what GetJustification() answers, detaching from any shared copy first.
    void SetJustification(Justification justification);

    //! None by default.
    QFlags<Decoration> GetDecorations() const;
    //! Sets what GetDecorations() answers, detaching from any shared copy first.
    void SetDecorations(QFlags<Decoration> decorations);

    //! Height of the font's cell in plane units; 0.0 by default.
    double GetTextSize() const;
    //! Sets what GetTextSize() answers, detaching from any shared copy first.
    void SetTextSize(double size);

    //! Shear of the glyphs in radians, positive to the right; 0.0 by default.
    double GetTiltAngle() const;
    //! Sets what GetTiltAngle() answers, detaching from any shared copy first.
    void SetTiltAngle(double angle);

    //! The plane that maps the layout into 3D; a default-constructed plane by default.
    KEZMathPlane GetPlane() const;
    //! Sets what GetPlane() answers, detaching from any shared copy first.
    void SetPlane(const KEZMathPlane &plane);

    //! The whole layout, see the class description; empty for an empty text.
    QList<KEZMathSetOfPoints> GetPolylines() const;

    /*!
        A new graphics rep, owned by the caller, with one connected polyline
        primitive for each polyline of GetPolylines(), in order, and \a options
        for all of them. When \a doubled is true, each primitive is followed by
        a copy whose points have \a offset added to their world z (not along the
        plane's normal).
    */
    KEZVisRep *CreateRep(const KEZVisOptions &options, bool doubled, double offset) const;

    //! All anchors, BottomLeft to TopRight.
    static QList<Anchor> GetAnchors();
    //! All justifications: left, center, right.
    static QList<Justification> GetJustifications();
    //! LeftToRight, then RightToLeft.
    static QList<Orientation> GetOrientations();

    //! The translated label of \a anchor ("Bottom Left", ...); empty for a value outside 0 to 8.
    static QString GetAnchorLabel(Anchor anchor);
    //! The translated label of \a justification ("Left", "center", "right"); empty for a value outside 0 to 2.
    static QString GetJustificationLabel(Justification justification);
    //! The translated label of \a orientation; "Invalid Orientation" for any value other than 1 and -1.
    static QString GetOrientationLabel(Orientation orientation);

private:
    QSharedDataPointer<KEZVisVectorTextPrivate> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(KEZVisVectorText::Decorations)

#endif // KEZVISVECTORTEXT_H
