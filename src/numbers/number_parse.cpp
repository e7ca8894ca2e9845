// SPDX-License-Identifier: MIT
//
// Whole numbers from text. A rejected digit makes the result 0 and excess high digits wrap, so the
// order of work is free: texts of radix 2, 8, 16 and 256 are read from their end, where the place
// of each digit is known, eight or more characters per step.
#include "KelRT/Kel_Number.h"

#include "common/digits.h"
#include "common/hex.h"
#include "numbers/decimal/parse.h"
#include "numbers/limb.h"
#include "numbers/radix.h"
#include "numbers/word_sink.h"

#include <algorithm>

namespace KelRT {
namespace numbers {
namespace {

constexpr unsigned STEP = 8; // characters

// Policies for the radices that are powers of two: areAll() tells whether eight characters are all
// digits, pack() yields their bits. Each expects the least significant digit in the lowest byte.

struct BinaryDigits {
    static constexpr unsigned BITS = 1;
    static constexpr char ZERO = '0';
    static bool areAll(std::uint64_t step) { return common::areBinaryDigits(step); }
    static Limb pack(std::uint64_t step) { return common::packBits(step & common::inEachByte(1)); }
};

struct OctalDigits {
    static constexpr unsigned BITS = 3;
    static constexpr char ZERO = '0';
    static bool areAll(std::uint64_t step) { return common::areOctalDigits(step); }
    static Limb pack(std::uint64_t step) { return common::packOctal(step & common::inEachByte(7)); }
};

struct HexDigits {
    static constexpr unsigned BITS = 4;
    static constexpr char ZERO = '0';
    static bool areAll(std::uint64_t step) { return common::areHexDigits(step); }
    static Limb pack(std::uint64_t step) {
        return common::packNibbles(common::hexDigitValues(step));
    }
};

struct CharacterDigits {
    static constexpr unsigned BITS = 8;
    static constexpr char ZERO = '\0';
    static bool areAll(std::uint64_t step) { return (step & common::inEachByte(0x80)) == 0; }
    static Limb pack(std::uint64_t step) { return step; }
};

// A step with other characters than digits, from its last character backwards. False if a digit is
// refused.
template <class Digits>
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

// The number of sixteen hexadecimal digits. False for any other character.
bool readSixteenDigits(const char* text, Limb& number) {
    common::Vector valid = common::broadcast(0xFF);
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text);
    const common::Vector characters = common::loadVector(bytes);
    number = common::wordOfNibbles(common::hexDigitValues(characters, valid));
    return common::allSet(valid);
}

template <class Digits>
bool parsePowerOfTwo(const std::string& text, WordSink sink, bool& negative) {
    for (std::size_t left = text.size(); left > 0;) {
        Limb limb = 0;
        if (Digits::BITS == 4 && left >= common::VECTOR_BYTES &&
            readSixteenDigits(text.data() + left - common::VECTOR_BYTES, limb)) {
            sink.put(limb, LIMB_BITS);
            left -= std::size_t{common::VECTOR_BYTES};
            continue;
        }
        const auto count = static_cast<unsigned>(std::min<std::size_t>(STEP, left));
        left -= count;
        const char* const p = text.data() + left;
        const std::uint64_t step = common::loadLastCharacters(p, count, Digits::ZERO);
        if (Digits::areAll(step))
            sink.put(Digits::pack(common::swapBytes(step)), STEP * Digits::BITS);
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
