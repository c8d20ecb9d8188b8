// SPDX-License-Identifier: MIT
#include "tests/dng/repair_run.h"

#include <filesystem>

#include "dng/dnglib.h"
#include "sensor/sensdb.h"
#include "tests/support/capture_stdout.h"
#include "tiff/tags.h"

namespace {

/// The bytes of the only strip of `ifd`.
std::vector<std::uint8_t> Strip(const support::TiffFile& file, const support::TiffIFD& ifd) {
    return file.Bytes(ifd.At(tag::kStripOffsets).Number(), ifd.At(tag::kStripByteCounts).Number());
}

}  // namespace

RepairedFile::RepairedFile(const std::vector<std::uint8_t>& bytes)
    : file(bytes),
      ifd0(file.FirstIFD()),
      raw(file.ReadIFD(ifd0.At(tag::kSubIFDs).Number())),
      exif(file.ReadIFD(ifd0.At(tag::kExifIFD).Number())) {}

std::vector<std::uint8_t> RepairedFile::Preview() const {
    return Strip(file, ifd0);
}

std::vector<std::uint16_t> RepairedFile::Pixels() const {
    const auto bytes = Strip(file, raw);
    std::vector<std::uint16_t> pixels;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        pixels.push_back(static_cast<std::uint16_t>(bytes[i] + bytes[i + 1] * 256));
    }
    return pixels;
}

RepairRun::RepairRun() {
    std::filesystem::create_directory(folder_ / "IN");
    std::filesystem::create_directory(folder_ / "OUT");
}

void RepairRun::WriteSensorDatabase(const std::string& text) const {
    support::WriteFile(folder_ / "sensdb.ini", text);
}

void RepairRun::WriteInput(const std::vector<std::uint8_t>& bytes) const {
    std::filesystem::remove(InputPath());  // overwriting a file may have to wait for the disk
    support::WriteFile(InputPath(), bytes);
}

RepairResult RepairRun::Repair(const RepairRequest& request) {
    std::filesystem::remove(OutputPath());  // a new file need not wait for the disk
    sensdb sensors(folder_.prefix());
    DNGlib dng(&lenses, &sensors);
    RepairResult result;
    result.output = support::CaptureStdout([&] {
        result.code = dng.fixDNG(folder_ / "IN/", "L1", request.verbose, request.lens_fix, request.sensor_fix,
                                 request.dark_field_creation, request.dark_field_fix, request.estimate_rows,
                                 request.line_test, &sensors, request.lens_code, folder_ / "OUT/");
    });
    return result;
}
