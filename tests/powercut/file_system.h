// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_POWERCUT_FILE_SYSTEM_H
#define VELMARCON_TESTS_POWERCUT_FILE_SYSTEM_H

#include <cstdint>
#include <string>
#include <vector>

namespace powercut {

/// A kind of file system and its commands; the device is appended to them.
struct FileSystem {
    std::string name;
    std::string type;     ///< for mount(2)
    std::string options;  ///< for mount(2)
    std::vector<std::string> make;
    /// Repairs without questions; empty: the file system repairs itself when mounted.
    std::vector<std::string> check;
    std::uint64_t size = 0;  ///< of the disk, in bytes
};

/// All file systems that can be tested.
const std::vector<FileSystem>& FileSystems();

/// Runs `command` on the block device. Returns its exit status.
int RunOnDevice(const std::vector<std::string>& command);

/// Mounts the block device at kDisk for the lifetime of the object.
class Mount {
  public:
    explicit Mount(const FileSystem& file_system);
    ~Mount();
    Mount(const Mount&) = delete;
    Mount& operator=(const Mount&) = delete;
    Mount(Mount&&) = delete;
    Mount& operator=(Mount&&) = delete;

    bool mounted() const { return mounted_; }

  private:
    bool mounted_;
};

/// The mount point.
inline const std::string kDisk = "/tmp/disk/";

}  // namespace powercut

#endif  // VELMARCON_TESTS_POWERCUT_FILE_SYSTEM_H
