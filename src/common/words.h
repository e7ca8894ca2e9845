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

constexpr std::uint64_t WORD_BITS = 64;
constexpr std::uint64_t WORD_BYTES = 8;

/// The bytes of \a word in the opposite order. Compilers make one instruction of it.
constexpr std::uint64_t swapBytes(std::uint64_t word) {
    word = (word >> 8 & 0x00FF00FF00FF00FF) | (word & 0x00FF00FF00FF00FF) << 8;
    word = (word >> 16 & 0x0000FFFF0000FFFF) | (word & 0x0000FFFF0000FFFF) << 16;
    return word >> 32 | word << 32;
}

constexpr std::uint32_t swapBytes(std::uint32_t half) {
    half = (half >> 8 & 0x00FF00FF) | (half & 0x00FF00FF) << 8;
    return half >> 16 | half << 16;
}

/// Host order to little-endian, and back.
template <typename Unsigned>
constexpr Unsigned littleEndian(Unsigned word) {
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

/// The 32-bit half word in \a p[0..3].
inline std::uint64_t loadHalf(const unsigned char* p) {
    std::uint32_t half;
    std::memcpy(&half, p, sizeof half);
    return littleEndian(half);
}

/// Puts \a half into \a p[0..3].
inline void storeHalf(unsigned char* p, std::uint32_t half) {
    half = littleEndian(half);
    std::memcpy(p, &half, sizeof half);
}

/// The \a count bytes (0 to 8) at \a p as a word; the bytes that are missing read as 0. Two or
/// three overlapping loads instead of a loop or a call.
inline std::uint64_t loadBytes(const unsigned char* p, std::uint64_t count) {
    if (count >= WORD_BYTES)
        return loadWord(p);
    if (count >= 4)
        return loadHalf(p) | loadHalf(p + count - 4) << (8 * (count - 4));
    if (count == 0)
        return 0;
    return p[0] | std::uint64_t{p[count / 2]} << (8 * (count / 2)) |
           std::uint64_t{p[count - 1]} << (8 * (count - 1));
}

/// Puts the low \a count bytes (0 to 8) of \a word into \a p.
inline void storeBytes(unsigned char* p, std::uint64_t word, std::uint64_t count) {
    if (count >= WORD_BYTES) {
        storeWord(p, word);
    } else if (count >= 4) {
        storeHalf(p, static_cast<std::uint32_t>(word));
        storeHalf(p + count - 4, static_cast<std::uint32_t>(word >> (8 * (count - 4))));
    } else if (count != 0) {
        p[0] = static_cast<unsigned char>(word);
        p[count / 2] = static_cast<unsigned char>(word >> (8 * (count / 2)));
        p[count - 1] = static_cast<unsigned char>(word >> (8 * (count - 1)));
    }
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
/// of \a data. No bit outside the field changes, and no byte at or behind \a data[size] is touched;
/// the field must end within them.
inline void writeField(unsigned char* data, std::uint64_t size, std::uint64_t position,
                       std::uint64_t count, std::uint64_t value) {
    unsigned char* const p = data + position / 8;
    const std::uint64_t available = size - position / 8;
    const unsigned shift = position % 8;
    const std::uint64_t mask = lowBits(count);
    value &= mask;
    if (available < WORD_BYTES) {
        storeBytes(p, (loadBytes(p, available) & ~(mask << shift)) | value << shift, available);
        return;
    }
    storeWord(p, (loadWord(p) & ~(mask << shift)) | value << shift);
    if (shift + count > WORD_BITS) { // the field reaches into a ninth byte; shift is not 0
        const std::uint64_t kept = p[WORD_BYTES] & ~(mask >> (WORD_BITS - shift));
        p[WORD_BYTES] = static_cast<unsigned char>(kept | value >> (WORD_BITS - shift));
    }
}

} // namespace KelRT::common
