// SPDX-License-Identifier: MIT
#include <charconv>
#include <iostream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "samples/sensor_exposures.h"

namespace {

constexpr std::string_view kUsage =
    "Usage: make_simulated_sensor FOLDER [options]\n"
    "Writes exposures of a simulated sensor as pairs into FOLDER/dark, FOLDER/flat and FOLDER/later,\n"
    "and its defects into FOLDER/truth.txt, one per line: column, first row, end row.\n"
    "  --seed N       seed of the sensor (default 1)\n"
    "  --low N        dark exposures at ISO 160 (default 4)\n"
    "  --high N       dark exposures at ISO 2500 (default 0)\n"
    "  --flat N       flat exposures (default 0)\n"
    "  --later N      dark exposures at ISO 2500 for a later check (default 0)\n"
    "  --strength N   strength of the weakest defects in raw units at ISO 160 (default 6); 0: no defects\n"
    "  --serial N     serial number of the camera (default 3106091)\n";

int* Number(std::string_view option, samples::SensorExposures& request) {
    if (option == "--seed") {
        return &request.seed;
    }
    if (option == "--low") {
        return &request.low;
    }
    if (option == "--high") {
        return &request.high;
    }
    if (option == "--flat") {
        return &request.flat;
    }
    if (option == "--later") {
        return &request.later;
    }
    if (option == "--serial") {
        return &request.serial;
    }
    return option == "--strength" ? &request.strength : nullptr;
}

/// Returns an error message, empty if the arguments are valid.
std::string ReadArguments(const std::vector<std::string_view>& arguments, samples::SensorExposures& request) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (int* const number = Number(argument, request); number != nullptr) {
            const std::string_view value = ++i < arguments.size() ? arguments[i] : "";
            const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), *number);
            if (error != std::errc() || end != value.data() + value.size() || *number < 0) {
                return "invalid value for " + std::string(argument);
            }
        } else if (request.folder.empty() && !argument.starts_with('-')) {
            request.folder = argument;
        } else {
            return "unknown option " + std::string(argument);
        }
    }
    return request.folder.empty() ? "no folder given" : "";
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    samples::SensorExposures request;
    std::string problem = ReadArguments(arguments, request);
    if (!problem.empty()) {
        std::cerr << "make_simulated_sensor: " << problem << "\n" << kUsage;
        return 1;
    }
    problem = samples::WriteSensorExposures(request);
    if (!problem.empty()) {
        std::cerr << "make_simulated_sensor: " << problem << "\n";
        return 1;
    }
    return 0;
}
