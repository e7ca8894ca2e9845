// SPDX-License-Identifier: MIT
#include "numbers/decimal/narrow.h"

#include "common/words.h"

#include <algorithm>
#include <cassert>

namespace KelRT::numbers {

void Natural::load(const std::uint16_t* words, std::size_t wordCount) {
    used = limbsFor(wordCount);
    assert(used <= room);
    for (std::size_t i = 0; i < used; ++i)
        limbs[i] = loadLimb(words + WORDS_PER_LIMB * i, wordCount - WORDS_PER_LIMB * i);
    dropLeadingZeros();
}

void Natural::store(std::uint16_t* words, std::size_t wordCount) const {
    const std::size_t stored = std::min(used, limbsFor(wordCount));
    for (std::size_t i = 0; i < stored; ++i)
        storeLimb(words + WORDS_PER_LIMB * i, wordCount - WORDS_PER_LIMB * i, limbs[i]);
    const std::size_t filled = std::min(wordCount, WORDS_PER_LIMB * stored);
    std::fill(words + filled, words + wordCount, std::uint16_t{0});
}

void Natural::negate(std::uint64_t bitCount) {
    const std::uint64_t below = std::uint64_t{LIMB_BITS} * (used - 1); // bits of the lower limbs
    assert(bitCount > below && bitCount <= below + LIMB_BITS);
    bool carry = true;
    for (std::size_t i = 0; i < used; ++i)
        limbs[i] = negateLimb(limbs[i], carry);
    limbs[used - 1] &= common::lowBits(bitCount - below);
    dropLeadingZeros();
}

void Natural::multiplyAdd(DoubleLimb factor, DoubleLimb addend) {
    const auto low = static_cast<Limb>(factor);
    const auto high = static_cast<Limb>(factor >> LIMB_BITS);
    DoubleLimb carry = addend;
    for (std::size_t i = 0; i < used; ++i) {
        const DoubleLimb lower = DoubleLimb{limbs[i]} * low + static_cast<Limb>(carry);
        const DoubleLimb upper =
            DoubleLimb{limbs[i]} * high + static_cast<Limb>(lower >> LIMB_BITS);
        limbs[i] = static_cast<Limb>(lower);
        carry = upper + static_cast<Limb>(carry >> LIMB_BITS);
    }
    for (; carry != 0 && used < room; carry >>= LIMB_BITS)
        limbs[used++] = static_cast<Limb>(carry);
}

Limb Natural::takeChunk() {
    Limb remainder = 0;
    for (std::size_t i = used; i-- > 0;)
        limbs[i] = divideLimb<NARROW_CHUNK_BASE>(limbs[i], remainder);
    dropLeadingZeros();
    return remainder;
}

std::array<Limb, 4> Natural::takeFourChunks() {
    std::array<Limb, 4> remainders{};
    for (std::size_t i = used; i-- > 0;) {
        const Limb first = divideLimb<NARROW_CHUNK_BASE>(limbs[i], remainders[0]);
        const Limb second = divideLimb<NARROW_CHUNK_BASE>(first, remainders[1]);
        const Limb third = divideLimb<NARROW_CHUNK_BASE>(second, remainders[2]);
        limbs[i] = divideLimb<NARROW_CHUNK_BASE>(third, remainders[3]);
    }
    dropLeadingZeros();
    return remainders;
}

void Natural::dropLeadingZeros() {
    while (used > 0 && limbs[used - 1] == 0)
        --used;
}

} // namespace KelRT::numbers
