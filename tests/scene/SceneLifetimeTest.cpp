// Tests of the orders in which environment, objects and clients may die: no
// crash, no call into a dead object (run under the sanitizers), and exactly
// the reports that the surviving parts owe.

#include "SceneTestSupport.h"

#include "KEZVisEnvironment.h"
#include "KEZVisVirtualObject.h"

#include "KEZMathAxis.h"
#include "KEZMathPoint.h"

#include <QPointer>

#include <gtest/gtest.h>

#include <memory>

using namespace SceneTest;

namespace {

// A populated scene on the heap, so that a test decides who dies first.
struct HeapScene
{
    HeapScene()
    {
        environment = new KEZVisEnvironment;
        environment->setObjectName("env");
        log.WatchEnvironment(environment);
        a = MakeObject("a", environment, &log);
        b = MakeObject("b", environment, &log);
        a->SetRep(new TestRep(Box(0, 0, 0, 1, 1, 1)));
        environment->AddVirtualObject(a);
        environment->AddVirtualObject(b);
        client = new RecordingClient(&log);
        client->SetEnvironment(environment);
        environment->AddToSelection(a);
        environment->AddToSelection(b);
        log.Clear();
    }
    SceneLog log;
    KEZVisEnvironment *environment = nullptr;
    KEZVisVirtualObject *a = nullptr;
    KEZVisVirtualObject *b = nullptr;
    RecordingClient *client = nullptr;
};

} // namespace

TEST(SceneLifetime, EnvironmentFirstThenObjectsThenClient)
{
    HeapScene scene;
    delete scene.environment;
    EXPECT_TRUE(scene.log.entries.isEmpty());  // neither objects nor clients are told
    EXPECT_EQ(scene.a->GetEnvironment(), nullptr);
    EXPECT_EQ(scene.client->GetEnvironment(), nullptr);
    EXPECT_EQ(scene.a->GetSelectionState(), KEZVisObject::Selected);
    scene.a->Hide();  // still reaches the client, which stays connected to the object
    delete scene.a;
    delete scene.b;
    delete scene.client;
    EXPECT_EQ(scene.log.entries,
              QStringList({"a:VisibilityChanged(false)", "a:ChangeOccurred(4)", "client:OnObjectChanged(a,4)"}));
}

TEST(SceneLifetime, ObjectsFirstThenEnvironmentThenClient)
{
    HeapScene scene;
    delete scene.a;
    delete scene.b;
    EXPECT_EQ(scene.log.entries, QStringList({"env:ObjectRemoved(a)", "client:OnObjectRemoved(a)",
                                              "env:ObjectRemoved(b)", "client:OnObjectRemoved(b)"}));
    EXPECT_TRUE(scene.environment->GetVirtualObjects().isEmpty());
    EXPECT_TRUE(scene.environment->GetVisualizationSelection().isEmpty());
    scene.log.Clear();
    delete scene.environment;
    delete scene.client;
    EXPECT_TRUE(scene.log.entries.isEmpty());
}

TEST(SceneLifetime, ObjectsInReverseOrderThenClientThenEnvironment)
{
    HeapScene scene;
    delete scene.b;
    delete scene.a;
    delete scene.client;
    EXPECT_EQ(scene.log.entries, QStringList({"env:ObjectRemoved(b)", "client:OnObjectRemoved(b)",
                                              "env:ObjectRemoved(a)", "client:OnObjectRemoved(a)"}));
    delete scene.environment;
}

TEST(SceneLifetime, ClientFirstThenObjectsThenEnvironment)
{
    HeapScene scene;
    delete scene.client;
    EXPECT_TRUE(scene.log.entries.isEmpty());  // the environment isn't told
    scene.a->SetLabel("x");
    scene.environment->RemoveFromSelection(scene.a);
    delete scene.a;
    delete scene.b;
    delete scene.environment;
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "a:LabelChanged(x)",
                                     "a:ChangeOccurred(2)",
                                     "env:BatchStarted",
                                     "a:SelectionStateChanged(NotSelected)",
                                     "a:ChangeOccurred(8)",
                                     "env:VisualizationSelectionChanged({},{a})",
                                     "env:BatchFinished",
                                     "env:ObjectRemoved(a)",
                                     "env:ObjectRemoved(b)",
                                 }));
}

