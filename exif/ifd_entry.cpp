// SPDX-License-Identifier: MIT
#include "exif/ifd_entry.h"

#include "base/byte_order.h"

namespace {

Rational parseEXIFRational(const TiffBlock& block, std::uint64_t offset) {
    return {parse32(block, offset), parse32(block, offset + sizeof(std::uint32_t))};
}

/// The text's bytes, `count` of them; none when they are not all in the block.
EntryBytes parseEXIFString(const TiffBlock& block, std::uint32_t count, std::uint32_t data) {
    return count <= tiff::kValueFieldSize ? EntryBytes(data, count)
                                          : EntryBytes(block.buf.Bytes(block.base + data, count));
}

/// The same for bytes without a meaning.
EntryBytes parseEXIFundefined(const TiffBlock& block, std::uint32_t count, std::uint32_t data) {
    return parseEXIFString(block, count, data);
}

}  // namespace

std::uint16_t parse16(const TiffBlock& block, std::uint64_t offset) {
    return block.buf.Get<std::uint16_t>(offset, block.little_endian);
}

std::uint32_t parse32(const TiffBlock& block, std::uint64_t offset) {
    return block.buf.Get<std::uint32_t>(offset, block.little_endian);
}

EntryBytes::EntryBytes(std::uint32_t data, std::uint32_t count) : inside_count_(count) {
    // Low byte first, whatever the file's byte order was: short values of a big-endian file come out
    // reversed. The camera writes little-endian, and what is made of other files must not change.
    byte_order::PutLittle(std::span(inside_), data);
}

IFEntry parseIFEntry(const TiffBlock& block, std::uint64_t offset) {
    const std::uint64_t value_field = offset + tiff::kValueInEntry;
    IFEntry entry;
    entry.Tag = parse16(block, offset);
    entry.Format = parse16(block, offset + tiff::kTypeInEntry);
    entry.Length = parse32(block, offset + tiff::kCountInEntry);
    entry.Data = parse32(block, value_field);
    switch (entry.Format) {
        case tiff::kByte:
            entry.ByteValue = block.buf.Get<std::uint8_t>(value_field, block.little_endian);
            break;
        case tiff::kAscii:
            entry.StringValue = parseEXIFString(block, entry.Length, entry.Data);
            break;
        case tiff::kShort:
            entry.ShortValue = parse16(block, value_field);
            break;
        case tiff::kLong:
            entry.LongValue = entry.Data;
            break;
        case tiff::kRational:
            if (block.buf.Holds(block.base + entry.Data, tiff::ElementSize(tiff::kRational))) {
                entry.RationalValue = parseEXIFRational(block, block.base + entry.Data);
            }
            break;
        case tiff::kUndefined:
            entry.UndefinedValue = parseEXIFundefined(block, entry.Length, entry.Data);
            break;
        case tiff::kSLong:
        case tiff::kSRational:
            break;
        default:
            entry.Tag = kIgnoredTag;
    }
    return entry;
}
