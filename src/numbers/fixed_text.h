// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace KelRT::numbers {

/// The most decimals that fixedText() prints: the length of every text still fits an int, which is
/// what `printf` counts in.
constexpr std::uint32_t MOST_DECIMALS = 0x7FFF'FE00;

/// \a value as `printf` prints it with "%.Nf", N being \a precision: whole, whatever the length.
/// The decimal point is that of `LC_NUMERIC`. \throws std::length_error for a \a precision above
/// MOST_DECIMALS \throws std::bad_alloc
std::string fixedText(double value, std::uint32_t precision);

} // namespace KelRT::numbers
