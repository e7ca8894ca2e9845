// SPDX-License-Identifier: MIT
#include "numbers/wide_decimal.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace KelRT::numbers {
namespace {

using Numeral = std::vector<Limb>; // digits of a base, the lowest one first

// The directions. BASE is that of the digits which are wanted, and less than a limb, so that sums
// of products fit two limbs. WEIGHT is the base of the digits which are given. `split` takes a sum
// up to GREATEST_SUM apart: into the digit of its column and what is carried to the next one.

struct ToDecimal {
    static constexpr Limb BASE = 100'000'000'000'000'000;
    static_assert(PRINTED_CHUNK_DIGITS == 17);
    static constexpr DoubleLimb WEIGHT = DoubleLimb{1} << LIMB_BITS;
    static constexpr DoubleLimb GREATEST_SUM = BASE * WEIGHT - 1; // the carry fits a limb

    static Limb split(DoubleLimb sum, DoubleLimb& carry) {
        constexpr unsigned UNUSED_BITS = 7;
        static_assert(BASE >> (LIMB_BITS - UNUSED_BITS) == 0);
        const DoubleLimb scaled = sum << UNUSED_BITS;
        auto rest = static_cast<Limb>(scaled >> LIMB_BITS);
        carry = divideLimb<(BASE << UNUSED_BITS)>(static_cast<Limb>(scaled), rest);
        return rest >> UNUSED_BITS;
    }
};

struct FromDecimal {
    static constexpr Limb BASE = Limb{1} << READ_LIMB_BITS;
    static constexpr DoubleLimb WEIGHT = READ_CHUNK_BASE;
    static constexpr DoubleLimb GREATEST_SUM = ~DoubleLimb{0};

