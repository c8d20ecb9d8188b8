// SPDX-License-Identifier: MIT
#include "batch/dry_run.h"

#include <cstdio>
#include <string>

#include "batch/batch_run.h"
#include "batch/conversion_options.h"
#include "batch/numbered_name.h"
#include "batch/passed_over.h"
#include "batch/picture_files.h"
#include "batch/proof/same_picture.h"
#include "batch/shown.h"
#include "batch/told_lines.h"
#include "system/file_system.h"

namespace {

/// The words for a picture that would have no DNG.
constexpr const char* kFail = "fail";
constexpr const char* kRefuse = "refuse";

std::string Line(const std::string& what, const std::string& input, const std::string& dng) {
    return what + ": " + Shown(input) + " -> " + Shown(dng);
}

/// "convert: INPUT -> DNG", or what else would be done.
std::string PlanOf(const Picture& picture, const BatchOptions& options, std::span<const Tree> trees) {
    const std::string input = InputOf(picture, trees);
    const std::string dng = DngOf(picture, trees);
    const PictureFiles files(input);
    const std::string keep = conversion_options::Settings(options.conversion).refresh ? "refresh"
                             : input == dng                                           ? kRefuse
                                                                                      : "keep";
    const bool is_taken = file_system::IsTaken(dng);
    const auto own = is_taken || options.rename ? IdentityOf(files) : std::nullopt;
    const auto there = is_taken && input != dng ? IdentityOfDng(dng) : std::nullopt;
    const bool is_others = own && there && *own != *there;
    if (is_others && !options.rename) {
        return Line(kFail, input, dng) + " (another picture; --rename gives this one another name)";
    }
    if (options.rename && (is_others || !is_taken)) {
        const NumberedName name = FindNumberedName(dng, own, !files.is_camera_dng);
        if (name.is_own || is_others) {
            return name.dng.empty() ? Line(kFail, input, dng) + " (no name is free for it)"
                                    : Line(name.is_own ? keep : "convert", input, name.dng);
        }
    }
    return Line(is_taken ? keep : "convert", input, dng);
}

}  // namespace

int DryRun(const BatchOptions& options, std::span<const Tree> trees, const FoundPictures& found) {
    bool all_well = passed_over::AllWasFound(found, options.accept_damaged);
    for (const Picture& picture : found.pictures) {
        const std::string plan = PlanOf(picture, options, trees);
        all_well = all_well && !plan.starts_with(kFail) && !plan.starts_with(kRefuse);
        std::printf("%s\n", plan.c_str());
    }
    passed_over::Tell(found, options.quiet);
    told_lines::Say(options.quiet, NumberOfPictures(found.pictures.size()));
    told_lines::PrintNamed("Could not be read", found.unread, 0);
    if (found.pictures.empty()) {
        return passed_over::RefuseNothing();
    }
    return all_well ? batch_status::kDone : batch_status::kSomeFailed;
}
