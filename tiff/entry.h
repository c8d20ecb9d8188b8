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

/// Reads the entries of an IFD (TIFF 6.0, section 2) in an EXIF block, a maker note or a DNG. What is special
/// to one of these is in that reader's own file.
namespace tiff {

/// A TIFF structure in untrusted bytes.
struct Block {
    ByteView bytes;
    std::uint64_t base = 0;  ///< position of the byte from which its offsets count
    ByteOrder order = ByteOrder::kLittleEndian;

    /// The integer at `position`; 0 if not all of its bytes are there.
    template <std::unsigned_integral T>
    constexpr T Get(std::uint64_t position) const {
        return bytes.Get<T>(position, order);
    }
};

/// Length in bytes of an IFD with its count and its link, but without the values stored outside it.
constexpr std::uint64_t IFDSize(std::uint64_t entries) {
    return kCountSize + entries * kEntrySize + kLinkSize;
}

/// Position of entry `index` in the IFD at `ifd`.
constexpr std::uint64_t EntryPosition(std::uint64_t ifd, std::uint64_t index) {
    return ifd + kCountSize + index * kEntrySize;
}

/// Whether a value of `size` bytes is stored in its entry. A longer one is stored at the offset in the entry.
constexpr bool FitsInEntry(std::uint64_t size) {
    return size <= kValueFieldSize;
}

/// One entry of an IFD.
struct Entry {
    std::uint16_t tag = 0;
    std::uint16_t type = 0;  ///< as it is in the file: not always a Type
    std::uint32_t count = 0;
    std::array<std::uint8_t, kValueFieldSize> field =
        {};  ///< the bytes of the value field, as they are in the file
    ByteOrder order = ByteOrder::kLittleEndian;

    /// The integer at the start of the value field, regardless of the type.
    template <std::unsigned_integral T>
    constexpr T First() const {
        return byte_order::Get<T>(field, order);
    }

    /// The value field as an offset.
    constexpr std::uint32_t Offset() const { return First<std::uint32_t>(); }

    /// Length of the value in bytes; 0 for a type that ElementSize does not know.
    constexpr std::uint64_t ValueSize() const { return std::uint64_t{ElementSize(type)} * count; }
};

/// The entry at `position`; std::nullopt if its 12 bytes are not all in the block.
std::optional<Entry> ReadEntry(const Block& block, std::uint64_t position);

/// The bytes of a value: a copy if they are stored in the entry, a view if they are stored outside it.
class ValueBytes {
  public:
    ValueBytes() = default;

    /// The first `size` bytes of a value field, low byte first. `size` is at most 4.
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

/// The `size` bytes of the value of `entry`; std::nullopt if they are not all in the block. The result must
/// not outlive the block's bytes.
std::optional<ValueBytes> ReadValue(const Block& block, const Entry& entry, std::uint64_t size);

}  // namespace tiff

#endif  // VELMARCON_TIFF_ENTRY_H
