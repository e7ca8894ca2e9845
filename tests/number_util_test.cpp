// SPDX-License-Identifier: MIT
#include "KelRT/Kel_NumberUtil.h"

#include "dice.h"
#include "failing_new.h"
#include "models/number_util_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

using namespace KelRT;
using test::below;
using test::randomValue;
using test::SEED;
using Util = Kel_NumberUtil;
using Bytes = std::vector<unsigned char>;

namespace {

/// Characters of the alphabet; in every other text some of any code but 0.
std::string randomText(std::size_t length, const std::string& alphabet) {
    const bool mixed = below(2) == 0;
    std::string text;
    while (text.size() < length)
        text += mixed && below(5) == 0 ? static_cast<char>(1 + below(255))
                                       : alphabet[below(alphabet.size())];
    return text;
}

TEST(BitReaders, EveryPairOfIndicesIsReadAsBitByBit) {
    for (int high = 0; high < 150; ++high) {
        // Not a byte behind the field, so that a checked build notices when one is read.
        Bytes data(static_cast<std::size_t>(high) / 8 + 1);
        std::generate(data.begin(), data.end(),
                      [] { return static_cast<unsigned char>(randomValue()); });
        const unsigned char* const p = data.data();
        for (int low = 0; low <= high; ++low) {
            const std::uint64_t down = model::field(data, high, low);
            const std::uint64_t up = model::field(data, low, high);
            const std::string context = std::to_string(high) + " to " + std::to_string(low);
            ASSERT_EQ(Util::getLongLongBits(p, high, low), down) << context;
            ASSERT_EQ(Util::getReverseLongLongBits(p, low, high), up) << context;
            ASSERT_EQ(Util::getBits(p, high, low), down & 0xFFFFFFFF) << context;
            ASSERT_EQ(Util::getLongBits(p, high, low), down & 0xFFFFFFFF) << context;
            ASSERT_EQ(Util::getReverseBits(p, low, high), up & 0xFFFFFFFF) << context;
            ASSERT_EQ(Util::getReverseLongBits(p, low, high), up & 0xFFFFFFFF) << context;
        }
    }
}

TEST(BitReaders, IndicesInTheWrongOrderReadNothing) {
    for (const auto read : {Util::getBits, Util::getLongBits})
        EXPECT_EQ(read(nullptr, 0, std::numeric_limits<int>::max()), 0U);
    for (const auto read : {Util::getReverseBits, Util::getReverseLongBits})
        EXPECT_EQ(read(nullptr, 5, 3), 0U);
    EXPECT_EQ(Util::getLongLongBits(nullptr, 3, 5), 0U);
    EXPECT_EQ(Util::getReverseLongLongBits(nullptr, 5, 3), 0U);
}

TEST(BitReaders, DebugFormPrintsEveryBitInRowsOfEight) {
    const Bytes data = {0x3A, 0x0B, 0, 0, 0, 0, 0, 0, 0x80};
    const std::string zeros = "00000000\n00000000\n00000000\n00000000\n00000000\n00000000\n";
    struct {
        int firstBit, lastBit;
        std::string printed;
    } const cases[] = {{11, 0, "10110011\n1010\n"},
                       {7, 0, "00111010\n\n"},
                       {0, 7, "\n"},
                       {4, 4, "1\n"},
                       {71, 4, "10000000\n" + zeros + "00001011\n0011\n"}};
    for (const auto& [firstBit, lastBit, printed] : cases) {
        testing::internal::CaptureStdout();
        const std::uint64_t read = Util::getLongLongBitsDebug(data.data(), firstBit, lastBit);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), printed);
        EXPECT_EQ(read, firstBit < lastBit ? 0 : model::field(data, firstBit, lastBit));
    }
}

/// The message of the exception, and behind it what it leaves in the output.
std::string refusal(const std::function<void(std::string& out)>& call) {
    std::string out = " (kept)";
    try {
        call(out);
    } catch (const std::logic_error& error) {
        return error.what() + out;
    }
    return "no exception";
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
    EXPECT_EQ(refusal([](auto&) { Util::hexStr2UInt(nullptr); }),
              "Kel_NumberUtil::hexStr2UInt called with null ptr (kept)");
}

