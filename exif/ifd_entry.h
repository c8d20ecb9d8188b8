// SPDX-License-Identifier: MIT
#ifndef VELMARCON_EXIF_IFD_ENTRY_H
#define VELMARCON_EXIF_IFD_ENTRY_H

#include <cstdint>

#include "tiff/entry.h"
#include "tiff/rational.h"

// The entries of the EXIF parser's IFDs; only the parser uses them.

/// One entry with its value. Only the member that belongs to the format is filled.
struct IFEntry {
    std::uint16_t Tag = 0;
    std::uint16_t Format = 0;
    std::uint32_t Data = 0;    ///< the value field
    std::uint32_t Length = 0;  ///< component count
    tiff::ValueBytes StringValue;
    tiff::ValueBytes UndefinedValue;
    std::uint16_t ShortValue = 0;
    std::uint32_t LongValue = 0;
    Rational RationalValue;
    std::uint8_t ByteValue = 0;
};

/// Replaces the tag of an entry whose format the parser does not read; it is not the number of any tag that
/// it reads.
constexpr std::uint16_t kIgnoredTag = 0xFF;

/// Decodes the entry at `offset`, whose 12 bytes must lie in the block. A text or UNDEFINED bytes that do not
/// all lie in the block are empty; a rational is then 0/0. Of several numbers, only the first is read.
IFEntry parseIFEntry(const tiff::Block& block, std::uint64_t offset);

#endif  // VELMARCON_EXIF_IFD_ENTRY_H
