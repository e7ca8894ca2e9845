// SPDX-License-Identifier: MIT
#include "numbers/limbs.h"

#include "common/words.h"

#include <algorithm>
#include <cassert>

namespace KelRT::numbers {
namespace {

__extension__ using DoubleLimb = unsigned __int128;

constexpr Limb DIVISOR = common::CHUNK_BASE;
static_assert(DIVISOR >> (LIMB_BITS - 1) == 1, "the division below wants the top bit set");

/// floor((2^128 - 1) / DIVISOR) - 2^64, which the conversion to 64 bits subtracts.
constexpr auto RECIPROCAL = static_cast<Limb>(~DoubleLimb{0} / DIVISOR);

/// Divides remainder * 2^64 + \a limb by DIVISOR, for a remainder below it. Two multiplications in
/// place of a division: N. Moeller, T. Granlund, "Improved division by invariant integers", 2011.
Limb divideLimb(Limb limb, Limb& remainder) {
    const DoubleLimb product = DoubleLimb{RECIPROCAL} * remainder;
    const Limb low = static_cast<Limb>(product) + limb;
    const Limb carry = low < limb ? 1 : 0;
    Limb quotient = static_cast<Limb>(product >> LIMB_BITS) + remainder + carry + 1;
    Limb rest = limb - quotient * DIVISOR;
    // Every other time this quotient is one too high; a branch would be guessed wrong as often.
    const Limb tooHigh = 0 - static_cast<Limb>(rest > low);
    quotient += tooHigh;
    rest += tooHigh & DIVISOR;
    if (rest >= DIVISOR) [[unlikely]] {
        ++quotient;
        rest -= DIVISOR;
    }
    remainder = rest;
    return quotient;
}

} // namespace

void Limbs::load(const std::uint16_t* words, std::size_t wordCount) {
    used = limbsFor(wordCount);
    assert(used <= room);
    for (std::size_t i = 0; i < used; ++i)
        limbs[i] = loadLimb(words + WORDS_PER_LIMB * i, wordCount - WORDS_PER_LIMB * i);
    dropLeadingZeros();
}

void Limbs::store(std::uint16_t* words, std::size_t wordCount) const {
    const std::size_t stored = std::min(used, limbsFor(wordCount));
    for (std::size_t i = 0; i < stored; ++i)
        storeLimb(words + WORDS_PER_LIMB * i, wordCount - WORDS_PER_LIMB * i, limbs[i]);
    const std::size_t filled = std::min(wordCount, WORDS_PER_LIMB * stored);
    std::fill(words + filled, words + wordCount, std::uint16_t{0});
}

void Limbs::negate(std::uint64_t bitCount) {
    assert(bitCount > LIMB_BITS * (used - 1) && bitCount <= LIMB_BITS * used);
    bool carry = true;
    for (std::size_t i = 0; i < used; ++i)
        limbs[i] = negateLimb(limbs[i], carry);
    limbs[used - 1] &= common::lowBits(bitCount - LIMB_BITS * (used - 1));
    dropLeadingZeros();
}

void Limbs::multiplyAdd(Limb factor, Limb addend) {
    Limb carry = addend;
    for (std::size_t i = 0; i < used; ++i) {
        const DoubleLimb step = DoubleLimb{limbs[i]} * factor + carry;
        limbs[i] = static_cast<Limb>(step);
        carry = static_cast<Limb>(step >> LIMB_BITS);
    }
    if (carry != 0 && used < room)
        limbs[used++] = carry;
}

Limb Limbs::takeChunk() {
    Limb remainder = 0;
    for (std::size_t i = used; i-- > 0;)
        limbs[i] = divideLimb(limbs[i], remainder);
    dropLeadingZeros();
    return remainder;
}

std::array<Limb, 4> Limbs::takeFourChunks() {
    std::array<Limb, 4> remainders{};
    for (std::size_t i = used; i-- > 0;) {
        const Limb first = divideLimb(limbs[i], remainders[0]);
        const Limb second = divideLimb(first, remainders[1]);
        const Limb third = divideLimb(second, remainders[2]);
        limbs[i] = divideLimb(third, remainders[3]);
    }
    dropLeadingZeros();
    return remainders;
}

void Limbs::dropLeadingZeros() {
    while (used > 0 && limbs[used - 1] == 0)
        --used;
}

} // namespace KelRT::numbers
