// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BASE_HEX_DIGITS_H
#define VELMARCON_BASE_HEX_DIGITS_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// `bytes` as digits "0" to "9" and "a" to "f", two each.
inline std::string HexDigits(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr unsigned int digit_bits = 4;
    constexpr unsigned int low_digit = 0xF;
    std::string hex;
    for (const unsigned int value : bytes) {
        hex += digits[value >> digit_bits];
        hex += digits[value & low_digit];
    }
    return hex;
}

#endif  // VELMARCON_BASE_HEX_DIGITS_H
