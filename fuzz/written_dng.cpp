// SPDX-License-Identifier: MIT
#include "fuzz/written_dng.h"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

#include "fuzz/require.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

constexpr std::array<std::uint8_t, 8> kHeader = {'I', 'I', 42, 0, 8, 0, 0, 0};

/// The value of a tag that has one LONG.
std::uint32_t Long(const support::TiffIFD& ifd, std::uint16_t tag) {
    Require(ifd.Has(tag), "a tag that every image needs is present");
    const auto& entry = ifd.At(tag);
    Require(entry.type == tiff::kLong && entry.count == 1, "an offset or a size is one LONG");
    return entry.Number();
}

}  // namespace

WrittenDng::WrittenDng(std::vector<std::uint8_t> bytes, bool preview)
    : bytes_(std::move(bytes)), file_(bytes_) {
    Require(bytes_.size() > kHeader.size() && std::equal(kHeader.begin(), kHeader.end(), bytes_.begin()),
            "IFD0 follows right after the header");
    AddPlace(0, kHeader.size());
    ifd0_ = file_.FirstIFD();
    AddIFD(ifd0_);
    raw_ifd_ = ifd0_;
    if (preview) {
        raw_ifd_ = file_.ReadIFD(Long(ifd0_, tag::kSubIFDs));
        AddIFD(raw_ifd_);
        AddStrip(ifd0_);
    }
    exif_ifd_ = file_.ReadIFD(Long(ifd0_, tag::kExifIFD));
    AddIFD(exif_ifd_);
    AddStrip(raw_ifd_);
    Require(places_.back().end == bytes_.size(), "the file ends with the raw strip");
    RequireNoOverlap();
}

std::span<const std::uint8_t> WrittenDng::Strip(const support::TiffIFD& ifd) const {
    return std::span(bytes_).subspan(Long(ifd, tag::kStripOffsets), Long(ifd, tag::kStripByteCounts));
}

void WrittenDng::AddPlace(std::uint64_t offset, std::uint64_t size) {
    Require(offset + size <= bytes_.size(), "IFDs, values and strips lie in the file");
    Require(offset % 2 == 0, "IFDs, values and strips start at even offsets");
    places_.push_back({offset, offset + size});
}

void WrittenDng::AddIFD(const support::TiffIFD& ifd) {
    AddPlace(ifd.offset,
             tiff::kCountSize + std::uint64_t{tiff::kEntrySize} * ifd.order.size() + tiff::kLinkSize);
    Require(ifd.next == 0, "no IFD follows");
    Require(std::ranges::adjacent_find(ifd.order, std::ranges::greater_equal()) == ifd.order.end(),
            "the tags of an IFD ascend");
    for (const auto& [tag, entry] : ifd.entries) {
        Require(tiff::ElementSize(entry.type) != 0, "values have one of the types 1 to 10");
        if (entry.value.size() > tiff::kValueFieldSize) {
            AddPlace(entry.offset, entry.value.size());
        }
    }
}

void WrittenDng::AddStrip(const support::TiffIFD& ifd) {
    AddPlace(Long(ifd, tag::kStripOffsets), Long(ifd, tag::kStripByteCounts));
}

void WrittenDng::RequireNoOverlap() {
    std::ranges::sort(places_, {}, &Place::begin);
    const auto overlap =
        std::ranges::adjacent_find(places_, [](const Place& a, const Place& b) { return b.begin < a.end; });
    Require(overlap == places_.end(), "IFDs, values and strips don't overlap");
}

void RequireText(const support::TiffEntry& entry, std::string text) {
    if (text.empty() || text.back() != '\0') {
        text += '\0';
    }
    Require(entry.type == tiff::kAscii && entry.Text() == text, "a text is written unchanged");
}
