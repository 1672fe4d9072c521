// Tests of the selection and preselection of KEZVisEnvironment: the public
// operations through the filter, the raw layer, the order of every signal of a
// transaction, the state table and the re-entrancy guard.

#include "SceneTestSupport.h"

#include "KEZVisCompoundFilter.h"
#include "KEZVisEnvironment.h"
#include "KEZVisFunctionFilter.h"

#include "KEZSysException.h"

#include <QPointer>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <vector>

using namespace SceneTest;

namespace {

// Three objects a, b, c in an environment, a log of everything, and optionally
// a recording client attached.
struct SelectionScene
{
    explicit SelectionScene(bool withClient = false)
    {
        environment.setObjectName("env");
        a.reset(MakeObject("a", &environment, &log));
        b.reset(MakeObject("b", &environment, &log));
        c.reset(MakeObject("c", &environment, &log));
        environment.AddVirtualObject(a.get());
        environment.AddVirtualObject(b.get());
        environment.AddVirtualObject(c.get());
        log.WatchEnvironment(&environment);
        if (withClient)
            client.SetEnvironment(&environment);
        log.Clear();
    }
    // Installs the default filter and forgets its signals.
    void InstallDefaultFilter()
    {
        environment.GetSelectionFilter();
        log.Clear();
    }
    void InstallFilter(KEZVisSelectionFilter *filter)
    {
        environment.SetSelectionFilter(filter);
        log.Clear();
    }

    SceneLog log;
    OpenEnvironment environment;
    RecordingClient client{&log};
    std::unique_ptr<KEZVisVirtualObject> a;
    std::unique_ptr<KEZVisVirtualObject> b;
    std::unique_ptr<KEZVisVirtualObject> c;
};

QString MessageOf(const std::function<void()> &call)
{
    try {
        call();
    } catch (const KEZSysException &exception) {
        return exception.GetMessage();
    }
    return QString();
}

const QString NotCommitted = QStringLiteral("previous selection modifications were not committed");

} // namespace

// --- AddToSelection -----------------------------------------------------------

TEST(EnvironmentSelection, FirstAddToSelectionWithoutFilterInstallsTheDefaultThenCommits)
{
    SelectionScene scene(true);
    EXPECT_TRUE(scene.environment.AddToSelection(scene.a.get()));
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "env:BatchStarted",
                                     "client:BeginBatch",
                                     "env:BatchFinished",
                                     "client:EndBatch",
                                     "env:SelectionFilterChanged",
                                     "env:BatchStarted",
                                     "client:BeginBatch",
                                     "a:SelectionStateChanged(Selected)",
                                     "a:ChangeOccurred(8)",
                                     "client:OnObjectChanged(a,8)",
                                     "env:VisualizationSelectionChanged({a},{})",
                                     "client:OnVisualizationSelectionChanged({a},{})",
                                     "env:BatchFinished",
                                     "client:EndBatch",
                                 }));
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get()}));
    EXPECT_EQ(scene.a->GetSelectionState(), KEZVisObject::Selected);
}

TEST(EnvironmentSelection, DefaultFilterIsAnAcceptAllMultiSelectionCompound)
{
    KEZVisEnvironment environment;
    QSignalSpy filterSpy(&environment, &KEZVisEnvironment::SelectionFilterChanged);
    KEZVisSelectionFilter *filter = environment.GetSelectionFilter();
    ASSERT_NE(filter, nullptr);
    auto *compound = qobject_cast<KEZVisCompoundFilter *>(filter);
    ASSERT_NE(compound, nullptr);
    EXPECT_TRUE(compound->IsAcceptAll());
    EXPECT_TRUE(compound->IsMultiSelection());
    ASSERT_EQ(filterSpy.count(), 1);
    EXPECT_EQ(filterSpy.at(0).at(0).value<KEZVisSelectionFilter *>(), filter);
    EXPECT_EQ(environment.GetSelectionFilter(), filter);
    EXPECT_EQ(filterSpy.count(), 1);
}

TEST(EnvironmentSelection, AddToSelectionOfASelectedObjectReturnsFalseAndEmitsNothing)
{
    SelectionScene scene(true);
    scene.environment.AddToSelection(scene.a.get());
    scene.log.Clear();
    EXPECT_FALSE(scene.environment.AddToSelection(scene.a.get()));
    EXPECT_TRUE(scene.log.entries.isEmpty());
}

TEST(EnvironmentSelection, AddToSelectionOfASelectedObjectEmitsOnlyTheFirstCreationOfTheFilter)
{
    SelectionScene scene;
    scene.environment.BeginSelection();
    scene.environment.AddSelectedVisualization(scene.a.get());
    scene.environment.EndSelection();  // selected through the raw layer: no filter yet
    scene.log.Clear();
    EXPECT_FALSE(scene.environment.AddToSelection(scene.a.get()));
    EXPECT_EQ(scene.log.entries, QStringList({"env:BatchStarted", "env:BatchFinished", "env:SelectionFilterChanged"}));
}

TEST(EnvironmentSelection, AddToSelectionOfARefusedObjectReturnsFalseAndEmitsNothing)
{
    SelectionScene scene;
    scene.InstallFilter(new SetFilter(true, {scene.a.get()}));
    EXPECT_FALSE(scene.environment.AddToSelection(scene.a.get()));
    EXPECT_TRUE(scene.log.entries.isEmpty());
}

TEST(EnvironmentSelection, AddToSelectionOfNullReturnsFalseWithoutCreatingAFilter)
{
    SelectionScene scene;
    EXPECT_FALSE(scene.environment.AddToSelection(nullptr));
    EXPECT_TRUE(scene.log.entries.isEmpty());
}

TEST(EnvironmentSelection, MultiSelectionAddsToTheSelection)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    scene.environment.AddToSelection(scene.a.get());
    scene.log.Clear();
    EXPECT_TRUE(scene.environment.AddToSelection(scene.b.get()));
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "env:BatchStarted",
                                     "b:SelectionStateChanged(Selected)",
                                     "b:ChangeOccurred(8)",
                                     "env:VisualizationSelectionChanged({b},{})",
                                     "env:BatchFinished",
                                 }));
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get(), scene.b.get()}));
}

