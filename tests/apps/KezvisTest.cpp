// kezvis as its users run it: the installed program, started as a process,
// with its files checked from the outside.

#include <KEZVisVectorFont.h>
#include <KEZVisVectorText.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cmath>
#include <cstring>

namespace {

struct RunResult
{
    int status = -1;
    QString out;
    QString err;
};

// The installed program; KEZVIS_PROGRAM can name another one.
QString Program()
{
    const QString chosen = QString::fromUtf8(qgetenv("KEZVIS_PROGRAM"));
    return chosen.isEmpty() ? QStringLiteral(KEZVIS_INSTALLED_PROGRAM) : chosen;
}

RunResult RunKezvis(const QStringList &arguments, qint64 memoryLimit = 0)
{
    QProcess process;
    if (memoryLimit > 0) {
        process.setChildProcessModifier([memoryLimit] {
            const rlimit limit{rlim_t(memoryLimit), rlim_t(memoryLimit)};
            setrlimit(RLIMIT_AS, &limit);
        });
    }
    process.start(Program(), arguments);
    RunResult run;
    if (!process.waitForFinished(300000)) {
        process.kill();
        process.waitForFinished();
        ADD_FAILURE() << "kezvis did not finish: " << arguments.join(QLatin1Char(' ')).toStdString();
        return run;
    }
    run.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

// Expects a refusal: the status, one line on standard error that starts with
// "kezvis: " and contains \a what.
void ExpectRefusal(const RunResult &run, int status, const QString &what)
{
    EXPECT_EQ(run.status, status) << run.err.toStdString();
    const QStringList lines = run.err.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 1) << run.err.toStdString();
    EXPECT_TRUE(lines.first().startsWith(QLatin1String("kezvis: "))) << run.err.toStdString();
    EXPECT_TRUE(lines.first().contains(what)) << run.err.toStdString() << " lacks " << what.toStdString();
}

void WriteFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray ReadFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct PanelLine
{
    QRect pixels;
    QRectF model;
    QString title;
};

QList<PanelLine> PanelsOf(const QString &out)
{
    QList<PanelLine> panels;
    static const QRegularExpression line(QStringLiteral(
        R"(panel (-?\d+) (-?\d+) (\d+) (\d+)  model (-?[\d.]+) (-?[\d.]+) ([\d.]+) ([\d.]+)  (.+))"));
    for (const QString &text : out.split(QLatin1Char('\n'))) {
        const QRegularExpressionMatch match = line.match(text);
        if (match.hasMatch())
            panels.append({QRect(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt(),
                                 match.captured(4).toInt()),
                           QRectF(match.captured(5).toDouble(), match.captured(6).toDouble(),
                                  match.captured(7).toDouble(), match.captured(8).toDouble()),
                           match.captured(9).trimmed()});
    }
    return panels;
}

// Every x, y pair in the drawing elements of an SVG document.
QList<QPointF> SvgPoints(const QByteArray &svg, bool *valid)
{
    QList<QPointF> points;
    QXmlStreamReader reader(svg);
    static const QRegularExpression pair(QStringLiteral(R"((-?[\d.eE+-]+),(-?[\d.eE+-]+))"));
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        QString data;
        if (reader.name() == QLatin1String("path"))
            data = reader.attributes().value(QLatin1String("d")).toString();
        else if (reader.name() == QLatin1String("polyline") || reader.name() == QLatin1String("polygon"))
            data = reader.attributes().value(QLatin1String("points")).toString();
        auto matches = pair.globalMatch(data);
        while (matches.hasNext()) {
            const auto match = matches.next();
            points.append(QPointF(match.captured(1).toDouble(), match.captured(2).toDouble()));
        }
    }
    *valid = !reader.hasError();
    return points;
}

