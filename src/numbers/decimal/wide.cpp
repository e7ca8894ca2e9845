// SPDX-License-Identifier: MIT
//
// Radix conversion by divide and conquer, both ways. The digits of the source radix are joined in
// small groups, then neighbouring groups are joined in pairs, high * weight + low, round after
// round, always in the arithmetic of the target radix. The weight is squared from round to round.
// So nothing wide is ever divided.
//
// Products use A. Karatsuba's method (with Y. Ofman, 1962): twice the width costs about three times
// as much, n^1.58 in all. Faster methods for still wider numbers are not worth their code here.
// Memory: the groups and the weights of two rounds; `pair` and `part`, each as long as two groups;
// the scratch space.
#include "numbers/decimal/wide.h"

#include "numbers/decimal/narrow.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace KelRT::numbers {
namespace {

using Digits = std::vector<Limb>; // of the target radix, the lowest first

// Policies: BASE is the target radix, at most 2^63, so that add() cannot overflow and subtract()
// finds the borrow in the top bit. split() divides a sum of at most MAX_SUM by BASE: the remainder
// is a digit, the quotient the carry.

struct DecimalTarget {
    static constexpr Limb BASE = POWERS_OF_TEN[WIDE_PRINT_CHUNK_DIGITS];
    static constexpr DoubleLimb SOURCE_RADIX = DoubleLimb{1} << LIMB_BITS;
    static constexpr DoubleLimb MAX_SUM = BASE * SOURCE_RADIX - 1; // the carry is below 2^64

    static Limb split(DoubleLimb sum, DoubleLimb& carry) {
        // divideLimb() requires the divisor's top bit to be set, so divisor and dividend are
        // scaled.
        constexpr unsigned SCALE = 7;
        static_assert(BASE >> (LIMB_BITS - SCALE - 1) == 1);
        const DoubleLimb scaled = sum << SCALE;
        auto remainder = static_cast<Limb>(scaled >> LIMB_BITS);
        carry = divideLimb<(BASE << SCALE)>(static_cast<Limb>(scaled), remainder);
        return remainder >> SCALE;
    }
};

struct BinaryTarget {
    static constexpr Limb BASE = Limb{1} << WIDE_READ_RADIX_BITS;
    static constexpr DoubleLimb SOURCE_RADIX = POWERS_OF_TEN[WIDE_READ_CHUNK_DIGITS];
    static constexpr DoubleLimb MAX_SUM = ~DoubleLimb{0};

