// SPDX-License-Identifier: MIT
//
// From a number to decimal text. Below WIDE_PRINT_LIMBS limbs, the schoolbook engine (narrow.h)
// yields chunks of digits one after another, the lowest first, so the text is written backwards.
// For larger numbers, divide and conquer (wide.h) yields all chunks at once.
#include "numbers/decimal/print.h"

#include "common/memory.h"
#include "numbers/decimal/limb_text.h"
#include "numbers/decimal/narrow.h"
#include "numbers/decimal/wide.h"

#include <algorithm>
#include <array>

namespace KelRT::numbers {
namespace {

// Writes before `end` and returns the first character. Consumes the value.
char* writeNarrow(char* end, Natural& value, bool negative) {
    // More than four limbs have more than four chunks, so these four keep their leading zeros.
    while (value.size() > 4)
        for (const Limb chunk : value.takeFourChunks())
            end = writeNineteenDigits(end, chunk);
    while (value.size() > 1 || value.lowest() >= NARROW_CHUNK_BASE)
        end = writeNineteenDigits(end, value.takeChunk());
    end = writeDecimal(end, value.lowest());
    if (negative)
        *--end = '-';
    return end;
}

std::string narrowText(Natural& value, bool negative) {
    // The text of a number of up to 512 bits is first written to the stack. Written straight into
    // a string, it makes the benchmark row "print decimal, 64 b" take 20 % longer.
    std::array<char, MAX_DIGITS_64 * 8 + 1> small;
    const std::size_t room = MAX_DIGITS_64 * std::max<std::size_t>(value.size(), 1) + 1;
    if (room <= small.size()) {
        char* const end = small.data() + small.size();
        return {writeNarrow(end, value, negative), end};
    }
    std::string text(room, '0');
    const char* const first = writeNarrow(text.data() + room, value, negative);
    text.erase(0, static_cast<std::size_t>(first - text.data()));
    return text;
}

std::string wideText(const Natural& value, bool negative) {
    const std::vector<Limb> chunks = toDecimalChunks(value.data(), value.size());
    std::array<char, MAX_DIGITS_64> highest;
    char* const highestEnd = highest.data() + highest.size();
    std::string text(negative ? "-" : "");
    text.append(writeDecimal(highestEnd, chunks.back()), highestEnd);
    text.resize(common::checkedCount<char>(text.size() + std::uint64_t{WIDE_PRINT_CHUNK_DIGITS} *
                                                             (chunks.size() - 1)));
    static_assert(WIDE_PRINT_CHUNK_DIGITS == 17);
    char* end = text.data() + text.size();
    for (std::size_t i = 0; i + 1 < chunks.size(); ++i)
        end = writeSeventeenDigits(end, chunks[i]);
    return text;
}

} // namespace

std::string decimalText(const std::vector<std::uint16_t>& words, std::uint64_t bitCount,
                        bool negative) {
    Natural value(limbsFor(words.size()));
    value.load(words.data(), words.size());
    if (negative)
        value.negate(bitCount);
    return value.size() < WIDE_PRINT_LIMBS ? narrowText(value, negative)
                                           : wideText(value, negative);
}

} // namespace KelRT::numbers
