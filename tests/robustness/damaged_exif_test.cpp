// SPDX-License-Identifier: MIT
// JPEGs whose EXIF block has any content: they are either refused with a known code or become readable DNGs.
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dng/dnglib.h"
#include "exif/lensdb.h"
#include "exif/maker_note.h"
#include "input/preview.h"
#include "input/read_input_data.h"
#include "samples/camera_jpeg.h"
#include "samples/exif_block.h"
#include "sensor/sensdb.h"
#include "tests/support/damage.h"
#include "tests/support/files.h"
#include "tests/support/tiff_file.h"
#include "tiff/tags.h"

namespace {

constexpr std::size_t kBlockStart = 6;  // after SOI, the APP1 marker and its length

/// Options of a run, one combination per seed.
struct Mode {
    bool preview;
    bool black_level;
    bool raw_variant;
    bool lens_fix;

    explicit Mode(std::uint32_t seed)
        : preview((seed & 1U) != 0),
          black_level((seed & 2U) != 0),
          raw_variant((seed & 4U) != 0),
          lens_fix((seed & 8U) != 0) {}
};

lensdb OneLensForEveryCode() {
    lensdb lenses;
    for (std::uint8_t code = 0; code < 64; ++code) {
        lenses.Lenses[maker_note::LensCodeText(code)] = {
            "Maker", "Model", "1", 50, {91750, 131072, 367002, 1048576}};
    }
    return lenses;
}

/// A record of a small image with the given shooting data.
ReadInputData SmallRecord(const EXIFInfo& exif) {
    ReadInputData record;
    record.Exif = exif;
    record.RawFileName = "L1000001.RAW";
    record.Width = 8;
    record.Height = 6;
    record.ImageSize = record.Width * record.Height;
    record.ImageData.assign(static_cast<std::size_t>(record.ImageSize), 1000);
    record.PreviewData.assign(PreviewSampler::kSize, 128);
    return record;
}

/// Expects that every IFD of the file can be read and that the file ends with the raw strip.
void ExpectWholeDng(const std::string& path, bool preview) {
    const support::TiffFile file(support::ReadFile(path));
    const auto ifd0 = file.FirstIFD();
    const auto raw = preview ? file.ReadIFD(ifd0.At(tag::kSubIFDs).Number()) : ifd0;
    const auto exif = file.ReadIFD(ifd0.At(tag::kExifIFD).Number());
    EXPECT_TRUE(exif.Has(tag::kMakerNote));
    EXPECT_EQ(raw.At(tag::kStripOffsets).Number() + raw.At(tag::kStripByteCounts).Number(), file.size());
}

class DamagedExif : public testing::TestWithParam<std::uint32_t> {};

TEST_P(DamagedExif, IsRefusedOrBecomesAReadableDng) {
    constexpr std::uint32_t seeds_per_test = 1000;
    samples::ExifBlock block = samples::CameraExif({});
    if (GetParam() % 2 != 0) {
        block.order = ByteOrder::kBigEndian;
    }
    const std::vector<std::uint8_t> exif_bytes = samples::Serialize(block);
    const std::vector<std::uint8_t> jpeg = samples::CameraJpeg(exif_bytes);
    const support::TempFolder folder;
    lensdb lenses = OneLensForEveryCode();
    sensdb sensors("");
    std::uint32_t written = 0;

    for (std::uint32_t i = 0; i < seeds_per_test; ++i) {
        const std::uint32_t seed = GetParam() * seeds_per_test + i;
        SCOPED_TRACE(seed);
        const auto damaged = support::Damaged(jpeg, kBlockStart, kBlockStart + exif_bytes.size(), seed);
        EXIFInfo exif;
        const int result = exif.parseFrom(damaged.data(), static_cast<unsigned int>(damaged.size()));
        if (result != 0) {
            EXPECT_TRUE(result >= EXIFInfo::kNotAJpeg && result <= EXIFInfo::kCorruptExif) << result;
            continue;
        }
        const Mode mode(seed);
        ReadInputData record = SmallRecord(exif);
        DNGlib dng(&record, &lenses, &sensors);
        dng.createDNGTree(mode.preview, mode.black_level, 92, false, mode.raw_variant, mode.lens_fix);
        dng.writeDNGTree(folder.prefix());
        ASSERT_NO_THROW(ExpectWholeDng(folder / "L1000001.DNG", mode.preview));
        // Removed, because a new file is not flushed to disk but a replaced one is.
        std::filesystem::remove(folder / "L1000001.DNG");
        ++written;
    }
    // Most damage must hit values rather than the structure, or the test would check only refusals.
    EXPECT_GT(written, seeds_per_test / 4);
    EXPECT_LT(written, seeds_per_test);
}

INSTANTIATE_TEST_SUITE_P(TenThousandSeeds, DamagedExif, testing::Range(0U, 10U));

}  // namespace
