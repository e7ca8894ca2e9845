// SPDX-License-Identifier: MIT
//
// The formats of a report. A format gets one scan after the other, in the order of the report, with
// all its fields at once, and appends their text to a string.
#pragma once

#include "field_table.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace field_report {

/// One field of one scan.
struct Item {
    const Field* field;
    std::string raw;   ///< as rawText() gives it
    std::string value; ///< as valueText() gives it
    std::string name;  ///< of the raw value, or empty
};

/// What is reported of one scan.
struct ScanReport {
    const std::string* registerName;
    std::uint64_t scan; ///< its number among those of the register, from 1
    const Field* whole; ///< the register itself
    std::vector<Item> items;
};

class Format {
public:
    Format() = default;
    Format(const Format&) = delete;
    Format& operator=(const Format&) = delete;
    virtual ~Format() = default;

    /// Appends the fields of one scan, at least one.
    virtual void addScan(const ScanReport& report, std::string& text) = 0;

    /// Appends what ends the report.
    virtual void end(std::string& text) = 0;
};

/// A table for people. Its columns are wide enough for whatever the fields of \a table can hold,
/// and grow for registers that it does not know.
std::unique_ptr<Format> makeTextFormat(const FieldTable& table, bool boldHeader);

/// Comma-separated values with a header line, as RFC 4180 has them. \param named with a column for
/// the names of raw values
std::unique_ptr<Format> makeCsvFormat(bool named);

/// One array of objects. \param named with a key for the names of raw values
std::unique_ptr<Format> makeJsonFormat(bool named);

/// One object a scan and line. \param named as for makeJsonFormat()
std::unique_ptr<Format> makeJsonLinesFormat(bool named);

} // namespace field_report
