// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_Number.h"
#include "KelRT/NumberValue.h"

#include <cinttypes>
#include <cstdio>

using namespace KelRT;

int main() {
    Kel_Number number(80);

    uLL2Number(0x80000000F0000000, number);
    std::printf("%s  %s\n", number.toString('x').c_str(), number.toString('u').c_str());
    lL2Number(-5, number);
    std::printf("%s  %s\n", number.toString('x').c_str(), number.toString('d').c_str());

    std::int64_t offset = 0;
    if (number2LL(number, offset))
        std::printf("read as signed: %" PRId64 "\n", offset);
    std::uint64_t address = 0;
    if (!number2ULL(number, address))
        std::printf("read as unsigned: above 64 bits\n");
}
//! [example]
