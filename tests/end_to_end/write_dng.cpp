// SPDX-License-Identifier: MIT
#include "tests/end_to_end/write_dng.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/program.h"

namespace end_to_end {

std::string WriteDng(const support::TempFolder& folder, const std::vector<std::string>& options) {
    std::string path = folder / (std::string(kBase) + ".DNG");
    std::filesystem::remove(path);
    std::vector<std::string> arguments = {"-i", folder.prefix()};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const support::Outcome outcome =
        support::RunProgram(VELMARCON_PROGRAM, arguments, {.name = folder / "velmarcon"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output, "\nImage: " + std::string(kBase) + ".RAW\n\n");
    EXPECT_TRUE(std::filesystem::exists(path)) << path;
    return path;
}

}  // namespace end_to_end
