// Tests of KEZVisEnvironmentBatchContext and
// KEZVisEnvironmentBatchSelectionContext: nesting, the order of signal and
// count, weak environments, and the failure of an unbalanced close.

#include "SceneTestSupport.h"

#include "KEZVisEnvironment.h"
#include "KEZVisEnvironmentBatchContext.h"
#include "KEZVisEnvironmentBatchSelectionContext.h"

#include "KEZSysException.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <type_traits>

using namespace SceneTest;

namespace {

// Ends the process with the message of the exception that terminated it, so
// that a death test can check which failure it was.
[[noreturn]] void TerminateWithMessage()
{
    try {
        if (std::current_exception())
            std::rethrow_exception(std::current_exception());
    } catch (const KEZSysException &exception) {
        std::fprintf(stderr, "terminated by: %s\n", qPrintable(exception.GetMessage()));
    } catch (...) {
        std::fprintf(stderr, "terminated by an unknown exception\n");
    }
    std::fflush(stderr);
    std::_Exit(3);
}

} // namespace

TEST(EnvironmentBatchContext, NestedContextsGiveOneStartAndOneFinishAndIsBatchIsFalseInBothHandlers)
{
    SceneLog log;
    KEZVisEnvironment environment;
    log.WatchEnvironment(&environment);
    QList<bool> batchInHandlers;
    QObject::connect(&environment, &KEZVisEnvironment::BatchStarted, &environment,
                     [&]() { batchInHandlers.append(environment.IsBatch()); });
    QObject::connect(&environment, &KEZVisEnvironment::BatchFinished, &environment,
                     [&]() { batchInHandlers.append(environment.IsBatch()); });
    {
        KEZVisEnvironmentBatchContext outer(&environment);
        EXPECT_TRUE(environment.IsBatch());
        {
            KEZVisEnvironmentBatchContext inner(&environment);
            EXPECT_TRUE(environment.IsBatch());
        }
        EXPECT_TRUE(environment.IsBatch());
    }
    EXPECT_FALSE(environment.IsBatch());
    EXPECT_EQ(log.entries, QStringList({"env:BatchStarted", "env:BatchFinished"}));
    EXPECT_EQ(batchInHandlers, QList<bool>({false, false}));
}

TEST(EnvironmentBatchContext, ContextOnNullEnvironmentDoesNothing)
{
    SceneLog log;
    KEZVisEnvironment bystander;
    log.WatchEnvironment(&bystander);
    {
        KEZVisEnvironmentBatchContext context(nullptr);
        KEZVisEnvironmentBatchContext copy(context);
        copy = context;
        KEZVisEnvironmentBatchSelectionContext selectionContext(nullptr);
    }
    EXPECT_TRUE(log.entries.isEmpty());
    EXPECT_FALSE(bystander.IsBatch());
}

TEST(EnvironmentBatchContext, ContextThatOutlivesItsEnvironmentDoesNothingOnDestruction)
{
    SceneLog log;
    auto environment = std::make_unique<KEZVisEnvironment>();
    log.WatchEnvironment(environment.get());
    auto context = std::make_unique<KEZVisEnvironmentBatchContext>(environment.get());
    auto selectionContext = std::make_unique<KEZVisEnvironmentBatchSelectionContext>(environment.get());
    EXPECT_TRUE(environment->IsBatch());
    EXPECT_TRUE(environment->IsBatchSelection());
    environment.reset();
    context.reset();
    selectionContext.reset();
    // The environment's death closed nothing, and the contexts reached nothing afterwards.
    EXPECT_EQ(log.entries, QStringList({"env:BatchStarted", "env:BatchSelectionStarted"}));
}

TEST(EnvironmentBatchContext, CopyOpensNothingAndClosesTheBatchEarly)
{
    SceneLog log;
    auto environment = std::make_unique<KEZVisEnvironment>();
    log.WatchEnvironment(environment.get());
    auto context = std::make_unique<KEZVisEnvironmentBatchContext>(environment.get());
    {
        KEZVisEnvironmentBatchContext copy(*context);
        EXPECT_TRUE(environment->IsBatch());
    }
    // The copy closed the one batch that the original opened.
    EXPECT_FALSE(environment->IsBatch());
    EXPECT_EQ(log.entries, QStringList({"env:BatchStarted", "env:BatchFinished"}));
    // With its environment gone the original does nothing when it dies.
    environment.reset();
    context.reset();
}

