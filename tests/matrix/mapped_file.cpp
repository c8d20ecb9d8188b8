// SPDX-License-Identifier: MIT
#include "tests/matrix/mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace matrix {

MappedFile::MappedFile(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return;
    }
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0 && status.st_size > 0) {
        const auto size = static_cast<std::size_t>(status.st_size);
        void* const bytes = ::mmap(nullptr, size, PROT_READ, MAP_SHARED | MAP_POPULATE, descriptor, 0);
        if (bytes != MAP_FAILED) {
            bytes_ = bytes;
            size_ = size;
        }
    }
    there_ = S_ISREG(status.st_mode) && (status.st_size == 0 || bytes_ != nullptr);
    ::close(descriptor);
}

MappedFile::~MappedFile() {
    if (bytes_ != nullptr) {
        ::munmap(bytes_, size_);
    }
}

}  // namespace matrix