// The point lists of the drawing elements of an SVG document, in order, with
// y turned back to the model's.
QList<QList<QPointF>> SvgShapes(const QByteArray &svg)
{
    QList<QList<QPointF>> shapes;
    QXmlStreamReader reader(svg);
    static const QRegularExpression pair(QStringLiteral(R"((-?[\d.eE+-]+),(-?[\d.eE+-]+))"));
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        QString data;
        if (reader.name() == QLatin1String("path"))
            data = reader.attributes().value(QLatin1String("d")).toString();
        else if (reader.name() == QLatin1String("polyline") || reader.name() == QLatin1String("polygon"))
            data = reader.attributes().value(QLatin1String("points")).toString();
        else
            continue;
        QList<QPointF> shape;
        auto matches = pair.globalMatch(data);
        while (matches.hasNext()) {
            const auto match = matches.next();
            shape.append(QPointF(match.captured(1).toDouble(), -match.captured(2).toDouble()));
        }
        shapes.append(shape);
    }
    return shapes;
}

class KezvisProgram : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QFile::exists(Program())) << Program().toStdString();
        ASSERT_TRUE(m_dir.isValid());
    }

    QString Path(const QString &name) const { return m_dir.filePath(name); }

    // The gallery written once for the tests that read it.
    static const RunResult &Gallery()
    {
        static QTemporaryDir folder;
        static const RunResult run = RunKezvis({QStringLiteral("gallery"), QStringLiteral("-o"), folder.path(),
                                       QStringLiteral("--size"), QStringLiteral("860x640")});
        galleryFolder = folder.path();
        return run;
    }
    static QString GalleryFile(const QString &name) { return QDir(galleryFolder).filePath(name); }

    QTemporaryDir m_dir;
    static QString galleryFolder;
};

QString KezvisProgram::galleryFolder;

} // namespace

// ---------------------------------------------------------------------------
// Usage

TEST_F(KezvisProgram, PrintsItsUsageWithHelp)
{
    const RunResult run = RunKezvis({QStringLiteral("--help")});
    EXPECT_EQ(run.status, 0);
    for (const char *command : {"gallery", "render", "fill", "text"})
        EXPECT_TRUE(run.out.contains(QLatin1String(command))) << run.out.toStdString();
}

TEST_F(KezvisProgram, PrintsItsVersion)
{
    const RunResult run = RunKezvis({QStringLiteral("--version")});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.out.startsWith(QLatin1String("kezvis "))) << run.out.toStdString();
}

TEST_F(KezvisProgram, PrintsTheOptionsOfACommandWithItsHelp)
{
    const RunResult run = RunKezvis({QStringLiteral("render"), QStringLiteral("--help")});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.out.contains(QLatin1String("FILE.kvr"))) << run.out.toStdString();
    EXPECT_TRUE(run.out.contains(QLatin1String("--size"))) << run.out.toStdString();
}

TEST_F(KezvisProgram, RefusesAnUnknownCommand)
{
    ExpectRefusal(RunKezvis({QStringLiteral("paint")}), 2, QStringLiteral("unknown command 'paint'"));
}

TEST_F(KezvisProgram, RefusesAnUnknownOption)
{
    ExpectRefusal(RunKezvis({QStringLiteral("gallery"), QStringLiteral("--colour")}), 2, QStringLiteral("colour"));
}

// ---------------------------------------------------------------------------
// The gallery

TEST_F(KezvisProgram, WritesTheGalleryAsThreeFilesAndSaysWhereTheyAre)
{
    const RunResult &run = Gallery();
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    for (const char *name : {"gallery.png", "gallery.svg", "gallery.kvr"}) {
        EXPECT_TRUE(QFile::exists(GalleryFile(QLatin1String(name)))) << name;
        EXPECT_TRUE(run.out.contains(GalleryFile(QLatin1String(name)))) << name;
    }
    EXPECT_TRUE(run.err.isEmpty()) << run.err.toStdString();
}

