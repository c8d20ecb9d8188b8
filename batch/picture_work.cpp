// SPDX-License-Identifier: MIT
#include "batch/picture_work.h"

#include <chrono>
#include <cstdint>

#include "batch/copy_time.h"
#include "batch/picture.h"
#include "batch/picture_damage.h"
#include "system/sha256.h"

PictureWork::PictureWork(const WorkerSettings& options, CapturedOutput& output)
    : options_(options),
      conversion_(options.options, options.databases, output),
      decision_(options, conversion_.settings()),
      keeper_(options, conversion_),
      maker_(options, conversion_) {}

std::optional<Record> PictureWork::Do(const Task& task) {
    const auto begin = std::chrono::steady_clock::now();
    PictureAtWork picture(task);
    Record& record = picture.record;
    switch (decision_.Decide(picture)) {
        case NextStep::kMake:
            if (task.mode == TaskMode::kLook) {
                return std::nullopt;
            }
            maker_.Make(picture);
            break;
        case NextStep::kKeep:
            keeper_.Keep(picture);
            break;
        case NextStep::kNone:
            break;
    }
    if (record.verdict == Verdict::kConverted || record.verdict == Verdict::kKept) {
        Finish(picture);
    }
    const auto elapsed = std::chrono::steady_clock::now() - begin;
    record.milliseconds =
        static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count());
    return record;
}

/// What is told of a picture that has its DNG.
void PictureWork::Finish(PictureAtWork& picture) const {
    Record& record = picture.record;
    if (options_.keep_time && picture.task.mode != TaskMode::kVerify) {
        CopyTime(picture.files.input, record.dng);
    }
    if (options_.checksums && record.sha256.empty()) {
        const auto sum = Sha256OfFile(record.dng);
        if (!sum) {
            record.Fail(NameIn(record.dng) + " cannot be read back", "cannot be read back");
            return;
        }
        record.sha256 = *sum;
    }
    record.dng_state = FullStateText(record.dng);
    if (record.verdict == Verdict::kKept) {
        record.flaws = FlawsOf(picture.files, conversion_.settings());
    }
}
