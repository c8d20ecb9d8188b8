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

namespace {

/// Asks the system to use large pages for the whole pages in the reserved range of `buffer`.
void AdviseLargePages([[maybe_unused]] const std::vector<Pixel>& buffer) {
#if defined(__linux__)
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto begin = std::bit_cast<std::uintptr_t>(buffer.data());
    const auto end = begin + buffer.capacity() * sizeof(Pixel);
    const auto first_page = (begin + page - 1) / page * page;
    if (first_page < end) {
        // This is only advice: a refusal costs nothing but time.
        (void)::madvise(std::bit_cast<void*>(first_page), end - first_page, MADV_HUGEPAGE);
    }
#endif
}

}  // namespace

void RetainFreedMemory() {
#if defined(__GLIBC__)
    // More than the size of a whole sensor dump, and the most that the allocator accepts on 64 bits.
    constexpr int threshold = 32 * 1024 * 1024;
    constexpr int trim_threshold = 256 * 1024 * 1024;
    (void)::mallopt(M_MMAP_THRESHOLD, threshold);
    (void)::mallopt(M_TRIM_THRESHOLD, trim_threshold);
#endif
}

void Reserve(std::vector<Pixel>& buffer, std::size_t words) {
    if (buffer.capacity() < words) {
        buffer.reserve(words);
        AdviseLargePages(buffer);
    }
}

void Resize(std::vector<Pixel>& buffer, std::size_t words) {
    Reserve(buffer, words);
    buffer.resize(words);
}

}  // namespace pixel_memory