TEST_F(KezvisProgram, DrawsSomethingInEveryPanelOfTheGalleryPng)
{
    const RunResult &run = Gallery();
    const QImage image(GalleryFile(QStringLiteral("gallery.png")));
    ASSERT_EQ(image.size(), QSize(860, 640));
    const QList<PanelLine> panels = PanelsOf(run.out);
    ASSERT_GE(panels.size(), 10) << run.out.toStdString();
    for (const PanelLine &panel : panels) {
        // Inside the frame, below the title: the panel's own content.
        const QRect inner = panel.pixels.adjusted(6, panel.pixels.height() / 8, -6, -6);
        int inked = 0;
        for (int y = inner.top(); y <= inner.bottom(); ++y)
            for (int x = inner.left(); x <= inner.right(); ++x)
                inked += image.rect().contains(x, y) && qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
        EXPECT_GT(inked, 20) << panel.title.toStdString();
    }
    // Between the first two panels there is only background.
    const QPoint gap((panels[0].pixels.right() + panels[1].pixels.left()) / 2, panels[0].pixels.center().y());
    EXPECT_EQ(qAlpha(image.pixel(gap)), 0) << "the background is transparent";
}

TEST_F(KezvisProgram, HoldsADrawingInEveryPanelOfTheGallerySvg)
{
    const RunResult &run = Gallery();
    bool valid = false;
    const QList<QPointF> points = SvgPoints(ReadFile(GalleryFile(QStringLiteral("gallery.svg"))), &valid);
    EXPECT_TRUE(valid);
    for (const PanelLine &panel : PanelsOf(run.out)) {
        // The SVG's y is the model's turned over.
        int inside = 0;
        for (const QPointF &point : points)
            inside += panel.model.contains(point.x(), -point.y()) ? 1 : 0;
        EXPECT_GT(inside, 0) << panel.title.toStdString();
    }
}

TEST_F(KezvisProgram, RendersTheGalleryRepStreamPixelForPixelAsTheGalleryPng)
{
    ASSERT_EQ(Gallery().status, 0);
    const RunResult run = RunKezvis({QStringLiteral("render"), GalleryFile(QStringLiteral("gallery.kvr")), QStringLiteral("-o"),
                            Path(QStringLiteral("back.png")), QStringLiteral("--size"), QStringLiteral("860x640")});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    const QImage original(GalleryFile(QStringLiteral("gallery.png")));
    const QImage back(Path(QStringLiteral("back.png")));
    ASSERT_EQ(back.size(), original.size());
    EXPECT_TRUE(back.convertToFormat(QImage::Format_ARGB32) == original.convertToFormat(QImage::Format_ARGB32));
    EXPECT_TRUE(run.out.contains(QLatin1String("per MB"))) << run.out.toStdString();
}

TEST_F(KezvisProgram, RendersARepStreamAsSvg)
{
    ASSERT_EQ(Gallery().status, 0);
    const RunResult run = RunKezvis({QStringLiteral("render"), GalleryFile(QStringLiteral("gallery.kvr")), QStringLiteral("-o"),
                            Path(QStringLiteral("back.svg"))});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    bool valid = false;
    EXPECT_FALSE(SvgPoints(ReadFile(Path(QStringLiteral("back.svg"))), &valid).isEmpty());
    EXPECT_TRUE(valid);
}

// ---------------------------------------------------------------------------
// Filling polygons

namespace {

struct Ring
{
    QList<QPointF> points;
};

// The rings of a shared polygon file: the outline, then each HOLE section;
// a STEINER section is left out.
QList<Ring> RingsOfPolygonFile(const QString &path)
{
    QList<Ring> rings(1);
    bool skipping = false;
    for (const QByteArray &raw : ReadFile(path).split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.isEmpty())
            continue;
        if (line == "HOLE") {
            rings.append(Ring());
            skipping = false;
            continue;
        }
        if (line == "STEINER") {
            skipping = true;
            continue;
        }
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (!skipping && fields.size() == 2)
            rings.last().points.append(QPointF(fields[0].toDouble(), fields[1].toDouble()));
    }
    return rings;
}

