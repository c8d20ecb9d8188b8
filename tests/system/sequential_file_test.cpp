// SPDX-License-Identifier: MIT
#include "system/sequential_file.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace {

using Access = SequentialFile::Access;

/// Numbers, so that no two places look the same: longer than the buffer for a file that is copied.
std::string LongText() {
    std::string text;
    for (int number = 0; text.size() < 300'000; ++number) {
        text += std::to_string(number) + " ";
    }
    return text;
}

std::optional<std::string> NextText(SequentialFile& file, std::size_t length) {
    const auto bytes = file.Next(length);
    return bytes ? std::optional(std::string(bytes->begin(), bytes->end())) : std::nullopt;
}

class SequentialFileTest : public testing::TestWithParam<Access> {
  protected:
    const support::TempFolder& folder() const { return folder_; }

  private:
    support::TempFolder folder_;
};

TEST_P(SequentialFileTest, AllBytesComeInTheirOrder) {
    const std::string text = LongText();
    support::WriteFile(folder() / "file", text);
    for (const std::size_t length : {7U, 7952U, 65536U, 100'000U, 1'000'000U}) {
        SequentialFile file(GetParam());
        ASSERT_TRUE(file.Open(folder() / "file"));
        EXPECT_EQ(file.size(), text.size());
        std::string read;
        for (auto next = NextText(file, length); next && !next->empty(); next = NextText(file, length)) {
            read += *next;
        }
        EXPECT_EQ(read, text) << length;
        EXPECT_EQ(NextText(file, length), "");
        EXPECT_TRUE(file.IsIntact());
    }
}

TEST_P(SequentialFileTest, PartsOfManyLengthsFollowEachOther) {
    const std::string text = LongText();
    support::WriteFile(folder() / "file", text);
    SequentialFile file(GetParam());
    ASSERT_TRUE(file.Open(folder() / "file"));
    std::size_t position = 0;
    for (const std::size_t length : {3U, 70'000U, 0U, 65'536U, 1U, 100'000U}) {
        EXPECT_EQ(NextText(file, length), text.substr(position, length)) << position;
        position += length;
    }
}

TEST_P(SequentialFileTest, BytesArePassedOver) {
    const std::string text = LongText();
    support::WriteFile(folder() / "file", text);
    SequentialFile file(GetParam());
    ASSERT_TRUE(file.Open(folder() / "file"));
    file.Skip(108);
    EXPECT_EQ(NextText(file, 10), text.substr(108, 10));
    file.Skip(2);
    EXPECT_EQ(NextText(file, 10), text.substr(120, 10));
    file.Skip(200'000);
    EXPECT_EQ(NextText(file, 10), text.substr(200'130, 10));
    file.Skip(1'000'000);
    EXPECT_EQ(NextText(file, 10), "");
}

TEST_P(SequentialFileTest, AnEmptyFileHasNoBytes) {
    support::WriteFile(folder() / "file", "");
    SequentialFile file(GetParam());
    ASSERT_TRUE(file.Open(folder() / "file"));
    EXPECT_EQ(file.size(), 0U);
    EXPECT_EQ(NextText(file, 10), "");
    EXPECT_TRUE(file.IsIntact());
}

TEST_P(SequentialFileTest, WhatIsNoPlainFileIsNotOpened) {
    for (const auto& path : {folder() / "missing", folder().prefix(), std::string("/dev/zero")}) {
        SequentialFile file(GetParam());
        EXPECT_FALSE(file.Open(path)) << path;
    }
}

TEST_P(SequentialFileTest, NothingFollowsOnceTheFileWasMadeShorter) {
    support::WriteFile(folder() / "file", LongText());
    SequentialFile file(GetParam());
    ASSERT_TRUE(file.Open(folder() / "file"));
    ASSERT_TRUE(file.Next(10));
    std::filesystem::resize_file(folder() / "file", 0);
    bool could_be_read = true;
    for (int part = 0; part < 3 && could_be_read; ++part) {
        const auto bytes = NextText(file, 100'000);  // looks at all of them
        could_be_read = bytes && file.IsIntact();
    }
    EXPECT_FALSE(could_be_read);
    EXPECT_EQ(NextText(file, 1), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(EachAccess, SequentialFileTest, testing::Values(Access::kMapped, Access::kCopied),
                         [](const auto& access) {
                             return access.param == Access::kMapped ? "Mapped" : "Copied";
                         });

}  // namespace
