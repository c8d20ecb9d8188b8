// SPDX-License-Identifier: MIT
#include "sensor/split_levels.h"

#include <algorithm>
#include <array>

#include "base/pixel.h"

namespace {

constexpr float kUnit = 65536.0F;  ///< units of a fraction; also one more than 16 bits hold
constexpr std::size_t kLanes = Dither::kLanes;

/// Corrects the kLanes pixels of one step of the dither. Everything is 16 bits wide: the sum of fraction and
/// random number wraps where the level is to be rounded up.
[[gnu::always_inline]] inline void SubtractStep(Pixel* pixels, const std::uint16_t* whole,
                                                const std::uint16_t* fraction,
                                                const Dither::Numbers& random) {
    for (std::size_t i = 0; i < kLanes; ++i) {
        const auto sum = static_cast<std::uint16_t>(fraction[i] + random[i]);
        const auto level = static_cast<std::uint16_t>(whole[i] + (sum < random[i] ? 1 : 0));
        pixels[i] = static_cast<Pixel>(pixels[i] - std::min(pixels[i], level));
    }
}

/// Uses bare pointers: checking each index would double the time of a correction.
struct SubtractRow {
    [[gnu::always_inline]] static void Run(Pixel* pixels, std::size_t count, const std::uint16_t* whole,
                                           const std::uint16_t* fraction, Dither::Generators* generators) {
        Dither::Generators state = *generators;
        std::size_t x = 0;
        for (; x + kLanes <= count; x += kLanes) {
            SubtractStep(pixels + x, whole + x, fraction + x, Dither::Step(state));
        }
        if (x < count) {
            std::array<Pixel, kLanes> last = {};
            std::copy(pixels + x, pixels + count, last.data());
            SubtractStep(last.data(), whole + x, fraction + x, Dither::Step(state));
            std::copy_n(last.data(), count - x, pixels + x);
        }
        *generators = state;
    }
};

}  // namespace

std::optional<SplitLevels> SplitLevels::Of(std::span<const float> levels) {
    const bool fit = !levels.empty() &&
                     std::ranges::all_of(levels, [](float level) { return level >= 0.0F && level < kUnit; });
    return fit ? std::optional(SplitLevels(levels)) : std::nullopt;
}

SplitLevels::SplitLevels(std::span<const float> levels)
    : columns_(levels.size()),
      whole_((levels.size() + kLanes - 1) / kLanes * kLanes),
      fraction_(whole_.size()) {
    for (std::size_t x = 0; x < levels.size(); ++x) {
        whole_[x] = static_cast<std::uint16_t>(levels[x]);
        fraction_[x] = static_cast<std::uint16_t>((levels[x] - static_cast<float>(whole_[x])) * kUnit);
    }
}

void SplitLevels::SubtractFrom(std::span<Pixel> pixels, Dither& dither, InstructionSet version) const {
    while (!pixels.empty()) {
        const auto row = pixels.first(std::min(columns_, pixels.size()));
        instruction_set::Run<SubtractRow>(version, row.data(), row.size(), whole_.data(), fraction_.data(),
                                          &dither.generators());
        pixels = pixels.subspan(row.size());
    }
}
