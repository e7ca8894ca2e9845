// SPDX-License-Identifier: MIT
//
// Limbs, the 64-bit digits of wide numbers. A Kel_Number stores 16-bit words; arithmetic gathers
// them into limbs, since a step on a limb costs what a step on a word costs.
#pragma once

#include "common/double_word.h"

#include <cstddef>
#include <cstdint>

namespace KelRT::numbers {

using Limb = std::uint64_t;
using DoubleLimb = common::DoubleWord;

constexpr std::size_t WORDS_PER_LIMB = 4;
constexpr unsigned LIMB_BITS = 64;

constexpr std::size_t limbsFor(std::size_t wordCount) {
    return wordCount / WORDS_PER_LIMB + (wordCount % WORDS_PER_LIMB == 0 ? 0 : 1);
}

// The limb in the first four of the `available` words (at least 1). Missing words count as 0.
inline Limb loadLimb(const std::uint16_t* words, std::size_t available) {
    if (available >= WORDS_PER_LIMB)
        return Limb{words[0]} | Limb{words[1]} << 16 | Limb{words[2]} << 32 | Limb{words[3]} << 48;
    Limb limb = 0;
    for (std::size_t i = 0; i < available; ++i)
        limb |= Limb{words[i]} << 16 * i;
    return limb;
}

// Stores into the first four of the `available` words (at least 1) and drops the rest of the limb.
inline void storeLimb(std::uint16_t* words, std::size_t available, Limb limb) {
    const std::size_t count = available < WORDS_PER_LIMB ? available : WORDS_PER_LIMB;
    for (std::size_t i = 0; i < count; ++i)
        words[i] = static_cast<std::uint16_t>(limb >> 16 * i);
}

// One step of a two's-complement negation, from the lowest limb upwards. `carry` is true before the
// lowest limb and stays true while the limbs are 0.
inline Limb negateLimb(Limb limb, bool& carry) {
    const Limb negated = ~limb + (carry ? 1 : 0);
    carry = carry && negated == 0;
    return negated;
}

} // namespace KelRT::numbers
