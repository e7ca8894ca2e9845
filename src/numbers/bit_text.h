// SPDX-License-Identifier: MIT
//
// Text in the radices 2, 8 and 256, whose digits are 1, 3 and 8 bits. Eight characters make a word,
// in which the least significant digit is the highest byte. Spreading and packing take it as the
// lowest.
#pragma once

#include "common/words.h"

#include <cstdint>

namespace KelRT::numbers {

constexpr unsigned STEP = 8; // characters in a word

constexpr bool areBinaryDigits(std::uint64_t characters) {
    return (characters & common::broadcast(0xFE)) == common::broadcast('0');
}

constexpr bool areOctalDigits(std::uint64_t characters) {
    return (characters & common::broadcast(0xF8)) == common::broadcast('0');
}

// 1 in each byte equal to '1', 0 elsewhere.
constexpr std::uint64_t onesIn(std::uint64_t characters) {
    using common::broadcast;
    if (areBinaryDigits(characters))
        return characters & broadcast(1);
    const std::uint64_t difference = characters ^ broadcast('1');
    // The top bit of each byte becomes 1 unless the byte is 0.
    const std::uint64_t others = ((difference & broadcast(0x7F)) + broadcast(0x7F)) | difference;
    return ~others >> 7 & broadcast(1);
}

// Spreads 24 bits to eight bytes of three.
constexpr std::uint64_t spreadOctal(std::uint64_t value) {
    value = (value | value << 20) & 0x00000FFF00000FFF;
    value = (value | value << 10) & 0x003F003F003F003F;
    return (value | value << 5) & 0x0707070707070707;
}

// The inverse of spreadOctal(). The other bits must be 0.
constexpr std::uint64_t packOctal(std::uint64_t digits) {
    digits = (digits | digits >> 5) & 0x003F003F003F003F;
    digits = (digits | digits >> 10) & 0x00000FFF00000FFF;
    return (digits | digits >> 20) & 0xFFFFFF;
}

// Reads `count` digits (1 to 8). False if a character is not a digit.
inline bool readBinary(const char* p, unsigned count, std::uint64_t& number) {
    const std::uint64_t characters = common::loadHighBytes(p, count, '0');
    number = common::packBits(common::swapBytes(characters & common::broadcast(1)));
    return areBinaryDigits(characters);
}

inline bool readOctal(const char* p, unsigned count, std::uint64_t& number) {
    const std::uint64_t characters = common::loadHighBytes(p, count, '0');
    number = packOctal(common::swapBytes(characters & common::broadcast(7)));
    return areOctalDigits(characters);
}

// A digit is a character below 128, and its code is the value.
inline bool readBytes(const char* p, unsigned count, std::uint64_t& number) {
    number = common::swapBytes(common::loadHighBytes(p, count, 0));
    return (number & common::broadcast(0x80)) == 0;
}

// The `count` characters (0 to 64) before `end` as bits: 1 for '1', 0 for any other character.
inline std::uint64_t readBits(const char* end, unsigned count) {
    const auto pack = [](std::uint64_t characters) {
        return std::uint64_t{common::packBits(common::swapBytes(onesIn(characters)))};
    };
    std::uint64_t bits = 0;
    unsigned done = 0;
    for (; done + STEP <= count; done += STEP)
        bits |= pack(common::loadWord(end - done - STEP)) << done;
    if (done == count)
        return bits;
    return bits | pack(common::loadHighBytes(end - count, count - done, '0')) << done;
}

// Writes the low `count` digits of `value` before `end`. `spread` yields the lowest eight digits.
template <unsigned DIGIT_BITS, typename Spread>
void writeDigits(char* end, std::uint64_t value, unsigned count, Spread spread) {
    const auto characters = [&] {
        return common::swapBytes(spread(value) + common::broadcast('0'));
    };
    for (; count >= STEP; count -= STEP) {
        end -= STEP;
        common::storeWord(end, characters());
        value >>= STEP * DIGIT_BITS;
    }
    if (count > 0)
        common::storeHighBytes(end - count, characters(), count);
}

// 0 to 64 digits.
inline void writeBits(char* end, std::uint64_t value, unsigned count) {
    writeDigits<1>(end, value, count, [](std::uint64_t bits) {
        return common::spreadBits(static_cast<std::uint8_t>(bits));
    });
}

// 0 to 21 digits.
inline void writeOctal(char* end, std::uint64_t value, unsigned count) {
    const auto spread = [](std::uint64_t bits) { return spreadOctal(bits & 0xFFFFFF); };
    // A constant count unrolls the loop. Without it, the row "print radix 8, 4096 b" takes 19 %
    // longer.
    if (count == 2 * STEP)
        writeDigits<3>(end, value, 2 * STEP, spread);
    else
        writeDigits<3>(end, value, count, spread);
}

// 1 to 8 digits.
inline void writeBytes(char* end, std::uint64_t value, unsigned count) {
    common::storeHighBytes(end - count, common::swapBytes(value), count);
}

} // namespace KelRT::numbers
