// Tests of KEZVisClient: wiring, the replay of a populated environment, the
// change delivery through the private object, and what doesn't reach a client.

#include "SceneTestSupport.h"

#include "KEZVisClient.h"
#include "KEZVisClient_p.h"
#include "KEZVisEnvironment.h"
#include "KEZVisEnvironmentBatchContext.h"
#include "KEZVisEnvironmentBatchSelectionContext.h"
#include "KEZVisEnvironment_p.h"
#include "KEZVisMouseContext.h"
#include "KEZVisMouseEvent.h"

#include <QMetaMethod>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <memory>

using namespace SceneTest;

namespace {

QStringList OwnMethods(const QMetaObject *meta)
{
    QStringList result;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i)
        result.append(QString::fromLatin1(meta->method(i).methodSignature()));
    return result;
}

// A scene of two environments with objects, watched by one log.
struct TwoScenes
{
    TwoScenes()
    {
        first.setObjectName("first");
        second.setObjectName("second");
        a.reset(MakeObject("a", &first, &log));
        b.reset(MakeObject("b", &first, &log));
        c.reset(MakeObject("c", &second, &log));
        first.AddVirtualObject(a.get());
        first.AddVirtualObject(b.get());
        second.AddVirtualObject(c.get());
    }
    SceneLog log;
    KEZVisEnvironment first;
    KEZVisEnvironment second;
    std::unique_ptr<KEZVisVirtualObject> a;
    std::unique_ptr<KEZVisVirtualObject> b;
    std::unique_ptr<KEZVisVirtualObject> c;
};

// A recording client that hands out its private object.
class ExposingClient : public RecordingClient
{
public:
    using RecordingClient::RecordingClient;
    KEZVisClientPrivate *Private() const { return d_ptr; }
};

} // namespace

TEST(Client, ClientHasNoSignalsOrSlotsOfItsOwn)
{
    EXPECT_TRUE(OwnMethods(&KEZVisClient::staticMetaObject).isEmpty());
}

TEST(Client, PrivateObjectHasItsEightSlotsInOrderAndNoSignals)
{
    EXPECT_EQ(OwnMethods(&KEZVisClientPrivate::staticMetaObject),
              QStringList({
                  "OnObjectAdded(KEZVisObject*)",
                  "OnObjectRemoved(KEZVisObject*)",
                  "OnObjectChanged(KEZVisObject::ChangeTypes)",
                  "OnClientChangeRequested(KEZVisClientChangeRequest)",
                  "OnVisualizationSelectionChanged(QSet<KEZVisObject*>,QSet<KEZVisObject*>)",
                  "OnVisualizationPreselectionChanged(QSet<KEZVisObject*>,QSet<KEZVisObject*>)",
                  "StartBatch()",
                  "FinishBatch()",
              }));
    EXPECT_TRUE(OwnMethods(&KEZVisEnvironmentPrivate::staticMetaObject).isEmpty());
}

TEST(Client, NewClientHasNoEnvironment)
{
    SceneLog log;
    RecordingClient client(&log);
    EXPECT_EQ(client.GetEnvironment(), nullptr);
    EXPECT_EQ(client.parent(), nullptr);
    EXPECT_TRUE(log.entries.isEmpty());
}

TEST(Client, AttachingToAnEmptyEnvironmentStillBracketsOnce)
{
    SceneLog log;
    KEZVisEnvironment environment;
    environment.setObjectName("env");
    RecordingClient client(&log);
    client.SetEnvironment(&environment);
    EXPECT_EQ(client.GetEnvironment(), &environment);
    EXPECT_EQ(log.entries, QStringList({"client:BeginBatch", "client:EndBatch", "client:OnEnvironmentChanged(env)"}));
}

TEST(Client, AttachingToAPopulatedEnvironmentReplaysItsObjectsInOneBatch)
{
    TwoScenes scene;
    scene.first.AddToSelection(scene.a.get());  // selection isn't replayed
    scene.log.WatchEnvironment(&scene.first, "first");
    scene.log.Clear();
    RecordingClient client(&scene.log);
    client.SetEnvironment(&scene.first);
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "client:BeginBatch",
                                     "client:OnObjectAdded(a)",
                                     "client:OnObjectAdded(b)",
                                     "client:EndBatch",
                                     "client:OnEnvironmentChanged(first)",
                                 }));
}

