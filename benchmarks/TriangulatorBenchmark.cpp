// The triangulator against CGAL's constrained Delaunay triangulation.
//
// Inputs, each family at about 1,000, 10,000, 100,000 and 1,000,000 points (flowers up to 100,000,
// hole grids from 100 to 10,000 holes, refined outlines from 10,000):
// - star-shaped outlines with random spikes, and flower-shaped outlines with 64 round lobes;
// - smooth outlines: egg-shaped and elliptic ones, and quadrilaterals with densely sampled edges;
// - a square outline with a grid of square holes;
// - plates, as CAD parts come: a rounded rectangle with a grid of circular holes, every arc (hole or
//   corner) sampled at 32, 64, 128 or 256 points as the plate grows;
// - a real outline (nazca_monkey.dat of the test polygons) refined by inserting points evenly along
//   its edges.
// For each input the benchmark times our triangulator (building the CDT, triangulating, collecting the
// triangles; the points exist beforehand), and, when CGAL is at hand, CGAL's
// Constrained_Delaunay_triangulation_2 with the constraints inserted one by one and with its bulk
// insert_constraints (the triangulation only, without marking the inside). After the timed runs, one
// more run of each counts the peak of heap memory in use during it (every allocation of the process
// is counted through malloc), reported per input point in the counter "peak_bytes_per_point".
// A table follows the usual output: CPU times, ours divided by CGAL's, how much longer a tenfold input
// of a family takes (ours, CGAL's sequential and bulk ways, and ours over CGAL's bulk growth), and the
// peak memory per point of ours and of CGAL's bulk way. On a shared machine run it with
// --benchmark_repetitions=5 (or more), and the table takes the medians.
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

#include <malloc.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

// Heap accounting: the process's malloc family is wrapped (the executable's definitions take
// precedence over the C library's), so that every allocation, operator new's among them, adds its
// usable size to the bytes in use; so are mmap and munmap, through which the triangulator maps its
// large arrays, for anonymous memory (the C library's own mappings for large blocks do not pass
// through them and are counted as allocations).
extern "C" {
void *__libc_malloc(std::size_t);
void *__libc_calloc(std::size_t, std::size_t);
void *__libc_realloc(void *, std::size_t);
void *__libc_memalign(std::size_t, std::size_t);
void __libc_free(void *);
}

namespace {

std::atomic<long long> g_heapInUse{0};
std::atomic<long long> g_heapPeak{0};

void CountBytes(long long bytes)
{
    const long long now = g_heapInUse.fetch_add(bytes, std::memory_order_relaxed) + bytes;
    long long peak = g_heapPeak.load(std::memory_order_relaxed);
    while (now > peak && !g_heapPeak.compare_exchange_weak(peak, now, std::memory_order_relaxed)) {
    }
}

void *Counted(void *p)
{
    if (p)
        CountBytes(static_cast<long long>(malloc_usable_size(p)));
    return p;
}

void Uncount(void *p)
{
    if (p)
        g_heapInUse.fetch_sub(static_cast<long long>(malloc_usable_size(p)), std::memory_order_relaxed);
}

// Runs work once and answers the peak of heap bytes in use during it, over those in use before it.
template <typename Work>
double PeakHeapBytes(Work work)
{
    const long long before = g_heapInUse.load();
    g_heapPeak.store(before);
    work();
    return static_cast<double>(g_heapPeak.load() - before);
}

} // namespace

extern "C" {
void *malloc(std::size_t bytes)
{
    return Counted(__libc_malloc(bytes));
}
void *calloc(std::size_t count, std::size_t bytes)
{
    return Counted(__libc_calloc(count, bytes));
}
void *realloc(void *p, std::size_t bytes)
{
    Uncount(p);
    void *q = __libc_realloc(p, bytes);
    if (!q && bytes != 0) {
        // The old block is still there.
        Counted(p);
        return nullptr;
    }
    return Counted(q);
}
void *memalign(std::size_t alignment, std::size_t bytes)
{
    return Counted(__libc_memalign(alignment, bytes));
}
void *aligned_alloc(std::size_t alignment, std::size_t bytes)
{
    return Counted(__libc_memalign(alignment, bytes));
}
int posix_memalign(void **out, std::size_t alignment, std::size_t bytes)
{
    if (alignment % sizeof(void *) != 0 || (alignment & (alignment - 1)) != 0)
        return 22; // EINVAL
    void *p = Counted(__libc_memalign(alignment, bytes));
    if (!p)
        return 12; // ENOMEM
    *out = p;
    return 0;
}
void free(void *p)
{
    Uncount(p);
    __libc_free(p);
}
void *mmap(void *address, std::size_t length, int protection, int flags, int descriptor, off_t offset)
{
    const long result = syscall(SYS_mmap, address, length, protection, flags, descriptor, offset);
    if (result < 0 && result > -4096) {
        errno = static_cast<int>(-result);
        return MAP_FAILED;
    }
    void *mapped = reinterpret_cast<void *>(result);
    if (flags & MAP_ANONYMOUS)
        CountBytes(static_cast<long long>(length));
    return mapped;
}
int munmap(void *address, std::size_t length)
{
    const long result = syscall(SYS_munmap, address, length);
    if (result < 0) {
        errno = static_cast<int>(-result);
        return -1;
    }
    CountBytes(-static_cast<long long>(length));
    return 0;
}
}

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

