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

template <const char* Target>
bool MakeLink(const std::string& path) {
    std::error_code error;
    std::filesystem::create_symlink(Target, path, error);
    return !error;
}

bool MakeLoop(const std::string& path) {
    std::error_code error;
    std::filesystem::create_symlink(std::filesystem::path(path).filename(), path, error);
    return !error;
}

constexpr char kZero[] = "/dev/zero";
constexpr char kFull[] = "/dev/full";
constexpr char kNull[] = "/dev/null";
constexpr char kStandardInput[] = "/dev/stdin";
constexpr char kNowhere[] = "nowhere/at all";

}  // namespace

const std::vector<SpecialFile>& SpecialFiles() {
    static const std::vector<SpecialFile> files = {
        {"Pipe", MakePipe},
        {"Socket", MakeSocket},
        {"EndlessDevice", MakeLink<kZero>},
        {"FullDevice", MakeLink<kFull>},
        {"EmptyDevice", MakeLink<kNull>},
        {"StandardInput", MakeLink<kStandardInput>},
        {"LinkToNothing", MakeLink<kNowhere>},
        {"LinkToItself", MakeLoop},
    };
    return files;
}

}  // namespace hostile