TEST(EnvironmentSelection, SingleSelectionSwapGivesOneChangeWithTheNewSelectedAndTheOldDeselected)
{
    SelectionScene scene(true);
    scene.InstallFilter(new SetFilter(false));
    scene.environment.AddToSelection(scene.a.get());
    scene.log.Clear();
    EXPECT_TRUE(scene.environment.AddToSelection(scene.b.get()));
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "env:BatchStarted",
                                     "client:BeginBatch",
                                     "b:SelectionStateChanged(Selected)",
                                     "b:ChangeOccurred(8)",
                                     "client:OnObjectChanged(b,8)",
                                     "a:SelectionStateChanged(NotSelected)",
                                     "a:ChangeOccurred(8)",
                                     "client:OnObjectChanged(a,8)",
                                     "env:VisualizationSelectionChanged({b},{a})",
                                     "client:OnVisualizationSelectionChanged({b},{a})",
                                     "env:BatchFinished",
                                     "client:EndBatch",
                                 }));
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.b.get()}));
    EXPECT_EQ(scene.a->GetSelectionState(), KEZVisObject::NotSelected);
}

TEST(EnvironmentSelection, SelectionSignalCarriesTheDeltasAsArguments)
{
    SelectionScene scene;
    scene.InstallFilter(new SetFilter(false));
    scene.environment.AddToSelection(scene.a.get());
    QSignalSpy spy(&scene.environment, &KEZVisEnvironment::VisualizationSelectionChanged);
    scene.environment.AddToSelection(scene.b.get());
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).value<QSet<KEZVisObject *>>(), QSet<KEZVisObject *>({scene.b.get()}));
    EXPECT_EQ(spy.at(0).at(1).value<QSet<KEZVisObject *>>(), QSet<KEZVisObject *>({scene.a.get()}));
}

// --- RemoveFromSelection and ToggleSelection ------------------------------------

TEST(EnvironmentSelection, RemoveFromSelectionDeselects)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    scene.environment.AddToSelection(scene.a.get());
    scene.log.Clear();
    scene.environment.RemoveFromSelection(scene.a.get());
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "env:BatchStarted",
                                     "a:SelectionStateChanged(NotSelected)",
                                     "a:ChangeOccurred(8)",
                                     "env:VisualizationSelectionChanged({},{a})",
                                     "env:BatchFinished",
                                 }));
    EXPECT_TRUE(scene.environment.GetVisualizationSelection().isEmpty());
}

TEST(EnvironmentSelection, RemoveFromSelectionOfAnUnselectedObjectEmitsNothingAndCreatesNoFilter)
{
    SelectionScene scene;
    scene.environment.RemoveFromSelection(scene.a.get());
    scene.environment.RemoveFromSelection(nullptr);
    EXPECT_TRUE(scene.log.entries.isEmpty());
}

TEST(EnvironmentSelection, RemoveFromSelectionDoesNotConsultTheFilter)
{
    SelectionScene scene;
    auto *filter = new SetFilter(true);
    scene.InstallFilter(filter);
    scene.environment.AddToSelection(scene.a.get());
    filter->refused.insert(scene.a.get());
    filter->questions = 0;
    scene.environment.RemoveFromSelection(scene.a.get());
    EXPECT_EQ(filter->questions, 0);
    EXPECT_TRUE(scene.environment.GetVisualizationSelection().isEmpty());
}

TEST(EnvironmentSelection, ToggleSelectionOfARefusedObjectReturnsTrueAndLeavesTheSelection)
{
    SelectionScene scene;
    scene.InstallFilter(new SetFilter(true, {scene.b.get()}));
    scene.environment.AddToSelection(scene.a.get());
    scene.log.Clear();
    EXPECT_TRUE(scene.environment.ToggleSelection(scene.b.get()));
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get()}));
    EXPECT_TRUE(scene.log.entries.isEmpty());
}

TEST(EnvironmentSelection, ToggleSelectionSelectsAndDeselects)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    EXPECT_TRUE(scene.environment.ToggleSelection(scene.a.get()));
    EXPECT_EQ(scene.a->GetSelectionState(), KEZVisObject::Selected);
    EXPECT_FALSE(scene.environment.ToggleSelection(scene.a.get()));
    EXPECT_EQ(scene.a->GetSelectionState(), KEZVisObject::NotSelected);
    EXPECT_TRUE(scene.environment.GetVisualizationSelection().isEmpty());
}

// --- SetSelection -----------------------------------------------------------------

TEST(EnvironmentSelection, SetSelectionWithTheCurrentSelectionReturnsTrueAndEmitsNothing)
{
    SelectionScene scene(true);
    scene.InstallDefaultFilter();
    scene.environment.AddToSelection(scene.a.get());
    scene.log.Clear();
    EXPECT_TRUE(scene.environment.SetSelection({scene.a.get()}));
    EXPECT_TRUE(scene.log.entries.isEmpty());
}

TEST(EnvironmentSelection, SetSelectionWhoseCandidatesAreAllRefusedReturnsFalseAndChangesNothing)
{
    SelectionScene scene;
    scene.InstallFilter(new SetFilter(true, {scene.b.get(), scene.c.get()}));
    scene.environment.AddToSelection(scene.a.get());
    scene.log.Clear();
    EXPECT_FALSE(scene.environment.SetSelection({scene.b.get(), scene.c.get()}));
    EXPECT_TRUE(scene.log.entries.isEmpty());
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get()}));
}

TEST(EnvironmentSelection, SetSelectionWithTheEmptySetOnAnEmptySelectionReturnsTrueAtOnce)
{
    SelectionScene scene;
    EXPECT_TRUE(scene.environment.SetSelection({}));
    EXPECT_TRUE(scene.log.entries.isEmpty());  // not even the filter was created
}

TEST(EnvironmentSelection, SetSelectionReplacesPartOfTheSelection)
{
    SelectionScene scene(true);
    scene.InstallDefaultFilter();
    scene.environment.SetSelection({scene.a.get(), scene.b.get()});
    scene.log.Clear();
    EXPECT_TRUE(scene.environment.SetSelection({scene.a.get(), scene.c.get()}));
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "env:BatchStarted",
                                     "client:BeginBatch",
                                     "c:SelectionStateChanged(Selected)",
                                     "c:ChangeOccurred(8)",
                                     "client:OnObjectChanged(c,8)",
                                     "b:SelectionStateChanged(NotSelected)",
                                     "b:ChangeOccurred(8)",
                                     "client:OnObjectChanged(b,8)",
                                     "env:VisualizationSelectionChanged({a,c},{b})",
                                     "client:OnVisualizationSelectionChanged({a,c},{b})",
                                     "env:BatchFinished",
                                     "client:EndBatch",
                                 }));
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get(), scene.c.get()}));
}

