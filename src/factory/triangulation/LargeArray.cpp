#include "LargeArray_p.h"

#include <cstdlib>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace p2t {
namespace detail {

void *AllocateLarge(std::size_t bytes)
{
    constexpr std::size_t kHugePage = std::size_t(2) << 20;
#if defined(__linux__)
    void *p = nullptr;
    const std::size_t rounded = (bytes + kHugePage - 1) / kHugePage * kHugePage;
    if (posix_memalign(&p, kHugePage, rounded) != 0)
        throw std::bad_alloc();
#if defined(MADV_HUGEPAGE)
    madvise(p, rounded, MADV_HUGEPAGE); // a hint: without huge pages everything works the same
#endif
    return p;
#else
    (void)kHugePage;
    return ::operator new(bytes);
#endif
}

void FreeLarge(void *p)
{
#if defined(__linux__)
    std::free(p);
#else
    ::operator delete(p);
#endif
}

} // namespace detail
} // namespace p2t
