// SPDX-License-Identifier: MIT
#include "common/double_word.h"
#include "common/hex.h"
#include "common/vectors.h"
#include "common/words.h"
#include "library/version.h"
#include "numbers/radix.h"
#include "support/random_values.h"

#include <gtest/gtest.h>

#include <array>
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

// A typed test finds the operations of either back end through the types of their arguments.
using namespace KelRT::common;

using Bytes = std::array<unsigned char, VECTOR_BYTES>;

template <typename WordVectorType>
WordVectorType wordsIn(const Bytes& bytes) {
    return WordVectorType{loadWord(bytes.data()), loadWord(bytes.data() + 8)};
}

template <typename VectorType>
Bytes bytesIn(VectorType vector) {
    Bytes bytes;
    storeVector(bytes.data(), vector);
    return bytes;
}

// The bytes that `rule` gives for the numbers from 0 to 15.
template <typename Rule>
Bytes eachByte(Rule rule) {
    Bytes bytes;
    for (unsigned i = 0; i < VECTOR_BYTES; ++i)
        bytes[i] = static_cast<unsigned char>(rule(i));
    return bytes;
}

template <typename WordVectorType>
class Vectors : public testing::Test {};

using BackEnds = testing::Types<WordVector, iso::WordVector>;
TYPED_TEST_SUITE(Vectors, BackEnds, );

TYPED_TEST(Vectors, ComparisonsMarkEachByteAlone) {
    for (unsigned code = 0; code < 256; ++code) {
        SCOPED_TRACE(code);
        // The neighbours are 0xFF and 0, so that a carry out of a byte changes the next one.
        const Bytes text = eachByte([code](unsigned i) {
            return i % 3 == 0 ? code : i % 3 == 1 ? 0xFF : 0;
        });
        const auto vector = bytesOf(wordsIn<TypeParam>(text));
        const auto marked = [&text](auto holds) {
            return eachByte([&](unsigned i) { return holds(text[i]) ? 0xFF : 0; });
        };
        EXPECT_EQ(bytesIn(between(vector, '0', '9')),
                  marked([](unsigned byte) { return '0' <= byte && byte <= '9'; }));
        EXPECT_EQ(bytesIn(between(vector, 0, 127)),
                  marked([](unsigned byte) { return byte <= 127; }));
        EXPECT_EQ(bytesIn(greater(vector, 9)),
                  marked([](unsigned byte) { return 9 < byte && byte <= 127; }));
        for (unsigned bit = 0; bit < 8; ++bit) { // a byte that differs in one bit is not equal
            const unsigned other = code ^ 1U << bit;
            EXPECT_EQ(bytesIn(equal(vector, static_cast<char>(other))),
                      marked([other](unsigned byte) { return byte == other; }));
        }
    }
}

TYPED_TEST(Vectors, OperationsMoveAndCombineBytesInMemoryOrder) {
    SCOPED_TRACE(test::SEED);
    for (int round = 0; round < 1000; ++round) {
        const auto random = [](unsigned) { return test::randomValue(); };
        const Bytes a = eachByte(random);
        const Bytes b = eachByte(random);
        const auto wordsA = wordsIn<TypeParam>(a);
        const auto wordsB = wordsIn<TypeParam>(b);
        const auto vectorA = bytesOf(wordsA);
        const auto vectorB = bytesOf(wordsB);
        EXPECT_EQ(bytesIn(vectorA), a);
        EXPECT_EQ(firstWord(vectorA), loadWord(a.data()));
        EXPECT_EQ(secondWord(vectorA), loadWord(a.data() + 8));
        EXPECT_EQ(bytesIn(bytesOf(middleWords(wordsA, wordsB))),
                  eachByte([&](unsigned i) { return i < 8 ? a[i + 8] : b[i - 8]; }));
        EXPECT_EQ(bytesIn(interleave(vectorA, vectorB)),
                  eachByte([&](unsigned i) { return i % 2 == 0 ? a[i / 2] : b[i / 2]; }));
        const Bytes even = eachByte([&](unsigned i) { return i < 8 ? a[std::size_t{2} * i] : 0; });
        EXPECT_EQ(evenBytes(wordsA), loadWord(even.data()));
        std::uint64_t tops = 0;
        for (unsigned i = 0; i < VECTOR_BYTES; ++i)
            tops |= std::uint64_t{a[i] >= 0x80U} << i;
        EXPECT_EQ(topBits(vectorA), tops);
        EXPECT_EQ(bytesIn((vectorA & vectorB) | ((vectorA >> 1) + (vectorB >> 1))),
                  eachByte([&](unsigned i) { return (a[i] & b[i]) | (a[i] / 2 + b[i] / 2); }));
        EXPECT_EQ(
            bytesIn(bytesOf(wordsA << 3 | wordsB >> 5)),
            bytesIn(bytesOf(TypeParam{loadWord(a.data()) << 3 | loadWord(b.data()) >> 5,
                                      loadWord(a.data() + 8) << 3 | loadWord(b.data() + 8) >> 5})));
    }
}

