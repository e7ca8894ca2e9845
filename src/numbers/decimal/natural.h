// SPDX-License-Identifier: MIT
#pragma once

#include "numbers/limb.h"

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace KelRT::numbers {

// A Natural is an unsigned number with a fixed capacity in limbs. A capacity of up to INLINE_LIMBS
// takes no allocation.
class Natural {
public:
    static constexpr std::size_t INLINE_LIMBS = 8;

    // Constructs the value 0. Throws std::bad_alloc.
    explicit Natural(std::size_t capacity)
        : large(capacity > INLINE_LIMBS ? std::make_unique_for_overwrite<Limb[]>(capacity)
                                        : nullptr),
          lowest(large ? large.get() : small.data()), room(capacity) {}

    // Constructs the value of `words`, the lowest first. Throws std::bad_alloc.
    explicit Natural(std::span<const std::uint16_t> words);

    Natural(const Natural&) = delete;
    Natural& operator=(const Natural&) = delete;

    // Stores the value modulo 2^(16 * words.size()).
    void store(std::span<std::uint16_t> words) const;

    // Replaces the value by its two's complement in `bitCount` bits. Bit bitCount - 1 must be the
    // highest bit that is set.
    void negate(std::uint64_t bitCount);

    // Returns the limbs in use, the lowest first. The highest is not 0, unless a multiplication
    // wrapped.
    [[nodiscard]] std::span<Limb> limbs() { return {lowest, used}; }
    [[nodiscard]] std::span<const Limb> limbs() const { return {lowest, used}; }

    [[nodiscard]] std::size_t size() const { return used; }
    [[nodiscard]] bool isFull() const { return used == room; }

    // Adds a limb above the others. The number must not be full.
    void append(Limb limb) {
        assert(!isFull());
        lowest[used++] = limb;
    }

    void dropLeadingZeros() {
        while (used > 0 && lowest[used - 1] == 0)
            --used;
    }

private:
    std::array<Limb, INLINE_LIMBS> small; // uninitialised; only the limbs in use are read
    std::unique_ptr<Limb[]> large;
    Limb* lowest;
    std::size_t used = 0;
    std::size_t room;
};

} // namespace KelRT::numbers
