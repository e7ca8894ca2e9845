// SPDX-License-Identifier: MIT
//
// 64-bit words out of byte runs: the one place for unaligned loads and stores, byte order and bit
// mirroring. A "word" is little-endian whatever the host is: bit n of a word loaded from p is bit
// n mod 8 of p[n / 8], the numbering that the whole library uses.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace KelRT::common {

constexpr unsigned WORD_BITS = 64;
constexpr unsigned WORD_BYTES = 8;

/// The bytes of \a word in the opposite order.
constexpr std::uint64_t swapBytes(std::uint64_t word) {
    return __builtin_bswap64(word);
}

/// Host order to little-endian, and back.
constexpr std::uint64_t littleEndian(std::uint64_t word) {
    if constexpr (std::endian::native == std::endian::big)
        return swapBytes(word);
    else
        return word;
}

/// The word in \a p[0..7].
inline std::uint64_t loadWord(const unsigned char* p) {
    std::uint64_t word;
    std::memcpy(&word, p, sizeof word);
    return littleEndian(word);
}

/// Puts \a word into \a p[0..7].
inline void storeWord(unsigned char* p, std::uint64_t word) {
    word = littleEndian(word);
    std::memcpy(p, &word, sizeof word);
}

/// The \a count bytes (0 to 8) at \a p as a word; the bytes that are missing read as 0.
inline std::uint64_t loadBytes(const unsigned char* p, std::uint64_t count) {
    std::uint64_t word = 0;
    std::memcpy(&word, p, count);
    return littleEndian(word);
}

/// Puts the low \a count bytes (0 to 8) of \a word into \a p.
inline void storeBytes(unsigned char* p, std::uint64_t word, std::uint64_t count) {
    word = littleEndian(word);
    std::memcpy(p, &word, count);
}

/// A word whose low \a count bits (0 to 64) are set.
constexpr std::uint64_t lowBits(std::uint64_t count) {
    return count >= WORD_BITS ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
}

/// Every byte of \a word mirrored: bit 0 becomes bit 7, bit 1 bit 6, and so on.
constexpr std::uint64_t mirrorEachByte(std::uint64_t word) {
    word = (word >> 4 & 0x0F0F0F0F0F0F0F0F) | (word & 0x0F0F0F0F0F0F0F0F) << 4;
    word = (word >> 2 & 0x3333333333333333) | (word & 0x3333333333333333) << 2;
    return (word >> 1 & 0x5555555555555555) | (word & 0x5555555555555555) << 1;
}

/// All 64 bits of \a word in the opposite order.
constexpr std::uint64_t mirrorWord(std::uint64_t word) {
    return swapBytes(mirrorEachByte(word));
}

/// The field of \a count bits (1 to 64) that starts at bit \a position of \a data. No byte at or
/// behind \a data[size] is read; the field must end within them.
inline std::uint64_t readField(const unsigned char* data, std::uint64_t size,
                               std::uint64_t position, std::uint64_t count) {
    const unsigned char* const p = data + position / 8;
    const std::uint64_t available = size - position / 8;
    const unsigned shift = position % 8;
    if (available <= WORD_BYTES)
        return loadBytes(p, available) >> shift & lowBits(count);
    // The field may reach into a ninth byte; shifting in two steps keeps a shift of 0 defined.
    const std::uint64_t ninth = std::uint64_t{p[WORD_BYTES]} << 1 << (63 - shift);
    return (loadWord(p) >> shift | ninth) & lowBits(count);
}

/// Writes the low \a count bits (1 to 64) of \a value to the field that starts at bit \a position
/// of \a data. Only bytes that the field reaches into are written.
inline void writeField(unsigned char* data, std::uint64_t position, std::uint64_t count,
                       std::uint64_t value) {
    unsigned char* const p = data + position / 8;
    const unsigned shift = position % 8;
    const std::uint64_t mask = lowBits(count);
    const std::uint64_t reached = (shift + count + 7) / 8; // bytes, 1 to 9
    value &= mask;
    const std::uint64_t inFirst = reached < WORD_BYTES ? reached : WORD_BYTES;
    const std::uint64_t kept = loadBytes(p, inFirst) & ~(mask << shift);
    storeBytes(p, kept | value << shift, inFirst);
    if (reached > WORD_BYTES) { // only with a shift of 1 to 7
        const auto highMask = static_cast<unsigned char>(mask >> (WORD_BITS - shift));
        const auto high = static_cast<unsigned char>(value >> (WORD_BITS - shift));
        p[WORD_BYTES] = static_cast<unsigned char>((p[WORD_BYTES] & ~highMask) | high);
    }
}

} // namespace KelRT::common
