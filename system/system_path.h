// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_SYSTEM_PATH_H
#define VELMARCON_SYSTEM_SYSTEM_PATH_H

#include <filesystem>
#include <iosfwd>
#include <string>
#include <system_error>

#if defined(_WIN32)
#include <string_view>
#endif

/// The program's paths are strings of bytes. Most systems take these as they are; Windows takes 16-bit units,
/// and there the program's strings are UTF-8. Everything that opens a file converts its name here.
namespace system_path {

#if defined(_WIN32)

/// `text` as UTF-8 (see utf16.h).
std::string FromWide(std::wstring_view text);

/// `path` in the form that Windows takes.
std::filesystem::path ToSystem(const std::string& path);

/// The reverse of ToSystem.
inline std::string FromSystem(const std::filesystem::path& path) {
    return FromWide(path.native());
}

/// Whether Windows treats `path` as a device (NUL, CON, COM1 and others, in any folder).
bool IsDevice(const std::string& path);

#else

/// `path` in the form that the system takes.
inline const std::string& ToSystem(const std::string& path) {
    return path;
}

/// The reverse of ToSystem.
inline std::string FromSystem(const std::filesystem::path& path) {
    return path.native();
}

#endif

/// Opens the plain file at `path`, or the one to which a symbolic link leads, for reading, and positions
/// `stream` at its end. Recognises folders, pipes and devices without opening them; one that takes the file's
/// place at that moment is neither waited for nor read. Returns why the file could not be opened:
/// invalid_argument if it is not a plain file.
[[nodiscard]] std::error_code OpenPlainFile(const std::string& path, std::ifstream& stream);

}  // namespace system_path

#endif  // VELMARCON_SYSTEM_SYSTEM_PATH_H
