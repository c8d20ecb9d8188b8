// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_PIXEL_MEMORY_H
#define VELMARCON_SYSTEM_PIXEL_MEMORY_H

#include <cstddef>
#include <vector>

/// Image-sized buffers without the cost of fresh memory, which is several times that of copying an image: for
/// the system, providing 21 MB in pages of 4 KB takes longer than reading them. None of this changes a
/// result; on a system without the means, nothing happens.
namespace pixel_memory {

/// Makes the allocator keep the freed buffers of one image for the next. Called once, at start.
void RetainFreedMemory();

/// Asks the system to use large pages for the whole pages in the `bytes` from `memory` on.
void AdviseLargePages(const void* memory, std::size_t bytes);

/// Gives `buffer` room for `count` values, in large pages where the system has them. A buffer that has the
/// room keeps its memory.
template <typename Value>
void Reserve(std::vector<Value>& buffer, std::size_t count) {
    if (buffer.capacity() < count) {
        buffer.reserve(count);
        AdviseLargePages(buffer.data(), buffer.capacity() * sizeof(Value));
    }
}

/// Resizes `buffer` to `count` values, using Reserve. It keeps its values; new ones are 0.
template <typename Value>
void Resize(std::vector<Value>& buffer, std::size_t count) {
    Reserve(buffer, count);
    buffer.resize(count);
}

}  // namespace pixel_memory

#endif  // VELMARCON_SYSTEM_PIXEL_MEMORY_H
