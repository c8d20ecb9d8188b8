// SPDX-License-Identifier: MIT
#include "sensor/wrapping_subtraction.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/pixel.h"
#include "sensor/zero_if_out_of_range.h"

namespace {

/// Calculates in single precision, on which the whole part depends. Uses bare pointers: checking each index
/// would double the time.
struct SubtractLoop {
    [[gnu::always_inline]] static void Run(Pixel* pixels, std::size_t count, const float* levels,
                                           float offset, float gain) {
        for (std::size_t x = 0; x < count; ++x) {
            const auto level = static_cast<std::int32_t>(ZeroIfOutOfRange((levels[x] + offset) * gain));
            pixels[x] = static_cast<Pixel>(pixels[x] - static_cast<std::uint16_t>(level));
        }
    }
};

}  // namespace

void SubtractWrapping(std::span<Pixel> row, std::span<const float> levels, float offset, float gain,
                      InstructionSet version) {
    const std::size_t count = std::min(row.size(), levels.size());
    instruction_set::Run<SubtractLoop>(version, row.data(), count, levels.data(), offset, gain);
}
