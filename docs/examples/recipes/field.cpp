// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Number.h"
#include "KelRT/NumberValue.h"

#include <cstdio>

using namespace KelRT;

int main() {
    Kel_ByteBuffer scan(16, 0, 0); // 128 bits, all zero

    Kel_Number serial(96);
    serial.set('x', "0123456789ABCDEF_C0FFEE42");
    number2Bits(serial, scan, 20); // bits 20 to 115

    Kel_Number same(96);
    bits2Number(scan, 20, same);
    std::printf("written  %s\n", serial.toString('X').c_str());
    std::printf("read     %s\n", same.toString('X').c_str());

    Kel_Number narrow(32); // a field of 32 bits at the same position
    bits2Number(scan, 20, narrow);
    std::printf("32 bits  %s\n", narrow.toString('X').c_str());
}
//! [example]
