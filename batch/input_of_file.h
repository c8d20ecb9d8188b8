// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_INPUT_OF_FILE_H
#define VELMARCON_BATCH_INPUT_OF_FILE_H

#include <string>

/// The file by which the picture is known that the file at `path` belongs to, by its name: the RAW file of a
/// pair, or the DNG that the camera wrote. Returns `path` if it belongs to no picture.
std::string InputOfFile(const std::string& path);

#endif  // VELMARCON_BATCH_INPUT_OF_FILE_H
