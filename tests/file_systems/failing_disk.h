// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_FILE_SYSTEMS_FAILING_DISK_H
#define VELMARCON_TESTS_FILE_SYSTEMS_FAILING_DISK_H

#include <optional>
#include <string>

#include "tests/faults/small_mount.h"

namespace file_systems {

/// A disk, mounted over a folder, that accepts writes and only later finds that it cannot store them: an ext4
/// file system in a file that may not grow. Requires root and permission to mount.
class FailingDisk {
  public:
    /// `backing` is a folder for the file; it is hidden for the lifetime of the object.
    FailingDisk(const std::string& backing, std::string folder);
    ~FailingDisk();
    FailingDisk(const FailingDisk&) = delete;
    FailingDisk& operator=(const FailingDisk&) = delete;
    FailingDisk(FailingDisk&&) = delete;
    FailingDisk& operator=(FailingDisk&&) = delete;

    /// Why the disk is not available on this machine; empty if it is.
    const std::string& obstacle() const { return obstacle_; }

    /// From now on the disk cannot store anything new.
    void Fill() const;
    /// Makes the disk work again.
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
