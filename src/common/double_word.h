// SPDX-License-Identifier: MIT
//
// DoubleWord, an unsigned integer of 128 bits for the products of words: the compiler's own type,
// or else TwoWords, a class with the operators that the library uses.
#pragma once

#include <compare>
#include <cstdint>
#include <type_traits>

#if defined(_M_X64) && !defined(__SIZEOF_INT128__) && !defined(KELRT_NO_EXTENSIONS)
#include <intrin.h>
#endif

namespace KelRT::common {

class TwoWords {
public:
    constexpr TwoWords() = default;
    constexpr TwoWords(std::uint64_t value) : low(value) {} // implicit, as between integers
    constexpr TwoWords(std::uint64_t newHigh, std::uint64_t newLow) : high(newHigh), low(newLow) {}

    // Truncates to an integer type. Do not convert to bool: it compiles but, unlike the conversion
    // of the compiler's type, ignores the high word.
    template <typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
    constexpr explicit operator Integer() const {
        return static_cast<Integer>(low);
    }

    friend constexpr bool operator==(TwoWords, TwoWords) = default;
    friend constexpr auto operator<=>(TwoWords, TwoWords) = default; // `high` is compared first

    friend constexpr TwoWords operator~(TwoWords a) { return {~a.high, ~a.low}; }

    friend constexpr TwoWords operator+(TwoWords a, TwoWords b) {
        const std::uint64_t sum = a.low + b.low;
        return {a.high + b.high + (sum < b.low ? 1 : 0), sum};
    }

    friend constexpr TwoWords operator-(TwoWords a, TwoWords b) {
        return {a.high - b.high - (a.low < b.low ? 1 : 0), a.low - b.low};
    }

    // The product modulo 2^128.
    friend constexpr TwoWords operator*(TwoWords a, TwoWords b) {
        const TwoWords product = productOf(a.low, b.low);
        return {product.high + a.high * b.low + a.low * b.high, product.low};
    }

    // Slow bitwise long division, only for compile-time constants. The divisor is 1 to 2^127, so
    // the remainder can be doubled.
    friend constexpr TwoWords operator/(TwoWords dividend, TwoWords divisor) {
        TwoWords quotient;
        TwoWords remainder;
        for (unsigned bit = 128; bit-- > 0;) {
            quotient = quotient << 1;
            remainder = (remainder << 1) + ((dividend >> bit).low & 1);
            if (remainder >= divisor) {
                quotient = quotient + 1;
                remainder = remainder - divisor;
            }
        }
        return quotient;
    }

    // Shifts take counts of 0 to 127.
    friend constexpr TwoWords operator<<(TwoWords a, unsigned count) {
        if (count >= 64)
            return {a.low << (count - 64), 0};
        // Two steps, because a shift by 64 is undefined.
        return {a.high << count | a.low >> 1 >> (63 - count), a.low << count};
    }

    friend constexpr TwoWords operator>>(TwoWords a, unsigned count) {
        if (count >= 64)
            return {0, a.high >> (count - 64)};
        return {a.high >> count, a.low >> count | a.high << 1 << (63 - count)};
    }

    constexpr TwoWords& operator+=(TwoWords other) { return *this = *this + other; }
    constexpr TwoWords& operator>>=(unsigned count) { return *this = *this >> count; }

private:
    static constexpr TwoWords productOf(std::uint64_t a, std::uint64_t b) {
#if defined(_M_X64) && !defined(__SIZEOF_INT128__) && !defined(KELRT_NO_EXTENSIONS)
        if (std::is_constant_evaluated())
            return productOfHalves(a, b);
        std::uint64_t high = 0;
        const std::uint64_t low = _umul128(a, b, &high);
        return {high, low};
#else
        return productOfHalves(a, b);
#endif
    }

    // Four products of 32-bit halves. No sum exceeds 64 bits: (2^32 - 1)^2 + 2 (2^32 - 1) is
    // 2^64 - 1.
    static constexpr TwoWords productOfHalves(std::uint64_t a, std::uint64_t b) {
        constexpr std::uint64_t HALF = 0xFFFFFFFF;
        const std::uint64_t lowest = (a & HALF) * (b & HALF);
        const std::uint64_t middle = (a >> 32) * (b & HALF) + (lowest >> 32);
        const std::uint64_t other = (a & HALF) * (b >> 32) + (middle & HALF);
        return {(a >> 32) * (b >> 32) + (middle >> 32) + (other >> 32),
                other << 32 | (lowest & HALF)};
    }

    std::uint64_t high = 0;
    std::uint64_t low = 0;
};

#if defined(__SIZEOF_INT128__) && !defined(KELRT_NO_EXTENSIONS)
__extension__ using DoubleWord = unsigned __int128;
#else
using DoubleWord = TwoWords;
#endif

} // namespace KelRT::common
