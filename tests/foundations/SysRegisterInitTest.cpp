// Tests of KEZSysRegisterInit: a routine handed over once the family has
// started runs at once, inside the call.

#include <KEZSysRegisterInit.h>

#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

// Handed over by this program's static initialisation, the way a library of
// the family registers its start-up: KEZSystem has started by then.
bool routineRanDuringStaticInitialisation = false;
bool resultKeptByStaticInitialisation = false;
bool routineHadRunWhenTheCallReturned = false;

const bool registeredAtLoad = [] {
    resultKeptByStaticInitialisation = KEZSysRegisterInit([] { routineRanDuringStaticInitialisation = true; });
    routineHadRunWhenTheCallReturned = routineRanDuringStaticInitialisation;
    return true;
}();

} // namespace

TEST(SysRegisterInit, RoutineHandedOverAtLoadTimeHasRunAndTheCallAnsweredTrue)
{
    ASSERT_TRUE(registeredAtLoad);
    EXPECT_TRUE(resultKeptByStaticInitialisation);
    EXPECT_TRUE(routineRanDuringStaticInitialisation);
    EXPECT_TRUE(routineHadRunWhenTheCallReturned);
}

TEST(SysRegisterInit, RunsTheRoutineAtOnceAndAnswersTrue)
{
    int runs = 0;
    EXPECT_TRUE(KEZSysRegisterInit([&runs] { ++runs; }));
    EXPECT_EQ(runs, 1);
}

TEST(SysRegisterInit, RunsTheRoutineOnTheCallingThread)
{
    QThread *ranOn = nullptr;
    EXPECT_TRUE(KEZSysRegisterInit([&ranOn] { ranOn = QThread::currentThread(); }));
    EXPECT_EQ(ranOn, QThread::currentThread());
}

TEST(SysRegisterInit, AnswersFalseForAnEmptyRoutine)
{
    EXPECT_FALSE(KEZSysRegisterInit(std::function<void()>()));
}

TEST(SysRegisterInit, RunsEachRoutineOncePerCall)
{
    int runs = 0;
    const std::function<void()> routine = [&runs] { ++runs; };
    EXPECT_TRUE(KEZSysRegisterInit(routine));
    EXPECT_TRUE(KEZSysRegisterInit(routine));
    EXPECT_EQ(runs, 2);
}

TEST(SysRegisterInit, ARoutineMayRegisterAnother)
{
    std::vector<int> order;
    bool innerResult = false;
    EXPECT_TRUE(KEZSysRegisterInit([&] {
        order.push_back(1);
        innerResult = KEZSysRegisterInit([&] { order.push_back(2); });
        order.push_back(3);
    }));
    EXPECT_TRUE(innerResult);
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST(SysRegisterInit, AnExceptionOfTheRoutinePassesToTheCaller)
{
    EXPECT_THROW(KEZSysRegisterInit([] { throw std::runtime_error("failed"); }), std::runtime_error);
    // The registration still works afterwards.
    bool ran = false;
    EXPECT_TRUE(KEZSysRegisterInit([&ran] { ran = true; }));
    EXPECT_TRUE(ran);
}

TEST(SysRegisterInit, MayBeCalledFromSeveralThreadsAtOnce)
{
    std::atomic<int> runs{0};
    std::atomic<int> trueAnswers{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 250; ++i) {
                if (KEZSysRegisterInit([&runs] { ++runs; }))
                    ++trueAnswers;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(runs.load(), 1000);
    EXPECT_EQ(trueAnswers.load(), 1000);
}
