// SPDX-License-Identifier: MIT
// Tests what every repair writes and what it refuses. The corrections have tests
// of their own.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/byte_order.h"
#include "dng/dnglib.h"
#include "exif/lensdb.h"
#include "sensor/sensdb.h"
#include "tests/dng/repair_run.h"
#include "tests/support/camera_dng.h"
#include "tiff/tags.h"

namespace {

using samples::CameraDngFile;
using samples::Long;
using samples::Rationals;
using samples::Short;
using samples::SRationals;
using support::SmallCameraDng;
using Numbers = std::vector<std::uint32_t>;

/// The result of repairing `camera` without corrections.
RepairedFile Repaired(const CameraDngFile& camera) {
    RepairRun run;
    run.WriteInput(camera);
    const auto result = run.Repair();
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output, "");
    return run.Output();
}

TEST(Repair, WritesSixteenBitPixelsWithoutATable) {
    const auto file = Repaired(SmallCameraDng(12, 7));
    EXPECT_EQ(file.Pixels(), support::CameraLevels(12, 7));
    EXPECT_EQ(file.raw.At(tag::kBitsPerSample).type, 3);
    EXPECT_EQ(file.raw.At(tag::kBitsPerSample).Numbers(), Numbers{16});
    EXPECT_FALSE(file.raw.Has(tag::kLinearizationTable));
    EXPECT_EQ(file.raw.At(tag::kStripByteCounts).Numbers(), Numbers{168});  // 2 * 12 * 7
    EXPECT_EQ(file.raw.At(tag::kRowsPerStrip).Numbers(), Numbers{7});
    EXPECT_EQ(file.raw.At(tag::kStripOffsets).count, 1U);
}

TEST(Repair, WritesTheWholePreviewAsOneStrip) {
    const auto file = Repaired(SmallCameraDng(4, 4));
    EXPECT_TRUE(file.Preview() == support::CameraPreview());
    EXPECT_EQ(file.ifd0.At(tag::kStripByteCounts).Numbers(), Numbers{230400});
    EXPECT_EQ(file.ifd0.At(tag::kRowsPerStrip).Numbers(), Numbers{240});
    EXPECT_EQ(file.ifd0.At(tag::kStripOffsets).count, 1U);
}

TEST(Repair, WritesAPreviewOfItsFixedSizeWhateverTheFileHas) {
    auto camera = SmallCameraDng(4, 4);
    samples::Set(camera.ifd0, Long(tag::kStripByteCounts, 3));
    auto expected = support::CameraPreview();
    std::fill(expected.begin() + 3, expected.end(), std::uint8_t{0});
    const auto padded = Repaired(camera);
    EXPECT_TRUE(padded.Preview() == expected);

    samples::Set(camera.ifd0, Long(tag::kStripByteCounts, 230401));
    const auto cut = Repaired(camera);
    EXPECT_TRUE(cut.Preview() == support::CameraPreview());
    EXPECT_EQ(cut.Pixels(), support::CameraLevels(4, 4));
}

TEST(Repair, PutsIFDsPreviewAndRawImageOneAfterTheOther) {
    const auto file = Repaired(SmallCameraDng(12, 7));
    EXPECT_EQ(file.file.Bytes(0, 8), (std::vector<std::uint8_t>{'I', 'I', 42, 0, 8, 0, 0, 0}));
    const std::uint32_t preview = file.ifd0.At(tag::kStripOffsets).Number();
    EXPECT_LT(file.raw.offset, file.exif.offset);
    EXPECT_LT(file.exif.offset, preview);
    EXPECT_EQ(file.raw.At(tag::kStripOffsets).Number(), preview + 230400);
    EXPECT_EQ(preview + 230400 + 168, file.file.size());
    for (const auto* ifd : {&file.ifd0, &file.raw, &file.exif}) {
        EXPECT_EQ(ifd->next, 0U);
        EXPECT_TRUE(std::ranges::is_sorted(ifd->order));
    }
}

