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

/// Counts what came of the cases. May be used by several threads.
class Tally {
  public:
    /// One case was run, with this outcome. Now and then prints how many were.
    void Count(const Case& one, const std::string& outcome);
    /// One run of `program` ("release", "sanitized") took this much.
    void Measure(const std::string& program, const Case& one, const Ending& ending);
    /// Something is not as it should be. Printed at once.
    void Fail(const std::string& name, const std::string& fault);

    /// Cases for each group and outcome, largest figures, and the failures once more. Returns their number.
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
