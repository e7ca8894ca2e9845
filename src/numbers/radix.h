// SPDX-License-Identifier: MIT
#pragma once

#include "common/hex.h"
#include "common/u64.h"

#include <cstdint>

namespace KelRT::numbers {

// The radix that a letter of either case names; 0 for other characters.
[[nodiscard]] constexpr unsigned radixOf(char letter) {
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
[[nodiscard]] constexpr bool printsSigned(char letter) {
    return letter != 'U' && letter != 'u';
}

// The minimum number of digits printed for `bitCount` bits in radix 2^digitBits, modulo 2^32, a
// limit that Kel_Number::toString() documents.
[[nodiscard]] constexpr std::uint32_t minimumDigits(std::uint64_t bitCount, unsigned digitBits) {
    return static_cast<std::uint32_t>(common::divideUp(bitCount, digitBits));
}

// What a character means in a radix other than 256: a hexadecimal digit that the radix does not
// have is refused, a character that is neither a hexadecimal digit nor a '-' is skipped.
enum class CharacterClass : std::uint8_t { digit, refused, minus, skipped };

[[nodiscard]] inline CharacterClass classify(char character, unsigned radix) {
    const unsigned value = common::hexValue(character);
    if (value < radix)
        return CharacterClass::digit;
    if (value != common::NO_DIGIT)
        return CharacterClass::refused;
    return character == '-' ? CharacterClass::minus : CharacterClass::skipped;
}

// What a text is: refused, or a value with or without a minus sign.
enum class ParseResult : std::uint8_t { refused, positive, negative };

} // namespace KelRT::numbers
