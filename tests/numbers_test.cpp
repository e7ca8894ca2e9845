// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Number.h"
#include "KelRT/Kel_NumberUtil.h"
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

/// Returns \a length digits in random runs. A run repeats a digit up to \a longest times.
std::string runsOf(const std::string& digits, std::size_t length, std::size_t longest) {
    std::string text = "1";
    while (text.size() < length)
        text.append(1 + test::randomBelow(longest), digits[test::randomBelow(digits.size())]);
    text.resize(length);
    return text;
}

// Divide and conquer prints numbers of at least 7680 bits and reads those of at least 14080 bits.
// It computes with digits of radix 10^17 or 2^60. Runs of equal characters make many of these
// digits 0 or as high as possible, so that carries and borrows pass through them.
TEST(Number, VeryWideDecimalsKeepTheirDigits) {
    SCOPED_TRACE(test::SEED);
    for (int round = 0; round < 12; ++round) {
        const std::size_t bitCount = 8000 + test::randomBelow(round < 8 ? 60000 : 400000);
        SCOPED_TRACE(bitCount);
        const std::size_t longest = round % 4 == 0 ? bitCount : 300;
        const std::string bits = runsOf("01", bitCount, longest);
        Kel_Number number(bitCount);
        ASSERT_TRUE(number.set('b', bits));
        for (const char radix : {'u', 'd'}) {
            ASSERT_TRUE(number.set(radix, number.toString(radix)));
            ASSERT_TRUE(number.toString('b') == bits);
        }
        const std::string decimal = runsOf("0123456789", bitCount * 3 / 10, longest);
        ASSERT_TRUE(number.set('u', decimal));
        ASSERT_TRUE(number.toString('u') == decimal);
        // 2^width divides 10^k if k >= width, so the first digits do not change a narrow number.
        Kel_Number narrow(bitCount / 4);
        ASSERT_TRUE(narrow.set('u', decimal));
        ASSERT_TRUE(number.toString('b').ends_with(narrow.toString('b')));
        ASSERT_FALSE(number.set('u', decimal + "F"));
        ASSERT_TRUE(number.set('d', std::string(bitCount, ' ')) && number.isZero());
    }
}

TEST(Number, PrecisionAboveTheLimitIsRefused) {
    Kel_Number number(8);
    ASSERT_TRUE(number.set('d', "1"));
    for (const double scale : {1.0, HUGE_VAL})
        for (const std::uint32_t precision : {0x7FFFFE01U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
            EXPECT_THROW((void)number.toFloatString(scale, 1, precision), std::length_error);
    EXPECT_EQ(number.toFloatString(HUGE_VAL, 1, 0x7FFFFE00), "inf"); // without any decimals
}

TEST(Number, WidthsAbove32BitsAreNotTruncatedOn32BitHosts) {
    if (sizeof(std::size_t) > 4)
        GTEST_SKIP() << "std::size_t has 64 bits, as a width has";
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

// All memory is exhausted, so a call throws if it allocates. If a huge size wrapped to a small one,
// the call would allocate nothing and would not throw.
TEST(Memory, HugeResultsThrowAndSmallNumbersAllocateNothing) {
    if (!test::failingNewReachesTheLibrary())
        GTEST_SKIP() << "the library has an operator new of its own here";
    Kel_Number number(512);
    const std::string text(500, '1');
    std::string out;
    const test::FailingNew noMemory;
    EXPECT_TRUE(number.set('d', text));
    EXPECT_ANY_THROW(Kel_Number{~std::uint64_t{0}});
    EXPECT_THROW((void)number.toFloatString(1, 1, 0x7FFFFE00), std::bad_alloc);
    EXPECT_THROW(Kel_NumberUtil::hexStr2BinStr("1", 0xFFFFFFFF, out), std::bad_alloc);
    EXPECT_THROW(Kel_NumberUtil::uInt2HexStr(5, 0xFFFFFFFF, out), std::bad_alloc); // 2^30 digits
}

} // namespace
