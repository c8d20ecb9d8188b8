// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_SEEDED_NOISE_H
#define VELMARCON_SAMPLES_SEEDED_NOISE_H

#include <cstdint>

namespace samples {

/// A well mixed value for every `index` of the sequence `seed` (the finaliser of SplitMix64). It is the same
/// on every machine and does not need the values before it.
constexpr std::uint64_t MixedBits(std::uint64_t seed, std::uint64_t index) {
    std::uint64_t z = (seed * 0xD1342543DE82EF95ULL) + ((index + 1) * 0x9E3779B97F4A7C15ULL);
    z = (z ^ z >> 30U) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ z >> 27U) * 0x94D049BB133111EBULL;
    return z ^ z >> 31U;
}

/// Uniformly distributed from 0 to 1.
constexpr float EvenNoise(std::uint64_t seed, std::uint64_t index) {
    constexpr float kSteps = 16777216;
    return static_cast<float>(MixedBits(seed, index) >> 40U) / kSteps;
}

/// Approximately normal with mean 0 and standard deviation 1: the sum of four uniformly distributed numbers.
constexpr float NormalNoise(std::uint64_t seed, std::uint64_t index) {
    constexpr std::uint64_t kLane = 0xFFFF;
    constexpr float kMean = 2 * 65535.0F;
    constexpr float kDeviation = 37837.23F;  // sqrt(4 / 12) * 65536
    const std::uint64_t z = MixedBits(seed, index);
    const std::uint64_t sum = (z & kLane) + (z >> 16U & kLane) + (z >> 32U & kLane) + (z >> 48U);
    return (static_cast<float>(static_cast<std::int32_t>(sum)) - kMean) / kDeviation;
}

/// Successive numbers of one sequence.
class NumberSequence {
  public:
    explicit NumberSequence(std::uint64_t seed) : seed_(seed) {}

    /// A number from `least` up to, but not including, `most`.
    float Between(float least, float most) { return least + ((most - least) * EvenNoise(seed_, index_++)); }

    /// An integer from `least` to `most`, both included.
    int Whole(int least, int most) {
        return least +
               static_cast<int>(MixedBits(seed_, index_++) % static_cast<std::uint64_t>(most - least + 1));
    }

    float Normal() { return NormalNoise(seed_, index_++); }

  private:
    std::uint64_t seed_;
    std::uint64_t index_ = 0;
};

}  // namespace samples

#endif  // VELMARCON_SAMPLES_SEEDED_NOISE_H
