// SPDX-License-Identifier: MIT
#include "system/replacement_in_steps.h"

#include <cerrno>
#include <cstdio>
#include <utility>

#include "system/file_system.h"

namespace replacement_in_steps {

namespace {

constexpr int kMostOldFiles = 9;

/// Where the file steps aside to, `number` from 1 on.
std::string OldName(const std::string& path, int number) {
    return path + std::string(kOldEnd) + (number == 1 ? "" : std::to_string(number));
}

/// Gives the file its former name again, if it has lost that: a rename that failed may have been made all the
/// same.
void MoveBack(const std::string& from, const std::string& to) {
    if (!file_system::IsTaken(to)) {
        (void)file_system::RenameToFree(from, to);
    }
}

/// Returns 0 or an error number; `path` then has its own name, as far as possible.
int MoveAside(const std::string& path, std::string& old) {
    int error = 0;
    for (int number = 1; number <= kMostOldFiles; ++number) {
        old = OldName(path, number);
        error = file_system::RenameToFree(path, old);
        if (error != EEXIST) {
            break;
        }
    }
    if (error != 0) {
        MoveBack(old, path);
    }
    return error;
}

/// Returns 0 or an error number; `part` then has its own name, as far as possible.
int TakeFreeName(int descriptor, const std::string& part, const std::string& path) {
    if (const int error = file_system::SynchronizeVolume(descriptor); error != 0) {
        return error;
    }
    int error = file_system::RenameToFree(part, path);
    if (error == 0) {
        error = file_system::SynchronizeVolume(descriptor);
    }
    if (error != 0) {
        MoveBack(path, part);
    }
    return error;
}

/// The file that stepped aside last; empty when there is none.
std::string LastOldFile(const std::string& path) {
    std::string last;
    for (int number = 1; number <= kMostOldFiles; ++number) {
        std::string old = OldName(path, number);
        auto kind = file_system::Kind::kNothing;
        if (file_system::KindOf(old, kind) != 0 || kind != file_system::Kind::kPlainFile) {
            break;
        }
        last = std::move(old);
    }
    return last;
}

}  // namespace

int Replace(int descriptor, const std::string& part, const std::string& path) {
    std::string old;
    if (const int error = MoveAside(path, old); error != 0) {
        return error;
    }
    const int error = TakeFreeName(descriptor, part, path);
    if (error == 0) {
        file_system::Remove(old);
    } else {
        MoveBack(old, path);
    }
    return error;
}

bool PutBack(const std::string& path) {
    const std::string old = LastOldFile(path);
    if (old.empty() || file_system::IsTaken(path) || !file_system::LosesReplacedFiles(old)) {
        return false;
    }
    const int error = file_system::RenameToFree(old, path);
    if (error == 0) {
        std::printf("%s: put back from %s: the run that was replacing it did not end\n", path.c_str(),
                    old.c_str());
    } else {
        std::printf("%s: not put back from %s: %s\n", path.c_str(), old.c_str(),
                    file_system::ErrorText(error));
    }
    return error == 0;
}

}  // namespace replacement_in_steps
