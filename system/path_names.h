// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_PATH_NAMES_H
#define VELMARCON_SYSTEM_PATH_NAMES_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Takes the names of files and folders apart and puts them together. Nothing here looks at a disk.
namespace path_names {

// --- Folders

/// The characters that separate folders and files in the paths of options, on every system.
constexpr std::string_view kSeparators = "\\/";

/// Whether `path` ends in one of kSeparators.
bool EndsInSeparator(std::string_view path);

/// `folder` with a separator at its end; an empty one stays empty.
std::string WithSeparator(std::string folder);

/// `path` up to and including its last separator; empty if it has none.
std::string FolderPart(const std::string& path);

/// The text after the last separator of `path`; all of it if it has none.
std::string FileNamePart(const std::string& path);

/// FolderPart and FileNamePart with this system's own separators: on most systems a backslash is an ordinary
/// character.
std::string SystemFolderPart(const std::string& path);
std::string SystemFileNamePart(const std::string& path);

// --- Extensions, which count in upper case only

constexpr std::string_view kRawExtension = "RAW";
constexpr std::string_view kJpegExtension = "JPG";
constexpr std::string_view kDarkFrameExtension = "BIA";
constexpr std::string_view kDngExtension = "DNG";

/// The text after the last "." of `name`; all of it if there is none.
std::string Extension(const std::string& name);

/// The text before the last "." of `name`; all of it if there is none.
std::string BaseName(const std::string& name);

/// `base`, a "." and `extension`.
std::string WithExtension(const std::string& base, std::string_view extension);

/// `name` with `extension` in place of the text after its last "."; only `extension` if there is none.
std::string WithOtherExtension(const std::string& name, std::string_view extension);

// --- Databases

constexpr const char* kLensDatabase = "lensdb.ini";
constexpr const char* kSensorDatabase = "sensdb.ini";

// --- Part files: the names under which files are written before they get their own

/// What the name of a part file says about the run that writes it.
struct Part {
    std::string host;           ///< the computer's name, made by HostPart; empty in names of older versions
    std::uint64_t process = 0;  ///< number of the run's process
};

/// The name of a computer, cut and altered so that it can be part of a file name.
std::string HostPart(std::string host);

/// `.velmarcon-<host>-<process>-<random number>.part`
std::string PartName(const Part& part, std::uint64_t random_number);

/// Parses the name, without its folder, of a part file; std::nullopt for any other name.
std::optional<Part> ParsePartName(std::string_view name);

/// The number of the process in the name of a part file of an older launcher, `.lensdb-<process>.part`;
/// std::nullopt for any other name.
std::optional<std::uint64_t> ParseLauncherPartName(std::string_view name);

/// The files that gnuplot reads and writes in the folder of a report.
constexpr const char* kReportData = ".velmarcon-report.data";
constexpr const char* kReportScript = ".velmarcon-report.gnuplot";
constexpr const char* kReportPart = ".velmarcon-report.part";

// --- Old copies: copies of files that are being replaced

constexpr int kMostOldNames = 9;

/// `path` with `.old`, or, for a `number` from 2 to kMostOldNames, `.old2` and so on.
std::string OldName(const std::string& path, int number = 1);

/// The path whose first OldName is `name`; std::nullopt if there is none.
std::optional<std::string> NameOfOld(const std::string& name);

// --- Backups: `sensdb.ini.1`, `sensdb.ini.2` and so on

std::string NumberedName(const std::string& path, std::uint32_t number);

/// The number in `copy`, the name of a backup of the file `name`; 0 for any other name.
std::uint32_t NumberIn(const std::string& copy, const std::string& name);

}  // namespace path_names

#endif  // VELMARCON_SYSTEM_PATH_NAMES_H
