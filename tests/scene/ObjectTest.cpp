// Tests of KEZVisObject and KEZVisVirtualObject: signals in their order, the
// compare-then-signal setters, the rep and its cached box, positions, and the
// report of an object's death.

#include "SceneTestSupport.h"

#include "KEZVisEnvironment.h"
#include "KEZVisObject_p.h"
#include "KEZVisVirtualObject.h"

#include "KEZMathAxis.h"

#include <QMetaMethod>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <memory>

using namespace SceneTest;

namespace {

// Counts the calls of GetPosition().
class PositionCountingObject : public KEZVisVirtualObject
{
public:
    using KEZVisVirtualObject::KEZVisVirtualObject;
    KEZMathAxis GetPosition() const override
    {
        ++positionCalls;
        return KEZVisVirtualObject::GetPosition();
    }
    mutable int positionCalls = 0;
};

// The smallest concrete KEZVisObject: keeps the base's position and box.
class PlainObject : public KEZVisObject
{
public:
    explicit PlainObject(const KEZVisEnvironment *environment)
        : KEZVisObject(environment, nullptr)
    {
    }
    bool IsVisible() const override { return true; }
    bool IsSelectable() const override { return true; }
    QString GetLabel() const override { return QStringLiteral("plain"); }
    void Replace(const KEZVisRep *rep) { UpdateRep(rep); }
};

KEZMathAxis ShiftedAxis(double x, double y, double z)
{
    KEZMathAxis axis;
    axis.SetOrigin(KEZMathPoint(x, y, z));
    return axis;
}

void ExpectPoint(const KEZMathPoint &point, double x, double y, double z)
{
    EXPECT_DOUBLE_EQ(point.GetX(), x);
    EXPECT_DOUBLE_EQ(point.GetY(), y);
    EXPECT_DOUBLE_EQ(point.GetZ(), z);
}

QStringList MethodSignatures(const QMetaObject *meta, QMetaMethod::MethodType type)
{
    QStringList result;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        if (method.methodType() != type)
            continue;
        QStringList parameters;
        const QList<QByteArray> types = method.parameterTypes();
        const QList<QByteArray> names = method.parameterNames();
        for (int p = 0; p < types.size(); ++p)
            parameters.append(QString::fromLatin1(types.at(p) + ' ' + names.at(p)));
        result.append(QString::fromLatin1(method.name()) + '(' + parameters.join(QStringLiteral(", ")) + ')');
    }
    return result;
}

} // namespace

TEST(Object, NewVirtualObjectIsVisibleUnselectableWithoutRepLabelOrPosition)
{
    KEZVisVirtualObject object(nullptr);
    EXPECT_TRUE(object.IsVisible());
    EXPECT_FALSE(object.IsSelectable());
    EXPECT_TRUE(object.GetLabel().isNull());
    EXPECT_FALSE(object.IsPosition());
    EXPECT_FALSE(object.GetPosition() != KEZMathAxis());
    EXPECT_EQ(object.GetRep(), nullptr);
    EXPECT_EQ(object.GetSelectionState(), KEZVisObject::NotSelected);
    EXPECT_EQ(object.GetEnvironment(), nullptr);
}

TEST(Object, SignalsAndArgumentNamesStandInTheirOrder)
{
    const QStringList expected{
        QStringLiteral("RepChanged(const KEZVisRep* rep)"),
        QStringLiteral("SelectionStateChanged(SelectionState state)"),
        QStringLiteral("VisibilityChanged(bool state)"),
        QStringLiteral("SelectabilityChanged(bool state)"),
        QStringLiteral("LabelChanged(QString label)"),
        QStringLiteral("PositionChanged(KEZMathAxis position)"),
        QStringLiteral("ChangeOccurred(KEZVisObject::ChangeTypes changes)"),
    };
    EXPECT_EQ(MethodSignatures(&KEZVisObject::staticMetaObject, QMetaMethod::Signal), expected);
}

