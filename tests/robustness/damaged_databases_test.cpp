// SPDX-License-Identifier: MIT
// Databases with any content and of any length: images are corrected with those values that can be read.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "dng/lens_tags.h"
#include "exif/lensdb.h"
#include "input/read_input_data.h"
#include "samples/sample_databases.h"
#include "samples/sensor_dump.h"
#include "sensor/reported_corrections.h"
#include "sensor/sensdb.h"
#include "tests/support/capture_stdout.h"
#include "tests/support/damage.h"
#include "tests/support/files.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kSerial = 3106091;
constexpr int kWidth = 3920;
constexpr int kHeight = 4;

Bytes AsBytes(std::string_view text) {
    return {text.begin(), text.end()};
}

/// Defective columns, followed by `levels` dark levels.
Bytes SensorDatabase(std::size_t levels) {
    std::string text = "; of the sample camera\n[3106091]\n";
    for (const int value : {24, 0, 24, 5000, 124, 10, 124, 2646, 3943, 0, 3943, 65535}) {
        text += "Line = " + std::to_string(value) + "\n";
    }
    text += "[1234567]\nLine = 1\n[3106091]\n";
    for (std::size_t column = 0; column < levels; ++column) {
        text += "LevelCorrection = " + std::to_string(column % 9) + ".512000\n";
    }
    return AsBytes(text);
}

/// A folder for a database file.
class DamagedDatabase : public testing::Test {
  protected:
    /// Reads sensdb.ini, corrects an image with it and writes it again. Expects that every printed line is
    /// one that the program is known to print.
    void UseSensorDatabase(const Bytes& text) const {
        WriteAnew("sensdb.ini", text);
        sensdb sensors(folder_.prefix());
        if (sensors.LoadSensData() != 0) {
            return;
        }
        pixels_.assign(std::size_t{kWidth} * kHeight, 1000);
        const std::string output = support::CaptureStdout([&] {
            Correct(sensors, false);
            Correct(sensors, true);
        });
        EXPECT_TRUE(output.empty() || output.starts_with("No ")) << output;
        EXPECT_EQ(pixels_.size(), std::size_t{kWidth} * kHeight);
        std::filesystem::remove(folder_ / "sensdb.ini");
        // Text after a NUL has not been read and would be lost.
        const bool read_whole = std::ranges::find(text, 0) == text.end();
        const std::string report =
            support::CaptureStdout([&] { EXPECT_EQ(sensors.WriteSensData() == 0, read_whole); });
        EXPECT_EQ(report.empty(), read_whole) << report;
    }

    /// Reads lensdb.ini and makes the tags of each of its lenses. Returns the number of lenses.
    std::size_t UseLensDatabase(const Bytes& text) const {
        WriteAnew("lensdb.ini", text);
        lensdb lenses(folder_.prefix());
        if (lenses.LoadLensData() != 0) {
            return 0;
        }
        for (const auto& [code, lens] : lenses.Lenses) {
            EXPECT_TRUE(std::ranges::is_sorted(lens.Aperture)) << code;
            const auto apertures = lens_tags::PictureApertures(&lens, 375082, 65536);
            EXPECT_EQ(apertures.f_number.denominator, 65536U);
            EXPECT_EQ(apertures.max_aperture.has_value(), !lens.Aperture.empty());
            const auto focal_length = lens_tags::FocalLength(lens.FocalLength);
            EXPECT_EQ(focal_length.denominator, 1000U);
            (void)lens_tags::FocalLengthIn35mmFilm(focal_length);
        }
        return lenses.Lenses.size();
    }

  private:
    /// Removes the file first: unlike a replaced file, a new one is not flushed to disk.
    void WriteAnew(const std::string& name, const Bytes& text) const {
        std::filesystem::remove(folder_ / name);
        support::WriteFile(folder_ / name, text);
    }

    void Correct(sensdb& sensors, bool estimate) const {
        ReportedCorrections corrections({kSerial, 2500, &pixels_, kWidth, kHeight}, sensors, false);
        corrections.FixPixelLines(false);
        corrections.FixDarkField(estimate);
    }

    support::TempFolder folder_;
    mutable std::vector<std::uint16_t> pixels_;
};

class DamagedDatabaseOfSeed : public DamagedDatabase, public testing::WithParamInterface<std::uint32_t> {
  protected:
    /// Calls `use` with `text` damaged by each of the test's seeds.
    template <typename Use>
    static void ForEachDamage(const Bytes& text, std::uint32_t seeds, Use use) {
        constexpr std::chrono::seconds longest(5);
        for (std::uint32_t i = 0; i < seeds; ++i) {
            const std::uint32_t seed = GetParam() * seeds + i;
            SCOPED_TRACE(seed);
            const auto start = std::chrono::steady_clock::now();
            use(support::Damaged(text, 0, text.size(), seed));
            EXPECT_LT(std::chrono::steady_clock::now() - start, longest);
        }
    }
};

TEST_P(DamagedDatabaseOfSeed, OfSensorsIsUsedAsFarAsItIsReadable) {
    ForEachDamage(SensorDatabase(40), 1000, [this](const Bytes& text) { UseSensorDatabase(text); });
}

TEST_P(DamagedDatabaseOfSeed, OfSensorsInFullSizeIsUsedAsFarAsItIsReadable) {
    ForEachDamage(SensorDatabase(samples::kSensorWidth), 20,
                  [this](const Bytes& text) { UseSensorDatabase(text); });
}

TEST_P(DamagedDatabaseOfSeed, OfLensesIsUsedAsFarAsItIsReadable) {
    std::size_t lenses = 0;
    ForEachDamage(AsBytes(samples::LensDatabase()), 1000,
                  [&](const Bytes& text) { lenses += UseLensDatabase(text); });
    EXPECT_GT(lenses, 1000U);  // of 3000
}

INSTANTIATE_TEST_SUITE_P(TenThousandSeeds, DamagedDatabaseOfSeed, testing::Range(0U, 10U));

class TruncatedDatabase : public DamagedDatabase {
  protected:
    /// Calls `use` with every prefix of `text`, or with prefixes at intervals of `step` bytes.
    template <typename Use>
    static void ForEachLength(const Bytes& text, std::size_t step, Use use) {
        for (std::size_t length = 0; length <= text.size(); length += step) {
            SCOPED_TRACE(length);
            use(Bytes(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length)));
        }
    }
};

TEST_F(TruncatedDatabase, OfSensorsIsUsedAtEveryLength) {
    ForEachLength(SensorDatabase(20), 1, [this](const Bytes& text) { UseSensorDatabase(text); });
}

TEST_F(TruncatedDatabase, OfSensorsInFullSizeIsUsedAtManyLengths) {
    ForEachLength(SensorDatabase(samples::kSensorWidth), 1009,
                  [this](const Bytes& text) { UseSensorDatabase(text); });
}

TEST_F(TruncatedDatabase, OfLensesIsUsedAtEveryLength) {
    std::size_t lenses = 0;
    ForEachLength(AsBytes(samples::LensDatabase()), 1, [&](const Bytes& text) {
        const std::size_t now = UseLensDatabase(text);
        EXPECT_GE(now, lenses);
        lenses = now;
    });
    EXPECT_EQ(lenses, 5U);
}

}  // namespace
