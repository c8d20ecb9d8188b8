// SPDX-License-Identifier: MIT
#ifndef VELMARCON_DNG_IFD_H
#define VELMARCON_DNG_IFD_H

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/byte_order.h"
#include "tiff/rational.h"
#include "tiff/types.h"

/// One IFD entry in memory.
struct IFDTag {
    std::uint16_t tag = 0;
    std::vector<std::uint8_t> value;  ///< the bytes in the file; each element is little-endian
    std::uint32_t position = 0;       ///< file offset of a value outside its entry; 0 until laid out
    std::uint16_t type = 0;           ///< TIFF field type, 1 to 10
    std::uint32_t count = 0;          ///< of values of that type
    std::uint32_t length = 0;         ///< of the value, in bytes
};

/// An IFD: a map by tag number, so that its entries are in ascending order, as TIFF requires.
using IFD = std::map<std::uint16_t, IFDTag>;

/// Stores typed values in an IFD and reads them.
namespace ifd {

/// The TIFF type that corresponds to a C++ type; 0 for other types.
template <typename T>
constexpr tiff::Type kTypeOf = {};
template <>
inline constexpr tiff::Type kTypeOf<std::uint8_t> = tiff::kByte;
template <>
inline constexpr tiff::Type kTypeOf<std::uint16_t> = tiff::kShort;
template <>
inline constexpr tiff::Type kTypeOf<std::uint32_t> = tiff::kLong;
template <>
inline constexpr tiff::Type kTypeOf<Rational> = tiff::kRational;
template <>
inline constexpr tiff::Type kTypeOf<std::int8_t> = tiff::kSByte;
template <>
inline constexpr tiff::Type kTypeOf<std::int16_t> = tiff::kSShort;
template <>
inline constexpr tiff::Type kTypeOf<std::int32_t> = tiff::kSLong;
template <>
inline constexpr tiff::Type kTypeOf<SRational> = tiff::kSRational;

template <typename T>
concept Element = kTypeOf<T>
!= tiff::Type{};

/// Stores `bytes` under `tag` as a value of `type`, which must be 1 to 10, replacing an existing value.
void AddBytes(IFD& ifd, std::uint16_t tag, std::uint16_t type, std::span<const std::uint8_t> bytes);

/// Stores an ASCII value: the text and, unless it already ends in one, a NUL. A value that does not fit into
/// its entry and has an odd length gets a second NUL, which its `length` includes and its `count` does not.
void Add(IFD& ifd, std::uint16_t tag, std::string_view text);

/// Appends `value` to `bytes` in the file's format.
template <std::integral T>
void AppendElement(std::vector<std::uint8_t>& bytes, T value) {
    byte_order::AppendLittle(bytes, value);
}
inline void AppendElement(std::vector<std::uint8_t>& bytes, SRational value) {
    byte_order::AppendLittle(bytes, value.numerator);
    byte_order::AppendLittle(bytes, value.denominator);
}
inline void AppendElement(std::vector<std::uint8_t>& bytes, Rational value) {
    AppendElement(bytes, AsSigned(value));
}

/// Stores `values` under `tag` with the TIFF type of T, replacing an existing value.
template <Element T>
void Add(IFD& ifd, std::uint16_t tag, std::span<const T> values) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(values.size_bytes());
    for (const T value : values) {
        AppendElement(bytes, value);
    }
    AddBytes(ifd, tag, kTypeOf<T>, bytes);
}

template <Element T, std::size_t size>
void Add(IFD& ifd, std::uint16_t tag, const std::array<T, size>& values) {
    Add(ifd, tag, std::span<const T>(values));
}

/// Stores a single value.
template <Element T>
void Add(IFD& ifd, std::uint16_t tag, T value) {
    Add(ifd, tag, std::span<const T>(&value, 1));
}

/// The element at the start of `bytes`, which come from a file and must hold it.
template <Element T>
T ParseElement(std::span<const std::uint8_t> bytes) {
    if constexpr (std::integral<T>) {
        return static_cast<T>(byte_order::GetLittle<std::make_unsigned_t<T>>(bytes));
    } else {
        constexpr std::size_t half = sizeof(T::numerator);
        return {ParseElement<decltype(T::numerator)>(bytes),
                ParseElement<decltype(T::denominator)>(bytes.subspan(half))};
    }
}

/// The values in `bytes`, which come from a file.
template <Element T>
std::vector<T> Parse(std::span<const std::uint8_t> bytes) {
    std::vector<T> values;
    values.reserve(bytes.size() / sizeof(T));
    for (; bytes.size() >= sizeof(T); bytes = bytes.subspan(sizeof(T))) {
        values.push_back(ParseElement<T>(bytes));
    }
    return values;
}

/// The bytes of a value of any type; none if the tag is missing.
std::span<const std::uint8_t> Bytes(const IFD& ifd, std::uint16_t tag);

/// The bytes of a value of any type as text; empty if the tag is missing.
std::string Text(const IFD& ifd, std::uint16_t tag);

/// The bytes of a value of `type`; none if the tag is missing or has another type.
std::span<const std::uint8_t> BytesOfType(const IFD& ifd, std::uint16_t tag, tiff::Type type);

/// The values of a tag that has the TIFF type of T; none if the tag is missing or has another type.
template <Element T>
std::vector<T> Get(const IFD& ifd, std::uint16_t tag) {
    return Parse<T>(BytesOfType(ifd, tag, kTypeOf<T>));
}

/// The first value of a tag that has the TIFF type of T; std::nullopt if there is none.
template <Element T>
std::optional<T> First(const IFD& ifd, std::uint16_t tag) {
    const auto bytes = BytesOfType(ifd, tag, kTypeOf<T>);
    return bytes.size() < sizeof(T) ? std::nullopt : std::optional(ParseElement<T>(bytes));
}

/// The first value of a SHORT or LONG tag; std::nullopt if there is none.
std::optional<std::uint32_t> FirstNumber(const IFD& ifd, std::uint16_t tag);

/// The first value of a RATIONAL or SRATIONAL tag, read as signed numbers; std::nullopt if there is none.
std::optional<SRational> FirstRational(const IFD& ifd, std::uint16_t tag);

}  // namespace ifd

#endif  // VELMARCON_DNG_IFD_H
