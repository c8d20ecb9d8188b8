// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_TOLD_LINES_H
#define VELMARCON_BATCH_TOLD_LINES_H

#include <cstddef>
#include <string>
#include <vector>

/// The lines that a run prints for whoever started it.
namespace told_lines {

/// Prints `text` as a line on standard output at once, unless `quiet`.
void Say(bool quiet, const std::string& text);

/// Prints `text` on standard error, after everything that standard output has had so far. Returns `status`.
int Refuse(int status, const std::string& text);

/// Prints "WHAT: LINE" for each of the `lines`, and how many more there are of `all`.
void PrintNamed(const char* what, const std::vector<std::string>& lines, std::size_t all);

/// The first ten of `texts`, fit to be shown.
std::vector<std::string> FirstShown(const std::vector<std::string>& texts);

}  // namespace told_lines

#endif  // VELMARCON_BATCH_TOLD_LINES_H