    static Limb split(DoubleLimb sum, DoubleLimb& carry) {
        carry = sum >> WIDE_READ_RADIX_BITS;
        return static_cast<Limb>(sum) & (BASE - 1);
    }
};

// sum += addend, which is no longer than sum. Returns the carry.
template <typename Target>
Limb add(Limb* sum, std::size_t sumSize, const Limb* addend, std::size_t size) {
    Limb carry = 0;
    const auto step = [&carry](Limb& digit, Limb other) {
        const Limb total = digit + other + carry;
        carry = total >= Target::BASE ? 1 : 0;
        digit = total - (Target::BASE & (0 - carry));
    };
    for (std::size_t i = 0; i < size; ++i)
        step(sum[i], addend[i]);
    for (std::size_t i = size; i < sumSize && carry != 0; ++i)
        step(sum[i], 0);
    return carry;
}

// difference -= subtrahend, which has no more digits than `difference`. Returns the borrow.
template <typename Target>
Limb subtract(Limb* difference, std::size_t differenceSize, const Limb* subtrahend,
              std::size_t size) {
    Limb borrow = 0;
    const auto step = [&borrow](Limb& digit, Limb other) {
        const Limb result = digit - other - borrow;
        borrow = result >> (LIMB_BITS - 1);
        digit = result + (Target::BASE & (0 - borrow));
    };
    for (std::size_t i = 0; i < size; ++i)
        step(difference[i], subtrahend[i]);
    for (std::size_t i = size; i < differenceSize && borrow != 0; ++i)
        step(difference[i], 0);
    return borrow;
}

// difference = |a - b|, of size digits; b has bSize <= size digits. Returns whether a < b.
template <typename Target>
bool absoluteDifference(Limb* difference, const Limb* a, std::size_t size, const Limb* b,
                        std::size_t bSize) {
    std::size_t top = size; // the digits from index `top` on are equal
    while (top > bSize && a[top - 1] == 0)
        --top;
    while (top > 0 && top <= bSize && a[top - 1] == b[top - 1])
        --top;
    const bool isLess = top > 0 && top <= bSize && a[top - 1] < b[top - 1];
    std::fill(difference + top, difference + size, 0);
    const Limb* const larger = isLess ? b : a;
    std::copy(larger, larger + top, difference);
    subtract<Target>(difference, top, isLess ? a : b, std::min(top, bSize));
    return isLess;
}

// product = a * b, column by column. The shorter factor has fewer than KARATSUBA_SIZE digits, so
// the products of a column plus the carry never exceed MAX_SUM.
template <typename Target>
void multiplyColumns(Limb* product, const Limb* a, std::size_t aSize, const Limb* b,
                     std::size_t bSize) {
    constexpr DoubleLimb MAX_CARRY = Target::MAX_SUM / Target::BASE;
    constexpr DoubleLimb MAX_PRODUCT = DoubleLimb{Target::BASE - 1} * (Target::BASE - 1);
    static_assert((Target::MAX_SUM - MAX_CARRY) / MAX_PRODUCT >= KARATSUBA_SIZE);
    DoubleLimb carry = 0;
    for (std::size_t column = 0; column + 1 < aSize + bSize; ++column) {
        const std::size_t end = std::min(column + 1, aSize);
        std::size_t i = column < bSize ? 0 : column - bSize + 1;
        // Two sums, so that neither waits for the other; with one, the benchmark row "parse
        // decimal, 65536 b" takes 7 % longer.
        DoubleLimb even = carry;
        DoubleLimb odd = 0;
        for (; i + 1 < end; i += 2) {
            even += DoubleLimb{a[i]} * b[column - i];
            odd += DoubleLimb{a[i + 1]} * b[column - i - 1];
        }
        if (i < end)
            even += DoubleLimb{a[i]} * b[column - i];
        product[column] = Target::split(even + odd, carry);
    }
    product[aSize + bSize - 1] = static_cast<Limb>(carry);
}

// The scratch space of multiplyKaratsuba(). A level whose low halves have h digits takes 4 * h + 1
// limbs. At level k, counted from 1, h is at most size / 2^k + 1: in all 4 * size, plus 5 for each
// of at most 64 levels.
constexpr std::size_t scratchFor(std::size_t size) {
    return 4 * size + std::size_t{5} * 64;
}

// product = a * b, both of size digits, by three products of halves:
// a1 b0 + a0 b1 = a0 b0 + a1 b1 - (a0 - a1)(b0 - b1).
template <typename Target>
void multiplyKaratsuba(Limb* product, const Limb* a, const Limb* b, std::size_t size,
                       Limb* scratch) {
    if (size < KARATSUBA_SIZE)
        return multiplyColumns<Target>(product, a, size, b, size);
    const std::size_t low = (size + 1) / 2;
    const std::size_t high = size - low;
    Limb* const cross = scratch;
    Limb* const middle = cross + 2 * low;
    Limb* const rest = middle + 2 * low + 1;
    // The differences use the space of the product.
    const bool aLess = absoluteDifference<Target>(product, a, low, a + low, high);
    const bool bLess = absoluteDifference<Target>(product + low, b, low, b + low, high);
    multiplyKaratsuba<Target>(cross, product, product + low, low, rest);
    multiplyKaratsuba<Target>(product, a, b, low, rest);
    multiplyKaratsuba<Target>(product + 2 * low, a + low, b + low, high, rest);

    std::copy(product, product + 2 * low, middle);
    Limb top = add<Target>(middle, 2 * low, product + 2 * low, 2 * high);
    if (aLess == bLess)
        top -= subtract<Target>(middle, 2 * low, cross, 2 * low);
    else
        top += add<Target>(middle, 2 * low, cross, 2 * low);
    middle[2 * low] = top;
    add<Target>(product + low, 2 * size - low, middle, 2 * low + 1);
}

// product = a * b, of at least one digit each. The product has aSize + bSize digits.
template <typename Target>
void multiply(Limb* product, const Limb* a, std::size_t aSize, const Limb* b, std::size_t bSize,
              Limb* scratch) {
    if (aSize < bSize)
        return multiply<Target>(product, b, bSize, a, aSize, scratch);
    if (bSize < KARATSUBA_SIZE)
        return multiplyColumns<Target>(product, a, aSize, b, bSize);
    // The longer factor in pieces of bSize digits; the last may be shorter.
    multiplyKaratsuba<Target>(product, a, b, bSize, scratch);
    Digits part(2 * bSize);
    for (std::size_t at = bSize; at < aSize; at += bSize) {
        const std::size_t size = std::min(bSize, aSize - at);
        if (size == bSize)
            multiplyKaratsuba<Target>(part.data(), a + at, b, size, scratch);
        else
            multiply<Target>(part.data(), b, bSize, a + at, size, scratch);
        std::fill(product + at + bSize, product + at + bSize + size, 0);
        add<Target>(product + at, bSize + size, part.data(), bSize + size);
    }
}

// number = number * factor + addend
template <typename Target>
void multiplyAdd(Digits& number, DoubleLimb factor, Limb addend) {
    DoubleLimb carry = addend;
    for (Limb& digit : number)
        digit = Target::split(digit * factor + carry, carry);
    while (carry != 0)
        number.push_back(Target::split(carry, carry));
}

// Numbers of as many digits as the weight; only the last may have fewer. Together they stand for
// the sum of number i * weight^i.
struct Groups {
    Digits digits;
    Digits weight;
};

// The most source digits in an initial group: few, because building a group by repeated
// multiplyAdd() takes quadratic time. Measured with the benchmark row "print decimal, 65536 b":
// with 6 it takes the same time, with 24 it takes 8 % longer.
constexpr std::size_t MAX_GROUP_SIZE = 12;

// Joins the source digits in groups of equal size; only the last may have fewer source digits. The
// number of groups is close to a power of two, so the last rounds join numbers of similar size.
template <typename Target>
Groups initialGroups(const Limb* source, std::size_t count) {
    const std::size_t maxGroups = std::bit_ceil((count + MAX_GROUP_SIZE - 1) / MAX_GROUP_SIZE);
    const std::size_t groupSize = (count + maxGroups - 1) / maxGroups;
    Groups groups{{}, {1}};
    for (std::size_t i = 0; i < groupSize; ++i)
        multiplyAdd<Target>(groups.weight, Target::SOURCE_RADIX, 0);
    const std::size_t size = groups.weight.size();
    groups.digits.reserve(size * maxGroups);
    Digits number;
    number.reserve(size);
    for (std::size_t at = 0; at < count; at += groupSize) {
        number.clear();
        for (std::size_t i = std::min(at + groupSize, count); i-- > at;)
            multiplyAdd<Target>(number, Target::SOURCE_RADIX, source[i]);
        number.resize(size);
        groups.digits.insert(groups.digits.end(), number.begin(), number.end());
    }
    return groups;
}

// 10^k is divisible by 2^k, so the low digits of a binary weight may be zero; products skip them.
// Otherwise the benchmark row "parse decimal, 65536 b" takes 23 % longer.
std::size_t lowZeros(const Digits& weight) {
    const auto isSet = [](Limb digit) { return digit != 0; };
    return static_cast<std::size_t>(std::find_if(weight.begin(), weight.end(), isSet) -
                                    weight.begin());
}

// weight^2. If `weight` has no leading zero digit, the square has at most one; it is dropped.
template <typename Target>
Digits squareOf(const Digits& weight, std::size_t zeros, Limb* scratch) {
    const Limb* const factor = weight.data() + zeros;
    Digits square(2 * weight.size());
    multiplyKaratsuba<Target>(square.data() + 2 * zeros, factor, factor, weight.size() - zeros,
                              scratch);
    if (square.back() == 0)
        square.pop_back();
    return square;
}

// Joins the groups, at least two, in pairs: high * weight + low. Drops digits above `maxDigits`.
template <typename Target>
Groups joinPairs(const Groups& groups, std::size_t maxDigits) {
    const Digits& weight = groups.weight;
    const std::size_t size = weight.size();
    const std::size_t digitCount = groups.digits.size();
    const std::size_t zeros = lowZeros(weight);
    if (zeros == size) // the weight is 0 modulo BASE^maxDigits, so only the lowest group matters
        return {Digits(groups.digits.begin(), groups.digits.begin() + std::ptrdiff_t(size)),
                weight};
    Digits scratch(scratchFor(size));
    // After the last round only the size of the weight matters.
    Groups joined{{},
                  digitCount <= 2 * size ? Digits(2 * size)
                                         : squareOf<Target>(weight, zeros, scratch.data())};
    joined.weight.resize(std::min(joined.weight.size(), maxDigits));
    joined.digits.reserve((digitCount / (2 * size) + 1) * joined.weight.size());
    Digits pair(2 * size);
    for (std::size_t at = 0; at < digitCount; at += 2 * size) {
        const Limb* const low = groups.digits.data() + at;
        const std::size_t pairSize = std::min(2 * size, digitCount - at);
        std::fill(pair.begin(), pair.end(), 0);
        if (pairSize > size)
            multiply<Target>(pair.data() + zeros, weight.data() + zeros, size - zeros, low + size,
                             pairSize - size, scratch.data());
        add<Target>(pair.data(), 2 * size, low, std::min(size, pairSize));
        const std::size_t kept = std::min(pairSize, joined.weight.size());
        joined.digits.insert(joined.digits.end(), pair.begin(),
                             pair.begin() + static_cast<std::ptrdiff_t>(kept));
    }
    return joined;
}

// At most `maxDigits` digits, without leading zeros; at least one digit.
template <typename Target>
Digits convert(const Limb* source, std::size_t count, std::size_t maxDigits) {
    Groups groups = initialGroups<Target>(source, count);
    while (groups.digits.size() > groups.weight.size())
        groups = joinPairs<Target>(groups, maxDigits);
    Digits& digits = groups.digits;
    digits.resize(std::min(digits.size(), maxDigits));
    while (digits.size() > 1 && digits.back() == 0)
        digits.pop_back();
    return std::move(digits);
}

} // namespace

std::vector<Limb> toDecimalChunks(const Limb* limbs, std::size_t count) {
    // Drops nothing: two chunks hold more than a limb.
    return convert<DecimalTarget>(limbs, count, 2 * count);
}

std::vector<Limb> fromDecimalChunks(const std::vector<Limb>& chunks, unsigned lastDigits,
                                    std::size_t exactDigits) {
    if (chunks.empty())
        return {};
    Digits number;
    if (chunks.size() > 1) {
        const std::vector<Limb> upper(chunks.rbegin() + 1, chunks.rend());
        number = convert<BinaryTarget>(upper.data(), upper.size(), exactDigits);
    }
    multiplyAdd<BinaryTarget>(number, POWERS_OF_TEN[lastDigits], chunks.back());
    return number;
}

} // namespace KelRT::numbers
