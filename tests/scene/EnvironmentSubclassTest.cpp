// Tests of subclasses of KEZVisEnvironment: one that commits preselections
// through the protected raw layer, and one that overrides the six virtual
// operations and is called through them by the environment and its clients.

#include "SceneTestSupport.h"

#include "KEZVisCompoundFilter.h"
#include "KEZVisEnvironment.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <memory>

using namespace SceneTest;

namespace {

// Preselects what the filter accepts, commits through the raw layer, and
// offers a selection of its own kind that bypasses the filter.
class PreselectingEnvironment : public KEZVisEnvironment
{
public:
    bool SetPreSelectedObjects(QSet<KEZVisObject *> objects) override
    {
        QSet<KEZVisObject *> accepted;
        for (KEZVisObject *object : std::as_const(objects)) {
            if (object && GetSelectionFilter()->IsSelectable(object))
                accepted.insert(object);
        }
        SetPreselectedVisualization(accepted);
        return objects.isEmpty() || !accepted.isEmpty();
    }

    // Selects exactly \a objects, whatever the filter says.
    void ForceSelection(const QSet<KEZVisObject *> &objects)
    {
        BeginSelection();
        SetSelectedVisualization(objects);
        EndSelection();
    }

    void Select(KEZVisObject *object)
    {
        BeginSelection();
        AddSelectedVisualization(object);
        EndSelection();
    }

    void Deselect(KEZVisObject *object)
    {
        BeginSelection();
        RemoveSelectedVisualization(object);
        EndSelection();
    }
};

// Records every call of its virtual operations and holds an extra object of its own.
class OverridingEnvironment : public KEZVisEnvironment
{
public:
    using KEZVisEnvironment::SetSelectionFilter;  // keep the overload from a function visible
    QList<KEZVisObject *> GetObjects() const override
    {
        calls.append("GetObjects");
        QList<KEZVisObject *> objects = KEZVisEnvironment::GetObjects();
        if (extra)
            objects.append(extra);
        return objects;
    }
    void SetSelectionFilter(KEZVisSelectionFilter *filter) override
    {
        calls.append(filter ? "SetSelectionFilter(filter)" : "SetSelectionFilter(null)");
        KEZVisEnvironment::SetSelectionFilter(filter);
    }
    bool AddToSelection(KEZVisObject *object) override
    {
        calls.append("AddToSelection(" + Name(object) + ")");
        return KEZVisEnvironment::AddToSelection(object);
    }
    void RemoveFromSelection(KEZVisObject *object) override
    {
        calls.append("RemoveFromSelection(" + Name(object) + ")");
        KEZVisEnvironment::RemoveFromSelection(object);
    }
    bool SetSelection(const QSet<KEZVisObject *> &objects) override
    {
        calls.append("SetSelection(" + Names(objects) + ")");
        return KEZVisEnvironment::SetSelection(objects);
    }
    bool SetPreSelectedObjects(QSet<KEZVisObject *> objects) override
    {
        calls.append("SetPreSelectedObjects(" + Names(objects) + ")");
        return KEZVisEnvironment::SetPreSelectedObjects(objects);
    }

    KEZVisObject *extra = nullptr;
    mutable QStringList calls;
};

// An override of SetSelectionFilter that installs nothing.
class StubbornEnvironment : public KEZVisEnvironment
{
public:
    void SetSelectionFilter(KEZVisSelectionFilter *filter) override { delete filter; }
};

} // namespace

TEST(EnvironmentSubclass, OverriddenSetPreSelectedObjectsCommitsThroughTheRawLayer)
{
    SceneLog log;
    PreselectingEnvironment environment;
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &environment, &log));
    std::unique_ptr<KEZVisVirtualObject> b(MakeObject("b", &environment, &log));
    environment.AddVirtualObject(a.get());
    environment.AddVirtualObject(b.get());
    environment.SetSelectionFilter(new SetFilter(true, {b.get()}));
    log.WatchEnvironment(&environment);
    RecordingClient client(&log);
    client.SetEnvironment(&environment);
    log.Clear();

    EXPECT_TRUE(environment.SetPreSelectedObjects({a.get(), b.get()}));
    EXPECT_EQ(environment.GetPreSelectedObjects(), QSet<KEZVisObject *>({a.get()}));
    EXPECT_EQ(log.entries, QStringList({
                               "a:SelectionStateChanged(PreSelected)",
                               "a:ChangeOccurred(8)",
                               "client:OnObjectChanged(a,8)",
                               "env:VisualizationPreselectionChanged({},{a})",
                               "client:OnVisualizationPreselectionChanged({},{a})",
                           }));
    log.Clear();
    EXPECT_FALSE(environment.SetPreSelectedObjects({b.get()}));
    EXPECT_TRUE(environment.GetPreSelectedObjects().isEmpty());
    EXPECT_EQ(a->GetSelectionState(), KEZVisObject::NotSelected);
}

