// SPDX-License-Identifier: MIT
//
// The arithmetic of wide numbers, over 64-bit limbs. A Kel_Number keeps 16-bit words; for decimal
// text they are gathered into limbs, since a step on a limb costs what a step on a word costs.
#pragma once

#include "common/decimal.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace KelRT::numbers {

using Limb = std::uint64_t;

constexpr std::size_t WORDS_PER_LIMB = 4;
constexpr unsigned LIMB_BITS = 64;

/// How many limbs hold \a wordCount words.
constexpr std::size_t limbsFor(std::size_t wordCount) {
    return wordCount / WORDS_PER_LIMB + (wordCount % WORDS_PER_LIMB == 0 ? 0 : 1);
}

/// The limb of the first four of the \a available words (at least 1), the lowest one first; words
/// that are missing read as 0.
inline Limb loadLimb(const std::uint16_t* words, std::size_t available) {
    if (available >= WORDS_PER_LIMB)
        return Limb{words[0]} | Limb{words[1]} << 16 | Limb{words[2]} << 32 | Limb{words[3]} << 48;
    Limb limb = 0;
    for (std::size_t i = 0; i < available; ++i)
        limb |= Limb{words[i]} << 16 * i;
    return limb;
}

/// Puts \a limb into the first four of the \a available words (at least 1); the part of it for
/// which there is no word is dropped.
inline void storeLimb(std::uint16_t* words, std::size_t available, Limb limb) {
    const std::size_t count = available < WORDS_PER_LIMB ? available : WORDS_PER_LIMB;
    for (std::size_t i = 0; i < count; ++i)
        words[i] = static_cast<std::uint16_t>(limb >> 16 * i);
}

__extension__ using DoubleLimb = unsigned __int128;

/// Divides \a remainder * 2^64 + \a limb by DIVISOR, for a remainder below it. Two multiplications
/// in place of a division: N. Moeller, T. Granlund, "Improved division by invariant integers",
/// 2011. \return the quotient; the new remainder stands in \a remainder
template <Limb DIVISOR>
inline Limb divideLimb(Limb limb, Limb& remainder) {
    static_assert(DIVISOR >> (LIMB_BITS - 1) == 1, "the top bit must be set");
    // floor((2^128 - 1) / DIVISOR) - 2^64, which the conversion to 64 bits subtracts
    constexpr auto RECIPROCAL = static_cast<Limb>(~DoubleLimb{0} / DIVISOR);
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

/// One step of a two's-complement negation, from the lowest limb upwards.
/// \param carry true before the lowest limb; stays true while the limbs are 0
inline Limb negateLimb(Limb limb, bool& carry) {
    const Limb negated = ~limb + (carry ? 1 : 0);
    carry = carry && negated == 0;
    return negated;
}

/// An unsigned number of as many limbs as its value needs, up to a capacity. Up to 512 bits it
/// lives in the object itself.
class Limbs {
public:
    /// The value 0, with room for \a capacity limbs. \throws std::bad_alloc
    explicit Limbs(std::size_t capacity)
        : large(capacity > small.size() ? std::make_unique_for_overwrite<Limb[]>(capacity)
                                        : nullptr),
          limbs(large ? large.get() : small.data()), room(capacity) {}
    Limbs(const Limbs&) = delete;
    Limbs& operator=(const Limbs&) = delete;

    /// Takes the value of \a wordCount words, for which there must be room.
    void load(const std::uint16_t* words, std::size_t wordCount);

    /// Puts the value into \a wordCount words, modulo what they hold.
    void store(std::uint16_t* words, std::size_t wordCount) const;

    /// The two's complement over \a bitCount bits of a value whose bit bitCount - 1 is set.
    void negate(std::uint64_t bitCount);

    /// How many limbs the value has; 0 for the value 0.
    std::size_t size() const { return used; }

    /// The limbs, the lowest one first.
    const Limb* data() const { return limbs; }

    /// The lowest limb.
    Limb lowest() const { return used == 0 ? 0 : limbs[0]; }

    /// value * \a factor + \a addend; what exceeds the capacity is dropped.
    void multiplyAdd(Limb factor, Limb addend);

    /// The same with factors of two limbs, in one pass.
    void multiplyAdd(DoubleLimb factor, DoubleLimb addend);

    /// Takes the lowest 19 decimal digits off: divides by 10^19 and returns the remainder.
    Limb takeChunk();

    /// Takes four times 19 digits off, the lowest ones first, in one pass. The divisions of a
    /// single pass wait for each other; those of the four passes overlap.
    std::array<Limb, 4> takeFourChunks();

private:
    void dropLeadingZeros();

    std::array<Limb, 8> small; // not initialised: only the first used limbs are ever read
    std::unique_ptr<Limb[]> large;
    Limb* limbs;
    std::size_t used = 0;
    std::size_t room;
};

} // namespace KelRT::numbers
