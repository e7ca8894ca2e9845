// SPDX-License-Identifier: MIT
//
// This file converts between radices by divide and conquer. Small groups of source digits are
// converted one by one. Then each round joins neighbouring groups in pairs, high * weight + low,
// and squares the weight, until one group is left. Four groups of two digits, for example:
//
//   12 34 56 78   weight 100
//   1234 5678     weight 10000
//   12345678
//
// All arithmetic is in the target radix, so no wide number is ever divided.
//
// The last round needs the most memory, 4.5 times the result: the groups (1), their weight (0.5),
// the joined groups (1) and the scratch space (2).
#include "numbers/decimal/radix_conversion.h"

#include "common/u64.h"
#include "numbers/decimal/radix_arithmetic.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace KelRT::numbers::divide_and_conquer {
namespace {

// Computes number = number * factor + addend. The factor is at most Radix::SOURCE, the addend is
// below it.
template <typename Radix>
void multiplyAdd(Digits& number, DoubleLimb factor, Limb addend) {
    // Each sum is at most (VALUE - 1) * SOURCE + SOURCE - 1 = VALUE * SOURCE - 1, so the carry, its
    // quotient by VALUE, stays below SOURCE.
    static_assert(DoubleLimb{Radix::VALUE} * Radix::SOURCE - 1 <= Radix::MAX_SUM);
    DoubleLimb carry = addend;
    for (Limb& digit : number)
        digit = Radix::split(digit * factor + carry, carry);
    while (carry != 0)
        number.push_back(Radix::split(carry, carry));
}

// `digits` has the groups one after another, the lowest first, each with as many digits as the
// weight. Together they stand for the sum of group i * weight^i.
struct Groups {
    Digits digits;
    Digits weight;
};

// An initial group has at most this many source digits. Larger groups cost more, because repeated
// multiplyAdd() takes quadratic time. The benchmark row "parse decimal, 65536 b" takes 13 % longer
// with 6 and 4 % longer with 24.
constexpr unsigned MAX_GROUP_SIZE = 12;

// Converts the n source digits in groups. Their number, `count`, is a power of two, so the last
// groups may have no source digits and are 0. If count > 1, fewer than 1/7 of the groups are 0 for
// this reason. Proof:
//
//   n > 6 * count                                 count / 2 groups of 12 digits are too few
//   groupSize < n / count + 1 < 7/6 * n / count
//   n / groupSize > 6/7 * count                   at least so many groups have source digits
template <typename Radix>
Groups initialGroups(std::span<const Limb> source) {
    const std::size_t count = std::bit_ceil(common::divideUp(source.size(), MAX_GROUP_SIZE));
    const std::size_t groupSize = (source.size() + count - 1) / count;
    Groups groups{{}, {1}};
    for (std::size_t i = 0; i < groupSize; ++i)
        multiplyAdd<Radix>(groups.weight, Radix::SOURCE, 0);
    const std::size_t size = groups.weight.size();
    groups.digits.reserve(size * count);
    Digits number;
    number.reserve(size);
    while (!source.empty()) {
        const auto group = source.first(std::min(groupSize, source.size()));
        number.clear();
        std::for_each(group.rbegin(), group.rend(),
                      [&number](Limb digit) { multiplyAdd<Radix>(number, Radix::SOURCE, digit); });
        number.resize(size);
        groups.digits.insert(groups.digits.end(), number.begin(), number.end());
        source = source.subspan(group.size());
    }
    groups.digits.resize(size * count);
    return groups;
}

// Returns weight^2. As `weight` has no leading zero digit, the square has at most one, which is
// dropped.
template <typename Radix>
Digits squareOf(std::span<const Limb> weight, std::span<Limb> scratch) {
    Digits square(2 * weight.size());
    const std::size_t zeros = lowZeros(weight);
    const auto factor = weight.subspan(zeros);
    multiply<Radix>(std::span(square).subspan(2 * zeros), factor, factor, scratch);
    if (square.back() == 0)
        square.pop_back();
    return square;
}

// Joins the groups, at least two, in pairs: high * weight + low. A single joined group needs no
// weight and has none.
template <typename Radix>
Groups joinPairs(const Groups& groups, std::span<Limb> scratch) {
    const std::span<const Limb> weight = groups.weight;
    const std::span<const Limb> digits = groups.digits;
    const std::size_t size = weight.size();
    const std::size_t pairs = digits.size() / (2 * size);
    Groups joined;
    if (pairs > 1)
        joined.weight = squareOf<Radix>(weight, scratch);
    // A joined pair is below weight^2, which may have one digit less than the 2 * size digits that
    // multiply() writes. The highest digit is then 0, and the next pair overwrites it. For the last
    // pair, the `+ 1` makes room for it.
    const std::size_t joinedSize = pairs > 1 ? joined.weight.size() : 2 * size;
    joined.digits.resize(pairs * joinedSize + 1);
    for (std::size_t i = 0; i < pairs; ++i) {
        const auto pair = std::span(joined.digits).subspan(i * joinedSize, 2 * size);
        multiply<Radix>(pair, weight, digits.subspan((2 * i + 1) * size, size), scratch);
        add<Radix>(pair, digits.subspan(2 * i * size, size));
    }
    joined.digits.resize(pairs * joinedSize);
    return joined;
}

// Converts `source` to Radix. The result has no leading zeros, but at least one digit.
template <typename Radix>
Digits convert(std::span<const Limb> source) {
    Groups groups = initialGroups<Radix>(source);
    // The factors of the last round are the largest, with at most half the digits of all groups.
    Digits scratch(scratchFor(groups.digits.size() / 2));
    for (std::size_t count = groups.digits.size() / groups.weight.size(); count > 1; count /= 2)
        groups = joinPairs<Radix>(groups, scratch);
    Digits& digits = groups.digits;
    while (digits.size() > 1 && digits.back() == 0)
        digits.pop_back();
    return std::move(digits);
}

} // namespace

std::vector<Limb> toDecimalChunks(std::span<const Limb> limbs) {
    return convert<DecimalRadix>(limbs);
}

std::vector<Limb> fromDecimalChunks(std::span<const Limb> chunks, unsigned lowestDigits) {
    Digits number = convert<BinaryRadix>(chunks.subspan(1));
    multiplyAdd<BinaryRadix>(number, POWERS_OF_TEN[lowestDigits], chunks.front());
    return number;
}

} // namespace KelRT::numbers::divide_and_conquer
