// SPDX-License-Identifier: MIT
//
// Where a report goes: to standard output, into a file, or into a new temporary file.
#pragma once

#include <fstream>
#include <ostream>
#include <string>

namespace field_report {

class Output {
public:
    /// \param where  empty for standard output, "temp" for a new temporary file, otherwise a path
    /// \param binary whether line ends are written as they are given
    /// \throws Fault with the host's reason, Kel_Exception
    Output(const std::string& where, bool binary);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// Removes an unfinished file.
    ~Output();

    /// \throws Fault with the host's reason
    void write(const std::string& text);

    /// Completes the report: replaces an older file, or prints the name of a temporary one.
    /// \throws Fault with the host's reason
    void finish();

private:
    std::string path;       // of the report; empty for standard output
    std::string unfinished; // the file to remove unless finish() is reached; empty if there is none
    bool isTemporary = false;
    std::ofstream file;
    std::ostream* target;
};

} // namespace field_report
