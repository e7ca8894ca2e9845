// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_ByteBuffer.h"

#include <cstdint>
#include <cstdio>

using namespace KelRT;

// Returns the lowest bit that differs where the mask is 1, or -1 if there is none. All three
// buffers have the same size.
static std::int64_t firstDifference(Kel_ByteBuffer& actual, Kel_ByteBuffer& expected,
                                    Kel_ByteBuffer& mask) {
    for (std::uint64_t bit = 0; bit < 8 * actual.getSize(); bit += 8) {
        std::uint32_t differences = actual.getBits(bit, 8) ^ expected.getBits(bit, 8);
        differences &= mask.getBits(bit, 8);
        for (std::uint64_t i = 0; i < 8; ++i)
            if ((differences >> i & 1) != 0)
                return static_cast<std::int64_t>(bit + i);
    }
    return -1;
}

static void compare(Kel_ByteBuffer& actual, Kel_ByteBuffer& expected, Kel_ByteBuffer& mask) {
    const std::int64_t bit = firstDifference(actual, expected, mask);
    if (bit < 0)
        std::printf("equal under the mask\n");
    else
        std::printf("bit %d differs\n", static_cast<int>(bit));
}

int main() {
    const unsigned char tdo[] = {0x77, 0x04, 0xA0, 0x4B};
    const unsigned char idcode[] = {0x77, 0x04, 0xA0, 0x0B};
    const unsigned char anyVersion[] = {0xFF, 0xFF, 0xFF, 0x0F}; // ignores bits 28 to 31
    Kel_ByteBuffer actual(tdo, sizeof tdo, 0, 0);
    Kel_ByteBuffer expected(idcode, sizeof idcode, 0, 0);
    Kel_ByteBuffer mask(anyVersion, sizeof anyVersion, 0, 0);
    compare(actual, expected, mask);

    actual.setBits(13, 1, 1);
    compare(actual, expected, mask);
}
//! [example]
