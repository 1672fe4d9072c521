// The triangulator against CGAL's constrained Delaunay triangulation.
//
// Inputs: star-shaped outlines of 1,000 to 1,000,000 points; flower-shaped outlines of 1,000 to
// 100,000 points; egg-shaped and elliptic outlines and quadrilaterals with densely sampled edges, of
// 1,000 to 1,000,000 points; and a square outline with 100 to 10,000 square holes. For each input the
// benchmark times our triangulator (building the CDT, triangulating, collecting the triangles; the
// points exist beforehand), and, when CGAL is at hand, CGAL's Constrained_Delaunay_triangulation_2 with
// the constraints inserted one by one and with its bulk insert_constraints (the triangulation only,
// without marking the inside). A table of ratios
// (our CPU time divided by CGAL's, and how much longer a tenfold input of a family takes) follows the
// usual output. On a shared machine run it with --benchmark_repetitions=5 (or more), and the table
// takes the medians.
// Where the machine's speed drifts between runs, add --benchmark_enable_random_interleaving=true: the
// repetitions of all benchmarks then run in random order, so that a slow spell of the machine weighs
// on every side of a ratio alike.
#include "CpuTimeReporter.h"
#include "triangulation/CDT.h"

#include <benchmark/benchmark.h>

#ifdef KEZ_HAVE_CGAL
#include <CGAL/Constrained_Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#endif

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

struct Input
{
    std::vector<std::vector<std::pair<double, double>>> rings; // outline first
};

Input Star(int points)
{
    std::mt19937 random(12345u + static_cast<unsigned>(points));
    std::uniform_real_distribution<double> radius(0.35, 1.0);
    Input input;
    input.rings.emplace_back();
    const double pi = std::acos(-1.0);
    for (int k = 0; k < points; ++k) {
        const double angle = 2.0 * pi * k / points;
        const double r = (k % 2 == 0 ? 1.0 : 0.5) * radius(random);
        input.rings[0].emplace_back(r * std::cos(angle), r * std::sin(angle));
    }
    return input;
}

// An outline of `points` points evenly spaced in angle on the curve r = 1 + amplitude sin(lobes angle).
Input Rosette(int points, double lobes, double amplitude)
{
    Input input;
    input.rings.emplace_back();
    const double pi = std::acos(-1.0);
    for (int k = 0; k < points; ++k) {
        const double angle = 2.0 * pi * k / points;
        const double r = 1.0 + amplitude * std::sin(lobes * angle);
        input.rings[0].emplace_back(r * std::cos(angle), r * std::sin(angle));
    }
    return input;
}

// Smooth outlines, whose edges are Delaunay edges already: inserting them crosses no triangle, unlike
// the star's, whose spikes get thinner and whose edges cross more triangles the larger the input.
// They show what keeping the triangulation Delaunay costs. A flower has 64 round lobes: the sweep
// handles it. An egg is one smooth convex curve, an ellipse another (twice as wide as high), and a
// quadrilateral with densely sampled edges has four long collinear runs: there the Delaunay
// triangulation of the points below the sweep line differs from that of all points in a part that
// grows with the input, the sweep's work per point grows with it, and the sweep gives way to
// incremental insertion once that work outgrows its budget.
Input Flower(int points)
{
    return Rosette(points, 64.0, 0.2);
}

Input Egg(int points)
{
    return Rosette(points, 1.0, 0.3);
}

Input Ellipse(int points)
{
    Input input;
    input.rings.emplace_back();
    const double pi = std::acos(-1.0);
    for (int k = 0; k < points; ++k) {
        const double angle = 2.0 * pi * k / points;
        input.rings[0].emplace_back(2.0 * std::cos(angle), std::sin(angle));
    }
    return input;
}

