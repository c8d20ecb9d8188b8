// SPDX-License-Identifier: MIT
#include "packaging/path_remarks.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "app/input_discovery.h"
#include "packaging/shell_word.h"
#include "system/path_names.h"

namespace {

namespace fs = std::filesystem;
using path_names::kDngExtension;
using path_names::kJpegExtension;
using path_names::kRawExtension;
using path_names::WithExtension;

constexpr const char* kCapitalLetters = "names must end in .RAW, in capital letters";
constexpr const char* kCapitalLettersOfJpegs = "names must end in .JPG, in capital letters";

std::string UpperCaseExtension(const std::string& name) {
    std::string extension = path_names::Extension(name);
    std::ranges::transform(extension, extension.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return extension;
}

/// What the program would find in a folder.
struct FolderContent {
    bool is_known = false;          ///< false if it can't be listed
    bool has_raw = false;           ///< whether a name ends in .RAW
    bool has_camera_dng = false;    ///< whether a file has the size of the camera's DNGs
    bool has_other_dng = false;     ///< whether a file of another size counts as one if it is named
    bool has_raw_in_small = false;  ///< whether a name ends in .raw
    bool has_folder = false;
    std::vector<std::string> jpegs_in_small;  ///< names that end in .jpg, .Jpg and so on
};

FolderContent ContentOf(const fs::path& folder) {
    FolderContent content;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        const std::string extension = path_names::Extension(name);
        if (extension == kRawExtension) {
            content.has_raw = true;
        } else if (extension == kDngExtension) {
            std::error_code no_size;
            const std::uintmax_t size = entry->file_size(no_size);
            content.has_camera_dng |= size == kCameraDngSize && !no_size;
            content.has_other_dng |= size != kCameraDngSize && size <= kLargestSingleDng && !no_size;
        } else if (UpperCaseExtension(name) == kRawExtension) {
            content.has_raw_in_small = true;
        } else if (extension != kJpegExtension && UpperCaseExtension(name) == kJpegExtension) {
            content.jpegs_in_small.push_back(name);
        }
        std::error_code no_kind;
        content.has_folder |= entry->is_directory(no_kind);
    }
    content.is_known = !error;
    return content;
}

/// Whether nothing exists at `path`; if that can't be told, the answer is no.
bool IsMissing(const std::string& path) {
    std::error_code error;
    return fs::status(path, error).type() == fs::file_type::not_found;
}

/// Whether the program would find nothing for the input `path`. The program also restores a DNG that a run
/// has set aside.
bool IsInputMissing(const std::string& path) {
    const std::string dng = WithExtension(path, kDngExtension);
    return std::ranges::all_of(std::array{path, WithExtension(path, kRawExtension), dng,
                                          path_names::OldName(path), path_names::OldName(dng)},
                               IsMissing);
}

bool IsFolder(const std::string& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

/// The JPEGs in `folder`, as FolderPart gives it, that belong to RAW files and are not found, because of the
/// letters of their extension; sorted. Where the file system does not tell letters apart, all are found.
std::vector<std::string> JpegsNotFound(const std::string& folder, const FolderContent& content) {
    std::vector<std::string> jpegs;
    for (const std::string& name : content.jpegs_in_small) {
        const std::string base = folder + path_names::BaseName(name);
        if (!IsMissing(WithExtension(base, kRawExtension)) &&
            IsMissing(WithExtension(base, kJpegExtension))) {
            jpegs.push_back(folder + name);
        }
    }
    std::ranges::sort(jpegs);
    return jpegs;
}

std::string RemarkOnJpegs(const std::vector<std::string>& not_found) {
    return not_found.empty()
               ? ""
               : ShellWords(not_found.front(), not_found.size()) + ": " + kCapitalLettersOfJpegs;
}

/// The remark on the JPEG of the RAW file `raw`.
std::string RemarkOnJpegOf(const std::string& raw) {
    const std::string folder = path_names::FolderPart(raw);
    const std::string base = path_names::BaseName(path_names::FileNamePart(raw));
    if (!IsMissing(WithExtension(folder + base, kJpegExtension))) {
        return "";
    }
    FolderContent content = ContentOf(folder.empty() ? "." : folder);
    std::erase_if(content.jpegs_in_small,
                  [&](const std::string& name) { return path_names::BaseName(name) != base; });
    return RemarkOnJpegs(JpegsNotFound(folder, content));
}

/// The RAW file that the program takes for the input `path`, which is not a folder; empty if it takes none.
std::string RawFileFor(const std::string& path) {
    const std::string raw = IsMissing(path) ? WithExtension(path, kRawExtension) : path;
    return path_names::Extension(raw) == kRawExtension && !IsMissing(raw) ? raw : "";
}

std::string RemarkOnMissingInput(const std::string& path) {
    if (!IsInputMissing(path)) {
        return "";
    }
    return ShellWord(path) + ": " +
           (IsMissing(path + ".raw") ? "there is no such file or folder" : kCapitalLetters);
}

/// The remark on an input that is not a folder.
std::string RemarkOnInputFile(const std::string& path) {
    if (const std::string raw = RawFileFor(path); !raw.empty()) {
        return RemarkOnJpegOf(raw);
    }
    if (IsMissing(path)) {
        return RemarkOnMissingInput(path);
    }
    const std::string extension = UpperCaseExtension(path);
    if (extension == kJpegExtension || extension == "JPEG") {
        return ShellWord(path) + ": name the RAW file, not the JPEG";
    }
    return extension == kRawExtension && !path.ends_with(kRawExtension)
               ? ShellWord(path) + ": " + kCapitalLetters
               : "";
}

std::string RemarkOnInputFolder(const std::string& path) {
    const FolderContent content = ContentOf(path);
    if (!content.is_known || content.has_raw || content.has_camera_dng) {
        return RemarkOnJpegs(JpegsNotFound(path_names::WithSeparator(path), content));
    }
    if (content.has_raw_in_small) {
        return ShellWord(path) + ": " + kCapitalLetters;
    }
    if (content.has_other_dng) {
        return ShellWord(path) + ": its DNGs do not have the camera's " + std::to_string(kCameraDngSize) +
               " bytes: name each by itself";
    }
    return content.has_folder
               ? ShellWord(path) + ": there is no picture in it; for the folders below it use velmarcon-batch"
               : "";
}

std::string RemarkOnInput(const std::string& path) {
    return IsFolder(path) ? RemarkOnInputFolder(path) : RemarkOnInputFile(path);
}

/// Explains why a run without -i only prints the usage, or does not find a JPEG.
std::string RemarkOnCurrentFolder() {
    const FolderContent content = ContentOf(".");
    if (!content.is_known || content.has_raw) {
        return RemarkOnJpegs(JpegsNotFound("", content));
    }
    return content.has_raw_in_small
               ? std::string("no picture in the current folder: ") + kCapitalLetters
               : "no picture in the current folder: name one with -i, see velmarcon --help";
}

std::string RemarkOnOutput(const std::string& path) {
    if (IsMissing(path)) {
        return ShellWord(path) + ": there is no such folder";
    }
    // What cannot be looked at may be a folder.
    std::error_code error;
    const bool is_other = !fs::is_directory(fs::status(path, error)) && !error;
    return is_other ? ShellWord(path) + ": this is not a folder; -o names the folder for the DNGs" : "";
}

/// Whether `path` is a camera DNG, or a folder that contains one.
bool IsCameraDng(const std::string& path) {
    if (IsFolder(path)) {
        return ContentOf(path).has_camera_dng;
    }
    const bool named_in_full = !IsMissing(path) || !IsMissing(WithExtension(path, kRawExtension));
    const std::string file = named_in_full ? path : WithExtension(path, kDngExtension);
    std::error_code error;
    return file.ends_with("." + std::string(kDngExtension)) && fs::file_size(file, error) == kCameraDngSize &&
           !error;
}

}  // namespace

bool HasMoreThanOption(const Argument& argument) {
    return argument.option != nullptr && argument.text != argument.option->text &&
           argument.text.substr(1) != argument.option->word;
}

std::vector<std::string> RemarksOnPaths(std::span<const Argument> arguments) {
    const Argument* input = FindOption(arguments, Option::kInput);
    const Argument* output = FindOption(arguments, Option::kOutput);
    std::vector<std::string> remarks;
    if (input == nullptr) {
        remarks.push_back(RemarkOnCurrentFolder());
    } else if (!HasMoreThanOption(*input)) {
        const std::string path(*input->value);
        remarks.push_back(RemarkOnInput(path));
        const bool in_place = output == nullptr && FindOption(arguments, Option::kRefresh) == nullptr;
        remarks.push_back(in_place && IsCameraDng(path) ? ShellWord(path) +
                                                              ": DNGs are repaired into another folder with "
                                                              "-o, or in place with -r"
                                                        : "");
    }
    if (output != nullptr && !HasMoreThanOption(*output)) {
        remarks.push_back(RemarkOnOutput(std::string(*output->value)));
    }
    std::erase(remarks, "");
    return remarks;
}
