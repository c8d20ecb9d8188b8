// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_CALIBRATE_JUDGED_SENSOR_H
#define VELMARCON_TESTS_CALIBRATE_JUDGED_SENSOR_H

#include <string>
#include <vector>

#include "calibrate/calibration.h"
#include "samples/simulated_sensor.h"

namespace calibrate_tests {

/// The number of exposures of each kind taken with a simulated sensor.
struct ExposureCounts {
    int low = 4;   ///< dark, ISO 160
    int high = 0;  ///< dark, ISO 2500
    int flat = 0;
};

/// The result of calibrating a sensor whose defects are known.
struct Judgement {
    int defects = 0;  ///< number of defects of the sensor
    /// Defects of which less than nine tenths of the rows were found, one line each.
    std::vector<std::string> missed;
    /// Found runs with a row further than 24 from any defect of the column.
    std::vector<std::string> false_finds;
    std::vector<std::string> doubtful;
    double stripes = 0;  ///< standard deviation of the columns of a corrected exposure at ISO 2500 that was
                         ///< not used in the calibration
    double optimum = 0;  ///< the same with means weighted by inverse variance
};

/// Takes exposures with `sensor` and calibrates it.
Judgement Judge(const samples::SimulatedSensor& sensor, const ExposureCounts& counts);

}  // namespace calibrate_tests

#endif  // VELMARCON_TESTS_CALIBRATE_JUDGED_SENSOR_H