TEST(Object, SlotsOfVirtualObjectStandInTheirOrder)
{
    const QStringList expected{
        QStringLiteral("Hide()"),
        QStringLiteral("Show()"),
        QStringLiteral("SetVisibility(bool state)"),
        QStringLiteral("EnableSelection()"),
        QStringLiteral("DisableSelection()"),
        QStringLiteral("SetSelectability(bool state)"),
        QStringLiteral("SetLabel(QString label)"),
    };
    EXPECT_EQ(MethodSignatures(&KEZVisVirtualObject::staticMetaObject, QMetaMethod::Slot), expected);
}

TEST(Object, SelectionStateAndChangeTypesAreKnownToTheMetaTypeSystem)
{
    KEZVisVirtualObject object(nullptr);  // construction registers the scene's types
    EXPECT_TRUE(QMetaType::fromName("KEZVisObject::SelectionState").isValid());
    EXPECT_TRUE(QMetaType::fromName("KEZVisObject::ChangeTypes").isValid());
    EXPECT_TRUE(QMetaType::fromName("QSet<KEZVisObject*>").isValid());
    EXPECT_EQ(int(KEZVisObject::NotSelected), 0);
    EXPECT_EQ(int(KEZVisObject::Selected), 1);
    EXPECT_EQ(int(KEZVisObject::PreSelected), 2);
    EXPECT_EQ(int(KEZVisObject::RepChange), 1);
    EXPECT_EQ(int(KEZVisObject::LabelChange), 2);
    EXPECT_EQ(int(KEZVisObject::VisibilityChange), 4);
    EXPECT_EQ(int(KEZVisObject::SelectionStateChange), 8);
    EXPECT_EQ(int(KEZVisObject::SelectabilityChange), 16);
    EXPECT_EQ(int(KEZVisObject::PositionChange), 32);
}

TEST(Object, BoundingBoxInWorldOfObjectWithoutRepIsDefaultAndDoesNotAskPosition)
{
    PositionCountingObject object(nullptr);
    const KEZMathBoundingBox box = object.GetBoundingBox(true);
    EXPECT_TRUE(box == KEZMathBoundingBox());
    EXPECT_EQ(object.positionCalls, 0);
    EXPECT_TRUE(object.GetBoundingBox(false) == KEZMathBoundingBox());
}

TEST(Object, BoundingBoxIsAskedOfTheRepOnceAndCached)
{
    KEZVisVirtualObject object(nullptr);
    auto *rep = new TestRep(Box(0, 0, 0, 1, 2, 3));
    object.SetRep(rep);
    EXPECT_EQ(rep->boxRequests, 0);  // asked lazily
    const KEZMathBoundingBox first = object.GetBoundingBox(false);
    const KEZMathBoundingBox second = object.GetBoundingBox(true);
    const KEZMathBoundingBox third = object.GetBoundingBox(false);
    EXPECT_EQ(rep->boxRequests, 1);
    ExpectPoint(first.GetUpperPoint(), 1, 2, 3);
    EXPECT_TRUE(first == third);
    EXPECT_TRUE(second == first);  // identity position
}

TEST(Object, BoundingBoxInWorldIsMappedByThePosition)
{
    PositionCountingObject object(nullptr);
    object.SetRep(new TestRep(Box(0, 0, 0, 1, 2, 3)));
    const KEZMathAxis axis = ShiftedAxis(10, 20, 30);
    object.SetPosition(&axis);
    const KEZMathBoundingBox world = object.GetBoundingBox(true);
    ExpectPoint(world.GetLowerPoint(), 10, 20, 30);
    ExpectPoint(world.GetUpperPoint(), 11, 22, 33);
    EXPECT_EQ(object.positionCalls, 1);
    const KEZMathBoundingBox own = object.GetBoundingBox(false);
    ExpectPoint(own.GetLowerPoint(), 0, 0, 0);
    EXPECT_EQ(object.positionCalls, 1);
}

