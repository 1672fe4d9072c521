// Tests of the environment's object list through the public registry: objects
// listed both in their own environment (where they keep their place in their
// own record) and in another one (where they are found through a hash), dying
// objects that a listener lists again, and the order of the list through long
// mixed runs of additions, removals and deaths checked against a plain model.

#include "SceneTestSupport.h"

#include "KEZVisEnvironment.h"
#include "KEZVisVirtualObject.h"

#include <QList>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

using namespace SceneTest;

namespace {

// Counts the ObjectRemoved() and ObjectAdded() signals of an environment.
struct SignalCounter
{
    explicit SignalCounter(KEZVisEnvironment *environment)
    {
        QObject::connect(environment, &KEZVisEnvironment::ObjectRemoved, environment,
                         [this](KEZVisObject *) { ++removed; });
        QObject::connect(environment, &KEZVisEnvironment::ObjectAdded, environment,
                         [this](KEZVisObject *) { ++added; });
    }
    int removed = 0;
    int added = 0;
};

QList<KEZVisObject *> AsObjects(const QList<KEZVisVirtualObject *> &objects)
{
    return QList<KEZVisObject *>(objects.cbegin(), objects.cend());
}

} // namespace

// --- An object listed in its own environment and in another one -------------

TEST(EnvironmentObjectList, RemovingFromItsOwnEnvironmentLeavesTheOtherListingWhole)
{
    KEZVisEnvironment own;
    KEZVisEnvironment other;
    SignalCounter ownSignals(&own);
    SignalCounter otherSignals(&other);
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &own));
    std::unique_ptr<KEZVisVirtualObject> p(MakeObject("p", &own));
    std::unique_ptr<KEZVisVirtualObject> q(MakeObject("q", &own));
    std::unique_ptr<KEZVisVirtualObject> r(MakeObject("r", &other));
    std::unique_ptr<KEZVisVirtualObject> n(MakeObject("n", nullptr));

    own.AddVirtualObject(p.get());
    other.AddVirtualObject(r.get());
    own.AddVirtualObject(a.get());
    other.AddVirtualObject(a.get());
    own.AddVirtualObject(n.get());
    own.AddVirtualObject(q.get());
    other.AddVirtualObject(n.get());
    own.AddVirtualObject(a.get());
    other.AddVirtualObject(a.get());
    other.AddVirtualObject(r.get());

    ASSERT_EQ(own.GetVirtualObjects(), QList<KEZVisVirtualObject *>({p.get(), a.get(), n.get(), q.get(), a.get()}));
    ASSERT_EQ(other.GetVirtualObjects(),
              QList<KEZVisVirtualObject *>({r.get(), a.get(), n.get(), a.get(), r.get()}));

    own.RemoveVirtualObject(a.get());
    EXPECT_EQ(ownSignals.removed, 1);
    EXPECT_EQ(otherSignals.removed, 0);
    EXPECT_EQ(own.GetObjects(), QList<KEZVisObject *>({p.get(), n.get(), q.get()}));
    EXPECT_EQ(own.GetVirtualObjects(), QList<KEZVisVirtualObject *>({p.get(), n.get(), q.get()}));
    EXPECT_EQ(other.GetObjects(), QList<KEZVisObject *>({r.get(), a.get(), n.get(), a.get(), r.get()}));
    EXPECT_EQ(other.GetVirtualObjects(),
              QList<KEZVisVirtualObject *>({r.get(), a.get(), n.get(), a.get(), r.get()}));

    // A second removal from its own environment finds nothing there.
    own.RemoveVirtualObject(a.get());
    EXPECT_EQ(ownSignals.removed, 1);

    other.RemoveVirtualObject(a.get());
    EXPECT_EQ(otherSignals.removed, 1);
    EXPECT_EQ(other.GetObjects(), QList<KEZVisObject *>({r.get(), n.get(), r.get()}));
    EXPECT_EQ(other.GetVirtualObjects(), QList<KEZVisVirtualObject *>({r.get(), n.get(), r.get()}));
    EXPECT_EQ(own.GetVirtualObjects(), QList<KEZVisVirtualObject *>({p.get(), n.get(), q.get()}));

    // Listed again in its own environment, it takes the last place and leaves again.
    own.AddVirtualObject(a.get());
    EXPECT_EQ(own.GetVirtualObjects(), QList<KEZVisVirtualObject *>({p.get(), n.get(), q.get(), a.get()}));
    own.RemoveVirtualObject(a.get());
    EXPECT_EQ(ownSignals.removed, 2);
    EXPECT_EQ(own.GetVirtualObjects(), QList<KEZVisVirtualObject *>({p.get(), n.get(), q.get()}));
    EXPECT_EQ(other.GetVirtualObjects(), QList<KEZVisVirtualObject *>({r.get(), n.get(), r.get()}));
}

