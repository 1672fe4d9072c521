// KEZVisRepFactory::CreateFilledPolygonPrimitive against our triangulator alone on the same input.
//
// Inputs: star-shaped and elliptic outlines of 1,000 to 1,000,000 points; a square outline with 100 to
// 10,000 square holes; and a star outline of 100,000 or 1,000,000 points with 1,000 or 10,000 square holes inside it.
// For each input the benchmark times the triangulator (building the CDT, adding the holes, triangulating,
// collecting the triangles; the points exist beforehand) and the whole factory operation (cleaning,
// hole tests, triangulation, the indexed surface; the rings exist beforehand). A table follows the usual
// output: the factory's CPU time divided by the triangulator's, and for each family how much longer a
// tenfold input takes. On a shared machine run it with --benchmark_repetitions=5 (or more), and the table
// takes the medians.
// Where the machine's speed drifts between runs, add --benchmark_enable_random_interleaving=true: the
// repetitions of all benchmarks then run in random order, so that a slow spell of the machine weighs
// on every side of a ratio alike.
#include "CpuTimeReporter.h"
#include "triangulation/CDT.h"

#include <KEZVisRepFactory.h>
#include <KEZVisSurfacePrimitive.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using Ring = std::vector<std::pair<double, double>>;
using Input = std::vector<Ring>; // outline first

// Radius points / 10, so that neighbouring points stay some 0.1 apart, well above the repeat distance
// of 0.001 under which the factory would cut the ring.
Ring StarRing(int points)
{
    const double scale = points / 10.0;
    std::mt19937 random(4711u + static_cast<unsigned>(points));
    std::uniform_real_distribution<double> factor(0.35, 1.0);
    Ring ring;
    ring.reserve(std::size_t(points));
    const double pi = std::acos(-1.0);
    for (int k = 0; k < points; ++k) {
        const double angle = 2.0 * pi * k / points;
        const double r = (k % 2 == 0 ? 1.0 : 0.5) * factor(random) * scale;
        ring.emplace_back(r * std::cos(angle), r * std::sin(angle));
    }
    return ring;
}

// An ellipse twice as wide as high, its points some 0.1 apart: one long smooth curve, where the
// triangulator's sweep gives way to incremental insertion.
Ring EllipseRing(int points)
{
    const double scale = points / 40.0;
    Ring ring;
    ring.reserve(std::size_t(points));
    const double pi = std::acos(-1.0);
    for (int k = 0; k < points; ++k) {
        const double angle = 2.0 * pi * k / points;
        ring.emplace_back(2.0 * scale * std::cos(angle), scale * std::sin(angle));
    }
    return ring;
}

// rows x columns square holes in the square of half side `half` round the origin.
void AddHoles(Input &input, int rows, int columns, double half)
{
    const double cellX = 2 * half / columns, cellY = 2 * half / rows;
    const double size = std::min(cellX, cellY) / 4;
    for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < columns; ++j) {
            const double cx = -half + (j + 0.5) * cellX, cy = -half + (i + 0.5) * cellY;
            input.push_back({{cx - size, cy - size}, {cx + size, cy - size}, {cx + size, cy + size}, {cx - size, cy + size}});
        }
    }
}

Input Make(const std::string &family, int size)
{
    Input input;
    if (family == "star") {
        input.push_back(StarRing(size));
    } else if (family == "ellipse") {
        input.push_back(EllipseRing(size));
    } else if (family == "holes") {
        const int rows = int(std::lround(std::sqrt(double(size))));
        input.push_back({{-500, -500}, {500, -500}, {500, 500}, {-500, 500}});
        AddHoles(input, rows, rows, 450.0);
    } else {
        // A star of `size` points with size / 100 holes inside its inner radius of at least 0.175 * size / 10.
        input.push_back(StarRing(size));
        const int holes = size / 100;
        const int rows = int(std::lround(std::sqrt(holes / 2.5)));
        AddHoles(input, rows, holes / rows, 0.12 * size / 10.0);
    }
    return input;
}

struct Prepared
{
    Input input;
    QList<KEZMathSetOfPoints> rings;
};

