// SPDX-License-Identifier: MIT
#include "system/input_file.h"

#include <sys/stat.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "tests/support/descriptor_limit.h"
#include "tests/support/files.h"

namespace {

using FiveBytes = std::array<std::uint8_t, 5>;

TEST(InputFile, APlainFileIsOpenedAndMeasured) {
    const support::TempFolder folder;
    support::WriteFile(folder / "file", "123");
    support::WriteFile(folder / "empty", "");
    InputFile file;
    ASSERT_TRUE(file.Open(folder / "file"));
    EXPECT_EQ(file.size(), 3U);
    InputFile empty;
    ASSERT_TRUE(empty.Open(folder / "empty"));
    EXPECT_EQ(empty.size(), 0U);
}

TEST(InputFile, ASymbolicLinkIsFollowed) {
    const support::TempFolder folder;
    support::WriteFile(folder / "file", "123");
    std::filesystem::create_symlink("file", folder / "link");
    InputFile file;
    ASSERT_TRUE(file.Open(folder / "link"));
    EXPECT_EQ(file.size(), 3U);
}

TEST(InputFile, WhatIsNoPlainFileIsNotOpened) {
    const support::TempFolder folder;
    std::filesystem::create_directory(folder / "folder");
    std::filesystem::create_symlink("nowhere", folder / "link");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);  // opening it would wait for a writer
    for (const auto& path : {folder / "missing", folder / "folder", folder / "link", folder / "pipe",
                             std::string("/dev/zero"), std::string()}) {
        InputFile file;
        EXPECT_FALSE(file.Open(path)) << path;
    }
}

TEST(InputFile, APlainFileThatTheSystemDoesNotOpenIsNotOpened) {
    if (!support::kNoFilesCanBeLeft) {
        GTEST_SKIP() << "the sanitizers open files, too";
    }
    const support::TempFolder folder;
    support::WriteFile(folder / "file", "123");
    InputFile file;
    {
        const support::DescriptorLimit limit(0);
        EXPECT_FALSE(file.Open(folder / "file"));
    }
    EXPECT_TRUE(file.Open(folder / "file"));
}

TEST(InputFile, ReadsTheStartAsOftenAsAsked) {
    const support::TempFolder folder;
    support::WriteFile(folder / "file", "1234567");
    InputFile file;
    ASSERT_TRUE(file.Open(folder / "file"));
    for (int i = 0; i < 2; ++i) {
        FiveBytes bytes = {};
        EXPECT_TRUE(file.ReadStart(bytes));
        EXPECT_EQ(bytes, (FiveBytes{'1', '2', '3', '4', '5'}));
    }
}

TEST(InputFile, ReadsFromAnyPlaceOn) {
    const support::TempFolder folder;
    support::WriteFile(folder / "file", "1234567");
    InputFile file;
    ASSERT_TRUE(file.Open(folder / "file"));
    FiveBytes bytes = {};
    EXPECT_TRUE(file.ReadAt(2, bytes));
    EXPECT_EQ(bytes, (FiveBytes{'3', '4', '5', '6', '7'}));
    EXPECT_TRUE(file.ReadAt(4, bytes));
    EXPECT_EQ(bytes, (FiveBytes{'5', '6', '7', 0, 0}));
    for (const std::uint64_t beyond : {std::uint64_t{7}, std::uint64_t{8}, ~std::uint64_t{0}}) {
        bytes = {9, 9, 9, 9, 9};
        EXPECT_TRUE(file.ReadAt(beyond, bytes)) << beyond;
        EXPECT_EQ(bytes, FiveBytes{}) << beyond;
    }
    EXPECT_TRUE(file.ReadAt(1, bytes));
    EXPECT_EQ(bytes, (FiveBytes{'2', '3', '4', '5', '6'}));
}

TEST(InputFile, WhatTheFileDoesNotHoldBecomesZero) {
    const support::TempFolder folder;
    support::WriteFile(folder / "file", "123");
    InputFile file;
    ASSERT_TRUE(file.Open(folder / "file"));
    FiveBytes bytes = {9, 9, 9, 9, 9};
    EXPECT_TRUE(file.ReadStart(bytes));
    EXPECT_EQ(bytes, (FiveBytes{'1', '2', '3', 0, 0}));
}

TEST(InputFile, AFileThatBecameShorterAfterItWasOpenedIsNotRead) {
    const support::TempFolder folder;
    support::WriteFile(folder / "file", "12345");
    InputFile file;
    ASSERT_TRUE(file.Open(folder / "file"));
    std::filesystem::resize_file(folder / "file", 3);
    FiveBytes bytes = {9, 9, 9, 9, 9};
    EXPECT_FALSE(file.ReadStart(bytes));
    EXPECT_EQ(bytes, (FiveBytes{'1', '2', '3', 0, 0}));
}

TEST(InputFile, IsReadInPiecesFromItsStartToItsEnd) {
    const support::TempFolder folder;
    const std::string text = std::string(2'500'000, 'a') + "z";
    support::WriteFile(folder / "file", text);
    InputFile file;
    ASSERT_TRUE(file.Open(folder / "file"));
    for (int i = 0; i < 2; ++i) {
        std::string read;
        EXPECT_TRUE(file.ReadPieces([&](std::span<const char> piece) {
            read.append(piece.begin(), piece.end());
            return true;
        }));
        EXPECT_TRUE(read == text);
    }
}

TEST(InputFile, IsReadNoFurtherThanIsWanted) {
    const support::TempFolder folder;
    support::WriteFile(folder / "file", std::string(2'500'000, 'a'));
    InputFile file;
    ASSERT_TRUE(file.Open(folder / "file"));
    int pieces = 0;
    EXPECT_FALSE(file.ReadPieces([&](std::span<const char>) { return ++pieces == 0; }));
    EXPECT_EQ(pieces, 1);
    EXPECT_FALSE(file.error()) << file.error();
}

TEST(InputFile, TellsWhyItCannotBeOpenedOrRead) {
    const support::TempFolder folder;
    InputFile file;
    EXPECT_FALSE(file.Open(folder / "missing"));
    EXPECT_EQ(file.error(), std::errc::no_such_file_or_directory);
    EXPECT_FALSE(file.Open(folder.path()));
    EXPECT_EQ(file.error(), std::errc::invalid_argument);
    support::WriteFile(folder / "file", "12345");
    ASSERT_TRUE(file.Open(folder / "file"));
    EXPECT_FALSE(file.error()) << file.error();
    std::filesystem::resize_file(folder / "file", 3);
    EXPECT_FALSE(file.ReadPieces([](std::span<const char>) { return true; }));
    EXPECT_EQ(file.error(), std::errc::io_error);
}

}  // namespace
