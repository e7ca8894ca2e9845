// SPDX-License-Identifier: MIT
#pragma once

namespace KelRT::numbers {

/// The base that a radix letter names, 0 for a letter that names none.
constexpr unsigned baseOf(char radix) {
    switch (radix) {
    case 'B':
    case 'b':
        return 2;
    case 'O':
    case 'o':
        return 8;
    case 'D':
    case 'd':
    case 'I':
    case 'i':
    case 'U':
    case 'u':
        return 10;
    case 'X':
    case 'x':
        return 16;
    case 'S':
    case 's':
        return 256;
    default:
        return 0;
    }
}

/// Of a radix letter of base 10: whether it prints numbers as signed.
constexpr bool printsSigned(char radix) {
    return radix != 'U' && radix != 'u';
}

} // namespace KelRT::numbers
