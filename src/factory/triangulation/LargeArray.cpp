#include "LargeArray_p.h"

#include <cstdint>

// Under AddressSanitizer the arrays come from operator new, so that the sanitizer watches them too.
#if defined(__SANITIZE_ADDRESS__)
#define KEZ_LARGE_ARRAYS_FROM_NEW 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KEZ_LARGE_ARRAYS_FROM_NEW 1
#endif
#endif

#if defined(__linux__) && !defined(KEZ_LARGE_ARRAYS_FROM_NEW)
#define KEZ_LARGE_ARRAYS_MAPPED 1
#include <sys/mman.h>
#endif

namespace p2t {
namespace detail {

#if defined(KEZ_LARGE_ARRAYS_MAPPED)
namespace {

constexpr std::size_t kHugePage = std::size_t(2) << 20;
constexpr std::size_t kPage = 4096;

std::size_t MappedSize(std::size_t bytes)
{
    return (bytes + kPage - 1) / kPage * kPage;
}

// The arrays kept for reuse by the thread's recycling scopes, at most kMaxKept: their addresses and
// mapped sizes.
struct Kept
{
    void *address;
    std::size_t size;
};
constexpr std::size_t kMaxKept = 16;
struct RecyclingBin
{
    int depth = 0;
    std::size_t count = 0;
    Kept kept[kMaxKept];
};
thread_local RecyclingBin t_bin;

void ReleaseKept()
{
    for (std::size_t k = 0; k < t_bin.count; ++k)
        munmap(t_bin.kept[k].address, t_bin.kept[k].size);
    t_bin.count = 0;
}

// Takes the smallest kept array that holds size bytes and gives back its part beyond them; answers
// nullptr where none is large enough.
void *TakeKept(std::size_t size)
{
    std::size_t best = t_bin.count;
    for (std::size_t k = 0; k < t_bin.count; ++k) {
        const std::size_t candidate = t_bin.kept[k].size;
        if (candidate >= size && (best == t_bin.count || candidate < t_bin.kept[best].size))
            best = k;
    }
    if (best == t_bin.count)
        return nullptr;
    const Kept taken = t_bin.kept[best];
    t_bin.kept[best] = t_bin.kept[--t_bin.count];
    if (taken.size > size)
        munmap(static_cast<char *>(taken.address) + size, taken.size - size);
    return taken.address;
}

} // namespace

// Maps a huge page more than needed and unmaps what lies before the first 2 MiB boundary and after
// the array: the array starts on a boundary, and no more memory than it needs stays mapped (the tail
// beyond its last whole huge page gets small pages).
void *AllocateLarge(std::size_t bytes)
{
    const std::size_t size = MappedSize(bytes);
    if (size < bytes || size > ~std::size_t(0) - kHugePage)
        throw std::bad_alloc();
    if (t_bin.depth > 0) {
        if (void *reused = TakeKept(size))
            return reused;
        ReleaseKept();
    }
    const std::size_t reserved = size + kHugePage;
    void *mapped = mmap(nullptr, reserved, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED)
        throw std::bad_alloc();
    const auto begin = reinterpret_cast<std::uintptr_t>(mapped);
    const std::uintptr_t aligned = (begin + kHugePage - 1) / kHugePage * kHugePage;
    if (aligned > begin)
        munmap(mapped, aligned - begin);
    const std::uintptr_t end = begin + reserved;
    if (end > aligned + size)
        munmap(reinterpret_cast<void *>(aligned + size), end - (aligned + size));
#if defined(MADV_HUGEPAGE)
    madvise(reinterpret_cast<void *>(aligned), size, MADV_HUGEPAGE); // a hint: without huge pages all works the same
#endif
    return reinterpret_cast<void *>(aligned);
}

void FreeLarge(void *p, std::size_t bytes)
{
    if (!p)
        return;
    if (t_bin.depth > 0 && t_bin.count < kMaxKept) {
        t_bin.kept[t_bin.count++] = Kept{p, MappedSize(bytes)};
        return;
    }
    munmap(p, MappedSize(bytes));
}

LargeArrayRecycling::LargeArrayRecycling()
{
    ++t_bin.depth;
}

LargeArrayRecycling::~LargeArrayRecycling()
{
    if (--t_bin.depth == 0)
        ReleaseKept();
}

bool LargeArrayRecycling::Recycles()
{
    return true;
}

std::size_t LargeArrayRecycling::KeptArrays()
{
    return t_bin.count;
}

std::size_t LargeArrayRecycling::KeptBytes()
{
    std::size_t bytes = 0;
    for (std::size_t k = 0; k < t_bin.count; ++k)
        bytes += t_bin.kept[k].size;
    return bytes;
}
#else
void *AllocateLarge(std::size_t bytes)
{
    return ::operator new(bytes);
}

void FreeLarge(void *p, std::size_t)
{
    ::operator delete(p);
}

// Without mapped arrays (under AddressSanitizer, which then watches them, or off Linux) nothing is kept.
LargeArrayRecycling::LargeArrayRecycling() = default;
LargeArrayRecycling::~LargeArrayRecycling() = default;

bool LargeArrayRecycling::Recycles()
{
    return false;
}

std::size_t LargeArrayRecycling::KeptArrays()
{
    return 0;
}

std::size_t LargeArrayRecycling::KeptBytes()
{
    return 0;
}
#endif

} // namespace detail
} // namespace p2t
