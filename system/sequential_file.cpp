// SPDX-License-Identifier: MIT
#include "system/sequential_file.h"

#include <algorithm>
#include <ios>

namespace {

/// Several times the length of a picture's file. What is longer is hardly looked at to its end.
constexpr std::uint64_t kLongestMapped = 64ULL * 1024 * 1024;

/// Stays in the processor's cache.
constexpr std::size_t kBufferSize = 64UL * 1024;

}  // namespace

bool SequentialFile::Open(const std::string& path) {
    if (access_ == Access::kMapped && mapping_.Map(path, kLongestMapped)) {
        return true;
    }
    if (!file_.Open(path)) {
        return false;
    }
    file_.stream().seekg(0);
    return true;
}

std::uint64_t SequentialFile::size() const {
    return mapping_.bytes().empty() ? file_.size() : mapping_.bytes().size();
}

void SequentialFile::Skip(std::uint64_t length) {
    const std::uint64_t skipped = std::min(length, size() - position_);
    position_ += skipped;
    const auto in_buffer = static_cast<std::size_t>(std::min<std::uint64_t>(skipped, buffer_.size() - used_));
    used_ += in_buffer;
    if (mapping_.bytes().empty() && skipped > in_buffer) {
        file_.stream().seekg(static_cast<std::streamoff>(skipped - in_buffer), std::ios::cur);
    }
}

std::optional<std::span<const std::uint8_t>> SequentialFile::Next(std::size_t length) {
    if (!IsIntact() || !file_.stream().good()) {
        return std::nullopt;
    }
    const auto there = static_cast<std::size_t>(std::min<std::uint64_t>(length, size() - position_));
    const auto start = position_;
    position_ += there;
    return mapping_.bytes().empty()
               ? NextCopied(there)
               : std::optional(mapping_.bytes().subspan(static_cast<std::size_t>(start), there));
}

/// `length` bytes are there, if those of the buffer that were not handed out are counted, too.
std::optional<std::span<const std::uint8_t>> SequentialFile::NextCopied(std::size_t length) {
    if (buffer_.size() - used_ < length) {
        buffer_.erase(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(used_));
        used_ = 0;
        const std::size_t kept = buffer_.size();
        const std::uint64_t left = size() - position_ + (length - kept);
        buffer_.resize(kept + static_cast<std::size_t>(
                                  std::min<std::uint64_t>(left, std::max(length, kBufferSize) - kept)));
        const auto read = std::span(buffer_).subspan(kept);
        if (!file_.stream().read(reinterpret_cast<char*>(read.data()),
                                 static_cast<std::streamsize>(read.size()))) {
            return std::nullopt;
        }
    }
    const auto bytes = std::span<const std::uint8_t>(buffer_).subspan(used_, length);
    used_ += length;
    return bytes;
}
