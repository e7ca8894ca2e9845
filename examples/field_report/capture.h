// SPDX-License-Identifier: MIT
//
// A line of a capture: a name, a width in bits, and a value in hexadecimal digits.
#pragma once

#include "KelRT/Kel_ByteBuffer.h"

#include <cstdint>
#include <string>

namespace field_report {

constexpr std::uint64_t MAX_REGISTER_BITS = std::uint64_t{1} << 20; ///< of a register

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

/// Reads a line of a capture. \throws Fault; \a scan then has the name that the line begins with
void readScan(const std::string& line, ByteOrder order, Scan& scan);

} // namespace field_report
