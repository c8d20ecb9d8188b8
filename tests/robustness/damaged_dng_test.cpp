// SPDX-License-Identifier: MIT
// Camera DNGs with any content and of any length: they are either refused with a known code or become
// readable DNGs, within limited time and memory.
#include <sys/resource.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "exif/maker_note.h"
#include "samples/sensor_dump.h"
#include "tests/dng/repair_run.h"
#include "tests/support/camera_dng.h"
#include "tests/support/damage.h"
#include "tiff/tags.h"

namespace {

using samples::kDngPreviewOffset;
using Bytes = std::vector<std::uint8_t>;

const char* const kDamaged = "L1.DNG: Error #0017: Damaged DNG file.\n";
const char* const kNotTheCameras =
    "L1.DNG: Error #0019: File was created from RAW+JPG or is not a Leica M8 DNG.\n";

/// Options of a repair, one combination per seed.
RepairRequest Request(std::uint32_t seed) {
    return {.verbose = false,
            .lens_fix = (seed & 1U) != 0,
            .sensor_fix = (seed & 2U) != 0,
            .dark_field_creation = (seed & 4U) != 0,
            .dark_field_fix = (seed & 8U) != 0,
            .estimate_rows = (seed & 16U) != 0,
            .line_test = (seed & 32U) != 0,
            .lens_code = (seed & 64U) != 0 ? "100001" : ""};
}

/// Gives a repair databases for every camera and lens that a damaged file may name.
void PrepareDatabases(RepairRun& run) {
    std::string values;
    for (const int value : {24, 0, 24, 5000, 124, 10, 124, 2646, 3943, 0, 3943, 65535}) {
        values += "Line = " + std::to_string(value) + "\n";
    }
    for (int column = 0; column < samples::kSensorWidth; ++column) {
        values += "LevelCorrection = " + std::to_string(column % 7) + ".5\n";
    }
    run.WriteSensorDatabase("[3106091]\n" + values + "[0]\n" + values);
    for (std::uint8_t code = 0; code < 64; ++code) {
        run.lenses.Lenses[maker_note::LensCodeText(code)] = {
            "Maker", "Model", "1", 50, {91750, 131072, 367002, 1048576}};
    }
}

/// Expects that every IFD of the repaired file can be read and that the file ends with the raw strip.
void ExpectWholeDng(const RepairRun& run) {
    const RepairedFile file = run.Output();
    EXPECT_EQ(file.Preview().size(), 230400U);
    EXPECT_EQ(file.raw.At(tag::kStripOffsets).Number() + file.raw.At(tag::kStripByteCounts).Number(),
              file.file.size());
}

/// Repairs the input. Returns whether a complete file was written; otherwise expects that it was refused with
/// a message.
bool RepairOrRefuse(RepairRun& run, const RepairRequest& request) {
    constexpr std::chrono::seconds longest(5);
    const auto start = std::chrono::steady_clock::now();
    const RepairResult result = run.Repair(request);
    EXPECT_LT(std::chrono::steady_clock::now() - start, longest);
    if (result.code == 0) {
        EXPECT_NO_THROW(ExpectWholeDng(run));
        return true;
    }
    EXPECT_TRUE(result.code == 17 || result.code == 19) << result.code;
    EXPECT_EQ(result.output, result.code == 17 ? kDamaged : kNotTheCameras);
    EXPECT_TRUE(run.OutputNames().empty());
    return false;
}

/// Peak resident set size so far; 0 in builds where the memory of a sanitizer would count as well.
long PeakKilobytes() {
#ifdef __SANITIZE_ADDRESS__
    return 0;
#else

    struct rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
#endif
}

class DamagedDng : public testing::TestWithParam<std::uint32_t> {};

TEST_P(DamagedDng, IsRefusedOrBecomesAReadableDng) {
    constexpr std::uint32_t seeds_per_test = 1000;
    const auto camera = support::SmallCameraDng(3920, 2);
    const Bytes bytes = samples::Serialize(camera);
    const std::size_t ifds_end = samples::kDngIfd0Offset + samples::TableSize(camera.ifd0) +
                                 samples::TableSize(camera.raw_ifd) + samples::TableSize(camera.exif);
    RepairRun run;
    PrepareDatabases(run);
    run.WriteInput(bytes);
    ASSERT_TRUE(RepairOrRefuse(run, Request(~0U)));
    const long peak_before = PeakKilobytes();
    std::uint32_t written = 0;
    for (std::uint32_t i = 0; i < seeds_per_test; ++i) {
        const std::uint32_t seed = GetParam() * seeds_per_test + i;
        SCOPED_TRACE(seed);
        run.WriteInput(support::Damaged(bytes, 0, i % 2 == 0 ? ifds_end : kDngPreviewOffset, seed));
        written += RepairOrRefuse(run, Request(seed)) ? 1U : 0U;
    }
    EXPECT_GT(written, seeds_per_test / 8);
    EXPECT_LT(written, seeds_per_test);
    EXPECT_LT(PeakKilobytes() - peak_before, 16384);
}

INSTANTIATE_TEST_SUITE_P(TenThousandSeeds, DamagedDng, testing::Range(0U, 10U));

class DamagedFullDng : public testing::TestWithParam<std::uint32_t> {};

TEST_P(DamagedFullDng, IsRefusedOrBecomesAReadableDng) {
    constexpr std::uint32_t seeds_per_test = 75;
    const Bytes bytes = samples::Serialize(support::FullCameraDng());
    RepairRun run;
    PrepareDatabases(run);
    std::uint32_t written = 0;
    for (std::uint32_t i = 0; i < seeds_per_test; ++i) {
        const std::uint32_t seed = GetParam() * seeds_per_test + i;
        SCOPED_TRACE(seed);
        run.WriteInput(support::Damaged(bytes, 0, kDngPreviewOffset, seed));
        written += RepairOrRefuse(run, Request(seed)) ? 1U : 0U;
    }
    EXPECT_GT(written, 0U);
    EXPECT_LT(written, seeds_per_test);
}

INSTANTIATE_TEST_SUITE_P(ThreeHundredSeeds, DamagedFullDng, testing::Range(0U, 4U));

/// Cuts the file to ever shorter lengths and expects that each is refused.
void ExpectRefusedAtEveryLength(RepairRun& run, std::size_t from, std::size_t to, std::size_t step) {
    for (std::size_t length = from; length >= to + step; length -= step) {
        SCOPED_TRACE(length - step);
        std::filesystem::resize_file(run.InputPath(), length - step);
        ASSERT_FALSE(RepairOrRefuse(run, {}));
    }
}

TEST(TruncatedDng, IsRefusedAtEveryStepOf4KiB) {
    constexpr std::size_t step = 4096;
    RepairRun run;
    run.WriteInput(samples::Serialize(support::FullCameraDng()));
    std::filesystem::resize_file(run.InputPath(), samples::kCameraDngBytes - 1);
    EXPECT_FALSE(RepairOrRefuse(run, {}));
    ExpectRefusedAtEveryLength(run, samples::kCameraDngBytes / step * step + step, 0, step);
}

TEST(TruncatedDng, IsRefusedAtEveryByteOfItsFirst4KiB) {
    RepairRun run;
    Bytes bytes = samples::Serialize(support::FullCameraDng());
    bytes.resize(4097);
    run.WriteInput(bytes);
    ExpectRefusedAtEveryLength(run, 4097, 0, 1);
}

}  // namespace
