// SPDX-License-Identifier: MIT
#include "batch/proof/sha256_blocks.h"

#include <bit>

#include "base/byte_order.h"

#if defined(__x86_64__) || defined(__i386__)
#define VELMARCON_SHA_INSTRUCTIONS
#include <cpuid.h>
#include <immintrin.h>
#endif

namespace sha256_blocks {

namespace {

constexpr std::size_t kRounds = 64;
constexpr std::size_t kBlockWords = 16;

constexpr std::array<std::uint32_t, kRounds> kConstants = {
    0x428A2F98, 0x71374491, 0xB5C0FBCF, 0xE9B5DBA5, 0x3956C25B, 0x59F111F1, 0x923F82A4, 0xAB1C5ED5,
    0xD807AA98, 0x12835B01, 0x243185BE, 0x550C7DC3, 0x72BE5D74, 0x80DEB1FE, 0x9BDC06A7, 0xC19BF174,
    0xE49B69C1, 0xEFBE4786, 0x0FC19DC6, 0x240CA1CC, 0x2DE92C6F, 0x4A7484AA, 0x5CB0A9DC, 0x76F988DA,
    0x983E5152, 0xA831C66D, 0xB00327C8, 0xBF597FC7, 0xC6E00BF3, 0xD5A79147, 0x06CA6351, 0x14292967,
    0x27B70A85, 0x2E1B2138, 0x4D2C6DFC, 0x53380D13, 0x650A7354, 0x766A0ABB, 0x81C2C92E, 0x92722C85,
    0xA2BFE8A1, 0xA81A664B, 0xC24B8B70, 0xC76C51A3, 0xD192E819, 0xD6990624, 0xF40E3585, 0x106AA070,
    0x19A4C116, 0x1E376C08, 0x2748774C, 0x34B0BCB5, 0x391C0CB3, 0x4ED8AA4A, 0x5B9CCA4F, 0x682E6FF3,
    0x748F82EE, 0x78A5636F, 0x84C87814, 0x8CC70208, 0x90BEFFFA, 0xA4506CEB, 0xBEF9A3F7, 0xC67178F2};

using Schedule = std::array<std::uint32_t, kRounds>;

Schedule ScheduleOf(std::span<const std::uint8_t> block) {
    Schedule words = {};
    for (std::size_t i = 0; i < kBlockWords; ++i) {
        words[i] = byte_order::GetBig<std::uint32_t>(block.subspan(i * sizeof(std::uint32_t)));
    }
    for (std::size_t i = kBlockWords; i < kRounds; ++i) {
        const std::uint32_t early = words[i - 15];
        const std::uint32_t late = words[i - 2];
        words[i] = (std::rotr(late, 17) ^ std::rotr(late, 19) ^ late >> 10U) + words[i - 7] +
                   (std::rotr(early, 7) ^ std::rotr(early, 18) ^ early >> 3U) + words[i - 16];
    }
    return words;
}

void CompressBlock(State& state, std::span<const std::uint8_t> block) {
    const Schedule words = ScheduleOf(block);
    auto [a, b, c, d, e, f, g, h] = state;
    for (std::size_t i = 0; i < kRounds; ++i) {
        const std::uint32_t choice = (e & f) ^ (~e & g);
        const std::uint32_t majority = (a & b) ^ (a & c) ^ (b & c);
        const std::uint32_t first =
            h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) + choice + kConstants[i] + words[i];
        const std::uint32_t second = (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + majority;
        h = g;
        g = f;
        f = e;
        e = d + first;
        d = c;
        c = b;
        b = a;
        a = first + second;
    }
    const State sum = {a, b, c, d, e, f, g, h};
    for (std::size_t i = 0; i < state.size(); ++i) {
        state[i] += sum[i];
    }
}

#if defined(VELMARCON_SHA_INSTRUCTIONS)

constexpr std::size_t kVectorWords = 4;

#define VELMARCON_WITH_SHA [[gnu::target("sha,sse4.1")]]

VELMARCON_WITH_SHA __m128i Load(const void* words) {
    return _mm_loadu_si128(static_cast<const __m128i*>(words));
}

VELMARCON_WITH_SHA __m128i AddWords(__m128i a, __m128i b) {
    using Words [[gnu::vector_size(sizeof(__m128i))]] = std::uint32_t;
    return reinterpret_cast<__m128i>(reinterpret_cast<Words>(a) + reinterpret_cast<Words>(b));
}

/// Rounds 4 * `step` to 4 * `step` + 3. The instructions keep the state as A, B, E, F and C, D, G, H, highest
/// word first, and make two rounds each.
VELMARCON_WITH_SHA void FourRounds(__m128i& abef, __m128i& cdgh, __m128i words, std::size_t step) {
    constexpr int upper_half = 0x0E;
    const __m128i sum = AddWords(words, Load(&kConstants[step * kVectorWords]));
    cdgh = _mm_sha256rnds2_epu32(cdgh, abef, sum);
    abef = _mm_sha256rnds2_epu32(abef, cdgh, _mm_shuffle_epi32(sum, upper_half));
}

/// The next four words of the schedule, from the sixteen before them, oldest first.
VELMARCON_WITH_SHA __m128i NextWords(__m128i first, __m128i second, __m128i third, __m128i fourth) {
    const __m128i seventh_last = _mm_alignr_epi8(fourth, third, sizeof(std::uint32_t));
    return _mm_sha256msg2_epu32(AddWords(_mm_sha256msg1_epu32(first, second), seventh_last), fourth);
}

/// Vector `index` of a block, as four words.
VELMARCON_WITH_SHA __m128i BlockWords(std::span<const std::uint8_t> block, std::size_t index) {
    const __m128i big_endian = _mm_set_epi64x(0x0C0D0E0F08090A0B, 0x0405060700010203);
    return _mm_shuffle_epi8(Load(block.data() + index * sizeof(__m128i)), big_endian);
}

VELMARCON_WITH_SHA void CompressBlockFast(__m128i& abef, __m128i& cdgh, std::span<const std::uint8_t> block) {
    const __m128i abef_before = abef;
    const __m128i cdgh_before = cdgh;
    __m128i first = BlockWords(block, 0);
    __m128i second = BlockWords(block, 1);
    __m128i third = BlockWords(block, 2);
    __m128i fourth = BlockWords(block, 3);
    for (std::size_t step = 0; step < kRounds / kVectorWords; ++step) {
        FourRounds(abef, cdgh, first, step);
        const __m128i next = NextWords(first, second, third, fourth);
        first = second;
        second = third;
        third = fourth;
        fourth = next;
    }
    abef = AddWords(abef, abef_before);
    cdgh = AddWords(cdgh, cdgh_before);
}

VELMARCON_WITH_SHA void CompressFast(State& state, std::span<const std::uint8_t> blocks) {
    const auto [a, b, c, d, e, f, g, h] = std::bit_cast<std::array<int, 8>>(state);
    __m128i abef = _mm_set_epi32(a, b, e, f);
    __m128i cdgh = _mm_set_epi32(c, d, g, h);
    for (; !blocks.empty(); blocks = blocks.subspan(kBlockSize)) {
        CompressBlockFast(abef, cdgh, blocks.first(kBlockSize));
    }
    using Words = std::array<std::uint32_t, kVectorWords>;
    const auto [f_new, e_new, b_new, a_new] = std::bit_cast<Words>(abef);
    const auto [h_new, g_new, d_new, c_new] = std::bit_cast<Words>(cdgh);
    state = {a_new, b_new, c_new, d_new, e_new, f_new, g_new, h_new};
}

bool HasInstructions() {
    unsigned int eax = 0;
    unsigned int ebx = 0;
    unsigned int ecx = 0;
    unsigned int edx = 0;
    constexpr unsigned int features = 1;
    constexpr unsigned int more_features = 7;
    if (__get_cpuid(features, &eax, &ebx, &ecx, &edx) == 0 || (ecx & bit_SSE4_1) == 0) {
        return false;
    }
    return __get_cpuid_count(more_features, 0, &eax, &ebx, &ecx, &edx) != 0 && (ebx & bit_SHA) != 0;
}

#endif

}  // namespace

void CompressPlain(State& state, std::span<const std::uint8_t> blocks) {
    for (; !blocks.empty(); blocks = blocks.subspan(kBlockSize)) {
        CompressBlock(state, blocks.first(kBlockSize));
    }
}

Compress Fastest() {
#if defined(VELMARCON_SHA_INSTRUCTIONS)
    static const bool has_instructions = HasInstructions();
    return has_instructions ? CompressFast : CompressPlain;
#else
    return CompressPlain;
#endif
}

}  // namespace sha256_blocks
