// SPDX-License-Identifier: MIT
#include "KelRT/Kel_ByteBuffer.h"

#include "common/u64.h"
#include "common/vectors.h"

#include <array>
#include <cstddef>

namespace KelRT {
namespace {

// These functions shift down, that is, towards bit 0, by `shift` bits (1 to 7). shiftDown() calls
// the others.

// Shifts fewer than VECTOR_BYTES bytes.
void shiftFewDown(unsigned char* bytes, std::uint64_t count, unsigned shift) {
    if (count > common::U64_BYTES) {
        const std::uint64_t next = bytes[common::U64_BYTES];
        common::storeU64(bytes, common::loadU64(bytes) >> shift | next << (64 - shift));
        bytes += common::U64_BYTES;
        count -= common::U64_BYTES;
    }
    common::storeBytes(bytes, common::loadBytes(bytes, count) >> shift, count);
}

// Shifts each element of `vector`. Its new high bits are the low bits of the element of `next` that
// has the same index.
common::U64Vector shifted(common::U64Vector vector, common::U64Vector next, unsigned shift) {
    return vector >> shift | next << (64 - shift);
}

// Shifts blocks of four vectors while a whole block lies before `end`. Returns the address after
// the last block.
//
// The bits that enter a u64 come from the next u64. So each vector is loaded twice, at `from` and
// again eight bytes later, and does not depend on another vector. The second load may read the
// first eight bytes after `end`. They are not shifted yet, because shiftDown() stores the vector
// that begins at `end` last.
//
// All loads of a block precede its stores. Otherwise, the processor may predict a false
// store-to-load dependency.
//
// A loop that shifts one u64 at a time takes 40 % longer in the benchmark row "shift by 3 bits,
// 4 KiB".
unsigned char* shiftBlocksDown(unsigned char* bytes, const unsigned char* end, unsigned shift) {
    constexpr std::ptrdiff_t BLOCK = 4 * common::VECTOR_BYTES;
    for (; end - bytes >= BLOCK; bytes += BLOCK) {
        std::array<common::U64Vector, 4> moved;
        for (std::size_t i = 0; i < moved.size(); ++i) {
            const unsigned char* const from = bytes + i * common::VECTOR_BYTES;
            moved[i] = shifted(common::loadU64Vector(from),
                               common::loadU64Vector(from + common::U64_BYTES), shift);
        }
        for (std::size_t i = 0; i < moved.size(); ++i)
            common::storeU64Vector(bytes + i * common::VECTOR_BYTES, moved[i]);
    }
    return bytes;
}

// Shifts a byte string in place. Zeros enter at the top.
void shiftDown(unsigned char* bytes, std::uint64_t count, unsigned shift) {
    if (count < common::VECTOR_BYTES)
        return shiftFewDown(bytes, count, shift);
    // The last vector may overlap the previous one, so it is shifted before that one is stored.
    unsigned char* const lastStart = bytes + count - common::VECTOR_BYTES;
    const common::U64Vector last = common::loadU64Vector(lastStart);
    const common::U64Vector top =
        shifted(last, common::middleU64s(last, common::U64Vector{}), shift);
    bytes = shiftBlocksDown(bytes, lastStart, shift);
    // Unlike shiftBlocksDown(), this loop loads each byte only once. If a previous call has just
    // shifted the same bytes, a second load would span two stores of that call. The processor can
    // forward only one store to a load, so the load would wait for both stores. A loop that shifts
    // one u64 at a time takes 26 % longer in the benchmark row "shift by 3 bits, 64 B".
    constexpr std::ptrdiff_t VECTOR = common::VECTOR_BYTES;
    common::U64Vector current = common::loadU64Vector(bytes);
    for (; lastStart - bytes >= VECTOR; bytes += VECTOR) {
        const common::U64Vector next = common::loadU64Vector(bytes + VECTOR);
        common::storeU64Vector(bytes, shifted(current, common::middleU64s(current, next), shift));
        current = next;
    }
    if (bytes < lastStart) { // the next byte suffices: at most 7 bits enter
        const common::U64Vector next{bytes[VECTOR], 0};
        common::storeU64Vector(bytes, shifted(current, common::middleU64s(current, next), shift));
    }
    common::storeU64Vector(lastStart, top);
}

} // namespace

void Kel_ByteBuffer::byteAlignSlowCase() noexcept {
    shiftDown(used(), size, static_cast<unsigned>(pendingBitShift));
    if (padHigh > 0)
        used()[size] = 0;
    pendingBitShift = 0;
}

} // namespace KelRT
