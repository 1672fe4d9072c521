// Tests of KEZVisEnvironment: the registry, the two removal paths, view and
// mouse requests, and the meta-object.

#include "SceneTestSupport.h"

#include "KEZVisClientChangeRequest.h"
#include "KEZVisEnvironment.h"
#include "KEZVisEnvironment_p.h"
#include "KEZVisVirtualObject.h"

#include "KEZMathPlane.h"
#include "KEZMathVector.h"
#include "KEZMathZeroMagnitudeVectorException.h"

#include <QMetaMethod>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <memory>

using namespace SceneTest;

namespace {

// The requests that an environment sends, kept as copies.
struct RequestRecorder
{
    explicit RequestRecorder(KEZVisEnvironment *environment)
    {
        QObject::connect(environment, &KEZVisEnvironment::ClientChangeRequested, environment,
                         [this](const KEZVisClientChangeRequest &r) { requests.append(r); });
    }
    QList<KEZVisClientChangeRequest> requests;
};

} // namespace

TEST(Environment, SignalsStandInTheirOrderWithTheirArgumentNames)
{
    const QMetaObject *meta = &KEZVisEnvironment::staticMetaObject;
    QStringList signatures;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        if (method.methodType() != QMetaMethod::Signal)
            continue;
        QStringList names;
        for (const QByteArray &name : method.parameterNames())
            names.append(QString::fromLatin1(name));
        signatures.append(QString::fromLatin1(method.name()) + '(' + names.join(',') + ')');
    }
    EXPECT_EQ(signatures, QStringList({
                              "ObjectAdded(object)",
                              "ObjectRemoved(object)",
                              "VisualizationSelectionChanged(selected,deselected)",
                              "VisualizationPreselectionChanged(oldSelection,newSelection)",
                              "SelectionFilterChanged(filter)",
                              "ClientChangeRequested(request)",
                              "MouseEvent(mouseEvent)",
                              "BatchStarted()",
                              "BatchFinished()",
                              "BatchSelectionStarted()",
                              "BatchSelectionFinished()",
                          }));
}

TEST(Environment, NewEnvironmentIsEmptyWithInitialSettings)
{
    KEZVisEnvironment environment;
    EXPECT_TRUE(environment.GetVirtualObjects().isEmpty());
    EXPECT_TRUE(environment.GetObjects().isEmpty());
    EXPECT_FALSE(environment.IsBatch());
    EXPECT_FALSE(environment.IsBatchSelection());
    EXPECT_FALSE(environment.IsSelectionEnabled());
    EXPECT_EQ(int(environment.GetMouseInteraction()), 0);
    EXPECT_EQ(int(environment.GetMouseSnapGeometryTypes()), 0);
    EXPECT_EQ(int(environment.GetNativeGeometrySelectionType()), 0);
    EXPECT_TRUE(environment.GetVisualizationSelection().isEmpty());
    EXPECT_TRUE(environment.GetPreSelectedObjects().isEmpty());
}

TEST(Environment, AddVirtualObjectAppendsAndEmitsObjectAdded)
{
    SceneLog log;
    KEZVisEnvironment environment;
    log.WatchEnvironment(&environment);
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &environment));
    std::unique_ptr<KEZVisVirtualObject> b(MakeObject("b", &environment));
    QSignalSpy addedSpy(&environment, &KEZVisEnvironment::ObjectAdded);
    environment.AddVirtualObject(a.get());
    environment.AddVirtualObject(b.get());
    EXPECT_EQ(environment.GetVirtualObjects(), QList<KEZVisVirtualObject *>({a.get(), b.get()}));
    EXPECT_EQ(environment.GetObjects(), QList<KEZVisObject *>({a.get(), b.get()}));
    ASSERT_EQ(addedSpy.count(), 2);
    EXPECT_EQ(addedSpy.at(0).at(0).value<KEZVisObject *>(), a.get());
    EXPECT_EQ(log.entries, QStringList({"env:ObjectAdded(a)", "env:ObjectAdded(b)"}));
}

