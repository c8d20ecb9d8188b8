// SPDX-License-Identifier: MIT
#include "batch/fingerprint.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

std::vector<std::uint8_t> Bytes(std::size_t length) {
    std::vector<std::uint8_t> bytes(length);
    for (std::size_t i = 0; i < length; ++i) {
        bytes[i] = static_cast<std::uint8_t>((i * 131 + i / 251) & 0xFFU);
    }
    return bytes;
}

std::string Of(std::span<const std::uint8_t> bytes) {
    Fingerprint fingerprint;
    fingerprint.Add(bytes);
    return fingerprint.Hex();
}

TEST(Fingerprints, AreThoseOfXxhsum) {
    const auto of_text = [](const std::string& text) {
        return Of({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    };
    EXPECT_EQ(of_text(""), "2d06800538d394c2");
    EXPECT_EQ(of_text("abc"), "78af5f94892f3950");
    EXPECT_EQ(of_text(std::string(1'000'000, 'a')), "b1fd6fae5285c4eb");
}

TEST(Fingerprints, DoNotDependOnThePiecesInWhichTheBytesCome) {
    const std::vector<std::uint8_t> bytes = Bytes(1000);
    for (std::size_t piece = 1; piece < 300; ++piece) {
        Fingerprint fingerprint;
        for (std::size_t at = 0; at < bytes.size(); at += piece) {
            fingerprint.Add(std::span(bytes).subspan(at, std::min(piece, bytes.size() - at)));
        }
        EXPECT_EQ(fingerprint.Hex(), Of(bytes)) << piece;
    }
}

TEST(Fingerprints, ChangeWithEveryByte) {
    std::vector<std::uint8_t> bytes = Bytes(300);
    std::set<std::string> all = {Of(bytes)};
    for (std::uint8_t& byte : bytes) {
        byte ^= 1U;
        all.insert(Of(bytes));
        byte ^= 1U;
    }
    EXPECT_EQ(all.size(), bytes.size() + 1);
}

TEST(Fingerprints, ChangeWithTheLength) {
    std::set<std::string> all;
    const std::vector<std::uint8_t> zeros(300);
    for (std::size_t length = 0; length <= zeros.size(); ++length) {
        all.insert(Of(std::span(zeros).first(length)));
    }
    EXPECT_EQ(all.size(), zeros.size() + 1);
    EXPECT_EQ(all.begin()->size(), 16U);
}

}  // namespace
