// Writes the seed corpus of the fuzz targets: small valid inputs of each, in
// the input layout that the target's own file describes. The files are checked
// in under fuzz/corpus/; build and run this again after a change of a stream
// form (the fuzz build's target SeedCorpusWriter):
//
//   SeedCorpusWriter <folder>     writes <folder>/<Target>/<name> for every target

#include "FuzzSupport.h"

#include "KEZVisArrowRep.h"
#include "KEZVisOptions.h"
#include "KEZVisPointPrimitive.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisRepFactory.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisSurfacePrimitive.h"
#include "KEZVisTextPrimitive.h"

#ifdef KEZ_FUZZ_KVR
#include "KvrFile.h"
#endif

#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>
#include <KEZMathVector.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

namespace {

// Settings bytes that the seeds are written with: the current version in
// either byte order and precision, and three older versions.
const std::uint8_t SettingsBytes[] = {0x00, 0x08, 0x10, 0x03, 0x06, 0x07};

QString g_folder;
int g_written = 0;

void Write(const QString &target, const QString &name, const QByteArray &bytes)
{
    const QString folder = g_folder + QLatin1Char('/') + target;
    QDir().mkpath(folder);
    QFile file(folder + QLatin1Char('/') + name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(file.fileName()));
        std::exit(1);
    }
    ++g_written;
}

// The settings byte, then what write puts on a stream of those settings.
QByteArray Streamed(std::uint8_t settingsByte, const std::function<void(QDataStream &)> &write)
{
    QByteArray bytes(1, char(settingsByte));
    QByteArray body;
    {
        QDataStream out(&body, QIODevice::WriteOnly);
        KEZFuzz::StreamSettings::FromByte(settingsByte).ApplyTo(out);
        write(out);
    }
    return bytes + body;
}

KEZVisOptions RichOptions()
{
    KEZVisOptions options;
    options.SetColor(QColor(200, 100, 50, 128));
    options.SetLineStyle(KEZVisOptions::LineStyleDashDot);
    options.SetLineThickness(2.5);
    options.SetPointSymbol(KEZVisOptions::PointSymbolMarker);
    QFont font(QStringLiteral("Sans"), 11);
    font.setFamilies({QStringLiteral("Sans"), QStringLiteral("Serif")});
    font.setStyleName(QStringLiteral("Bold"));
    font.setItalic(true);
    font.setLetterSpacing(QFont::PercentageSpacing, 110.0);
    options.SetFont(font);
    options.SetDepthEnabled(false);
    options.SetPriority(7);
    return options;
}

KEZVisOptions PixelFontOptions()
{
    KEZVisOptions options;
    options.SetColor(QColor(Qt::blue));
    QFont font(QStringLiteral("Mono"));
    font.setPixelSize(14);
    options.SetFont(font);
    return options;
}

KEZVisSurfacePrimitive *Tetrahedron()
{
    double *coords = new double[12]{0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};
    int *indexes = new int[12]{0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3};
    return new KEZVisSurfacePrimitive(4, coords, 4, indexes, nullptr);
}

KEZMathSetOfPoints Square(double size, double z = 0.0)
{
    KEZMathSetOfPoints points;
    points.append(KEZMathPoint(0, 0, z));
    points.append(KEZMathPoint(size, 0, z));
    points.append(KEZMathPoint(size, size, z));
    points.append(KEZMathPoint(0, size, z));
    return points;
}