Input SampledQuadrilateral(int points)
{
    const std::pair<double, double> corners[] = {{0.0, 0.0}, {1.0, 0.1}, {1.1, 1.2}, {0.1, 1.0}};
    const int perEdge = points / 4;
    Input input;
    input.rings.emplace_back();
    for (int k = 0; k < 4; ++k) {
        const auto [ax, ay] = corners[k];
        const auto [bx, by] = corners[(k + 1) % 4];
        for (int s = 0; s < perEdge; ++s) {
            const double f = static_cast<double>(s) / perEdge;
            input.rings[0].emplace_back(ax + f * (bx - ax), ay + f * (by - ay));
        }
    }
    return input;
}

Input SquareWithHoles(int rows)
{
    Input input;
    const double size = 1000.0;
    input.rings.push_back({{0, 0}, {size, 0}, {size, size}, {0, size}});
    const double cell = size / (rows + 1);
    const double half = cell / 4;
    for (int i = 1; i <= rows; ++i)
        for (int j = 1; j <= rows; ++j) {
            const double cx = i * cell, cy = j * cell;
            input.rings.push_back({{cx - half, cy - half}, {cx - half, cy + half}, {cx + half, cy + half},
                                   {cx + half, cy - half}});
        }
    return input;
}

const Input &Cached(const std::string &name)
{
    static std::map<std::string, Input> cache;
    auto it = cache.find(name);
    if (it == cache.end()) {
        const int size = std::stoi(name.substr(name.find('/') + 1));
        Input input = name.rfind("star", 0) == 0     ? Star(size)
                      : name.rfind("flower", 0) == 0 ? Flower(size)
                      : name.rfind("egg", 0) == 0    ? Egg(size)
                      : name.rfind("ellipse", 0) == 0 ? Ellipse(size)
                      : name.rfind("sampled", 0) == 0 ? SampledQuadrilateral(size)
                                                     : SquareWithHoles(static_cast<int>(std::lround(std::sqrt(size))));
        it = cache.emplace(name, std::move(input)).first;
    }
    return it->second;
}

