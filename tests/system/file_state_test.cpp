// SPDX-License-Identifier: MIT
#include "system/file_state.h"

#include <cerrno>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace {

namespace fs = std::filesystem;

/// The state of an existing file.
std::optional<FileState> State(const std::string& path) {
    std::error_code error = std::make_error_code(std::errc::io_error);
    const auto state = StateOf(path, error);
    EXPECT_FALSE(error) << error;
    return state;
}

TEST(FileState, OfAMissingFileIsNone) {
    const support::TempFolder folder;
    std::error_code error;
    EXPECT_FALSE(StateOf(folder / "missing", error).has_value());
    EXPECT_EQ(error.value(), ENOENT);
}

TEST(FileState, OfAnInaccessibleFileIsNoneForAnotherReason) {
    const support::TempFolder folder;
    fs::create_symlink("circle", folder / "circle");
    std::error_code error;
    EXPECT_FALSE(StateOf(folder / "circle", error).has_value());
    EXPECT_EQ(error.value(), ELOOP);
}

TEST(FileState, StaysTheSameWhileTheFileDoes) {
    const support::TempFolder folder;
    support::WriteFile(folder / "file", "four");
    const auto state = State(folder / "file");
    ASSERT_TRUE(state.has_value());
    EXPECT_EQ(state->size, 4);
    EXPECT_EQ(state, State(folder / "file"));
}

TEST(FileState, OfALinkIsThatOfItsFile) {
    const support::TempFolder folder;
    support::WriteFile(folder / "file", "four");
    fs::create_symlink("file", folder / "link");
    EXPECT_EQ(State(folder / "link"), State(folder / "file"));
}

TEST(FileState, ChangesWithSizeTimeAndIdentity) {
    const support::TempFolder folder;
    const std::string path = folder / "file";
    support::WriteFile(path, "four");
    const auto original = State(path);
    support::WriteFile(path, "fifth");
    EXPECT_NE(State(path), original);

    const auto before = State(path);
    fs::last_write_time(path, fs::last_write_time(path) - std::chrono::nanoseconds(1));
    EXPECT_NE(State(path), before);

    const auto replaced = State(path);
    support::WriteFile(folder / "other", "other");
    fs::last_write_time(folder / "other", fs::last_write_time(path));
    fs::rename(folder / "other", path);
    EXPECT_NE(State(path)->inode, replaced->inode);
}

TEST(FileState, ChangesIfOnlyTheChangeTimeDiffers) {
    const support::TempFolder folder;
    support::WriteFile(folder / "file", "four");
    const auto before = State(folder / "file");
    constexpr std::chrono::milliseconds longer_than_a_tick(50);
    std::this_thread::sleep_for(longer_than_a_tick);
    fs::permissions(folder / "file", fs::perms::owner_all);
    EXPECT_NE(State(folder / "file"), before);
}

TEST(FileState, IsSettledWhenBothTimesAreOverTwoSecondsOld) {
    struct Case {
        int modified;  ///< seconds ago
        int changed;
        bool settled;
    };
    for (const Case& c : {Case{9, 9, true}, Case{4, 4, true}, Case{1, 1, false}, Case{9, 1, false},
                          Case{1, 9, false}, Case{-60, 9, false}}) {
        const std::int64_t now = std::time(nullptr);
        FileState state;
        state.modified_seconds = now - c.modified;
        state.changed_seconds = now - c.changed;
        EXPECT_EQ(state.Settled(), c.settled) << c.modified << ", " << c.changed;
    }
}

}  // namespace
