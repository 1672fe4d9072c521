// Reps of topology bodies: KEZVisRepFactory::CreateRep on bodies of 1,000 to
// 100,000 edges and as many faces, against building the same primitives and
// reps directly from the same curves and surfaces, without the body.
//
// Each edge is an open curve of two points, each face a surface of four points
// and two triangles, laid out on a grid. Only the making of the rep is timed;
// deleting it is not. After the usual output a table gives the CPU times, the
// factory's time over the direct one, and the factory's time over that of the
// body a tenth the size (about 10 when the time grows linearly).

#include "KEZVisPolylinePrimitive.h"
#include "KEZVisRepFactory.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisRepSet.h"
#include "KEZVisSurfacePrimitive.h"

#include <KEZGeoComboCurve.h>
#include <KEZGeoRangeOfCurve.h>
#include <KEZGeoSurface.h>
#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>
#include <KEZTopBody.h>
#include <KEZTopEdge.h>
#include <KEZTopFace.h>

#include "CpuTimeReporter.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

const int Sizes[] = {1000, 10000, 100000};

// A body of `size` edges and `size` faces, with the geometry it rests on.
struct Model
{
    std::vector<std::unique_ptr<KEZGeoComboCurve>> curves;
    std::vector<std::unique_ptr<KEZGeoSurface>> surfaces;
    std::unique_ptr<KEZTopBody> body;

    explicit Model(int size)
        : body(new KEZTopBody)
    {
        const int side = int(std::ceil(std::sqrt(double(size))));
        curves.reserve(size_t(size));
        surfaces.reserve(size_t(size));
        for (int i = 0; i < size; ++i) {
            const double x = double(i % side);
            const double y = double(i / side);
            KEZMathSetOfPoints ends;
            ends.append(KEZMathPoint(x, y, 0.0));
            ends.append(KEZMathPoint(x + 1.0, y, 0.0));
            curves.push_back(std::make_unique<KEZGeoComboCurve>(ends, false));
            body->AddEntity(1, new KEZTopEdge(curves.back().get()));

            KEZMathSetOfPoints corners;
            corners.append(KEZMathPoint(x, y, 0.0));
            corners.append(KEZMathPoint(x + 1.0, y, 0.0));
            corners.append(KEZMathPoint(x + 1.0, y + 1.0, 0.0));
            corners.append(KEZMathPoint(x, y + 1.0, 0.0));
            surfaces.push_back(std::make_unique<KEZGeoSurface>(corners, QList<int>{0, 1, 2, 0, 2, 3}));
            body->AddEntity(2, new KEZTopFace(surfaces.back().get()));
        }
    }

    ~Model()
    {
        body.reset(); // the entities go before the geometry they refer to
    }
};

// One model per size, made once and shared by both benchmarks of that size.
Model &ModelOfSize(int size)
{
    static std::map<int, std::unique_ptr<Model>> models;
    std::unique_ptr<Model> &model = models[size];
    if (!model)
        model = std::make_unique<Model>(size);
    return *model;
}

void Factory(benchmark::State &state)
{
    Model &model = ModelOfSize(int(state.range(0)));
    const KEZVisOptions edgeOptions;
    const KEZVisOptions faceOptions;
    const QFlags<KEZVisOptions::VisibleGeometry> visible =
        QFlags<KEZVisOptions::VisibleGeometry>(KEZVisOptions::VisibleEdges) | KEZVisOptions::VisibleFaces;
    for (auto _ : state) {
        std::unique_ptr<KEZVisRep> rep(
            KEZVisRepFactory::CreateRep(model.body.get(), KEZVisOptions(), edgeOptions, faceOptions, visible));
        benchmark::DoNotOptimize(rep.get());
        state.PauseTiming();
        rep.reset();
        state.ResumeTiming();
    }
    state.counters["entities_per_s"] =
        benchmark::Counter(2.0 * double(state.range(0)), benchmark::Counter::kIsIterationInvariantRate);
}

// The same primitives, reps and set, made straight from the geometry.
void Direct(benchmark::State &state)
{
    Model &model = ModelOfSize(int(state.range(0)));
    const KEZVisOptions edgeOptions;
    const KEZVisOptions faceOptions;
    for (auto _ : state) {
        QList<const KEZVisPrimitive *> edges;
        edges.reserve(qsizetype(model.curves.size()));
        for (const std::unique_ptr<KEZGeoComboCurve> &curve : model.curves)
            edges.append(new KEZVisPolylinePrimitive(curve.get(), KEZGeoRangeOfCurve()));
        QList<const KEZVisPrimitive *> faces;
        faces.reserve(qsizetype(model.surfaces.size()));
        for (const std::unique_ptr<KEZGeoSurface> &surface : model.surfaces)
            faces.append(new KEZVisSurfacePrimitive(surface.get()));
        std::unique_ptr<KEZVisRep> rep(new KEZVisRepSet(
            {new KEZVisRepGraphics(edges, edgeOptions), new KEZVisRepGraphics(faces, faceOptions)}));
        benchmark::DoNotOptimize(rep.get());
        state.PauseTiming();
        rep.reset();
        state.ResumeTiming();
    }
    state.counters["entities_per_s"] =
        benchmark::Counter(2.0 * double(state.range(0)), benchmark::Counter::kIsIterationInvariantRate);
}

class RatioReporter : public CpuTimeReporter
{
public:
    void PrintRatios() const
    {
        std::printf("\nCPU time in ms for edges and faces of each count; the factory divided by the direct\n"
                    "building; the factory's time over that of the body a tenth the size\n");
        std::printf("%-10s %12s %12s %10s %10s\n", "count", "direct", "factory", "ratio", "x10 body");
        double previous = -1.0;
        for (int size : Sizes) {
            const double direct = Time("Direct/" + std::to_string(size));
            const double factory = Time("Factory/" + std::to_string(size));
            if (direct <= 0 || factory <= 0)
                continue;
            std::printf("%-10d %12.3f %12.3f %10.3f", size, direct, factory, factory / direct);
            if (previous > 0)
                std::printf(" %10.2f", factory / previous);
            std::printf("\n");
            previous = factory;
        }
    }
};

} // namespace

int main(int argc, char **argv)
{
    for (int size : Sizes) {
        benchmark::RegisterBenchmark("Direct", Direct)->Arg(size)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("Factory", Factory)->Arg(size)->Unit(benchmark::kMillisecond);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintRatios();
    benchmark::Shutdown();
    return 0;
}
