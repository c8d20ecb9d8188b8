// SPDX-License-Identifier: MIT
#include "tests/matrix/known_output.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <sstream>
#include <string_view>

namespace matrix {

namespace {

enum class Effect : std::uint8_t {
    kFatal,   ///< ends the run with its number as the exit status
    kFailed,  ///< the picture is not converted
    kWarned,  ///< a correction is left out
};

struct Error {
    std::string_view text;
    Effect effect;
};

/// The errors that a run on one picture can print if its folder exists.
constexpr std::array<Error, 12> kErrors = {{
    {"Error #0002: Given input (-i) is not a folder or supported RAW file.", Effect::kFatal},
    {"Error #0012: Missing lens database file lensdb.ini.", Effect::kFatal},
    {"L1.DNG: Error #0019: File was created from RAW+JPG or is not a Leica M8 DNG.", Effect::kFailed},
    {"L1.RAW: Error #0006: Unable to find RAW file.", Effect::kFailed},
    {"L1.RAW: Error #0008: Damaged RAW file.", Effect::kFailed},
    {"L1.JPG: Error #0009: Damaged EXIF in JPG.", Effect::kFailed},
    {"L1.JPG: Error #0010: Unable to find JPG file.", Effect::kFailed},
    {"Error #0016: Damaged BIA file.", Effect::kFailed},
    {"L1.DNG: Error #0017: Damaged DNG file.", Effect::kFailed},
    {"Error #0013: Lens could not be detected.", Effect::kWarned},
    {"Error #0014: No Sensor database found.", Effect::kWarned},
    {"Error #0018: Darkfield estimation not possible from DNG file.", Effect::kWarned},
}};

/// The number in "Error #0017: ...".
int NumberOf(std::string_view text) {
    const auto hash = text.find('#');
    return static_cast<int>(std::strtol(std::string(text.substr(hash + 1, 4)).c_str(), nullptr, 10));
}

bool IsNumber(std::string_view text) {
    if (text.starts_with('-')) {
        text.remove_prefix(1);
    }
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Whether `line` consists of `before`, an integer and `after`.
bool IsNumbered(std::string_view line, std::string_view before, std::string_view after) {
    return line.size() > before.size() + after.size() && line.starts_with(before) && line.ends_with(after) &&
           IsNumber(line.substr(before.size(), line.size() - before.size() - after.size()));
}

/// The texts that -v prints before the end of a step, or before an error that interrupts it.
constexpr std::array<std::string_view, 8> kSteps = {
    "Reading L1.JPG...",           "Reading L1.RAW...",     "Reading DNG Image...",  "Fixing pixel errors...",
    "Fixing sensor dark field...", "Writing DNG header...", "Writing image data...", ""};

std::string_view BehindStep(std::string_view line) {
    const auto* const step =
        std::ranges::find_if(kSteps, [&](std::string_view text) { return line.starts_with(text); });
    return line.substr(step->size());
}

class Listener {
  public:
    explicit Listener(Kind kind) : image_(kind == Kind::kPair ? "Image: L1.RAW" : "Image: L1.DNG") {}

    void Hear(const std::string& whole_line) {
        const std::string_view line = BehindStep(whole_line);
        const bool step_ended = line.size() < whole_line.size() && (line == "Done!" || line == "Done");
        if (!step_ended && !line.empty() && !IsHeader(line) && !IsError(line) && !IsWarning(line) &&
            said_.unknown.empty()) {
            said_.unknown = whole_line;
        }
    }

    Said said() && { return std::move(said_); }

  private:
    bool IsHeader(std::string_view line) {
        if (line != image_) {
            return false;
        }
        run_began_ = true;
        return true;
    }

    bool IsError(std::string_view line) {
        // A repair reports an error twice, the second time without the file's name.
        const auto* const error = std::ranges::find_if(kErrors, [line](const Error& known) {
            return known.text == line || (line.starts_with("Error #") && known.text.ends_with(line));
        });
        if (error == kErrors.end()) {
            return false;
        }
        said_.message = line;
        const bool too_long = NumberOf(line) == 19 && !run_began_;
        if (error->effect == Effect::kFatal || too_long) {
            said_.status = NumberOf(line);
        }
        said_.failed = said_.failed || error->effect != Effect::kWarned;
        return true;
    }

    bool IsWarning(std::string_view line) {
        if (line.starts_with("out/L1.DNG: DNG not written: ")) {
            said_.failed = true;
            said_.message = line;
            return true;
        }
        if (line.starts_with("bin/sensdb.ini: sensor database not written: ")) {
            said_.new_database = false;
            return true;
        }
        if (IsNumbered(line, "Calculating new sensor level correction values for Camera ",
                       " from image L1.RAW.")) {
            said_.new_database = true;
            return true;
        }
        return IsNumbered(line, "No pixel error correction values available for camera No.", ".") ||
               IsNumbered(line, "No dark field correction values available for camera No.", ".");
    }

    std::string image_;
    bool run_began_ = false;
    Said said_;
};

}  // namespace

Said Understand(const std::string& output, Kind kind) {
    Listener listener(kind);
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        listener.Hear(line);
    }
    return std::move(listener).said();
}

const char* FolderOf(Kind kind) {
    return kind == Kind::kPair ? "pair" : "dng";
}

}  // namespace matrix
