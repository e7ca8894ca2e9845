// SPDX-License-Identifier: MIT
#include "common/hex.h"
#include "common/u128.h"
#include "common/u64.h"
#include "common/vectors.h"
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

// The typed tests call the functions of both back ends: the types of the arguments select them.
using namespace KelRT::common;

using Bytes = std::array<unsigned char, VECTOR_BYTES>;

template <typename U64VectorType>
U64VectorType u64sIn(const Bytes& bytes) {
    return U64VectorType{loadU64(bytes.data()), loadU64(bytes.data() + 8)};
}

template <typename VectorType>
Bytes bytesIn(VectorType vector) {
    Bytes bytes;
    storeVector(bytes.data(), vector);
    return bytes;
}

// Returns sixteen bytes, of which byte i is rule(i).
template <typename Rule>
Bytes eachByte(Rule rule) {
    Bytes bytes;
    for (unsigned i = 0; i < VECTOR_BYTES; ++i)
        bytes[i] = static_cast<unsigned char>(rule(i));
    return bytes;
}

template <typename U64VectorType>
class Vectors : public testing::Test {};

using BackEnds = testing::Types<U64Vector, iso::U64Vector>;
TYPED_TEST_SUITE(Vectors, BackEnds, );

TYPED_TEST(Vectors, ComparisonsMarkEachByteAlone) {
    for (unsigned code = 0; code < 256; ++code) {
        SCOPED_TRACE(code);
        // Each byte that is `code` has 0 before it and 0xFF after it, so a carry from one byte into
        // the next would change the result.
        const Bytes text = eachByte([code](unsigned i) {
            return i % 3 == 0 ? code : i % 3 == 1 ? 0xFF : 0;
        });
        const auto vector = bytesOf(u64sIn<TypeParam>(text));
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
        const auto a64 = u64sIn<TypeParam>(a);
        const auto b64 = u64sIn<TypeParam>(b);
        const auto vectorA = bytesOf(a64);
        const auto vectorB = bytesOf(b64);
        EXPECT_EQ(bytesIn(vectorA), a);
        EXPECT_EQ(firstU64(vectorA), loadU64(a.data()));
        EXPECT_EQ(secondU64(vectorA), loadU64(a.data() + 8));
        EXPECT_EQ(bytesIn(bytesOf(middleU64s(a64, b64))),
                  eachByte([&](unsigned i) { return i < 8 ? a[i + 8] : b[i - 8]; }));
        EXPECT_EQ(bytesIn(interleave(vectorA, vectorB)),
                  eachByte([&](unsigned i) { return i % 2 == 0 ? a[i / 2] : b[i / 2]; }));
        const Bytes even = eachByte([&](unsigned i) { return i < 8 ? a[std::size_t{2} * i] : 0; });
        EXPECT_EQ(evenBytes(a64), loadU64(even.data()));
        std::uint64_t tops = 0;
        for (unsigned i = 0; i < VECTOR_BYTES; ++i)
            tops |= std::uint64_t{a[i] >= 0x80U} << i;
        EXPECT_EQ(topBits(vectorA), tops);
        EXPECT_EQ(bytesIn((vectorA & vectorB) | ((vectorA >> 1) + (vectorB >> 1))),
                  eachByte([&](unsigned i) { return (a[i] & b[i]) | (a[i] / 2 + b[i] / 2); }));
        EXPECT_EQ(
            bytesIn(bytesOf(a64 << 3 | b64 >> 5)),
            bytesIn(bytesOf(TypeParam{loadU64(a.data()) << 3 | loadU64(b.data()) >> 5,
                                      loadU64(a.data() + 8) << 3 | loadU64(b.data() + 8) >> 5})));
    }
}

TEST(Vectors, LoadsAreInMemoryOrder) {
    const Bytes bytes = eachByte([](unsigned i) { return 3 * i; });
    EXPECT_EQ(bytesIn(loadVector(bytes.data())), bytes);
    EXPECT_EQ(bytesIn(iso::loadVector(bytes.data())), bytes);
}

// Holds the upper half, then the lower one.
using Halves = std::pair<std::uint64_t, std::uint64_t>;

template <typename U128Type>
Halves halvesOf(U128Type value) {
    return {static_cast<std::uint64_t>(value >> 64), static_cast<std::uint64_t>(value)};
}

template <typename U128Type>
class U128s : public testing::Test {};

using U128Types = testing::Types<U128, PortableU128>;
TYPED_TEST_SUITE(U128s, U128Types, );

TYPED_TEST(U128s, ProductsOfHalves) {
    constexpr std::uint64_t ALL_ONES = ~std::uint64_t{0};
    constexpr std::uint64_t HALF = 0xFFFFFFFF;
    struct {
        std::uint64_t a, b;
        Halves product;
    } const cases[] = {
        {0, ALL_ONES, {0, 0}},
        {1, ALL_ONES, {0, ALL_ONES}},
        {ALL_ONES, ALL_ONES, {ALL_ONES - 1, 1}},
        {HALF, HALF, {0, 0xFFFFFFFE00000001}},
        {ALL_ONES, HALF, {HALF - 1, 0xFFFFFFFF00000001}},
        {HALF + 1, HALF + 1, {1, 0}},
        {0x0123456789ABCDEF, 0xFEDCBA9876543210, {0x0121FA00AD77D742, 0x2236D88FE5618CF0}}};
    for (const auto& [a, b, product] : cases) {
        EXPECT_EQ(halvesOf(TypeParam{a} * b), product) << a << ' ' << b;
        EXPECT_EQ(halvesOf(TypeParam{b} * a), product) << b << ' ' << a;
    }
}

TYPED_TEST(U128s, CarriesAndBorrowsPassBetweenTheHalves) {
    constexpr std::uint64_t ALL_ONES = ~std::uint64_t{0};
    constexpr TypeParam weight = TypeParam{1} << 64;
    EXPECT_EQ(halvesOf(TypeParam{ALL_ONES} + 1), Halves(1, 0));
    EXPECT_EQ(halvesOf(weight - 1), Halves(0, ALL_ONES));
    EXPECT_EQ(halvesOf(~TypeParam{0} + 1), Halves(0, 0));
    EXPECT_EQ(halvesOf((weight + 3) * (weight + 5)), Halves(8, 15));
    EXPECT_TRUE(weight > TypeParam{ALL_ONES} && weight != TypeParam{0});
}

TYPED_TEST(U128s, ShiftsOfEveryCount) {
    for (unsigned count = 0; count < 128; ++count) {
        const TypeParam bit = TypeParam{1} << count;
        EXPECT_EQ(halvesOf(bit), count < 64 ? Halves(0, std::uint64_t{1} << count)
                                            : Halves(std::uint64_t{1} << (count - 64), 0));
        EXPECT_EQ(halvesOf(bit >> count), Halves(0, 1));
        EXPECT_EQ(halvesOf(~TypeParam{0} >> count),
                  halvesOf((TypeParam{1} << (127 - count)) * 2 - 1));
    }
}

TYPED_TEST(U128s, QuotientsAndTheirRemaindersMakeTheDividend) {
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