TEST(Client, SettingTheSameEnvironmentAgainCallsOnlyOnEnvironmentChanged)
{
    TwoScenes scene;
    RecordingClient client(&scene.log);
    client.SetEnvironment(&scene.first);
    scene.log.Clear();
    client.SetEnvironment(&scene.first);
    EXPECT_EQ(scene.log.entries, QStringList({"client:OnEnvironmentChanged(first)"}));
    // Still wired once: one change gives one call.
    scene.log.Clear();
    scene.a->Hide();
    EXPECT_EQ(scene.log.entries,
              QStringList({"a:VisibilityChanged(false)", "a:ChangeOccurred(4)", "client:OnObjectChanged(a,4)"}));
}

TEST(Client, SettingNullOnADetachedClientCallsOnlyOnEnvironmentChanged)
{
    SceneLog log;
    RecordingClient client(&log);
    client.SetEnvironment(nullptr);
    EXPECT_EQ(log.entries, QStringList({"client:OnEnvironmentChanged(null)"}));
}

TEST(Client, DetachingRemovesEveryObjectInOneBatchThenReportsTheChange)
{
    TwoScenes scene;
    RecordingClient client(&scene.log);
    client.SetEnvironment(&scene.first);
    scene.log.Clear();
    client.SetEnvironment(nullptr);
    EXPECT_EQ(client.GetEnvironment(), nullptr);
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "client:BeginBatch",
                                     "client:OnObjectRemoved(a)",
                                     "client:OnObjectRemoved(b)",
                                     "client:EndBatch",
                                     "client:OnEnvironmentChanged(null)",
                                 }));
    // Nothing of the old environment or its objects reaches the client any more.
    scene.log.Clear();
    scene.a->SetLabel("x");
    scene.first.FitToBoundingBox(KEZMathBoundingBox());
    EXPECT_EQ(scene.log.entries, QStringList({"a:LabelChanged(x)", "a:ChangeOccurred(2)"}));
}

TEST(Client, SwitchingBetweenTwoPopulatedEnvironments)
{
    TwoScenes scene;
    scene.log.WatchEnvironment(&scene.first, "first");
    scene.log.WatchEnvironment(&scene.second, "second");
    RecordingClient client(&scene.log);
    client.SetEnvironment(&scene.first);
    scene.log.Clear();
    client.SetEnvironment(&scene.second);
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "client:BeginBatch",
                                     "client:OnObjectRemoved(a)",
                                     "client:OnObjectRemoved(b)",
                                     "client:EndBatch",
                                     "client:BeginBatch",
                                     "client:OnObjectAdded(c)",
                                     "client:EndBatch",
                                     "client:OnEnvironmentChanged(second)",
                                 }));
    scene.log.Clear();
    scene.b->Hide();
    scene.c->Hide();
    scene.first.SetSelectionEnabled(true);
    scene.second.SetSelectionEnabled(true);
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "b:VisibilityChanged(false)",
                                     "b:ChangeOccurred(4)",
                                     "c:VisibilityChanged(false)",
                                     "c:ChangeOccurred(4)",
                                     "client:OnObjectChanged(c,4)",
                                     "first:ClientChangeRequested(32)",
                                     "second:ClientChangeRequested(32)",
                                     "client:OnClientChangeRequested(32)",
                                 }));
}

TEST(Client, SetLabelReachesTheClientAfterLabelChanged)
{
    SceneLog log;
    KEZVisEnvironment environment;
    RecordingClient client(&log);
    client.SetEnvironment(&environment);
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &environment, &log));
    environment.AddVirtualObject(a.get());
    log.Clear();
    a->SetLabel("door");
    EXPECT_EQ(log.entries,
              QStringList({"a:LabelChanged(door)", "a:ChangeOccurred(2)", "client:OnObjectChanged(a,2)"}));
}