double ShoelaceArea(const QList<QPointF> &ring)
{
    double twice = 0.0;
    for (qsizetype i = 0, j = ring.size() - 1; i < ring.size(); j = i++)
        twice += ring[j].x() * ring[i].y() - ring[i].x() * ring[j].y();
    return std::abs(twice) / 2.0;
}

bool ProperlyCross(QPointF a, QPointF b, QPointF c, QPointF d)
{
    auto orient = [](QPointF p, QPointF q, QPointF r) {
        const double value = (q.x() - p.x()) * (r.y() - p.y()) - (q.y() - p.y()) * (r.x() - p.x());
        return (value > 0) - (value < 0);
    };
    const int o1 = orient(a, b, c), o2 = orient(a, b, d), o3 = orient(c, d, a), o4 = orient(c, d, b);
    return o1 * o2 < 0 && o3 * o4 < 0;
}

// Whether no two edges of all rings cross and no point repeats: only then is
// the area of the filled polygon that of the outline less its holes.
bool IsSimple(const QList<Ring> &rings)
{
    QList<QLineF> edges;
    QSet<std::pair<double, double>> seen;
    for (const Ring &ring : rings) {
        for (qsizetype i = 0, j = ring.points.size() - 1; i < ring.points.size(); j = i++) {
            edges.append(QLineF(ring.points[j], ring.points[i]));
            if (seen.contains({ring.points[i].x(), ring.points[i].y()}))
                return false;
            seen.insert({ring.points[i].x(), ring.points[i].y()});
        }
    }
    for (qsizetype i = 0; i < edges.size(); ++i)
        for (qsizetype j = i + 1; j < edges.size(); ++j)
            if (ProperlyCross(edges[i].p1(), edges[i].p2(), edges[j].p1(), edges[j].p2()))
                return false;
    return true;
}

// Whether two points of one ring lie within 0.001 in x and in y, where the
// filled-polygon factory cuts the ring short.
bool HasPointsWithinTolerance(const QList<Ring> &rings)
{
    for (const Ring &ring : rings)
        for (qsizetype i = 0; i < ring.points.size(); ++i)
            for (qsizetype j = i + 1; j < ring.points.size(); ++j)
                if (std::abs(ring.points[i].x() - ring.points[j].x()) < 0.001
                    && std::abs(ring.points[i].y() - ring.points[j].y()) < 0.001)
                    return true;
    return false;
}

double PrintedArea(const QString &out)
{
    static const QRegularExpression area(QStringLiteral(R"(triangles, area ([-+\d.eE]+))"));
    const QRegularExpressionMatch match = area.match(out);
    return match.hasMatch() ? match.captured(1).toDouble() : -1.0;
}

} // namespace

TEST_F(KezvisProgram, FillsEachSharedPolygonWithTrianglesOfThePolygonsArea)
{
    const QDir data(QStringLiteral(KEZ_POLYGON_DATA_DIR));
    const QStringList files = data.entryList({QStringLiteral("*.dat")}, QDir::Files, QDir::Name);
    if (files.isEmpty())
        GTEST_SKIP() << "the shared polygon files are not at hand";
    int checked = 0;
    for (const QString &name : files) {
        const QList<Ring> rings = RingsOfPolygonFile(data.filePath(name));
        if (rings.first().points.size() < 3 || !IsSimple(rings) || HasPointsWithinTolerance(rings))
            continue; // not a simple polygon, or one whose points the factory merges
        QStringList arguments{QStringLiteral("fill")};
        double expected = 0.0;
        for (int n = 0; n < rings.size(); ++n) {
            QByteArray text;
            for (const QPointF &point : rings[n].points)
                text += QByteArray::number(point.x(), 'g', 17) + ' ' + QByteArray::number(point.y(), 'g', 17) + '\n';
            const QString ringFile = Path(QStringLiteral("%1-%2.txt").arg(name).arg(n));
            WriteFile(ringFile, text);
            if (n > 0)
                arguments << QStringLiteral("--hole");
            arguments << ringFile;
            expected += (n == 0 ? 1 : -1) * ShoelaceArea(rings[n].points);
        }
        arguments << QStringLiteral("-o") << Path(name + QStringLiteral(".kvr"));
        const RunResult run = RunKezvis(arguments);
        ASSERT_EQ(run.status, 0) << name.toStdString() << ": " << run.err.toStdString();
        EXPECT_NEAR(PrintedArea(run.out), expected, 1e-9 * expected) << name.toStdString();
        ++checked;
    }
    EXPECT_GE(checked, 10);
}

