// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_DATABASE_FILE_H
#define VELMARCON_CALIBRATE_DATABASE_FILE_H

#include <string>

/// The file of a sensor database.
namespace database_file {

/// Reads the whole of the file at `path`, which may be a symbolic link; an empty text if there is none.
/// Returns why it cannot be read, or an empty text.
[[nodiscard]] std::string Read(const std::string& path, std::string& text);

/// Replaces the file, which held `old_text`, by `new_text`, whole or not at all. What it held is first kept
/// under the name with the next number, as sensdb.ini.1, unless the highest number holds it already; `kept`
/// then names the copy. Returns why nothing was written, or an empty text.
[[nodiscard]] std::string Replace(const std::string& path, const std::string& old_text,
                                  const std::string& new_text, std::string& kept);

}  // namespace database_file

#endif  // VELMARCON_CALIBRATE_DATABASE_FILE_H