TEST(Client, ObjectsAddedAndRemovedLaterReachTheClient)
{
    SceneLog log;
    KEZVisEnvironment environment;
    log.WatchEnvironment(&environment);
    RecordingClient client(&log);
    client.SetEnvironment(&environment);
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &environment, &log));
    log.Clear();
    environment.AddVirtualObject(a.get());
    a->SetRep(new TestRep);
    environment.RemoveVirtualObject(a.get());
    EXPECT_EQ(log.entries, QStringList({
                               "env:ObjectAdded(a)",
                               "client:OnObjectAdded(a)",
                               "a:RepChanged(rep)",
                               "a:ChangeOccurred(1)",
                               "client:OnObjectChanged(a,1)",
                               "env:ObjectRemoved(a)",
                               "client:OnObjectRemoved(a)",
                           }));
}

TEST(Client, RemovedObjectThatLivesOnStillReportsItsChanges)
{
    SceneLog log;
    KEZVisEnvironment environment;
    RecordingClient client(&log);
    client.SetEnvironment(&environment);
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &environment));
    environment.AddVirtualObject(a.get());
    environment.RemoveVirtualObject(a.get());
    log.Clear();
    a->EnableSelection();
    EXPECT_EQ(log.entries, QStringList({"client:OnObjectChanged(a,16)"}));
}

TEST(Client, ObjectListedTwiceReportsEachChangeTwice)
{
    SceneLog log;
    KEZVisEnvironment environment;
    RecordingClient client(&log);
    client.SetEnvironment(&environment);
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &environment));
    environment.AddVirtualObject(a.get());
    environment.AddVirtualObject(a.get());
    log.Clear();
    a->Hide();
    EXPECT_EQ(log.entries, QStringList({"client:OnObjectChanged(a,4)", "client:OnObjectChanged(a,4)"}));
}

TEST(Client, RequestsSelectionAndPreselectionAndBatchesReachTheClient)
{
    SceneLog log;
    KEZVisEnvironment environment;
    KEZVisVirtualObject a(&environment);
    a.setObjectName("a");
    environment.AddVirtualObject(&a);
    environment.GetSelectionFilter();  // install the filter before watching
    RecordingClient client(&log);
    client.SetEnvironment(&environment);
    log.Clear();
    environment.SetViewDirection(KEZMathVector(0, 0, 1));
    environment.AddToSelection(&a);
    EXPECT_EQ(log.entries, QStringList({
                               "client:OnClientChangeRequested(2)",
                               "client:BeginBatch",
                               "client:OnObjectChanged(a,8)",
                               "client:OnVisualizationSelectionChanged({a},{})",
                               "client:EndBatch",
                           }));
    log.Clear();
    QSet<KEZVisObject *> old;
    QSet<KEZVisObject *> now{&a};
    emit environment.VisualizationPreselectionChanged(old, now);
    EXPECT_EQ(log.entries, QStringList({"client:OnVisualizationPreselectionChanged({},{a})"}));
}

TEST(Client, MouseEventsFilterChangesAndSelectionBatchesDoNotReachTheClient)
{
    SceneLog log;
    KEZVisEnvironment environment;
    RecordingClient client(&log);
    client.SetEnvironment(&environment);
    log.Clear();
    KEZVisMouseContext context;
    KEZVisMouseEvent event(KEZVisMouseEvent::MouseMoved, &context);
    emit environment.MouseEvent(event);
    emit environment.SelectionFilterChanged(nullptr);
    {
        KEZVisEnvironmentBatchSelectionContext selectionBatch(&environment);
    }
    EXPECT_TRUE(log.entries.isEmpty());
}

TEST(Client, ChangeFromASenderThatIsNoObjectIsIgnored)
{
    SceneLog log;
    KEZVisEnvironment environment;
    ExposingClient client(&log);
    client.SetEnvironment(&environment);
    log.Clear();
    QObject stranger;
    QObject::connect(&stranger, &QObject::objectNameChanged, client.Private(),
                     [&client]() { client.Private()->OnObjectChanged(KEZVisObject::LabelChange); });
    // Called without a sender, and from a connection whose sender is no object.
    client.Private()->OnObjectChanged(KEZVisObject::LabelChange);
    const bool invoked = QMetaObject::invokeMethod(client.Private(), "OnObjectChanged", Qt::DirectConnection,
                                                   Q_ARG(KEZVisObject::ChangeTypes, KEZVisObject::LabelChange));
    EXPECT_TRUE(invoked);
    stranger.setObjectName("stranger");
    EXPECT_TRUE(log.entries.isEmpty());
}

