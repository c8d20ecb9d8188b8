// SPDX-License-Identifier: MIT
#include "sensor/sensdb.h"

#include <gtest/gtest.h>

namespace {

TEST(Sensdb, BeginsEmptyWithTheFileOfItsFolder) {
    EXPECT_EQ(sensdb("folder/").DatabaseFile, "folder/sensdb.ini");
    EXPECT_EQ(sensdb("").DatabaseFile, "sensdb.ini");
    EXPECT_TRUE(sensdb("folder/").Cameras.empty());
}

}  // namespace
