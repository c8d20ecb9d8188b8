// SPDX-License-Identifier: MIT
#include "batch/proof/tag_name.h"

#include <fstream>
#include <set>
#include <string>

#include <gtest/gtest.h>

namespace {

TEST(TagName, IsThatOfTheTablesInTheDocuments) {
    std::ifstream page(VELMARCON_SOURCE "/docs/dng-format.md");
    std::set<std::string> tags;
    for (std::string line; std::getline(page, line);) {
        // "| 254 | NewSubFileType | LONG | ..."
        if (line.size() > 3 && line[0] == '|' && line[2] >= '1' && line[2] <= '9') {
            const auto number_end = line.find(" | ");
            const auto name = number_end + 3;
            const std::string number = line.substr(2, number_end - 2);
            tags.insert(number);
            EXPECT_EQ(TagName(static_cast<std::uint16_t>(std::stoi(number))),
                      line.substr(name, line.find(" | ", name) - name));
        }
    }
    EXPECT_EQ(tags.size(), 75U);
}

TEST(TagName, IsItsNumberWithoutAName) {
    EXPECT_EQ(TagName(1), "1");
    EXPECT_EQ(TagName(65535), "65535");
    EXPECT_EQ(TagName(50712), "LinearizationTable");
}

}  // namespace
