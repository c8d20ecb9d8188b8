// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_CHILD_H
#define VELMARCON_TESTS_MATRIX_CHILD_H

#include <string>
#include <vector>

namespace matrix {

/// How a run ended.
struct Ending {
    int status = -1;  ///< exit status; -1 when a signal ended it
    int signal = 0;
    double cpu_seconds = 0;   ///< of the process, in user and system mode
    long peak_kilobytes = 0;  ///< largest resident set
    std::string output;       ///< standard output
    std::string errors;       ///< standard error
};

/// Starts a program, again and again, with `folder` as its current folder. To be used by one thread.
class Child {
  public:
    /// `program` is an absolute path. The streams go to files beside `folder`.
    Child(std::string program, std::string folder);

    /// Runs the program under the name "bin/velmarcon", where its databases lie, until it ends by itself or
    /// has used ten seconds of the processor or two minutes: then a signal ends it.
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
