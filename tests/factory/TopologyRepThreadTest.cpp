// KEZVisRepFactory::CreateRep for topology holds no state: several threads
// turn bodies of their own into reps at once, each getting the points,
// polylines and surfaces of its own body. This suite is meant to run under
// ThreadSanitizer as well.

#include "KEZVisOptions.h"
#include "KEZVisPointPrimitive.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisRepFactory.h"
#include "KEZVisRepSet.h"
#include "KEZVisSurfacePrimitive.h"

#include <KEZGeoComboCurve.h>
#include <KEZGeoComboPoint.h>
#include <KEZGeoSurface.h>
#include <KEZTopBody.h>
#include <KEZTopEdge.h>
#include <KEZTopFace.h>
#include <KEZTopVertex.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int ThreadCount = 4;
constexpr int RoundCount = 3;
constexpr int EntityCount = 50;

// Builds, in the calling thread, a body of EntityCount vertices, edges and
// faces whose coordinates depend on `seed`, turns it into a rep and compares
// every coordinate with the one it was built from. Gives an empty string when
// all agree, else a description of the first difference.
std::string RunOnce(int seed)
{
    std::vector<std::unique_ptr<KEZGeoGeometry>> geometry;
    KEZTopBody body;
    std::vector<double> expectedPoints;
    for (int i = 0; i < EntityCount; ++i) {
        const double x = seed * 1000.0 + i;
        const double y = -seed - 0.5 * i;
        const double z = 0.25 * i;
        auto point = std::make_unique<KEZGeoComboPoint>(KEZMathPoint(x, y, z));
        body.AddEntity(0, new KEZTopVertex(point.get()));
        geometry.push_back(std::move(point));
        expectedPoints.insert(expectedPoints.end(), {x, y, z});

        KEZMathSetOfPoints ends;
        ends.append(KEZMathPoint(x, y, z));
        ends.append(KEZMathPoint(x + 1.0, y, z));
        auto curve = std::make_unique<KEZGeoComboCurve>(ends, false);
        body.AddEntity(1, new KEZTopEdge(curve.get()));
        geometry.push_back(std::move(curve));

        KEZMathSetOfPoints corners;
        corners.append(KEZMathPoint(x, y, z));
        corners.append(KEZMathPoint(x + 1.0, y, z));
        corners.append(KEZMathPoint(x, y + 1.0, z));
        auto surface = std::make_unique<KEZGeoSurface>(corners, QList<int>{0, 1, 2});
        body.AddEntity(2, new KEZTopFace(surface.get()));
        geometry.push_back(std::move(surface));
    }

    const QFlags<KEZVisOptions::VisibleGeometry> all = QFlags<KEZVisOptions::VisibleGeometry>(
        KEZVisOptions::VisibleVertices) | KEZVisOptions::VisibleEdges | KEZVisOptions::VisibleFaces;
    const std::unique_ptr<KEZVisRep> rep(
        KEZVisRepFactory::CreateRep(&body, KEZVisOptions(), KEZVisOptions(), KEZVisOptions(), all));
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    rep->GetPrimitives(primitives, options);
    if (primitives.size() != 1 + 2 * EntityCount)
        return "primitive count " + std::to_string(primitives.size());

    const auto *points = qobject_cast<const KEZVisPointPrimitive *>(primitives.at(0));
    if (!points || points->GetCoordsAsDouble() != expectedPoints)
        return "points of seed " + std::to_string(seed);
    for (int i = 0; i < EntityCount; ++i) {
        const double *xyz = expectedPoints.data() + 3 * i;
        const auto *polyline = qobject_cast<const KEZVisPolylinePrimitive *>(primitives.at(1 + i));
        const std::vector<double> line = {xyz[0], xyz[1], xyz[2], xyz[0] + 1.0, xyz[1], xyz[2]};
        if (!polyline || polyline->GetCoordsAsDouble() != line)
            return "polyline " + std::to_string(i) + " of seed " + std::to_string(seed);
        const auto *surface = qobject_cast<const KEZVisSurfacePrimitive *>(primitives.at(1 + EntityCount + i));
        const QList<double> triangle = {xyz[0], xyz[1], xyz[2], xyz[0] + 1.0, xyz[1],
                                        xyz[2], xyz[0], xyz[1] + 1.0, xyz[2]};
        if (!surface || surface->GetVertexCoordinatesAsDouble() != triangle)
            return "surface " + std::to_string(i) + " of seed " + std::to_string(seed);
    }
    return std::string();
}

} // namespace

TEST(TopologyRepThreads, ThreadsTurningBodiesOfTheirOwnIntoRepsEachGetTheirOwnGeometry)
{
    std::vector<std::string> failures(ThreadCount);
    std::vector<std::thread> threads;
    for (int t = 0; t < ThreadCount; ++t) {
        threads.emplace_back([t, &failures] {
            for (int round = 0; round < RoundCount && failures[size_t(t)].empty(); ++round)
                failures[size_t(t)] = RunOnce(t * RoundCount + round + 1);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (int t = 0; t < ThreadCount; ++t)
        EXPECT_EQ(failures[size_t(t)], std::string()) << "thread " << t;
}
