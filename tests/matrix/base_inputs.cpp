// SPDX-License-Identifier: MIT
#include "tests/matrix/base_inputs.h"

#include <cstddef>

#include "samples/camera_jpeg.h"
#include "samples/maker_note.h"
#include "samples/sample_databases.h"
#include "samples/sensor_dump.h"
#include "samples/shot.h"
#include "tests/support/camera_dng.h"
#include "tests/support/test_pair.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace matrix {

namespace {

/// The program compares the bytes of a dump with the pixels of an image.
constexpr std::size_t kShortestRaw = std::size_t{samples::kSensorWidth} * samples::kSensorHeight;

void Append(Bytes& bytes, const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

void SetIfThere(std::vector<samples::Entry>& entries, std::uint16_t tag, std::size_t offset) {
    if (samples::Entry* const entry = samples::Find(entries, tag); entry != nullptr && !entry->raw_field) {
        *entry = samples::Long(tag, static_cast<std::uint32_t>(offset));
    }
}

/// IFDs, their values and the two images, one strip each, in this order without gaps.
Bytes LooseDng(samples::CameraDngFile file) {
    const std::size_t preview_bytes = file.preview.size();
    samples::Set(file.ifd0, samples::Long(tag::kStripByteCounts, static_cast<std::uint32_t>(preview_bytes)));
    SetIfThere(file.ifd0, tag::kStripOffsets, 0);
    const auto main_size = samples::TableSize(file.ifd0);
    const auto raw_size = samples::TableSize(file.raw_ifd);
    const auto tables_end = tiff::kHeaderSize + main_size + raw_size + samples::TableSize(file.exif);
    SetIfThere(file.ifd0, tag::kSubIFDs, tiff::kHeaderSize + main_size);
    SetIfThere(file.ifd0, tag::kExifIFD, tiff::kHeaderSize + main_size + raw_size);

    // The strip offsets fit into their entries, so setting them in a second pass moves nothing.
    Bytes bytes;
    for (std::size_t values_size = 0, pass = 0; pass < 2; ++pass) {
        SetIfThere(file.ifd0, tag::kStripOffsets, tables_end + values_size);
        SetIfThere(file.raw_ifd, tag::kStripOffsets, tables_end + values_size + preview_bytes);
        bytes = {'I', 'I', tiff::kMagic, 0, tiff::kHeaderSize, 0, 0, 0};
        Bytes values;
        for (const auto* ifd : {&file.ifd0, &file.raw_ifd, &file.exif}) {
            samples::AppendIfd(*ifd, ByteOrder::kLittleEndian, tables_end, 0, bytes, values);
        }
        Append(bytes, values);
        values_size = values.size();
    }
    Append(bytes, file.preview);
    Append(bytes, file.raw);
    return bytes;
}

}  // namespace

const char* NameOf(Directory directory) {
    switch (directory) {
        case Directory::kMain:
            return "ifd0";
        case Directory::kRaw:
            return "raw";
        case Directory::kExif:
            return "exif";
        case Directory::kNote:
            return "note";
    }
    return "";
}

Bytes PairJpeg(ByteOrder order, const samples::Shot& shot) {
    auto block = samples::CameraExif(shot);
    block.order = order;
    return samples::CameraJpeg(block);
}

Bytes EditedJpeg(Directory directory, const Edit& edit) {
    auto block = samples::CameraExif({});
    if (directory == Directory::kNote) {
        auto note = samples::JpegMakerNoteEntries({});
        edit(note);
        samples::Set(block.exif, samples::Undefined(tag::kMakerNote, samples::MakerNote(note)));
    } else {
        edit(directory == Directory::kMain ? block.ifd0 : block.exif);
    }
    return samples::CameraJpeg(block);
}

samples::CameraDngFile SmallDng(const samples::Shot& shot) {
    return support::SmallCameraDng(kDngWidth, kDngHeight, shot);
}

Bytes CameraDng(const samples::Shot& shot) {
    return samples::Serialize(SmallDng(shot));
}

Bytes RepairedDng() {
    constexpr std::uint16_t bits_per_sample = 16;
    auto file = SmallDng();
    file.raw = samples::DumpBytes(support::CameraLevels(kDngWidth, kDngHeight));
    samples::Set(file.raw_ifd, samples::Short(tag::kBitsPerSample, bits_per_sample));
    samples::Set(file.raw_ifd,
                 samples::Long(tag::kStripByteCounts, static_cast<std::uint32_t>(file.raw.size())));
    samples::Remove(file.raw_ifd, tag::kLinearizationTable);
    return samples::Serialize(file);
}

Bytes EditedDng(Directory directory, const Edit& edit) {
    auto file = SmallDng();
    switch (directory) {
        case Directory::kMain:
            edit(file.ifd0);
            break;
        case Directory::kRaw:
            edit(file.raw_ifd);
            break;
        case Directory::kExif:
            edit(file.exif);
            break;
        case Directory::kNote: {
            auto note = samples::DngMakerNoteEntries({});
            edit(note);
            samples::Set(file.exif, samples::Undefined(tag::kMakerNote,
                                                       samples::MakerNote(note, samples::kDngNoteLayout)));
        }
    }
    return LooseDng(std::move(file));
}

Bytes RawFile() {
    // Not support::TestWords, which stay in memory: every program started from here would inherit them.
    Bytes bytes(kShortestRaw, 0xFF);
    for (int y = 0; y < samples::kSensorHeight; ++y) {
        for (int x = 0; x < samples::kSensorWidth; ++x) {
            const std::size_t offset = 2 * samples::WordIndex(x, y);
            if (offset + 1 < bytes.size()) {
                Put(bytes, {offset, 2}, support::TestPixel(x, y));
            }
        }
    }
    return bytes;
}

Bytes DarkFile() {
    constexpr std::uint16_t level = 100;
    Bytes bytes = samples::DumpBytes(samples::FlatWords(level));
    bytes.resize(kShortestRaw);
    return bytes;
}

const std::string& LensDatabase() {
    static const std::string text = samples::LensDatabase();
    return text;
}

const std::string& SensorDatabase() {
    static const std::string text = samples::SensorDatabase(samples::Shot().serial_number, {});
    return text;
}

}  // namespace matrix
