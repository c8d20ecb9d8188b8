// SPDX-License-Identifier: MIT
// IFDs that point at each other or at themselves, and tables that fill the file: each IFD is read once, and
// overlapping data are taken literally.
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "exif/exif_info.h"
#include "samples/camera_dng.h"
#include "samples/camera_jpeg.h"
#include "samples/exif_block.h"
#include "samples/maker_note.h"
#include "tests/dng/repair_run.h"
#include "tests/exif/parse_block.h"
#include "tests/support/camera_dng.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kMostEntries = 65535;
const char* const kDamaged = "L1.DNG: Error #0017: Damaged DNG file.\n";

// --- EXIF block

TEST(IFDLoop, ExifIFDThatIsIFD0IsReadOnlyTwice) {
    auto block = samples::CameraExif({});
    block.exif_ifd_offset = tiff::kHeaderSize;
    samples::Set(block.ifd0, samples::Short(tag::kISOSpeedRatings, 640));
    EXIFInfo exif;
    EXPECT_EQ(ParseSegment(samples::Serialize(block), exif), 0);
    EXPECT_EQ(exif.Make, std::string("Leica Camera AG\0", 16));
    EXPECT_EQ(exif.ISOSpeedRatings, 640);
    EXPECT_EQ(exif.ExposureProgram, 0) << "belongs to the EXIF IFD that nothing points to";
}

TEST(IFDLoop, ExifIFDThatPointsToItselfIsNotFollowed) {
    auto block = samples::CameraExif({.iso = 640});
    for (const std::uint32_t offset : {8U, 26U, 0U, 0xFFFFFFFFU}) {
        samples::Set(block.exif, samples::Long(tag::kExifIFD, offset));
        EXIFInfo exif;
        EXPECT_EQ(ParseSegment(samples::Serialize(block), exif), 0);
        EXPECT_EQ(exif.ISOSpeedRatings, 640);
    }
}

TEST(IFDLoop, IFD0OverTheHeaderIsCorrupt) {
    for (const std::uint32_t offset : {0U, 1U, 2U, 4U}) {
        auto block = samples::CameraExif({});
        block.first_ifd_offset = offset;
        EXIFInfo exif;
        const int result = ParseSegment(samples::Serialize(block), exif);
        // At offset 0 the number of entries is "II"; at other offsets the header gives too few or too many
        // entries.
        EXPECT_TRUE(result == EXIFInfo::kCorruptExif || exif.Make.empty()) << offset;
        EXPECT_EQ(exif.ISOSpeedRatings, 0) << offset;
    }
}

TEST(IFDLoop, ValueThatIsItsOwnEntryHasTheBytesOfTheEntry) {
    // The text of the only entry is the entry: tag 271, type 2, count 12, offset 10.
    const auto block = samples::Serialize(
        {.ifd0 = {samples::RawEntry(tag::kMake, tiff::kAscii, 12, 10)}, .with_exif_ifd = false});
    EXIFInfo exif;
    EXPECT_EQ(ParseSegment(block, exif), 0);
    EXPECT_EQ(exif.Make, std::string("\x0F\x01\x02\0\x0C\0\0\0\x0A\0\0\0", 12));
}

TEST(IFDLoop, MakerNoteValuesInsideItsTableHaveTheBytesOfTheTable) {
    // Offsets count from the end of the 8-byte header, where the table begins, so 2 is the first entry.
    const auto note =
        samples::MakerNote({samples::RawEntry(samples::note::kSerialNumber, tiff::kLong, 2, 2),
                            samples::RawEntry(samples::note::kApproximateFNumber, tiff::kRational, 1, 0)});
    auto block = samples::CameraExif({});
    samples::Set(block.exif, samples::Undefined(tag::kMakerNote, note));
    EXIFInfo exif;
    EXPECT_EQ(ParseSegment(samples::Serialize(block), exif), 0);
    EXPECT_EQ(exif.SerialNumber, 0x00040303U) << "tag 0x0303 and type 4";
    EXPECT_EQ(exif.Mn0313, (Rational{0x03030002, 0x00020004}))
        << "the count of 2, and tag and type of the first entry";
}

