// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace KelRT::numbers {

/// \a value as `printf` prints it with "%.Nf", N being \a precision: whole, whatever the length.
/// The decimal point is that of `LC_NUMERIC`. \throws std::length_error for a \a precision above
/// INT_MAX and for what the C library refuses \throws std::bad_alloc
std::string fixedText(double value, std::uint32_t precision);

} // namespace KelRT::numbers
