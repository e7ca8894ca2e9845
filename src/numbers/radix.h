// SPDX-License-Identifier: MIT
#pragma once

#include "common/hex.h"
#include "common/u64.h"

#include <cstdint>

namespace KelRT::numbers {

// Returns the radix that a letter of either case selects, or 0 for any other character.
[[nodiscard]] constexpr unsigned radixOf(char letter) {
    switch (letter | 0x20) { // lower-cases letters and makes no other character a letter
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

// Returns whether a letter of radix 10 prints signed numbers.
[[nodiscard]] constexpr bool printsSigned(char letter) {
    return letter != 'U' && letter != 'u';
}

// Returns the number of digits to which `bitCount` bits are padded in radix 2^digitBits. It is
// computed modulo 2^32, as Kel_Number::toString() documents.
[[nodiscard]] constexpr std::uint32_t minimumDigits(std::uint64_t bitCount, unsigned digitBits) {
    return static_cast<std::uint32_t>(common::divideUp(bitCount, digitBits));
}

// A character has one of these meanings in a radix other than 256. A hexadecimal digit outside the
// radix is refused. A character that is neither a hexadecimal digit nor a '-' is skipped.
enum class CharacterClass : std::uint8_t { digit, refused, minus, skipped };

[[nodiscard]] inline CharacterClass classify(char character, unsigned radix) {
    const unsigned value = common::hexValue(character);
    if (value < radix)
        return CharacterClass::digit;
    if (value != common::NO_DIGIT)
        return CharacterClass::refused;
    return character == '-' ? CharacterClass::minus : CharacterClass::skipped;
}

// Parsing refuses a text or yields a value, which is negative if the text contains a minus sign.
enum class ParseResult : std::uint8_t { refused, positive, negative };

} // namespace KelRT::numbers
