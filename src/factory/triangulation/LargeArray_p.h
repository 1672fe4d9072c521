// Vectors for the triangulator's large arrays.
#ifndef KEZ_TRIANGULATION_LARGE_ARRAY_P_H
#define KEZ_TRIANGULATION_LARGE_ARRAY_P_H

#include <cstddef>
#include <new>
#include <vector>

namespace p2t {
namespace detail {

// Memory for LargeArrayAllocator: aligned to 2 MiB, released with FreeLarge (of the same size).
void *AllocateLarge(std::size_t bytes);
void FreeLarge(void *p, std::size_t bytes);

// While an object of this class lives, the large arrays that the thread frees are kept for its next
// large arrays instead of going back to the system: a triangulation frees its sorting buffers and
// allocates its triangles, and a reused array costs no fresh pages, which the kernel would have to
// fault in and clear. An array is taken where it is at least as large as the one asked for, and its
// part beyond is given back at once. Where none is large enough, every kept array is given back
// before fresh memory is mapped, so the thread's peak of memory stays what it would be without the
// recycling. At most 16 arrays are kept; further ones go back at once. The outermost scope gives back
// what is still kept when it ends. Scopes nest and belong to their thread; they must end in the
// reverse order of their start.
class LargeArrayRecycling
{
public:
    LargeArrayRecycling();
    ~LargeArrayRecycling();
    LargeArrayRecycling(const LargeArrayRecycling &) = delete;
    LargeArrayRecycling &operator=(const LargeArrayRecycling &) = delete;

    // Whether this build keeps arrays at all: not where large arrays come from operator new (under
    // AddressSanitizer, which then watches them, and off Linux).
    static bool Recycles();
    // How many arrays the thread keeps for reuse now, and how many bytes they map.
    static std::size_t KeptArrays();
    static std::size_t KeptBytes();
};

// Allocates large arrays (4 MiB and more) on 2 MiB boundaries and asks the kernel for huge pages
// there, where it offers them on request: the sweep and the walks along constrained edges reach all
// over the triangle pool and the vertices, and with small pages most of those reaches also miss the
// address translation cache. Smaller arrays come from operator new.
template <typename T>
struct LargeArrayAllocator
{
    using value_type = T;

    LargeArrayAllocator() = default;
    template <typename U>
    LargeArrayAllocator(const LargeArrayAllocator<U> &) { }

    T *allocate(std::size_t n)
    {
        if (n > std::size_t(-1) / sizeof(T))
            throw std::bad_alloc();
        const std::size_t bytes = n * sizeof(T);
        if (bytes < kLargeBytes)
            return static_cast<T *>(::operator new(bytes));
        return static_cast<T *>(AllocateLarge(bytes));
    }
    void deallocate(T *p, std::size_t n)
    {
        if (n * sizeof(T) < kLargeBytes)
            ::operator delete(p);
        else
            FreeLarge(p, n * sizeof(T));
    }

    template <typename U>
    bool operator==(const LargeArrayAllocator<U> &) const { return true; }
    template <typename U>
    bool operator!=(const LargeArrayAllocator<U> &) const { return false; }

    static constexpr std::size_t kLargeBytes = std::size_t(4) << 20;
};

// A vector whose storage, once large, comes on huge pages: fresh memory costs a page fault per page
// on first touch, and a run over a million points fills some hundred megabytes.
template <typename T>
using LargeVector = std::vector<T, LargeArrayAllocator<T>>;

} // namespace detail
} // namespace p2t

#endif
