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

// The precision for a "%.*s" whose record also holds the text `others`.
constexpr int precisionBeside(std::string_view others) {
    return static_cast<int>(MAX_RECORD_LENGTH - others.size());
}

} // namespace KelRT::logging
