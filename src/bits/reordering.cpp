// SPDX-License-Identifier: MIT
#include "KelRT/Kel_ByteBuffer.h"

#include "common/words.h"

#include <cassert>
#include <cstddef>

namespace KelRT {

using namespace common;

void Kel_ByteBuffer::swapBitOrderWithinEachByte() noexcept {
    byteAlign();
    unsigned char* const bytes = used();
    const std::uint64_t count = size;
    std::uint64_t i = 0;
    for (; i + WORD_BYTES <= count; i += WORD_BYTES)
        storeWord(bytes + i, mirrorEachByte(loadWord(bytes + i)));
    storeBytes(bytes + i, mirrorEachByte(loadBytes(bytes + i, count - i)), count - i);
}

void Kel_ByteBuffer::swapByteOrder(std::uint64_t fromByte, std::uint64_t byteCount) noexcept {
    byteAlign();
    assert(fromByte <= size && byteCount <= size - fromByte && "fromByte + byteCount <= getSize()");
    unsigned char* low = used() + fromByte;
    unsigned char* high = low + byteCount;
    constexpr std::ptrdiff_t WORD = WORD_BYTES;
    for (; high - low >= WORD; low += WORD, high -= WORD) {
        // The last two words may overlap. Both stores write the same values to the shared bytes.
        const std::uint64_t lowWord = loadWord(low);
        const std::uint64_t highWord = loadWord(high - WORD);
        storeWord(low, swapBytes(highWord));
        storeWord(high - WORD, swapBytes(lowWord));
    }
    if (high - low > 1) {
        const auto left = static_cast<std::uint64_t>(high - low);
        storeBytes(low, swapBytes(loadBytes(low, left)) >> (8 * (WORD_BYTES - left)), left);
    }
}

} // namespace KelRT