TEST(EnvironmentObjectList, RemovingFromTheOtherEnvironmentLeavesTheOwnListingWhole)
{
    KEZVisEnvironment own;
    KEZVisEnvironment other;
    SignalCounter ownSignals(&own);
    SignalCounter otherSignals(&other);
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &own));
    std::unique_ptr<KEZVisVirtualObject> p(MakeObject("p", &own));
    std::unique_ptr<KEZVisVirtualObject> r(MakeObject("r", &other));

    // Listed in the other environment first, then twice in its own.
    other.AddVirtualObject(a.get());
    other.AddVirtualObject(r.get());
    own.AddVirtualObject(a.get());
    own.AddVirtualObject(p.get());
    own.AddVirtualObject(nullptr);
    own.AddVirtualObject(a.get());

    other.RemoveVirtualObject(a.get());
    EXPECT_EQ(otherSignals.removed, 1);
    EXPECT_EQ(ownSignals.removed, 0);
    EXPECT_EQ(other.GetObjects(), QList<KEZVisObject *>({r.get()}));
    EXPECT_EQ(own.GetObjects(), QList<KEZVisObject *>({a.get(), p.get(), nullptr, a.get()}));
    EXPECT_EQ(own.GetVirtualObjects(), QList<KEZVisVirtualObject *>({a.get(), p.get(), nullptr, a.get()}));

    // A second removal from the other environment finds nothing there.
    other.RemoveVirtualObject(a.get());
    EXPECT_EQ(otherSignals.removed, 1);

    own.RemoveVirtualObject(a.get());
    EXPECT_EQ(ownSignals.removed, 1);
    EXPECT_EQ(own.GetVirtualObjects(), QList<KEZVisVirtualObject *>({p.get(), nullptr}));
    own.RemoveVirtualObject(nullptr);
    EXPECT_EQ(ownSignals.removed, 2);
    EXPECT_EQ(own.GetVirtualObjects(), QList<KEZVisVirtualObject *>({p.get()}));
    EXPECT_EQ(other.GetVirtualObjects(), QList<KEZVisVirtualObject *>({r.get()}));
}

