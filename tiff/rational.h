// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TIFF_RATIONAL_H
#define VELMARCON_TIFF_RATIONAL_H

#include <bit>
#include <cstdint>

/// A TIFF RATIONAL (TIFF 6.0, section 2). It remains a pair of integers from the camera's file to the written
/// one.
struct Rational {
    std::uint32_t numerator = 0;
    std::uint32_t denominator = 0;

    friend constexpr bool operator==(const Rational&, const Rational&) = default;
};

/// A TIFF SRATIONAL.
struct SRational {
    std::int32_t numerator = 0;
    std::int32_t denominator = 0;

    friend constexpr bool operator==(const SRational&, const SRational&) = default;
};

/// The same 64 bits, read as two signed integers.
constexpr SRational AsSigned(Rational value) {
    return {std::bit_cast<std::int32_t>(value.numerator), std::bit_cast<std::int32_t>(value.denominator)};
}

/// The same 64 bits, read as two unsigned integers.
constexpr Rational AsUnsigned(SRational value) {
    return {std::bit_cast<std::uint32_t>(value.numerator), std::bit_cast<std::uint32_t>(value.denominator)};
}

/// The value of a field that no file has set: 0/1.
constexpr Rational kClearedRational = {0, 1};
constexpr SRational kClearedSRational = {0, 1};

#endif  // VELMARCON_TIFF_RATIONAL_H
