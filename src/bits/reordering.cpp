// SPDX-License-Identifier: MIT
#include "KelRT/Kel_ByteBuffer.h"

#include "common/words.h"

#include <cassert>

namespace KelRT {

void Kel_ByteBuffer::swapBitOrderWithinEachByte() noexcept {
    using namespace common;
    byteAlign();
    unsigned char* const bytes = used();
    const std::uint64_t count = size;
    std::uint64_t i = 0;
    for (; i + WORD_BYTES <= count; i += WORD_BYTES)
        storeWord(bytes + i, mirrorEachByte(loadWord(bytes + i)));
    storeBytes(bytes + i, mirrorEachByte(loadBytes(bytes + i, count - i)), count - i);
}

void Kel_ByteBuffer::swapByteOrder(std::uint64_t fromByte, std::uint64_t byteCount) noexcept {
    using namespace common;
    byteAlign();
    assert(fromByte <= size && byteCount <= size - fromByte && "fromByte + byteCount <= getSize()");
    unsigned char* low = used() + fromByte;
    std::uint64_t left = byteCount;
    // A word from either end, exchanged with their bytes reversed. Below two words they overlap,
    // which does no harm: both hold the bytes from before, and write a shared byte alike.
    while (left >= WORD_BYTES) {
        unsigned char* const high = low + left - WORD_BYTES;
        const std::uint64_t front = loadWord(low);
        const std::uint64_t back = loadWord(high);
        storeWord(low, swapBytes(back));
        storeWord(high, swapBytes(front));
        if (left < 2 * WORD_BYTES)
            return;
        low += WORD_BYTES;
        left -= 2 * WORD_BYTES;
    }
    if (left > 1)
        storeBytes(low, swapBytes(loadBytes(low, left)) >> (8 * (WORD_BYTES - left)), left);
}

} // namespace KelRT
