// SPDX-License-Identifier: MIT
//
// These functions add, subtract and multiply numbers in a large radix. A digit takes one limb, and
// the lowest digit comes first.
//
// Multiplication uses A. Karatsuba's method (with Y. Ofman, 1962): its time grows as n^1.58.
// Methods that are faster for still wider numbers are not worth their code here.
#pragma once

#include "numbers/decimal/divide_limb.h"
#include "numbers/decimal/engines.h"
#include "numbers/limb.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <span>
#include <vector>

namespace KelRT::numbers::divide_and_conquer {

using Digits = std::vector<Limb>;

// The template arguments of the functions. VALUE is the target radix, in which all arithmetic is
// done. SOURCE is the radix of the digits that are converted to it. split() divides a sum of at
// most MAX_SUM by VALUE. It returns the remainder, a digit, and sets `carry` to the quotient.

struct DecimalRadix {
    static constexpr Limb VALUE = static_cast<Limb>(PRINT_DIVIDE_AND_CONQUER.radix);
    static constexpr DoubleLimb SOURCE = DoubleLimb{1} << LIMB_BITS;
    static constexpr DoubleLimb MAX_SUM = VALUE * SOURCE - 1; // so the carry is below 2^64

    [[nodiscard]] static Limb split(DoubleLimb sum, DoubleLimb& carry) {
        // divideLimb() requires the top bit of the divisor to be set, so divisor and dividend are
        // scaled. As sum < VALUE * 2^64, the dividend is below divisor * 2^64. So no bit is shifted
        // out, and the high limb is below the divisor, as a remainder must be.
        constexpr unsigned SCALE = 7;
        static_assert(VALUE >> (LIMB_BITS - SCALE - 1) == 1);
        assert(sum <= MAX_SUM);
        const DoubleLimb scaled = sum << SCALE;
        auto remainder = static_cast<Limb>(scaled >> LIMB_BITS);
        carry = divideLimb<(VALUE << SCALE)>(static_cast<Limb>(scaled), remainder);
        return remainder >> SCALE;
    }
};

struct BinaryRadix {
    static constexpr Limb VALUE = static_cast<Limb>(READ_DIVIDE_AND_CONQUER.radix);
    static constexpr DoubleLimb SOURCE = POWERS_OF_TEN[READ_DIVIDE_AND_CONQUER.chunkDigits];
    static constexpr DoubleLimb MAX_SUM = ~DoubleLimb{0};