TEST(EnvironmentSelection, SetSelectionWithARefusedNewObjectStillReportsTheSelectedOne)
{
    SelectionScene scene;
    scene.InstallFilter(new SetFilter(true, {scene.b.get()}));
    scene.environment.AddToSelection(scene.a.get());
    scene.log.Clear();
    EXPECT_TRUE(scene.environment.SetSelection({scene.a.get(), scene.b.get()}));
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "env:BatchStarted",
                                     "env:VisualizationSelectionChanged({a},{})",
                                     "env:BatchFinished",
                                 }));
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get()}));
    EXPECT_EQ(scene.b->GetSelectionState(), KEZVisObject::NotSelected);
}

TEST(EnvironmentSelection, SetSelectionKeepsASelectedObjectThatIsNamedButRefused)
{
    SelectionScene scene;
    auto *filter = new SetFilter(true);
    scene.InstallFilter(filter);
    scene.environment.SetSelection({scene.a.get(), scene.b.get()});
    filter->refused.insert(scene.a.get());  // a change of an installed filter deselects nothing
    scene.log.Clear();
    EXPECT_TRUE(scene.environment.SetSelection({scene.a.get(), scene.c.get()}));
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "env:BatchStarted",
                                     "c:SelectionStateChanged(Selected)",
                                     "c:ChangeOccurred(8)",
                                     "b:SelectionStateChanged(NotSelected)",
                                     "b:ChangeOccurred(8)",
                                     "env:VisualizationSelectionChanged({c},{b})",
                                     "env:BatchFinished",
                                 }));
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get(), scene.c.get()}));
}

TEST(EnvironmentSelection, SetSelectionUnderSingleSelectionKeepsOneCandidateAndDropsTheOthers)
{
    SelectionScene scene(true);
    scene.InstallFilter(new SetFilter(false, {scene.c.get()}));
    scene.log.Clear();
    EXPECT_TRUE(scene.environment.SetSelection({scene.a.get(), scene.b.get(), scene.c.get()}));
    const QSet<KEZVisObject *> selection = scene.environment.GetVisualizationSelection();
    ASSERT_EQ(selection.size(), 1);
    KEZVisObject *kept = *selection.cbegin();
    ASSERT_TRUE(kept == scene.a.get() || kept == scene.b.get());  // which one is arbitrary
    const QString name = Name(kept);
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "env:BatchStarted",
                                     "client:BeginBatch",
                                     name + ":SelectionStateChanged(Selected)",
                                     name + ":ChangeOccurred(8)",
                                     "client:OnObjectChanged(" + name + ",8)",
                                     "env:VisualizationSelectionChanged({" + name + "},{})",
                                     "client:OnVisualizationSelectionChanged({" + name + "},{})",
                                     "env:BatchFinished",
                                     "client:EndBatch",
                                 }));
}

TEST(EnvironmentSelection, SetSelectionUnderSingleSelectionMayLeaveTwoObjectsSelected)
{
    SelectionScene scene;
    scene.InstallFilter(new SetFilter(false));
    scene.environment.AddToSelection(scene.a.get());
    scene.log.Clear();
    EXPECT_TRUE(scene.environment.SetSelection({scene.a.get(), scene.b.get()}));
    const QSet<KEZVisObject *> selection = scene.environment.GetVisualizationSelection();
    // The candidate kept is arbitrary: a keeps the selection as it was, b joins a.
    if (selection.size() == 1) {
        EXPECT_EQ(selection, QSet<KEZVisObject *>({scene.a.get()}));
        EXPECT_EQ(scene.log.entries, QStringList({"env:BatchStarted", "env:VisualizationSelectionChanged({a},{})",
                                                  "env:BatchFinished"}));
    } else {
        EXPECT_EQ(selection, QSet<KEZVisObject *>({scene.a.get(), scene.b.get()}));
        EXPECT_EQ(scene.log.entries,
                  QStringList({"env:BatchStarted", "b:SelectionStateChanged(Selected)", "b:ChangeOccurred(8)",
                               "env:VisualizationSelectionChanged({b},{})", "env:BatchFinished"}));
    }
}

TEST(EnvironmentSelection, SetSelectionWithTheEmptySetDeselectsEverythingWithoutAskingTheFilter)
{
    SelectionScene scene;
    auto *filter = new SetFilter(true);
    scene.InstallFilter(filter);
    scene.environment.SetSelection({scene.a.get(), scene.b.get()});
    filter->questions = 0;
    scene.log.Clear();
    EXPECT_TRUE(scene.environment.SetSelection({}));
    EXPECT_EQ(filter->questions, 0);
    EXPECT_TRUE(scene.environment.GetVisualizationSelection().isEmpty());
    EXPECT_EQ(scene.log.entries.first(), "env:BatchStarted");
    EXPECT_EQ(scene.log.entries.size(), 7);
    EXPECT_TRUE(scene.log.entries.contains("a:SelectionStateChanged(NotSelected)"));
    EXPECT_TRUE(scene.log.entries.contains("b:SelectionStateChanged(NotSelected)"));
    EXPECT_EQ(scene.log.entries.at(5), "env:VisualizationSelectionChanged({},{a,b})");
    EXPECT_EQ(scene.log.entries.last(), "env:BatchFinished");
}

TEST(EnvironmentSelection, SetSelectionIgnoresNullEntries)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    EXPECT_TRUE(scene.environment.SetSelection({scene.a.get(), nullptr}));
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get()}));
    EXPECT_FALSE(scene.environment.SetSelection({nullptr}));
}

// --- Preselection ----------------------------------------------------------------

TEST(EnvironmentSelection, SetPreSelectedObjectsIsAQuery)
{
    SelectionScene scene;
    scene.InstallFilter(new SetFilter(true, {scene.b.get()}));
    EXPECT_TRUE(scene.environment.SetPreSelectedObjects({}));
    EXPECT_FALSE(scene.environment.SetPreSelectedObjects({scene.b.get()}));
    EXPECT_FALSE(scene.environment.SetPreSelectedObjects({nullptr}));
    EXPECT_TRUE(scene.environment.SetPreSelectedObjects({scene.a.get(), scene.b.get()}));
    EXPECT_TRUE(scene.environment.GetPreSelectedObjects().isEmpty());
    EXPECT_EQ(scene.a->GetSelectionState(), KEZVisObject::NotSelected);
    EXPECT_TRUE(scene.log.entries.isEmpty());
}

TEST(EnvironmentSelection, SetPreSelectedObjectsWithTheEmptySetCreatesNoFilter)
{
    SelectionScene scene;
    EXPECT_TRUE(scene.environment.SetPreSelectedObjects({}));
    EXPECT_TRUE(scene.log.entries.isEmpty());
}

