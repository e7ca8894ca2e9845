// SPDX-License-Identifier: MIT
//
// Sixteen hexadecimal digits at a time. Digits of either case are read.
#pragma once

#include "common/vectors.h"

namespace KelRT::common {

// Sixteen digit values as characters; lettersFrom is 'A' for upper case, 'a' for lower case.
inline Vector hexCharacters(Vector values, char lettersFrom) {
    const auto gap = static_cast<unsigned char>(lettersFrom - '0' - 10);
    return values + broadcast('0') + (above(values, 9) & broadcast(gap));
}

// Sixteen characters as digit values. Clears the bytes of `valid` whose characters are no digits.
inline Vector hexDigitValues(Vector characters, Vector& valid) {
    const Vector isDigit = between(characters, '0', '9');
    const Vector isLetter = between(characters | broadcast(0x20), 'a', 'f');
    valid = valid & (isDigit | isLetter);
    // The low four bits of a letter count from 1.
    return (characters & broadcast(15)) + (isLetter & broadcast(9));
}

} // namespace KelRT::common
