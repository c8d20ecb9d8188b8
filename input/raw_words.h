// SPDX-License-Identifier: MIT
#ifndef VELMARCON_INPUT_RAW_WORDS_H
#define VELMARCON_INPUT_RAW_WORDS_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/pixel.h"
#include "system/input_file.h"

namespace raw_words {

/// Reads words of a sensor dump, from its word `first` on, out of the first `size` bytes of `file`. Words
/// beyond the end of the file are 0; bytes after `size` are ignored. Returns false if the file can't be read.
[[nodiscard]] bool Read(InputFile& file, std::uint64_t size, std::size_t first, std::span<Pixel> words);

}  // namespace raw_words

#endif  // VELMARCON_INPUT_RAW_WORDS_H
