// SPDX-License-Identifier: MIT
#pragma once

#include "numbers/limb.h"

#include <array>

namespace KelRT::numbers {

// POWERS_OF_TEN[n] is 10^n, for all n for which this fits a limb.
constexpr std::array<Limb, 20> POWERS_OF_TEN = [] {
    std::array<Limb, 20> powers = {1};
    for (std::size_t i = 1; i != powers.size(); ++i)
        powers[i] = 10 * powers[i - 1];
    return powers;
}();

// Returns the largest n for which 10^n <= limit. The limit must be at least 1.
[[nodiscard]] constexpr unsigned digitsWithin(Limb limit) {
    unsigned digits = 0;
    while (digits + 1 < POWERS_OF_TEN.size() && POWERS_OF_TEN[digits + 1] <= limit)
        ++digits;
    return digits;
}

} // namespace KelRT::numbers
