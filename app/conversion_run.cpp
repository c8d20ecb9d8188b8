// SPDX-License-Identifier: MIT
#include "app/conversion_run.h"

#include <cstdio>
#include <memory>
#include <new>
#include <system_error>
#include <utility>

#include "app/input_discovery.h"
#include "app/pair_correction.h"
#include "base/error_codes.h"
#include "dng/dnglib.h"
#include "errors/not_written.h"
#include "input/read_input_data.h"
#include "system/file_state.h"
#include "system/part_files.h"
#include "system/path_names.h"
#include "system/replacement_in_steps.h"

namespace {

void PrintHeader(std::size_t position, std::size_t count, const std::string& name) {
    if (count == 1) {
        std::printf("\nImage: %s\n\n", name.c_str());
    } else {
        std::printf("\nImage %zu of %zu: %s\n\n", position, count, name.c_str());
    }
}

/// The name to report with a loading error: the RAW file's, the JPEG's, or none.
std::string FileConcerned(int error, const ReadInputData& record) {
    switch (error) {
        case kRawNotFound:
        case kRawUnreadable:
        case kRawDamaged:
            return record.RawFileName;
        case kExifDamaged:
        case kJpgNotFound:
        case kJpgUnreadable:
            return record.JpgFileName;
        default:
            return "";
    }
}

/// Whether the system says that nothing exists at `path`. If it cannot tell, the answer is no.
bool IsMissing(const std::string& path) {
    std::error_code error;
    return !StateOf(path, error) &&
           (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory);
}

}  // namespace

ConversionRun::ConversionRun(const RunSettings& settings, lensdb& lenses, sensdb& sensors,
                             const ErrorHandler& errors)
    : settings_(settings),
      lenses_(lenses),
      sensors_(sensors),
      errors_(errors),
      dark_field_fix_(settings.dark_field_fix),
      black_level_(settings.black_level) {}

int ConversionRun::Run() {
    const auto& names = settings_.input.names;
    std::size_t position = 0;
    for (const std::string& name : names) {
        PrintHeader(++position, names.size(), name);
        try {
            if (const int error = ConvertEntry(name); error != 0) {
                return error;
            }
        } catch (const std::bad_alloc&) {
            // All of the image's memory has been released by now, and the next image may need less.
            PrintNotWritten(name, output_names::kDng, "out of memory");
        }
    }
    return 0;
}

/// Returns the code of an error that ends the run, else 0, even if this image failed.
int ConversionRun::ConvertEntry(const std::string& name) {
    const std::string base = path_names::BaseName(name);
    const std::string dng =
        settings_.output_folder + path_names::WithExtension(base, path_names::kDngExtension);
    (void)replacement_in_steps::PutBack(dng);
    if (!settings_.refresh && isfile(dng.c_str())) {
        std::printf("File %s.DNG already exists!\n", base.c_str());
        return 0;
    }
    CleanOutputFolder(dng);
    if (path_names::Extension(name) == path_names::kRawExtension) {
        return ConvertPair(base);
    }
    RepairDng(base);
    return 0;
}

/// Done once per run, because a folder may hold thousands of files.
void ConversionRun::CleanOutputFolder(const std::string& dng) {
    if (!std::exchange(output_is_clean_, true)) {
        part_files::RemoveStale(path_names::SystemFolderPart(dng));
    }
}

/// A DNG may replace an existing file only with -r.
void ConversionRun::GuardExisting(DNGlib& dng) const {
    if (!settings_.refresh) {
        dng.KeepExisting();
    }
}

/// The repair itself has reported an error with the file's name. It is reported again with the record's
/// label, which a repair never sets.
void ConversionRun::RepairDng(const std::string& base) {
    const ReadInputData record;
    DNGlib dng(&lenses_, &sensors_);
    GuardExisting(dng);
    dng.frame() = std::move(frame_);
    const int error =
        dng.fixDNG(settings_.input.folder, base, settings_.verbose, settings_.lens_fix, settings_.sensor_fix,
                   settings_.dark_field_creation, dark_field_fix_, settings_.row_offset_estimation,
                   settings_.pixel_line_test, &sensors_, settings_.lens_code, settings_.output_folder);
    frame_ = std::move(dng.frame());
    if (error != 0) {
        errors_.PrintError(error, record.OutputLabel);
    }
}

int ConversionRun::ConvertPair(const std::string& base) {
    const auto record = std::make_unique<ReadInputData>();
    record->ImageData = std::move(frame_);
    record->BiaData = std::move(dark_frame_);
    const int error = ConvertRecord(base, *record);
    frame_ = std::move(record->ImageData);
    dark_frame_ = std::move(record->BiaData);
    return error;
}

/// Returns the code of an error that ends the run, else 0, even if this image failed.
int ConversionRun::ConvertRecord(const std::string& base, ReadInputData& record) {
    BeginDarkFrame(base);
    if (!LoadPair(base, record)) {
        return 0;
    }
    if (settings_.sensor_fix) {
        const PairCorrection correction(settings_, sensors_, errors_);
        if (const int error = correction.Run(base, dark_field_fix_, record); error != 0) {
            return error;
        }
    }
    FixLensCode(record);
    WriteDng(record);
    EndDarkFrame();
    return 0;
}

/// A dark frame replaces black level and dark-field fix, because it already contains the sensor's dark level.
/// If there is one but it cannot be read, the image fails: without it the picture would look different.
void ConversionRun::BeginDarkFrame(const std::string& base) {
    const std::string name = path_names::WithExtension(base, path_names::kDarkFrameExtension);
    if (settings_.black_level_given && !IsMissing(settings_.input.folder + name)) {
        subtract_dark_frame_ = true;
        dark_field_fix_ = false;
        black_level_ = 0;
    }
}

void ConversionRun::EndDarkFrame() {
    if (subtract_dark_frame_) {
        subtract_dark_frame_ = false;
        dark_field_fix_ = true;
        black_level_ = settings_.black_level;
    }
}

bool ConversionRun::LoadPair(const std::string& base, ReadInputData& record) const {
    const int error =
        record.ProcessFile(settings_.input.folder, base, settings_.verbose, subtract_dark_frame_);
    if (error == 0) {
        return true;
    }
    const std::string name = FileConcerned(error, record);
    if (name.empty()) {
        errors_.PrintError(error);
    } else {
        errors_.PrintError(error, name);
    }
    return false;
}

/// The code given with -l substitutes for one that the camera could not read; it never overrides a code.
void ConversionRun::FixLensCode(ReadInputData& record) const {
    constexpr std::uint8_t lens_code_present = 1;
    if (!settings_.lens_fix || record.Exif.LensCode != 0) {
        return;
    }
    if (settings_.lens_code.empty()) {
        errors_.PrintError(kLensNotDetected);
        return;
    }
    record.Exif.LensCodeBits = settings_.lens_code;
    record.Exif.LensCode = lens_code_present;
}

void ConversionRun::WriteDng(ReadInputData& record) const {
    DNGlib dng(&record, &lenses_, &sensors_);
    GuardExisting(dng);
    dng.createDNGTree(settings_.preview, settings_.black_level_given, black_level_, settings_.verbose,
                      settings_.raw_model_variant, settings_.lens_fix);
    if (settings_.output_folder.empty()) {
        dng.writeDNGTree();
    } else {
        dng.writeDNGTree(settings_.output_folder);
    }
}