TEST(Environment, AddingTwiceListsTwiceAndRemovingRemovesBothWithOneSignal)
{
    SceneLog log;
    KEZVisEnvironment environment;
    log.WatchEnvironment(&environment);
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &environment));
    std::unique_ptr<KEZVisVirtualObject> b(MakeObject("b", &environment));
    environment.AddVirtualObject(a.get());
    environment.AddVirtualObject(b.get());
    environment.AddVirtualObject(a.get());
    EXPECT_EQ(environment.GetVirtualObjects(), QList<KEZVisVirtualObject *>({a.get(), b.get(), a.get()}));
    QSignalSpy removedSpy(&environment, &KEZVisEnvironment::ObjectRemoved);
    environment.RemoveVirtualObject(a.get());
    EXPECT_EQ(environment.GetVirtualObjects(), QList<KEZVisVirtualObject *>({b.get()}));
    EXPECT_EQ(removedSpy.count(), 1);
    EXPECT_EQ(log.entries, QStringList({"env:ObjectAdded(a)", "env:ObjectAdded(b)", "env:ObjectAdded(a)",
                                        "env:ObjectRemoved(a)"}));
}

TEST(Environment, RemovingAnObjectThatIsNotListedEmitsNothing)
{
    KEZVisEnvironment environment;
    KEZVisVirtualObject object(&environment);
    QSignalSpy removedSpy(&environment, &KEZVisEnvironment::ObjectRemoved);
    environment.RemoveVirtualObject(&object);
    environment.RemoveVirtualObject(nullptr);
    EXPECT_EQ(removedSpy.count(), 0);
}

TEST(Environment, RemovedObjectIsNotDeleted)
{
    KEZVisEnvironment environment;
    auto object = std::make_unique<KEZVisVirtualObject>(&environment);
    QPointer<KEZVisVirtualObject> watch(object.get());
    environment.AddVirtualObject(object.get());
    environment.RemoveVirtualObject(object.get());
    EXPECT_FALSE(watch.isNull());
}

TEST(Environment, RemoveVirtualObjectKeepsTheListOrderOfTheOthers)
{
    KEZVisEnvironment environment;
    std::vector<std::unique_ptr<KEZVisVirtualObject>> objects;
    QList<KEZVisVirtualObject *> expected;
    for (int i = 0; i < 300; ++i) {
        objects.push_back(std::make_unique<KEZVisVirtualObject>(&environment));
        environment.AddVirtualObject(objects.back().get());
    }
    // Remove every third object, enough to make the list squeeze out its gaps.
    for (int i = 0; i < 300; ++i) {
        if (i % 3 != 1)
            expected.append(objects[size_t(i)].get());
    }
    for (int i = 1; i < 300; i += 3)
        environment.RemoveVirtualObject(objects[size_t(i)].get());
    EXPECT_EQ(environment.GetVirtualObjects(), expected);
    // Then from both ends, with further additions between.
    auto extra = std::make_unique<KEZVisVirtualObject>(&environment);
    environment.AddVirtualObject(extra.get());
    expected.append(extra.get());
    for (int i = 0; i < 150; ++i) {
        environment.RemoveVirtualObject(expected.first());
        expected.removeFirst();
    }
    EXPECT_EQ(environment.GetVirtualObjects(), expected);
    QList<KEZVisObject *> asObjects(expected.cbegin(), expected.cend());
    EXPECT_EQ(environment.GetObjects(), asObjects);
}

TEST(Environment, DuplicatesKeepTheirPlacesThroughManyRemovals)
{
    KEZVisEnvironment environment;
    std::vector<std::unique_ptr<KEZVisVirtualObject>> objects;
    for (int i = 0; i < 200; ++i)
        objects.push_back(std::make_unique<KEZVisVirtualObject>(&environment));
    QList<KEZVisVirtualObject *> expected;
    for (int i = 0; i < 200; ++i) {
        environment.AddVirtualObject(objects[size_t(i)].get());
        expected.append(objects[size_t(i)].get());
        if (i % 10 == 0) {  // every tenth object a second time, right behind an odd one
            environment.AddVirtualObject(objects[size_t(199 - i)].get());
            expected.append(objects[size_t(199 - i)].get());
        }
    }
    // Remove the odd objects: every duplicate goes with both of its places.
    for (int i = 1; i < 200; i += 2) {
        environment.RemoveVirtualObject(objects[size_t(i)].get());
        expected.removeAll(objects[size_t(i)].get());
    }
    EXPECT_EQ(environment.GetVirtualObjects(), expected);
    // And the remaining ones from the back, again through many squeezes.
    while (expected.size() > 3) {
        KEZVisVirtualObject *last = expected.last();
        environment.RemoveVirtualObject(last);
        expected.removeAll(last);
    }
    EXPECT_EQ(environment.GetVirtualObjects(), expected);
}

