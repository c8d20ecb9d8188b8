// SPDX-License-Identifier: MIT
#ifndef VELMARCON_ERRORS_ERROR_HANDLER_H
#define VELMARCON_ERRORS_ERROR_HANDLER_H

#include <map>
#include <string>

/// The error table: turns an ErrorCode into a line on standard output, and prints the usage. Printing never
/// fails a run; whether a code ends the run is the caller's decision.
class ErrorHandler {
  public:
    ErrorHandler();

    /// Prints the banner and the usage. Returns 0.
    int UsageText() const;

    /// Prints one line with code and message, after `name` (a file name without its folder) unless that is
    /// empty. Returns 0.
    int ErrorText(int code, const std::string& name) const;

    /// Prints the usage for kUsage, the error line for every other code. Returns `code`.
    int PrintError(int code) const;

    /// Prints the error line with `name` for every code, kUsage included. Returns `code`.
    int PrintError(int code, const std::string& name) const;

  private:
    std::map<int, std::string> messages_;
};

#endif  // VELMARCON_ERRORS_ERROR_HANDLER_H
