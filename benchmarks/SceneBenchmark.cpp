// Scale of the scene: every operation on n objects must cost time about
// proportional to n. Each benchmark runs on 10,000, 100,000 and 1,000,000
// virtual objects, each with a small rep (one point in a graphics rep); a
// tenfold scene should cost at most about fifteen times as much.
//
// Building and tearing down a scene isn't timed; only the operation named by
// the benchmark is.

#include "KEZVisClient.h"
#include "KEZVisEnvironment.h"
#include "KEZVisOptions.h"
#include "KEZVisPointPrimitive.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisVirtualObject.h"

#include <QList>
#include <QSet>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

// A viewer that only counts what it is told, as cheaply as possible.
class CountingClient : public KEZVisClient
{
public:
    long long calls = 0;

protected:
    void OnEnvironmentChanged(KEZVisEnvironment *) override { ++calls; }
    void OnObjectAdded(KEZVisObject *) override { ++calls; }
    void OnObjectRemoved(KEZVisObject *) override { ++calls; }
    void OnObjectChanged(KEZVisObject *, KEZVisObject::ChangeTypes) override { ++calls; }
    void OnClientChangeRequested(const KEZVisClientChangeRequest &) override { ++calls; }
};

const KEZVisRep *SmallRep(int index)
{
    auto *coordinates = new double[3]{double(index % 1000), double(index / 1000), 0.5 * index};
    const QList<const KEZVisPrimitive *> primitives{new KEZVisPointPrimitive(coordinates, 1)};
    return new KEZVisRepGraphics(primitives, KEZVisOptions());
}

// n objects with a rep each, made for an environment; optionally listed in it
// and mirrored by a client.
struct Scene
{
    Scene(int count, bool listed, bool withClient)
    {
        environment = std::make_unique<KEZVisEnvironment>();
        objects.reserve(size_t(count));
        for (int i = 0; i < count; ++i) {
            auto *object = new KEZVisVirtualObject(environment.get());
            object->SetRep(SmallRep(i));
            objects.push_back(object);
            if (listed)
                environment->AddVirtualObject(object);
        }
        if (withClient) {
            client = std::make_unique<CountingClient>();
            client->SetEnvironment(environment.get());
        }
    }
    ~Scene()
    {
        // Cheapest order: the client lets go, the environment goes, and the
        // objects then die without reporting.
        client.reset();
        environment.reset();
        for (KEZVisVirtualObject *object : objects)
            delete object;
    }
    QList<KEZVisObject *> AllObjects() const { return QList<KEZVisObject *>(objects.cbegin(), objects.cend()); }

    std::unique_ptr<KEZVisEnvironment> environment;
    std::unique_ptr<CountingClient> client;
    std::vector<KEZVisVirtualObject *> objects;
};

void AddVirtualObjects(benchmark::State &state)
{
    const int count = int(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto scene = std::make_unique<Scene>(count, false, false);
        state.ResumeTiming();
        for (KEZVisVirtualObject *object : scene->objects)
            scene->environment->AddVirtualObject(object);
        state.PauseTiming();
        benchmark::DoNotOptimize(scene->environment->GetVirtualObjects().size());
        scene.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

void AttachClientToPopulatedEnvironment(benchmark::State &state)
{
    const int count = int(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto scene = std::make_unique<Scene>(count, true, false);
        CountingClient client;
        state.ResumeTiming();
        client.SetEnvironment(scene->environment.get());
        state.PauseTiming();
        benchmark::DoNotOptimize(client.calls);
        client.SetEnvironment(nullptr);
        scene.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

void SetSelectionOfAll(benchmark::State &state)
{
    const int count = int(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto scene = std::make_unique<Scene>(count, true, true);
        const QList<KEZVisObject *> list = scene->AllObjects();
        const QSet<KEZVisObject *> all(list.cbegin(), list.cend());
        scene->environment->GetSelectionFilter();
        state.ResumeTiming();
        const bool changed = scene->environment->SetSelection(all);
        state.PauseTiming();
        benchmark::DoNotOptimize(changed);
        scene.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

void FitToObjectsOfAll(benchmark::State &state)
{
    const int count = int(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto scene = std::make_unique<Scene>(count, true, true);
        const QList<KEZVisObject *> all = scene->AllObjects();
        state.ResumeTiming();
        // The first fit asks every rep for its box; the cache answers afterwards.
        scene->environment->FitToObjects(all);
        state.PauseTiming();
        scene.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

void RemoveAllVirtualObjects(benchmark::State &state)
{
    const int count = int(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto scene = std::make_unique<Scene>(count, true, true);
        state.ResumeTiming();
        scene->environment->RemoveAllVirtualObjects();
        state.PauseTiming();
        scene.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

// Objects that die while listed, selected and mirrored by a client.
void DestroyObjects(benchmark::State &state, bool reverse)
{
    const int count = int(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto scene = std::make_unique<Scene>(count, true, true);
        const QList<KEZVisObject *> list = scene->AllObjects();
        scene->environment->SetSelection(QSet<KEZVisObject *>(list.cbegin(), list.cend()));
        std::vector<KEZVisVirtualObject *> objects;
        objects.swap(scene->objects);
        state.ResumeTiming();
        if (reverse) {
            for (auto it = objects.rbegin(); it != objects.rend(); ++it)
                delete *it;
        } else {
            for (KEZVisVirtualObject *object : objects)
                delete object;
        }
        state.PauseTiming();
        benchmark::DoNotOptimize(scene->environment->GetVirtualObjects().size());
        scene.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

void DestroyObjectsInOrderOfAddition(benchmark::State &state)
{
    DestroyObjects(state, false);
}

void DestroyObjectsInReverseOrder(benchmark::State &state)
{
    DestroyObjects(state, true);
}

void SceneSizes(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(10000)->Arg(100000)->Arg(1000000)->Iterations(3)->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK(AddVirtualObjects)->Apply(SceneSizes);
BENCHMARK(AttachClientToPopulatedEnvironment)->Apply(SceneSizes);
BENCHMARK(SetSelectionOfAll)->Apply(SceneSizes);
BENCHMARK(FitToObjectsOfAll)->Apply(SceneSizes);
BENCHMARK(RemoveAllVirtualObjects)->Apply(SceneSizes);
BENCHMARK(DestroyObjectsInOrderOfAddition)->Apply(SceneSizes);
BENCHMARK(DestroyObjectsInReverseOrder)->Apply(SceneSizes);

BENCHMARK_MAIN();
