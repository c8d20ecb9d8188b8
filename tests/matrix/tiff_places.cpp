// SPDX-License-Identifier: MIT
#include "tests/matrix/tiff_places.h"

#include <algorithm>
#include <array>

#include "samples/exif_block.h"
#include "samples/maker_note.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace matrix {

namespace {

constexpr std::size_t kTiffInJpeg = 12;  // after SOI, marker and length of APP1, "Exif" and two NULs

/// Walks the IFDs of one file.
class Walk {
  public:
    Walk(const Bytes& bytes, std::size_t base)
        : bytes_(bytes), base_(base), end_(bytes.size()), big_endian_(bytes[base] == 'M') {}

    void AddNumber(const std::string& name, std::size_t offset, std::size_t width,
                   bool moves_pixels = false) {
        places_.numbers.push_back({name, {offset, width, big_endian_}, base_, end_, moves_pixels});
    }

    /// The 8 bytes at the start of a TIFF file.
    void AddHeader() {
        AddNumber("byte-order", base_, 2);
        AddNumber("magic", base_ + 2, 2);
        AddNumber("first-ifd", base_ + 4, 4);
    }

    /// The IFD at `offset` from the base.
    void AddDirectory(Directory directory, std::size_t offset) {
        const std::string name = NameOf(directory);
        const bool decides = directory == Directory::kMain || directory == Directory::kRaw;
        offset += base_;
        AddNumber(name + "/entry-count", offset, tiff::kCountSize, decides);
        const std::uint32_t count = Get(bytes_, {offset, tiff::kCountSize, big_endian_});
        offset += tiff::kCountSize;
        for (std::uint32_t i = 0; i < count; ++i, offset += tiff::kEntrySize) {
            AddEntry(directory, offset);
        }
        AddNumber(name + "/next-ifd", offset, tiff::kLinkSize);
    }

    /// The last entry of `tag` found so far.
    const EntryPlaces& Entry(std::uint16_t tag) const {
        return *std::find_if(places_.entries.rbegin(), places_.entries.rend(),
                             [tag](const EntryPlaces& entry) { return entry.number == tag; });
    }
    std::uint32_t Value(std::uint16_t tag) const { return Get(bytes_, Entry(tag).value); }

    /// The maker note, which has separate offsets: an IFD at byte 8, and offsets that count from byte
    /// `note_base`.
    void AddMakerNote(std::uint32_t note_base) {
        const std::size_t note = base_ + Value(tag::kMakerNote);
        const std::size_t size = Get(bytes_, Entry(tag::kMakerNote).count);
        AddNumber("note/header", note, 4);
        AddNumber("note/header-end", note + 4, 4);
        base_ = note + note_base;
        end_ = note + size;
        big_endian_ = false;
        AddDirectory(Directory::kNote, samples::kMakerNoteHeaderSize - note_base);
    }

    TiffPlaces places() && { return std::move(places_); }

  private:
    void AddEntry(Directory directory, std::size_t offset) {
        const auto place = [&](std::size_t position, std::size_t width) {
            return Place{offset + position, width, big_endian_};
        };
        const Place tag = place(0, 2);
        places_.entries.push_back({directory, static_cast<std::uint16_t>(Get(bytes_, tag)), tag,
                                   place(tiff::kTypeInEntry, 2), place(tiff::kCountInEntry, 4),
                                   place(tiff::kValueInEntry, 4), base_, end_});
    }

    const Bytes& bytes_;
    std::size_t base_;
    std::size_t end_;
    bool big_endian_;
    TiffPlaces places_;
};

}  // namespace

std::string EntryPlaces::Name() const {
    return std::string(NameOf(directory)) + "/" + std::to_string(number);
}

TiffPlaces PlacesInJpeg(const Bytes& jpeg) {
    Walk walk(jpeg, kTiffInJpeg);
    walk.AddHeader();
    walk.AddDirectory(Directory::kMain, Get(jpeg, {kTiffInJpeg + 4, 4, jpeg[kTiffInJpeg] == 'M'}));
    walk.AddDirectory(Directory::kExif, walk.Value(tag::kExifIFD));
    walk.AddMakerNote(samples::kJpegNoteLayout.base);
    auto places = std::move(walk).places();
    places.numbers.push_back({"start-of-image", {0, 2, true}, 0, jpeg.size()});
    places.numbers.push_back({"app1-marker", {2, 2, true}, 0, jpeg.size()});
    places.numbers.push_back({"app1-length", {4, 2, true}, 0, jpeg.size()});
    places.numbers.push_back({"exif-header", {6, 4, true}, 0, jpeg.size()});
    places.numbers.push_back({"end-of-image", {jpeg.size() - 2, 2, true}, 0, jpeg.size()});
    return places;
}

TiffPlaces PlacesInDng(const Bytes& dng) {
    Walk walk(dng, 0);
    walk.AddHeader();
    walk.AddDirectory(Directory::kMain, samples::kDngIfd0Offset);
    const std::uint32_t raw = walk.Value(tag::kSubIFDs);
    const std::uint32_t exif = walk.Value(tag::kExifIFD);
    walk.AddDirectory(Directory::kRaw, raw);
    walk.AddDirectory(Directory::kExif, exif);
    walk.AddMakerNote(samples::kDngNoteLayout.base);
    return std::move(walk).places();
}

bool MovesPixels(Directory directory, std::uint16_t tag) {
    static constexpr std::array kRawTags = {
        tag::kImageWidth,   tag::kImageLength,     tag::kBitsPerSample,     tag::kCompression,
        tag::kStripOffsets, tag::kStripByteCounts, tag::kLinearizationTable};
    return (directory == Directory::kMain && tag == tag::kSubIFDs) ||
           (directory == Directory::kRaw && std::ranges::find(kRawTags, tag) != kRawTags.end());
}

}  // namespace matrix
