#include "KEZVisVectorText.h"
#include "KEZVisVectorText_p.h"

#include "KEZVisOptions.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisRepGraphics.h"

#include <QIODevice>
#include <QStringList>
#include <QTextStream>

#include <cmath>

namespace {

// What the glyph and line helpers need of one layout: the font, the scale
// from grid units to plane units, the shear factor, the character spacing,
// and how a finished 2D point reaches space: the mirror within the block for
// RightToLeft, then the plane.
struct Placement
{
    KEZVisVectorFont font;
    double scale = 0.0;
    double shear = 0.0;
    double characterSpacing = 0.0;
    bool mirrored = false;
    double originX = 0.0;
    double rightEdge = 0.0;
    KEZMathPlane plane;

    KEZMathPoint ToSpace(double x, double y) const
    {
        if (mirrored)
            x = originX + (rightEdge - x);
        return plane.Evaluate(KEZMathPoint2D(x, y));
    }
};

// The strokes of one character with its grid origin at position: sheared about
// its own baseline, then scaled, then moved, then taken into space. A blank
// has none. The glyph's points are shared with the font and copied only here,
// as they are transformed.
void AppendCharacterPolylines(const Placement &placement, const QChar &c, const KEZMathPoint2D &position,
                              QList<KEZMathSetOfPoints> &result)
{
    if (c == QChar(u' '))
        return;
    const KEZVisVectorFontChar glyph = placement.font.GetCharacter(c);
    const int count = glyph.GetNumPolylines();
    for (int i = 0; i < count; ++i) {
        const KEZMathSetOfPoints2D stroke = glyph.GetPolyline(i);
        KEZMathSetOfPoints placed;
        placed.reserve(stroke.size());
        for (const KEZMathPoint2D &point : stroke) {
            const double x = point.GetX() + point.GetY() * placement.shear;
            placed.append(placement.ToSpace(x * placement.scale + position.GetX(),
                                            point.GetY() * placement.scale + position.GetY()));
        }
        result.append(placed);
    }
}

// The strokes of one line from start on. The cursor advances by the drawn
// width of each character, blanks included.
void AppendLinePolylines(const Placement &placement, const QString &line, const KEZMathPoint2D &start,
                         QList<KEZMathSetOfPoints> &result)
{
    KEZMathPoint2D cursor = start;
    for (const QChar &c : line) {
        AppendCharacterPolylines(placement, c, cursor, result);
        cursor.SetX(cursor.GetX() + placement.font.GetCharacterWidth(c) * placement.scale
                    + placement.characterSpacing);
    }
}

// The number of strokes of a line without its decorations, to size the result once.
qsizetype CountPolylines(const KEZVisVectorFont &font, const QString &line)
{
    qsizetype count = 0;
    for (const QChar &c : line) {
        if (c != QChar(u' '))
            count += font.GetCharacter(c).GetNumPolylines();
    }
    return count;
}

// The measured width of a line. The factor 1.5 makes it wider than the drawn
// line on purpose; anchoring, justification, mirroring and decorations use it.
double MeasuredWidth(const Placement &placement, const QString &line)
{
    double width = 0.0;
    for (const QChar &c : line)
        width += placement.font.GetCharacterWidth(c) * 1.5 * placement.scale;
    return width + double(line.size() - 1) * placement.characterSpacing;
}

QStringList SplitLines(const QString &text)
{
    QStringList lines;
    QString copy = text;
    QTextStream stream(&copy, QIODevice::ReadOnly);
    while (!stream.atEnd())
        lines.append(stream.readLine());
    return lines;
}

struct DecorationStroke
{
    KEZVisVectorText::Decoration decoration;
    double factor; // height above the baseline, in text sizes
};

constexpr DecorationStroke DecorationStrokes[] = {
    {KEZVisVectorText::Underline, -0.1},
    {KEZVisVectorText::StrikeThrough, 0.5},
    {KEZVisVectorText::Overline, 1.1},
};

const char *const AnchorLabels[] = {
    QT_TRANSLATE_NOOP("KEZVisVectorText", "Bottom Left"),
    QT_TRANSLATE_NOOP("KEZVisVectorText", "Bottom Middle"),
    QT_TRANSLATE_NOOP("KEZVisVectorText", "Bottom Right"),
    QT_TRANSLATE_NOOP("KEZVisVectorText", "Middle Left"),
    QT_TRANSLATE_NOOP("KEZVisVectorText", "Middle"),
    QT_TRANSLATE_NOOP("KEZVisVectorText", "Middle Right"),
    QT_TRANSLATE_NOOP("KEZVisVectorText", "Top Left"),
    QT_TRANSLATE_NOOP("KEZVisVectorText", "Top Middle"),
    QT_TRANSLATE_NOOP("KEZVisVectorText", "Top Right"),
};

// The first label has a capital and the other two not; users' settings files
// and translations depend on these exact texts.
const char *const JustificationLabels[] = {
    QT_TRANSLATE_NOOP("KEZVisVectorText", "Left"),
    QT_TRANSLATE_NOOP("KEZVisVectorText", "center"),
    QT_TRANSLATE_NOOP("KEZVisVectorText", "right"),
};

const char *const LeftToRightLabel = QT_TRANSLATE_NOOP("KEZVisVectorText", "Left To Right");
const char *const RightToLeftLabel = QT_TRANSLATE_NOOP("KEZVisVectorText", "Right To Left");
const char *const InvalidOrientationLabel = QT_TRANSLATE_NOOP("KEZVisVectorText", "Invalid Orientation");

QString Translated(const char *label)
{
    return QCoreApplication::translate("KEZVisVectorText", label);
}

} // namespace

