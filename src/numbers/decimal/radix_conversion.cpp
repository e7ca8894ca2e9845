// SPDX-License-Identifier: MIT
//
// Radix conversion by divide and conquer, both ways. The digits of the source radix are joined in
// small groups, then neighbouring groups are joined in pairs, high * weight + low, round after
// round, always in the arithmetic of the target radix. The weight is squared from round to round.
// So nothing wide is ever divided.
//
// Memory: 4.5 times the result. In the last round these are the groups, their weight (half as
// long), the joined groups and the scratch space (twice as long).
#include "numbers/decimal/radix_conversion.h"

#include "common/u64.h"
#include "numbers/decimal/radix_arithmetic.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace KelRT::numbers::divide_and_conquer {
namespace {

// number = number * factor + addend. The factor is at most Radix::SOURCE, the addend is below it.
template <typename Radix>
void multiplyAdd(Digits& number, DoubleLimb factor, Limb addend) {
    // Each sum is at most (VALUE - 1) * SOURCE + SOURCE - 1, so the carry stays below SOURCE.
    static_assert(DoubleLimb{Radix::VALUE} * Radix::SOURCE - 1 <= Radix::MAX_SUM);
    DoubleLimb carry = addend;
    for (Limb& digit : number)
        digit = Radix::split(digit * factor + carry, carry);
    while (carry != 0)
        number.push_back(Radix::split(carry, carry));
}

// Numbers with as many digits as the weight; number i counts weight^i times.
struct Groups {
    Digits digits;
    Digits weight;
};

// The most source digits in an initial group: few, because building a group by repeated
// multiplyAdd() takes quadratic time. Measured with the benchmark row "parse decimal, 65536 b":
// with 6 it takes 13 % longer, with 24 it takes 4 % longer.
constexpr unsigned MAX_GROUP_SIZE = 12;

// Joins the source digits in groups, whose number is a power of two; the last ones may be 0. At
// least 6/7 of several groups have source digits: half as many groups of 12 would not do, so there
// are more than 6 source digits to a group, rounded up to 7 or more.
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

// weight^2. As `weight` has no leading zero digit, the square has at most one; it is dropped.
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

// Joins the groups, at least two, in pairs: high * weight + low. The last pair needs no weight.
template <typename Radix>
Groups joinPairs(const Groups& groups, std::span<Limb> scratch) {
    const std::span<const Limb> weight = groups.weight;
    const std::span<const Limb> digits = groups.digits;
    const std::size_t size = weight.size();
    const std::size_t pairs = digits.size() / (2 * size);
    Groups joined;
    if (pairs > 1)
        joined.weight = squareOf<Radix>(weight, scratch);
    // A pair is below weight^2, so if that has one digit less than multiply() writes, the highest
    // is 0, and the next pair overwrites it.
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

// Returns the value without leading zeros, but with at least one digit.
template <typename Radix>
Digits convert(std::span<const Limb> source) {
    Groups groups = initialGroups<Radix>(source);
    // The last factors are the largest. They have half the digits of all groups, or fewer.
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
