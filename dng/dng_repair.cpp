// SPDX-License-Identifier: MIT
// Repairs a camera DNG: decodes its 8-bit data to 14 bits, corrects them as in a
// conversion, and writes them to a new DNG with the camera's own tags.
#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "base/byte_view.h"
#include "base/error_codes.h"
#include "base/pixel.h"
#include "dng/camera_image.h"
#include "dng/dnglib.h"
#include "dng/ifd.h"
#include "dng/lens_tags.h"
#include "dng/maker_note_struct.h"
#include "dng/tag_tree.h"
#include "dng/tag_values.h"
#include "errors/error_handler.h"
#include "errors/not_written.h"
#include "errors/step_lines.h"
#include "exif/exif_info.h"
#include "exif/exposure_rules.h"
#include "exif/lensdb.h"
#include "exif/maker_note.h"
#include "input/preview.h"
#include "sensor/reported_corrections.h"
#include "sensor/sensdb.h"
#include "system/input_file.h"
#include "system/path_names.h"
#include "system/system_path.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

/// What a repair is to do.
struct RepairOptions {
    bool verbose;
    bool lens_fix;
    bool sensor_fix;
    bool dark_field_creation;
    bool dark_field_fix;
    bool estimate_rows;
    bool line_test;
    sensdb* sensors;
    std::string lens_code;
};

constexpr const char* kCameraMake = "Leica Camera AG";
constexpr const char* kCameraModel = "M8";

/// In HostComputer, this marks a file whose dark levels have been subtracted.
constexpr const char* kProgramName = "velmarcon";

bool Contains(const IFD& ifd, std::uint16_t tag, const char* text) {
    return ifd::Text(ifd, tag).find(text) != std::string::npos;
}

/// A directory that the repair does not keep.
struct UnreadDirectory {
    std::uint16_t pointer;  ///< the tag that leads to it
    const char* contents;
};
constexpr std::array<UnreadDirectory, 2> kUnreadDirectories = {
    {{tag::kGPSIFD, "GPS data"}, {tag::kInteroperabilityIFD, "interoperability data"}}};

/// Removes the pointers to unread directories, which would be wrong in the new file. As a result, no IFD has
/// all 65536 possible tags, a number that its 16-bit count cannot express. Returns the contents of the
/// directories in words, or std::nullopt if there are none.
std::optional<std::string> RemoveUnreadDirectories(std::initializer_list<IFD*> ifds) {
    std::optional<std::string> contents;
    for (const UnreadDirectory& directory : kUnreadDirectories) {
        for (IFD* ifd : ifds) {
            if (ifd->erase(directory.pointer) > 0) {
                contents = contents.value_or(directory.contents);
            }
        }
    }
    return contents;
}

/// Whether writing `output` could replace the existing file `input`, also through a link or another spelling.
/// If the system cannot tell, the answer is yes.
bool MayReplace(const std::string& output, const std::string& input) {
    std::error_code error;
    const std::filesystem::path output_path = system_path::ToSystem(output);
    const std::filesystem::path input_path = system_path::ToSystem(input);
    const bool same = output == input || std::filesystem::equivalent(output_path, input_path, error);
    return same || (error && error != std::errc::no_such_file_or_directory);
}

/// Reads the IFD to which tag `pointer` of `ifd0` points. Returns whether the IFD is there, complete, and not
/// empty: TIFF does not allow an IFD without entries, so it could not be written.
bool ReadLinkedIFD(DNGlib& reader, std::ifstream& file, const IFD& ifd0, std::uint16_t pointer, IFD& ifd) {
    const auto offset = ifd::FirstNumber(ifd0, pointer);
    if (!offset) {
        return false;
    }
    file.seekg(static_cast<std::streamoff>(*offset));
    reader.GetIFDs(&file, &ifd);
    return file.good() && !ifd.empty();
}

/// Fills `tree`, using `reader`, and `image`. Returns 0 or an ErrorCode.
int ReadCameraDng(DNGlib& reader, const std::string& path, TagTree& tree, CameraImage& image) {
    InputFile file;
    if (!file.Open(path)) {
        return kDngDamaged;
    }
    // The camera's first IFD follows the header, which is not examined.
    file.stream().seekg(tiff::kHeaderSize);
    reader.GetIFDs(&file.stream(), &tree.ifd0);
    if (!file.stream()) {
        return kDngDamaged;
    }
    if (!Contains(tree.ifd0, tag::kMake, kCameraMake) || !Contains(tree.ifd0, tag::kModel, kCameraModel)) {
        return kNotACameraDng;
    }
    const bool complete = ReadLinkedIFD(reader, file.stream(), tree.ifd0, tag::kSubIFDs, tree.sub_ifd) &&
                          ReadLinkedIFD(reader, file.stream(), tree.ifd0, tag::kExifIFD, tree.exif_ifd) &&
                          ReadImages(file, tree.ifd0, tree.sub_ifd, image);
    return complete ? kNoError : kDngDamaged;
}

/// Describes what the writer writes: one strip per image, and 16 bits per raw pixel.
void DescribeStrips(const CameraImage& image, TagTree& tree) {
    ifd::Add(tree.ifd0, tag::kStripByteCounts, static_cast<std::uint32_t>(image.preview.size()));
    ifd::Add(tree.ifd0, tag::kRowsPerStrip, static_cast<std::uint32_t>(PreviewSampler::kHeight));

    ifd::Add(tree.sub_ifd, tag::kStripByteCounts,
             static_cast<std::uint32_t>(image.pixels.size() * sizeof(Pixel)));
    ifd::Add(tree.sub_ifd, tag::kRowsPerStrip, static_cast<std::uint32_t>(image.height));
    ifd::Add(tree.sub_ifd, tag::kBitsPerSample, tag_values::kRawBitsPerSample);
    tree.sub_ifd.erase(tag::kLinearizationTable);
}

