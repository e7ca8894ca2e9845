// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_NumberUtil.h"

#include <cstdio>
#include <stdexcept>
#include <string>

using namespace KelRT;

int main() {
    // getBits takes the index of the highest bit first. getReverseBits takes the index of the
    // lowest bit first and mirrors the bits: the lowest becomes the highest.
    const unsigned char data[] = {0x34, 0x12};
    std::printf("bits 11 to 4          %X\n",
                static_cast<unsigned>(Kel_NumberUtil::getBits(data, 11, 4)));
    std::printf("bits 0 to 3, reversed %X\n",
                static_cast<unsigned>(Kel_NumberUtil::getReverseBits(data, 0, 3)));

    // Each function that fills a string returns a reference to it.
    std::string text;
    std::printf("bit 0 first           %s\n",
                Kel_NumberUtil::bin2ReverseBinStr(data, 16, text).c_str());
    std::printf("binary to hexadecimal %s\n",
                Kel_NumberUtil::binStr2HexStr("1001000110100", text).c_str());
    std::printf("hexadecimal to binary %s\n", Kel_NumberUtil::hexStr2BinStr("1A", 8, text).c_str());
    std::printf("filled to 12 bits     %s\n", Kel_NumberUtil::uInt2HexStr(0x1A, 12, text).c_str());
    std::printf("half                  %s\n", Kel_NumberUtil::double2Str(0.5, text).c_str());

    // 64-bit decimal text is signed, whether it is read or printed.
    const auto all = Kel_NumberUtil::decStr2ULL("-1");
    std::printf("-1 in hexadecimal     %s\n", Kel_NumberUtil::uLL2HexStr(all, text).c_str());
    std::printf("and back in decimal   %s\n", Kel_NumberUtil::uLL2DecStr(all, text).c_str());

    try {
        Kel_NumberUtil::uInt2BinStr(1, 33, text);
    } catch (const std::logic_error& mistake) {
        std::printf("%s\n", mistake.what());
    }
}
//! [example]
