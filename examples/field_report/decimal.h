// SPDX-License-Identifier: MIT
//
// Numbers as they stand in captures and tables.
#pragma once

#include "messages.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>
#include <system_error>

namespace field_report {

/// Reads all of \a text as a decimal number; false if it is not a number.
template <typename Number>
bool readNumber(const std::string& text, Number& number) {
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end;
}
bool readNumber(const std::string& text, double& number);

/// Reads \a text as a decimal number. \throws Fault, naming it \a what, if it is none or infinite
template <typename Number>
Number numberOf(const std::string& text, const char* what) {
    Number number{};
    if (!readNumber(text, number) || !std::isfinite(static_cast<double>(number)))
        throw Fault(std::string(what) + " '" + text + "' is not a valid number");
    return number;
}

/// The decimals needed to show every digit of \a number, a text that numberOf() accepts.
/// \code
/// "0.001" => 3    "1e-3" => 3    "2.50" => 2    "1.5e3" => 0    "16" => 0
/// \endcode
std::uint32_t decimalsOf(const std::string& number);

} // namespace field_report