TEST(EnvironmentSelection, SetPreselectedVisualizationReplacesThePreselection)
{
    SelectionScene scene(true);
    scene.environment.SetPreselectedVisualization({scene.a.get()});
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "a:SelectionStateChanged(PreSelected)",
                                     "a:ChangeOccurred(8)",
                                     "client:OnObjectChanged(a,8)",
                                     "env:VisualizationPreselectionChanged({},{a})",
                                     "client:OnVisualizationPreselectionChanged({},{a})",
                                 }));
    scene.log.Clear();
    scene.environment.SetPreselectedVisualization({scene.b.get()});
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "a:SelectionStateChanged(NotSelected)",
                                     "a:ChangeOccurred(8)",
                                     "client:OnObjectChanged(a,8)",
                                     "b:SelectionStateChanged(PreSelected)",
                                     "b:ChangeOccurred(8)",
                                     "client:OnObjectChanged(b,8)",
                                     "env:VisualizationPreselectionChanged({a},{b})",
                                     "client:OnVisualizationPreselectionChanged({a},{b})",
                                 }));
    EXPECT_EQ(scene.environment.GetPreSelectedObjects(), QSet<KEZVisObject *>({scene.b.get()}));
}

TEST(EnvironmentSelection, SetPreselectedVisualizationWithTheSetHeldEmitsNothing)
{
    SelectionScene scene;
    scene.environment.SetPreselectedVisualization({scene.a.get()});
    scene.log.Clear();
    scene.environment.SetPreselectedVisualization({scene.a.get()});
    EXPECT_TRUE(scene.log.entries.isEmpty());
}

TEST(EnvironmentSelection, SetPreselectedVisualizationOpensNoBatchAndConsultsNoFilter)
{
    SelectionScene scene;
    auto *filter = new SetFilter(true, {scene.a.get()});
    scene.InstallFilter(filter);
    filter->questions = 0;
    scene.environment.SetPreselectedVisualization({scene.a.get()});
    EXPECT_EQ(filter->questions, 0);
    EXPECT_FALSE(scene.log.entries.contains("env:BatchStarted"));
    EXPECT_EQ(scene.a->GetSelectionState(), KEZVisObject::PreSelected);
}

TEST(EnvironmentSelection, PreselectedObjectAddedToTheSelectionStaysPreSelectedThenTurnsSelected)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    scene.environment.SetPreselectedVisualization({scene.a.get()});
    scene.log.Clear();
    scene.environment.AddToSelection(scene.a.get());
    EXPECT_EQ(scene.a->GetSelectionState(), KEZVisObject::PreSelected);
    EXPECT_EQ(scene.log.entries, QStringList({"env:BatchStarted", "env:VisualizationSelectionChanged({a},{})",
                                              "env:BatchFinished"}));
    scene.log.Clear();
    scene.environment.SetPreselectedVisualization({});
    EXPECT_EQ(scene.a->GetSelectionState(), KEZVisObject::Selected);
    EXPECT_EQ(scene.log.entries, QStringList({"a:SelectionStateChanged(Selected)", "a:ChangeOccurred(8)",
                                              "env:VisualizationPreselectionChanged({a},{})"}));
}

TEST(EnvironmentSelection, SelectedAndPreselectedObjectRemovedFromTheSelectionStaysPreSelectedThenTurnsNotSelected)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    scene.environment.AddToSelection(scene.a.get());
    scene.environment.SetPreselectedVisualization({scene.a.get()});
    EXPECT_EQ(scene.a->GetSelectionState(), KEZVisObject::PreSelected);
    scene.log.Clear();
    scene.environment.RemoveFromSelection(scene.a.get());
    EXPECT_EQ(scene.a->GetSelectionState(), KEZVisObject::PreSelected);
    EXPECT_EQ(scene.log.entries, QStringList({"env:BatchStarted", "env:VisualizationSelectionChanged({},{a})",
                                              "env:BatchFinished"}));
    scene.environment.SetPreselectedVisualization({});
    EXPECT_EQ(scene.a->GetSelectionState(), KEZVisObject::NotSelected);
}

TEST(EnvironmentSelection, SetPreselectedVisualizationDropsNullEntries)
{
    SelectionScene scene;
    scene.environment.SetPreselectedVisualization({nullptr, scene.a.get()});
    EXPECT_EQ(scene.environment.GetPreSelectedObjects(), QSet<KEZVisObject *>({scene.a.get()}));
}

// --- The raw layer and the transaction ------------------------------------------

TEST(EnvironmentSelection, AdditionAndRemovalOfTheSameUnselectedObjectCommitNothing)
{
    SelectionScene scene(true);
    scene.environment.BeginSelection();
    scene.environment.AddSelectedVisualization(scene.a.get());
    scene.environment.RemoveSelectedVisualization(scene.a.get());
    scene.environment.EndSelection();
    EXPECT_EQ(scene.log.entries,
              QStringList({"env:BatchStarted", "client:BeginBatch", "env:BatchFinished", "client:EndBatch"}));
    EXPECT_EQ(scene.a->GetSelectionState(), KEZVisObject::NotSelected);
}

TEST(EnvironmentSelection, EndSelectionWithNothingPendingAndNoScopeDoesNothing)
{
    SelectionScene scene;
    scene.environment.EndSelection();
    EXPECT_TRUE(scene.log.entries.isEmpty());
    EXPECT_FALSE(scene.environment.IsBatch());
}

TEST(EnvironmentSelection, BeginSelectionTwiceOpensOneBatch)
{
    SelectionScene scene;
    scene.environment.BeginSelection();
    scene.environment.BeginSelection();
    EXPECT_TRUE(scene.environment.IsBatch());
    scene.environment.EndSelection();
    EXPECT_FALSE(scene.environment.IsBatch());
    EXPECT_EQ(scene.log.entries, QStringList({"env:BatchStarted", "env:BatchFinished"}));
}

TEST(EnvironmentSelection, BeginSelectionWithPendingModificationsRaisesAndKeepsThem)
{
    SelectionScene scene;
    scene.environment.BeginSelection();
    scene.environment.AddSelectedVisualization(scene.a.get());
    EXPECT_EQ(MessageOf([&]() { scene.environment.BeginSelection(); }), NotCommitted);
    EXPECT_TRUE(scene.environment.IsBatch());
    scene.environment.EndSelection();
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get()}));
    EXPECT_FALSE(scene.environment.IsBatch());
}

