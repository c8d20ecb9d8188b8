// SPDX-License-Identifier: MIT
#ifndef VELMARCON_APP_PAIR_CORRECTION_H
#define VELMARCON_APP_PAIR_CORRECTION_H

#include <string>

#include "app/run_settings.h"
#include "errors/error_handler.h"
#include "input/read_input_data.h"
#include "sensor/sensdb.h"

/// Applies the sensor corrections to a pair after it is loaded and before its DNG is built: the camera's part
/// of the database is read, then come defective columns, a new dark reference if requested, the dark field.
class PairCorrection {
  public:
    /// The caller owns all arguments.
    PairCorrection(const RunSettings& settings, sensdb& sensors, const ErrorHandler& errors)
        : settings_(settings), sensors_(sensors), errors_(errors) {}

    /// Corrects the image of `record`, whose base name is `base`. Returns 0, or the code of the error that
    /// ends the run: a dark reference can only be made from a single image.
    [[nodiscard]] int Run(const std::string& base, bool dark_field_fix, ReadInputData& record) const;

  private:
    [[nodiscard]] int CreateDarkReference(const std::string& base, bool loaded, ReadInputData& record) const;

    const RunSettings& settings_;
    sensdb& sensors_;
    const ErrorHandler& errors_;
};

#endif  // VELMARCON_APP_PAIR_CORRECTION_H
