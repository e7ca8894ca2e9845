// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Number.h"
#include "KelRT/NumberValue.h"

#include <cstdio>
#include <string>

using namespace KelRT;

// Puts a '_' between groups of four digits, counting from the last digit.
static std::string grouped(const std::string& digits) {
    std::string text;
    for (std::size_t left = digits.size(); left > 0; --left) {
        if (!text.empty() && left % 4 == 0)
            text += '_';
        text += digits[digits.size() - left];
    }
    return text;
}

int main() {
    Kel_ByteBuffer scan(39, 0, 0); // 312 bits
    scan.setBits(300, 12, 0xABC);
    scan.setBitsLL(0, 64, 0x0123456789ABCDEF);

    Kel_Number cells(312);
    bits2Number(scan, 0, cells);
    const std::string text = grouped(cells.toString('X'));
    std::printf("%s\n", text.c_str());

    Kel_Number same(312);
    same.set('x', text); // skips the underscores
    std::puts(same.toString('X') == cells.toString('X') ? "reads back" : "differs");
}
//! [example]