TEST(Object, ClearedPositionStillMapsTheBoundingBox)
{
    KEZVisVirtualObject object(nullptr);
    object.SetRep(new TestRep(Box(0, 0, 0, 1, 1, 1)));
    const KEZMathAxis axis = ShiftedAxis(5, 0, 0);
    object.SetPosition(&axis);
    object.SetPosition(nullptr);
    EXPECT_FALSE(object.IsPosition());
    const KEZMathBoundingBox world = object.GetBoundingBox(true);
    ExpectPoint(world.GetLowerPoint(), 5, 0, 0);
    ExpectPoint(world.GetUpperPoint(), 6, 1, 1);
}

TEST(Object, BaseObjectWithoutPositionMapsByTheIdentity)
{
    PlainObject object(nullptr);
    object.Replace(new TestRep(Box(1, 1, 1, 2, 2, 2)));
    EXPECT_FALSE(object.IsPosition());
    EXPECT_TRUE(object.GetBoundingBox(true) == Box(1, 1, 1, 2, 2, 2));
}

TEST(Object, SetRepEmitsRepChangedThenChangeOccurred)
{
    SceneLog log;
    std::unique_ptr<KEZVisVirtualObject> object(MakeObject(QStringLiteral("a"), nullptr, &log));
    QSignalSpy repSpy(object.get(), &KEZVisObject::RepChanged);
    QSignalSpy changeSpy(object.get(), &KEZVisObject::ChangeOccurred);
    auto *rep = new TestRep;
    object->SetRep(rep);
    EXPECT_EQ(object->GetRep(), rep);
    ASSERT_EQ(repSpy.count(), 1);
    EXPECT_EQ(repSpy.at(0).at(0).value<const KEZVisRep *>(), rep);
    ASSERT_EQ(changeSpy.count(), 1);
    EXPECT_EQ(changeSpy.at(0).at(0).value<KEZVisObject::ChangeTypes>(), KEZVisObject::ChangeTypes(KEZVisObject::RepChange));
    EXPECT_EQ(log.entries, QStringList({"a:RepChanged(rep)", "a:ChangeOccurred(1)"}));
}

TEST(Object, SetRepWithAnotherRepDeletesTheOldOne)
{
    KEZVisVirtualObject object(nullptr);
    bool firstDeleted = false;
    bool secondDeleted = false;
    object.SetRep(new TestRep(KEZMathBoundingBox(), &firstDeleted));
    object.SetRep(new TestRep(KEZMathBoundingBox(), &secondDeleted));
    EXPECT_TRUE(firstDeleted);
    EXPECT_FALSE(secondDeleted);
}

TEST(Object, UpdateRepWithTheSameRepDeletesNothingEmitsBothSignalsAndMakesTheBoxStale)
{
    SceneLog log;
    std::unique_ptr<KEZVisVirtualObject> object(MakeObject(QStringLiteral("a"), nullptr));
    bool deleted = false;
    auto *rep = new TestRep(Box(0, 0, 0, 1, 1, 1), &deleted);
    object->SetRep(rep);
    object->GetBoundingBox(false);
    EXPECT_EQ(rep->boxRequests, 1);
    log.WatchObject(object.get());

    rep->SetBox(Box(0, 0, 0, 4, 4, 4));  // changed in place
    object->SetRep(rep);

    EXPECT_FALSE(deleted);
    EXPECT_EQ(object->GetRep(), rep);
    EXPECT_EQ(log.entries, QStringList({"a:RepChanged(rep)", "a:ChangeOccurred(1)"}));
    const KEZMathBoundingBox box = object->GetBoundingBox(false);
    EXPECT_EQ(rep->boxRequests, 2);
    ExpectPoint(box.GetUpperPoint(), 4, 4, 4);
}

