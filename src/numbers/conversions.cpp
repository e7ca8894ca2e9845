// SPDX-License-Identifier: MIT
//
// These functions convert text of bits and of hexadecimal digits. They start at the least
// significant digit: at the end of the text, or at the start of a reverse binary string.
#include "KelRT/Kel_NumberUtil.h"

#include "common/hex.h"
#include "common/memory.h"
#include "common/u64.h"
#include "numbers/bit_text.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstring>
#include <numeric>
#include <stdexcept>
#include <string_view>

namespace KelRT {
namespace {

// Empties `output` and returns the input. If the input is part of the output, the whole old text
// moves to `kept`, and the returned view points there. Never fails.
std::string_view detach(std::string_view input, std::string& output, std::string& kept) noexcept {
    if (common::overlap(input.data(), 1, output.data(), output.size())) {
        const auto offset = static_cast<std::size_t>(input.data() - output.data());
        kept.swap(output);
        input = std::string_view(kept.data() + offset, input.size());
    }
    output.clear();
    return input;
}

[[noreturn]] void refuse(const char* message, std::string& output) {
    output.clear();
    throw std::logic_error(message);
}

bool isEmpty(const char* text) {
    return text == nullptr || *text == '\0';
}

unsigned limitedTo(unsigned limit, std::uint64_t count) {
    return static_cast<unsigned>(std::min<std::uint64_t>(limit, count));
}

// Reads the `count` characters (1 to 16) before `end` as hexadecimal digits, by the rule that
// Kel_NumberUtil documents for hexStr2BinStr(): the digit of a code c, as a signed char, is the low
// four bits of c - 48 if c < 'A', otherwise of c - 55. Modulo 16, these are c and c + 9, which
// hexValues() computes.
std::uint64_t readUncheckedDigits(const char* end, unsigned count) {
    const common::Vector characters = common::loadLastBytes(end - count, count, '0');
    const common::Vector values = common::hexValues(characters, common::greater(characters, '@'));
    return common::packHex(values & common::broadcastVector(15));
}

// Returns the number in `text` modulo 2^64, so only the last 16 characters count.
std::uint64_t lenientNumber(const char* text) {
    const std::size_t length = std::strlen(text);
    if (static_cast<std::int32_t>(length) < 1) // also true for 2^31, as hexStr2UInt() documents
        return 0;
    const unsigned count = limitedTo(common::HEX_DIGITS_PER_U64, length);
    const char* const end = text + length;
    std::uint64_t number = 0;
    if (common::readHex(end - count, count, number))
        return number;
    return std::accumulate(end - count, end, std::uint64_t{0}, [](std::uint64_t sum, char digit) {
        return sum * 16 + static_cast<std::uint64_t>(common::lenientHexValue(digit));
    });
}

std::string& writeHexText(std::uint64_t value, std::size_t minDigits, std::string& out) {
    const auto significant = std::max(1U, (static_cast<unsigned>(std::bit_width(value)) + 3) / 4);
    out.assign(std::max<std::size_t>(significant, minDigits), '0');
    common::writeHex(out.data() + out.size(), value, significant, 'a');
    return out;
}

} // namespace

char Kel_NumberUtil::bin2Hex(std::uint32_t value) noexcept {
    return static_cast<char>(value < 10 ? '0' + value : 'A' + value - 10);
}

std::uint32_t Kel_NumberUtil::hex2Bin(char digit) noexcept {
    const auto code = static_cast<signed char>(digit);
    return static_cast<std::uint32_t>(code < 'A' ? code - 48 : code - 55);
}

std::string& Kel_NumberUtil::bin2ReverseBinStr(const unsigned char* binArray,
                                               std::uint32_t bitCount, std::string& binStr) {
    if (bitCount == 0)
        refuse("Internal error: bad bitCount value for Kel_NumberUtil::bin2ReverseBinStr", binStr);
    if (binArray == nullptr)
        refuse("Internal error: bad binArray in Kel_NumberUtil::bin2ReverseBinStr", binStr);
    std::string kept;
    const std::string_view bytes = detach(
        {reinterpret_cast<const char*>(binArray), common::divideUp(bitCount, 8)}, binStr, kept);
    const auto bits = common::checkedCount<char>(bitCount);
    binStr.resize(bits);
    const auto step = [array = bytes.data()](std::size_t bit) {
        const auto byte = static_cast<std::uint8_t>(array[bit / 8]);
        return common::spreadBits(byte) + common::broadcast('0');
    };
    std::size_t done = 0;
    for (; done + 8 <= bits; done += 8)
        common::storeU64(binStr.data() + done, step(done));
    if (done < bits)
        common::storeBytes(binStr.data() + done, step(done), bitCount % 8);
    return binStr;
}

void Kel_NumberUtil::reverseBinStr2Bin(const char* binStr, unsigned char* binArray) {
    if (binStr == nullptr)
        throw std::logic_error("Internal error: bad binStr in Kel_NumberUtil::reverseBinStr2Bin");
    if (binArray == nullptr)
        throw std::logic_error("Internal error: bad binArray in Kel_NumberUtil::reverseBinStr2Bin");
    const std::size_t length = std::strlen(binStr);
    assert(!common::overlap(binStr, length, binArray, (length + 7) / 8) &&
           "binArray does not overlap binStr");
    for (std::size_t done = 0; done < length; done += 64) {
        const unsigned count = limitedTo(64, length - done);
        common::storeBytes(binArray + done / 8, numbers::onesIn(binStr + done, count),
                           common::divideUp(count, 8));
    }
}

std::string& Kel_NumberUtil::binStr2HexStr(const char* binStr, std::string& hexStr) {
    if (isEmpty(binStr))
        refuse("Internal error: bad binStr for Kel_NumberUtil::binStr2HexStr", hexStr);
    std::string kept;
    const std::string_view bits = detach(binStr, hexStr, kept);
    hexStr.resize((bits.size() + 3) / 4);
    const char* const bitsEnd = bits.data() + bits.size();
    char* end = hexStr.data() + hexStr.size();
    for (std::size_t done = 0; done < bits.size(); done += 64) {
        const unsigned count = limitedTo(64, bits.size() - done);
        const unsigned digits = (count + 3) / 4;
        common::writeHex(end, numbers::readLenientBinary(bitsEnd - done, count), digits, 'A');
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
    std::string kept;
    const std::string_view digits = detach(hexStr, binStr, kept);
    binStr.resize(common::checkedCount<char>(bitCount), '0');
    const char* const digitsEnd = digits.data() + digits.size();
    char* end = binStr.data() + bitCount;
    auto bitsLeft = std::min<std::uint64_t>(bitCount, std::uint64_t{4} * digits.size());
    for (std::size_t done = 0; bitsLeft > 0; done += 16) {
        const unsigned bits = limitedTo(64, bitsLeft);
        numbers::writeBinary(end, readUncheckedDigits(digitsEnd - done, (bits + 3) / 4), bits);
        end -= bits;
        bitsLeft -= bits;
    }
    return binStr;
}

void Kel_NumberUtil::reverseStr(const char* src, std::uint32_t length, char* dst) noexcept {
    const std::size_t size = length;
    assert(dst != nullptr && "dst has room for length + 1 characters");
    assert(!common::overlap(src, size, dst, size + 1) && "dst does not overlap src");
    std::reverse_copy(src, src + size, dst);
    dst[size] = '\0';
}

std::uint32_t Kel_NumberUtil::binStr2UInt(const char* binStr) noexcept {
    if (binStr == nullptr)
        return 0;
    const std::size_t length = std::strlen(binStr);
    const unsigned count = limitedTo(32, length);
    return static_cast<std::uint32_t>(numbers::readLenientBinary(binStr + length, count));
}

std::string& Kel_NumberUtil::uInt2BinStr(std::uint32_t value, std::uint32_t bitCount,
                                         std::string& binStr) {
    if (bitCount == 0 || bitCount > 32)
        refuse("Internal error: bad bitCount value for Kel_NumberUtil::uInt2BinStr", binStr);
    binStr.clear();
    binStr.resize(bitCount);
    numbers::writeBinary(binStr.data() + bitCount, value, bitCount);
    return binStr;
}

std::uint32_t Kel_NumberUtil::hexStr2UInt(const char* hexStr) {
    if (hexStr == nullptr)
        throw std::logic_error("Kel_NumberUtil::hexStr2UInt called with null ptr");
    return static_cast<std::uint32_t>(lenientNumber(hexStr));
}

std::uint64_t Kel_NumberUtil::hexStr2ULL(std::string& hexStr) noexcept {
    return lenientNumber(hexStr.c_str());
}

std::string& Kel_NumberUtil::uLL2HexStr(std::uint64_t value, std::string& out) {
    return writeHexText(value, 0, out);
}

std::string& Kel_NumberUtil::uInt2HexStr(std::uint32_t value, std::uint32_t bitCount,
                                         std::string& out) {
    return writeHexText(value, common::divideUp(bitCount, 4), out);
}

} // namespace KelRT