TEST(Environment, RemoveAllVirtualObjectsRemovesInListOrderAndSkipsTheSecondTurnOfADuplicate)
{
    SceneLog log;
    KEZVisEnvironment environment;
    log.WatchEnvironment(&environment);
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &environment));
    std::unique_ptr<KEZVisVirtualObject> b(MakeObject("b", &environment));
    environment.AddVirtualObject(a.get());
    environment.AddVirtualObject(b.get());
    environment.AddVirtualObject(a.get());
    log.Clear();
    environment.RemoveAllVirtualObjects();
    EXPECT_TRUE(environment.GetVirtualObjects().isEmpty());
    EXPECT_EQ(log.entries, QStringList({"env:ObjectRemoved(a)", "env:ObjectRemoved(b)"}));
}

TEST(Environment, NullObjectIsListedLikeAnyOther)
{
    KEZVisEnvironment environment;
    QSignalSpy addedSpy(&environment, &KEZVisEnvironment::ObjectAdded);
    QSignalSpy removedSpy(&environment, &KEZVisEnvironment::ObjectRemoved);
    environment.AddVirtualObject(nullptr);
    EXPECT_EQ(environment.GetVirtualObjects(), QList<KEZVisVirtualObject *>({nullptr}));
    EXPECT_EQ(addedSpy.count(), 1);
    environment.RemoveVirtualObject(nullptr);
    EXPECT_TRUE(environment.GetVirtualObjects().isEmpty());
    EXPECT_EQ(removedSpy.count(), 1);
}

TEST(Environment, DestroyingANeverAddedObjectWithALivingEnvironmentEmitsObjectRemoved)
{
    SceneLog log;
    KEZVisEnvironment environment;
    log.WatchEnvironment(&environment);
    QSignalSpy removedSpy(&environment, &KEZVisEnvironment::ObjectRemoved);
    delete MakeObject("a", &environment);
    EXPECT_EQ(removedSpy.count(), 1);
    EXPECT_EQ(log.entries, QStringList({"env:ObjectRemoved(a)"}));
}

TEST(Environment, ObjectReportsItsDeathToTheEnvironmentOfItsConstructor)
{
    SceneLog log;
    KEZVisEnvironment first;
    first.setObjectName("first");
    KEZVisEnvironment second;
    log.WatchEnvironment(&first, "first");
    log.WatchEnvironment(&second, "second");
    auto *object = MakeObject("a", &first);
    second.AddVirtualObject(object);
    second.RemoveVirtualObject(object);
    delete object;
    EXPECT_EQ(log.entries, QStringList({"second:ObjectAdded(a)", "second:ObjectRemoved(a)", "first:ObjectRemoved(a)"}));
}

TEST(Environment, DyingObjectLeavesTheListAndEverySetWithoutSelectionSignal)
{
    SceneLog log;
    KEZVisEnvironment environment;
    auto *a = MakeObject("a", &environment);
    auto *b = MakeObject("b", &environment);
    environment.AddVirtualObject(a);
    environment.AddVirtualObject(b);
    environment.AddVirtualObject(a);
    environment.AddToSelection(a);
    environment.AddToSelection(b);
    log.WatchEnvironment(&environment);
    delete a;
    EXPECT_EQ(environment.GetVirtualObjects(), QList<KEZVisVirtualObject *>({b}));
    EXPECT_EQ(environment.GetVisualizationSelection(), QSet<KEZVisObject *>({b}));
    EXPECT_EQ(log.entries, QStringList({"env:ObjectRemoved(a)"}));
    delete b;
}

TEST(Environment, RemovingASelectedObjectKeepsItsStateAndSendsNoSelectionSignal)
{
    SceneLog log;
    KEZVisEnvironment environment;
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &environment, &log));
    environment.AddVirtualObject(a.get());
    environment.AddToSelection(a.get());
    log.WatchEnvironment(&environment);
    log.Clear();
    QSignalSpy selectionSpy(&environment, &KEZVisEnvironment::VisualizationSelectionChanged);
    environment.RemoveVirtualObject(a.get());
    EXPECT_FALSE(environment.GetVisualizationSelection().contains(a.get()));
    EXPECT_EQ(a->GetSelectionState(), KEZVisObject::Selected);
    EXPECT_EQ(selectionSpy.count(), 0);
    EXPECT_EQ(log.entries, QStringList({"env:ObjectRemoved(a)"}));
}

