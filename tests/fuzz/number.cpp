// SPDX-License-Identifier: MIT
//
// Sets numbers of any width, prints them and sets them again. Converts integers to numbers and
// back. Compares the results with a model that works on single digits and words.
#include "KelRT/Kel_Number.h"

#include "KelRT/NumberValue.h"

#include "input.h"
#include "models/number_model.h"

#include <charconv>

using fuzz::require;
using fuzz::requireEqual;
using KelRT::Kel_Number;

namespace {

// A number reads back from its text in each of these radices.
constexpr const char* RADICES = "bodiuxBODIUX";
// In most inputs, set() gets one of these letters. 'q' selects no radix.
constexpr const char* LETTERS = "bOdIuXxSsq";
// The characters of a text. The first four are the digits of radix 2, 8, 10 and 16. Then come
// digits that make words of nearly all zeros or all ones, and digits mixed with separators.
const std::string ALPHABETS[] = {"01",
                                 "01234567",
                                 "0123456789",
                                 "0123456789abcdefABCDEF",
                                 "0000F7f8",
                                 "00000000000000000001",
                                 "fffffffffffffffffffffffffe",
                                 "0123456789 _,-x.'/:@GRg`\xFF"};

void expectSame(const Kel_Number& number, const model::Number& expected,
                const std::string& radices) {
    requireEqual(number.isZero(), expected.isZero(), "isZero");
    requireEqual(number.isNegative(), expected.isNegative(), "isNegative");
    for (const char radix : radices)
        requireEqual(number.toString(radix), expected.toString(radix), "toString");
}

void readsBackWhatItPrints(const Kel_Number& number, std::uint64_t width) {
    const std::string pattern = number.toString('x');
    Kel_Number again(1 + width % 100);
    require(again.set('x', "-1"), "set accepts -1 at another width");
    again = number;
    again = *&again;
    requireEqual(again.toString('x'), pattern, "assignment");
    if (width <= 50) { // a double holds such a number exactly
        again.setFloat(number.toFloatString(0.5, 1, 1), 0.5, 1);
        requireEqual(again.toString('x'), pattern, "setFloat of toFloatString, scale 0.5");
        const double halfStep = number.isNegative() ? -0.05 : 0.05;
        again.setFloat(number.toFloatString(0.1, 0, 1), 0.1, -halfStep); // rounds to the nearest
        requireEqual(again.toString('x'), pattern, "setFloat of toFloatString, scale 0.1");
    }
    for (const char* radix = RADICES; *radix != 0; ++radix) {
        again.setToZero(); // so that a word that set() leaves out is noticed
        require(again.set(*radix, number.toString(*radix)), "set accepts the text of toString");
        requireEqual(again.toString('x'), pattern, "set of toString");
    }
}

/// Converts an integer to a number, and a number to an integer. `radix` selects decimal text: 'u'
/// for an unsigned integer, 'd' for a signed one.
template <typename Integer>
void convertInteger(fuzz::Input& input, std::uint64_t width, char radix,
                    void (*store)(Integer, Kel_Number&),
                    bool (*load)(const Kel_Number&, Integer&)) {
    const auto value = static_cast<Integer>(input.value()) >> input.below(64);
    Kel_Number number(width);
    model::Number expected(width);
    store(value, number);
    expected.set(radix, std::to_string(value));
    requireEqual(number.toString('x'), expected.toString('x'), "a number from an integer");

    if (input.below(2) == 0)
        number.set('b', std::string("1").append(input.below(width), '0'));
    if (input.below(2) == 0)
        number.negate();
    // Like `load`, from_chars() leaves the integer unchanged if the value does not fit.
    const std::string text = number.toString(radix);
    Integer wanted = 7;
    Integer found = 7;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), wanted);
    requireEqual(load(number, found), parsed.ec == std::errc(), "whether a number fits an integer");
    requireEqual(found, wanted, "an integer from a number");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::size_t kind = input.below(256);
    const bool isWide = kind == 0; // rare, because the model is slow
    const std::uint64_t range = isWide ? 12000 : kind % 2 == 0 ? 1200 : 80;
    const std::uint64_t width = (isWide ? 7000 : 1) + input.value(2) % range;
    convertInteger(input, width, 'u', KelRT::uLL2Number, KelRT::number2ULL);
    convertInteger(input, width, 'd', KelRT::lL2Number, KelRT::number2LL);
    Kel_Number number(width);
    model::Number expected(width);
    const std::string radices = isWide ? "dx" : "bodxXusSq";
    require(number.set('x', "-1") && expected.set('x', "-1"), "set accepts -1");
    const char radix = input.below(32) == 0 ? input.character() : LETTERS[input.below(10)];
    std::string text =
        input.below(16) == 0 ? input.text(1500) : input.text(1500, input.oneOf(ALPHABETS));
    while (isWide && !text.empty() && text.size() < 6000)
        text += text;
    requireEqual(number.set(radix, text), expected.set(radix, text), "set");
    expectSame(number, expected, radices);
    number.negate();
    expected.negate();
    expectSame(number, expected, radices);
    readsBackWhatItPrints(number, width);
    return 0;
}
