// SPDX-License-Identifier: MIT
//
// The texts of one field of a scan: its raw value and its scaled value.
#pragma once

#include "field_table.h"

#include "KelRT/Kel_ByteBuffer.h"

#include <string>

namespace field_report {

/// The bits of \a field in hexadecimal digits. Reads only the bytes that hold the field.
std::string digitsOf(KelRT::Kel_ByteBuffer& bits, const Field& field);

/// The raw value in the radix of \a field, without a prefix. A field of radix s gives one character
/// for each byte, whatever its code; zero bytes at the front give blanks.
std::string rawText(const Field& field, const std::string& digits);

/// "0b", "0o" or "0x", or nothing for the other radices.
const char* prefixOf(const Field& field);

/// raw value * scale + offset; empty if the field has no scale.
std::string valueText(const Field& field, const std::string& digits);

/// Each byte that is not printable ASCII becomes '.'.
std::string printable(std::string text);

} // namespace field_report
