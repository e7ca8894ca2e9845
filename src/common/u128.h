// SPDX-License-Identifier: MIT
//
// U128 is an unsigned integer of 128 bits, for the products of 64-bit integers. It is unsigned
// __int128 where the compiler has this extension. Elsewhere it is PortableU128, a class with those
// operators that the library uses.
#pragma once

#include <compare>
#include <cstdint>
#include <type_traits>

#if defined(_M_X64) && !defined(__SIZEOF_INT128__) && !defined(KELRT_NO_EXTENSIONS)
#include <intrin.h>
#endif

namespace KelRT::common {

class PortableU128 {
public:
    constexpr PortableU128() = default;
    constexpr PortableU128(std::uint64_t value) : low(value) {} // implicit, as between integers
    constexpr PortableU128(std::uint64_t newHigh, std::uint64_t newLow)
        : high(newHigh), low(newLow) {}

    // Truncates to an integer type. Do not convert to bool: unlike the conversion of unsigned
    // __int128, this one ignores the high half.
    template <typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
    constexpr explicit operator Integer() const {
        return static_cast<Integer>(low);
    }

    friend constexpr bool operator==(PortableU128, PortableU128) = default;
    // Compares `high` first.
    friend constexpr auto operator<=>(PortableU128, PortableU128) = default;

    friend constexpr PortableU128 operator~(PortableU128 a) { return {~a.high, ~a.low}; }

    friend constexpr PortableU128 operator+(PortableU128 a, PortableU128 b) {
        const std::uint64_t sum = a.low + b.low;
        return {a.high + b.high + (sum < b.low ? 1 : 0), sum};
    }

    friend constexpr PortableU128 operator-(PortableU128 a, PortableU128 b) {
        return {a.high - b.high - (a.low < b.low ? 1 : 0), a.low - b.low};
    }

    // Multiplies modulo 2^128.
    friend constexpr PortableU128 operator*(PortableU128 a, PortableU128 b) {
        const PortableU128 product = productOf(a.low, b.low);
        return {product.high + a.high * b.low + a.low * b.high, product.low};
    }

    // Divides bit by bit. This is slow and only for compile-time constants. The divisor is 1 to
    // 2^127, so that doubling the remainder cannot overflow.
    friend constexpr PortableU128 operator/(PortableU128 dividend, PortableU128 divisor) {
        PortableU128 quotient;
        PortableU128 remainder;
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

    // Both shifts take counts of 0 to 127.
    friend constexpr PortableU128 operator<<(PortableU128 a, unsigned count) {
        if (count >= 64)
            return {a.low << (count - 64), 0};
        // Two shifts move a.low down by 64 - count. If `count` is 0, one shift would be by 64,
        // which is undefined.
        return {a.high << count | a.low >> 1 >> (63 - count), a.low << count};
    }

    friend constexpr PortableU128 operator>>(PortableU128 a, unsigned count) {
        if (count >= 64)
            return {0, a.high >> (count - 64)};
        return {a.high >> count, a.low >> count | a.high << 1 << (63 - count)};
    }

    constexpr PortableU128& operator+=(PortableU128 other) { return *this = *this + other; }
    constexpr PortableU128& operator>>=(unsigned count) { return *this = *this >> count; }

private:
    [[nodiscard]] static constexpr PortableU128 productOf(std::uint64_t a, std::uint64_t b) {
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

    // Adds up the four products of 32-bit halves. No sum overflows: each adds at most two halves to
    // one product, and (2^32 - 1)^2 + 2 (2^32 - 1) is 2^64 - 1.
    [[nodiscard]] static constexpr PortableU128 productOfHalves(std::uint64_t a, std::uint64_t b) {
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
__extension__ using U128 = unsigned __int128;
#else
using U128 = PortableU128;
#endif

} // namespace KelRT::common
