// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace KelRT::numbers {

// printf() requires that the length of a text fits an int. This limit is INT_MAX less 511, which
// leaves room for a sign, 309 digits and a decimal point.
constexpr std::uint32_t MAX_PRECISION = 0x7FFF'FE00;

// Returns the whole text of printf("%.*f", precision, value), with the decimal point of LC_NUMERIC.
// Throws std::length_error for a precision above MAX_PRECISION, and std::bad_alloc.
[[nodiscard]] std::string fixedText(double value, std::uint32_t precision);

} // namespace KelRT::numbers
