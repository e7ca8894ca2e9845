// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_Number.h"

#include <cstdint>
#include <cstdio>
#include <string>

using namespace KelRT;

int main() {
    Kel_Number number(64);

    const std::uint64_t address = 0x80000000F0000000;
    number.set('u', std::to_string(address));
    std::printf("unsigned  %s  %s\n", number.toString('x').c_str(), number.toString('u').c_str());
    const std::uint64_t sameAddress = std::stoull(number.toString('u'));

    const std::int64_t offset = -5;
    number.set('d', std::to_string(offset));
    std::printf("signed    %s  %s\n", number.toString('x').c_str(), number.toString('d').c_str());
    const std::int64_t sameOffset = std::stoll(number.toString('d'));

    return sameAddress == address && sameOffset == offset ? 0 : 1;
}
//! [example]
