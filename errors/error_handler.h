// SPDX-License-Identifier: MIT
#ifndef VELMARCON_ERRORS_ERROR_HANDLER_H
#define VELMARCON_ERRORS_ERROR_HANDLER_H

#include <map>
#include <string>

/// The error table: prints an ErrorCode as a line on standard output, and prints the usage text. A failure to
/// print is ignored; whether a code ends the run is up to the caller.
class ErrorHandler {
  public:
    ErrorHandler();

    /// Prints the banner and the usage. Returns 0.
    int UsageText() const;

    /// Prints one line with code and message, preceded by `name` (a file name without its folder) unless it
    /// is empty. Returns 0.
    int ErrorText(int code, const std::string& name) const;

    /// Prints the usage text for kUsage and the error line for every other code. Returns `code`.
    int PrintError(int code) const;

    /// Prints the error line with `name` for every code, including kUsage. Returns `code`.
    int PrintError(int code, const std::string& name) const;

  private:
    std::map<int, std::string> messages_;
};

#endif  // VELMARCON_ERRORS_ERROR_HANDLER_H
