// SPDX-License-Identifier: MIT
#include "sensor/sensdb.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <system_error>
#include <utility>

#include "base/pixel.h"
#include "errors/not_written.h"
#include "input/raw_layout.h"
#include "input/read_input_data.h"
#include "sensor/camera_text.h"
#include "sensor/database_names.h"
#include "system/ini_file.h"
#include "system/part_files.h"
#include "system/path_names.h"
#include "system/replacement_file.h"
#include "system/replacement_in_steps.h"
#include "system/system_error.h"

namespace {

using database_names::kLevelKey;
using database_names::kLineKey;

/// The number at the start of `text`; 0 if there is none, infinite if it is beyond the range of a float.
float ToFloat(const char* text) {
    const double value = std::strtod(text, nullptr);
    constexpr auto largest = static_cast<double>(std::numeric_limits<float>::max());
    constexpr float infinity = std::numeric_limits<float>::infinity();
    if (value > largest) {
        return infinity;
    }
    return value < -largest ? -infinity : static_cast<float>(value);
}

/// The library treats several spellings of a key, such as "line" and "Line", as one; the first in the file
/// counts for all.
sensdb::Sensdbtype ReadCamera(const ini_file::File::TKeyVal& section) {
    sensdb::Sensdbtype camera;
    const char* name = nullptr;
    for (const auto& [key, value] : section) {
        if (name == nullptr || !ini_file::SameName(name, key.pItem)) {
            name = key.pItem;
        }
        if (std::strcmp(name, kLevelKey) == 0) {
            camera.LevelCorrection.push_back(ToFloat(value));
        } else if (std::strcmp(name, kLineKey) == 0) {
            camera.Line.push_back(database_names::ToInteger<std::uint16_t>(value));
        }
    }
    return camera;
}

std::map<int, sensdb::Sensdbtype> ReadCameras(const ini_file::File& ini) {
    std::map<int, sensdb::Sensdbtype> cameras;
    ini_file::File::TNamesDepend names;
    ini.GetAllSections(names);
    for (const auto& name : names) {
        const auto* section = ini.GetSection(name.pItem);
        if (section != nullptr && !section->empty()) {
            cameras[database_names::SerialOf(name.pItem)] = ReadCamera(*section);
        }
    }
    return cameras;
}

/// Whether a defect list names at most as many pixels as the sensor has; a pixel named twice counts twice. No
/// camera needs a longer list, and the limit bounds the time that a picture takes.
bool FitsSensor(const std::vector<std::uint16_t>& list) {
    std::int64_t pixels = 0;
    for (std::size_t i = 0; i + sensdb::Sensdbtype::kLineGroup <= list.size();
         i += sensdb::Sensdbtype::kLineGroup) {
        const std::int64_t rows = std::min<std::int64_t>(list[i + 3], raw_layout::kImageHeight) - list[i + 1];
        if (list[i] < raw_layout::kImageWidth) {
            pixels += std::max<std::int64_t>(rows, 0);
        }
    }
    return pixels <= raw_layout::kPixelCount;
}

/// Adds the camera's section, or nothing for a camera without values. Returns false if there was not enough
/// memory.
bool AddCamera(ini_file::File& ini, int serial, const sensdb::Sensdbtype& camera) {
    constexpr const char* no_comment = nullptr;
    const std::string section = std::to_string(serial);
    for (const std::uint16_t value : camera.Line) {
        if (ini.SetLongValue(section.c_str(), kLineKey, value, no_comment, false, false) < 0) {
            return false;
        }
    }
    for (const float value : camera.LevelCorrection) {
        if (ini.SetDoubleValue(section.c_str(), kLevelKey, static_cast<double>(value), no_comment, false) <
            0) {
            return false;
        }
    }
    return true;
}

std::error_code ReplaceFile(const std::string& path, const std::string& text) {
    part_files::RemoveStale(path_names::SystemFolderPart(path));
    ReplacementFile file;
    if (const std::error_code error = file.Open(path, ReplacementFile::Existing::kReplaceTarget)) {
        return error;
    }
    file.Write(text);
    return file.Commit(text.size());
}

/// Prints why the file was not written. Returns the library's error code.
int ReportUnwritten(const std::string& path, const char* reason) {
    PrintNotWritten(path, output_names::kSensorDatabase, reason);
    return SI_FILE;
}

}  // namespace

