// SPDX-License-Identifier: MIT
//
// Every conversion of Kel_NumberUtil, beside models of one bit or one character at a time and
// beside the C library.
#include "KelRT/Kel_NumberUtil.h"

#include "captured.h"
#include "input.h"
#include "models/number_util_model.h"

#include <cinttypes>
#include <cstring>

using Util = KelRT::Kel_NumberUtil;
using fuzz::require;

namespace {

template <typename... Arguments>
std::string printed(const char* format, Arguments... arguments) {
    char text[400];
    static_cast<void>(std::snprintf(text, sizeof text, format, arguments...));
    return text;
}

void readFields(fuzz::Input& input) {
    const int low = static_cast<int>(input.below(200));
    const int high = low + static_cast<int>(input.below(200));
    // Not a byte behind the field, so that reading one is noticed.
    std::vector<unsigned char> data(static_cast<std::size_t>(high) / 8 + 1);
    for (auto& byte : data)
        byte = static_cast<unsigned char>(input.character());
    const std::uint64_t down = model::field(data, high, low);
    const std::uint64_t up = model::field(data, low, high);
    const auto down32 = static_cast<std::uint32_t>(down);
    const auto up32 = static_cast<std::uint32_t>(up);
    require(Util::getLongLongBits(data.data(), high, low) == down, "getLongLongBits");
    require(Util::getReverseLongLongBits(data.data(), low, high) == up, "getReverseLongLongBits");
    require(Util::getBits(data.data(), high, low) == down32, "getBits");
    require(Util::getLongBits(data.data(), high, low) == down32, "getLongBits");
    require(Util::getReverseBits(data.data(), low, high) == up32, "getReverseBits");
    require(Util::getReverseLongBits(data.data(), low, high) == up32, "getReverseLongBits");

    static const fuzz::CapturedOutput output;
    require(Util::getLongLongBitsDebug(data.data(), high, low) == down, "getLongLongBitsDebug");
    std::string rows;
    for (int bit = high; bit >= low; --bit) {
        rows += model::field(data, bit, bit) != 0 ? '1' : '0';
        if ((high - bit) % 8 == 7)
            rows += '\n';
    }
    require(output.take() == rows + '\n', "printed bits");
}

void convertText(std::string text, std::uint32_t bitCount) {
    std::string out = "left over";
    const std::uint64_t number = model::looseNumber(text);
    require(Util::hexStr2ULL(text) == number, "hexStr2ULL");
    require(Util::hexStr2UInt(text.c_str()) == static_cast<std::uint32_t>(number), "hexStr2UInt");
    require(Util::binStr2UInt(text.c_str()) == model::binToUInt(text), "binStr2UInt");
    require(Util::decStr2ULL(text) ==
                static_cast<std::uint64_t>(std::strtoll(text.c_str(), nullptr, 10)),
            "decStr2ULL");
    if (!text.empty()) {
        require(Util::binStr2HexStr(text.c_str(), out) == model::binToHex(text), "binStr2HexStr");
        require(Util::hexStr2BinStr(text.c_str(), bitCount, out) == model::hexToBin(text, bitCount),
                "hexStr2BinStr");
        require(Util::hex2Bin(text[0]) == static_cast<std::uint32_t>(model::upperDigit(text[0])),
                "hex2Bin");
    }
    std::string mirror(text.size() + 1, '#');
    Util::reverseStr(text.data(), static_cast<std::uint32_t>(text.size()), mirror.data());
    require(mirror == std::string(text.rbegin(), text.rend()) + '\0', "reverseStr");

    // Bits of an array and back: what is no '1' has become a '0'.
    std::vector<unsigned char> bits((text.size() + 7) / 8, 0xA5);
    if (bits.empty())
        return;
    Util::reverseBinStr2Bin(text.c_str(), bits.data());
    for (char& c : text)
        c = c == '1' ? '1' : '0';
    Util::bin2ReverseBinStr(bits.data(), static_cast<std::uint32_t>(text.size()), out);
    require(out == text, "bin2ReverseBinStr of reverseBinStr2Bin");
}

void printIntegers(std::uint64_t value, std::uint32_t bitCount) {
    std::string out;
    const auto low = static_cast<std::uint32_t>(value);
    require(Util::uLL2DecStr(value, out) == printed("%" PRId64, static_cast<std::int64_t>(value)),
            "uLL2DecStr");
    require(Util::decStr2ULL(out) == value, "decStr2ULL of uLL2DecStr");
    require(Util::uLL2HexStr(value, out) == printed("%" PRIx64, value), "uLL2HexStr");
    require(Util::hexStr2ULL(out) == value, "hexStr2ULL of uLL2HexStr");
    require(Util::uInt2DecStr(low, out) == printed("%" PRIu32, low), "uInt2DecStr");
    require(Util::uInt2HexStr(low, bitCount, out) ==
                printed("%0*" PRIx32, static_cast<int>((bitCount + 3) / 4), low),
            "uInt2HexStr");
    const std::uint32_t bits = 1 + bitCount % 32;
    require(Util::uInt2BinStr(low, bits, out) == model::hexToBin(printed("%08" PRIX32, low), bits),
            "uInt2BinStr");
    require(Util::bin2Hex(low % 16) == "0123456789ABCDEF"[low % 16], "bin2Hex");
    double number = 0;
    std::memcpy(&number, &value, sizeof number);
    require(Util::double2Str(number, out) == printed("%f", number), "double2Str");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::uint64_t value = input.value();
    const auto bitCount = static_cast<std::uint32_t>(1 + input.below(600));
    printIntegers(value, bitCount);
    if (input.below(2) == 0)
        readFields(input);
    else
        convertText(input.text(1000, true), bitCount);
    return 0;
}