void WriteReps()
{
    struct Sample
    {
        const char *name;
        std::uint8_t pick;
        std::function<KEZVisRep *()> make;
    };
    const std::vector<Sample> samples = {
        {"empty", 0, [] { return new KEZVisRepGraphics(); }},
        {"surfaces", 0,
         [] {
             return new KEZVisRepGraphics({Tetrahedron(), Tetrahedron()}, QList<KEZVisOptions>{RichOptions(),
                                                                                              PixelFontOptions()});
         }},
        {"polyline", 0,
         [] {
             return new KEZVisRepGraphics({new KEZVisPolylinePrimitive(Square(2.0), KEZVisPolylinePrimitive::StructureConnected)},
                                          RichOptions());
         }},
        {"point", 1,
         [] { return new KEZVisRepGraphics({new KEZVisPointPrimitive(Square(1.0))}, PixelFontOptions()); }},
        {"sphere", 2, [] { return KEZVisRepFactory::CreateSphereRep(KEZMathPoint(1, 2, 3), 2.0, 3, RichOptions()); }},
        {"prism", 3,
         [] {
             return KEZVisRepFactory::CreatePrismRep(KEZMathPoint(0, 0, 0), KEZMathVector(0, 0, 1), 1.0, 2.0, 5,
                                                     KEZVisOptions());
         }},
        {"arrow", 4,
         [] {
             return new KEZVisArrowRep(KEZMathPoint(0, 0, 0), KEZMathVector(1, 0, 0), 5.0, KEZVisOptions(), 6, 0.05,
                                       0.1, 0.8);
         }},
        {"plane", 0,
         [] {
             return KEZVisRepFactory::CreatePlaneRep(Square(3.0), KEZMathVector(0, 0, 1), RichOptions(),
                                                     KEZVisOptions());
         }},
    };
    for (const Sample &sample : samples) {
        for (std::uint8_t settings : SettingsBytes) {
            std::unique_ptr<KEZVisRep> rep(sample.make());
            QByteArray bytes = Streamed(settings, [&](QDataStream &out) { rep->Save(out); });
            bytes.insert(1, char(sample.pick));
            Write(QStringLiteral("RepLoadFuzzer"),
                  QStringLiteral("%1-%2").arg(QLatin1String(sample.name)).arg(settings, 2, 16, QLatin1Char('0')),
                  bytes);
        }
    }
}

void WriteOptions()
{
    const std::vector<std::pair<const char *, KEZVisOptions>> samples = {
        {"default", KEZVisOptions()}, {"rich", RichOptions()}, {"pixel-font", PixelFontOptions()}};
    for (const auto &sample : samples) {
        for (std::uint8_t settings : SettingsBytes) {
            Write(QStringLiteral("OptionsStreamFuzzer"),
                  QStringLiteral("%1-%2").arg(QLatin1String(sample.first)).arg(settings, 2, 16, QLatin1Char('0')),
                  Streamed(settings, [&](QDataStream &out) { out << sample.second; }));
        }
        Write(QStringLiteral("OptionsJsonFuzzer"), QLatin1String(sample.first),
              QJsonDocument(sample.second.ToJson().toObject()).toJson(QJsonDocument::Compact));
    }
    // Options inside a larger document, and a list of them.
    QJsonObject outer;
    outer.insert(QStringLiteral("options"), RichOptions().ToJson());
    outer.insert(QStringLiteral("other"), KEZVisOptions().ToJson());
    Write(QStringLiteral("OptionsJsonFuzzer"), QStringLiteral("nested"),
          QJsonDocument(outer).toJson(QJsonDocument::Compact));
}

void WritePolylines()
{
    for (std::uint8_t settings : SettingsBytes) {
        // The writer's form, whose count the reader takes narrower.
        KEZVisPolylinePrimitive square(Square(2.0), KEZVisPolylinePrimitive::StructureConnected);
        Write(QStringLiteral("PolylineStreamFuzzer"), QStringLiteral("written-%1").arg(settings, 2, 16, QLatin1Char('0')),
              Streamed(settings, [&](QDataStream &out) { out << square; }));
        // The reader's form: structure and count as qint32, then the points.
        Write(QStringLiteral("PolylineStreamFuzzer"), QStringLiteral("read-%1").arg(settings, 2, 16, QLatin1Char('0')),
              Streamed(settings, [](QDataStream &out) {
                  out << qint32(0) << qint32(4);
                  for (double value : {0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 1.0, 1.0, 0.5, 0.0, 1.0, 0.5})
                      out << value;
              }));
    }
}

void WriteSurfaces()
{
    for (std::uint8_t settings : SettingsBytes) {
        std::unique_ptr<KEZVisSurfacePrimitive> tetrahedron(Tetrahedron());
        Write(QStringLiteral("SurfaceStreamFuzzer"), QStringLiteral("tetrahedron-%1").arg(settings, 2, 16, QLatin1Char('0')),
              Streamed(settings, [&](QDataStream &out) { out << *tetrahedron; }));
        std::unique_ptr<KEZVisSurfacePrimitive> sphere(
            KEZVisRepFactory::CreateSpherePrimitive(KEZMathPoint(0, 0, 0), 1.0, 2));
        Write(QStringLiteral("SurfaceStreamFuzzer"), QStringLiteral("sphere-%1").arg(settings, 2, 16, QLatin1Char('0')),
              Streamed(settings, [&](QDataStream &out) { out << *sphere; }));
    }
}

