// Painting 10,000 and 100,000 polylines of 10 points each (mixed line styles
// and priorities) into a 2,000 x 2,000 image through PaintReps, against the
// same polylines drawn with direct QPainter calls in the same order with the
// same pens; and CreateSvgImage against QSvgGenerator driven directly. The
// priorities come mixed, all equal and already sorted, to show that the sort
// keeps its pace on each. The painter's debug lines are switched off, as an
// application that paints this much would do; the printed ratios compare CPU
// times of one run.

#include "CpuTimeReporter.h"

#include "KEZVisOptions.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisRepFactory.h"
#include "KEZVisRepGraphics.h"

#include <KEZMathPlane.h>

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QLoggingCategory>
#include <QPainter>
#include <QSvgGenerator>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace {

enum class Priorities { Mixed, Equal, Sorted };

const char *NameOf(Priorities priorities)
{
    switch (priorities) {
    case Priorities::Mixed: return "mixed";
    case Priorities::Equal: return "equal";
    case Priorities::Sorted: return "sorted";
    }
    return "";
}

const int imageSide = 2000;

QList<qreal> DashPatternOf(int lineStyle)
{
    static const QList<QList<qreal>> table{{},
                                           {3, 2},
                                           {1, 2},
                                           {3, 2, 1, 2},
                                           {5, 1, 3, 1},
                                           {3, 2, 1, 2, 1, 2},
                                           {3, 2, 1, 2, 1, 2, 1, 2},
                                           {3, 2, 3, 2, 1, 2, 1, 2},
                                           {5, 1, 5, 1, 3, 1},
                                           {3, 2, 3, 2, 1, 2, 1, 2, 1, 2},
                                           {7, 2, 1, 2},
                                           {7, 2, 1, 2, 1, 2},
                                           {7, 2, 1, 2, 1, 2, 1, 2}};
    return lineStyle >= 0 && lineStyle < table.size() ? table[lineStyle] : QList<qreal>();
}

// The painter's quicksort of ascending key, carrying the original positions.
void QuickSortOrder(std::vector<int> &keys, std::vector<int> &positions, int low, int high)
{
    int i = low;
    int j = high;
    const int pivot = keys[(i + j) / 2];
    while (i <= j) {
        while (keys[i] < pivot)
            ++i;
        while (pivot < keys[j])
            --j;
        if (i > j)
            break;
        std::swap(keys[i], keys[j]);
        std::swap(positions[i], positions[j]);
        ++i;
        --j;
    }
    if (low < j)
        QuickSortOrder(keys, positions, low, j);
    if (i < high)
        QuickSortOrder(keys, positions, i, high);
}

// The polylines as reps for the library and as point arrays and pens for the
// direct painter, the latter already in the order the library paints.
struct Drawing
{
    std::vector<std::unique_ptr<KEZVisRep>> reps;
    QList<const KEZVisRep *> repList;
    std::vector<QList<QPointF>> polylines; // in painting order
    std::vector<QPen> pens;               // in painting order
};

std::unique_ptr<Drawing> MakeDrawing(int count, Priorities priorities)
{
    auto drawing = std::make_unique<Drawing>();
    std::mt19937 random(4711);
    std::uniform_real_distribution<double> place(20.0, imageSide - 60.0);
    std::uniform_real_distribution<double> step(-4.0, 4.0);
    std::uniform_int_distribution<int> style(0, 12);
    std::uniform_int_distribution<int> priority(0, 9);

    std::vector<int> keys(count);
    for (int n = 0; n < count; ++n)
        keys[n] = priorities == Priorities::Mixed ? priority(random) : (priorities == Priorities::Equal ? 1 : n / 100);

    std::vector<QList<QPointF>> points(count);
    std::vector<QPen> pens(count);
    for (int n = 0; n < count; ++n) {
        double x = place(random);
        double y = place(random);
        KEZMathSetOfPoints set;
        for (int k = 0; k < 10; ++k) {
            x += 4.0 + std::abs(step(random));
            y += step(random);
            set.append(KEZMathPoint(x, y, 0.0));
            points[n].append(QPointF(x, y));
        }
        KEZVisOptions options;
        options.SetColor(QColor::fromHsv((n * 37) % 360, 200, 200));
        options.SetLineStyle(static_cast<KEZVisOptions::LineStyle>(style(random)));
        options.SetLineThickness(1.0 + n % 3);
        options.SetPriority(keys[n]);
        QPen pen;
        pen.setDashPattern(DashPatternOf(options.GetLineStyle()));
        pen.setCosmetic(false);
        pen.setWidthF(options.GetLineThickness());
        pen.setColor(options.GetColor());
        pens[n] = pen;
        drawing->reps.emplace_back(new KEZVisRepGraphics(
            QList<const KEZVisPrimitive *>{
                new KEZVisPolylinePrimitive(set, KEZVisPolylinePrimitive::StructureConnected)},
            options));
        drawing->repList.append(drawing->reps.back().get());
    }

    // The direct painter gets the library's order: ascending priority, ties
    // as the library's documented quicksort leaves them.
    std::vector<int> order(count);
    std::iota(order.begin(), order.end(), 0);
    std::vector<int> sortedKeys = keys;
    if (count > 0)
        QuickSortOrder(sortedKeys, order, 0, count - 1);
    for (int n : order) {
        drawing->polylines.push_back(points[n]);
        drawing->pens.push_back(pens[n]);
    }
    return drawing;
}