KEZVisVectorText::KEZVisVectorText()
    : d(new KEZVisVectorTextPrivate)
{
}

KEZVisVectorText::KEZVisVectorText(const QString &text, const KEZVisVectorFont &font)
    : d(new KEZVisVectorTextPrivate)
{
    d->text = text;
    d->font = font;
}

KEZVisVectorText::KEZVisVectorText(const KEZVisVectorText &other) = default;

KEZVisVectorText &KEZVisVectorText::operator=(const KEZVisVectorText &other) = default;

KEZVisVectorText::~KEZVisVectorText() = default;

QString KEZVisVectorText::GetText() const { return d->text; }
void KEZVisVectorText::SetText(const QString &text) { d->text = text; }

KEZVisVectorFont KEZVisVectorText::GetFont() const { return d->font; }
void KEZVisVectorText::SetFont(const KEZVisVectorFont &font) { d->font = font; }

KEZVisVectorText::Anchor KEZVisVectorText::GetAnchor() const { return d->anchor; }
void KEZVisVectorText::SetAnchor(Anchor anchor) { d->anchor = anchor; }

double KEZVisVectorText::GetLineSpacing() const { return d->lineSpacing; }
void KEZVisVectorText::SetLineSpacing(double spacing) { d->lineSpacing = spacing; }

double KEZVisVectorText::GetCharacterSpacing() const { return d->characterSpacing; }
void KEZVisVectorText::SetCharacterSpacing(double spacing) { d->characterSpacing = spacing; }

KEZVisVectorText::Orientation KEZVisVectorText::GetOrientation() const { return d->orientation; }
void KEZVisVectorText::SetOrientation(Orientation orientation) { d->orientation = orientation; }

KEZVisVectorText::Justification KEZVisVectorText::GetJustification() const { return d->justification; }
void KEZVisVectorText::SetJustification(Justification justification) { d->justification = justification; }

QFlags<KEZVisVectorText::Decoration> KEZVisVectorText::GetDecorations() const { return d->decorations; }
void KEZVisVectorText::SetDecorations(QFlags<Decoration> decorations) { d->decorations = decorations; }

double KEZVisVectorText::GetTextSize() const { return d->textSize; }
void KEZVisVectorText::SetTextSize(double size) { d->textSize = size; }

double KEZVisVectorText::GetTiltAngle() const { return d->tiltAngle; }
void KEZVisVectorText::SetTiltAngle(double angle) { d->tiltAngle = angle; }

KEZMathPlane KEZVisVectorText::GetPlane() const { return d->plane; }
void KEZVisVectorText::SetPlane(const KEZMathPlane &plane) { d->plane = plane; }

