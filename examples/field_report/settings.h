// SPDX-License-Identifier: MIT
//
// The settings given on the command line.
#pragma once

#include "capture.h"

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace field_report {

extern const char* const USAGE; ///< the usage message
extern const char* const HELP;  ///< the rest of what --help prints

enum class FormatKind : std::uint8_t { TEXT, CSV, JSON };

struct Settings {
    std::string capture;                ///< "-" is standard input
    std::string table;                  ///< empty: the installed one
    std::vector<std::string> registers; ///< empty: all of them
    std::uint64_t firstScan = 1;
    std::uint64_t lastScan = std::numeric_limits<std::uint64_t>::max();
    ByteOrder byteOrder = ByteOrder::BIG;
    FormatKind format = FormatKind::TEXT;
    std::string output; ///< empty: standard output
};

/// \throws Fault for an argument that is not a setting, a setting that is empty, wrong or given
/// twice, and a missing capture
Settings settingsOf(std::vector<std::string> arguments);

} // namespace field_report
