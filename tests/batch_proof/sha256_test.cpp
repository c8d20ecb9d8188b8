// SPDX-License-Identifier: MIT
// The sums are those of FIPS 180-4's examples.
#include "batch/proof/sha256.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "batch/proof/sha256_blocks.h"
#include "tests/support/files.h"

namespace {

constexpr const char* kSumOfNothing = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";
constexpr const char* kSumOfAbc = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
constexpr const char* kSumOfAMillionAs = "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0";

std::span<const std::uint8_t> Bytes(const std::string& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

TEST(Sha256, OfNoBytes) {
    EXPECT_EQ(Sha256().Hex(), kSumOfNothing);
}

TEST(Sha256, OfBytesInParts) {
    Sha256 sum;
    sum.Add(Bytes("a"));
    sum.Add({});
    sum.Add(Bytes("bc"));
    EXPECT_EQ(sum.Hex(), kSumOfAbc);
}

TEST(Sha256, MoreBytesMayFollowASum) {
    Sha256 sum;
    EXPECT_EQ(sum.Hex(), kSumOfNothing);
    sum.Add(Bytes("abc"));
    EXPECT_EQ(sum.Hex(), kSumOfAbc);
    EXPECT_EQ(sum.Hex(), kSumOfAbc);
}

TEST(Sha256, WhereverAPartEnds) {
    const std::string text(200, 'a');
    const auto sum_of = [&](std::size_t length, std::size_t part) {
        Sha256 sum;
        sum.Add(Bytes(text).first(part));
        sum.Add(Bytes(text).subspan(part, length - part));
        return sum.Hex();
    };
    for (std::size_t length = 0; length <= text.size(); ++length) {
        for (std::size_t part = 1; part <= length; ++part) {
            ASSERT_EQ(sum_of(length, part), sum_of(length, 0)) << length << " " << part;
        }
    }
}

TEST(Sha256, OfAMessageWhosePaddingNeedsABlockOfItsOwn) {
    Sha256 sum;
    sum.Add(Bytes("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"));  // 56 bytes
    EXPECT_EQ(sum.Hex(), "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
}

TEST(Sha256, TheProcessorsInstructionsGiveTheSame) {
    std::vector<std::uint8_t> blocks(16 * sha256_blocks::kBlockSize);
    std::uint32_t seed = 1;
    for (std::uint8_t& byte : blocks) {
        seed = seed * 1664525 + 1013904223;
        byte = static_cast<std::uint8_t>(seed >> 24U);
    }
    auto plain = sha256_blocks::kInitialState;
    auto fast = sha256_blocks::kInitialState;
    sha256_blocks::CompressPlain(plain, blocks);
    sha256_blocks::Fastest()(fast, blocks);
    EXPECT_EQ(plain, fast);
    EXPECT_NE(plain, sha256_blocks::kInitialState);
}

TEST(Sha256, OfAFileThatIsReadInParts) {
    const support::TempFolder folder;
    support::WriteFile(folder / "a", std::string(1'000'000, 'a'));
    EXPECT_EQ(Sha256OfFile(folder / "a"), kSumOfAMillionAs);
    support::WriteFile(folder / "b", std::string());
    EXPECT_EQ(Sha256OfFile(folder / "b"), kSumOfNothing);
}

TEST(Sha256, OfAFileThatCannotBeReadIsNone) {
    const support::TempFolder folder;
    EXPECT_EQ(Sha256OfFile(folder / "missing"), std::nullopt);
    EXPECT_EQ(Sha256OfFile(folder.prefix()), std::nullopt);
}

}  // namespace
