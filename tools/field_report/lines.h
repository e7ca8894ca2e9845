// SPDX-License-Identifier: MIT
//
// The lines of a text file, without comments, blank lines, byte order mark and carriage returns.
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

    /// The \a lines of the command line.
    explicit Lines(const std::vector<std::string>& lines);

    /// Reads the next line that is neither blank nor a comment ('#' first), trimmed. A byte order
    /// mark and carriage returns at line ends are dropped.
    /// \return false at the end of the file
    /// \throws Fault for a line that cannot be read; the next call goes on after it
    bool next(std::string& line);

    /// False after a failure of the host, which ends the file early.
    bool isComplete() const { return !failed; }

    /// True if reading the next line may block.
    bool mayBlock() const { return stream->rdbuf()->in_avail() <= 0; }

    /// "PATH:NUMBER" of the last line, "PATH" after a failure of the host.
    std::string place() const { return failed ? name : name + ":" + std::to_string(number); }

    std::uint64_t bytesRead() const { return consumed; }

    /// The size of the file in bytes, 0 if it is unknown.
    std::uint64_t size() const { return total; }

private:
    bool read(std::string& line);

    std::string name;
    std::ifstream file;
    std::istringstream given; // on the command line
    std::istream* stream;
    std::vector<char> buffer; // one line and its NUL
    std::uint64_t number = 0;
    std::uint64_t consumed = 0;
    std::uint64_t total = 0;
    bool failed = false;
};

/// The lines of \a path; null, after the fault is reported, if it cannot be opened.
std::unique_ptr<Lines> openLines(const std::string& path, Messages& messages);

} // namespace field_report
