// SPDX-License-Identifier: MIT
//
// Texts of bits and of hexadecimal digits. Digits and bits meet at the ends of the texts, so the
// work goes from there to the front, one 64-bit word a step.
#include "KelRT/Kel_NumberUtil.h"

#include "common/bit_text.h"
#include "common/digits.h"
#include "common/memory.h"
#include "common/words.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstring>
#include <functional>
#include <stdexcept>

namespace KelRT {
namespace {

/// Empties an output and keeps the input readable while it is written: where the input is part of
/// the output's own text, that text is taken over, which cannot fail.
class Input {
public:
    Input(const char* data, std::size_t size, std::string& output) : first(data), length(size) {
        constexpr std::less<> before; // also orders pointers into different objects
        const char* const text = output.data();
        if (!before(data, text) && before(data, text + output.size())) {
            const auto offset = data - text;
            kept.swap(output);
            first = kept.data() + offset;
        }
        output.clear();
    }
    Input(const char* text, std::string& output) : Input(text, std::strlen(text), output) {}
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

    const char* data() const { return first; }
    const char* end() const { return first + length; }
    std::size_t size() const { return length; }

private:
    const char* first;
    std::size_t length;
    std::string kept;
};

[[noreturn]] void refuse(const char* message, std::string& output) {
    output.clear();
    throw std::logic_error(message);
}

bool isEmpty(const char* text) {
    return text == nullptr || *text == '\0';
}

unsigned upTo(std::uint64_t most, std::uint64_t count) {
    return static_cast<unsigned>(std::min(most, count));
}

/// The code of a character as that of a signed one, whatever the host's char is.
std::int32_t signedCode(char character) {
    const std::int32_t code = static_cast<unsigned char>(character);
    return code < 0x80 ? code : code - 0x100;
}

/// The low four bits of each of eight characters' values under the rule "code minus 48 below 'A',
/// as signed characters, else code minus 55", which reads both cases of letters and tests nothing.
std::uint64_t untestedDigits(std::uint64_t characters) {
    constexpr std::uint64_t high = common::inEachByte(0x80);
    // 48 does not touch the low four bits, and -55 adds 9 to them. The sum below has the top bit
    // of exactly the bytes from 'A' on, those above 0x7F being negative.
    const std::uint64_t low = characters & common::inEachByte(0x7F);
    const std::uint64_t letters = (low + common::inEachByte(0x80 - 'A')) & ~characters & high;
    const std::uint64_t digits = characters & common::inEachByte(0x0F);
    return (digits + (letters >> 7) * 9) & common::inEachByte(0x0F);
}

/// The \a count characters (1 to 16) right before \a end as digits under that rule.
std::uint64_t readUntestedDigits(const char* end, unsigned count) {
    const unsigned low = upTo(8, count);
    const auto step = [](const char* p, unsigned size) {
        const std::uint64_t characters = common::loadLastCharacters(p, size, '0');
        return std::uint64_t{common::packNibbles(untestedDigits(common::swapBytes(characters)))};
    };
    const std::uint64_t digits = step(end - low, low);
    return count == low ? digits : digits | step(end - count, count - low) << 32;
}

/// The digit rule of the conversions to integers: letters of both cases, and every other
/// character's code minus 48.
std::uint64_t looseDigit(char character) {
    const std::uint8_t value = common::hexValue(character);
    if (value != common::NO_DIGIT)
        return value;
    return static_cast<std::uint64_t>(std::int64_t{signedCode(character)} - 48);
}

/// A text under that rule, modulo 2^64: a digit more than 16 places from the end no longer counts,
/// whatever its value is.
std::uint64_t looseNumber(const char* text) {
    const std::size_t length = std::strlen(text);
    if (static_cast<std::int32_t>(length) < 1)
        return 0;
    std::uint64_t number = 0;
    const char* const end = text + length;
    for (const char* p = end - upTo(16, length); p != end;) {
        if (end - p >= 8 && common::areHexDigits(common::loadCharacters(p))) {
            const std::uint64_t values = common::hexDigitValues(common::loadCharacters(p));
            number = number << 32 | common::packNibbles(common::swapBytes(values));
            p += 8;
        } else {
            number = number * 16 + looseDigit(*p++);
        }
    }
    return number;
}

std::string& writeHexText(std::uint64_t value, std::size_t leastDigits, std::string& out) {
    const auto significant = std::max(1U, (static_cast<unsigned>(std::bit_width(value)) + 3) / 4);
    out.assign(std::max<std::size_t>(significant, leastDigits), '0');
    common::writeHex(out.data() + out.size(), value, significant, 'a');
    return out;
}

} // namespace

char Kel_NumberUtil::bin2Hex(std::uint32_t value) noexcept {
    return static_cast<char>(value < 10 ? '0' + value : 'A' + value - 10);
}

std::uint32_t Kel_NumberUtil::hex2Bin(char digit) noexcept {
    const std::int32_t code = signedCode(digit);
    return static_cast<std::uint32_t>(code < 'A' ? code - 48 : code - 55);
}

std::string& Kel_NumberUtil::bin2ReverseBinStr(const unsigned char* binArray,
                                               std::uint32_t bitCount, std::string& binStr) {
    if (bitCount == 0)
        refuse("Internal error: bad bitCount value for Kel_NumberUtil::bin2ReverseBinStr", binStr);
    if (binArray == nullptr)
        refuse("Internal error: bad binArray in Kel_NumberUtil::bin2ReverseBinStr", binStr);
    const Input bytes(reinterpret_cast<const char*>(binArray),
                      bitCount / 8 + (bitCount % 8 == 0 ? 0 : 1), binStr);
    const auto bits = common::checkedCount<char>(bitCount);
    binStr.resize(bits);
    const auto step = [&bytes](std::size_t bit) {
        const auto byte = static_cast<std::uint8_t>(bytes.data()[bit / 8]);
        return common::spreadBits(byte) + common::inEachByte('0');
    };
    std::size_t done = 0;
    for (; done + 8 <= bits; done += 8)
        common::storeCharacters(binStr.data() + done, step(done));
    if (done < bits)
        common::storeFirstCharacters(binStr.data() + done, step(done), bitCount % 8);
    return binStr;
}

void Kel_NumberUtil::reverseBinStr2Bin(const char* binStr, unsigned char* binArray) {
    if (binStr == nullptr)
        throw std::logic_error("Internal error: bad binStr in Kel_NumberUtil::reverseBinStr2Bin");
    if (binArray == nullptr)
        throw std::logic_error("Internal error: bad binArray in Kel_NumberUtil::reverseBinStr2Bin");
    const std::size_t length = std::strlen(binStr);
    assert(common::areApart(binStr, length, binArray, (length + 7) / 8) &&
           "they do not overlap the text");
    const auto pack = [](std::uint64_t step) { return common::packBits(common::onesIn(step)); };
    std::size_t done = 0;
    for (; done + 8 <= length; done += 8)
        binArray[done / 8] = pack(common::loadCharacters(binStr + done));
    if (done < length)
        binArray[done / 8] = pack(common::loadFirstCharacters(binStr + done, length % 8));
}

std::string& Kel_NumberUtil::binStr2HexStr(const char* binStr, std::string& hexStr) {
    if (isEmpty(binStr))
        refuse("Internal error: bad binStr for Kel_NumberUtil::binStr2HexStr", hexStr);
    const Input bits(binStr, hexStr);
    hexStr.resize((bits.size() + 3) / 4);
    char* end = hexStr.data() + hexStr.size();
    for (std::size_t done = 0; done < bits.size(); done += 64) {
        const unsigned count = upTo(64, bits.size() - done);
        const unsigned digits = (count + 3) / 4;
        common::writeHex(end, common::readBits(bits.end() - done, count), digits, 'A');
        end -= digits;
    }
    return hexStr;
}

std::string& Kel_NumberUtil::hexStr2BinStr(const char* hexStr, std::uint32_t bitCount,
                                           std::string& binStr) {
    if (isEmpty(hexStr))
        refuse("Internal error: bad hexStr for Kel_NumberUtil::hexStr2BinStr", binStr);
    if (bitCount == 0)
        refuse("Internal error: bad bitCount for Kel_NumberUtil::hexStr2BinStr", binStr);
    const Input digits(hexStr, binStr);
    binStr.resize(common::checkedCount<char>(bitCount), '0');
    char* end = binStr.data() + bitCount;
    auto bitsLeft = std::min<std::uint64_t>(bitCount, std::uint64_t{4} * digits.size());
    for (std::size_t done = 0; bitsLeft > 0; done += 16) {
        const unsigned bits = upTo(64, bitsLeft);
        common::writeBits(end, readUntestedDigits(digits.end() - done, (bits + 3) / 4), bits);
        end -= bits;
        bitsLeft -= bits;
    }
    return binStr;
}

void Kel_NumberUtil::reverseStr(const char* src, std::uint32_t length, char* dst) noexcept {
    const std::size_t size = length;
    assert(dst != nullptr && "dst holds length + 1 characters");
    assert(common::areApart(src, size, dst, size + 1) && "they do not overlap src");
    std::size_t done = 0;
    for (; done + 8 <= size; done += 8)
        common::storeCharacters(dst + size - done - 8,
                                common::swapBytes(common::loadCharacters(src + done)));
    std::reverse_copy(src + done, src + size, dst);
    dst[size] = '\0';
}

std::uint32_t Kel_NumberUtil::binStr2UInt(const char* binStr) noexcept {
    if (binStr == nullptr)
        return 0;
    const std::size_t length = std::strlen(binStr);
    return static_cast<std::uint32_t>(common::readBits(binStr + length, upTo(32, length)));
}

std::string& Kel_NumberUtil::uInt2BinStr(std::uint32_t value, std::uint32_t bitCount,
                                         std::string& binStr) {
    if (bitCount == 0 || bitCount > 32)
        refuse("Internal error: bad bitCount value for Kel_NumberUtil::uInt2BinStr", binStr);
    binStr.clear();
    binStr.resize(bitCount);
    common::writeBits(binStr.data() + bitCount, value, bitCount);
    return binStr;
}

std::uint32_t Kel_NumberUtil::hexStr2UInt(const char* hexStr) {
    if (hexStr == nullptr)
        throw std::logic_error("Kel_NumberUtil::hexStr2UInt called with null ptr");
    return static_cast<std::uint32_t>(looseNumber(hexStr));
}

std::uint64_t Kel_NumberUtil::hexStr2ULL(std::string& hexStr) noexcept {
    return looseNumber(hexStr.c_str());
}

std::string& Kel_NumberUtil::uLL2HexStr(std::uint64_t value, std::string& out) {
    return writeHexText(value, 0, out);
}

std::string& Kel_NumberUtil::uInt2HexStr(std::uint32_t value, std::uint32_t bitCount,
                                         std::string& out) {
    return writeHexText(value, bitCount / 4 + (bitCount % 4 == 0 ? 0 : 1), out);
}

} // namespace KelRT