TEST(EnvironmentObjectList, ObjectInBothEnvironmentsKeepsItsPlacesWhileTheOwnListIsSqueezed)
{
    KEZVisEnvironment own;
    KEZVisEnvironment other;
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &own));
    std::vector<std::unique_ptr<KEZVisVirtualObject>> before;
    std::vector<std::unique_ptr<KEZVisVirtualObject>> after;
    for (int i = 0; i < 100; ++i) {
        before.push_back(std::make_unique<KEZVisVirtualObject>(&own));
        after.push_back(std::make_unique<KEZVisVirtualObject>(&own));
    }
    std::unique_ptr<KEZVisVirtualObject> r(MakeObject("r", &other));

    // own: 100 objects, a, 100 objects, a.  other: a, r, a.
    for (auto &object : before)
        own.AddVirtualObject(object.get());
    own.AddVirtualObject(a.get());
    other.AddVirtualObject(a.get());
    other.AddVirtualObject(r.get());
    for (auto &object : after)
        own.AddVirtualObject(object.get());
    own.AddVirtualObject(a.get());
    other.AddVirtualObject(a.get());

    // Removing the 100 objects in front and the first two behind a, with no
    // listing in between, leaves 102 of 202 slots dead: more than half, so the
    // last removal squeezes the list and a's first place moves from 100 to 0.
    for (auto &object : before)
        own.RemoveVirtualObject(object.get());
    own.RemoveVirtualObject(after[0].get());
    own.RemoveVirtualObject(after[1].get());

    QList<KEZVisObject *> expectedOwn;
    expectedOwn.append(a.get());
    for (size_t i = 2; i < after.size(); ++i)
        expectedOwn.append(after[i].get());
    expectedOwn.append(a.get());
    ASSERT_EQ(expectedOwn.size(), 100);
    EXPECT_EQ(own.GetObjects(), expectedOwn);
    EXPECT_EQ(other.GetObjects(), QList<KEZVisObject *>({a.get(), r.get(), a.get()}));

    // a is still found in both lists after the squeeze, each time all of it.
    own.RemoveVirtualObject(a.get());
    expectedOwn.removeFirst();
    expectedOwn.removeLast();
    EXPECT_EQ(own.GetObjects(), expectedOwn);
    EXPECT_EQ(AsObjects(own.GetVirtualObjects()), expectedOwn);
    EXPECT_EQ(other.GetObjects(), QList<KEZVisObject *>({a.get(), r.get(), a.get()}));
    other.RemoveVirtualObject(a.get());
    EXPECT_EQ(other.GetVirtualObjects(), QList<KEZVisVirtualObject *>({r.get()}));
    EXPECT_EQ(AsObjects(own.GetVirtualObjects()), expectedOwn);
}

// --- A dying object listed again by a listener --------------------------------

TEST(EnvironmentObjectList, DyingObjectListedAgainByAnObjectRemovedListenerStaysListedAtTheEnd)
{
    // Declared first: the listener counts until the environment's last object is gone.
    int relisted = 0;
    int removedSignals = 0;
    KEZVisEnvironment environment;
    KEZVisEnvironment other;
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &environment));
    std::unique_ptr<KEZVisVirtualObject> c(MakeObject("c", &environment));
    std::unique_ptr<KEZVisVirtualObject> x(MakeObject("x", &other));
    KEZVisVirtualObject *b = MakeObject("b", &environment);
    // Pointer values kept for comparison only: b is never touched once dead.
    KEZVisObject *const bAsObject = b;

    std::vector<std::unique_ptr<KEZVisVirtualObject>> fillers;
    for (int i = 0; i < 70; ++i)
        fillers.push_back(std::make_unique<KEZVisVirtualObject>(&environment));

    environment.AddVirtualObject(a.get());
    environment.AddVirtualObject(b);
    environment.AddVirtualObject(a.get());
    environment.AddVirtualObject(x.get());
    for (auto &filler : fillers)
        environment.AddVirtualObject(filler.get());
    environment.AddVirtualObject(c.get());
    environment.AddVirtualObject(b);

    QObject::connect(&environment, &KEZVisEnvironment::ObjectRemoved, &environment, [&](KEZVisObject *object) {
        ++removedSignals;
        if (object == bAsObject && relisted == 0) {
            ++relisted;
            environment.AddVirtualObject(b);
        }
    });

    delete b;
    EXPECT_EQ(relisted, 1);
    EXPECT_EQ(removedSignals, 1);

    // Both earlier places are gone, the new one is at the end.
    QList<KEZVisObject *> expected({a.get(), a.get(), x.get()});
    for (auto &filler : fillers)
        expected.append(filler.get());
    expected.append(c.get());
    expected.append(bAsObject);
    EXPECT_EQ(environment.GetObjects(), expected);

    // The list goes on working around the entry: removals of the others, with
    // squeezes both inside the removals and when the list is handed out.
    for (auto &filler : fillers) {
        environment.RemoveVirtualObject(filler.get());
        expected.removeOne(filler.get());
    }
    EXPECT_EQ(removedSignals, 71);
    EXPECT_EQ(environment.GetObjects(), QList<KEZVisObject *>({a.get(), a.get(), x.get(), c.get(), bAsObject}));
    environment.RemoveVirtualObject(a.get());
    environment.RemoveVirtualObject(x.get());
    EXPECT_EQ(AsObjects(environment.GetVirtualObjects()), QList<KEZVisObject *>({c.get(), bAsObject}));
    std::unique_ptr<KEZVisVirtualObject> d(MakeObject("d", &environment));
    environment.AddVirtualObject(d.get());
    environment.RemoveVirtualObject(c.get());
    EXPECT_EQ(AsObjects(environment.GetVirtualObjects()), QList<KEZVisObject *>({bAsObject, d.get()}));
    EXPECT_EQ(environment.GetObjects(), QList<KEZVisObject *>({bAsObject, d.get()}));
    EXPECT_TRUE(other.GetVirtualObjects().isEmpty());
    // The environment is destroyed with the dead entry still listed.
}

