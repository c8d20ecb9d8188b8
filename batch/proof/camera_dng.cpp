// SPDX-License-Identifier: MIT
#include "batch/proof/camera_dng.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/byte_order.h"
#include "input/preview.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

constexpr std::uint32_t kTableBits = 8;

/// The sum of an entry's LONGs: the sizes of strips that follow each other.
std::uint64_t Sum(const TiffDirectory& directory, std::uint16_t tag) {
    const auto entry = directory.entries.find(tag);
    std::uint64_t sum = 0;
    if (entry != directory.entries.end() && entry->second.type == tiff::kLong) {
        const auto value = entry->second.value;
        for (std::size_t i = 0; i < value.size(); i += sizeof(std::uint32_t)) {
            sum += byte_order::GetLittle<std::uint32_t>(value.subspan(i));
        }
    }
    return sum;
}

}  // namespace

std::optional<CameraDng> CameraDng::Read(ByteView file) {
    CameraDng dng;
    dng.file_ = file;
    // The repair goes by where the camera puts its first IFD, whatever the header says.
    auto ifd0 = ReadDirectory(file, tiff::kHeaderSize);
    auto raw_ifd = ifd0 ? ReadLinked(file, *ifd0, tag::kSubIFDs) : std::nullopt;
    auto exif = ifd0 ? ReadLinked(file, *ifd0, tag::kExifIFD) : std::nullopt;
    if (!raw_ifd || !exif) {
        return std::nullopt;
    }
    dng.ifd0_ = std::move(*ifd0);
    dng.raw_ifd_ = std::move(*raw_ifd);
    dng.exif_ = std::move(*exif);
    return dng.TakeLayout() ? std::optional(std::move(dng)) : std::nullopt;
}

/// Returns whether the raw image can be read.
bool CameraDng::TakeLayout() {
    constexpr std::uint64_t most_pixels = std::numeric_limits<std::int32_t>::max() / sizeof(std::uint16_t);
    width_ = raw_ifd_.Number(tag::kImageWidth).value_or(0);
    height_ = raw_ifd_.Number(tag::kImageLength).value_or(0);
    const bool has_table = raw_ifd_.Number(tag::kBitsPerSample) == kTableBits;
    const std::uint64_t pixels = width_ * height_;  // 32 bits each
    if (pixels == 0 || pixels > most_pixels || (has_table && !TakeTable())) {
        return false;
    }
    const std::uint64_t offset = raw_ifd_.Number(tag::kStripOffsets).value_or(0);
    pixels_ = file_.Bytes(offset, pixels * (has_table ? 1 : sizeof(std::uint16_t)));
    return !pixels_.empty();
}

bool CameraDng::TakeTable() {
    const auto entry = raw_ifd_.entries.find(tag::kLinearizationTable);
    Table table = {};
    if (entry == raw_ifd_.entries.end() || entry->second.type != tiff::kShort ||
        entry->second.count < table.size()) {
        return false;
    }
    const auto value = entry->second.value;
    for (std::size_t i = 0; i < table.size(); ++i) {
        table[i] = byte_order::GetLittle<std::uint16_t>(value.subspan(i * sizeof(std::uint16_t)));
    }
    table_ = table;
    return true;
}

std::vector<std::uint8_t> CameraDng::Preview() const {
    std::vector<std::uint8_t> preview(PreviewSampler::kSize);
    const std::uint64_t offset = ifd0_.Number(tag::kStripOffsets).value_or(0);
    const std::uint64_t there = file_.size() - std::min<std::uint64_t>(offset, file_.size());
    const std::uint64_t size =
        std::min({Sum(ifd0_, tag::kStripByteCounts), there, std::uint64_t{preview.size()}});
    std::ranges::copy(file_.Bytes(offset, size), preview.begin());
    return preview;
}

void CameraDng::GetRow(std::size_t y, std::span<std::uint16_t> row) const {
    const std::size_t row_bytes = row.size() * (table_ ? 1 : sizeof(std::uint16_t));
    // Through bare pointers: a check of each index would double the time.
    const std::uint8_t* const samples = pixels_.subspan(y * row_bytes, row_bytes).data();
    std::uint16_t* const pixels = row.data();
    if (!table_) {
        for (std::size_t x = 0; x < row.size(); ++x) {
            pixels[x] = static_cast<std::uint16_t>(samples[2 * x] | samples[2 * x + 1] << 8U);
        }
        return;
    }
    const std::uint16_t* const table = table_->data();
    for (std::size_t x = 0; x < row.size(); ++x) {
        pixels[x] = table[samples[x]];
    }
}
