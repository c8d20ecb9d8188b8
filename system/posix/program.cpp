// SPDX-License-Identifier: MIT
#include "system/posix/program.h"

#include <unistd.h>

#include <cstddef>
#include <span>

#if defined(__APPLE__)
#include <mach-o/dyld.h>

#include <array>
#include <cstdint>
#endif

#include "system/pixel_memory.h"
#include "system/posix/write_signals.h"
#include "system/standard_streams.h"
#include "system/system_error.h"

namespace program {

namespace {

namespace fs = std::filesystem;

/// A path of the running program's file, from the system; empty if it is unknown.
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

std::vector<std::string> Begin(int argc, char** argv) {
    IgnoreWriteSignals();
    FillMissingStandardStreams();
    pixel_memory::RetainFreedMemory();
    const std::span<char*> all(argv, static_cast<std::size_t>(argc));
    const auto arguments = all.subspan(all.empty() ? 0 : 1);
    return {arguments.begin(), arguments.end()};
}

std::optional<std::filesystem::path> OwnFile() {
    std::error_code error;
    fs::path own = fs::canonical(NameFromSystem(), error);
    return error ? std::nullopt : std::optional(own);
}

std::error_code Become(const std::filesystem::path& file, std::vector<std::string> arguments) {
    std::vector<char*> handed_over;
    handed_over.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) {
        handed_over.push_back(argument.data());
    }
    handed_over.push_back(nullptr);
    ::execv(file.c_str(), handed_over.data());
    return system_error::Last();
}

}  // namespace program
