// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_FILE_WRITER_H
#define VELMARCON_SAMPLES_FILE_WRITER_H

#include <cstdint>
#include <span>
#include <string>

namespace samples {

/// Writes `bytes` to the file `path`. Returns an error message, empty on success. An existing file is an
/// error unless `overwrite` is set.
std::string WriteFile(const std::string& path, std::span<const std::uint8_t> bytes, bool overwrite = false);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_FILE_WRITER_H
