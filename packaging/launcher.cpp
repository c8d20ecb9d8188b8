// SPDX-License-Identifier: MIT
// The installed command. The program looks for its databases in the folder of argv[0]; this starts it with
// one in a folder of the user's own, where they can be edited without being root and outlive the package.
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "app/usage_text.h"
#include "packaging/data_folder.h"
#include "packaging/own_path.h"

namespace {

namespace fs = std::filesystem;

constexpr int kNotFound = 127;  // as the shells have it
constexpr int kNotStarted = 126;

/// Where the rest of the package lies, seen from the folder above the launcher's own.
constexpr const char* kProgram = "lib/velmarcon/velmarcon";
constexpr const char* kPackagedLensDatabase = "share/velmarcon/lensdb.ini";

void PrintVersion() {
    std::printf("velmarcon %s\n", VELMARCON_VERSION);
}

void PrintHelp() {
    PrintVersion();
    std::printf("%s", kUsageText);
    std::printf(
        "As the first argument:\n"
        "\n"
        "--help             this text\n"
        "--version          the version\n"
        "--where            the folder of lensdb.ini and sensdb.ini, which are yours to edit\n"
        "\n"
        "More: man velmarcon, man velmarcon-batch.\n");
}

/// Prints to standard error, so that what the program prints stays the same.
void Complain(const fs::path& path, const std::string& what) {
    std::fprintf(stderr, "velmarcon: %s: %s\n", path.c_str(), what.c_str());
}

/// Without its folder, and so without databases, the program still converts.
void Prepare(const fs::path& folder, const fs::path& lens_database) {
    if (folder.empty()) {
        std::fprintf(stderr,
                     "velmarcon: neither XDG_DATA_HOME nor a home folder: databases are looked for in the "
                     "current folder\n");
    } else if (const int error = PrepareDataFolder(folder, lens_database); error != 0) {
        Complain(lens_database,
                 "not copied to " + folder.string() + ": " + std::generic_category().message(error));
    }
}

/// The exit status of what was only printed.
int Printed() {
    return std::fflush(stdout) == 0 ? 0 : 1;
}

/// Prints the folder of the databases, if there is one. Returns the exit status.
int PrintDataFolder(const fs::path& folder) {
    if (folder.empty()) {
        return 1;
    }
    std::printf("%s\n", folder.c_str());
    return Printed();
}

/// Becomes the program. Returns only when that fails, with the exit status.
int StartProgram(const fs::path& program, const fs::path& folder, std::span<char*> arguments) {
    std::string name = (folder / "velmarcon").string();
    std::vector<char*> handed_over = {name.data()};
    if (!arguments.empty()) {
        handed_over.insert(handed_over.end(), arguments.begin() + 1, arguments.end());
    }
    handed_over.push_back(nullptr);
    ::execv(program.c_str(), handed_over.data());
    const int error = errno;
    Complain(program, "cannot be started: " + std::generic_category().message(error));
    return error == ENOENT ? kNotFound : kNotStarted;
}

}  // namespace

int main(int argc, char* argv[]) {
    const std::span<char*> arguments(argv, static_cast<std::size_t>(argc));
    const std::string_view first = arguments.size() > 1 ? arguments[1] : "";
    if (first == "--help") {
        PrintHelp();
        return Printed();
    }
    if (first == "--version") {
        PrintVersion();
        return Printed();
    }
    const fs::path installed = OwnPath().parent_path().parent_path();
    const fs::path folder = DataFolder();
    Prepare(folder, installed / kPackagedLensDatabase);
    if (first == "--where") {
        return PrintDataFolder(folder);
    }
    return StartProgram(installed / kProgram, folder, arguments);
}