TEST(EnvironmentSelection, PublicOperationDuringCollectionRaises)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    scene.environment.AddSelectedVisualization(scene.a.get());
    EXPECT_EQ(MessageOf([&]() { scene.environment.AddToSelection(scene.b.get()); }), NotCommitted);
    EXPECT_EQ(MessageOf([&]() { scene.environment.SetSelection({scene.b.get()}); }), NotCommitted);
    scene.environment.EndSelection();
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get()}));
}

TEST(EnvironmentSelection, SetSelectedVisualizationCollectsBothDeltas)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    scene.environment.SetSelection({scene.a.get(), scene.b.get()});
    scene.log.Clear();
    scene.environment.BeginSelection();
    scene.environment.SetSelectedVisualization({scene.b.get(), scene.c.get()});
    scene.environment.EndSelection();
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "env:BatchStarted",
                                     "c:SelectionStateChanged(Selected)",
                                     "c:ChangeOccurred(8)",
                                     "a:SelectionStateChanged(NotSelected)",
                                     "a:ChangeOccurred(8)",
                                     "env:VisualizationSelectionChanged({c},{a})",
                                     "env:BatchFinished",
                                 }));
}

TEST(EnvironmentSelection, CollectingOperationsCheckNeitherTransactionNorFilter)
{
    SelectionScene scene;
    scene.InstallFilter(new SetFilter(true, {scene.a.get()}));
    scene.environment.AddSelectedVisualization(scene.a.get());  // refused by the filter, no transaction open
    scene.environment.EndSelection();
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get()}));
    EXPECT_EQ(scene.log.entries, QStringList({"a:SelectionStateChanged(Selected)", "a:ChangeOccurred(8)",
                                              "env:VisualizationSelectionChanged({a},{})"}));
}

TEST(EnvironmentSelection, RemovalOfAnUnselectedObjectIsDropped)
{
    SelectionScene scene;
    scene.environment.BeginSelection();
    scene.environment.AddSelectedVisualization(scene.a.get());
    scene.environment.RemoveSelectedVisualization(scene.b.get());
    scene.environment.EndSelection();
    EXPECT_EQ(scene.log.entries, QStringList({"env:BatchStarted", "a:SelectionStateChanged(Selected)",
                                              "a:ChangeOccurred(8)", "env:VisualizationSelectionChanged({a},{})",
                                              "env:BatchFinished"}));
}

TEST(EnvironmentSelection, StateListenersSeeTheSelectionOfTheirStep)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    scene.environment.AddToSelection(scene.a.get());
    QStringList seen;
    const auto record = [&](const QString &who) {
        seen.append(who + Names(scene.environment.GetVisualizationSelection()));
    };
    QObject::connect(scene.b.get(), &KEZVisObject::SelectionStateChanged, scene.b.get(), [&]() { record("b"); });
    QObject::connect(scene.a.get(), &KEZVisObject::SelectionStateChanged, scene.a.get(), [&]() { record("a"); });
    QObject::connect(&scene.environment, &KEZVisEnvironment::VisualizationSelectionChanged, &scene.environment,
                     [&]() { record("env"); });
    scene.environment.BeginSelection();
    scene.environment.AddSelectedVisualization(scene.b.get());
    scene.environment.RemoveSelectedVisualization(scene.a.get());
    scene.environment.EndSelection();
    EXPECT_EQ(seen, QStringList({"b{a}", "a{a,b}", "env{b}"}));
}

TEST(EnvironmentSelection, AddToSelectionFromASelectionChangedHandlerRaises)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    QString message;
    QObject::connect(&scene.environment, &KEZVisEnvironment::VisualizationSelectionChanged, &scene.environment,
                     [&]() { message = MessageOf([&]() { scene.environment.AddToSelection(scene.b.get()); }); });
    EXPECT_TRUE(scene.environment.AddToSelection(scene.a.get()));
    EXPECT_EQ(message, NotCommitted);
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get()}));
    EXPECT_EQ(scene.log.entries.last(), "env:BatchFinished");
    EXPECT_FALSE(scene.environment.IsBatch());
}

TEST(EnvironmentSelection, AddToSelectionFromAStateHandlerRaises)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    QString message;
    QObject::connect(scene.a.get(), &KEZVisObject::ChangeOccurred, scene.a.get(),
                     [&]() { message = MessageOf([&]() { scene.environment.RemoveFromSelection(scene.a.get()); }); });
    scene.environment.AddToSelection(scene.a.get());
    // RemoveFromSelection finds a not yet in the selection and does nothing; a
    // selection change in the handler does reach the guard:
    EXPECT_TRUE(message.isEmpty());
    QObject::disconnect(scene.a.get(), &KEZVisObject::ChangeOccurred, scene.a.get(), nullptr);
    QObject::connect(scene.b.get(), &KEZVisObject::ChangeOccurred, scene.b.get(),
                     [&]() { message = MessageOf([&]() { scene.environment.SetSelection({scene.c.get()}); }); });
    scene.environment.AddToSelection(scene.b.get());
    EXPECT_EQ(message, NotCommitted);
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get(), scene.b.get()}));
}

TEST(EnvironmentSelection, UncaughtExceptionOfAListenerEndsTheTransactionAndGoesOn)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    bool raise = true;
    QObject::connect(&scene.environment, &KEZVisEnvironment::VisualizationSelectionChanged, &scene.environment,
                     [&]() {
                         if (raise)
                             scene.environment.AddToSelection(scene.b.get());
                     });
    EXPECT_EQ(MessageOf([&]() { scene.environment.AddToSelection(scene.a.get()); }), NotCommitted);
    EXPECT_FALSE(scene.environment.IsBatch());
    EXPECT_EQ(scene.log.entries.last(), "env:BatchFinished");
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get()}));
    raise = false;
    EXPECT_TRUE(scene.environment.AddToSelection(scene.c.get()));  // the environment is usable again
}

TEST(EnvironmentSelection, BatchFinishedHandlerMayOpenAFreshTransaction)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    bool once = true;
    bool result = false;
    QObject::connect(&scene.environment, &KEZVisEnvironment::BatchFinished, &scene.environment, [&]() {
        if (once) {
            once = false;
            result = scene.environment.AddToSelection(scene.b.get());
        }
    });
    scene.environment.AddToSelection(scene.a.get());
    EXPECT_TRUE(result);
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get(), scene.b.get()}));
}

