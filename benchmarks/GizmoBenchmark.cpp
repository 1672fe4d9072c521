// Dragging the gizmo in scenes of 1,000, 10,000 and 100,000 other objects with
// a client attached. A drag step after the first only moves the ghost: it must
// cost the same at every scene size. The first step of a drag builds the ghost
// and adds it to the environment; it is timed on its own.

#include "KEZVisClient.h"
#include "KEZVisEnvironment.h"
#include "KEZVisGizmo.h"
#include "KEZVisMouseContext.h"
#include "KEZVisMouseEvent.h"
#include "KEZVisOptions.h"
#include "KEZVisPointPrimitive.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisVirtualObject.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>

namespace {

// A viewer that only counts what it is told.
class CountingClient : public KEZVisClient
{
public:
    long long calls = 0;
    long long repChanges = 0; // objects told that their rep, their geometry, changed

protected:
    void OnEnvironmentChanged(KEZVisEnvironment *) override { ++calls; }
    void OnObjectAdded(KEZVisObject *) override { ++calls; }
    void OnObjectRemoved(KEZVisObject *) override { ++calls; }
    void OnObjectChanged(KEZVisObject *, KEZVisObject::ChangeTypes types) override
    {
        ++calls;
        if (types.testFlag(KEZVisObject::RepChange))
            ++repChanges;
    }
    void OnClientChangeRequested(const KEZVisClientChangeRequest &) override { ++calls; }
};

struct GizmoScene
{
    explicit GizmoScene(int count)
    {
        environment = std::make_unique<KEZVisEnvironment>();
        for (int index = 0; index < count; ++index) {
            auto *object = new KEZVisVirtualObject(environment.get(), environment.get());
            auto *coordinates = new double[3]{double(index % 1000), double(index / 1000), 0.0};
            object->SetRep(new KEZVisRepGraphics(QList<const KEZVisPrimitive *>{new KEZVisPointPrimitive(coordinates, 1)},
                                                 KEZVisOptions()));
            environment->AddVirtualObject(object);
        }
        client = std::make_unique<CountingClient>();
        client->SetEnvironment(environment.get());
        gizmo = std::make_unique<KEZVisGizmo>(environment.get());
        gizmo->SetPosition(KEZMathAxis());
        sphere = environment->GetVirtualObjects().at(count);
    }
    ~GizmoScene()
    {
        const QList<KEZVisVirtualObject *> all = environment->GetVirtualObjects();
        gizmo.reset();
        client.reset();
        for (int index = all.size() - 7; index < all.size(); ++index)
            delete all.at(index);
    }

    void Send(KEZVisMouseEvent::MouseActionFlag action, const KEZVisObject *object, const KEZMathPoint &point)
    {
        context.SetVisObject(object);
        context.SetMousePoint(point);
        context.SetViewDirection(KEZMathVector(0, 0, 1));
        KEZVisMouseEvent event(action, &context);
        emit environment->MouseEvent(event);
    }

    std::unique_ptr<KEZVisEnvironment> environment;
    std::unique_ptr<CountingClient> client;
    std::unique_ptr<KEZVisGizmo> gizmo;
    KEZVisVirtualObject *sphere = nullptr;
    KEZVisMouseContext context;
};

// Steps of a drag of the sphere after the first one.
void BM_GizmoDragStep(benchmark::State &state)
{
    GizmoScene scene(int(state.range(0)));
    scene.Send(KEZVisMouseEvent::MousePressed, scene.sphere, KEZMathPoint());
    scene.Send(KEZVisMouseEvent::MouseMoved, nullptr, KEZMathPoint(1, 0, 0));
    scene.Send(KEZVisMouseEvent::MouseMoved, nullptr, KEZMathPoint(2, 0, 0));
    long long emitted = 0;
    QObject::connect(scene.gizmo.get(), &KEZVisGizmo::PositionChanged, [&emitted]() { ++emitted; });
    const long long callsBefore = scene.client->calls;
    const long long repChangesBefore = scene.client->repChanges;
    int step = 0;
    for (auto _ : state) {
        scene.Send(KEZVisMouseEvent::MouseMoved, nullptr, KEZMathPoint(3 + (step++ & 1), 0, 0));
    }
    // Each step moves the frame and the ghost: one signal and client calls per step.
    state.counters["signals"] = benchmark::Counter(double(emitted), benchmark::Counter::kAvgIterations);
    state.counters["clientCalls"] =
        benchmark::Counter(double(scene.client->calls - callsBefore), benchmark::Counter::kAvgIterations);
    // A later step only moves what is there: no object gets new geometry.
    state.counters["repChanges"] = double(scene.client->repChanges - repChangesBefore);
    if (scene.client->repChanges != repChangesBefore)
        state.SkipWithError("a drag step after the first rebuilt geometry");
    scene.Send(KEZVisMouseEvent::MouseReleased, nullptr, KEZMathPoint());
}

// The first step of a drag, which builds the ghost; the press, the slack move
// and the release around it aren't timed.
void BM_GizmoFirstDragStep(benchmark::State &state)
{
    GizmoScene scene(int(state.range(0)));
    for (auto _ : state) {
        scene.Send(KEZVisMouseEvent::MousePressed, scene.sphere, KEZMathPoint());
        scene.Send(KEZVisMouseEvent::MouseMoved, nullptr, KEZMathPoint(1, 0, 0));
        const auto start = std::chrono::steady_clock::now();
        scene.Send(KEZVisMouseEvent::MouseMoved, nullptr, KEZMathPoint(2, 0, 0));
        const auto end = std::chrono::steady_clock::now();
        state.SetIterationTime(std::chrono::duration<double>(end - start).count());
        scene.Send(KEZVisMouseEvent::MouseReleased, nullptr, KEZMathPoint());
    }
}

} // namespace

BENCHMARK(BM_GizmoDragStep)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_GizmoFirstDragStep)->Arg(1000)->Arg(10000)->Arg(100000)->UseManualTime()->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
