// SPDX-License-Identifier: MIT
#include "packaging/own_path.h"

#include <system_error>

#if defined(__APPLE__)
#include <mach-o/dyld.h>

#include <array>
#include <cstdint>
#endif

namespace {

namespace fs = std::filesystem;

/// A name of the file that the system tells, or an empty one.
fs::path NameFromSystem() {
#if defined(__APPLE__)
    std::array<char, 4096> name = {};
    auto size = static_cast<std::uint32_t>(name.size());
    return ::_NSGetExecutablePath(name.data(), &size) == 0 ? fs::path(name.data()) : fs::path();
#else
    return "/proc/self/exe";
#endif
}

}  // namespace

std::filesystem::path OwnPath() {
    std::error_code error;
    fs::path own = fs::canonical(NameFromSystem(), error);
    return error ? fs::path(VELMARCON_INSTALLED_LAUNCHER) : own;
}
