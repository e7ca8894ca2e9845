// SPDX-License-Identifier: MIT
//
// These functions read and write the decimal text of 64-bit values. Readers take eight characters
// in one 64-bit value, the first character in the lowest byte. Writers write before `end` and
// return a pointer to the first character.
#pragma once

#include "common/u64.h"

#include <cstdint>

namespace KelRT::numbers {

// Returns whether all eight characters are decimal digits.
[[nodiscard]] constexpr bool areDecimalDigits(std::uint64_t characters) {
    // The first test limits each byte to 0x3F, so the addition does not carry into the next one.
    constexpr std::uint64_t HIGH_NIBBLES = common::broadcast(0xF0);
    return (characters & HIGH_NIBBLES) == common::broadcast('0') &&
           ((characters + common::broadcast(6)) & HIGH_NIBBLES) == common::broadcast('0');
}

// Returns the number that eight decimal digits form.
[[nodiscard]] constexpr std::uint32_t valueOfEightDigits(std::uint64_t characters) {
    // Each step joins neighbours: 8 numbers of 1 digit become 4 of 2, 2 of 4 and 1 of 8.
    std::uint64_t joined = characters & common::broadcast(0x0F);
    joined = (joined * (1 + (10U << 8)) >> 8) & 0x00FF00FF00FF00FF;
    joined = (joined * (1 + (100U << 16)) >> 16) & 0x0000FFFF0000FFFF;
    return static_cast<std::uint32_t>(joined * (1 + (std::uint64_t{10000} << 32)) >> 32);
}

// A 64-bit value has at most this many decimal digits.
constexpr unsigned MAX_DIGITS_64 = 20;

// Writes the value without leading zeros.
[[nodiscard]] char* writeDecimal(char* end, std::uint64_t value);

// Writes a value below 10^17 with leading zeros.
[[nodiscard]] char* writeSeventeenDigits(char* end, std::uint64_t value);
// Writes a value below 10^19 with leading zeros.
[[nodiscard]] char* writeNineteenDigits(char* end, std::uint64_t value);

} // namespace KelRT::numbers
