// Cost of the flat coordinate arrays of a large mesh, each set against a plain
// memcpy of as many bytes, measured in the same run.
//
// The mesh is a torus sampled on a 1000 x 1000 grid that wraps round in both
// directions: exactly 1,000,000 vertices and 2,000,000 triangles.
//
// Each operation is timed, and so is a memcpy between two buffers that are
// allocated and touched beforehand, of the number of bytes that the operation
// hands out:
//
//   construction          the normal array it computes (2M x 3 doubles, 48 MB);
//                         the vertex and index arrays are taken over, not copied
//   vertex doubles        the list returned (1M x 3 doubles, 24 MB)
//   vertex floats         the list returned (1M x 3 floats, 12 MB)
//   triangle normals      the list returned (2M x 3 doubles, 48 MB)
//   Save + Load           the rep stream of the mesh (about 48 MB): Save of a
//                         graphics rep into a QBuffer, then Load of those bytes
//                         into a new rep, normals computed again; the two are
//                         also timed alone
//
// A second reference, "new + memcpy", copies into a freshly allocated buffer
// each time, as a getter that hands out a new list must. The summary printed
// at the end gives each operation's time as a ratio to both.

#include "KEZVisOptions.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisSurfacePrimitive.h"

#include <QBuffer>
#include <QDataStream>
#include <QGuiApplication>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int GridSize = 1000;
constexpr int NumVertexes = GridSize * GridSize;
constexpr int NumTriangles = 2 * GridSize * GridSize;

struct Mesh
{
    std::vector<double> vertices;
    std::vector<int> triangles;
};

const Mesh &torus()
{
    static const Mesh mesh = [] {
        Mesh m;
        m.vertices.reserve(3 * size_t(NumVertexes));
        m.triangles.reserve(3 * size_t(NumTriangles));
        const double pi = 3.141592653589793;
        for (int i = 0; i < GridSize; ++i) {
            const double u = 2.0 * pi * i / GridSize;
            for (int j = 0; j < GridSize; ++j) {
                const double v = 2.0 * pi * j / GridSize;
                m.vertices.push_back((3.0 + std::cos(v)) * std::cos(u));
                m.vertices.push_back((3.0 + std::cos(v)) * std::sin(u));
                m.vertices.push_back(std::sin(v));
            }
        }
        for (int i = 0; i < GridSize; ++i) {
            for (int j = 0; j < GridSize; ++j) {
                const int a = i * GridSize + j;
                const int b = ((i + 1) % GridSize) * GridSize + j;
                const int c = ((i + 1) % GridSize) * GridSize + (j + 1) % GridSize;
                const int d = i * GridSize + (j + 1) % GridSize;
                m.triangles.insert(m.triangles.end(), {a, b, c, a, c, d});
            }
        }
        return m;
    }();
    return mesh;
}

KEZVisSurfacePrimitive *newTorusPrimitive()
{
    const Mesh &mesh = torus();
    auto *vertices = new double[mesh.vertices.size()];
    std::memcpy(vertices, mesh.vertices.data(), mesh.vertices.size() * sizeof(double));
    auto *triangles = new int[mesh.triangles.size()];
    std::memcpy(triangles, mesh.triangles.data(), mesh.triangles.size() * sizeof(int));
    return new KEZVisSurfacePrimitive(NumVertexes, vertices, NumTriangles, triangles, nullptr);
}

const KEZVisSurfacePrimitive &sharedPrimitive()
{
    static const std::unique_ptr<KEZVisSurfacePrimitive> primitive(newTorusPrimitive());
    return *primitive;
}

constexpr qint64 VertexDoubleBytes = 3 * qint64(NumVertexes) * qint64(sizeof(double));
constexpr qint64 VertexFloatBytes = 3 * qint64(NumVertexes) * qint64(sizeof(float));
constexpr qint64 NormalDoubleBytes = 3 * qint64(NumTriangles) * qint64(sizeof(double));
// The stream form of the mesh: two counts, the vertices as doubles and the
// indexes as qint32. The rep's counts, options and tag add some 100 bytes.
constexpr qint64 StreamBytes = 8 + VertexDoubleBytes + 3 * qint64(NumTriangles) * 4;

