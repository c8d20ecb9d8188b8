// SPDX-License-Identifier: MIT
#include "batch/passed_over.h"

#include <cstdio>
#include <string>
#include <vector>

#include "batch/batch_run.h"
#include "batch/shown.h"
#include "batch/told_lines.h"

namespace {

constexpr const char* kOfChangedLength =
    "Camera DNG, but another program has changed its length; name it by itself to velmarcon";
constexpr const char* kJpegAlone = "JPEG without a RAW file";

void TellFirst(const char* what, const std::vector<std::string>& paths) {
    told_lines::PrintNamed(what, told_lines::FirstShown(paths), paths.size());
}

void TellJpegs(const std::vector<std::string>& jpegs) {
    if (!jpegs.empty()) {
        told_lines::Say(false, jpegs.size() == 1
                                   ? "1 JPEG has no RAW file next to it"
                                   : std::to_string(jpegs.size()) + " JPEGs have no RAW file next to them");
        TellFirst(kJpegAlone, jpegs);
    }
}

void NoteEach(const std::string& what, const std::vector<std::string>& paths, Tally& tally) {
    for (const std::string& path : paths) {
        tally.Note(what + ": " + Shown(path));
    }
}

}  // namespace

namespace passed_over {

void Tell(const FoundPictures& found, bool quiet) {
    TellFirst("Ignored, not in capital letters", found.small);
    if (found.of_macos > 0) {
        std::printf("Ignored, files of macOS (._*): %zu\n", found.of_macos);
    }
    TellFirst("Too short for a camera DNG", found.cut);
    TellFirst(kOfChangedLength, found.of_changed_length);
    TellFirst("No picture", found.none);
    TellFirst("In the list, but no picture of the folders", found.not_found);
    if (!quiet) {
        TellJpegs(found.jpegs);
    }
}

void Note(const FoundPictures& found, Tally& tally) {
    NoteEach("not searched, because it is the output folder", found.excluded, tally);
    NoteEach("ignored, not in capital letters", found.small, tally);
    NoteEach("too short for a camera DNG", found.cut, tally);
    NoteEach(kOfChangedLength, found.of_changed_length, tally);
    NoteEach(kJpegAlone, found.jpegs, tally);
    if (found.of_macos > 0) {
        tally.Note("ignored, files of macOS (._*): " + std::to_string(found.of_macos));
    }
}

bool AllWasFound(const FoundPictures& found, bool accept_damaged) {
    return found.unread.empty() && found.not_found.empty() && found.none.empty() &&
           (accept_damaged || (found.small.empty() && found.cut.empty() && found.of_changed_length.empty()));
}

int RefuseNothing() {
    return told_lines::Refuse(
        batch_status::kSomeFailed,
        "no picture found: no RAW file and no camera DNG (extensions in capital letters)");
}

}  // namespace passed_over
