// SPDX-License-Identifier: MIT
#include "tests/file_systems/failing_disk.h"

#include <fcntl.h>
#include <linux/loop.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <utility>
#include <vector>

#include "tests/support/program.h"

namespace file_systems {

namespace {

/// The block device for the file `image`, which exists as long as it is mounted or `loop` is open; empty on
/// failure.
std::string LoopDevice(const std::string& image, int& loop) {
    const int control = ::open("/dev/loop-control", O_RDWR | O_CLOEXEC);
    const int number = ::ioctl(control, LOOP_CTL_GET_FREE);
    ::close(control);
    if (control < 0 || number < 0) {
        return "";
    }
    std::string device = "/dev/loop" + std::to_string(number);
    const int file = ::open(image.c_str(), O_RDWR | O_CLOEXEC);
    loop = ::open(device.c_str(), O_RDWR | O_CLOEXEC);
    struct loop_config config = {};
    config.fd = static_cast<unsigned int>(file);
    config.info.lo_flags = LO_FLAGS_AUTOCLEAR;
    const bool attached = file >= 0 && loop >= 0 && ::ioctl(loop, LOOP_CONFIGURE, &config) == 0;
    ::close(file);
    return attached ? device : "";
}

}  // namespace

FailingDisk::FailingDisk(const std::string& backing, std::string folder)
    : backing_(backing), folder_(std::move(folder)), room_(backing, "16m") {
    obstacle_ = room_.mounted() ? Attach() : "this system does not allow mounting";
}

std::string FailingDisk::Attach() {
    constexpr std::uintmax_t size = 64ULL << 20U;
    const std::string image = backing_ + "/image";
    ::close(::open(image.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    std::filesystem::resize_file(image, size);
    // Without a journal: if writing the journal failed, the file system would stop all writes before the
    // file's own writes fail.
    const auto made = support::RunProgram("/sbin/mkfs.ext4", {"-q", "-O", "^has_journal", image});
    if (made.status != 0) {
        return "no mkfs.ext4";
    }
    int loop = -1;
    const std::string device = LoopDevice(image, loop);
    mounted_ = !device.empty() && ::mount(device.c_str(), folder_.c_str(), "ext4", 0, nullptr) == 0;
    ::close(loop);
    ::rmdir((folder_ + "/lost+found").c_str());
    return mounted_ ? "" : "ext4 on a loop device is not available";
}

FailingDisk::~FailingDisk() {
    if (mounted_) {
        Empty();
        ::umount2(folder_.c_str(), MNT_DETACH);
    }
}

void FailingDisk::Fill() const {
    ::sync();
    const std::vector<char> zeros(1U << 16U);
    const int filler = ::open((backing_ + "/filler").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    while (::write(filler, zeros.data(), zeros.size()) > 0) {
    }
    ::close(filler);
}

void FailingDisk::Empty() const {
    ::unlink((backing_ + "/filler").c_str());
}

}  // namespace file_systems
