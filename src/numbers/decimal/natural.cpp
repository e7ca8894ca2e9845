// SPDX-License-Identifier: MIT
#include "numbers/decimal/natural.h"

#include "common/u64.h"

#include <algorithm>
#include <cassert>

namespace KelRT::numbers {

Natural::Natural(std::span<const std::uint16_t> words) : Natural(limbsFor(words.size())) {
    for (; !words.empty(); words = words.subspan(std::min(words.size(), WORDS_PER_LIMB)))
        append(loadLimb(words));
    dropLeadingZeros();
}

void Natural::store(std::span<std::uint16_t> words) const {
    for (std::size_t i = 0; i < used && !words.empty(); ++i) {
        storeLimb(words, lowest[i]);
        words = words.subspan(std::min(words.size(), WORDS_PER_LIMB));
    }
    std::fill(words.begin(), words.end(), std::uint16_t{0});
}

void Natural::negate(std::uint64_t bitCount) {
    const std::uint64_t below = std::uint64_t{LIMB_BITS} * (used - 1); // bits of the lower limbs
    assert(bitCount > below && bitCount <= below + LIMB_BITS);
    bool carry = true;
    for (Limb& limb : limbs())
        limb = negateLimb(limb, carry);
    lowest[used - 1] &= common::lowBits(bitCount - below);
    dropLeadingZeros();
}

} // namespace KelRT::numbers
