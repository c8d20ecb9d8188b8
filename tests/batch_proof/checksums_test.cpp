// SPDX-License-Identifier: MIT
#include "batch/proof/checksums.h"

#include <cerrno>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/files.h"
#include "tests/support/program.h"

namespace {

const std::string kSum = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";
const std::string kOther = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";

/// The check sums that are read from a file of this text.
Checksums Read(const std::string& text) {
    const support::TempFolder folder;
    support::WriteFile(folder / "SHA256SUMS", text);
    Checksums sums = {{"left", "over"}};
    EXPECT_EQ(ReadChecksums(folder.prefix(), sums), 0);
    return sums;
}

TEST(Checksums, AreWrittenInTheOrderOfTheNames) {
    const support::TempFolder folder;
    ASSERT_EQ(WriteChecksums(folder.prefix(), {{"L2.DNG", kSum}, {"L1.DNG", kOther}}), 0);
    EXPECT_EQ(support::ReadText(folder / "SHA256SUMS"), kOther + "  L1.DNG\n" + kSum + "  L2.DNG\n");
    EXPECT_EQ(support::Names(folder.path().string()), std::vector<std::string>{"SHA256SUMS"});
}

TEST(Checksums, ReplaceThoseThatWereThere) {
    const support::TempFolder folder;
    support::WriteFile(folder / "SHA256SUMS", "old");
    ASSERT_EQ(WriteChecksums(folder.prefix(), {}), 0);
    EXPECT_EQ(support::ReadText(folder / "SHA256SUMS"), "");
}

TEST(Checksums, EscapeWhatWouldBreakALine) {
    const support::TempFolder folder;
    ASSERT_EQ(WriteChecksums(folder.prefix(), {{"a\nb", kSum}, {"c\\d", kSum}, {"e\rf", kSum}}), 0);
    EXPECT_EQ(support::ReadText(folder / "SHA256SUMS"),
              "\\" + kSum + "  a\\nb\n\\" + kSum + "  c\\\\d\n\\" + kSum + "  e\\rf\n");
}

/// As the program of that name has it: for names that hold whatever a name can.
TEST(Checksums, AreThoseOfSha256sum) {
    const support::TempFolder folder;
    std::filesystem::create_directory(folder / "files");
    Checksums sums;
    for (const std::string& name :
         {std::string("plain.DNG"), std::string(" blank in front"), std::string("*star"),
          std::string("line\nend"), std::string("back\\slash\\n"), std::string("return\rend\r"),
          std::string("not UTF-8 \xFF\xFE"), std::string("(a) = b"), std::string("#hash"),
          std::string("--dash"), std::string(255, 'n')}) {
        support::WriteFile(folder / ("files/" + name), std::string());
        sums[name] = kSum;
    }
    const std::string files = folder / "files/";
    ASSERT_EQ(WriteChecksums(files, sums), 0);
    support::Start start;
    start.folder = files;
    const auto checked =
        support::RunProgram("/bin/sh", {"-c", "sha256sum --strict --quiet -c SHA256SUMS"}, start);
    EXPECT_EQ(checked.status, 0) << checked.output << checked.errors;

    std::filesystem::remove(files + "SHA256SUMS");
    for (const std::string option : {"--text", "--binary", "--tag"}) {
        const auto made =
            support::RunProgram("/bin/sh", {"-c", "LC_ALL=C sha256sum " + option + " -- *"}, start);
        EXPECT_EQ(Read(made.output), sums) << option;
    }
}

TEST(Checksums, AreReadInEveryFormOfALine) {
    const Checksums one = {{"a", kSum}};
    EXPECT_EQ(Read(kSum + "  a\n"), one);
    EXPECT_EQ(Read(kSum + " *a"), one);
    EXPECT_EQ(Read(" \t" + kSum + "  a\r\n"), one);
    EXPECT_EQ(Read("E3B0C44298FC1C149AFBF4C8996FB92427AE41E4649B934CA495991B7852B855  a\n"), one);
    EXPECT_EQ(Read("SHA256 (a) = " + kSum + "\n"), one);
    EXPECT_EQ(Read("SHA256(a)= " + kSum + "\n"), one);
    EXPECT_EQ(Read("\\SHA256 (\\\\) = " + kSum + "\n"), (Checksums{{"\\", kSum}}));
    EXPECT_EQ(Read(kOther + "  a\n" + kSum + "  a\n"), one);
}

TEST(Checksums, PassOverWhatIsNoLineOfTheirs) {
    EXPECT_EQ(Read("# " + kSum + "  a\n\n" + kSum + "\n" + kSum + "  \n" + kSum + " a\n" + kSum.substr(1) +
                   "  a\n" + kSum + "0  a\ng" + kSum.substr(1) + "  a\n\\" + kSum + "  a\\x\n\\" + kSum +
                   "  a\\\nSHA256 (a = " + kSum + "\nSHA256 a) = " + kSum + "\nSHA256 (a) " + kSum +
                   "\nSHA512 (a) = " + kSum + "\n"),
              Checksums{});
}

TEST(Checksums, AreNoneWithoutAFile) {
    const support::TempFolder folder;
    Checksums sums = {{"left", "over"}};
    EXPECT_EQ(ReadChecksums(folder.prefix(), sums), 0);
    EXPECT_EQ(sums, Checksums{});
}

TEST(Checksums, WhatCannotBeReadOrWrittenIsAnError) {
    const support::TempFolder folder;
    std::filesystem::create_directory(folder / "SHA256SUMS");
    Checksums sums;
    EXPECT_NE(ReadChecksums(folder.prefix(), sums), 0);
    EXPECT_NE(WriteChecksums(folder.prefix(), sums), 0);
    EXPECT_EQ(WriteChecksums(folder / "missing/", sums), ENOENT);
}

}  // namespace
