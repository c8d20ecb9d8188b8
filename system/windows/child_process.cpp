// SPDX-License-Identifier: MIT
#include "system/child_process.h"

#include <windows.h>

#include <cerrno>
#include <limits>

#include "system/system_error.h"
#include "system/system_path.h"

namespace {

HANDLE AsHandle(std::int64_t number) {
    return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(number));  // NOLINT(performance-no-int-to-ptr)
}

/// One argument as the C library of the program that is started takes it apart.
std::wstring Quoted(const std::wstring& argument) {
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t unit : argument) {
        if (unit == L'"') {
            quoted.append(backslashes + 1, L'\\');
        }
        backslashes = unit == L'\\' ? backslashes + 1 : 0;
        quoted += unit;
    }
    quoted.append(backslashes, L'\\');
    return quoted + L"\"";
}

std::wstring CommandLine(const std::vector<std::string>& arguments) {
    std::wstring line;
    for (const std::string& argument : arguments) {
        line += (line.empty() ? L"" : L" ") + Quoted(system_path::ToSystem(argument).wstring());
    }
    return line;
}

void SetEnvironment(const ChildStart& start) {
    for (const auto& [name, value] : start.environment) {
        ::SetEnvironmentVariableW(system_path::ToSystem(name).c_str(), system_path::ToSystem(value).c_str());
    }
    for (const std::string& name : start.unset) {
        ::SetEnvironmentVariableW(system_path::ToSystem(name).c_str(), nullptr);
    }
}

/// Ends what was started with this process, however it ends. Kept open for the rest of its life.
void EndWithThisProcess(HANDLE process) {
    static const HANDLE job = [] {
        auto* const made = ::CreateJobObjectW(nullptr, nullptr);
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        ::SetInformationJobObject(made, JobObjectExtendedLimitInformation, &limits, sizeof(limits));
        return made;
    }();
    ::AssignProcessToJobObject(job, process);
}

}  // namespace

ChildProcess::~ChildProcess() {
    constexpr unsigned int a_while = 1000;
    while (process_ >= 0 && !WaitFor(a_while)) {
    }
}

std::error_code ChildProcess::Start(const ChildStart& start) {
    SetEnvironment(start);
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    std::wstring line = CommandLine(start.arguments);
    const std::wstring folder = system_path::ToSystem(start.folder).wstring();
    if (::CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                         folder.empty() ? nullptr : folder.c_str(), &startup, &process) == 0) {
        return system_error::Last();
    }
    EndWithThisProcess(process.hProcess);
    ::CloseHandle(process.hThread);
    process_ = static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(process.hProcess));
    return {};
}

std::optional<int> ChildProcess::Status() {
    return WaitFor(0);
}

std::optional<int> ChildProcess::WaitFor(unsigned int milliseconds) {
    if (process_ >= 0 && ::WaitForSingleObject(AsHandle(process_), milliseconds) == WAIT_OBJECT_0) {
        DWORD status = 1;
        ::GetExitCodeProcess(AsHandle(process_), &status);
        ::CloseHandle(AsHandle(process_));
        process_ = -1;
        constexpr auto largest = static_cast<DWORD>(std::numeric_limits<int>::max());
        status_ = status > largest ? kKilled : static_cast<int>(status);
    }
    return status_;
}

void ChildProcess::AskToEnd() const {}

std::optional<int> RunForOutput(const ChildStart& /*start*/, std::string& /*printed*/) {
    return std::nullopt;
}

/// Nothing that is looked for on POSIX is there.
std::string FindOnSearchPath(const std::string& /*name*/) {
    return "";
}
