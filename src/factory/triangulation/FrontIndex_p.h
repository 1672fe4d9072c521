// Ordered set of small integer keys with fast predecessor queries.
#ifndef KEZ_TRIANGULATION_FRONT_INDEX_P_H
#define KEZ_TRIANGULATION_FRONT_INDEX_P_H

#include <cstdint>
#include <vector>

namespace p2t {
namespace detail {

// A set of keys in [0, size) kept as a tree of 64-bit words: level 0 has one bit a key, each higher
// level one bit a non-empty word of the level below. Insert, erase and predecessor take a handful
// of word operations each (four levels cover sixteen million keys). The advancing front keeps its
// vertices here under their rank in x, so that locating the front edge above which a new point lies
// costs the same however long and jagged the front is.
class FrontIndex
{
public:
    void Reset(int size)
    {
        m_levels.clear();
        int count = size > 0 ? size : 1;
        do {
            count = (count + 63) / 64;
            m_levels.emplace_back(static_cast<std::size_t>(count), 0);
        } while (count > 1);
    }

    void Insert(int key)
    {
        for (auto &level : m_levels) {
            std::uint64_t &word = level[static_cast<std::size_t>(key >> 6)];
            const bool wasEmpty = word == 0;
            word |= std::uint64_t(1) << (key & 63);
            if (!wasEmpty)
                return;
            key >>= 6;
        }
    }

    void Erase(int key)
    {
        for (auto &level : m_levels) {
            std::uint64_t &word = level[static_cast<std::size_t>(key >> 6)];
            word &= ~(std::uint64_t(1) << (key & 63));
            if (word != 0)
                return;
            key >>= 6;
        }
    }

    // The largest key in the set that is smaller than key, or -1.
    int Predecessor(int key) const
    {
        const int levels = static_cast<int>(m_levels.size());
        for (int level = 0; level < levels; ++level) {
            const int wordIndex = key >> 6;
            const std::uint64_t below = m_levels[static_cast<std::size_t>(level)]
                                                [static_cast<std::size_t>(wordIndex)]
                                        & ((std::uint64_t(1) << (key & 63)) - 1);
            if (below != 0) {
                int found = wordIndex * 64 + HighestBit(below);
                for (int down = level - 1; down >= 0; --down) {
                    const std::uint64_t word = m_levels[static_cast<std::size_t>(down)]
                                                       [static_cast<std::size_t>(found)];
                    found = found * 64 + HighestBit(word);
                }
                return found;
            }
            key = wordIndex;
        }
        return -1;
    }

private:
    static int HighestBit(std::uint64_t word)
    {
#if defined(__GNUC__) || defined(__clang__)
        return 63 - __builtin_clzll(word);
#else
        int bit = 0;
        for (int step = 32; step > 0; step /= 2) {
            if (word >> step) {
                word >>= step;
                bit += step;
            }
        }
        return bit;
#endif
    }

    std::vector<std::vector<std::uint64_t>> m_levels;
};

} // namespace detail
} // namespace p2t

#endif
