// SPDX-License-Identifier: MIT
#include "field_text.h"

#include "KelRT/Kel_Number.h"
#include "KelRT/Kel_NumberUtil.h"

#include <algorithm>

namespace field_report {

using KelRT::Kel_Number;
using KelRT::Kel_NumberUtil;

namespace {

constexpr std::uint64_t WORD = 64; // the most bits that getBitsLL reads at once

char lowerCase(char radix) {
    return static_cast<char>(radix | 0x20);
}

} // namespace

std::string digitsOf(KelRT::Kel_ByteBuffer& bits, const Field& field) {
    std::string digits;
    std::string word;
    for (std::uint64_t left = field.width; left > 0;) { // the highest bits first
        const std::uint64_t count = ((left - 1) % WORD) + 1;
        left -= count;
        Kel_NumberUtil::uLL2HexStr(bits.getBitsLL(field.lowest + left, count), word);
        const auto length = static_cast<std::size_t>((count + 3) / 4);
        digits.append(length - word.size(), '0').append(word);
    }
    return digits;
}

std::string rawText(const Field& field, const std::string& digits) {
    Kel_Number number(field.width);
    number.set('x', digits);
    return number.toString(field.radix);
}

const char* prefixOf(const Field& field) {
    switch (lowerCase(field.radix)) {
    case 'b':
        return "0b";
    case 'o':
        return "0o";
    case 'x':
        return "0x";
    default:
        return "";
    }
}

std::string valueText(const Field& field, const std::string& digits) {
    if (field.scale == 0)
        return "";
    // The library reads the top bit as a sign, so an unsigned value gets a zero above it.
    Kel_Number number(field.width + (isSigned(field.radix) ? 0 : 1));
    number.set('x', digits);
    return number.toFloatString(field.scale, field.offset, field.decimals);
}

std::string printable(std::string text) {
    std::replace_if(text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '.');
    return text;
}

} // namespace field_report