TEST(EnvironmentSubclass, RawLayerSelectsWhatTheFilterRefuses)
{
    SceneLog log;
    PreselectingEnvironment environment;
    std::unique_ptr<KEZVisVirtualObject> a(MakeObject("a", &environment, &log));
    environment.AddVirtualObject(a.get());
    environment.SetSelectionFilter(new SetFilter(true, {a.get()}));
    log.WatchEnvironment(&environment);
    log.Clear();
    environment.Select(a.get());
    EXPECT_EQ(environment.GetVisualizationSelection(), QSet<KEZVisObject *>({a.get()}));
    EXPECT_EQ(log.entries, QStringList({"env:BatchStarted", "a:SelectionStateChanged(Selected)",
                                        "a:ChangeOccurred(8)", "env:VisualizationSelectionChanged({a},{})",
                                        "env:BatchFinished"}));
    log.Clear();
    environment.Deselect(a.get());
    EXPECT_EQ(a->GetSelectionState(), KEZVisObject::NotSelected);
    EXPECT_EQ(log.entries, QStringList({"env:BatchStarted", "a:SelectionStateChanged(NotSelected)",
                                        "a:ChangeOccurred(8)", "env:VisualizationSelectionChanged({},{a})",
                                        "env:BatchFinished"}));
}

TEST(EnvironmentSubclass, RawPreselectionAndSelectionFollowTheStateTable)
{
    PreselectingEnvironment environment;
    KEZVisVirtualObject a(&environment);
    KEZVisVirtualObject b(&environment);
    environment.ForceSelection({&a});
    EXPECT_EQ(a.GetSelectionState(), KEZVisObject::Selected);
    environment.SetPreSelectedObjects({&a, &b});  // both enter the preselection
    EXPECT_EQ(a.GetSelectionState(), KEZVisObject::PreSelected);
    EXPECT_EQ(b.GetSelectionState(), KEZVisObject::PreSelected);
    environment.ForceSelection({&b});  // b committed as addition: stays; a removed while preselected: stays
    EXPECT_EQ(a.GetSelectionState(), KEZVisObject::PreSelected);
    EXPECT_EQ(b.GetSelectionState(), KEZVisObject::PreSelected);
    environment.SetPreSelectedObjects({});  // both leave: back to what the selection says
    EXPECT_EQ(a.GetSelectionState(), KEZVisObject::NotSelected);
    EXPECT_EQ(b.GetSelectionState(), KEZVisObject::Selected);
}

TEST(EnvironmentSubclass, FilterIsInstalledThroughTheOverriddenSetSelectionFilter)
{
    OverridingEnvironment environment;
    KEZVisVirtualObject a(&environment);
    a.setObjectName("a");
    environment.GetSelectionFilter();
    environment.GetSelectionFilter();
    EXPECT_EQ(environment.calls, QStringList({"SetSelectionFilter(null)"}));
    environment.calls.clear();
    environment.SetSelectionFilter(true, [](const KEZVisObject *) { return true; });
    EXPECT_EQ(environment.calls, QStringList({"SetSelectionFilter(filter)"}));
}

TEST(EnvironmentSubclass, ToggleSelectionCallsTheOverriddenOperations)
{
    OverridingEnvironment environment;
    KEZVisVirtualObject a(&environment);
    a.setObjectName("a");
    EXPECT_TRUE(environment.ToggleSelection(&a));
    EXPECT_FALSE(environment.ToggleSelection(&a));
    EXPECT_EQ(environment.calls,
              QStringList({"AddToSelection(a)", "SetSelectionFilter(null)", "RemoveFromSelection(a)"}));
}

TEST(EnvironmentSubclass, OverriddenOperationsAreReachedThroughTheBaseClass)
{
    OverridingEnvironment environment;
    KEZVisVirtualObject a(&environment);
    a.setObjectName("a");
    KEZVisEnvironment &base = environment;
    base.SetSelection({&a});
    base.SetPreSelectedObjects({&a});
    base.RemoveFromSelection(&a);
    base.GetObjects();
    EXPECT_EQ(environment.calls, QStringList({"SetSelection({a})", "SetSelectionFilter(null)",
                                              "SetPreSelectedObjects({a})", "RemoveFromSelection(a)", "GetObjects"}));
}

TEST(EnvironmentSubclass, ClientReplaysTheObjectsOfTheOverriddenGetObjects)
{
    SceneLog log;
    OverridingEnvironment environment;
    environment.setObjectName("env");
    std::unique_ptr<KEZVisVirtualObject> listed(MakeObject("listed", &environment));
    std::unique_ptr<KEZVisVirtualObject> own(MakeObject("own", nullptr));
    environment.AddVirtualObject(listed.get());
    environment.extra = own.get();
    RecordingClient client(&log);
    client.SetEnvironment(&environment);
    EXPECT_EQ(log.entries, QStringList({"client:BeginBatch", "client:OnObjectAdded(listed)", "client:OnObjectAdded(own)",
                                        "client:EndBatch", "client:OnEnvironmentChanged(env)"}));
    log.Clear();
    own->SetLabel("x");  // the replay connected the extra object too
    EXPECT_EQ(log.entries, QStringList({"client:OnObjectChanged(own,2)"}));
    log.Clear();
    client.SetEnvironment(nullptr);
    EXPECT_EQ(log.entries, QStringList({"client:BeginBatch", "client:OnObjectRemoved(listed)",
                                        "client:OnObjectRemoved(own)", "client:EndBatch",
                                        "client:OnEnvironmentChanged(null)"}));
    EXPECT_EQ(environment.calls, QStringList({"GetObjects", "GetObjects"}));
}

TEST(EnvironmentSubclass, OverrideThatInstallsNoFilterStillLeavesOneInUse)
{
    StubbornEnvironment environment;
    KEZVisVirtualObject a(&environment);
    EXPECT_NE(environment.GetSelectionFilter(), nullptr);
    EXPECT_TRUE(environment.AddToSelection(&a));
}