void AppendDouble(QByteArray &bytes, double value)
{
    char raw[sizeof(double)];
    std::memcpy(raw, &value, sizeof raw);
    bytes.append(raw, sizeof raw);
}

void WriteFilledPolygons()
{
    const QString target = QStringLiteral("FilledPolygonFuzzer");
    // Grid: a square outline with a square hole; two rings.
    {
        QByteArray bytes(1, char(1 << 1));
        bytes.append(char(4));
        for (int v : {-50, -50, 50, -50, 50, 50, -50, 50})
            bytes.append(char(v));
        bytes.append(char(4));
        for (int v : {-10, -10, -10, 10, 10, 10, 10, -10})
            bytes.append(char(v));
        Write(target, QStringLiteral("grid-square-with-hole"), bytes);
    }
    // Grid: a comb with repeated points and a crossing hole; three rings.
    {
        QByteArray bytes(1, char(2 << 1));
        const std::vector<int> comb = {-60, -20, 60, -20, 60, 40, 40, 40, 40, 0, 20, 0, 20, 40,
                                       20, 40, 0, 40, 0, 0, -20, 0, -20, 40, -60, 40};
        bytes.append(char(comb.size() / 2));
        for (int v : comb)
            bytes.append(char(v));
        bytes.append(char(3));
        for (int v : {-50, -10, -40, -15, -45, 5})
            bytes.append(char(v));
        bytes.append(char(4));
        for (int v : {-30, -15, 30, -5, 30, -15, -30, -5})
            bytes.append(char(v));
        Write(target, QStringLiteral("grid-comb-crossing-hole"), bytes);
    }
    // Raw doubles: a star outline and a small hole, at height 2.
    {
        QByteArray bytes(1, char(1 | (1 << 1)));
        bytes.append(char(10));
        for (int i = 0; i < 10; ++i) {
            const double r = i % 2 == 0 ? 10.0 : 4.0;
            const double t = 3.14159265358979323846 * i / 5.0;
            AppendDouble(bytes, r * std::cos(t));
            AppendDouble(bytes, r * std::sin(t));
            AppendDouble(bytes, 2.0);
        }
        bytes.append(char(3));
        for (double v : {-1.0, -1.0, 2.0, -1.0, 1.0, 2.0, 1.0, 0.0, 2.0})
            AppendDouble(bytes, v);
        Write(target, QStringLiteral("raw-star-with-hole"), bytes);
    }
    // Raw doubles: a triangle with a point that is no number and one that is huge.
    {
        QByteArray bytes(1, char(1));
        bytes.append(char(5));
        for (double v : {0.0, 0.0, 0.0, 1e300, 0.0, 0.0, std::numeric_limits<double>::quiet_NaN(), 1.0, 0.0,
                         1.0, 1.0, 0.0, 0.0, 1.0, std::numeric_limits<double>::denorm_min()})
            AppendDouble(bytes, v);
        Write(target, QStringLiteral("raw-odd-numbers"), bytes);
    }
}

// A number in the PaintFuzzer's form: a small integer in one byte, anything
// else as a marker byte and the double.
void AppendNumber(QByteArray &bytes, double value)
{
    if (value == std::floor(value) && value >= -56.0 && value <= 55.0) {
        bytes.append(char(int(value) + 72));
        return;
    }
    bytes.append(char(0x80));
    AppendDouble(bytes, value);
}

void AppendPoints(QByteArray &bytes, std::initializer_list<double> coordinates)
{
    for (double value : coordinates)
        AppendNumber(bytes, value);
}

