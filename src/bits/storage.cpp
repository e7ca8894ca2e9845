// SPDX-License-Identifier: MIT
#include "KelRT/Kel_ByteBuffer.h"

#include "common/memory.h"

#include <cassert>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <utility>

namespace KelRT {
namespace {

using Block = std::unique_ptr<unsigned char[]>;

// Adds sizes. Throws std::bad_alloc if the sum is too large for a block. Each term and each partial
// sum is checked, so no addition overflows.
std::size_t sumOfSizes(std::initializer_list<std::uint64_t> sizes) {
    std::uint64_t sum = 0;
    for (const std::uint64_t size : sizes)
        sum = common::checkedCount(sum + common::checkedCount(size));
    return static_cast<std::size_t>(sum);
}

// Copies like memcpy(), but takes null pointers if `count` is 0.
void copyBytes(unsigned char* to, const unsigned char* from, std::size_t count) {
    if (count != 0)
        std::memcpy(to, from, count);
}

// Copies `size` bytes of a block into a new one, with zeros before and after them.
Block paddedCopy(const Block& block, std::size_t size, std::uint64_t before, std::uint64_t after) {
    Block copy = std::make_unique<unsigned char[]>(sumOfSizes({before, size, after}));
    copyBytes(copy.get() + before, block.get(), size);
    return copy;
}

} // namespace

Kel_ByteBuffer::Kel_ByteBuffer() noexcept = default;
Kel_ByteBuffer::~Kel_ByteBuffer() = default;

Kel_ByteBuffer::Kel_ByteBuffer(std::uint64_t newSize, std::uint64_t newPadLow,
                               std::uint64_t newPadHigh)
    : startPosition(newPadLow), size(newSize), padLow(newPadLow), padHigh(newPadHigh),
      storage(std::make_unique<unsigned char[]>(sumOfSizes({newPadLow, newSize, newPadHigh}))) {}

Kel_ByteBuffer::Kel_ByteBuffer(const unsigned char* source, std::uint64_t newSize,
                               std::uint64_t newPadLow, std::uint64_t newPadHigh)
    : Kel_ByteBuffer(newSize, newPadLow, newPadHigh) {
    assert((source != nullptr || newSize == 0) && "source designates at least size bytes");
    copyBytes(used(), source, static_cast<std::size_t>(newSize));
}

Kel_ByteBuffer::Kel_ByteBuffer(const Kel_ByteBuffer& other)
    : startPosition(other.startPosition), pendingBitShift(other.pendingBitShift), size(other.size),
      padLow(other.padLow), padHigh(other.padHigh) {
    if (!other.storage)
        return;
    storage = std::make_unique_for_overwrite<unsigned char[]>(blockSize());
    copyBytes(storage.get(), other.storage.get(), blockSize());
}

Kel_ByteBuffer::Kel_ByteBuffer(Kel_ByteBuffer&& other) noexcept {
    *this = std::move(other);
}

Kel_ByteBuffer& Kel_ByteBuffer::operator=(const Kel_ByteBuffer& other) {
    if (this != &other)
        *this = Kel_ByteBuffer(other);
    return *this;
}

// Each member of `other` is reset before the member of this buffer is assigned. So self-assignment
// changes nothing.
Kel_ByteBuffer& Kel_ByteBuffer::operator=(Kel_ByteBuffer&& other) noexcept {
    startPosition = std::exchange(other.startPosition, 0);
    pendingBitShift = std::exchange(other.pendingBitShift, 0);
    size = std::exchange(other.size, 0);
    padLow = std::exchange(other.padLow, 0);
    padHigh = std::exchange(other.padHigh, 0);
    storage = std::move(other.storage);
    return *this;
}

void Kel_ByteBuffer::init(std::uint64_t newSize, std::uint64_t newPadLow,
                          std::uint64_t newPadHigh) {
    *this = Kel_ByteBuffer(newSize, newPadLow, newPadHigh);
}

void Kel_ByteBuffer::clear() noexcept {
    if (storage)
        std::memset(storage.get(), 0, blockSize());
}

std::int32_t Kel_ByteBuffer::insertBytes(std::uint64_t atByte, std::uint64_t byteCount) {
    byteAlign();
    const bool inside = 0 < atByte && atByte < size; // at the ends, nothing moves
    if (atByte > size / 2) {
        if (padHigh < byteCount)
            increasePadHigh(byteCount);
        if (inside)
            std::memmove(used() + atByte + byteCount, used() + atByte,
                         static_cast<std::size_t>(size - atByte));
        padHigh -= byteCount;
    } else {
        if (padLow < byteCount)
            increasePadLow(byteCount);
        if (inside)
            std::memmove(used() - byteCount, used(), static_cast<std::size_t>(atByte));
        startPosition -= byteCount;
        padLow -= byteCount;
    }
    size += byteCount;
    return 0;
}

void Kel_ByteBuffer::removeBytesAtEnd(std::uint64_t byteCount) noexcept {
    byteAlign();
    assert(byteCount <= size && "byteCount <= getSize()");
    size -= byteCount;
    padHigh += byteCount;
}

void Kel_ByteBuffer::moveStartPositionForward(std::int32_t byteCount) noexcept {
    byteAlign();
    assert((byteCount < 0 ? static_cast<std::uint64_t>(-std::int64_t{byteCount}) <= padLow
                          : static_cast<std::uint64_t>(byteCount) <= size) &&
           "-padLow <= byteCount <= getSize()");
    giveToLowReserve(static_cast<std::uint64_t>(std::int64_t{byteCount}));
}

void Kel_ByteBuffer::increasePadHigh(std::uint64_t byteCount) {
    byteAlign();
    storage = paddedCopy(storage, blockSize(), 0, byteCount);
    padHigh += byteCount;
}

void Kel_ByteBuffer::increasePadLow(std::uint64_t byteCount) {
    byteAlign();
    storage = paddedCopy(storage, blockSize(), byteCount, 0);
    padLow += byteCount;
    startPosition += byteCount;
}

} // namespace KelRT
