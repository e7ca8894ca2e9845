// SPDX-License-Identifier: MIT
//
// The first engine of decimal text, for numbers of up to some thousand bits: schoolbook radix
// conversion on 64-bit limbs. A chunk of digits is read by one multiplication with a power of ten
// and written by one division, each a pass over all limbs. The cost is quadratic: n limbs have
// about n chunks, so n^2 steps, of which reading saves half, because the number grows with the
// text.
//
// A chunk has 19 digits, as 10^19 is the largest power of ten that fits a limb. It has its top bit
// set, as the division demands.
#pragma once

#include "numbers/decimal/powers_of_ten.h"
#include "numbers/limb.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace KelRT::numbers {

constexpr unsigned CHUNK_DIGITS = digitsWithin(~Limb{0});
constexpr Limb CHUNK_BASE = POWERS_OF_TEN[CHUNK_DIGITS];

// Divides remainder * 2^64 + limb by DIVISOR and returns the quotient. The remainder must be below
// DIVISOR and is replaced by the new one. Two multiplications instead of a division: N. Moeller,
// T. Granlund, "Improved division by invariant integers", 2011.
template <Limb DIVISOR>
inline Limb divideLimb(Limb limb, Limb& remainder) {
    static_assert(DIVISOR >> (LIMB_BITS - 1) == 1, "the top bit must be set");
    // floor((2^128 - 1) / DIVISOR) - 2^64; the conversion to 64 bits subtracts.
    constexpr auto RECIPROCAL = static_cast<Limb>(~DoubleLimb{0} / DIVISOR);
    const DoubleLimb product = DoubleLimb{RECIPROCAL} * remainder;
    const Limb low = static_cast<Limb>(product) + limb;
    const Limb carry = low < limb ? 1 : 0;
    Limb quotient = static_cast<Limb>(product >> LIMB_BITS) + remainder + carry + 1;
    Limb rest = limb - quotient * DIVISOR;
    // Half of these quotients are one too high, at random: with a branch, random numbers of 4096
    // bits take 3 times as long to print. The row "print decimal, 4096 b" does not show it, because
    // it repeats one number.
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

// An unsigned number without leading zero limbs, up to a fixed capacity. Up to 512 bits it needs no
// memory of its own.
class Limbs {
public:
    // The value 0. Throws std::bad_alloc.
    explicit Limbs(std::size_t capacity)
        : large(capacity > small.size() ? std::make_unique_for_overwrite<Limb[]>(capacity)
                                        : nullptr),
          limbs(large ? large.get() : small.data()), room(capacity) {}
    Limbs(const Limbs&) = delete;
    Limbs& operator=(const Limbs&) = delete;

    // The words must fit the capacity.
    void load(const std::uint16_t* words, std::size_t wordCount);

    // Stores the value modulo 2^(16 * wordCount).
    void store(std::uint16_t* words, std::size_t wordCount) const;

    // The two's complement over `bitCount` bits. Bit bitCount - 1 must be set.
    void negate(std::uint64_t bitCount);

    // 0 for the value 0.
    std::size_t size() const { return used; }

    // The lowest limb first.
    const Limb* data() const { return limbs; }

    Limb lowest() const { return used == 0 ? 0 : limbs[0]; }

    // value * factor + addend, modulo the capacity.
    void multiplyAdd(DoubleLimb factor, DoubleLimb addend);

    // Divides by 10^19 and returns the remainder: the lowest chunk.
    Limb takeChunk();

    // The four lowest chunks, the lowest first, in one pass. Each division of a pass waits for the
    // previous one; four interleaved passes hide that. One at a time, the row "print decimal, 4096
    // b" takes 2.6 times as long.
    std::array<Limb, 4> takeFourChunks();

private:
    void dropLeadingZeros();

    std::array<Limb, 8> small; // uninitialised; only the first `used` limbs are read
    std::unique_ptr<Limb[]> large;
    Limb* limbs;
    std::size_t used = 0;
    std::size_t room;
};

} // namespace KelRT::numbers
