// SPDX-License-Identifier: MIT
//
// Copies fields to a number and back and compares them with a model of single bits. Converts
// integers to a number and back and compares them with decimal text.
#include "KelRT/NumberValue.h"

#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Number.h"

#include "input.h"
#include "models/byte_buffer_model.h"
#include "support/outcome.h"

#include <algorithm>

using KelRT::Kel_ByteBuffer;
using KelRT::Kel_Number;
using model::Bytes;

namespace {

std::string said(const auto& action) {
    return test::outcome([&] {
        action();
        return "";
    });
}

std::string bitsOf(const model::ByteBuffer& bytes, std::uint64_t at, std::uint64_t width) {
    std::string text;
    for (std::uint64_t k = width; k-- > 0;)
        text += bytes.bit(at + k) ? '1' : '0';
    return text;
}

/// Converts a field near either end of a buffer or beyond it. A shift may be pending.
void convertField(fuzz::Input& input, std::uint64_t width) {
    const std::string text = input.text(input.below(200));
    const Bytes bytes(text.begin(), text.end());
    Kel_ByteBuffer buffer(bytes.data(), bytes.size(), 0, 0);
    model::ByteBuffer expected(bytes, 0, 0);
    const std::uint64_t shift = bytes.empty() ? 0 : input.below(8);
    buffer.shiftBitsDown(static_cast<std::int32_t>(shift));
    expected.shiftBitsDown(shift);
    expected.access();
    const std::uint64_t bits = 8 * bytes.size();
    const std::uint64_t last = bits - std::min(bits, width);
    const std::uint64_t places[] = {last, last + input.below(10), input.below(last + 1),
                                    std::uint64_t{0} - input.below(800)};
    const std::uint64_t at = input.oneOf(places);
    input.note("a field of a buffer after a shift", {width, at, bytes.size(), shift});

    Kel_Number number(width);
    number.set('d', "-1");
    const bool holds = expected.holds(at, width);
    fuzz::requireEqual(said([&] { bits2Number(buffer, at, number); }),
                       holds ? "" : "Internal Error - Kel_ByteBuffer::getBits bad params.",
                       "a read", &input);
    fuzz::requireEqual(number.toString('b'),
                       holds ? bitsOf(expected, at, width)
                             : std::string(static_cast<std::size_t>(width), '1'),
                       "the field", &input);
    Bytes exact = expected.block; // ends with the field, so a sanitizer sees an access past it
    if (holds) {
        exact.resize(static_cast<std::size_t>((at + width + 7) / 8));
        number.set('d', "-1");
        bits2Number(exact.data(), at, number);
        fuzz::requireEqual(number.toString('b'), bitsOf(expected, at, width),
                           "the field of an array", &input);
    }

    number.set('b', input.text(static_cast<std::size_t>(width), "01"));
    fuzz::requireEqual(said([&] { number2Bits(number, buffer, at); }),
                       holds ? "" : "Internal Error - Kel_ByteBuffer::setBits(ll) bad params.",
                       "a write", &input);
    const std::string written = number.toString('b');
    for (std::uint64_t k = 0; holds && k < width; ++k)
        expected.setBit(at + k, written[static_cast<std::size_t>(width - 1 - k)] == '1');
    const unsigned char* const content = buffer.uPtr();
    fuzz::requireEqual(Bytes(content, content + buffer.getSize()), expected.block,
                       "what is written", &input);
    if (holds)
        number2Bits(number, exact.data(), at);
    expected.block.resize(exact.size());
    fuzz::requireEqual(exact, expected.block, "what is written to an array", &input);
}

/// Returns whether a decimal text has a larger magnitude than \a limit, which has the same sign.
bool exceeds(const std::string& digits, const std::string& limit) {
    return digits.size() != limit.size() ? digits.size() > limit.size() : digits > limit;
}

void convertInteger(fuzz::Input& input, std::uint64_t width) {
    Kel_Number number(width);
    Kel_Number ofText(width);
    const std::uint64_t value = input.value() >> input.below(64);
    uLL2Number(value, number);
    ofText.set('u', std::to_string(value));
    fuzz::requireEqual(number.toString('x'), ofText.toString('x'), "uLL2Number", &input);
    const auto signedValue = static_cast<std::int64_t>(input.value()) >> input.below(64);
    lL2Number(signedValue, number);
    ofText.set('d', std::to_string(signedValue));
    fuzz::requireEqual(number.toString('x'), ofText.toString('x'), "lL2Number", &input);

    if (input.below(2) == 0)
        number.set('b', std::string("1").append(input.below(width), '0'));
    if (input.below(2) == 0)
        number.negate();
    std::string text = number.toString('u');
    std::uint64_t read = 7;
    const bool isUnsigned = !exceeds(text, "18446744073709551615");
    fuzz::requireEqual(number2ULL(number, read), isUnsigned, "whether it fits", &input);
    fuzz::requireEqual(std::to_string(read), isUnsigned ? text : "7", "number2ULL", &input);
    text = number.toString('d');
    std::int64_t signedRead = 7;
    const bool isSigned =
        !exceeds(text, text[0] == '-' ? "-9223372036854775808" : "9223372036854775807");
    fuzz::requireEqual(number2LL(number, signedRead), isSigned, "whether it fits with a sign",
                       &input);
    fuzz::requireEqual(std::to_string(signedRead), isSigned ? text : "7", "number2LL", &input);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::uint64_t widest = input.below(2) == 0 ? 700 : 140;
    const std::uint64_t width = 1 + input.value(2) % widest;
    do {
        convertField(input, width);
        convertInteger(input, width);
    } while (!input.empty());
    return 0;
}
