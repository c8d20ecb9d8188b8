// SPDX-License-Identifier: MIT
#include "batch/jobs.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace {

std::vector<Task> SomeTasks() {
    return {{0, TaskMode::kConvert, "/in/a\nb.RAW", "/out/a\nb.DNG", "", {}},
            {7, TaskMode::kProve, "/in/2.RAW", "/out/2.DNG", "0123456789abcdef", {"-b", "", "100"}, false},
            {199999, TaskMode::kVerify, "/in/\xFF.DNG", "/out/\xFF.DNG", "", {"-s"}}};
}

TEST(Jobs, AreReadAsTheyWereWritten) {
    const support::TempFolder folder;
    ASSERT_FALSE(jobs::Write(folder / "job", SomeTasks()));
    const std::vector<Task> written = SomeTasks();
    const auto tasks = jobs::Read(folder / "job");
    ASSERT_TRUE(tasks.has_value());
    ASSERT_EQ(tasks->size(), 3U);
    for (std::size_t i = 0; i < tasks->size(); ++i) {
        const Task& expected = written[i];
        EXPECT_EQ((*tasks)[i].picture, expected.picture);
        EXPECT_EQ((*tasks)[i].mode, expected.mode);
        EXPECT_EQ((*tasks)[i].input, expected.input);
        EXPECT_EQ((*tasks)[i].dng, expected.dng);
        EXPECT_EQ((*tasks)[i].fingerprint, expected.fingerprint);
        EXPECT_EQ((*tasks)[i].options, expected.options);
        EXPECT_EQ((*tasks)[i].options_known, expected.options_known);
    }
}

TEST(Jobs, DamagedOnesAreNone) {
    const support::TempFolder folder;
    ASSERT_FALSE(jobs::Write(folder / "job", SomeTasks()));
    const std::string whole = support::ReadText(folder / "job");
    for (const auto& [from, to] : {std::pair<std::string, std::string>{"prove", "grove"},
                                   {"199999", "-99999"},
                                   {std::string("\0003\000-b", 5), std::string("\0009\000-b", 5)}}) {
        std::string damaged = whole;
        ASSERT_NE(damaged.find(from), std::string::npos);
        damaged.replace(damaged.find(from), from.size(), to);
        support::WriteFile(folder / "damaged", damaged);
        EXPECT_FALSE(jobs::Read(folder / "damaged").has_value()) << to;
    }
    EXPECT_FALSE(jobs::Read(folder / "missing").has_value());
}

TEST(Jobs, SettingsAreReadAsTheyWereWritten) {
    const support::TempFolder folder;
    const WorkerSettings written = {{"-b", "1 2"}, "/data folder/", false, true, false, true, true};
    ASSERT_FALSE(jobs::WriteSettings(folder / "settings", written));
    const auto read = jobs::ReadSettings(folder / "settings");
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->options, written.options);
    EXPECT_EQ(read->databases, written.databases);
    EXPECT_FALSE(read->verify);
    EXPECT_TRUE(read->rename);
    EXPECT_FALSE(read->keep_time);
    EXPECT_TRUE(read->checksums);
    EXPECT_TRUE(read->accept_damaged);
}

TEST(Jobs, SettingsThatWereCutAreNone) {
    const support::TempFolder folder;
    ASSERT_FALSE(jobs::WriteSettings(folder / "settings",
                                     {{"-b", "100"}, "/data/", true, false, false, false, false}));
    const std::string whole = support::ReadText(folder / "settings");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        support::WriteFile(folder / "cut", whole.substr(0, length));
        EXPECT_FALSE(jobs::ReadSettings(folder / "cut").has_value()) << length;
    }
}

}  // namespace
