// The shape operations of KEZVisRepFactory hold no state: several threads run
// them at once on data of their own and get exactly what one thread gets.
// This suite is meant to run under ThreadSanitizer as well.

#include "KEZVisOptions.h"
#include "KEZVisPointPrimitive.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisRepFactory.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisSurfacePrimitive.h"

#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>
#include <KEZMathVector.h>
#include <KEZSysOutOfBoundsException.h>

#include <QColor>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int JobCount = 12;
constexpr int ThreadCount = 4;
constexpr int RoundCount = 3;

// What one shape gave, as plain values that outlive the primitives.
struct Shape
{
    std::vector<double> coords;
    std::vector<long> indexes;
    std::vector<double> normals;
    std::string failure;

    bool operator==(const Shape &other) const
    {
        return coords == other.coords && indexes == other.indexes && normals == other.normals &&
               failure == other.failure;
    }
};

Shape FromSurface(const KEZVisSurfacePrimitive &surface)
{
    Shape shape;
    const QList<double> coords = surface.GetVertexCoordinatesAsDouble();
    const QList<long> indexes = surface.GetTriangleVertexIndexes();
    const QList<double> normals = surface.GetTriangleNormalCoordsAsDouble();
    shape.coords.assign(coords.cbegin(), coords.cend());
    shape.indexes.assign(indexes.cbegin(), indexes.cend());
    shape.normals.assign(normals.cbegin(), normals.cend());
    return shape;
}

Shape FromRep(const KEZVisRep &rep)
{
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    rep.GetPrimitives(primitives, options);
    Shape shape;
    for (qsizetype i = 0; i < primitives.size(); ++i) {
        if (const auto *surface = qobject_cast<const KEZVisSurfacePrimitive *>(primitives.at(i))) {
            const Shape part = FromSurface(*surface);
            shape.coords.insert(shape.coords.end(), part.coords.begin(), part.coords.end());
            shape.indexes.insert(shape.indexes.end(), part.indexes.begin(), part.indexes.end());
            shape.normals.insert(shape.normals.end(), part.normals.begin(), part.normals.end());
        } else if (const auto *line = qobject_cast<const KEZVisPolylinePrimitive *>(primitives.at(i))) {
            const std::vector<double> coords = line->GetCoordsAsDouble();
            shape.coords.insert(shape.coords.end(), coords.begin(), coords.end());
            shape.indexes.push_back(line->GetStructure());
        } else if (const auto *points = qobject_cast<const KEZVisPointPrimitive *>(primitives.at(i))) {
            const std::vector<double> coords = points->GetCoordsAsDouble();
            shape.coords.insert(shape.coords.end(), coords.begin(), coords.end());
        }
        shape.normals.push_back(options.at(i).GetLineThickness());
        shape.normals.push_back(options.at(i).GetColor().redF());
    }
    return shape;
}

// The exception an operation ends in, as text with its value and limits.
std::string Describe(const KEZSysOutOfBoundsException &exception)
{
    return "out of bounds " + exception.GetValue().toString().toStdString() + " " +
           exception.GetLowerLimit().toString().toStdString() + " " +
           std::to_string(exception.IsLowerLimitIncluded()) + std::to_string(exception.IsUpperLimitIncluded()) +
           std::to_string(exception.GetUpperLimit().isValid());
}

template <typename Make>
Shape Capture(Make make)
{
    try {
        return make();
    } catch (const KEZSysOutOfBoundsException &exception) {
        Shape shape;
        shape.failure = Describe(exception);
        return shape;
    } catch (const std::bad_alloc &) {
        Shape shape;
        shape.failure = "bad allocation";
        return shape;
    }
}

