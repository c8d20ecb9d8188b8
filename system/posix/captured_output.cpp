// SPDX-License-Identifier: MIT
#include "system/captured_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdio>

#include "system/file_system.h"
#include "system/handle.h"
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
    file_system::Remove(name);
    (void)std::fflush(stdout);
    Handle standard_output(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!standard_output.IsOpen() || ::dup2(made.Get(), STDOUT_FILENO) < 0) {
        return system_error::Last();
    }
    standard_output_ = standard_output.Release();
    file_ = made.Release();
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
