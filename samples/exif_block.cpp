// SPDX-License-Identifier: MIT
#include "samples/exif_block.h"

#include "tiff/tags.h"
#include "tiff/types.h"

namespace samples {

namespace {

constexpr std::uint16_t kThumbnailOffset = 0x0201;

using TwoBytes = std::array<std::uint8_t, 2>;

TwoBytes MarkOf(ByteOrder order) {
    return order == ByteOrder::kLittleEndian ? TwoBytes{'I', 'I'} : TwoBytes{'M', 'M'};
}

/// IFD and values; the first byte has the offset `offset` in the file. `next_ifd` is the link to the next
/// IFD.
std::vector<std::uint8_t> IfdWithValues(const std::vector<Entry>& entries, ByteOrder order,
                                        std::uint32_t offset, std::optional<std::uint16_t> forced_count,
                                        std::uint32_t next_ifd = 0) {
    std::vector<std::uint8_t> bytes;
    std::vector<std::uint8_t> values;
    AppendIfd(entries, order, offset + TableSize(entries), next_ifd, bytes, values);
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

/// IFD0 with the pointer to the EXIF IFD that follows it.
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

/// IFD1 at `offset`, followed by its values and the thumbnail.
std::vector<std::uint8_t> ThumbnailPart(const ExifBlock& block, std::uint32_t offset) {
    std::vector<Entry> ifd1 = block.ifd1;
    Set(ifd1, Short(kThumbnailOffset, 0));
    const std::uint32_t end = offset + SizeWithValues(ifd1, block.order);
    Set(ifd1, Short(kThumbnailOffset, static_cast<std::uint16_t>(end)));
    std::vector<std::uint8_t> bytes = IfdWithValues(ifd1, block.order, offset, std::nullopt);
    Append(bytes, block.thumbnail);
    return bytes;
}

}  // namespace

std::vector<std::uint8_t> Serialize(const ExifBlock& block) {
    std::vector<std::uint8_t> bytes(block.header.begin(), block.header.end());
    const TwoBytes mark = block.byte_order_mark.value_or(MarkOf(block.order));
    bytes.insert(bytes.end(), mark.begin(), mark.end());
    AppendNumber(bytes, block.order, block.magic, 2);
    AppendNumber(bytes, block.order, block.first_ifd_offset.value_or(tiff::kHeaderSize), 4);

    const std::vector<Entry> ifd0 = WithPointer(block);
    const std::uint32_t exif_offset = tiff::kHeaderSize + SizeWithValues(ifd0, block.order);
    const std::uint32_t ifd1_offset =
        exif_offset + (block.with_exif_ifd ? SizeWithValues(block.exif, block.order) : 0);
    const bool with_ifd1 = !block.ifd1.empty();
    Append(bytes, IfdWithValues(ifd0, block.order, tiff::kHeaderSize, block.ifd0_count,
                                with_ifd1 ? ifd1_offset : 0));
    if (block.with_exif_ifd) {
        Append(bytes, IfdWithValues(block.exif, block.order, exif_offset, block.exif_count));
    }
    if (with_ifd1) {
        Append(bytes, ThumbnailPart(block, ifd1_offset));
    }
    return bytes;
}

}  // namespace samples
