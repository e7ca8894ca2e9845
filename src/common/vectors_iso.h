// SPDX-License-Identifier: MIT
//
// Implements vectors.h in ISO C++.
#pragma once

#include "common/u64.h"

#include <cstdint>

namespace KelRT::common::iso {

// Holds the sixteen bytes in two integers. Byte 0 is the lowest byte of `first`.
template <typename Element>
struct VectorOf {
    std::uint64_t first;
    std::uint64_t second;

    friend VectorOf operator&(VectorOf a, VectorOf b) {
        return {a.first & b.first, a.second & b.second};
    }
    friend VectorOf operator|(VectorOf a, VectorOf b) {
        return {a.first | b.first, a.second | b.second};
    }
};

using Vector = VectorOf<unsigned char>;
using U64Vector = VectorOf<std::uint64_t>;

inline Vector operator+(Vector a, Vector b) {
    return {a.first + b.first, a.second + b.second};
}

inline Vector operator>>(Vector vector, unsigned count) {
    const std::uint64_t kept = broadcast(static_cast<unsigned char>(0xFF >> count));
    return {vector.first >> count & kept, vector.second >> count & kept};
}

inline U64Vector operator>>(U64Vector vector, unsigned count) {
    return {vector.first >> count, vector.second >> count};
}

inline U64Vector operator<<(U64Vector vector, unsigned count) {
    return {vector.first << count, vector.second << count};
}

[[nodiscard]] inline Vector loadVector(const void* from) {
    const auto* const p = static_cast<const unsigned char*>(from);
    return {loadU64(p), loadU64(p + U64_BYTES)};
}

inline void storeVector(void* to, Vector vector) {
    auto* const p = static_cast<unsigned char*>(to);
    storeU64(p, vector.first);
    storeU64(p + U64_BYTES, vector.second);
}

[[nodiscard]] inline U64Vector middleU64s(U64Vector a, U64Vector b) {
    return {a.second, b.first};
}

[[nodiscard]] inline Vector bytesOf(U64Vector vector) {
    return {vector.first, vector.second};
}

[[nodiscard]] inline std::uint64_t firstU64(Vector vector) {
    return vector.first;
}

[[nodiscard]] inline std::uint64_t secondU64(Vector vector) {
    return vector.second;
}

// Applies a comparison to each byte. `comparison(value)` must set the top bit of each byte for
// which it holds, and clear the top bit of every other byte. The low seven bits do not matter.
template <typename Comparison>
[[nodiscard]] Vector compare(Vector vector, Comparison comparison) {
    const auto masks = [comparison](std::uint64_t value) {
        const std::uint64_t found = comparison(value) & broadcast(0x80);
        return (found << 1) - (found >> 7); // each 0x80 becomes 0x100 - 1, or 0xFF
    };
    return {masks(vector.first), masks(vector.second)};
}

[[nodiscard]] inline Vector equal(Vector vector, char character) {
    const std::uint64_t characters = broadcast(static_cast<unsigned char>(character));
    return compare(vector, [characters](std::uint64_t value) {
        // Adding 0x7F to the low seven bits of a byte sets its top bit, unless they are 0.
        const std::uint64_t difference = value ^ characters;
        return ~(((difference & broadcast(0x7F)) + broadcast(0x7F)) | difference);
    });
}

// Sets the top bit of each byte if bound <= byte <= 127, otherwise clears it. The low seven bits of
// each byte are unspecified. `bound` is 0 to 128.
[[nodiscard]] inline std::uint64_t atLeast(std::uint64_t value, int bound) {
    return ((value & broadcast(0x7F)) + broadcast(static_cast<unsigned char>(0x80 - bound))) &
           ~value;
}

[[nodiscard]] inline Vector greater(Vector vector, signed char bound) {
    return compare(vector, [bound](std::uint64_t value) { return atLeast(value, bound + 1); });
}

[[nodiscard]] inline Vector between(Vector vector, signed char first, signed char last) {
    return compare(vector, [first, last](std::uint64_t value) {
        return atLeast(value, first) & ~atLeast(value, last + 1);
    });
}

[[nodiscard]] inline std::uint64_t topBits(Vector vector) {
    const auto bits = [](std::uint64_t value) {
        return std::uint64_t{packBits(value >> 7 & broadcast(1))};
    };
    return bits(vector.first) | bits(vector.second) << 8;
}

[[nodiscard]] inline Vector interleave(Vector a, Vector b) {
    // Moves the four bytes of a 32-bit value to the even bytes of a u64.
    const auto spread = [](std::uint64_t value) {
        value = (value | value << 16) & 0x0000FFFF0000FFFF;
        return (value | value << 8) & 0x00FF00FF00FF00FF;
    };
    constexpr std::uint64_t HALF = 0xFFFFFFFF;
    return {spread(a.first & HALF) | spread(b.first & HALF) << 8,
            spread(a.first >> 32) | spread(b.first >> 32) << 8};
}

[[nodiscard]] inline std::uint64_t evenBytes(U64Vector vector) {
    const auto pack = [](std::uint64_t value) {
        value &= 0x00FF00FF00FF00FF;
        value = (value | value >> 8) & 0x0000FFFF0000FFFF;
        return (value | value >> 16) & 0xFFFFFFFF;
    };
    return pack(vector.first) | pack(vector.second) << 32;
}

} // namespace KelRT::common::iso
