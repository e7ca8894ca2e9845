// SPDX-License-Identifier: MIT
//
// Declares the formats of a report. The caller passes the scans in the order of the report, one at
// a time, and the format appends their text to a string.
#pragma once

#include "field_table.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace field_report {

/// Holds one field of one scan.
struct Item {
    const Field* field;
    std::string raw;   ///< as rawText() gives it
    std::string value; ///< as valueText() gives it
    std::string name;  ///< as nameText() gives it
};

/// Holds the part of one scan that the report shows.
struct ScanReport {
    const std::string* registerName;
    std::uint64_t scan; ///< the number of the scan; those of a register are numbered from 1
    const Field* whole; ///< the register as one field
    std::vector<Item> items;
};

class Format {
public:
    Format() = default;
    Format(const Format&) = delete;
    Format& operator=(const Format&) = delete;
    virtual ~Format() = default;

    /// Appends the fields of one scan. \a report has at least one.
    virtual void addScan(const ScanReport& report, std::string& text) = 0;

    /// Appends the end of the report, such as a closing bracket.
    virtual void end(std::string& text) = 0;
};

/// Makes a format that prints a table for people. Its columns are wide enough for any value of the
/// fields of \a table whose range lies within that of double, and become wider for registers that
/// \a table does not have.
std::unique_ptr<Format> makeTextFormat(const FieldTable& table, bool boldHeader);

/// Makes a format that prints comma-separated values as in RFC 4180, with a header line.
/// \param named whether there is a column for the names of raw values
std::unique_ptr<Format> makeCsvFormat(bool named);

/// Makes a format that prints one array of objects.
/// \param named whether the objects have a key for the names of raw values
std::unique_ptr<Format> makeJsonFormat(bool named);

/// Makes a format that prints one object for each scan, on a line of its own.
/// \param named whether the objects have a key for the names of raw values
std::unique_ptr<Format> makeJsonLinesFormat(bool named);

} // namespace field_report
