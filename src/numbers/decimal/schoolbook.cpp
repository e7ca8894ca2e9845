// SPDX-License-Identifier: MIT
#include "numbers/decimal/schoolbook.h"

#include "numbers/decimal/divide_limb.h"
#include "numbers/decimal/engines.h"

#include <algorithm>

namespace KelRT::numbers::schoolbook {
namespace {

constexpr auto CHUNK_BASE = static_cast<Limb>(PRINT_SCHOOLBOOK.radix);

} // namespace

void multiplyAdd(Natural& value, DoubleLimb factor, DoubleLimb addend) {
    const auto low = static_cast<Limb>(factor);
    const auto high = static_cast<Limb>(factor >> LIMB_BITS);
    DoubleLimb carry = addend;
    // With B = 2^64, limb * factor + carry is at most (B - 1)(B^2 - 1) + (B^2 - 1) = B (B^2 - 1).
    // The next carry is this sum divided by B, at most B^2 - 1: it fits 128 bits.
    for (Limb& limb : value.limbs()) {
        const DoubleLimb lower = DoubleLimb{limb} * low + static_cast<Limb>(carry);
        const DoubleLimb upper = DoubleLimb{limb} * high + static_cast<Limb>(lower >> LIMB_BITS);
        limb = static_cast<Limb>(lower);
        carry = upper + static_cast<Limb>(carry >> LIMB_BITS);
    }
    for (; carry != 0 && !value.isFull(); carry >>= LIMB_BITS)
        value.append(static_cast<Limb>(carry));
}

Limb takeChunk(Natural& value) {
    const auto limbs = value.limbs();
    Limb remainder = 0;
    std::for_each(limbs.rbegin(), limbs.rend(),
                  [&remainder](Limb& limb) { limb = divideLimb<CHUNK_BASE>(limb, remainder); });
    value.dropLeadingZeros();
    return remainder;
}

std::array<Limb, 4> takeFourChunks(Natural& value) {
    const auto limbs = value.limbs();
    std::array<Limb, 4> remainders{};
    std::for_each(limbs.rbegin(), limbs.rend(), [&remainders](Limb& limb) {
        for (Limb& remainder : remainders)
            limb = divideLimb<CHUNK_BASE>(limb, remainder);
    });
    value.dropLeadingZeros();
    return remainders;
}

} // namespace KelRT::numbers::schoolbook
