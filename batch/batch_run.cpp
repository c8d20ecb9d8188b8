// SPDX-License-Identifier: MIT
#include "batch/batch_run.h"

#include <cstdio>
#include <iostream>
#include <iterator>
#include <new>
#include <optional>
#include <vector>

#include "batch/batch_options.h"
#include "batch/conversion_options.h"
#include "batch/fields.h"
#include "batch/picture_search.h"
#include "batch/shown.h"
#include "batch/told_lines.h"
#include "batch/tree_run.h"
#include "batch/trees.h"
#include "batch/worker.h"
#include "errors/version.h"
#include "exif/lensdb.h"
#include "system/file_system.h"
#include "system/stop_request.h"

using told_lines::Refuse;

namespace {

int Misused(const std::string& text) {
    return Refuse(batch_status::kUsage, text + " (see velmarcon-batch --help)");
}

/// The options after --; of a lens code only the database knows whether it is one. Returns a status to end
/// with, or kDone.
int CheckConversionOptions(const BatchOptions& options, const std::string& databases) {
    lensdb lenses(databases);
    (void)lenses.LoadLensData();
    std::string text;
    for (const std::string& remark : conversion_options::Remarks(options.conversion, lenses)) {
        text += "\nvelmarcon: " + remark;
    }
    return text.empty()
               ? batch_status::kDone
               : Refuse(batch_status::kUsage, "velmarcon would misread the options after --:" + text);
}

/// The list of --from0.
std::optional<std::string> ReadList(const std::string& file) {
    if (file == "-") {
        return std::string(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
    }
    return fields::ReadWhole(file);
}

int Run(std::span<const std::string> arguments, const Installation& installation) {
    BatchOptions options;
    if (const std::string problem = ReadBatchOptions(arguments, options); !problem.empty()) {
        return Misused(problem);
    }
    if (options.help || options.version) {
        const std::string version = "velmarcon-batch " + std::string(kVersion) + "\n";
        std::printf("%s", options.help ? kBatchHelp : version.c_str());
        return std::fflush(stdout) == 0 ? batch_status::kDone : batch_status::kSomeFailed;
    }
    if (const std::string refusal = conversion_options::Refusal(options.conversion); !refusal.empty()) {
        return Misused(refusal);
    }
    const bool needed = conversion_options::NeedDatabases(conversion_options::Settings(options.conversion));
    const std::string databases = needed ? installation.databases() : "";
    if (const int status = CheckConversionOptions(options, databases); status != batch_status::kDone) {
        return status;
    }
    const auto list = options.list.empty() ? std::optional<std::string>("") : ReadList(options.list);
    if (!list) {
        return Misused("the list " + Shown(options.list) + " cannot be read");
    }
    if (!list->empty() && list->find('\0') == std::string::npos) {
        return Misused("the list has no NULs; make it with find -print0");
    }
    std::vector<Tree> trees;
    if (const TreeError error = ResolveTrees(options, !options.dry_run && !options.verify, trees);
        !error.text.empty()) {
        return error.is_usage ? Misused(error.text) : Refuse(batch_status::kNotBegun, error.text);
    }
    return TreeRun(options, trees, *list, installation, databases).Run();
}

}  // namespace

int RunBatch(std::span<const std::string> arguments, const Installation& installation) {
    try {
        if (!arguments.empty() && arguments.front() == kWorkerArgument) {
            return RunWorker(arguments.subspan(1));
        }
        stop_request::Watch();
        return Run(arguments, installation);
    } catch (const std::bad_alloc&) {
        return Refuse(batch_status::kNotBegun, "out of memory");
    }
}
