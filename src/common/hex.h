// SPDX-License-Identifier: MIT
//
// Converts hexadecimal digits. A table converts a single digit, vectors convert up to sixteen at
// once. Digits of either case are read, independently of the locale.
#pragma once

#include "common/u64.h"
#include "common/vectors.h"

#include <array>
#include <cstdint>

namespace KelRT::common {

constexpr const char* UPPER_DIGITS = "0123456789ABCDEF";
constexpr const char* LOWER_DIGITS = "0123456789abcdef";
constexpr unsigned HEX_DIGITS_PER_U64 = 16;

// HEX_VALUES maps each character to its value as a hexadecimal digit, or to NO_DIGIT.
constexpr std::uint8_t NO_DIGIT = 0xFF;
constexpr std::array<std::uint8_t, 256> HEX_VALUES = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(NO_DIGIT);
    for (std::uint8_t digit = 0; digit < 16; ++digit) {
        values[static_cast<unsigned char>(UPPER_DIGITS[digit])] = digit;
        values[static_cast<unsigned char>(LOWER_DIGITS[digit])] = digit;
    }
    return values;
}();

[[nodiscard]] constexpr std::uint8_t hexValue(char character) {
    return HEX_VALUES[static_cast<unsigned char>(character)];
}

// Returns the value of a digit. For another character, returns its code as a signed char, minus 48:
// for 'G', this is 71 - 48.
[[nodiscard]] constexpr std::int32_t lenientHexValue(char character) {
    const std::uint8_t value = hexValue(character);
    return value != NO_DIGIT ? value : static_cast<signed char>(character) - 48;
}

// Converts sixteen digits to their values. `letters` is 0xFF in each byte that is a letter. The low
// nibble of a letter is 1 for 'A' and 'a', 2 for 'B' and 'b', and so on, so 9 is added.
[[nodiscard]] inline Vector hexValues(Vector characters, Vector letters) {
    return (characters & broadcastVector(15)) + (letters & broadcastVector(9));
}

// Packs the values of sixteen digits into a number. The first digit is the most significant one.
[[nodiscard]] inline std::uint64_t packHex(Vector values) {
    const U64Vector pairs = u64VectorOf(values);
    // Byte 2i becomes 16 * values[2i] + values[2i + 1]. evenBytes() drops the odd bytes, and
    // swapBytes() makes the first byte the most significant one.
    return swapBytes(evenBytes(pairs << 4 | pairs >> 8));
}

// Converts sixteen digits to a number. Clears the bytes of `valid` whose character is not a digit.
[[nodiscard]] inline std::uint64_t decodeHex(Vector characters, Vector& valid) {
    constexpr unsigned char LOWER_CASE = 0x20;
    const Vector letters = between(characters | broadcastVector(LOWER_CASE), 'a', 'f');
    valid = valid & (between(characters, '0', '9') | letters);
    return packHex(hexValues(characters, letters));
}

// Reads `count` characters (1 to 16) at `p` into `number`. Returns false if one is not a digit.
[[nodiscard]] inline bool readHex(const char* p, unsigned count, std::uint64_t& number) {
    Vector valid = broadcastVector(0xFF);
    number = decodeHex(loadLastBytes(p, count, '0'), valid);
    return allSet(valid);
}

// Writes the low `count` digits (1 to 16) of `number`, the last one just before `end`.
// `firstLetter` is 'A' or 'a'.
inline void writeHex(char* end, std::uint64_t number, unsigned count, char firstLetter) {
    const Vector bytes = bytesOf(U64Vector{swapBytes(number), 0});
    const Vector values = interleave(bytes >> 4, bytes & broadcastVector(15));
    // Letters do not follow '9' directly, so values above 9 need `gap` in addition.
    const auto gap = static_cast<unsigned char>(firstLetter - ('9' + 1));
    const Vector digits =
        values + broadcastVector('0') + (greater(values, 9) & broadcastVector(gap));
    if (count == HEX_DIGITS_PER_U64)
        return storeVector(end - VECTOR_BYTES, digits);
    // The second u64 of `digits` has the low eight digits.
    const unsigned fromSecond = count < 8 ? count : 8;
    storeHighBytes(end - fromSecond, secondU64(digits), fromSecond);
    if (count > 8)
        storeHighBytes(end - count, firstU64(digits), count - 8);
}

} // namespace KelRT::common