const Prepared &Cached(const std::string &family, int size)
{
    static std::map<std::string, Prepared> cache;
    const std::string key = family + "/" + std::to_string(size);
    auto it = cache.find(key);
    if (it == cache.end()) {
        Prepared prepared;
        prepared.input = Make(family, size);
        for (const Ring &ring : prepared.input) {
            KEZMathSetOfPoints points;
            points.reserve(qsizetype(ring.size()));
            for (const auto &[x, y] : ring)
                points.append(KEZMathPoint(x, y, 0.0));
            prepared.rings.append(points);
        }
        it = cache.emplace(key, std::move(prepared)).first;
    }
    return it->second;
}

void Triangulator(benchmark::State &state, const std::string &family)
{
    const Input &input = Cached(family, int(state.range(0))).input;
    std::vector<std::unique_ptr<p2t::Point>> owned;
    std::vector<std::vector<p2t::Point *>> rings;
    for (const Ring &ring : input) {
        rings.emplace_back();
        for (const auto &[x, y] : ring) {
            owned.push_back(std::make_unique<p2t::Point>(x, y));
            rings.back().push_back(owned.back().get());
        }
    }
    std::size_t triangles = 0;
    for (auto _ : state) {
        p2t::CDT cdt(rings[0]);
        for (std::size_t h = 1; h < rings.size(); ++h)
            cdt.AddHole(rings[h]);
        cdt.Triangulate();
        const std::vector<p2t::Triangle *> result = cdt.GetTriangles();
        triangles = result.size();
        benchmark::DoNotOptimize(result.data());
    }
    state.counters["triangles"] = double(triangles);
}

void FilledPolygon(benchmark::State &state, const std::string &family)
{
    const QList<KEZMathSetOfPoints> &rings = Cached(family, int(state.range(0))).rings;
    int triangles = 0;
    for (auto _ : state) {
        std::unique_ptr<KEZVisSurfacePrimitive> surface(KEZVisRepFactory::CreateFilledPolygonPrimitive(rings));
        triangles = surface ? surface->GetNumTriangles() : -1;
        benchmark::DoNotOptimize(surface.get());
    }
    state.counters["triangles"] = double(triangles);
}

struct Family
{
    const char *name;
    std::vector<int> sizes;
};

const std::vector<Family> &Families()
{
    static const std::vector<Family> families{{"star", {1000, 10000, 100000, 1000000}},
                                              {"ellipse", {1000, 10000, 100000, 1000000}},
                                              {"holes", {100, 1000, 10000}},
                                              {"starholes", {100000, 1000000}}};
    return families;
}

// Prints the ratios after the usual output.
class RatioReporter : public CpuTimeReporter
{
public:
    void PrintRatios() const
    {
        std::printf("\nCPU time in ms; the factory divided by the triangulator alone; the factory's time over\n"
                    "that of the input a tenth the size\n");
        std::printf("%-18s %12s %12s %10s %10s\n", "input", "triangulator", "factory", "ratio", "x10 input");
        for (const Family &family : Families()) {
            double previous = -1.0;
            int previousSize = 0;
            for (int size : family.sizes) {
                const std::string input = std::string(family.name) + "/" + std::to_string(size);
                const double alone = Time("Triangulator/" + input);
                const double whole = Time("FilledPolygon/" + input);
                if (alone <= 0 || whole <= 0)
                    continue;
                std::printf("%-18s %12.2f %12.2f %10.3f", input.c_str(), alone, whole, whole / alone);
                if (previous > 0 && size == 10 * previousSize)
                    std::printf(" %10.2f", whole / previous);
                std::printf("\n");
                previous = whole;
                previousSize = size;
            }
        }
    }
};

} // namespace

int main(int argc, char **argv)
{
    for (const Family &family : Families()) {
        for (int size : family.sizes) {
            const std::string suffix = std::string(family.name);
            benchmark::RegisterBenchmark(("Triangulator/" + suffix).c_str(), Triangulator, suffix)
                ->Arg(size)
                ->Unit(benchmark::kMillisecond);
            benchmark::RegisterBenchmark(("FilledPolygon/" + suffix).c_str(), FilledPolygon, suffix)
                ->Arg(size)
                ->Unit(benchmark::kMillisecond);
        }
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
