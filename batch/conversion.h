// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_CONVERSION_H
#define VELMARCON_BATCH_CONVERSION_H

#include <memory>
#include <span>
#include <string>

#include "app/run_settings.h"
#include "errors/error_handler.h"
#include "exif/lensdb.h"
#include "sensor/sensdb.h"
#include "system/captured_output.h"

class ConversionRun;

/// Makes DNGs as velmarcon does, one after the other.
class Conversion {
  public:
    /// `databases` is the folder of lensdb.ini and sensdb.ini, with its separator. What is printed is read
    /// from `output`, which the caller owns.
    Conversion(std::span<const std::string> options, const std::string& databases, CapturedOutput& output);
    ~Conversion();
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;
    Conversion(Conversion&&) = delete;
    Conversion& operator=(Conversion&&) = delete;

    /// Converts or repairs `name` of `folder` into the folder `output`, both with their separators. Returns
    /// what was printed. What became of it, the DNG tells.
    std::string Run(const std::string& folder, const std::string& name, const std::string& output);

    /// Called after a picture that got no DNG: what a run remembers of it must not reach the next one.
    void Forget();

    const RunSettings& settings() const { return settings_; }
    lensdb& lenses() { return lenses_; }
    sensdb& sensors() { return sensors_; }

  private:
    CapturedOutput& output_;
    ErrorHandler errors_;
    RunSettings settings_;
    lensdb lenses_;
    sensdb sensors_;
    std::unique_ptr<ConversionRun> run_;  ///< of the folders in settings_
};

#endif  // VELMARCON_BATCH_CONVERSION_H
