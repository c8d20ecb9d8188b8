// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_END_TO_END_EXIF_TOOL_H
#define VELMARCON_TESTS_END_TO_END_EXIF_TOOL_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace end_to_end {

/// What exiftool finds in one IFD: for each tag its type, count and value as exiftool names and prints them,
/// such as "int16u[3] 8 8 8". Rationals are printed as fractions: "rational64u[1] 300/1". For a tag that
/// points to another IFD or contains one, the value is "-->".
using TagTexts = std::map<std::uint16_t, std::string>;

/// The IFDs of a file by exiftool's names: "IFD0", "SubIFD", "ExifIFD", "MakerNotes". The test fails if the
/// tags of an IFD do not ascend or if exiftool reports an error.
using TagsOfFile = std::map<std::string, TagTexts>;
TagsOfFile ReadTags(const std::string& path);

/// What exiftool prints for the tag `name`, in the form that a photographer sees; with "#" after the name,
/// the number.
std::string PrintedTag(const std::string& path, const std::string& name);

/// Adds `tags`, replacing those that exist already.
void Merge(TagTexts& into, const TagTexts& tags);

/// Expects the same IFDs with the same tags.
void ExpectTags(const TagsOfFile& read, const TagsOfFile& expected);

/// The lines that exiftool prints when it validates a file, sorted and without "[minor]".
std::vector<std::string> Complaints(const std::string& path);

}  // namespace end_to_end

#endif  // VELMARCON_TESTS_END_TO_END_EXIF_TOOL_H
