// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace KelRT::numbers {

// The decimal text of the number in `words`, the lowest word first. If `negative`, a '-' and the
// two's complement in `bitCount` bits; bit bitCount - 1 must be set. Throws std::bad_alloc.
std::string decimalText(const std::vector<std::uint16_t>& words, std::uint64_t bitCount,
                        bool negative);

} // namespace KelRT::numbers
