#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace tgp {

// An allocator for arrays that may reach hundreds of megabytes (the segments of a loop of millions
// of vertices): a block of 4 MB or more is aligned to 2 MB and marked for transparent huge pages,
// so that the kernel fills it with a few hundred large pages instead of tens of thousands of small
// ones (each small page is a fault; faults were a third of building a loop of 10^6 vertices). Smaller
// blocks, and systems without the advice, get ordinary memory.
template <class T>
struct LargeBlockAllocator {
    using value_type = T;

    LargeBlockAllocator() = default;
    template <class U>
    LargeBlockAllocator(const LargeBlockAllocator<U>&) noexcept {}

    T* allocate(std::size_t n) {
        if (n > std::size_t(-1) / sizeof(T)) throw std::bad_alloc();
        const std::size_t bytes = n * sizeof(T);
#if defined(__linux__) && defined(MADV_HUGEPAGE)
        if (bytes >= kLargeBlock) {
            const std::size_t rounded = (bytes + kHugePage - 1) / kHugePage * kHugePage;
            void* memory = std::aligned_alloc(kHugePage, rounded);
            if (!memory) throw std::bad_alloc();
            madvise(memory, rounded, MADV_HUGEPAGE);
            return static_cast<T*>(memory);
        }
#endif
        return static_cast<T*>(::operator new(bytes));
    }

    void deallocate(T* p, std::size_t n) noexcept {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
        if (n * sizeof(T) >= kLargeBlock) {
            std::free(p);
            return;
        }
#endif
        (void)n;
        ::operator delete(p);
    }

    template <class U>
    bool operator==(const LargeBlockAllocator<U>&) const noexcept {
        return true;
    }

  private:
    static constexpr std::size_t kHugePage = std::size_t(2) << 20;
    static constexpr std::size_t kLargeBlock = std::size_t(4) << 20;
};

}  // namespace tgp
