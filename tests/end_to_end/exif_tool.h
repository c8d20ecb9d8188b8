// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_END_TO_END_EXIF_TOOL_H
#define VELMARCON_TESTS_END_TO_END_EXIF_TOOL_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace end_to_end {

/// What exiftool finds in one IFD: for each tag its type, count and value as exiftool names and prints them,
/// such as "int16u[3] 8 8 8". Rationals stand as fractions: "rational64u[1] 300/1". The value of a tag that
/// leads to another IFD, or whose bytes are one, is "-->".
using TagTexts = std::map<std::uint16_t, std::string>;

/// The IFDs of a file under exiftool's names for them: "IFD0", "SubIFD", "ExifIFD", "MakerNotes". The test
/// fails when the tags of one do not ascend or when exiftool reports an error.
using TagsOfFile = std::map<std::string, TagTexts>;
TagsOfFile ReadTags(const std::string& path);

/// What exiftool prints of the tag that it calls `name`, as a photographer sees it; `name` and "#" gives the
/// number.
std::string PrintedTag(const std::string& path, const std::string& name);

/// Adds `tags`; those that are there already are replaced.
void Merge(TagTexts& into, const TagTexts& tags);

/// Expects the same IFDs with the same tags.
void ExpectTags(const TagsOfFile& read, const TagsOfFile& expected);

/// The lines that exiftool's validation of a file prints, sorted, "[minor]" left out.
std::vector<std::string> Complaints(const std::string& path);

}  // namespace end_to_end

#endif  // VELMARCON_TESTS_END_TO_END_EXIF_TOOL_H
