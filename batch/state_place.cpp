// SPDX-License-Identifier: MIT
#include "batch/state_place.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): there is one thread
    return value != nullptr ? value : "";
}

}  // namespace

namespace state_place {

std::string UsualParent() {
    const std::string state_home = Variable("XDG_STATE_HOME");
#if defined(_WIN32)
    const std::string base = state_home.empty() ? Variable("LOCALAPPDATA") : state_home;
#else
    const std::string base = state_home.empty() ? Variable("HOME") + "/.local/state" : state_home;
#endif
    return base + "/velmarcon-batch";
}

/// FNV-1a.
std::string KeyOf(const std::string& text) {
    constexpr std::uint64_t basis = 0xCBF29CE484222325;
    constexpr std::uint64_t prime = 0x100000001B3;
    std::uint64_t key = basis;
    for (const char c : text) {
        key = (key ^ static_cast<unsigned char>(c)) * prime;
    }
    std::array<char, 17> digits = {};
    (void)std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(key));
    return digits.data();
}

}  // namespace state_place
