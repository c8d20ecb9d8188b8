// SPDX-License-Identifier: MIT
#include "samples/exif_block.h"

#include "exif/tags.h"
#include "exif/tiff_types.h"

namespace samples {

namespace {

using TwoBytes = std::array<std::uint8_t, 2>;

TwoBytes MarkOf(ByteOrder order) {
    return order == ByteOrder::kLittle ? TwoBytes{'I', 'I'} : TwoBytes{'M', 'M'};
}

/// Directory and values, the first byte of which the file counts as `offset`.
std::vector<std::uint8_t> IfdWithValues(const std::vector<Entry>& entries, ByteOrder order,
                                        std::uint32_t offset, std::optional<std::uint16_t> forced_count) {
    std::vector<std::uint8_t> bytes;
    std::vector<std::uint8_t> values;
    AppendIfd(entries, order, offset + TableSize(entries), 0, bytes, values);
    if (forced_count) {
        std::vector<std::uint8_t> count;
        AppendNumber(count, order, *forced_count, tiff::kCountSize);
        bytes[0] = count[0];
        bytes[1] = count[1];
    }
    bytes.insert(bytes.end(), values.begin(), values.end());
    return bytes;
}

std::uint32_t SizeWithValues(const std::vector<Entry>& entries, ByteOrder order) {
    return static_cast<std::uint32_t>(IfdWithValues(entries, order, 0, std::nullopt).size());
}

/// IFD0 with the pointer to an EXIF IFD that follows it.
std::vector<Entry> WithPointer(const ExifBlock& block) {
    std::vector<Entry> ifd0 = block.ifd0;
    if (!block.with_exif_ifd || Find(ifd0, tag::kExifIFD) != nullptr) {
        return ifd0;
    }
    Set(ifd0, Long(tag::kExifIFD, 0));
    const std::uint32_t behind = tiff::kHeaderSize + SizeWithValues(ifd0, block.order);
    Set(ifd0, Long(tag::kExifIFD, block.exif_ifd_offset.value_or(behind)));
    return ifd0;
}

void Append(std::vector<std::uint8_t>& out, const std::vector<std::uint8_t>& bytes) {
    out.insert(out.end(), bytes.begin(), bytes.end());
}

}  // namespace

std::vector<std::uint8_t> Serialize(const ExifBlock& block) {
    std::vector<std::uint8_t> bytes(block.header.begin(), block.header.end());
    const TwoBytes mark = block.byte_order_mark.value_or(MarkOf(block.order));
    bytes.insert(bytes.end(), mark.begin(), mark.end());
    AppendNumber(bytes, block.order, block.magic, 2);
    AppendNumber(bytes, block.order, block.first_ifd_offset.value_or(tiff::kHeaderSize), 4);

    const std::vector<Entry> ifd0 = WithPointer(block);
    Append(bytes, IfdWithValues(ifd0, block.order, tiff::kHeaderSize, block.ifd0_count));
    if (block.with_exif_ifd) {
        const auto offset = static_cast<std::uint32_t>(bytes.size()) - kExifHeaderSize;
        Append(bytes, IfdWithValues(block.exif, block.order, offset, block.exif_count));
    }
    return bytes;
}

}  // namespace samples
