// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace KelRT::numbers {

/// How many digits a number of \a bitCount bits prints at least in a base whose digits have
/// \a digitBits bits. The count is a 32-bit number: for wider numbers it is the remainder modulo
/// 2^32.
constexpr std::uint32_t minimumDigits(std::uint64_t bitCount, unsigned digitBits) {
    return static_cast<std::uint32_t>((bitCount + digitBits - 1) / digitBits);
}

} // namespace KelRT::numbers