void WritePainting()
{
    const QString target = QStringLiteral("PaintFuzzer");
    // Every kind of primitive, one rep each: points, separate segments, a
    // closed square, a tetrahedron and a text, in several priorities and line
    // styles.
    QByteArray primitives;
    primitives.append(char(0)).append(char(0x80)).append(char(2));
    AppendPoints(primitives, {1, 1, 0, 2, 3, 0});
    primitives.append(char(1)).append(char(0x93)).append(char(4));
    AppendPoints(primitives, {-10, -10, 0, 10, 10, 0, -10, 10, 0, 10, -10, 5});
    primitives.append(char(2)).append(char(0xa4)).append(char(5));
    AppendPoints(primitives, {0, 0, 0, 20, 0, 0, 20, 20, 0, 0, 20, 0, 0, 0, 0});
    primitives.append(char(3)).append(char(0x7a)).append(char(4));
    AppendPoints(primitives, {0, 0, 0, 5, 0, 0, 0, 5, 0, 0, 0, 5});
    primitives.append(char(4));
    for (int v : {0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3})
        primitives.append(char(v));
    primitives.append(char(4)).append(char(0x85)).append(char(2)).append("Hi");
    AppendPoints(primitives, {3.5, -2.25, 0});
    primitives.append(char(4 + 4)); // the centre
    const std::vector<std::pair<const char *, std::uint8_t>> layouts = {
        {"primitives", 0x00}, {"primitives-extra-set", 0x02}, {"primitives-image", 0x04},
        {"primitives-side-plane", 0x08}, {"primitives-tilted-plane", 0x16}};
    for (const auto &layout : layouts)
        Write(target, QLatin1String(layout.first), QByteArray(1, char(layout.second)) + primitives);
    // A plane whose directions are given: x along (1, 1, 0), y along z.
    {
        QByteArray bytes(1, char(0x18 | 0x04));
        AppendPoints(bytes, {1, 1, 0, 0, 0, 1});
        Write(target, QStringLiteral("primitives-given-plane"), bytes + primitives);
    }
    // Odd numbers: NaN, infinities, huge and tiny values in points, lines and text.
    {
        QByteArray bytes(1, char(0x04));
        bytes.append(char(2)).append(char(0x31)).append(char(3));
        for (int v : {2, 0, 0, 3, 5, 0, 4, 7, 0})
            bytes.append(char(v));
        bytes.append(char(1)).append(char(0x02)).append(char(2));
        for (int v : {9, 6, 0, 10, 11, 0})
            bytes.append(char(v));
        bytes.append(char(4)).append(char(0x40)).append(char(1)).append("X");
        for (int v : {13, 12, 0})
            bytes.append(char(v));
        bytes.append(char(9));
        Write(target, QStringLiteral("odd-numbers"), bytes);
    }
    // Reps from the rep stream: the stream settings, the pick of a graphics
    // rep, then what Save() writes.
    const std::vector<std::pair<const char *, std::function<KEZVisRep *()>>> reps = {
        {"stream-polyline",
         [] {
             return new KEZVisRepGraphics({new KEZVisPolylinePrimitive(Square(2.0), KEZVisPolylinePrimitive::StructureConnected)},
                                          RichOptions());
         }},
        {"stream-surfaces",
         [] {
             return new KEZVisRepGraphics({Tetrahedron(), Tetrahedron()}, QList<KEZVisOptions>{RichOptions(),
                                                                                              PixelFontOptions()});
         }},
    };
    for (const auto &sample : reps) {
        for (std::uint8_t settings : {std::uint8_t(0x00), std::uint8_t(0x10), std::uint8_t(0x06)}) {
            std::unique_ptr<KEZVisRep> rep(sample.second());
            QByteArray bytes = Streamed(settings, [&](QDataStream &out) { rep->Save(out); });
            bytes.insert(1, char(0));
            Write(target, QStringLiteral("%1-%2").arg(QLatin1String(sample.first)).arg(settings, 2, 16, QLatin1Char('0')),
                  QByteArray(1, char(0x01 | 0x02 | 0x04)) + bytes);
        }
    }
}

