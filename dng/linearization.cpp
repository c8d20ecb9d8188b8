// SPDX-License-Identifier: MIT
#include "dng/linearization.h"

#include <cstddef>

#if defined(__x86_64__) && defined(__GNUC__)
#include <immintrin.h>
#endif

namespace {

/// Uses bare pointers, because checking each index would be slow. The pixels share no memory with the
/// samples, so the compiler need not store a pixel before it loads the next sample.
void LookUpEach(std::span<const std::uint8_t> samples, const LinearizationTable& table,
                std::span<Pixel> pixels) {
    const std::uint8_t* const sample = samples.data();
    const std::uint16_t* const entries = table.data();
    Pixel* const pixel = pixels.data();
    for (std::size_t i = 0; i < samples.size(); ++i) {
        pixel[i] = entries[sample[i]];
    }
}

#if defined(__x86_64__) && defined(__GNUC__)

/// Keeps the table in eight registers. One instruction looks up 32 samples in two of them, by the low six
/// bits; the high two bits then choose among the four results. Returns how many samples it has looked up.
[[gnu::target("avx512f,avx512bw,avx512vl")]] std::size_t LookUpInRegisters(
    std::span<const std::uint8_t> samples, const LinearizationTable& table, std::span<Pixel> pixels) {
    constexpr std::size_t lanes = 32;
    const __m512i table0 = _mm512_loadu_si512(&table[0 * lanes]);
    const __m512i table1 = _mm512_loadu_si512(&table[1 * lanes]);
    const __m512i table2 = _mm512_loadu_si512(&table[2 * lanes]);
    const __m512i table3 = _mm512_loadu_si512(&table[3 * lanes]);
    const __m512i table4 = _mm512_loadu_si512(&table[4 * lanes]);
    const __m512i table5 = _mm512_loadu_si512(&table[5 * lanes]);
    const __m512i table6 = _mm512_loadu_si512(&table[6 * lanes]);
    const __m512i table7 = _mm512_loadu_si512(&table[7 * lanes]);
    const __m512i bit6 = _mm512_set1_epi16(1 << 6);
    const __m512i bit7 = _mm512_set1_epi16(1 << 7);
    const std::size_t count = samples.size() / lanes * lanes;
    const std::uint8_t* const sample = samples.data();
    Pixel* const pixel = pixels.data();
    for (std::size_t i = 0; i < count; i += lanes) {
        const __m512i index =
            _mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(sample + i)));
        const __mmask32 has_bit6 = _mm512_test_epi16_mask(index, bit6);
        const __mmask32 has_bit7 = _mm512_test_epi16_mask(index, bit7);
        const __m512i low =
            _mm512_mask_blend_epi16(has_bit6, _mm512_permutex2var_epi16(table0, index, table1),
                                    _mm512_permutex2var_epi16(table2, index, table3));
        const __m512i high =
            _mm512_mask_blend_epi16(has_bit6, _mm512_permutex2var_epi16(table4, index, table5),
                                    _mm512_permutex2var_epi16(table6, index, table7));
        _mm512_storeu_si512(pixel + i, _mm512_mask_blend_epi16(has_bit7, low, high));
    }
    return count;
}

#else

std::size_t LookUpInRegisters(std::span<const std::uint8_t> /*samples*/, const LinearizationTable& /*table*/,
                              std::span<Pixel> /*pixels*/) {
    return 0;
}

#endif

}  // namespace

void Linearize(std::span<const std::uint8_t> samples, const LinearizationTable& table,
               std::span<Pixel> pixels, InstructionSet version) {
    const std::size_t done =
        version == InstructionSet::kAvx512 ? LookUpInRegisters(samples, table, pixels) : 0;
    LookUpEach(samples.subspan(done), table, pixels.subspan(done));
}