TEST(Client, PrivateObjectReceivesTheConnections)
{
    SceneLog log;
    KEZVisEnvironment environment;
    ExposingClient client(&log);
    client.SetEnvironment(&environment);
    EXPECT_EQ(client.Private()->parent(), nullptr);
    QObject *receiver = client.Private();
    // disconnect() answers whether there was a connection to take away.
    EXPECT_FALSE(QObject::disconnect(&environment, &KEZVisEnvironment::MouseEvent, receiver, nullptr));
    EXPECT_FALSE(QObject::disconnect(&environment, &KEZVisEnvironment::SelectionFilterChanged, receiver, nullptr));
    EXPECT_FALSE(QObject::disconnect(&environment, &KEZVisEnvironment::BatchSelectionStarted, receiver, nullptr));
    EXPECT_FALSE(QObject::disconnect(&environment, &KEZVisEnvironment::BatchSelectionFinished, receiver, nullptr));
    EXPECT_TRUE(QObject::disconnect(&environment, &KEZVisEnvironment::ObjectAdded, receiver, nullptr));
    EXPECT_TRUE(QObject::disconnect(&environment, &KEZVisEnvironment::ObjectRemoved, receiver, nullptr));
    EXPECT_TRUE(QObject::disconnect(&environment, &KEZVisEnvironment::BatchStarted, receiver, nullptr));
    EXPECT_TRUE(QObject::disconnect(&environment, &KEZVisEnvironment::BatchFinished, receiver, nullptr));
    EXPECT_TRUE(QObject::disconnect(&environment, &KEZVisEnvironment::ClientChangeRequested, receiver, nullptr));
    EXPECT_TRUE(
        QObject::disconnect(&environment, &KEZVisEnvironment::VisualizationPreselectionChanged, receiver, nullptr));
    EXPECT_TRUE(
        QObject::disconnect(&environment, &KEZVisEnvironment::VisualizationSelectionChanged, receiver, nullptr));
    EXPECT_FALSE(QObject::disconnect(&environment, nullptr, receiver, nullptr));  // nothing else was there
}

TEST(Client, EnvironmentThatDiesLeavesTheClientDetachedWithoutCalls)
{
    SceneLog log;
    auto environment = std::make_unique<KEZVisEnvironment>();
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", environment.get()));
    environment->AddVirtualObject(a.get());
    RecordingClient client(&log);
    client.SetEnvironment(environment.get());
    log.Clear();
    environment.reset();
    EXPECT_EQ(client.GetEnvironment(), nullptr);
    EXPECT_TRUE(log.entries.isEmpty());
    // Detaching afterwards finds no environment: only the report of the change.
    client.SetEnvironment(nullptr);
    EXPECT_EQ(log.entries, QStringList({"client:OnEnvironmentChanged(null)"}));
}

TEST(Client, SetEnvironmentInsideABatchNestsTheReplayBracket)
{
    SceneLog log;
    KEZVisEnvironment environment;
    environment.setObjectName("env");
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &environment));
    environment.AddVirtualObject(a.get());
    RecordingClient client(&log);
    {
        KEZVisEnvironmentBatchContext batch(&environment);
        client.SetEnvironment(&environment);
    }
    EXPECT_EQ(log.entries, QStringList({
                               "client:BeginBatch",
                               "client:OnObjectAdded(a)",
                               "client:EndBatch",
                               "client:OnEnvironmentChanged(env)",
                               "client:EndBatch",
                           }));
}

TEST(Client, NeedRedrawWhenVisibleConstantHoldsItsText)
{
    EXPECT_EQ(KEZVisNeedRedrawWhenVisible, QByteArray("NeedRedrawWhenVisible"));
}
