// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_APP_WORKING_FOLDER_H
#define VELMARCON_TESTS_APP_WORKING_FOLDER_H

#include <filesystem>
#include <string>

/// Changes the current folder for the lifetime of the object.
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

/// Makes the file `path` with `size` zero bytes, without using disk space.
void MakeFile(const std::string& path, std::uintmax_t size = 0);

#endif  // VELMARCON_TESTS_APP_WORKING_FOLDER_H
