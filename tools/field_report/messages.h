// SPDX-License-Identifier: MIT
//
// Writes to standard error: faults, one line each, and the progress of a long run.
#pragma once

#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace field_report {

/// A Fault says what is wrong with the input or the settings, or what the host failed to do.
using Fault = std::runtime_error;

/// Makes a Fault "WHAT: REASON"; the reason is that of `errno`.
Fault hostFault(const std::string& what);

class Messages {
public:
    Messages();

    /// Prints "WHERE: WHAT" and writes it to the log.
    void reportFault(const std::string& where, const std::string& what);

    /// Shows how much of the capture has been read. Does nothing in the first second, or if
    /// standard error is not a terminal.
    /// \param done  how many bytes have been read
    /// \param total the size of the capture in bytes, or 0 if it is unknown
    void showProgress(std::uint64_t done, std::uint64_t total);

    /// Erases the progress from the terminal. Call it before other text is printed.
    void hideProgress();

    bool anyFault() const { return faults; }

private:
    using Clock = std::chrono::steady_clock;

    bool faults = false;
    bool onTerminal;
    Clock::time_point due; // when the next progress is shown
    std::size_t shown = 0; // how many characters of progress are on the terminal
};

} // namespace field_report
