// SPDX-License-Identifier: MIT
// Repair of a DNG that the camera wrote: its 8-bit data become 14-bit ones, get the corrections of a
// conversion, and are written anew with the camera's own tags around them.
#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "base/byte_view.h"
#include "base/error_codes.h"
#include "dng/camera_image.h"
#include "dng/dnglib.h"
#include "dng/ifd_values.h"
#include "dng/lens_tags.h"
#include "dng/maker_note_struct.h"
#include "dng/tag_values.h"
#include "errors/error_handler.h"
#include "exif/exif_info.h"
#include "exif/exposure_rules.h"
#include "exif/maker_note.h"
#include "input/preview.h"
#include "sensor/sensdb.h"
#include "sensor/sensor_steps.h"
#include "system/input_file.h"
#include "system/system_path.h"
#include "tiff/tags.h"
#include "tiff/types.h"

/// What a repair is asked for.
struct RepairOptions {
    bool lens_fix;
    bool sensor_fix;
    bool dark_field_creation;
    bool dark_field_fix;
    bool estimate_rows;
    bool line_test;
    sensdb* sensors;
    std::string lens_code;
};

namespace {

constexpr const char* kCameraMake = "Leica Camera AG";
constexpr const char* kCameraModel = "M8";

/// In HostComputer: the dark field of this file is removed already.
constexpr const char* kProgramName = "velmarcon";

bool Contains(const DNGlib::IFD& ifd, std::uint16_t tag, const char* text) {
    return ifd_values::Text(ifd, tag).find(text) != std::string::npos;
}

/// A directory of which the repair keeps nothing.
struct UnreadDirectory {
    std::uint16_t pointer;  ///< the tag that leads to it
    const char* contents;
};
constexpr std::array<UnreadDirectory, 2> kUnreadDirectories = {
    {{tag::kGPSIFD, "GPS data"}, {tag::kInteroperabilityIFD, "interoperability data"}}};

/// Removes the pointers to unread directories, which would lead to other bytes in the new file. So no IFD has
/// all 65536 tags, which its count of 16 bits could not tell. Returns what the directories hold, in words;
/// nothing when there are none.
std::optional<std::string> RemoveUnreadDirectories(std::initializer_list<DNGlib::IFD*> ifds) {
    std::optional<std::string> contents;
    for (const UnreadDirectory& directory : kUnreadDirectories) {
        for (DNGlib::IFD* ifd : ifds) {
            if (ifd->erase(directory.pointer) > 0) {
                contents = contents.value_or(directory.contents);
            }
        }
    }
    return contents;
}

/// Whether writing `output` could replace the file `input`, which is there. Links and other spellings lead to
/// the same file; when the system cannot tell, it may be the same.
bool MayReplace(const std::string& output, const std::string& input) {
    std::error_code error;
    const std::filesystem::path output_path = system_path::ToSystem(output);
    const std::filesystem::path input_path = system_path::ToSystem(input);
    const bool same = output == input || std::filesystem::equivalent(output_path, input_path, error);
    return same || (error && error != std::errc::no_such_file_or_directory);
}

}  // namespace

int DNGlib::fixDNG(const std::string& folder, const std::string& base, bool verbose, bool lensFix,
                   bool sensorFix, bool darkFieldCreation, bool darkFieldFix, bool estimateRows,
                   bool lineTest, sensdb* db, const std::string& lensCode, const std::string& outputFolder) {
    const RepairOptions options = {lensFix,  sensorFix, darkFieldCreation, darkFieldFix, estimateRows,
                                   lineTest, db,        lensCode};
    const std::string name = base + ".DNG";
    preview_ = true;
    verbose_ = verbose;
    if (verbose_) {
        std::printf("Reading DNG Image...");
    }
    CameraImage image;
    int error = ReadCameraDng(folder + name, image);
    const auto lost = RemoveUnreadDirectories({&ifd0_, &sub_ifd_, &exif_ifd_});
    if (error == 0 && exif_ifd_.empty()) {
        error = kDngDamaged;  // it held nothing else
    }
    if (error != 0) {
        return ErrorHandler().PrintError(error, name);
    }
    if (verbose_) {
        std::printf("Done\n");
    }
    const std::string output = outputFolder + name;
    if (lost && MayReplace(output, folder + name)) {
        std::printf("%s: DNG not written: it holds %s, which a repair does not keep; name another folder\n",
                    output.c_str(), lost->c_str());
        return 0;
    }
    const MakerNoteStruct note = DecodeMakerNote(ByteView(ifd_values::Bytes(exif_ifd_, tag::kMakerNote)));

    if (options.sensor_fix) {
        FixSensor(options, note, image);
    }
    if (options.lens_fix) {
        FixLens(options, note);
    }
    FixExposure();
    AddIFDTag(&ifd0_, tag::kMakerNoteSafety, tag_values::kSafe);
    DescribeStrips(image);
    const auto raw_bytes = static_cast<int>(image.pixels.size() * sizeof(unsigned short));
    return writeDNGTree(outputFolder, name, reinterpret_cast<const char*>(image.pixels.data()),
                        reinterpret_cast<const char*>(image.preview.data()), raw_bytes,
                        PreviewSampler::kSize);
}