QList<KEZMathSetOfPoints> KEZVisVectorText::GetPolylines() const
{
    const KEZVisVectorTextPrivate &settings = *d;
    QList<KEZMathSetOfPoints> result;

    const QStringList lines = SplitLines(settings.text);
    const qsizetype n = lines.size();
    if (n == 0)
        return result;

    const double size = settings.textSize;
    Placement placement;
    placement.font = settings.font;
    placement.scale = size / placement.font.GetCharacterHeight();
    placement.shear = (1.0 / std::cos(settings.tiltAngle)) * std::sin(settings.tiltAngle);
    placement.characterSpacing = settings.characterSpacing;
    placement.plane = settings.plane;

    QList<double> widths;
    widths.reserve(n);
    double blockWidth = 0.0;
    qsizetype polylineCount = 0;
    const int decorationCount = int(settings.decorations.testFlag(Underline))
        + int(settings.decorations.testFlag(StrikeThrough)) + int(settings.decorations.testFlag(Overline));
    for (const QString &line : lines) {
        widths.append(MeasuredWidth(placement, line));
        blockWidth = std::max(blockWidth, widths.last());
        polylineCount += CountPolylines(placement.font, line) + decorationCount;
    }
    result.reserve(polylineCount);
    const double blockHeight = (0.5 * size + settings.lineSpacing) * double(n - 1) + double(n) * size;

    // The block origin: the left end of the last line's baseline.
    double originX = 0.0;
    double originY = 0.0;
    switch (settings.anchor) {
    case MiddleLeft: case Middle: case MiddleRight: originY = -blockHeight * 0.5; break;
    case TopLeft: case TopMiddle: case TopRight: originY = -blockHeight; break;
    default: break;
    }
    switch (settings.anchor) {
    case BottomMiddle: case Middle: case TopMiddle: originX = -blockWidth * 0.5; break;
    case BottomRight: case MiddleRight: case TopRight: originX = -blockWidth; break;
    default: break;
    }
    placement.mirrored = settings.orientation == RightToLeft;
    placement.originX = originX;
    placement.rightEdge = originX + blockWidth;
    const double lineDistance = 1.5 * size + settings.lineSpacing;

    for (qsizetype i = 0; i < n; ++i) {
        const qsizetype k = n - 1 - i;
        const double width = widths.at(i);
        KEZMathPoint2D start(originX, originY + lineDistance * double(k));
        // Centred and right-justified lines are placed as if the anchor's
        // horizontal part were 0: the justification replaces it.
        if (settings.justification == JustifyCenter)
            start.SetX((blockWidth - width) * 0.5);
        else if (settings.justification == JustifyRight)
            start.SetX(blockWidth - width);

        AppendLinePolylines(placement, lines.at(i), start, result);
        for (const DecorationStroke &stroke : DecorationStrokes) {
            if (!settings.decorations.testFlag(stroke.decoration))
                continue;
            const double y = start.GetY() + stroke.factor * size;
            result.append(KEZMathSetOfPoints{placement.ToSpace(start.GetX(), y),
                                             placement.ToSpace(start.GetX() + width, y)});
        }
    }
    return result;
}

KEZVisRep *KEZVisVectorText::CreateRep(const KEZVisOptions &options, bool doubled, double offset) const
{
    const QList<KEZMathSetOfPoints> polylines = GetPolylines();
    QList<const KEZVisPrimitive *> primitives;
    primitives.reserve(doubled ? 2 * polylines.size() : polylines.size());
    for (const KEZMathSetOfPoints &points : polylines) {
        primitives.append(new KEZVisPolylinePrimitive(points, KEZVisPolylinePrimitive::StructureConnected));
        if (doubled) {
            KEZMathSetOfPoints shifted = points;
            for (KEZMathPoint &point : shifted)
                point.SetZ(point.GetZ() + offset); // the world's z, not the plane's normal
            primitives.append(new KEZVisPolylinePrimitive(shifted, KEZVisPolylinePrimitive::StructureConnected));
        }
    }
    return new KEZVisRepGraphics(primitives, options);
}

QList<KEZVisVectorText::Anchor> KEZVisVectorText::GetAnchors()
{
    return {BottomLeft, BottomMiddle, BottomRight, MiddleLeft, Middle, MiddleRight, TopLeft, TopMiddle, TopRight};
}

QList<KEZVisVectorText::Justification> KEZVisVectorText::GetJustifications()
{
    return {JustifyLeft, JustifyCenter, JustifyRight};
}

QList<KEZVisVectorText::Orientation> KEZVisVectorText::GetOrientations()
{
    return {LeftToRight, RightToLeft};
}

QString KEZVisVectorText::GetAnchorLabel(Anchor anchor)
{
    const int index = int(anchor);
    if (index < 0 || index >= int(std::size(AnchorLabels)))
        return QString();
    return Translated(AnchorLabels[index]);
}

QString KEZVisVectorText::GetJustificationLabel(Justification justification)
{
    const int index = int(justification);
    if (index < 0 || index >= int(std::size(JustificationLabels)))
        return QString();
    return Translated(JustificationLabels[index]);
}

QString KEZVisVectorText::GetOrientationLabel(Orientation orientation)
{
    switch (int(orientation)) {
    case LeftToRight: return Translated(LeftToRightLabel);
    case RightToLeft: return Translated(RightToLeftLabel);
    default: return Translated(InvalidOrientationLabel);
    }
}
