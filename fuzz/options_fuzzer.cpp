// SPDX-License-Identifier: MIT
// Parses a command line whose arguments are the input's bytes, separated by NULs. They can only name files in
// a scratch folder, which must not change.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/input_discovery.h"
#include "app/options.h"
#include "app/run_settings.h"
#include "base/error_codes.h"
#include "errors/error_handler.h"
#include "exif/lensdb.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/require.h"
#include "fuzz/scratch_folder.h"
#include "system/path_names.h"

namespace {

namespace fs = std::filesystem;

/// A card with images to find. The large files are sparse and take no room on the disk.
class Card {
  public:
    Card() {
        for (const char* name : {"card", "card/empty", "card/deep", "card/deep/L3.RAW", "out"}) {
            fs::create_directory(folder_.prefix() + name);
        }
        constexpr std::uintmax_t camera_dng = 10575296;
        constexpr std::uintmax_t too_large = 15000001;
        MakeFile("card/L1.RAW", 3);
        MakeFile("card/L1.JPG", 3);
        MakeFile("card/L2.DNG", camera_dng);
        MakeFile("card/deep/L4.DNG", 100);
        MakeFile("card/deep/L5.DNG", too_large);
        MakeFile("card/deep/l6.raw", 3);
        fs::create_symlink("../L1.RAW", folder_.prefix() + "card/deep/L7.RAW");
        before_ = Listing();
    }

    std::string path() const { return folder_.prefix() + "card"; }

    void RequireUntouched() const { Require(Listing() == before_, "no file is changed"); }

  private:
    void MakeFile(const std::string& name, std::uintmax_t size) const {
        std::ofstream(folder_.prefix() + name).close();
        fs::resize_file(folder_.prefix() + name, size);
    }

    /// Everything in the folder with its modification time.
    std::map<std::string, fs::file_time_type> Listing() const {
        std::map<std::string, fs::file_time_type> listing;
        for (const auto& entry : fs::recursive_directory_iterator(folder_.path())) {
            listing[entry.path().string()] = entry.last_write_time();
        }
        return listing;
    }

    ScratchFolder folder_;
    std::map<std::string, fs::file_time_type> before_;
};

/// Changes the current folder for the lifetime of the object.
class CurrentFolderIs {
  public:
    explicit CurrentFolderIs(const std::string& folder) : before_(fs::current_path()) {
        fs::current_path(folder);
    }
    ~CurrentFolderIs() {
        std::error_code ignored;
        fs::current_path(before_, ignored);
    }
    CurrentFolderIs(const CurrentFolderIs&) = delete;
    CurrentFolderIs& operator=(const CurrentFolderIs&) = delete;
    CurrentFolderIs(CurrentFolderIs&&) = delete;
    CurrentFolderIs& operator=(CurrentFolderIs&&) = delete;

  private:
    fs::path before_;
};

/// `argument` as a path that stays below `card`: an absolute path is moved there, and steps up are removed.
std::string Confined(std::string argument, const std::string& card) {
    for (auto up = argument.find(".."); up != std::string::npos; up = argument.find("..")) {
        argument.replace(up, 2, "._");
    }
    return argument.starts_with('/') ? card + argument : argument;
}

/// The program's name and the arguments after it. An argument vector has at least the name.
std::vector<std::string> Arguments(std::string_view bytes, const std::string& card) {
    std::vector<std::string> arguments;
    for (bool more = true; more;) {
        const auto end = bytes.find('\0');
        more = end != std::string_view::npos;
        arguments.push_back(Confined(std::string(bytes.substr(0, end)), card));
        bytes.remove_prefix(more ? end + 1 : bytes.size());
    }
    return arguments;
}

bool Same(const RunSettings& a, const RunSettings& b) {
    return a.input.folder == b.input.folder && a.input.names == b.input.names &&
           a.output_folder == b.output_folder && a.verbose == b.verbose && a.refresh == b.refresh &&
           a.preview == b.preview && a.black_level_given == b.black_level_given &&
           a.black_level == b.black_level && a.lens_fix == b.lens_fix && a.lens_code == b.lens_code &&
           a.sensor_fix == b.sensor_fix && a.dark_field_fix == b.dark_field_fix &&
           a.dark_field_creation == b.dark_field_creation && a.pixel_line_test == b.pixel_line_test &&
           a.row_offset_estimation == b.row_offset_estimation && a.raw_model_variant == b.raw_model_variant;
}

void RequireUsable(const RunSettings& settings, const lensdb& lenses) {
    Require(!settings.input.names.empty(), "a run has at least one image");
    for (const std::string& name : settings.input.names) {
        Require(isfile((settings.input.folder + name).c_str()), "every image exists");
        Require(path_names::Extension(name) == "RAW" || path_names::Extension(name) == "DNG",
                "an image is a RAW file or a DNG");
        Require(name.find_first_of(path_names::kSeparators) == std::string::npos,
                "an image's name has no folder");
    }
    Require(settings.output_folder.empty() || isdir(settings.output_folder.c_str()),
            "the output folder exists");
    Require(!settings.lens_fix || !lenses.Lenses.empty(), "lenses are fixed only with a database");
    Require(settings.sensor_fix == settings.dark_field_fix, "-s asks for both corrections");
    Require(settings.sensor_fix || (!settings.dark_field_creation && !settings.pixel_line_test &&
                                    !settings.row_offset_estimation),
            "the variants of -s imply it");
}

bool IsExitStatus(int status) {
    return status == kUsage || status == kBadInput || status == kBadOutputFolder || status == kNoRawFiles ||
           status == kNoLensDatabase || status == kNotACameraDng;
}

void RequireFolderOf(const std::string& program) {
    const std::string folder = ExecutableFolder(program);
    const auto separator = program.find_last_of(path_names::kSeparators);
    if (separator == std::string::npos) {
        Require(folder.empty(), "a bare name has no folder");
    } else if (separator == 0) {
        Require(folder == "./", "a name after a lone separator is in the current folder");
    } else {
        Require(folder == program.substr(0, folder.size()) && folder.size() == separator + 1,
                "the folder is the name up to its last separator");
    }
}

}  // namespace

void FuzzInput(std::span<const std::uint8_t> bytes) {
    static const Card card;
    const CurrentFolderIs card_folder(card.path());
    std::vector<std::string> texts =
        Arguments({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, card.path());
    const std::vector<std::string> before = texts;
    std::vector<char*> arguments;
    arguments.reserve(texts.size());
    for (std::string& text : texts) {
        arguments.push_back(text.data());
    }
    RequireFolderOf(texts.front());

    lensdb lenses;
    if (bytes.size() % 2 != 0) {
        lenses.Lenses["100001"] = {};
    }
    const ErrorHandler errors;
    RunSettings settings;
    const int status = ParseOptions(arguments, lenses, errors, settings);
    if (status == 0) {
        RequireUsable(settings, lenses);
    } else {
        Require(IsExitStatus(status), "the status is one of those for options");
    }
    RunSettings again;
    Require(ParseOptions(arguments, lenses, errors, again) == status && Same(again, settings),
            "the same command line gives the same settings");
    Require(texts == before, "the command line is unchanged");
    card.RequireUntouched();
}
