// SPDX-License-Identifier: MIT
//
// A duty that its caller neglects ends a debug build with the duty's sentence.
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_NumberUtil.h"
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/Logger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>

using namespace KelRT;

namespace {

struct Neglect {
    const char* duty;
    void (*call)();
};

/// A pattern for \a sentence that every regular expression engine of the hosts understands.
[[maybe_unused]] std::string patternOf(std::string sentence) {
    std::replace_if(
        sentence.begin(), sentence.end(),
        [](unsigned char character) { return std::isalnum(character) == 0; }, '.');
    return sentence;
}

/// Two bytes of use between reserves of one: the text "1".
Kel_ByteBuffer& text() {
    static Kel_ByteBuffer buffer(reinterpret_cast<const unsigned char*>("1"), 2, 1, 1);
    return buffer;
}

unsigned char bytes[] = "1010";
char* const characters = reinterpret_cast<char*>(bytes);
char* const missing[] = {characters, nullptr};

constexpr Neglect NEGLECTS[] = {
    {"source designates at least size bytes", [] { Kel_ByteBuffer(nullptr, 1, 0, 0); }},
    {"0 <= index < getSize()", [] { text()[2] = 'x'; }},
    {"0 <= index < getSize()", [] { text()[-1] = 'x'; }},
    {"byteCount <= getSize()", [] { text().removeBytesAtEnd(3); }},
    {"-padLow <= byteCount <= getSize()", [] { text().moveStartPositionForward(3); }},
    {"-padLow <= byteCount <= getSize()", [] { text().moveStartPositionForward(-2); }},
    {"bitCount >= 0", [] { text().shiftBitsDown(-1); }},
    {"no more whole bytes are dropped than the buffer holds", [] { text().shiftBitsDown(24); }},
    {"out lies outside this buffer", [] { text().bin2HexString(0, nullptr); }},
    {"out lies outside this buffer", [] { text().bin2HexString(0, text().uPtr() + 2); }},
    {"lastChar < getSize()", [] { text().hex2Bin(0, 2, bytes); }},
    {"lastChar < getSize()", [] { text().hex2Bin(0, 2, text()); }},
    {"out lies outside this buffer", [] { text().hex2Bin(0, 0, text().uPtr() - 1); }},
    {"the last used byte is the text's zero character",
     [] { Kel_ByteBuffer(bytes, 2, 0, 0).setHexStringBitCount(4); }},
    {"fromByte + byteCount <= getSize()", [] { text().swapByteOrder(1, 2); }},
    {"fromByte + byteCount <= getSize()", [] { text().swapByteOrder(1, ~std::uint64_t{0}); }},

    {"the indices are not negative", [] { Kel_NumberUtil::getBits(bytes, 7, -1); }},
    {"the indices are not negative", [] { Kel_NumberUtil::getReverseBits(bytes, -1, 7); }},
    {"the indices are not negative",
     [] { Kel_NumberUtil::getReverseLongLongBits(bytes, -40, 31); }},
    {"the field lies inside the array", [] { Kel_NumberUtil::getLongLongBits(nullptr, 0, 0); }},
    {"they do not overlap the text",
     [] { Kel_NumberUtil::reverseBinStr2Bin(characters, bytes + 3); }},
    {"dst holds length + 1 characters", [] { Kel_NumberUtil::reverseStr(characters, 2, nullptr); }},
    {"they do not overlap src", [] { Kel_NumberUtil::reverseStr(characters + 2, 2, characters); }},

    {"delimiters is not null", [] { Kel_StrTok("a", nullptr, false, false, false); }},
    {"a and b are not null", [] { Kel_Util::stricmp("a", nullptr); }},
    {"a and b are not null", [] { Kel_Util::strnicmp(nullptr, "a", 0); }},
    {"argv holds argc pointers, none of them null", [] { Kel_Util::findKey(1, nullptr, "a"); }},
    {"argv holds argc pointers, none of them null",
     [] { Kel_Util::findKey(2, const_cast<char**>(missing), "a"); }},

    // Also while nothing is logged: the mistake is there all the same.
    {"name is not null", [] { Logger().logMethodEntry(nullptr); }},
    {"name is not null", [] { Logger().logMethodEntry(nullptr, "%d", 1); }},
    {"name is not null", [] { Logger().logMethodExit(nullptr, 1); }},
    {"buffer holds the given number of bits", [] { Logger().dumpBuffer(1, nullptr, 1); }},
    {"buffer holds the given number of bits", [] { Logger().dumpBuffer(1, "t", nullptr, 1); }},
};

TEST(Duties, EndTheProgramWithTheirSentence) {
#ifdef NDEBUG
    GTEST_SKIP() << std::size(NEGLECTS) << " duties: this build has no asserts";
#else
    for (const Neglect& neglect : NEGLECTS) {
        SCOPED_TRACE(neglect.duty);
        EXPECT_DEATH(neglect.call(), patternOf(neglect.duty));
    }
#endif
}

} // namespace
