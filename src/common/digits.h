// SPDX-License-Identifier: MIT
//
// Digits of texts, one at a time and eight at a time. The families of the public interface agree on
// hexadecimal digits of either case ('0' to '9', 'A' to 'F', 'a' to 'f'), which is this one table;
// where a function reads other characters by a rule of its own, it says so at its definition.
#pragma once

#include "common/words.h"

#include <array>
#include <cstdint>

namespace KelRT::common {

constexpr const char* UPPER_DIGITS = "0123456789ABCDEF";
constexpr const char* LOWER_DIGITS = "0123456789abcdef";

/// What HEX_VALUES holds for a character that is no hexadecimal digit.
constexpr std::uint8_t NO_DIGIT = 0xFF;

/// The value of each character as a hexadecimal digit of either case, or NO_DIGIT. Independent of
/// the locale.
constexpr std::array<std::uint8_t, 256> HEX_VALUES = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(NO_DIGIT);
    for (std::uint8_t digit = 0; digit < 16; ++digit) {
        values[static_cast<unsigned char>(UPPER_DIGITS[digit])] = digit;
        values[static_cast<unsigned char>(LOWER_DIGITS[digit])] = digit;
    }
    return values;
}();

/// The value of \a character as a hexadecimal digit, or NO_DIGIT.
constexpr std::uint8_t hexValue(char character) {
    return HEX_VALUES[static_cast<unsigned char>(character)];
}

/// \a byte in every byte of a word.
constexpr std::uint64_t inEachByte(std::uint8_t byte) {
    return std::uint64_t{byte} * 0x0101010101010101;
}

/// Puts the eight characters of \a word to \a p.
inline void storeCharacters(char* p, std::uint64_t word) {
    storeWord(reinterpret_cast<unsigned char*>(p), word);
}

/// Eight digit values 0 to 15, one a byte, as the characters of the hexadecimal digits.
/// \param lettersFrom 'A' for upper case, 'a' for lower case
constexpr std::uint64_t hexCharacters(std::uint64_t values, char lettersFrom) {
    // Adding 6 carries into bit 4 of exactly the bytes that hold 10 to 15.
    const std::uint64_t letters = (values + inEachByte(6)) >> 4 & inEachByte(1);
    const auto gap = static_cast<std::uint64_t>(lettersFrom - '0' - 10);
    return values + inEachByte('0') + letters * gap;
}

/// Eight nibbles of a 32-bit value, one a byte, the lowest nibble in the lowest byte.
constexpr std::uint64_t spreadNibbles(std::uint32_t value) {
    std::uint64_t word = value;
    word = (word | word << 16) & 0x0000FFFF0000FFFF;
    word = (word | word << 8) & 0x00FF00FF00FF00FF;
    return (word | word << 4) & 0x0F0F0F0F0F0F0F0F;
}

/// The eight bits of \a byte, one a byte, bit 0 in the lowest byte.
constexpr std::uint64_t spreadBits(std::uint8_t byte) {
    // Byte n keeps bit n; adding 0x7F carries into bit 7 of exactly the bytes that are not 0.
    const std::uint64_t kept = inEachByte(byte) & 0x8040201008040201;
    return (kept + inEachByte(0x7F)) >> 7 & inEachByte(1);
}

/// The opposite of spreadNibbles: the low nibbles of eight bytes packed into 32 bits. The high
/// nibbles must be 0.
constexpr std::uint32_t packNibbles(std::uint64_t word) {
    word = (word | word >> 4) & 0x00FF00FF00FF00FF;
    word = (word | word >> 8) & 0x0000FFFF0000FFFF;
    return static_cast<std::uint32_t>(word | word >> 16);
}

/// Eight characters that are hexadecimal digits of either case, as their values, one a byte.
constexpr std::uint64_t hexDigitValues(std::uint64_t characters) {
    // Letters have bit 6 set, and their low nibble counts from 1.
    return (characters & inEachByte(0x0F)) + (characters >> 6 & inEachByte(1)) * 9;
}

/// True when all eight bytes of \a characters are hexadecimal digits of either case.
constexpr bool areHexDigits(std::uint64_t characters) {
    constexpr std::uint64_t high = inEachByte(0x80);
    const std::uint64_t folded = characters | inEachByte(0x20); // 'A'..'F' to 'a'..'f'
    if ((characters & high) != 0)
        return false;
    // With every byte below 0x80, adding 0x80 - x sets the top bit of exactly the bytes >= x.
    const std::uint64_t digit =
        (characters + inEachByte(0x80 - '0')) & ~(characters + inEachByte(0x80 - '9' - 1));
    const std::uint64_t letter =
        (folded + inEachByte(0x80 - 'a')) & ~(folded + inEachByte(0x80 - 'f' - 1));
    return ((digit | letter) & high) == high;
}

} // namespace KelRT::common