    [[nodiscard]] static Limb split(DoubleLimb sum, DoubleLimb& carry) {
        carry = sum >> READ_RADIX_BITS;
        return static_cast<Limb>(sum) & (VALUE - 1);
    }
};

// Because the radix is at most 2^63, two digits and a carry fit a limb in add(). In subtract(), the
// top bit of a difference is set only if the difference is negative, so it is the borrow.
static_assert(DecimalRadix::VALUE <= Limb{1} << 63 && BinaryRadix::VALUE <= Limb{1} << 63);

// Computes sum += addend. The addend has no more digits than the sum, and the result must fit.
template <typename Radix>
void add(std::span<Limb> sum, std::span<const Limb> addend) {
    assert(addend.size() <= sum.size());
    Limb carry = 0;
    const auto step = [&carry](Limb& digit, Limb other) {
        const Limb total = digit + other + carry;
        carry = total >= Radix::VALUE ? 1 : 0;
        digit = total - (Radix::VALUE & (0 - carry));
    };
    for (std::size_t i = 0; i < addend.size(); ++i)
        step(sum[i], addend[i]);
    for (std::size_t i = addend.size(); i < sum.size() && carry != 0; ++i)
        step(sum[i], 0);
    assert(carry == 0);
}

// Computes difference -= subtrahend. The subtrahend has no more digits and is not larger.
template <typename Radix>
void subtract(std::span<Limb> difference, std::span<const Limb> subtrahend) {
    assert(subtrahend.size() <= difference.size());
    Limb borrow = 0;
    const auto step = [&borrow](Limb& digit, Limb other) {
        const Limb result = digit - other - borrow;
        borrow = result >> (LIMB_BITS - 1);
        digit = result + (Radix::VALUE & (0 - borrow));
    };
    for (std::size_t i = 0; i < subtrahend.size(); ++i)
        step(difference[i], subtrahend[i]);
    for (std::size_t i = subtrahend.size(); i < difference.size() && borrow != 0; ++i)
        step(difference[i], 0);
    assert(borrow == 0);
}

// Computes difference = |a - b| and returns whether a < b. The difference has as many digits as a,
// and b has no more digits than a.
template <typename Radix>
[[nodiscard]] bool absoluteDifference(std::span<Limb> difference, std::span<const Limb> a,
                                      std::span<const Limb> b) {
    std::fill(std::copy(b.begin(), b.end(), difference.begin()), difference.end(), 0);
    const bool isLess =
        std::lexicographical_compare(a.rbegin(), a.rend(), difference.rbegin(), difference.rend());
    if (!isLess)
        std::copy(a.begin(), a.end(), difference.begin());
    subtract<Radix>(difference, isLess ? a : b);
    return isLess;
}

// Returns the number of zero digits at the low end. When text is read, the weights have some: they
// are powers of ten, and 10^n is divisible by 2^n.
[[nodiscard]] inline std::size_t lowZeros(std::span<const Limb> digits) {
    const auto isSet = [](Limb digit) { return digit != 0; };
    return static_cast<std::size_t>(std::find_if(digits.begin(), digits.end(), isSet) -
                                    digits.begin());
}

// Computes product = a * b, column by column. Both factors have the same size, which is below
// KARATSUBA_SIZE, so the products of a column plus the carry never exceed MAX_SUM.
template <typename Radix>
void multiplyColumns(std::span<Limb> product, std::span<const Limb> a, std::span<const Limb> b) {
    constexpr DoubleLimb MAX_CARRY = Radix::MAX_SUM / Radix::VALUE;
    constexpr DoubleLimb MAX_PRODUCT = DoubleLimb{Radix::VALUE - 1} * (Radix::VALUE - 1);
    static_assert((Radix::MAX_SUM - MAX_CARRY) / MAX_PRODUCT >= KARATSUBA_SIZE);
    assert(a.size() == b.size() && a.size() < KARATSUBA_SIZE);
    assert(product.size() == a.size() + b.size());
    // Skips the low zeros of a weight a (see lowZeros()), and the zeros that pad a group b to its
    // size. Otherwise the benchmark row "parse decimal, 65536 b" takes 25 % longer.
    const std::size_t zeros = lowZeros(a);
    for (; !b.empty() && b.back() == 0; b = b.first(b.size() - 1)) {
        product.back() = 0;
        product = product.first(product.size() - 1);
    }
    DoubleLimb carry = 0;
    for (std::size_t column = 0; column + 1 < product.size(); ++column) {
        const std::size_t end = std::min(column + 1, a.size());
        std::size_t i = std::max(zeros, column < b.size() ? 0 : column - b.size() + 1);
        // Neither of the two sums waits for the other. With one sum, the benchmark row "parse
        // decimal, 65536 b" takes 7 % longer.
        DoubleLimb even = carry;
        DoubleLimb odd = 0;
        for (; i + 1 < end; i += 2) {
            even += DoubleLimb{a[i]} * b[column - i];
            odd += DoubleLimb{a[i + 1]} * b[column - i - 1];
        }
        if (i < end)
            even += DoubleLimb{a[i]} * b[column - i];
        product[column] = Radix::split(even + odd, carry);
    }
    // The product is below VALUE^product.size(), so the last carry is its highest digit.
    assert(carry < Radix::VALUE);
    product.back() = static_cast<Limb>(carry);
}

// Returns the size of the scratch space of multiply(). A level of the recursion whose low halves
// have h digits takes 4 * h + 1 limbs. At level k, counted from 1, h is at most size / 2^k + 1. So
// all levels, at most 64, take at most 4 * size + 5 * 64 limbs.
[[nodiscard]] constexpr std::size_t scratchFor(std::size_t size) {
    return 4 * size + std::size_t{5} * 64;
}

// Computes product = a * b from three products of halves. Both factors have the same size. With
// a = a1 * VALUE^half + a0 and b = b1 * VALUE^half + b0, the middle of the product is
// a1 b0 + a0 b1 = a0 b0 + a1 b1 - (a0 - a1)(b0 - b1).
template <typename Radix>
void multiply(std::span<Limb> product, std::span<const Limb> a, std::span<const Limb> b,
              std::span<Limb> scratch) {
    if (a.size() < KARATSUBA_SIZE)
        return multiplyColumns<Radix>(product, a, b);
    const std::size_t half = (a.size() + 1) / 2; // a high half may have one digit less
    assert(scratch.size() > 4 * half);
    const auto cross = scratch.first(2 * half);
    const auto middle = scratch.subspan(2 * half, 2 * half + 1);
    const auto rest = scratch.subspan(4 * half + 1);
    const auto low = product.first(2 * half);
    const auto high = product.subspan(2 * half);
    // The part `low` of the product is still free, and the differences fit in it.
    const bool aLess = absoluteDifference<Radix>(low.first(half), a.first(half), a.subspan(half));
    const bool bLess = absoluteDifference<Radix>(low.last(half), b.first(half), b.subspan(half));
    multiply<Radix>(cross, low.first(half), low.last(half), rest);
    multiply<Radix>(low, a.first(half), b.first(half), rest);
    multiply<Radix>(high, a.subspan(half), b.subspan(half), rest);

    // The sums fit `middle`: a0 b0, a1 b1, a1 b0 and a0 b1 are each below VALUE^(2 * half). So
    // a0 b0 + a1 b1 and the result, a1 b0 + a0 b1, are below 2 * VALUE^(2 * half): their highest
    // digit is 0 or 1.
    *std::copy(low.begin(), low.end(), middle.begin()) = 0;
    add<Radix>(middle, high);
    if (aLess == bLess)
        subtract<Radix>(middle, cross);
    else
        add<Radix>(middle, cross);
    // `middle` has 2 * half + 1 digits. It is added to the upper 2 * a.size() - half digits of the
    // product, which are enough if a.size() >= 4. The sum is the product of a and b, so it fits.
    static_assert(KARATSUBA_SIZE >= 4);
    add<Radix>(product.subspan(half), middle);
}

} // namespace KelRT::numbers::divide_and_conquer
