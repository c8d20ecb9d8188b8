// SPDX-License-Identifier: MIT
#include "system/folder_tools.h"

#include <windows.h>

#include <filesystem>
#include <system_error>

#include "system/system_error.h"
#include "system/system_path.h"

namespace folder_tools {

namespace {

std::error_code FlushFile(const std::string& path) {
    constexpr DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    auto* const file = ::CreateFileW(system_path::ToSystem(path).c_str(), GENERIC_WRITE, share, nullptr,
                                     OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return system_error::Last();
    }
    const std::error_code error = ::FlushFileBuffers(file) != 0 ? std::error_code() : system_error::Last();
    ::CloseHandle(file);
    return error;
}

}  // namespace

/// Below the user's own folder, which nobody else may enter.
std::error_code MakePrivate(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(system_path::ToSystem(path), error);
    return {error.default_error_condition().value(), std::generic_category()};
}

std::error_code FreeBytes(const std::string& folder, std::uint64_t& bytes) {
    ULARGE_INTEGER available = {};
    if (::GetDiskFreeSpaceExW(system_path::ToSystem(folder).c_str(), &available, nullptr, nullptr) == 0) {
        return system_error::Last();
    }
    bytes = available.QuadPart;
    return {};
}

/// Only an administrator may bring a whole volume to the disk.
std::vector<std::error_code> PutOnDisk(std::span<const std::string> files) {
    std::vector<std::error_code> errors;
    errors.reserve(files.size());
    for (const std::string& file : files) {
        errors.push_back(FlushFile(file));
    }
    return errors;
}

}  // namespace folder_tools
