// SPDX-License-Identifier: MIT
// The repair of a DNG that the camera wrote, from its first byte on: refused as a whole, or written as a
// whole file that is its own repair.
#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/error_codes.h"
#include "dng/dnglib.h"
#include "fuzz/any_camera.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/input_bytes.h"
#include "fuzz/require.h"
#include "fuzz/scratch_folder.h"
#include "fuzz/written_dng.h"
#include "input/preview.h"
#include "tiff/tags.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr const char* kName = "L1.DNG";

/// What a repair is asked for; by default nothing but what every repair does.
struct Request {
    bool verbose = true;
    bool lens_fix = false;
    bool sensor_fix = false;
    bool dark_field_creation = false;
    bool dark_field_fix = false;
    bool estimate_rows = false;
    bool line_test = false;
    bool with_database = true;
    bool in_place = false;  ///< write over the input
    std::string lens_code;
};

/// The first two bytes of an input.
Request RequestOf(std::uint8_t options, std::uint8_t more) {
    return {.verbose = !Bit(more, 0),
            .lens_fix = Bit(options, 0),
            .sensor_fix = Bit(options, 1),
            .dark_field_creation = Bit(options, 2),
            .dark_field_fix = Bit(options, 3),
            .estimate_rows = Bit(options, 4),
            .line_test = Bit(options, 5),
            .with_database = !Bit(more, 1),
            .in_place = Bit(more, 2),
            .lens_code = Bit(options, 6) ? "100001" : ""};
}

/// The file, and with the option behind it rows of an image: so that a few bytes are enough for one that is
/// as wide as the sensor.
Bytes File(std::span<const std::uint8_t> input, bool with_rows) {
    constexpr std::size_t rows = std::size_t{3968} * 4;
    Bytes file;
    file.reserve(input.size() + rows);
    file.assign(input.begin(), input.end());
    for (std::size_t i = 0; with_rows && i < rows; ++i) {
        file.push_back(static_cast<std::uint8_t>(i * 7 % 251));
    }
    return file;
}

/// Repairs files of a scratch folder.
class Workshop {
  public:
    Workshop() : known_cameras_(AnyCamera(database_)), no_cameras_(input_.prefix()) {}

    /// Repairs `file`. Returns the result; the output is read into `repaired`, which is empty without one.
    int Repair(const Bytes& file, const Request& request, Bytes& repaired) {
        input_.Write(kName, file);
        output_.Remove(kName);  // what is new need not wait for the disk
        const ScratchFolder& target = request.in_place ? input_ : output_;
        sensdb& sensors = request.with_database ? known_cameras_ : no_cameras_;
        ForgetUnknownCameras(sensors);
        DNGlib dng(&lenses_, &sensors);
        const int result =
            dng.fixDNG(input_.prefix(), "L1", request.verbose, request.lens_fix, request.sensor_fix,
                       request.dark_field_creation, request.dark_field_fix, request.estimate_rows,
                       request.line_test, &sensors, request.lens_code, target.prefix());
        if (result != 0 || !request.in_place) {
            Require(input_.Read(kName) == file, "the input stays as it is");
        }
        const bool output = result == 0 && !request.in_place;
        Require(input_.Names() == std::vector<std::string>{kName} &&
                    output_.Names() == std::vector<std::string>(output ? 1 : 0, kName),
                "nothing but the output is left");
        repaired = result == 0 ? target.Read(kName) : Bytes();
        return result;
    }

  private:
    ScratchFolder database_;
    ScratchFolder input_;
    ScratchFolder output_;
    lensdb lenses_ = AnyLens();
    sensdb known_cameras_;
    sensdb no_cameras_;
};

/// Overwrites the exposure bias, which each repair brings into thirds once more.
void ForgetExposureBias(const WrittenDng& dng, Bytes& bytes) {
    if (dng.exif_ifd().Has(tag::kExposureBiasValue)) {
        const auto& entry = dng.exif_ifd().At(tag::kExposureBiasValue);
        std::ranges::fill(std::span(bytes).subspan(entry.offset, entry.value.size()), std::uint8_t{0});
    }
}

/// A file that was repaired is one that can be repaired, and stays the same when nothing is asked for.
void RequireItsOwnRepair(Workshop& workshop, Bytes written) {
    const WrittenDng dng(written, true);
    Require(dng.Strip(dng.ifd0()).size() == PreviewSampler::kSize, "the preview has its size");
    Bytes again;
    Require(workshop.Repair(written, {}, again) == kNoError, "a repaired file can be repaired");
    ForgetExposureBias(dng, written);
    ForgetExposureBias(WrittenDng(again, true), again);
    Require(again == written, "a repaired file is its own repair");
}

}  // namespace

void FuzzInput(std::span<const std::uint8_t> bytes) {
    static Workshop workshop;
    InputBytes input(bytes);
    const std::uint8_t options = input.NextByte();
    const std::uint8_t more = input.NextByte();
    Bytes written;
    const int result =
        workshop.Repair(File(input.Rest(), Bit(options, 7)), RequestOf(options, more), written);
    if (result == kNoError) {
        RequireItsOwnRepair(workshop, written);
    } else {
        Require(result == kDngDamaged || result == kNotACameraDng, "a file is refused as one of two kinds");
    }
}
