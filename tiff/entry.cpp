// SPDX-License-Identifier: MIT
#include "tiff/entry.h"

#include <algorithm>

namespace tiff {

std::optional<Entry> ReadEntry(const Block& block, std::uint64_t position) {
    if (!block.bytes.Holds(position, kEntrySize)) {
        return std::nullopt;
    }
    Entry entry;
    entry.tag = block.Get<std::uint16_t>(position);
    entry.type = block.Get<std::uint16_t>(position + kTypeInEntry);
    entry.count = block.Get<std::uint32_t>(position + kCountInEntry);
    std::ranges::copy(block.bytes.Bytes(position + kValueInEntry, kValueFieldSize), entry.field.begin());
    entry.order = block.order;
    return entry;
}

ValueBytes::ValueBytes(const Entry& entry, std::size_t size) : inside_size_(size) {
    // Low byte first, whatever the file's byte order: short values of a big-endian file come out reversed.
    // The camera writes little-endian, and what the program makes of other files must not change.
    byte_order::PutLittle(std::span(inside_), entry.First<std::uint32_t>());
}

std::optional<ValueBytes> ReadValue(const Block& block, const Entry& entry, std::uint64_t size) {
    if (FitsInEntry(size)) {
        return ValueBytes(entry, static_cast<std::size_t>(size));
    }
    const std::uint64_t position = block.base + entry.Offset();
    if (!block.bytes.Holds(position, size)) {
        return std::nullopt;
    }
    return ValueBytes(block.bytes.Bytes(position, size));
}

}  // namespace tiff
