// SPDX-License-Identifier: MIT
#ifndef VELMARCON_APP_SENSOR_STAGE_H
#define VELMARCON_APP_SENSOR_STAGE_H

#include <string>

#include "app/run_settings.h"
#include "errors/error_handler.h"
#include "input/read_input_data.h"
#include "sensor/sensdb.h"

/// The sensor corrections of a pair, between its loading and the building of its DNG: defective columns, a
/// new dark reference if one is asked for, the dark field.
class SensorStage {
  public:
    /// Everything is owned by the caller.
    SensorStage(const RunSettings& settings, sensdb& sensors, const ErrorHandler& errors)
        : settings_(settings), sensors_(sensors), errors_(errors) {}

    /// Corrects the record's image, which is called `base`. Returns 0, or the code of the error that ends the
    /// run: a dark reference is made from a single image only.
    [[nodiscard]] int Run(const std::string& base, bool dark_field_fix, ReadInputData& record) const;

  private:
    int CreateDarkReference(const std::string& base, bool loaded, ReadInputData& record) const;

    const RunSettings& settings_;
    sensdb& sensors_;
    const ErrorHandler& errors_;
};

#endif  // VELMARCON_APP_SENSOR_STAGE_H
