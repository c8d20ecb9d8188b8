// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_FILE_SYSTEMS_FAILING_DISK_H
#define VELMARCON_TESTS_FILE_SYSTEMS_FAILING_DISK_H

#include <optional>
#include <string>

#include "tests/faults/small_mount.h"

namespace file_systems {

/// A disk in place of a folder that takes what is written, and only later finds that it cannot keep it: an
/// ext4 file system in a file that may not grow. It takes root and the kernel's leave to mount.
class FailingDisk {
  public:
    /// `backing` is a folder for the file, which is hidden until the end.
    FailingDisk(const std::string& backing, std::string folder);
    ~FailingDisk();
    FailingDisk(const FailingDisk&) = delete;
    FailingDisk& operator=(const FailingDisk&) = delete;
    FailingDisk(FailingDisk&&) = delete;
    FailingDisk& operator=(FailingDisk&&) = delete;

    /// Why it can't be there on this machine; empty: it is there.
    const std::string& obstacle() const { return obstacle_; }

    /// From now on nothing new can be kept.
    void Fill() const;
    /// All is well again.
    void Empty() const;

  private:
    std::string Attach();

    std::string backing_;
    std::string folder_;
    faults::SmallMount room_;
    bool mounted_ = false;
    std::string obstacle_;
};

}  // namespace file_systems

#endif  // VELMARCON_TESTS_FILE_SYSTEMS_FAILING_DISK_H