TEST(Environment, RemovingAPreselectedObjectKeepsItInThePreselectionAndThePendingSets)
{
    SceneLog log;
    OpenEnvironment environment;
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &environment));
    environment.AddVirtualObject(a.get());
    environment.SetPreselectedVisualization({a.get()});
    environment.AddSelectedVisualization(a.get());
    log.WatchEnvironment(&environment);
    environment.RemoveVirtualObject(a.get());
    EXPECT_EQ(environment.GetPreSelectedObjects(), QSet<KEZVisObject *>({a.get()}));
    EXPECT_EQ(a->GetSelectionState(), KEZVisObject::PreSelected);
    // The pending addition is still there and is committed by the next EndSelection.
    environment.EndSelection();
    EXPECT_EQ(environment.GetVisualizationSelection(), QSet<KEZVisObject *>({a.get()}));
    EXPECT_EQ(log.entries, QStringList({"env:ObjectRemoved(a)", "env:VisualizationSelectionChanged({a},{})"}));
}

TEST(Environment, RemoveVirtualObjectDisconnectsTheObjectFromThePrivateObject)
{
    KEZVisEnvironment environment;
    KEZVisVirtualObject object(&environment);
    environment.AddVirtualObject(&object);
    QObject *privateObject = environment.d_func();
    ASSERT_NE(privateObject, nullptr);
    int calls = 0;
    QObject::connect(&object, &KEZVisObject::ChangeOccurred, privateObject, [&calls]() { ++calls; });
    object.Hide();
    EXPECT_EQ(calls, 1);
    environment.RemoveVirtualObject(&object);
    object.Show();
    EXPECT_EQ(calls, 1);
}

TEST(Environment, GetVirtualObjectsSharesTheList)
{
    KEZVisEnvironment environment;
    KEZVisVirtualObject object(&environment);
    environment.AddVirtualObject(&object);
    const QList<KEZVisVirtualObject *> first = environment.GetVirtualObjects();
    const QList<KEZVisVirtualObject *> second = environment.GetVirtualObjects();
    EXPECT_EQ(first.constData(), second.constData());
}

TEST(Environment, FitToBoundingBoxSendsOneFitRequest)
{
    KEZVisEnvironment environment;
    RequestRecorder recorder(&environment);
    environment.FitToBoundingBox(Box(0, 0, 0, 2, 2, 2));
    ASSERT_EQ(recorder.requests.size(), 1);
    EXPECT_EQ(int(recorder.requests.first().GetChangeTypes()), 1);
    EXPECT_TRUE(recorder.requests.first().GetFitBox() == Box(0, 0, 0, 2, 2, 2));
}

TEST(Environment, FitToObjectsSkipsAPointBoxButFitToObjectAcceptsIt)
{
    KEZVisEnvironment environment;
    RequestRecorder recorder(&environment);
    KEZVisVirtualObject object(&environment);
    object.SetRep(new TestRep(KEZMathBoundingBox(KEZMathPoint(1, 2, 3))));
    environment.FitToObjects({&object});
    EXPECT_TRUE(recorder.requests.isEmpty());
    environment.FitToObject(&object);
    ASSERT_EQ(recorder.requests.size(), 1);
    EXPECT_TRUE(recorder.requests.first().GetFitBox() == KEZMathBoundingBox(KEZMathPoint(1, 2, 3)));
}

TEST(Environment, FitToObjectSkipsNullObjectsWithoutRepAndInvisibleObjects)
{
    KEZVisEnvironment environment;
    RequestRecorder recorder(&environment);
    KEZVisVirtualObject withoutRep(&environment);
    KEZVisVirtualObject hidden(&environment);
    hidden.SetRep(new TestRep(Box(0, 0, 0, 1, 1, 1)));
    hidden.Hide();
    environment.FitToObject(nullptr);
    environment.FitToObject(&withoutRep);
    environment.FitToObject(&hidden);
    EXPECT_TRUE(recorder.requests.isEmpty());
}

TEST(Environment, FitToObjectUsesTheBoxInWorld)
{
    KEZVisEnvironment environment;
    RequestRecorder recorder(&environment);
    KEZVisVirtualObject object(&environment);
    object.SetRep(new TestRep(Box(0, 0, 0, 1, 1, 1)));
    KEZMathAxis axis;
    axis.SetOrigin(KEZMathPoint(10, 0, 0));
    object.SetPosition(&axis);
    environment.FitToObject(&object);
    ASSERT_EQ(recorder.requests.size(), 1);
    EXPECT_TRUE(recorder.requests.first().GetFitBox() == Box(10, 0, 0, 11, 1, 1));
}

