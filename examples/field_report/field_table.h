// SPDX-License-Identifier: MIT
//
// The field table: which fields a register has, as comma-separated values.
#pragma once

#include "messages.h"

#include "KelRT/Kel_Util.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace field_report {

struct Field {
    std::string name;
    std::uint64_t lowest = 0;
    std::uint64_t width = 0;
    char radix = 'X';
    double scale = 0; ///< 0: the field has no scaled value
    double offset = 0;
    std::uint32_t decimals = 0; ///< of the scaled value
    std::string unit;
    std::string description;
    std::string place; ///< FILE:LINE in the table
};

/// True for the radix letters that read a raw value as signed.
bool isSigned(char radix);

/// Orders the names of registers, which are case-insensitive.
struct CaseInsensitiveLess {
    bool operator()(const std::string& a, const std::string& b) const {
        return KelRT::Kel_Util::stricmp(a, b) < 0;
    }
};

/// The fields of each register, in the order of the table.
using FieldTable = std::map<std::string, std::vector<Field>, CaseInsensitiveLess>;

/// The columns of a line. A quoted column may hold commas; a doubled quote in it is one quote.
/// \throws Fault
std::vector<std::string> columnsOf(const std::string& line);

/// Reads the table in \a path. A line with a fault is reported and left out.
FieldTable readTable(const std::string& path, Messages& messages);

} // namespace field_report
