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
#include <cstdlib>

using fuzz::requireEqual;
using KelRT::Kel_ByteBuffer;
using KelRT::Kel_Number;
using model::Bytes;

namespace {

constexpr const char* BAD_GET = "Internal Error - Kel_ByteBuffer::getBits bad params.";
constexpr const char* BAD_SET = "Internal Error - Kel_ByteBuffer::setBits(ll) bad params.";

std::string said(const auto& action) {
    return test::outcome([&] { return action(), ""; });
}

std::string bitsOf(const model::ByteBuffer& bytes, std::uint64_t at, std::uint64_t width) {
    std::string text;
    for (std::uint64_t k = width; k-- > 0;)
        text += bytes.bit(at + k) ? '1' : '0';
    return text;
}

/// Reads a field and writes another to its place, in a buffer and in an array. The field lies near
/// either end of the bytes or beyond them.
void convertField(fuzz::Input& input, std::uint64_t width) {
    const std::string text = input.text(input.below(200));
    const Bytes bytes(text.begin(), text.end());
    Kel_ByteBuffer buffer(bytes.data(), bytes.size(), 0, 0);
    model::ByteBuffer expected(bytes, 0, 0);
    const auto shift = static_cast<std::int32_t>(bytes.empty() ? 0 : input.below(8));
    buffer.shiftBitsDown(shift);
    expected.shiftBitsDown(shift);
    expected.access();
    const std::uint64_t bits = 8 * bytes.size();
    const std::uint64_t last = bits - std::min(bits, width);
    const std::uint64_t places[] = {last, last + input.below(10), input.below(last + 1),
                                    std::uint64_t{0} - input.below(800)};
    const std::uint64_t at = input.oneOf(places);
    input.note("a field of a buffer after a shift",
               {width, at, bytes.size(), static_cast<std::uint64_t>(shift)});

    const bool holds = expected.holds(at, width);
    const std::string field =
        holds ? bitsOf(expected, at, width) : std::string(static_cast<std::size_t>(width), '1');
    Bytes exact = expected.block; // ends with the field, so a sanitizer sees an access past it
    Kel_Number number(width);
    number.set('d', "-1");
    requireEqual(said([&] { bits2Number(buffer, at, number); }), holds ? "" : BAD_GET, "a read",
                 &input);
    requireEqual(number.toString('b'), field, "the field", &input);
    if (holds) {
        exact.resize(static_cast<std::size_t>((at + width + 7) / 8));
        number.set('d', "-1");
        bits2Number(exact.data(), at, number);
        requireEqual(number.toString('b'), field, "the field of an array", &input);
    }

    number.set('b', input.text(static_cast<std::size_t>(width), "01"));
    requireEqual(said([&] { number2Bits(number, buffer, at); }), holds ? "" : BAD_SET, "a write",
                 &input);
    if (holds) {
        number2Bits(number, exact.data(), at);
        std::uint64_t k = at + width;
        for (const char bit : number.toString('b'))
            expected.setBit(--k, bit == '1');
    }
    requireEqual(Bytes(buffer.uPtr(), buffer.uPtr() + buffer.getSize()), expected.block,
                 "what is written", &input);
    expected.block.resize(exact.size());
    requireEqual(exact, expected.block, "what is written to an array", &input);
}

void convertInteger(fuzz::Input& input, std::uint64_t width) {
    Kel_Number number(width);
    Kel_Number ofText(width);
    const auto store = [&](auto value, char radix, auto convert) {
        convert(value, number);
        ofText.set(radix, std::to_string(value));
        requireEqual(number.toString('x'), ofText.toString('x'), "an integer");
    };
    store(input.value() >> input.below(64), 'u', KelRT::uLL2Number);
    store(static_cast<std::int64_t>(input.value()) >> input.below(64), 'd', KelRT::lL2Number);

    if (input.below(2) == 0)
        number.set('b', std::string("1").append(input.below(width), '0'));
    if (input.below(2) == 0)
        number.negate();
    // If the text is out of range, strtoull and strtoll return a limit, whose digits differ.
    const auto load = [&](auto integer, char radix, auto convert, auto read) {
        const std::string text = number.toString(radix);
        const bool fits = std::to_string(read(text.c_str(), nullptr, 10)) == text;
        requireEqual(convert(number, integer), fits, "whether it fits");
        requireEqual(std::to_string(integer), fits ? text : "7", "what is loaded");
    };
    load(std::uint64_t{7}, 'u', KelRT::number2ULL, std::strtoull);
    load(std::int64_t{7}, 'd', KelRT::number2LL, std::strtoll);
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
