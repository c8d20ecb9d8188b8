// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_INSTRUCTION_SET_H
#define VELMARCON_SENSOR_INSTRUCTION_SET_H

#include <array>

/// The vector instructions for which a loop over pixels is compiled. Every version gives the same result.
/// kBaseline is what the compiler uses by default; only x86-64 processors have the others.
enum class InstructionSet { kBaseline, kAvx2, kAvx512 };

namespace instruction_set {

inline constexpr std::array kAll = {InstructionSet::kBaseline, InstructionSet::kAvx2,
                                    InstructionSet::kAvx512};

/// Whether the program, the processor and the operating system support `set`.
bool IsAvailable(InstructionSet set);

/// The available set with the widest vectors.
InstructionSet Best();

// Attributes on functions instead of a separately compiled file for each set: the linker could use that
// file's copies of the library's inline functions in the whole program. Instead of automatic dispatch
// (target_clones) as well, because MinGW does not support it.
#if defined(__x86_64__) && defined(__GNUC__)

template <typename Loop, typename... Arguments>
[[gnu::target("avx2")]] auto RunAvx2(Arguments... arguments) {
    return Loop::Run(arguments...);
}

template <typename Loop, typename... Arguments>
[[gnu::target("avx512f,avx512bw,avx512vl")]] auto RunAvx512(Arguments... arguments) {
    return Loop::Run(arguments...);
}

#else

template <typename Loop, typename... Arguments>
auto RunAvx2(Arguments... arguments) {
    return Loop::Run(arguments...);
}

template <typename Loop, typename... Arguments>
auto RunAvx512(Arguments... arguments) {
    return Loop::Run(arguments...);
}

#endif

/// Calls Loop::Run(arguments...) in the version for `set`, which must be available. Loop::Run must be
/// [[gnu::always_inline]]: only code that is inlined into a version is compiled for its instructions.
template <typename Loop, typename... Arguments>
auto Run(InstructionSet set, Arguments... arguments) {
    switch (set) {
        case InstructionSet::kAvx512:
            return RunAvx512<Loop>(arguments...);
        case InstructionSet::kAvx2:
            return RunAvx2<Loop>(arguments...);
        default:
            return Loop::Run(arguments...);
    }
}

}  // namespace instruction_set

#endif  // VELMARCON_SENSOR_INSTRUCTION_SET_H
