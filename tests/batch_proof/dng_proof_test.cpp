// SPDX-License-Identifier: MIT
// Converted pairs without sensor options. A DNG is made, then changed at one place.
#include "batch/proof/dng_proof.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "batch/proof/tag_name.h"
#include "samples/camera_jpeg.h"
#include "samples/sensor_dump.h"
#include "tests/batch_proof/made_dng.h"
#include "tests/support/files.h"
#include "tests/support/test_pair.h"
#include "tests/support/tiff_file.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

samples::Shot WithoutLensCode() {
    samples::Shot shot;
    shot.lens_code = 0;
    return shot;
}

TEST(DngProof, AcceptsAConvertedPair) {
    MadeDng made;
    made.WritePair();
    made.Make();
    EXPECT_EQ(made.Check(), "");
}

TEST(DngProof, AcceptsWhatEachOptionMakes) {
    const std::vector<std::function<void(RunSettings&)>> options = {
        [](RunSettings& settings) { settings.preview = true; },
        [](RunSettings& settings) { settings.black_level_given = true; },
        [](RunSettings& settings) { settings.raw_model_variant = true; },
        [](RunSettings& settings) { settings.lens_fix = true; },
        [](RunSettings& settings) {
            settings.lens_fix = true;
            settings.lens_code = "100001";
        },
        [](RunSettings& settings) {
            settings.preview = true;
            settings.black_level_given = true;
            settings.black_level = 50;
            settings.lens_fix = true;
            settings.lens_code = "000110";
        }};
    samples::Shot uncoded = WithoutLensCode();
    uncoded.iso = 640;
    for (const auto& shot : {samples::Shot(), uncoded}) {
        MadeDng made;
        made.WritePair(shot);
        made.WriteLensDatabase();
        for (const auto& option : options) {
            made.settings = {};
            option(made.settings);
            made.Make();
            EXPECT_EQ(made.Check(), "");
        }
    }
}

TEST(DngProof, FindsADngThatWasMadeWithOtherOptions) {
    const std::vector<std::pair<std::function<void(RunSettings&)>, std::string>> options = {
        {[](RunSettings& settings) { settings.preview = true; }, "tag NewSubFileType differs"},
        {[](RunSettings& settings) { settings.black_level_given = true; },
         "tag BlackLevelRepeatDim is missing"},
        {[](RunSettings& settings) { settings.raw_model_variant = true; }, "tag Model differs"},
        {[](RunSettings& settings) {
             settings.lens_fix = true;
             settings.lens_code = "100001";
         },
         "tag MaxApertureValue differs"}};
    MadeDng made;
    made.WritePair(WithoutLensCode());
    made.WriteLensDatabase();
    made.Make();
    for (const auto& [option, difference] : options) {
        made.settings = {};
        option(made.settings);
        EXPECT_EQ(made.Check(), "does not match its RAW file: " + difference);
    }
}

TEST(DngProof, NamesThePixelThatDiffers) {
    MadeDng made;
    made.WritePair();
    made.Make();
    for (const auto& [x, y] :
         std::vector<std::pair<std::size_t, std::size_t>>{{0, 0}, {17, 3}, {3967, 2645}}) {
        const auto value = made.Pixel(x, y);
        ASSERT_EQ(value, support::TestPixel(static_cast<int>(x), static_cast<int>(y)));
        made.SetPixel(x, y, static_cast<std::uint16_t>(value + 1));
        EXPECT_EQ(made.Check(), "does not match its RAW file: pixel " + std::to_string(x) + " of row " +
                                    std::to_string(y) + " is " + std::to_string(value + 1) + " instead of " +
                                    std::to_string(value));
        made.SetPixel(x, y, value);
    }
    EXPECT_EQ(made.Check(), "");
}

TEST(DngProof, NamesTheFirstOfSeveralPixels) {
    MadeDng made;
    made.WritePair();
    made.Make();
    made.SetPixel(5, 1000, 1);
    made.SetPixel(4, 1000, 2);
    made.SetPixel(1, 1001, 3);
    EXPECT_EQ(made.Check(), "does not match its RAW file: pixel 4 of row 1000 is 2 instead of " +
                                std::to_string(support::TestPixel(4, 1000)));
}