QImage Canvas()
{
    QImage image(imageSide, imageSide, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

void PaintRepsIntoImage(benchmark::State &state, Priorities priorities)
{
    const auto drawing = MakeDrawing(int(state.range(0)), priorities);
    QImage image = Canvas();
    for (auto _ : state) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        KEZVisRepFactory::PaintReps(KEZMathPlane(), &painter, drawing->repList);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void DirectPainterIntoImage(benchmark::State &state)
{
    const auto drawing = MakeDrawing(int(state.range(0)), Priorities::Mixed);
    QImage image = Canvas();
    for (auto _ : state) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        for (size_t n = 0; n < drawing->polylines.size(); ++n) {
            painter.setPen(drawing->pens[n]);
            painter.drawPolyline(drawing->polylines[n].constData(), int(drawing->polylines[n].size()));
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void CreateSvgImage(benchmark::State &state)
{
    const auto drawing = MakeDrawing(int(state.range(0)), Priorities::Mixed);
    const KEZMathBoundingBox box = KEZVisRepFactory::CalculateRepesentationBoundingBox(drawing->repList);
    const QRect viewBox = KEZVisRepFactory::CalculateViewBox(box);
    for (auto _ : state) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        KEZVisRepFactory::CreateSvgImage(drawing->repList, box, viewBox, &buffer);
        benchmark::DoNotOptimize(buffer.data().size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The SVG painter paints rep by rep in list order, so the direct one does too,
// with y negated as the library's plane does.
void DirectSvgGenerator(benchmark::State &state)
{
    const auto drawing = MakeDrawing(int(state.range(0)), Priorities::Mixed);
    const KEZMathBoundingBox box = KEZVisRepFactory::CalculateRepesentationBoundingBox(drawing->repList);
    const QRect viewBox = KEZVisRepFactory::CalculateViewBox(box);
    std::vector<QList<QPointF>> polylines;
    std::vector<QPen> pens;
    for (const KEZVisRep *rep : drawing->repList) {
        QList<const KEZVisPrimitive *> primitives;
        QList<KEZVisOptions> options;
        rep->GetPrimitives(primitives, options);
        const auto *polyline = static_cast<const KEZVisPolylinePrimitive *>(primitives.first());
        const std::vector<double> coords = polyline->GetCoordsAsDouble();
        QList<QPointF> points;
        for (size_t k = 0; k + 2 < coords.size(); k += 3)
            points.append(QPointF(coords[k], -coords[k + 1]));
        polylines.push_back(points);
        QPen pen;
        pen.setDashPattern(DashPatternOf(options.first().GetLineStyle()));
        pen.setCosmetic(false);
        pen.setWidthF(options.first().GetLineThickness());
        pen.setColor(options.first().GetColor());
        pens.push_back(pen);
    }
    for (auto _ : state) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QSvgGenerator generator;
        generator.setOutputDevice(&buffer);
        generator.setSize(QSize(int(box.GetDeltaX()), int(box.GetDeltaY())));
        generator.setViewBox(viewBox);
        QPainter painter(&generator);
        for (size_t n = 0; n < polylines.size(); ++n) {
            painter.save();
            painter.setPen(pens[n]);
            painter.drawPolyline(polylines[n].constData(), int(polylines[n].size()));
            painter.restore();
        }
        painter.end();
        benchmark::DoNotOptimize(buffer.data().size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

class RatioReporter : public CpuTimeReporter
{
public:
    void PrintRatios() const
    {
        std::printf("\nCPU time in ms; the library over the direct painter; 100,000 over 10,000 polylines\n");
        std::printf("%-22s %10s %10s %8s %12s %12s\n", "case", "10,000", "100,000", "x10", "vs direct 10k",
                    "vs direct 100k");
        for (const char *name : {"PaintReps/mixed", "PaintReps/equal", "PaintReps/sorted", "DirectPainter",
                                 "CreateSvgImage", "DirectSvgGenerator"}) {
            const double small = Time(std::string(name) + "/10000");
            const double large = Time(std::string(name) + "/100000");
            if (small <= 0 || large <= 0)
                continue;
            const bool svg = std::string(name).find("Svg") != std::string::npos;
            const std::string direct = svg ? "DirectSvgGenerator/" : "DirectPainter/";
            const double directSmall = Time(direct + "10000");
            const double directLarge = Time(direct + "100000");
            std::printf("%-22s %10.1f %10.1f %8.2f %12.2f %12.2f\n", name, small, large, large / small,
                        directSmall > 0 ? small / directSmall : 0.0, directLarge > 0 ? large / directLarge : 0.0);
        }
    }
};

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("kez.visualization.painter.debug=false"));
    // Qt's notice that the SVG export asks for render hints before its painter
    // begins would come once per run.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});

    for (Priorities priorities : {Priorities::Mixed, Priorities::Equal, Priorities::Sorted})
        benchmark::RegisterBenchmark((std::string("PaintReps/") + NameOf(priorities)).c_str(), PaintRepsIntoImage,
                                     priorities)
            ->Arg(10000)
            ->Arg(100000)
            ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("DirectPainter", DirectPainterIntoImage)
        ->Arg(10000)
        ->Arg(100000)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("CreateSvgImage", CreateSvgImage)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("DirectSvgGenerator", DirectSvgGenerator)
        ->Arg(10000)
        ->Arg(100000)
        ->Unit(benchmark::kMillisecond);

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintRatios();
    benchmark::Shutdown();
    return 0;
}