/// Checks that `written` has the same entries as `camera`, except those of the tags in `changed`.
void ExpectKept(const std::vector<samples::Entry>& camera, const support::TiffIFD& written,
                const std::set<std::uint16_t>& changed) {
    for (const samples::Entry& entry : camera) {
        if (!changed.contains(entry.tag)) {
            ASSERT_TRUE(written.Has(entry.tag)) << entry.tag;
            EXPECT_EQ(written.At(entry.tag).type, entry.type) << entry.tag;
            EXPECT_EQ(written.At(entry.tag).count, entry.count) << entry.tag;
            EXPECT_EQ(written.At(entry.tag).value, entry.value) << entry.tag;
        }
    }
    for (const std::uint16_t tag : written.order) {
        EXPECT_TRUE(changed.contains(tag) || samples::Find(camera, tag) != nullptr) << tag;
    }
}

/// A file in which IFD0's tag `pointer` has two values instead of one and is followed by no value outside its
/// entry.
std::vector<std::uint8_t> WithTwoValues(std::uint16_t pointer) {
    auto camera = SmallCameraDng(4, 4);
    std::erase_if(camera.ifd0, [](const samples::Entry& entry) {
        return entry.tag > tag::kSubIFDs && entry.tag != tag::kExifIFD && entry.value.size() > 1;
    });
    auto bytes = samples::Serialize(camera);
    const auto entry = support::TiffFile(bytes).FirstIFD().At(pointer);
    const auto end = static_cast<std::uint32_t>(bytes.size());
    for (const std::uint32_t value : {entry.Number(), 0U}) {
        byte_order::AppendLittle(bytes, value);
    }
    constexpr std::uint32_t count_before_value = 4;
    byte_order::PutLittle(std::span(bytes).subspan(entry.offset - count_before_value), 2U);
    byte_order::PutLittle(std::span(bytes).subspan(entry.offset), end);
    return bytes;
}

/// The layout must not leave room for values that are replaced by a single one.
TEST(Repair, ReplacesPointersWithSeveralValuesBySingleOnes) {
    for (const std::uint16_t pointer : {tag::kSubIFDs, tag::kExifIFD}) {
        RepairRun run;
        run.WriteInput(WithTwoValues(pointer));
        ASSERT_EQ(run.Repair().code, 0) << pointer;
        const auto file = run.Output();
        EXPECT_EQ(file.ifd0.At(pointer).count, 1U);
        EXPECT_EQ(file.Pixels(), support::CameraLevels(4, 4)) << pointer;
        EXPECT_TRUE(file.Preview() == support::CameraPreview()) << pointer;
        EXPECT_TRUE(file.exif.Has(tag::kISOSpeedRatings)) << pointer;
    }
}

TEST(Repair, KeepsEveryOtherTagAsTheCameraWroteIt) {
    const auto camera = SmallCameraDng(12, 7);
    const auto file = Repaired(camera);
    ExpectKept(camera.ifd0, file.ifd0,
               {tag::kStripOffsets, tag::kStripByteCounts, tag::kRowsPerStrip, tag::kSubIFDs, tag::kExifIFD,
                tag::kMakerNoteSafety});
    ExpectKept(camera.raw_ifd, file.raw,
               {tag::kStripOffsets, tag::kStripByteCounts, tag::kRowsPerStrip, tag::kBitsPerSample,
                tag::kLinearizationTable});
    ExpectKept(camera.exif, file.exif, {tag::kExposureBiasValue});
    EXPECT_EQ(file.exif.order.size(), camera.exif.size());
}

TEST(Repair, MarksTheMakerNoteAsSafe) {
    const auto file = Repaired(SmallCameraDng(4, 4));
    EXPECT_EQ(file.ifd0.At(tag::kMakerNoteSafety).type, 3);
    EXPECT_EQ(file.ifd0.At(tag::kMakerNoteSafety).Numbers(), Numbers{1});
}

TEST(Repair, OfARepairedDngKeepsItsPixels) {
    RepairRun run;
    run.WriteInput(SmallCameraDng(12, 7));
    ASSERT_EQ(run.Repair().code, 0);
    const auto once = support::ReadFile(run.OutputPath());
    run.WriteInput(once);
    ASSERT_EQ(run.Repair().code, 0);
    EXPECT_EQ(run.Output().Pixels(), support::CameraLevels(12, 7));
    EXPECT_TRUE(support::ReadFile(run.OutputPath()) == once);
}

