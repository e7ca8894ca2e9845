// SPDX-License-Identifier: MIT
//
// Limbs are the 64-bit digits of multi-precision arithmetic. A Kel_Number stores 16-bit words, the
// lowest first. Four words make a limb.
#pragma once

#include "common/u128.h"
#include "common/u64.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace KelRT::numbers {

using Limb = std::uint64_t;
using DoubleLimb = common::U128;

constexpr std::size_t WORDS_PER_LIMB = 4;
constexpr unsigned LIMB_BITS = 64;

[[nodiscard]] constexpr std::size_t limbsFor(std::size_t wordCount) {
    return common::divideUp(wordCount, WORDS_PER_LIMB);
}

// Loads a limb from the first four words, or from all words (at least 1) if there are fewer.
// Missing words count as 0.
[[nodiscard]] inline Limb loadLimb(std::span<const std::uint16_t> words) {
    if (words.size() >= WORDS_PER_LIMB)
        return Limb{words[0]} | Limb{words[1]} << 16 | Limb{words[2]} << 32 | Limb{words[3]} << 48;
    Limb limb = 0;
    for (std::size_t i = 0; i < words.size(); ++i)
        limb |= Limb{words[i]} << 16 * i;
    return limb;
}

// Stores a limb in the first four words, or in all words if there are fewer. Bits that have no word
// are lost.
inline void storeLimb(std::span<std::uint16_t> words, Limb limb) {
    if (words.size() >= WORDS_PER_LIMB) {
        words[0] = static_cast<std::uint16_t>(limb);
        words[1] = static_cast<std::uint16_t>(limb >> 16);
        words[2] = static_cast<std::uint16_t>(limb >> 32);
        words[3] = static_cast<std::uint16_t>(limb >> 48);
        return;
    }
    for (std::size_t i = 0; i < words.size(); ++i)
        words[i] = static_cast<std::uint16_t>(limb >> 16 * i);
}

// Negates one limb of a number in two's complement. The caller goes from the lowest limb to the
// highest, with `carry` true at the start.
[[nodiscard]] inline Limb negateLimb(Limb limb, bool& carry) {
    const Limb negated = ~limb + (carry ? 1 : 0);
    carry = carry && negated == 0;
    return negated;
}

} // namespace KelRT::numbers