TEST(Vectors, LoadsAreInMemoryOrder) {
    const Bytes bytes = eachByte([](unsigned i) { return 3 * i; });
    EXPECT_EQ(bytesIn(loadVector(bytes.data())), bytes);
    EXPECT_EQ(bytesIn(iso::loadVector(bytes.data())), bytes);
}

// A double word as its two words, the high one first.
using Words = std::pair<std::uint64_t, std::uint64_t>;

template <typename DoubleWordType>
Words wordsOf(DoubleWordType value) {
    return {static_cast<std::uint64_t>(value >> 64), static_cast<std::uint64_t>(value)};
}

template <typename DoubleWordType>
class DoubleWords : public testing::Test {};

using DoubleWordTypes = testing::Types<DoubleWord, TwoWords>;
TYPED_TEST_SUITE(DoubleWords, DoubleWordTypes, );

TYPED_TEST(DoubleWords, ProductsOfWords) {
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
        EXPECT_EQ(wordsOf(TypeParam{a} * b), product) << a << ' ' << b;
        EXPECT_EQ(wordsOf(TypeParam{b} * a), product) << b << ' ' << a;
    }
}

TYPED_TEST(DoubleWords, CarriesAndBorrowsPassBetweenTheWords) {
    constexpr std::uint64_t ALL_ONES = ~std::uint64_t{0};
    constexpr TypeParam weight = TypeParam{1} << 64;
    EXPECT_EQ(wordsOf(TypeParam{ALL_ONES} + 1), Words(1, 0));
    EXPECT_EQ(wordsOf(weight - 1), Words(0, ALL_ONES));
    EXPECT_EQ(wordsOf(~TypeParam{0} + 1), Words(0, 0));
    EXPECT_EQ(wordsOf((weight + 3) * (weight + 5)), Words(8, 15));
    EXPECT_TRUE(weight > TypeParam{ALL_ONES} && weight != TypeParam{0});
}

TYPED_TEST(DoubleWords, ShiftsOfEveryCount) {
    for (unsigned count = 0; count < 128; ++count) {
        const TypeParam bit = TypeParam{1} << count;
        EXPECT_EQ(wordsOf(bit), count < 64 ? Words(0, std::uint64_t{1} << count)
                                           : Words(std::uint64_t{1} << (count - 64), 0));
        EXPECT_EQ(wordsOf(bit >> count), Words(0, 1));
        EXPECT_EQ(wordsOf(~TypeParam{0} >> count),
                  wordsOf((TypeParam{1} << (127 - count)) * 2 - 1));
    }
}

TYPED_TEST(DoubleWords, QuotientsAndTheirRemaindersMakeTheDividend) {
    SCOPED_TRACE(test::SEED);
    for (int round = 0; round < 1000; ++round) {
        const TypeParam dividend = (TypeParam{test::randomValue()} << 64) + test::randomValue();
        const TypeParam divisor =
            (TypeParam{test::randomValue()} >> static_cast<unsigned>(test::randomBelow(64))) + 1;
        const TypeParam quotient = dividend / divisor;
        const TypeParam rest = dividend - quotient * divisor;
        EXPECT_TRUE(rest < divisor);
    }
}

} // namespace
