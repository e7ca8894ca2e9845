// SPDX-License-Identifier: MIT
#include "field_text.h"

#include "KelRT/NumberValue.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace field_report {

using KelRT::Kel_Number;

std::string rawText(const Field& field, const Kel_Number& number) {
    return number.toString(field.radix);
}

const char* prefixOf(const Field& field) {
    const int lowerCase = field.radix | 0x20;
    switch (lowerCase) {
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

std::string valueText(const Field& field, const Kel_Number& number) {
    if (field.scale == 0)
        return "";
    if (isSigned(field.radix))
        return number.toFloatString(field.scale, field.offset, field.decimals);
    // toFloatString() reads the top bit as a sign, so an unsigned value gets a zero bit above it.
    std::vector<unsigned char> bytes(static_cast<std::size_t>(field.width / 8) + 1);
    KelRT::number2Bits(number, bytes.data(), 0);
    Kel_Number wider(field.width + 1);
    KelRT::bits2Number(bytes.data(), 0, wider);
    return wider.toFloatString(field.scale, field.offset, field.decimals);
}

std::string nameText(const Field& field, const Kel_Number& number) {
    return field.names.empty() ? "" : nameOf(number, isSigned(field.radix), field.names);
}

std::string printable(std::string text) {
    std::replace_if(text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '.');
    return text;
}

} // namespace field_report
