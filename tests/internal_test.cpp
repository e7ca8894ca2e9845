// SPDX-License-Identifier: MIT
#include "frame/version_texts.h"
#include "numbers/number_format.h"

#include <gtest/gtest.h>

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

} // namespace