TEST(SceneLifetime, ClientFirstThenEnvironmentThenObjects)
{
    HeapScene scene;
    delete scene.client;
    delete scene.environment;
    delete scene.b;
    delete scene.a;
    EXPECT_TRUE(scene.log.entries.isEmpty());
}

TEST(SceneLifetime, ClientThatDeletesAnObjectWhileDetachingStopsNothingElse)
{
    HeapScene scene;
    // While the client takes leave of the environment it deletes b: the
    // environment reports b's death at once, inside the leave-taking.
    scene.client->onObjectRemovedHook = [&scene](KEZVisObject *object) {
        if (object == scene.a) {
            delete scene.b;
            scene.b = nullptr;
        }
    };
    scene.client->SetEnvironment(nullptr);
    scene.client->onObjectRemovedHook = nullptr;
    EXPECT_EQ(scene.log.entries.first(), "client:BeginBatch");
    EXPECT_TRUE(scene.log.entries.contains("env:ObjectRemoved(b)"));
    EXPECT_EQ(scene.log.entries.last(), "client:OnEnvironmentChanged(null)");
    delete scene.a;
    delete scene.environment;
    delete scene.client;
}

TEST(SceneLifetime, ClientDeletedByItsOwnHandlerDuringTheReplayMakesNoFurtherCalls)
{
    SceneLog log;
    KEZVisEnvironment environment;
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &environment));
    environment.AddVirtualObject(a.get());
    auto *client = new RecordingClient(&log);
    client->SetEnvironment(&environment);
    log.Clear();
    QPointer<RecordingClient> watch(client);
    client->onObjectRemovedHook = [client](KEZVisObject *) { delete client; };
    client->SetEnvironment(nullptr);
    EXPECT_TRUE(watch.isNull());
    EXPECT_EQ(log.entries, QStringList({"client:BeginBatch", "client:OnObjectRemoved(a)"}));
    // The environment holds no connection to the dead client any more.
    a->Hide();
    environment.SetSelectionEnabled(true);
    EXPECT_EQ(log.entries.size(), 2);
}

TEST(SceneLifetime, EnvironmentDestroyedDuringAnOpenSelectionTransactionClosesItsBatch)
{
    SceneLog log;
    auto *environment = new OpenEnvironment;
    log.WatchEnvironment(environment);
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", environment));
    environment->BeginSelection();
    environment->AddSelectedVisualization(a.get());
    delete environment;
    EXPECT_EQ(log.entries, QStringList({"env:BatchStarted", "env:BatchFinished"}));
    EXPECT_EQ(a->GetSelectionState(), KEZVisObject::NotSelected);
}

TEST(SceneLifetime, ObjectDeletedByABatchFinishedListenerOfADyingEnvironmentReportsNothing)
{
    SceneLog log;
    auto *environment = new OpenEnvironment;
    auto *a = MakeObject("a", environment);
    environment->AddVirtualObject(a);
    log.WatchEnvironment(environment);
    environment->BeginSelection();
    QObject::connect(environment, &KEZVisEnvironment::BatchFinished, environment, [&a]() {
        delete a;
        a = nullptr;
    });
    delete environment;
    EXPECT_EQ(a, nullptr);
    // The object died while the environment still held its state, so it was reported.
    EXPECT_EQ(log.entries, QStringList({"env:BatchStarted", "env:BatchFinished", "env:ObjectRemoved(a)"}));
}

