// SPDX-License-Identifier: MIT
// Writes seed inputs for the fuzzers, made by the sample maker: one folder per target below the folder given
// as the only argument. Exit status 1 on failure.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "fuzz/full_size_mark.h"
#include "samples/camera_dng.h"
#include "samples/camera_jpeg.h"
#include "samples/exif_block.h"
#include "samples/file_writer.h"
#include "samples/maker_note.h"
#include "samples/sample_databases.h"
#include "samples/sensor_dump.h"
#include "tiff/tags.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

/// `bytes` preceded by the option bytes of an input.
Bytes WithOptions(std::initializer_list<std::uint8_t> options, const Bytes& bytes) {
    Bytes input = options;
    input.insert(input.end(), bytes.begin(), bytes.end());
    return input;
}

Bytes AsBytes(std::string_view text) {
    return {text.begin(), text.end()};
}

/// Writes the seeds of all targets and records whether one could not be written.
class SeedWriter {
  public:
    explicit SeedWriter(std::string folder) : folder_(std::move(folder)) {}

    void Write(const std::string& target, const std::string& name, const Bytes& input) {
        std::error_code ignored;
        std::filesystem::create_directories(folder_ + "/" + target, ignored);
        const std::string path = folder_ + "/" + target + "/" + name;
        if (const std::string error = samples::WriteFile(path, input, true); !error.empty()) {
            (void)std::fprintf(stderr, "make_seeds: %s\n", error.c_str());
            failed_ = true;
        }
    }

    bool Failed() const { return failed_; }

  private:
    std::string folder_;
    bool failed_ = false;
};

samples::Shot FastShot() {
    samples::Shot shot;
    shot.exposure_time = {166, 1000000};
    shot.iso = 2500;
    shot.lens_code = 0;
    shot.exposure_bias = {-21845, 65536};
    return shot;
}

samples::ExifBlock BigEndian(samples::ExifBlock block) {
    block.order = ByteOrder::kBigEndian;
    return block;
}

void WriteExif(SeedWriter& seeds) {
    seeds.Write("exif", "camera", samples::CameraJpeg(samples::CameraExif({})));
    seeds.Write("exif", "fast", samples::CameraJpeg(samples::CameraExif(FastShot())));
    seeds.Write("exif", "big-endian", samples::CameraJpeg(BigEndian(samples::CameraExif({}))));
    samples::ExifBlock no_exif_ifd = samples::CameraExif({});
    no_exif_ifd.with_exif_ifd = false;
    seeds.Write("exif", "no-exif-ifd", samples::CameraJpeg(no_exif_ifd));
    samples::ExifBlock all_fields = samples::CameraExif({});
    samples::Set(all_fields.exif, samples::Rationals(tag::kFNumber, {{56, 10}}));
    samples::Set(all_fields.exif, samples::Rationals(tag::kExposureBiasValue, {{1, 3}}));
    samples::Set(all_fields.exif, samples::Rationals(tag::kSubjectDistance, {{15, 10}}));
    samples::Set(all_fields.exif, samples::Ascii(tag::kSubSecTimeOriginal, "42"));
    seeds.Write("exif", "all-fields", samples::CameraJpeg(all_fields));
    seeds.Write("exif", "edited-lost",
                samples::CameraJpeg(samples::EditedExif({}, samples::EditedNote::kLost)));
    seeds.Write("exif", "edited-outside",
                samples::CameraJpeg(samples::EditedExif({}, samples::EditedNote::kValuesOutside)));
    seeds.Write("exif", "no-segment", samples::TinyJpeg());
    seeds.Write("exif", "segment", samples::Serialize(samples::CameraExif({})));
    samples::Shot shot;
    shot.exposure_time = {333, 1000000};
    seeds.Write("exif", "1-3000", samples::CameraJpeg(samples::CameraExif(shot)));
    shot.exposure_time = {666, 1000000};
    seeds.Write("exif", "1-1500", samples::CameraJpeg(samples::CameraExif(shot)));
}

