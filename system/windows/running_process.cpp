// SPDX-License-Identifier: MIT
#include "system/running_process.h"

#include <windows.h>

#include <array>
#include <limits>
#include <random>

#include "system/handle.h"

namespace running_process {

std::string HostName() {
    std::array<char, MAX_COMPUTERNAME_LENGTH + 1> name = {};
    auto length = static_cast<DWORD>(name.size());
    return ::GetComputerNameA(name.data(), &length) != 0 ? std::string(name.data(), length) : std::string();
}

std::uint64_t Number() {
    return ::GetCurrentProcessId();
}

/// A process that has ended can still be opened while another one has a handle to it, so its exit status is
/// checked.
bool IsGone(std::uint64_t number) {
    if (number > std::numeric_limits<DWORD>::max()) {
        return false;
    }
    const Handle process(::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(number)));
    if (!process.IsOpen()) {
        return ::GetLastError() == ERROR_INVALID_PARAMETER;
    }
    DWORD status = STILL_ACTIVE;
    return ::GetExitCodeProcess(process.Get(), &status) != 0 && status != STILL_ACTIVE;
}

std::uint64_t RandomNumber() {
    constexpr unsigned int half = 32;
    std::random_device source;
    const std::uint64_t high = source();
    return (high << half) | source();
}

}  // namespace running_process
