// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Number.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>

using namespace KelRT;

struct Field {
    std::uint64_t lowest; // its lowest bit in the register
    std::uint64_t width;
};

// Copies `count` bits, 64 at a time.
static void copyBits(Kel_ByteBuffer& from, std::uint64_t fromBit, Kel_ByteBuffer& to,
                     std::uint64_t toBit, std::uint64_t count) {
    for (std::uint64_t done = 0; done < count; done += 64) {
        const std::uint64_t width = std::min<std::uint64_t>(64, count - done);
        to.setBitsLL(toBit + done, width, from.getBitsLL(fromBit + done, width));
    }
}

// The number has the width of the field.
static void readField(Kel_ByteBuffer& scan, Field field, Kel_Number& number) {
    Kel_ByteBuffer bits((field.width + 7) / 8, 0, 0);
    Kel_ByteBuffer text;
    copyBits(scan, field.lowest, bits, 0, field.width);
    bits.bin2HexString(0, text);
    number.set('x', text.ptr());
}

static void writeField(Kel_ByteBuffer& scan, Field field, const Kel_Number& number) {
    const std::string digits = number.toString('x');
    Kel_ByteBuffer text(reinterpret_cast<const unsigned char*>(digits.c_str()), digits.size(), 0,
                        0);
    Kel_ByteBuffer bits;
    text.hex2Bin(0, digits.size() - 1, bits);
    copyBits(bits, 0, scan, field.lowest, field.width);
}

int main() {
    Kel_ByteBuffer scan(16, 0, 0); // 128 bits, all zero
    const Field serial = {20, 96};

    Kel_Number number(serial.width);
    number.set('x', "0123456789ABCDEF_C0FFEE42");
    writeField(scan, serial, number);

    Kel_Number same(serial.width);
    readField(scan, serial, same);
    std::printf("written  %s\n", number.toString('X').c_str());
    std::printf("read     %s\n", same.toString('X').c_str());

    // Up to 64 bits, an integer is shorter.
    number.set('u', std::to_string(scan.getBitsLL(20, 32)));
    std::printf("32 bits  %s\n", number.toString('X').c_str());
}
//! [example]
