// SPDX-License-Identifier: MIT
#include "KelRT/Kel_ByteBuffer.h"

#include "common/u64.h"

#include <algorithm>
#include <stdexcept>

namespace KelRT {

// An empty field is valid at the end of the buffer, but not past it. The second comparison
// subtracts, because bitPosition + bitCount could overflow.
bool Kel_ByteBuffer::holdsField(std::uint64_t bitPosition, std::uint64_t bitCount) const noexcept {
    const std::uint64_t bits = size * 8;
    return bitPosition <= bits && bitCount <= bits - bitPosition;
}

std::uint64_t Kel_ByteBuffer::getBitsSlowCase(std::uint64_t bitPosition, std::uint64_t bitCount) {
    byteAlign();
    if (!holdsField(bitPosition, bitCount))
        throw std::logic_error("Internal Error - Kel_ByteBuffer::getBits bad params.");
    if (bitCount == 0)
        return 0;
    return common::readField(used(), size, bitPosition, std::min(bitCount, common::U64_BITS));
}

void Kel_ByteBuffer::setBitsSlowCase(std::uint64_t bitPosition, std::uint64_t bitCount,
                                     std::uint64_t value) {
    byteAlign();
    if (!holdsField(bitPosition, bitCount))
        throw std::logic_error("Internal Error - Kel_ByteBuffer::setBits(ll) bad params.");
    while (bitCount != 0) { // bits above the lowest 64 become 0
        const auto count = std::min(bitCount, common::U64_BITS);
        common::writeField(used(), size, bitPosition, count, value);
        bitPosition += count;
        bitCount -= count;
        value = 0;
    }
}

} // namespace KelRT
