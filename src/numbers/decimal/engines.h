// SPDX-License-Identifier: MIT
//
// Two engines read and print decimal text: schoolbook, and divide and conquer.
#pragma once

#include "numbers/decimal/powers_of_ten.h"
#include "numbers/limb.h"

#include <cstddef>

namespace KelRT::numbers {

struct Engine {
    std::size_t minLimbs; // the engine converts numbers of at least this many limbs
    unsigned chunkDigits; // the number of decimal digits in a chunk, which fits a limb
    DoubleLimb radix;     // the radix of the result's digits
};

constexpr unsigned READ_RADIX_BITS = 60; // divide and conquer reads text into digits of this size

// The size of a number selects its engine. Printing counts the significant limbs. Reading counts
// the limbs of the width or those that the text can fill, whichever are fewer. On x86-64, the two
// engines take the same time, within 10 %, from 210 to 320 limbs when reading and from 110 to 190
// limbs when printing.
constexpr Engine READ_SCHOOLBOOK{0, 19, DoubleLimb{1} << LIMB_BITS};
constexpr Engine READ_DIVIDE_AND_CONQUER{220, 18, DoubleLimb{1} << READ_RADIX_BITS};
constexpr Engine PRINT_SCHOOLBOOK{0, 19, POWERS_OF_TEN[19]};
constexpr Engine PRINT_DIVIDE_AND_CONQUER{120, 17, POWERS_OF_TEN[17]};

// Divide and conquer multiplies factors of at least this many digits by Karatsuba's method. The
// benchmark row "parse decimal, 65536 b" takes 6 % longer with 45, and the same time with 120.
constexpr std::size_t KARATSUBA_SIZE = 90;

// The schoolbook engine uses the longest chunks that fit a limb.
static_assert(READ_SCHOOLBOOK.chunkDigits == digitsWithin(~Limb{0}));
static_assert(PRINT_SCHOOLBOOK.chunkDigits == digitsWithin(~Limb{0}));

// Divide and conquer reads the longest chunks that fit a digit of the result. A column of a product
// adds up fewer than KARATSUBA_SIZE products of two digits and a carry below 2^120. The sum fits
// 128 bits: 90 * 2^120 < 2^128.
static_assert(READ_DIVIDE_AND_CONQUER.chunkDigits == digitsWithin(Limb{1} << READ_RADIX_BITS));

// When printing, such a sum is below KARATSUBA_SIZE * radix^2. The next carry is the sum divided by
// the radix and must fit a limb. So the radix is at most 2^64 / KARATSUBA_SIZE.
static_assert(PRINT_DIVIDE_AND_CONQUER.chunkDigits == digitsWithin(~Limb{0} / KARATSUBA_SIZE));

} // namespace KelRT::numbers