// Adds `samples` points of the arc of the circle around (cx, cy) of radius r from angle `from` to
// `to` (radians, counter-clockwise), the end excluded, to ring.
void AddArc(std::vector<std::pair<double, double>> &ring, double cx, double cy, double r, double from, double to,
            int samples)
{
    for (int k = 0; k < samples; ++k) {
        const double angle = from + (to - from) * k / samples;
        ring.emplace_back(cx + r * std::cos(angle), cy + r * std::sin(angle));
    }
}

// A plate of about `points` points: a rounded rectangle twice as wide as high with a grid of circular
// holes, twice as many columns as rows. Every arc, each hole and each quarter circle of a corner, has
// the same number of samples: 32 at a thousand points, doubling with every tenfold size up to 256.
Input Plate(int points)
{
    const int samples = points >= 1000000 ? 256 : points >= 100000 ? 128 : points >= 10000 ? 64 : 32;
    const int rows = std::max(1, static_cast<int>(std::lround(std::sqrt((points - 4.0 * samples) / (2.0 * samples)))));
    const int columns = 2 * rows;
    const double height = 100.0, width = 200.0, corner = 10.0;
    const double pi = std::acos(-1.0);
    Input input;
    input.rings.emplace_back();
    auto &outline = input.rings[0];
    AddArc(outline, width - corner, corner, corner, -pi / 2, 0.0, samples);
    AddArc(outline, width - corner, height - corner, corner, 0.0, pi / 2, samples);
    AddArc(outline, corner, height - corner, corner, pi / 2, pi, samples);
    AddArc(outline, corner, corner, corner, pi, 1.5 * pi, samples);
    // The holes sit in cells of a grid inside a margin of one corner radius.
    const double cellWidth = (width - 2 * corner) / columns, cellHeight = (height - 2 * corner) / rows;
    const double radius = 0.3 * std::min(cellWidth, cellHeight);
    for (int i = 0; i < columns; ++i)
        for (int j = 0; j < rows; ++j) {
            input.rings.emplace_back();
            AddArc(input.rings.back(), corner + (i + 0.5) * cellWidth, corner + (j + 0.5) * cellHeight, radius,
                   0.0, 2 * pi, samples);
        }
    return input;
}

// The outline of nazca_monkey.dat among the test polygons, with points inserted evenly along its edges
// until it has about `points` points: each edge gets a share of the new points in proportion to its
// length (at least its own start point).
Input RefinedOutline(int points)
{
    std::vector<std::pair<double, double>> original;
    std::ifstream file(KEZ_POLYGON_DATA_DIR "/nazca_monkey.dat");
    double x = 0, y = 0;
    while (file >> x >> y)
        original.emplace_back(x, y);
    if (original.size() < 3) {
        std::fprintf(stderr, "cannot read %s\n", KEZ_POLYGON_DATA_DIR "/nazca_monkey.dat");
        std::exit(1);
    }
    double perimeter = 0;
    for (std::size_t k = 0; k < original.size(); ++k) {
        const auto [ax, ay] = original[k];
        const auto [bx, by] = original[(k + 1) % original.size()];
        perimeter += std::hypot(bx - ax, by - ay);
    }
    Input input;
    input.rings.emplace_back();
    for (std::size_t k = 0; k < original.size(); ++k) {
        const auto [ax, ay] = original[k];
        const auto [bx, by] = original[(k + 1) % original.size()];
        const int pieces = std::max(1, static_cast<int>(std::lround(std::hypot(bx - ax, by - ay) / perimeter * points)));
        for (int s = 0; s < pieces; ++s) {
            const double f = static_cast<double>(s) / pieces;
            input.rings[0].emplace_back(ax + f * (bx - ax), ay + f * (by - ay));
        }
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
                      : name.rfind("plate", 0) == 0 ? Plate(size)
                      : name.rfind("refined", 0) == 0 ? RefinedOutline(size)
                                                     : SquareWithHoles(static_cast<int>(std::lround(std::sqrt(size))));
        it = cache.emplace(name, std::move(input)).first;
    }
    return it->second;
}

std::size_t PointCount(const Input &input)
{
    std::size_t count = 0;
    for (const auto &ring : input.rings)
        count += ring.size();
    return count;
}

// Peak heap bytes per input point of each benchmark, for the table.
std::map<std::string, double> &PeakHeapPerPoint()
{
    static std::map<std::string, double> peaks;
    return peaks;
}