TEST(Repair, LeavesTheInputAlone) {
    RepairRun run;
    run.WriteInput(SmallCameraDng(12, 7));
    const auto before = support::ReadFile(run.InputPath());
    ASSERT_EQ(run.Repair().code, 0);
    EXPECT_TRUE(support::ReadFile(run.InputPath()) == before);
}

TEST(Repair, PrintsItsStepsWhenVerbose) {
    RepairRun run;
    run.WriteInput(SmallCameraDng(4, 4));
    EXPECT_EQ(run.Repair({.verbose = true}).output,
              "Reading DNG Image...Done\n"
              "Writing DNG header...Done!\n"
              "Writing image data...Done!\n");
}

TEST(Repair, DoesNotReadTheHeader) {
    RepairRun run;
    auto bytes = samples::Serialize(SmallCameraDng(12, 7));
    std::fill_n(bytes.begin(), 8, std::uint8_t{0xEE});
    run.WriteInput(bytes);
    EXPECT_EQ(run.Repair().code, 0);
    EXPECT_EQ(run.Output().Pixels(), support::CameraLevels(12, 7));
}

TEST(Repair, SkipsEntriesOfUnknownTypes) {
    auto camera = SmallCameraDng(12, 7);
    samples::Set(camera.ifd0, samples::RawEntry(60000, 11, 1, 0));
    samples::Set(camera.exif, samples::RawEntry(60000, 12, 0xFFFFFFFF, 0xFFFFFFFF));
    const auto file = Repaired(camera);
    EXPECT_FALSE(file.ifd0.Has(60000));
    EXPECT_FALSE(file.exif.Has(60000));
}

// --- Exposure

/// The value of EXIF tag `tag` after a repair of a file with `entry`.
support::TiffEntry RepairedExif(std::uint16_t tag, const samples::Entry& entry) {
    auto camera = SmallCameraDng(4, 4);
    samples::Set(camera.exif, entry);
    return Repaired(camera).exif.At(tag);
}

Numbers RepairedTime(std::uint32_t numerator, std::uint32_t denominator) {
    const auto entry =
        RepairedExif(tag::kExposureTime, Rationals(tag::kExposureTime, {{numerator, denominator}}));
    EXPECT_EQ(entry.type, 5);
    return entry.Numbers();
}

TEST(RepairedExposureTime, OfTheFastestSpeedsIsTheirFraction) {
    EXPECT_EQ(RepairedTime(166, 1000000), (Numbers{1, 6000}));
    EXPECT_EQ(RepairedTime(333, 1000000), (Numbers{1, 3000}));
    EXPECT_EQ(RepairedTime(666, 1000000), (Numbers{1, 1500}));
}

TEST(RepairedExposureTime, OfAnyOtherSpeedStays) {
    EXPECT_EQ(RepairedTime(1, 250), (Numbers{1, 250}));
    EXPECT_EQ(RepairedTime(12000000, 1000000), (Numbers{12000000, 1000000}));
    EXPECT_EQ(RepairedTime(334, 1000000), (Numbers{334, 1000000}));
    EXPECT_EQ(RepairedTime(4294967295, 4294967295), (Numbers{4294967295, 4294967295}));
}

Numbers RepairedBias(const samples::Entry& entry) {
    const auto repaired = RepairedExif(tag::kExposureBiasValue, entry);
    EXPECT_EQ(repaired.type, 10);
    EXPECT_EQ(repaired.count, 1U);
    return repaired.Numbers();
}

TEST(RepairedExposureBias, IsInThirdsTruncatedAfterAHalfIsAdded) {
    const auto bias = [](std::int32_t numerator, std::int32_t denominator) {
        return RepairedBias(SRationals(tag::kExposureBiasValue, {{numerator, denominator}}));
    };
    EXPECT_EQ(bias(0, 65536), (Numbers{0, 3}));
    EXPECT_EQ(bias(43690, 65536), (Numbers{2, 3}));  // 1.99997 + 0.5
    EXPECT_EQ(bias(65536, 65536), (Numbers{3, 3}));
    EXPECT_EQ(bias(-65536, 65536), (Numbers{4294967294, 3}));  // -3 + 0.5: -2
    EXPECT_EQ(bias(-21845, 65536), (Numbers{0, 3}));           // -1 + 0.5: 0
    EXPECT_EQ(bias(1, 0), (Numbers{0, 3}));
}

