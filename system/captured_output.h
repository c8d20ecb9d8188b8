// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_CAPTURED_OUTPUT_H
#define VELMARCON_SYSTEM_CAPTURED_OUTPUT_H

#include <string>
#include <system_error>

/// Catches what this process prints to standard output, for work whose lines are to be read and not shown.
class CapturedOutput {
  public:
    CapturedOutput() = default;
    ~CapturedOutput();
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;
    CapturedOutput(CapturedOutput&&) = delete;
    CapturedOutput& operator=(CapturedOutput&&) = delete;

    /// Begins; what is printed goes into a nameless file in `folder`, if one can be made there.
    [[nodiscard]] std::error_code Begin(const std::string& folder);

    /// What was printed since the last call.
    std::string Take() const;

  private:
    int file_ = -1;
    int standard_output_ = -1;  ///< where it went before
};

#endif  // VELMARCON_SYSTEM_CAPTURED_OUTPUT_H
