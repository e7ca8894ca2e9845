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

/// Reads \a text as a decimal number. \throws Fault, naming it \a what, if it is none or infinite
template <typename Number>
Number numberOf(const std::string& text, const char* what) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end || !std::isfinite(static_cast<double>(number)))
        throw Fault(std::string(what) + " '" + text + "' is not a valid number");
    return number;
}

/// The decimals needed to show every digit of \a number, a text that numberOf() accepts.
/// \code
/// "0.001" => 3    "1e-3" => 3    "2.50" => 2    "1.5e3" => 0    "16" => 0
/// \endcode
std::uint32_t decimalsOf(const std::string& number);

} // namespace field_report
