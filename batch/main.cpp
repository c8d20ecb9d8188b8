// SPDX-License-Identifier: MIT
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "batch/batch_run.h"
#include "packaging/databases.h"
#include "system/posix/program.h"

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
    const std::vector<std::string> arguments = program::Begin(argc, argv);
    return RunBatch(arguments, {OwnPath().string(), PrepareOwnDatabases});
}
