// Tests of an object's death as seen by environments other than its own: an
// object may be selected, preselected or pending in any environment, and when
// it dies each of them lets go of it, without a signal, as its own environment
// does. No environment may keep the address of a dead object in its sets.

#include "SceneTestSupport.h"

#include "KEZVisEnvironment.h"
#include "KEZVisVirtualObject.h"

#include <QSet>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <memory>

using namespace SceneTest;

TEST(ObjectDeathElsewhere, ObjectSelectedInAnotherEnvironmentLeavesThatSelectionWhenItDies)
{
    KEZVisEnvironment own;
    KEZVisEnvironment other;
    KEZVisVirtualObject *object = MakeObject(QStringLiteral("o"), &own);
    ASSERT_TRUE(other.AddToSelection(object));
    ASSERT_EQ(other.GetVisualizationSelection().size(), 1);

    delete object;

    EXPECT_TRUE(other.GetVisualizationSelection().isEmpty());
}

TEST(ObjectDeathElsewhere, OtherEnvironmentCanChangeItsSelectionAfterTheDeath)
{
    KEZVisEnvironment own;
    KEZVisEnvironment other;
    std::unique_ptr<KEZVisVirtualObject> survivor(MakeObject(QStringLiteral("s"), &own));
    KEZVisVirtualObject *object = MakeObject(QStringLiteral("o"), &own);
    ASSERT_TRUE(other.SetSelection({object, survivor.get()}));
    delete object;

    SceneLog log;
    log.WatchEnvironment(&other, QStringLiteral("other"));
    // Deselecting everything touches every member; only the survivor is left to touch.
    ASSERT_TRUE(other.SetSelection({}));
    EXPECT_EQ(log.entries, QStringList({QStringLiteral("other:BatchStarted"),
                                        QStringLiteral("other:VisualizationSelectionChanged({},{s})"),
                                        QStringLiteral("other:BatchFinished")}));
    EXPECT_EQ(survivor->GetSelectionState(), KEZVisObject::NotSelected);
}

TEST(ObjectDeathElsewhere, ObjectWithoutEnvironmentLeavesTheSelectionItSitsIn)
{
    KEZVisEnvironment other;
    KEZVisVirtualObject *object = MakeObject(QStringLiteral("o"), nullptr);
    ASSERT_TRUE(other.AddToSelection(object));

    delete object;

    EXPECT_TRUE(other.GetVisualizationSelection().isEmpty());
}

TEST(ObjectDeathElsewhere, ObjectWhoseOwnEnvironmentDiedFirstStillLeavesTheOtherSelection)
{
    auto own = std::make_unique<KEZVisEnvironment>();
    KEZVisEnvironment other;
    KEZVisVirtualObject *object = MakeObject(QStringLiteral("o"), own.get());
    ASSERT_TRUE(other.AddToSelection(object));
    own.reset();

    delete object;

    EXPECT_TRUE(other.GetVisualizationSelection().isEmpty());
}

TEST(ObjectDeathElsewhere, ObjectSelectedInItsOwnAndAnotherEnvironmentLeavesBoth)
{
    KEZVisEnvironment own;
    KEZVisEnvironment other;
    KEZVisVirtualObject *object = MakeObject(QStringLiteral("o"), &own);
    ASSERT_TRUE(own.AddToSelection(object));
    ASSERT_TRUE(other.AddToSelection(object));

    delete object;

    EXPECT_TRUE(own.GetVisualizationSelection().isEmpty());
    EXPECT_TRUE(other.GetVisualizationSelection().isEmpty());
}

TEST(ObjectDeathElsewhere, ObjectSelectedInSeveralOtherEnvironmentsLeavesEachOfThem)
{
    KEZVisEnvironment first;
    KEZVisEnvironment second;
    KEZVisEnvironment third;
    KEZVisVirtualObject *object = MakeObject(QStringLiteral("o"), nullptr);
    ASSERT_TRUE(first.AddToSelection(object));
    ASSERT_TRUE(second.AddToSelection(object));
    ASSERT_TRUE(third.AddToSelection(object));
    // Leaving and joining again keeps one note of the environment.
    second.RemoveFromSelection(object);
    ASSERT_TRUE(second.AddToSelection(object));

    delete object;

    EXPECT_TRUE(first.GetVisualizationSelection().isEmpty());
    EXPECT_TRUE(second.GetVisualizationSelection().isEmpty());
    EXPECT_TRUE(third.GetVisualizationSelection().isEmpty());
}

TEST(ObjectDeathElsewhere, OtherEnvironmentEmitsNothingWhenTheObjectDies)
{
    KEZVisEnvironment own;
    KEZVisEnvironment other;
    KEZVisVirtualObject *object = MakeObject(QStringLiteral("o"), &own);
    ASSERT_TRUE(other.AddToSelection(object));
    SceneLog log;
    log.WatchEnvironment(&own, QStringLiteral("own"));
    log.WatchEnvironment(&other, QStringLiteral("other"));

    delete object;

    // Only the object's own environment reports the death.
    EXPECT_EQ(log.entries, QStringList({QStringLiteral("own:ObjectRemoved(o)")}));
}