TEST(DngProof, FindsEveryTagThatDiffers) {
    MadeDng made;
    made.settings.preview = true;
    made.settings.black_level_given = true;
    made.WritePair();
    made.Make();
    const auto file = made.file();
    const auto ifd0 = file.FirstIFD();
    for (const auto& ifd : {ifd0, file.ReadIFD(ifd0.At(tag::kSubIFDs).Number()),
                            file.ReadIFD(ifd0.At(tag::kExifIFD).Number())}) {
        for (const auto& [tag, entry] : ifd.entries) {
            for (std::size_t i = 0; i < entry.value.size(); ++i) {
                made.Flip(entry.offset + i, 1U);
                const bool place = tag == tag::kStripOffsets || tag == tag::kSubIFDs || tag == tag::kExifIFD;
                if (place) {
                    EXPECT_NE(made.Check(), "");
                } else {
                    EXPECT_EQ(made.Check(), "does not match its RAW file: tag " + TagName(tag) + " differs");
                }
                made.Flip(entry.offset + i, 1U);
            }
        }
    }
    EXPECT_EQ(made.Check(), "");
}

/// The type of the same size, so that the bytes of a value do not differ.
std::uint8_t TypeOfTheSameSize(std::uint16_t type) {
    switch (type) {
        case tiff::kByte:
        case tiff::kAscii:
            return tiff::kUndefined;
        case tiff::kShort:
            return tiff::kSShort;
        case tiff::kLong:
            return tiff::kSLong;
        case tiff::kRational:
            return tiff::kSRational;
        case tiff::kSRational:
            return tiff::kRational;
        default:
            return tiff::kByte;
    }
}

TEST(DngProof, FindsEveryTypeThatDiffers) {
    MadeDng made;
    made.WritePair();
    made.Make();
    const auto file = made.file();
    const auto ifd0 = file.FirstIFD();
    for (const auto& ifd : {ifd0, file.ReadIFD(ifd0.At(tag::kExifIFD).Number())}) {
        for (std::size_t i = 0; i < ifd.order.size(); ++i) {
            const std::size_t type_at =
                ifd.offset + tiff::kCountSize + i * tiff::kEntrySize + tiff::kTypeInEntry;
            const std::uint16_t type = ifd.At(ifd.order[i]).type;
            const auto change = static_cast<std::uint8_t>(type ^ TypeOfTheSameSize(type));
            made.Flip(type_at, change);
            EXPECT_EQ(made.Check(), "does not match its RAW file: tag " + TagName(ifd.order[i]) + " differs");
            made.Flip(type_at, change);
        }
    }
    EXPECT_EQ(made.Check(), "");
}

/// Bytes of the directory, and of values with an odd length, that hold nothing.
std::size_t FillBytes(const support::TiffIFD& ifd) {
    std::size_t count = 0;
    for (const auto& [tag, entry] : ifd.entries) {
        const std::size_t length = entry.value.size();
        count += length <= 4 ? 4 - length : length % 2;
    }
    return count;
}

TEST(DngProof, FindsEveryByteOfTheHeadThatDiffersButThoseThatFillUp) {
    MadeDng made;
    made.WritePair();
    made.Make();
    const auto file = made.file();
    const auto ifd0 = file.FirstIFD();
    const std::size_t fill = FillBytes(ifd0) + FillBytes(file.ReadIFD(ifd0.At(tag::kExifIFD).Number()));
    const std::size_t head = made.PixelAt(0, 0);
    std::size_t unfound = 0;
    for (std::size_t i = 0; i < head; ++i) {
        made.Flip(i, 0x81U);
        unfound += made.Check().empty() ? 1U : 0U;
        made.Flip(i, 0x81U);
    }
    EXPECT_EQ(unfound, fill);
}

TEST(DngProof, FindsAByteOfThePreviewThatDiffers) {
    MadeDng made;
    made.settings.preview = true;
    made.WritePair();
    made.Make();
    const auto preview = made.file().FirstIFD().At(tag::kStripOffsets).Number();
    for (const std::uint32_t byte : {0U, 1000U, 230399U}) {
        made.Flip(preview + byte, 1U);
        EXPECT_EQ(made.Check(), "does not match its RAW file: its preview differs");
        made.Flip(preview + byte, 1U);
    }
}

TEST(DngProof, FindsADngThatWasCutOrGoesOn) {
    MadeDng made;
    made.WritePair();
    made.Make();
    const auto check_bytes = [&](std::size_t count) {
        std::filesystem::resize_file(made.Path(), count);
        return made.Check();
    };
    const std::string length = "does not match its RAW file: its length is not that of a complete DNG";
    const std::string tags = "does not match its RAW file: its tags are damaged";
    EXPECT_EQ(check_bytes(made.bytes.size() + 1), length);
    EXPECT_EQ(check_bytes(made.bytes.size()), "");
    EXPECT_EQ(check_bytes(made.bytes.size() - 1), length);
    EXPECT_EQ(check_bytes(made.PixelAt(0, 0)), length);
    EXPECT_EQ(check_bytes(1000), tags);
    EXPECT_EQ(check_bytes(0), tags);
    std::filesystem::remove(made.Path());
    EXPECT_EQ(made.Check(), "does not match its RAW file: it cannot be read");
}

