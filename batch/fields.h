// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_FIELDS_H
#define VELMARCON_BATCH_FIELDS_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

/// The form in which a batch keeps things for itself: texts of any bytes but NUL, each ended by one.
namespace fields {

/// The texts, each with its NUL.
std::string Joined(std::span<const std::string> texts);

/// The texts in `joined`; what stands after the last NUL is none.
std::vector<std::string> Split(std::string_view joined);

/// All of a file; nothing when it cannot be read.
std::optional<std::string> ReadWhole(const std::string& path);

/// Writes the file as it comes. Returns why that failed.
[[nodiscard]] std::error_code WritePlain(const std::string& path, std::string_view bytes);

/// The number in `text`, digits only; nothing when it is none.
std::optional<std::uint64_t> Number(std::string_view text);

}  // namespace fields

#endif  // VELMARCON_BATCH_FIELDS_H
