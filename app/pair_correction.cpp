// SPDX-License-Identifier: MIT
#include "app/pair_correction.h"

#include <cstdint>
#include <cstdio>

#include "base/error_codes.h"
#include "sensor/reported_corrections.h"

int PairCorrection::Run(const std::string& base, bool dark_field_fix, ReadInputData& record) const {
    // A new dark reference is written with everything that the database has about other cameras.
    const int result = settings_.dark_field_creation ? sensors_.LoadSensData()
                                                     : sensors_.LoadCamera(record.Exif.SerialNumber);
    const bool loaded = result == 0;
    if (!loaded && !settings_.dark_field_creation) {
        errors_.PrintError(kNoSensorDatabase);
        return 0;
    }
    const EXIFInfo& exif = record.Exif;
    ReportedCorrections corrections(
        {exif.SerialNumber, exif.ISOSpeedRatings, &record.ImageData, record.Width, record.Height}, sensors_,
        settings_.verbose);
    corrections.FixPixelLines(settings_.pixel_line_test);
    if (settings_.dark_field_creation) {
        if (const int error = CreateDarkReference(base, loaded, record); error != 0) {
            return error;
        }
    }
    if (dark_field_fix) {
        corrections.FixDarkField(settings_.row_offset_estimation);
    }
    return 0;
}

int PairCorrection::CreateDarkReference(const std::string& base, bool loaded, ReadInputData& record) const {
    const std::uint32_t serial = record.Exif.SerialNumber;
    if (loaded) {
        sensors_.Camera(serial).LevelCorrection.clear();
    }
    if (settings_.input.names.size() != 1) {
        return errors_.PrintError(kTooManyImages);
    }
    std::printf("Calculating new sensor level correction values for Camera %d from image %s.RAW.\n",
                static_cast<std::int32_t>(serial), base.c_str());
    sensors_.CalcSensLevel(&record);
    // WriteSensData reports a failure; the image is still corrected with the new values.
    (void)sensors_.WriteSensData();
    return 0;
}