TEST(RepairedExposureBias, OfAnUnsignedTypeIsReadAsSigned) {
    EXPECT_EQ(RepairedBias(Rationals(tag::kExposureBiasValue, {{4294836224, 65536}})),  // -2
              (Numbers{4294967291, 3}));                                                // -6 + 0.5: -5
}

TEST(RepairedExposure, IsNotAddedIfTheFileHasNone) {
    auto camera = SmallCameraDng(4, 4);
    samples::Remove(camera.exif, tag::kExposureTime);
    samples::Remove(camera.exif, tag::kExposureBiasValue);
    const auto file = Repaired(camera);
    EXPECT_FALSE(file.exif.Has(tag::kExposureTime));
    EXPECT_FALSE(file.exif.Has(tag::kExposureBiasValue));
}

// --- Refusals

std::string Message(int code) {
    return code == 17 ? "L1.DNG: Error #0017: Damaged DNG file.\n"
                      : "L1.DNG: Error #0019: File was created from RAW+JPG or is not a Leica M8 DNG.\n";
}

/// A change after which a camera DNG is refused.
struct Refusal {
    const char* name;
    std::function<void(CameraDngFile&)> change;
    int code;
};

void PrintTo(const Refusal& refusal, std::ostream* out) {
    *out << refusal.name;
}

std::function<void(CameraDngFile&)> WithoutMain(std::uint16_t tag) {
    return [tag](CameraDngFile& file) { samples::Remove(file.ifd0, tag); };
}

std::function<void(CameraDngFile&)> WithoutRaw(std::uint16_t tag) {
    return [tag](CameraDngFile& file) { samples::Remove(file.raw_ifd, tag); };
}

std::function<void(CameraDngFile&)> WithMain(const samples::Entry& entry) {
    return [entry](CameraDngFile& file) { samples::Set(file.ifd0, entry); };
}

std::function<void(CameraDngFile&)> WithRaw(const samples::Entry& entry) {
    return [entry](CameraDngFile& file) { samples::Set(file.raw_ifd, entry); };
}

std::function<void(CameraDngFile&)> WithExif(const samples::Entry& entry) {
    return [entry](CameraDngFile& file) { samples::Set(file.exif, entry); };
}

/// The first change followed by the second.
std::function<void(CameraDngFile&)> Both(const std::function<void(CameraDngFile&)>& first,
                                         const std::function<void(CameraDngFile&)>& second) {
    return [first, second](CameraDngFile& file) {
        first(file);
        second(file);
    };
}

const samples::Entry kValueOutside = samples::RawEntry(60000, 7, 5, 0xFFFFFFF0);
const samples::Entry kEndlessValue = samples::RawEntry(60000, 4, 0xFFFFFFFF, 8);

class RefusedDng : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedDng, IsReportedWithItsNameAndNothingIsWritten) {
    RepairRun run;
    auto camera = SmallCameraDng(12, 7);
    GetParam().change(camera);
    run.WriteInput(camera);
    const auto result = run.Repair();
    EXPECT_EQ(result.code, GetParam().code);
    EXPECT_EQ(result.output, Message(GetParam().code));
    EXPECT_TRUE(run.OutputNames().empty());

