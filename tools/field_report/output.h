// SPDX-License-Identifier: MIT
//
// Writes a report to standard output, to a file, or to a new temporary file.
#pragma once

#include <fstream>
#include <ostream>
#include <string>

namespace field_report {

class Output {
public:
    /// Opens the output. An existing regular file stays until finish() replaces it.
    /// \param where  empty for standard output, "temp" for a new temporary file, otherwise a path
    /// \param binary whether line ends are written unchanged, also on hosts that translate them
    /// \throws Fault with the host's reason; Kel_Exception if there is no directory for temporary
    ///         files
    Output(const std::string& where, bool binary);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// Removes the file if finish() has not completed it.
    ~Output();

    /// Appends \a text to the report. \throws Fault with the host's reason
    void write(const std::string& text);

    /// Completes the report: replaces an older file, or prints the name of a temporary one.
    /// \throws Fault with the host's reason
    void finish();

private:
    std::string path;       // where the report will be; empty for standard output
    std::string unfinished; // the file to remove unless finish() completes it; may be empty
    bool isTemporary = false;
    std::ofstream file;
    std::ostream* target;
};

} // namespace field_report
