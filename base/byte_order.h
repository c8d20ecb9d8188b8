// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BASE_BYTE_ORDER_H
#define VELMARCON_BASE_BYTE_ORDER_H

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>
#include <vector>

/// Which byte of a number comes first in a file: the lowest or the highest.
enum class ByteOrder : std::uint8_t { kLittleEndian, kBigEndian };

/// All conversions between integers and the bytes of a file, except those of pixels.
namespace byte_order {

static_assert(
    std::endian::native == std::endian::little,
    "pixels are copied between memory and files without conversion: the files are little-endian, so "
    "the machine must be, too");

/// The unsigned integer in the first sizeof(T) of `bytes`, low byte first. `bytes` must be that long.
template <std::unsigned_integral T>
constexpr T GetLittle(std::span<const std::uint8_t> bytes) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i) {
        value |= std::uint64_t{bytes[i]} << (8U * i);
    }
    return static_cast<T>(value);
}

/// Like GetLittle, but with the high byte first.
template <std::unsigned_integral T>
constexpr T GetBig(std::span<const std::uint8_t> bytes) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i) {
        value = value << 8U | bytes[i];
    }
    return static_cast<T>(value);
}

/// Like GetLittle, in the given byte order.
template <std::unsigned_integral T>
constexpr T Get(std::span<const std::uint8_t> bytes, ByteOrder order) {
    return order == ByteOrder::kLittleEndian ? GetLittle<T>(bytes) : GetBig<T>(bytes);
}

/// Writes the bytes of `value` to the start of `bytes`, low byte first; negative values in two's complement.
/// `bytes` must have room for sizeof(T).
template <std::integral T>
constexpr void PutLittle(std::span<std::uint8_t> bytes, T value) {
    const std::uint64_t bits = static_cast<std::make_unsigned_t<T>>(value);
    for (std::size_t i = 0; i < sizeof(T); ++i) {
        bytes[i] = static_cast<std::uint8_t>(bits >> (8U * i) & 0xFFU);
    }
}

/// Appends the bytes of `value` to `bytes`, low byte first.
template <std::integral T>
constexpr void AppendLittle(std::vector<std::uint8_t>& bytes, T value) {
    bytes.resize(bytes.size() + sizeof(T));
    PutLittle(std::span(bytes).last(sizeof(T)), value);
}

}  // namespace byte_order

#endif  // VELMARCON_BASE_BYTE_ORDER_H
