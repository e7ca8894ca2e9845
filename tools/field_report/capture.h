// SPDX-License-Identifier: MIT
//
// Reads the lines of a capture. A line has a name, a width in bits, and a value in hexadecimal
// digits.
#pragma once

#include "field_table.h"

#include "KelRT/Kel_ByteBuffer.h"

#include <cstdint>
#include <string>

namespace field_report {

/// A scan is one captured value of a register. Bit 0 of `bits` is its least significant bit.
struct Scan {
    std::string name;
    std::uint64_t width = 0;
    KelRT::Kel_ByteBuffer bits;
};

enum class ByteOrder : std::uint8_t {
    BIG,   ///< the most significant byte comes first
    LITTLE ///< the least significant byte comes first
};

/// Reads a line of a capture. The width may be missing if \a table has it.
/// \code
/// "IDCODE 32 4BA0_0477"    "IDCODE: 4BA0_0477"    "IDCODE = 0x4ba00477"
/// \endcode
/// \throws Fault if the line is not valid; the name in \a scan is set even then
void readScan(const std::string& line, ByteOrder order, const FieldTable& table, Scan& scan);

} // namespace field_report