TEST(Environment, FitToObjectsUnitesTheBoxesOfVisibleObjectsWithRep)
{
    KEZVisEnvironment environment;
    RequestRecorder recorder(&environment);
    KEZVisVirtualObject a(&environment);
    KEZVisVirtualObject b(&environment);
    KEZVisVirtualObject hidden(&environment);
    KEZVisVirtualObject withoutRep(&environment);
    KEZVisVirtualObject point(&environment);
    a.SetRep(new TestRep(Box(0, 0, 0, 1, 1, 1)));
    b.SetRep(new TestRep(Box(-2, 3, 0, -1, 4, 5)));
    hidden.SetRep(new TestRep(Box(100, 100, 100, 101, 101, 101)));
    hidden.Hide();
    point.SetRep(new TestRep(KEZMathBoundingBox(KEZMathPoint(-50, -50, -50))));
    environment.FitToObjects({&withoutRep, &point, &a, nullptr, &hidden, &b});
    ASSERT_EQ(recorder.requests.size(), 1);
    EXPECT_EQ(int(recorder.requests.first().GetChangeTypes()), 1);
    EXPECT_TRUE(recorder.requests.first().GetFitBox() == Box(-2, 0, 0, 1, 4, 5));
}

TEST(Environment, FitToObjectsWithAnEmptyListSendsNothing)
{
    KEZVisEnvironment environment;
    RequestRecorder recorder(&environment);
    environment.FitToObjects({});
    EXPECT_TRUE(recorder.requests.isEmpty());
}

TEST(Environment, FitToSelectionFitsTheSelectedObjectsAndSendsNothingForAnEmptySelection)
{
    KEZVisEnvironment environment;
    RequestRecorder recorder(&environment);
    KEZVisVirtualObject a(&environment);
    KEZVisVirtualObject b(&environment);
    a.SetRep(new TestRep(Box(0, 0, 0, 1, 1, 1)));
    b.SetRep(new TestRep(Box(5, 5, 5, 6, 6, 6)));
    environment.FitToSelection();
    EXPECT_TRUE(recorder.requests.isEmpty());
    environment.AddToSelection(&b);
    environment.FitToSelection();
    ASSERT_EQ(recorder.requests.size(), 1);
    EXPECT_TRUE(recorder.requests.first().GetFitBox() == Box(5, 5, 5, 6, 6, 6));
}

TEST(Environment, SetViewDirectionAndOrientationSendTheirRequests)
{
    KEZVisEnvironment environment;
    RequestRecorder recorder(&environment);
    environment.SetViewDirection(KEZMathVector(0, 0, -1));
    environment.SetViewOrientation(KEZMathVector(0, 1, 0));
    ASSERT_EQ(recorder.requests.size(), 2);
    EXPECT_EQ(int(recorder.requests.at(0).GetChangeTypes()), 2);
    EXPECT_DOUBLE_EQ(recorder.requests.at(0).GetViewDirection().GetZ(), -1.0);
    EXPECT_EQ(int(recorder.requests.at(1).GetChangeTypes()), 4);
    EXPECT_DOUBLE_EQ(recorder.requests.at(1).GetViewOrientation().GetY(), 1.0);
}

TEST(Environment, InvalidViewVectorsRaiseAndSendNothing)
{
    KEZVisEnvironment environment;
    RequestRecorder recorder(&environment);
    EXPECT_THROW(environment.SetViewDirection(KEZMathVector()), KEZMathZeroMagnitudeVectorException);
    EXPECT_THROW(environment.SetViewOrientation(KEZMathVector(0, 0, 0)), KEZMathZeroMagnitudeVectorException);
    EXPECT_TRUE(recorder.requests.isEmpty());
}

TEST(Environment, SetViewPlaneSendsOneRequestWithDirectionAndOrientation)
{
    KEZVisEnvironment environment;
    RequestRecorder recorder(&environment);
    KEZMathPlane plane;
    plane.SetDirections(KEZMathVector(1, 0, 0), KEZMathVector(0, 0, 1));  // normal (0, -1, 0)
    environment.SetViewPlane(plane);
    ASSERT_EQ(recorder.requests.size(), 1);
    const KEZVisClientChangeRequest &request = recorder.requests.first();
    EXPECT_EQ(int(request.GetChangeTypes()), 2 | 4);
    EXPECT_DOUBLE_EQ(request.GetViewOrientation().GetZ(), 1.0);
    EXPECT_DOUBLE_EQ(request.GetViewDirection().GetY(), -1.0);
}