TEST(Object, UpdateRepWithNullDeletesTheOldRepAndEmitsRepChangedWithNull)
{
    KEZVisVirtualObject object(nullptr);
    bool deleted = false;
    object.SetRep(new TestRep(KEZMathBoundingBox(), &deleted));
    QSignalSpy repSpy(&object, &KEZVisObject::RepChanged);
    QSignalSpy changeSpy(&object, &KEZVisObject::ChangeOccurred);
    object.SetRep(nullptr);
    EXPECT_TRUE(deleted);
    EXPECT_EQ(object.GetRep(), nullptr);
    ASSERT_EQ(repSpy.count(), 1);
    EXPECT_EQ(repSpy.at(0).at(0).value<const KEZVisRep *>(), nullptr);
    EXPECT_EQ(changeSpy.count(), 1);
}

TEST(Object, ProtectedUpdateRepOfTheBaseClassReplacesTheRep)
{
    PlainObject object(nullptr);
    bool deleted = false;
    object.Replace(new TestRep(KEZMathBoundingBox(), &deleted));
    QSignalSpy repSpy(&object, &KEZVisObject::RepChanged);
    object.Replace(new TestRep);
    EXPECT_TRUE(deleted);
    EXPECT_EQ(repSpy.count(), 1);
}

TEST(Object, DestroyingTheObjectDeletesItsRep)
{
    bool deleted = false;
    {
        KEZVisVirtualObject object(nullptr);
        object.SetRep(new TestRep(KEZMathBoundingBox(), &deleted));
        EXPECT_FALSE(deleted);
    }
    EXPECT_TRUE(deleted);
}

TEST(Object, SetVisibilityTrueOnNewObjectEmitsNothing)
{
    KEZVisVirtualObject object(nullptr);
    QSignalSpy visibilitySpy(&object, &KEZVisObject::VisibilityChanged);
    QSignalSpy changeSpy(&object, &KEZVisObject::ChangeOccurred);
    object.SetVisibility(true);
    object.Show();
    EXPECT_EQ(visibilitySpy.count(), 0);
    EXPECT_EQ(changeSpy.count(), 0);
}

TEST(Object, SetSelectabilityTrueEmitsSelectabilityChangedThenChangeOccurredWith16)
{
    SceneLog log;
    std::unique_ptr<KEZVisVirtualObject> object(MakeObject(QStringLiteral("a"), nullptr, &log));
    QSignalSpy selectabilitySpy(object.get(), &KEZVisObject::SelectabilityChanged);
    QSignalSpy changeSpy(object.get(), &KEZVisObject::ChangeOccurred);
    object->SetSelectability(true);
    EXPECT_TRUE(object->IsSelectable());
    ASSERT_EQ(selectabilitySpy.count(), 1);
    EXPECT_TRUE(selectabilitySpy.at(0).at(0).toBool());
    ASSERT_EQ(changeSpy.count(), 1);
    EXPECT_EQ(int(changeSpy.at(0).at(0).value<KEZVisObject::ChangeTypes>()), 16);
    EXPECT_EQ(log.entries, QStringList({"a:SelectabilityChanged(true)", "a:ChangeOccurred(16)"}));
}

TEST(Object, HideShowAndSelectionSlotsFollowCompareThenSignal)
{
    SceneLog log;
    std::unique_ptr<KEZVisVirtualObject> object(MakeObject(QStringLiteral("a"), nullptr, &log));
    object->Hide();
    object->Hide();
    object->SetVisibility(false);
    object->Show();
    object->EnableSelection();
    object->EnableSelection();
    object->DisableSelection();
    object->SetSelectability(false);
    EXPECT_EQ(log.entries, QStringList({
                               "a:VisibilityChanged(false)",
                               "a:ChangeOccurred(4)",
                               "a:VisibilityChanged(true)",
                               "a:ChangeOccurred(4)",
                               "a:SelectabilityChanged(true)",
                               "a:ChangeOccurred(16)",
                               "a:SelectabilityChanged(false)",
                               "a:ChangeOccurred(16)",
                           }));
    EXPECT_TRUE(object->IsVisible());
    EXPECT_FALSE(object->IsSelectable());
}

