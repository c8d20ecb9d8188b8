// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_CHILD_H
#define VELMARCON_TESTS_MATRIX_CHILD_H

#include <string>
#include <vector>

namespace matrix {

/// How a run ended.
struct Ending {
    int status = -1;  ///< exit status; -1 if a signal ended it
    int signal = 0;
    double cpu_seconds = 0;   ///< user plus system time of the process
    long peak_kilobytes = 0;  ///< peak resident set size
    std::string output;       ///< standard output
    std::string errors;       ///< standard error
};

/// Starts a program repeatedly, with `folder` as its current folder. Must be used by one thread only.
class Child {
  public:
    /// `program` is an absolute path. The output streams go to files next to `folder`.
    Child(std::string program, std::string folder);

    /// Runs the program under the name "bin/velmarcon", where its databases are. A signal ends a run after
    /// ten seconds of CPU time or two minutes.
    Ending Run(const std::vector<std::string>& arguments) const;

  private:
    std::string program_;
    std::string folder_;
    std::string output_;
    std::string errors_;
    std::vector<std::string> variables_;
};

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_CHILD_H
