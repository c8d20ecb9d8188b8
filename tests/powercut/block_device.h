// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_POWERCUT_BLOCK_DEVICE_H
#define VELMARCON_TESTS_POWERCUT_BLOCK_DEVICE_H

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <string>
#include <thread>

#include "tests/powercut/disk_write.h"

namespace powercut {

/// A disk of this machine whose bytes are in this process (a network block device without a network). Like a
/// real disk it has a write cache; it records all write requests.
class BlockDevice {
  public:
    /// Attaches /dev/nbd0. Ends the process on failure.
    explicit BlockDevice(std::span<std::uint8_t> bytes);
    /// Detaches the disk, which must not be mounted.
    ~BlockDevice();
    BlockDevice(const BlockDevice&) = delete;
    BlockDevice& operator=(const BlockDevice&) = delete;
    BlockDevice(BlockDevice&&) = delete;
    BlockDevice& operator=(BlockDevice&&) = delete;

    static std::string Path() { return "/dev/nbd0"; }

    /// The number of writes and flushes so far.
    std::size_t Requests();
    /// All writes and flushes, in the order in which they were executed.
    WriteLog Log();

  private:
    void WaitUntilAttached() const;
    void Serve(int connection);
    std::uint32_t Answer(std::uint32_t command, std::uint64_t offset, Bytes& data);
    void Note(DiskWrite write);

    std::span<std::uint8_t> bytes_;
    int device_;
    std::mutex log_lock_;
    WriteLog log_;
    std::thread server_;
    std::thread kernel_;
};

}  // namespace powercut

#endif  // VELMARCON_TESTS_POWERCUT_BLOCK_DEVICE_H
