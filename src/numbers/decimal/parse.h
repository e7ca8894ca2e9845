// SPDX-License-Identifier: MIT
#pragma once

#include "numbers/radix.h"

#include <cstdint>
#include <span>
#include <string>

namespace KelRT::numbers {

// Parses decimal text into words (at least one), the lowest first. The value wraps modulo 2^(16 *
// words.size()). It is not negated: the result tells the caller the sign. Text with a hexadecimal
// letter is refused. Throws std::bad_alloc. The words change only on success.
[[nodiscard]] ParseResult parseDecimal(const std::string& text, std::span<std::uint16_t> words);

} // namespace KelRT::numbers
