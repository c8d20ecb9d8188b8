// SPDX-License-Identifier: MIT
#include "batch/proof/tag_proof.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

#include "batch/proof/tag_name.h"
#include "batch/proof/tiff_directory.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

/// Tags whose values tell where something stands in the file. They are followed, not compared.
constexpr std::array<std::uint16_t, 3> kPlaces = {tag::kStripOffsets, tag::kSubIFDs, tag::kExifIFD};

/// An expected text may have one NUL more than it counts, which fills it up to an even length.
bool Equal(const DNGlib::IFDTag& expected, const TiffDirectory::Entry& written) {
    if (written.type != expected.type || written.count != expected.count) {
        return false;
    }
    return std::ranges::find(kPlaces, expected.tag) != kPlaces.end() ||
           std::equal(written.value.begin(), written.value.end(), expected.value.begin());
}

/// What differs first, in the order of the tags; empty: nothing.
std::string Difference(const DNGlib::IFD& expected, const TiffDirectory& written) {
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
    return written.ascending && written.next == 0 ? "" : "its tags are not as velmarcon writes them";
}

constexpr const char* kCutDirectory = "its tags are damaged";

/// The same for the directory to which a tag of IFD0 leads, which is read into `directory`.
std::string LinkedDifference(const DNGlib::IFD& expected, ByteView dng, const TiffDirectory& ifd0,
                             std::uint16_t pointer, TiffDirectory& directory) {
    const auto linked = ReadLinked(dng, ifd0, pointer);
    if (!linked) {
        return kCutDirectory;
    }
    directory = *linked;
    return Difference(expected, directory);
}

/// The only strip of `ifd`; empty when it does not lie in the file.
std::span<const std::uint8_t> Strip(ByteView dng, const TiffDirectory& ifd) {
    return dng.Bytes(ifd.Number(tag::kStripOffsets).value_or(0),
                     ifd.Number(tag::kStripByteCounts).value_or(0));
}

bool EndsWith(ByteView dng, std::span<const std::uint8_t> strip) {
    return !strip.empty() && strip.data() + strip.size() == dng.Bytes(0, dng.size()).data() + dng.size();
}

}  // namespace

std::string TagDifference(const ExpectedTags& expected, ByteView dng, WrittenImages& images) {
    const auto first = FirstDirectory(dng);
    const auto ifd0 = first == tiff::kHeaderSize ? ReadDirectory(dng, *first) : std::nullopt;
    if (!ifd0) {
        return kCutDirectory;
    }
    const bool preview = !expected.sub_ifd.empty();
    std::string difference = Difference(expected.ifd0, *ifd0);
    TiffDirectory sub_ifd;
    if (difference.empty() && preview) {
        difference = LinkedDifference(expected.sub_ifd, dng, *ifd0, tag::kSubIFDs, sub_ifd);
    }
    TiffDirectory exif;
    if (difference.empty()) {
        difference = LinkedDifference(expected.exif_ifd, dng, *ifd0, tag::kExifIFD, exif);
    }
    if (!difference.empty()) {
        return difference;
    }
    images.raw = Strip(dng, preview ? sub_ifd : *ifd0);
    images.preview = preview ? Strip(dng, *ifd0) : std::span<const std::uint8_t>();
    if (!EndsWith(dng, images.raw) || (preview && images.preview.empty())) {
        return "its length is not that of a complete DNG";
    }
    return "";
}