// Every shape operation once, with measures that depend on the job number;
// some jobs end in the documented exceptions. Everything is made here, on the
// calling thread: points, options, primitives and reps.
std::vector<Shape> RunJob(int job)
{
    const KEZMathPoint origin(job * 0.5, -job * 0.25, job);
    const KEZMathVector axis(1.0 + job, 2.0 - job, 0.5 * job + 0.1);
    KEZVisOptions options;
    options.SetColor(QColor::fromRgbF(float(job) / JobCount, 0.5f, 0.25f));
    options.SetLineThickness(1.0 + job);
    KEZMathSetOfPoints outline;
    for (int i = 0; i < 3 + job; ++i)
        outline << KEZMathPoint(std::cos(i * 0.4) * (job + 1), std::sin(i * 0.4) * (job + 1), job);
    // Jobs 3, 7 and 11 get 0, -1 and -2 sides; job 6 gets one side, which fails in the polygon.
    const int sides = job % 4 == 3 ? -(job / 4) : 3 + 7 * job;
    const int smallSides = job == 6 ? 1 : 3 + job;

    std::vector<Shape> shapes;
    shapes.push_back(Capture([&] {
        std::unique_ptr<KEZVisSurfacePrimitive> p(KEZVisRepFactory::CreateSpherePrimitive(origin, 0.5 + job, 1 + job));
        return FromSurface(*p);
    }));
    shapes.push_back(Capture([&] {
        std::unique_ptr<KEZVisSurfacePrimitive> p(
            KEZVisRepFactory::CreateSpherePrimitive(origin, job == 5 ? 0.0005 : 1.0, 2));
        return FromSurface(*p);
    }));
    shapes.push_back(Capture([&] {
        std::unique_ptr<KEZVisSurfacePrimitive> p(
            KEZVisRepFactory::CreatePrismPrimitive(origin, axis, 1.0 + job, 2.0 * job, sides));
        return FromSurface(*p);
    }));
    shapes.push_back(Capture([&] {
        std::unique_ptr<KEZVisSurfacePrimitive> p(
            KEZVisRepFactory::CreatePyramidPrimitive(origin, axis, 0.5, 3.0, sides));
        return FromSurface(*p);
    }));
    shapes.push_back(Capture([&] {
        std::unique_ptr<KEZVisSurfacePrimitive> p(
            KEZVisRepFactory::CreatePolygonPrimitive(origin, axis, 2.0, smallSides));
        return FromSurface(*p);
    }));
    shapes.push_back(Capture([&] {
        std::unique_ptr<KEZVisSurfacePrimitive> p(KEZVisRepFactory::CreatePlaneSurfacePrimitive(outline, axis));
        return FromSurface(*p);
    }));
    shapes.push_back(Capture([&] {
        std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreatePlaneRep(outline, axis, options, KEZVisOptions()));
        return FromRep(*rep);
    }));
    shapes.push_back(Capture([&] {
        std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreatePolylineRep(outline, options));
        return FromRep(*rep);
    }));
    shapes.push_back(Capture([&] {
        std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreateSphereRep(origin, 2.0, 3 + job % 4, options));
        return FromRep(*rep);
    }));
    shapes.push_back(Capture([&] {
        std::unique_ptr<KEZVisRep> rep(
            KEZVisRepFactory::CreateArrowRep(origin, axis, 10.0 + job, options, smallSides, 0.05, 0.1, 0.8));
        return FromRep(*rep);
    }));
    shapes.push_back(Capture([&] {
        std::unique_ptr<KEZVisRep> rep(
            KEZVisRepFactory::CreateArrowRep(origin, axis, 8.0, 0.5, 2.0, 1.0, sides, options));
        return FromRep(*rep);
    }));
    shapes.push_back(Capture([&] {
        std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreateAxisRep(origin, axis, 3.0 + job, options));
        return FromRep(*rep);
    }));
    shapes.push_back(Capture([&] {
        std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreateOirginRep(origin, options));
        return FromRep(*rep);
    }));
    return shapes;
}

} // namespace

TEST(RepFactoryThreads, ConcurrentRunsGiveTheSameShapesAsOneThread)
{
    std::vector<std::vector<Shape>> reference;
    for (int job = 0; job < JobCount; ++job)
        reference.push_back(RunJob(job));

    // The jobs cover both outcomes, so that exceptions travel concurrently too.
    int failures = 0;
    int successes = 0;
    for (const auto &shapes : reference) {
        for (const Shape &shape : shapes)
            (shape.failure.empty() ? successes : failures) += 1;
    }
    ASSERT_GT(failures, 5);
    ASSERT_GT(successes, 100);

    // Each thread runs every job a few times, starting at a different one, and
    // keeps what it got; the threads start together to overlap as much as they can.
    std::vector<std::vector<std::vector<Shape>>> results(ThreadCount);
    std::atomic<int> ready{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < ThreadCount; ++t) {
        threads.emplace_back([t, &results, &ready] {
            ready.fetch_add(1);
            while (ready.load() < ThreadCount)
                std::this_thread::yield();
            results[size_t(t)].resize(RoundCount * JobCount);
            for (int run = 0; run < RoundCount * JobCount; ++run) {
                const int job = (t * 5 + run) % JobCount;
                results[size_t(t)][size_t(run)] = RunJob(job);
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    for (int t = 0; t < ThreadCount; ++t) {
        for (int run = 0; run < RoundCount * JobCount; ++run) {
            const int job = (t * 5 + run) % JobCount;
            const std::vector<Shape> &got = results[size_t(t)][size_t(run)];
            const std::vector<Shape> &expected = reference[size_t(job)];
            ASSERT_EQ(got.size(), expected.size());
            for (size_t s = 0; s < got.size(); ++s)
                EXPECT_TRUE(got[s] == expected[s]) << "thread " << t << ", job " << job << ", shape " << s;
        }
    }
}
