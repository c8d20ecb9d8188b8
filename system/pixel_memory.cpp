// SPDX-License-Identifier: MIT
#include "system/pixel_memory.h"

#if defined(__GLIBC__)
#include <malloc.h>
#endif
#if defined(__linux__)
#include <sys/mman.h>
#include <unistd.h>

#include <bit>
#include <cstdint>
#endif

namespace pixel_memory {

void RetainFreedMemory() {
#if defined(__GLIBC__)
    // More than the size of a whole sensor dump, and the most that the allocator accepts on 64 bits.
    constexpr int threshold = 32 * 1024 * 1024;
    constexpr int trim_threshold = 256 * 1024 * 1024;
    (void)::mallopt(M_MMAP_THRESHOLD, threshold);
    (void)::mallopt(M_TRIM_THRESHOLD, trim_threshold);
#endif
}

void AdviseLargePages([[maybe_unused]] const void* memory, [[maybe_unused]] std::size_t bytes) {
#if defined(__linux__)
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto begin = std::bit_cast<std::uintptr_t>(memory);
    const auto end = begin + bytes;
    const auto first_page = (begin + page - 1) / page * page;
    if (first_page < end) {
        // This is only advice: a refusal costs nothing but time.
        (void)::madvise(std::bit_cast<void*>(first_page), end - first_page, MADV_HUGEPAGE);
    }
#endif
}

}  // namespace pixel_memory
