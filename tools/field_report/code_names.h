// SPDX-License-Identifier: MIT
//
// The names that a table gives to raw values.
#pragma once

#include "KelRT/Kel_Number.h"

#include <map>
#include <string>

namespace field_report {

/// The names of raw values, each under its value as a number: in decimal if the field is signed, in
/// hexadecimal otherwise, without leading zeros.
using CodeNames = std::map<std::string, std::string>;

/// Reads names for the codes of a field of \a width bits. A code in decimal is the raw value; one
/// in hexadecimal, with 0x in front, is its bits.
/// \code
/// "0=idle; 1=shift; 0x3=exit"
/// \endcode
/// \throws Fault
CodeNames codeNamesOf(const std::string& column, std::uint64_t width, bool isSigned);

/// The name of \a number, a raw value; empty if it has none.
std::string nameOf(const KelRT::Kel_Number& number, bool isSigned, const CodeNames& names);

} // namespace field_report