    const auto verbose = run.Repair({.verbose = true});
    EXPECT_EQ(verbose.output, "Reading DNG Image..." + Message(GetParam().code));
    EXPECT_TRUE(run.OutputNames().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Files, RefusedDng,
    testing::Values(
        Refusal{"NoMake", WithoutMain(tag::kMake), 19}, Refusal{"NoModel", WithoutMain(tag::kModel), 19},
        Refusal{"OtherMake", WithMain(samples::Ascii(tag::kMake, "Leica Camera")), 19},
        Refusal{"OtherModel", WithMain(samples::Ascii(tag::kModel, "M9 Digital Camera")), 19},
        // Make and Model are checked before anything that may be missing, but only in a complete IFD.
        Refusal{"OtherModelAndNoSubIFDs",
                Both(WithMain(samples::Ascii(tag::kModel, "M9")), WithoutMain(tag::kSubIFDs)), 19},
        Refusal{"OtherModelAndDamagedRawIFD",
                Both(WithMain(samples::Ascii(tag::kModel, "M9")), WithRaw(kValueOutside)), 19},
        Refusal{"OtherModelInADamagedIFD",
                Both(WithMain(samples::Ascii(tag::kModel, "M9")), WithMain(kValueOutside)), 17},
        Refusal{"MainIFDWithAValueOutside", WithMain(kValueOutside), 17},
        Refusal{"RawIFDWithAValueOutside", WithRaw(kValueOutside), 17},
        Refusal{"ExifIFDWithAValueOutside", WithExif(kValueOutside), 17},
        Refusal{"MainIFDWithAnEndlessValue", WithMain(kEndlessValue), 17},
        Refusal{"RawIFDWithAnEndlessValue", WithRaw(kEndlessValue), 17},
        Refusal{"ExifIFDWithAnEndlessValue", WithExif(kEndlessValue), 17},
        Refusal{"ExifIFDWithoutEntries", [](CameraDngFile& file) { file.exif.clear(); }, 17},
        Refusal{"ExifIFDOfAnUnknownType",
                [](CameraDngFile& file) { file.exif = {samples::RawEntry(tag::kFNumber, 13, 1, 0)}; }, 17},
        Refusal{"NoSubIFDs", WithoutMain(tag::kSubIFDs), 17},
        Refusal{"NoExifIFD", WithoutMain(tag::kExifIFD), 17},
        Refusal{"SubIFDsOutside", WithMain(samples::RawEntry(tag::kSubIFDs, 4, 1, 0xFFFFFF00)), 17},
        Refusal{"ExifIFDOutside", WithMain(samples::RawEntry(tag::kExifIFD, 4, 1, 0xFFFFFF00)), 17},
        Refusal{"NoPreviewStrips", WithoutMain(tag::kStripOffsets), 17},
        Refusal{"NoPreviewByteCounts", WithoutMain(tag::kStripByteCounts), 17},
        Refusal{"NoWidth", WithoutRaw(tag::kImageWidth), 17},
        Refusal{"NoHeight", WithoutRaw(tag::kImageLength), 17},
        Refusal{"NoRawStrips", WithoutRaw(tag::kStripOffsets), 17},
        Refusal{"NoRawByteCounts", WithoutRaw(tag::kStripByteCounts), 17},
        Refusal{"NoTable", WithoutRaw(tag::kLinearizationTable), 17},
        Refusal{"FourteenBits", WithRaw(Short(tag::kBitsPerSample, 14)), 17},
        Refusal{"Compressed", WithRaw(Short(tag::kCompression, 7)), 17},
        Refusal{"ShortRawStrips", [](CameraDngFile& file) { file.raw.pop_back(); }, 17}),
    testing::PrintToStringParamName());

TEST(RefusedFile, ThatIsMissingOrAFolderIsDamaged) {
    RepairRun run;
    for (int i = 0; i < 2; ++i) {
        const auto result = run.Repair();
        EXPECT_EQ(result.code, 17);
        EXPECT_EQ(result.output, Message(17));
        EXPECT_TRUE(run.OutputNames().empty());
        std::filesystem::create_directory(run.InputPath());
    }
}

TEST(RefusedFile, ThatIsEmptyOrEndsInItsFirstIFDIsDamaged) {
    RepairRun run;
    const auto whole = samples::Serialize(SmallCameraDng(4, 4));
    for (const std::size_t size : {0U, 7U, 8U, 9U, 10U, 100U, 493U}) {
        run.WriteInput({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)});
        EXPECT_EQ(run.Repair().code, 17) << size;
    }
}

TEST(Repair, AcceptsEveryMakeAndModelThatContainsTheCameras) {
    auto camera = SmallCameraDng(4, 4);
    samples::Set(camera.ifd0, samples::Ascii(tag::kMake, "(c) Leica Camera AG, Solms"));
    samples::Set(camera.ifd0, samples::Ascii(tag::kModel, "M8.2 Digital Camera"));
    EXPECT_EQ(Repaired(camera).ifd0.At(tag::kModel).Text(), std::string("M8.2 Digital Camera\0", 20));
}

TEST(Repair, HasFourEmptyPlacesForHorizontalLevels) {
    lensdb lenses("");
    sensdb sensors("");
    EXPECT_EQ(DNGlib(&lenses, &sensors).getSensorHorzLevel(), std::vector<std::uint16_t>(4));
}

}  // namespace
