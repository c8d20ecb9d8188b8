// SPDX-License-Identifier: MIT
#include <charconv>
#include <cstdint>
#include <iostream>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "samples/guide_folders.h"
#include "samples/sample_card.h"

namespace {

constexpr std::string_view kUsage =
    "Usage: make_sample_card FOLDER [options]\n"
    "       make_sample_card --guide FOLDER\n"
    "Writes files as the camera writes them to its card: L1000001.RAW and .JPG and so on.\n"
    "  --pairs N     number of RAW+JPEG pairs, 0 to 9999 (default 3)\n"
    "  --iso N       160, 320, 640, 1250 or 2500 for all pairs (default: varies from pair to pair)\n"
    "  --seed N      of the noise, 1 to 9999: cards with different seeds have different pixels (default 1)\n"
    "  --no-noise    no photon noise and no read noise\n"
    "  --flat        pictures of an even grey sky instead of the test scene, for finding defective columns\n"
    "  --dark        a dark frame (.BIA) for every pair, and one more pair that is a dark exposure\n"
    "  --dng         a DNG as the camera itself writes it\n"
    "  --databases   lensdb.ini and sensdb.ini for these lenses and this camera\n"
    "  --force       overwrite existing files\n"
    "  --guide       create FOLDER with the folders that the commands of the user guide work on\n"
    "  -h, --help    this text\n";

struct Request {
    std::string folder;
    samples::CardOptions card;
    bool guide = false;   ///< write the folders of the user guide instead of a card
    std::string problem;  ///< empty if the arguments are valid
};

/// Parses all of `text` as a number from the range of `Number`, at most `largest`; false if it is not one.
template <typename Number>
bool ReadNumber(std::string_view text, Number largest, Number& number) {
    Number value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < 0 || value > largest) {
        return false;
    }
    number = value;
    return true;
}

bool ReadIso(std::string_view text, samples::CardOptions& card) {
    std::uint16_t iso = 0;
    if (!ReadNumber<std::uint16_t>(text, 2500, iso)) {
        return false;
    }
    card.iso = iso;
    return iso == 160 || iso == 320 || iso == 640 || iso == 1250 || iso == 2500;
}

bool SetFlag(std::string_view option, samples::CardOptions& card) {
    if (option == "--no-noise") {
        card.noise = false;
    } else if (option == "--flat") {
        card.flat = true;
    } else if (option == "--dark") {
        card.dark = true;
    } else if (option == "--dng") {
        card.dng = true;
    } else if (option == "--databases") {
        card.databases = true;
    } else if (option == "--force") {
        card.force = true;
    } else {
        return false;
    }
    return true;
}

Request ReadArguments(std::span<const std::string_view> arguments) {
    constexpr int kMostPairs = 9999;
    constexpr int kLargestSeed = 9999;
    Request request;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--pairs" || argument == "--iso") {
            const std::string_view value = ++i < arguments.size() ? arguments[i] : "";
            const bool is_good = argument == "--iso" ? ReadIso(value, request.card)
                                                     : ReadNumber(value, kMostPairs, request.card.pairs);
            if (!is_good) {
                request.problem = "invalid value for " + std::string(argument);
                return request;
            }
        } else if (argument == "--seed") {
            const std::string_view value = ++i < arguments.size() ? arguments[i] : "";
            if (!ReadNumber(value, kLargestSeed, request.card.seed) || request.card.seed == 0) {
                request.problem = "invalid value for --seed";
                return request;
            }
        } else if (argument == "--guide") {
            request.guide = true;
        } else if (argument.starts_with("-")) {
            if (!SetFlag(argument, request.card)) {
                request.problem = "unknown option " + std::string(argument);
                return request;
            }
        } else if (request.folder.empty()) {
            request.folder = argument;
        } else {
            request.problem = "more than one folder given";
            return request;
        }
    }
    if (request.guide && arguments.size() != 2) {
        request.problem = "--guide takes a folder and no other option";
    } else if (request.folder.empty()) {
        request.problem = "no folder given";
    }
    return request;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    if (arguments.size() == 1 && (arguments[0] == "--help" || arguments[0] == "-h")) {
        std::cout << kUsage;
        return 0;
    }
    const Request request = ReadArguments(arguments);
    if (!request.problem.empty()) {
        std::cerr << "make_sample_card: " << request.problem << "\n" << kUsage;
        return 1;
    }
    const std::string problem = request.guide ? samples::WriteGuideFolders(request.folder)
                                              : samples::WriteCard(request.folder, request.card);
    if (!problem.empty()) {
        std::cerr << "make_sample_card: " << problem << "\n";
        return 1;
    }
    return 0;
}
