// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_Number.h"

#include <cstdio>

using namespace KelRT;

static void show(const char* what, const Kel_Number& number) {
    std::printf("%-16s x %s  d %s  u %s\n", what, number.toString('x').c_str(),
                number.toString('d').c_str(), number.toString('u').c_str());
}

int main() {
    // An A/D converter delivers 12 bits, which may mean a signed or an unsigned number.
    Kel_Number sample(12);
    sample.set('x', "FFE");
    show("hexadecimal FFE", sample);
    sample.negate();
    show("negated", sample);

    // A value that does not fit wraps modulo 2^12. A digit that the radix does not have is refused,
    // and the value becomes 0.
    sample.set('d', "4_097");
    show("decimal 4_097", sample);
    const bool taken = sample.set('o', "178");
    std::printf("octal 178 is %s, the value is %s\n", taken ? "taken" : "refused",
                sample.toString('o').c_str());

    // One step of the converter is 1/16 degree, and 0 stands for -40 degrees.
    sample.setFloat("21.5", 0.0625, -40.0);
    show("21.5 degrees", sample);
    std::printf("%-16s %s degrees\n", "scaled back",
                sample.toFloatString(0.0625, -40.0, 2).c_str());

    // Scaled values are signed: as a number of 12 bits, 0xFFF would be -1. So this one has 13 bits.
    Kel_Number reading(13);
    reading.set('x', "FFF");
    std::printf("%-16s %s V\n", "full scale", reading.toFloatString(0.001, 0.0, 3).c_str());

    // A number may have any width.
    Kel_Number wide(130);
    wide.set('d', "-1");
    std::printf("%-16s %s\n", "-1 in 130 bits", wide.toString('X').c_str());

    // Assignment copies the value and the width.
    Kel_Number copy(1);
    copy = wide;
    std::printf("%-16s %s\n", "unsigned", copy.toString('u').c_str());
}
//! [example]
