// SPDX-License-Identifier: MIT
#include "batch/proof/written_dng.h"

#include <algorithm>
#include <array>
#include <optional>

#include "base/byte_order.h"
#include "base/byte_view.h"
#include "batch/proof/file_head.h"
#include "batch/proof/tag_name.h"
#include "batch/proof/tiff_directory.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

constexpr const char* kDamagedTags = "its tags are damaged";
constexpr const char* kNoSuchLayout = "it is not laid out as velmarcon does it";
constexpr const char* kNoImage = "it has no raw image that can be compared";
constexpr const char* kOtherLength = "its length is not that of a complete DNG";

/// Tags whose values tell where something stands in the file. They are followed, not compared.
constexpr std::array<std::uint16_t, 3> kPlaces = {tag::kStripOffsets, tag::kSubIFDs, tag::kExifIFD};

/// An expected text may have one NUL more than it counts, which fills it up to an even length.
bool Equal(const IFDTag& expected, const TiffDirectory::Entry& written) {
    if (written.type != expected.type || written.count != expected.count) {
        return false;
    }
    return std::ranges::find(kPlaces, expected.tag) != kPlaces.end() ||
           std::equal(written.value.begin(), written.value.end(), expected.value.begin());
}

/// What differs first, in the order of the tags; empty: nothing.
std::string Difference(const IFD& expected, const TiffDirectory& written) {
    auto there = written.entries.begin();
    for (const auto& [tag, entry] : expected) {
        if (there == written.entries.end() || there->first > tag) {
            return "tag " + TagName(tag) + " is missing";
        }
        if (there->first < tag) {
            break;
        }
        if (!Equal(entry, there->second)) {
            return "tag " + TagName(tag) + " differs";
        }
        ++there;
    }
    if (there != written.entries.end()) {
        return "tag " + TagName(there->first) + " does not belong there";
    }
    return written.ascending && written.next == 0 ? "" : kNoSuchLayout;
}

/// Bytes of a directory with its values, each of which begins at an even offset.
std::uint64_t SizeOf(const IFD& ifd) {
    std::uint64_t size = tiff::kCountSize + std::uint64_t{tiff::kEntrySize} * ifd.size() + tiff::kLinkSize;
    for (const auto& [tag, entry] : ifd) {
        size += entry.length <= tiff::kValueFieldSize ? 0 : std::uint64_t{entry.length} + entry.length % 2;
    }
    return size;
}

std::uint64_t HeadSize(const ExpectedTags& expected) {
    return tiff::kHeaderSize + SizeOf(expected.ifd0) + SizeOf(expected.exif_ifd) +
           (expected.sub_ifd.empty() ? 0 : SizeOf(expected.sub_ifd));
}

/// The value of a LONG.
std::uint32_t Number(const IFD& ifd, std::uint16_t tag) {
    const auto& value = ifd.at(tag).value;
    return byte_order::GetLittle<std::uint32_t>(value);
}

std::uint64_t FileSize(const ExpectedTags& expected) {
    const bool has_preview = !expected.sub_ifd.empty();
    return HeadSize(expected) + (has_preview ? Number(expected.ifd0, tag::kStripByteCounts) : 0) +
           Number(has_preview ? expected.sub_ifd : expected.ifd0, tag::kStripByteCounts);
}

/// Where the uncompressed image of that size begins, which must be one strip, whole, at an even byte; nothing
/// when there is none.
std::optional<std::uint64_t> PlainImage(ByteView file, std::uint64_t width, std::uint64_t height) {
    constexpr std::uint32_t bits = 16;
    constexpr std::uint32_t uncompressed = 1;
    const auto first = FirstDirectory(file);
    auto image = first ? ReadDirectory(file, *first) : std::nullopt;
    if (image && image->Number(tag::kImageWidth) != width) {
        image = ReadLinked(file, *image, tag::kSubIFDs);
    }
    if (!image || image->Number(tag::kImageWidth) != width || image->Number(tag::kImageLength) != height ||
        image->Number(tag::kBitsPerSample) != bits || image->Number(tag::kCompression) != uncompressed) {
        return std::nullopt;
    }
    const std::uint64_t length = width * height * sizeof(std::uint16_t);
    const std::uint64_t offset = image->Number(tag::kStripOffsets).value_or(0);
    const bool is_whole = image->Number(tag::kStripByteCounts) == length && file.Holds(offset, length);
    return is_whole && offset > 0 && offset % 2 == 0 ? std::optional(offset) : std::nullopt;
}

}  // namespace

