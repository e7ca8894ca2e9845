// SPDX-License-Identifier: MIT
//
// 16 bytes at a time. The first back end uses GNU vector types: one instruction per step on every
// x86-64 and 64-bit Arm. The second uses two 64-bit words and nothing but ISO C++. Elements count
// in memory order on every host, so the results do not depend on its byte order.
//
// A comparison yields 0xFF in each byte where it holds, 0 elsewhere. Both vector types have the
// operators & and |; bytes can be added, words can be shifted.
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

// The little-endian words in p[0..7] and p[8..15].
inline WordVector loadWords(const unsigned char* p) {
    WordVector words;
    std::memcpy(&words, p, sizeof words);
    return WordVector{littleEndian(words[0]), littleEndian(words[1])};
}

inline void storeWords(unsigned char* p, WordVector words) {
    words = WordVector{littleEndian(words[0]), littleEndian(words[1])};
    std::memcpy(p, &words, sizeof words);
}

// The second word of `a`, then the first of `b`.
inline WordVector middleWords(WordVector a, WordVector b) {
    return __builtin_shufflevector(a, b, 1, 2);
}

// A vector of bytes 0 to 7 and bytes 8 to 15, each the little-endian bytes of a word.
inline Vector makeVector(std::uint64_t first, std::uint64_t second) {
    return reinterpret_cast<Vector>(WordVector{littleEndian(first), littleEndian(second)});
}

// A vector with `byte` in every byte.
inline Vector broadcastVector(unsigned char byte) {
    return Vector{} + byte;
}

// Bytes 0 to 7 as a word, byte 0 the lowest.
inline std::uint64_t firstWord(Vector vector) {
    return littleEndian(reinterpret_cast<WordVector>(vector)[0]);
}

// Bytes 8 to 15 as a word.
inline std::uint64_t secondWord(Vector vector) {
    return littleEndian(reinterpret_cast<WordVector>(vector)[1]);
}

inline Vector equal(Vector vector, char character) {
    return reinterpret_cast<Vector>(vector == static_cast<unsigned char>(character));
}

using SignedVector = signed char __attribute__((vector_size(16)));

// vector > bound for signed bytes, the only ones that x86 compares. `bound` is at least 0.
inline Vector above(Vector vector, signed char bound) {
    return reinterpret_cast<Vector>(reinterpret_cast<SignedVector>(vector) > bound);
}

// first <= vector <= last, for bounds below 128.
inline Vector between(Vector vector, signed char first, signed char last) {
    // Counted from -128, the bytes in the range are the lowest.
    const Vector moved = vector + static_cast<unsigned char>(0x80 - first);
    const auto end = static_cast<signed char>(-128 + (last - first + 1));
    return reinterpret_cast<Vector>(reinterpret_cast<SignedVector>(moved) < end);
}

// Bit i of the result is bit 7 of byte i. For a comparison, it tells whether byte i passed.
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

// The words in bytes 0 to 7 and 8 to 15.
inline WordVector wordsOf(Vector vector) {
    return WordVector{firstWord(vector), secondWord(vector)};
}

// Bytes 0, 2, 4 and 6 of the first word, then of the second, as a word.
inline std::uint64_t evenBytes(WordVector words) {
    using Pairs = std::uint16_t __attribute__((vector_size(16)));
    using Bytes = unsigned char __attribute__((vector_size(8)));
    constexpr unsigned SHIFT = std::endian::native == std::endian::little ? 0 : 8;
    const auto pairs = reinterpret_cast<Pairs>(makeVector(words[0], words[1]));
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

// No sum of two bytes may exceed 255: it would carry into the next byte.
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

inline WordVector loadWords(const unsigned char* p) {
    return {loadWord(p), loadWord(p + WORD_BYTES)};
}

inline void storeWords(unsigned char* p, WordVector words) {
    storeWord(p, words.first);
    storeWord(p + WORD_BYTES, words.second);
}

inline WordVector middleWords(WordVector a, WordVector b) {
    return {a.second, b.first};
}

inline Vector makeVector(std::uint64_t first, std::uint64_t second) {
    return {first, second};
}

inline Vector broadcastVector(unsigned char byte) {
    return {broadcast(byte), broadcast(byte)};
}

inline std::uint64_t firstWord(Vector vector) {
    return vector.first;
}

inline std::uint64_t secondWord(Vector vector) {
    return vector.second;
}

// Applies a comparison of eight bytes, which sets their top bits alone, to both words.
template <typename Comparison>
Vector compare(Vector vector, Comparison comparison) {
    const auto masks = [comparison](std::uint64_t word) {
        const std::uint64_t found = comparison(word) & broadcast(0x80);
        return (found << 1) - (found >> 7); // 0x100 - 1 in each byte found
    };
    return {masks(vector.first), masks(vector.second)};
}

inline Vector equal(Vector vector, char character) {
    const std::uint64_t characters = broadcast(static_cast<unsigned char>(character));
    return compare(vector, [characters](std::uint64_t word) {
        const std::uint64_t differing = word ^ characters;
        return ~(((differing & broadcast(0x7F)) + broadcast(0x7F)) | differing);
    });
}

// Sets the top bit of each byte from `bound` (0 to 128) to 127.
inline std::uint64_t atLeast(std::uint64_t word, int bound) {
    return ((word & broadcast(0x7F)) + broadcast(static_cast<unsigned char>(0x80 - bound))) & ~word;
}

inline Vector above(Vector vector, signed char bound) {
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

inline WordVector wordsOf(Vector vector) {
    return {vector.first, vector.second};
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

// Whether every bit is set.
inline bool allSet(Vector vector) {
    return (firstWord(vector) & secondWord(vector)) == ~std::uint64_t{0};
}

} // namespace KelRT::common
