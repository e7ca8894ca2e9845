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
#include <type_traits>
#include <vector>

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

using namespace KelRT::common;

using Bytes = std::array<unsigned char, VECTOR_BYTES>;

Bytes bytesIn(auto vector) {
    Bytes bytes;
    storeVector(bytes.data(), vector);
    return bytes;
}

// Returns sixteen bytes, of which byte i is rule(i).
Bytes eachByte(auto rule) {
    Bytes bytes;
    for (unsigned i = 0; i < VECTOR_BYTES; ++i)
        bytes[i] = static_cast<unsigned char>(rule(i));
    return bytes;
}

// Returns random bytes. Many are 0, 0xFF, `code`, or differ from it in one bit, since a carry from
// one byte into the next would show there.
Bytes randomBytes(unsigned code) {
    return eachByte([code](unsigned) {
        const std::uint64_t choices[] = {0, 0xFF, code, code ^ 1, test::randomValue()};
        return choices[test::randomBelow(5)];
    });
}

// Holds sixteen bytes in the forms that the operations take. The type selects the back end.
template <typename U64VectorType>
struct Operand {
    Bytes bytes;
    std::uint64_t first = loadU64(bytes.data());
    std::uint64_t second = loadU64(bytes.data() + 8);
    U64VectorType u64s{first, second};
    decltype(bytesOf(u64s)) vector = bytesOf(u64s);
};

template <typename U64VectorType>
class Vectors : public testing::Test {};

using BackEnds = testing::Types<U64Vector, iso::U64Vector>;
TYPED_TEST_SUITE(Vectors, BackEnds, );

TYPED_TEST(Vectors, ComparisonsMarkEachByteAlone) {
    SCOPED_TRACE(test::SEED);
    for (unsigned code = 0; code < 10 * 256; ++code) {
        const Operand<TypeParam> a{randomBytes(code)};
        const auto marked = [&a](auto holds) {
            return eachByte([&](unsigned i) { return holds(a.bytes[i]) ? 0xFF : 0; });
        };
        EXPECT_EQ(bytesIn(between(a.vector, '0', '9')),
                  marked([](unsigned byte) { return '0' <= byte && byte <= '9'; }));
        EXPECT_EQ(bytesIn(between(a.vector, 0, 127)),
                  marked([](unsigned byte) { return byte <= 127; }));
        EXPECT_EQ(bytesIn(greater(a.vector, 9)),
                  marked([](unsigned byte) { return 9 < byte && byte <= 127; }));
        EXPECT_EQ(bytesIn(equal(a.vector, static_cast<char>(code))),
                  marked([code](unsigned byte) { return byte == code % 256; }));
        std::uint64_t tops = 0;
        for (unsigned i = 0; i < VECTOR_BYTES; ++i)
            tops |= std::uint64_t{a.bytes[i] >= 0x80U} << i;
        EXPECT_EQ(topBits(a.vector), tops);
    }
}

TYPED_TEST(Vectors, OperationsMoveAndCombineBytesInMemoryOrder) {
    SCOPED_TRACE(test::SEED);
    for (unsigned round = 0; round < 1000; ++round) {
        const Operand<TypeParam> a{randomBytes(round)};
        const Operand<TypeParam> b{randomBytes(round)};
        EXPECT_EQ(bytesIn(a.vector), a.bytes);
        EXPECT_EQ(bytesIn(loadVector(a.bytes.data())), a.bytes);
        EXPECT_EQ(bytesIn(iso::loadVector(a.bytes.data())), a.bytes);
        EXPECT_EQ(firstU64(a.vector), a.first);
        EXPECT_EQ(secondU64(a.vector), a.second);
        EXPECT_EQ(bytesIn(bytesOf(middleU64s(a.u64s, b.u64s))),
                  eachByte([&](unsigned i) { return i < 8 ? a.bytes[i + 8] : b.bytes[i - 8]; }));
        EXPECT_EQ(bytesIn(interleave(a.vector, b.vector)),
                  eachByte([&](unsigned i) { return (i % 2 == 0 ? a.bytes : b.bytes)[i / 2]; }));
        const Bytes even = eachByte([&](unsigned i) { return a.bytes[std::size_t{2} * i % 16]; });
        EXPECT_EQ(evenBytes(a.u64s), loadU64(even.data()));
        EXPECT_EQ(bytesIn((a.vector & b.vector) | ((a.vector >> 1) + (b.vector >> 1))),
                  eachByte([&](unsigned i) {
                      return (a.bytes[i] & b.bytes[i]) | (a.bytes[i] / 2 + b.bytes[i] / 2);
                  }));
        const auto shifted = bytesOf(a.u64s << 3 | b.u64s >> 5);
        EXPECT_EQ(firstU64(shifted), a.first << 3 | b.first >> 5);
        EXPECT_EQ(secondU64(shifted), a.second << 3 | b.second >> 5);
    }
}

// Returns the low and the high half of the operands and of each operator's result.
template <typename U128Type>
std::vector<std::uint64_t> resultsOf(const std::array<std::uint64_t, 4>& halves, unsigned count) {
    const U128Type a = (U128Type{halves[0]} << 64) + halves[1];
    const U128Type b = (U128Type{halves[2]} << 64) + halves[3];
    U128Type sum = a;
    sum += b;
    sum >>= count;
    std::vector<std::uint64_t> results;
    for (const U128Type result :
         {a, b, a + b, a - b, a * b, a / ((b >> 1) + 1), ~a, a << count, a >> count, sum,
          U128Type{a < b}, U128Type{a > b}, U128Type{a == b}, U128Type{a != b}})
        for (const U128Type half : {result, result >> 64})
            results.push_back(static_cast<std::uint64_t>(half));
    return results;
}

TEST(PortableU128, HasTheResultsOfTheCompilersType) {
    if (std::is_same_v<U128, PortableU128>)
        GTEST_SKIP() << "this compiler has no such type";
    SCOPED_TRACE(test::SEED);
    for (int round = 0; round < 5000; ++round) {
        const auto random = [] {
            const std::uint64_t choices[] = {
                0, 1, 0xFFFFFFFF, ~std::uint64_t{0}, test::randomValue(), test::randomValue()};
            return choices[test::randomBelow(6)];
        };
        const std::array<std::uint64_t, 4> halves{random(), random(), random(), random()};
        const auto count = static_cast<unsigned>(test::randomBelow(128));
        EXPECT_EQ(resultsOf<U128>(halves, count), resultsOf<PortableU128>(halves, count)) << count;
    }
}

} // namespace
