// SPDX-License-Identifier: MIT
//
// Reads the settings from the command line.
#pragma once

#include "capture.h"

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace field_report {

extern const char* const USAGE; ///< the usage message
extern const char* const HELP;  ///< the rest of what --help prints

enum class FormatKind : std::uint8_t { TEXT, CSV, JSON, JSONL };

struct Settings {
    std::string capture;                ///< a path; "-" is standard input; empty if lines are given
    std::vector<std::string> lines;     ///< a capture given on the command line
    std::string table;                  ///< a path; empty for the installed table
    std::vector<std::string> registers; ///< the registers to print; empty for all
    std::uint64_t firstScan = 1;
    std::uint64_t lastScan = std::numeric_limits<std::uint64_t>::max();
    bool onlyChanges = false;
    ByteOrder byteOrder = ByteOrder::BIG;
    FormatKind format = FormatKind::TEXT;
    std::string output; ///< empty for standard output; see Output
};

/// Parses the arguments of the command line.
/// \throws Fault if an argument is not a setting, if a setting is empty, wrong or given twice, if
/// there is no capture, or if two inputs would both read standard input
Settings settingsOf(std::vector<std::string> arguments);

} // namespace field_report
