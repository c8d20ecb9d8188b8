// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_CALIBRATE_JUDGED_SENSOR_H
#define VELMARCON_TESTS_CALIBRATE_JUDGED_SENSOR_H

#include <string>
#include <vector>

#include "calibrate/calibration.h"
#include "samples/simulated_sensor.h"

namespace calibrate_tests {

/// How many exposures are taken of a simulated sensor.
struct ExposureCounts {
    int low = 4;   ///< dark, ISO 160
    int high = 0;  ///< dark, ISO 2500
    int flat = 0;
};

/// What the measurement of a sensor with known truth came to.
struct Judgement {
    int defects = 0;                       ///< that the sensor has
    std::vector<std::string> missed;       ///< with less than nine tenths of their rows, a line each
    std::vector<std::string> false_finds;  ///< runs with a row further than 24 from any defect of the column
    std::vector<std::string> doubtful;
    double stripes =
        0;  ///< standard deviation of the columns of an exposure at ISO 2500 that was not measured
    double optimum = 0;  ///< the same with means weighted by the inverse of the variance
};

/// Exposes `sensor` and measures it.
Judgement Judge(const samples::SimulatedSensor& sensor, const ExposureCounts& counts);

}  // namespace calibrate_tests

#endif  // VELMARCON_TESTS_CALIBRATE_JUDGED_SENSOR_H
