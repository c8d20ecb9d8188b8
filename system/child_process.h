// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_CHILD_PROCESS_H
#define VELMARCON_SYSTEM_CHILD_PROCESS_H

#include <cstdint>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

/// How a program is started: without a shell, and without input.
struct ChildStart {
    std::vector<std::string> arguments;  ///< the program first: a path, or a name that is on the search path
    std::string folder;                  ///< it works there; empty: where this process does
    std::string output;                  ///< file to which its standard output is appended; empty: this one's
    std::string errors;                  ///< the same of standard error
    std::vector<std::pair<std::string, std::string>> environment;  ///< set in addition to this process's
    std::vector<std::string> unset;                                ///< variables that it does not get
    std::vector<int> kept;                                         ///< descriptors that it keeps open
};

/// A program that was started. One that still runs when the object goes is waited for.
class ChildProcess {
  public:
    /// What a status of `kKilled` and above stands for: the number of the signal that ended it, plus this.
    static constexpr int kKilled = 128;

    ChildProcess() = default;
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ChildProcess(ChildProcess&&) = delete;
    ChildProcess& operator=(ChildProcess&&) = delete;

    /// Returns why the program is not there or cannot be run. Called once.
    [[nodiscard]] std::error_code Start(const ChildStart& start);

    /// The exit status, once the program has ended.
    std::optional<int> Status();

    /// Waits up to `milliseconds` for the end; a stop signal ends the wait early.
    std::optional<int> WaitFor(unsigned int milliseconds);

    /// Asks the program to end (SIGTERM). On Windows a console's Ctrl-C reaches it anyway, and this does
    /// nothing.
    void AskToEnd() const;

  private:
    std::int64_t process_ = -1;  ///< number (POSIX) or handle (Windows)
    std::optional<int> status_;
};

/// Runs a program to its end and puts what it prints, both streams together, into `printed`. Returns its
/// status; nothing when it could not be started.
std::optional<int> RunForOutput(const ChildStart& start, std::string& printed);

/// Where the search path has a program of that name; empty when it has none.
std::string FindOnSearchPath(const std::string& name);

#endif  // VELMARCON_SYSTEM_CHILD_PROCESS_H
