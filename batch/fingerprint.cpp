// SPDX-License-Identifier: MIT
#include "batch/fingerprint.h"

#define XXH_INLINE_ALL  // no library is linked
#include <xxhash.h>

#include "base/hex_digits.h"
#if defined(VELMARCON_AVX2)
#include "batch/fingerprint_avx2.h"
#include "sensor/instruction_set.h"
#endif

struct Fingerprint::State {
    XXH3_state_t sum;
};

// Neither call fails with a state that is there.

Fingerprint::Fingerprint() : state_(std::make_unique<State>()) {
    (void)XXH3_64bits_reset(&state_->sum);
}

Fingerprint::~Fingerprint() = default;

void Fingerprint::Add(std::span<const std::uint8_t> bytes) {
#if defined(VELMARCON_AVX2)
    static const bool has_avx2 = instruction_set::IsAvailable(InstructionSet::kAvx2);
    if (has_avx2) {
        AddByAvx2(&state_->sum, bytes.data(), bytes.size());
        return;
    }
#endif
    (void)XXH3_64bits_update(&state_->sum, bytes.data(), bytes.size());
}

std::string Fingerprint::Hex() const {
    XXH64_canonical_t most_significant_first = {};
    XXH64_canonicalFromHash(&most_significant_first, XXH3_64bits_digest(&state_->sum));
    return HexDigits(most_significant_first.digest);
}
