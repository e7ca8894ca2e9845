// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Number.h"
#include "common/hex.h"
#include "common/memory.h"
#include "common/u64.h"
#include "numbers/bit_text.h"
#include "numbers/decimal/print.h"
#include "numbers/limb.h"
#include "numbers/radix.h"

#include <algorithm>
#include <bit>
#include <span>

namespace KelRT {
namespace numbers {
namespace {

// Returns the bit width of the number, as std::bit_width does.
std::uint64_t significantBits(std::span<const std::uint16_t> words) {
    std::size_t count = words.size();
    while (count > 0 && words[count - 1] == 0)
        --count;
    if (count == 0)
        return 0;
    return std::uint64_t{16} * (count - 1) +
           static_cast<unsigned>(std::bit_width(words[count - 1]));
}

// Prints digits of DIGIT_BITS bits, the lowest first, from the end of the text. Three or four words
// make a group of digits. write(end, group, count) writes the low `count` digits of `group` before
// `end`.
template <unsigned DIGIT_BITS, typename Write>
std::string powerOfTwoText(std::span<const std::uint16_t> words, std::size_t minDigits, char filler,
                           Write write) {
    constexpr unsigned GROUP_WORDS = DIGIT_BITS == 3 ? 3 : 4;
    constexpr unsigned GROUP_BITS = 16 * GROUP_WORDS;
    constexpr std::size_t GROUP_DIGITS = GROUP_BITS / DIGIT_BITS;
    static_assert(GROUP_BITS % DIGIT_BITS == 0);
    const std::uint64_t significant = common::divideUp(significantBits(words), DIGIT_BITS);
    auto digits = common::checkedCount<char>(std::max<std::uint64_t>(significant, 1));
    std::string text(common::checkedCount<char>(std::max(digits, minDigits)), filler);
    char* end = text.data() + text.size();
    for (std::size_t word = 0; digits > 0; word += GROUP_WORDS) {
        const std::size_t count = std::min(digits, GROUP_DIGITS);
        const Limb limb = loadLimb(words.subspan(word));
        write(end, limb & common::lowBits(GROUP_BITS), static_cast<unsigned>(count));
        end -= count;
        digits -= count;
    }
    return text;
}

} // namespace
} // namespace numbers

std::string Kel_Number::toString(char radix) const {
    const auto minDigits = [this](unsigned digitBits) {
        return numbers::minimumDigits(bitCount, digitBits);
    };
    switch (numbers::radixOf(radix)) {
    case 2:
        return numbers::powerOfTwoText<1>(words, minDigits(1), '0', numbers::writeBinary);
    case 8:
        return numbers::powerOfTwoText<3>(words, minDigits(3), '0', numbers::writeOctal);
    case 10:
        return numbers::decimalText(words, bitCount, numbers::printsSigned(radix) && isNegative());
    case 16: {
        const char firstLetter = radix == 'x' ? 'a' : 'A';
        return numbers::powerOfTwoText<4>(
            words, minDigits(4), '0',
            [firstLetter](char* end, numbers::Limb group, unsigned count) {
                common::writeHex(end, group, count, firstLetter);
            });
    }
    case 256:
        return numbers::powerOfTwoText<8>(words, minDigits(8), ' ', numbers::writeBytes);
    default:
        return "bad format for number";
    }
}

} // namespace KelRT
