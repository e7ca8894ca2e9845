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

enum class FormatKind : std::uint8_t { TEXT, CSV, JSON, JSONL };

struct Settings {
    std::string capture;                ///< "-" is standard input; empty: the lines stand for it
    std::vector<std::string> lines;     ///< of a capture
    std::string table;                  ///< empty: the installed one
    std::vector<std::string> registers; ///< empty: all of them
    std::uint64_t firstScan = 1;
    std::uint64_t lastScan = std::numeric_limits<std::uint64_t>::max();
    bool onlyChanges = false;
    ByteOrder byteOrder = ByteOrder::BIG;
    FormatKind format = FormatKind::TEXT;
    std::string output; ///< empty: standard output
};

/// \throws Fault for an argument that is not a setting, a setting that is empty, wrong or given
/// twice, a missing capture, and two inputs that would both be standard input
Settings settingsOf(std::vector<std::string> arguments);

} // namespace field_report
