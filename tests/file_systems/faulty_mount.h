// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_FILE_SYSTEMS_FAULTY_MOUNT_H
#define VELMARCON_TESTS_FILE_SYSTEMS_FAULTY_MOUNT_H

#include <sys/types.h>

#include <string>
#include <string_view>

#include "tests/support/files.h"

namespace file_systems {

/// Mounts a folder with a fault, in another place or over itself.
class FaultyMount {
  public:
    /// `fault` is a name of kFolderFaults.
    FaultyMount(std::string_view fault, const std::string& source, const std::string& mount_point);
    ~FaultyMount();
    FaultyMount(const FaultyMount&) = delete;
    FaultyMount& operator=(const FaultyMount&) = delete;
    FaultyMount(FaultyMount&&) = delete;
    FaultyMount& operator=(FaultyMount&&) = delete;

    /// Why the mount is not available on this machine; empty if it is.
    const std::string& obstacle() const { return obstacle_; }

  private:
    std::string Obstacle(const std::string& mount_point) const;

    support::TempFolder logs_;
    pid_t server_ = 0;
    std::string obstacle_;
};

}  // namespace file_systems

#endif  // VELMARCON_TESTS_FILE_SYSTEMS_FAULTY_MOUNT_H
