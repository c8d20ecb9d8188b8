// SPDX-License-Identifier: MIT
#include "dng/ifd.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/dng/expected_tags.h"

namespace {

using namespace std::string_literals;

constexpr std::uint16_t kTag = 777;

/// The listing of an IFD that contains only `value`.
template <typename Value>
std::string Added(const Value& value) {
    IFD ifd;
    ifd::Add(ifd, kTag, value);
    return expected::Listing(ifd);
}

TEST(IFDAdd, TakesTheTypeFromTheValue) {
    EXPECT_EQ(Added(std::uint8_t{200}), "777 type 1 count 1: C8\n");
    EXPECT_EQ(Added("AB"s), "777 type 2 count 3: 41 42 00\n");
    EXPECT_EQ(Added(std::uint16_t{0x8001}), "777 type 3 count 1: 01 80\n");
    EXPECT_EQ(Added(std::uint32_t{0x80000001}), "777 type 4 count 1: 01 00 00 80\n");
    EXPECT_EQ(Added(Rational{300, 0x80000000}), "777 type 5 count 1: 2C 01 00 00 00 00 00 80\n");
    EXPECT_EQ(Added(std::int8_t{-3}), "777 type 6 count 1: FD\n");
    EXPECT_EQ(Added(std::int16_t{-3}), "777 type 8 count 1: FD FF\n");
    EXPECT_EQ(Added(std::int32_t{-3}), "777 type 9 count 1: FD FF FF FF\n");
    EXPECT_EQ(Added(SRational{-110, 207}), "777 type 10 count 1: 92 FF FF FF CF 00 00 00\n");
}

TEST(IFDAdd, StoresAllValues) {
    constexpr std::array<std::uint16_t, 3> shorts = {2, 0xABCD, 1};
    EXPECT_EQ(Added(shorts), "777 type 3 count 3: 02 00 CD AB 01 00\n");
    EXPECT_EQ(Added(std::span(shorts).first(2)), "777 type 3 count 2: 02 00 CD AB\n");
    EXPECT_EQ(Added(std::span(shorts).first(0)), "777 type 3 count 0:\n");
    EXPECT_EQ(Added(std::array<SRational, 2>{{{1, 2}, {-1, 3}}}),
              "777 type 10 count 2: 01 00 00 00 02 00 00 00 FF FF FF FF 03 00 00 00\n");
}

TEST(IFDAdd, StoresBytesOfAnyType) {
    constexpr std::array<std::uint8_t, 4> bytes = {1, 2, 3, 4};
    IFD ifd;
    ifd::AddBytes(ifd, 1, 7, bytes);
    ifd::AddBytes(ifd, 2, 3, bytes);
    EXPECT_EQ(expected::Listing(ifd), "1 type 7 count 4: 01 02 03 04\n2 type 3 count 2: 01 02 03 04\n");
    EXPECT_EQ(ifd.at(2).length, 4U);
}

TEST(IFDAdd, ReplacesAllOfAnEntry) {
    IFD ifd;
    ifd::Add(ifd, kTag, "a text");
    ifd[kTag].position = 1234;
    ifd::Add(ifd, kTag, std::uint32_t{5});
    EXPECT_EQ(expected::Listing(ifd), "777 type 4 count 1: 05 00 00 00\n");
    EXPECT_EQ(ifd[kTag].position, 0U);
}

/// Adds `values` and expects Get to return them.
template <typename T, std::size_t size>
void ExpectSameValues(const std::array<T, size>& values) {
    IFD ifd;
    ifd::Add(ifd, kTag, values);
    EXPECT_EQ(ifd::Get<T>(ifd, kTag), std::vector<T>(values.begin(), values.end())) << ifd[kTag].type;
    EXPECT_EQ(ifd::First<T>(ifd, kTag), values.front()) << ifd[kTag].type;
}

TEST(IFDGet, GivesWhatWasAdded) {
    ExpectSameValues(std::array<std::uint8_t, 2>{7, 255});
    ExpectSameValues(std::array<std::uint16_t, 3>{1, 513, 65535});
    ExpectSameValues(std::array<std::uint32_t, 2>{3936, 4294967295});
    ExpectSameValues(std::array<Rational, 2>{{{4294967295, 250}, {1, 0}}});
    ExpectSameValues(std::array<std::int8_t, 2>{-128, 127});
    ExpectSameValues(std::array<std::int16_t, 2>{-32768, 258});
    ExpectSameValues(std::array<std::int32_t, 2>{-2147483647, 1});
    ExpectSameValues(std::array<SRational, 2>{{{-110, 207}, {16, -125}}});
}

TEST(IFDGet, GivesNothingForAMissingTag) {
    const IFD ifd;
    EXPECT_TRUE(ifd::Get<std::uint16_t>(ifd, kTag).empty());
    EXPECT_FALSE(ifd::First<std::uint32_t>(ifd, kTag).has_value());
    EXPECT_FALSE(ifd::FirstNumber(ifd, kTag).has_value());
    EXPECT_FALSE(ifd::FirstRational(ifd, kTag).has_value());
    EXPECT_TRUE(ifd::Bytes(ifd, kTag).empty());
    EXPECT_EQ(ifd::Text(ifd, kTag), "");
}

TEST(IFDGet, GivesNothingForATagOfAnotherType) {
    IFD ifd;
    ifd::Add(ifd, 258, std::uint32_t{8});
    ifd::Add(ifd, 273, std::uint16_t{8});
    ifd::Add(ifd, 256, std::int32_t{-1});
    EXPECT_TRUE(ifd::Get<std::uint16_t>(ifd, 258).empty());
    EXPECT_TRUE(ifd::Get<std::uint32_t>(ifd, 273).empty());
    EXPECT_TRUE(ifd::Get<std::uint32_t>(ifd, 256).empty());
    EXPECT_FALSE(ifd::First<std::uint16_t>(ifd, 258).has_value());
    EXPECT_FALSE(ifd::FirstNumber(ifd, 256).has_value());
    EXPECT_FALSE(ifd::FirstRational(ifd, 258).has_value());
}

TEST(IFDGet, GivesNothingForATagWithoutValues) {
    for (const std::uint16_t type : std::to_array<std::uint16_t>({3, 4, 5, 10})) {
        IFD ifd;
        ifd::AddBytes(ifd, kTag, type, {});
        EXPECT_FALSE(ifd::FirstNumber(ifd, kTag).has_value()) << type;
        EXPECT_FALSE(ifd::FirstRational(ifd, kTag).has_value()) << type;
        EXPECT_TRUE(ifd::Get<std::uint32_t>(ifd, kTag).empty()) << type;
    }
}

TEST(IFDGet, TakesANumberFromAShortOrALong) {
    IFD ifd;
    ifd::Add(ifd, 258, std::array<std::uint16_t, 3>{1, 513, 65535});
    ifd::Add(ifd, 273, std::array<std::uint32_t, 2>{3936, 4294967295});
    EXPECT_EQ(ifd::FirstNumber(ifd, 258), 1U);
    EXPECT_EQ(ifd::FirstNumber(ifd, 273), 3936U);
}

TEST(IFDGet, TakesTheFirstOfSeveralRationalsAsSigned) {
    IFD ifd;
    ifd::Add(ifd, 50721, std::array<SRational, 2>{{{-110, 207}, {16, 125}}});
    ifd::Add(ifd, 33434, Rational{4294967295, 250});
    EXPECT_EQ(ifd::FirstRational(ifd, 50721), (SRational{-110, 207}));
    EXPECT_EQ(ifd::FirstRational(ifd, 33434), (SRational{-1, 250}));
}

TEST(IFDGet, GivesTextByteForByteWhateverTheType) {
    constexpr std::array<std::uint8_t, 3> bytes = {0, 'a', 0};
    IFD ifd;
    ifd::Add(ifd, 271, "Leica");
    ifd::AddBytes(ifd, 37500, 7, bytes);
    EXPECT_EQ(ifd::Text(ifd, 271), "Leica\0"s);
    EXPECT_EQ(ifd::Text(ifd, 37500), "\0a\0"s);
    EXPECT_EQ(ifd::Bytes(ifd, 37500).size(), 3U);
}

}  // namespace