TEST(DngProof, TheObserverGetsEveryByteOfTheFile) {
    MadeDng made;
    made.settings.preview = true;
    made.WritePair();
    made.Make();
    std::vector<std::uint8_t> seen;
    const auto observer = [&](std::span<const std::uint8_t> bytes) {
        seen.insert(seen.end(), bytes.begin(), bytes.end());
    };
    EXPECT_EQ(made.CheckFile(made.Path(), observer), "");
    EXPECT_TRUE(seen == made.bytes);
}

TEST(DngProof, AFileThatGetsShorterMeanwhileCannotBeRead) {
    MadeDng made;
    made.WritePair();
    made.settings.black_level_given = true;
    made.WriteDarkFrame(1);
    made.Make();
    const std::vector<std::uint8_t> raw = support::ReadFile(made.folder / "L1.RAW");
    const std::vector<std::uint8_t> bia = support::ReadFile(made.folder / "L1.BIA");
    const auto check_while = [&](const std::string& path) {
        bool is_cut = false;
        return made.CheckFile(made.Path(), [&](std::span<const std::uint8_t> bytes) {
            if (!is_cut && bytes.size() == std::size_t{3968} * 2) {
                is_cut = true;
                std::filesystem::resize_file(path, 1000);
            }
        });
    };
    EXPECT_EQ(check_while(made.folder / "L1.RAW"), "cannot be compared with L1.RAW, which cannot be read");
    support::WriteFile(made.folder / "L1.RAW", raw);
    EXPECT_EQ(check_while(made.folder / "L1.BIA"), "cannot be compared with L1.BIA, which cannot be read");
    support::WriteFile(made.folder / "L1.BIA", bia);
    EXPECT_EQ(check_while(made.Path()), "does not match its RAW file: it cannot be read");
}

TEST(DngProof, FindsTheDngOfAnotherJpeg) {
    MadeDng made;
    made.WritePair();
    made.Make();
    samples::Shot other;
    other.orientation = 6;
    made.WritePair(other);
    EXPECT_EQ(made.Check(), "does not match its RAW file: tag Orientation differs");
}

TEST(DngProof, FindsADngThatWasMadeWhileItsRawFileWasCopied) {
    MadeDng made;
    made.WritePair();
    const auto raw = support::ReadFile(made.folder / "L1.RAW");
    support::WriteFile(made.folder / "L1.RAW", std::span(raw).first(15'000'000));
    made.Make();
    EXPECT_EQ(made.Check(), "");
    support::WriteFile(made.folder / "L1.RAW", raw);
    EXPECT_EQ(made.Check(), "does not match its RAW file: pixel 1210 of row 1886 is 0 instead of " +
                                std::to_string(support::TestPixel(1210, 1886)));
}

TEST(DngProof, ComparesWithADarkFrame) {
    MadeDng made;
    made.settings.black_level_given = true;
    made.settings.preview = true;
    made.WritePair();
    made.WriteDarkFrame(100);
    made.Make();
    ASSERT_EQ(support::TestPixel(1, 0), 7);
    ASSERT_EQ(support::TestPixel(20, 0), 140);
    EXPECT_EQ(made.Pixel(1, 0), 0);
    EXPECT_EQ(made.Pixel(20, 0), 40);
    EXPECT_EQ(made.Check(), "");
    made.SetPixel(20, 0, 41);
    EXPECT_EQ(made.Check(), "does not match its RAW file: pixel 20 of row 0 is 41 instead of 40");
    made.SetPixel(20, 0, 40);
    made.WriteDarkFrame(101);
    EXPECT_EQ(made.Check(), "does not match its RAW file: pixel 15 of row 0 is 5 instead of 4");
}

TEST(DngProof, ADarkFrameDoesNotCountWithoutABlackLevel) {
    MadeDng made;
    made.WritePair();
    made.WriteDarkFrame(100);
    made.Make();
    EXPECT_EQ(made.Check(), "");
}

TEST(DngProof, AShortDarkFrameIsBlackBelow) {
    MadeDng made;
    made.settings.black_level_given = true;
    made.WritePair();
    const auto dark = samples::DumpBytes(samples::FlatWords(100));
    support::WriteFile(made.folder / "L1.BIA", std::span(dark).first(10'000'000));
    made.Make();
    EXPECT_EQ(made.Check(), "");
}

TEST(DngProof, SaysWhatCannotBeRead) {
    MadeDng made;
    made.WritePair();
    made.Make();
    std::filesystem::remove(made.folder / "L1.RAW");
    EXPECT_EQ(made.Check(), "cannot be compared with L1.RAW, which cannot be read");
    std::filesystem::remove(made.folder / "L1.JPG");
    EXPECT_EQ(made.Check(), "cannot be compared with L1.JPG, which cannot be read");
}

}  // namespace
