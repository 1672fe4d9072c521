// The private helpers for the flat arrays of the primitives that the library's tests cannot reach
// through the public API.
#include "KEZVisFlatArrays_p.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace {

// A value that tells every position of a block apart.
std::uint64_t Pattern(std::size_t i)
{
    return 0x9E3779B97F4A7C15ull * (i + 1);
}

TEST(FlatArraysTest, AdvisingHugePagesLeavesALargeArrayAndItsNeighboursAsTheyWere)
{
    // 12 MiB in one block; the advice is given for 8 MiB from an odd offset inside it, so that the
    // pages round the array must not change either.
    const std::size_t count = (std::size_t(12) << 20) / sizeof(std::uint64_t);
    std::unique_ptr<std::uint64_t[]> block(new std::uint64_t[count]);
    for (std::size_t i = 0; i < count; ++i)
        block[i] = Pattern(i);
    const std::size_t first = 1000;
    KEZVisFlatArrays::AdviseHugePages(block.get() + first, std::size_t(8) << 20);
    std::size_t changed = 0;
    for (std::size_t i = 0; i < count; ++i)
        changed += block[i] != Pattern(i) ? 1 : 0;
    EXPECT_EQ(changed, std::size_t(0));
    // The memory stays usable: writes land, and only where they are made.
    for (std::size_t i = 0; i < count; i += 4096)
        block[i] = 0;
    std::size_t zeroed = 0, kept = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (i % 4096 == 0)
            zeroed += block[i] == 0 ? 1 : 0;
        else
            kept += block[i] == Pattern(i) ? 1 : 0;
    }
    const std::size_t written = (count + 4095) / 4096;
    EXPECT_EQ(zeroed, written);
    EXPECT_EQ(kept, count - written);
}

TEST(FlatArraysTest, AdvisingHugePagesForASmallOrMissingArrayChangesNothing)
{
    std::vector<double> small(1000, 2.5);
    KEZVisFlatArrays::AdviseHugePages(small.data(), small.size() * sizeof(double));
    KEZVisFlatArrays::AdviseHugePages(nullptr, std::size_t(64) << 20);
    KEZVisFlatArrays::AdviseHugePages(small.data(), 0);
    for (double value : small)
        ASSERT_EQ(value, 2.5);
}

} // namespace
