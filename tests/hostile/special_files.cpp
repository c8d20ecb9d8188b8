// SPDX-License-Identifier: MIT
#include "tests/hostile/special_files.h"

#include <sys/stat.h>

#include <filesystem>
#include <system_error>

namespace hostile {

namespace {

bool MakePipe(const std::string& path) {
    return ::mkfifo(path.c_str(), 0600) == 0;
}

bool MakeSocket(const std::string& path) {
    return ::mknod(path.c_str(), S_IFSOCK | 0600, 0) == 0;
}

bool MakeLink(const char* target, const std::string& path) {
    std::error_code error;
    std::filesystem::create_symlink(target, path, error);
    return !error;
}

bool MakeLoop(const std::string& path) {
    std::error_code error;
    std::filesystem::create_symlink(std::filesystem::path(path).filename(), path, error);
    return !error;
}

}  // namespace

const std::vector<SpecialFile>& SpecialFiles() {
    static const std::vector<SpecialFile> files = {
        {"Pipe", MakePipe},
        {"Socket", MakeSocket},
        {"EndlessDevice", [](const std::string& path) { return MakeLink("/dev/zero", path); }, "/dev/zero"},
        {"FullDevice", [](const std::string& path) { return MakeLink("/dev/full", path); }, "/dev/full"},
        {"EmptyDevice", [](const std::string& path) { return MakeLink("/dev/null", path); }, "/dev/null"},
        {"StandardInput", [](const std::string& path) { return MakeLink("/dev/stdin", path); }, "/dev/stdin"},
        {"LinkToNothing", [](const std::string& path) { return MakeLink("nowhere/at all", path); }},
        {"LinkToItself", MakeLoop},
    };
    return files;
}

}  // namespace hostile
