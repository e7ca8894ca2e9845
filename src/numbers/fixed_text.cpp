// SPDX-License-Identifier: MIT
#include "numbers/fixed_text.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <cstdio>
#include <new>
#include <stdexcept>

namespace KelRT::numbers {
namespace {

// Every double is a multiple of 2^-1074, so it has at most this many decimal places. Further ones
// are 0.
constexpr std::uint32_t EXACT_DECIMALS = 1074;

// The longest text has a sign, the 309 digits of the largest double, a decimal point, the decimals
// and a NUL. The locale's decimal point is assumed to have at most 32 bytes.
constexpr std::size_t LONGEST_TEXT = 1 + 309 + 32 + EXACT_DECIMALS + 1;

} // namespace

std::string fixedText(double value, std::uint32_t precision) {
    static_assert(MAX_PRECISION == 2147483136);
    if (precision > MAX_PRECISION)
        throw std::length_error("Kel: precision above 2147483136");
    const std::uint32_t printed = std::min(precision, EXACT_DECIMALS);
    const std::size_t zeros = std::isfinite(value) ? precision - printed : 0;
    std::array<char, LONGEST_TEXT> text;
    const int length =
        std::snprintf(text.data(), text.size(), "%.*f", static_cast<int>(printed), value);
    if (length < 0) // the C library is out of memory
        throw std::bad_alloc();
    const auto size = static_cast<std::size_t>(length);
    assert(size < text.size());
    std::string whole;
    whole.reserve(size + zeros);
    return whole.append(text.data(), size).append(zeros, '0');
}

} // namespace KelRT::numbers
