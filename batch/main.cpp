// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "batch/batch_run.h"
#include "packaging/databases.h"
#include "system/pixel_memory.h"
#include "system/posix/program.h"
#include "system/posix/write_signals.h"
#include "system/standard_streams.h"

namespace {

std::filesystem::path OwnPath() {
    return program::OwnFile().value_or(VELMARCON_INSTALLED_BATCH);
}

/// Those that the installed command uses.
std::string PrepareOwnDatabases() {
    const Databases databases = PrepareDatabases(OwnPath().parent_path().parent_path());
    for (const std::string& remark : databases.remarks) {
        (void)std::fprintf(stderr, "velmarcon-batch: %s\n", remark.c_str());
    }
    return (databases.folder / "").string();
}

}  // namespace

int main(int argc, char* argv[]) {
    IgnoreWriteSignals();
    FillMissingStandardStreams();
    pixel_memory::RetainFreedMemory();
    const std::span<char*> all(argv, static_cast<std::size_t>(argc));
    std::vector<std::string> arguments;
    for (const char* argument : all.subspan(all.empty() ? 0 : 1)) {
        arguments.emplace_back(argument);
    }
    return RunBatch(arguments, {OwnPath().string(), PrepareOwnDatabases});
}
