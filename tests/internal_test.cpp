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

TEST(Version, HasThreePartsUnlessThePatchLevelIsZero) {
    using KelRT::library::composeVersionNumber;
    struct {
        const char* patch;
        const char* expected;
    } const cases[] = {{"0", "7.4"}, {"2", "7.4.2"},   {"00", "7.4"},     {"", "7.4"},
                       {"x", "7.4"}, {" 3", "7.4. 3"}, {"12b", "7.4.12b"}};
    for (const auto& [patch, expected] : cases)
        EXPECT_EQ(composeVersionNumber("7.4", patch), expected) << patch;
}

TEST(NumberFormat, MinimumDigitsAreComputedModulo2ToThe32) {
    constexpr std::uint64_t TOP = std::uint64_t{1} << 32;
    EXPECT_EQ(KelRT::numbers::minimumDigits(TOP + 9, 1), 9U);
    EXPECT_EQ(KelRT::numbers::minimumDigits(TOP, 3), TOP / 3 + 1);
    EXPECT_EQ(KelRT::numbers::minimumDigits(3 * TOP + 3, 3), 1U);
    EXPECT_EQ(KelRT::numbers::minimumDigits(8 * TOP - 8, 8), TOP - 1);
}

using namespace KelRT::common;

using Bytes = std::array<unsigned char, VECTOR_BYTES>;

// Returns random bytes. Many are 0, 0xFF, `code` or `code ^ 1`, since these reveal a carry from one
// byte into the next.
Bytes randomBytes(unsigned code) {
    Bytes bytes;
    for (unsigned char& byte : bytes) {
        const std::uint64_t choices[] = {0, 0xFF, code, code ^ 1, test::randomValue()};
        byte = static_cast<unsigned char>(choices[test::randomBelow(5)]);
    }
    return bytes;
}

// Returns the results of all operations on the vectors that are stored at `a` and `b`. The type of
// the vectors selects the back end.
template <typename U64VectorType>
std::vector<std::uint64_t> vectorResults(const Bytes& a, const Bytes& b, unsigned code) {
    const U64VectorType u{loadU64(a.data()), loadU64(&a[8])};
    const U64VectorType v{loadU64(b.data()), loadU64(&b[8])};
    const auto x = bytesOf(u);
    const auto y = bytesOf(v);
    Bytes stored;
    storeVector(stored.data(), x);
    std::vector<std::uint64_t> results{topBits(x), evenBytes(u), loadU64(stored.data()),
                                       loadU64(&stored[8])};
    using Vector = std::remove_const_t<decltype(x)>;
    const Vector vectors[] = {x,
                              between(x, '0', '9'),
                              between(x, 0, 127),
                              greater(x, 9),
                              equal(x, static_cast<char>(code)),
                              interleave(x, y),
                              bytesOf(middleU64s(u, v)),
                              (x & y) | ((x >> 1) + (y >> 1)),
                              bytesOf(u << 3 | v >> 5)};
    for (const Vector& vector : vectors) {
        results.push_back(firstU64(vector));
        results.push_back(secondU64(vector));
    }
    return results;
}

TEST(PortableVectors, HaveTheResultsOfTheCompilersVectors) {
    if (std::is_same_v<U64Vector, iso::U64Vector>)
        GTEST_SKIP() << "this compiler has no vectors of its own";
    SCOPED_TRACE(test::SEED);
    for (unsigned code = 0; code < 10 * 256; ++code) {
        const Bytes a = randomBytes(code);
        const Bytes b = randomBytes(code);
        EXPECT_EQ(vectorResults<U64Vector>(a, b, code), vectorResults<iso::U64Vector>(a, b, code));
        Bytes copy;
        iso::storeVector(copy.data(), iso::loadVector(a.data()));
        EXPECT_EQ(copy, a);
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
        GTEST_SKIP() << "this compiler has no 128-bit integer";
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
