// SPDX-License-Identifier: MIT
#include "KelRT/Kel_NumberUtil.h"

#include "models/number_util_model.h"
#include "support/failing_new.h"
#include "support/outcome.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
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

/// The message of the exception, followed by the output as the exception left it.
std::string refusal(const std::function<void(std::string& out)>& call) {
    std::string out = " (kept)";
    const std::string message = test::outcome([&] {
        call(out);
        return "no exception";
    });
    return message + out;
}

TEST(Conversions, BadArgumentsThrowAndLeaveTheOutputEmpty) {
    unsigned char byte = 0;
    const std::string bad = "Internal error: bad ";
    EXPECT_EQ(refusal([](auto& out) { Util::bin2ReverseBinStr(nullptr, 0, out); }),
              bad + "bitCount value for Kel_NumberUtil::bin2ReverseBinStr");
    EXPECT_EQ(refusal([](auto& out) { Util::bin2ReverseBinStr(nullptr, 1, out); }),
              bad + "binArray in Kel_NumberUtil::bin2ReverseBinStr");
    EXPECT_EQ(refusal([](auto&) { Util::reverseBinStr2Bin(nullptr, nullptr); }),
              bad + "binStr in Kel_NumberUtil::reverseBinStr2Bin (kept)");
    EXPECT_EQ(refusal([&](auto&) { Util::reverseBinStr2Bin(nullptr, &byte); }),
              bad + "binStr in Kel_NumberUtil::reverseBinStr2Bin (kept)");
    EXPECT_EQ(refusal([](auto&) { Util::reverseBinStr2Bin("", nullptr); }),
              bad + "binArray in Kel_NumberUtil::reverseBinStr2Bin (kept)");
    for (const char* const text : {static_cast<const char*>(nullptr), ""}) {
        EXPECT_EQ(refusal([&](auto& out) { Util::binStr2HexStr(text, out); }),
                  bad + "binStr for Kel_NumberUtil::binStr2HexStr");
        EXPECT_EQ(refusal([&](auto& out) { Util::hexStr2BinStr(text, 0, out); }),
                  bad + "hexStr for Kel_NumberUtil::hexStr2BinStr");
    }
    EXPECT_EQ(refusal([](auto& out) { Util::hexStr2BinStr("1", 0, out); }),
              bad + "bitCount for Kel_NumberUtil::hexStr2BinStr");
    for (const std::uint32_t bits : {0U, 33U})
        EXPECT_EQ(refusal([&](auto& out) { Util::uInt2BinStr(1, bits, out); }),
                  bad + "bitCount value for Kel_NumberUtil::uInt2BinStr");
    EXPECT_EQ(refusal([](auto&) { static_cast<void>(Util::hexStr2UInt(nullptr)); }),
              "Kel_NumberUtil::hexStr2UInt called with null ptr (kept)");
}

TEST(Conversions, InputMayBeTheOutputsOwnText) {
    for (const std::string bits : {"0101", "01010101101011010110101101011010110101101"}) {
        std::string s = bits;
        EXPECT_EQ(Util::binStr2HexStr(s.c_str() + 3, s), model::binToHex(bits.substr(3)));
        s = bits;
        EXPECT_EQ(Util::hexStr2BinStr(s.c_str(), 50, s), model::hexToBin(bits, 50));
        s = bits;
        const auto* const array = reinterpret_cast<const unsigned char*>(s.data());
        EXPECT_EQ(Util::bin2ReverseBinStr(array, 16, s), "0000110010001100"); // '0' and '1'
    }
}

TEST(Conversions, TextsEndAtTheirFirstNulAndMayBeEmpty) {
    EXPECT_EQ(Util::hexStr2UInt("\x80"), 0xFFFFFF50U);
    std::string text("12\0FF", 5);
    EXPECT_EQ(Util::hexStr2ULL(text), 0x12U);
    EXPECT_EQ(Util::decStr2ULL(text), 12U);
    text.clear();
    EXPECT_EQ(Util::hexStr2ULL(text) + Util::hexStr2UInt("") + Util::binStr2UInt(""), 0U);
    EXPECT_EQ(Util::binStr2UInt(nullptr), 0U);
}

TEST(Conversions, DecimalTextIsReadAsTheStandardScanReadsIt) {
    const std::string many(25, '9');
    for (const std::string text :
         {"\t\n\v\f\r +7", "+-1", "- 1", "+", "0x10", "\xA0+5", "9223372036854775807",
          "9223372036854775808", "-9223372036854775808", "-9223372036854775809",
          "18446744073709551616", "9999999999999999999", "-10000000000000000000", many.c_str(),
          "-000000000000000000000000012345678", "1234567:9", "000000001234567/", "12345678 1"})
        EXPECT_EQ(Util::decStr2ULL(text),
                  static_cast<std::uint64_t>(std::strtoll(text.c_str(), nullptr, 10)))
            << text;
}

TEST(Conversions, DigitCountsDoNotWrap) {
    if (!test::failingNewReachesTheLibrary())
        GTEST_SKIP() << "the library has an operator new of its own here";
    std::string out;
    const test::FailingNew noMemory;
    EXPECT_THROW(Util::hexStr2BinStr("1", 0xFFFFFFFF, out), std::bad_alloc);
    // 2^30 digits, and not the few that a sum of 32 bits would leave.
    EXPECT_THROW(Util::uInt2HexStr(5, 0xFFFFFFFF, out), std::bad_alloc);
}

} // namespace
