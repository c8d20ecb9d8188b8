// SPDX-License-Identifier: MIT
// Runs the program on many thousands of damaged inputs: for each it must print a known message or write a
// complete DNG.
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "tests/matrix/arguments.h"
#include "tests/matrix/matrix_run.h"
#include "tests/support/files.h"

namespace {

/// Puts temporary files into memory, if there is enough for the larger files of a run.
void PreferMemory() {
    constexpr const char* memory = "/dev/shm";
    constexpr std::uintmax_t needed = 1024ULL * 1024 * 1024;
    std::error_code error;
    if (std::getenv("TMPDIR") == nullptr && ::access(memory, W_OK | X_OK) == 0 &&
        std::filesystem::space(memory, error).available >= needed && !error) {
        ::setenv("TMPDIR", memory, 1);
    }
}

/// Returns freed blocks to the system at once, because memory that this process holds is counted as memory of
/// the programs that it starts.
void KeepMemoryLow() {
    constexpr int threshold = 128 * 1024;
    ::mallopt(M_MMAP_THRESHOLD, threshold);
    ::mallopt(M_TRIM_THRESHOLD, threshold);
}

}  // namespace

int main(int argc, char** argv) {
    matrix::Arguments arguments;
    if (const std::string fault = matrix::Parse({argv + 1, argv + argc}, arguments); !fault.empty()) {
        (void)std::fprintf(stderr, "damage_matrix: %s\n%s", fault.c_str(), matrix::kUsage);
        return EXIT_FAILURE;
    }
    KeepMemoryLow();
    PreferMemory();
    const support::TempFolder folder;
    return matrix::Run(arguments, folder.path().string()) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
