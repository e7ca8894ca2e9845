// SPDX-License-Identifier: MIT
//
// A slow, obvious byte buffer: every rule one byte or one bit at a time. It keeps the whole block,
// reserves included, and asserts what a caller owes.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <string>
#include <vector>

namespace model {

using Bytes = std::vector<unsigned char>;

struct ByteBuffer {
    Bytes block;
    std::uint64_t start = 0;
    std::uint64_t size = 0;
    int pending = 0;

    ByteBuffer() = default;
    ByteBuffer(const Bytes& bytes, std::uint64_t padLow, std::uint64_t padHigh)
        : block(padLow, 0), start(padLow), size(bytes.size()) {
        block.insert(block.end(), bytes.begin(), bytes.end());
        block.insert(block.end(), padHigh, 0);
    }

    [[nodiscard]] std::uint64_t padHigh() const { return block.size() - start - size; }
    [[nodiscard]] Bytes bytes() const {
        const auto first = block.begin() + static_cast<std::ptrdiff_t>(start);
        return {first, first + static_cast<std::ptrdiff_t>(size)};
    }

    [[nodiscard]] bool bit(std::uint64_t k) const {
        return (block.at(start + k / 8) >> (k % 8) & 1) != 0;
    }
    void setBit(std::uint64_t k, bool value) {
        unsigned char& byte = block.at(start + k / 8);
        const auto mask = static_cast<unsigned char>(1U << (k % 8));
        byte = static_cast<unsigned char>(value ? byte | mask : byte & ~mask);
    }

    void align() {
        for (; pending > 0; --pending)
            for (std::uint64_t k = 0; k < 8 * size; ++k)
                setBit(k, k + 1 < 8 * size && bit(k + 1));
    }
    /// An access: realigns, and a shift that was pending clears the first byte of the high reserve.
    void access() {
        const bool shifted = pending != 0;
        align();
        if (shifted && padHigh() > 0)
            block.at(start + size) = 0;
    }

    void insertBytes(std::uint64_t at, std::uint64_t count) {
        access();
        if (at > size / 2) {
            if (padHigh() < count)
                block.insert(block.end(), count, 0);
            for (std::uint64_t i = size; i-- > at && at != 0;)
                block[start + i + count] = block[start + i];
        } else {
            if (start < count) {
                block.insert(block.begin(), count, 0);
                start += count;
            }
            for (std::uint64_t i = 0; i < at && at < size; ++i)
                block[start + i - count] = block[start + i];
            start -= count;
        }
        size += count;
    }
    void removeBytesAtEnd(std::uint64_t count) {
        access();
        assert(count <= size);
        size -= count;
    }
    void moveStart(std::int64_t count) {
        access();
        assert(count <= static_cast<std::int64_t>(size) &&
               -count <= static_cast<std::int64_t>(start));
        start += static_cast<std::uint64_t>(count);
        size -= static_cast<std::uint64_t>(count);
    }
    void shiftBitsDown(int count) {
        for (pending += count; pending >= 8; pending -= 8) {
            assert(size > 0);
            ++start;
            --size;
        }
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

    [[nodiscard]] Bytes hexText(std::uint64_t fromByte) const {
        Bytes text;
        for (std::uint64_t i = size; i-- > fromByte;)
            for (const int shift : {4, 0})
                text.push_back(
                    static_cast<unsigned char>("0123456789ABCDEF"[block[start + i] >> shift & 15]));
        text.push_back(0);
        return text;
    }
    [[nodiscard]] Bytes hexToBin(std::uint64_t first, std::uint64_t last) const {
        Bytes result;
        bool low = true;
        for (std::uint64_t i = last + 1; i-- > first; low = !low) {
            const unsigned char c = block.at(start + i);
            int value = c - '0';
            if (c >= 'A' && c <= 'F')
                value = c - 'A' + 10;
            else if (c >= 'a' && c <= 'f')
                value = c - 'a' + 10;
            if (low)
                result.push_back(static_cast<unsigned char>(value));
            else
                result.back() = static_cast<unsigned char>(static_cast<unsigned char>(value) * 16 +
                                                           result.back());
        }
        return result;
    }
    void mirrorEachByte() {
        for (std::uint64_t i = 0; i < size; ++i)
            for (std::uint64_t k = 0; k < 4; ++k) {
                const bool low = bit(8 * i + k);
                setBit(8 * i + k, bit(8 * i + 7 - k));
                setBit(8 * i + 7 - k, low);
            }
    }
    void reverse(std::uint64_t from, std::uint64_t count) {
        const auto first = block.begin() + static_cast<std::ptrdiff_t>(start + from);
        std::reverse(first, first + static_cast<std::ptrdiff_t>(count));
    }
};

/// Ordinary text cut to its lowest bits, the first digit that stays to those that are wanted.
inline Bytes cutHexText(Bytes text, std::uint64_t bitCount) {
    const std::uint64_t digits = (bitCount + 3) / 4;
    if (text.size() - 1 < digits)
        return text;
    text.erase(text.begin(), text.end() - static_cast<std::ptrdiff_t>(digits + 1));
    const std::string hex = "0123456789ABCDEF";
    if (bitCount % 4 != 0)
        text[0] = static_cast<unsigned char>(
            hex[hex.find(static_cast<char>(text[0])) % (1U << bitCount % 4)]);
    return text;
}

/// Bit-mirrored text, bit by bit.
inline Bytes mirroredTextToBin(const std::string& text) {
    Bytes result((text.size() + 1) / 2, 0);
    unsigned value = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t digit = std::string("0123456789abcdefABCDEF").find(text[i]);
        if (digit != std::string::npos)
            value = static_cast<unsigned>(digit < 16 ? digit : digit - 6);
        for (unsigned k = 0; k < 4; ++k)
            if ((value >> (3 - k) & 1) != 0)
                result[i / 2] = static_cast<unsigned char>(result[i / 2] | 1U << (i % 2 * 4 + k));
    }
    return result;
}

} // namespace model
