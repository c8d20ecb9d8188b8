// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_INSTRUCTION_SET_H
#define VELMARCON_SENSOR_INSTRUCTION_SET_H

#include <array>

/// The vector instructions for which a loop over pixels is compiled. Each version gives the same result; only
/// x86-64 processors have more than the first, which is what the compiler takes anyway.
enum class InstructionSet { kBaseline, kAvx2, kAvx512 };

namespace instruction_set {

inline constexpr std::array kAll = {InstructionSet::kBaseline, InstructionSet::kAvx2,
                                    InstructionSet::kAvx512};

/// Whether program, processor and operating system have `set`.
bool IsAvailable(InstructionSet set);

/// The widest vectors that are available.
InstructionSet Best();

// Attributes on functions, and not a file of its own for each set: inline functions of the library that such
// a file compiled could end up in the whole program. MinGW, too, has these attributes, but no choice of a
// version while the program is loaded.
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
/// [[gnu::always_inline]]: only what is compiled into a version has its instructions.
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
