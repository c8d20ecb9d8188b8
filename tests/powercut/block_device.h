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

/// A disk of this machine whose bytes are in this process (a network block device without a network). It has
/// a write cache, as real ones do, and notes what it is asked to write.
class BlockDevice {
  public:
    /// Attaches /dev/nbd0. Ends the process when that can't be done.
    explicit BlockDevice(std::span<std::uint8_t> bytes);
    /// Detaches it. Nothing may be mounted from it.
    ~BlockDevice();
    BlockDevice(const BlockDevice&) = delete;
    BlockDevice& operator=(const BlockDevice&) = delete;
    BlockDevice(BlockDevice&&) = delete;
    BlockDevice& operator=(BlockDevice&&) = delete;

    static std::string Path() { return "/dev/nbd0"; }

    /// How many writes and flushes there were so far.
    std::size_t Requests();
    /// All of them, in the order in which they were done.
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
