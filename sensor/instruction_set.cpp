// SPDX-License-Identifier: MIT
#include "sensor/instruction_set.h"

#include <algorithm>

namespace instruction_set {

bool IsAvailable(InstructionSet set) {
#if defined(__x86_64__) && defined(__GNUC__)
    // These also check that the operating system saves the wide registers.
    switch (set) {
        case InstructionSet::kAvx512:
            return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                   __builtin_cpu_supports("avx512vl");
        case InstructionSet::kAvx2:
            return __builtin_cpu_supports("avx2");
        default:
            return true;
    }
#else
    return set == InstructionSet::kBaseline;
#endif
}

InstructionSet Best() {
    return *std::find_if(kAll.rbegin(), kAll.rend(), IsAvailable);
}

}  // namespace instruction_set
