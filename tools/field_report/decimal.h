// SPDX-License-Identifier: MIT
//
// Numbers as they stand in captures, tables and settings.
#pragma once

#include "messages.h"

#include <cstdint>
#include <string>

namespace field_report {

/// True if \a text begins with "0x" or "0X".
bool hasHexPrefix(const std::string& text);

/// Reads \a text as an integer in decimal or, with 0x in front, in hexadecimal digits.
/// \throws Fault, naming it \a what, if it is none or above 2^64 - 1
std::uint64_t integerOf(const std::string& text, const char* what);

/// A finite number, and how many decimals a value that is scaled by it shows.
struct Decimal {
    double value = 0;
    std::uint32_t decimals = 0;
};

/// Reads \a text as a decimal number; the decimals are those that show its every digit.
/// \code
/// "0.001" => 3    "1e-3" => 3    "2.50" => 2    "1.5e3" => 0    "16" => 0
/// \endcode
/// \throws Fault, naming it \a what
Decimal decimalOf(const std::string& text, const char* what);

/// Reads \a text as a decimal number or a fraction of two. The decimals of a fraction are the
/// fewest that tell two neighbouring multiples of it apart.
/// \code
/// "100/255" => 0.392..., 1    "3.3/4096" => 0.000805..., 4    "1000/3" => 333.3..., 0
/// \endcode
/// \throws Fault
Decimal scaleOf(const std::string& text);

} // namespace field_report
