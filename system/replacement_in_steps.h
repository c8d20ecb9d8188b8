// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_REPLACEMENT_IN_STEPS_H
#define VELMARCON_SYSTEM_REPLACEMENT_IN_STEPS_H

#include <string>
#include <string_view>

/// The replacing of a file where a rename over it could cost both when the card is pulled or the power goes:
/// the old file steps aside to `<name>.old`, the new one takes the name, the old one is removed; and each
/// step is on the disk before the next one begins.
namespace replacement_in_steps {

/// End of the name of a file that has moved aside.
constexpr std::string_view kOldEnd = ".old";

/// Replaces the file `path` by the file `part`, which is open as `descriptor` and on the disk. An older file
/// `<name>.old` is not touched: the next free one of `<name>.old2` to `<name>.old9` is used. Returns 0 or an
/// error number; then the old file has its name again.
int Replace(int descriptor, const std::string& part, const std::string& path);

/// When nothing stands at `path`, but the file that Replace had moved aside from there when it ended early,
/// on a file system that needs that: gives that one its name back, and prints a line. Returns whether it did.
bool PutBack(const std::string& path);

}  // namespace replacement_in_steps

#endif  // VELMARCON_SYSTEM_REPLACEMENT_IN_STEPS_H
