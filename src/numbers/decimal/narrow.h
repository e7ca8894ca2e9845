// SPDX-License-Identifier: MIT
//
// The schoolbook engine of decimal text, for numbers below the sizes in wide.h. Reading multiplies
// the number by a power of ten and adds a chunk of digits. Printing divides it by 10^19; the
// remainder is a chunk. A pass over the limbs serves two chunks when reading, four when printing.
// The cost is quadratic: n limbs have about n chunks, and n / 2 limbs are in use on average, as the
// number grows or shrinks with every chunk.
//
// A chunk has 19 digits, as 10^19 is the largest power of ten that fits a limb. The top bit
// of 10^19 is set, as divideLimb() requires.
#pragma once

#include "numbers/decimal/powers_of_ten.h"
#include "numbers/limb.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace KelRT::numbers {

constexpr unsigned NARROW_CHUNK_DIGITS = digitsWithin(~Limb{0});
constexpr Limb NARROW_CHUNK_BASE = POWERS_OF_TEN[NARROW_CHUNK_DIGITS];

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
    Limb newRemainder = limb - quotient * DIVISOR;
    // At random, 49 % of these quotients are one too high for 10^19, and 75 % for 2^7 * 10^17. With
    // a branch, random numbers of 4096 bits take 3 times as long to print. The row "print decimal,
    // 4096 b" does not show it, because it repeats one number.
    const Limb tooHigh = 0 - static_cast<Limb>(newRemainder > low);
    quotient += tooHigh;
    newRemainder += tooHigh & DIVISOR;
    if (newRemainder >= DIVISOR) [[unlikely]] {
        ++quotient;
        newRemainder -= DIVISOR;
    }
    remainder = newRemainder;
    return quotient;
}

// An unsigned number with a fixed capacity in limbs. Up to 512 bits it allocates nothing. There are
// no leading zero limbs, except after a multiplyAdd() that wrapped; store() does not mind them.
class Natural {
public:
    // The value 0. Throws std::bad_alloc.
    explicit Natural(std::size_t capacity)
        : large(capacity > small.size() ? std::make_unique_for_overwrite<Limb[]>(capacity)
                                        : nullptr),
          limbs(large ? large.get() : small.data()), room(capacity) {}
    Natural(const Natural&) = delete;
    Natural& operator=(const Natural&) = delete;

    // The words must fit the capacity.
    void load(const std::uint16_t* words, std::size_t wordCount);

    // Stores the value modulo 2^(16 * wordCount).
    void store(std::uint16_t* words, std::size_t wordCount) const;

    // Replaces the value by its two's complement in `bitCount` bits. Bit bitCount - 1 must be set.
    void negate(std::uint64_t bitCount);

    // 0 for the value 0.
    std::size_t size() const { return used; }

    // The lowest limb first.
    const Limb* data() const { return limbs; }

    Limb lowest() const { return used == 0 ? 0 : limbs[0]; }

    // value = value * factor + addend, modulo 2^(64 * capacity).
    void multiplyAdd(DoubleLimb factor, DoubleLimb addend);

    // Divides by 10^19 and returns the remainder: the lowest chunk.
    Limb takeChunk();

    // Takes the four lowest chunks, the lowest first, in one pass. Each division for a chunk waits
    // for the previous one; interleaving four chains of divisions hides that latency. With one
    // chunk a pass, the benchmark row "print decimal, 4096 b" takes 2.6 times as long.
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
