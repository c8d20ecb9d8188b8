// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_POWERCUT_FILE_SYSTEM_H
#define VELMARCON_TESTS_POWERCUT_FILE_SYSTEM_H

#include <cstdint>
#include <string>
#include <vector>

namespace powercut {

/// A kind of file system, and the commands for it; the device comes last.
struct FileSystem {
    std::string name;
    std::string type;     ///< as mount(2) wants it
    std::string options;  ///< the same
    std::vector<std::string> make;
    std::vector<std::string>
        check;  ///< repairs without questions; empty: the file system repairs itself when mounted
    std::uint64_t size = 0;  ///< of the disk, in bytes
};

/// All that can be tested.
const std::vector<FileSystem>& FileSystems();

/// Runs `command` on the block device. Returns its exit status.
int RunOnDevice(const std::vector<std::string>& command);

/// The block device mounted at kDisk, as long as this lives.
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

/// Where it is mounted.
inline const std::string kDisk = "/tmp/disk/";

}  // namespace powercut

#endif  // VELMARCON_TESTS_POWERCUT_FILE_SYSTEM_H