TEST(EnvironmentBatchContext, AssignmentOverwritesTheEnvironmentWithoutClosing)
{
    SceneLog log;
    auto first = std::make_unique<KEZVisEnvironment>();
    auto second = std::make_unique<KEZVisEnvironment>();
    log.WatchEnvironment(first.get(), "first");
    log.WatchEnvironment(second.get(), "second");
    {
        KEZVisEnvironmentBatchContext context(first.get());
        KEZVisEnvironmentBatchContext other(second.get());
        context = other;
        EXPECT_TRUE(first->IsBatch());
        EXPECT_TRUE(second->IsBatch());
        // Both contexts now close on second; let it go so that neither does.
        second.reset();
    }
    EXPECT_TRUE(first->IsBatch());  // the batch of first was never closed
    EXPECT_EQ(log.entries, QStringList({"first:BatchStarted", "second:BatchStarted"}));
}

TEST(EnvironmentBatchContext, DestructorsAreNoexcept)
{
    EXPECT_TRUE(std::is_nothrow_destructible_v<KEZVisEnvironmentBatchContext>);
    EXPECT_TRUE(std::is_nothrow_destructible_v<KEZVisEnvironmentBatchSelectionContext>);
}

TEST(EnvironmentBatchContextDeathTest, CopyingAContextAndDestroyingBothFailsWithBatchCountAlreadyZero)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            std::set_terminate(TerminateWithMessage);
            KEZVisEnvironment environment;
            {
                KEZVisEnvironmentBatchContext context(&environment);
                KEZVisEnvironmentBatchContext copy(context);
            }
            std::_Exit(0);
        },
        ::testing::ExitedWithCode(3), "terminated by: batch count already zero");
}

TEST(EnvironmentBatchContextDeathTest, CopyingASelectionContextAndDestroyingBothFailsWithItsOwnMessage)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            std::set_terminate(TerminateWithMessage);
            KEZVisEnvironment environment;
            {
                KEZVisEnvironmentBatchSelectionContext context(&environment);
                KEZVisEnvironmentBatchSelectionContext copy(context);
            }
            std::_Exit(0);
        },
        ::testing::ExitedWithCode(3), "terminated by: batch selection count already zero");
}

TEST(EnvironmentBatchSelectionContext, SelectionBatchesNestWithTheirOwnSignalsAndCount)
{
    SceneLog log;
    KEZVisEnvironment environment;
    log.WatchEnvironment(&environment);
    QList<bool> inHandlers;
    QObject::connect(&environment, &KEZVisEnvironment::BatchSelectionStarted, &environment,
                     [&]() { inHandlers.append(environment.IsBatchSelection()); });
    QObject::connect(&environment, &KEZVisEnvironment::BatchSelectionFinished, &environment,
                     [&]() { inHandlers.append(environment.IsBatchSelection()); });
    {
        KEZVisEnvironmentBatchSelectionContext outer(&environment);
        KEZVisEnvironmentBatchSelectionContext inner(&environment);
        EXPECT_TRUE(environment.IsBatchSelection());
        EXPECT_FALSE(environment.IsBatch());
    }
    EXPECT_FALSE(environment.IsBatchSelection());
    EXPECT_EQ(log.entries, QStringList({"env:BatchSelectionStarted", "env:BatchSelectionFinished"}));
    EXPECT_EQ(inHandlers, QList<bool>({false, false}));
}

TEST(EnvironmentBatchSelectionContext, BatchesAndSelectionBatchesAreIndependent)
{
    SceneLog log;
    KEZVisEnvironment environment;
    log.WatchEnvironment(&environment);
    {
        KEZVisEnvironmentBatchContext batch(&environment);
        EXPECT_FALSE(environment.IsBatchSelection());
        KEZVisEnvironmentBatchSelectionContext selection(&environment);
        EXPECT_TRUE(environment.IsBatch());
    }
    EXPECT_EQ(log.entries, QStringList({"env:BatchStarted", "env:BatchSelectionStarted", "env:BatchSelectionFinished",
                                        "env:BatchFinished"}));
}

TEST(EnvironmentBatchContext, ClientSeesOnlyTheOutermostBracket)
{
    SceneLog log;
    KEZVisEnvironment environment;
    RecordingClient client(&log);
    client.SetEnvironment(&environment);
    log.Clear();
    {
        KEZVisEnvironmentBatchContext outer(&environment);
        KEZVisEnvironmentBatchContext inner(&environment);
        KEZVisEnvironmentBatchSelectionContext selection(&environment);
    }
    EXPECT_EQ(log.entries, QStringList({"client:BeginBatch", "client:EndBatch"}));
}
