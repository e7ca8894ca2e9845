// SPDX-License-Identifier: MIT
#include "KelRT/Kel_NumberUtil.h"

#include "common/u64.h"

#include <algorithm>
#include <cassert>
#include <cstdio>

namespace KelRT {
namespace {

// Reads the field from bit `low` to bit `high`. If it is longer than `maxCount`, reads only its
// lowest `maxCount` bits.
std::uint64_t lowestBits(const unsigned char* data, std::int32_t high, std::int32_t low,
                         std::uint64_t maxCount) {
    assert(data != nullptr && "the field lies inside the array");
    const auto first = static_cast<std::uint64_t>(low);
    const std::uint64_t length = static_cast<std::uint64_t>(high) - first + 1;
    const std::uint64_t count = std::min(length, maxCount);
    return common::readField(data, (first + count + 7) / 8, first, count);
}

// Reads a field whose bit `firstBit` is the most significant.
std::uint64_t descending(const unsigned char* data, std::int32_t firstBit, std::int32_t lastBit,
                         std::uint64_t maxCount) {
    if (firstBit < lastBit)
        return 0;
    assert(lastBit >= 0 && "the indices are not negative");
    return lowestBits(data, firstBit, lastBit, maxCount);
}

// Reads a field in the opposite order: bit `lastBit` becomes bit 0. If it is longer than
// `maxCount`, reads only its highest `maxCount` bits.
std::uint64_t ascending(const unsigned char* data, std::int32_t firstBit, std::int32_t lastBit,
                        std::int32_t maxCount) {
    if (firstBit > lastBit)
        return 0;
    assert(firstBit >= 0 && "the indices are not negative");
    const std::int32_t low = lastBit - firstBit < maxCount ? firstBit : lastBit - maxCount + 1;
    const std::uint64_t bits = lowestBits(data, lastBit, low, common::U64_BITS);
    const auto count = static_cast<unsigned>(lastBit - low + 1);
    return common::mirrorU64(bits) >> (common::U64_BITS - count);
}

} // namespace

std::uint32_t Kel_NumberUtil::getBits(const unsigned char* data, std::int32_t firstBit,
                                      std::int32_t lastBit) noexcept {
    return static_cast<std::uint32_t>(descending(data, firstBit, lastBit, 32));
}

std::uint32_t Kel_NumberUtil::getReverseBits(const unsigned char* data, std::int32_t firstBit,
                                             std::int32_t lastBit) noexcept {
    return static_cast<std::uint32_t>(ascending(data, firstBit, lastBit, 32));
}

std::uint32_t Kel_NumberUtil::getLongBits(const unsigned char* data, std::int32_t firstBit,
                                          std::int32_t lastBit) noexcept {
    return getBits(data, firstBit, lastBit);
}

std::uint32_t Kel_NumberUtil::getReverseLongBits(const unsigned char* data, std::int32_t firstBit,
                                                 std::int32_t lastBit) noexcept {
    return getReverseBits(data, firstBit, lastBit);
}

std::uint64_t Kel_NumberUtil::getLongLongBits(const unsigned char* data, std::int32_t firstBit,
                                              std::int32_t lastBit) noexcept {
    return descending(data, firstBit, lastBit, 64);
}

std::uint64_t Kel_NumberUtil::getReverseLongLongBits(const unsigned char* data,
                                                     std::int32_t firstBit,
                                                     std::int32_t lastBit) noexcept {
    return ascending(data, firstBit, lastBit, 64);
}

std::uint64_t Kel_NumberUtil::getLongLongBitsDebug(const unsigned char* data, std::int32_t firstBit,
                                                   std::int32_t lastBit) {
    const std::uint64_t value = getLongLongBits(data, firstBit, lastBit);
    const auto print = [](char character) { static_cast<void>(std::putchar(character)); };
    std::uint32_t printed = 0;
    for (std::int64_t bit = firstBit; bit >= lastBit; --bit) {
        print((data[bit / 8] >> bit % 8 & 1) != 0 ? '1' : '0');
        if (++printed % 8 == 0)
            print('\n');
    }
    print('\n');
    return value;
}

} // namespace KelRT
