// SPDX-License-Identifier: MIT
//
// Numbers of any width are set, printed and set again, beside the model of words and digits.
#include "KelRT/Kel_Number.h"

#include "input.h"
#include "models/number_model.h"

using KelRT::Kel_Number;

namespace {

constexpr const char* RADICES = "bodiuxBODIUX";

void expectSame(const Kel_Number& number, const model::Number& expected) {
    fuzz::require(number.isZero() == expected.isZero(), "isZero");
    fuzz::require(number.isNegative() == expected.isNegative(), "isNegative");
    for (const char radix : std::string("bodxXusSq"))
        fuzz::require(number.toString(radix) == expected.toString(radix), "toString");
}

void readsBackWhatItPrints(const Kel_Number& number, std::uint64_t width) {
    const std::string pattern = number.toString('x');
    Kel_Number again(width);
    for (const char* radix = RADICES; *radix != 0; ++radix) {
        fuzz::require(again.set(*radix, number.toString(*radix)), "printed digits are digits");
        fuzz::require(again.toString('x') == pattern, "what is printed reads as the number");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::uint64_t width = 1 + input.value(2) % 1200;
    const char radix = input.character();
    const bool negates = input.below(2) != 0;
    const std::string text = input.text(1500, false);
    Kel_Number number(width);
    model::Number expected(width);
    fuzz::require(number.set(radix, text) == expected.set(radix, text), "set");
    expectSame(number, expected);
    if (negates) {
        number.negate();
        expected.negate();
        expectSame(number, expected);
    }
    readsBackWhatItPrints(number, width);
    return 0;
}
