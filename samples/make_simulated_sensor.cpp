// SPDX-License-Identifier: MIT
#include <charconv>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "samples/camera_jpeg.h"
#include "samples/file_writer.h"
#include "samples/simulated_sensor.h"

namespace {

constexpr std::string_view kUsage =
    "Usage: make_simulated_sensor FOLDER [options]\n"
    "Writes exposures of a simulated sensor as pairs into FOLDER/dark and FOLDER/flat, and what is wrong "
    "with the\n"
    "sensor into FOLDER/truth.txt: column, first row, end row of each defect, a line each.\n"
    "  --seed N       of the sensor (default 1)\n"
    "  --low N        dark exposures at ISO 160 (default 4)\n"
    "  --high N       dark exposures at ISO 2500 (default 0)\n"
    "  --flat N       flat exposures (default 0)\n"
    "  --strength N   raw units of the weakest defects at ISO 160 (default 6); 0: a sensor without defects\n"
    "  --serial N     of the camera (default 3106091)\n";

struct Request {
    std::string folder;
    int seed = 1;
    int low = 4;
    int high = 0;
    int flat = 0;
    int strength = 6;
    int serial = 3106091;
};

int* Number(std::string_view option, Request& request) {
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
    if (option == "--serial") {
        return &request.serial;
    }
    return option == "--strength" ? &request.strength : nullptr;
}

/// Returns what is wrong with the arguments, or an empty text.
std::string ReadArguments(const std::vector<std::string_view>& arguments, Request& request) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (int* const number = Number(argument, request); number != nullptr) {
            const std::string_view value = ++i < arguments.size() ? arguments[i] : "";
            const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), *number);
            if (error != std::errc() || end != value.data() + value.size() || *number < 0) {
                return "bad value for " + std::string(argument);
            }
        } else if (request.folder.empty() && !argument.starts_with('-')) {
            request.folder = argument;
        } else {
            return "unknown option " + std::string(argument);
        }
    }
    return request.folder.empty() ? "no folder given" : "";
}

/// Writes one pair. Returns what failed, or an empty text.
std::string WritePair(const std::string& base, const samples::SimulatedSensor& sensor,
                      const samples::SimulatedExposure& exposure, int serial) {
    samples::Shot shot;
    shot.iso = exposure.iso;
    shot.serial_number = static_cast<std::uint32_t>(serial);
    std::string failed =
        samples::WriteFile(base + ".JPG", samples::CameraJpeg(samples::CameraExif(shot)), true);
    if (failed.empty()) {
        const auto words = samples::WordsOfPixels(samples::ExposePixels(sensor, exposure));
        failed = samples::WriteFile(base + ".RAW", samples::DumpBytes(words), true);
    }
    return failed;
}

std::string WriteTruth(const std::string& path, const samples::SimulatedSensor& sensor) {
    std::string text;
    for (const samples::SimulatedDefect& defect : sensor.defects) {
        text += std::to_string(defect.column) + " " + std::to_string(defect.first_row) + " " +
                std::to_string(defect.end_row) + "\n";
    }
    return samples::WriteFile(path, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, true);
}

std::string WriteAll(const Request& request) {
    constexpr std::uint64_t seeds_of_a_sensor = 1000;
    const auto seed = static_cast<std::uint64_t>(request.seed);
    const samples::SimulatedSensor sensor =
        request.strength == 0
            ? samples::SoundSensor(seed)
            : samples::RandomSensor(seed, static_cast<float>(request.strength), request.flat > 0);
    std::error_code ignored;
    std::filesystem::create_directories(request.folder + "/dark", ignored);
    std::filesystem::create_directories(request.folder + "/flat", ignored);
    std::string failed = WriteTruth(request.folder + "/truth.txt", sensor);
    for (int i = 0; i < request.low + request.high + request.flat && failed.empty(); ++i) {
        const bool flat = i >= request.low + request.high;
        samples::SimulatedExposure exposure;
        exposure.seed = (seeds_of_a_sensor * seed) + static_cast<std::uint64_t>(i);
        exposure.iso = i >= request.low && !flat ? 2500 : 160;
        exposure.light = flat ? 0.4F : 0.0F;
        const std::string name = (flat ? "/flat/L1000" : "/dark/L1000") + std::to_string(200 + i);
        failed = WritePair(request.folder + name, sensor, exposure, request.serial);
    }
    return failed;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    Request request;
    std::string problem = ReadArguments(arguments, request);
    if (!problem.empty()) {
        std::cerr << "make_simulated_sensor: " << problem << "\n" << kUsage;
        return 1;
    }
    problem = WriteAll(request);
    if (!problem.empty()) {
        std::cerr << "make_simulated_sensor: " << problem << "\n";
        return 1;
    }
    return 0;
}
