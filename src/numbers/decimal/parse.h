// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace KelRT::numbers {

// Reads decimal text into words, the lowest word first; wordCount is at least 1. The value wraps
// modulo 2^(16 * wordCount). Sets `negative` if the text has a '-' and leaves the sign to the
// caller. False for a hexadecimal letter. Throws std::bad_alloc. The words change only on success.
bool parseDecimal(const std::string& text, std::uint16_t* words, std::size_t wordCount,
                  bool& negative);

} // namespace KelRT::numbers
