// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Number.h"
#include "KelRT/Kel_NumberUtil.h"
#include "models/number_model.h"
#include "models/number_util_model.h"
#include "support/failing_new.h"
#include "support/random_values.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <string>
#include <type_traits>

using namespace KelRT;

namespace {

static_assert(!std::is_copy_constructible_v<Kel_Number>, "a copy would hide its cost");
static_assert(!std::is_convertible_v<std::uint64_t, Kel_Number>);

/// Sets a number and its model to \a text, and expects the same digits of both.
void expectTheModelsDigits(std::uint64_t bitCount, char radix, const std::string& text) {
    Kel_Number number(bitCount);
    model::Number model(bitCount);
    ASSERT_TRUE(number.set(radix, text) && model.set(radix, text));
    for (const char shown : {'x', 'd'})
        ASSERT_EQ(number.toString(shown), model.toString(shown)) << bitCount << " bits, " << text;
}

// Divide and conquer prints decimals from 120 limbs (7680 bits) on and reads them from 220 limbs
// (14080 bits) on. In the third row, the text is too long for the number, so the value wraps. A
// digit with n digits after it has the weight 10^n, a multiple of 2^n. It is dropped if n >= 14300,
// and changes only the top bits if n is just below.
TEST(Number, VeryWideDecimalsReadAndPrintAsTheModelDoes) {
    struct {
        std::uint64_t bitCount;
        std::size_t digits;
    } const cases[] = {{7680, 2400}, {14080, 4500}, {14300, 30007}, {20011, 5000}};
    for (const auto& [bitCount, digits] : cases) {
        std::string mixed(digits, '0');
        for (char& digit : mixed)
            digit = static_cast<char>('0' + test::randomBelow(10));
        for (int i = 0; i < 30; ++i)
            mixed[test::randomBelow(digits)] = " ,-"[test::randomBelow(3)];
        Kel_Number number(bitCount);
        for (const std::string& text :
             {mixed, std::string("1").append(digits / 2, '0'), std::string(digits, '7')}) {
            expectTheModelsDigits(bitCount, 'd', text);
            ASSERT_FALSE(number.set('u', text + "F"));
        }
        ASSERT_TRUE(number.set('d', std::string(digits, ' ')) && number.isZero());
    }
}

// The numbers that are multiplied have runs of zero digits in the radix of the result, also at
// their ends.
TEST(Number, WideDecimalsOfManyZeroDigitsAreThoseOfTheModel) {
    const auto sparse = [](const char* digits, std::size_t base, std::size_t groupSize) {
        std::string text = "1";
        for (int group = 0; group < 255; ++group)
            for (std::size_t i = 0, isZero = test::randomBelow(2); i < groupSize; ++i)
                text += isZero != 0 ? '0' : digits[test::randomBelow(base)];
        return text;
    };
    Kel_Number number(32000);
    ASSERT_TRUE(number.set('x', sparse("0123456789abcdef", 16, 15)));
    expectTheModelsDigits(32000, 'u', number.toString('u').append(std::size_t{256} * 18, '0'));
    ASSERT_TRUE(number.set('u', sparse("0123456789", 10, 17)));
    expectTheModelsDigits(32000, 'x', number.toString('x').substr(4000).append(4096, '0'));
}

TEST(Number, RunsOfBitsKeepTheirValueThroughWideDecimals) {
    for (int round = 0; round < 12; ++round) {
        const std::size_t bitCount = 8000 + test::randomBelow(round < 8 ? 60000 : 400000);
        std::string bits;
        while (bits.size() < bitCount)
            bits.append(1 + test::randomBelow(round % 4 == 0 ? bitCount : 300),
                        "01"[test::randomBelow(2)]);
        bits.resize(bitCount);
        Kel_Number number(bitCount);
        ASSERT_TRUE(number.set('b', bits));
        for (const char radix : {'u', 'd'}) {
            ASSERT_TRUE(number.set(radix, number.toString(radix)));
            ASSERT_TRUE(number.toString('b') == bits) << bitCount << " bits, " << test::SEED;
        }
    }
}

TEST(Number, ScaledTextIsWholeWhateverItsLength) {
    Kel_Number number(1024);
    number.setFloat("-1.5e308", 1, 0);
    const std::string digits = number.toString('d');
    EXPECT_EQ(number.toFloatString(1, 0, 0), digits);
    EXPECT_EQ(number.toFloatString(1, 0, 5000), digits + "." + std::string(5000, '0'));
}

TEST(Number, TheLongestScaledTextIsBoundedBeforeItIsMade) {
    Kel_Number number(8);
    ASSERT_TRUE(number.set('d', "1"));
    for (const double scale : {1.0, HUGE_VAL})
        for (const std::uint32_t precision : {0x7FFFFE01U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
            EXPECT_THROW((void)number.toFloatString(scale, 1, precision), std::length_error);
    EXPECT_EQ(number.toFloatString(HUGE_VAL, 1, 0x7FFFFE00), "inf"); // without any decimals
    if (!test::failingNewReachesTheLibrary())
        GTEST_SKIP() << "the library has an operator new of its own here";
    const test::FailingNew noMemory;
    EXPECT_THROW((void)number.toFloatString(1, 1, 0x7FFFFE00), std::bad_alloc);
}

TEST(Number, UpTo512BitsReadWithoutMemory) {
    Kel_Number number(512);
    const std::string text(500, '1');
    const test::FailingNew noMemory;
    EXPECT_TRUE(number.set('d', text));
    EXPECT_ANY_THROW(Kel_Number{~std::uint64_t{0}}); // the word count must not wrap
}

TEST(Number, WidthsMayExceedTheSizesOfTheHost) {
    if (sizeof(std::size_t) > 4)
        GTEST_SKIP() << "sizes have 64 bits, as widths have";
    EXPECT_THROW(Kel_Number(std::uint64_t{1} << 34), std::length_error);
    for (const std::uint64_t width : {(std::uint64_t{1} << 36) + 16, ~std::uint64_t{0}})
        EXPECT_THROW(Kel_Number{width}, std::length_error); // the word count must not be truncated
    Kel_Number number(std::uint64_t{1} << 32);
    ASSERT_TRUE(number.set('d', "1" + std::string(5000, '0')));
    EXPECT_FALSE(number.isZero()); // bit 5000 is the lowest 1
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

TEST(Conversions, InputMayBeTheOutputsOwnText) {
    for (const std::string bits : {"0101", "01010101101011010110101101011010110101101"}) {
        std::string s = bits;
        EXPECT_EQ(Kel_NumberUtil::binStr2HexStr(s.c_str() + 3, s), model::binToHex(bits.substr(3)));
        s = bits;
        EXPECT_EQ(Kel_NumberUtil::hexStr2BinStr(s.c_str(), 50, s), model::hexToBin(bits, 50));
        s = bits;
        const auto* const array = reinterpret_cast<const unsigned char*>(s.data());
        EXPECT_EQ(Kel_NumberUtil::bin2ReverseBinStr(array, 16, s),
                  "0000110010001100"); // 0x30, 0x31
    }
}

TEST(Conversions, DigitCountsDoNotWrap) {
    if (!test::failingNewReachesTheLibrary())
        GTEST_SKIP() << "the library has an operator new of its own here";
    std::string out;
    const test::FailingNew noMemory;
    EXPECT_THROW(Kel_NumberUtil::hexStr2BinStr("1", 0xFFFFFFFF, out), std::bad_alloc);
    // The text would have 2^30 digits. Computed in 32 bits, (bitCount + 3) / 4 would wrap to 0.
    EXPECT_THROW(Kel_NumberUtil::uInt2HexStr(5, 0xFFFFFFFF, out), std::bad_alloc);
}

} // namespace
