// SPDX-License-Identifier: MIT
#ifndef VELMARCON_FUZZ_FULL_SIZE_MARK_H
#define VELMARCON_FUZZ_FULL_SIZE_MARK_H

#include <cstdint>
#include <numeric>
#include <span>

/// An input of the pair fuzzer starts with this mark if the pair is to be converted at full size. That takes
/// a hundred times as long, so the mark depends on the EXIF block: mutations of such an input must not
/// inherit it.
inline std::uint16_t FullSizeMark(std::span<const std::uint8_t> block) {
    constexpr unsigned int odd_start = 0xA5A5;
    return static_cast<std::uint16_t>(std::accumulate(block.begin(), block.end(), odd_start));
}

#endif  // VELMARCON_FUZZ_FULL_SIZE_MARK_H