TEST(EnvironmentObjectList, DyingObjectListedTwiceAgainAndInAnotherEnvironmentIsListedEveryTime)
{
    int otherRemovedSignals = 0;
    int handled = 0;
    auto environment = std::make_unique<KEZVisEnvironment>();
    KEZVisEnvironment other;
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", environment.get()));
    KEZVisVirtualObject *b = MakeObject("b", environment.get());
    KEZVisObject *const bAsObject = b;

    environment->AddVirtualObject(b);
    environment->AddVirtualObject(a.get());
    other.AddVirtualObject(b);

    QObject::connect(&other, &KEZVisEnvironment::ObjectRemoved, &other, [&](KEZVisObject *) { ++otherRemovedSignals; });
    QObject::connect(environment.get(), &KEZVisEnvironment::ObjectRemoved, environment.get(),
                     [&](KEZVisObject *object) {
                         // Only the report of the death; the removal below reports too.
                         if (object != bAsObject || handled++ > 0)
                             return;
                         environment->AddVirtualObject(b);
                         other.AddVirtualObject(b);
                         environment->AddVirtualObject(b);
                         // Removed again while still dying: the list finds both new places.
                         environment->RemoveVirtualObject(b);
                         environment->AddVirtualObject(b);
                         environment->AddVirtualObject(b);
                     });

    delete b;
    EXPECT_EQ(handled, 2);
    EXPECT_EQ(otherRemovedSignals, 0);
    EXPECT_EQ(environment->GetObjects(), QList<KEZVisObject *>({a.get(), bAsObject, bAsObject}));
    EXPECT_EQ(AsObjects(environment->GetVirtualObjects()), QList<KEZVisObject *>({a.get(), bAsObject, bAsObject}));
    // The other environment was never told: its first place stays, the new one follows.
    EXPECT_EQ(other.GetObjects(), QList<KEZVisObject *>({bAsObject, bAsObject}));

    environment->RemoveVirtualObject(a.get());
    EXPECT_EQ(environment->GetObjects(), QList<KEZVisObject *>({bAsObject, bAsObject}));
    // Destroyed with only the dead entries left, before the living object.
    environment.reset();
    EXPECT_EQ(other.GetObjects(), QList<KEZVisObject *>({bAsObject, bAsObject}));
}

// --- Order through long mixed runs, against a model -----------------------------

