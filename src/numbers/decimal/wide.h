// SPDX-License-Identifier: MIT
//
// The second engine of decimal text, for numbers of thousands of bits: divide and conquer, in both
// directions by the same code. Nothing else needs to be read to use it.
#pragma once

#include "numbers/decimal/powers_of_ten.h"
#include "numbers/limb.h"

#include <cstddef>
#include <vector>

namespace KelRT::numbers {

// Numbers of at least these sizes use this engine. Measured on x86-64: it overtakes the schoolbook
// engine between 120 and 140 limbs when printing, and between 180 and 220 when reading.
constexpr std::size_t WIDE_PRINT_LIMBS = 120;
constexpr std::size_t WIDE_READ_LIMBS = 220;

// Factors of at least this many digits of the target radix are multiplied by Karatsuba's method. So
// a column of the schoolbook method adds up fewer products than this. Measured with the row "print
// decimal, 65536 b": with 30 it takes 18 % longer, with 90 the same.
constexpr std::size_t KARATSUBA_SIZE = 60;

// When printing, a chunk is a digit of the target radix. A column of KARATSUBA_SIZE products of
// such digits, divided by the radix, must leave a carry of one limb. So a chunk has 17 decimal
// digits.
constexpr unsigned PRINTED_CHUNK_DIGITS = digitsWithin(~Limb{0} / KARATSUBA_SIZE);

// When reading, the target is limbs of 60 bits: the sum of a column then fits 128 bits, and 10^18
// just fits such a limb. So a chunk has 18 decimal digits.
constexpr unsigned READ_LIMB_BITS = 60;
constexpr unsigned READ_CHUNK_DIGITS = digitsWithin(Limb{1} << READ_LIMB_BITS);

// `count` limbs (at least 1) as chunks of PRINTED_CHUNK_DIGITS digits, both from the lowest. The
// highest chunk is 0 only for the value 0. Throws std::bad_alloc.
std::vector<Limb> toDecimalChunks(const Limb* limbs, std::size_t count);

// The value of chunks of READ_CHUNK_DIGITS digits, the most significant first, as limbs of
// READ_LIMB_BITS bits, the lowest first. The last chunk has `lastDigits` digits. The result has its
// `room` (at least 1) lowest limbs and at most one more. Throws std::bad_alloc.
std::vector<Limb> fromDecimalChunks(const std::vector<Limb>& chunks, unsigned lastDigits,
                                    std::size_t room);

} // namespace KelRT::numbers
