// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_PIXEL_MEMORY_H
#define VELMARCON_SYSTEM_PIXEL_MEMORY_H

#include <cstddef>
#include <vector>

#include "base/pixel.h"

/// Image-sized buffers without the cost of fresh memory, which is several times that of copying an image: for
/// the system, providing 21 MB in pages of 4 KB takes longer than reading them. None of this changes a
/// result; on a system without the means, nothing happens.
namespace pixel_memory {

/// Makes the allocator keep the freed buffers of one image for the next. Called once, at start.
void RetainFreedMemory();

/// Gives `buffer` room for `words`, in large pages where the system has them. A buffer that has the room
/// keeps its memory.
void Reserve(std::vector<Pixel>& buffer, std::size_t words);

/// Resizes `buffer` to `words`, using Reserve. It keeps its values; new ones are 0.
void Resize(std::vector<Pixel>& buffer, std::size_t words);

}  // namespace pixel_memory

#endif  // VELMARCON_SYSTEM_PIXEL_MEMORY_H
