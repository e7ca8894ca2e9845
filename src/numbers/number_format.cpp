// SPDX-License-Identifier: MIT
#include "numbers/number_format.h"

#include "KelRT/Kel_Number.h"
#include "common/bit_text.h"
#include "common/decimal.h"
#include "common/memory.h"
#include "common/words.h"
#include "numbers/limbs.h"
#include "numbers/radix.h"
#include "numbers/wide_decimal.h"

#include <algorithm>
#include <array>
#include <bit>
#include <vector>

namespace KelRT {
namespace numbers {
namespace {

/// How many bits the value of \a words has up to its highest one bit.
std::uint64_t significantBits(const std::vector<std::uint16_t>& words) {
    std::size_t count = words.size();
    while (count > 0 && words[count - 1] == 0)
        --count;
    if (count == 0)
        return 0;
    return std::uint64_t{16} * (count - 1) +
           static_cast<unsigned>(std::bit_width(words[count - 1]));
}

/// The base is a power of two: each digit is a field of bits. The digits are written from the last
/// one backwards, in groups of a whole number of words.
/// \param write writes the low digits of a group: write(end, group, count)
template <unsigned DigitBits, unsigned WordsInGroup, class Write>
std::string powerOfTwoText(const std::vector<std::uint16_t>& words, std::size_t leastDigits,
                           char filler, Write write) {
    constexpr unsigned GROUP_BITS = 16 * WordsInGroup;
    constexpr std::size_t GROUP_DIGITS = GROUP_BITS / DigitBits;
    static_assert(GROUP_BITS % DigitBits == 0);
    const std::uint64_t significant = (significantBits(words) + DigitBits - 1) / DigitBits;
    auto digits = common::checkedCount<char>(std::max<std::uint64_t>(significant, 1));
    std::string text(common::checkedCount<char>(std::max(digits, leastDigits)), filler);
    char* end = text.data() + text.size();
    for (std::size_t word = 0; digits > 0; word += WordsInGroup) {
        const std::size_t count = std::min(digits, GROUP_DIGITS);
        const Limb limb = loadLimb(words.data() + word, words.size() - word);
        write(end, limb & common::lowBits(GROUP_BITS), static_cast<unsigned>(count));
        end -= count;
        digits -= count;
    }
    return text;
}

/// Writes \a value, which is used up, and a '-' where asked for, so that the last digit stands
/// right before \a end. \return the first character
char* writeDecimal(char* end, Limbs& value, bool negative) {
    // Five limbs hold more than 76 digits: the four chunks are followed by further digits.
    while (value.size() > 4)
        for (const Limb chunk : value.takeFourChunks())
            end = common::writeChunk(end, chunk);
    while (value.size() > 1 || value.lowest() >= common::CHUNK_BASE)
        end = common::writeChunk(end, value.takeChunk());
    end = common::writeDecimal(end, value.lowest());
    if (negative)
        *--end = '-';
    return end;
}

/// The same for a wide value, from WIDE_PRINT_LIMBS limbs on.
std::string wideDecimalText(const Limbs& value, bool negative) {
    const std::vector<Limb> chunks = toDecimalChunks(value.data(), value.size());
    std::array<char, common::MOST_DECIMAL_DIGITS> highest;
    char* const highestEnd = highest.data() + highest.size();
    const char* const first = common::writeDecimal(highestEnd, chunks.back());
    std::string text(negative ? "-" : "");
    text.append(first, static_cast<std::size_t>(highestEnd - first));
    text.resize(common::checkedCount<char>(text.size() + std::uint64_t{PRINTED_CHUNK_DIGITS} *
                                                             (chunks.size() - 1)));
    char* end = text.data() + text.size();
    for (std::size_t i = 0; i + 1 < chunks.size(); ++i)
        end = common::writeSeventeen(end, chunks[i]);
    return text;
}

/// \param negative  prints '-' and the magnitude; the highest of the \a bitCount bits must be set
std::string decimalText(const std::vector<std::uint16_t>& words, std::uint64_t bitCount,
                        bool negative) {
    Limbs value(limbsFor(words.size()));
    value.load(words.data(), words.size());
    if (negative)
        value.negate(bitCount);
    if (value.size() >= WIDE_PRINT_LIMBS)
        return wideDecimalText(value, negative);
    const std::size_t room =
        common::MOST_DECIMAL_DIGITS * std::max<std::size_t>(value.size(), 1) + 1;
    std::array<char, common::MOST_DECIMAL_DIGITS * 8 + 1> small;
    if (room <= small.size()) {
        char* const end = small.data() + small.size();
        return {writeDecimal(end, value, negative), end};
    }
    std::string text(room, '0');
    const char* const first = writeDecimal(text.data() + room, value, negative);
    text.erase(0, static_cast<std::size_t>(first - text.data()));
    return text;
}

} // namespace
} // namespace numbers

std::string Kel_Number::toString(char radix) const {
    const auto least = [this](unsigned digitBits) {
        return numbers::minimumDigits(bitCount, digitBits);
    };
    switch (numbers::baseOf(radix)) {
    case 2:
        return numbers::powerOfTwoText<1, 4>(words, least(1), '0', common::writeBits);
    case 8:
        return numbers::powerOfTwoText<3, 3>(words, least(3), '0', common::writeOctal);
    case 10:
        return numbers::decimalText(words, bitCount, numbers::printsSigned(radix) && isNegative());
    case 16: {
        const char lettersFrom = radix == 'x' ? 'a' : 'A';
        return numbers::powerOfTwoText<4, 4>(
            words, least(4), '0', [lettersFrom](char* end, numbers::Limb group, unsigned count) {
                common::writeHex(end, group, count, lettersFrom);
            });
    }
    case 256:
        return numbers::powerOfTwoText<8, 4>(words, least(8), ' ', common::writeBytes);
    default:
        return "bad format for number";
    }
}

} // namespace KelRT
