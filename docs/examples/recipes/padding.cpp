// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_ByteBuffer.h"

#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>

using namespace KelRT;

// Fills `scan` with a register of `bitCount` bits, given as hexadecimal digits. Adds zeros in front
// of them, until there are two digits for each byte of the register.
static void readRegister(std::string digits, std::uint64_t bitCount, Kel_ByteBuffer& scan) {
    const std::uint64_t needed = 2 * ((bitCount + 7) / 8);
    if (digits.size() < needed)
        digits.insert(0, static_cast<std::size_t>(needed - digits.size()), '0');
    Kel_ByteBuffer text(reinterpret_cast<const unsigned char*>(digits.c_str()), digits.size(), 0,
                        0);
    text.hex2Bin(0, digits.size() - 1, scan);
}

int main() {
    Kel_ByteBuffer text(reinterpret_cast<const unsigned char*>("4A"), 2, 0, 0);
    Kel_ByteBuffer scan;
    text.hex2Bin(0, 1, scan); // two digits, so one byte
    try {
        std::printf("0x%03X\n", static_cast<unsigned>(scan.getBits(0, 12)));
    } catch (const std::logic_error& mistake) {
        std::printf("not padded: %s\n", mistake.what());
    }

    readRegister("4A", 12, scan);
    std::printf("padded: 12 bits are 0x%03X\n", static_cast<unsigned>(scan.getBits(0, 12)));
}
//! [example]
