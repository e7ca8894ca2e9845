// SPDX-License-Identifier: MIT
//
// 16 bytes at a time. The first back end uses GNU vector types: one instruction per step on every
// x86-64 and 64-bit Arm. The second uses two 64-bit words and nothing but ISO C++. Elements count
// in memory order on every host, so the results do not depend on its byte order.
//
// A comparison yields 0xFF in each byte where it holds, 0 elsewhere. Both vector types have the
// operators & and |; bytes can be added, words can be shifted.
#pragma once

#include "common/digits.h"
#include "common/words.h"

#include <cstdint>
#include <cstring>

namespace KelRT::common {

constexpr std::uint64_t VECTOR_BYTES = 16;

#if (defined(__GNUC__) || defined(__clang__)) && !defined(KELRT_NO_EXTENSIONS)

using Vector = unsigned char __attribute__((vector_size(16)));
using WordVector = std::uint64_t __attribute__((vector_size(16)));

inline Vector loadVector(const unsigned char* p) {
    Vector vector;
    std::memcpy(&vector, p, sizeof vector);
    return vector;
}

inline void storeVector(unsigned char* p, Vector vector) {
    std::memcpy(p, &vector, sizeof vector);
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

// `byte` in every byte.
inline Vector broadcast(unsigned char byte) {
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

// vector > bound, for bytes below 128. Signed, since x86 compares no unsigned bytes.
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

// The sixteen nibbles of `word`, one per byte, the most significant first.
inline Vector nibblesOf(std::uint64_t word) {
    const auto bytes = reinterpret_cast<Vector>(WordVector{littleEndian(swapBytes(word)), 0});
    return __builtin_shufflevector(bytes >> 4, bytes & 15, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21,
                                   6, 22, 7, 23);
}

// The opposite of nibblesOf.
inline std::uint64_t wordOfNibbles(Vector nibbles) {
    using Pairs = std::uint16_t __attribute__((vector_size(16)));
    using Bytes = unsigned char __attribute__((vector_size(8)));
    // In each pair the nibble that comes first in memory is the high one.
    const auto pairs = reinterpret_cast<Pairs>(nibbles);
    const Pairs joined =
        std::endian::native == std::endian::little ? pairs << 4 | pairs >> 8 : pairs >> 4 | pairs;
    const Bytes bytes = __builtin_convertvector(joined & 0xFF, Bytes);
    std::uint64_t word;
    std::memcpy(&word, &bytes, sizeof word);
    return swapBytes(littleEndian(word));
}

#else

// Two words; byte 0 is the lowest byte of the first.
template <class Element>
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

inline WordVector operator>>(WordVector words, unsigned count) {
    return {words.first >> count, words.second >> count};
}

inline WordVector operator<<(WordVector words, unsigned count) {
    return {words.first << count, words.second << count};
}

inline Vector loadVector(const unsigned char* p) {
    return {loadWord(p), loadWord(p + WORD_BYTES)};
}

inline void storeVector(unsigned char* p, Vector vector) {
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

inline Vector broadcast(unsigned char byte) {
    return {inEachByte(byte), inEachByte(byte)};
}

inline std::uint64_t firstWord(Vector vector) {
    return vector.first;
}

inline std::uint64_t secondWord(Vector vector) {
    return vector.second;
}

// Applies a comparison of eight bytes, which sets their top bits alone, to both words.
template <class Comparison>
Vector compare(Vector vector, Comparison comparison) {
    const auto masks = [comparison](std::uint64_t word) {
        const std::uint64_t found = comparison(word) & inEachByte(0x80);
        return (found << 1) - (found >> 7); // 0x100 - 1 in each byte found
    };
    return {masks(vector.first), masks(vector.second)};
}

inline Vector equal(Vector vector, char character) {
    const std::uint64_t characters = inEachByte(static_cast<unsigned char>(character));
    return compare(vector, [characters](std::uint64_t word) {
        const std::uint64_t differing = word ^ characters;
        return ~(((differing & inEachByte(0x7F)) + inEachByte(0x7F)) | differing);
    });
}

// The top bits of the bytes of `word`, all below 128, that are at least `bound`.
inline std::uint64_t atLeast(std::uint64_t word, int bound) {
    return word + inEachByte(static_cast<std::uint8_t>(0x80 - bound));
}

inline Vector above(Vector vector, signed char bound) {
    return compare(vector, [bound](std::uint64_t word) { return atLeast(word, bound + 1); });
}

inline Vector between(Vector vector, signed char first, signed char last) {
    return compare(vector, [first, last](std::uint64_t word) {
        const std::uint64_t low = word & inEachByte(0x7F);
        return atLeast(low, first) & ~atLeast(low, last + 1) & ~word;
    });
}

inline std::uint64_t topBits(Vector vector) {
    const auto bits = [](std::uint64_t word) {
        return std::uint64_t{packBits(word >> 7 & inEachByte(1))};
    };
    return bits(vector.first) | bits(vector.second) << 8;
}

inline Vector nibblesOf(std::uint64_t word) {
    return {swapBytes(spreadNibbles(static_cast<std::uint32_t>(word >> 32))),
            swapBytes(spreadNibbles(static_cast<std::uint32_t>(word)))};
}

inline std::uint64_t wordOfNibbles(Vector nibbles) {
    return std::uint64_t{packNibbles(swapBytes(nibbles.first))} << 32 |
           packNibbles(swapBytes(nibbles.second));
}

#endif

// Whether every bit is set.
inline bool allSet(Vector vector) {
    return (firstWord(vector) & secondWord(vector)) == ~std::uint64_t{0};
}

} // namespace KelRT::common
