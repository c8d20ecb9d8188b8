// SPDX-License-Identifier: MIT
#include "tests/matrix/case_folder.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <span>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "samples/file_writer.h"
#include "tests/matrix/base_inputs.h"
#include "tests/matrix/known_output.h"
#include "tests/matrix/mapped_file.h"

namespace matrix {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kOlderDng = "an older DNG";

std::span<const std::uint8_t> AsBytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

bool Holds(const std::string& path, std::span<const std::uint8_t> bytes) {
    const MappedFile file(path);
    return file.there() && std::ranges::equal(file.bytes(), bytes);
}

std::string InputPath(Kind kind) {
    return std::string(FolderOf(kind)) + (kind == Kind::kPair ? "/L1.JPG" : "/L1.DNG");
}

/// FNV-1a, eight bytes at a time.
std::uint64_t HashOf(const std::string& path) {
    const MappedFile file(path);
    const auto bytes = file.bytes();
    std::uint64_t hash = 0xCBF29CE484222325 ^ bytes.size();
    std::uint64_t word = 0;
    for (std::size_t i = 0; i + sizeof(word) <= bytes.size(); i += sizeof(word)) {
        std::memcpy(&word, &bytes[i], sizeof(word));
        hash = (hash ^ word) * 0x100000001B3;
    }
    return hash;
}

struct stat StatusOf(const std::string& path) {
    struct stat status = {};
    ::stat(path.c_str(), &status);
    return status;
}

/// Ignores the time of the status change, because that also changes with another hard link.
bool IsUnchanged(const struct stat& before, const struct stat& now) {
    return before.st_ino == now.st_ino && before.st_size == now.st_size && before.st_mode == now.st_mode &&
           before.st_mtim.tv_sec == now.st_mtim.tv_sec && before.st_mtim.tv_nsec == now.st_mtim.tv_nsec;
}

/// The files below `folder`, sorted.
std::vector<std::string> NamesBelow(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : fs::recursive_directory_iterator(folder, error)) {
        if (!entry.is_directory(error)) {
            names.push_back(entry.path().lexically_relative(folder).string());
        }
    }
    std::ranges::sort(names);
    return names;
}

/// Whether `bytes` is a database as the program writes it: complete sections and nothing else.
bool IsSensorDatabase(std::span<const std::uint8_t> bytes) {
    std::istringstream lines(std::string(bytes.begin(), bytes.end()));
    for (std::string line; std::getline(lines, line);) {
        const bool known = line.empty() || (line.starts_with("[") && line.ends_with("]")) ||
                           line.starts_with("Line = ") || line.starts_with("LevelCorrection = ");
        if (!known) {
            return false;
        }
    }
    return !bytes.empty() && bytes.back() == '\n';
}

}  // namespace

std::string WriteSharedFiles(const std::string& folder, SharedFiles& shared) {
    shared.raw = folder + "/half.RAW";
    shared.dark = folder + "/dark.BIA";
    std::string fault =
        samples::WriteFile(shared.raw, RawFile()) + samples::WriteFile(shared.dark, DarkFile());
    shared.raw_hash = HashOf(shared.raw);
    shared.dark_hash = HashOf(shared.dark);
    return fault;
}

CaseFolder::CaseFolder(const std::string& parent, const std::string& name, SharedFiles shared)
    : path_(parent + "/" + name),
      shared_(std::move(shared)),
      raw_before_(StatusOf(shared_.raw)),
      dark_before_(StatusOf(shared_.dark)) {}

std::string CaseFolder::Prepare(const OptionSet& options, const Files& files) {
    if (files.input.empty()) {
        return "the case has no input";
    }
    std::error_code error;
    fs::remove_all(path_, error);
    for (const char* const folder : {"bin", FolderOf(options.kind), "out"}) {
        fs::create_directories(path_ + "/" + folder, error);
    }
    if (options.kind == Kind::kPair) {
        fs::create_hard_link(shared_.raw, path_ + "/pair/L1.RAW", error);
    }
    if (options.correction == Correction::kDarkFrame) {
        fs::create_hard_link(shared_.dark, path_ + "/pair/L1.BIA", error);
    }
    if (error) {
        return error.message();
    }
    std::string fault = samples::WriteFile(path_ + "/" + InputPath(options.kind), files.input);
    fault += samples::WriteFile(path_ + "/bin/lensdb.ini", AsBytes(files.lenses));
    fault += samples::WriteFile(path_ + "/bin/sensdb.ini", AsBytes(files.sensors));
    return options.older_dng ? fault + samples::WriteFile(Result(), AsBytes(kOlderDng)) : fault;
}

std::vector<std::string> CaseFolder::Arguments(const OptionSet& options) {
    const char* const input = options.kind == Kind::kPair ? "pair/L1.RAW" : "dng/L1.DNG";
    std::vector<std::string> arguments = {"-i", input, "-o", "out"};
    arguments.insert(arguments.end(), options.arguments.begin(), options.arguments.end());
    return arguments;
}

std::vector<std::string> CaseFolder::ExpectedNames(const OptionSet& options, bool result) const {
    std::vector<std::string> names = {"bin/lensdb.ini", "bin/sensdb.ini", InputPath(options.kind)};
    if (options.kind == Kind::kPair) {
        names.emplace_back("pair/L1.RAW");
    }
    if (options.correction == Correction::kDarkFrame) {
        names.emplace_back("pair/L1.BIA");
    }
    if (result || options.older_dng) {
        names.emplace_back("out/L1.DNG");
    }
    std::ranges::sort(names);
    return names;
}

std::string CaseFolder::FaultAfter(const OptionSet& options, const Files& files, bool result,
                                   bool new_database) const {
    if (!Holds(path_ + "/" + InputPath(options.kind), files.input)) {
        return "the input was changed";
    }
    if (!Holds(path_ + "/bin/lensdb.ini", AsBytes(files.lenses))) {
        return "the lens database was changed";
    }
    const MappedFile sensors(path_ + "/bin/sensdb.ini");
    if (new_database ? !IsSensorDatabase(sensors.bytes())
                     : !std::ranges::equal(sensors.bytes(), AsBytes(files.sensors))) {
        return new_database ? "the new sensor database is invalid" : "the sensor database was changed";
    }
    const bool pair = options.kind == Kind::kPair;
    if (!IsUnchanged(raw_before_, StatusOf(pair ? path_ + "/pair/L1.RAW" : shared_.raw)) ||
        !IsUnchanged(dark_before_, StatusOf(shared_.dark))) {
        return "the RAW file or the dark frame was changed";
    }
    const auto names = NamesBelow(path_);
    if (names != ExpectedNames(options, result)) {
        std::string text = "the files are now";
        for (const std::string& name : names) {
            text += " " + name;
        }
        return text;
    }
    if (!result && options.older_dng && !Holds(Result(), AsBytes(kOlderDng))) {
        return "the older DNG was changed";
    }
    return "";
}

std::string CaseFolder::FaultInSharedFiles() const {
    return HashOf(shared_.raw) == shared_.raw_hash && HashOf(shared_.dark) == shared_.dark_hash
               ? ""
               : "the bytes of the RAW file or of the dark frame were changed";
}

}  // namespace matrix
