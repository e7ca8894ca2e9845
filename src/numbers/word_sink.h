// SPDX-License-Identifier: MIT
#pragma once

#include "numbers/limb.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace KelRT::numbers {

// Writes a number into words, from its lowest bits upwards. Bits above the last word are dropped.
class WordSink {
public:
    explicit WordSink(std::span<std::uint16_t> words) : left(words) {}

    // Appends the low `count` bits (1 to 64) of `value`. The higher bits must be 0.
    void put(Limb value, unsigned count) {
        pending |= value << filled;
        if (filled + count < LIMB_BITS) {
            filled += count;
            return;
        }
        store();
        pending = value >> 1 >> (LIMB_BITS - 1 - filled); // a single shift by 64 is undefined
        filled = filled + count - LIMB_BITS;
    }

    // Stores the pending bits and sets all higher words to 0.
    void finish() {
        store();
        std::fill(left.begin(), left.end(), std::uint16_t{0});
    }

private:
    void store() {
        storeLimb(left, pending);
        left = left.subspan(std::min(left.size(), WORDS_PER_LIMB));
    }

    std::span<std::uint16_t> left; // the words that are not written yet
    Limb pending = 0;
    unsigned filled = 0; // the number of bits in `pending`
};

} // namespace KelRT::numbers