TEST(ObjectDeathElsewhere, ObjectPreselectedInAnotherEnvironmentLeavesThatPreselectionWhenItDies)
{
    KEZVisEnvironment own;
    OpenEnvironment other;
    KEZVisVirtualObject *object = MakeObject(QStringLiteral("o"), &own);
    other.SetPreselectedVisualization({object});
    ASSERT_EQ(other.GetPreSelectedObjects().size(), 1);

    delete object;

    EXPECT_TRUE(other.GetPreSelectedObjects().isEmpty());
    // Clearing the preselection touches nothing dead.
    SceneLog log;
    log.WatchEnvironment(&other, QStringLiteral("other"));
    other.SetPreselectedVisualization({});
    EXPECT_TRUE(log.entries.isEmpty());
}

TEST(ObjectDeathElsewhere, PendingAdditionOfAnotherEnvironmentIsDroppedWhenTheObjectDies)
{
    KEZVisEnvironment own;
    OpenEnvironment other;
    KEZVisVirtualObject *object = MakeObject(QStringLiteral("o"), &own);
    other.BeginSelection();
    other.AddSelectedVisualization(object);

    delete object;

    SceneLog log;
    log.WatchEnvironment(&other, QStringLiteral("other"));
    other.EndSelection();
    // Nothing was left to commit: the scope closes without a selection signal.
    EXPECT_EQ(log.entries, QStringList({QStringLiteral("other:BatchFinished")}));
    EXPECT_TRUE(other.GetVisualizationSelection().isEmpty());
}

TEST(ObjectDeathElsewhere, PendingRemovalOfAnotherEnvironmentIsDroppedWhenTheObjectDies)
{
    KEZVisEnvironment own;
    OpenEnvironment other;
    KEZVisVirtualObject *object = MakeObject(QStringLiteral("o"), &own);
    other.BeginSelection();
    other.RemoveSelectedVisualization(object);

    delete object;

    // With the removal gone a new transaction may start.
    other.EndSelection();
    EXPECT_NO_THROW(other.BeginSelection());
    other.EndSelection();
}

TEST(ObjectDeathElsewhere, PendingAdditionsOfSetSelectedVisualizationAreDroppedWhenTheObjectDies)
{
    OpenEnvironment other;
    std::unique_ptr<KEZVisVirtualObject> survivor(MakeObject(QStringLiteral("s"), nullptr));
    KEZVisVirtualObject *object = MakeObject(QStringLiteral("o"), nullptr);
    other.BeginSelection();
    other.SetSelectedVisualization({object, survivor.get()});

    delete object;

    SceneLog log;
    log.WatchEnvironment(&other, QStringLiteral("other"));
    other.EndSelection();
    EXPECT_EQ(log.entries, QStringList({QStringLiteral("other:VisualizationSelectionChanged({s},{})"),
                                        QStringLiteral("other:BatchFinished")}));
    EXPECT_EQ(other.GetVisualizationSelection(), QSet<KEZVisObject *>({survivor.get()}));
}

TEST(ObjectDeathElsewhere, ObjectKilledByAListenerDuringAnotherEnvironmentsCommitIsLeftOut)
{
    KEZVisEnvironment own;
    KEZVisEnvironment other;
    std::unique_ptr<KEZVisVirtualObject> first(MakeObject(QStringLiteral("a"), &own));
    KEZVisVirtualObject *second = MakeObject(QStringLiteral("b"), &own);
    // When the commit has told a of its new state, a listener kills b: before
    // the commit reaches b or after, as the set's order has it. Either way b
    // must not stay in the selection nor be reported.
    bool killed = false;
    QObject::connect(first.get(), &KEZVisObject::ChangeOccurred, first.get(), [&]() {
        if (!killed) {
            killed = true;
            delete second;
        }
    });
    QSet<KEZVisObject *> reportedSelected;
    QObject::connect(&other, &KEZVisEnvironment::VisualizationSelectionChanged, &other,
                     [&](const QSet<KEZVisObject *> &selected, const QSet<KEZVisObject *> &) {
                         reportedSelected = selected;
                     });

    ASSERT_TRUE(other.SetSelection({first.get(), second}));

    EXPECT_TRUE(killed);
    EXPECT_EQ(other.GetVisualizationSelection(), QSet<KEZVisObject *>({first.get()}));
    EXPECT_EQ(reportedSelected, QSet<KEZVisObject *>({first.get()}));
}

TEST(ObjectDeathElsewhere, ObjectOutlivingTheOtherEnvironmentDiesQuietly)
{
    KEZVisEnvironment own;
    auto other = std::make_unique<KEZVisEnvironment>();
    KEZVisVirtualObject *object = MakeObject(QStringLiteral("o"), &own);
    ASSERT_TRUE(other->AddToSelection(object));
    other.reset();

    QSignalSpy removed(&own, &KEZVisEnvironment::ObjectRemoved);
    delete object;
    EXPECT_EQ(removed.count(), 1);
}

TEST(ObjectDeathElsewhere, ObjectReselectedInItsOwnEnvironmentByAListenerOfItsDeathLeavesAgain)
{
    // A listener of ObjectRemoved selects the dying object once more; the
    // selection must not keep it once the destructor is done.
    KEZVisEnvironment own;
    KEZVisVirtualObject *object = MakeObject(QStringLiteral("o"), &own);
    KEZVisObject *asObject = object;
    QObject::connect(&own, &KEZVisEnvironment::ObjectRemoved, &own, [&](KEZVisObject *removed) {
        if (removed == asObject)
            own.AddToSelection(removed);
    });

    delete object;

    EXPECT_TRUE(own.GetVisualizationSelection().isEmpty());
}
