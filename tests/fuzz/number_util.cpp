// SPDX-License-Identifier: MIT
//
// Compares every conversion of Kel_NumberUtil with the C library or with models that work on one
// bit or one character at a time.
#include "KelRT/Kel_NumberUtil.h"

#include "input.h"
#include "models/number_util_model.h"

#include <cinttypes>
#include <cstring>
#include <utility>

using Util = KelRT::Kel_NumberUtil;
using fuzz::requireEqual;
using Bytes = std::vector<unsigned char>;

namespace {

const std::string ALPHABETS[] = {"01", "0123456789abcdefABCDEF", "0123456789 -+\t\n\v\f\r",
                                 "01aAfFgG /:@`\x80\xFF"};

template <typename... Arguments>
std::string printed(const char* format, Arguments... arguments) {
    char text[400];
    static_cast<void>(std::snprintf(text, sizeof text, format, arguments...));
    return text;
}

std::uint32_t low32(std::uint64_t value) {
    return static_cast<std::uint32_t>(value);
}

void readFields(fuzz::Input& input) {
    const int low = static_cast<int>(input.below(200));
    const int high = low + static_cast<int>(input.below(200));
    // The array ends with the field, so that the sanitizer sees a read past it.
    Bytes data(static_cast<std::size_t>(high) / 8 + 1);
    for (auto& byte : data)
        byte = static_cast<unsigned char>(input.character());
    const unsigned char* const p = data.data();
    const std::uint64_t down = model::field(data, high, low);
    const std::uint64_t up = model::field(data, low, high);
    requireEqual(Util::getLongLongBits(p, high, low), down, "getLongLongBits");
    requireEqual(Util::getReverseLongLongBits(p, low, high), up, "getReverseLongLongBits");
    requireEqual(Util::getBits(p, high, low), low32(down), "getBits");
    requireEqual(Util::getLongBits(p, high, low), low32(down), "getLongBits");
    requireEqual(Util::getReverseBits(p, low, high), low32(up), "getReverseBits");
    requireEqual(Util::getReverseLongBits(p, low, high), low32(up), "getReverseLongBits");
}

void convertBits(const std::string& text) {
    std::string bits = text;
    Bytes expected((bits.size() + 7) / 8); // no spare byte: the sanitizer sees a read past its end
    for (std::size_t i = 0; i < bits.size(); ++i) {
        bits[i] = bits[i] == '1' ? '1' : '0';
        expected[i / 8] = static_cast<unsigned char>(expected[i / 8] | (bits[i] - '0') << i % 8);
    }
    std::string out(expected.begin(), expected.end());
    const auto* const outBytes = reinterpret_cast<const unsigned char*>(out.data());
    if (!bits.empty())
        for (const unsigned char* const array : {outBytes, std::as_const(expected).data()})
            requireEqual(Util::bin2ReverseBinStr(array, low32(bits.size()), out), bits,
                         "bin2ReverseBinStr");
    expected.push_back(0xA5); // a byte that must not change
    Bytes written(expected.size(), 0xA5);
    Util::reverseBinStr2Bin(text.c_str(), written.data());
    requireEqual(written, expected, "reverseBinStr2Bin");
}

void convertText(std::string text, std::uint32_t bitCount) {
    const std::uint64_t number = model::hexStr2ULL(text);
    requireEqual(Util::hexStr2ULL(text), number, "hexStr2ULL");
    requireEqual(Util::hexStr2UInt(text.c_str()), low32(number), "hexStr2UInt");
    requireEqual(Util::binStr2UInt(text.c_str()), model::binToUInt(text), "binStr2UInt");
    const auto decimal = static_cast<std::uint64_t>(std::strtoll(text.c_str(), nullptr, 10));
    requireEqual(Util::decStr2ULL(text), decimal, "decStr2ULL");
    if (!text.empty()) {
        const std::string hex = model::binToHex(text);
        const std::string bits = model::hexToBin(text, bitCount);
        std::string out = "old" + text;
        for (const char* const input : {out.c_str() + 3, text.c_str()}) // one input lies in `out`
            requireEqual(Util::binStr2HexStr(input, out), hex, "binStr2HexStr");
        out = "old" + text;
        for (const char* const input : {out.c_str() + 3, text.c_str()})
            requireEqual(Util::hexStr2BinStr(input, bitCount, out), bits, "hexStr2BinStr");
        const auto digit = static_cast<std::uint32_t>(model::upperDigit(text[0]));
        requireEqual(Util::hex2Bin(text[0]), digit, "hex2Bin");
    }
    std::string mirror(text.size() + 2, '#');
    Util::reverseStr(text.data(), low32(text.size()), mirror.data());
    requireEqual(mirror, std::string(text.rbegin(), text.rend()) + std::string("\0#", 2),
                 "reverseStr");
    convertBits(text);
}

void printNumbers(std::uint64_t value, std::uint32_t bitCount, std::uint64_t pattern) {
    std::string out;
    const auto low = low32(value);
    requireEqual(Util::uLL2DecStr(value, out),
                 printed("%" PRId64, static_cast<std::int64_t>(value)), "uLL2DecStr");
    requireEqual(Util::decStr2ULL(out), value, "decStr2ULL of uLL2DecStr");
    requireEqual(Util::uLL2HexStr(value, out), printed("%" PRIx64, value), "uLL2HexStr");
    requireEqual(Util::hexStr2ULL(out), value, "hexStr2ULL of uLL2HexStr");
    requireEqual(Util::uInt2DecStr(low, out), printed("%" PRIu32, low), "uInt2DecStr");
    requireEqual(Util::uInt2HexStr(low, bitCount, out),
                 printed("%0*" PRIx32, static_cast<int>(bitCount + 3) / 4, low), "uInt2HexStr");
    const std::uint32_t bits = 1 + bitCount % 32;
    requireEqual(Util::uInt2BinStr(low, bits, out),
                 model::hexToBin(printed("%08" PRIX32, low), bits), "uInt2BinStr");
    requireEqual(Util::bin2Hex(low % 16), "0123456789ABCDEF"[low % 16], "bin2Hex");
    double number = 0;
    std::memcpy(&number, &pattern, sizeof number);
    requireEqual(Util::double2Str(number, out), printed("%f", number), "double2Str");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    std::uint64_t value = input.value() >> input.below(64);
    for (std::uint64_t zeros = input.below(4) == 0 ? input.below(20) : 0; zeros > 0; --zeros)
        value *= 10;
    value -= input.below(2);
    const auto bitCount = static_cast<std::uint32_t>(input.below(600));
    printNumbers(value, bitCount, input.value());
    if (input.below(2) == 0)
        readFields(input);
    else
        convertText(input.text(1000, input.oneOf(ALPHABETS)), 1 + bitCount);
    return 0;
}
