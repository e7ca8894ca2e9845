// SPDX-License-Identifier: MIT
//
// Models the byte buffer in slow and obvious code, which handles one byte or one bit at a time. The
// model includes the whole block with its reserves. Its operations have the names of the buffer's,
// so that a test can apply one function to both.
#pragma once

#include "KelRT/Kel_Number.h"

#include "digits.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace model {

using Bytes = std::vector<unsigned char>;

struct ByteBuffer {
    Bytes block;
    std::size_t start = 0;
    std::size_t size = 0;
    std::size_t pending = 0;

    ByteBuffer() = default;
    ByteBuffer(const Bytes& bytes, std::size_t padLow, std::size_t padHigh)
        : block(padLow + bytes.size() + padHigh), start(padLow), size(bytes.size()) {
        std::copy(bytes.begin(), bytes.end(), used());
    }
    void init(std::size_t count, std::size_t padLow, std::size_t padHigh) {
        *this = ByteBuffer(Bytes(count), padLow, padHigh);
    }
    void clear() { std::fill(block.begin(), block.end(), Bytes::value_type{0}); }

    [[nodiscard]] std::size_t padHigh() const { return block.size() - start - size; }
    [[nodiscard]] std::uint64_t bitCount() const { return std::uint64_t{8} * size; }
    [[nodiscard]] unsigned char* used() { return block.data() + start; }
    [[nodiscard]] bool bit(std::uint64_t k) const {
        return (block.at(start + static_cast<std::size_t>(k / 8)) >> (k % 8) & 1) != 0;
    }
    void setBit(std::uint64_t k, bool value) {
        unsigned char& byte = block.at(start + static_cast<std::size_t>(k / 8));
        const auto mask = static_cast<unsigned char>(1U << (k % 8));
        byte = static_cast<unsigned char>(value ? byte | mask : byte & ~mask);
    }

    /// Realigns. If a shift was pending, this also sets the first byte of the high reserve to 0.
    void access() {
        const std::uint64_t bits = bitCount();
        for (std::uint64_t k = 0; pending != 0 && k < bits; ++k)
            setBit(k, k + pending < bits && bit(k + pending));
        if (pending != 0 && padHigh() > 0)
            block.at(start + size) = 0;
        pending = 0;
    }
    std::int32_t insertBytes(std::size_t at, std::size_t count) {
        access();
        if (at > size / 2) {
            block.resize(block.size() + (padHigh() < count ? count : 0));
            std::copy_backward(used() + std::min(at, size), used() + size, used() + size + count);
        } else {
            const std::size_t growth = start < count ? count : 0;
            block.insert(block.begin(), growth, 0);
            start += growth - count;
            std::copy(used() + count, used() + count + at, used());
        }
        size += count;
        return 0;
    }
    void removeBytesAtEnd(std::size_t count) {
        access();
        size -= count;
    }
    void moveStartPositionForward(std::int32_t count) {
        access();
        start += static_cast<std::size_t>(count);
        size -= static_cast<std::size_t>(count);
    }
    void shiftBitsDown(std::int32_t count) {
        pending += static_cast<std::size_t>(count);
        start += pending / 8;
        size -= pending / 8;
        pending %= 8;
    }

    [[nodiscard]] bool holds(std::uint64_t position, std::uint64_t count) const {
        return count <= bitCount() && position <= bitCount() - count;
    }
    /// Realigns. Throws, as \a function does, if the buffer does not hold the field.
    void accessField(std::uint64_t position, std::uint64_t count, const char* function) {
        access();
        if (!holds(position, count))
            throw std::logic_error(std::string("Internal Error - Kel_ByteBuffer::") + function +
                                   " bad params.");
    }
    [[nodiscard]] std::uint64_t getBitsLL(std::uint64_t position, std::uint64_t count) {
        accessField(position, count, "getBits");
        std::uint64_t result = 0;
        for (std::uint64_t k = count; k-- > 0;)
            result = result << 1 | (bit(position + k) ? 1U : 0U);
        return result;
    }
    [[nodiscard]] std::uint32_t getBits(std::uint64_t position, std::uint64_t count) {
        return static_cast<std::uint32_t>(getBitsLL(position, count));
    }
    void setBitsLL(std::uint64_t position, std::uint64_t count, std::uint64_t value) {
        accessField(position, count, "setBits(ll)");
        for (std::uint64_t i = 0; i < count; ++i, value >>= 1)
            setBit(position + i, (value & 1) != 0);
    }
    void setBits(std::uint64_t position, std::uint64_t count, std::uint32_t value) {
        setBitsLL(position, count, value);
    }
    void swapBitOrderWithinEachByte() {
        access();
        const ByteBuffer before = *this;
        for (std::uint64_t k = 0; k < bitCount(); ++k)
            setBit(k, before.bit(k / 8 * 8 + 7 - k % 8));
    }
    void swapByteOrder(std::size_t from, std::size_t count) {
        access();
        std::reverse(used() + from, used() + from + count);
    }

    /// Returns at most \a limit bits as digits, beginning at byte \a from, and a NUL.
    [[nodiscard]] Bytes hexText(std::uint64_t from, std::uint64_t limit = UINT64_MAX) {
        access();
        Bytes text(1, 0);
        for (std::uint64_t at = 8 * from; at < bitCount() && limit > 0; at += 4) {
            const std::uint64_t bits = std::min<std::uint64_t>(4, limit);
            text.push_back(static_cast<unsigned char>("0123456789ABCDEF"[getBitsLL(at, bits)]));
            limit -= bits;
        }
        return {text.rbegin(), text.rend()};
    }
    [[nodiscard]] Bytes bytesOfHex(std::size_t first, std::size_t last) {
        access();
        Bytes result;
        for (std::size_t i = last + 1; i-- > first;) {
            const unsigned char c = used()[i];
            const unsigned value = digitOf(static_cast<char>(c), c - unsigned{'0'});
            if ((last - i) % 2 == 0)
                result.push_back(static_cast<unsigned char>(value));
            else
                result.back() = static_cast<unsigned char>(result.back() + 16 * value);
        }
        return result;
    }
};

/// Copies a field to a number that has its width.
inline void bits2Number(ByteBuffer& buffer, std::uint64_t position, KelRT::Kel_Number& number) {
    const std::size_t width = number.toString('b').size();
    buffer.accessField(position, width, "getBits");
    std::string bits;
    for (std::uint64_t k = width; k-- > 0;)
        bits += buffer.bit(position + k) ? '1' : '0';
    number.set('b', bits);
}

/// Copies a number to a field that has its width.
inline void number2Bits(const KelRT::Kel_Number& number, ByteBuffer& buffer,
                        std::uint64_t position) {
    const std::string bits = number.toString('b');
    buffer.accessField(position, bits.size(), "setBits(ll)");
    position += bits.size();
    for (const char bit : bits)
        buffer.setBit(--position, bit == '1');
}

/// Converts bit-mirrored text. A character that is no digit repeats the previous digit.
inline Bytes bytesOfMirroredHex(const std::string& text) {
    ByteBuffer result(Bytes((text.size() + 1) / 2), 0, 0);
    unsigned digit = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        digit = digitOf(text[i], digit);
        for (unsigned k = 0; k < 4; ++k)
            result.setBit(4 * i + k, (digit >> (3 - k) & 1) != 0);
    }
    return result.block;
}

} // namespace model
