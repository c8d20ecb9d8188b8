// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_FILE_WRITER_H
#define VELMARCON_SAMPLES_FILE_WRITER_H

#include <cstdint>
#include <span>
#include <string>

namespace samples {

/// Writes `bytes` as the file `path`. Returns an empty text, or what failed. An existing file is an error
/// unless `overwrite`.
std::string WriteFile(const std::string& path, std::span<const std::uint8_t> bytes, bool overwrite = false);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_FILE_WRITER_H
