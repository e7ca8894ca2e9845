// SPDX-License-Identifier: MIT
#include "KelRT/Kel_ByteBuffer.h"

#include "common/words.h"

#include <cassert>
#include <cstddef>

namespace KelRT {
namespace {

/// Exchanges two words, the bytes of each reversed. They may overlap: both are read first, and
/// agree on the bytes that they share.
void exchangeReversed(unsigned char* low, unsigned char* high) {
    const std::uint64_t front = common::loadWord(low);
    const std::uint64_t back = common::loadWord(high);
    common::storeWord(low, common::swapBytes(back));
    common::storeWord(high, common::swapBytes(front));
}

} // namespace

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
    unsigned char* high = low + byteCount;
    constexpr std::ptrdiff_t WORD = WORD_BYTES;
    for (; high - low >= 4 * WORD; low += 2 * WORD, high -= 2 * WORD) {
        exchangeReversed(low, high - WORD);
        exchangeReversed(low + WORD, high - 2 * WORD);
    }
    for (; high - low >= WORD; low += WORD, high -= WORD) // the last two may overlap
        exchangeReversed(low, high - WORD);
    if (high - low > 1) {
        const auto left = static_cast<std::uint64_t>(high - low);
        storeBytes(low, swapBytes(loadBytes(low, left)) >> (8 * (WORD_BYTES - left)), left);
    }
}

} // namespace KelRT