void FixSensor(const RepairOptions& options, const MakerNoteStruct& note, TagTree& tree, CameraImage& image) {
    const ErrorHandler errors;
    if (options.sensors->LoadCamera(note.serial_number) != 0 && !options.dark_field_creation) {
        errors.PrintError(kNoSensorDatabase);
        return;
    }
    const auto iso = ifd::First<std::uint16_t>(tree.exif_ifd, tag::kISOSpeedRatings).value_or(0);
    ReportedCorrections corrections({note.serial_number, iso, &image.pixels, image.width, image.height},
                                    *options.sensors, options.verbose);
    corrections.FixPixelLines(options.line_test);
    if (options.dark_field_creation) {
        errors.PrintError(kNoDarkfieldFromDng);
    }
    const bool already_fixed = Contains(tree.ifd0, tag::kHostComputer, kProgramName);
    if (options.dark_field_fix && !already_fixed && corrections.FixDarkField(options.estimate_rows)) {
        ifd::Add(tree.ifd0, tag::kHostComputer, kProgramName);
    }
}

void FixLens(const RepairOptions& options, const MakerNoteStruct& note, const lensdb& lenses, IFD& exif_ifd) {
    std::string key = maker_note::LensCodeText(note.LensCode());
    bool detected = true;
    if (note.LensCode() == 0) {
        key = options.lens_code;
        detected = !key.empty();
    }
    if (!detected) {
        ErrorHandler().PrintError(kLensNotDetected);
    }
    const auto* lens = detected ? lens_tags::FindLens(lenses, key) : nullptr;
    if (lens != nullptr) {
        lens_tags::AddLens(*lens, exif_ifd);
        const Rational focal_length = lens_tags::FocalLength(lens->FocalLength);
        ifd::Add(exif_ifd, tag::kFocalLength, focal_length);
        ifd::Add(exif_ifd, tag::kFocalLengthIn35mmFilm, lens_tags::FocalLengthIn35mmFilm(focal_length));
    }
    const std::int32_t estimate =
        lens_tags::EstimatedFNumber(note.external_brightness.front(), note.measured_light.front());
    const auto denominator = static_cast<std::uint32_t>(note.approximate_f_number.back());
    const auto apertures = lens_tags::PictureApertures(lens, estimate, denominator);
    ifd::Add(exif_ifd, tag::kFNumber, apertures.f_number);
    if (apertures.max_aperture) {
        ifd::Add(exif_ifd, tag::kMaxApertureValue, *apertures.max_aperture);
    }
}

/// Changes the exposure to what a conversion would write. Adds no tag that the file does not have.
void FixExposure(IFD& exif_ifd) {
    if (const auto bias = ifd::FirstRational(exif_ifd, tag::kExposureBiasValue)) {
        ifd::Add(exif_ifd, tag::kExposureBiasValue, ExposureBiasInThirds(*bias));
    }
    if (const auto time = ifd::FirstRational(exif_ifd, tag::kExposureTime)) {
        ifd::Add(exif_ifd, tag::kExposureTime, SnapExposureTime(AsUnsigned(*time)));
    }
}

}  // namespace

int DNGlib::fixDNG(const std::string& folder, const std::string& base, bool verbose, bool lensFix,
                   bool sensorFix, bool darkFieldCreation, bool darkFieldFix, bool estimateRows,
                   bool lineTest, sensdb* db, const std::string& lensCode, const std::string& outputFolder) {
    const RepairOptions options = {verbose,      lensFix,  sensorFix, darkFieldCreation, darkFieldFix,
                                   estimateRows, lineTest, db,        lensCode};
    const std::string name = path_names::WithExtension(base, path_names::kDngExtension);
    preview_ = true;
    verbose_ = verbose;
    step_lines::Begin(verbose_, "Reading DNG Image");
    CameraImage image;
    image.pixels = std::move(frame_);
    int error = ReadCameraDng(*this, folder + name, tree_, image);
    const auto lost = RemoveUnreadDirectories({&tree_.ifd0, &tree_.sub_ifd, &tree_.exif_ifd});
    if (error == 0 && tree_.exif_ifd.empty()) {
        error = kDngDamaged;  // it held only pointers
    }
    if (error != 0) {
        return ErrorHandler().PrintError(error, name);
    }
    step_lines::End(verbose_, "Done");
    const std::string output = outputFolder + name;
    if (lost && MayReplace(output, folder + name)) {
        const std::string reason =
            "it holds " + *lost + ", which a repair does not keep; name another folder";
        PrintNotWritten(output, output_names::kDng, reason.c_str());
        return 0;
    }
    const MakerNoteStruct note = DecodeMakerNote(ByteView(ifd::Bytes(tree_.exif_ifd, tag::kMakerNote)));

    if (options.sensor_fix) {
        FixSensor(options, note, tree_, image);
    }
    if (options.lens_fix) {
        FixLens(options, note, *lenses_, tree_.exif_ifd);
    }
    FixExposure(tree_.exif_ifd);
    ifd::Add(tree_.ifd0, tag::kMakerNoteSafety, tag_values::kSafe);
    DescribeStrips(image, tree_);
    const auto raw_bytes = static_cast<int>(image.pixels.size() * sizeof(Pixel));
    error =
        writeDNGTree(outputFolder, name, reinterpret_cast<const char*>(image.pixels.data()),
                     reinterpret_cast<const char*>(image.preview.data()), raw_bytes, PreviewSampler::kSize);
    frame_ = std::move(image.pixels);
    return error;
}

std::vector<std::uint16_t> DNGlib::getSensorHorzLevel() {
    constexpr std::size_t levels = 4;
    return std::vector<std::uint16_t>(levels);
}
