// SPDX-License-Identifier: MIT
//
// Passes arguments beyond the limits. A debug build must end at the violated precondition.
// preconditions.cmake compares the sentences of all asserts with the preconditions in the headers.
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Number.h"
#include "KelRT/Kel_NumberUtil.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/Logger.h"
#include "KelRT/NumberValue.h"

#include <gtest/gtest.h>

#include <memory>

using namespace KelRT;

namespace {

/// Returns a buffer of the text "1" and its NUL, between reserves of one byte each.
Kel_ByteBuffer& text() {
    static Kel_ByteBuffer buffer(reinterpret_cast<const unsigned char*>("1"), 2, 1, 1);
    return buffer;
}

unsigned char bytes[] = "1010";
char* const characters = reinterpret_cast<char*>(bytes);
char* arguments[] = {characters, nullptr};

constexpr struct {
    const char* pattern; // found in the sentence of the assert
    void (*violate)();
} VIOLATIONS[] = {
    {"0 <= index < getSize", [] { text()[2] = 'x'; }},
    {"0 <= index < getSize", [] { text()[-1] = 'x'; }},
    {"byteCount <= getSize", [] { text().removeBytesAtEnd(3); }},
    {"-padLow <= byteCount <= getSize", [] { text().moveStartPositionForward(3); }},
    {"-padLow <= byteCount <= getSize", [] { text().moveStartPositionForward(-2); }},
    {"bitCount >= 0", [] { text().shiftBitsDown(-1); }},
    {"no more whole bytes are dropped", [] { text().shiftBitsDown(24); }},
    {"out lies outside this buffer", [] { text().bin2HexString(0, text().uPtr() + 2); }},
    {"out lies outside this buffer", [] { text().hex2Bin(0, 0, text().uPtr() - 1); }},
    {"lastChar < getSize", [] { text().hex2Bin(0, 2, bytes); }},
    {"the last used byte is", [] { Kel_ByteBuffer(bytes, 2, 0, 0).setHexStringBitCount(4); }},
    {"fromByte . byteCount <= getSize", [] { text().swapByteOrder(1, ~std::uint64_t{0}); }},
    {"the field lies inside the array",
     [] { bits2Number(nullptr, 0, *std::make_unique<Kel_Number>(1)); }},
    {"the field lies inside the array", [] { number2Bits(Kel_Number(1), nullptr, 0); }},
    {"the indices are not negative",
     [] { static_cast<void>(Kel_NumberUtil::getBits(bytes, 7, -1)); }},
    {"the indices are not negative",
     [] { static_cast<void>(Kel_NumberUtil::getReverseBits(bytes, -1, 7)); }},
    {"overlap", [] { Kel_NumberUtil::reverseBinStr2Bin(characters, bytes + 3); }},
    {"overlap", [] { Kel_NumberUtil::reverseStr(characters + 2, 2, characters); }},
    {"argv holds argc pointers", [] { static_cast<void>(Kel_Util::findKey(2, arguments, "a")); }},
    // These are checked even while logging is off.
    {"name is not null", [] { Logger().logMethodEntry(nullptr); }},
    {"buffer holds the given number of bits", [] { Logger().dumpBuffer(1, nullptr, 1); }},
};

TEST(Preconditions, ViolationsEndADebugBuild) {
#ifdef NDEBUG
    GTEST_SKIP() << std::size(VIOLATIONS) << " violations: this build has no asserts";
#else
    for (const auto& [pattern, violate] : VIOLATIONS)
        EXPECT_DEATH(violate(), pattern);
#endif
}

} // namespace
