// SPDX-License-Identifier: MIT
// The sums are those of FIPS 180-4's examples.
#include "batch/proof/sha256.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

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
