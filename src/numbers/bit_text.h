// SPDX-License-Identifier: MIT
//
// These functions convert text in the radices 2, 8 and 256, whose digits have 1, 3 and 8 bits. The
// first character is the most significant digit. onesIn() handles sixteen characters at a time, the
// other functions eight.
#pragma once

#include "common/u64.h"
#include "common/vectors.h"

#include <bit>
#include <cstdint>

namespace KelRT::numbers {

constexpr unsigned CHARACTERS_PER_STEP = 8; // one 64-bit load

// Returns a mask of the `count` characters (0 to 64) of `text`: bit i is set if character i is '1'.
[[nodiscard]] inline std::uint64_t onesIn(const char* text, unsigned count) {
    constexpr unsigned BLOCK = 16;
    std::uint64_t ones = 0;
    for (unsigned done = 0; done < count; done += BLOCK) {
        const unsigned size = count - done < BLOCK ? count - done : BLOCK;
        const common::Vector characters = common::loadLastBytes(text + done, size, '0');
        ones |= common::topBits(common::equal(characters, '1')) >> (BLOCK - size) << done;
    }
    return ones;
}

// Spreads 24 bits over eight bytes, three bits to each. The lowest byte gets the lowest bits.
[[nodiscard]] constexpr std::uint64_t spreadOctal(std::uint64_t value) {
    value = (value | value << 20) & 0x00000FFF00000FFF;
    value = (value | value << 10) & 0x003F003F003F003F;
    return (value | value << 5) & 0x0707070707070707;
}

// Undoes spreadOctal(). Only the low three bits of each byte may be set.
[[nodiscard]] constexpr std::uint64_t packOctal(std::uint64_t digits) {
    digits = (digits | digits >> 5) & 0x003F003F003F003F;
    digits = (digits | digits >> 10) & 0x00000FFF00000FFF;
    return (digits | digits >> 20) & 0xFFFFFF;
}

// Reads up to 8 binary digits. Returns false if a character is not a digit.
[[nodiscard]] inline bool readBinary(const char* p, unsigned count, std::uint64_t& number) {
    const std::uint64_t characters = common::loadHighBytes(p, count, '0');
    number = common::packBits(common::swapBytes(characters & common::broadcast(1)));
    return (characters & common::broadcast(0xFE)) == common::broadcast('0');
}

// Reads up to 8 octal digits. Returns false if a character is not a digit.
[[nodiscard]] inline bool readOctal(const char* p, unsigned count, std::uint64_t& number) {
    const std::uint64_t characters = common::loadHighBytes(p, count, '0');
    number = packOctal(common::swapBytes(characters & common::broadcast(7)));
    return (characters & common::broadcast(0xF8)) == common::broadcast('0');
}

// Reads up to 8 digits of radix 256. A code below 128 is a digit of that value; for any other code,
// returns false.
[[nodiscard]] inline bool readBytes(const char* p, unsigned count, std::uint64_t& number) {
    number = common::swapBytes(common::loadHighBytes(p, count, 0));
    return (number & common::broadcast(0x80)) == 0;
}

// Reads the `count` binary digits (0 to 64) before `end`. Any character but '1' counts as 0.
[[nodiscard]] inline std::uint64_t readLenientBinary(const char* end, unsigned count) {
    // Mirroring moves the digits to the high bits; the rotation moves them down to the low bits. A
    // shift by 64 - count is undefined for a count of 0.
    return std::rotl(common::mirrorU64(onesIn(end - count, count)), static_cast<int>(count));
}

// Writes the low `count` digits of `value` before `end`. spread(value) returns the lowest eight
// digits, one per byte.
template <unsigned DIGIT_BITS, typename Spread>
void writeDigits(char* end, std::uint64_t value, unsigned count, Spread spread) {
    const auto characters = [&] {
        return common::swapBytes(spread(value) + common::broadcast('0'));
    };
    for (; count >= CHARACTERS_PER_STEP; count -= CHARACTERS_PER_STEP) {
        end -= CHARACTERS_PER_STEP;
        common::storeU64(end, characters());
        value >>= CHARACTERS_PER_STEP * DIGIT_BITS;
    }
    if (count > 0)
        common::storeHighBytes(end - count, characters(), count);
}

// Writes the low `count` bits (0 to 64) of `value` before `end`.
inline void writeBinary(char* end, std::uint64_t value, unsigned count) {
    writeDigits<1>(end, value, count, [](std::uint64_t bits) {
        return common::spreadBits(static_cast<std::uint8_t>(bits));
    });
}

// Writes the low `count` octal digits (0 to 21) of `value` before `end`.
inline void writeOctal(char* end, std::uint64_t value, unsigned count) {
    const auto spread = [](std::uint64_t bits) { return spreadOctal(bits & 0xFFFFFF); };
    // powerOfTwoText() mostly writes groups of 16 digits. For them, the constant count lets the
    // compiler unroll the loop. Without this, the benchmark row "print radix 8, 4096 b" takes 19 %
    // longer.
    if (count == 2 * CHARACTERS_PER_STEP)
        writeDigits<3>(end, value, 2 * CHARACTERS_PER_STEP, spread);
    else
        writeDigits<3>(end, value, count, spread);
}

// Writes the low `count` bytes (1 to 8) of `value` before `end`.
inline void writeBytes(char* end, std::uint64_t value, unsigned count) {
    common::storeHighBytes(end - count, common::swapBytes(value), count);
}

} // namespace KelRT::numbers