namespace {

/*
    Two environments, objects made for either of them or for none, and a model
    of each list as a std::vector. The steps pick their operation and operands
    from a fixed-seed engine; the model is kept by plain vector operations. A
    destroyed object leaves its own environment's model (and only that one: the
    other environment is never told); its remaining entries are compared by
    pointer value and never handed back to the environment.
*/
class ListModelRun
{
public:
    ListModelRun()
    {
        for (int e = 0; e < 2; ++e) {
            environments[e] = std::make_unique<KEZVisEnvironment>();
            QObject::connect(environments[e].get(), &KEZVisEnvironment::ObjectRemoved, environments[e].get(),
                             [this, e](KEZVisObject *) { ++removedSignals[e]; });
        }
    }

    ~ListModelRun()
    {
        for (KEZVisVirtualObject *object : living)
            delete object;
        for (KEZVisVirtualObject *object : keptAside)
            delete object;
    }

    std::uint32_t Next() { return std::uint32_t(engine()); }

    bool IsDeadEntry(KEZVisObject *object) const
    {
        return std::find(dead.begin(), dead.end(), object) != dead.end();
    }

    void Create()
    {
        const int owner = int(Next() % 3) - 1;
        KEZVisEnvironment *environment = owner < 0 ? nullptr : environments[owner].get();
        auto *object = new KEZVisVirtualObject(environment);
        // A new object at the address of a dead one still listed would be the
        // same entry for the list; such an address is kept aside unused.
        while (IsDeadEntry(object)) {
            keptAside.push_back(object);
            object = new KEZVisVirtualObject(environment);
        }
        living.push_back(object);
        owners.push_back(owner);
    }

    // A living object or, one time in eight, null.
    KEZVisVirtualObject *Pick()
    {
        if (living.empty() || Next() % 8 == 0)
            return nullptr;
        return living[Next() % living.size()];
    }

    void Add()
    {
        const int e = int(Next() % 2);
        KEZVisVirtualObject *object = Pick();
        environments[e]->AddVirtualObject(object);
        model[e].push_back(object);
    }

    void Remove()
    {
        const int e = int(Next() % 2);
        // Mostly an entry of the list, so that removals happen, else anything.
        KEZVisVirtualObject *object = nullptr;
        const std::vector<KEZVisObject *> &listed = model[e];
        if (!listed.empty() && Next() % 4 != 0) {
            KEZVisObject *entry = listed[Next() % listed.size()];
            if (IsDeadEntry(entry))
                return;
            object = static_cast<KEZVisVirtualObject *>(entry);
        } else {
            object = Pick();
        }
        const bool wasListed = std::find(listed.begin(), listed.end(), object) != listed.end();
        const int signalsBefore = removedSignals[e];
        environments[e]->RemoveVirtualObject(object);
        model[e].erase(std::remove(model[e].begin(), model[e].end(), object), model[e].end());
        EXPECT_EQ(removedSignals[e] - signalsBefore, wasListed ? 1 : 0);
    }

    void Destroy()
    {
        if (living.empty())
            return;
        const size_t index = Next() % living.size();
        KEZVisVirtualObject *object = living[index];
        const int owner = owners[index];
        living.erase(living.begin() + std::ptrdiff_t(index));
        owners.erase(owners.begin() + std::ptrdiff_t(index));
        const int before[2] = {removedSignals[0], removedSignals[1]};
        KEZVisObject *asObject = object;
        delete object;
        for (int e = 0; e < 2; ++e)
            EXPECT_EQ(removedSignals[e] - before[e], e == owner ? 1 : 0);
        if (owner >= 0)
            model[owner].erase(std::remove(model[owner].begin(), model[owner].end(), asObject), model[owner].end());
        const int foreign = owner == 0 ? 1 : 0;
        if (owner >= 0 ? std::find(model[foreign].begin(), model[foreign].end(), asObject) != model[foreign].end()
                       : true)
            dead.push_back(asObject);
    }

    QList<KEZVisObject *> Expected(int e) const { return QList<KEZVisObject *>(model[e].begin(), model[e].end()); }