void WriteVectorFonts()
{
    const QString target = QStringLiteral("VectorFontFuzzer");
    QFile builtIn(QStringLiteral(":/vector-fonts/simple.vct"));
    if (!builtIn.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "cannot read the built-in font\n");
        std::exit(1);
    }
    const QByteArray simple = builtIn.readAll();
    const QByteArray wide("A\n3 5\n0 0 2 6 4 0\nB\n2 2.5\n0 0 0 10\nC\n2\n0 0 1 1\n\n10 4\n");
    const QByteArray crlf("A\r\n2\r\n0 0 1 1\r\n-1 -1 3 3\r\nZ\r\n4 1e3\r\n0 0 4 0 0 6 4 6\r\n\r\n7 6 3\r\nNAME\r\n");
    const QByteArray headless("A\n2\n0 0 1 1\nB\n2\n0 0 1 1\n");
    struct Sample
    {
        const char *name;
        std::uint8_t mode;
        std::uint8_t layout;
        std::uint8_t spacing;
        QByteArray text;
        QByteArray file;
    };
    const std::vector<Sample> samples = {
        {"simple-read", 0x00, 0x44, 0x00, "Hello,\nworld!", simple},
        {"simple-resource", 0x01 | (4 << 2), 0x41 | (7 << 2), 0x40, "AbC\n12", simple},
        {"simple-compressed", 0x03 | 0x40 | 0x80, 0x42, 0x08, "x\xe9\x80~ ", simple},
        {"wide-read", 0x00 | (8 << 2), 0x41, 0x01, "AB\nCA", wide},
        {"wide-resource", 0x01, 0x44 | (1 << 2), 0x40, "ABC", wide},
        {"crlf-compressed", 0x03, 0x43, 0x03, "AZ\nZA\n", crlf},
        {"headless-read", 0x00, 0x40 | (2 << 2), 0x00, "AB", headless},
        {"odd-sizes-read", 0x00, 0x20 | 0x80, 0x12, "A\nB", wide},
    };
    for (const Sample &sample : samples) {
        QByteArray bytes;
        bytes.append(char(sample.mode)).append(char(sample.layout)).append(char(sample.spacing));
        bytes.append(char(sample.text.size())).append(sample.text).append(sample.file);
        Write(target, QLatin1String(sample.name), bytes);
    }
}

#ifdef KEZ_FUZZ_KVR
void WriteKvrFiles()
{
    const QString target = QStringLiteral("KvrFileFuzzer");
    KEZVisOptions textOptions = PixelFontOptions();
    textOptions.SetPriority(2);
    const std::vector<std::pair<const char *, std::function<QList<KEZVisRep *>()>>> samples = {
        {"empty", [] { return QList<KEZVisRep *>{}; }},
        {"polyline-and-surface",
         [] {
             return QList<KEZVisRep *>{new KEZVisRepGraphics(
                 {new KEZVisPolylinePrimitive(Square(2.0), KEZVisPolylinePrimitive::StructureConnected), Tetrahedron()},
                 QList<KEZVisOptions>{RichOptions(), KEZVisOptions()})};
         }},
        {"points-and-text",
         [textOptions] {
             return QList<KEZVisRep *>{
                 new KEZVisRepGraphics({new KEZVisPointPrimitive(Square(1.0, 2.0))}, RichOptions()),
                 new KEZVisRepGraphics({new KEZVisTextPrimitive(QStringLiteral("Label \u00e9"), KEZMathPoint(1, 2, 3),
                                                                KEZVisTextPrimitive::AnchorTopRight,
                                                                KEZVisTextPrimitive::ScalabilityFixedSize)},
                                       textOptions)};
         }},
        {"sphere-and-arrow",
         [] {
             return QList<KEZVisRep *>{
                 KEZVisRepFactory::CreateSphereRep(KEZMathPoint(1, 2, 3), 2.0, 2, KEZVisOptions()),
                 new KEZVisArrowRep(KEZMathPoint(0, 0, 0), KEZMathVector(1, 0, 0), 5.0, KEZVisOptions(), 4, 0.05,
                                    0.1, 0.8)};
         }},
    };
    for (const auto &sample : samples) {
        const QList<KEZVisRep *> reps = sample.second();
        QList<const KEZVisRep *> list;
        for (KEZVisRep *rep : reps)
            list.append(rep);
        QByteArray file;
        {
            QBuffer buffer(&file);
            buffer.open(QIODevice::WriteOnly);
            QString error;
            if (!Kvr::Write(buffer, list, &error)) {
                std::fprintf(stderr, "cannot write a .kvr file: %s\n", qPrintable(error));
                std::exit(1);
            }
        }
        qDeleteAll(reps);
        // From a buffer, and from a sequential device.
        Write(target, QLatin1String(sample.first), QByteArray(1, char(0)) + file);
        Write(target, QStringLiteral("%1-sequential").arg(QLatin1String(sample.first)), QByteArray(1, char(1)) + file);
    }
}
#endif

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <folder>\n", argv[0]);
        return 2;
    }
    KEZFuzz::SetUpApplication();
    g_folder = QString::fromLocal8Bit(argv[1]);
    WriteReps();
    WriteOptions();
    WritePolylines();
    WriteSurfaces();
    WriteFilledPolygons();
    WritePainting();
    WriteVectorFonts();
#ifdef KEZ_FUZZ_KVR
    WriteKvrFiles();
#endif
    std::printf("%d seed files written to %s\n", g_written, argv[1]);
    return 0;
}
