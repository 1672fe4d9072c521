// kezvis text: lays out a string in the built-in vector font and exports its
// strokes.

#include "Commands.h"

#include "Io.h"

#include <KEZVisOptions.h>
#include <KEZVisRep.h>
#include <KEZVisVectorFont.h>
#include <KEZVisVectorText.h>

#include <QCommandLineParser>
#include <QMetaEnum>

#include <cmath>
#include <cstdio>
#include <memory>

namespace Commands {

namespace {

// An anchor by its number (0 to 8) or its name (BottomLeft, Middle, ...,
// case ignored).
bool AnchorFrom(const QString &text, KEZVisVectorText::Anchor *anchor)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    for (KEZVisVectorText::Anchor each : KEZVisVectorText::GetAnchors()) {
        const char *name = QMetaEnum::fromType<KEZVisVectorText::Anchor>().valueToKey(each);
        if ((isNumber && number == int(each)) || (!isNumber && text.compare(QLatin1String(name), Qt::CaseInsensitive) == 0)) {
            *anchor = each;
            return true;
        }
    }
    return false;
}

bool FiniteNumber(const QString &text, double *value)
{
    bool ok = false;
    *value = text.toDouble(&ok);
    return ok && std::isfinite(*value);
}

} // namespace

int Text(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Lays out vector text in the built-in font on the xy plane, anchored at the origin, and exports its "
        "strokes. Lines break at line feeds."));
    parser.addPositionalArgument(QStringLiteral("string"), QStringLiteral("The text."), QStringLiteral("\"STRING\""));
    parser.addOption({QStringLiteral("size"), QStringLiteral("The height of a capital, in model units (default 10)."),
                      QStringLiteral("S"), QStringLiteral("10")});
    parser.addOption({QStringLiteral("anchor"),
                      QStringLiteral("The point of the text at the origin: 0 to 8 or BottomLeft, BottomMiddle, "
                                     "BottomRight, MiddleLeft, Middle, MiddleRight, TopLeft, TopMiddle, TopRight "
                                     "(default BottomLeft)."),
                      QStringLiteral("A"), QStringLiteral("BottomLeft")});
    parser.addOption({QStringLiteral("tilt"), QStringLiteral("The slant of the glyphs in degrees (default 0)."),
                      QStringLiteral("DEG"), QStringLiteral("0")});
    parser.addOption({{QStringLiteral("o"), QStringLiteral("output")}, QStringLiteral("The file to write."),
                      QStringLiteral("OUT")});
    parser.addOption({{QStringLiteral("s"), QStringLiteral("picture-size")},
                      QStringLiteral("Size of a PNG picture in pixels (default 1024x384)."), QStringLiteral("WxH"),
                      QStringLiteral("1024x384")});
    const QCommandLineOption help = parser.addHelpOption();
    if (!parser.parse(arguments))
        return UsageError(parser.errorText());
    if (parser.isSet(help))
        parser.showHelp(0);
    if (parser.positionalArguments().size() != 1)
        return UsageError(QStringLiteral("text needs exactly one STRING"));
    if (!parser.isSet(QStringLiteral("output")))
        return UsageError(QStringLiteral("text needs -o OUT.svg or -o OUT.png"));

    double size = 0.0;
    double tilt = 0.0;
    KEZVisVectorText::Anchor anchor = KEZVisVectorText::BottomLeft;
    if (!FiniteNumber(parser.value(QStringLiteral("size")), &size) || size <= 0.0)
        return UsageError(QStringLiteral("--size needs a positive number, not '%1'").arg(parser.value(QStringLiteral("size"))));
    if (!FiniteNumber(parser.value(QStringLiteral("tilt")), &tilt) || std::abs(tilt) >= 90.0)
        return UsageError(QStringLiteral("--tilt needs a number of degrees between -90 and 90, not '%1'")
                              .arg(parser.value(QStringLiteral("tilt"))));
    if (!AnchorFrom(parser.value(QStringLiteral("anchor")), &anchor))
        return UsageError(QStringLiteral("unknown anchor '%1'").arg(parser.value(QStringLiteral("anchor"))));

    Io::Failure failure;
    QSize pictureSize;
    Io::Format format;
    const QString output = parser.value(QStringLiteral("output"));
    if (!Io::ParseSize(parser.value(QStringLiteral("picture-size")), &pictureSize, &failure)
        || !Io::FormatOf(output, {Io::Format::Svg, Io::Format::Png}, &format, &failure)) {
        std::fprintf(stderr, "kezvis: %s\n", qPrintable(failure.message));
        return failure.status;
    }

    KEZVisVectorText text(parser.positionalArguments().first(), KEZVisVectorFont());
    text.SetTextSize(size);
    text.SetAnchor(anchor);
    text.SetTiltAngle(tilt * 3.141592653589793 / 180.0);
    KEZVisOptions options;
    options.SetColor(QColor(20, 20, 20));
    options.SetLineThickness(1.5);
    const std::unique_ptr<KEZVisRep> rep(text.CreateRep(options, false, 0.0));
    QuietPainter();
    if (!Io::WriteReps(output, format, {rep.get()}, pictureSize, &failure)) {
        std::fprintf(stderr, "kezvis: %s\n", qPrintable(failure.message));
        return failure.status;
    }
    const QList<KEZMathSetOfPoints> polylines = text.GetPolylines();
    qsizetype points = 0;
    for (const KEZMathSetOfPoints &polyline : polylines)
        points += polyline.size();
    std::printf("Wrote %s: %lld polylines of %lld points in all.\n", qPrintable(output),
                static_cast<long long>(polylines.size()), static_cast<long long>(points));
    return 0;
}

} // namespace Commands
