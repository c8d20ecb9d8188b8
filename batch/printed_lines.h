// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PRINTED_LINES_H
#define VELMARCON_BATCH_PRINTED_LINES_H

#include <string>
#include <string_view>

/// What the conversion of a picture has printed, as far as it tells something.
struct PrintedLines {
    std::string reason;   ///< why there is no DNG; empty when nothing was said
    std::string remarks;  ///< what the DNG lacks
};

PrintedLines ReadPrinted(std::string_view printed);

/// `reason` without the names in it, for counting: "Error #0010: Unable to find JPG file.", "DNG not written:
/// ...".
std::string KindOf(const std::string& reason);

/// Whether it says that the disk, or what the user may fill of it, is full.
bool SaysDiskIsFull(const std::string& reason);

#endif  // VELMARCON_BATCH_PRINTED_LINES_H