TEST(EnvironmentSelection, SelectionIgnoresSelectabilityVisibilityAndSelectionEnabled)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    scene.a->Hide();
    ASSERT_FALSE(scene.a->IsSelectable());
    ASSERT_FALSE(scene.environment.IsSelectionEnabled());
    EXPECT_TRUE(scene.environment.AddToSelection(scene.a.get()));
    scene.b->EnableSelection();
    scene.environment.AddToSelection(scene.b.get());
    scene.b->DisableSelection();
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get(), scene.b.get()}));
    EXPECT_EQ(scene.b->GetSelectionState(), KEZVisObject::Selected);
}

// --- SetSelectionFilter -------------------------------------------------------------

TEST(EnvironmentSelection, NewFilterDeselectsWhatItRefusesBeforeItIsAnnounced)
{
    SelectionScene scene(true);
    scene.InstallDefaultFilter();
    scene.environment.SetSelection({scene.a.get(), scene.b.get()});
    scene.log.Clear();
    scene.environment.SetSelectionFilter(new SetFilter(false, {scene.a.get()}));
    EXPECT_EQ(scene.log.entries, QStringList({
                                     "env:BatchStarted",
                                     "client:BeginBatch",
                                     "a:SelectionStateChanged(NotSelected)",
                                     "a:ChangeOccurred(8)",
                                     "client:OnObjectChanged(a,8)",
                                     "env:VisualizationSelectionChanged({},{a})",
                                     "client:OnVisualizationSelectionChanged({},{a})",
                                     "env:BatchFinished",
                                     "client:EndBatch",
                                     "env:SelectionFilterChanged",
                                 }));
    // The new filter is single-selection but the remaining selection isn't cut down.
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.b.get()}));
}

TEST(EnvironmentSelection, InstallingASingleSelectionFilterKeepsAMultipleSelection)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    scene.environment.SetSelection({scene.a.get(), scene.b.get()});
    scene.log.Clear();
    scene.environment.SetSelectionFilter(new SetFilter(false));
    EXPECT_EQ(scene.log.entries, QStringList({"env:BatchStarted", "env:BatchFinished", "env:SelectionFilterChanged"}));
    EXPECT_EQ(scene.environment.GetVisualizationSelection().size(), 2);
}

TEST(EnvironmentSelection, NullFilterInstallsTheDefaultAndAnnouncesIt)
{
    SelectionScene scene;
    QSignalSpy filterSpy(&scene.environment, &KEZVisEnvironment::SelectionFilterChanged);
    scene.environment.SetSelectionFilter(nullptr);
    ASSERT_EQ(filterSpy.count(), 1);
    auto *filter = filterSpy.at(0).at(0).value<KEZVisSelectionFilter *>();
    EXPECT_EQ(filter, scene.environment.GetSelectionFilter());
    EXPECT_NE(qobject_cast<KEZVisCompoundFilter *>(filter), nullptr);
}

TEST(EnvironmentSelection, ReplacedFilterIsDeletedAndTheLastDiesWithTheEnvironment)
{
    auto environment = std::make_unique<KEZVisEnvironment>();
    QPointer<KEZVisSelectionFilter> first(new SetFilter(true));
    QPointer<KEZVisSelectionFilter> second(new SetFilter(true));
    environment->SetSelectionFilter(first.data());
    environment->SetSelectionFilter(second.data());
    EXPECT_TRUE(first.isNull());
    EXPECT_FALSE(second.isNull());
    EXPECT_EQ(environment->GetSelectionFilter(), second.data());
    environment->SetSelectionFilter(second.data());  // installing the filter in use keeps it
    EXPECT_FALSE(second.isNull());
    environment.reset();
    EXPECT_TRUE(second.isNull());
}

TEST(EnvironmentSelection, SetSelectionFilterWhileModificationsArePendingRaisesWithTheFilterInstalled)
{
    SelectionScene scene;
    scene.environment.AddSelectedVisualization(scene.a.get());
    auto *filter = new SetFilter(true);
    QSignalSpy filterSpy(&scene.environment, &KEZVisEnvironment::SelectionFilterChanged);
    EXPECT_EQ(MessageOf([&]() { scene.environment.SetSelectionFilter(filter); }), NotCommitted);
    EXPECT_EQ(filterSpy.count(), 0);
    EXPECT_EQ(scene.environment.GetSelectionFilter(), filter);
    scene.environment.EndSelection();
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get()}));
}

TEST(EnvironmentSelection, SetSelectionFilterFromAFunctionInstallsAFunctionFilter)
{
    SelectionScene scene;
    KEZVisObject *refused = scene.b.get();
    scene.environment.SetSelectionFilter(false, [refused](const KEZVisObject *o) { return o != refused; });
    auto *filter = qobject_cast<KEZVisFunctionFilter *>(scene.environment.GetSelectionFilter());
    ASSERT_NE(filter, nullptr);
    EXPECT_FALSE(filter->IsMultiSelection());
    EXPECT_FALSE(scene.environment.AddToSelection(scene.b.get()));
    EXPECT_TRUE(scene.environment.AddToSelection(scene.a.get()));
}

TEST(EnvironmentSelection, EmptyFunctionFilterRaisesBadFunctionCallAndChangesNothing)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    scene.environment.AddToSelection(scene.a.get());
    EXPECT_THROW(scene.environment.SetSelectionFilter(true, std::function<bool(const KEZVisObject *)>()),
                 std::bad_function_call);
    EXPECT_FALSE(scene.environment.IsBatch());
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.a.get()}));
    scene.log.Clear();
    EXPECT_THROW(scene.environment.AddToSelection(scene.b.get()), std::bad_function_call);
    EXPECT_THROW(scene.environment.SetSelection({scene.b.get()}), std::bad_function_call);
    EXPECT_TRUE(scene.log.entries.isEmpty());
    scene.environment.RemoveFromSelection(scene.a.get());  // needs no filter, still works
    EXPECT_TRUE(scene.environment.GetVisualizationSelection().isEmpty());
}

// --- Objects that die ----------------------------------------------------------------

TEST(EnvironmentSelection, ObjectDestroyedWhileSelectedAndPreselectedLeavesBothWithoutSelectionSignal)
{
    SelectionScene scene(true);
    scene.InstallDefaultFilter();
    scene.environment.SetSelection({scene.a.get(), scene.b.get()});
    scene.environment.SetPreselectedVisualization({scene.a.get()});
    scene.log.Clear();
    scene.a.reset();
    EXPECT_EQ(scene.log.entries, QStringList({"env:ObjectRemoved(a)", "client:OnObjectRemoved(a)"}));
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.b.get()}));
    EXPECT_TRUE(scene.environment.GetPreSelectedObjects().isEmpty());
    EXPECT_EQ(scene.environment.GetVirtualObjects(),
              QList<KEZVisVirtualObject *>({scene.b.get(), scene.c.get()}));
}

