// SPDX-License-Identifier: MIT
#include "bench/paired_runs.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

namespace {

namespace fs = std::filesystem;

std::vector<std::string> FilesOf(const fs::path& folder, const std::vector<std::string>& extensions) {
    std::vector<std::string> files;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (std::ranges::find(extensions, entry.path().extension().string()) != extensions.end()) {
            files.push_back(entry.path().string());
        }
    }
    std::ranges::sort(files);
    return files;
}

/// Deletes `folder` and creates it again, empty.
void Clear(const fs::path& folder) {
    fs::remove_all(folder);
    fs::create_directory(folder);
}

/// The two sides of a round. The files that the scenario writes stay until its next run, so that the other
/// side can copy them.
class Sides {
  public:
    Sides(const Scenario& scenario, std::string program, const fs::path& folder)
        : scenario_(scenario),
          program_(std::move(program)),
          folder_(folder),
          made_(folder / "made"),
          other_(folder / "other") {}
    ~Sides() {
        std::error_code ignored;
        fs::remove_all(made_, ignored);
        fs::remove_all(other_, ignored);
    }
    Sides(const Sides&) = delete;
    Sides& operator=(const Sides&) = delete;
    Sides(Sides&&) = delete;
    Sides& operator=(Sides&&) = delete;

    RunCost RunScenario() const {
        if (scenario_.calibrates) {
            return Calibrate();
        }
        return scenario_.other_program.empty() ? Convert(scenario_.options, made_) : RunOther();
    }

    RunCost RunYardstick() const {
        switch (scenario_.yardstick) {
            case Yardstick::kPlainConversion:
                return Convert({}, other_);
            case Yardstick::kCopyOfOutputs:
                return Copy(Outputs());
            default:
                return Copy(FilesOf(folder_, scenario_.inputs));
        }
    }

    /// One file per image.
    std::vector<std::string> Images() const { return FilesOf(folder_, {scenario_.inputs.front()}); }
    bool IsComplete() const {
        return !Images().empty() && Outputs().size() == (scenario_.calibrates ? 1 : Images().size());
    }
    std::vector<std::string> Outputs() const { return FilesOf(made_, {std::string(scenario_.output)}); }

  private:
    RunCost Convert(const std::vector<std::string>& options, const fs::path& output) const {
        Clear(output);
        std::vector<std::string> command = {program_, "-i", folder_.string(), "-o", output.string()};
        std::ranges::copy(options, std::back_inserter(command));
        return TimedRun(command);
    }

    RunCost Calibrate() const {
        Clear(made_);
        return TimedRun({program_, "--database", (made_ / "sensdb.ini").string(), folder_.string()});
    }

    /// Runs the other program on links to the images, because it writes next to its input.
    RunCost RunOther() const {
        Clear(made_);
        std::vector<std::string> command = scenario_.other_program;
        for (const fs::path image : Images()) {
            const fs::path link = made_ / image.filename();
            fs::create_hard_link(image, link);
            command.push_back(link.string());
        }
        return TimedRun(command);
    }

    RunCost Copy(const std::vector<std::string>& files) const {
        Clear(other_);
        std::vector<std::string> command = {"cp"};
        std::ranges::copy(files, std::back_inserter(command));
        command.push_back(other_.string());
        const RunCost cost = TimedRun(command);
        Clear(other_);
        return cost;
    }

    const Scenario& scenario_;
    std::string program_;
    fs::path folder_;
    fs::path made_;
    fs::path other_;
};

}  // namespace

std::string RunPaired(const Scenario& scenario, const std::string& program, const std::string& folder,
                      int rounds, PairedCosts& costs) {
    const Sides sides(scenario, program, folder);
    if (!sides.RunScenario().succeeded || !sides.IsComplete()) {
        return std::string(scenario.label) + " left images unconverted in " + folder;
    }
    costs.images = sides.Images().size();
    (void)sides.RunYardstick();
    for (int round = 0; round < rounds; ++round) {
        costs.yardstick.push_back(sides.RunYardstick());
        costs.scenario.push_back(sides.RunScenario());
        if (!costs.yardstick.back().succeeded || !costs.scenario.back().succeeded) {
            return "a run failed";
        }
    }
    return "";
}
