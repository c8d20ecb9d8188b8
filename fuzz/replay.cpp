// SPDX-License-Identifier: MIT
// Runs a fuzz target on the files named on the command line, or on all files of a folder, with any compiler.
// Exit status 0 if all of them were processed; a failure ends the process.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <vector>

#include "fuzz/fuzz_target.h"

namespace {

namespace fs = std::filesystem;

/// The files at `path`: the file itself, or those of a folder sorted by name.
std::vector<fs::path> Files(const fs::path& path) {
    if (!fs::is_directory(path)) {
        return {path};
    }
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(path)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    std::ranges::sort(files);
    return files;
}

/// Returns false if the file can't be read.
bool Replay(const fs::path& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file) {
        (void)std::fprintf(stderr, "%s: cannot be read\n", path.c_str());
        return false;
    }
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::streamoff(file.tellg())));
    file.seekg(0);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    // Printed first, because after a crash this line names the input.
    (void)std::fprintf(stderr, "%s\n", path.c_str());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    return true;
}

}  // namespace

int main(int argc, char* argv[]) {
    int replayed = 0;
    for (const char* argument : std::span(argv, static_cast<std::size_t>(argc)).subspan(1)) {
        for (const fs::path& path : Files(argument)) {
            if (!Replay(path)) {
                return 1;
            }
            ++replayed;
        }
    }
    (void)std::fprintf(stderr, "%d inputs\n", replayed);
    return replayed > 0 ? 0 : 1;
}
