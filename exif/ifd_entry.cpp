// SPDX-License-Identifier: MIT
#include "exif/ifd_entry.h"

namespace {

/// The rational at `offset`, regardless of the entry's count; 0/0 if not all of it lies in the block.
Rational parseEXIFRational(const tiff::Block& block, std::uint64_t offset) {
    if (!block.bytes.Holds(offset, tiff::ElementSize(tiff::kRational))) {
        return {};
    }
    return {block.Get<std::uint32_t>(offset), block.Get<std::uint32_t>(offset + sizeof(std::uint32_t))};
}

}  // namespace

IFEntry parseIFEntry(const tiff::Block& block, std::uint64_t offset) {
    const tiff::Entry read = tiff::ReadEntry(block, offset).value_or(tiff::Entry());
    const auto bytes = [&] {
        return tiff::ReadValue(block, read, read.ValueSize()).value_or(tiff::ValueBytes());
    };
    IFEntry entry;
    entry.Tag = read.tag;
    entry.Format = read.type;
    entry.Length = read.count;
    entry.Data = read.Offset();
    switch (entry.Format) {
        case tiff::kByte:
            entry.ByteValue = read.First<std::uint8_t>();
            break;
        case tiff::kAscii:
            entry.StringValue = bytes();
            break;
        case tiff::kShort:
            entry.ShortValue = read.First<std::uint16_t>();
            break;
        case tiff::kLong:
            entry.LongValue = read.First<std::uint32_t>();
            break;
        case tiff::kRational:
            entry.RationalValue = parseEXIFRational(block, block.base + read.Offset());
            break;
        case tiff::kUndefined:
            entry.UndefinedValue = bytes();
            break;
        case tiff::kSLong:
        case tiff::kSRational:
            break;
        default:
            entry.Tag = kIgnoredTag;
    }
    return entry;
}
