// SPDX-License-Identifier: MIT
#include "system/captured_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdio>

#include "system/file_system.h"
#include "system/part_files.h"
#include "system/retry_on_interrupt.h"
#include "system/system_error.h"

CapturedOutput::~CapturedOutput() {
    if (file_ >= 0) {
        (void)std::fflush(stdout);
        (void)::dup2(standard_output_, STDOUT_FILENO);
        ::close(standard_output_);
        ::close(file_);
    }
}

std::error_code CapturedOutput::Begin(const std::string& folder) {
    const std::string name = folder + "/" + part_files::NewName();
    Handle made;
    if (const std::error_code error = file_system::CreateNew(name, file_system::kForOwner, made)) {
        return error;
    }
    const int file = made.Release();
    file_system::Remove(name);
    (void)std::fflush(stdout);
    standard_output_ = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (standard_output_ < 0 || ::dup2(file, STDOUT_FILENO) < 0) {
        const std::error_code error = system_error::Last();
        ::close(file);
        return error;
    }
    file_ = file;
    return {};
}

std::string CapturedOutput::Take() const {
    (void)std::fflush(stdout);
    std::string printed;
    std::array<char, 4096> bytes = {};
    (void)::lseek(file_, 0, SEEK_SET);
    for (;;) {
        const auto length = RetryOnInterrupt([&] { return ::read(file_, bytes.data(), bytes.size()); });
        if (length <= 0) {
            break;
        }
        printed.append(bytes.data(), static_cast<std::size_t>(length));
    }
    (void)::lseek(file_, 0, SEEK_SET);
    [[maybe_unused]] const int emptied = ::ftruncate(file_, 0);
    return printed;
}