TEST(Object, SetLabelComparesCaseSensitively)
{
    SceneLog log;
    std::unique_ptr<KEZVisVirtualObject> object(MakeObject(QStringLiteral("a"), nullptr, &log));
    QSignalSpy labelSpy(object.get(), &KEZVisObject::LabelChanged);
    object->SetLabel(QStringLiteral("Wall"));
    object->SetLabel(QStringLiteral("Wall"));
    object->SetLabel(QStringLiteral("wall"));
    object->SetLabel(QStringLiteral("walls"));
    ASSERT_EQ(labelSpy.count(), 3);
    EXPECT_EQ(labelSpy.at(1).at(0).toString(), QStringLiteral("wall"));
    EXPECT_EQ(object->GetLabel(), QStringLiteral("walls"));
    EXPECT_EQ(log.entries, QStringList({"a:LabelChanged(Wall)", "a:ChangeOccurred(2)", "a:LabelChanged(wall)",
                                        "a:ChangeOccurred(2)", "a:LabelChanged(walls)", "a:ChangeOccurred(2)"}));
}

TEST(Object, SetLabelWithEmptyTextOnNewObjectEmitsNothing)
{
    KEZVisVirtualObject object(nullptr);
    QSignalSpy labelSpy(&object, &KEZVisObject::LabelChanged);
    object.SetLabel(QStringLiteral(""));
    EXPECT_EQ(labelSpy.count(), 0);
}

TEST(Object, SetPositionWithDefaultAxisOnNewObjectEmitsNothingAndKeepsNoPosition)
{
    KEZVisVirtualObject object(nullptr);
    QSignalSpy positionSpy(&object, &KEZVisObject::PositionChanged);
    QSignalSpy changeSpy(&object, &KEZVisObject::ChangeOccurred);
    const KEZMathAxis identity;
    object.SetPosition(&identity);
    EXPECT_FALSE(object.IsPosition());
    EXPECT_EQ(positionSpy.count(), 0);
    EXPECT_EQ(changeSpy.count(), 0);
}

TEST(Object, SetPositionStoresTheAxisAndEmitsPositionChangedThenChangeOccurred)
{
    SceneLog log;
    std::unique_ptr<KEZVisVirtualObject> object(MakeObject(QStringLiteral("a"), nullptr, &log));
    QSignalSpy positionSpy(object.get(), &KEZVisObject::PositionChanged);
    const KEZMathAxis axis = ShiftedAxis(1, 2, 3);
    object->SetPosition(&axis);
    object->SetPosition(&axis);  // equal: nothing
    EXPECT_TRUE(object->IsPosition());
    EXPECT_FALSE(object->GetPosition() != axis);
    ASSERT_EQ(positionSpy.count(), 1);
    EXPECT_FALSE(positionSpy.at(0).at(0).value<KEZMathAxis>() != axis);
    EXPECT_EQ(log.entries, QStringList({"a:PositionChanged", "a:ChangeOccurred(32)"}));
}

TEST(Object, ClearingThePositionKeepsTheAxisAndEmitsPositionChangedWithDefaultAxis)
{
    KEZVisVirtualObject object(nullptr);
    const KEZMathAxis axis = ShiftedAxis(1, 2, 3);
    object.SetPosition(&axis);
    QSignalSpy positionSpy(&object, &KEZVisObject::PositionChanged);
    QSignalSpy changeSpy(&object, &KEZVisObject::ChangeOccurred);
    object.SetPosition(nullptr);
    EXPECT_FALSE(object.IsPosition());
    EXPECT_FALSE(object.GetPosition() != axis);
    ASSERT_EQ(positionSpy.count(), 1);
    EXPECT_FALSE(positionSpy.at(0).at(0).value<KEZMathAxis>() != KEZMathAxis());
    ASSERT_EQ(changeSpy.count(), 1);
    EXPECT_EQ(int(changeSpy.at(0).at(0).value<KEZVisObject::ChangeTypes>()), 32);
}

