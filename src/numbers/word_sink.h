// SPDX-License-Identifier: MIT
#pragma once

#include "numbers/limb.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace KelRT::numbers {

/// Takes bits from the least significant ones upwards and puts them into words; what lies above the
/// last word is dropped.
class WordSink {
public:
    WordSink(std::uint16_t* target, std::size_t wordCount) : words(target), left(wordCount) {}

    /// Takes \a count bits (1 to 64). The bits of \a value above them must be 0.
    void put(Limb value, unsigned count) {
        pending |= value << filled;
        if (filled + count < LIMB_BITS) {
            filled += count;
            return;
        }
        store();
        pending = value >> 1 >> (LIMB_BITS - 1 - filled); // in two steps, for filled == 0
        filled = filled + count - LIMB_BITS;
    }

    /// Ends the number: the words above it become 0.
    void finish() {
        store();
        std::fill(words, words + left, std::uint16_t{0});
    }

private:
    void store() {
        if (left == 0)
            return;
        storeLimb(words, left, pending);
        const std::size_t stored = std::min(left, WORDS_PER_LIMB);
        words += stored;
        left -= stored;
    }

    std::uint16_t* words;
    std::size_t left;
    Limb pending = 0;
    unsigned filled = 0;
};

} // namespace KelRT::numbers
