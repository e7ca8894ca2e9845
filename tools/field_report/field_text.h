// SPDX-License-Identifier: MIT
//
// Formats the texts of one field of a scan: its raw value, its scaled value and its name.
#pragma once

#include "field_table.h"

#include "KelRT/Kel_Number.h"

#include <string>

namespace field_report {

/// Formats the raw value \a number in the radix of \a field, without a prefix. Radix s gives one
/// character for each byte, whatever its code; leading zero bytes become blanks.
std::string rawText(const Field& field, const KelRT::Kel_Number& number);

/// Returns "0b", "0o" or "0x", or empty text for the other radices.
const char* prefixOf(const Field& field);

/// Formats raw value * scale + offset; returns empty text if the field has no scale.
std::string valueText(const Field& field, const KelRT::Kel_Number& number);

/// Returns the name of the raw value, or empty text if it has none.
std::string nameText(const Field& field, const KelRT::Kel_Number& number);

/// Replaces each byte that is not printable ASCII with '.'.
std::string printable(std::string text);

} // namespace field_report
