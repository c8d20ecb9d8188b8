// SPDX-License-Identifier: MIT
#include "errors/error_handler.h"

#include <cstdio>

#include "base/error_codes.h"
#include "errors/usage_text.h"
#include "errors/version.h"

ErrorHandler::ErrorHandler()
    : messages_{
          {kBadInput, "Given input (-i) is not a folder or supported RAW file."},
          {kNoRawFolder, "No RAW folder defined, automatic path acquisition failed."},
          {kBadOutputFolder, "Given output folder (-o) does not exist or is no folder."},
          {kNoRawFiles, "No RAW files found in folder."},
          {kRawNotFound, "Unable to find RAW file."},
          {kRawUnreadable, "Unable to read RAW file."},
          {kRawDamaged, "Damaged RAW file."},
          {kExifDamaged, "Damaged EXIF in JPG."},
          {kJpgNotFound, "Unable to find JPG file."},
          {kJpgUnreadable, "Unable to read JPG file."},
          {kNoLensDatabase, "Missing lens database file lensdb.ini."},
          {kLensNotDetected, "Lens could not be detected."},
          {kNoSensorDatabase, "No Sensor database found."},
          {kTooManyImages, "Too many images for creating sensor level reference."},
          {kBiaDamaged, "Damaged BIA file."},
          {kDngDamaged, "Damaged DNG file."},
          {kNoDarkfieldFromDng, "Darkfield estimation not possible from DNG file."},
          {kNotACameraDng, "File was created from RAW+JPG or is not a Leica M8 DNG."},
      } {}

int ErrorHandler::UsageText() const {
    std::printf("%s# velmarcon v%s #\n%s%s", kBannerEdge, kVersion, kBannerEdge, kUsageText);
    return 0;
}

int ErrorHandler::ErrorText(int code, const std::string& name) const {
    const std::string prefix = name.empty() ? "" : name + ": ";
    const auto message = messages_.find(code);
    if (message == messages_.end()) {
        std::printf("%sUnknown Error, please contact Author.\n", prefix.c_str());
    } else {
        std::printf("%sError #%04d: %s\n", prefix.c_str(), code, message->second.c_str());
    }
    return 0;
}

int ErrorHandler::PrintError(int code) const {
    if (code == kUsage) {
        UsageText();
    } else {
        ErrorText(code, "");
    }
    return code;
}

int ErrorHandler::PrintError(int code, const std::string& name) const {
    ErrorText(code, name);
    return code;
}
