// SPDX-License-Identifier: MIT
#ifndef VELMARCON_ERRORS_STEP_LINES_H
#define VELMARCON_ERRORS_STEP_LINES_H

/// The lines of -v: a step is named before it begins, and its line is ended when it is done. What fails on
/// the way leaves the line open; the message of the error follows.
namespace step_lines {

/// How the line of a step ends that is done.
constexpr const char* kDone = "Done!";

/// Prints "`step` `name`...", or "`step`...", if the run is `verbose`.
void Begin(bool verbose, const char* step);
void Begin(bool verbose, const char* step, const char* name);

/// Prints `result` and ends the line, if the run is `verbose`.
void End(bool verbose, const char* result = kDone);

}  // namespace step_lines

#endif  // VELMARCON_ERRORS_STEP_LINES_H