TEST_F(KezvisProgram, ReportsReadingTriangulationAndExportTimesOfAFill)
{
    WriteFile(Path(QStringLiteral("square.txt")), "0 0\n10 0\n10 10\n0 10\n");
    WriteFile(Path(QStringLiteral("hole.txt")), "4 4\r\n6 4\r\n\r\n6 6\r\n4 6\r\n");
    const RunResult run = RunKezvis({QStringLiteral("fill"), Path(QStringLiteral("square.txt")), QStringLiteral("--hole"),
                            Path(QStringLiteral("hole.txt")), QStringLiteral("--extrude"), QStringLiteral("3"),
                            QStringLiteral("-o"), Path(QStringLiteral("plate.svg"))});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_DOUBLE_EQ(PrintedArea(run.out), 96.0);
    for (const char *part : {"reading", "triangulation", "export"})
        EXPECT_TRUE(run.out.contains(QLatin1String(part))) << run.out.toStdString();
    bool valid = false;
    EXPECT_FALSE(SvgPoints(ReadFile(Path(QStringLiteral("plate.svg"))), &valid).isEmpty());
    EXPECT_TRUE(valid);
}

// ---------------------------------------------------------------------------
// Vector text

TEST_F(KezvisProgram, WritesThePolylinesThatTheVectorTextLayoutGives)
{
    const QString text = QStringLiteral("Kez 42\nvis");
    const RunResult run = RunKezvis({QStringLiteral("text"), text, QStringLiteral("--size"), QStringLiteral("12"),
                                     QStringLiteral("--anchor"), QStringLiteral("Middle"), QStringLiteral("--tilt"),
                                     QStringLiteral("15"), QStringLiteral("-o"), Path(QStringLiteral("text.svg"))});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();

    KEZVisVectorText expected(text, KEZVisVectorFont());
    expected.SetTextSize(12.0);
    expected.SetAnchor(KEZVisVectorText::Middle);
    expected.SetTiltAngle(15.0 * 3.141592653589793 / 180.0);
    const QList<KEZMathSetOfPoints> polylines = expected.GetPolylines();
    const QList<QList<QPointF>> shapes = SvgShapes(ReadFile(Path(QStringLiteral("text.svg"))));
    ASSERT_EQ(shapes.size(), polylines.size());
    // The painter orders strokes of equal priority by its own sort, so each
    // polyline is looked for among the shapes not matched yet. The SVG writer
    // keeps six significant digits.
    auto matches = [](const QList<QPointF> &shape, const KEZMathSetOfPoints &polyline) {
        if (shape.size() != polyline.size())
            return false;
        for (qsizetype k = 0; k < shape.size(); ++k)
            if (std::abs(shape[k].x() - polyline[k].GetX()) > 1e-3 || std::abs(shape[k].y() - polyline[k].GetY()) > 1e-3)
                return false;
        return true;
    };
    QList<bool> used(shapes.size(), false);
    for (qsizetype n = 0; n < polylines.size(); ++n) {
        bool found = false;
        for (qsizetype m = 0; m < shapes.size() && !found; ++m)
            if (!used[m] && matches(shapes[m], polylines[n]))
                used[m] = found = true;
        EXPECT_TRUE(found) << "polyline " << n << " of " << polylines[n].size() << " points is not in the SVG";
    }
    EXPECT_TRUE(run.out.contains(QStringLiteral("%1 polylines").arg(polylines.size()))) << run.out.toStdString();
}

