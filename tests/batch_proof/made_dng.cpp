// SPDX-License-Identifier: MIT
#include "tests/batch_proof/made_dng.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "app/conversion_run.h"
#include "batch/proof/dng_proof.h"
#include "errors/error_handler.h"
#include "samples/sample_databases.h"
#include "samples/sensor_dump.h"
#include "sensor/sensdb.h"
#include "tests/support/capture_stdout.h"
#include "tests/support/test_pair.h"
#include "tiff/tags.h"

void MadeDng::WritePair(const samples::Shot& shot) const {
    support::WritePair(folder.path().string(), kBase, shot);
}

void MadeDng::WriteDarkFrame(std::uint16_t level) const {
    support::WriteFile(folder / "L1.BIA", samples::DumpBytes(samples::FlatWords(level)));
}

void MadeDng::WriteCameraDng(const samples::CameraDngFile& file) const {
    support::WriteFile(folder / "L1.DNG", samples::Serialize(file));
}

void MadeDng::WriteSensorDatabase(const std::string& text) const {
    support::WriteFile(folder / "sensdb.ini", text);
}

void MadeDng::WriteLensDatabase() {
    support::WriteFile(folder / "lensdb.ini", samples::LensDatabase());
    lenses = lensdb(folder.prefix());
    ASSERT_EQ(lenses.LoadLensData(), 0);
}

void MadeDng::Make() {
    camera_dng = std::filesystem::exists(folder / "L1.DNG");
    settings.input = {folder.prefix(), {camera_dng ? "L1.DNG" : "L1.RAW"}};
    settings.output_folder = folder / "made/";
    std::filesystem::remove_all(folder / "made");
    std::filesystem::create_directory(folder / "made");
    sensdb sensors(folder.prefix());
    const ErrorHandler errors;
    (void)support::CaptureStdout(
        [&] { EXPECT_EQ(ConversionRun(settings, lenses, sensors, errors).Run(), 0); });
    bytes = support::ReadFile(Path());
}

void MadeDng::Flip(std::size_t at, std::uint8_t bits) {
    bytes.at(at) ^= bits;
    std::fstream dng(Path(), std::ios::in | std::ios::out | std::ios::binary);
    dng.seekp(static_cast<std::streamoff>(at));
    dng.put(static_cast<char>(bytes[at]));
    ASSERT_TRUE(dng.flush());
}

std::string MadeDng::Check() {
    return CheckFile(Path());
}

std::string MadeDng::CheckFile(const std::string& dng, const ByteObserver& observer) {
    sensdb sensors(folder.prefix());
    DngProof proof(settings, lenses, sensors);
    std::string result;
    EXPECT_EQ(support::CaptureStdout(
                  [&] { result = proof.Check(folder.prefix(), kBase, camera_dng, dng, observer); }),
              "");
    return result;
}

std::size_t MadeDng::PixelAt(std::size_t x, std::size_t y) const {
    const auto dng = file();
    const auto ifd0 = dng.FirstIFD();
    const auto raw = ifd0.Has(tag::kSubIFDs) ? dng.ReadIFD(ifd0.At(tag::kSubIFDs).Number()) : ifd0;
    return raw.At(tag::kStripOffsets).Number() + 2 * (y * raw.At(tag::kImageWidth).Number() + x);
}

std::uint16_t MadeDng::Pixel(std::size_t x, std::size_t y) const {
    const std::size_t at = PixelAt(x, y);
    return static_cast<std::uint16_t>(bytes.at(at) + 256 * bytes.at(at + 1));
}

void MadeDng::SetPixel(std::size_t x, std::size_t y, std::uint16_t value) {
    const std::size_t at = PixelAt(x, y);
    Flip(at, static_cast<std::uint8_t>(bytes.at(at) ^ value % 256));
    Flip(at + 1, static_cast<std::uint8_t>(bytes.at(at + 1) ^ value / 256));
}
