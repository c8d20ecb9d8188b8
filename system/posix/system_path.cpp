// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#if !defined(_LIBCPP_VERSION)
#include <ext/stdio_filebuf.h>
#endif

#include <cerrno>
#include <ios>
#include <system_error>

#include "system/system_path.h"

namespace system_path {

namespace {

/// Returns a descriptor, or -1. A pipe that nobody writes to would otherwise be waited for.
int OpenWithoutWaiting(const std::string& path) {
    constexpr int flags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    int descriptor = -1;
    do {
        descriptor = ::open(path.c_str(), flags);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

bool IsPlain(int descriptor) {
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

/// The stream reads from the descriptor and closes it in the end. Returns whether it could take it.
bool Attach(int descriptor, std::ifstream& stream) {
    constexpr auto mode = std::ios::in | std::ios::binary;
#if defined(_LIBCPP_VERSION)
    stream.__open(descriptor, mode);
#else
    *stream.rdbuf() = __gnu_cxx::stdio_filebuf<char>(descriptor, mode);
#endif
    return stream.is_open();
}

}  // namespace

bool OpenPlainFile(const std::string& path, std::ifstream& stream) {
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(path, unknown)) {
        return false;
    }
    const int descriptor = OpenWithoutWaiting(path);
    if (descriptor < 0) {
        return false;
    }
    if (!IsPlain(descriptor) || !Attach(descriptor, stream)) {
        ::close(descriptor);
        return false;
    }
    stream.seekg(0, std::ios::end);
    return true;
}

}  // namespace system_path
