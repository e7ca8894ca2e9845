// SPDX-License-Identifier: MIT
//! [example]
#include <KelRT/Kel_ByteBuffer.h>
#include <KelRT/Kel_Number.h>
#include <KelRT/NumberValue.h>
#include <iostream>

int main() {
    const unsigned char captured[] = {0x77, 0x04, 0xA0, 0x4B}; // bit 0 is the lowest bit of byte 0
    KelRT::Kel_ByteBuffer scan(captured, sizeof captured, 0, 0);
    KelRT::Kel_Number id(32);
    KelRT::bits2Number(scan, 0, id);
    std::cout << id.toString('x') << " device " << scan.getBits(12, 16) << '\n';
}
//! [example]
