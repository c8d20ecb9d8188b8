// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_MAPPED_FILE_H
#define VELMARCON_TESTS_MATRIX_MAPPED_FILE_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace matrix {

/// The bytes of a file, mapped: unlike a buffer, they do not count as memory of the programs started
/// meanwhile.
class MappedFile {
  public:
    explicit MappedFile(const std::string& path);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;
    MappedFile(MappedFile&&) = delete;
    MappedFile& operator=(MappedFile&&) = delete;

    /// Whether the file could be opened.
    bool there() const { return there_; }
    /// Empty if the file is empty.
    std::span<const std::uint8_t> bytes() const { return {static_cast<const std::uint8_t*>(bytes_), size_}; }

  private:
    void* bytes_ = nullptr;
    std::size_t size_ = 0;
    bool there_ = false;
};

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_MAPPED_FILE_H
