// SPDX-License-Identifier: MIT
//
// What goes to standard error: faults, one line each, and the progress of a long run.
#pragma once

#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace field_report {

/// A fault of the input, the settings or the host. The text says what is wrong.
using Fault = std::runtime_error;

/// "WHAT: REASON" with the host's reason for the last failed call.
Fault hostFault(const std::string& what);

class Messages {
public:
    Messages();

    /// Prints "WHERE: WHAT" and writes it to the log.
    void reportFault(const std::string& where, const std::string& what);

    /// Shows how much of the capture is read, on a terminal and after the first second.
    /// \param total the size of the capture in bytes, 0 if it is unknown
    void showProgress(std::uint64_t done, std::uint64_t total);

    /// Takes the progress off the terminal before other text appears there.
    void hideProgress();

    bool anyFault() const { return faults; }

private:
    using Clock = std::chrono::steady_clock;

    bool faults = false;
    bool onTerminal;
    Clock::time_point due; // of the next progress line
    std::size_t shown = 0; // characters of the one on the terminal
};

} // namespace field_report
