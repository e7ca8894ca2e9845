// SPDX-License-Identifier: MIT
#include "common/double_word.h"
#include "common/hex.h"
#include "library/version.h"
#include "numbers/radix.h"
#include "support/random_values.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

namespace {

TEST(Version, PatchLevelOtherThanZeroMakesThreeParts) {
    using KelRT::library::composeVersionNumber;
    struct {
        const char* patch;
        const char* expected;
    } const cases[] = {{"0", "7.4"}, {"2", "7.4.2"},   {"00", "7.4"},     {"", "7.4"},
                       {"x", "7.4"}, {" 3", "7.4. 3"}, {"12b", "7.4.12b"}};
    for (const auto& [patch, expected] : cases)
        EXPECT_EQ(composeVersionNumber("7.4", patch), expected) << patch;
}

TEST(NumberFormat, DigitCountOfTheWidthHas32Bits) {
    constexpr std::uint64_t TOP = std::uint64_t{1} << 32;
    EXPECT_EQ(KelRT::numbers::minimumDigits(TOP + 9, 1), 9U);
    EXPECT_EQ(KelRT::numbers::minimumDigits(TOP, 3), TOP / 3 + 1);
    EXPECT_EQ(KelRT::numbers::minimumDigits(3 * TOP + 3, 3), 1U);
    EXPECT_EQ(KelRT::numbers::minimumDigits(8 * TOP - 8, 8), TOP - 1);
}

TEST(Vectors, EqualBytesSetTheirBits) {
    SCOPED_TRACE(test::SEED);
    for (int round = 0; round < 1000; ++round) {
        unsigned char text[KelRT::common::VECTOR_BYTES];
        const auto wanted = static_cast<unsigned char>(test::randomValue());
        std::uint64_t expected = 0;
        for (unsigned i = 0; i < sizeof text; ++i) {
            const bool isWanted = test::randomBelow(2) == 0;
            // The others differ from it in one bit, the top one included.
            text[i] =
                isWanted ? wanted : static_cast<unsigned char>(wanted ^ 1U << test::randomBelow(8));
            expected |= std::uint64_t{isWanted ? 1U : 0U} << i;
        }
        const auto vector = KelRT::common::loadVector(text);
        EXPECT_EQ(KelRT::common::topBits(KelRT::common::equal(vector, static_cast<char>(wanted))),
                  expected);
    }
}

TEST(Vectors, ComparisonsMarkEachByteAlone) {
    using namespace KelRT::common;
    constexpr unsigned char MARK = 0xFF;
    const auto check = [](Vector found, const unsigned char(&expected)[VECTOR_BYTES]) {
        unsigned char bytes[VECTOR_BYTES];
        storeVector(bytes, found);
        EXPECT_TRUE(std::equal(bytes, bytes + VECTOR_BYTES, expected));
    };
    for (unsigned code = 0; code < 256; ++code) {
        SCOPED_TRACE(code);
        // The neighbours are 0xFF and 0, so that a carry out of a byte changes the next one.
        unsigned char text[VECTOR_BYTES];
        unsigned char isDigit[VECTOR_BYTES] = {};
        unsigned char isGreaterThan9[VECTOR_BYTES] = {};
        for (unsigned i = 0; i < VECTOR_BYTES; ++i) {
            text[i] = i % 3 == 0 ? static_cast<unsigned char>(code) : i % 3 == 1 ? 0xFF : 0;
            isDigit[i] = text[i] >= '0' && text[i] <= '9' ? MARK : 0;
            isGreaterThan9[i] = text[i] > 9 && text[i] < 0x80 ? MARK : 0;
        }
        check(between(loadVector(text), '0', '9'), isDigit);
        check(greater(loadVector(text), 9), isGreaterThan9);
    }
}

// A double word as its two words, the high one first.
using Words = std::pair<std::uint64_t, std::uint64_t>;

Words wordsOf(KelRT::common::DoubleWord value) {
    return {static_cast<std::uint64_t>(value >> 64), static_cast<std::uint64_t>(value)};
}

TEST(DoubleWords, ProductsOfWords) {
    using KelRT::common::DoubleWord;
    constexpr std::uint64_t ALL_ONES = ~std::uint64_t{0};
    constexpr std::uint64_t HALF = 0xFFFFFFFF;
    struct {
        std::uint64_t a, b;
        Words product;
    } const cases[] = {
        {0, ALL_ONES, {0, 0}},
        {1, ALL_ONES, {0, ALL_ONES}},
        {ALL_ONES, ALL_ONES, {ALL_ONES - 1, 1}},
        {HALF, HALF, {0, 0xFFFFFFFE00000001}},
        {ALL_ONES, HALF, {HALF - 1, 0xFFFFFFFF00000001}},
        {HALF + 1, HALF + 1, {1, 0}},
        {0x0123456789ABCDEF, 0xFEDCBA9876543210, {0x0121FA00AD77D742, 0x2236D88FE5618CF0}}};
    for (const auto& [a, b, product] : cases) {
        EXPECT_EQ(wordsOf(DoubleWord{a} * b), product) << a << ' ' << b;
        EXPECT_EQ(wordsOf(DoubleWord{b} * a), product) << b << ' ' << a;
    }
}

TEST(DoubleWords, CarriesAndBorrowsPassBetweenTheWords) {
    using KelRT::common::DoubleWord;
    constexpr std::uint64_t ALL_ONES = ~std::uint64_t{0};
    constexpr DoubleWord weight = DoubleWord{1} << 64;
    EXPECT_EQ(wordsOf(DoubleWord{ALL_ONES} + 1), Words(1, 0));
    EXPECT_EQ(wordsOf(weight - 1), Words(0, ALL_ONES));
    EXPECT_EQ(wordsOf(~DoubleWord{0} + 1), Words(0, 0));
    EXPECT_EQ(wordsOf((weight + 3) * (weight + 5)), Words(8, 15));
    EXPECT_TRUE(weight > DoubleWord{ALL_ONES} && weight != DoubleWord{0});
}

TEST(DoubleWords, ShiftsOfEveryCount) {
    using KelRT::common::DoubleWord;
    for (unsigned count = 0; count < 128; ++count) {
        const DoubleWord bit = DoubleWord{1} << count;
        EXPECT_EQ(wordsOf(bit), count < 64 ? Words(0, std::uint64_t{1} << count)
                                           : Words(std::uint64_t{1} << (count - 64), 0));
        EXPECT_EQ(wordsOf(bit >> count), Words(0, 1));
        EXPECT_EQ(wordsOf(~DoubleWord{0} >> count),
                  wordsOf((DoubleWord{1} << (127 - count)) * 2 - 1));
    }
}

TEST(DoubleWords, QuotientsAndTheirRemaindersMakeTheDividend) {
    using KelRT::common::DoubleWord;
    SCOPED_TRACE(test::SEED);
    for (int round = 0; round < 1000; ++round) {
        const DoubleWord dividend = (DoubleWord{test::randomValue()} << 64) + test::randomValue();
        const DoubleWord divisor =
            (DoubleWord{test::randomValue()} >> static_cast<unsigned>(test::randomBelow(64))) + 1;
        const DoubleWord quotient = dividend / divisor;
        const DoubleWord rest = dividend - quotient * divisor;
        EXPECT_TRUE(rest < divisor);
    }
}

} // namespace
