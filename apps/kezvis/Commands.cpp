#include "Commands.h"

#include "Gallery.h"
#include "Io.h"
#include "KvrFile.h"
#include "Wireframe.h"

#include <KEZVisOptions.h>
#include <KEZVisPolylinePrimitive.h>
#include <KEZVisRepExtraSet.h>
#include <KEZVisRepFactory.h>
#include <KEZVisRepGraphics.h>
#include <KEZVisSurfacePrimitive.h>

#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLoggingCategory>

#include <cmath>
#include <cstdio>
#include <memory>

namespace Commands {

namespace {

int Report(const Io::Failure &failure)
{
    std::fprintf(stderr, "kezvis: %s\n", qPrintable(failure.message));
    return failure.status;
}

// Parses \a arguments; false with the exit status in \a status when the
// command is done (help shown) or the line is wrong.
bool ParseCommandLine(QCommandLineParser &parser, const QStringList &arguments, int *status)
{
    const QCommandLineOption help = parser.addHelpOption();
    if (!parser.parse(arguments)) {
        *status = UsageError(parser.errorText());
        return false;
    }
    if (parser.isSet(help))
        parser.showHelp(0);
    return true;
}

QString KiloBytes(const QString &path)
{
    return QStringLiteral("%1 kB").arg((QFileInfo(path).size() + 1023) / 1024);
}

int CountPrimitives(const QList<const KEZVisRep *> &reps)
{
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    for (const KEZVisRep *rep : reps)
        rep->GetPrimitives(primitives, options);
    return int(primitives.size());
}

const QCommandLineOption sizeOption({QStringLiteral("s"), QStringLiteral("size")},
                                    QStringLiteral("Size of a PNG picture in pixels."), QStringLiteral("WxH"));
const QCommandLineOption outputOption({QStringLiteral("o"), QStringLiteral("output")},
                                      QStringLiteral("The file to write."), QStringLiteral("OUT"));

bool SizeFrom(const QCommandLineParser &parser, const QString &fallback, QSize *size, Io::Failure *failure)
{
    return Io::ParseSize(parser.isSet(sizeOption) ? parser.value(sizeOption) : fallback, size, failure);
}

// What a command writes: the file, its format and the size of a picture.
struct Output
{
    QString path;
    Io::Format format = Io::Format::Png;
    QSize size;
};

// Parses the command line of a command that reads one file and writes one:
// false, with the exit status in \a status, when the command is done (help
// shown) or the line is wrong.
bool ParseInputAndOutput(QCommandLineParser &parser, const QStringList &arguments, const QString &command,
                         const QString &inputName, const QList<Io::Format> &allowed, QString *input, Output *output,
                         int *status)
{
    parser.addOption(outputOption);
    parser.addOption(sizeOption);
    if (!ParseCommandLine(parser, arguments, status))
        return false;
    if (parser.positionalArguments().size() != 1) {
        *status = UsageError(QStringLiteral("%1 needs exactly one %2").arg(command, inputName));
        return false;
    }
    if (!parser.isSet(outputOption)) {
        *status = UsageError(QStringLiteral("%1 needs -o OUT with one of the suffixes %2")
                                 .arg(command, allowed.contains(Io::Format::Kvr) ? QStringLiteral(".png, .svg, .kvr")
                                                                                 : QStringLiteral(".png, .svg")));
        return false;
    }
    *input = parser.positionalArguments().first();
    output->path = parser.value(outputOption);
    Io::Failure failure;
    if (!SizeFrom(parser, QStringLiteral("1024x768"), &output->size, &failure)
        || !Io::FormatOf(output->path, allowed, &output->format, &failure)) {
        *status = Report(failure);
        return false;
    }
    return true;
}

} // namespace

void QuietPainter()
{
    // The painter's debug lines describe every primitive; a tool that paints
    // thousands of them keeps them out of its output.
    QLoggingCategory::setFilterRules(QStringLiteral("kez.visualization.painter.debug=false"));
}

int UsageError(const QString &message)
{
    std::fprintf(stderr, "kezvis: %s\n", qPrintable(message));
    return 2;
}

int Gallery(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Builds the gallery scene, one labelled panel for each kind of geometry the library makes, and writes it "
        "as gallery.png, gallery.svg and gallery.kvr into the output folder."));
    parser.addOption({{QStringLiteral("o"), QStringLiteral("output")},
                      QStringLiteral("The folder to write into (default: out)."),
                      QStringLiteral("DIR"),
                      QStringLiteral("out")});
    parser.addOption(sizeOption);
    int status = 0;
    if (!ParseCommandLine(parser, arguments, &status))
        return status;
    if (!parser.positionalArguments().isEmpty())
        return UsageError(QStringLiteral("gallery takes no file arguments"));
    Io::Failure failure;
    QSize size;
    if (!SizeFrom(parser, QStringLiteral("1720x1020"), &size, &failure))
        return Report(failure);

    const QString folder = parser.value(QStringLiteral("output"));
    if (!QDir().mkpath(folder))
        return Report({folder + QStringLiteral(": the folder cannot be created"), 1});

    QuietPainter();
    const ::Gallery gallery;
    const QList<const KEZVisRep *> reps = gallery.Reps();
    const QDir dir(folder);
    const QString png = dir.filePath(QStringLiteral("gallery.png"));
    const QString svg = dir.filePath(QStringLiteral("gallery.svg"));
    const QString kvr = dir.filePath(QStringLiteral("gallery.kvr"));
    if (!Io::WriteReps(png, Io::Format::Png, reps, size, &failure)
        || !Io::WriteReps(svg, Io::Format::Svg, reps, size, &failure)
        || !Io::WriteReps(kvr, Io::Format::Kvr, reps, size, &failure))
        return Report(failure);

    const KEZMathBoundingBox box = KEZVisRepFactory::CalculateRepesentationBoundingBox(reps);
    const QRect viewBox = KEZVisRepFactory::CalculateViewBox(box);
    std::printf("Wrote the gallery: %d panels, %d primitives.\n", int(gallery.Panels().size()),
                CountPrimitives(reps));
    std::printf("  %s  PNG, %d x %d pixels on a transparent background, %s\n", qPrintable(png), size.width(),
                size.height(), qPrintable(KiloBytes(png)));
    std::printf("  %s  SVG, view box %d %d %d %d, with the fills of extra sets, %s\n", qPrintable(svg), viewBox.x(),
                viewBox.y(), viewBox.width(), viewBox.height(), qPrintable(KiloBytes(svg)));
    std::printf("  %s  rep stream of the same primitives (kezvis render reads it), %s\n", qPrintable(kvr),
                qPrintable(KiloBytes(kvr)));
    std::printf("Panels: the rectangle in PNG pixels (x y width height), the square in model units, the title\n");
    for (const ::Gallery::Panel &panel : gallery.Panels()) {
        const QRect pixels = Io::PixelRectOf(panel.area, box, size).toAlignedRect();
        std::printf("  panel %d %d %d %d  model %g %g %g %g  %s\n", pixels.x(), pixels.y(), pixels.width(),
                    pixels.height(), panel.area.x(), panel.area.y(), panel.area.width(), panel.area.height(),
                    qPrintable(panel.title));
    }
    return 0;
}

