// SPDX-License-Identifier: MIT
// Uses Landlock through raw system calls: the C library has no functions for
// them, and its headers may be older.
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <system_error>

#include "system/handle.h"
#include "system/sandbox.h"
#include "system/system_error.h"

#if defined(SYS_landlock_create_ruleset)

namespace {

/// Landlock's numbers for what a process may do to files.
namespace access_right {

constexpr std::uint64_t kWriteFile = 1U << 1U;
constexpr std::uint64_t kReadFile = 1U << 2U;
constexpr std::uint64_t kReadFolder = 1U << 3U;
constexpr std::uint64_t kRemoveFile = 1U << 5U;
constexpr std::uint64_t kMakeFile = 1U << 8U;
constexpr std::uint64_t kAllOfVersion1 = (1U << 13U) - 1;  ///< includes links, folders, devices, programs
constexpr std::uint64_t kMoveElsewhere = 1U << 13U;        ///< from version 2 on
constexpr std::uint64_t kTruncate = 1U << 14U;             ///< from version 3 on
constexpr std::uint64_t kControlDevice = 1U << 15U;        ///< from version 5 on

constexpr std::uint64_t kReading = kReadFile | kReadFolder;
constexpr std::uint64_t kWriting = kReading | kWriteFile | kRemoveFile | kMakeFile | kTruncate;

}  // namespace access_right

struct RulesetAttributes {
    std::uint64_t handled_access;
};

struct [[gnu::packed]] PathRule {
    std::uint64_t allowed_access;
    std::int32_t path;  ///< descriptor
};

/// A handle that refers to a file or folder without opening it.
Handle Locate(const std::string& path) {
    return Handle(::open(path.c_str(), O_PATH | O_CLOEXEC));
}

/// Whether the program could not open the path anyway, so that there is nothing to allow.
bool IsOutOfReachAnyway(std::error_code error) {
    constexpr std::array out_of_reach = {
        std::errc::no_such_file_or_directory, std::errc::not_a_directory, std::errc::permission_denied,
        std::errc::too_many_symbolic_link_levels, std::errc::filename_too_long};
    return std::ranges::any_of(out_of_reach, [&](std::errc reason) { return error == reason; });
}

/// The rights that this version of Landlock can restrict.
std::uint64_t HandledAccess(long version) {
    constexpr long knows_moves = 2;
    constexpr long knows_truncation = 3;
    constexpr long knows_devices = 5;
    return access_right::kAllOfVersion1 | (version >= knows_moves ? access_right::kMoveElsewhere : 0) |
           (version >= knows_truncation ? access_right::kTruncate : 0) |
           (version >= knows_devices ? access_right::kControlDevice : 0);
}

/// What the process may still do once it is confined.
class Ruleset {
  public:
    explicit Ruleset(std::uint64_t handled)
        : attributes_{handled},
          ruleset_(static_cast<int>(
              ::syscall(SYS_landlock_create_ruleset, &attributes_, sizeof(attributes_), 0))) {}

    bool Made() const { return ruleset_.IsOpen(); }

    /// Returns false if the folder exists but would be out of reach.
    bool AllowFolder(const std::string& path, std::uint64_t access) const {
        const Handle folder = Locate(path);
        return folder.IsOpen() ? Allow(folder, access) : IsOutOfReachAnyway(system_error::Last());
    }

    /// Allows reading the file that the link leads to, if it is a plain file; to allow a folder would allow
    /// everything in it. Returns false if the file exists but would be out of reach.
    bool AllowFile(const std::string& link) const {
        const Handle file = Locate(link);
        if (!file.IsOpen()) {
            return IsOutOfReachAnyway(system_error::Last());
        }
        struct stat status = {};
        if (::fstat(file.Get(), &status) != 0) {
            return false;
        }
        return !S_ISREG(status.st_mode) || Allow(file, access_right::kReadFile);
    }

    bool Confine() const {
        return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
               ::syscall(SYS_landlock_restrict_self, ruleset_.Get(), 0) == 0;
    }

  private:
    bool Allow(const Handle& path, std::uint64_t access) const {
        constexpr int beneath_path = 1;
        const PathRule rule = {access & attributes_.handled_access, path.Get()};
        return ::syscall(SYS_landlock_add_rule, ruleset_.Get(), beneath_path, &rule, 0) == 0;
    }

    RulesetAttributes attributes_;
    Handle ruleset_;
};

}  // namespace

bool EnterSandbox(const Reach& reach) {
    constexpr unsigned int ask_version = 1;
    const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, ask_version);
    if (version < 1) {
        return false;
    }
    const Ruleset rules(HandledAccess(version));
    const auto readable = [&](const std::string& path) {
        return rules.AllowFolder(path, access_right::kReading);
    };
    const auto writable = [&](const std::string& path) {
        return rules.AllowFolder(path, access_right::kWriting);
    };
    const auto linked = [&](const std::string& path) { return rules.AllowFile(path); };
    // No sandbox is better than one that locks out the pictures.
    return rules.Made() && std::ranges::all_of(reach.read_folders, readable) &&
           std::ranges::all_of(reach.written_folders, writable) &&
           std::ranges::all_of(reach.read_files, linked) && rules.Confine();
}

#else

bool EnterSandbox(const Reach& /*reach*/) {
    return false;
}

#endif
