// SPDX-License-Identifier: MIT
#include "tests/matrix/structure_cases.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "samples/camera_dng.h"
#include "samples/camera_jpeg.h"
#include "samples/exif_block.h"
#include "samples/maker_note.h"
#include "tests/matrix/base_inputs.h"
#include "tests/matrix/bytes.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace matrix {

namespace {

using samples::Entry;
using Entries = std::vector<Entry>;
using Offsets = std::vector<std::uint32_t>;

constexpr std::uint32_t kLargest = 0xFFFFFFFF;

/// Draws random changes for one file. Uses the engine directly, because it gives the same numbers everywhere;
/// the library's distributions do not.
class Draw {
  public:
    explicit Draw(std::uint32_t number) : engine_(number * 2654435761U + 1) {}

    std::uint32_t Below(std::size_t end) { return static_cast<std::uint32_t>(engine_() % end); }
    bool OneIn(std::size_t n) { return Below(n) == 0; }

    /// The same for positions in a container.
    std::ptrdiff_t StepsBelow(std::size_t end) { return static_cast<std::ptrdiff_t>(Below(end)); }

    template <typename Container>
    auto OneOf(const Container& container) {
        return *(container.begin() + StepsBelow(container.size()));
    }

  private:
    std::mt19937 engine_;
};

// --- Entries

/// Sets another type and another count, which may or may not match each other and the value.
void ChangeTypeAndCount(Draw& draw, Entry& entry) {
    constexpr std::uint32_t types = 15;
    static constexpr auto counts = std::to_array<std::uint32_t>(
        {0, 1, 2, 3, 4, 5, 8, 255, 256, 65535, 65536, 0x20000001, 0x40000000, 0x7FFFFFFF, kLargest});
    entry.type = static_cast<std::uint16_t>(draw.Below(types));
    const auto bytes = static_cast<std::uint32_t>(entry.value.size());
    const auto element = static_cast<std::uint32_t>(tiff::ElementSize(entry.type));
    const bool fitting = element != 0 && draw.OneIn(2);
    entry.count = fitting ? bytes / element : draw.OneOf(counts);
}

void ChangeOrder(Draw& draw, Entries& entries) {
    for (std::size_t i = entries.size(); i > 1; --i) {
        std::swap(entries[i - 1], entries[draw.Below(i)]);
    }
}

/// Makes random changes to the entries of an IFD.
void ChangeEntries(Draw& draw, Entries& entries) {
    if (entries.empty()) {
        return;
    }
    for (std::uint32_t changes = draw.Below(4); changes > 0; --changes) {
        ChangeTypeAndCount(draw, entries[draw.Below(entries.size())]);
    }
    if (draw.OneIn(4)) {
        const Entry copy = draw.OneOf(entries);
        entries.insert(entries.begin() + draw.StepsBelow(entries.size()), copy);
    }
    if (draw.OneIn(4)) {
        entries.erase(entries.begin() + draw.StepsBelow(entries.size()));
    }
    if (draw.OneIn(8)) {
        ChangeOrder(draw, entries);
    }
    if (draw.OneIn(32)) {
        entries.clear();
    }
}

// --- Maker note

/// Cuts, moves or repeats bytes of a note, so that it no longer begins or ends where it should.
void ChangeNoteBytes(Draw& draw, Bytes& note) {
    constexpr std::size_t some = 40;
    switch (draw.Below(7)) {
        case 0:
            note.resize(draw.Below(note.size() + 1));
            break;
        case 1:
            note.insert(note.begin(), draw.Below(some), std::uint8_t{0});
            break;
        case 2:
            note.erase(note.begin(), note.begin() + draw.StepsBelow(std::min(some, note.size())));
            break;
        case 3: {  // a note inside the note, after its header
            const Bytes inner = note;
            note.insert(note.begin() + samples::kMakerNoteHeaderSize, inner.begin(), inner.end());
            break;
        }
        case 4:
            note.insert(note.end(), note.begin(), note.end());
            break;
        case 5: {  // a wrong number of entries
            static constexpr auto counts = std::to_array<std::uint32_t>({0, 1, 14, 18, 20, 255, 65535});
            Put(note, {samples::kMakerNoteHeaderSize, tiff::kCountSize}, draw.OneOf(counts));
            break;
        }
        default:
            break;
    }
}

void ChangeNote(Draw& draw, Entries entries, Entries& exif) {
    ChangeEntries(draw, entries);
    Bytes note = samples::MakerNote(entries);
    if (draw.OneIn(2)) {
        ChangeNoteBytes(draw, note);
    }
    samples::Set(exif, samples::Undefined(tag::kMakerNote, std::move(note)));
}

// --- IFDs

/// An offset that is one of `places`, a few bytes or entries away from one, or far outside.
std::uint32_t OddOffset(Draw& draw, const Offsets& places) {
    static constexpr auto distances = std::to_array<std::uint32_t>({0, 0, 1, 2, 4, 12, 14, 24});
    static constexpr auto nowhere =
        std::to_array<std::uint32_t>({0, 1, 7, 0x7FFFFFFF, kLargest - 1, kLargest});
    if (draw.OneIn(6)) {
        return draw.OneOf(nowhere);
    }
    const std::uint32_t distance = draw.OneOf(distances);
    const std::uint32_t place = draw.OneOf(places);
    return draw.OneIn(2) ? place + distance : place - std::min(place, distance);
}

/// Makes the pointer `tag` lead somewhere else, or removes it.
void ChangePointer(Draw& draw, std::uint16_t tag, const Offsets& places, Entries& entries) {
    constexpr std::uint16_t long_type = 4;
    switch (draw.Below(6)) {
        case 0:
            samples::Remove(entries, tag);
            break;
        case 1:
        case 2:
            samples::Set(entries, samples::RawEntry(tag, long_type, 1, OddOffset(draw, places)));
            break;
        case 3:  // several pointers, of which the first is read
            samples::Set(entries, samples::Longs(tag, {OddOffset(draw, places), OddOffset(draw, places)}));
            break;
        case 4:
            samples::Set(entries, samples::RawEntry(tag, static_cast<std::uint16_t>(draw.Below(14)),
                                                    draw.Below(4), OddOffset(draw, places)));
            break;
        default:
            break;
    }
}

/// Adds pointers to IFDs that the camera does not write and the program does not read.
void AddForeignPointers(Draw& draw, const Offsets& places, Entries& entries) {
    for (const std::uint16_t tag : {tag::kGPSIFD, tag::kInteroperabilityIFD}) {
        if (draw.OneIn(4)) {
            samples::Set(entries, samples::Long(tag, OddOffset(draw, places)));
        }
    }
}

// --- DNG

/// Gives the image at `offset` strips in any order, overlapping, with gaps, or beyond the end.
void ChangeStrips(Draw& draw, std::uint32_t offset, std::uint32_t bytes, Entries& entries) {
    constexpr std::uint32_t most_strips = 6;
    const std::uint32_t count = 1 + draw.Below(most_strips);
    const std::uint32_t size = bytes / count;
    Offsets offsets;
    Offsets sizes;
    for (std::uint32_t i = 0; i < count; ++i) {
        offsets.push_back(offset + i * size);
        sizes.push_back(i + 1 < count ? size : bytes - i * size);
    }
    for (std::uint32_t changes = draw.Below(4); changes > 0; --changes) {
        const std::array<std::uint32_t, 6> places = {
            0, offset, offset + 1, offset + bytes, offset + size / 2, kLargest};
        const std::array<std::uint32_t, 6> lengths = {0, 1, size - 1, size + 1, bytes, kLargest};
        auto& numbers = draw.OneIn(2) ? offsets : sizes;
        numbers[draw.Below(numbers.size())] = &numbers == &offsets ? draw.OneOf(places) : draw.OneOf(lengths);
    }
    if (draw.OneIn(2)) {
        std::swap(offsets.front(), offsets.back());
    }
    if (draw.OneIn(8)) {
        (draw.OneIn(2) ? offsets : sizes).pop_back();
    }
    samples::Set(entries, samples::Longs(tag::kStripOffsets, offsets));
    samples::Set(entries, samples::Longs(tag::kStripByteCounts, sizes));
}

Bytes OddDng(std::uint32_t number) {
    Draw draw(number);
    auto file = SmallDng();
    const std::uint32_t raw_ifd = samples::kDngIfd0Offset + samples::TableSize(file.ifd0);
    const std::uint32_t exif_ifd = raw_ifd + samples::TableSize(file.raw_ifd);
    // The IFD at the end is a second copy.
    const auto end = static_cast<std::uint32_t>(samples::kDngRawOffset + file.raw.size());
    const Offsets places = {samples::kDngIfd0Offset, raw_ifd, exif_ifd, samples::kDngPreviewOffset,
                            samples::kDngRawOffset,  end};
    const auto preview_bytes = static_cast<std::uint32_t>(file.preview.size());
    const auto raw_bytes = static_cast<std::uint32_t>(file.raw.size());

    if (draw.OneIn(2)) {
        ChangeStrips(draw, samples::kDngRawOffset, raw_bytes, file.raw_ifd);
    }
    if (draw.OneIn(4)) {
        ChangeStrips(draw, samples::kDngPreviewOffset, preview_bytes, file.ifd0);
    }
    if (draw.OneIn(2)) {
        ChangeNote(draw, samples::DngMakerNoteEntries({}), file.exif);
    }
    const Entries second = draw.OneIn(2) ? file.raw_ifd : file.exif;
    for (Entries* entries : {&file.ifd0, &file.raw_ifd, &file.exif}) {
        if (draw.OneIn(3)) {
            ChangeEntries(draw, *entries);
        }
        AddForeignPointers(draw, places, *entries);
    }
    if (draw.OneIn(2)) {
        ChangePointer(draw, draw.OneIn(2) ? tag::kSubIFDs : tag::kExifIFD, places, file.ifd0);
    }
    Bytes bytes = samples::Serialize(file);
    if (bytes.empty()) {
        bytes = CameraDng();
    }
    Bytes values;
    const auto values_offset = static_cast<std::uint32_t>(bytes.size()) + samples::TableSize(second);
    samples::AppendIfd(second, ByteOrder::kLittleEndian, values_offset, 0, bytes, values);
    bytes.insert(bytes.end(), values.begin(), values.end());
    return bytes;
}

// --- JPEG

Bytes OddJpeg(std::uint32_t number) {
    Draw draw(number);
    auto block = samples::CameraExif({});
    block.order = draw.OneIn(3) ? ByteOrder::kBigEndian : ByteOrder::kLittleEndian;
    const std::uint32_t behind = tiff::kHeaderSize + samples::TableSize(block.ifd0) + tiff::kEntrySize;
    const Offsets places = {tiff::kHeaderSize, behind, behind + samples::TableSize(block.exif)};
    if (draw.OneIn(2)) {
        ChangeNote(draw, samples::JpegMakerNoteEntries({}), block.exif);
    }
    for (Entries* entries : {&block.ifd0, &block.exif}) {
        if (draw.OneIn(2)) {
            ChangeEntries(draw, *entries);
        }
        AddForeignPointers(draw, places, *entries);
    }
    if (draw.OneIn(4)) {
        ChangePointer(draw, tag::kExifIFD, places, draw.OneIn(4) ? block.exif : block.ifd0);
    }
    if (draw.OneIn(4)) {
        block.exif_ifd_offset = OddOffset(draw, places);
    }
    if (draw.OneIn(8)) {
        block.first_ifd_offset = OddOffset(draw, places);
    }
    block.with_exif_ifd = !draw.OneIn(16);
    static constexpr auto counts = std::to_array<std::uint16_t>({0, 1, 2, 12, 60, 5000, 65535});
    if (draw.OneIn(8)) {
        block.ifd0_count = draw.OneOf(counts);
    }
    if (draw.OneIn(8)) {
        block.exif_count = draw.OneOf(counts);
    }
    return samples::CameraJpeg(block);
}

}  // namespace

void AddStructureCases(CaseList& cases) {
    constexpr std::uint32_t files = 1500;  // of each kind
    for (std::uint32_t number = 0; number < files; ++number) {
        cases.Add("structure", "dng/" + std::to_string(number), Kind::kDng, Pixels::kAny,
                  [number] { return OddDng(number); });
    }
    for (std::uint32_t number = 0; number < files; ++number) {
        cases.Add("structure", "jpeg/" + std::to_string(number), Kind::kPair, Pixels::kAny,
                  [number] { return OddJpeg(number); });
    }
}

}  // namespace matrix
