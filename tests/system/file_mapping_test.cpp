// SPDX-License-Identifier: MIT
#include "system/file_mapping.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace {

constexpr std::uint64_t kAnyLength = 1'000'000;

std::string Text(std::span<const std::uint8_t> bytes) {
    return {bytes.begin(), bytes.end()};
}

std::size_t PageSize() {
    return static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

/// Three pages of 'a' and one byte more.
std::string WriteThreePages(const support::TempFolder& folder, const char* name) {
    std::string path = folder / name;
    support::WriteFile(path, std::string(3 * PageSize() + 1, 'a'));
    return path;
}

std::ptrdiff_t Count(std::span<const std::uint8_t> bytes, char character) {
    return std::ranges::count(bytes, static_cast<std::uint8_t>(character));
}

TEST(FileMapping, HasTheBytesOfAFile) {
    const support::TempFolder folder;
    support::WriteFile(folder / "file", "123");
    std::filesystem::create_symlink("file", folder / "link");
    FileMapping mapping;
    ASSERT_TRUE(mapping.Map(folder / "link", 3));
    EXPECT_EQ(Text(mapping.bytes()), "123");
    EXPECT_TRUE(mapping.IsIntact());
}

TEST(FileMapping, WhatIsNoPlainFileOrEmptyOrTooLongIsNotMapped) {
    const support::TempFolder folder;
    support::WriteFile(folder / "file", "123");
    support::WriteFile(folder / "empty", "");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);  // opening it would wait for a writer
    for (const auto& path : {folder / "missing", folder.prefix(), folder / "empty", folder / "pipe"}) {
        FileMapping mapping;
        EXPECT_FALSE(mapping.Map(path, kAnyLength)) << path;
        EXPECT_TRUE(mapping.bytes().empty()) << path;
    }
    FileMapping mapping;
    EXPECT_FALSE(mapping.Map(folder / "file", 2));
}

TEST(FileMapping, BytesOfAFileThatWasMadeShorterAreZeros) {
    const support::TempFolder folder;
    const std::string path = WriteThreePages(folder, "file");
    FileMapping mapping;
    ASSERT_TRUE(mapping.Map(path, kAnyLength));
    EXPECT_EQ(Count(mapping.bytes(), 'a'), static_cast<std::ptrdiff_t>(3 * PageSize() + 1));
    EXPECT_TRUE(mapping.IsIntact());
    std::filesystem::resize_file(path, PageSize());
    EXPECT_EQ(Count(mapping.bytes().first(PageSize()), 'a'), static_cast<std::ptrdiff_t>(PageSize()));
    EXPECT_TRUE(mapping.IsIntact());
    EXPECT_EQ(Count(mapping.bytes(), 'a'), static_cast<std::ptrdiff_t>(PageSize()));
    EXPECT_FALSE(mapping.IsIntact());
    EXPECT_EQ(mapping.bytes().back(), 0);
}

TEST(FileMapping, OnlyTheFileThatWasMadeShorterIsDamaged) {
    const support::TempFolder folder;
    const std::string path = WriteThreePages(folder, "second");
    std::vector<std::unique_ptr<FileMapping>> mappings;
    for (const char* const name : {"first", "second", "third"}) {
        (void)WriteThreePages(folder, name);
        mappings.push_back(std::make_unique<FileMapping>());
        ASSERT_TRUE(mappings.back()->Map(folder / name, kAnyLength));
    }
    std::filesystem::resize_file(path, 0);
    for (const auto& mapping : mappings) {
        const bool is_cut = mapping == mappings[1];
        EXPECT_EQ(Count(mapping->bytes(), 'a'), is_cut ? 0 : static_cast<std::ptrdiff_t>(3 * PageSize() + 1));
        EXPECT_EQ(mapping->IsIntact(), !is_cut);
    }
}

TEST(FileMapping, OneThatIsGoneIsForgotten) {
    const support::TempFolder folder;
    auto first = std::make_unique<FileMapping>();
    auto second = std::make_unique<FileMapping>();
    FileMapping third;
    for (FileMapping* const mapping : {first.get(), second.get(), &third}) {
        ASSERT_TRUE(mapping->Map(WriteThreePages(folder, "file"), kAnyLength));
    }
    second.reset();
    first.reset();
    std::filesystem::resize_file(folder / "file", 0);
    EXPECT_EQ(Count(third.bytes(), 'a'), 0);
    EXPECT_FALSE(third.IsIntact());
}

TEST(FileMappingDeathTest, AnotherMissingByteStillEndsTheProgram) {
    const support::TempFolder folder;
    EXPECT_EXIT(
        {
            FileMapping mapping;
            (void)mapping.Map(WriteThreePages(folder, "file"), kAnyLength);
            (void)std::raise(SIGBUS);
            (void)std::raise(SIGBUS);
        },
        testing::KilledBySignal(SIGBUS), "");
}

}  // namespace
