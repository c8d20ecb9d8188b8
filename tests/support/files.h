// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_FILES_H
#define VELMARCON_TESTS_SUPPORT_FILES_H

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace support {

/// A temporary folder for one test, removed with its contents at the end.
class TempFolder {
  public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    TempFolder(TempFolder&&) = delete;
    TempFolder& operator=(TempFolder&&) = delete;

    const std::filesystem::path& path() const { return path_; }
    /// The path of `name` in the folder.
    std::string operator/(std::string_view name) const { return (path_ / name).string(); }
    /// The folder's path with a separator at the end.
    std::string prefix() const { return path_.string() + "/"; }

  private:
    std::filesystem::path path_;
};

void WriteFile(const std::string& path, std::span<const std::uint8_t> bytes);
void WriteFile(const std::string& path, std::string_view text);
/// All bytes of a file; the test fails if it can't be read.
std::vector<std::uint8_t> ReadFile(const std::string& path);
/// All bytes of a file as text; the test fails if it can't be read.
std::string ReadText(const std::string& path);

/// The names in a folder, sorted.
std::vector<std::string> Names(const std::string& folder);

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_FILES_H
