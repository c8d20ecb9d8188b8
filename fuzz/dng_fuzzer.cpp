// SPDX-License-Identifier: MIT
// Repairs a DNG that the camera wrote, where every byte is input: it is either refused as a whole, or written
// as a complete file that a second repair leaves unchanged.
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

/// What the repair is asked to do; by default only what every repair does.
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

/// Decodes the first two bytes of an input.
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

/// The input as a file; `with_rows` appends the rows of an image, so that a few bytes are enough for an image
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

/// Repairs files in a scratch folder.
class Workshop {
  public:
    Workshop() : known_cameras_(AnyCamera(database_)), no_cameras_(input_.prefix()) {}

    /// Repairs `file` and returns the result. Reads the output into `repaired`, which is empty if there is
    /// none.
    int Repair(const Bytes& file, const Request& request, Bytes& repaired) {
        input_.Write(kName, file);
        output_.Remove(kName);  // a new file is not flushed to disk, a replaced one is
        const ScratchFolder& target = request.in_place ? input_ : output_;
        sensdb& sensors = request.with_database ? known_cameras_ : no_cameras_;
        ForgetUnknownCameras(sensors);
        DNGlib dng(&lenses_, &sensors);
        const int result =
            dng.fixDNG(input_.prefix(), "L1", request.verbose, request.lens_fix, request.sensor_fix,
                       request.dark_field_creation, request.dark_field_fix, request.estimate_rows,
                       request.line_test, &sensors, request.lens_code, target.prefix());
        if (result != 0 || !request.in_place) {
            Require(input_.Read(kName) == file, "the input is unchanged");
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

/// Overwrites the exposure bias, which every repair rounds to thirds again.
void ForgetExposureBias(const WrittenDng& dng, Bytes& bytes) {
    if (dng.exif_ifd().Has(tag::kExposureBiasValue)) {
        const auto& entry = dng.exif_ifd().At(tag::kExposureBiasValue);
        std::ranges::fill(std::span(bytes).subspan(entry.offset, entry.value.size()), std::uint8_t{0});
    }
}

/// A repaired file can be repaired again, which leaves it unchanged if no option asks for more.
void RequireRepairLeavesUnchanged(Workshop& workshop, Bytes written) {
    const WrittenDng dng(written, true);
    Require(dng.Strip(dng.ifd0()).size() == PreviewSampler::kSize, "the preview has the right size");
    Bytes again;
    Require(workshop.Repair(written, {}, again) == kNoError, "a repaired file can be repaired");
    ForgetExposureBias(dng, written);
    ForgetExposureBias(WrittenDng(again, true), again);
    Require(again == written, "repairing a repaired file changes nothing");
}

}  // namespace

void FuzzInput(std::span<const std::uint8_t> bytes) {
    static Workshop workshop;
    InputBytes input(bytes);
    const std::uint8_t options = input.NextByte();
    Request request = RequestOf(options, input.NextByte());
    const Bytes file = File(input.Rest(), Bit(options, 7));
    Bytes written;
    int result = workshop.Repair(file, request, written);
    if (result == kNoError && written == file) {
        // A file with data that a repair does not keep is not replaced, only repaired into another folder.
        request.in_place = false;
        result = workshop.Repair(file, request, written);
        Require(result == kNoError, "what is not replaced can be repaired into another folder");
    }
    if (result == kNoError) {
        RequireRepairLeavesUnchanged(workshop, written);
    } else {
        Require(result == kDngDamaged || result == kNotACameraDng,
                "a refused file is either damaged or not from a camera");
    }
}
