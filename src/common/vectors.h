// SPDX-License-Identifier: MIT
//
// Vectors of sixteen bytes, with one of two back ends: GNU vector types, or two words in ISO C++.
// Elements are numbered in memory order on every host.
//
// A comparison yields 0xFF in each byte for which it holds, 0 in the others. Both vector types have
// the operators &, | and >>; bytes have +, words have <<.
#pragma once

#include "common/words.h"

#include <cstdint>
#include <cstring>

namespace KelRT::common {

constexpr std::uint64_t VECTOR_BYTES = 16;

#if (defined(__GNUC__) || defined(__clang__)) && !defined(KELRT_NO_EXTENSIONS)

using Vector = unsigned char __attribute__((vector_size(16)));
using WordVector = std::uint64_t __attribute__((vector_size(16)));

inline Vector loadVector(const void* from) {
    Vector vector;
    std::memcpy(&vector, from, sizeof vector);
    return vector;
}

inline void storeVector(void* to, Vector vector) {
    std::memcpy(to, &vector, sizeof vector);
}

// The second word of `a`, then the first of `b`.
inline WordVector middleWords(WordVector a, WordVector b) {
    return __builtin_shufflevector(a, b, 1, 2);
}

// The bytes of two words, the lowest byte of each first.
inline Vector bytesOf(WordVector words) {
    return reinterpret_cast<Vector>(WordVector{littleEndian(words[0]), littleEndian(words[1])});
}

// The word in bytes 0 to 7.
inline std::uint64_t firstWord(Vector vector) {
    return littleEndian(reinterpret_cast<WordVector>(vector)[0]);
}

// The word in bytes 8 to 15.
inline std::uint64_t secondWord(Vector vector) {
    return littleEndian(reinterpret_cast<WordVector>(vector)[1]);
}

inline Vector equal(Vector vector, char character) {
    return reinterpret_cast<Vector>(vector == static_cast<unsigned char>(character));
}

using SignedVector = signed char __attribute__((vector_size(16)));

// vector > bound, for bytes taken as signed, since SSE2 has no unsigned ordering comparison.
// `bound` is at least 0.
inline Vector greater(Vector vector, signed char bound) {
    return reinterpret_cast<Vector>(reinterpret_cast<SignedVector>(vector) > bound);
}

// first <= vector <= last, for bounds from 0 to 127.
inline Vector between(Vector vector, signed char first, signed char last) {
    // The range is moved to start at -128, so that one signed comparison tests both bounds.
    const Vector moved = vector + static_cast<unsigned char>(0x80 - first);
    const auto end = static_cast<signed char>(-128 + (last - first + 1));
    return reinterpret_cast<Vector>(reinterpret_cast<SignedVector>(moved) < end);
}

// Bit i is the top bit of byte i. Without pmovmskb, the benchmark row "CSV, 1 MiB"
// takes 9 % longer.
inline std::uint64_t topBits(Vector vector) {
#ifdef __SSE2__
    using Chars = char __attribute__((vector_size(16)));
    return static_cast<unsigned>(__builtin_ia32_pmovmskb128(reinterpret_cast<Chars>(vector)));
#else
    const Vector bits = vector >> 7;
    return packBits(firstWord(bits)) | std::uint64_t{packBits(secondWord(bits))} << 8;
#endif
}

// Bytes 0 to 7 of `a` and `b` in turn: a0 b0 a1 b1 and so on.
inline Vector interleave(Vector a, Vector b) {
    return __builtin_shufflevector(a, b, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
}

// Bytes 0, 2, 4 and 6 of the first word, then of the second, as a word.
inline std::uint64_t evenBytes(WordVector words) {
    using Pairs = std::uint16_t __attribute__((vector_size(16)));
    using Bytes = unsigned char __attribute__((vector_size(8)));
    constexpr unsigned SHIFT = std::endian::native == std::endian::little ? 0 : 8;
    const auto pairs = reinterpret_cast<Pairs>(bytesOf(words));
    const Bytes bytes = __builtin_convertvector(pairs >> SHIFT & 0xFF, Bytes);
    return loadWord(&bytes);
}

#else

// Two words; byte 0 is the lowest byte of the first.
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
using WordVector = VectorOf<std::uint64_t>;

// No sum of bytes may exceed 255: it would carry into the next byte.
inline Vector operator+(Vector a, Vector b) {
    return {a.first + b.first, a.second + b.second};
}

inline Vector operator>>(Vector vector, unsigned count) {
    const std::uint64_t kept = broadcast(static_cast<unsigned char>(0xFF >> count));
    return {vector.first >> count & kept, vector.second >> count & kept};
}

inline WordVector operator>>(WordVector words, unsigned count) {
    return {words.first >> count, words.second >> count};
}

inline WordVector operator<<(WordVector words, unsigned count) {
    return {words.first << count, words.second << count};
}

inline Vector loadVector(const void* from) {
    const auto* const p = static_cast<const unsigned char*>(from);
    return {loadWord(p), loadWord(p + WORD_BYTES)};
}

inline void storeVector(void* to, Vector vector) {
    auto* const p = static_cast<unsigned char*>(to);
    storeWord(p, vector.first);
    storeWord(p + WORD_BYTES, vector.second);
}

inline WordVector middleWords(WordVector a, WordVector b) {
    return {a.second, b.first};
}

inline Vector bytesOf(WordVector words) {
    return {words.first, words.second};
}

inline std::uint64_t firstWord(Vector vector) {
    return vector.first;
}

inline std::uint64_t secondWord(Vector vector) {
    return vector.second;
}

// The top bit of each byte of `comparison(word)` tells whether the comparison holds for that byte.
template <typename Comparison>
Vector compare(Vector vector, Comparison comparison) {
    const auto masks = [comparison](std::uint64_t word) {
        const std::uint64_t found = comparison(word) & broadcast(0x80);
        return (found << 1) - (found >> 7); // 0x100 - 1 in each such byte
    };
    return {masks(vector.first), masks(vector.second)};
}

inline Vector equal(Vector vector, char character) {
    const std::uint64_t characters = broadcast(static_cast<unsigned char>(character));
    return compare(vector, [characters](std::uint64_t word) {
        const std::uint64_t difference = word ^ characters;
        return ~(((difference & broadcast(0x7F)) + broadcast(0x7F)) | difference);
    });
}

// The top bit of each byte tells whether bound <= byte <= 127. The other bits are unspecified.
// `bound` is 0 to 128.
inline std::uint64_t atLeast(std::uint64_t word, int bound) {
    return ((word & broadcast(0x7F)) + broadcast(static_cast<unsigned char>(0x80 - bound))) & ~word;
}

inline Vector greater(Vector vector, signed char bound) {
    return compare(vector, [bound](std::uint64_t word) { return atLeast(word, bound + 1); });
}

inline Vector between(Vector vector, signed char first, signed char last) {
    return compare(vector, [first, last](std::uint64_t word) {
        return atLeast(word, first) & ~atLeast(word, last + 1);
    });
}

inline std::uint64_t topBits(Vector vector) {
    const auto bits = [](std::uint64_t word) {
        return std::uint64_t{packBits(word >> 7 & broadcast(1))};
    };
    return bits(vector.first) | bits(vector.second) << 8;
}

inline Vector interleave(Vector a, Vector b) {
    // Moves the bytes of 32 bits to the even bytes of a word.
    const auto spread = [](std::uint64_t half) {
        half = (half | half << 16) & 0x0000FFFF0000FFFF;
        return (half | half << 8) & 0x00FF00FF00FF00FF;
    };
    constexpr std::uint64_t HALF = 0xFFFFFFFF;
    return {spread(a.first & HALF) | spread(b.first & HALF) << 8,
            spread(a.first >> 32) | spread(b.first >> 32) << 8};
}

inline std::uint64_t evenBytes(WordVector words) {
    const auto pack = [](std::uint64_t word) {
        word &= 0x00FF00FF00FF00FF;
        word = (word | word >> 8) & 0x0000FFFF0000FFFF;
        return (word | word >> 16) & 0xFFFFFFFF;
    };
    return pack(words.first) | pack(words.second) << 32;
}

#endif

// The inverse of bytesOf().
inline WordVector wordsOf(Vector bytes) {
    return WordVector{firstWord(bytes), secondWord(bytes)};
}

inline WordVector loadWords(const void* from) {
    return wordsOf(loadVector(from));
}

inline void storeWords(void* to, WordVector words) {
    storeVector(to, bytesOf(words));
}

// A vector with `byte` in every byte.
inline Vector broadcastVector(unsigned char byte) {
    return bytesOf(WordVector{broadcast(byte), broadcast(byte)});
}

// `count` bytes (1 to 16) as the last bytes of a vector, with `filler` in the others.
inline Vector loadLastBytes(const void* from, unsigned count, unsigned char filler) {
    const auto* const p = static_cast<const unsigned char*>(from);
    if (count == VECTOR_BYTES)
        return loadVector(p);
    if (count <= 8)
        return bytesOf(WordVector{broadcast(filler), loadHighBytes(p, count, filler)});
    const unsigned high = count - 8;
    return bytesOf(WordVector{loadHighBytes(p, high, filler), loadWord(p + high)});
}

// Whether every bit is set.
inline bool allSet(Vector vector) {
    return (firstWord(vector) & secondWord(vector)) == ~std::uint64_t{0};
}

} // namespace KelRT::common
