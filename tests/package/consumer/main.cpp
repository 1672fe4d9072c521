// A tiny application built against the installed package: it checks that the
// library started when it was loaded and uses a few types of the family.
// Any failed check makes it exit with status 1.

#include <KEZMathBoundingBox.h>
#include <KEZMathPoint.h>
#include <KEZVisualization.h>

#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QDataStream>
#include <QGuiApplication>
#include <QIODevice>
#include <QImage>
#include <QMetaType>

#include <cmath>
#include <cstdio>

namespace {

int failures = 0;

void Check(bool condition, const char *what)
{
    if (!condition) {
        std::fprintf(stderr, "FAILED: %s\n", what);
        ++failures;
    }
}

// A thumbnail as PNG bytes and a drawing as an SVG document, made from one
// dashed diagonal rep.
void CheckPictureExport()
{
    KEZMathSetOfPoints points;
    points.append(KEZMathPoint(0.0, 0.0, 0.0));
    points.append(KEZMathPoint(40.0, 20.0, 0.0));
    KEZVisOptions options;
    options.SetColor(QColor(0, 0, 255));
    options.SetLineStyle(KEZVisOptions::LineStyleDash);
    options.SetLineThickness(3.0);
    KEZVisRep *rep = KEZVisRepFactory::CreatePolylineRep(points, options);
    const QList<const KEZVisRep *> reps{rep};

    const QImage image = KEZVisRepFactory::CreateImage(QSize(80, 40), reps, QColor(Qt::white));
    Check(image.size() == QSize(80, 40), "size of the exported image");
    int inked = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            inked += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
    Check(inked > 40 && qAlpha(image.pixel(70, 35)) == 0,
          "the line in the exported image on a transparent background");
    QBuffer png;
    png.open(QIODevice::WriteOnly);
    Check(image.save(&png, "PNG") && png.data().startsWith("\x89PNG"), "the image saved as PNG");

    const KEZMathBoundingBox box = KEZVisRepFactory::CalculateRepesentationBoundingBox(reps);
    QBuffer svg;
    svg.open(QIODevice::WriteOnly);
    KEZVisRepFactory::CreateSvgImage(reps, box, KEZVisRepFactory::CalculateViewBox(box), &svg);
    Check(svg.data().contains("<svg") && svg.data().contains("viewBox=\"0 -20 41 21\"")
              && svg.data().contains("stroke-dasharray=\"9,6\""),
          "the SVG document with its view box and dashes");
    delete rep;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);

    Check(_KEZVisualizationLoaded, "the library's load-time routine ran");
    Check(QMetaType::fromName("KEZVisOptions").isValid(),
          "KEZVisOptions is known to Qt's meta-type system");

    KEZVisOptions options;
    Check(options.GetPriority() == 1 && options.IsDepthEnabled() && !options.GetColor().isValid(),
          "default options");
    options.SetColor(QColor(255, 0, 0));
    options.SetLineStyle(KEZVisOptions::LineStyleDashDot);
    options.SetLineThickness(2.0);
    options.SetPriority(3);
    const KEZVisOptions copy = options;
    Check(copy == options && copy.GetPriority() == 3, "copied options");

    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out << options;
    }
    KEZVisOptions streamed;
    QDataStream in(bytes);
    in >> streamed;
    Check(in.status() == QDataStream::Ok && streamed == options, "options through a data stream");

    KEZVisOptions fromJson;
    Check(fromJson.FromJson(options.ToJson()) && fromJson == options, "options through JSON");

    const KEZMathPoint first(1.0, 2.0, 3.0);
    const KEZMathPoint second(4.0, -1.0, 5.0);
    KEZMathBoundingBox box(first);
    box.Expand(second);
    Check(box.GetLowerPoint() == KEZMathPoint(1.0, -1.0, 3.0), "lower corner of the box");
    Check(box.GetUpperPoint() == KEZMathPoint(4.0, 2.0, 5.0), "upper corner of the box");
    Check(box.GetDeltaX() == 3.0 && box.GetDeltaY() == 3.0, "extent of the box");
    Check(std::fabs(first.GetDistanceTo(second) - std::sqrt(22.0)) < 1e-12, "distance of two points");

    CheckPictureExport();

    // The built-in vector font is there without any call of the application.
    Check(KEZVisVectorFont::GetFontNames() == QList<QString>{QStringLiteral("simple")},
          "the built-in vector font is listed");
    KEZVisVectorText text(QStringLiteral("A"), KEZVisVectorFont());
    text.SetTextSize(7.0);
    Check(text.GetPolylines().size() == 2, "the letter A lays out as two strokes");

    if (failures != 0) {
        std::fprintf(stderr, "%d check(s) failed\n", failures);
        return 1;
    }
    std::printf("KEZVisualization consumer ran\n");
    return 0;
}
