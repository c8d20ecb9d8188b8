// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_FAULTS_SMALL_MOUNT_H
#define VELMARCON_TESTS_FAULTS_SMALL_MOUNT_H

#include <string>

namespace faults {

/// Mounts a separate file system in memory over a folder, for this process and its children. Requires root
/// and permission to mount.
class SmallMount {
  public:
    SmallMount(std::string folder, const std::string& size);
    ~SmallMount();
    SmallMount(const SmallMount&) = delete;
    SmallMount& operator=(const SmallMount&) = delete;
    SmallMount(SmallMount&&) = delete;
    SmallMount& operator=(SmallMount&&) = delete;

    /// Whether the file system is mounted.
    bool mounted() const { return mounted_; }
    /// Makes the file system read-only. Returns whether that succeeded.
    bool MakeReadOnly() const;
    bool MakeWritable() const;

  private:
    std::string folder_;
    std::string options_;
    bool mounted_ = false;
};

}  // namespace faults

#endif  // VELMARCON_TESTS_FAULTS_SMALL_MOUNT_H
