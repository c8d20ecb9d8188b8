// SPDX-License-Identifier: MIT
#include "input/raw_words.h"

#include <algorithm>

namespace raw_words {

bool Read(InputFile& file, std::uint64_t size, std::size_t first, std::span<Pixel> words) {
    const std::span bytes(reinterpret_cast<std::uint8_t*>(words.data()), words.size_bytes());
    const std::uint64_t offset = std::uint64_t{first} * sizeof(Pixel);
    const std::uint64_t wanted = size - std::min(size, offset);
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(wanted, bytes.size()));
    std::ranges::fill(bytes.subspan(count), std::uint8_t{0});
    return file.ReadAt(offset, bytes.first(count));
}

}  // namespace raw_words
