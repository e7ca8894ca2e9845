// SPDX-License-Identifier: MIT
//
// The two engines that read and print decimal text: schoolbook, and divide and conquer.
#pragma once

#include "numbers/decimal/powers_of_ten.h"
#include "numbers/limb.h"

#include <cstddef>

namespace KelRT::numbers {

struct Engine {
    std::size_t minLimbs; // the fewest limbs of a number that it converts
    unsigned chunkDigits; // the number of decimal digits that are converted together, in one limb
    DoubleLimb radix;     // of the digits of the result
};

constexpr unsigned READ_RADIX_BITS = 60; // of divide and conquer

constexpr Engine READ_SCHOOLBOOK{0, 19, DoubleLimb{1} << LIMB_BITS};
constexpr Engine READ_DIVIDE_AND_CONQUER{220, 18, DoubleLimb{1} << READ_RADIX_BITS};
constexpr Engine PRINT_SCHOOLBOOK{0, 19, POWERS_OF_TEN[19]};
constexpr Engine PRINT_DIVIDE_AND_CONQUER{120, 17, POWERS_OF_TEN[17]};

// Printing counts the significant limbs. Reading counts the limbs of the width or those that the
// text can fill, whichever are fewer. Measured on x86-64: the engines take the same time, within
// 10 %, between 210 and 320 limbs when reading and between 110 and 190 limbs when printing.

// Divide and conquer multiplies factors of at least this many digits by Karatsuba's method.
// Measured with the benchmark row "parse decimal, 65536 b": with 45 it takes 6 % longer, with 120
// the same.
constexpr std::size_t KARATSUBA_SIZE = 90;

// The schoolbook engine takes the largest power of ten that fits a limb.
static_assert(READ_SCHOOLBOOK.chunkDigits == digitsWithin(~Limb{0}));
static_assert(PRINT_SCHOOLBOOK.chunkDigits == digitsWithin(~Limb{0}));

// A chunk that is read is a digit of the result. A column of a product adds up fewer than
// KARATSUBA_SIZE products of digits, and the sum fits 128 bits: 90 * 2^120 < 2^128.
static_assert(READ_DIVIDE_AND_CONQUER.chunkDigits == digitsWithin(Limb{1} << READ_RADIX_BITS));

// When printing, such a sum divided by the radix is the carry, which must fit a limb.
static_assert(PRINT_DIVIDE_AND_CONQUER.chunkDigits == digitsWithin(~Limb{0} / KARATSUBA_SIZE));

} // namespace KelRT::numbers