void Ours(benchmark::State &state, const std::string &name)
{
    const Input &input = Cached(name);
    std::vector<std::unique_ptr<p2t::Point>> owned;
    std::vector<std::vector<p2t::Point *>> rings;
    for (const auto &ring : input.rings) {
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
    state.counters["triangles"] = static_cast<double>(triangles);
}

#ifdef KEZ_HAVE_CGAL
using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using Cdt = CGAL::Constrained_Delaunay_triangulation_2<Kernel, CGAL::Default, CGAL::Exact_predicates_tag>;

void CgalSequential(benchmark::State &state, const std::string &name)
{
    const Input &input = Cached(name);
    std::vector<std::vector<Kernel::Point_2>> rings;
    for (const auto &ring : input.rings) {
        rings.emplace_back();
        for (const auto &[x, y] : ring)
            rings.back().emplace_back(x, y);
    }
    for (auto _ : state) {
        Cdt cdt;
        for (const auto &ring : rings) {
            std::vector<Cdt::Vertex_handle> vertices;
            vertices.reserve(ring.size());
            for (const auto &p : ring)
                vertices.push_back(cdt.insert(p));
            for (std::size_t i = 0; i < vertices.size(); ++i)
                cdt.insert_constraint(vertices[i], vertices[(i + 1) % vertices.size()]);
        }
        benchmark::DoNotOptimize(cdt.number_of_faces());
    }
}

void CgalBulk(benchmark::State &state, const std::string &name)
{
    const Input &input = Cached(name);
    std::vector<Kernel::Point_2> points;
    std::vector<std::pair<std::size_t, std::size_t>> edges;
    for (const auto &ring : input.rings) {
        const std::size_t first = points.size();
        for (const auto &[x, y] : ring)
            points.emplace_back(x, y);
        for (std::size_t i = 0; i < ring.size(); ++i)
            edges.emplace_back(first + i, first + (i + 1) % ring.size());
    }
    for (auto _ : state) {
        Cdt cdt;
        cdt.insert_constraints(points.begin(), points.end(), edges.begin(), edges.end());
        benchmark::DoNotOptimize(cdt.number_of_faces());
    }
}
#endif

// CGAL's sequential insertion takes the points in the order of the ring; along one long smooth curve
// or straight run that order costs it flips that grow with the input too (minutes at a million
// points), so it is timed there only up to 10,000 points.
bool SequentialInsertionIsQuadratic(const std::string &name)
{
    const std::string family = name.substr(0, name.find('/'));
    const long size = std::stol(name.substr(name.find('/') + 1));
    return (family == "egg" || family == "ellipse" || family == "sampled") && size > 10000;
}

const std::vector<std::string> &InputNames()
{
    static const std::vector<std::string> names{"star/1000",  "star/10000",  "star/100000", "star/1000000",
                                                "flower/1000", "flower/10000", "flower/100000",
                                                "egg/1000",    "egg/10000",    "egg/100000",   "egg/1000000",
                                                "ellipse/1000", "ellipse/10000", "ellipse/100000", "ellipse/1000000",
                                                "sampled/1000", "sampled/10000", "sampled/100000", "sampled/1000000",
                                                "holes/100",  "holes/1000",  "holes/10000"};
    return names;
}

// Prints the ratios after the usual output.
class RatioReporter : public CpuTimeReporter
{
public:
    void PrintRatios() const
    {
        std::printf("\nCPU time in ms, ours divided by CGAL's (below 1: ours is faster), and the time of a\n"
                    "tenfold input over that of the input a tenth its size, ours and CGAL's bulk insertion\n");
        std::printf("%-15s %10s %10s %10s %8s %8s %8s %9s %9s\n", "input", "ours", "CGAL seq.", "CGAL bulk",
                    "/seq.", "/bulk", "/best", "x10 ours", "x10 bulk");
        std::string previousFamily;
        long previousSize = 0;
        double previousOurs = -1, previousBulk = -1;
        for (const std::string &name : InputNames()) {
            const double ours = Time("Triangulator/" + name);
            const double sequential = Time("CgalSequential/" + name);
            const double bulk = Time("CgalBulk/" + name);
            if (ours <= 0)
                continue;
            std::printf("%-15s %10.2f", name.c_str(), ours);
            for (double cgal : {sequential, bulk})
                cgal > 0 ? std::printf(" %10.2f", cgal) : std::printf(" %10s", "-");
            for (double cgal : {sequential, bulk})
                cgal > 0 ? std::printf(" %8.3f", ours / cgal) : std::printf(" %8s", "-");
            sequential > 0 && bulk > 0 ? std::printf(" %8.3f", ours / std::min(sequential, bulk))
                                       : std::printf(" %8s", "-");
            const std::string family = name.substr(0, name.find('/'));
            const long size = std::stol(name.substr(name.find('/') + 1));
            if (family == previousFamily && size == 10 * previousSize) {
                std::printf(" %9.2f", ours / previousOurs);
                bulk > 0 && previousBulk > 0 ? std::printf(" %9.2f", bulk / previousBulk) : std::printf(" %9s", "-");
            }
            std::printf("\n");
            previousFamily = family;
            previousSize = size;
            previousOurs = ours;
            previousBulk = bulk;
        }
    }
};

} // namespace

int main(int argc, char **argv)
{
    for (const std::string &name : InputNames()) {
        benchmark::RegisterBenchmark(("Triangulator/" + name).c_str(), Ours, name)->Unit(benchmark::kMillisecond);
#ifdef KEZ_HAVE_CGAL
        if (!SequentialInsertionIsQuadratic(name))
            benchmark::RegisterBenchmark(("CgalSequential/" + name).c_str(), CgalSequential, name)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("CgalBulk/" + name).c_str(), CgalBulk, name)->Unit(benchmark::kMillisecond);
#endif
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