void WriteMakerNote(SeedWriter& seeds) {
    seeds.Write("maker_note", "jpeg", samples::JpegMakerNote({}));
    seeds.Write("maker_note", "dng", samples::DngMakerNote({}));
    seeds.Write("maker_note", "dng-base-8", samples::DngMakerNote({}, samples::kJpegNoteLayout));
    seeds.Write("maker_note", "fast", samples::DngMakerNote(FastShot()));
}

/// A camera DNG of `width` x `height` pixels whose strips start right after its values, with most of the
/// preview left out.
Bytes ShortDng(std::uint32_t width, std::uint32_t height, const samples::Shot& shot) {
    constexpr std::uint32_t preview_bytes = 24;
    samples::CameraDngFile file = samples::CameraDng(shot, {}, {});
    samples::Set(file.ifd0, samples::Long(tag::kStripOffsets, samples::kDngPreviewOffset));
    samples::Set(file.ifd0, samples::Long(tag::kStripByteCounts, preview_bytes));
    samples::Set(file.raw_ifd, samples::Long(tag::kImageWidth, width));
    samples::Set(file.raw_ifd, samples::Long(tag::kImageLength, height));
    samples::Set(file.raw_ifd, samples::Long(tag::kRowsPerStrip, height));
    samples::Set(file.raw_ifd, samples::Long(tag::kStripOffsets, samples::kDngPreviewOffset + preview_bytes));
    samples::Set(file.raw_ifd, samples::Long(tag::kStripByteCounts, width * height));
    Bytes bytes = samples::Serialize(file);
    bytes.resize(samples::kDngPreviewOffset + preview_bytes);
    return bytes;
}

void WriteDng(SeedWriter& seeds) {
    constexpr std::uint8_t rows = 0x80;  // option bit: rows of an image follow the file
    const Bytes cropped = ShortDng(samples::kCroppedWidth, 2, {});
    seeds.Write("dng", "plain", WithOptions({rows, 0}, ShortDng(40, 4, {})));
    seeds.Write("dng", "lens", WithOptions({rows | 0x01, 0}, ShortDng(40, 4, {})));
    seeds.Write("dng", "no-lens", WithOptions({rows | 0x41, 1}, ShortDng(40, 4, FastShot())));
    seeds.Write("dng", "sensor", WithOptions({rows | 0x0A, 0}, cropped));
    seeds.Write("dng", "rows", WithOptions({rows | 0x1A, 0}, cropped));
    seeds.Write("dng", "line-test", WithOptions({rows | 0x2F, 4}, cropped));
    seeds.Write("dng", "no-database", WithOptions({rows | 0x0E, 2}, cropped));
    seeds.Write("dng", "nothing-known", WithOptions({rows | 0x0A, 2}, cropped));
    Bytes whole = ShortDng(4, 2, {});
    whole.insert(whole.end(), {0, 32, 64, 96, 128, 160, 192, 255});
    seeds.Write("dng", "whole", WithOptions({0x00, 4}, whole));
}

void WriteDatabases(SeedWriter& seeds) {
    seeds.Write("lensdb", "lenses", AsBytes(samples::LensDatabase()));
    seeds.Write(
        "lensdb", "odd",
        AsBytes("\xEF\xBB\xBF; two lenses\r\n[000001]\r\naperture=2,8\r\nAPERTURE = 1e9\r\n[000001]\r\n"
                "Maker=<<<END\r\nseveral\r\nlines\r\nEND\r\nFocalLength=-0x1p3\r\n"));
    const std::string lines = "[3106091]\nLine = 1203\nLine = 4\nLine = 1203\nLine = 2646\n";
    const std::string levels = "LevelCorrection = 2.250000\nLevelCorrection = 0.125000\n";
    for (const int mode : {0x00, 0x41, 0x44, 0x60, 0x6D, 0x95, 0xE2, 0x07}) {
        const std::string name = "mode-" + std::to_string(mode);
        seeds.Write("sensdb", name,
                    WithOptions({static_cast<std::uint8_t>(mode), 90}, AsBytes(lines + levels)));
    }
    seeds.Write("sensdb", "two-cameras",
                WithOptions({0, 0}, AsBytes("; dark\n" + lines + "[-1]\n" + levels + "[7]\nline = 3\n")));
}