/// Fills the IFDs and the image. Returns 0 or an ErrorCode.
int DNGlib::ReadCameraDng(const std::string& path, CameraImage& image) {
    InputFile file;
    if (!file.Open(path)) {
        return kDngDamaged;
    }
    // Where the camera puts its first IFD; the header is not looked at.
    file.stream().seekg(tiff::kHeaderSize);
    GetIFDs(&file.stream(), &ifd0_);
    if (!file.stream()) {
        return kDngDamaged;
    }
    if (!Contains(ifd0_, tag::kMake, kCameraMake) || !Contains(ifd0_, tag::kModel, kCameraModel)) {
        return kNotACameraDng;
    }
    const bool complete = ReadLinkedIFD(file.stream(), tag::kSubIFDs, sub_ifd_) &&
                          ReadLinkedIFD(file.stream(), tag::kExifIFD, exif_ifd_) &&
                          ReadImages(file, ifd0_, sub_ifd_, image);
    return complete ? kNoError : kDngDamaged;
}

/// Reads the IFD to which tag `pointer` of IFD0 points. Returns whether it is there, whole, and not empty: a
/// TIFF file has no IFD without entries, so none could be written.
bool DNGlib::ReadLinkedIFD(std::ifstream& file, unsigned short pointer, IFD& ifd) {
    const auto offset = ifd_values::Number(ifd0_, pointer);
    if (!offset) {
        return false;
    }
    file.seekg(static_cast<std::streamoff>(*offset));
    GetIFDs(&file, &ifd);
    return file.good() && !ifd.empty();
}

/// One strip an image, as the layout writes them, and 16 bits for the raw image.
void DNGlib::DescribeStrips(const CameraImage& image) {
    constexpr unsigned short bits_per_sample = 16;
    AddIFDTag(&ifd0_, tag::kStripByteCounts, static_cast<unsigned int>(image.preview.size()));
    AddIFDTag(&ifd0_, tag::kRowsPerStrip, static_cast<unsigned int>(PreviewSampler::kHeight));

    AddIFDTag(&sub_ifd_, tag::kStripByteCounts,
              static_cast<unsigned int>(image.pixels.size() * sizeof(unsigned short)));
    AddIFDTag(&sub_ifd_, tag::kRowsPerStrip, static_cast<unsigned int>(image.height));
    AddIFDTag(&sub_ifd_, tag::kBitsPerSample, bits_per_sample);
    sub_ifd_.erase(tag::kLinearizationTable);
}

void DNGlib::FixSensor(const RepairOptions& options, const MakerNoteStruct& note, CameraImage& image) {
    const ErrorHandler errors;
    if (options.sensors->LoadSensData() != 0 && !options.dark_field_creation) {
        errors.PrintError(kNoSensorDatabase);
        return;
    }
    const auto speeds = ifd_values::Shorts(exif_ifd_, tag::kISOSpeedRatings);
    const std::uint16_t iso = speeds.empty() ? 0 : speeds.front();
    SensorSteps steps({note.serial_number, iso, &image.pixels, image.width, image.height}, *options.sensors,
                      verbose_);
    steps.FixPixelLines(options.line_test);
    if (options.dark_field_creation) {
        errors.PrintError(kNoDarkfieldFromDng);
    }
    const bool already_fixed = Contains(ifd0_, tag::kHostComputer, kProgramName);
    if (options.dark_field_fix && !already_fixed && steps.FixDarkField(options.estimate_rows)) {
        AddIFDTag(&ifd0_, tag::kHostComputer, std::string(kProgramName));
    }
}

void DNGlib::FixLens(const RepairOptions& options, const MakerNoteStruct& note) {
    std::string key = maker_note::LensCodeText(note.LensCode());
    bool detected = true;
    if (note.LensCode() == 0) {
        key = options.lens_code;
        detected = !key.empty();
    }
    if (!detected) {
        ErrorHandler().PrintError(kLensNotDetected);
    }
    const auto* lens = detected ? lens_tags::FindLens(*lenses_, key) : nullptr;
    if (lens != nullptr) {
        AddLensTags(*lens);
        const Rational focal_length = lens_tags::FocalLength(lens->FocalLength);
        AddRational(exif_ifd_, tag::kFocalLength, focal_length);
        AddIFDTag(&exif_ifd_, tag::kFocalLengthIn35mmFilm, lens_tags::FocalLengthIn35mmFilm(focal_length));
    }
    const std::int32_t estimate =
        lens_tags::EstimatedFNumber(note.external_brightness.front(), note.measured_light.front());
    const auto denominator = static_cast<std::uint32_t>(note.approximate_f_number.back());
    const auto apertures = lens_tags::PictureApertures(lens, estimate, denominator);
    AddRational(exif_ifd_, tag::kFNumber, apertures.f_number);
    if (apertures.max_aperture) {
        AddRational(exif_ifd_, tag::kMaxApertureValue, *apertures.max_aperture);
    }
}

/// The exposure as the EXIF parser of a conversion would give it. What the file does not have is not added.
void DNGlib::FixExposure() {
    if (const auto bias = ifd_values::FirstRational(exif_ifd_, tag::kExposureBiasValue)) {
        const SRational thirds = ExposureBiasInThirds(*bias);
        AddIFDTag(&exif_ifd_, tag::kExposureBiasValue, thirds.numerator, thirds.denominator);
    }
    if (const auto time = ifd_values::FirstRational(exif_ifd_, tag::kExposureTime)) {
        AddRational(exif_ifd_, tag::kExposureTime, SnapExposureTime(AsUnsigned(*time)));
    }
}

std::vector<unsigned short> DNGlib::getSensorHorzLevel() {
    constexpr std::size_t levels = 4;
    return std::vector<unsigned short>(levels);
}
