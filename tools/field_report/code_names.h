// SPDX-License-Identifier: MIT
//
// Reads and finds the names that a table gives to raw values.
#pragma once

#include "KelRT/Kel_Number.h"

#include <map>
#include <string>

namespace field_report {

/// Maps raw values to their names. The keys are decimal if the field is signed, hexadecimal
/// otherwise, and have no leading zeros.
using CodeNames = std::map<std::string, std::string>;

/// Reads the names of a field of \a width bits. A decimal code is the raw value. A hexadecimal
/// code, which begins with 0x, is the bits of the raw value: in a signed field of 4 bits, 0xF means
/// -1.
/// \code
/// "0=idle; 1=shift; 0x3=exit"
/// \endcode
/// \throws Fault if an entry is not valid
CodeNames codeNamesOf(const std::string& column, std::uint64_t width, bool isSigned);

/// Returns the name of the raw value \a number, or empty text if it has none.
std::string nameOf(const KelRT::Kel_Number& number, bool isSigned, const CodeNames& names);

} // namespace field_report
