// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_TALLY_H
#define VELMARCON_TESTS_MATRIX_TALLY_H

#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "tests/matrix/case.h"
#include "tests/matrix/child.h"

namespace matrix {

/// Counts the results of the cases. Thread-safe.
class Tally {
  public:
    /// Counts one case with this outcome. Prints the total now and then.
    void Count(const Case& one, const std::string& outcome);
    /// Records what one run of `program` ("release", "sanitized") took.
    void Measure(const std::string& program, const Case& one, const Ending& ending);
    /// Records a failure and prints it at once.
    void Fail(const std::string& name, const std::string& fault);

    /// Prints the cases of each group and outcome, the largest figures and all failures. Returns the number
    /// of failures.
    std::size_t Print() const;

  private:
    struct Largest {
        double cpu_seconds = 0;
        std::string slowest;
        long peak_kilobytes = 0;
        std::string greediest;
    };

    mutable std::mutex mutex_;
    std::size_t cases_ = 0;
    std::map<std::string, std::map<std::string, std::size_t>> groups_;
    std::map<std::string, Largest> largest_;
    std::vector<std::string> failures_;
};

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_TALLY_H
