// SPDX-License-Identifier: MIT
// Benchmarks each step of a conversion separately, to compare the steps with each other and across changes.
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <ios>
#include <string>
#include <system_error>
#include <vector>

#include <benchmark/benchmark.h>

#include "dng/dnglib.h"
#include "exif/exif_info.h"
#include "exif/lensdb.h"
#include "input/raw_layout.h"
#include "input/read_input_data.h"
#include "samples/camera_jpeg.h"
#include "samples/sensor_dump.h"
#include "samples/shot.h"
#include "sensor/sensdb.h"

namespace {

/// The yardstick for the pixel steps: copies the words of one dump.
void CopyDump(benchmark::State& state) {
    const auto dump = samples::FlatWords(1000);
    std::vector<std::uint16_t> copy(dump.size());
    while (state.KeepRunning()) {
        copy = dump;
        benchmark::DoNotOptimize(copy.data());
    }
}
BENCHMARK(CopyDump)->Unit(benchmark::kMicrosecond);

/// A dark frame in a folder of its own, which goes with it.
class DarkFrameFile {
  public:
    DarkFrameFile() {
        std::filesystem::create_directory(folder_);
        const auto bytes = samples::DumpBytes(samples::FlatWords(92));
        std::ofstream file(folder_ / kName, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    ~DarkFrameFile() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    DarkFrameFile(const DarkFrameFile&) = delete;
    DarkFrameFile& operator=(const DarkFrameFile&) = delete;
    DarkFrameFile(DarkFrameFile&&) = delete;
    DarkFrameFile& operator=(DarkFrameFile&&) = delete;

    std::string folder() const { return folder_.string() + "/"; }

    static constexpr const char* kName = "X.BIA";

  private:
    std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("velmarcon-bench-steps-" + std::to_string(::getpid()));
};

/// With a dark frame, reads that, too.
void CropAndPreview(benchmark::State& state, bool dark_frame) {
    const auto dump = samples::FlatWords(1000);
    const DarkFrameFile file;
    ReadInputData record;
    record.SubtractBia = dark_frame;
    record.Folder = file.folder();
    record.BiaFileName = DarkFrameFile::kName;
    while (state.KeepRunning()) {
        state.PauseTiming();
        record.ImageData = dump;
        record.ImageSize = raw_layout::kFileBytes;
        state.ResumeTiming();
        benchmark::DoNotOptimize(record.ExtractRawImage());
    }
}
BENCHMARK_CAPTURE(CropAndPreview, Plain, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(CropAndPreview, DarkFrame, true)->Unit(benchmark::kMicrosecond);

void ParseExif(benchmark::State& state) {
    const auto jpeg = samples::CameraJpeg(samples::CameraExif({}));
    EXIFInfo exif;
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(exif.parseFrom(jpeg.data(), static_cast<unsigned int>(jpeg.size())));
    }
}
BENCHMARK(ParseExif)->Unit(benchmark::kMicrosecond);

/// Builds, lays out and writes everything in a DNG except its image.
void WriteTagTree(benchmark::State& state) {
    const auto jpeg = samples::CameraJpeg(samples::CameraExif({}));
    ReadInputData record;
    record.Width = samples::kSensorWidth;
    record.Height = samples::kSensorHeight;
    benchmark::DoNotOptimize(record.Exif.parseFrom(jpeg.data(), static_cast<unsigned int>(jpeg.size())));
    lensdb lenses;
    sensdb sensors("");
    std::ofstream nowhere("/dev/null", std::ios::binary);
    while (state.KeepRunning()) {
        DNGlib dng(&record, &lenses, &sensors);
        dng.createDNGTree(false, true, 92, false, false, false);
        benchmark::DoNotOptimize(dng.DoFileLayout(0));
        for (DNGlib::IFD ifd : {dng.ifd0(), dng.exif_ifd()}) {
            dng.writeSingleTree(nowhere, &ifd);
        }
    }
}
BENCHMARK(WriteTagTree)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