TEST(Conversions, TheResultIsTheStringThatWasGiven) {
    std::string out = "left over";
    const unsigned char byte = 0x06;
    const auto expect = [&out](std::string& result, const char* text) {
        EXPECT_EQ(&result, &out) << text;
        EXPECT_EQ(result, text);
    };
    expect(Util::bin2ReverseBinStr(&byte, 4, out), "0110");
    expect(Util::binStr2HexStr("11111", out), "1F");
    expect(Util::hexStr2BinStr("a5", 10, out), "0010100101");
    expect(Util::uInt2BinStr(5, 2, out), "01");
    expect(Util::uInt2DecStr(0, out), "0");
    expect(Util::uLL2DecStr(~std::uint64_t{0}, out), "-1");
    expect(Util::uLL2HexStr(0, out), "0");
    expect(Util::uInt2HexStr(0xAB, 16, out), "00ab");
    expect(Util::double2Str(1.5, out), "1.500000");
}

TEST(Conversions, SingleDigitsFollowTheUpperCaseRule) {
    for (std::uint32_t value = 0; value < 17; ++value)
        EXPECT_EQ(Util::bin2Hex(value), "0123456789ABCDEFG"[value]);
    EXPECT_EQ(Util::hex2Bin('a'), 42U);
    for (int code = 0; code < 256; ++code) {
        const char c = static_cast<char>(code);
        EXPECT_EQ(Util::hex2Bin(c), static_cast<std::uint32_t>(model::upperDigit(c))) << code;
    }
}

void expectTextsAsByTheModel(std::string text, const std::string& context) {
    std::string out = "left over";
    const std::uint64_t number = model::looseNumber(text);
    ASSERT_EQ(Util::hexStr2ULL(text), number) << context;
    ASSERT_EQ(Util::hexStr2UInt(text.c_str()), static_cast<std::uint32_t>(number)) << context;
    ASSERT_EQ(Util::binStr2UInt(text.c_str()), model::binToUInt(text)) << context;
    ASSERT_EQ(Util::binStr2HexStr(text.c_str(), out), model::binToHex(text)) << context;
    for (const std::size_t count : {1 + below(4 * text.size()), 4 * text.size() + below(90)}) {
        const auto bitCount = static_cast<std::uint32_t>(count);
        ASSERT_EQ(Util::hexStr2BinStr(text.c_str(), bitCount, out), model::hexToBin(text, count))
            << bitCount << " bits, " << context;
    }
}

TEST(Conversions, EveryCharacterIsReadByEachFunctionsOwnRule) {
    EXPECT_EQ(Util::hexStr2UInt("G"), 23U);
    EXPECT_EQ(Util::hexStr2UInt("\x80"), 0xFFFFFF50U);
    for (int code = 1; code < 256; ++code) {
        for (std::size_t place = 0; place < 18; ++place) {
            std::string text = "1011011101101010110";
            text[place] = static_cast<char>(code);
            expectTextsAsByTheModel(text, std::to_string(code) + " at " + std::to_string(place));
        }
        expectTextsAsByTheModel(std::string(1, static_cast<char>(code)), std::to_string(code));
    }
}

TEST(Conversions, TextsOfEveryLengthConvertAsCharacterByCharacter) {
    for (std::size_t length = 1; length < 200; ++length) {
        for (const char* const alphabet : {"01", "0123456789abcdefABCDEF"}) {
            const std::string text = randomText(length, alphabet);
            expectTextsAsByTheModel(text, text + " with seed " + std::to_string(SEED));
            std::string room(length + 2, '#');
            Util::reverseStr(text.data(), static_cast<std::uint32_t>(length), room.data());
            ASSERT_EQ(room, std::string(text.rbegin(), text.rend()) + std::string("\0#", 2));
        }
    }
    char untouched[] = "ab";
    Util::reverseStr("x", 0, untouched);
    EXPECT_EQ(std::string(untouched, 2), std::string("\0b", 2));
}

