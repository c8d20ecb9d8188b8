// SPDX-License-Identifier: MIT
// The sums are those that xxhsum -H3 prints.
#include "batch/fingerprint.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include <gtest/gtest.h>

namespace {

std::span<const std::uint8_t> Bytes(const std::string& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string FingerprintOf(const std::string& text) {
    Fingerprint fingerprint;
    fingerprint.Add(Bytes(text));
    return fingerprint.Hex();
}

TEST(Fingerprint, IsThatOfXxhsum) {
    EXPECT_EQ(Fingerprint().Hex(), "2d06800538d394c2");
    EXPECT_EQ(FingerprintOf("abc"), "78af5f94892f3950");
    EXPECT_EQ(FingerprintOf(std::string(1'000'000, 'a')), "b1fd6fae5285c4eb");
}

TEST(Fingerprint, IsTheSameWhereverAPartEnds) {
    const std::string text = [] {
        std::string numbers;
        for (int number = 0; number < 1000; ++number) {
            numbers += std::to_string(number);
        }
        return numbers;
    }();
    const std::string whole = FingerprintOf(text);
    for (std::size_t part = 0; part <= text.size(); ++part) {
        Fingerprint fingerprint;
        fingerprint.Add(Bytes(text).first(part));
        fingerprint.Add(Bytes(text).subspan(part));
        ASSERT_EQ(fingerprint.Hex(), whole) << part;
    }
}

TEST(Fingerprint, MoreBytesMayFollow) {
    Fingerprint fingerprint;
    fingerprint.Add(Bytes("a"));
    EXPECT_EQ(fingerprint.Hex(), FingerprintOf("a"));
    fingerprint.Add(Bytes("bc"));
    EXPECT_EQ(fingerprint.Hex(), FingerprintOf("abc"));
}

}  // namespace