sensdb::sensdb(const std::string& folder) : DatabaseFile(folder + path_names::kSensorDatabase) {}

int sensdb::LoadSensData() {
    return Load(std::nullopt);
}

int sensdb::LoadCamera(std::uint32_t serial) {
    return Load(static_cast<int>(serial));
}

int sensdb::Load(std::optional<int> camera) {
    (void)replacement_in_steps::PutBack(DatabaseFile);
    std::error_code unknown;
    const auto state = StateOf(DatabaseFile, unknown);
    const bool missing = unknown == std::errc::no_such_file_or_directory;
    if (!state || state != seen_) {
        const bool settled = state && state->Settled();
        auto text = ini_file::Read(DatabaseFile);
        if (!text) {
            unreadable_ = !missing;
            Forget();
            return SI_FILE;
        }
        // A file with a time in the future is read again for every image, but not parsed again.
        if (text != text_) {
            Forget();
            text_ = std::move(text);
        }
        seen_ = settled ? state : std::nullopt;
    }
    if (!all_taken_ && !(camera && taken_.contains(*camera))) {
        result_ = Take(*text_, camera);
        all_taken_ = !camera;
        if (camera) {
            taken_.insert(*camera);
        }
    }
    return result_;
}

/// Takes over all cameras in the file's text, or only `camera`. Returns 0, or the INI library's error code;
/// the cameras then stay unchanged.
int sensdb::Take(const std::string& text, std::optional<int> camera) {
    ini_file::File ini;
    ini.SetMultiKey(true);
    bool complete = false;
    unreadable_ = true;
    if (const int error = ini_file::Parse(camera ? CameraText(text, *camera) : text, ini, complete);
        error != SI_OK) {
        return error;
    }
    auto cameras = ReadCameras(ini);
    if (!std::ranges::all_of(cameras, [](const auto& entry) { return FitsSensor(entry.second.Line); })) {
        return SI_FAIL;
    }
    if (camera) {
        std::erase_if(cameras, [&](const auto& entry) { return entry.first != *camera; });
    } else {
        unreadable_ = !complete;
    }
    cameras.merge(Cameras);
    Cameras = std::move(cameras);
    return SI_OK;
}

void sensdb::Forget() {
    seen_.reset();
    text_.reset();
    taken_.clear();
    all_taken_ = false;
}

int sensdb::CalcSensLevel(ReadInputData* image) {
    const auto width = static_cast<std::size_t>(image->Width);
    const auto height = static_cast<std::size_t>(image->Height);
    // The sums wrap at 16 bits: the levels of every database made so far come from wrapped sums, and
    // differences between columns are right as long as they fit into 16 bits.
    std::vector<std::uint16_t> sums(width);
    for (std::size_t y = 0; y < height; ++y) {
        const Pixel* row = image->ImageData.data() + y * width;
        for (std::size_t x = 0; x < width; ++x) {
            sums[x] = static_cast<std::uint16_t>(sums[x] + row[x]);
        }
    }
    const int darkest = *std::ranges::min_element(sums);
    auto& levels = Camera(image->Exif.SerialNumber).LevelCorrection;
    levels.resize(width);
    std::ranges::transform(sums, levels.begin(), [&](int sum) {
        return static_cast<float>(sum - darkest) / static_cast<float>(height);
    });
    Forget();
    return 0;
}

int sensdb::WriteSensData() {
    ini_file::File ini;
    ini.SetMultiKey(true);
    std::string text;
    const bool complete = std::ranges::all_of(
        Cameras, [&](const auto& camera) { return AddCamera(ini, camera.first, camera.second); });
    if (!complete || ini.Save(text) < 0) {
        return ReportUnwritten(DatabaseFile, "out of memory");
    }
    if (unreadable_) {
        return ReportUnwritten(DatabaseFile, "the file that is there could not be read");
    }
    std::erase(text, '\r');  // on Windows, too, so that lines end alike on all systems
    Forget();
    // A file that no later run could load is not written.
    const std::error_code error = text.size() > ini_file::kLongestFile
                                      ? std::make_error_code(std::errc::file_too_large)
                                      : ReplaceFile(DatabaseFile, text);
    return error ? ReportUnwritten(DatabaseFile, system_error::Text(error)) : SI_OK;
}