TEST(EnvironmentSelection, ObjectDestroyedWhilePendingLeavesThePendingSets)
{
    SelectionScene scene;
    scene.environment.BeginSelection();
    scene.environment.AddSelectedVisualization(scene.a.get());
    scene.environment.AddSelectedVisualization(scene.b.get());
    scene.a.reset();
    scene.environment.EndSelection();
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.b.get()}));
    EXPECT_EQ(scene.log.entries.last(), "env:BatchFinished");
}

TEST(EnvironmentSelection, ObjectDestroyedByAStateListenerDuringTheCommitIsSkipped)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    // Whichever of a and b changes state first destroys the other.
    QObject::connect(scene.a.get(), &KEZVisObject::SelectionStateChanged, scene.a.get(), [&]() { scene.b.reset(); });
    QObject::connect(scene.b.get(), &KEZVisObject::SelectionStateChanged, scene.b.get(), [&]() { scene.a.reset(); });
    EXPECT_TRUE(scene.environment.SetSelection({scene.a.get(), scene.b.get()}));
    const QSet<KEZVisObject *> selection = scene.environment.GetVisualizationSelection();
    ASSERT_EQ(selection.size(), 1);
    KEZVisObject *survivor = scene.a ? static_cast<KEZVisObject *>(scene.a.get()) : scene.b.get();
    ASSERT_NE(survivor, nullptr);
    EXPECT_EQ(selection, QSet<KEZVisObject *>({survivor}));
    EXPECT_EQ(survivor->GetSelectionState(), KEZVisObject::Selected);
}

// The order within the additions and within the removals is unspecified; the
// environment visits them by address, so that large selections walk memory in
// order. Pinned, so that a change of it is a conscious one.
TEST(EnvironmentSelection, StateSignalsOfOneGroupComeInOrderOfTheObjectsAddresses)
{
    KEZVisEnvironment environment;
    std::vector<std::unique_ptr<KEZVisVirtualObject>> objects;
    QList<KEZVisObject *> signalled;
    QSet<KEZVisObject *> all;
    for (int i = 0; i < 300; ++i) {
        objects.emplace_back(new KEZVisVirtualObject(&environment));
        KEZVisObject *object = objects.back().get();
        QObject::connect(object, &KEZVisObject::SelectionStateChanged, object,
                         [object, &signalled]() { signalled.append(object); });
        environment.AddVirtualObject(objects.back().get());
        all.insert(object);
    }
    const auto expectAscendingAddresses = [&signalled]() {
        ASSERT_EQ(signalled.size(), 300);
        for (qsizetype i = 1; i < signalled.size(); ++i)
            ASSERT_TRUE(std::less<KEZVisObject *>()(signalled.at(i - 1), signalled.at(i))) << "at " << i;
    };

    ASSERT_TRUE(environment.SetSelection(all));
    expectAscendingAddresses();
    signalled.clear();

    ASSERT_TRUE(environment.SetSelection({}));
    expectAscendingAddresses();
    for (const auto &object : objects)
        EXPECT_EQ(object->GetSelectionState(), KEZVisObject::NotSelected);
}

// Deaths during a commit are noticed for every object after them, not only
// for the next one.
TEST(EnvironmentSelection, ObjectsDestroyedByTheFirstStateListenerOfALargeCommitAreAllSkipped)
{
    KEZVisEnvironment environment;
    std::vector<std::unique_ptr<KEZVisVirtualObject>> objects;
    QSet<KEZVisObject *> all;
    for (int i = 0; i < 100; ++i) {
        objects.emplace_back(new KEZVisVirtualObject(&environment));
        environment.AddVirtualObject(objects.back().get());
        all.insert(objects.back().get());
    }
    int stateSignals = 0;
    bool destroyed = false;
    for (const auto &object : objects) {
        QObject::connect(object.get(), &KEZVisObject::SelectionStateChanged, object.get(), [&, self = object.get()]() {
            ++stateSignals;
            if (destroyed)
                return;
            destroyed = true;
            // Every other object with an odd index dies, wherever it lies.
            for (size_t i = 1; i < objects.size(); i += 2) {
                if (objects[i].get() != self)
                    objects[i].reset();
            }
        });
    }
    QSignalSpy changes(&environment, &KEZVisEnvironment::VisualizationSelectionChanged);
    ASSERT_TRUE(environment.SetSelection(all));

    int living = 0;
    for (const auto &object : objects) {
        if (!object)
            continue;
        ++living;
        EXPECT_EQ(object->GetSelectionState(), KEZVisObject::Selected);
    }
    EXPECT_EQ(stateSignals, living);
    EXPECT_EQ(environment.GetVisualizationSelection().size(), living);
    ASSERT_EQ(changes.count(), 1);
    // The set handed to listeners is the pending set at the end: the living objects only.
    EXPECT_EQ(changes.at(0).at(0).value<QSet<KEZVisObject *>>(), environment.GetVisualizationSelection());
}

// --- Members that die: the selection set catches up before anyone reads it ----

namespace {

// An environment with `count` listed objects, all of them selected.
struct SelectedScene
{
    explicit SelectedScene(int count)
    {
        QSet<KEZVisObject *> all;
        for (int i = 0; i < count; ++i) {
            objects.emplace_back(new KEZVisVirtualObject(&environment));
            environment.AddVirtualObject(objects.back().get());
            all.insert(objects.back().get());
        }
        environment.SetSelection(all);
    }
    // Destroys the objects at first, first + step, first + 2 step, ...
    void DestroyEvery(size_t first, size_t step)
    {
        for (size_t i = first; i < objects.size(); i += step)
            objects[i].reset();
    }
    QSet<KEZVisObject *> Living() const
    {
        QSet<KEZVisObject *> living;
        for (const auto &object : objects) {
            if (object)
                living.insert(object.get());
        }
        return living;
    }

    OpenEnvironment environment;
    std::vector<std::unique_ptr<KEZVisVirtualObject>> objects;
};

} // namespace

TEST(EnvironmentSelection, EveryMemberDestroyedLeavesAnEmptySelection)
{
    SelectedScene scene(1000);
    ASSERT_EQ(scene.environment.GetVisualizationSelection().size(), 1000);
    for (auto &object : scene.objects)
        object.reset();
    EXPECT_TRUE(scene.environment.GetVisualizationSelection().isEmpty());
    EXPECT_TRUE(scene.environment.GetVirtualObjects().isEmpty());
}