TEST(Conversions, BitArraysAndReverseTextsHoldBitZeroFirst) {
    for (std::size_t length = 0; length < 200; ++length) {
        const std::string bits = randomText(length, "01");
        std::string clean(length, '0');
        Bytes expected((length + 7) / 8);
        for (std::size_t i = 0; i < length; ++i) {
            clean[i] = bits[i] == '1' ? '1' : '0';
            expected[i / 8] =
                static_cast<unsigned char>(expected[i / 8] | (clean[i] - '0') << i % 8);
        }
        expected.push_back(0xA5); // a byte behind the text's, which is not touched
        Bytes array(expected.size(), 0xA5);
        Util::reverseBinStr2Bin(bits.c_str(), array.data());
        ASSERT_EQ(array, expected) << bits;
        std::string out;
        // Not a byte behind the bits, so that a checked build notices when one is read.
        const Bytes exact(array.begin(), array.end() - 1);
        if (length > 0)
            Util::bin2ReverseBinStr(exact.data(), static_cast<std::uint32_t>(length), out);
        ASSERT_EQ(out, clean);
    }
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

TEST(Conversions, TextsEndAtTheirFirstZeroAndMayBeEmpty) {
    std::string text("12\0FF", 5);
    EXPECT_EQ(Util::hexStr2ULL(text), 0x12U);
    EXPECT_EQ(Util::decStr2ULL(text), 12U);
    text.clear();
    EXPECT_EQ(Util::hexStr2ULL(text) + Util::hexStr2UInt("") + Util::binStr2UInt(""), 0U);
    EXPECT_EQ(Util::binStr2UInt(nullptr), 0U);
}

TEST(Conversions, IntegersPrintAndReadBack) {
    std::vector<std::uint64_t> values = {0};
    for (std::uint64_t power = 1; power != 0; power *= 2)
        values.insert(values.end(), {power, power - 1, 0 - power, randomValue() >> below(64)});
    for (std::uint64_t power = 1; power <= ~std::uint64_t{0} / 10; power *= 10)
        values.insert(values.end(), {power - 1, power, power * 9 + 9, 0 - power});
    for (const std::uint64_t value : values) {
        const auto low = static_cast<std::uint32_t>(value);
        std::string out;
        char text[40];
        ASSERT_EQ(Util::uLL2DecStr(value, out), std::to_string(static_cast<std::int64_t>(value)));
        ASSERT_EQ(Util::decStr2ULL(out), value);
        ASSERT_EQ(Util::uInt2DecStr(low, out), std::to_string(low));
        static_cast<void>(
            std::snprintf(text, sizeof text, "%llx", static_cast<unsigned long long>(value)));
        ASSERT_EQ(Util::uLL2HexStr(value, out), text);
        for (const unsigned bits : {0U, 1U, 4U, 5U, 31U, 32U, 33U, 70U}) {
            static_cast<void>(
                std::snprintf(text, sizeof text, "%0*x", static_cast<int>(bits + 3) / 4, low));
            ASSERT_EQ(Util::uInt2HexStr(low, bits, out), text) << bits;
        }
        for (std::uint32_t bits = 1; bits <= 32; ++bits)
            ASSERT_EQ(Util::uInt2BinStr(low, bits, out), model::hexToBin(text, bits));
    }
}

void expectScanned(const std::string& text) {
    const long long expected = std::strtoll(text.c_str(), nullptr, 10);
    EXPECT_EQ(Util::decStr2ULL(text), static_cast<std::uint64_t>(expected)) << text;
}

TEST(Conversions, DecimalTextIsReadAsTheStandardScanReadsIt) {
    for (const char* const text :
         {"", "  42abc", "abc", "\t\n\v\f\r +7", "+-1", "-+1", "- 1", "+", " ", "0x10", "\xA0+5",
          "9223372036854775808", "-9223372036854775808", "-9223372036854775809"})
        expectScanned(text);
    for (int i = 0; i < 5000; ++i)
        expectScanned(randomText(below(26), "0123456789 -+"));
}

TEST(Conversions, FloatingPointTextIsWhole) {
    std::string out;
    EXPECT_EQ(Util::double2Str(-std::numeric_limits<double>::max(), out).size(), 317U);
    EXPECT_EQ(out.substr(0, 18) + out.substr(309), "-179769313486231578.000000");
    EXPECT_EQ(Util::double2Str(std::numeric_limits<double>::infinity(), out), "inf");
    EXPECT_EQ(Util::double2Str(-0.0000001, out), "-0.000000");
}

TEST(Conversions, ExhaustedMemoryLeavesTheOutputEmpty) {
    if (!test::failingNewReachesTheLibrary())
        GTEST_SKIP() << "the library has an operator new of its own here";
    const std::string bits(100, '1');
    const unsigned char array[100] = {};
    std::string out;
    const auto expectEmpty = [&out](auto call) {
        out = "left over";
        const test::FailingNew noMemory;
        EXPECT_THROW(call(), std::bad_alloc);
        EXPECT_EQ(out, "");
    };
    expectEmpty([&] { Kel_NumberUtil::binStr2HexStr(bits.c_str(), out); });
    expectEmpty([&] { Kel_NumberUtil::hexStr2BinStr(bits.c_str(), 0xFFFFFFFF, out); });
    expectEmpty([&] { Kel_NumberUtil::bin2ReverseBinStr(array, 800, out); });
    expectEmpty([&] { Kel_NumberUtil::uInt2BinStr(1, 32, out); });
    // 2^30 digits, and not the few that a sum of 32 bits would leave.
    const test::FailingNew noMemory;
    EXPECT_THROW(Kel_NumberUtil::uInt2HexStr(5, 0xFFFFFFFF, out), std::bad_alloc);
}

} // namespace
