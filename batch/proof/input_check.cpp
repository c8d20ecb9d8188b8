// SPDX-License-Identifier: MIT
#include "batch/proof/input_check.h"

#include <array>
#include <cstddef>

#include "app/input_discovery.h"
#include "batch/proof/jpeg_exif.h"
#include "batch/proof/tiff_directory.h"
#include "input/raw_layout.h"
#include "system/input_file.h"
#include "tiff/types.h"

namespace {

/// "a, b and c".
std::string Enumeration(const std::vector<std::string>& items) {
    std::string text;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const char* const separator = i + 1 == items.size() ? " and " : ", ";
        text += (i == 0 ? "" : separator) + items[i];
    }
    return text;
}

/// "NAME has only 1 of 2 bytes", of a file that is shorter than a frame of the sensor; else an empty text.
std::string Shortness(const std::string& path, const std::string& name) {
    InputFile file;
    const bool is_short = file.Open(path) && file.size() < raw_layout::kFileBytes;
    return is_short ? name + " has only " + std::to_string(file.size()) + " of " +
                          std::to_string(raw_layout::kFileBytes) + " bytes"
                    : "";
}

void CheckRaw(const std::string& raw, std::vector<InputFlaw>& flaws) {
    if (const std::string text = Shortness(raw, "the RAW file"); !text.empty()) {
        flaws.push_back({Flaw::kShortRaw, text + ", and the picture ends early"});
    }
}

void CheckDarkFrame(const std::string& bia, std::vector<InputFlaw>& flaws) {
    if (const std::string text = Shortness(bia, "the dark frame"); !text.empty()) {
        flaws.push_back({Flaw::kShortDarkFrame, text + ", and the picture is corrected in part only"});
    }
}

/// What a DNG takes from the maker note, and an image editor may have lost.
std::vector<std::string> LostValues(const EXIFInfo& exif) {
    std::vector<std::string> lost;
    if (exif.Mn0322.denominator == 0 || exif.Mn0323.denominator == 0 || exif.Mn0324.denominator == 0) {
        lost.emplace_back("white balance");
    }
    if (exif.Mn0313.denominator == 0) {
        lost.emplace_back("f-number");
    }
    if (exif.SerialNumber == 0) {
        lost.emplace_back("serial number");
    }
    return lost;
}

void CheckJpeg(const std::string& jpg, std::vector<InputFlaw>& flaws) {
    const auto exif = ReadJpegExif(jpg);
    const auto lost = exif ? LostValues(*exif) : std::vector<std::string>();
    if (!lost.empty()) {
        flaws.push_back({Flaw::kNoMakerNote, "the JPEG's maker note has no " + Enumeration(lost) +
                                                 ", and the DNG has none either"});
    }
}

}  // namespace

std::vector<InputFlaw> FlawsOfPair(const std::string& folder, const std::string& base, bool dark_frame) {
    std::vector<InputFlaw> flaws;
    CheckRaw(folder + base + ".RAW", flaws);
    if (dark_frame) {
        CheckDarkFrame(folder + base + ".BIA", flaws);
    }
    CheckJpeg(folder + base + ".JPG", flaws);
    return flaws;
}

std::vector<InputFlaw> FlawsOfCameraDng(const std::string& dng) {
    std::vector<InputFlaw> flaws;
    InputFile file;
    std::array<std::uint8_t, tiff::kHeaderSize> header = {};
    if (!file.Open(dng) || !file.ReadStart(header)) {
        return flaws;
    }
    if (file.size() != kCameraDngSize) {
        flaws.push_back({Flaw::kCameraDngOfLength, "the camera's DNG has " + std::to_string(file.size()) +
                                                       " bytes instead of " +
                                                       std::to_string(kCameraDngSize)});
    }
    if (FirstDirectory(ByteView(header)) != tiff::kHeaderSize) {
        flaws.push_back({Flaw::kMovedDirectory,
                         "another program has changed the camera's DNG, and the repair takes its old tags"});
    }
    return flaws;
}
