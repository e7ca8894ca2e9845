// SPDX-License-Identifier: MIT
//
// Texts whose digits stand for a fixed number of bits each, most significant digit first. They are
// worked from their ends, since it is there that digits and bits meet whatever the length is; each
// function handles up to one 64-bit word of them, eight characters a step.
#pragma once

#include "common/digits.h"
#include "common/hex.h"

#include <cstdint>

namespace KelRT::common {

/// The \a count characters (0 to 64) right before \a end as bits: '1' is a one bit and every other
/// character a zero bit; the last character is bit 0.
inline std::uint64_t readBits(const char* end, unsigned count) {
    std::uint64_t bits = 0;
    unsigned done = 0;
    for (; done + 8 <= count; done += 8) {
        const std::uint64_t step = onesIn(loadCharacters(end - done - 8));
        bits |= std::uint64_t{packBits(swapBytes(step))} << done;
    }
    if (done == count)
        return bits;
    const std::uint64_t step = onesIn(loadLastCharacters(end - count, count - done, '0'));
    return bits | std::uint64_t{packBits(swapBytes(step))} << done;
}

/// Writes digits right before an end, eight a step.
/// \param count       how many digits to write
/// \param digitBits   the bits of a digit
/// \param characters  gives the characters of the lowest eight digits of a value, the lowest one in
///                    the lowest byte
template <class Characters>
void writeDigits(char* end, std::uint64_t value, unsigned count, unsigned digitBits,
                 Characters characters) {
    for (; count >= 8; count -= 8) {
        end -= 8;
        storeCharacters(end, swapBytes(characters(value)));
        value = digitBits == 8 ? 0 : value >> 8 * digitBits;
    }
    if (count > 0)
        storeLastCharacters(end - count, swapBytes(characters(value)), count);
}

/// Writes the low \a count bits (0 to 64) of \a value as '0' and '1' right before \a end.
inline void writeBits(char* end, std::uint64_t value, unsigned count) {
    writeDigits(end, value, count, 1, [](std::uint64_t bits) {
        return spreadBits(static_cast<std::uint8_t>(bits)) + inEachByte('0');
    });
}

/// Writes the low \a count octal digits (0 to 21) of \a value right before \a end.
inline void writeOctal(char* end, std::uint64_t value, unsigned count) {
    const auto characters = [](std::uint64_t bits) {
        return spreadOctal(static_cast<std::uint32_t>(bits & 0xFFFFFF)) + inEachByte('0');
    };
    if (count == 16) // what long numbers consist of, without a loop
        writeDigits(end, value, 16, 3, characters);
    else
        writeDigits(end, value, count, 3, characters);
}

/// Writes the low \a count hexadecimal digits (1 to 16) of \a value right before \a end.
/// \param lettersFrom 'A' for upper case, 'a' for lower case
inline void writeHex(char* end, std::uint64_t value, unsigned count, char lettersFrom) {
    const Vector digits = hexCharacters(nibblesOf(value), lettersFrom);
    if (count == VECTOR_BYTES) {
        storeVector(reinterpret_cast<unsigned char*>(end - VECTOR_BYTES), digits);
        return;
    }
    const unsigned low = count < 8 ? count : 8;
    storeLastCharacters(end - low, secondWord(digits), low);
    if (count > low)
        storeLastCharacters(end - count, firstWord(digits), count - low);
}

/// Writes the low \a count bytes (0 to 8) of \a value as characters of these codes right before
/// \a end.
inline void writeBytes(char* end, std::uint64_t value, unsigned count) {
    writeDigits(end, value, count, 8, [](std::uint64_t bits) { return bits; });
}

} // namespace KelRT::common