void WriteCalibration(SeedWriter& seeds) {
    const std::string camera =
        "[3106091]\nLine = 8\nLine = 100\nLine = 8\nLine = 2646\nLevelCorrection = 1\n";
    seeds.Write("calibrate", "camera", AsBytes(camera));
    seeds.Write("calibrate", "among-others",
                AsBytes("; mine\n[7]\nLine = 1\n" + camera + "[9]\nOwner = Anna\n"));
    seeds.Write("calibrate", "another-camera", AsBytes("[7]\nlevelcorrection = 2\n"));
}

void WriteOptions(SeedWriter& seeds) {
    const std::initializer_list<std::vector<const char*>> command_lines = {
        {"/opt/velmarcon/velmarcon"},
        {"velmarcon", "-i", "L1.RAW", "-o", "empty", "-v", "-r", "-p"},
        {"./velmarcon", "-i", "deep/", "-b", "100", "-l", "100001", "-s"},
        {"velmarcon", "-i", "L2", "-b", "-l", "-sd", "-st", "-sb", "-c"},
        {"velmarcon", "-i", "deep/L5.DNG"},
        {"velmarcon", "-i", "empty"},
        {"velmarcon", "-o", "missing"},
        {"", "-", "--", "-i"},
    };
    int number = 0;
    for (const auto& command_line : command_lines) {
        Bytes input;
        for (const char* argument : command_line) {
            const Bytes bytes = AsBytes(argument);
            input.insert(input.end(), bytes.begin(), bytes.end());
            input.push_back(0);
        }
        input.pop_back();
        seeds.Write("options", "line-" + std::to_string(number++), input);
    }
}

void WritePair(SeedWriter& seeds) {
    const Bytes block = samples::Serialize(samples::CameraExif({}));
    const Bytes fast = samples::Serialize(samples::CameraExif(FastShot()));
    const Bytes big_endian = samples::Serialize(BigEndian(samples::CameraExif({})));
    for (const int options : {0x00, 0x01, 0x0E, 0x1B, 0x21, 0x61, 0xA8}) {
        const std::string name = "options-" + std::to_string(options);
        seeds.Write("pair", name, WithOptions({static_cast<std::uint8_t>(options), 92, 0, 0}, block));
        seeds.Write("pair", name + "-fast", WithOptions({static_cast<std::uint8_t>(options), 1, 0, 0}, fast));
    }
    seeds.Write("pair", "big-endian", WithOptions({0x1B, 0, 0, 0}, big_endian));
    const std::uint16_t mark = FullSizeMark(block);
    const auto high = static_cast<std::uint8_t>(mark / 256);
    const auto low = static_cast<std::uint8_t>(mark % 256);
    seeds.Write("pair", "full-size", WithOptions({0x2B, 92, high, low}, block));
}

}  // namespace

int main(int argc, char* argv[]) {
    const std::span<char* const> arguments(argv, static_cast<std::size_t>(argc));
    if (arguments.size() != 2) {
        (void)std::fprintf(stderr, "usage: make_seeds FOLDER\n");
        return 1;
    }
    SeedWriter seeds(arguments[1]);
    WriteExif(seeds);
    WriteMakerNote(seeds);
    WriteDng(seeds);
    WriteDatabases(seeds);
    WriteCalibration(seeds);
    WriteOptions(seeds);
    WritePair(seeds);
    return seeds.Failed() ? 1 : 0;
}
