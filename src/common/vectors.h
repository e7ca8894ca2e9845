// SPDX-License-Identifier: MIT
//
// 16 bytes at a time with the compiler's own vector types: one instruction a step where the
// processor has such vectors (every x86-64 and 64-bit Arm), plain code elsewhere. Elements are
// counted in the order of memory on every host, so nothing here depends on the byte order.
#pragma once

#include "common/digits.h"
#include "common/words.h"

#include <cstdint>
#include <cstring>

namespace KelRT::common {

constexpr std::uint64_t VECTOR_BYTES = 16;

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

/// The two words in \a p[0..15].
inline WordVector loadWords(const unsigned char* p) {
    WordVector words;
    std::memcpy(&words, p, sizeof words);
    if constexpr (std::endian::native == std::endian::big)
        return WordVector{swapBytes(words[0]), swapBytes(words[1])};
    return words;
}

inline void storeWords(unsigned char* p, WordVector words) {
    if constexpr (std::endian::native == std::endian::big)
        words = WordVector{swapBytes(words[0]), swapBytes(words[1])};
    std::memcpy(p, &words, sizeof words);
}

/// \a word's eight bytes, the most significant first, and eight bytes 0.
inline Vector mostSignificantFirst(std::uint64_t word) {
    return reinterpret_cast<Vector>(WordVector{littleEndian(swapBytes(word)), 0});
}

/// True when every bit of \a vector is set.
inline bool allSet(Vector vector) {
    const auto words = reinterpret_cast<WordVector>(vector);
    return (words[0] & words[1]) == ~std::uint64_t{0};
}

/// Every bit of the bytes of \a vector that are \a character.
inline Vector equal(Vector vector, char character) {
    return reinterpret_cast<Vector>(vector == static_cast<unsigned char>(character));
}

/// Bit i of the result is bit 7 of byte i of \a vector: of a comparison, whether it holds there.
inline std::uint64_t topBits(Vector vector) {
#ifdef __SSE2__
    using Chars = char __attribute__((vector_size(16)));
    return static_cast<unsigned>(__builtin_ia32_pmovmskb128(reinterpret_cast<Chars>(vector)));
#else
    const auto words = reinterpret_cast<WordVector>(vector >> 7);
    return packBits(littleEndian(words[0])) | std::uint64_t{packBits(littleEndian(words[1]))} << 8;
#endif
}

using SignedVector = signed char __attribute__((vector_size(16)));

/// \a vector < \a bound, every byte of both signed: the one comparison of bytes that x86 has.
inline Vector lessSigned(Vector vector, signed char bound) {
    return reinterpret_cast<Vector>(reinterpret_cast<SignedVector>(vector) < bound);
}

/// \a vector > \a bound, likewise.
inline Vector moreSigned(Vector vector, signed char bound) {
    return reinterpret_cast<Vector>(reinterpret_cast<SignedVector>(vector) > bound);
}

/// Eight bytes as sixteen digits, the high nibble of each before its low one.
/// \param lettersFrom 'A' for upper case, 'a' for lower case
inline Vector hexCharacters(Vector bytes, char lettersFrom) {
    const Vector high = bytes >> 4;
    const Vector low = bytes & 15;
    const Vector values =
        __builtin_shufflevector(high, low, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
    const auto gap = static_cast<unsigned char>(lettersFrom - '0' - 10);
    return values + '0' + (moreSigned(values, 9) & gap);
}

/// Sixteen characters as digit values. Bytes of \a valid that belong to no hexadecimal digit are
/// cleared, the others kept.
inline Vector hexDigitValues(Vector characters, Vector& valid) {
    // Counting from -128, the digits are the 10 lowest values, and the letters the 6 lowest.
    const Vector isDigit =
        lessSigned(characters + static_cast<unsigned char>(0x80 - '0'), -128 + 10);
    const Vector isLetter =
        lessSigned((characters | 0x20) + static_cast<unsigned char>(0x80 - 'a'), -128 + 6);
    valid &= isDigit | isLetter;
    return (characters & 15) + (isLetter & 9);
}

/// Sixteen digit values, the most significant first, as a number.
inline std::uint64_t numberOfDigits(Vector values) {
    using Pairs = std::uint16_t __attribute__((vector_size(16)));
    using Bytes = unsigned char __attribute__((vector_size(8)));
    // In each pair the digit that stands first in memory is the high one.
    const auto pairs = reinterpret_cast<Pairs>(values);
    const Pairs joined =
        std::endian::native == std::endian::little ? pairs << 4 | pairs >> 8 : pairs >> 4 | pairs;
    const Bytes bytes = __builtin_convertvector(joined & 0xFF, Bytes);
    std::uint64_t word;
    std::memcpy(&word, &bytes, sizeof word);
    return swapBytes(littleEndian(word));
}

} // namespace KelRT::common
