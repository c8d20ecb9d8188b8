// SPDX-License-Identifier: MIT
#include <array>
#include <climits>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dng/dnglib.h"
#include "input/read_input_data.h"
#include "tests/dng/expected_tags.h"
#include "tests/support/capture_stdout.h"

namespace {

using namespace std::string_literals;

constexpr std::uint16_t kTag = 777;

struct Addition {
    const char* name;
    std::function<int(DNGlib&, DNGlib::IFD*)> add;
    std::string listing;

    friend void PrintTo(const Addition& test, std::ostream* out) { *out << test.name; }
};

class AddIFDTag : public testing::TestWithParam<Addition> {};

TEST_P(AddIFDTag, StoresTypeCountAndLittleEndianBytes) {
    DNGlib dng(nullptr, nullptr);
    DNGlib::IFD ifd;
    EXPECT_EQ(GetParam().add(dng, &ifd), 0);
    EXPECT_EQ(expected::Listing(ifd), "777 " + GetParam().listing + "\n");
    EXPECT_EQ(ifd[kTag].position, 0U);
}

constexpr std::array<std::uint8_t, 3> kBytes = {1, 0, 255};
constexpr std::array<char, 2> kSBytes = {'\x01', '\xFF'};
constexpr std::array<std::uint16_t, 2> kShorts = {2, 0xABCD};
constexpr std::array<short, 2> kSShorts = {-2, 258};
constexpr std::array<unsigned int, 2> kLongs = {0x01020304, 0xFFFFFFFF};
constexpr std::array<int, 2> kSLongs = {-2, INT_MIN};
constexpr std::array<unsigned int, 2> kOver = {1, 0x80000000};
constexpr std::array<int, 2> kSOver = {207, -1};

const std::vector<Addition> kAdditions = {
    {"Bytes", [](auto& dng, auto* ifd) { return dng.AddIFDTag(ifd, kTag, kBytes.data(), 3U); },
     "type 1 count 3: 01 00 FF"},
    {"SBytes", [](auto& dng, auto* ifd) { return dng.AddIFDTag(ifd, kTag, kSBytes.data(), 2U); },
     "type 6 count 2: 01 FF"},
    {"Shorts", [](auto& dng, auto* ifd) { return dng.AddIFDTag(ifd, kTag, kShorts.data(), 2U); },
     "type 3 count 2: 02 00 CD AB"},
    {"SShorts", [](auto& dng, auto* ifd) { return dng.AddIFDTag(ifd, kTag, kSShorts.data(), 2U); },
     "type 8 count 2: FE FF 02 01"},
    {"Longs", [](auto& dng, auto* ifd) { return dng.AddIFDTag(ifd, kTag, kLongs.data(), 2U); },
     "type 4 count 2: 04 03 02 01 FF FF FF FF"},
    {"SLongs", [](auto& dng, auto* ifd) { return dng.AddIFDTag(ifd, kTag, kSLongs.data(), 2U); },
     "type 9 count 2: FE FF FF FF 00 00 00 80"},
    {"Rationals",
     [](auto& dng, auto* ifd) { return dng.AddIFDTag(ifd, kTag, kLongs.data(), kOver.data(), 2U); },
     "type 5 count 2: 04 03 02 01 01 00 00 00 FF FF FF FF 00 00 00 80"},
    {"SRationals",
     [](auto& dng, auto* ifd) { return dng.AddIFDTag(ifd, kTag, kSLongs.data(), kSOver.data(), 2U); },
     "type 10 count 2: FE FF FF FF CF 00 00 00 00 00 00 80 FF FF FF FF"},
    {"OneLong", [](auto& dng, auto* ifd) { return dng.AddIFDTag(ifd, kTag, 0x80000001U); },
     "type 4 count 1: 01 00 00 80"},
    {"OneSLong", [](auto& dng, auto* ifd) { return dng.AddIFDTag(ifd, kTag, -3); },
     "type 9 count 1: FD FF FF FF"},
    {"OneShort",
     [](auto& dng, auto* ifd) { return dng.AddIFDTag(ifd, kTag, static_cast<std::uint16_t>(0x8001)); },
     "type 3 count 1: 01 80"},
    {"OneSShort", [](auto& dng, auto* ifd) { return dng.AddIFDTag(ifd, kTag, static_cast<short>(-3)); },
     "type 8 count 1: FD FF"},
    {"OneByte", [](auto& dng, auto* ifd) { return dng.AddIFDTag(ifd, kTag, static_cast<std::uint8_t>(200)); },
     "type 1 count 1: C8"},
    {"OneSByte", [](auto& dng, auto* ifd) { return dng.AddIFDTag(ifd, kTag, '\xFD'); }, "type 6 count 1: FD"},
    {"OneRational", [](auto& dng, auto* ifd) { return dng.AddIFDTag(ifd, kTag, 300U, 1U); },
     "type 5 count 1: 2C 01 00 00 01 00 00 00"},
    {"OneSRational", [](auto& dng, auto* ifd) { return dng.AddIFDTag(ifd, kTag, -110, 207); },
     "type 10 count 1: 92 FF FF FF CF 00 00 00"},
    {"OneByteOfAType",
     [](auto& dng, auto* ifd) {
         return dng.AddIFDTag(ifd, kTag, static_cast<std::uint8_t>(3), static_cast<std::uint16_t>(7));
     },
     "type 7 count 1: 03"},
};

INSTANTIATE_TEST_SUITE_P(Overloads, AddIFDTag, testing::ValuesIn(kAdditions),
                         testing::PrintToStringParamName());

TEST(IFDTag, GenericBytesAreCountedInElementsOfTheirType) {
    struct Case {
        std::uint16_t type;
        unsigned int bytes;
        unsigned int count;
    };
    constexpr std::array<std::uint8_t, 16> data = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    for (const auto& [type, bytes, count] :
         {Case{1, 3, 3}, Case{2, 5, 5}, Case{6, 1, 1}, Case{7, 7, 7}, Case{3, 6, 3}, Case{8, 2, 1},
          Case{4, 8, 2}, Case{9, 4, 1}, Case{5, 16, 2}, Case{10, 8, 1}}) {
        DNGlib dng(nullptr, nullptr);
        DNGlib::IFD ifd;
        EXPECT_EQ(dng.AddIFDTag(&ifd, kTag, data.data(), type, bytes), 0);
        EXPECT_EQ(ifd[kTag].type, type);
        EXPECT_EQ(ifd[kTag].count, count) << type;
        EXPECT_EQ(ifd[kTag].length, bytes) << type;
        EXPECT_EQ(ifd[kTag].value, std::vector(data.begin(), data.begin() + bytes)) << type;
    }
}

TEST(IFDTag, TextsEndInOneNulAndLongOnesHaveAnEvenLength) {
    struct Case {
        std::string text;
        std::string listing;
    };
    // "ABCDEFGH", 8 letters, has an odd length with its NUL and gets a second NUL, which only the length
    // includes.
    const std::vector<Case> cases = {
        {"", "777 type 2 count 1: 00\n"},
        {"\0"s, "777 type 2 count 1: 00\n"},
        {"AB", "777 type 2 count 3: 41 42 00\n"},
        {"AB\0"s, "777 type 2 count 3: 41 42 00\n"},
        {"ABC", "777 type 2 count 4: 41 42 43 00\n"},
        {"ABCD", "777 type 2 count 5: 41 42 43 44 00 00\n"},
        {"ABCD\0"s, "777 type 2 count 5: 41 42 43 44 00 00\n"},
        {"ABCD\0\0"s, "777 type 2 count 6: 41 42 43 44 00 00\n"},
        {"ABCDE", "777 type 2 count 6: 41 42 43 44 45 00\n"},
        {"A\0B"s, "777 type 2 count 4: 41 00 42 00\n"},
        {"M8 Digital Camera", "777 type 2 count 18: 4D 38 20 44 69 67 69 74 61 6C 20 43 61 6D 65 72 61 00\n"},
        {"M8RAW Digital Camera",
         "777 type 2 count 21: 4D 38 52 41 57 20 44 69 67 69 74 61 6C 20 43 61 6D 65 72 61 00 00\n"},
    };
    for (const auto& [text, listing] : cases) {
        DNGlib dng(nullptr, nullptr);
        DNGlib::IFD ifd;
        EXPECT_EQ(dng.AddIFDTag(&ifd, kTag, text), 0);
        EXPECT_EQ(expected::Listing(ifd), listing);
    }
}

TEST(IFDTag, AddingATagAgainReplacesAllOfIt) {
    DNGlib dng(nullptr, nullptr);
    DNGlib::IFD ifd;
    dng.AddIFDTag(&ifd, kTag, "a text"s);
    dng.UpdateIFDTagPos(&ifd, kTag, 1234);
    dng.AddIFDTag(&ifd, kTag, 5U);
    EXPECT_EQ(expected::Listing(ifd), "777 type 4 count 1: 05 00 00 00\n");
    EXPECT_EQ(ifd[kTag].position, 0U);
}

TEST(IFDTag, EntriesAreInAscendingOrder) {
    DNGlib dng(nullptr, nullptr);
    DNGlib::IFD ifd;
    for (const unsigned int tag : {50779U, 254U, 34665U, 33421U}) {
        dng.AddIFDTag(&ifd, static_cast<std::uint16_t>(tag), "A"s);
    }
    EXPECT_EQ(expected::Listing(ifd),
              "254 type 2 count 2: 41 00\n33421 type 2 count 2: 41 00\n"
              "34665 type 2 count 2: 41 00\n50779 type 2 count 2: 41 00\n");
}

TEST(IFDTag, GetElementGivesTheStoredEntry) {
    DNGlib dng(nullptr, nullptr);
    DNGlib::IFD ifd;
    dng.AddIFDTag(&ifd, kTag, 5U);
    DNGlib::IFDTag* const entry = dng.GetElement(kTag, &ifd);
    EXPECT_EQ(entry, &ifd.at(kTag));
    EXPECT_EQ(entry->tag, kTag);
}

TEST(IFDTag, UpdateSetsThePositionAlone) {
    DNGlib dng(nullptr, nullptr);
    DNGlib::IFD ifd;
    dng.AddIFDTag(&ifd, kTag, 5U);
    EXPECT_EQ(dng.UpdateIFDTagPos(&ifd, kTag, 0xFFFFFFFE), 0);
    EXPECT_EQ(ifd[kTag].position, 0xFFFFFFFEU);
    EXPECT_EQ(expected::Listing(ifd), "777 type 4 count 1: 05 00 00 00\n");
}

TEST(IFDTag, UpdateOfAnAbsentTagMakesAnEmptyEntry) {
    DNGlib dng(nullptr, nullptr);
    DNGlib::IFD ifd;
    EXPECT_EQ(dng.UpdateIFDTagPos(&ifd, kTag, 8), 0);
    ASSERT_EQ(ifd.count(kTag), 1U);
    EXPECT_EQ(ifd[kTag].position, 8U);
    EXPECT_EQ(ifd[kTag].length, 0U);
    EXPECT_TRUE(ifd[kTag].value.empty());
}

TEST(IFDTag, BothConstructorsBeginWithEmptyIFDs) {
    ReadInputData record;
    for (const DNGlib& dng : {DNGlib(nullptr, nullptr), DNGlib(&record, nullptr, nullptr)}) {
        EXPECT_TRUE(dng.ifd0().empty());
        EXPECT_TRUE(dng.sub_ifd().empty());
        EXPECT_TRUE(dng.exif_ifd().empty());
    }
}

struct BlackLevelCase {
    std::uint16_t iso;
    std::uint16_t value;
    const char* bytes;

