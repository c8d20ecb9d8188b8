// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_FAULTS_SMALL_MOUNT_H
#define VELMARCON_TESTS_FAULTS_SMALL_MOUNT_H

#include <string>

namespace faults {

/// A file system in memory of its own in the place of a folder, for this process and those that it starts. It
/// takes root and the kernel's leave to mount.
class SmallMount {
  public:
    SmallMount(std::string folder, const std::string& size);
    ~SmallMount();
    SmallMount(const SmallMount&) = delete;
    SmallMount& operator=(const SmallMount&) = delete;
    SmallMount(SmallMount&&) = delete;
    SmallMount& operator=(SmallMount&&) = delete;

    /// Whether it is there.
    bool mounted() const { return mounted_; }
    /// Nothing in it can be changed any more. Returns whether that could be done.
    bool MakeReadOnly() const;
    bool MakeWritable() const;

  private:
    std::string folder_;
    std::string options_;
    bool mounted_ = false;
};

}  // namespace faults

#endif  // VELMARCON_TESTS_FAULTS_SMALL_MOUNT_H
