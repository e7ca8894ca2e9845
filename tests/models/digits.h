// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace model {

/// Returns the value of a hexadecimal digit, or \a other for another character.
inline unsigned digitOf(char c, unsigned other) {
    const std::size_t at = std::string("0123456789ABCDEFabcdef").find(c);
    return at == std::string::npos ? other : static_cast<unsigned>(at < 16 ? at : at - 6);
}

} // namespace model
