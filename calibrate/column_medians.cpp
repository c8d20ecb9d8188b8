// SPDX-License-Identifier: MIT
#include "calibrate/column_medians.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace {

using namespace sensor_grid;

constexpr std::size_t kLanes = 16;  // columns processed together: their keys stay in the first-level cache
static_assert(kColumns % kLanes == 0);
using Keys = std::array<std::int32_t, kLanes>;

/// A number that orders like the float `value`, negative ones included. It is its own inverse on bits.
[[gnu::always_inline]] inline std::int32_t Ordered(std::int32_t bits) {
    return bits ^ ((bits >> 31) & std::numeric_limits<std::int32_t>::max());
}

/// Takes the median of kLanes columns, the first of whose blocks is at `values`: the largest key with no more
/// than half of the keys below it, found bit by bit. Unlike a search in each column, this needs no branches
/// and runs in all lanes at once. Uses bare pointers, because index checks would prevent vectorisation.
struct TakeMedians {
    [[gnu::always_inline]] static void Run(const float* values, float* medians) {
        static_assert(kBlocks % 2 == 1, "an even number has two middle values");
        std::array<Keys, kBlocks> keys;
        for (std::size_t block = 0; block < kBlocks; ++block) {
            std::int32_t* const key = keys[block].data();
            for (std::size_t lane = 0; lane < kLanes; ++lane) {
                key[lane] = Ordered(std::bit_cast<std::int32_t>(values[(block * kColumns) + lane]));
            }
        }
        Keys found;
        found.fill(std::numeric_limits<std::int32_t>::min());
        for (std::uint32_t bit = 1U << 31U; bit != 0; bit >>= 1U) {
            Keys larger;
            for (std::size_t lane = 0; lane < kLanes; ++lane) {
                larger[lane] = static_cast<std::int32_t>(static_cast<std::uint32_t>(found[lane]) + bit);
            }
            Keys below = {};
            std::int32_t* const count = below.data();
            const std::int32_t* const limit = larger.data();
            for (const Keys& row : keys) {
                const std::int32_t* const key = row.data();
                for (std::size_t lane = 0; lane < kLanes; ++lane) {
                    count[lane] += key[lane] < limit[lane] ? 1 : 0;
                }
            }
            for (std::size_t lane = 0; lane < kLanes; ++lane) {
                found[lane] = below[lane] <= kBlocks / 2 ? larger[lane] : found[lane];
            }
        }
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            medians[lane] = std::bit_cast<float>(Ordered(found[lane]));
        }
    }
};

}  // namespace

std::vector<float> ColumnMedians(const Grid& grid, InstructionSet version) {
    std::vector<float> medians(kColumns);
    const std::span<float> all(medians);
    for (std::size_t column = 0; column < kColumns; column += kLanes) {
        instruction_set::Run<TakeMedians>(version, Row(grid, 0).subspan(column).data(),
                                          all.subspan(column, kLanes).data());
    }
    return medians;
}
