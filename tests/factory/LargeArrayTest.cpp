// The triangulator's large arrays and the recycling of their memory within a scope.
#include "triangulation/CDT.h"
#include "triangulation/LargeArray_p.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <memory>
#include <thread>
#include <vector>

namespace {

using p2t::detail::LargeArrayRecycling;
using p2t::detail::LargeVector;

constexpr std::size_t kMiB = std::size_t(1) << 20;

// A vector of ints of the given size in MiB, every element set to value.
LargeVector<int> Filled(std::size_t mebibytes, int value)
{
    return LargeVector<int>(mebibytes * kMiB / sizeof(int), value);
}

std::size_t CountOf(const LargeVector<int> &values, int value)
{
    std::size_t count = 0;
    for (const int v : values)
        count += v == value ? 1 : 0;
    return count;
}

TEST(LargeArrayTest, WithoutAScopeNothingIsKept)
{
    { const LargeVector<int> array = Filled(8, 1); }
    EXPECT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(0));
    EXPECT_EQ(LargeArrayRecycling::KeptBytes(), std::size_t(0));
}

TEST(LargeArrayTest, SmallArraysAreNeverKept)
{
    const LargeArrayRecycling recycling;
    { const LargeVector<int> array = Filled(1, 1); }
    EXPECT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(0));
}

TEST(LargeArrayTest, AFreedArrayServesTheNextOneOfItsSizeWithTheNewValues)
{
    const LargeArrayRecycling recycling;
    const int *first = nullptr;
    {
        const LargeVector<int> array = Filled(8, 1);
        first = array.data();
    }
    if (!LargeArrayRecycling::Recycles()) {
        EXPECT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(0));
        return;
    }
    EXPECT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(1));
    EXPECT_EQ(LargeArrayRecycling::KeptBytes(), 8 * kMiB);
    const LargeVector<int> again = Filled(8, 2);
    EXPECT_EQ(again.data(), first);
    EXPECT_EQ(CountOf(again, 2), again.size());
    EXPECT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(0));
}

TEST(LargeArrayTest, ASmallerArrayTakesTheSmallestThatHoldsIt)
{
    if (!LargeArrayRecycling::Recycles())
        GTEST_SKIP() << "large arrays come from operator new in this build";
    const LargeArrayRecycling recycling;
    const int *middle = nullptr;
    {
        const LargeVector<int> large = Filled(16, 1);
        const LargeVector<int> medium = Filled(10, 1);
        const LargeVector<int> small = Filled(5, 1);
        middle = medium.data();
    }
    ASSERT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(3));
    ASSERT_EQ(LargeArrayRecycling::KeptBytes(), 31 * kMiB);
    // 6 MiB fit in the 10 MiB array and the 16 MiB one; the 10 MiB one serves, and its last 4 MiB go
    // back to the system at once.
    LargeVector<int> taken = Filled(6, 3);
    EXPECT_EQ(taken.data(), middle);
    EXPECT_EQ(CountOf(taken, 3), taken.size());
    EXPECT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(2));
    EXPECT_EQ(LargeArrayRecycling::KeptBytes(), 21 * kMiB);
    // Freed again, it is kept at the size it has now.
    LargeVector<int>().swap(taken);
    EXPECT_EQ(LargeArrayRecycling::KeptBytes(), 27 * kMiB);
}

TEST(LargeArrayTest, AnArrayLargerThanAnyKeptOneGivesAllBackFirst)
{
    if (!LargeArrayRecycling::Recycles())
        GTEST_SKIP() << "large arrays come from operator new in this build";
    const LargeArrayRecycling recycling;
    { const LargeVector<int> a = Filled(8, 1), b = Filled(6, 1); }
    ASSERT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(2));
    const LargeVector<int> larger = Filled(12, 4);
    EXPECT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(0));
    EXPECT_EQ(LargeArrayRecycling::KeptBytes(), std::size_t(0));
    EXPECT_EQ(CountOf(larger, 4), larger.size());
}

TEST(LargeArrayTest, OnlyTheOutermostScopeGivesBackWhatIsKept)
{
    if (!LargeArrayRecycling::Recycles())
        GTEST_SKIP() << "large arrays come from operator new in this build";
    {
        const LargeArrayRecycling outer;
        {
            const LargeArrayRecycling inner;
            { const LargeVector<int> array = Filled(8, 1); }
            EXPECT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(1));
        }
        EXPECT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(1));
    }
    EXPECT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(0));
    // Freed outside any scope, an array goes back at once again.
    { const LargeVector<int> array = Filled(8, 1); }
    EXPECT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(0));
}

TEST(LargeArrayTest, BeyondSixteenKeptArraysFurtherOnesGoBackAtOnce)
{
    if (!LargeArrayRecycling::Recycles())
        GTEST_SKIP() << "large arrays come from operator new in this build";
    const LargeArrayRecycling recycling;
    {
        std::vector<LargeVector<int>> arrays;
        for (int k = 0; k < 20; ++k)
            arrays.push_back(Filled(4, k));
    }
    EXPECT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(16));
    EXPECT_EQ(LargeArrayRecycling::KeptBytes(), 16 * 4 * kMiB);
}

TEST(LargeArrayTest, ScopesBelongToTheirThread)
{
    if (!LargeArrayRecycling::Recycles())
        GTEST_SKIP() << "large arrays come from operator new in this build";
    const LargeArrayRecycling recycling;
    std::size_t keptByOther = 99;
    std::thread other([&keptByOther] {
        { const LargeVector<int> array = Filled(8, 1); }
        keptByOther = LargeArrayRecycling::KeptArrays();
    });
    other.join();
    EXPECT_EQ(keptByOther, std::size_t(0));
    EXPECT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(0));
}

// A triangulation large enough for large arrays leaves nothing kept behind, and triangulates as one
// that runs inside a caller's scope, where its freed arrays serve the caller's next ones.
TEST(LargeArrayTest, ATriangulationGivesBackItsArraysAndMatchesOneInsideAScope)
{
    const int count = 300000;
    std::vector<std::unique_ptr<p2t::Point>> owned;
    std::vector<p2t::Point *> ring;
    const double pi = std::acos(-1.0);
    for (int k = 0; k < count; ++k) {
        const double angle = 2.0 * pi * k / count;
        owned.push_back(std::make_unique<p2t::Point>(2.0 * std::cos(angle), std::sin(angle)));
        ring.push_back(owned.back().get());
    }
    std::vector<p2t::Point *> outside, inside;
    {
        p2t::CDT cdt(ring);
        cdt.Triangulate();
        for (p2t::Triangle *t : cdt.GetTriangles()) {
            for (int i = 0; i < 3; ++i)
                outside.push_back(t->GetPoint(i));
        }
    }
    EXPECT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(0));
    {
        const LargeArrayRecycling recycling;
        {
            p2t::CDT cdt(ring);
            cdt.Triangulate();
            for (p2t::Triangle *t : cdt.GetTriangles()) {
                for (int i = 0; i < 3; ++i)
                    inside.push_back(t->GetPoint(i));
            }
        }
        EXPECT_EQ(LargeArrayRecycling::KeptArrays() > 0, LargeArrayRecycling::Recycles());
    }
    EXPECT_EQ(LargeArrayRecycling::KeptArrays(), std::size_t(0));
    EXPECT_EQ(outside.size(), std::size_t(3 * (count - 2)));
    EXPECT_EQ(inside, outside);
}

} // namespace
