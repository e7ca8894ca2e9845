// SPDX-License-Identifier: MIT
//
// Reads the lines of a text file. Skips comments and blank lines, and removes a byte order mark and
// carriage returns.
#pragma once

#include "messages.h"

#include <cstdint>
#include <fstream>
#include <istream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace field_report {

class Lines {
public:
    /// Opens \a path; "-" is standard input. \throws Fault with the host's reason
    explicit Lines(const std::string& path);

    /// Uses \a lines, given on the command line, in place of a file.
    explicit Lines(const std::vector<std::string>& lines);

    /// Reads the next line that is neither blank nor a comment, and trims it. A comment begins with
    /// '#'.
    /// \return false at the end of the file
    /// \throws Fault for a line that cannot be read; the next call continues after it
    bool next(std::string& line);

    /// Returns false after a read error, which ends the file early.
    bool isComplete() const { return !failed; }

    /// Returns true if reading the next line may block.
    bool mayBlock() const { return stream->rdbuf()->in_avail() <= 0; }

    /// Returns "PATH:NUMBER" of the last line, or "PATH" after a read error.
    std::string place() const { return failed ? name : name + ":" + std::to_string(number); }

private:
    bool read(std::string& line);

    std::string name;
    std::ifstream file;
    std::istringstream given; // the lines of the command line
    std::istream* stream;
    std::vector<char> buffer; // holds one line and its NUL
    std::uint64_t number = 0;
    bool failed = false;
};

/// Opens \a path. If it cannot be opened, reports the fault and returns null.
std::unique_ptr<Lines> openLines(const std::string& path, Messages& messages);

} // namespace field_report
