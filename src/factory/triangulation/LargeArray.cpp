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

} // namespace

// Maps a huge page more than needed and unmaps what lies before the first 2 MiB boundary and after
// the array: the array starts on a boundary, and no more memory than it needs stays mapped (the tail
// beyond its last whole huge page gets small pages).
void *AllocateLarge(std::size_t bytes)
{
    const std::size_t size = MappedSize(bytes);
    if (size < bytes || size > ~std::size_t(0) - kHugePage)
        throw std::bad_alloc();
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
    if (p)
        munmap(p, MappedSize(bytes));
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
#endif

} // namespace detail
} // namespace p2t
