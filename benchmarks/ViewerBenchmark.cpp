// kezvis-viewer's drawing and picking at 1,000, 10,000 and 100,000 objects of
// one triangle each: one frame of 1000 x 800 pixels through the viewer's
// renderer, one pick under the cursor through its hierarchy of boxes, and
// the same triangles filled with bare QPainter calls, already projected, as
// the floor that a QPainter renderer cannot go below.

#include "CpuTimeReporter.h"

#include "SceneClient.h"
#include "SceneRenderer.h"
#include "ViewCamera.h"

#include <KEZVisEnvironment.h>
#include <KEZVisEnvironmentBatchContext.h>
#include <KEZVisOptions.h>
#include <KEZVisRepGraphics.h>
#include <KEZVisSurfacePrimitive.h>
#include <KEZVisVirtualObject.h>

#include <KEZMathVector.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <vector>

namespace {

const QSize FrameSize(1000, 800);

// A scene of n one-triangle objects tiling one wavy surface 1000 units wide,
// as the faces of a model tessellated n times: the surface is the same at
// every n, the tiles get finer, each one lifted and tilted at random by a
// fraction of its own size. Seen slightly from the side.
struct Scene
{
    explicit Scene(int n)
    {
        client.SetEnvironment(&environment);
        QRandomGenerator random(20);
        const int side = int(std::ceil(std::sqrt(double(n))));
        const double cell = 1000.0 / side;
        {
            KEZVisEnvironmentBatchContext batch(&environment);
            for (int i = 0; i < n; ++i) {
                const double x = (i % side) * cell;
                const double y = (i / side) * cell;
                const double z = 40.0 * std::sin(x / 150.0) * std::cos(y / 170.0) + random.bounded(0.4 * cell);
                const double tilt = random.bounded(0.6 * cell) - 0.3 * cell;
                double *coords = new double[9]{x, y, z, x + 0.9 * cell, y, z + tilt, x, y + 0.9 * cell, z - tilt};
                int *triangles = new int[3]{0, 1, 2};
                KEZVisOptions options;
                options.SetColor(QColor::fromRgb(random.generate() | 0xff000000u));
                auto object = std::make_unique<KEZVisVirtualObject>(&environment);
                object->SetRep(new KEZVisRepGraphics(
                    QList<const KEZVisPrimitive *>{new KEZVisSurfacePrimitive(3, coords, 1, triangles, nullptr)},
                    options));
                object->EnableSelection();
                environment.AddVirtualObject(object.get());
                objects.push_back(std::move(object));
            }
        }
        camera.SetSize(FrameSize);
        camera.SetDirection(KEZMathVector(0.2, -0.3, -1.0));
        KEZMathBoundingBox box;
        client.GetSceneBox(box);
        camera.Fit(box);
        client.GetHierarchySize(); // built before the first pick
    }
    ~Scene()
    {
        client.SetEnvironment(nullptr);
        objects.clear();
    }

    KEZVisEnvironment environment;
    SceneClient client;
    std::vector<std::unique_ptr<KEZVisVirtualObject>> objects;
    ViewCamera camera;
};

std::map<int, std::unique_ptr<Scene>> &Scenes()
{
    static std::map<int, std::unique_ptr<Scene>> scenes;
    return scenes;
}

Scene &SceneOf(int n)
{
    auto &scene = Scenes()[n];
    if (!scene)
        scene = std::make_unique<Scene>(n);
    return *scene;
}

void Frame(benchmark::State &state)
{
    Scene &scene = SceneOf(int(state.range(0)));
    QImage image(FrameSize, QImage::Format_RGB32);
    int faces = 0;
    for (auto _ : state) {
        QPainter painter(&image);
        faces = SceneRenderer::Render(painter, scene.client, scene.camera).faces;
    }
    if (faces != state.range(0))
        state.SkipWithError("not every triangle was drawn");
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Pick(benchmark::State &state)
{
    Scene &scene = SceneOf(int(state.range(0)));
    // Cursor positions spread over the frame, visited in turn.
    std::vector<QPointF> cursors;
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            cursors.emplace_back(100.0 + x * 110.0 + 3.0, 80.0 + y * 90.0 + 5.0);
    int hits = 0;
    for (const QPointF &cursor : cursors)
        hits += scene.client.Pick(scene.camera, cursor).object ? 1 : 0;
    if (hits == 0)
        state.SkipWithError("no pick hits anything");
    state.counters["hit share"] = double(hits) / double(cursors.size());
    size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(scene.client.Pick(scene.camera, cursors[next]).object);
        next = (next + 1) % cursors.size();
    }
}

void BarePainter(benchmark::State &state)
{
    Scene &scene = SceneOf(int(state.range(0)));
    // The triangles projected and shaded once, outside the timing.
    struct Flat
    {
        QPointF corners[3];
        QColor color;
    };
    std::vector<Flat> flats;
    for (const auto &item : scene.client.GetItems()) {
        for (const auto &t : item->triangles)
            flats.push_back({{scene.camera.ToScreen(&t.xyz[0]), scene.camera.ToScreen(&t.xyz[3]),
                              scene.camera.ToScreen(&t.xyz[6])},
                             item->styles[t.style].color});
    }
    QImage image(FrameSize, QImage::Format_RGB32);
    for (auto _ : state) {
        QPainter painter(&image);
        painter.fillRect(image.rect(), Qt::white);
        for (const Flat &flat : flats) {
            painter.setPen(QPen(flat.color, 0));
            painter.setBrush(flat.color);
            painter.drawConvexPolygon(flat.corners, 3);
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    for (auto [name, function] : {std::pair{"Frame", Frame}, std::pair{"BarePainter", BarePainter}})
        benchmark::RegisterBenchmark(name, function)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("Pick", Pick)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

    benchmark::Initialize(&argc, argv);
    CpuTimeReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    std::printf("\nCPU time; ratios within this run\n");
    for (const char *n : {"1000", "10000", "100000"}) {
        const double frame = reporter.Time(std::string("Frame/") + n);
        const double bare = reporter.Time(std::string("BarePainter/") + n);
        if (frame > 0 && bare > 0)
            std::printf("objects %-7s frame %8.2f ms, bare QPainter %8.2f ms, frame / bare %5.2f\n", n, frame, bare,
                        frame / bare);
    }
    const double pickSmall = reporter.Time("Pick/1000");
    const double pickLarge = reporter.Time("Pick/100000");
    if (pickSmall > 0 && pickLarge > 0)
        std::printf("pick at 100,000 objects / pick at 1,000 objects: %.2f (%.2f us / %.2f us)\n",
                    pickLarge / pickSmall, pickLarge, pickSmall);
    Scenes().clear();
    benchmark::Shutdown();
    return 0;
}
