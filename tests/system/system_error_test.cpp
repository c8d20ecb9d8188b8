// SPDX-License-Identifier: MIT
#include "system/system_error.h"

#include <cerrno>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

namespace {

TEST(SystemError, HasTheTextOfTheSystem) {
    struct Case {
        int number;
        const char* text;
    };
    for (const auto& [number, text] :
         {Case{ENOSPC, "No space left on device"}, Case{EIO, "Input/output error"},
          Case{EACCES, "Permission denied"}, Case{EEXIST, "File exists"}, Case{ESTALE, "Stale file handle"},
          Case{ENOENT, "No such file or directory"}, Case{EISDIR, "Is a directory"},
          Case{EROFS, "Read-only file system"}, Case{EFBIG, "File too large"},
          Case{ENOMEM, "Cannot allocate memory"}}) {
        EXPECT_STREQ(system_error::Text({number, std::generic_category()}), text);
        EXPECT_STREQ(system_error::Text({number, std::system_category()}), text);
        EXPECT_EQ(std::error_code(number, std::generic_category()).message(), text);
    }
}

TEST(SystemError, OfTheLastCallIsNeverNone) {
    errno = ENOSPC;
    EXPECT_EQ(system_error::Last(), std::errc::no_space_on_device);
    errno = 0;
    EXPECT_EQ(system_error::Last(), std::errc::io_error);
}

}  // namespace
