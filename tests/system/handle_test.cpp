// SPDX-License-Identifier: MIT
#include "system/handle.h"

#include <fcntl.h>

#include <cerrno>
#include <optional>
#include <utility>

#include <gtest/gtest.h>

namespace {

Handle OpenFolder() {
    return Handle(::open("/", O_RDONLY | O_CLOEXEC));
}

bool IsOpen(int descriptor) {
    return ::fcntl(descriptor, F_GETFD) != -1 || errno != EBADF;
}

TEST(Handle, IsClosedWithItsOwner) {
    std::optional<Handle> handle = OpenFolder();
    const int descriptor = handle->Get();
    ASSERT_TRUE(handle->IsOpen());
    EXPECT_TRUE(IsOpen(descriptor));
    handle.reset();
    EXPECT_FALSE(IsOpen(descriptor));
}

TEST(Handle, OfAFailedCallIsEmpty) {
    EXPECT_FALSE(Handle().IsOpen());
    EXPECT_FALSE(Handle(::open("/no such file", O_RDONLY | O_CLOEXEC)).IsOpen());
}

TEST(Handle, HasOneOwner) {
    Handle first = OpenFolder();
    const int descriptor = first.Get();
    Handle second = std::move(first);
    EXPECT_EQ(second.Get(), descriptor);
    second = OpenFolder();
    EXPECT_FALSE(IsOpen(descriptor)) << "what it held before stays open";
    EXPECT_TRUE(IsOpen(second.Get()));
}

TEST(Handle, ThatIsReleasedStaysOpen) {
    int descriptor = -1;
    {
        Handle handle = OpenFolder();
        descriptor = handle.Release();
        EXPECT_FALSE(handle.IsOpen());
    }
    EXPECT_TRUE(IsOpen(descriptor));
    const Handle closes_it(descriptor);
}

}  // namespace
