// SPDX-License-Identifier: MIT
#include "tests/matrix/arguments.h"

#include <cstdlib>
#include <filesystem>

namespace matrix {

namespace {

/// `text` as a positive integer; 0 if it is not one.
std::size_t Number(const std::string& text) {
    return text.find_first_not_of("0123456789") == std::string::npos
               ? static_cast<std::size_t>(std::strtoull(text.c_str(), nullptr, 10))
               : 0;
}

bool Take(const std::string& option, const std::string& value, Arguments& arguments) {
    if (option == "--program") {
        arguments.program = std::filesystem::absolute(value).string();
    } else if (option == "--sanitized") {
        arguments.sanitized = std::filesystem::absolute(value).string();
    } else if (option == "--every") {
        arguments.every = Number(value);
    } else if (option == "--jobs") {
        arguments.jobs = Number(value);
    } else if (option == "--case") {
        arguments.only = value;
    } else if (option == "--keep") {
        arguments.keep = value;
    } else {
        return false;
    }
    return true;
}

}  // namespace

std::string Parse(const std::vector<std::string>& words, Arguments& arguments) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i] == "--list") {
            arguments.list = true;
        } else if (i + 1 == words.size() || !Take(words[i], words[i + 1], arguments)) {
            return "unknown or incomplete option " + words[i];
        } else {
            ++i;
        }
    }
    if (arguments.program.empty() || arguments.every == 0 || arguments.jobs == 0) {
        return "a program and positive numbers are required";
    }
    return arguments.keep.empty() || !arguments.only.empty() ? "" : "--keep requires --case";
}

}  // namespace matrix