TEST_F(KezvisProgram, WritesVectorTextAsAPicture)
{
    const RunResult run = RunKezvis({QStringLiteral("text"), QStringLiteral("PNG"), QStringLiteral("-o"),
                                     Path(QStringLiteral("text.png")), QStringLiteral("--picture-size"),
                                     QStringLiteral("300x100")});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    const QImage image(Path(QStringLiteral("text.png")));
    ASSERT_EQ(image.size(), QSize(300, 100));
    int inked = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            inked += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
    EXPECT_GT(inked, 100);
}

TEST_F(KezvisProgram, RefusesATextSizeThatIsNotAPositiveNumber)
{
    for (const char *size : {"0", "-3", "nan", "inf", "big"})
        ExpectRefusal(RunKezvis({QStringLiteral("text"), QStringLiteral("A"), QStringLiteral("--size"),
                                 QLatin1String(size), QStringLiteral("-o"), Path(QStringLiteral("a.svg"))}),
                      2, QStringLiteral("--size needs a positive number"));
    EXPECT_FALSE(QFile::exists(Path(QStringLiteral("a.svg"))));
}

TEST_F(KezvisProgram, RefusesAnUnknownAnchorAndATiltOfNinetyDegrees)
{
    ExpectRefusal(RunKezvis({QStringLiteral("text"), QStringLiteral("A"), QStringLiteral("--anchor"),
                             QStringLiteral("Centre"), QStringLiteral("-o"), Path(QStringLiteral("a.svg"))}),
                  2, QStringLiteral("unknown anchor 'Centre'"));
    ExpectRefusal(RunKezvis({QStringLiteral("text"), QStringLiteral("A"), QStringLiteral("--tilt"), QStringLiteral("90"),
                             QStringLiteral("-o"), Path(QStringLiteral("a.svg"))}),
                  2, QStringLiteral("--tilt"));
}

// ---------------------------------------------------------------------------
// Bad input

TEST_F(KezvisProgram, RefusesAMissingFile)
{
    ExpectRefusal(RunKezvis({QStringLiteral("render"), Path(QStringLiteral("none.kvr")), QStringLiteral("-o"),
                          Path(QStringLiteral("out.png"))}),
                  1, QStringLiteral("none.kvr: no such file"));
    EXPECT_FALSE(QFile::exists(Path(QStringLiteral("out.png"))));
}

TEST_F(KezvisProgram, RefusesAFileThatCannotBeRead)
{
    // A socket is a file that no one, root included, can open for reading.
    const QByteArray socketPath = Path(QStringLiteral("socket.kvr")).toLocal8Bit();
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(fd, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(size_t(socketPath.size()), sizeof(address.sun_path));
    std::memcpy(address.sun_path, socketPath.constData(), size_t(socketPath.size()));
    ASSERT_EQ(::bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof(address)), 0);
    const RunResult run = RunKezvis({QStringLiteral("render"), QString::fromLocal8Bit(socketPath), QStringLiteral("-o"),
                            Path(QStringLiteral("out.png"))});
    ::close(fd);
    ExpectRefusal(run, 1, QStringLiteral("socket.kvr: cannot be read"));
    EXPECT_FALSE(QFile::exists(Path(QStringLiteral("out.png"))));
}

TEST_F(KezvisProgram, RefusesADirectory)
{
    ExpectRefusal(RunKezvis({QStringLiteral("render"), m_dir.path(), QStringLiteral("-o"), Path(QStringLiteral("out.png"))}),
                  1, QStringLiteral("is a directory"));
}

