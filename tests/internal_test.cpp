// SPDX-License-Identifier: MIT
#include "common/digits.h"
#include "common/vectors.h"
#include "dice.h"
#include "frame/version_texts.h"
#include "numbers/number_format.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

TEST(Version, PatchLevelOtherThanZeroMakesThreeParts) {
    using KelRT::frame::composeVersionNumber;
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

// A test that refuses too much only costs speed: no text shows it.
TEST(Digits, EightAtATimeAreToldFromEverythingElse) {
    using namespace KelRT::common;
    struct {
        bool (*are)(std::uint64_t characters);
        std::string digits;
    } const kinds[] = {{areBinaryDigits, "01"},
                       {areOctalDigits, "01234567"},
                       {areDecimalDigits, "0123456789"},
                       {areHexDigits, "0123456789abcdefABCDEF"}};
    for (const auto& [are, digits] : kinds)
        for (const char others : digits)
            for (unsigned place = 0; place < 64; place += 8)
                for (unsigned code = 0; code < 256; ++code) {
                    const std::uint64_t others8 = inEachByte(static_cast<std::uint8_t>(others));
                    const std::uint64_t word =
                        (others8 & ~(std::uint64_t{0xFF} << place)) | std::uint64_t{code} << place;
                    const bool isDigit = digits.find(static_cast<char>(code)) != std::string::npos;
                    ASSERT_EQ(are(word), isDigit) << digits << ' ' << code << " at " << place;
                }
}

// Of these, too, a text shows only how fast they are: what is taken for no digit is read again.
TEST(Vectors, SixteenDigitsAreOneNumber) {
    using namespace KelRT::common;
    SCOPED_TRACE(test::SEED);
    for (int round = 0; round < 1000; ++round) {
        const std::uint64_t number = test::randomValue();
        unsigned char text[VECTOR_BYTES];
        for (unsigned i = 0; i < VECTOR_BYTES; ++i)
            text[i] =
                static_cast<unsigned char>("0123456789abcdefABCDEF"[(number >> (60 - 4 * i)) % 16]);
        Vector valid = ~Vector{};
        EXPECT_EQ(numberOfDigits(hexDigitValues(loadVector(text), valid)), number);
        EXPECT_TRUE(allSet(valid));
    }
}

TEST(Vectors, MembersOfATextByBit) {
    SCOPED_TRACE(test::SEED);
    for (int round = 0; round < 1000; ++round) {
        unsigned char text[KelRT::common::VECTOR_BYTES];
        const auto wanted = static_cast<unsigned char>(test::randomValue());
        std::uint64_t expected = 0;
        for (unsigned i = 0; i < sizeof text; ++i) {
            const bool isWanted = test::below(2) == 0;
            // The others differ from it in one bit, the top one included.
            text[i] = isWanted ? wanted : static_cast<unsigned char>(wanted ^ 1U << test::below(8));
            expected |= std::uint64_t{isWanted ? 1U : 0U} << i;
        }
        const auto vector = KelRT::common::loadVector(text);
        EXPECT_EQ(KelRT::common::topBits(KelRT::common::equal(vector, static_cast<char>(wanted))),
                  expected);
    }
}

} // namespace
