// SPDX-License-Identifier: MIT
#include "tests/powercut/block_device.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <linux/nbd.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fstream>
#include <utility>

#include "tests/powercut/must.h"

namespace powercut {

namespace {

constexpr unsigned long kBlock = 512;
constexpr std::uint32_t kCommandMask = 0xFFFF;

static_assert(std::endian::native == std::endian::little);

std::uint32_t FromNetwork(std::uint32_t value) {
    return __builtin_bswap32(value);
}

bool Receive(int connection, std::span<std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::read(connection, bytes.data(), bytes.size());
        if (count <= 0) {
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

bool Send(int connection, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(connection, bytes.data(), bytes.size());
        if (count <= 0) {
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

template <typename Record>
std::span<std::uint8_t> BytesOf(Record& record) {
    return {reinterpret_cast<std::uint8_t*>(&record), sizeof record};
}

}  // namespace

BlockDevice::BlockDevice(std::span<std::uint8_t> bytes)
    : bytes_(bytes), device_(::open(Path().c_str(), O_RDWR | O_CLOEXEC)) {
    Must(device_ >= 0, Path());
    std::array<int, 2> ends = {};
    constexpr unsigned long flags = NBD_FLAG_HAS_FLAGS | NBD_FLAG_SEND_FLUSH | NBD_FLAG_SEND_FUA;
    Must(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0, "socketpair");
    Must(::ioctl(device_, NBD_SET_BLKSIZE, kBlock) == 0, "NBD_SET_BLKSIZE");
    Must(::ioctl(device_, NBD_SET_SIZE_BLOCKS, bytes.size() / kBlock) == 0, "NBD_SET_SIZE_BLOCKS");
    Must(::ioctl(device_, NBD_SET_FLAGS, flags) == 0, "NBD_SET_FLAGS");
    Must(::ioctl(device_, NBD_SET_SOCK, ends[0]) == 0, "NBD_SET_SOCK");
    server_ = std::thread([this, connection = ends[1]] { Serve(connection); });
    kernel_ = std::thread([this, connection = ends[0]] {
        ::ioctl(device_, NBD_DO_IT);
        ::ioctl(device_, NBD_CLEAR_SOCK);
        ::close(connection);
    });
    WaitUntilAttached();
}

/// Waits until the disk has a size, which it has as soon as it can be read. Then sets its request size to
/// that of ordinary disks, so that it gets no more writes than they do.
void BlockDevice::WaitUntilAttached() const {
    for (std::uint64_t size = 0; size == 0;) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        Must(::ioctl(device_, BLKGETSIZE64, &size) == 0, "BLKGETSIZE64");
    }
    constexpr int most_kilobytes = 1280;
    std::ofstream("/sys/block/nbd0/queue/max_sectors_kb") << most_kilobytes;
}

BlockDevice::~BlockDevice() {
    ::ioctl(device_, NBD_DISCONNECT);
    server_.join();
    kernel_.join();
    ::close(device_);
}

std::size_t BlockDevice::Requests() {
    const std::scoped_lock lock(log_lock_);
    return log_.size();
}

WriteLog BlockDevice::Log() {
    const std::scoped_lock lock(log_lock_);
    return log_;
}

void BlockDevice::Note(DiskWrite write) {
    const std::scoped_lock lock(log_lock_);
    log_.push_back(std::move(write));
}

/// Answers one request after another: when a flush is requested, all writes before it have been answered and
/// are covered by it.
void BlockDevice::Serve(int connection) {
    struct nbd_request request = {};
    Bytes data;
    while (Receive(connection, BytesOf(request))) {
        const std::uint32_t command = FromNetwork(request.type);
        const std::uint32_t kind = command & kCommandMask;
        if (kind == NBD_CMD_DISC) {
            break;
        }
        data.resize(kind == NBD_CMD_READ || kind == NBD_CMD_WRITE ? FromNetwork(request.len) : 0);
        if (kind == NBD_CMD_WRITE && !Receive(connection, data)) {
            break;
        }
        struct nbd_reply reply = {};
        reply.magic = FromNetwork(NBD_REPLY_MAGIC);
        reply.error = FromNetwork(Answer(command, __builtin_bswap64(request.from), data));
        std::memcpy(&reply.handle, &request.handle, sizeof reply.handle);
        if (!Send(connection, BytesOf(reply)) || (kind == NBD_CMD_READ && !Send(connection, data))) {
            break;
        }
    }
    ::close(connection);
}

/// Returns the error number for the kernel, 0 for success.
std::uint32_t BlockDevice::Answer(std::uint32_t command, std::uint64_t offset, Bytes& data) {
    if (offset > bytes_.size() || data.size() > bytes_.size() - offset) {
        return EINVAL;
    }
    const auto place = bytes_.subspan(offset, data.size());
    switch (command & kCommandMask) {
        case NBD_CMD_READ:
            std::ranges::copy(place, data.begin());
            return 0;
        case NBD_CMD_WRITE:
            std::ranges::copy(data, place.begin());
            Note({.offset = offset, .bytes = data, .survives = (command & NBD_CMD_FLAG_FUA) != 0});
            return 0;
        case NBD_CMD_FLUSH:
            Note({.is_flush = true});
            return 0;
        default:
            return EINVAL;
    }
}

}  // namespace powercut
