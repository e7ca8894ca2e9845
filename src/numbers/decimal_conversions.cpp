// SPDX-License-Identifier: MIT
#include "KelRT/Kel_NumberUtil.h"

#include "common/u64.h"
#include "numbers/decimal/limb_text.h"
#include "numbers/decimal/powers_of_ten.h"
#include "numbers/fixed_text.h"
#include "numbers/limb.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

namespace KelRT {
namespace {

// Returns whether the character is white space in the "C" locale.
bool isSpace(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

std::string& assignDecimal(std::uint64_t magnitude, bool negative, std::string& out) {
    std::array<char, numbers::MAX_DIGITS_64 + 1> text;
    char* const end = text.data() + text.size();
    char* first = numbers::writeDecimal(end, magnitude);
    if (negative)
        *--first = '-';
    return out.assign(first, end);
}

// Returns the number that the leading digits form, or 2^64 - 1 for more than 19 significant digits.
// The caller limits it to at most 2^63, which has 19 digits. With std::from_chars instead, the
// benchmark row "small texts, parse decimal, full" takes 58 % longer.
std::uint64_t leadingNumber(const char* text, const char* end) {
    while (text != end && *text == '0')
        ++text;
    constexpr unsigned SAFE_DIGITS = numbers::digitsWithin(~numbers::Limb{0}); // 19
    const char* const limit = text + std::min<std::ptrdiff_t>(end - text, SAFE_DIGITS);
    std::uint64_t number = 0;
    for (; limit - text >= 8 && numbers::areDecimalDigits(common::loadU64(text)); text += 8)
        number =
            number * numbers::POWERS_OF_TEN[8] + numbers::valueOfEightDigits(common::loadU64(text));
    for (; text != limit && isDigit(*text); ++text)
        number = number * 10 + static_cast<std::uint64_t>(*text - '0');
    const bool hasMoreDigits = text == limit && text != end && isDigit(*text);
    return hasMoreDigits ? std::numeric_limits<std::uint64_t>::max() : number;
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
    const char* start = text.data();
    while (start != end && isSpace(*start))
        ++start;
    const bool negative = start != end && *start == '-';
    if (start != end && (*start == '-' || *start == '+'))
        ++start;
    constexpr std::uint64_t HALF = std::uint64_t{1} << 63;
    const std::uint64_t magnitude = std::min(leadingNumber(start, end), negative ? HALF : HALF - 1);
    return negative ? 0 - magnitude : magnitude;
}

std::string& Kel_NumberUtil::double2Str(double value, std::string& out) {
    return out = numbers::fixedText(value, 6);
}

} // namespace KelRT
