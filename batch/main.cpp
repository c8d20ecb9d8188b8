// SPDX-License-Identifier: MIT
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "batch/batch_run.h"
#include "packaging/databases.h"
#include "packaging/own_path.h"
#include "system/pixel_memory.h"
#include "system/standard_streams.h"

namespace {

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
    // A write that fails is reported, and no reason to die in the middle of it.
    (void)std::signal(SIGXFSZ, SIG_IGN);
    (void)std::signal(SIGPIPE, SIG_IGN);
    FillMissingStandardStreams();
    pixel_memory::RetainFreedMemory();
    const std::span<char*> all(argv, static_cast<std::size_t>(argc));
    std::vector<std::string> arguments;
    for (const char* argument : all.subspan(all.empty() ? 0 : 1)) {
        arguments.emplace_back(argument);
    }
    return RunBatch(arguments, {OwnPath().string(), PrepareOwnDatabases});
}
