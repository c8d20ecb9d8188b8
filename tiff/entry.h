// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TIFF_ENTRY_H
#define VELMARCON_TIFF_ENTRY_H

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "base/byte_order.h"
#include "base/byte_view.h"
#include "tiff/types.h"

/// Reading of the entries of an IFD (TIFF 6.0, section 2), wherever it stands: in an EXIF block, in a maker
/// note, in a DNG. What a reader does differently, it does in its own file.
namespace tiff {

/// A TIFF structure in bytes that are not trusted.
struct Block {
    ByteView bytes;
    std::uint64_t base = 0;  ///< the byte from which its offsets count
    ByteOrder order = ByteOrder::kLittleEndian;

    /// The integer at `position`; 0 when it is not all there.
    template <std::unsigned_integral T>
    constexpr T Get(std::uint64_t position) const {
        return bytes.Get<T>(position, order);
    }
};

/// Length in bytes of an IFD with its count and its link, without the values that stand outside it.
constexpr std::uint64_t IFDSize(std::uint64_t entries) {
    return kCountSize + entries * kEntrySize + kLinkSize;
}

/// Where entry `index` of the IFD at `ifd` stands.
constexpr std::uint64_t EntryPosition(std::uint64_t ifd, std::uint64_t index) {
    return ifd + kCountSize + index * kEntrySize;
}

/// Whether a value of `size` bytes stands in its entry. A longer one stands at the offset that the entry
/// holds.
constexpr bool StandsInEntry(std::uint64_t size) {
    return size <= kValueFieldSize;
}

/// One entry of an IFD.
struct Entry {
    std::uint16_t tag = 0;
    std::uint16_t type = 0;  ///< as the file has it: not always a Type
    std::uint32_t count = 0;
    std::array<std::uint8_t, kValueFieldSize> field = {};  ///< the value field as it stands in the file
    ByteOrder order = ByteOrder::kLittleEndian;

    /// The integer with which the value field begins, whatever the type says.
    template <std::unsigned_integral T>
    constexpr T First() const {
        return byte_order::Get<T>(field, order);
    }

    /// The value field as an offset.
    constexpr std::uint32_t Offset() const { return First<std::uint32_t>(); }

    /// Length of the value in bytes; 0 for a type without a size.
    constexpr std::uint64_t ValueSize() const { return std::uint64_t{ElementSize(type)} * count; }
};

/// The entry at `position`; nothing when its 12 bytes are not all in the block.
std::optional<Entry> ReadEntry(const Block& block, std::uint64_t position);

/// The bytes of a value: a copy of those that stand in an entry, a view of those outside it.
class ValueBytes {
  public:
    ValueBytes() = default;

    /// The first `size` bytes of a value field, low byte first: `size` is at most 4.
    ValueBytes(const Entry& entry, std::size_t size);

    explicit ValueBytes(std::span<const std::uint8_t> outside) : outside_(outside) {}

    std::span<const std::uint8_t> get() const {
        return inside_size_ == 0 ? outside_ : std::span(inside_).first(inside_size_);
    }

  private:
    std::array<std::uint8_t, kValueFieldSize> inside_ = {};
    std::size_t inside_size_ = 0;
    std::span<const std::uint8_t> outside_;
};

/// The value of `entry`, `size` bytes long; nothing when they are not all in the block. The result must not
/// outlive the block's bytes.
std::optional<ValueBytes> ReadValue(const Block& block, const Entry& entry, std::uint64_t size);

}  // namespace tiff

#endif  // VELMARCON_TIFF_ENTRY_H
