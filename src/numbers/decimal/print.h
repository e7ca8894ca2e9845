// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace KelRT::numbers {

// Returns the decimal text of the number in `words`, the lowest first. If `negative`, the text is a
// '-' and the two's complement in `bitCount` bits. Bit bitCount - 1 must then be the highest bit
// that is set. Throws std::bad_alloc.
[[nodiscard]] std::string decimalText(std::span<const std::uint16_t> words, std::uint64_t bitCount,
                                      bool negative);

} // namespace KelRT::numbers
