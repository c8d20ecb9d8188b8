// SPDX-License-Identifier: MIT
#include "tests/powercut/disk_memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include "tests/powercut/must.h"

namespace powercut {

DiskBytes::DiskBytes(int file, std::uint64_t size, bool shared) {
    const int sharing = (shared ? MAP_SHARED : MAP_PRIVATE) | MAP_NORESERVE;
    void* const start = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, sharing, file, 0);
    Must(start != MAP_FAILED, "mmap");
    bytes_ = {static_cast<std::uint8_t*>(start), size};
}

DiskBytes::~DiskBytes() {
    ::munmap(bytes_.data(), bytes_.size());
}

DiskMemory::DiskMemory(std::uint64_t size) : file_(::memfd_create("disk", MFD_CLOEXEC)), size_(size) {
    Must(file_ >= 0 && ::ftruncate(file_, static_cast<off_t>(size)) == 0, "memfd_create");
}

DiskMemory::~DiskMemory() {
    ::close(file_);
}

}  // namespace powercut
