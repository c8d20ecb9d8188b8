// SPDX-License-Identifier: MIT
#include "samples/guide_folders.h"

#include <cstdint>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kRawSize = 21041100;
constexpr std::uintmax_t kCameraDngSize = 10575296;

TEST(GuideFolders, HoldTheFilesThatTheGuideNames) {
    const support::TempFolder scratch;
    const fs::path top = scratch.path() / "try";
    ASSERT_EQ(samples::WriteGuideFolders(top.string()), "");
    for (const char* pair :
         {"DCIM/100LEICA/L1000123", "DCIM/100LEICA/L1000124", "card/L1000123", "card/L1000124",
          "dark/L1000200", "sensor/later/L1000205", "sky/L1000201", "uncoded/L1000140",
          "pictures/2026/08-02/L1000420", "pictures/2026/03-15 harbour/L1000310",
          "pictures/2026/03-15 harbour/L1000311"}) {
        EXPECT_EQ(fs::file_size((top / pair).string() + ".RAW"), kRawSize) << pair;
        EXPECT_TRUE(fs::is_regular_file((top / pair).string() + ".JPG")) << pair;
    }
    EXPECT_EQ(fs::file_size(top / "dark-frames/L1000125.RAW"), kRawSize);
    EXPECT_EQ(fs::file_size(top / "old-dngs/L1000125.DNG"), kCameraDngSize);
    EXPECT_TRUE(fs::is_empty(top / "dng"));
    EXPECT_TRUE(fs::is_empty(top / "repaired"));
    EXPECT_FALSE(fs::exists(top / "originals"));
}

TEST(GuideFolders, AreNotWrittenIntoAnExistingFolder) {
    const support::TempFolder scratch;
    EXPECT_EQ(samples::WriteGuideFolders(scratch.path().string()),
              scratch.path().string() + " exists already");
    EXPECT_TRUE(fs::is_empty(scratch.path()));
}

}  // namespace
