// SPDX-License-Identifier: MIT
#ifndef VELMARCON_APP_CONVERSION_RUN_H
#define VELMARCON_APP_CONVERSION_RUN_H

#include <cstdint>
#include <string>
#include <vector>

#include "app/run_settings.h"
#include "base/pixel.h"
#include "errors/error_handler.h"
#include "exif/lensdb.h"
#include "sensor/sensdb.h"

class DNGlib;
class ReadInputData;

/// The loop over the images: each entry of the input list becomes one DNG, strictly in list order. A failure
/// is printed and does not stop the other images.
class ConversionRun {
  public:
    /// The caller owns all arguments.
    ConversionRun(const RunSettings& settings, lensdb& lenses, sensdb& sensors, const ErrorHandler& errors);

    /// Processes the list. Returns the exit status: 0 even if images failed, unless an error ended the run.
    [[nodiscard]] int Run();

  private:
    [[nodiscard]] int ConvertEntry(const std::string& name);
    void CleanOutputFolder(const std::string& dng);
    void GuardExisting(DNGlib& dng) const;
    void RepairDng(const std::string& base);
    [[nodiscard]] int ConvertPair(const std::string& base);
    [[nodiscard]] int ConvertRecord(const std::string& base, ReadInputData& record);
    void BeginDarkFrame(const std::string& base);
    void EndDarkFrame();
    [[nodiscard]] bool LoadPair(const std::string& base, ReadInputData& record) const;
    void FixLensCode(ReadInputData& record) const;
    void WriteDng(ReadInputData& record) const;

    const RunSettings& settings_;
    lensdb& lenses_;
    sensdb& sensors_;
    const ErrorHandler& errors_;

    /// Whether the leftovers of killed runs have been removed from the output folder.
    bool output_is_clean_ = false;
    // Memory for image and dark frame, handed from image to image.
    std::vector<Pixel> frame_;
    std::vector<Pixel> dark_frame_;

    // These three change when an image has a dark frame, and stay changed until such an image has been
    // written: if it fails to load, the next image inherits them.
    bool subtract_dark_frame_ = false;
    bool dark_field_fix_;
    std::uint16_t black_level_;
};

#endif  // VELMARCON_APP_CONVERSION_RUN_H
