// SPDX-License-Identifier: MIT
//
// Whole numbers from text. A rejected digit makes the result 0 and excess high digits wrap, so the
// order of work is free: texts of radix 2, 8, 16 and 256 are read from their end, where the place
// of each digit is known, eight or more characters per step.
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

// Policies for the radices that are powers of two. read() yields the number in `count` characters,
// at most STEP. It returns false if one of them is not a digit.

struct BinaryDigits {
    static constexpr unsigned BITS = 1;
    static constexpr unsigned STEP = numbers::STEP;
    static bool read(const char* p, unsigned count, Limb& number) {
        const std::uint64_t characters = common::loadHighBytes(p, count, '0');
        number = common::packBits(common::swapBytes(characters & common::broadcast(1)));
        return areBinaryDigits(characters);
    }
};

struct OctalDigits {
    static constexpr unsigned BITS = 3;
    static constexpr unsigned STEP = numbers::STEP;
    static bool read(const char* p, unsigned count, Limb& number) {
        const std::uint64_t characters = common::loadHighBytes(p, count, '0');
        number = packOctal(common::swapBytes(characters & common::broadcast(7)));
        return areOctalDigits(characters);
    }
};

struct HexDigits {
    static constexpr unsigned BITS = 4;
    static constexpr unsigned STEP = common::HEX_DIGITS_PER_WORD;
    static bool read(const char* p, unsigned count, Limb& number) {
        return common::readHex(p, count, number);
    }
};

struct CharacterDigits {
    static constexpr unsigned BITS = 8;
    static constexpr unsigned STEP = numbers::STEP;
    static bool read(const char* p, unsigned count, Limb& number) {
        number = common::swapBytes(common::loadHighBytes(p, count, 0));
        return (number & common::broadcast(0x80)) == 0;
    }
};

// A step with other characters than digits, from its last character backwards. False if a digit is
// refused.
template <typename Digits>
bool readOneByOne(const char* text, unsigned count, WordSink& sink, bool& negative) {
    if (Digits::BITS == 8)
        return false; // every character is a digit, and one of these is refused
    for (unsigned i = count; i-- > 0;) {
        const CharacterClass kind = classify(text[i], 1U << Digits::BITS);
        if (kind == CharacterClass::refused)
            return false;
        if (kind == CharacterClass::digit)
            sink.put(common::hexValue(text[i]), Digits::BITS);
        negative = negative || kind == CharacterClass::sign;
    }
    return true;
}

template <typename Digits>
bool parsePowerOfTwo(const std::string& text, WordSink sink, bool& negative) {
    for (std::size_t left = text.size(); left > 0;) {
        const auto count = static_cast<unsigned>(std::min<std::size_t>(Digits::STEP, left));
        left -= count;
        const char* const p = text.data() + left;
        Limb number = 0;
        if (Digits::read(p, count, number))
            sink.put(number, Digits::STEP * Digits::BITS);
        else if (!readOneByOne<Digits>(p, count, sink, negative))
            return false;
    }
    sink.finish();
    return true;
}

// Without a radix every digit is refused; text without digits yields 0.
bool parseWithoutRadix(const std::string& text, WordSink sink) {
    const auto isDigit = [](char c) { return common::hexValue(c) != common::NO_DIGIT; };
    sink.finish();
    return std::none_of(text.begin(), text.end(), isDigit);
}

// Reads text in the radix that a letter names into words, the lowest first. The value wraps at the
// last word and has no sign yet; `negative` is set by a '-' that is no digit. False if a digit was
// refused. Throws std::bad_alloc with the words unchanged.
bool parseDigits(char radix, const std::string& text, std::uint16_t* words, std::size_t wordCount,
                 bool& negative) {
    const WordSink sink(words, wordCount);
    switch (radixOf(radix)) {
    case 2:
        return parsePowerOfTwo<BinaryDigits>(text, sink, negative);
    case 8:
        return parsePowerOfTwo<OctalDigits>(text, sink, negative);
    case 10:
        return parseDecimal(text, words, wordCount, negative);
    case 16:
        return parsePowerOfTwo<HexDigits>(text, sink, negative);
    case 256:
        return parsePowerOfTwo<CharacterDigits>(text, sink, negative);
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
