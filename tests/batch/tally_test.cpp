// SPDX-License-Identifier: MIT
#include "batch/tally.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace {

Record Made(Verdict verdict, const std::string& text = "", const std::string& flaws = "") {
    Record record;
    record.verdict = verdict;
    record.text = text;
    record.kind = text;
    record.flaws = flaws;
    record.dng = "/out/L1.DNG";
    record.milliseconds = 1250;
    return record;
}

class TallyTest : public testing::Test {
  protected:
    void Open(bool accept_damaged = false) {
        ASSERT_EQ(tally_.Open(folder_ / "report", folder_ / "json", "-b 100", accept_damaged), "");
    }

    std::string Report() {
        EXPECT_TRUE(tally_.Close());
        return support::ReadText(folder_ / "report");
    }

    const support::TempFolder folder_;
    Tally tally_;
};

TEST_F(TallyTest, CountsAndReportsEachVerdict) {
    Open();
    tally_.Take(Made(Verdict::kConverted), "/in/L1.RAW");
    tally_.Take(Made(Verdict::kKept), "/in/L2.RAW");
    tally_.Take(Made(Verdict::kKept), "/in/L3.RAW");
    tally_.Take(Made(Verdict::kFailed, "no JPG"), "/in/L\n4.RAW");
    EXPECT_EQ(tally_.converted(), 1U);
    EXPECT_EQ(tally_.kept(), 2U);
    EXPECT_EQ(tally_.failed(), 1U);
    EXPECT_EQ(tally_.failures(), (std::vector<std::string>{"$'/in/L\\n4.RAW': no JPG"}));
    EXPECT_EQ(tally_.kinds(), (std::map<std::string, std::size_t>{{"no JPG", 1}}));
    EXPECT_EQ(
        Report(),
        "converted: /in/L1.RAW\nkept: /in/L2.RAW\nkept: /in/L3.RAW\nfailed: $'/in/L\\n4.RAW': no JPG\n");
}

TEST_F(TallyTest, RemarksAreThoseOfPicturesThatHaveADng) {
    Open();
    tally_.Take(Made(Verdict::kConverted, "no lens"), "/in/L1.RAW");
    tally_.Take(Made(Verdict::kKept, "changed"), "/in/L2.RAW");
    tally_.Take(Made(Verdict::kKept, ""), "/in/L3.RAW");
    tally_.Take(Made(Verdict::kFailed, "no"), "/in/L4.RAW");
    EXPECT_EQ(tally_.remarked(), 2U);
    EXPECT_EQ(tally_.remarks(), (std::vector<std::string>{"/in/L1.RAW: no lens", "/in/L2.RAW: changed"}));
}

TEST_F(TallyTest, DamageIsNoSuccess) {
    Open();
    tally_.Take(Made(Verdict::kConverted, "no lens", "cut"), "/in/L1.RAW");
    tally_.Take(Made(Verdict::kKept, "", "cut"), "/in/L2.RAW");
    tally_.Take(Made(Verdict::kFailed, "no", "cut"), "/in/L3.RAW");
    EXPECT_EQ(tally_.flawed(), 2U);
    EXPECT_EQ(tally_.flaws(), (std::vector<std::string>{"/in/L1.RAW: no lens; cut", "/in/L2.RAW: cut"}));
    EXPECT_EQ(tally_.remarked(), 0U);
}

TEST_F(TallyTest, DamageThatIsAcceptedIsARemark) {
    Open(true);
    tally_.Take(Made(Verdict::kConverted, "", "cut"), "/in/L1.RAW");
    EXPECT_EQ(tally_.flawed(), 0U);
    EXPECT_EQ(tally_.remarks(), (std::vector<std::string>{"/in/L1.RAW: cut"}));
}

TEST_F(TallyTest, OfManyTheFirstAreNamedAndAllAreCounted) {
    Open();
    for (int i = 0; i < 30; ++i) {
        tally_.Take(Made(Verdict::kFailed, "no"), "/in/" + std::to_string(i));
        tally_.Take(Made(Verdict::kConverted, "remark"), "/in/" + std::to_string(i));
    }
    EXPECT_EQ(tally_.failed(), 30U);
    EXPECT_EQ(tally_.failures().size(), 20U);
    EXPECT_EQ(tally_.remarked(), 30U);
    EXPECT_EQ(tally_.remarks().size(), 10U);
}

TEST_F(TallyTest, EachPictureIsALineOfJson) {
    Open();
    Record record = Made(Verdict::kConverted, "no \"lens\"", "cut");
    record.sha256 = "abc";
    tally_.Take(record, "/in/\xFF.RAW");
    tally_.Take(Made(Verdict::kFailed), "/in/L2.RAW");
    EXPECT_TRUE(tally_.Close());
    EXPECT_EQ(
        support::ReadText(folder_ / "json"),
        R"({"picture": "/in/\udcff.RAW", "dng": "/out/L1.DNG", "verdict": "converted", )"
        R"("reason": "no \"lens\"", "damage": "cut", "options": "-b 100", "seconds": 1.250, "sha256": "abc"})"
        "\n"
        R"({"picture": "/in/L2.RAW", "dng": "/out/L1.DNG", "verdict": "failed", )"
        R"("reason": "", "damage": "", "options": "-b 100", "seconds": 1.250, "sha256": null})"
        "\n");
}

TEST_F(TallyTest, WhatCannotBeWrittenIsTold) {
    EXPECT_EQ(tally_.Open(folder_ / "missing/report", "", "", false),
              "the report cannot be written: " + folder_ / "missing/report");
    EXPECT_EQ(tally_.Open(folder_ / "report", folder_ / "missing/json", "", false),
              "no JSON can be written to " + folder_ / "missing/json");
}

TEST(JsonStrings, KeepWhatIsUtf8) {
    for (const std::string text : {"plain", "写真", "Zürich", "\xF4\x8F\xBF\xBF", "\x7F"}) {
        EXPECT_EQ(JsonString(text), "\"" + text + "\"");
    }
}

TEST(JsonStrings, EscapeWhatWouldEndThem) {
    EXPECT_EQ(JsonString("a\"b\\c\n\x01"), R"("a\"b\\c\u000a\u0001")");
}

TEST(JsonStrings, TurnOtherBytesIntoLoneSurrogates) {
    EXPECT_EQ(JsonString("\x80"), R"("\udc80")");
    EXPECT_EQ(JsonString("\xC1\xBF"), R"("\udcc1\udcbf")");            // overlong
    EXPECT_EQ(JsonString("\xE0\x9F\xBF"), R"("\udce0\udc9f\udcbf")");  // overlong
    EXPECT_EQ(JsonString("\xF0\x8F\xBF\xBF"), R"("\udcf0\udc8f\udcbf\udcbf")");
    EXPECT_EQ(JsonString("\xED\xA0\x80"), R"("\udced\udca0\udc80")");  // a surrogate itself
    EXPECT_EQ(JsonString("\xF4\x90\x80\x80"), R"("\udcf4\udc90\udc80\udc80")");
    EXPECT_EQ(JsonString("\xE5\x86"), R"("\udce5\udc86")");  // cut
}

}  // namespace
