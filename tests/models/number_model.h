// SPDX-License-Identifier: MIT
//
// This model of a wide number is slow and obvious. It works on one digit and one 16-bit word at a
// time.
#pragma once

#include "digits.h"

#include <cstdint>
#include <string>
#include <vector>

namespace model {

class Number {
public:
    explicit Number(std::uint64_t bits)
        : bitCount(bits), words(static_cast<std::size_t>((bits + 15) / 16)) {}

    bool isNegative() const { return (words.back() >> (bitCount - 1) % 16 & 1) != 0; }
    bool isZero() const { return words == std::vector<std::uint16_t>(words.size()); }

    void negate() {
        for (auto& word : words)
            word = static_cast<std::uint16_t>(~word);
        multiplyAndAdd(1, 1);
    }

    bool set(char radix, const std::string& text) {
        const unsigned base = radixOf(radix);
        bool negative = false;
        words.assign(words.size(), 0);
        for (const char c : text) {
            negative = negative || (base != 256 && c == '-');
            // A code from 0x80 on becomes a digit that is too large for the radix.
            const unsigned digit =
                base == 256 ? static_cast<unsigned>(static_cast<signed char>(c)) : digitOf(c, NONE);
            if (digit == NONE)
                continue;
            if (digit >= base) {
                words.assign(words.size(), 0);
                return false;
            }
            multiplyAndAdd(base, digit);
        }
        if (negative)
            negate();
        return true;
    }

    std::string toString(char radix) const {
        const unsigned base = radixOf(radix);
        if (base == 0)
            return "bad format for number";
        Number copy(*this);
        const bool negative = base == 10 && radix != 'u' && radix != 'U' && isNegative();
        if (negative)
            copy.negate();
        const std::string digits = radix == 'x' ? "0123456789abcdef" : "0123456789ABCDEF";
        std::string reversed;
        do {
            const unsigned r = copy.divide(base);
            reversed += base == 256 ? static_cast<char>(r) : digits[r];
        } while (!copy.isZero());
        const unsigned bits = base == 2 ? 1 : base == 8 ? 3 : base == 16 ? 4 : 8;
        while (base != 10 && reversed.size() < (bitCount + bits - 1) / bits)
            reversed += base == 256 ? ' ' : '0';
        if (negative)
            reversed += '-';
        return {reversed.rbegin(), reversed.rend()};
    }

private:
    static constexpr unsigned NONE = 0xFFFF;

    static unsigned radixOf(char radix) {
        const std::size_t at = std::string("BbOoDdIiUuXxSs").find(radix);
        const unsigned radices[] = {2, 8, 10, 10, 10, 16, 256};
        return at == std::string::npos ? 0 : radices[at / 2];
    }

    void multiplyAndAdd(std::uint32_t factor, std::uint32_t summand) {
        for (auto& word : words) {
            summand += word * factor;
            word = static_cast<std::uint16_t>(summand);
            summand >>= 16;
        }
        words.back() &= static_cast<std::uint16_t>(0xFFFF >> (16 - bitCount % 16) % 16);
    }

    // Divides the number by `divisor` and returns the remainder.
    unsigned divide(unsigned divisor) {
        std::uint32_t r = 0;
        for (std::size_t i = words.size(); i-- > 0;) {
            const std::uint32_t t = r * 65536 + words[i];
            words[i] = static_cast<std::uint16_t>(t / divisor);
            r = t % divisor;
        }
        return r;
    }

    std::uint64_t bitCount;
    std::vector<std::uint16_t> words;
};

} // namespace model
