// SPDX-License-Identifier: MIT
//
// Parses the numbers in captures, tables and settings.
#pragma once

#include "messages.h"

#include <cstdint>
#include <string>

namespace field_report {

/// Returns true if \a text begins with "0x" or "0X".
bool hasHexPrefix(const std::string& text);

/// Parses \a text as an integer: hexadecimal if it begins with 0x, otherwise decimal.
/// \param what names the number in the message of a fault
/// \throws Fault if \a text is not such an integer, or the integer is above 2^64 - 1
std::uint64_t integerOf(const std::string& text, const char* what);

/// Holds a finite number, and how many decimals to print for a value that is computed with it.
struct Decimal {
    double value = 0;
    std::uint32_t decimals = 0;
};

/// Parses \a text as a decimal number, and counts the decimals that are needed to print all its
/// digits.
/// \code
/// "0.001" => 3    "1e-3" => 3    "2.50" => 2    "1.5e3" => 0    "16" => 0
/// \endcode
/// \param what names the number in the message of a fault
/// \throws Fault if \a text is not such a number, or has more than 400 decimals
Decimal decimalOf(const std::string& text, const char* what);

/// Parses \a text as a decimal number or a fraction of two. The decimals of a fraction f are the
/// smallest d for which |f| >= 10^-d, so that two successive multiples of f print differently.
/// \code
/// "100/255" => 0.392..., 1    "3.3/4096" => 0.000805..., 4    "1000/3" => 333.3..., 0
/// \endcode
/// \throws Fault if \a text is neither, or has more than 400 decimals
Decimal scaleOf(const std::string& text);

} // namespace field_report
