// SPDX-License-Identifier: MIT
#include "tests/matrix/matrix_run.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <set>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

#include "tests/matrix/case.h"
#include "tests/matrix/case_folder.h"
#include "tests/matrix/child.h"
#include "tests/matrix/database_cases.h"
#include "tests/matrix/entry_cases.h"
#include "tests/matrix/field_cases.h"
#include "tests/matrix/geometry_cases.h"
#include "tests/matrix/judge.h"
#include "tests/matrix/known_pixels.h"
#include "tests/matrix/structure_cases.h"
#include "tests/matrix/tally.h"

namespace matrix {

namespace {

CaseList AllCases() {
    CaseList cases;
    AddFieldCases(cases);
    AddTypeCases(cases);
    AddEntryCases(cases);
    AddRationalCases(cases);
    AddTextCases(cases);
    AddGeometryCases(cases);
    AddDatabaseCases(cases);
    AddStructureCases(cases);
    return cases;
}

/// The case with the given name; if there is none, all cases whose names begin with it.
std::vector<const Case*> Wanted(const CaseList& list, const Arguments& arguments) {
    const auto named = std::ranges::find(list.cases(), arguments.only, &Case::name);
    if (named != list.cases().end()) {
        return {&*named};
    }
    std::vector<const Case*> wanted;
    for (std::size_t i = 0; i < list.cases().size(); i += arguments.every) {
        if (list.cases()[i].name.starts_with(arguments.only)) {
            wanted.push_back(&list.cases()[i]);
        }
    }
    return wanted;
}

/// The data that all threads of a run share.
struct Shared {
    const Arguments& arguments;
    const std::vector<const Case*>& cases;
    const KnownPixels& known;
    const SharedFiles& files;
    const std::string& folder;
    std::atomic<std::size_t> next = 0;
    Tally tally = {};
};

/// A thread that takes one case after another.
class Worker {
  public:
    Worker(Shared& shared, std::size_t number)
        : shared_(shared),
          folder_(shared.folder, "job-" + std::to_string(number), shared.files),
          release_(shared.arguments.program, folder_.path()),
          sanitized_(shared.arguments.sanitized, folder_.path()) {}

    void Work() {
        const char* group = nullptr;
        for (std::size_t i = shared_.next++; i < shared_.cases.size(); i = shared_.next++) {
            const Case& one = *shared_.cases[i];
            if (group != one.group) {
                CheckSharedFiles(group);
                group = one.group;
            }
            RunCase(one);
        }
        CheckSharedFiles(group);
    }

  private:
    void CheckSharedFiles(const char* group) {
        if (const std::string fault = folder_.FaultInSharedFiles(); !fault.empty()) {
            shared_.tally.Fail(group == nullptr ? "before the first case" : group, fault);
        }
    }

    void RunCase(const Case& one) {
        const Files files = one.files();
        const std::string outcome = RunOnce(one, files, release_, "release");
        shared_.tally.Count(one, outcome);
        if (!shared_.arguments.sanitized.empty() && RunOnce(one, files, sanitized_, "sanitized") != outcome) {
            shared_.tally.Fail(one.name, "the sanitized program ends differently");
        }
    }

    std::string RunOnce(const Case& one, const Files& files, const Child& child, const char* program) {
        if (const std::string fault = folder_.Prepare(*one.options, files); !fault.empty()) {
            shared_.tally.Fail(one.name, fault);
            return "not run";
        }
        const Ending ending = child.Run(CaseFolder::Arguments(*one.options));
        shared_.tally.Measure(program, one, ending);
        const Verdict verdict = Judge(one, files, ending, folder_, shared_.known);
        if (!verdict.fault.empty()) {
            shared_.tally.Fail(one.name, std::string(program) + ": " + verdict.fault);
        }
        return verdict.outcome;
    }

    Shared& shared_;
    CaseFolder folder_;
    Child release_;
    Child sanitized_;
};

std::size_t RunCases(const Arguments& arguments, const std::vector<const Case*>& cases,
                     const SharedFiles& files, const std::string& folder) {
    KnownPixels known;
    CaseFolder first(folder, "known", files);
    if (const std::string fault = known.Make(folder, Child(arguments.program, first.path()), first);
        !fault.empty()) {
        std::printf("FAILED without damage: %s\n", fault.c_str());
        return 1;
    }
    Shared shared = {arguments, cases, known, files, folder};
    std::vector<std::thread> threads;
    for (std::size_t job = 0; job < arguments.jobs; ++job) {
        threads.emplace_back([&shared, job] { Worker(shared, job).Work(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return shared.tally.Print();
}

/// Links `program` as bin/`name` in the folder of a case, next to its databases, and prints how to run it.
void PrintCommand(const CaseFolder& folder, const OptionSet& options, const std::string& program,
                  const std::string& name) {
    std::error_code error;
    std::filesystem::create_symlink(program, folder.path() + "/bin/" + name, error);
    std::printf("cd '%s' && bin/%s", folder.path().c_str(), name.c_str());
    for (const std::string& argument : CaseFolder::Arguments(options)) {
        std::printf(" %s", argument.c_str());
    }
    std::printf("\n");
}

/// Writes the files of a case. All files must be new: the folder must not hold a case yet.
std::size_t Keep(const Arguments& arguments, const Case& one) {
    const std::string path = std::filesystem::absolute(arguments.keep).string();
    std::error_code error;
    std::filesystem::create_directories(path, error);
    SharedFiles copies;
    std::string fault = error ? error.message() : WriteSharedFiles(path, copies);
    CaseFolder folder(path, "case", copies);
    fault += folder.Prepare(*one.options, one.files());
    if (!fault.empty()) {
        std::printf("%s: %s\n", path.c_str(), fault.c_str());
        return 1;
    }
    std::printf("%s\n", one.name.c_str());
    PrintCommand(folder, *one.options, arguments.program, "velmarcon");
    if (!arguments.sanitized.empty()) {
        PrintCommand(folder, *one.options, arguments.sanitized, "velmarcon-sanitized");
    }
    return 0;
}

}  // namespace

std::size_t Run(const Arguments& arguments, const std::string& folder) {
    const CaseList list = AllCases();
    const auto cases = Wanted(list, arguments);
    std::set<std::string_view> names;
    for (const Case* one : cases) {
        if (arguments.list) {
            std::printf("%s\n", one->name.c_str());
        }
        if (!names.insert(one->name).second) {
            std::printf("FAILED: two cases named %s\n", one->name.c_str());
            return 1;
        }
    }
    if (cases.empty()) {
        std::printf("no such case\n");
        return 1;
    }
    if (arguments.list) {
        return 0;
    }
    if (!arguments.keep.empty()) {
        return Keep(arguments, *cases.front());
    }
    SharedFiles files;
    if (const std::string fault = WriteSharedFiles(folder, files); !fault.empty()) {
        std::printf("%s\n", fault.c_str());
        return 1;
    }
    return RunCases(arguments, cases, files, folder);
}

}  // namespace matrix