    static Limb split(DoubleLimb sum, DoubleLimb& carry) {
        carry = sum >> READ_LIMB_BITS;
        return static_cast<Limb>(sum) & (BASE - 1);
    }
};

/// sum += addend, which has as many digits at most. \return the carry, 0 or 1
template <class To>
Limb add(Limb* sum, std::size_t sumSize, const Limb* addend, std::size_t size) {
    Limb carry = 0;
    const auto step = [&carry](Limb& digit, Limb other) {
        const Limb total = digit + other + carry;
        carry = total >= To::BASE ? 1 : 0;
        digit = total - (To::BASE & (0 - carry));
    };
    for (std::size_t i = 0; i < size; ++i)
        step(sum[i], addend[i]);
    for (std::size_t i = size; i < sumSize && carry != 0; ++i)
        step(sum[i], 0);
    return carry;
}

/// rest -= subtrahend, which has as many digits at most. \return the borrow, 0 or 1
template <class To>
Limb subtract(Limb* rest, std::size_t restSize, const Limb* subtrahend, std::size_t size) {
    Limb borrow = 0;
    const auto step = [&borrow](Limb& digit, Limb other) {
        const Limb difference = digit - other - borrow;
        borrow = difference >> (LIMB_BITS - 1);
        digit = difference + (To::BASE & (0 - borrow));
    };
    for (std::size_t i = 0; i < size; ++i)
        step(rest[i], subtrahend[i]);
    for (std::size_t i = size; i < restSize && borrow != 0; ++i)
        step(rest[i], 0);
    return borrow;
}

/// distance = |a - b| of \a size digits, of which b has \a bSize at most. \return whether a < b
template <class To>
bool subtractSmaller(Limb* distance, const Limb* a, std::size_t size, const Limb* b,
                     std::size_t bSize) {
    std::size_t top = size; // above it a and b are the same
    while (top > bSize && a[top - 1] == 0)
        --top;
    while (top > 0 && top <= bSize && a[top - 1] == b[top - 1])
        --top;
    const bool isBelow = top > 0 && top <= bSize && a[top - 1] < b[top - 1];
    std::fill(distance + top, distance + size, 0);
    const Limb* const larger = isBelow ? b : a;
    std::copy(larger, larger + top, distance);
    subtract<To>(distance, top, isBelow ? a : b, std::min(top, bSize));
    return isBelow;
}

/// From so many digits on three products of halves are quicker than columns.
constexpr std::size_t KARATSUBA_SIZE = 60;

/// product = a * b, column by column. The shorter factor has less than KARATSUBA_SIZE digits, so
/// many products are added up at most.
template <class To>
void multiplyColumns(Limb* product, const Limb* a, std::size_t aSize, const Limb* b,
                     std::size_t bSize) {
    constexpr DoubleLimb greatestCarry = To::GREATEST_SUM / To::BASE;
    constexpr DoubleLimb greatestProduct = DoubleLimb{To::BASE - 1} * (To::BASE - 1);
    static_assert((To::GREATEST_SUM - greatestCarry) / greatestProduct >= KARATSUBA_SIZE);
    DoubleLimb carry = 0;
    for (std::size_t column = 0; column + 1 < aSize + bSize; ++column) {
        const std::size_t end = std::min(column + 1, aSize);
        std::size_t i = column < bSize ? 0 : column - bSize + 1;
        DoubleLimb even = carry; // two sums, of which neither waits for the other
        DoubleLimb odd = 0;
        for (; i + 1 < end; i += 2) {
            even += DoubleLimb{a[i]} * b[column - i];
            odd += DoubleLimb{a[i + 1]} * b[column - i - 1];
        }
        if (i < end)
            even += DoubleLimb{a[i]} * b[column - i];
        product[column] = To::split(even + odd, carry);
    }
    product[aSize + bSize - 1] = static_cast<Limb>(carry);
}

/// The limbs that multiplyHalves needs besides its product.
constexpr std::size_t scratchFor(std::size_t size) {
    return 4 * size + std::size_t{8} * LIMB_BITS; // 4 * low + 1 for each halving
}

/// product = a * b, of \a size digits each. A. Karatsuba, Y. Ofman, 1962: of the halves,
/// a1 b0 + a0 b1 = a0 b0 + a1 b1 - (a0 - a1)(b0 - b1).
template <class To>
void multiplyHalves(Limb* product, const Limb* a, const Limb* b, std::size_t size, Limb* scratch) {
    if (size < KARATSUBA_SIZE) {
        multiplyColumns<To>(product, a, size, b, size);
        return;
    }
    const std::size_t low = (size + 1) / 2;
    const std::size_t high = size - low;
    Limb* const cross = scratch;
    Limb* const middle = cross + 2 * low;
    Limb* const rest = middle + 2 * low + 1;
    // The differences stand where the product will.
    const bool aBelow = subtractSmaller<To>(product, a, low, a + low, high);
    const bool bBelow = subtractSmaller<To>(product + low, b, low, b + low, high);
    multiplyHalves<To>(cross, product, product + low, low, rest);
    multiplyHalves<To>(product, a, b, low, rest);
    multiplyHalves<To>(product + 2 * low, a + low, b + low, high, rest);

    std::copy(product, product + 2 * low, middle);
    Limb top = add<To>(middle, 2 * low, product + 2 * low, 2 * high);
    if (aBelow == bBelow)
        top -= subtract<To>(middle, 2 * low, cross, 2 * low);
    else
        top += add<To>(middle, 2 * low, cross, 2 * low);
    middle[2 * low] = top;
    add<To>(product + low, 2 * size - low, middle, 2 * low + 1);
}

/// product = a * b, of any sizes from 1 digit up; the product has as many as both together.
template <class To>
void multiply(Limb* product, const Limb* a, std::size_t aSize, const Limb* b, std::size_t bSize,
              Limb* scratch) {
    if (aSize < bSize) {
        multiply<To>(product, b, bSize, a, aSize, scratch);
        return;
    }
    if (bSize < KARATSUBA_SIZE) {
        multiplyColumns<To>(product, a, aSize, b, bSize);
        return;
    }
    // The longer factor in pieces of the size of the shorter one, and a last one that is shorter.
    multiplyHalves<To>(product, a, b, bSize, scratch);
    Numeral part(2 * bSize);
    for (std::size_t at = bSize; at < aSize; at += bSize) {
        const std::size_t size = std::min(bSize, aSize - at);
        if (size == bSize)
            multiplyHalves<To>(part.data(), a + at, b, size, scratch);
        else
            multiply<To>(part.data(), b, bSize, a + at, size, scratch);
        std::fill(product + at + bSize, product + at + bSize + size, 0);
        add<To>(product + at, bSize + size, part.data(), bSize + size);
    }
}

/// numeral = numeral * WEIGHT + \a digit
template <class To>
void append(Numeral& numeral, Limb digit) {
    DoubleLimb carry = digit;
    for (Limb& each : numeral)
        each = To::split(each * To::WEIGHT + carry, carry);
    while (carry != 0)
        numeral.push_back(To::split(carry, carry));
}

/// Numbers of the same size in a row, each of \a weight times the one before it.
struct Row {
    Numeral digits; // the last number may have fewer
    Numeral weight; // its size is that of the numbers
};

/// The \a given digits in groups of at most twelve, which is few enough for one to be appended
/// after the other, and all of about the same size.
template <class To>
Row firstRow(const Limb* given, std::size_t count) {
    std::size_t group = count;
    while (group > 12)
        group -= group / 2;
    assert(group > 0);
    Row row{{}, {1}};
    for (std::size_t i = 0; i < group; ++i)
        append<To>(row.weight, 0);
    const std::size_t size = row.weight.size();
    row.digits.reserve(size * (count / group + 1));
    Numeral number;
    number.reserve(size);
    for (std::size_t at = 0; at < count; at += group) {
        number.clear();
        for (std::size_t i = std::min(at + group, count); i-- > at;)
            append<To>(number, given[i]);
        number.resize(size);
        row.digits.insert(row.digits.end(), number.begin(), number.end());
    }
    return row;
}

/// Joins the numbers of \a row, which has two at least, in pairs; what is above \a room digits is
/// dropped.
template <class To>
Row joinPairs(const Row& row, std::size_t room) {
    const std::size_t size = row.weight.size();
    // A power of ten ends with a row of zeros in base 2, too: they need not be multiplied.
    const auto zeros = static_cast<std::size_t>(
        std::find_if(row.weight.begin(), row.weight.end(), [](Limb d) { return d != 0; }) -
        row.weight.begin());
    if (zeros == size) // of all that fits, the higher numbers change nothing
        return {{row.digits.begin(), row.digits.begin() + static_cast<std::ptrdiff_t>(size)},
                row.weight};
    const Limb* const factor = row.weight.data() + zeros;
    const std::size_t factorSize = size - zeros;
    Numeral scratch(scratchFor(size));
    Numeral product(2 * size);

    Row joined{{}, Numeral(2 * size)};
    if (row.digits.size() > 2 * size) { // else there is no further round
        multiplyHalves<To>(joined.weight.data() + 2 * zeros, factor, factor, factorSize,
                           scratch.data());
        if (joined.weight.back() == 0)
            joined.weight.pop_back();
    }
    joined.weight.resize(std::min(joined.weight.size(), room));
    const auto joinedSize = static_cast<std::ptrdiff_t>(joined.weight.size());

    joined.digits.reserve((row.digits.size() / (2 * size) + 1) * joined.weight.size());
    const Limb* low = row.digits.data();
    const Limb* const end = low + row.digits.size();
    for (; end - low > static_cast<std::ptrdiff_t>(size); low += 2 * size) {
        const Limb* const high = low + size;
        const std::size_t highSize = std::min(size, static_cast<std::size_t>(end - high));
        std::fill(product.begin(), product.end(), 0);
        multiply<To>(product.data() + zeros, factor, factorSize, high, highSize, scratch.data());
        add<To>(product.data(), 2 * size, low, size);
        joined.digits.insert(joined.digits.end(), product.begin(), product.begin() + joinedSize);
        if (highSize < size || high + size == end)
            return joined;
    }
    joined.digits.insert(joined.digits.end(), low, end); // the last number, without a partner
    return joined;
}

template <class To>
Numeral convert(const Limb* given, std::size_t count, std::size_t room) {
    Row row = firstRow<To>(given, count);
    while (row.digits.size() > row.weight.size())
        row = joinPairs<To>(row, room);
    Numeral& digits = row.digits;
    digits.resize(std::min(digits.size(), room));
    while (digits.size() > 1 && digits.back() == 0)
        digits.pop_back();
    return std::move(digits);
}

} // namespace

std::vector<Limb> toDecimalChunks(const Limb* limbs, std::size_t count) {
    return convert<ToDecimal>(limbs, count, 2 * count);
}

std::vector<Limb> fromDecimalChunks(const std::vector<Limb>& chunks, std::size_t room) {
    return convert<FromDecimal>(chunks.data(), chunks.size(), room);
}

} // namespace KelRT::numbers
