// SPDX-License-Identifier: MIT
#include "batch/proof/tiff_directory.h"

#include <cstdint>
#include <span>
#include <vector>

#include <gtest/gtest.h>

#include "samples/tiff_entry.h"

namespace {

using samples::Entry;

/// A file of one directory at byte 8, with its values behind it.
std::vector<std::uint8_t> FileOf(const std::vector<Entry>& entries, std::uint32_t next = 0) {
    std::vector<std::uint8_t> file = {'I', 'I', 42, 0, 8, 0, 0, 0};
    std::vector<std::uint8_t> values;
    samples::AppendIfd(entries, ByteOrder::kLittleEndian, 8 + samples::TableSize(entries), next, file,
                       values);
    file.insert(file.end(), values.begin(), values.end());
    return file;
}

TEST(TiffDirectory, HoldsItsEntries) {
    const auto file =
        FileOf({samples::Short(256, 3), samples::Long(257, 70000), samples::Ascii(271, "Maker")}, 77);
    EXPECT_EQ(FirstDirectory(ByteView(file)), 8U);
    const auto directory = ReadDirectory(ByteView(file), 8);
    ASSERT_TRUE(directory);
    EXPECT_EQ(directory->entries.size(), 3U);
    EXPECT_EQ(directory->Number(256), 3U);
    EXPECT_EQ(directory->Number(257), 70000U);
    EXPECT_EQ(directory->Text(271), "Maker");
    EXPECT_EQ(directory->entries.at(271).count, 6U);
    EXPECT_EQ(directory->next, 77U);
    EXPECT_TRUE(directory->ascending);
}

TEST(TiffDirectory, TellsWhatIsMissing) {
    const auto file = FileOf({samples::Ascii(271, "Maker")});
    const auto directory = ReadDirectory(ByteView(file), 8);
    EXPECT_EQ(directory->Number(256), std::nullopt);
    EXPECT_EQ(directory->Number(271), std::nullopt);
    EXPECT_EQ(directory->Text(256), "");
    EXPECT_FALSE(ReadLinked(ByteView(file), *directory, 330));
}

TEST(TiffDirectory, TellsEntriesOutOfOrderAndOfUnknownTypes) {
    const auto disordered = FileOf({samples::Short(257, 1), samples::Short(256, 2)});
    EXPECT_FALSE(ReadDirectory(ByteView(disordered), 8)->ascending);
    const auto repeated = FileOf({samples::Short(257, 1), samples::Short(257, 2)});
    EXPECT_FALSE(ReadDirectory(ByteView(repeated), 8)->ascending);
    EXPECT_EQ(ReadDirectory(ByteView(repeated), 8)->Number(257), 2U);
    const auto unknown = FileOf({samples::RawEntry(256, 13, 1, 5), samples::Short(257, 1)});
    EXPECT_FALSE(ReadDirectory(ByteView(unknown), 8)->ascending);
    EXPECT_EQ(ReadDirectory(ByteView(unknown), 8)->entries.size(), 1U);
}

TEST(TiffDirectory, LiesWhollyInTheFile) {
    const auto file = FileOf({samples::Short(256, 3), samples::Ascii(271, "Maker")});
    for (std::size_t length = 0; length + 1 < file.size(); ++length) {  // its last byte fills up
        const auto cut = std::span(file).first(length);
        EXPECT_EQ(ReadDirectory(ByteView(cut), 8).has_value(), length >= file.size());
    }
    EXPECT_TRUE(ReadDirectory(ByteView(file), 8));
    EXPECT_FALSE(ReadDirectory(ByteView(file), file.size()));
    EXPECT_FALSE(ReadDirectory(ByteView(file), 0xFFFFFFFF));
}

TEST(TiffDirectory, CountsThatWrapAreRefused) {
    for (const std::uint32_t count : {0x20000001U, 0x80000000U, 0xFFFFFFFFU}) {
        const auto file = FileOf({samples::RawEntry(256, 5, count, 8)});
        EXPECT_FALSE(ReadDirectory(ByteView(file), 8));
    }
}

TEST(TiffDirectory, ValuesThatOverlapOverAndOverAreRefused) {
    const auto file_of = [](std::uint16_t count) {
        std::vector<Entry> entries;
        for (std::uint16_t tag = 0; tag < count; ++tag) {
            entries.push_back(samples::RawEntry(tag, 2, 60, 0));  // the first 60 bytes of the file
        }
        return FileOf(entries);
    };
    const auto one = file_of(1);
    EXPECT_FALSE(ReadDirectory(ByteView(one), 8));  // has 26 bytes
    auto longer = file_of(2);
    longer.resize(119);
    EXPECT_FALSE(ReadDirectory(ByteView(longer), 8));
    longer.resize(120);
    EXPECT_TRUE(ReadDirectory(ByteView(longer), 8));
}

TEST(TiffDirectory, OnlyLittleEndianTiffFilesHaveOne) {
    auto file = FileOf({samples::Short(256, 3)});
    EXPECT_EQ(FirstDirectory(ByteView(std::span(file).first(7))), std::nullopt);
    file[2] = 43;
    EXPECT_EQ(FirstDirectory(ByteView(file)), std::nullopt);
    file = {'M', 'M', 0, 42, 0, 0, 0, 8};
    EXPECT_EQ(FirstDirectory(ByteView(file)), std::nullopt);
}

}  // namespace