void ReportPeakHeap(benchmark::State &state, const std::string &benchmark, double bytesPerPoint)
{
    state.counters["peak_bytes_per_point"] = bytesPerPoint;
    PeakHeapPerPoint()[benchmark] = bytesPerPoint;
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
    auto run = [&] {
        p2t::CDT cdt(rings[0]);
        for (std::size_t h = 1; h < rings.size(); ++h)
            cdt.AddHole(rings[h]);
        cdt.Triangulate();
        const std::vector<p2t::Triangle *> result = cdt.GetTriangles();
        triangles = result.size();
        benchmark::DoNotOptimize(result.data());
    };
    for (auto _ : state)
        run();
    state.counters["triangles"] = static_cast<double>(triangles);
    ReportPeakHeap(state, "Triangulator/" + name, PeakHeapBytes(run) / static_cast<double>(owned.size()));
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
    auto run = [&] {
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
    };
    for (auto _ : state)
        run();
    ReportPeakHeap(state, "CgalSequential/" + name, PeakHeapBytes(run) / static_cast<double>(PointCount(input)));
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
    auto run = [&] {
        Cdt cdt;
        cdt.insert_constraints(points.begin(), points.end(), edges.begin(), edges.end());
        benchmark::DoNotOptimize(cdt.number_of_faces());
    };
    for (auto _ : state)
        run();
    ReportPeakHeap(state, "CgalBulk/" + name, PeakHeapBytes(run) / static_cast<double>(points.size()));
}
#endif

// CGAL's sequential insertion takes the points in the order of the ring; along one long smooth curve
// or straight run that order costs it flips that grow with the input too (minutes at a million
// points), so it is timed there only up to 10,000 points.
bool SequentialInsertionIsQuadratic(const std::string &name)
{
    const std::string family = name.substr(0, name.find('/'));
    const long size = std::stol(name.substr(name.find('/') + 1));
    return (family == "egg" || family == "ellipse" || family == "sampled" || family == "refined") && size > 10000;
}

const std::vector<std::string> &InputNames()
{
    static const std::vector<std::string> names{"star/1000",  "star/10000",  "star/100000", "star/1000000",
                                                "flower/1000", "flower/10000", "flower/100000",
                                                "egg/1000",    "egg/10000",    "egg/100000",   "egg/1000000",
                                                "ellipse/1000", "ellipse/10000", "ellipse/100000", "ellipse/1000000",
                                                "sampled/1000", "sampled/10000", "sampled/100000", "sampled/1000000",
                                                "holes/100",  "holes/1000",  "holes/10000",
                                                "plate/1000",  "plate/10000",  "plate/100000",  "plate/1000000",
                                                "refined/10000", "refined/100000", "refined/1000000"};
    return names;
}

// Prints the ratios after the usual output.
class RatioReporter : public CpuTimeReporter
{
public:
    void PrintRatios() const
    {
        std::printf("\nCPU time in ms; ours divided by CGAL's (below 1: ours is faster); how much longer a tenfold\n"
                    "input of the family takes (ours, CGAL's sequential and bulk ways, and ours over CGAL's bulk\n"
                    "growth); peak heap bytes per point of ours and of CGAL's bulk way\n");
        std::printf("%-15s %9s %9s %9s %7s %7s %7s %7s %7s %7s %7s %7s\n", "input", "ours", "CGAL seq", "CGAL bulk",
                    "/seq", "/bulk", "x10", "x10 seq", "x10 bulk", "x10 /", "B/pt", "B/pt CG");
        std::string previousFamily;
        long previousSize = 0;
        double previous[3] = {-1, -1, -1};
        for (const std::string &name : InputNames()) {
            const double times[3] = {Time("Triangulator/" + name), Time("CgalSequential/" + name),
                                     Time("CgalBulk/" + name)};
            if (times[0] <= 0)
                continue;
            std::printf("%-15s", name.c_str());
            for (double time : times)
                PrintCell(time, "%9.2f", 9);
            PrintCell(times[1] > 0 ? times[0] / times[1] : -1, "%7.3f", 7);
            PrintCell(times[2] > 0 ? times[0] / times[2] : -1, "%7.3f", 7);
            const std::string family = name.substr(0, name.find('/'));
            const long size = std::stol(name.substr(name.find('/') + 1));
            const bool tenfold = family == previousFamily && size == 10 * previousSize;
            double growth[3] = {-1, -1, -1};
            for (int k = 0; k < 3; ++k) {
                if (tenfold && times[k] > 0 && previous[k] > 0)
                    growth[k] = times[k] / previous[k];
                PrintCell(growth[k], "%7.2f", 7);
            }
            PrintCell(growth[0] > 0 && growth[2] > 0 ? growth[0] / growth[2] : -1, "%7.3f", 7);
            PrintCell(Peak("Triangulator/" + name), "%7.0f", 7);
            PrintCell(Peak("CgalBulk/" + name), "%7.0f", 7);
            std::printf("\n");
            previousFamily = family;
            previousSize = size;
            for (int k = 0; k < 3; ++k)
                previous[k] = times[k];
        }
    }

private:
    static void PrintCell(double value, const char *format, int width)
    {
        std::printf(" ");
        value > 0 ? std::printf(format, value) : std::printf("%*s", width, "-");
    }

    static double Peak(const std::string &benchmark)
    {
        const auto it = PeakHeapPerPoint().find(benchmark);
        return it == PeakHeapPerPoint().end() ? -1.0 : it->second;
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
