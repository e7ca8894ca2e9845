// SPDX-License-Identifier: MIT
//
// Digits of texts, one at a time and eight at a time. The families of the public interface agree on
// hexadecimal digits of either case ('0' to '9', 'A' to 'F', 'a' to 'f'), which is this one table;
// where a function reads other characters by a rule of its own, it says so at its definition.
#pragma once

#include "common/words.h"

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>

namespace KelRT::common {

/// \a byte in every byte of a word.
constexpr std::uint64_t inEachByte(std::uint8_t byte) {
    return std::uint64_t{byte} * 0x0101010101010101;
}

/// The eight characters at \a p as a word, the first one in the lowest byte.
inline std::uint64_t loadCharacters(const char* p) {
    return loadWord(reinterpret_cast<const unsigned char*>(p));
}

/// Puts the eight characters of \a word to \a p.
inline void storeCharacters(char* p, std::uint64_t word) {
    storeWord(reinterpret_cast<unsigned char*>(p), word);
}

/// The \a count characters (0 to 8) at \a p in the lowest bytes of a word, zeros behind them.
inline std::uint64_t loadFirstCharacters(const char* p, std::size_t count) {
    return loadBytes(reinterpret_cast<const unsigned char*>(p), count);
}

/// Puts the \a count characters (0 to 8) in the lowest bytes of \a word to \a p.
inline void storeFirstCharacters(char* p, std::uint64_t word, std::size_t count) {
    storeBytes(reinterpret_cast<unsigned char*>(p), word, count);
}

// The `count` characters (0 to 8) at `p` in the highest bytes of a word, `filler` in the others:
// what a load of eight gives if fillers precede the text.
inline std::uint64_t loadLastCharacters(const char* p, unsigned count, char filler) {
    if (count == WORD_BYTES)
        return loadCharacters(p);
    const std::uint64_t half = (WORD_BYTES - count) * 4; // bits; a shift by 64 takes two steps
    const auto fillers = inEachByte(static_cast<unsigned char>(filler)) & lowBits(2 * half);
    return loadFirstCharacters(p, count) << half << half | fillers;
}

/// Puts the \a count characters (1 to 8) in the highest bytes of \a word to \a p: the opposite of
/// loadLastCharacters.
inline void storeLastCharacters(char* p, std::uint64_t word, unsigned count) {
    storeFirstCharacters(p, word >> (WORD_BYTES - count) * 8, count);
}

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

/// True when all eight bytes of \a characters are '0' to '9'.
constexpr bool areDecimalDigits(std::uint64_t characters) {
    constexpr std::uint64_t kinds = inEachByte(0xF0);
    // Behind the first test no addition carries out of its byte.
    return (characters & kinds) == inEachByte('0') &&
           ((characters + inEachByte(6)) & kinds) == inEachByte('0');
}

/// True for '0' to '9', independent of the locale.
constexpr bool isDecimalDigit(char character) {
    return character >= '0' && character <= '9';
}

/// True when all eight bytes of \a characters are '0' to '7'.
constexpr bool areOctalDigits(std::uint64_t characters) {
    return (characters & inEachByte(0xF8)) == inEachByte('0');
}

/// True when all eight bytes of \a characters are '0' or '1'.
constexpr bool areBinaryDigits(std::uint64_t characters) {
    return (characters & inEachByte(0xFE)) == inEachByte('0');
}

/// The number that eight characters '0' to '9' write, the most significant digit in the lowest
/// byte.
constexpr std::uint32_t eightDecimalDigits(std::uint64_t characters) {
    // Each step makes pairs of neighbours into one number: 8 of 1 digit, 4 of 2, 2 of 4, 1 of 8.
    std::uint64_t word = characters & inEachByte(0x0F);
    word = (word * (1 + (10U << 8)) >> 8) & 0x00FF00FF00FF00FF;
    word = (word * (1 + (100U << 16)) >> 16) & 0x0000FFFF0000FFFF;
    return static_cast<std::uint32_t>(word * (1 + (std::uint64_t{10000} << 32)) >> 32);
}

/// Eight octal digits of a 24-bit value, one a byte, the lowest digit in the lowest byte.
constexpr std::uint64_t spreadOctal(std::uint32_t value) {
    std::uint64_t word = value;
    word = (word | word << 20) & 0x00000FFF00000FFF;
    word = (word | word << 10) & 0x003F003F003F003F;
    return (word | word << 5) & 0x0707070707070707;
}

/// The opposite of spreadOctal: the low three bits of eight bytes packed into 24. The other bits
/// must be 0.
constexpr std::uint32_t packOctal(std::uint64_t word) {
    word = (word | word >> 5) & 0x003F003F003F003F;
    word = (word | word >> 10) & 0x00000FFF00000FFF;
    return static_cast<std::uint32_t>(word | word >> 20) & 0xFFFFFF;
}

/// The eight bits of \a byte, one a byte, bit 0 in the lowest byte.
constexpr std::uint64_t spreadBits(std::uint8_t byte) {
    // Byte n keeps bit n; adding 0x7F carries into bit 7 of exactly the bytes that are not 0.
    const std::uint64_t kept = inEachByte(byte) & 0x8040201008040201;
    return (kept + inEachByte(0x7F)) >> 7 & inEachByte(1);
}

/// The opposite of spreadBits: the lowest bits of eight bytes. The other bits must be 0.
constexpr std::uint8_t packBits(std::uint64_t word) {
    // The factor moves bit 8n to bit 56 + n; no two of its products meet in one bit.
    return static_cast<std::uint8_t>(word * 0x0102040810204080 >> 56);
}

/// A byte 1 for each byte of \a characters that is '1', a byte 0 for every other.
constexpr std::uint64_t onesIn(std::uint64_t characters) {
    if (areBinaryDigits(characters))
        return characters & inEachByte(1);
    const std::uint64_t differing = characters ^ inEachByte('1');
    // The top bit of each byte becomes 1 unless the whole byte is 0.
    const std::uint64_t others = ((differing & inEachByte(0x7F)) + inEachByte(0x7F)) | differing;
    return ~others >> 7 & inEachByte(1);
}

} // namespace KelRT::common