TEST(SceneLifetime, ListenerThatDestroysTheNextObjectDuringRemoveAllVirtualObjects)
{
    SceneLog log;
    KEZVisEnvironment environment;
    auto *a = MakeObject("a", &environment);
    auto *b = MakeObject("b", &environment);
    auto *c = MakeObject("c", &environment);
    environment.AddVirtualObject(a);
    environment.AddVirtualObject(b);
    environment.AddVirtualObject(c);
    log.WatchEnvironment(&environment);
    QObject::connect(&environment, &KEZVisEnvironment::ObjectRemoved, &environment, [&b](KEZVisObject *object) {
        if (object->objectName() == QLatin1String("a")) {
            delete b;  // listed after a: the removal's own copy of the list still names it
            b = nullptr;
        }
    });
    environment.RemoveAllVirtualObjects();
    EXPECT_EQ(log.entries, QStringList({"env:ObjectRemoved(a)", "env:ObjectRemoved(b)", "env:ObjectRemoved(c)"}));
    EXPECT_TRUE(environment.GetVirtualObjects().isEmpty());
    delete a;
    delete c;
}

TEST(SceneLifetime, ObjectDeletedByItsOwnSelectionStateListenerReportsNoChangeAfterIt)
{
    SceneLog log;
    OpenEnvironment environment;
    log.WatchEnvironment(&environment);
    QPointer<KEZVisVirtualObject> a = MakeObject("a", &environment, &log);
    const std::unique_ptr<KEZVisVirtualObject> b(MakeObject("b", &environment, &log));
    environment.AddVirtualObject(a);
    environment.AddVirtualObject(b.get());
    QObject::connect(a, &KEZVisObject::SelectionStateChanged, &environment, [&a] { delete a.data(); });
    log.Clear();
    environment.BeginSelection();
    environment.AddSelectedVisualization(a);
    environment.AddSelectedVisualization(b.get());
    environment.EndSelection();
    EXPECT_TRUE(a.isNull());
    EXPECT_FALSE(log.entries.contains("a:ChangeOccurred(8)"));
    EXPECT_TRUE(log.entries.contains("a:SelectionStateChanged(Selected)"));
    EXPECT_TRUE(log.entries.contains("env:ObjectRemoved(a)"));
    EXPECT_TRUE(log.entries.contains("b:ChangeOccurred(8)"));
    EXPECT_EQ(environment.GetVisualizationSelection(), QSet<KEZVisObject *>({b.get()}));
    // The environment goes on as usual.
    environment.BeginSelection();
    environment.RemoveSelectedVisualization(b.get());
    environment.EndSelection();
    EXPECT_TRUE(environment.GetVisualizationSelection().isEmpty());
    EXPECT_EQ(b->GetSelectionState(), KEZVisObject::NotSelected);
}

TEST(SceneLifetime, ObjectDeletedByItsOwnListenerWhenDeselectedReportsNoChangeAfterIt)
{
    SceneLog log;
    OpenEnvironment environment;
    log.WatchEnvironment(&environment);
    QPointer<KEZVisVirtualObject> a = MakeObject("a", &environment, &log);
    environment.AddVirtualObject(a);
    environment.BeginSelection();
    environment.AddSelectedVisualization(a);
    environment.EndSelection();
    QObject::connect(a, &KEZVisObject::SelectionStateChanged, &environment, [&a] { delete a.data(); });
    log.Clear();
    environment.BeginSelection();
    environment.RemoveSelectedVisualization(a);
    environment.EndSelection();
    EXPECT_TRUE(a.isNull());
    EXPECT_EQ(log.entries.filter("a:").filter("ChangeOccurred"), QStringList());
    EXPECT_TRUE(log.entries.contains("a:SelectionStateChanged(NotSelected)"));
    EXPECT_TRUE(environment.GetVisualizationSelection().isEmpty());
}

