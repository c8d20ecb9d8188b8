// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_CONVERSION_OPTIONS_H
#define VELMARCON_BATCH_CONVERSION_OPTIONS_H

#include <span>
#include <string>
#include <vector>

#include "app/run_settings.h"
#include "exif/lensdb.h"

/// The options of velmarcon that a batch hands on.
namespace conversion_options {

/// What a batch cannot be asked for: another input or output, a dark reference, a word that belongs to no
/// option. Empty when there is nothing.
std::string Refusal(std::span<const std::string> options);

/// What velmarcon would ignore or read otherwise than it looks, a line each.
std::vector<std::string> Remarks(std::span<const std::string> options, const lensdb& lenses);

/// The settings that they ask for, without input and output.
RunSettings Settings(std::span<const std::string> options);

/// Whether they ask for something that stands in a database.
bool NeedDatabases(const RunSettings& settings);

/// Whether both make the same DNG, whatever their spelling and order: -r and -v do not change it.
bool MakeSameDng(std::span<const std::string> options, std::span<const std::string> others);

/// The options without -r and -v.
std::vector<std::string> ThatChangeTheDng(std::span<const std::string> options);

/// The options in one line, to be read: "-b 100 -l"; "no options".
std::string Line(std::span<const std::string> options);

}  // namespace conversion_options

#endif  // VELMARCON_BATCH_CONVERSION_OPTIONS_H