int Render(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Exports a saved rep stream (.kvr) as a PNG or SVG picture."));
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The rep stream to read."),
                                 QStringLiteral("FILE.kvr"));
    QString input;
    Output output;
    int status = 0;
    if (!ParseInputAndOutput(parser, arguments, QStringLiteral("render"), QStringLiteral("FILE.kvr"),
                             {Io::Format::Png, Io::Format::Svg}, &input, &output, &status))
        return status;
    Io::Failure failure;

    QElapsedTimer timer;
    timer.start();
    QFile file;
    if (!Io::OpenForReading(input, &file, &failure))
        return Report(failure);
    const Kvr::ReadResult read = Kvr::Read(file);
    if (!read.error.isEmpty())
        return Report({input + QStringLiteral(": ") + read.error, 1});
    const double readSeconds = timer.nsecsElapsed() / 1e9;
    const double megabytes = file.size() / (1024.0 * 1024.0);

    QuietPainter();
    timer.restart();
    if (!Io::WriteReps(output.path, output.format, read.List(), output.size, &failure))
        return Report(failure);
    const double exportSeconds = timer.nsecsElapsed() / 1e9;
    std::printf("Rendered %d reps from %s into %s: reading %.3f s (%.3f s per MB), export %.3f s.\n",
                int(read.reps.size()), qPrintable(input), qPrintable(output.path), readSeconds,
                megabytes > 0 ? readSeconds / megabytes : 0.0, exportSeconds);
    return 0;
}

namespace {

// The area of the triangles of a surface, seen from above.
double TriangleArea(const KEZVisSurfacePrimitive &surface)
{
    const QList<double> coords = surface.GetVertexCoordinatesAsDouble();
    const QList<long> indexes = surface.GetTriangleVertexIndexes();
    double area = 0.0;
    for (qsizetype t = 0; t + 2 < indexes.size(); t += 3) {
        const double *a = coords.constData() + 3 * indexes[t];
        const double *b = coords.constData() + 3 * indexes[t + 1];
        const double *c = coords.constData() + 3 * indexes[t + 2];
        area += std::abs((b[0] - a[0]) * (c[1] - a[1]) - (c[0] - a[0]) * (b[1] - a[1])) / 2.0;
    }
    return area;
}

KEZVisOptions LineOptions(const QColor &color, double thickness)
{
    KEZVisOptions options;
    options.SetColor(color);
    options.SetLineThickness(thickness);
    return options;
}

KEZVisRep *ClosedRing(KEZMathSetOfPoints ring, const KEZVisOptions &options)
{
    ring.append(ring.first());
    return new KEZVisRepGraphics(
        QList<const KEZVisPrimitive *>{new KEZVisPolylinePrimitive(ring, KEZVisPolylinePrimitive::StructureConnected)},
        options);
}

} // namespace