void memcpyReference(benchmark::State &state)
{
    const size_t bytes = size_t(state.range(0));
    std::vector<char> source(bytes, 1);
    std::vector<char> target(bytes, 0);
    for (auto _ : state) {
        std::memcpy(target.data(), source.data(), bytes);
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(qint64(state.iterations()) * qint64(bytes));
}

void newMemcpyReference(benchmark::State &state)
{
    const size_t bytes = size_t(state.range(0));
    std::vector<char> source(bytes, 1);
    for (auto _ : state) {
        std::unique_ptr<char[]> target(new char[bytes]);
        std::memcpy(target.get(), source.data(), bytes);
        benchmark::DoNotOptimize(target.get());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(qint64(state.iterations()) * qint64(bytes));
}

void constructFromArrays(benchmark::State &state)
{
    const Mesh &mesh = torus();
    for (auto _ : state) {
        state.PauseTiming();
        auto *vertices = new double[mesh.vertices.size()];
        std::memcpy(vertices, mesh.vertices.data(), mesh.vertices.size() * sizeof(double));
        auto *triangles = new int[mesh.triangles.size()];
        std::memcpy(triangles, mesh.triangles.data(), mesh.triangles.size() * sizeof(int));
        state.ResumeTiming();

        auto *primitive = new KEZVisSurfacePrimitive(NumVertexes, vertices, NumTriangles, triangles, nullptr);
        benchmark::DoNotOptimize(primitive);

        state.PauseTiming();
        delete primitive;
        state.ResumeTiming();
    }
    state.SetBytesProcessed(qint64(state.iterations()) * NormalDoubleBytes);
}

void vertexCoordinatesAsDouble(benchmark::State &state)
{
    const KEZVisSurfacePrimitive &primitive = sharedPrimitive();
    for (auto _ : state) {
        QList<double> list = primitive.GetVertexCoordinatesAsDouble();
        benchmark::DoNotOptimize(list.data());
    }
    state.SetBytesProcessed(qint64(state.iterations()) * VertexDoubleBytes);
}

void vertexCoordinatesAsFloat(benchmark::State &state)
{
    const KEZVisSurfacePrimitive &primitive = sharedPrimitive();
    for (auto _ : state) {
        QList<float> list = primitive.GetVertexCoordinatesAsFloat();
        benchmark::DoNotOptimize(list.data());
    }
    state.SetBytesProcessed(qint64(state.iterations()) * VertexFloatBytes);
}

void triangleNormalCoordsAsDouble(benchmark::State &state)
{
    const KEZVisSurfacePrimitive &primitive = sharedPrimitive();
    for (auto _ : state) {
        QList<double> list = primitive.GetTriangleNormalCoordsAsDouble();
        benchmark::DoNotOptimize(list.data());
    }
    state.SetBytesProcessed(qint64(state.iterations()) * NormalDoubleBytes);
}

void saveAndLoad(benchmark::State &state)
{
    const KEZVisRepGraphics rep({newTorusPrimitive()}, KEZVisOptions());
    qint64 streamSize = 0;
    for (auto _ : state) {
        QByteArray bytes;
        {
            QBuffer buffer(&bytes);
            buffer.open(QIODevice::WriteOnly);
            QDataStream out(&buffer);
            rep.Save(out);
        }
        {
            QBuffer buffer(&bytes);
            buffer.open(QIODevice::ReadOnly);
            QDataStream in(&buffer);
            KEZVisRepGraphics loaded;
            loaded.Load(in);
            if (in.status() != QDataStream::Ok)
                state.SkipWithError("the rep did not load");
            state.PauseTiming();
        }
        streamSize = bytes.size();
        state.ResumeTiming();
    }
    state.counters["stream MB"] = double(streamSize) / 1e6;
    state.SetBytesProcessed(qint64(state.iterations()) * streamSize);
}

// Save alone, into a fresh byte array as Save + Load does.
void saveOnly(benchmark::State &state)
{
    const KEZVisRepGraphics rep({newTorusPrimitive()}, KEZVisOptions());
    for (auto _ : state) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QDataStream out(&buffer);
        rep.Save(out);
        benchmark::DoNotOptimize(bytes.data());
    }
    state.SetBytesProcessed(qint64(state.iterations()) * StreamBytes);
}

// Load alone, of the bytes that Save wrote, normals computed again.
void loadOnly(benchmark::State &state)
{
    QByteArray bytes;
    {
        const KEZVisRepGraphics rep({newTorusPrimitive()}, KEZVisOptions());
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QDataStream out(&buffer);
        rep.Save(out);
    }
    for (auto _ : state) {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        QDataStream in(&buffer);
        auto *loaded = new KEZVisRepGraphics;
        loaded->Load(in);
        if (in.status() != QDataStream::Ok)
            state.SkipWithError("the rep did not load");
        state.PauseTiming();
        delete loaded;
        state.ResumeTiming();
    }
    state.SetBytesProcessed(qint64(state.iterations()) * StreamBytes);
}

// The name of each operation, its reference size, and the name under which
// Google Benchmark reports the references of that size.
struct Operation
{
    const char *label;
    const char *benchmark;
    qint64 bytes;
};

const Operation Operations[] = {
    {"construction from arrays (normals computed)", "SurfaceConstructFromArrays", NormalDoubleBytes},
    {"GetVertexCoordinatesAsDouble", "SurfaceGetVertexCoordinatesAsDouble", VertexDoubleBytes},
    {"GetVertexCoordinatesAsFloat", "SurfaceGetVertexCoordinatesAsFloat", VertexFloatBytes},
    {"GetTriangleNormalCoordsAsDouble", "SurfaceGetTriangleNormalCoordsAsDouble", NormalDoubleBytes},
    {"Save + Load through QDataStream on QBuffer", "RepSaveAndLoad", StreamBytes},
    {"  of which Save", "RepSave", StreamBytes},
    {"  of which Load (normals computed)", "RepLoad", StreamBytes},
};

// Keeps the CPU time per iteration of every run, by name, for the summary. CPU
// time (user and system, so page faults count) is steadier than wall-clock
// time on a machine shared with other work.
class SummaryReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type == Run::RT_Iteration || run.aggregate_name == "median")
                times[run.run_name.function_name + (run.run_name.args.empty() ? "" : "/" + run.run_name.args)] =
                    run.GetAdjustedCPUTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }

    std::map<std::string, double> times;
};

} // namespace

