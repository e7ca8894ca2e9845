// SPDX-License-Identifier: MIT
#pragma once

#include "numbers/limb.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace KelRT::numbers {

// Writes a number into words, from its lowest bits upwards. Bits above the last word are dropped.
class WordSink {
public:
    WordSink(std::uint16_t* target, std::size_t wordCount) : words(target), left(wordCount) {}

    // Appends `count` bits (1 to 64). Higher bits of `value` must be 0.
    void put(Limb value, unsigned count) {
        pending |= value << filled;
        if (filled + count < LIMB_BITS) {
            filled += count;
            return;
        }
        store();
        pending = value >> 1 >> (LIMB_BITS - 1 - filled); // a shift by 64 takes two steps
        filled = filled + count - LIMB_BITS;
    }

    // Stores what is pending and sets all higher words to 0.
    void finish() {
        store();
        std::fill(words, words + left, std::uint16_t{0});
    }

private:
    void store() {
        if (left == 0)
            return;
        storeLimb(words, left, pending);
        const auto stored = std::min<std::size_t>(left, WORDS_PER_LIMB);
        words += stored;
        left -= stored;
    }

    std::uint16_t* words;
    std::size_t left;
    Limb pending = 0;
    unsigned filled = 0;
};

} // namespace KelRT::numbers
