// SPDX-License-Identifier: MIT
//
// The divide-and-conquer engine of decimal text, for numbers of at least the sizes below. The same
// code serves both directions.
#pragma once

#include "numbers/decimal/powers_of_ten.h"
#include "numbers/limb.h"

#include <cstddef>
#include <vector>

namespace KelRT::numbers {

// The minimum sizes for this engine, in limbs. Printing counts the limbs in use; reading counts the
// limbs that the text can fill, at most those of the width. Measured on x86-64: it overtakes the
// schoolbook engine between 120 and 140 limbs when printing, and between 180 and 220 when reading.
// Any value in these ranges will do.
constexpr std::size_t WIDE_PRINT_LIMBS = 120;
constexpr std::size_t WIDE_READ_LIMBS = 220;

// Factors of at least this many digits of the target radix are multiplied by Karatsuba's method. So
// a column of the schoolbook method adds up fewer products than this. Measured with the benchmark
// row "print decimal, 65536 b": with 30 it takes 18 % longer, with 90 the same.
constexpr std::size_t KARATSUBA_SIZE = 60;

// When printing, a chunk is a digit of the target radix. A column of KARATSUBA_SIZE products of
// such digits, divided by the radix, must give a quotient, the carry, that fits a limb. So a chunk
// has 17 decimal digits.
constexpr unsigned WIDE_PRINT_CHUNK_DIGITS = digitsWithin(~Limb{0} / KARATSUBA_SIZE);

// When reading, the digits of the target radix have 60 bits: the sum of a column then fits 128
// bits, and 10^18 just fits such a digit. So a chunk has 18 decimal digits.
constexpr unsigned WIDE_READ_RADIX_BITS = 60;
constexpr unsigned WIDE_READ_CHUNK_DIGITS = digitsWithin(Limb{1} << WIDE_READ_RADIX_BITS);

// Converts `count` limbs (at least 1) to chunks of WIDE_PRINT_CHUNK_DIGITS digits, both the lowest
// first. The highest chunk is 0 only for the value 0. Throws std::bad_alloc.
std::vector<Limb> toDecimalChunks(const Limb* limbs, std::size_t count);

// Converts chunks of WIDE_READ_CHUNK_DIGITS digits, the most significant first, to digits of radix
// 2^WIDE_READ_RADIX_BITS, the lowest first. The last chunk has `lastDigits` decimal digits. Returns
// at most exactDigits + 1 digits; the lowest `exactDigits` (at least 1) are exact. The value 0 may
// yield none. Throws std::bad_alloc.
std::vector<Limb> fromDecimalChunks(const std::vector<Limb>& chunks, unsigned lastDigits,
                                    std::size_t exactDigits);

} // namespace KelRT::numbers
