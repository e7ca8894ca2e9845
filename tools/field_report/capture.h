// SPDX-License-Identifier: MIT
//
// A line of a capture: a name, a width in bits, and a value in hexadecimal digits.
#pragma once

#include "field_table.h"

#include "KelRT/Kel_ByteBuffer.h"

#include <cstdint>
#include <string>

namespace field_report {

/// A register as it was captured once; bit 0 is the lowest bit of its value.
struct Scan {
    std::string name;
    std::uint64_t width = 0;
    KelRT::Kel_ByteBuffer bits;
};

enum class ByteOrder : std::uint8_t {
    BIG,   ///< the digits are those of one number
    LITTLE ///< the first two digits are the lowest byte
};

/// Reads a line of a capture. A register whose width \a table has may stand without one.
/// \code
/// "IDCODE 32 4BA0_0477"    "IDCODE: 4BA0_0477"    "IDCODE = 0x4ba00477"
/// \endcode
/// \throws Fault; \a scan then has the name that the line begins with
void readScan(const std::string& line, ByteOrder order, const FieldTable& table, Scan& scan);

} // namespace field_report