    std::mt19937 engine{20261122u};
    std::unique_ptr<KEZVisEnvironment> environments[2];
    std::vector<KEZVisObject *> model[2];
    int removedSignals[2] = {0, 0};
    std::vector<KEZVisVirtualObject *> living;
    std::vector<int> owners;
    std::vector<KEZVisObject *> dead;  // destroyed; compared by value, never touched
    std::vector<KEZVisVirtualObject *> keptAside;
};

} // namespace

TEST(EnvironmentObjectList, OrderThroughMixedAdditionsRemovalsAndDeathsMatchesAVectorModel)
{
    ListModelRun run;
    for (int i = 0; i < 12; ++i)
        run.Create();
    for (int step = 0; step < 800; ++step) {
        const std::uint32_t kind = run.Next() % 20;
        if (kind < 9)
            run.Add();
        else if (kind < 16)
            run.Remove();
        else if (kind < 18)
            run.Destroy();
        else
            run.Create();
        // The copying listing leaves the dead slots in place; the sharing one
        // squeezes them out, so it is asked only now and then.
        for (int e = 0; e < 2; ++e) {
            ASSERT_EQ(run.environments[e]->GetObjects(), run.Expected(e)) << "step " << step << ", environment " << e;
            if (step % 97 == 96) {
                ASSERT_EQ(AsObjects(run.environments[e]->GetVirtualObjects()), run.Expected(e)) << "step " << step;
            }
        }
    }
    // Something of every kind happened.
    EXPECT_GT(run.removedSignals[0] + run.removedSignals[1], 100);
    EXPECT_FALSE(run.dead.empty());

    // Every living object and null out of both lists in one go, without a
    // listing in between: only the dead entries remain, in their order.
    for (int e = 0; e < 2; ++e) {
        run.environments[e]->RemoveVirtualObject(nullptr);
        for (KEZVisVirtualObject *object : run.living)
            run.environments[e]->RemoveVirtualObject(object);
        std::vector<KEZVisObject *> remaining;
        for (KEZVisObject *entry : run.model[e]) {
            if (run.IsDeadEntry(entry))
                remaining.push_back(entry);
        }
        EXPECT_EQ(run.environments[e]->GetObjects(), QList<KEZVisObject *>(remaining.begin(), remaining.end()));
        EXPECT_EQ(AsObjects(run.environments[e]->GetVirtualObjects()),
                  QList<KEZVisObject *>(remaining.begin(), remaining.end()));
    }
}

TEST(EnvironmentObjectList, OrderThroughLongRunsOfOwnObjectsWithDuplicatesMatchesAVectorModel)
{
    // Fewer, more often repeated objects: long lists with many duplicates, so
    // that removals leave many dead slots at once and squeeze the list.
    ListModelRun run;
    for (int i = 0; i < 6; ++i)
        run.Create();
    for (int step = 0; step < 600; ++step) {
        const std::uint32_t kind = run.Next() % 32;
        if (kind < 24)
            run.Add();
        else if (kind < 30)
            run.Remove();
        else if (kind < 31)
            run.Destroy();
        else
            run.Create();
        for (int e = 0; e < 2; ++e)
            ASSERT_EQ(run.environments[e]->GetObjects(), run.Expected(e)) << "step " << step << ", environment " << e;
    }
    for (int e = 0; e < 2; ++e)
        EXPECT_EQ(AsObjects(run.environments[e]->GetVirtualObjects()), run.Expected(e));
}