TEST(Environment, SetMouseInteractionWithTheStoredValueSendsNothing)
{
    KEZVisEnvironment environment;
    RequestRecorder recorder(&environment);
    environment.SetMouseInteraction(KEZVisEnvironment::MouseInteractionFlags());
    EXPECT_TRUE(recorder.requests.isEmpty());
    environment.SetMouseInteraction(KEZVisEnvironment::SelectionInteraction | KEZVisEnvironment::SnapInteraction);
    environment.SetMouseInteraction(KEZVisEnvironment::SelectionInteraction | KEZVisEnvironment::SnapInteraction);
    ASSERT_EQ(recorder.requests.size(), 1);
    EXPECT_EQ(int(recorder.requests.first().GetChangeTypes()), 8);
    EXPECT_EQ(int(recorder.requests.first().GetMouseInteraction()), 1 | 4);
}

TEST(Environment, SetMouseInteractionStoresTheValueBeforeTheSignal)
{
    KEZVisEnvironment environment;
    int seen = -1;
    QObject::connect(&environment, &KEZVisEnvironment::ClientChangeRequested, &environment,
                     [&]() { seen = int(environment.GetMouseInteraction()); });
    environment.SetMouseInteraction(KEZVisEnvironment::DragInteraction);
    EXPECT_EQ(seen, 8);
}

TEST(Environment, SetMouseSnapGeometryTypesSendsOnlyChanges)
{
    KEZVisEnvironment environment;
    RequestRecorder recorder(&environment);
    int seen = -1;
    QObject::connect(&environment, &KEZVisEnvironment::ClientChangeRequested, &environment,
                     [&]() { seen = int(environment.GetMouseSnapGeometryTypes()); });
    environment.SetMouseSnapGeometryTypes(KEZVisEnvironment::MouseSnapGeometryTypes());
    environment.SetMouseSnapGeometryTypes(KEZVisEnvironment::PointSnapGeometry);
    environment.SetMouseSnapGeometryTypes(KEZVisEnvironment::PointSnapGeometry);
    ASSERT_EQ(recorder.requests.size(), 1);
    EXPECT_EQ(int(recorder.requests.first().GetChangeTypes()), 16);
    EXPECT_EQ(int(recorder.requests.first().GetMouseSnapGeometryTypes()), 1);
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(environment.GetMouseSnapGeometryTypes(),
              KEZVisEnvironment::MouseSnapGeometryTypes(KEZVisEnvironment::PointSnapGeometry));
}

TEST(Environment, SetSelectionEnabledWithTheStoredValueStillSendsARequest)
{
    KEZVisEnvironment environment;
    RequestRecorder recorder(&environment);
    environment.SetSelectionEnabled(false);
    environment.SetSelectionEnabled(true);
    ASSERT_EQ(recorder.requests.size(), 2);
    EXPECT_EQ(int(recorder.requests.at(0).GetChangeTypes()), 32);
    EXPECT_FALSE(recorder.requests.at(0).IsSelectionEnabled());
    EXPECT_TRUE(recorder.requests.at(1).IsSelectionEnabled());
    EXPECT_TRUE(environment.IsSelectionEnabled());
}

TEST(Environment, SetNativeGeometrySelectionTypeStoresWithoutRequest)
{
    KEZVisEnvironment environment;
    RequestRecorder recorder(&environment);
    SceneLog log;
    log.WatchEnvironment(&environment);
    environment.SetNativeGeometrySelectionType(KEZVisMouseContext::FaceGeometrySelection);
    EXPECT_EQ(environment.GetNativeGeometrySelectionType(), KEZVisMouseContext::FaceGeometrySelection);
    EXPECT_TRUE(recorder.requests.isEmpty());
    EXPECT_TRUE(log.entries.isEmpty());
}

TEST(Environment, EnvironmentOwnsNoObjects)
{
    auto *environment = new KEZVisEnvironment;
    KEZVisVirtualObject object(environment);
    environment->AddVirtualObject(&object);
    delete environment;
    EXPECT_TRUE(object.IsVisible());
    EXPECT_EQ(object.GetEnvironment(), nullptr);
}

TEST(Environment, ChildObjectsOfTheEnvironmentDieWithItWithoutReporting)
{
    SceneLog log;
    auto *environment = new KEZVisEnvironment;
    log.WatchEnvironment(environment);
    auto *object = MakeObject("a", environment, nullptr, environment);
    environment->AddVirtualObject(object);
    environment->AddToSelection(object);
    log.Clear();
    QPointer<KEZVisVirtualObject> watch(object);
    delete environment;
    EXPECT_TRUE(watch.isNull());
    EXPECT_TRUE(log.entries.isEmpty());
}
