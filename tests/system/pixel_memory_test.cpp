// SPDX-License-Identifier: MIT
#include "system/pixel_memory.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

namespace {

using Words = std::vector<std::uint16_t>;

TEST(PixelMemory, NewWordsAreZeroAndOldOnesKeepTheirValues) {
    Words words = {1, 2, 3};
    pixel_memory::Resize(words, 5);
    EXPECT_EQ(words, (Words{1, 2, 3, 0, 0}));
    pixel_memory::Resize(words, 2);
    EXPECT_EQ(words, (Words{1, 2}));
}

TEST(PixelMemory, AnImageSizedBufferIsZeroAndKeepsItsMemory) {
    constexpr std::size_t dump = 10520550;
    pixel_memory::RetainFreedMemory();
    Words words;
    pixel_memory::Resize(words, dump);
    EXPECT_EQ(words, Words(dump));
    const auto* const memory = words.data();
    pixel_memory::Resize(words, 1000);
    pixel_memory::Resize(words, dump);
    EXPECT_EQ(words.data(), memory);
}

}  // namespace
