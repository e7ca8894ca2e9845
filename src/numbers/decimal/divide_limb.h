// SPDX-License-Identifier: MIT
#pragma once

#include "numbers/limb.h"

#include <cassert>

namespace KelRT::numbers {

// Divides remainder * 2^64 + limb by DIVISOR and returns the quotient. The remainder must be below
// DIVISOR and is replaced by the new one. Two multiplications take the place of a division: see N.
// Moeller, T. Granlund, "Improved division by invariant integers", 2011.
template <Limb DIVISOR>
[[nodiscard]] inline Limb divideLimb(Limb limb, Limb& remainder) {
    static_assert(DIVISOR >> (LIMB_BITS - 1) == 1, "the top bit must be set");
    assert(remainder < DIVISOR);
    // The quotient is at least 2^64 and below 2^65. The cast subtracts 2^64, as the method demands.
    constexpr auto RECIPROCAL = static_cast<Limb>(~DoubleLimb{0} / DIVISOR);
    const DoubleLimb product = DoubleLimb{RECIPROCAL} * remainder;
    const Limb low = static_cast<Limb>(product) + limb;
    const Limb carry = low < limb ? 1 : 0;
    Limb quotient = static_cast<Limb>(product >> LIMB_BITS) + remainder + carry + 1;
    Limb newRemainder = limb - quotient * DIVISOR;
    // So far, the quotient is one too high in 49 % of all cases for the divisor 10^19, and in 75 %
    // for 2^7 * 10^17. A branch on it would often be mispredicted: with one, random numbers of 4096
    // bits take 3 times as long to print. The row "print decimal, 4096 b" does not show it, because
    // it repeats one number.
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

} // namespace KelRT::numbers
