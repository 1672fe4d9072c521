// KEZVisRepFactory's filled polygons hold no state: several threads triangulate
// polygons of their own at once and get exactly what one thread gets. The jobs
// reach the sweep, the incremental insertion that takes over on densely sampled
// curves, the partial result of crossing edges, holes, and points that are no
// numbers. This suite is meant to run under ThreadSanitizer as well.

#include "KEZVisRepFactory.h"
#include "KEZVisSurfacePrimitive.h"

#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>

#include <QList>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <thread>
#include <vector>

namespace {

constexpr int ThreadCount = 4;
constexpr int RoundCount = 2;
constexpr double Pi = 3.14159265358979323846;

// What one triangulation gave, as plain values: whether it was null, the
// vertex coordinates and the triangle indexes.
struct Result
{
    bool null = true;
    std::vector<double> coords;
    std::vector<long> indexes;

    // Coordinates compare by their bits, so that a vertex that is no number
    // equals itself.
    bool operator==(const Result &other) const
    {
        return null == other.null && coords.size() == other.coords.size() &&
               (coords.empty() || std::memcmp(coords.data(), other.coords.data(), coords.size() * sizeof(double)) == 0) &&
               indexes == other.indexes;
    }
};

KEZMathSetOfPoints Ellipse(int count, double a, double b, double cx = 0.0, double cy = 0.0, bool clockwise = false)
{
    KEZMathSetOfPoints ring;
    for (int i = 0; i < count; ++i) {
        const double t = (clockwise ? -2.0 : 2.0) * Pi * i / count;
        ring.append(KEZMathPoint(cx + a * std::cos(t), cy + b * std::sin(t), 0.0));
    }
    return ring;
}

KEZMathSetOfPoints Star(int spikes, double outer, double inner, double phase)
{
    KEZMathSetOfPoints ring;
    for (int i = 0; i < 2 * spikes; ++i) {
        const double r = i % 2 == 0 ? outer : inner;
        const double t = phase + Pi * i / spikes;
        ring.append(KEZMathPoint(r * std::cos(t), r * std::sin(t), 0.0));
    }
    return ring;
}

// The rings of one job; the job number varies sizes and shapes.
QList<KEZMathSetOfPoints> Rings(int job)
{
    QList<KEZMathSetOfPoints> rings;
    switch (job % 6) {
    case 0: // a star with holes
        rings.append(Star(5 + job, 10.0 + job, 4.0, 0.1 * job));
        rings.append(Ellipse(12, 1.0, 0.5, 0.0, 0.0, true));
        rings.append(Ellipse(8, 0.5, 0.5, 2.0, 0.0, true));
        break;
    case 1: // a densely sampled ellipse, where the incremental insertion takes over
        rings.append(Ellipse(2000 + 100 * job, 50.0, 3.0));
        break;
    case 2: { // an outline whose edges cross: a partial result
        KEZMathSetOfPoints bow;
        bow.append(KEZMathPoint(0, 0, 0));
        bow.append(KEZMathPoint(10 + job, 10, 0));
        bow.append(KEZMathPoint(10 + job, 0, 0));
        bow.append(KEZMathPoint(0, 10, 0));
        bow.append(KEZMathPoint(-5, 5, 0));
        rings.append(bow);
        break;
    }
    case 3: { // a point that is no number among ordinary ones
        KEZMathSetOfPoints ring = Ellipse(40 + job, 5.0, 5.0);
        ring[3] = KEZMathPoint(std::numeric_limits<double>::quiet_NaN(), 1.0, 0.0);
        rings.append(ring);
        break;
    }
    case 4: { // a grid of holes in a square
        KEZMathSetOfPoints square;
        square.append(KEZMathPoint(0, 0, 0));
        square.append(KEZMathPoint(40, 0, 0));
        square.append(KEZMathPoint(40, 40, 0));
        square.append(KEZMathPoint(0, 40, 0));
        rings.append(square);
        for (int i = 0; i < 4 + job % 3; ++i) {
            for (int j = 0; j < 4; ++j)
                rings.append(Ellipse(6 + (i + j) % 4, 2.0, 1.5, 5.0 + 9.0 * i, 5.0 + 9.0 * j, true));
        }
        break;
    }
    default: // too few points: null
        rings.append(Ellipse(2, 1.0, 1.0));
        break;
    }
    return rings;
}

Result Triangulate(int job)
{
    Result result;
    std::unique_ptr<KEZVisSurfacePrimitive> surface(KEZVisRepFactory::CreateFilledPolygonPrimitive(Rings(job)));
    if (!surface)
        return result;
    result.null = false;
    const QList<double> coords = surface->GetVertexCoordinatesAsDouble();
    const QList<long> indexes = surface->GetTriangleVertexIndexes();
    result.coords.assign(coords.cbegin(), coords.cend());
    result.indexes.assign(indexes.cbegin(), indexes.cend());
    return result;
}

} // namespace

TEST(FilledPolygonThreads, ConcurrentTriangulationsGiveWhatOneThreadGives)
{
    constexpr int JobCount = 12;
    std::vector<Result> reference;
    for (int job = 0; job < JobCount; ++job)
        reference.push_back(Triangulate(job));

    // The jobs cover whole, partial and null results.
    int nulls = 0;
    int meshes = 0;
    for (const Result &result : reference)
        (result.null ? nulls : meshes) += 1;
    ASSERT_GE(nulls, 2);
    ASSERT_GE(meshes, 8);
    EXPECT_GT(reference[1].indexes.size(), size_t(3 * 1000)) << "the dense ellipse is triangulated whole";

    std::vector<std::vector<Result>> results(ThreadCount);
    std::atomic<int> ready{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < ThreadCount; ++t) {
        threads.emplace_back([t, &results, &ready] {
            ready.fetch_add(1);
            while (ready.load() < ThreadCount)
                std::this_thread::yield();
            results[size_t(t)].resize(RoundCount * JobCount);
            for (int run = 0; run < RoundCount * JobCount; ++run)
                results[size_t(t)][size_t(run)] = Triangulate((t * 5 + run) % JobCount);
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    for (int t = 0; t < ThreadCount; ++t) {
        for (int run = 0; run < RoundCount * JobCount; ++run) {
            const int job = (t * 5 + run) % JobCount;
            EXPECT_TRUE(results[size_t(t)][size_t(run)] == reference[size_t(job)])
                << "thread " << t << ", job " << job;
        }
    }
}
