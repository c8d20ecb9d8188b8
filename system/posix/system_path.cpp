// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/stat.h>

#if !defined(_LIBCPP_VERSION)
#include <ext/stdio_filebuf.h>
#endif

#include <fstream>
#include <ios>
#include <system_error>
#include <utility>

#include "system/handle.h"
#include "system/retry_on_interrupt.h"
#include "system/system_error.h"
#include "system/system_path.h"

namespace system_path {

namespace {

/// Without O_NONBLOCK, opening a pipe would wait for somebody to write to it.
Handle OpenWithoutWaiting(const std::string& path) {
    constexpr int flags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    return Handle(RetryOnInterrupt([&] { return ::open(path.c_str(), flags); }));
}

bool IsPlain(const Handle& file) {
    struct stat status = {};
    return ::fstat(file.Get(), &status) == 0 && S_ISREG(status.st_mode);
}

/// Lets the stream read from the file and close it in the end. Returns whether that worked.
bool Attach(Handle file, std::ifstream& stream) {
    constexpr auto mode = std::ios::in | std::ios::binary;
#if defined(_LIBCPP_VERSION)
    stream.__open(file.Get(), mode);
#else
    *stream.rdbuf() = __gnu_cxx::stdio_filebuf<char>(file.Get(), mode);
#endif
    if (stream.is_open()) {
        (void)file.Release();
    }
    return stream.is_open();
}

}  // namespace

std::error_code OpenPlainFile(const std::string& path, std::ifstream& stream) {
    const std::error_code not_plain = std::make_error_code(std::errc::invalid_argument);
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(path, unknown)) {
        return unknown ? unknown : not_plain;
    }
    Handle file = OpenWithoutWaiting(path);
    if (!file.IsOpen()) {
        return system_error::Last();
    }
    if (!IsPlain(file) || !Attach(std::move(file), stream)) {
        return not_plain;
    }
    stream.seekg(0, std::ios::end);
    return {};
}

}  // namespace system_path
