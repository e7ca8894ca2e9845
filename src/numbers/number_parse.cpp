// SPDX-License-Identifier: MIT
//
// Numbers from text. Text of radix 2, 8, 16 and 256 is read from its end: counted from there, the
// bit position of each digit is known, and excess digits are simply dropped at the top. A refused
// digit anywhere sets the whole number to 0.
#include "KelRT/Kel_Number.h"

#include "common/hex.h"
#include "common/words.h"
#include "numbers/bit_text.h"
#include "numbers/decimal/parse.h"
#include "numbers/limb.h"
#include "numbers/radix.h"
#include "numbers/word_sink.h"

#include <algorithm>

namespace KelRT {
namespace numbers {
namespace {

// Reads characters of which at least one is not a digit, from the last one backwards. False if a
// digit is refused.
bool readOneByOne(const char* text, unsigned count, unsigned digitBits, WordSink& sink,
                  bool& negative) {
    if (digitBits == 8)
        return false; // only codes from 0x80 on are not digits, and they are refused
    for (unsigned i = count; i-- > 0;) {
        const CharacterClass kind = classify(text[i], 1U << digitBits);
        if (kind == CharacterClass::refused)
            return false;
        if (kind == CharacterClass::digit)
            sink.put(common::hexValue(text[i]), digitBits);
        negative = negative || kind == CharacterClass::minus;
    }
    return true;
}

// READ(p, count, number) reads up to MAX_CHARACTERS digits. It returns false if one is not a digit.
template <unsigned DIGIT_BITS, unsigned MAX_CHARACTERS, auto READ>
bool parsePowerOfTwo(const std::string& text, WordSink sink, bool& negative) {
    for (std::size_t left = text.size(); left > 0;) {
        const auto count = static_cast<unsigned>(std::min<std::size_t>(MAX_CHARACTERS, left));
        left -= count;
        const char* const p = text.data() + left;
        Limb number = 0;
        if (READ(p, count, number)) // zero-extended if the last step is shorter
            sink.put(number, MAX_CHARACTERS * DIGIT_BITS);
        else if (!readOneByOne(p, count, DIGIT_BITS, sink, negative))
            return false;
    }
    sink.finish();
    return true;
}

// Without a radix, every digit is refused.
bool parseWithoutRadix(const std::string& text, WordSink sink) {
    const auto isDigit = [](char c) { return common::hexValue(c) != common::NO_DIGIT; };
    sink.finish();
    return std::none_of(text.begin(), text.end(), isDigit);
}

// Reads text into words, the lowest first. The value wraps at the last word and is not negated yet:
// in radix 2, 8, 10 and 16, a '-' sets `negative`. False if a digit was refused. Throws
// std::bad_alloc with the words unchanged.
bool parseDigits(char radix, const std::string& text, std::uint16_t* words, std::size_t wordCount,
                 bool& negative) {
    const WordSink sink(words, wordCount);
    switch (radixOf(radix)) {
    case 2:
        return parsePowerOfTwo<1, CHARACTERS_PER_STEP, readBinary>(text, sink, negative);
    case 8:
        return parsePowerOfTwo<3, CHARACTERS_PER_STEP, readOctal>(text, sink, negative);
    case 10:
        return parseDecimal(text, words, wordCount, negative);
    case 16:
        return parsePowerOfTwo<4, common::HEX_DIGITS_PER_WORD, common::readHex>(text, sink,
                                                                                negative);
    case 256:
        return parsePowerOfTwo<8, CHARACTERS_PER_STEP, readBytes>(text, sink, negative);
    default:
        return parseWithoutRadix(text, sink);
    }
}

} // namespace
} // namespace numbers

bool Kel_Number::set(char radix, const std::string& text) {
    bool negative = false;
    if (!numbers::parseDigits(radix, text, words.data(), words.size(), negative)) {
        setToZero();
        return false;
    }
    maskTopWord();
    if (negative)
        negate();
    return true;
}

} // namespace KelRT
