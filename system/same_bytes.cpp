// SPDX-License-Identifier: MIT
#include "system/same_bytes.h"

#include <algorithm>
#include <cstddef>

#include "system/sequential_file.h"

bool HaveSameBytes(const std::string& a, const std::string& b) {
    constexpr std::size_t piece = 64UL * 1024;
    // In pieces: an iterator over a stream's buffer would throw when the disk fails.
    SequentialFile file_a(SequentialFile::Access::kCopied);
    SequentialFile file_b(SequentialFile::Access::kCopied);
    if (!file_a.Open(a) || !file_b.Open(b) || file_a.size() != file_b.size()) {
        return false;
    }
    for (;;) {
        const auto bytes_a = file_a.Next(piece);
        const auto bytes_b = file_b.Next(piece);
        if (!bytes_a || !bytes_b || !std::ranges::equal(*bytes_a, *bytes_b)) {
            return false;
        }
        if (bytes_a->empty()) {
            return true;
        }
    }
}
