// SPDX-License-Identifier: MIT
#include "batch/proof/tiff_directory.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "tiff/types.h"

namespace {

constexpr std::array<std::uint8_t, 4> kLittleEndianTiff = {'I', 'I', tiff::kMagic, 0};

template <std::unsigned_integral T>
T Get(ByteView file, std::uint64_t offset) {
    return file.Get<T>(offset, ByteOrder::kLittleEndian);
}

/// The entry at `offset`, whose 12 bytes lie in `file`; nothing when its value does not. The count of a type
/// without a size says nothing of the value.
std::optional<TiffDirectory::Entry> ReadEntry(ByteView file, std::uint64_t offset) {
    TiffDirectory::Entry entry = {Get<std::uint16_t>(file, offset + tiff::kTypeInEntry),
                                  Get<std::uint32_t>(file, offset + tiff::kCountInEntry)};
    const std::uint64_t length = std::uint64_t{tiff::ElementSize(entry.type)} * entry.count;
    const std::uint64_t field = offset + tiff::kValueInEntry;
    const std::uint64_t position = length <= tiff::kValueFieldSize ? field : Get<std::uint32_t>(file, field);
    if (!file.Holds(position, length)) {
        return std::nullopt;
    }
    entry.value = file.Bytes(position, length);
    return entry;
}

}  // namespace

std::optional<std::uint32_t> TiffDirectory::Number(std::uint16_t tag) const {
    const auto entry = entries.find(tag);
    if (entry == entries.end() || entry->second.count == 0) {
        return std::nullopt;
    }
    const ByteView value(entry->second.value);
    switch (entry->second.type) {
        case tiff::kShort:
            return Get<std::uint16_t>(value, 0);
        case tiff::kLong:
            return Get<std::uint32_t>(value, 0);
        default:
            return std::nullopt;
    }
}

std::string TiffDirectory::Text(std::uint16_t tag) const {
    const auto entry = entries.find(tag);
    if (entry == entries.end()) {
        return {};
    }
    const auto& value = entry->second.value;
    return {value.begin(), std::ranges::find(value, std::uint8_t{0})};
}

std::optional<std::uint32_t> FirstDirectory(ByteView file) {
    const auto start = file.Bytes(0, kLittleEndianTiff.size());
    if (!file.Holds(0, tiff::kHeaderSize) || !std::ranges::equal(start, kLittleEndianTiff)) {
        return std::nullopt;
    }
    return Get<std::uint32_t>(file, kLittleEndianTiff.size());
}

std::optional<TiffDirectory> ReadDirectory(ByteView file, std::uint64_t offset) {
    const std::uint64_t count = Get<std::uint16_t>(file, offset);
    const std::uint64_t first = offset + tiff::kCountSize;
    const std::uint64_t link = first + count * tiff::kEntrySize;
    if (!file.Holds(offset, tiff::kCountSize) || !file.Holds(link, tiff::kLinkSize)) {
        return std::nullopt;
    }
    TiffDirectory directory;
    std::int32_t last_tag = -1;
    std::uint64_t value_bytes = 0;
    for (std::uint64_t position = first; position < link; position += tiff::kEntrySize) {
        const auto entry = ReadEntry(file, position);
        value_bytes += entry ? entry->value.size() : 0;
        if (!entry || value_bytes > file.size()) {
            return std::nullopt;
        }
        const auto tag = Get<std::uint16_t>(file, position);
        const bool known = tiff::ElementSize(entry->type) != 0;
        directory.ascending = directory.ascending && known && tag > last_tag;
        last_tag = tag;
        if (known) {
            directory.entries.insert_or_assign(tag, *entry);
        }
    }
    directory.next = Get<std::uint32_t>(file, link);
    return directory;
}

std::optional<TiffDirectory> ReadLinked(ByteView file, const TiffDirectory& directory,
                                        std::uint16_t pointer) {
    const auto offset = directory.Number(pointer);
    return offset ? ReadDirectory(file, *offset) : std::nullopt;
}
