// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TIFF_TYPES_H
#define VELMARCON_TIFF_TYPES_H

#include <cstdint>

/// The TIFF container: field types and the fixed sizes of its structures (TIFF 6.0, section 2).
namespace tiff {

enum Type : std::uint16_t {
    kByte = 1,
    kAscii = 2,
    kShort = 3,
    kLong = 4,
    kRational = 5,
    kSByte = 6,
    kUndefined = 7,
    kSShort = 8,
    kSLong = 9,
    kSRational = 10,
    kFloat = 11,
    kDouble = 12,
};

constexpr std::uint16_t kMagic = 42;
constexpr std::uint32_t kHeaderSize = 8;      ///< bytes: byte order mark, magic, offset of the first IFD
constexpr std::uint32_t kCountSize = 2;       ///< bytes: an IFD's entry count
constexpr std::uint32_t kEntrySize = 12;      ///< bytes: tag, type, count, value or offset
constexpr std::uint32_t kLinkSize = 4;        ///< bytes: offset of the next IFD
constexpr std::uint32_t kValueFieldSize = 4;  ///< bytes: a longer value is stored elsewhere, at an offset
constexpr std::uint32_t kTypeInEntry = 2;     ///< byte position of the type in an entry
constexpr std::uint32_t kCountInEntry = 4;    ///< byte position of the count in an entry
constexpr std::uint32_t kValueInEntry = 8;    ///< byte position of the value field in an entry

/// Size in bytes of one value of `type`, for types 1 to 10, which cameras use; 0 for every other type.
constexpr std::uint32_t ElementSize(std::uint16_t type) {
    switch (type) {
        case kByte:
        case kAscii:
        case kSByte:
        case kUndefined:
            return 1;
        case kShort:
        case kSShort:
            return 2;
        case kLong:
        case kSLong:
            return 4;
        case kRational:
        case kSRational:
            return 8;
        default:
            return 0;
    }
}

}  // namespace tiff

#endif  // VELMARCON_TIFF_TYPES_H
