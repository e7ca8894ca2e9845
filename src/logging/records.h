// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace KelRT::logging {

// These are the levels of the Logger's own lines.
constexpr int ENVIRONMENT_LEVEL = 1; // what was read from the environment
constexpr int BANNER_LEVEL = 2;      // banner, start and end of logging
constexpr int TRACE_LEVEL = 4;       // method entries and exits

// A record is truncated to this many characters.
constexpr std::size_t MAX_RECORD_LENGTH = 2047;

// Returns how many characters of a "%.*s" argument fit in a record beside `fixedText`.
[[nodiscard]] constexpr int maxPrecision(std::string_view fixedText) {
    return static_cast<int>(MAX_RECORD_LENGTH - fixedText.size());
}

} // namespace KelRT::logging
