// SPDX-License-Identifier: MIT
#include "samples/guide_folders.h"

#include <array>
#include <filesystem>
#include <system_error>

#include "samples/sample_card.h"
#include "samples/sensor_exposures.h"

namespace samples {

namespace {

namespace fs = std::filesystem;

struct Place {
    const char* original;  ///< path below the folder that WriteOriginals fills
    const char* file;      ///< path below the folder of the guide
};

/// Pictures 1 to 3 have coded lenses; number 4, the dark exposure, has none. Picture 2 and its dark frame are
/// both taken at ISO 640.
constexpr std::array<Place, 24> kPlaces = {{
    {"L1000001.RAW", "DCIM/100LEICA/L1000123.RAW"},
    {"L1000001.JPG", "DCIM/100LEICA/L1000123.JPG"},
    {"L1000002.RAW", "DCIM/100LEICA/L1000124.RAW"},
    {"L1000002.JPG", "DCIM/100LEICA/L1000124.JPG"},
    {"L1000001.RAW", "card/L1000123.RAW"},
    {"L1000001.JPG", "card/L1000123.JPG"},
    {"L1000002.RAW", "card/L1000124.RAW"},
    {"L1000002.JPG", "card/L1000124.JPG"},
    {"L1000002.BIA", "dark-frames/L1000125.RAW"},
    {"L1000004.RAW", "uncoded/L1000140.RAW"},
    {"L1000004.JPG", "uncoded/L1000140.JPG"},
    {"L1000004.RAW", "dark/L1000200.RAW"},
    {"L1000004.JPG", "dark/L1000200.JPG"},
    {"flat/L1000001.RAW", "sky/L1000201.RAW"},
    {"flat/L1000001.JPG", "sky/L1000201.JPG"},
    {"dng/L1000001.DNG", "old-dngs/L1000125.DNG"},
    {"L1000001.RAW", "pictures/2026/03-15 harbour/L1000310.RAW"},
    {"L1000001.JPG", "pictures/2026/03-15 harbour/L1000310.JPG"},
    {"L1000002.RAW", "pictures/2026/03-15 harbour/L1000311.RAW"},
    {"L1000002.JPG", "pictures/2026/03-15 harbour/L1000311.JPG"},
    {"L1000003.RAW", "pictures/2026/08-02/L1000420.RAW"},
    {"L1000003.JPG", "pictures/2026/08-02/L1000420.JPG"},
    {"", "dng"},
    {"", "repaired"},
}};

std::string WriteOriginals(const fs::path& folder) {
    CardOptions pictures;
    pictures.dark = true;
    CardOptions sky;
    sky.pairs = 1;
    sky.flat = true;
    CardOptions camera_dng;
    camera_dng.pairs = 0;
    camera_dng.dng = true;
    std::string problem = WriteCard(folder.string(), pictures);
    if (problem.empty()) {
        problem = WriteCard((folder / "flat").string(), sky);
    }
    return problem.empty() ? WriteCard((folder / "dng").string(), camera_dng) : problem;
}

/// Makes `file` a hard link to `original`, or a copy if the file system has no links.
void PutInPlace(const fs::path& original, const fs::path& file, std::error_code& failure) {
    fs::create_directories(file.parent_path(), failure);
    if (failure) {
        return;
    }
    fs::create_hard_link(original, file, failure);
    if (failure) {
        failure.clear();
        fs::copy_file(original, file, failure);
    }
}

}  // namespace

std::string WriteGuideFolders(const std::string& folder) {
    const fs::path top(folder);
    std::error_code failure;
    if (fs::exists(fs::symlink_status(top, failure))) {
        return folder + " exists already";
    }
    const fs::path originals = top / "originals";
    if (std::string problem = WriteOriginals(originals); !problem.empty()) {
        return problem;
    }
    for (const Place& place : kPlaces) {
        failure.clear();
        const fs::path file = top / place.file;
        if (*place.original == '\0') {
            fs::create_directories(file, failure);
        } else {
            PutInPlace(originals / place.original, file, failure);
        }
        if (failure) {
            return file.string() + ": " + failure.message();
        }
    }
    // Of a camera of its own, so that the database of the sample camera stays as the guide makes it by hand.
    std::string problem = WriteSensorExposures(
        {.folder = (top / "sensor").string(), .low = 2, .high = 1, .flat = 2, .later = 1, .serial = 3106092});
    if (!problem.empty()) {
        return problem;
    }
    fs::remove_all(originals, failure);
    return failure ? originals.string() + ": " + failure.message() : "";
}

}  // namespace samples
