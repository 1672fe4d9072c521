// Scale of the scene: every operation on n objects must cost time about
// proportional to n. Each benchmark runs on 10,000, 100,000 and 1,000,000
// virtual objects, each with a small rep (one point in a graphics rep); a
// tenfold scene should cost at most about fifteen times as much. Adding also
// runs on sizes in between.
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

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
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
    QList<KEZVisObject *> list;     // for the operations that take a list
    QSet<KEZVisObject *> request;   // for the operations that take a set
};

// Settles the allocator between the untimed and the timed parts. glibc keeps
// the small chunks that a torn-down scene freed in fast bins, and merges them
// all at the next allocation of a larger block: without this, the first
// larger allocation of the timed operation (a list or a hash that grows)
// would pay for tearing down the previous scene. A large request triggers the
// merge here, while timing is paused; the memory stays with the process.
void SettleHeap()
{
    void *block = std::malloc(64 * 1024);
    benchmark::DoNotOptimize(block);
    std::free(block);
}

// Pushes a freshly made scene out of the processor's caches. Making a scene
// leaves its newest part cached: all of a scene of 10,000 objects (about 17 MB
// with the reps), a small part of one of 100,000. Without this, the comparison
// between sizes would show where the scene outgrows the last-level cache
// rather than how the operation grows. Reading a block twice the size of that
// cache (at least 64 MiB, at most 1 GiB) line by line evicts what was there.
void EvictCaches()
{
    static const std::vector<char> block = [] {
        const long reported = sysconf(_SC_LEVEL3_CACHE_SIZE);
        const std::size_t twice = reported > 0 ? 2 * std::size_t(reported) : 0;
        return std::vector<char>(std::clamp<std::size_t>(twice, std::size_t(64) << 20, std::size_t(1) << 30), 1);
    }();
    unsigned sum = 0;
    for (std::size_t offset = 0; offset < block.size(); offset += 64)
        sum += static_cast<unsigned char>(block[offset]);
    benchmark::DoNotOptimize(sum);
}