TEST(SceneLifetime, ObjectDeletedByAnotherObjectsListenerDuringPreselectionIsLeftOut)
{
    SceneLog log;
    OpenEnvironment environment;
    QPointer<KEZVisVirtualObject> a = MakeObject("a", &environment, &log);
    QPointer<KEZVisVirtualObject> b = MakeObject("b", &environment, &log);
    environment.AddVirtualObject(a);
    environment.AddVirtualObject(b);
    // Whichever object is preselected first deletes the other one.
    QObject::connect(a, &KEZVisObject::SelectionStateChanged, &environment, [&b] { delete b.data(); });
    QObject::connect(b, &KEZVisObject::SelectionStateChanged, &environment, [&a] { delete a.data(); });
    QList<QSet<KEZVisObject *>> reported;
    QObject::connect(&environment, &KEZVisEnvironment::VisualizationPreselectionChanged, &environment,
                     [&reported](const QSet<KEZVisObject *> &, const QSet<KEZVisObject *> &now) { reported.append(now); });
    environment.SetPreselectedVisualization({a.data(), b.data()});
    ASSERT_NE(a.isNull(), b.isNull());
    KEZVisObject *survivor = a.isNull() ? static_cast<KEZVisObject *>(b.data()) : a.data();
    EXPECT_EQ(survivor->GetSelectionState(), KEZVisObject::PreSelected);
    EXPECT_EQ(environment.GetPreSelectedObjects(), QSet<KEZVisObject *>({survivor}));
    EXPECT_EQ(reported, QList<QSet<KEZVisObject *>>({QSet<KEZVisObject *>({survivor})}));
    environment.SetPreselectedVisualization({});
    EXPECT_EQ(survivor->GetSelectionState(), KEZVisObject::NotSelected);
    delete survivor;
}

namespace {

// Makes an object a in an environment, lets a listener of `signal` delete it, makes the change, and
// answers what the log saw from the change on.
template <typename Signal, typename Change>
QStringList LogOfChangeThatDeletesTheObject(Signal signal, Change change)
{
    SceneLog log;
    KEZVisEnvironment environment;
    log.WatchEnvironment(&environment);
    QPointer<KEZVisVirtualObject> a = MakeObject("a", &environment, &log);
    environment.AddVirtualObject(a);
    QObject::connect(a, signal, &environment, [&a] { delete a.data(); });
    log.Clear();
    change(a.data());
    EXPECT_TRUE(a.isNull());
    EXPECT_TRUE(environment.GetVirtualObjects().isEmpty());
    return log.entries;
}

} // namespace

TEST(SceneLifetime, ObjectDeletedByTheListenerOfItsSpecificSignalReportsNoChangeAfterIt)
{
    const QString removed = QStringLiteral("env:ObjectRemoved(a)");
    EXPECT_EQ(LogOfChangeThatDeletesTheObject(&KEZVisObject::VisibilityChanged,
                                              [](KEZVisVirtualObject *a) { a->Hide(); }),
              QStringList({"a:VisibilityChanged(false)", removed}));
    EXPECT_EQ(LogOfChangeThatDeletesTheObject(&KEZVisObject::SelectabilityChanged,
                                              [](KEZVisVirtualObject *a) { a->EnableSelection(); }),
              QStringList({"a:SelectabilityChanged(true)", removed}));
    EXPECT_EQ(LogOfChangeThatDeletesTheObject(&KEZVisObject::LabelChanged,
                                              [](KEZVisVirtualObject *a) { a->SetLabel("x"); }),
              QStringList({"a:LabelChanged(x)", removed}));
    EXPECT_EQ(LogOfChangeThatDeletesTheObject(&KEZVisObject::PositionChanged,
                                              [](KEZVisVirtualObject *a) {
                                                  KEZMathAxis moved;
                                                  moved.SetOrigin(KEZMathPoint(1, 2, 3));
                                                  a->SetPosition(&moved);
                                              }),
              QStringList({"a:PositionChanged", removed}));
    EXPECT_EQ(LogOfChangeThatDeletesTheObject(&KEZVisObject::RepChanged,
                                              [](KEZVisVirtualObject *a) {
                                                  a->SetRep(new TestRep(Box(0, 0, 0, 1, 1, 1)));
                                              }),
              QStringList({"a:RepChanged(rep)", removed}));
}
