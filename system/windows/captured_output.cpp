// SPDX-License-Identifier: MIT
#include "system/captured_output.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdio>

#include "system/part_files.h"
#include "system/system_path.h"

CapturedOutput::~CapturedOutput() {
    if (file_ >= 0) {
        (void)std::fflush(stdout);
        (void)::_dup2(standard_output_, ::_fileno(stdout));
        ::_close(standard_output_);
        ::_close(file_);
    }
}

std::error_code CapturedOutput::Begin(const std::string& folder) {
    const std::string name = folder + "/" + part_files::NewName();
    constexpr int flags = _O_RDWR | _O_CREAT | _O_EXCL | _O_TEMPORARY | _O_BINARY | _O_NOINHERIT;
    int file = -1;
    if (::_wsopen_s(&file, system_path::ToSystem(name).c_str(), flags, _SH_DENYNO, _S_IREAD | _S_IWRITE) !=
        0) {
        return {errno != 0 ? errno : EIO, std::generic_category()};
    }
    (void)std::fflush(stdout);
    standard_output_ = ::_dup(::_fileno(stdout));
    if (standard_output_ < 0 || ::_dup2(file, ::_fileno(stdout)) < 0) {
        ::_close(file);
        return std::make_error_code(std::errc::bad_file_descriptor);
    }
    file_ = file;
    return {};
}

std::string CapturedOutput::Take() const {
    (void)std::fflush(stdout);
    std::string printed;
    std::array<char, 4096> bytes = {};
    (void)::_lseeki64(file_, 0, SEEK_SET);
    for (;;) {
        const int length = ::_read(file_, bytes.data(), static_cast<unsigned int>(bytes.size()));
        if (length <= 0) {
            break;
        }
        printed.append(bytes.data(), static_cast<std::size_t>(length));
    }
    (void)::_lseeki64(file_, 0, SEEK_SET);
    (void)::_chsize_s(file_, 0);
    std::erase(printed, '\r');
    return printed;
}
