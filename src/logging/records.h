// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace KelRT::logging {

// The levels of the Logger's own records.
constexpr int ENVIRONMENT_LEVEL = 1; // what start-up read from the environment
constexpr int BANNER_LEVEL = 2;      // banner, start and end of logging
constexpr int TRACE_LEVEL = 4;       // method entries and exits

// The maximum length of a record.
constexpr std::size_t MAX_RECORD_LENGTH = 2047;

// The precision of a "%.*s" that fills the room left by the fixed text of its record.
[[nodiscard]] constexpr int maxPrecision(std::string_view fixedText) {
    return static_cast<int>(MAX_RECORD_LENGTH - fixedText.size());
}

} // namespace KelRT::logging
