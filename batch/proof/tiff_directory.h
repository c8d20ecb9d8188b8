// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_TIFF_DIRECTORY_H
#define VELMARCON_BATCH_PROOF_TIFF_DIRECTORY_H

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>

#include "base/byte_view.h"

/// An IFD of a little-endian TIFF file (TIFF 6.0, section 2) as it stands in the file's bytes, which must
/// outlive it. Shares no code with what writes DNGs.
struct TiffDirectory {
    struct Entry {
        std::uint16_t type = 0;
        std::uint32_t count = 0;                   ///< of values of that type
        std::span<const std::uint8_t> value = {};  ///< little-endian element by element
    };

    /// By tag. Those of a type without a size are left out; of two with one tag the later is kept.
    std::map<std::uint16_t, Entry> entries;
    bool ascending = true;   ///< no entry was left out, and they stood in the order that TIFF asks for
    std::uint32_t next = 0;  ///< the link behind the entries

    /// The first value of a SHORT or a LONG; nothing when there is none.
    std::optional<std::uint32_t> Number(std::uint16_t tag) const;
    /// The bytes of a value up to its first NUL, whatever its type; empty without the tag.
    std::string Text(std::uint16_t tag) const;
};

/// Where the header of `file` says that the first IFD stands; nothing when it is no little-endian TIFF file.
std::optional<std::uint32_t> FirstDirectory(ByteView file);

/// The IFD at `offset`; nothing when it does not lie in `file` with its link and all values, or when these
/// together are longer than the file, as only values that overlap can be.
std::optional<TiffDirectory> ReadDirectory(ByteView file, std::uint64_t offset);

/// The IFD to which the entry `pointer` of `directory` leads; nothing without the entry, too.
std::optional<TiffDirectory> ReadLinked(ByteView file, const TiffDirectory& directory, std::uint16_t pointer);

#endif  // VELMARCON_BATCH_PROOF_TIFF_DIRECTORY_H
