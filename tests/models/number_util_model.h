// SPDX-License-Identifier: MIT
//
// These models are slow and obvious: they work on one bit or one character at a time.
#pragma once

#include "digits.h"

#include <cstdint>
#include <string>
#include <vector>

namespace model {

// Returns the bits of a field, shifted in one after the other from `first` to `last`.
inline std::uint64_t field(const std::vector<unsigned char>& data, int first, int last) {
    const int step = first < last ? 1 : -1;
    std::uint64_t bits = 0;
    for (int n = first; n != last + step; n += step)
        bits = bits << 1 | (std::uint64_t{data.at(static_cast<std::size_t>(n / 8))} >> n % 8 & 1);
    return bits;
}

inline int signedCode(char c) {
    const int code = static_cast<unsigned char>(c);
    return code < 128 ? code : code - 256;
}

// Returns the value that hex2Bin() gives a character. A lower-case letter is no digit: 'a' is 42.
inline int upperDigit(char c) {
    return signedCode(c) < 'A' ? signedCode(c) - 48 : signedCode(c) - 55;
}

inline std::uint64_t hexStr2ULL(const std::string& text) {
    std::uint64_t number = 0;
    for (const char c : text) {
        const unsigned digit = digitOf(c, static_cast<unsigned>(signedCode(c) - 48));
        number = number * 16 + static_cast<std::uint64_t>(static_cast<int>(digit));
    }
    return number;
}

inline std::uint32_t binToUInt(const std::string& bits) {
    std::uint32_t number = 0;
    for (const char bit : bits)
        number = number * 2 + (bit == '1' ? 1 : 0);
    return number;
}

inline std::string binToHex(std::string bits) {
    bits.insert(0, (4 - bits.size() % 4) % 4, '0');
    std::string hex;
    for (std::size_t at = 0; at < bits.size(); at += 4)
        hex += "0123456789ABCDEF"[binToUInt(bits.substr(at, 4))];
    return hex;
}

inline std::string hexToBin(const std::string& hex, std::size_t bitCount) {
    std::string bits;
    for (const char c : hex)
        for (const int bit : {8, 4, 2, 1})
            bits += (upperDigit(c) & bit) != 0 ? '1' : '0';
    bits.insert(0, bitCount, '0');
    return bits.substr(bits.size() - bitCount);
}

} // namespace model
