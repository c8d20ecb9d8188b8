// SPDX-License-Identifier: MIT
// The sums are those of FIPS 180-4's examples.
#include "system/sha256.h"

#include <cstdint>
#include <span>
#include <string>

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

TEST(Sha256, OfAFileThatIsReadInParts) {
    const support::TempFolder folder;
    support::WriteFile(folder / "several", std::string(3'000'000, '\0'));
    Sha256 several;
    several.Add(Bytes(std::string(3'000'000, '\0')));
    EXPECT_EQ(Sha256OfFile(folder / "several"), several.Hex());
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
