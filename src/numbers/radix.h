// SPDX-License-Identifier: MIT
#pragma once

#include "common/hex.h"

#include <cstdint>

namespace KelRT::numbers {

// The radix that a letter names; 0 for any other letter.
constexpr unsigned radixOf(char letter) {
    switch (letter) {
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

// Whether a letter of radix 10 prints numbers as signed.
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