TEST(Object, ClearingAPositionThatIsNotSetEmitsNothing)
{
    KEZVisVirtualObject object(nullptr);
    QSignalSpy changeSpy(&object, &KEZVisObject::ChangeOccurred);
    object.SetPosition(nullptr);
    EXPECT_EQ(changeSpy.count(), 0);
}

TEST(Object, ClearingAPositionThatHoldsTheDefaultAxisEmitsNothingButClearsTheFlag)
{
    KEZVisVirtualObject object(nullptr);
    const KEZMathAxis axis = ShiftedAxis(1, 0, 0);
    const KEZMathAxis identity;
    object.SetPosition(&axis);
    object.SetPosition(&identity);  // differs from the stored axis: set, flag stays true
    EXPECT_TRUE(object.IsPosition());
    QSignalSpy changeSpy(&object, &KEZVisObject::ChangeOccurred);
    object.SetPosition(nullptr);
    EXPECT_FALSE(object.IsPosition());
    EXPECT_EQ(changeSpy.count(), 0);
}

TEST(Object, SettingTheSelectionStateTwiceToTheSameValueEmitsOnePair)
{
    SceneLog log;
    std::unique_ptr<KEZVisVirtualObject> object(MakeObject(QStringLiteral("a"), nullptr, &log));
    QSignalSpy stateSpy(object.get(), &KEZVisObject::SelectionStateChanged);
    KEZVisObjectPrivate *d = static_cast<KEZVisObject *>(object.get())->d_func();
    d->SetSelectionState(KEZVisObject::Selected);
    d->SetSelectionState(KEZVisObject::Selected);
    EXPECT_EQ(object->GetSelectionState(), KEZVisObject::Selected);
    ASSERT_EQ(stateSpy.count(), 1);
    EXPECT_EQ(stateSpy.at(0).at(0).value<KEZVisObject::SelectionState>(), KEZVisObject::Selected);
    EXPECT_EQ(log.entries, QStringList({"a:SelectionStateChanged(Selected)", "a:ChangeOccurred(8)"}));
}

TEST(Object, GetEnvironmentAnswersNullAfterTheEnvironmentIsDestroyed)
{
    auto *environment = new KEZVisEnvironment;
    KEZVisVirtualObject object(environment);
    EXPECT_EQ(object.GetEnvironment(), environment);
    delete environment;
    EXPECT_EQ(object.GetEnvironment(), nullptr);
}

TEST(Object, ObjectThatOutlivesItsEnvironmentDiesQuietly)
{
    auto *environment = new KEZVisEnvironment;
    auto *object = new KEZVisVirtualObject(environment);
    environment->AddVirtualObject(object);
    delete environment;
    delete object;  // reports to nobody; under the sanitizers no access to the dead environment
    SUCCEED();
}

TEST(Object, ConstructionDoesNotAddTheObjectToItsEnvironment)
{
    KEZVisEnvironment environment;
    QSignalSpy addedSpy(&environment, &KEZVisEnvironment::ObjectAdded);
    KEZVisVirtualObject object(&environment);
    EXPECT_TRUE(environment.GetVirtualObjects().isEmpty());
    EXPECT_EQ(addedSpy.count(), 0);
}

TEST(Object, ListenerOfObjectRemovedSeesTheRepOfADyingObject)
{
    KEZVisEnvironment environment;
    auto *object = new KEZVisVirtualObject(&environment);
    auto *rep = new TestRep;
    object->SetRep(rep);
    environment.AddVirtualObject(object);
    const KEZVisRep *seen = nullptr;
    QObject::connect(&environment, &KEZVisEnvironment::ObjectRemoved, &environment,
                     [&seen](KEZVisObject *o) { seen = o->GetRep(); });
    delete object;
    EXPECT_EQ(seen, rep);
}
