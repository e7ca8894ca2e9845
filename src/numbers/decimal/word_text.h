// SPDX-License-Identifier: MIT
//
// The decimal text of a single word. All functions write right before `end` and return the first
// character written.
#pragma once

#include <cstdint>

namespace KelRT::numbers {

// The most digits of a 64-bit value.
constexpr unsigned MOST_DECIMAL_DIGITS = 20;

// Without leading zeros.
char* writeDecimal(char* end, std::uint64_t value);

// With leading zeros; the value is below 10^17 or 10^19.
char* writeSeventeenDigits(char* end, std::uint64_t value);
char* writeNineteenDigits(char* end, std::uint64_t value);

} // namespace KelRT::numbers