TEST(IFDLoop, MakerNoteThatContainsTheIFDsIsReadOnce) {
    auto block = samples::CameraExif({.iso = 640});
    constexpr std::uint32_t size = 400;
    samples::Set(block.exif, samples::RawEntry(tag::kMakerNote, tiff::kUndefined, size, 0));
    const auto bytes = samples::Serialize(block);
    EXIFInfo exif;
    EXPECT_EQ(ParseSegment(bytes, exif), 0);
    EXPECT_EQ(exif.ISOSpeedRatings, 640);
    const auto start = bytes.begin() + samples::kExifHeaderSize;
    EXPECT_EQ(exif.MakerNote, Bytes(start, start + size));
}

TEST(FullIFD, WithTheMostEntriesPossibleIsReadTwice) {
    samples::ExifBlock block;
    block.ifd0.assign(kMostEntries - 2, samples::Short(tag::kOrientation, 6));
    block.ifd0.push_back(samples::Long(tag::kExifIFD, tiff::kHeaderSize));
    block.ifd0.push_back(samples::Short(tag::kISOSpeedRatings, 640));
    const auto bytes = samples::Serialize(block);
    EXIFInfo exif;
    EXPECT_EQ(ParseSegment(bytes, exif), 0);
    EXPECT_EQ(exif.Orientation, 6);
    EXPECT_EQ(exif.ISOSpeedRatings, 640);
}

TEST(FullIFD, WithHugeCountsHasNoValues) {
    auto block = samples::CameraExif({.iso = 640});
    const std::vector<std::uint16_t> texts = {tag::kMake, tag::kModel, tag::kSoftware, tag::kDateTime};
    for (const std::uint16_t text : texts) {
        samples::Set(block.ifd0, samples::RawEntry(text, tiff::kAscii, 0xFFFFFFFF, 0xFFFFFFFF));
    }
    samples::Set(block.exif, samples::RawEntry(tag::kMakerNote, tiff::kUndefined, 0xFFFFFFFF, 8));
    samples::Set(block.exif, samples::RawEntry(tag::kExposureTime, tiff::kRational, 0xFFFFFFFF, 0xFFFFFFFF));
    EXIFInfo exif;
    EXPECT_EQ(ParseSegment(samples::Serialize(block), exif), 0);
    EXPECT_EQ(exif.Make + exif.Model + exif.Software + exif.DateTime, "");
    EXPECT_TRUE(exif.MakerNote.empty());
    EXPECT_EQ(exif.ExposureTime, Rational{});
    EXPECT_EQ(exif.ISOSpeedRatings, 640);
}

// --- The camera's DNG

/// A camera DNG in which the pointers to IFDs can be exchanged.
class LinkedDirectories : public testing::Test {
  protected:
    static constexpr std::uint32_t kIfd0 = samples::kDngIfd0Offset;
    static constexpr std::uint32_t kRaw = samples::kDngRawIfdOffset;
    static constexpr std::uint32_t kExif = samples::kDngExifIfdOffset;

    /// Repairs the file with its SubIFDs and ExifIFD entries at these offsets.
    RepairResult RepairWith(std::uint32_t raw, std::uint32_t exif) {
        auto camera = support::SmallCameraDng(64, 16);
        samples::Set(camera.ifd0, samples::RawEntry(tag::kSubIFDs, tiff::kLong, 1, raw));
        samples::Set(camera.ifd0, samples::RawEntry(tag::kExifIFD, tiff::kLong, 1, exif));
        run_.WriteInput(camera);
        return run_.Repair({.lens_fix = true, .sensor_fix = true});
    }

    void ExpectRefused(std::uint32_t raw, std::uint32_t exif) {
        const auto result = RepairWith(raw, exif);
        EXPECT_EQ(result.code, 17) << raw << " " << exif;
        EXPECT_EQ(result.output, kDamaged);
        EXPECT_TRUE(run_.OutputNames().empty());
    }

    RepairRun run_;
};

TEST_F(LinkedDirectories, DngWithoutTheRawImageIsRefused) {
    EXPECT_EQ(RepairWith(kRaw, kExif).code, 0);
    for (const std::uint32_t raw : {kIfd0, kExif, 0U, 1U, 0xFFFFFFFFU}) {
        ExpectRefused(raw, kExif);
        ExpectRefused(raw, raw);
    }
}

TEST_F(LinkedDirectories, DngWhoseExifIFDIsAnotherIFDIsRepairedWithItsTags) {
    for (const std::uint32_t exif : {kIfd0, kRaw}) {
        ASSERT_EQ(RepairWith(kRaw, exif).code, 0);
        const RepairedFile file = run_.Output();
        EXPECT_EQ(file.Pixels(), support::CameraLevels(64, 16));
        EXPECT_TRUE(file.exif.Has(tag::kStripOffsets));
        EXPECT_FALSE(file.exif.Has(tag::kISOSpeedRatings));
    }
}

