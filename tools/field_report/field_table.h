// SPDX-License-Identifier: MIT
//
// The field table: which fields a register has, as comma-separated values.
#pragma once

#include "code_names.h"
#include "messages.h"

#include "KelRT/Kel_Util.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace field_report {

constexpr std::uint64_t MAX_REGISTER_BITS = std::uint64_t{1} << 20; ///< of a register

struct Field {
    std::string name; ///< empty for bits that no field of the table covers
    std::uint64_t lowest = 0;
    std::uint64_t width = 0;
    char radix = 'X';
    double scale = 0; ///< 0: the field has no scaled value
    double offset = 0;
    std::uint32_t decimals = 0; ///< of the scaled value
    std::string unit;
    std::string description;
    CodeNames names;   ///< of raw values
    std::string place; ///< FILE:LINE in the table, or empty
};

/// True for the radix letters that read a raw value as signed.
bool isSigned(char radix);

/// The register of \a width bits as one field, "(whole)", which no table names.
Field wholeOf(std::uint64_t width);

/// What the table says of one register.
struct RegisterFields {
    std::vector<Field> fields;        ///< in the order of the table
    std::set<std::string> fieldNames; ///< which must differ
    Field whole; ///< the row of the register itself; without one its width is 0
};

/// Reports and removes the \a fields that do not lie within a register of \a width bits.
void removeMisfits(std::vector<Field>& fields, std::uint64_t width, Messages& messages);

/// The bits of a register of \a width bits that none of the \a fields covers: a field for each run,
/// the highest first.
std::vector<Field> gapsBetween(std::vector<Field> fields, std::uint64_t width);

/// Orders the names of registers, which are case-insensitive.
struct CaseInsensitiveLess {
    bool operator()(const std::string& a, const std::string& b) const {
        return KelRT::Kel_Util::stricmp(a, b) < 0;
    }
};

using FieldTable = std::map<std::string, RegisterFields, CaseInsensitiveLess>;

/// The width that the table gives a register, 0 if it gives none.
std::uint64_t widthOf(const std::string& registerName, const FieldTable& table);

/// True if any field has names for its raw values.
bool hasNames(const FieldTable& table);

/// The columns of a line. A quoted column may hold commas; a doubled quote in it is one quote.
/// \throws Fault
std::vector<std::string> columnsOf(const std::string& line);

/// Reads the table in \a path. A line with a fault is reported and left out.
FieldTable readTable(const std::string& path, Messages& messages);

} // namespace field_report
