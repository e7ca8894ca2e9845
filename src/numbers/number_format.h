// SPDX-License-Identifier: MIT
#pragma once

#include "common/words.h"

#include <cstdint>

namespace KelRT::numbers {

// The fewest digits that a number of `bitCount` bits prints in a radix of 2^digitBits. The count
// has 32 bits: for wider numbers it wraps.
constexpr std::uint32_t minimumDigits(std::uint64_t bitCount, unsigned digitBits) {
    return static_cast<std::uint32_t>(common::divideUp(bitCount, digitBits));
}

} // namespace KelRT::numbers