// Squeezing out dead slots happens in place while nobody else holds the list,
// and on a copy while a listing handed out earlier still shares it: the
// listing keeps what it showed.
TEST(EnvironmentObjectList, SqueezingLeavesAListingHandedOutEarlierAsItWas)
{
    KEZVisEnvironment environment;
    std::vector<std::unique_ptr<KEZVisVirtualObject>> objects;
    std::vector<KEZVisObject *> model;
    for (int i = 0; i < 400; ++i) {
        objects.emplace_back(new KEZVisVirtualObject(&environment));
        environment.AddVirtualObject(objects.back().get());
        model.push_back(objects.back().get());
    }
    const QList<KEZVisVirtualObject *> handedOut = environment.GetVirtualObjects();
    const QList<KEZVisObject *> shown = AsObjects(handedOut);

    // Three quarters go while the listing is held: the list is squeezed on a copy.
    for (int i = 0; i < 400; ++i) {
        if (i % 4 != 0)
            environment.RemoveVirtualObject(objects[size_t(i)].get());
    }
    model.erase(std::remove_if(model.begin(), model.end(),
                               [&](KEZVisObject *object) {
                                   const auto at = std::find_if(objects.begin(), objects.end(),
                                                                [object](const auto &o) { return o.get() == object; });
                                   return (at - objects.begin()) % 4 != 0;
                               }),
                model.end());
    EXPECT_EQ(AsObjects(handedOut), shown);
    EXPECT_EQ(environment.GetObjects(), QList<KEZVisObject *>(model.begin(), model.end()));

    // With no listing held, further removals squeeze in place; the places kept
    // in the objects' records still find them afterwards.
    for (size_t i = 0; i < objects.size(); i += 8)
        objects[i].reset();
    model.erase(std::remove_if(model.begin(), model.end(),
                               [&](KEZVisObject *object) {
                                   return std::none_of(objects.begin(), objects.end(),
                                                       [object](const auto &o) { return o.get() == object; });
                               }),
                model.end());
    EXPECT_EQ(environment.GetObjects(), QList<KEZVisObject *>(model.begin(), model.end()));
    for (size_t i = 4; i < objects.size(); i += 8) {
        EXPECT_TRUE(environment.GetObjects().contains(objects[i].get()));
        environment.RemoveVirtualObject(objects[i].get());
    }
    EXPECT_TRUE(environment.GetObjects().isEmpty());
    EXPECT_TRUE(environment.GetVirtualObjects().isEmpty());
}

// An object outlives the environment it was made for, and a new environment
// comes to life at the very same address. The object doesn't belong to the
// new one: it reports its death to nobody, so the new list must find it
// without its record and never touch it after it has gone (the sanitizer run
// catches a touch).
TEST(EnvironmentObjectList, ObjectOfADeadEnvironmentIsAStrangerToANewOneAtTheSameAddress)
{
    alignas(KEZVisEnvironment) unsigned char storage[sizeof(KEZVisEnvironment)];
    auto *first = new (storage) KEZVisEnvironment;
    auto *object = new KEZVisVirtualObject(first);
    first->~KEZVisEnvironment();

    auto *second = new (storage) KEZVisEnvironment;
    ASSERT_EQ(static_cast<void *>(second), static_cast<void *>(first));
    EXPECT_EQ(object->GetEnvironment(), nullptr);
    SignalCounter counter(second);

    second->AddVirtualObject(object);
    second->AddVirtualObject(object);
    EXPECT_EQ(second->GetObjects(), (QList<KEZVisObject *>{object, object}));
    second->RemoveVirtualObject(object);
    EXPECT_TRUE(second->GetObjects().isEmpty());
    EXPECT_EQ(counter.removed, 1);

    second->AddVirtualObject(object);
    KEZVisObject *const gone = object;
    delete object;
    // No report of the death: the entry stays, and is only compared from now on.
    EXPECT_EQ(counter.removed, 1);
    EXPECT_EQ(second->GetObjects(), QList<KEZVisObject *>{gone});
    second->RemoveVirtualObject(static_cast<KEZVisVirtualObject *>(nullptr));
    EXPECT_EQ(second->GetObjects(), QList<KEZVisObject *>{gone});
    second->~KEZVisEnvironment();
}
