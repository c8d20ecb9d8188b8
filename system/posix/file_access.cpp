// SPDX-License-Identifier: MIT
// Gives a file that replaces another one that file's owner, permissions and
// extended attributes.
#include <sys/stat.h>
#include <unistd.h>

#if defined(__linux__)
#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>
#endif

#include "system/file_system.h"
#include "system/posix/file_status.h"
#include "system/retry_on_interrupt.h"
#include "system/system_error.h"

namespace file_system {

namespace {

/// Gives the open file the owner and group of `existing`, or at least the group. Returns whether it now has
/// the group.
bool TakeOwner(const Handle& file, const struct stat& existing) {
    constexpr auto stays = static_cast<uid_t>(-1);
    const auto give = [&](uid_t user) {
        return RetryOnInterrupt([&] { return ::fchown(file.Get(), user, existing.st_gid); }) == 0;
    };
    return give(existing.st_uid) || give(stays);
}

#if defined(__linux__)

constexpr const char* kAccessList = "system.posix_acl_access";

/// Attributes that do not belong to the file's content, or that are set in another way.
constexpr auto kNotCopied = std::to_array<std::string_view>(
    {kAccessList, "system.posix_acl_default", "security.evm", "security.ima"});

using Value = std::vector<char>;

/// Calls twice: once for the length, once for the bytes. If either call fails, returns std::nullopt and
/// leaves errno set.
template <typename Call>
std::optional<Value> ReadAll(Call call) {
    const auto length = RetryOnInterrupt([&] { return call(nullptr, 0); });
    if (length <= 0) {
        return length == 0 ? std::optional<Value>(Value()) : std::nullopt;
    }
    Value value(static_cast<std::size_t>(length));
    const auto read = RetryOnInterrupt([&] { return call(value.data(), value.size()); });
    if (read < 0) {
        return std::nullopt;
    }
    value.resize(static_cast<std::size_t>(read));
    return value;
}

std::optional<Value> Attribute(const std::string& path, const char* name) {
    return ReadAll(
        [&](char* value, std::size_t size) { return ::lgetxattr(path.c_str(), name, value, size); });
}

bool SetAttribute(const Handle& file, const char* name, const Value& value) {
    return RetryOnInterrupt([&] { return ::fsetxattr(file.Get(), name, value.data(), value.size(), 0); }) ==
           0;
}

/// Copies ratings, tags, labels and the like. Attributes that the system or the file system does not accept
/// are left out.
void TakeAttributes(const Handle& file, const std::string& path) {
    auto names =
        ReadAll([&](char* list, std::size_t size) { return ::llistxattr(path.c_str(), list, size); });
    if (!names) {
        return;
    }
    names->push_back('\0');
    for (const char* name = names->data(); *name != '\0'; name += std::strlen(name) + 1) {
        if (std::ranges::find(kNotCopied, std::string_view(name)) == kNotCopied.end()) {
            if (const auto value = Attribute(path, name)) {
                (void)SetAttribute(file, name, *value);
            }
        }
    }
}

enum class AccessList { kNone, kTaken, kUnknown };

bool MeansNone(std::error_code error) {
    return error == std::errc::no_message_available || error == std::errc::operation_not_supported ||
           error == std::errc::function_not_supported;
}

/// Removes the list if the old file has none, because the folder may have given the new file one.
AccessList TakeAccessList(const Handle& file, const std::string& path) {
    if (const auto list = Attribute(path, kAccessList)) {
        return SetAttribute(file, kAccessList, *list) ? AccessList::kTaken : AccessList::kUnknown;
    }
    const bool none = MeansNone(system_error::Last());
    const bool removed = RetryOnInterrupt([&] { return ::fremovexattr(file.Get(), kAccessList); }) == 0 ||
                         MeansNone(system_error::Last());
    return none && removed ? AccessList::kNone : AccessList::kUnknown;
}

#else

void TakeAttributes(const Handle& /*file*/, const std::string& /*path*/) {}

enum class AccessList { kNone, kTaken, kUnknown };

AccessList TakeAccessList(const Handle& /*file*/, const std::string& /*path*/) {
    return AccessList::kNone;
}

#endif

/// The mode of the old file, without the rights that would go to others than before, because its group or its
/// access control list could not be kept.
mode_t ModeFor(const struct stat& existing, bool group_is_kept, AccessList list) {
    constexpr mode_t group = S_IRWXG;
    constexpr mode_t group_to_others = 3;  // bits
    const mode_t mode = existing.st_mode & mode_t{ALLPERMS};
    if (list == AccessList::kUnknown || (list == AccessList::kTaken && !group_is_kept)) {
        return mode & mode_t{S_IRWXU};
    }
    if (!group_is_kept) {
        const mode_t as_others = (mode & mode_t{S_IRWXO}) << group_to_others;
        return mode & (mode_t{S_IRWXU | S_IRWXO} | (group & as_others));
    }
    return mode;
}

}  // namespace

/// Sets the attributes first: that needs the right to write, which the mode may take away.
std::error_code TakeOver(const Handle& file, const std::string& path) {
    struct stat existing = {};
    if (const std::error_code error = StatusOf(path, existing)) {
        return error;
    }
    TakeAttributes(file, path);
    const bool group_is_kept = TakeOwner(file, existing);
    const AccessList list = TakeAccessList(file, path);
    const mode_t mode = ModeFor(existing, group_is_kept, list);
    // If this is refused, the file keeps the mode of a new file.
    (void)RetryOnInterrupt([&] { return ::fchmod(file.Get(), mode); });
    return {};
}

}  // namespace file_system
