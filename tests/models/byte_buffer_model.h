// SPDX-License-Identifier: MIT
//
// Models the byte buffer in slow and obvious code, which handles one byte or one bit at a time. The
// model includes the whole block with its reserves.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace model {

using Bytes = std::vector<unsigned char>;

/// Returns the value of a hexadecimal digit, or \a other for another character.
inline unsigned digitOf(unsigned char c, unsigned other) {
    const std::size_t at = std::string("0123456789ABCDEFabcdef").find(static_cast<char>(c));
    return at == std::string::npos ? other : static_cast<unsigned>(at < 16 ? at : at - 6);
}

struct ByteBuffer {
    Bytes block;
    std::size_t start = 0;
    std::size_t size = 0;
    std::uint64_t pending = 0;

    ByteBuffer() = default;
    ByteBuffer(const Bytes& bytes, std::size_t padLow, std::size_t padHigh)
        : block(padLow, 0), start(padLow), size(bytes.size()) {
        block.insert(block.end(), bytes.begin(), bytes.end());
        block.insert(block.end(), padHigh, 0);
    }

    [[nodiscard]] std::size_t padHigh() const { return block.size() - start - size; }
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
        const std::uint64_t bits = std::uint64_t{8} * size;
        for (std::uint64_t k = 0; pending != 0 && k < bits; ++k)
            setBit(k, k + pending < bits && bit(k + pending));
        if (pending != 0 && padHigh() > 0)
            block.at(start + size) = 0;
        pending = 0;
    }
    void insertBytes(std::size_t at, std::size_t count) {
        if (at > size / 2) {
            if (padHigh() < count)
                block.insert(block.end(), count, 0);
            for (std::size_t i = size; i-- > at && at != 0;)
                block[start + i + count] = block[start + i];
        } else {
            if (start < count) {
                block.insert(block.begin(), count, 0);
                start += count;
            }
            for (std::size_t i = 0; i < at && at < size; ++i)
                block[start + i - count] = block[start + i];
            start -= count;
        }
        size += count;
    }
    /// Moves the start forward, or back if \a count is negative.
    void moveStart(std::int64_t count) {
        start += static_cast<std::size_t>(count);
        size -= static_cast<std::size_t>(count);
    }
    void shiftBitsDown(std::uint64_t count) {
        pending += count;
        moveStart(static_cast<std::int64_t>(pending / 8));
        pending %= 8;
    }

    [[nodiscard]] bool holds(std::uint64_t position, std::uint64_t count) const {
        const std::uint64_t end = position + count;
        const bool wraps = end < position || end + 7 < end;
        return !wraps && (end + 7) / 8 <= size;
    }
    [[nodiscard]] std::uint64_t get(std::uint64_t position, std::uint64_t count) const {
        std::uint64_t result = 0;
        for (std::uint64_t k = count; k-- > 0;)
            result = result << 1 | (bit(position + k) ? 1U : 0U);
        return result;
    }
    void set(std::uint64_t position, std::uint64_t count, std::uint64_t value) {
        for (std::uint64_t i = 0; i < count; ++i, value >>= 1)
            setBit(position + i, (value & 1) != 0);
    }
    void mirrorEachByte() {
        const ByteBuffer before = *this;
        for (std::uint64_t k = 0; k < std::uint64_t{8} * size; ++k)
            setBit(k, before.bit(k / 8 * 8 + 7 - k % 8));
    }
    void reverse(std::size_t from, std::size_t count) {
        const auto first = block.begin() + static_cast<std::ptrdiff_t>(start + from);
        std::reverse(first, first + static_cast<std::ptrdiff_t>(count));
    }

    [[nodiscard]] Bytes hexText(std::uint64_t fromByte) const {
        Bytes text;
        for (std::uint64_t k = std::uint64_t{2} * size; k-- > 2 * fromByte;)
            text.push_back(static_cast<unsigned char>("0123456789ABCDEF"[get(4 * k, 4)]));
        text.push_back(0);
        return text;
    }
    [[nodiscard]] Bytes hexToBin(std::uint64_t first, std::uint64_t last) const {
        Bytes result;
        for (std::uint64_t i = last + 1; i-- > first;) {
            const unsigned char c = block.at(start + static_cast<std::size_t>(i));
            const unsigned value = digitOf(c, c - unsigned{'0'});
            if ((last - i) % 2 == 0)
                result.push_back(static_cast<unsigned char>(value));
            else
                result.back() = static_cast<unsigned char>(result.back() + 16 * value);
        }
        return result;
    }
};

/// Cuts hexadecimal text to its lowest \a bitCount bits, if need be within a digit: "FA" cut to 6
/// bits is "3A".
inline Bytes cutHexText(Bytes text, std::uint64_t bitCount) {
    const std::uint64_t digits = (bitCount + 3) / 4;
    if (text.size() - 1 < digits)
        return text;
    text.erase(text.begin(), text.end() - static_cast<std::ptrdiff_t>(digits + 1));
    if (bitCount % 4 != 0)
        text[0] =
            static_cast<unsigned char>("01234567"[digitOf(text[0], 0) % (1U << bitCount % 4)]);
    return text;
}

/// Converts bit-mirrored text to bytes, bit by bit.
inline Bytes mirroredTextToBin(const std::string& text) {
    ByteBuffer result(Bytes((text.size() + 1) / 2, 0), 0, 0);
    unsigned value = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        value = digitOf(static_cast<unsigned char>(text[i]), value);
        for (unsigned k = 0; k < 4; ++k)
            result.setBit(4 * i + k, (value >> (3 - k) & 1) != 0);
    }
    return result.block;
}

} // namespace model
