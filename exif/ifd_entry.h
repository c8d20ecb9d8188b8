// SPDX-License-Identifier: MIT
#ifndef VELMARCON_EXIF_IFD_ENTRY_H
#define VELMARCON_EXIF_IFD_ENTRY_H

#include <array>
#include <cstdint>
#include <span>

#include "base/byte_view.h"
#include "tiff/rational.h"
#include "tiff/types.h"

// Private to the EXIF parser: the entries of its IFDs.

/// A TIFF structure in a buffer: the byte order and where
/// its header stands, from which all its offsets count.
struct TiffBlock {
    ByteView buf;
    std::uint64_t base = 0;
    bool little_endian = false;
};

std::uint16_t parse16(const TiffBlock& block, std::uint64_t offset);
std::uint32_t parse32(const TiffBlock& block, std::uint64_t offset);

/// The bytes of a text or of an UNDEFINED value. Short ones
/// are the value field's, long ones stay in the buffer.
class EntryBytes {
  public:
    EntryBytes() = default;
    /// The first `count` bytes of a value field, low byte first.
    EntryBytes(std::uint32_t data, std::uint32_t count);
    explicit EntryBytes(std::span<const std::uint8_t> outside) : outside_(outside) {}

    std::span<const std::uint8_t> get() const {
        return inside_count_ == 0 ? outside_ : std::span(inside_).first(inside_count_);
    }

  private:
    std::array<std::uint8_t, tiff::kValueFieldSize> inside_ = {};
    std::size_t inside_count_ = 0;
    std::span<const std::uint8_t> outside_;
};

/// One 12-byte entry as decoded. Only the member that belongs to the format is filled.
struct IFEntry {
    std::uint16_t Tag = 0;
    std::uint16_t Format = 0;
    std::uint32_t Data = 0;    ///< the value field
    std::uint32_t Length = 0;  ///< component count
    EntryBytes StringValue;
    EntryBytes UndefinedValue;
    std::uint16_t ShortValue = 0;
    std::uint32_t LongValue = 0;
    Rational RationalValue;
    std::uint8_t ByteValue = 0;
};

/// The tag of an entry whose format is not read; matches no tag that is.
constexpr std::uint16_t kIgnoredTag = 0xFF;

/// Decodes the entry at `offset`, whose 12 bytes lie in the block. A text, a rational or UNDEFINED bytes that
/// do not all lie in the block are empty, or 0/0.
IFEntry parseIFEntry(const TiffBlock& block, std::uint64_t offset);

#endif  // VELMARCON_EXIF_IFD_ENTRY_H
