// SPDX-License-Identifier: MIT
#pragma once

#include "common/hex.h"

#include <cstdint>

namespace KelRT::numbers {

// The radix that a letter of either case names; 0 for other characters.
constexpr unsigned radixOf(char letter) {
    switch (letter | 0x20) { // upper case to lower case; nothing else becomes a letter
    case 'b':
        return 2;
    case 'o':
        return 8;
    case 'd':
    case 'i':
    case 'u':
        return 10;
    case 'x':
        return 16;
    case 's':
        return 256;
    default:
        return 0;
    }
}

// Whether a letter of radix 10 stands for signed numbers.
constexpr bool printsSigned(char letter) {
    return letter != 'U' && letter != 'u';
}

// What a character means in a radix other than 256.
enum class CharacterClass : std::uint8_t { digit, refused, sign, skipped };

inline CharacterClass classify(char character, unsigned radix) {
    const unsigned value = common::hexValue(character);
    if (value < radix)
        return CharacterClass::digit;
    if (value != common::NO_DIGIT)
        return CharacterClass::refused;
    return character == '-' ? CharacterClass::sign : CharacterClass::skipped;
}

} // namespace KelRT::numbers