TEST_F(KezvisProgram, RefusesAnEmptyFile)
{
    WriteFile(Path(QStringLiteral("empty.kvr")), QByteArray());
    ExpectRefusal(RunKezvis({QStringLiteral("render"), Path(QStringLiteral("empty.kvr")), QStringLiteral("-o"),
                          Path(QStringLiteral("out.png"))}),
                  1, QStringLiteral("empty.kvr: is empty"));
}

TEST_F(KezvisProgram, RefusesAFileWithoutTheRepStreamHeader)
{
    WriteFile(Path(QStringLiteral("other.kvr")), "\x89PNG\r\n\x1a\n0000000000000000");
    ExpectRefusal(RunKezvis({QStringLiteral("render"), Path(QStringLiteral("other.kvr")), QStringLiteral("-o"),
                          Path(QStringLiteral("out.png"))}),
                  1, QStringLiteral("not a rep stream file"));
}

TEST_F(KezvisProgram, RefusesATruncatedRepStreamAndLeavesNoOutput)
{
    ASSERT_EQ(Gallery().status, 0);
    const QByteArray whole = ReadFile(GalleryFile(QStringLiteral("gallery.kvr")));
    WriteFile(Path(QStringLiteral("cut.kvr")), whole.left(whole.size() / 2));
    ExpectRefusal(RunKezvis({QStringLiteral("render"), Path(QStringLiteral("cut.kvr")), QStringLiteral("-o"),
                          Path(QStringLiteral("out.png"))}),
                  1, QStringLiteral("truncated or corrupt rep stream"));
    EXPECT_FALSE(QFile::exists(Path(QStringLiteral("out.png"))));
}

TEST_F(KezvisProgram, RefusesACorruptRepStream)
{
    ASSERT_EQ(Gallery().status, 0);
    QByteArray bytes = ReadFile(GalleryFile(QStringLiteral("gallery.kvr")));
    // The first record's kind and counts, and then some, turned to 0xFF.
    for (int n = 16; n < 40; ++n)
        bytes[n] = char(0xFF);
    WriteFile(Path(QStringLiteral("corrupt.kvr")), bytes);
    const RunResult run = RunKezvis({QStringLiteral("render"), Path(QStringLiteral("corrupt.kvr")), QStringLiteral("-o"),
                            Path(QStringLiteral("out.svg"))});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.startsWith(QLatin1String("kezvis: "))) << run.err.toStdString();
    EXPECT_FALSE(QFile::exists(Path(QStringLiteral("out.svg"))));
}

TEST_F(KezvisProgram, RefusesAGigabyteOfGarbageQuicklyAndInBoundedMemory)
{
    // A valid header announcing many reps, then garbage up to 1 GB (a
    // sparse file, so that the test does not write it all).
    QByteArray head("\x89KVR\r\n\x1a\n", 8);
    head += QByteArray::fromHex("00000001" "00100000");
    for (int n = 0; n < 4096; ++n)
        head += char((n * 7919) % 251 + 3);
    const QString path = Path(QStringLiteral("garbage.kvr"));
    WriteFile(path, head);
    QFile file(path);
    ASSERT_TRUE(file.resize(qint64(1) << 30));
#if defined(KEZ_SANITIZED_BUILD)
    const qint64 memoryLimit = 0; // the sanitizers reserve far more address space than they use
#else
    const qint64 memoryLimit = qint64(1) << 30;
#endif
    const RunResult run = RunKezvis({QStringLiteral("render"), path, QStringLiteral("-o"), Path(QStringLiteral("out.png"))},
                           memoryLimit);
    ExpectRefusal(run, 1, QStringLiteral("garbage.kvr: "));
    EXPECT_FALSE(QFile::exists(Path(QStringLiteral("out.png"))));
}

TEST_F(KezvisProgram, RefusesAnOutlineWithATokenThatIsNotANumber)
{
    WriteFile(Path(QStringLiteral("words.txt")), "0 0\n1 zero\n1 1\n");
    ExpectRefusal(RunKezvis({QStringLiteral("fill"), Path(QStringLiteral("words.txt")), QStringLiteral("-o"),
                          Path(QStringLiteral("out.kvr"))}),
                  1, QStringLiteral("words.txt: line 2: 'zero' is not a number"));
    EXPECT_FALSE(QFile::exists(Path(QStringLiteral("out.kvr"))));
}

