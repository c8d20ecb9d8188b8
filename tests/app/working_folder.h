// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_APP_WORKING_FOLDER_H
#define VELMARCON_TESTS_APP_WORKING_FOLDER_H

#include <filesystem>
#include <string>

/// While it lives, the current folder is another one.
class WorkingFolder {
  public:
    explicit WorkingFolder(const std::filesystem::path& folder);
    ~WorkingFolder();
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;
    WorkingFolder(WorkingFolder&&) = delete;
    WorkingFolder& operator=(WorkingFolder&&) = delete;

  private:
    std::filesystem::path before_;
};

/// Makes the file `path`, `size` zero bytes long; it takes no room on the disk.
void MakeFile(const std::string& path, std::uintmax_t size = 0);

#endif  // VELMARCON_TESTS_APP_WORKING_FOLDER_H