    friend void PrintTo(const BlackLevelCase& test, std::ostream* out) {
        *out << "Iso" << test.iso << "Value" << test.value;
    }
};

class BlackLevel : public testing::TestWithParam<BlackLevelCase> {};

TEST_P(BlackLevel, GrowsWithIsoAndKeepsItsLow16Bits) {
    ReadInputData record;
    record.Exif.ISOSpeedRatings = GetParam().iso;
    DNGlib dng(&record, nullptr, nullptr);
    DNGlib::IFD ifd;
    const std::string text =
        support::CaptureStdout([&] { EXPECT_EQ(dng.setBlackLevel(&ifd, GetParam().value), 0); });
    EXPECT_EQ(text, "");
    EXPECT_EQ(expected::Listing(ifd),
              "50713 type 3 count 2: 01 00 01 00\n50714 type 3 count 1:"s + GetParam().bytes + "\n");
}

const std::vector<BlackLevelCase> kBlackLevels = {
    {160, 92, " 5C 00"},    {200, 92, " 5C 00"},      // 92
    {0, 92, " 5C 00"},      {321, 92, " 5C 00"},      // 92
    {320, 92, " B8 00"},    {640, 92, " 70 01"},      // 184, 368
    {1250, 92, " E0 02"},   {2500, 92, " C0 05"},     // 736, 1472
    {2500, 0, " 00 00"},    {2500, 5000, " 80 38"},   // 80000 - 65536 = 14464
    {160, 65535, " FF FF"}, {2500, 65535, " F0 FF"},  // 1048560 - 15 * 65536 = 65520
};

INSTANTIATE_TEST_SUITE_P(Speeds, BlackLevel, testing::ValuesIn(kBlackLevels),
                         testing::PrintToStringParamName());

}  // namespace
