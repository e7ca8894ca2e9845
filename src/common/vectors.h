// SPDX-License-Identifier: MIT
//
// Offers vectors of sixteen bytes. vectors_gnu.h implements them with GNU vector types,
// vectors_iso.h with two 64-bit integers in ISO C++. The elements of a Vector are bytes, those of a
// U64Vector are 64-bit integers. Element 0 is the first in memory on every processor. These
// operators apply to each element:
//
//   Vector                        &, |, >> and +; no sum may exceed 255
//   U64Vector                     &, |, >> and <<
//
// A comparison yields 0xFF in each byte for which it holds, and 0 in the others. The functions are:
//
//   loadVector(from)              the sixteen bytes at `from`, at any alignment
//   storeVector(to, vector)       writes sixteen bytes to `to`, at any alignment
//   bytesOf(vector)               both integers as bytes, least significant byte first
//   firstU64(vector)              the integer in bytes 0 to 7
//   secondU64(vector)             the integer in bytes 8 to 15
//   middleU64s(a, b)              the second integer of `a`, then the first of `b`
//   equal(vector, character)      compares each byte with `character`
//   greater(vector, bound)        compares: bound < byte <= 127; the bound is 0 to 127
//   between(vector, first, last)  compares: first <= byte <= last; both are 0 to 127
//   topBits(vector)               the top bit of byte i as bit i
//   interleave(a, b)              bytes 0 to 7 of `a` and `b` in turn: a0 b0 a1 b1 and so on
//   evenBytes(vector)             bytes 0, 2, 4, 6 of the first integer, then of the second
#pragma once

#include "common/u64.h"
#include "common/vectors_iso.h"

#include <cstdint>

// On 32-bit Arm without NEON, GCC splits vectors into integers, and GCC 12 with -O3 compiles some
// comparisons of bytes wrongly (with -fno-gcse it does not). So ISO C++ is used there.
#if defined(KELRT_NO_EXTENSIONS) || !defined(__has_builtin) ||                                     \
    (defined(__arm__) && !defined(__ARM_NEON))
namespace KelRT::common {
using namespace iso;
}
#elif __has_builtin(__builtin_shufflevector)
#include "common/vectors_gnu.h"
namespace KelRT::common {
using namespace gnu;
}
#else // such as GCC 11
namespace KelRT::common {
using namespace iso;
}
#endif

namespace KelRT::common {

constexpr std::uint64_t VECTOR_BYTES = 16;

// Converts bytes to the two integers that they form. This is the inverse of bytesOf().
[[nodiscard]] inline U64Vector u64VectorOf(Vector bytes) {
    return U64Vector{firstU64(bytes), secondU64(bytes)};
}

[[nodiscard]] inline U64Vector loadU64Vector(const void* from) {
    return u64VectorOf(loadVector(from));
}

inline void storeU64Vector(void* to, U64Vector vector) {
    storeVector(to, bytesOf(vector));
}

// Returns a vector with `byte` in every byte.
[[nodiscard]] inline Vector broadcastVector(unsigned char byte) {
    return bytesOf(U64Vector{broadcast(byte), broadcast(byte)});
}

// Loads `count` bytes (1 to 16) as the last bytes of a vector, whose other bytes are `filler`.
[[nodiscard]] inline Vector loadLastBytes(const void* from, unsigned count, unsigned char filler) {
    const auto* const p = static_cast<const unsigned char*>(from);
    if (count == VECTOR_BYTES)
        return loadVector(p);
    if (count <= 8)
        return bytesOf(U64Vector{broadcast(filler), loadHighBytes(p, count, filler)});
    const unsigned high = count - 8;
    return bytesOf(U64Vector{loadHighBytes(p, high, filler), loadU64(p + high)});
}

// Returns whether every bit is set.
[[nodiscard]] inline bool allSet(Vector vector) {
    return (firstU64(vector) & secondU64(vector)) == ~std::uint64_t{0};
}

} // namespace KelRT::common