TEST_F(LinkedDirectories, IFDBeyondOrAcrossTheEndIsRefused) {
    const auto size = static_cast<std::uint32_t>(samples::Serialize(support::SmallCameraDng(64, 16)).size());
    for (const std::uint32_t offset : {size - 1, size - 2, size, size + 1}) {
        ExpectRefused(kRaw, offset);
        ExpectRefused(offset, kExif);
    }
}

/// Serialises a camera DNG whose IFDs may have any length: they follow each other from byte 8 on, before the
/// preview and the raw image.
Bytes SerializeLong(samples::CameraDngFile camera) {
    constexpr auto order = ByteOrder::kLittleEndian;
    const auto room = [](const std::vector<samples::Entry>& entries) {
        Bytes bytes;
        Bytes values;
        samples::AppendIfd(entries, order, 0, 0, bytes, values);
        return static_cast<std::uint32_t>(bytes.size() + values.size());
    };
    const std::uint32_t raw_ifd = 8 + room(camera.ifd0);
    const std::uint32_t exif = raw_ifd + room(camera.raw_ifd);
    const std::uint32_t preview = exif + room(camera.exif);
    const auto preview_size = static_cast<std::uint32_t>(camera.preview.size());
    samples::Set(camera.ifd0, samples::Long(tag::kSubIFDs, raw_ifd));
    samples::Set(camera.ifd0, samples::Long(tag::kExifIFD, exif));
    samples::Set(camera.ifd0, samples::Longs(tag::kStripOffsets, {preview, 0, 0, 0}));
    samples::Set(camera.raw_ifd, samples::Long(tag::kStripOffsets, preview + preview_size));
    Bytes file = {'I', 'I', 42, 0, 8, 0, 0, 0};
    for (const auto* ifd : {&camera.ifd0, &camera.raw_ifd, &camera.exif}) {
        Bytes values;
        const auto offset = static_cast<std::uint32_t>(file.size()) + samples::TableSize(*ifd);
        samples::AppendIfd(*ifd, order, offset, 0, file, values);
        file.insert(file.end(), values.begin(), values.end());
    }
    file.insert(file.end(), camera.preview.begin(), camera.preview.end());
    file.insert(file.end(), camera.raw.begin(), camera.raw.end());
    return file;
}

/// Adds entries with unused tags to an IFD until it has `count` entries.
void Fill(std::vector<samples::Entry>& entries, std::size_t count) {
    std::vector<samples::Entry> all;
    for (std::uint32_t tag = 0; tag <= kMostEntries; ++tag) {
        const auto* own = samples::Find(entries, static_cast<std::uint16_t>(tag));
        if (own != nullptr) {
            all.push_back(*own);
        } else if (tag != 50741 && all.size() < count) {  // MakerNoteSafety, which the repair adds
            all.push_back(samples::Bytes(static_cast<std::uint16_t>(tag), {1, 2, 3, 4}));
        }
    }
    entries = all;
}

TEST(FullDirectory, CameraDngIsRepairedWithAllItsEntries) {
    auto camera = support::SmallCameraDng(64, 16);
    for (auto* ifd : {&camera.ifd0, &camera.raw_ifd, &camera.exif}) {
        Fill(*ifd, 50000);
    }
    RepairRun run;
    run.WriteInput(SerializeLong(camera));
    ASSERT_EQ(run.Repair({.lens_fix = true}).code, 0);
    const RepairedFile file = run.Output();
    EXPECT_EQ(file.Pixels(), support::CameraLevels(64, 16));
    EXPECT_GE(file.ifd0.entries.size(), 50000U);
}

TEST(FullDirectory, IFDWithAlmostEveryTagCanStillBeCounted) {
    auto camera = support::SmallCameraDng(64, 16);
    Fill(camera.ifd0, 100000);
    ASSERT_EQ(camera.ifd0.size(), kMostEntries);
    RepairRun run;
    run.WriteInput(SerializeLong(camera));
    const auto result = run.Repair();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output, "");
    const RepairedFile file = run.Output();
    EXPECT_EQ(file.Pixels(), support::CameraLevels(64, 16));
    EXPECT_EQ(file.ifd0.entries.size(), kMostEntries - 1);  // plus MakerNoteSafety, minus two pointers
}

}  // namespace
