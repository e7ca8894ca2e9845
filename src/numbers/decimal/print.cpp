// SPDX-License-Identifier: MIT
//
// These functions print numbers as decimal text. The schoolbook engine yields one chunk of digits
// after another, the lowest first, so the text is written backwards. Divide and conquer yields all
// chunks at once.
#include "numbers/decimal/print.h"

#include "common/memory.h"
#include "numbers/decimal/engines.h"
#include "numbers/decimal/limb_text.h"
#include "numbers/decimal/natural.h"
#include "numbers/decimal/radix_conversion.h"
#include "numbers/decimal/schoolbook.h"

#include <algorithm>
#include <array>

namespace KelRT::numbers {
namespace {

// Writes the text before `end` and returns a pointer to its first character. The value is lost.
char* writeBySchoolbook(char* end, Natural& value, bool negative) {
    // Chunks have 19 digits. A value of more than four limbs is at least 2^256 > 10^76, so other
    // digits precede its four lowest chunks, and these keep their leading zeros. Likewise, a value
    // of more than one limb is at least 2^64 > 10^19, so other digits precede its lowest chunk.
    static_assert(PRINT_SCHOOLBOOK.chunkDigits == 19);
    while (value.size() > 4)
        for (const Limb chunk : schoolbook::takeFourChunks(value))
            end = writeNineteenDigits(end, chunk);
    while (value.size() > 1)
        end = writeNineteenDigits(end, schoolbook::takeChunk(value));
    end = writeDecimal(end, value.size() == 0 ? 0 : value.limbs().front());
    if (negative)
        *--end = '-';
    return end;
}

std::string textBySchoolbook(Natural& value, bool negative) {
    // The text of up to 512 bits is first written to the stack. If it is written straight to a
    // string, the benchmark row "print decimal, 64 b" takes 20 % longer.
    std::array<char, MAX_DIGITS_64 * Natural::INLINE_LIMBS + 1> small;
    const std::size_t room = MAX_DIGITS_64 * std::max<std::size_t>(value.size(), 1) + 1;
    if (room <= small.size()) {
        char* const end = small.data() + small.size();
        return {writeBySchoolbook(end, value, negative), end};
    }
    std::string text(room, '0');
    const char* const first = writeBySchoolbook(text.data() + room, value, negative);
    text.erase(0, static_cast<std::size_t>(first - text.data()));
    return text;
}

std::string textByDivideAndConquer(std::span<const Limb> limbs, bool negative) {
    const std::vector<Limb> chunks = divide_and_conquer::toDecimalChunks(limbs);
    std::array<char, MAX_DIGITS_64> highest;
    char* const highestEnd = highest.data() + highest.size();
    std::string text(negative ? "-" : "");
    text.append(writeDecimal(highestEnd, chunks.back()), highestEnd);
    constexpr std::uint64_t CHUNK_DIGITS = PRINT_DIVIDE_AND_CONQUER.chunkDigits;
    static_assert(CHUNK_DIGITS == 17);
    text.resize(common::checkedCount<char>(text.size() + CHUNK_DIGITS * (chunks.size() - 1)));
    char* end = text.data() + text.size();
    for (std::size_t i = 0; i + 1 < chunks.size(); ++i)
        end = writeSeventeenDigits(end, chunks[i]);
    return text;
}

} // namespace

std::string decimalText(std::span<const std::uint16_t> words, std::uint64_t bitCount,
                        bool negative) {
    Natural value(words);
    if (negative)
        value.negate(bitCount);
    return value.size() < PRINT_DIVIDE_AND_CONQUER.minLimbs
               ? textBySchoolbook(value, negative)
               : textByDivideAndConquer(value.limbs(), negative);
}

} // namespace KelRT::numbers
