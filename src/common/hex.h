// SPDX-License-Identifier: MIT
//
// Hexadecimal digits: a table converts single digits, vectors convert up to sixteen at once. Digits
// of either case are read, independently of the locale.
#pragma once

#include "common/u64.h"
#include "common/vectors.h"

#include <array>
#include <cstdint>

namespace KelRT::common {

constexpr const char* UPPER_DIGITS = "0123456789ABCDEF";
constexpr const char* LOWER_DIGITS = "0123456789abcdef";
constexpr unsigned HEX_DIGITS_PER_U64 = 16;

// The value of each character as a hexadecimal digit, or NO_DIGIT.
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

// The value of a digit; of any other character, its code (as a signed char) minus 48.
[[nodiscard]] constexpr std::int32_t lenientHexValue(char character) {
    const std::uint8_t value = hexValue(character);
    return value != NO_DIGIT ? value : static_cast<signed char>(character) - 48;
}

// The values of digits; `letters` is the mask of those that are letters. The low nibbles
// of 'A' and 'a' have the value 1, so 9 is added.
[[nodiscard]] inline Vector hexValues(Vector characters, Vector letters) {
    return (characters & broadcastVector(15)) + (letters & broadcastVector(9));
}

// Packs sixteen values below 16, the most significant first.
[[nodiscard]] inline std::uint64_t packHex(Vector values) {
    const U64Vector pairs = u64VectorOf(values); // the first byte of each is the high digit
    return swapBytes(evenBytes(pairs << 4 | pairs >> 8));
}

// The number in sixteen characters. Clears the bytes of `valid` whose character is not a digit.
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

// Writes the low `count` digits (1 to 16) of `number` before `end`. `firstLetter` is 'A' or 'a'.
inline void writeHex(char* end, std::uint64_t number, unsigned count, char firstLetter) {
    const Vector bytes = bytesOf(U64Vector{swapBytes(number), 0});
    const Vector values = interleave(bytes >> 4, bytes & broadcastVector(15));
    const auto gap = static_cast<unsigned char>(firstLetter - ('9' + 1));
    const Vector digits =
        values + broadcastVector('0') + (greater(values, 9) & broadcastVector(gap));
    if (count == HEX_DIGITS_PER_U64)
        return storeVector(end - VECTOR_BYTES, digits);
    const unsigned fromSecond = count < 8 ? count : 8;
    storeHighBytes(end - fromSecond, secondU64(digits), fromSecond);
    if (count > 8)
        storeHighBytes(end - count, firstU64(digits), count - 8);
}

} // namespace KelRT::common