TEST(EnvironmentSelection, HalfTheMembersDestroyedLeaveTheOtherHalfSelected)
{
    SelectedScene scene(1000);
    scene.DestroyEvery(0, 2);
    EXPECT_EQ(scene.environment.GetVisualizationSelection().size(), 500);
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), scene.Living());
}

TEST(EnvironmentSelection, AFewMembersDestroyedLeaveTheRestSelected)
{
    SelectedScene scene(1000);
    scene.DestroyEvery(3, 100);
    EXPECT_EQ(scene.environment.GetVisualizationSelection().size(), 990);
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), scene.Living());
}

TEST(EnvironmentSelection, SelectionReadAfterEveryDeathLacksExactlyTheDead)
{
    SelectedScene scene(300);
    for (size_t i = scene.objects.size(); i-- > 0;) {
        scene.objects[i].reset();
        ASSERT_EQ(scene.environment.GetVisualizationSelection(), scene.Living()) << "after " << i;
    }
}

TEST(EnvironmentSelection, ListenerOfObjectRemovedSeesTheSelectionWithoutTheDyingObject)
{
    SelectedScene scene(10);
    KEZVisObject *dying = scene.objects[4].get();
    bool seen = false;
    bool stillSelected = true;
    QObject::connect(&scene.environment, &KEZVisEnvironment::ObjectRemoved, &scene.environment,
                     [&](KEZVisObject *object) {
                         seen = object == dying;
                         stillSelected = scene.environment.GetVisualizationSelection().contains(object);
                     });
    scene.objects[4].reset();
    EXPECT_TRUE(seen);
    EXPECT_FALSE(stillSelected);
    EXPECT_EQ(scene.environment.GetVisualizationSelection().size(), 9);
}

TEST(EnvironmentSelection, ObjectMadeAtTheAddressOfADeadMemberIsNotSelected)
{
    KEZVisEnvironment environment;
    KEZVisVirtualObject kept(&environment);
    environment.AddVirtualObject(&kept);
    alignas(KEZVisVirtualObject) unsigned char storage[sizeof(KEZVisVirtualObject)];
    auto *first = new (storage) KEZVisVirtualObject(&environment);
    environment.AddVirtualObject(first);
    ASSERT_TRUE(environment.SetSelection({first, &kept}));
    first->~KEZVisVirtualObject();

    auto *second = new (storage) KEZVisVirtualObject(&environment);
    ASSERT_EQ(static_cast<void *>(second), static_cast<void *>(first));
    environment.AddVirtualObject(second);
    EXPECT_EQ(environment.GetVisualizationSelection(), QSet<KEZVisObject *>({&kept}));
    EXPECT_EQ(second->GetSelectionState(), KEZVisObject::NotSelected);

    // Selected in its turn, it leaves the selection when it dies like any member.
    EXPECT_TRUE(environment.AddToSelection(second));
    EXPECT_EQ(environment.GetVisualizationSelection(), QSet<KEZVisObject *>({&kept, second}));
    second->~KEZVisVirtualObject();
    EXPECT_EQ(environment.GetVisualizationSelection(), QSet<KEZVisObject *>({&kept}));
}

TEST(EnvironmentSelection, ObjectRemovedFromTheEnvironmentThenDestroyedLeavesTheSelectionAlone)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    scene.environment.SetSelection({scene.a.get(), scene.b.get()});
    scene.environment.RemoveVirtualObject(scene.a.get());
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.b.get()}));
    scene.a.reset();
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.b.get()}));
    scene.b.reset();
    EXPECT_TRUE(scene.environment.GetVisualizationSelection().isEmpty());
}

// Listeners of the commit take pending additions out of the environment, one
// before its own turn and one after it; the commit puts both into the
// selection set all the same, and their deaths afterwards take them out again.
TEST(EnvironmentSelection, AdditionsRemovedFromTheEnvironmentDuringTheirCommitLeaveTheSelectionWhenTheyDie)
{
    SelectionScene scene;
    scene.InstallDefaultFilter();
    QObject::connect(scene.a.get(), &KEZVisObject::SelectionStateChanged, &scene.environment,
                     [&]() { scene.environment.RemoveVirtualObject(scene.b.get()); });
    QObject::connect(scene.b.get(), &KEZVisObject::SelectionStateChanged, &scene.environment,
                     [&]() { scene.environment.RemoveVirtualObject(scene.a.get()); });
    ASSERT_TRUE(scene.environment.SetSelection({scene.a.get(), scene.b.get(), scene.c.get()}));
    EXPECT_EQ(scene.environment.GetVisualizationSelection(),
              QSet<KEZVisObject *>({scene.a.get(), scene.b.get(), scene.c.get()}));
    EXPECT_EQ(scene.environment.GetVirtualObjects(), QList<KEZVisVirtualObject *>({scene.c.get()}));
    scene.a.reset();
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.b.get(), scene.c.get()}));
    scene.b.reset();
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), QSet<KEZVisObject *>({scene.c.get()}));
}

// The first state listener throws: the whole commit stays in the selection set
// without the remaining signals, and every member leaves it when it dies.
TEST(EnvironmentSelection, MembersCommittedPastAThrowingListenerLeaveTheSelectionWhenTheyDie)
{
    SelectedScene scene(0);
    QSet<KEZVisObject *> all;
    for (int i = 0; i < 50; ++i) {
        scene.objects.emplace_back(new KEZVisVirtualObject(&scene.environment));
        scene.environment.AddVirtualObject(scene.objects.back().get());
        all.insert(scene.objects.back().get());
        QObject::connect(scene.objects.back().get(), &KEZVisObject::SelectionStateChanged, &scene.environment,
                         []() { throw std::runtime_error("listener failed"); });
    }
    EXPECT_THROW(scene.environment.SetSelection(all), std::runtime_error);
    ASSERT_EQ(scene.environment.GetVisualizationSelection(), all);
    scene.DestroyEvery(0, 2);
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), scene.Living());
    for (auto &object : scene.objects)
        object.reset();
    EXPECT_TRUE(scene.environment.GetVisualizationSelection().isEmpty());
}

TEST(EnvironmentSelection, DeselectedObjectDestroyedLeavesTheSelectionAlone)
{
    SelectedScene scene(20);
    KEZVisObject *deselected = scene.objects[7].get();
    scene.environment.RemoveFromSelection(deselected);
    scene.objects[7].reset();
    EXPECT_EQ(scene.environment.GetVisualizationSelection().size(), 19);
    EXPECT_EQ(scene.environment.GetVisualizationSelection(), scene.Living());
}
