// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace KelRT::numbers {

// The decimal text of the number in `words`, the lowest first. `negative` prints a '-' and the
// two's complement over `bitCount` bits, whose highest bit must be set. Throws std::bad_alloc.
std::string decimalText(const std::vector<std::uint16_t>& words, std::uint64_t bitCount,
                        bool negative);

} // namespace KelRT::numbers
