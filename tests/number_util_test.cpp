// SPDX-License-Identifier: MIT
#include "KelRT/Kel_NumberUtil.h"

#include "models/number_util_model.h"
#include "support/failing_new.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

using namespace KelRT;
using Util = Kel_NumberUtil;

namespace {

TEST(BitReaders, IndicesInTheWrongOrderReadNothing) {
    for (const auto read : {Util::getBits, Util::getLongBits})
        EXPECT_EQ(read(nullptr, 0, std::numeric_limits<int>::max()), 0U);
    for (const auto read : {Util::getReverseBits, Util::getReverseLongBits})
        EXPECT_EQ(read(nullptr, 5, 3), 0U);
    EXPECT_EQ(Util::getLongLongBits(nullptr, 3, 5), 0U);
    EXPECT_EQ(Util::getReverseLongLongBits(nullptr, 5, 3), 0U);
    testing::internal::CaptureStdout();
    EXPECT_EQ(Util::getLongLongBitsDebug(nullptr, 0, 7), 0U);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\n");
}

TEST(Conversions, InputMayBeTheOutputsOwnText) {
    for (const std::string bits : {"0101", "01010101101011010110101101011010110101101"}) {
        std::string s = bits;
        EXPECT_EQ(Util::binStr2HexStr(s.c_str() + 3, s), model::binToHex(bits.substr(3)));
        s = bits;
        EXPECT_EQ(Util::hexStr2BinStr(s.c_str(), 50, s), model::hexToBin(bits, 50));
        s = bits;
        const auto* const array = reinterpret_cast<const unsigned char*>(s.data());
        EXPECT_EQ(Util::bin2ReverseBinStr(array, 16, s), "0000110010001100"); // 0x30, 0x31
    }
}

TEST(Conversions, DigitCountsDoNotWrap) {
    if (!test::failingNewReachesTheLibrary())
        GTEST_SKIP() << "the library has an operator new of its own here";
    std::string out;
    const test::FailingNew noMemory;
    EXPECT_THROW(Util::hexStr2BinStr("1", 0xFFFFFFFF, out), std::bad_alloc);
    // The text would have 2^30 digits. Computed in 32 bits, (bitCount + 3) / 4 would wrap to 0.
    EXPECT_THROW(Util::uInt2HexStr(5, 0xFFFFFFFF, out), std::bad_alloc);
}

} // namespace
