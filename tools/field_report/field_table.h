// SPDX-License-Identifier: MIT
//
// Reads the field table, which lists the fields of registers as comma-separated values.
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

constexpr std::uint64_t MAX_REGISTER_BITS = std::uint64_t{1} << 20;

struct Field {
    std::string name; ///< empty for bits that no field of the table covers
    std::uint64_t lowest = 0;
    std::uint64_t width = 0;
    char radix = 'X';
    double scale = 0; ///< 0: the field has no scaled value
    double offset = 0;
    std::uint32_t decimals = 0; ///< the number of decimals of the scaled value
    std::string unit;
    std::string description;
    CodeNames names;   ///< the names of raw values
    std::string place; ///< FILE:LINE in the table; empty if the field is not from the table
};

/// Returns true for the radix letters that read a raw value as signed.
bool isSigned(char radix);

/// Makes the field "(whole)", which covers all bits of a register of \a width bits.
Field wholeOf(std::uint64_t width);

/// Holds the rows of the table for one register.
struct RegisterFields {
    std::vector<Field> fields;        ///< in the order of the table
    std::set<std::string> fieldNames; ///< their names, to find duplicates
    Field whole; ///< the row of the register itself; its width is 0 if there is no such row
};

/// Reports and removes the \a fields that do not lie within a register of \a width bits.
void removeMisfits(std::vector<Field>& fields, std::uint64_t width, Messages& messages);

/// Finds the bits of a register of \a width bits that no field covers. Each run of them becomes one
/// field of the result, the highest first.
std::vector<Field> gapsBetween(std::vector<Field> fields, std::uint64_t width);

/// Orders the names of registers, ignoring case.
struct CaseInsensitiveLess {
    bool operator()(const std::string& a, const std::string& b) const {
        return KelRT::Kel_Util::stricmp(a, b) < 0;
    }
};

using FieldTable = std::map<std::string, RegisterFields, CaseInsensitiveLess>;

/// Returns the width of a register in the table, or 0 if the table does not have it.
std::uint64_t widthOf(const std::string& registerName, const FieldTable& table);

/// Returns true if any field has names for its raw values.
bool hasNames(const FieldTable& table);

/// Splits a line into its columns. A quoted column may contain commas; a doubled quote in it stands
/// for one quote.
/// \throws Fault if the quotes of a column are not valid
std::vector<std::string> columnsOf(const std::string& line);

/// Reads the table in \a path. A line with a fault is reported and skipped.
FieldTable readTable(const std::string& path, Messages& messages);

} // namespace field_report
