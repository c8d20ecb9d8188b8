// SPDX-License-Identifier: MIT
#ifndef VELMARCON_ERRORS_NOT_WRITTEN_H
#define VELMARCON_ERRORS_NOT_WRITTEN_H

#include <string>

/// What a run writes, as its lines name it.
namespace output_names {

constexpr const char* kDng = "DNG";
constexpr const char* kSensorDatabase = "sensor database";
constexpr const char* kReport = "report";

}  // namespace output_names

/// Prints the line that says that the file or folder `path` was not written, and why: "L1.DNG: DNG not
/// written: No space left on device". Takes no memory.
void PrintNotWritten(const std::string& path, const char* output_name, const char* reason);

#endif  // VELMARCON_ERRORS_NOT_WRITTEN_H