std::string WrittenDng::CompareTags(const std::string& path, const ExpectedTags& expected) {
    if (!file_.Open(path)) {
        return kUnreadable;
    }
    if (!Read(HeadSize(expected), head_)) {
        return kUnreadable;
    }
    if (auto difference = CompareDirectories(expected); !difference.empty()) {
        return difference;
    }
    if (auto difference = ComparePlaces(expected); !difference.empty()) {
        return difference;
    }
    const std::uint64_t preview = expected.sub_ifd.empty() ? 0 : Number(expected.ifd0, tag::kStripByteCounts);
    return Read(preview, preview_) ? "" : kUnreadable;
}

FileRows WrittenDng::Rows(std::size_t width) {
    return {file_, file_.size() - skipped_ - head_.size() - preview_.size(), width};
}

bool WrittenDng::HasOtherLength(const ExpectedTags& expected) const {
    return file_.size() != FileSize(expected);
}

std::string WrittenDng::FindImage(const std::string& path, int width, int height) {
    const auto bytes = ReadHead(path, kLongestFile);
    if (!bytes || !file_.Open(path)) {
        return kUnreadable;
    }
    const auto offset =
        PlainImage(ByteView(*bytes), static_cast<std::uint64_t>(width), static_cast<std::uint64_t>(height));
    if (!offset) {
        return kNoImage;
    }
    skipped_ = *offset;
    file_.Skip(skipped_);
    return "";
}

void WrittenDng::Observe(std::span<const std::uint16_t> row) const {
    if (observer_) {
        observer_({reinterpret_cast<const std::uint8_t*>(row.data()), row.size_bytes()});
    }
}

/// Reads the next `size` bytes, or as many as there are. Returns whether these could be read.
bool WrittenDng::Read(std::uint64_t size, std::vector<std::uint8_t>& bytes) {
    const auto read = file_.Next(static_cast<std::size_t>(std::min(size, file_.size())));
    if (!read) {
        return false;
    }
    bytes.assign(read->begin(), read->end());
    if (observer_) {
        observer_(bytes);
    }
    return file_.IsIntact();
}

std::string WrittenDng::CompareDirectories(const ExpectedTags& expected) {
    const ByteView head(head_);
    const auto ifd0 =
        FirstDirectory(head) == tiff::kHeaderSize ? ReadDirectory(head, tiff::kHeaderSize) : std::nullopt;
    if (!ifd0) {
        return kDamagedTags;
    }
    std::string difference = Difference(expected.ifd0, *ifd0);
    const auto compare_linked = [&](const IFD& linked, std::uint16_t pointer) {
        if (difference.empty()) {
            const auto directory = ReadLinked(head, *ifd0, pointer);
            difference = directory ? Difference(linked, *directory) : kDamagedTags;
        }
    };
    if (!expected.sub_ifd.empty()) {
        compare_linked(expected.sub_ifd, tag::kSubIFDs);
    }
    compare_linked(expected.exif_ifd, tag::kExifIFD);
    return difference;
}

/// The directories are there, with the tags that are expected.
std::string WrittenDng::ComparePlaces(const ExpectedTags& expected) {
    const ByteView head(head_);
    const auto ifd0 = ReadDirectory(head, tiff::kHeaderSize);
    const bool has_preview = !expected.sub_ifd.empty();
    const auto raw_ifd = has_preview ? ReadLinked(head, *ifd0, tag::kSubIFDs) : ifd0;
    std::uint64_t position = HeadSize(expected);
    if (has_preview) {
        if (ifd0->Number(tag::kStripOffsets) != position) {
            return kNoSuchLayout;
        }
        position += Number(expected.ifd0, tag::kStripByteCounts);
    }
    if (raw_ifd->Number(tag::kStripOffsets) != position) {
        return kNoSuchLayout;
    }
    return HasOtherLength(expected) ? kOtherLength : "";
}
