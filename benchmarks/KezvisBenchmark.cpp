// kezvis run as a user runs it, timed from outside: "fill" of an outline of
// 1,000,000 points on a circle with 1,000 round holes, with the program's own
// split into reading, triangulation and export; and "render" of a rep stream
// of 100,000 polylines, with its reading time per MB. The fill must finish in
// under twice the time of the filling inside it.

#include "KEZVisOptions.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisRepGraphics.h"

#include <QDataStream>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>

namespace {

const double pi = 3.141592653589793;

QTemporaryDir &Folder()
{
    static QTemporaryDir folder;
    return folder;
}

void WriteRing(const QString &path, double cx, double cy, double radius, int count)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    QByteArray text;
    text.reserve(count * 32);
    for (int n = 0; n < count; ++n) {
        const double angle = 2.0 * pi * n / count;
        text += QByteArray::number(cx + radius * std::cos(angle), 'f', 9) + ' '
            + QByteArray::number(cy + radius * std::sin(angle), 'f', 9) + '\n';
    }
    file.write(text);
}

// The outline and 1,000 holes on a grid well inside it; the arguments of
// kezvis fill for them.
QStringList FillArguments()
{
    static QStringList arguments;
    if (!arguments.isEmpty())
        return arguments;
    const QDir dir(Folder().path());
    const double radius = 10000.0;
    WriteRing(dir.filePath(QStringLiteral("outline.txt")), 0, 0, radius, 1000000);
    arguments << QStringLiteral("fill") << dir.filePath(QStringLiteral("outline.txt"));
    const int grid = 46;
    const double step = 2 * radius / grid;
    int holes = 0;
    for (int row = 0; row < grid && holes < 1000; ++row)
        for (int column = 0; column < grid && holes < 1000; ++column) {
            const double x = -radius + step * (column + 0.5);
            const double y = -radius + step * (row + 0.5);
            if (std::hypot(x, y) > 0.85 * radius)
                continue;
            const QString hole = dir.filePath(QStringLiteral("hole%1.txt").arg(holes++));
            WriteRing(hole, x, y, 0.3 * step, 16);
            arguments << QStringLiteral("--hole") << hole;
        }
    arguments << QStringLiteral("-o") << dir.filePath(QStringLiteral("filled.kvr"));
    return arguments;
}

// A rep stream of 1,000 reps of 100 polylines of 10 points each, in the
// documented .kvr form: header, then each rep as a graphics record.
QString RepStreamOf100000Polylines()
{
    const QString path = QDir(Folder().path()).filePath(QStringLiteral("polylines.kvr"));
    if (QFile::exists(path))
        return path;
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write("\x89KVR\r\n\x1a\n", 8);
    QDataStream out(&file);
    out.setVersion(QDataStream::Qt_6_4);
    out.setByteOrder(QDataStream::BigEndian);
    out << quint32(1) << quint32(1000);
    for (int rep = 0; rep < 1000; ++rep) {
        QList<const KEZVisPrimitive *> primitives;
        QList<KEZVisOptions> options;
        for (int n = 0; n < 100; ++n) {
            KEZMathSetOfPoints points;
            for (int k = 0; k < 10; ++k)
                points.append(KEZMathPoint(rep % 40 * 50 + k * 4, rep / 40 * 50 + n * 0.5 + (k % 2), 0));
            primitives.append(new KEZVisPolylinePrimitive(points, KEZVisPolylinePrimitive::StructureConnected));
            KEZVisOptions entry;
            entry.SetLineStyle(static_cast<KEZVisOptions::LineStyle>(n % 13));
            options.append(entry);
        }
        out << quint8(1);
        KEZVisRepGraphics(primitives, options).Save(out);
    }
    return path;
}

double Seconds(const QString &out, const char *what)
{
    const QRegularExpression pattern(QString::fromLatin1(what) + QStringLiteral(R"( ([\d.]+) s)"));
    const QRegularExpressionMatch match = pattern.match(out);
    return match.hasMatch() ? match.captured(1).toDouble() : -1.0;
}

bool RunKezvis(benchmark::State &state, const QStringList &arguments, QString *out)
{
    QProcess process;
    process.start(QStringLiteral(KEZVIS_PROGRAM), arguments);
    if (!process.waitForFinished(600000) || process.exitCode() != 0) {
        state.SkipWithError("kezvis failed");
        return false;
    }
    *out = QString::fromUtf8(process.readAllStandardOutput());
    return true;
}

void KezvisFill(benchmark::State &state)
{
    const QStringList arguments = FillArguments();
    QString out;
    double whole = 0.0;
    for (auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        if (!RunKezvis(state, arguments, &out))
            return;
        whole = timer.nsecsElapsed() / 1e9;
        state.SetIterationTime(whole);
    }
    const double reading = Seconds(out, "reading");
    const double filling = Seconds(out, "triangulation");
    const double exporting = Seconds(out, "export");
    state.counters["reading_s"] = reading;
    state.counters["triangulation_s"] = filling;
    state.counters["export_s"] = exporting;
    state.counters["program_over_triangulation"] = filling > 0 ? whole / filling : 0.0;
    std::printf("kezvis fill, last run: the program %.3f s, of which reading %.3f s, triangulation %.3f s, "
                "export %.3f s; the program over the triangulation %.2f\n",
                whole, reading, filling, exporting, filling > 0 ? whole / filling : 0.0);
}

void KezvisRender(benchmark::State &state, const char *suffix)
{
    const QString input = RepStreamOf100000Polylines();
    const QString output = QDir(Folder().path()).filePath(QStringLiteral("render.") + QLatin1String(suffix));
    QString out;
    for (auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        if (!RunKezvis(state, {QStringLiteral("render"), input, QStringLiteral("-o"), output}, &out))
            return;
        state.SetIterationTime(timer.nsecsElapsed() / 1e9);
    }
    static const QRegularExpression perMegabyte(QStringLiteral(R"(\(([\d.]+) s per MB\))"));
    const QRegularExpressionMatch match = perMegabyte.match(out);
    state.counters["read_s_per_MB"] = match.hasMatch() ? match.captured(1).toDouble() : -1.0;
    state.counters["MB"] = QFileInfo(input).size() / (1024.0 * 1024.0);
}

} // namespace

BENCHMARK(KezvisFill)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK_CAPTURE(KezvisRender, png, "png")->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK_CAPTURE(KezvisRender, svg, "svg")->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
