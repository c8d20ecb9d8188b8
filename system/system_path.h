// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_SYSTEM_PATH_H
#define VELMARCON_SYSTEM_SYSTEM_PATH_H

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#if defined(_WIN32)
#include <string_view>
#endif

/// The program's paths are texts of bytes. To most systems that is what a path is; Windows wants 16-bit
/// units, and there the program's texts are UTF-8. Everything that opens a file gets its name from here.
namespace system_path {

#if defined(_WIN32)

/// `text` as UTF-8 (see utf16.h).
std::string FromWide(std::wstring_view text);

/// `path` as Windows takes it.
std::filesystem::path ToSystem(const std::string& path);

/// The way back.
inline std::string FromSystem(const std::filesystem::path& path) {
    return FromWide(path.native());
}

/// Whether Windows takes `path` for a device (NUL, CON, COM1 and others, in whatever folder).
bool IsDevice(const std::string& path);

#else

/// `path` as the system takes it.
inline const std::string& ToSystem(const std::string& path) {
    return path;
}

/// The way back.
inline std::string FromSystem(const std::filesystem::path& path) {
    return path.native();
}

#endif

/// Opens the plain file at `path`, or the one to which a symbolic link leads, for reading; `stream` then
/// stands at its end. Folders, pipes and devices are told without being opened. One that takes the file's
/// place in that moment is not waited for, and not read. Returns why the file is not open: invalid_argument
/// when it is not a plain one.
[[nodiscard]] std::error_code OpenPlainFile(const std::string& path, std::ifstream& stream);

}  // namespace system_path

#endif  // VELMARCON_SYSTEM_SYSTEM_PATH_H
