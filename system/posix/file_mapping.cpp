// SPDX-License-Identifier: MIT
#include "system/file_mapping.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <bit>
#include <cstddef>
#include <utility>

#include "system/handle.h"
#include "system/retry_on_interrupt.h"

namespace {

/// The mappings that are there, latest first. The program has one thread; a signal for a byte that cannot be
/// had comes to where the byte is looked at, when no mapping is being made.
FileMapping* latest = nullptr;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

/// A signal that no mapping is the reason for ends the program, as without this.
void OnMissingByte(int signal, siginfo_t* info, void* /*context*/) {
    const auto address = std::bit_cast<std::uintptr_t>(info->si_addr);
    for (FileMapping* mapping = latest; mapping != nullptr; mapping = mapping->earlier()) {
        if (mapping->PutZerosFrom(address)) {
            return;
        }
    }
    (void)::signal(signal, SIG_DFL);
}

bool WatchForMissingBytes() {
    static const bool is_watched = [] {
        struct sigaction action = {};
        action.sa_sigaction = OnMissingByte;
        action.sa_flags = SA_SIGINFO;
        ::sigemptyset(&action.sa_mask);
        return ::sigaction(SIGBUS, &action, nullptr) == 0;
    }();
    return is_watched;
}

/// Bytes that are only looked at, all at once where the system can do that: page by page takes longer.
void* MapWhole(const Handle& file, std::size_t length) {
    int flags = MAP_PRIVATE;
#if defined(MAP_POPULATE)
    flags |= MAP_POPULATE;
#endif
    return ::mmap(nullptr, length, PROT_READ, flags, file.Get(), 0);
}

void* AsWritable(const std::uint8_t* bytes) {
    return const_cast<std::uint8_t*>(
        bytes);  // NOLINT(cppcoreguidelines-pro-type-const-cast): as munmap wants
}

}  // namespace

FileMapping::~FileMapping() {
    if (bytes_.empty()) {
        return;
    }
    FileMapping** link = &latest;
    while (*link != this) {
        link = &(*link)->earlier_;
    }
    *link = earlier_;
    (void)::munmap(AsWritable(bytes_.data()), bytes_.size());
}

bool FileMapping::Map(const std::string& path, std::uint64_t longest) {
    constexpr int flags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;  // no pipe is waited for
    const Handle file(RetryOnInterrupt([&] { return ::open(path.c_str(), flags); }));
    struct stat status = {};
    if (!file.IsOpen() || ::fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size <= 0 || std::cmp_greater(status.st_size, longest) || !WatchForMissingBytes()) {
        return false;
    }
    const auto length = static_cast<std::size_t>(status.st_size);
    void* const begin = MapWhole(file, length);
    if (begin == MAP_FAILED) {
        return false;
    }
    bytes_ = {static_cast<const std::uint8_t*>(begin), length};
    earlier_ = std::exchange(latest, this);
    return true;
}

bool FileMapping::IsIntact() const {
    std::atomic_signal_fence(std::memory_order_seq_cst);  // bytes are looked at before
    return damaged_ == 0;
}

/// In a signal handler: it makes no more than system calls.
bool FileMapping::PutZerosFrom(std::uintptr_t address) {
    const auto begin = std::bit_cast<std::uintptr_t>(bytes_.data());
    if (address < begin || address - begin >= bytes_.size()) {
        return false;
    }
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const std::uintptr_t first = address / page * page;
    damaged_ = 1;
    return ::mmap(std::bit_cast<void*>(first), begin + bytes_.size() - first, PROT_READ,
                  MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) != MAP_FAILED;
}
