// SPDX-License-Identifier: MIT
//
// Programs of byte-buffer operations, run on a buffer and on its slow model side by side.
#pragma once

#include "KelRT/Kel_ByteBuffer.h"

#include "models/byte_buffer_model.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace model {

/// A buffer and its model. The dice that choose the operations have `value()`, any 64 bits, and
/// `below(bound)`.
class ByteBufferProgram {
public:
    /// One operation on both; false when what they read differs.
    template <typename Dice>
    bool step(Dice& dice) {
        const std::uint64_t size = expected.size;
        switch (dice.below(11)) {
        case 0: {
            const std::uint64_t at = dice.below(size + 3);
            const std::uint64_t count = dice.below(12);
            buffer.insertBytes(at, count);
            expected.insertBytes(at, count);
            return true;
        }
        case 1: {
            const std::uint64_t count = dice.below(std::min<std::uint64_t>(size, 5) + 1);
            buffer.removeBytesAtEnd(count);
            expected.removeBytesAtEnd(count);
            return true;
        }
        case 2:
            return moveStart(dice);
        case 3:
        case 4: { // twice as likely, and several in a row
            const auto bits = 8 * static_cast<int>(size) - expected.pending;
            const int count = bits <= 0 ? 0 : static_cast<int>(dice.below(30)) % (bits + 1);
            buffer.shiftBitsDown(count);
            expected.shiftBitsDown(count);
            return true;
        }
        case 5:
        case 6:
            return field(dice);
        case 7:
            buffer.swapBitOrderWithinEachByte();
            expected.access();
            expected.mirrorEachByte();
            return true;
        case 8: {
            const std::uint64_t from = dice.below(size + 1);
            const std::uint64_t count = dice.below(size - from + 1);
            buffer.swapByteOrder(from, count);
            expected.access();
            expected.reverse(from, count);
            return true;
        }
        case 9:
            return texts(dice.below(size + 2));
        default:
            return newLife(dice);
        }
    }

    /// The whole state that can be observed, of a copy: size, and every byte of the block.
    [[nodiscard]] bool same() const {
        KelRT::Kel_ByteBuffer copy(buffer);
        ByteBuffer aligned = expected;
        aligned.access();
        if (copy.getSize() != aligned.size)
            return false;
        return aligned.block.empty() ||
               std::equal(aligned.block.begin(), aligned.block.end(), copy.uPtr() - aligned.start);
    }

private:
    template <typename Dice>
    bool moveStart(Dice& dice) {
        const std::uint64_t back = std::min<std::uint64_t>(expected.start, 4);
        const std::uint64_t forward = std::min<std::uint64_t>(expected.size, 4);
        const auto count = static_cast<std::int64_t>(dice.below(forward + 1)) -
                           static_cast<std::int64_t>(dice.below(back + 1));
        buffer.moveStartPositionForward(static_cast<std::int32_t>(count));
        expected.moveStart(count);
        return true;
    }

    template <typename Dice>
    bool field(Dice& dice) {
        const std::uint64_t bits = 8 * expected.size;
        const std::uint64_t position = dice.below(bits + 1);
        const std::uint64_t count = dice.below(std::min<std::uint64_t>(bits - position, 90) + 1);
        expected.access();
        if (dice.below(2) == 0)
            return buffer.getBitsLL(position, count) == expected.get(position, count);
        const std::uint64_t value = dice.value();
        buffer.setBitsLL(position, count, value);
        expected.set(position, count, value);
        return true;
    }

    bool texts(std::uint64_t from) {
        const std::uint64_t size = expected.size;
        Bytes text(2 * (from < size ? size - from : 0) + 1, 0xEE);
        buffer.bin2HexString(from, text.data());
        expected.access();
        if (text != expected.hexText(from))
            return false;
        if (size == 0)
            return true;
        Bytes area((size + 1) / 2, 0xEE);
        buffer.hex2Bin(0, size - 1, area.data());
        return area == expected.hexToBin(0, size - 1);
    }

    /// From a copy, or with other bytes and reserves.
    template <typename Dice>
    bool newLife(Dice& dice) {
        if (dice.below(4) != 0) {
            KelRT::Kel_ByteBuffer copy(buffer);
            buffer = std::move(copy);
            return true;
        }
        Bytes bytes(dice.below(60));
        for (auto& byte : bytes)
            byte = static_cast<unsigned char>(dice.value());
        const std::uint64_t low = dice.below(6);
        const std::uint64_t high = dice.below(6);
        buffer = KelRT::Kel_ByteBuffer(bytes.data(), bytes.size(), low, high);
        expected = ByteBuffer(bytes, low, high);
        return true;
    }

    KelRT::Kel_ByteBuffer buffer;
    ByteBuffer expected;
};

} // namespace model
