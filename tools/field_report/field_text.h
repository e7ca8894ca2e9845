// SPDX-License-Identifier: MIT
//
// The texts of one field of a scan: its raw value, its scaled value and its name.
#pragma once

#include "field_table.h"

#include "KelRT/Kel_Number.h"

#include <string>

namespace field_report {

/// The raw value \a number in the radix of \a field, without a prefix. A field of radix s gives one
/// character for each byte, whatever its code; zero bytes at the front give blanks.
std::string rawText(const Field& field, const KelRT::Kel_Number& number);

/// "0b", "0o" or "0x", or nothing for the other radices.
const char* prefixOf(const Field& field);

/// raw value * scale + offset; empty if the field has no scale.
std::string valueText(const Field& field, const KelRT::Kel_Number& number);

/// The name of the raw value; empty if it has none.
std::string nameText(const Field& field, const KelRT::Kel_Number& number);

/// Each byte that is not printable ASCII becomes '.'.
std::string printable(std::string text);

} // namespace field_report
