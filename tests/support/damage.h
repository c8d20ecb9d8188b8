// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_DAMAGE_H
#define VELMARCON_TESTS_SUPPORT_DAMAGE_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace support {

/// `bytes` with one to eight places between `begin` and `end` overwritten, with single bytes or with 16- or
/// 32-bit numbers at the limits where sums and products overflow. The same seed gives the same damage.
std::vector<std::uint8_t> Damaged(std::vector<std::uint8_t> bytes, std::size_t begin, std::size_t end,
                                  std::uint32_t seed);

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_DAMAGE_H
