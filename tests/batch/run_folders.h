// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_BATCH_RUN_FOLDERS_H
#define VELMARCON_TESTS_BATCH_RUN_FOLDERS_H

#include <filesystem>
#include <string>
#include <vector>

#include "batch/batch_options.h"
#include "batch/picture.h"
#include "batch/trees.h"
#include "tests/support/files.h"

/// A tree of one folder `in` with the picture L1, a folder `out` for its DNG, and a place for states. The
/// files are as short as a test may have them: nothing here looks into them.
struct RunFolders {
    RunFolders() {
        for (const char* const name : {"in", "out"}) {
            std::filesystem::create_directory(top / name);
        }
        support::WriteFile(raw, "RAW");
        support::WriteFile(top / "in/L1.JPG", "JPG");
        options.folders = {top / "in"};
        options.output = top / "out";
        options.state = top / "state";
    }

    const support::TempFolder folder;
    const std::filesystem::path top = std::filesystem::canonical(folder.path());
    const std::string raw = top / "in/L1.RAW";
    const std::string dng = top / "out/L1.DNG";
    BatchOptions options;
    const std::vector<Tree> trees = {{top / "in", top / "out", {}}};
    const std::vector<Picture> pictures = {{0, "L1.RAW"}};
};

#endif  // VELMARCON_TESTS_BATCH_RUN_FOLDERS_H
