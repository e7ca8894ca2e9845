// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_ByteBuffer.h"

#include <cstdio>
#include <memory>

using namespace KelRT;

// Prints the used bytes, byte 0 first, for example "21 43 65".
static void show(const char* what, Kel_ByteBuffer& buffer) {
    std::printf("%-22s", what);
    for (std::uint64_t i = 0; i < buffer.getSize(); ++i)
        std::printf(" %02X", static_cast<unsigned>(buffer.uPtr()[i]));
    std::printf("\n");
}

int main() {
    // The buffer holds three captured bytes, a low reserve of 2 bytes and a high reserve of 1 byte.
    const unsigned char captured[] = {0x21, 0x43, 0x65};
    Kel_ByteBuffer scan(captured, sizeof captured, 2, 1);
    show("captured", scan);

    // Bit 0 is the lowest bit of byte 0. So bits 4 to 7 are the upper digit of 0x21, and bits 8 to
    // 15 are 0x43.
    std::printf("%-22s 0x%03X\n", "bits 4 to 15", static_cast<unsigned>(scan.getBits(4, 12)));

    // Drops a header of 12 bits. One byte is dropped immediately. The other 4 bits stay pending
    // until the next access to the bytes, so that several shifts need only one pass.
    scan.shiftBitsDown(12);
    show("without 12 bits", scan);

    scan.setBits(0, 8, 0xA5);
    show("bits 0 to 7 written", scan);

    // bin2HexString and hex2Bin return a new buffer that the caller owns. The text ends with a NUL,
    // which getSize counts, so the index of its last digit is getSize() - 2.
    const std::unique_ptr<Kel_ByteBuffer> text(scan.bin2HexString(0, 12));
    std::printf("%-22s %s\n", "12 bits as text", text->ptr());
    const std::unique_ptr<Kel_ByteBuffer> back(text->hex2Bin(0, text->getSize() - 2));
    show("text as bytes", *back);

    // Some tools write bit 0 first. The first digit then holds bits 0 to 3, mirrored: 8 means 1.
    Kel_ByteBuffer mirrored;
    Kel_ByteBuffer::hex2BinReverse("84C2", mirrored);
    show("mirrored text 84C2", mirrored);

    scan.insertBytes(1, 2); // does not clear the gap
    scan.setBits(8, 16, 0);
    show("two bytes inserted", scan);
}
//! [example]
