// SPDX-License-Identifier: MIT
#include "batch/records.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace {

namespace fs = std::filesystem;

Record ARecord() {
    Record record;
    record.verdict = Verdict::kFailed;
    record.picture = 199999;
    record.text = "L1.JPG:\nno";
    record.kind = "no";
    record.flaws = "cut";
    record.dng = "/out/\xFF.DNG";
    record.raw_state = "1 2 3";
    record.jpg_state = "4 5 6";
    record.bia_state = "7 8 9";
    record.dng_state = "10 11 12";
    record.fingerprint = "0123456789abcdef";
    record.sha256 = "sum";
    record.made_with = ":-b 100";
    record.milliseconds = 250;
    return record;
}

void ExpectSame(const Record& record, const Record& expected) {
    EXPECT_EQ(RecordBytes(record), RecordBytes(expected));
    EXPECT_EQ(record.verdict, expected.verdict);
    EXPECT_EQ(record.picture, expected.picture);
    EXPECT_EQ(record.text, expected.text);
    EXPECT_EQ(record.flaws, expected.flaws);
    EXPECT_EQ(record.dng, expected.dng);
    EXPECT_EQ(record.fingerprint, expected.fingerprint);
    EXPECT_EQ(record.sha256, expected.sha256);
    EXPECT_EQ(record.made_with, expected.made_with);
    EXPECT_EQ(record.milliseconds, expected.milliseconds);
}

TEST(Records, AreReadAsTheyWereWritten) {
    const std::string bytes = RecordBytes(ARecord()) + RecordBytes(Record()) + RecordBytes(ARecord());
    std::size_t used = 0;
    const std::vector<Record> records = RecordsIn(bytes, used);
    EXPECT_EQ(used, bytes.size());
    ASSERT_EQ(records.size(), 3U);
    ExpectSame(records[0], ARecord());
    ExpectSame(records[1], Record());
    ExpectSame(records[2], ARecord());
}

TEST(Records, OneThatIsNotAllThereWaitsForItsRest) {
    const std::string one = RecordBytes(ARecord());
    for (std::size_t length = 0; length < one.size(); ++length) {
        std::size_t used = 1;
        EXPECT_EQ(RecordsIn(one + one.substr(0, length), used).size(), 1U);
        EXPECT_EQ(used, one.size());
    }
}

TEST(Records, AfterOneThatIsNoneNothingIsTaken) {
    const std::string good = RecordBytes(ARecord());
    for (const auto& [from, to] :
         {std::pair<std::string, std::string>{"failed", "fallen"}, {"199999", "-99999"}, {"250", "2.0"}}) {
        std::string bad = good;
        bad.replace(bad.find(from), from.size(), to);
        std::size_t used = 0;
        EXPECT_EQ(RecordsIn(good + bad.append(good), used).size(), 1U) << to;
        EXPECT_EQ(used, good.size());
    }
}

TEST(FileStates, AnotherLengthOrALaterTimeIsAnotherFile) {
    EXPECT_TRUE(SameState("10 100 5", "10 100 5"));
    EXPECT_TRUE(SameState("10 100 5", "10 102 0"));
    EXPECT_TRUE(SameState("10 100 5", "10 50 0"));
    EXPECT_FALSE(SameState("10 100 5", "10 103 0"));
    EXPECT_FALSE(SameState("10 100 5", "11 100 5"));
}

TEST(FileStates, AFileThatCameOrWentIsAnotherOne) {
    EXPECT_TRUE(SameState("", ""));
    EXPECT_FALSE(SameState("", "10 100 5"));
    EXPECT_FALSE(SameState("10 100 5", ""));
    EXPECT_FALSE(SameState("10 x", "10 100 5"));
}

TEST(FileStates, TellLengthAndTime) {
    const support::TempFolder folder;
    EXPECT_EQ(StateText(folder / "file"), "");
    EXPECT_EQ(FullStateText(folder / "file"), "");
    support::WriteFile(folder / "file", "text");
    fs::last_write_time(folder / "file", fs::file_time_type::clock::from_sys(
                                             std::chrono::sys_seconds(std::chrono::seconds(1'200'000'000))));
    EXPECT_EQ(StateText(folder / "file"), "4 1200000000 0");
}

TEST(FileStates, NoChangeEscapesTheFullState) {
    const support::TempFolder folder;
    const std::string file = folder / "file";
    support::WriteFile(file, "text");
    const std::string before = FullStateText(file);
    EXPECT_EQ(FullStateText(file), before);
    const auto time = fs::last_write_time(file);
    // The same bytes and time, in another file.
    fs::copy_file(file, folder / "copy");
    fs::last_write_time(folder / "copy", time);
    EXPECT_EQ(StateText(folder / "copy"), StateText(file));
    EXPECT_NE(FullStateText(folder / "copy"), before);
}

}  // namespace