int Fill(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Fills a polygon with holes and exports it. Each file holds one ring as lines of \"x y\". A .kvr output "
        "holds the filled surface (and its walls and top when extruded) and the rings; a picture shows the "
        "triangles and the rings, filled in SVG."));
    parser.addPositionalArgument(QStringLiteral("outline"), QStringLiteral("The outer ring."),
                                 QStringLiteral("OUTLINE.txt"));
    parser.addOption({QStringLiteral("hole"), QStringLiteral("A hole; may be given many times."),
                      QStringLiteral("HOLE.txt")});
    parser.addOption({QStringLiteral("extrude"), QStringLiteral("Makes a solid of this height."),
                      QStringLiteral("H")});
    QString outline;
    Output output;
    int status = 0;
    if (!ParseInputAndOutput(parser, arguments, QStringLiteral("fill"), QStringLiteral("OUTLINE file"),
                             {Io::Format::Png, Io::Format::Svg, Io::Format::Kvr}, &outline, &output, &status))
        return status;
    Io::Failure failure;
    double extrusion = 0.0;
    const bool solid = parser.isSet(QStringLiteral("extrude"));
    if (solid) {
        bool ok = false;
        extrusion = parser.value(QStringLiteral("extrude")).toDouble(&ok);
        if (!ok || !std::isfinite(extrusion))
            return UsageError(QStringLiteral("--extrude needs a finite number, not '%1'")
                                  .arg(parser.value(QStringLiteral("extrude"))));
    }

    QElapsedTimer timer;
    timer.start();
    QList<KEZMathSetOfPoints> rings;
    QStringList files{outline};
    files.append(parser.values(QStringLiteral("hole")));
    qsizetype pointCount = 0;
    for (const QString &path : files) {
        KEZMathSetOfPoints ring;
        if (!Io::ReadOutline(path, &ring, &failure))
            return Report(failure);
        pointCount += ring.size();
        rings.append(ring);
    }
    const double readSeconds = timer.nsecsElapsed() / 1e9;

    timer.restart();
    std::unique_ptr<KEZVisRep> filled(
        KEZVisRepFactory::CreateFilledPolygonRep(rings, LineOptions(QColor(90, 150, 90), 1.0), extrusion, solid));
    const double fillSeconds = timer.nsecsElapsed() / 1e9;
    if (!filled)
        return Report({files.first() + QStringLiteral(": the polygon could not be filled"), 1});

    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    filled->GetPrimitives(primitives, options);
    const auto *base = primitives.isEmpty() ? nullptr : qobject_cast<const KEZVisSurfacePrimitive *>(primitives.first());
    const int triangles = base ? base->GetNumTriangles() : 0;
    const double area = base ? TriangleArea(*base) : 0.0;

    // The rings, closed, under an extra set whose colour fills them in SVG.
    QList<const KEZVisRep *> ringReps;
    for (qsizetype n = 0; n < rings.size(); ++n)
        ringReps.append(ClosedRing(rings[n], LineOptions(n == 0 ? Qt::darkGreen : Qt::darkRed, 1.5)));
    auto *ringSet = new KEZVisRepExtraSet(ringReps, LineOptions(QColor(200, 235, 200), 1.0));
    std::vector<std::unique_ptr<KEZVisRep>> owned;
    owned.emplace_back(ringSet);
    QList<const KEZVisRep *> reps;
    if (output.format == Io::Format::Kvr) {
        reps = {filled.get(), ringSet};
    } else {
        QuietPainter();
        owned.emplace_back(WireframeOf(*filled, LineOptions(QColor(90, 150, 90), 0.5)));
        reps = {ringSet, owned.back().get()};
    }

    timer.restart();
    if (!Io::WriteReps(output.path, output.format, reps, output.size, &failure))
        return Report(failure);
    const double exportSeconds = timer.nsecsElapsed() / 1e9;
    std::printf("Filled %d rings of %lld points in all: %d triangles, area %.17g\n", int(rings.size()),
                static_cast<long long>(pointCount), triangles, area);
    std::printf("Wrote %s: reading %.3f s, triangulation %.3f s, export %.3f s.\n", qPrintable(output.path), readSeconds,
                fillSeconds, exportSeconds);
    return 0;
}

} // namespace Commands
