// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace KelRT::numbers {

// The decimal text of the number in `words`, the lowest first. If `negative`, prints a '-' and the
// two's complement in `bitCount` bits, of which the highest, bit bitCount - 1, must be set. Throws
// std::bad_alloc.
[[nodiscard]] std::string decimalText(std::span<const std::uint16_t> words, std::uint64_t bitCount,
                                      bool negative);

} // namespace KelRT::numbers