int main(int argc, char **argv)
{
    // Options carry a QFont, which wants a GUI application; no window is shown.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    int qtArgc = 1;
    QGuiApplication application(qtArgc, argv);

    // The references first, so that they meet the allocator in the same state
    // as the getters after them.
    for (qint64 bytes : {VertexFloatBytes, VertexDoubleBytes, NormalDoubleBytes, StreamBytes}) {
        benchmark::RegisterBenchmark("memcpy", memcpyReference)->Arg(bytes)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("new+memcpy", newMemcpyReference)->Arg(bytes)->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark("SurfaceConstructFromArrays", constructFromArrays)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("SurfaceGetVertexCoordinatesAsDouble", vertexCoordinatesAsDouble)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("SurfaceGetVertexCoordinatesAsFloat", vertexCoordinatesAsFloat)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("SurfaceGetTriangleNormalCoordsAsDouble", triangleNormalCoordsAsDouble)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("RepSaveAndLoad", saveAndLoad)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("RepSave", saveOnly)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("RepLoad", loadOnly)->Unit(benchmark::kMillisecond);

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    std::printf("\nRatio of each operation's CPU time to a copy of as many bytes, measured in this run:\n");
    std::printf("%-46s %10s %10s %10s %12s\n", "operation", "MB", "CPU ms", "/ memcpy", "/ new+memcpy");
    for (const Operation &operation : Operations) {
        const auto time = reporter.times.find(operation.benchmark);
        const auto copy = reporter.times.find("memcpy/" + std::to_string(operation.bytes));
        const auto newCopy = reporter.times.find("new+memcpy/" + std::to_string(operation.bytes));
        if (time == reporter.times.end() || copy == reporter.times.end() || newCopy == reporter.times.end())
            continue; // filtered out on the command line
        std::printf("%-46s %10.1f %10.2f %10.2f %12.2f\n", operation.label, double(operation.bytes) / 1e6,
                    time->second, time->second / copy->second, time->second / newCopy->second);
    }
    return 0;
}
