// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Number.h"
#include "KelRT/Kel_NumberUtil.h"
#include "dice.h"
#include "failing_new.h"
#include "models/number_model.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <string_view>
#include <type_traits>

using namespace KelRT;
using test::below;
using test::SEED;

namespace {

constexpr std::uint64_t WIDTHS[] = {1,  2,  7,  8,   15,  16,  17,  20,  31,  32,  33,   48,
                                    63, 64, 65, 127, 128, 129, 256, 320, 511, 513, 1000, 4096};
constexpr std::string_view LETTERS = "BbOoDdIiUuXxSsq";

std::string digitsOf(char radix) {
    const std::string digits = "0123456789abcdefABCDEF";
    const char letter = static_cast<char>(radix | 0x20);
    if (letter == 's')
        return std::string("\0\x01-9AZaz\x7F", 9);
    return digits.substr(0, letter == 'b' ? 2 : letter == 'o' ? 8 : letter == 'x' ? 22 : 10);
}

/// Digits of the radix; in every other text separators and signs among them, in some a digit that
/// is refused.
std::string randomText(char radix, std::uint64_t bitCount) {
    const std::string digits = digitsOf(radix);
    const std::string others(" _,-x.'/:@GRg`\0\x80\xFF", 17);
    const std::size_t length = below(below(3) == 0 ? 24 : bitCount + bitCount / 4 + 12);
    const std::size_t rarity = below(2) == 0 ? 0 : 2 + below(40);
    std::string text;
    while (text.size() < length) {
        const std::string& from = rarity != 0 && below(rarity) == 0 ? others : digits;
        text += from[below(from.size())];
    }
    if (length > 0 && below(12) == 0)
        text[below(length)] = "2789AFaf\x80\xB1\xFF"[below(11)];
    return text;
}

void expectSame(const Kel_Number& number, const model::Number& model, const std::string& context) {
    EXPECT_EQ(number.isZero(), model.isZero()) << context;
    EXPECT_EQ(number.isNegative(), model.isNegative()) << context;
    for (const char letter : {'b', 'o', 'd', 'u', 'x', 'X', 's'})
        EXPECT_EQ(number.toString(letter), model.toString(letter)) << letter << " of " << context;
}

TEST(Number, IsAssignedAndNeverCopied) {
    static_assert(!std::is_copy_constructible_v<Kel_Number>);
    static_assert(!std::is_convertible_v<std::uint64_t, Kel_Number>);
    Kel_Number narrow(8);
    Kel_Number wide(100);
    ASSERT_TRUE(wide.set('x', "9876543210fedcba987654321"));
    narrow = wide;
    wide.setToZero();
    EXPECT_EQ(wide.toString('x'), std::string(25, '0'));
    narrow = *&narrow;
    EXPECT_EQ(narrow.toString('x'), "9876543210fedcba987654321");
    wide = Kel_Number(9); // the mask of the top word and the sign's place go with the width
    EXPECT_TRUE(wide.set('x', "1ff"));
    EXPECT_TRUE(wide.isNegative());
    EXPECT_EQ(wide.toString('b'), "111111111");
}

TEST(Number, WidthOfZeroIsRefused) {
    try {
        const Kel_Number number(0);
        FAIL() << "no exception";
    } catch (const std::logic_error& error) {
        EXPECT_STREQ(error.what(), "Internal error: bad bitCount for Kel_Number");
    }
}

TEST(Number, ReadsDigitsByTheRadixLetter) {
    struct {
        char radix;
        bool accepted;
        std::uint64_t bitCount;
        std::string text;
        std::string hex;
    } const cases[] = {
        {'x', true, 16, "0x1F", "001f"},  {'b', true, 8, "1010_1010", "aa"},
        {'d', true, 16, "1,000", "03e8"}, {'d', true, 8, "-5", "fb"},
        {'i', true, 8, "--1-2-", "f4"},   {'u', true, 8, "-1", "ff"},
        {'u', true, 16, "70000", "1170"}, {'d', false, 16, "1A", "0000"},
        {'b', false, 16, "2", "0000"},    {'o', false, 16, "8", "0000"},
        {'O', true, 16, "-17 7", "ff81"}, {'S', true, 16, "AB", "4142"},
        {'S', true, 16, "-", "002d"},     {'S', false, 16, "A\x80", "0000"},
        {'q', true, 16, "", "0000"},      {'q', true, 16, "-", "0000"},
        {'q', false, 16, "5", "0000"},    {'\0', false, 16, "x F", "0000"},
        {'x', true, 20, "-1", "fffff"},   {'d', true, 1, "3", "1"},
        {'x', true, 16, "", "0000"},      {'x', true, 16, std::string("1\0002", 3), "0012"}};
    for (const auto& [radix, accepted, bitCount, text, hex] : cases) {
        Kel_Number number(bitCount);
        ASSERT_TRUE(number.set('x', "fffff"));
        EXPECT_EQ(number.set(radix, text), accepted) << radix << " " << text;
        EXPECT_EQ(number.toString('x'), hex) << radix << " " << text;
    }
}

TEST(Number, PrintsDigitsByTheRadixLetter) {
    struct {
        std::uint64_t bitCount;
        const char* hex;
        char radix;
        std::string expected;
    } const cases[] = {
        {16, "a", 'x', "000a"},     {16, "a", 'X', "000A"},     {16, "a", 'o', "000012"},
        {16, "a", 'd', "10"},       {12, "fff", 'D', "-1"},     {12, "fff", 'I', "-1"},
        {12, "fff", 'U', "4095"},   {12, "fff", 'O', "7777"},   {8, "80", 'i', "-128"},
        {8, "80", 'u', "128"},      {8, "80", 'b', "10000000"}, {1, "1", 'd', "-1"},
        {16, "0", 'd', "0"},        {20, "0", 'x', "00000"},    {20, "0", 'o', "0000000"},
        {40, "1", 's', "    \x01"}, {32, "414243", 's', " ABC"}};
    for (const auto& [bitCount, hex, radix, expected] : cases) {
        Kel_Number number(bitCount);
        ASSERT_TRUE(number.set('x', hex));
        EXPECT_EQ(number.toString(radix), expected) << bitCount << " bits, " << hex << ' ' << radix;
        EXPECT_EQ(number.toString('h'), "bad format for number");
    }
    EXPECT_EQ(Kel_Number(32).toString('S'), std::string("   \0", 4));
}

TEST(Number, ReadsAndPrintsAsTheModelDoes) {
    for (int round = 0; round < 12; ++round) {
        for (std::uint64_t bitCount : WIDTHS) {
            if (round % 4 == 3)
                bitCount = 1 + below(700);
            for (const char radix : LETTERS) {
                Kel_Number number(bitCount);
                model::Number model(bitCount);
                ASSERT_TRUE(number.set('x', "-1"));
                const std::string text = randomText(radix, bitCount);
                const std::string context = "seed " + std::to_string(SEED) + ", " +
                                            std::to_string(bitCount) + " bits, " + radix + text;
                ASSERT_EQ(number.set(radix, text), model.set(radix, text)) << context;
                ASSERT_EQ(number.toString('x'), model.toString('x')) << context;
                if (bitCount < 1000 || round == 0)
                    expectSame(number, model, context);
            }
        }
    }
}

TEST(Number, EveryCharacterMeansTheSameAtEveryPlaceOfAText) {
    for (const char radix : LETTERS) {
        for (std::size_t place = 0; place < 21; ++place) {
            for (int code = 0; code < 256; ++code) {
                std::string text = "101101110110101010011";
                text[place] = static_cast<char>(code);
                Kel_Number number(170);
                model::Number model(170);
                ASSERT_EQ(number.set(radix, text), model.set(radix, text)) << radix << code;
                ASSERT_EQ(number.toString('x'), model.toString('x'))
                    << radix << code << ' ' << place;
            }
        }
    }
}

TEST(Number, PatternsAtTheEdgesOfWordsPrintAndNegateAsTheModelDoes) {
    // The last three words make limbs close to 10^19, by which decimal digits are taken off.
    constexpr std::uint16_t edges[] = {0,      1,      0x7FFF, 0x8000, 0xFFFE,
                                       0xFFFF, 0x8AC7, 0x2304, 0x89E8};
    for (const std::uint64_t bitCount : WIDTHS) {
        for (int round = 0; round < (bitCount > 1000 ? 8 : 60); ++round) {
            model::Number model(bitCount);
            for (auto& word : model.words()) // the first rounds: 0, and only the sign bit
                word = round < 2 ? std::uint16_t{0} : edges[below(std::size(edges))];
            const auto signBit = static_cast<std::uint16_t>(1 << (bitCount - 1) % 16);
            model.words().back() &= static_cast<std::uint16_t>(2 * signBit - 1);
            model.words().back() |= round == 1 ? signBit : std::uint16_t{0};
            Kel_Number number(bitCount);
            const std::string context = std::to_string(bitCount) + " bits, " + model.toString('x');
            ASSERT_TRUE(number.set('X', model.toString('x')));
            expectSame(number, model, context);
            number.negate();
            model.negate();
            expectSame(number, model, std::string("minus ") + context);
        }
    }
}

// Beyond some thousand bits numbers are joined from halves.
TEST(Number, VeryWideDecimalsReadAndPrintAsTheModelDoes) {
    struct {
        std::uint64_t bitCount;
        std::size_t digits;
    } const cases[] = {{7680, 2311},  {7681, 2313},   {14143, 4257},  {14144, 4258},
                       {20011, 5000}, {20011, 16000}, {14300, 40000}, {33333, 10034}};
    for (const auto& [bitCount, digits] : cases) {
        std::string random(digits, '0');
        for (char& digit : random)
            digit = static_cast<char>('0' + below(10));
        std::string mixed = random;
        for (int i = 0; i < 30; ++i)
            mixed[below(digits)] = " ,-"[below(3)];
        const std::string texts[] = {random, mixed, std::string(digits, '9'),
                                     "1" + std::string(digits - 1, '0')};
        for (const std::string& text : texts) {
            const std::string context = std::to_string(bitCount) + " bits, " + text.substr(0, 40);
            Kel_Number number(bitCount);
            model::Number model(bitCount);
            ASSERT_TRUE(number.set('d', text) && model.set('d', text)) << context;
            ASSERT_EQ(number.toString('x'), model.toString('x')) << context;
            if (text == random) { // the model is slow
                ASSERT_EQ(number.toString('d'), model.toString('d')) << context;
            }
            ASSERT_FALSE(number.set('u', text + "F"));
            ASSERT_TRUE(number.isZero());
        }
        Kel_Number number(bitCount);
        ASSERT_TRUE(number.set('d', std::string(digits, ' ')));
        ASSERT_TRUE(number.isZero());
    }
}

TEST(Number, RunsOfBitsKeepTheirValueThroughWideDecimals) {
    for (int round = 0; round < 12; ++round) {
        const std::uint64_t bitCount = 8000 + below(round < 8 ? 60000 : 400000);
        std::string bits;
        while (bits.size() < bitCount)
            bits.append(1 + below(round % 4 == 0 ? bitCount : 300), "01"[below(2)]);
        bits.resize(bitCount);
        Kel_Number number(bitCount);
        ASSERT_TRUE(number.set('b', bits));
        for (const char radix : {'u', 'd'}) {
            ASSERT_TRUE(number.set(radix, number.toString(radix)));
            ASSERT_TRUE(number.toString('b') == bits) << bitCount << " bits, seed " << SEED;
        }
    }
}

TEST(Number, PowersOfTenKeepAllTheirZeros) {
    std::string power = "1";
    for (; power.size() < 1200; power += '0') {
        Kel_Number number(4096);
        ASSERT_TRUE(number.set('d', power));
        ASSERT_EQ(number.toString('u'), power);
        number.negate();
        ASSERT_EQ(number.toString('i'), std::string("-") + power);
    }
}

TEST(Number, ReadsScaledValues) {
    struct {
        std::uint64_t bitCount;
        const char* text;
        double scale, offset;
        const char* hex;
    } const cases[] = {{16, "2.5", 0.5, 0, "0005"},
                       {16, "-1.7", 1, 0, "ffff"},
                       {16, "10", 2, 4, "0003"},
                       {16, "abc", 1, 0, "0000"},
                       {16, " \t-3x", 1, 0, "fffd"},
                       {32, "-0.5", 1, 0, "00000000"},
                       {16, "1", 0, 0, "0000"},
                       {16, "1e999", 1, 0, "0000"},
                       {16, "nan", 1, 0, "0000"},
                       {8, "-1e30", 1, 0, "00"},
                       {32, "65536", 1, 0, "00010000"},
                       {12, "65537", 1, 0, "001"},
                       {12, "-65537", 1, 0, "fff"},
                       {80, "18446744073709551616", -1, 0, "ffff0000000000000000"},
                       {56, "9007199254740992.9", 1, 0, "20000000000000"}};
    for (const auto& [bitCount, text, scale, offset, hex] : cases) {
        Kel_Number number(bitCount);
        ASSERT_TRUE(number.set('d', "-2"));
        number.setFloat(text, scale, offset);
        EXPECT_EQ(number.toString('x'), hex) << text << " / " << scale;
    }
}

TEST(Number, PrintsScaledValues) {
    struct {
        std::uint64_t bitCount;
        const char* value;
        double scale, offset;
        std::uint32_t precision;
        const char* expected;
    } const cases[] = {
        {16, "1000", 0.001, 0, 3, "1.000"},
        {16, "7", 1, 0, 0, "7"},
        {16, "-2", 0.5, 1, 2, "0.00"},
        {8, "128", 1, 0, 0, "-128"},
        {8, "1", HUGE_VAL, 0, 2, "inf"},
        // Fused, these would be the rounding error of 0.1 * 10.
        {8, "10", 0.1, -1, 20, "0.00000000000000000000"},
        {8, "-10", 0.1, 1, 20, "0.00000000000000000000"},
        // 2^79 + 2^26 + 1 lies above the middle of two doubles; its upper four words lie on it.
        {96, "604462909807314654461953", 1, 0, 0, "604462909807314587353088"}};
    for (const auto& [bitCount, value, scale, offset, precision, expected] : cases) {
        Kel_Number number(bitCount);
        ASSERT_TRUE(number.set('d', value));
        EXPECT_EQ(number.toFloatString(scale, offset, precision), expected) << value;
    }
}

TEST(Number, ScaledTextIsWholeWhateverItsLength) {
    Kel_Number number(1024);
    number.setFloat("-1.5e308", 1, 0);
    const std::string digits = number.toString('d');
    EXPECT_EQ(number.toFloatString(1, 0, 0), digits);
    EXPECT_EQ(number.toFloatString(1, 0, 5000), digits + "." + std::string(5000, '0'));
    for (const std::uint32_t precision : {0x80000000U, 0xFFFFFFFFU})
        EXPECT_THROW(number.toFloatString(1, 0, precision), std::length_error);
}

TEST(Number, ExhaustedMemoryLeavesItAsItWas) {
    if (!test::failingNewReachesTheLibrary())
        GTEST_SKIP() << "the library has an operator new of its own here";
    Kel_Number narrow(512);
    Kel_Number wide(2000);
    ASSERT_TRUE(narrow.set('x', "abcde") && wide.set('x', "12345"));
    const std::string text(500, '1');
    {
        const test::FailingNew noMemory;
        EXPECT_THROW(wide.set('d', text), std::bad_alloc);
        EXPECT_THROW(narrow = wide, std::bad_alloc);
        EXPECT_THROW(Kel_Number(~std::uint64_t{0}), std::bad_alloc); // not a number of no words
    }
    EXPECT_EQ(narrow.toString('u') + " " + wide.toString('u'), "703710 74565");
    const test::FailingNew noMemory;
    EXPECT_TRUE(narrow.set('d', text)); // up to 512 bits none is wanted
    EXPECT_TRUE(wide.set('x', text));
}

TEST(Number, OnlyScaledValuesFollowTheLocale) {
    if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr &&
        std::setlocale(LC_ALL, "German_Germany.1252") == nullptr)
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    Kel_Number number(32);
    ASSERT_TRUE(number.set('d', "1.000.000\xC4")); // the last character is no digit in any locale
    EXPECT_EQ(number.toString('d'), "1000000");
    EXPECT_EQ(number.toFloatString(0.001, 0.5, 1), "1000,5");
    number.setFloat("2,5", 0.5, 0);
    EXPECT_EQ(number.toString('d'), "5");
    std::string text;
    EXPECT_EQ(Kel_NumberUtil::double2Str(1.5, text), "1,500000");
    EXPECT_EQ(Kel_NumberUtil::decStr2ULL("1.000"), 1U);
    static_cast<void>(std::setlocale(LC_ALL, "C"));
}

} // namespace
