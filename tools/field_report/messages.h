// SPDX-License-Identifier: MIT
//
// Writes to standard error: faults, one line each.
#pragma once

#include <stdexcept>
#include <string>

namespace field_report {

/// A Fault says what is wrong with the input or the settings, or what the host failed to do.
using Fault = std::runtime_error;

/// Makes a Fault "WHAT: REASON"; the reason is that of `errno`.
Fault hostFault(const std::string& what);

class Messages {
public:
    /// Prints "WHERE: WHAT" and writes it to the log.
    void reportFault(const std::string& where, const std::string& what);

    bool anyFault() const { return faults; }

private:
    bool faults = false;
};

} // namespace field_report
