// SPDX-License-Identifier: MIT
#include "numbers/fixed_text.h"

#include <array>
#include <climits>
#include <cstdio>
#include <stdexcept>

namespace KelRT::numbers {

std::string fixedText(double value, std::uint32_t precision) {
    if (precision > INT_MAX)
        throw std::length_error("Kel: precision above INT_MAX");
    const int digits = static_cast<int>(precision);
    std::array<char, 128> small; // NOLINT(cppcoreguidelines-pro-type-member-init): written next
    const int length = std::snprintf(small.data(), small.size(), "%.*f", digits, value);
    if (length < 0)
        throw std::length_error("Kel: the number's text is longer than the C library can print");
    const auto size = static_cast<std::size_t>(length);
    if (size < small.size())
        return {small.data(), size};
    std::string text(size, '\0');
    static_cast<void>(std::snprintf(text.data(), size + 1, "%.*f", digits, value));
    return text;
}

} // namespace KelRT::numbers