// Times \a operation on a scene made by \a setup, once per iteration; making
// and destroying the scene aren't timed. One untimed pass comes first, so that
// the heap has held a scene of this size before and every size is timed in the
// same state: otherwise the first large scene pays for fresh pages from the
// system, and the comparison between sizes would measure the history of the
// process instead of the scene. For the same reason, every timed operation
// starts with the scene out of the caches.
template <typename Setup, typename Operation>
void TimeOperation(benchmark::State &state, Setup setup, Operation operation)
{
    {
        auto scene = setup();
        operation(*scene);
    }
    for (auto _ : state) {
        state.PauseTiming();
        auto scene = setup();
        SettleHeap();
        EvictCaches();
        state.ResumeTiming();
        operation(*scene);
        state.PauseTiming();
        scene.reset();
        SettleHeap();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void AddVirtualObjects(benchmark::State &state)
{
    const int count = int(state.range(0));
    TimeOperation(
        state, [count]() { return std::make_unique<Scene>(count, false, false); },
        [](Scene &scene) {
            for (KEZVisVirtualObject *object : scene.objects)
                scene.environment->AddVirtualObject(object);
            benchmark::DoNotOptimize(scene.environment->GetVirtualObjects().size());
        });
}

void AttachClientToPopulatedEnvironment(benchmark::State &state)
{
    const int count = int(state.range(0));
    TimeOperation(
        state, [count]() { return std::make_unique<Scene>(count, true, false); },
        [](Scene &scene) {
            scene.client = std::make_unique<CountingClient>();
            scene.client->SetEnvironment(scene.environment.get());
            benchmark::DoNotOptimize(scene.client->calls);
        });
}

void SetSelectionOfAll(benchmark::State &state)
{
    const int count = int(state.range(0));
    TimeOperation(
        state,
        [count]() {
            auto scene = std::make_unique<Scene>(count, true, true);
            const QList<KEZVisObject *> list = scene->AllObjects();
            scene->request = QSet<KEZVisObject *>(list.cbegin(), list.cend());
            scene->environment->GetSelectionFilter();
            return scene;
        },
        [](Scene &scene) { benchmark::DoNotOptimize(scene.environment->SetSelection(scene.request)); });
}

void FitToObjectsOfAll(benchmark::State &state)
{
    const int count = int(state.range(0));
    TimeOperation(
        state,
        [count]() {
            auto scene = std::make_unique<Scene>(count, true, true);
            scene->list = scene->AllObjects();
            return scene;
        },
        // The first fit of a scene asks every rep for its box; the cache answers afterwards.
        [](Scene &scene) { scene.environment->FitToObjects(scene.list); });
}

void RemoveAllVirtualObjects(benchmark::State &state)
{
    const int count = int(state.range(0));
    TimeOperation(
        state, [count]() { return std::make_unique<Scene>(count, true, true); },
        [](Scene &scene) { scene.environment->RemoveAllVirtualObjects(); });
}

// Objects that die while listed, selected and mirrored by a client.
void DestroyObjects(benchmark::State &state, bool reverse)
{
    const int count = int(state.range(0));
    TimeOperation(
        state,
        [count]() {
            auto scene = std::make_unique<Scene>(count, true, true);
            const QList<KEZVisObject *> list = scene->AllObjects();
            scene->environment->SetSelection(QSet<KEZVisObject *>(list.cbegin(), list.cend()));
            return scene;
        },
        [reverse](Scene &scene) {
            std::vector<KEZVisVirtualObject *> &objects = scene.objects;
            if (reverse) {
                for (auto it = objects.rbegin(); it != objects.rend(); ++it)
                    delete *it;
            } else {
                for (KEZVisVirtualObject *object : objects)
                    delete object;
            }
            // clear() keeps the vector's block: freeing it here would be a
            // large free, at which glibc merges every small chunk freed since
            // the last merge, and the timing would show where the benchmark
            // frees its own bookkeeping rather than what destroying costs.
            objects.clear();
            benchmark::DoNotOptimize(scene.environment->GetVirtualObjects().size());
            // The environment takes the dead out of its selection lazily; the
            // read makes that work part of the time.
            benchmark::DoNotOptimize(scene.environment->GetVisualizationSelection().size());
        });
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

// Adding costs some twenty nanoseconds an object, most of them two cache
// misses (the object and its record). The sizes in between show that the cost
// an object stays flat from the smallest scene to the largest.
void AddSizes(benchmark::internal::Benchmark *benchmark)
{
    for (int count : {10000, 20000, 50000, 100000, 200000, 1000000})
        benchmark->Arg(count);
    benchmark->Iterations(3)->Unit(benchmark::kMillisecond);
}

BENCHMARK(AddVirtualObjects)->Apply(AddSizes);
BENCHMARK(AttachClientToPopulatedEnvironment)->Apply(SceneSizes);
BENCHMARK(SetSelectionOfAll)->Apply(SceneSizes);
BENCHMARK(FitToObjectsOfAll)->Apply(SceneSizes);
BENCHMARK(RemoveAllVirtualObjects)->Apply(SceneSizes);
BENCHMARK(DestroyObjectsInOrderOfAddition)->Apply(SceneSizes);
BENCHMARK(DestroyObjectsInReverseOrder)->Apply(SceneSizes);

// Keeps the memory of a torn-down scene in the process. By default glibc hands
// the top of the heap back to the system once enough of it is free, and serves
// blocks of some hundred kilobytes and more with their own mappings; the next
// scene then pays the kernel for clearing fresh pages, by an amount that
// depends on what the allocator happened to return. With both thresholds
// raised, every size is timed on memory that the process already holds, which
// is the state of an application that has had a scene of that size before.
void KeepMemoryInTheProcess()
{
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    mallopt(M_MMAP_THRESHOLD, 32 * 1024 * 1024);
}

} // namespace

int main(int argc, char **argv)
{
    KeepMemoryInTheProcess();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
