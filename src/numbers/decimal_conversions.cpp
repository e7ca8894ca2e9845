// SPDX-License-Identifier: MIT
#include "KelRT/Kel_NumberUtil.h"

#include "common/decimal.h"
#include "numbers/fixed_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace KelRT {
namespace {

/// White space of the "C" locale.
bool isSpace(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

std::string& assignDecimal(std::uint64_t magnitude, bool negative, std::string& out) {
    std::array<char, common::MOST_DECIMAL_DIGITS + 1> text;
    char* const end = text.data() + text.size();
    char* first = common::writeDecimal(end, magnitude);
    if (negative)
        *--first = '-';
    return out.assign(first, end);
}

} // namespace

std::string& Kel_NumberUtil::uInt2DecStr(std::uint32_t value, std::string& out) {
    return assignDecimal(value, false, out);
}

std::string& Kel_NumberUtil::uLL2DecStr(std::uint64_t value, std::string& out) {
    const bool negative = static_cast<std::int64_t>(value) < 0;
    return assignDecimal(negative ? 0 - value : value, negative, out);
}

std::uint64_t Kel_NumberUtil::decStr2ULL(const std::string& text) noexcept {
    const char* const end = text.data() + text.size();
    const char* start = std::find_if_not(text.data(), end, isSpace);
    const bool negative = start != end && *start == '-';
    // from_chars knows '-' but not '+'; behind a '+' it must not find a second sign.
    if (start != end && *start == '+' && ++start != end && *start == '-')
        return 0;
    std::int64_t number = 0;
    const auto result = std::from_chars(start, end, number);
    if (result.ec == std::errc::result_out_of_range)
        number = negative ? std::numeric_limits<std::int64_t>::min()
                          : std::numeric_limits<std::int64_t>::max();
    return static_cast<std::uint64_t>(number);
}

std::string& Kel_NumberUtil::double2Str(double value, std::string& out) {
    return out = numbers::fixedText(value, 6);
}

} // namespace KelRT
