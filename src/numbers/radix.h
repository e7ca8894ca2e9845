// SPDX-License-Identifier: MIT
#pragma once

#include "common/digits.h"

namespace KelRT::numbers {

/// The base that a radix letter names, 0 for a letter that names none.
constexpr unsigned baseOf(char radix) {
    switch (radix) {
    case 'B':
    case 'b':
        return 2;
    case 'O':
    case 'o':
        return 8;
    case 'D':
    case 'd':
    case 'I':
    case 'i':
    case 'U':
    case 'u':
        return 10;
    case 'X':
    case 'x':
        return 16;
    case 'S':
    case 's':
        return 256;
    default:
        return 0;
    }
}

/// Of a radix letter of base 10: whether it prints numbers as signed.
constexpr bool printsSigned(char radix) {
    return radix != 'U' && radix != 'u';
}

/// What a character means to a base other than 256.
enum class Kind { digit, refused, sign, skipped };

inline Kind kindOf(char character, unsigned base) {
    const unsigned value = common::hexValue(character);
    if (value < base)
        return Kind::digit;
    if (value != common::NO_DIGIT)
        return Kind::refused;
    return character == '-' ? Kind::sign : Kind::skipped;
}

} // namespace KelRT::numbers
