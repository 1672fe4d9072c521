// Generation speed of the ready-made shapes: spheres of 10 to 500 divisions and
// prism walls of up to a million sides, from KEZVisRepFactory and as the
// KEZVisPrismPrimitive class.
//
// Each case reports, besides the time of one generation (the manual time):
//   vertices_per_s     vertexes generated per second;
//   ratio_to_memcpy    generation time over the time of a memcpy of as many
//                      bytes as the shape holds in its arrays (vertexes,
//                      indexes and normals), into memory that is already
//                      mapped, measured in the same iterations;
//   ratio_to_new_copy  the same against a copy into freshly allocated memory,
//                      which pays for the first touch of its pages as the
//                      generation does;
//   MB                 the bytes the shape holds.

#include "KEZVisPrismPrimitive.h"
#include "KEZVisRepFactory.h"
#include "KEZVisSurfacePrimitive.h"

#include <KEZMathPoint.h>
#include <KEZMathVector.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstring>
#include <memory>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

double Seconds(Clock::time_point from, Clock::time_point to)
{
    return std::chrono::duration<double>(to - from).count();
}

// Times `make` and two copies of `bytes` bytes in every iteration.
template <typename Make>
void Measure(benchmark::State &state, double numVertexes, size_t bytes, Make make)
{
    std::vector<char> source(bytes, 1);
    std::vector<char> target(bytes, 0);
    std::memcpy(target.data(), source.data(), bytes); // maps the target's pages once

    double generation = 0.0;
    double copy = 0.0;
    double newCopy = 0.0;
    for (auto _ : state) {
        const Clock::time_point start = Clock::now();
        std::unique_ptr<KEZVisSurfacePrimitive> made(make());
        const Clock::time_point madeAt = Clock::now();
        benchmark::DoNotOptimize(made.get());
        made.reset();

        const Clock::time_point copyStart = Clock::now();
        std::memcpy(target.data(), source.data(), bytes);
        benchmark::ClobberMemory();
        const Clock::time_point copied = Clock::now();

        std::unique_ptr<char[]> fresh(new char[bytes]);
        std::memcpy(fresh.get(), source.data(), bytes);
        benchmark::DoNotOptimize(fresh.get());
        benchmark::ClobberMemory();
        const Clock::time_point freshCopied = Clock::now();
        fresh.reset();

        generation += Seconds(start, madeAt);
        copy += Seconds(copyStart, copied);
        newCopy += Seconds(copied, freshCopied);
        state.SetIterationTime(Seconds(start, madeAt));
    }
    const double iterations = double(state.iterations());
    state.counters["vertices_per_s"] = numVertexes * iterations / generation;
    state.counters["ratio_to_memcpy"] = generation / copy;
    state.counters["ratio_to_new_copy"] = generation / newCopy;
    state.counters["MB"] = double(bytes) / 1e6;
}

// A factory surface holds its vertexes, its indexes and one normal per triangle.
size_t SurfaceBytes(double vertexes, double triangles)
{
    return size_t(vertexes * 3 * sizeof(double) + triangles * 3 * (sizeof(int) + sizeof(double)));
}

void Sphere(benchmark::State &state)
{
    const double d = double(state.range(0));
    const double vertexes = 8 * d * d - 4 * d + 2;
    const double triangles = 2 * (vertexes - 2);
    Measure(state, vertexes, SurfaceBytes(vertexes, triangles), [&state] {
        return KEZVisRepFactory::CreateSpherePrimitive(KEZMathPoint(1, 2, 3), 2.5, int(state.range(0)));
    });
}

void FactoryPrism(benchmark::State &state)
{
    const double sides = double(state.range(0));
    Measure(state, 2 * sides, SurfaceBytes(2 * sides, 2 * sides), [&state] {
        return KEZVisRepFactory::CreatePrismPrimitive(KEZMathPoint(1, 2, 3), KEZMathVector(0, 1, 1), 2.0, 5.0,
                                                      int(state.range(0)));
    });
}

// The prism class holds its vertexes, a normal per vertex and its indexes.
void PrismPrimitive(benchmark::State &state)
{
    const double sides = double(state.range(0));
    const double vertexes = 2 * sides;
    const size_t bytes = size_t(vertexes * 3 * 2 * sizeof(double) + vertexes * 3 * sizeof(int));
    Measure(state, vertexes, bytes, [&state] {
        return new KEZVisPrismPrimitive(KEZMathPoint(1, 2, 3), KEZMathVector(0, 1, 1), 2.0, 5.0,
                                        int(state.range(0)));
    });
}

} // namespace

BENCHMARK(Sphere)->Arg(10)->Arg(50)->Arg(100)->Arg(200)->Arg(500)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FactoryPrism)->RangeMultiplier(10)->Range(1000, 1000000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(PrismPrimitive)->RangeMultiplier(10)->Range(1000, 1000000)->UseManualTime()->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