TEST_F(KezvisProgram, RefusesAnOutlineWithAnOddNumberOfCoordinates)
{
    WriteFile(Path(QStringLiteral("odd.txt")), "0 0\n1 0 5\n1 1\n");
    ExpectRefusal(RunKezvis({QStringLiteral("fill"), Path(QStringLiteral("odd.txt")), QStringLiteral("-o"),
                          Path(QStringLiteral("out.kvr"))}),
                  1, QStringLiteral("odd.txt: line 2: expected two numbers"));
}

TEST_F(KezvisProgram, RefusesNaNAndInfiniteCoordinates)
{
    for (const QByteArray &bad : {QByteArray("nan"), QByteArray("inf"), QByteArray("-inf"), QByteArray("1e999")}) {
        WriteFile(Path(QStringLiteral("wild.txt")), "0 0\n1 " + bad + "\n1 1\n");
        ExpectRefusal(RunKezvis({QStringLiteral("fill"), Path(QStringLiteral("wild.txt")), QStringLiteral("-o"),
                              Path(QStringLiteral("out.kvr"))}),
                      1, QStringLiteral("wild.txt: line 2: "));
    }
}

TEST_F(KezvisProgram, RefusesAnOutlineOfFewerThanThreePoints)
{
    WriteFile(Path(QStringLiteral("two.txt")), "0 0\n1 0\n");
    ExpectRefusal(RunKezvis({QStringLiteral("fill"), Path(QStringLiteral("two.txt")), QStringLiteral("-o"),
                          Path(QStringLiteral("out.kvr"))}),
                  1, QStringLiteral("two.txt: an outline needs at least three points, found 2"));
}

TEST_F(KezvisProgram, RefusesAnUnknownOutputSuffix)
{
    WriteFile(Path(QStringLiteral("square.txt")), "0 0\n1 0\n1 1\n0 1\n");
    ExpectRefusal(RunKezvis({QStringLiteral("fill"), Path(QStringLiteral("square.txt")), QStringLiteral("-o"),
                          Path(QStringLiteral("out.bmp"))}),
                  2, QStringLiteral("unknown output suffix '.bmp'"));
    EXPECT_FALSE(QFile::exists(Path(QStringLiteral("out.bmp"))));
}

TEST_F(KezvisProgram, RefusesAnOutputFolderThatCannotBeWritten)
{
    // A folder below a plain file cannot exist, whoever asks.
    WriteFile(Path(QStringLiteral("plain")), "x");
    const RunResult run = RunKezvis({QStringLiteral("gallery"), QStringLiteral("-o"), Path(QStringLiteral("plain/sub"))});
    ExpectRefusal(run, 1, QStringLiteral("plain/sub"));
    WriteFile(Path(QStringLiteral("square.txt")), "0 0\n1 0\n1 1\n0 1\n");
    ExpectRefusal(RunKezvis({QStringLiteral("fill"), Path(QStringLiteral("square.txt")), QStringLiteral("-o"),
                          Path(QStringLiteral("plain/out.png"))}),
                  1, QStringLiteral("plain/out.png: cannot be written"));
}

TEST_F(KezvisProgram, RefusesAPictureSizeOfZeroOrOfTenBillionPixels)
{
    for (const char *size : {"0x100", "100x0", "100000x100000", "wide", "10x"}) {
        ExpectRefusal(RunKezvis({QStringLiteral("gallery"), QStringLiteral("-o"), Path(QStringLiteral("g")),
                              QStringLiteral("--size"), QLatin1String(size)}),
                      2, QStringLiteral("size"));
        EXPECT_FALSE(QFile::exists(Path(QStringLiteral("g/gallery.png")))) << size;
    }
}
