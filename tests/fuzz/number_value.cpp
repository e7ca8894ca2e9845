// SPDX-License-Identifier: MIT
//
// Fields and integers into a number and back, compared with the same work as text: hexadecimal for
// fields, decimal for integers.
#include "KelRT/NumberValue.h"

#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Number.h"

#include "input.h"
#include "support/outcome.h"

#include <algorithm>
#include <optional>
#include <vector>

using fuzz::require;
using KelRT::Kel_ByteBuffer;
using KelRT::Kel_Number;
using Bytes = std::vector<unsigned char>;

namespace {

/// The integer in a decimal text, unless it is out of range.
template <typename Integer, typename Read>
std::optional<Integer> integerIn(const std::string& text, Read read) {
    try {
        return read(text, nullptr, 10);
    } catch (const std::out_of_range&) {
        return {};
    }
}

class Program {
public:
    Program(fuzz::Input& bytes, std::uint64_t bits)
        : input(bytes), width(bits), number(bits), textNumber(bits) {
        const std::string text = input.text(input.below(200));
        const Bytes start(text.begin(), text.end());
        buffer = Kel_ByteBuffer(start.data(), start.size(), 2, 1);
        textBuffer = buffer;
    }

    /// Does one operation in both ways.
    void step() {
        static constexpr void (Program::* OPERATIONS[])() = {
            &Program::read,        &Program::read,       &Program::write,      &Program::write,
            &Program::setUnsigned, &Program::setSigned,  &Program::readArray,  &Program::writeArray,
            &Program::shift,       &Program::extendSign, &Program::changeBytes};
        (this->*input.oneOf(OPERATIONS))();
        expectSame();
    }

private:
    std::uint64_t position() {
        const std::uint64_t bits = 8 * textBuffer.getSize();
        switch (input.below(16)) {
        case 0:
            return std::uint64_t{0} - input.below(800);
        case 1:
            return input.below(bits + 10);
        case 2: // the last one that fits, or the next
            return bits - std::min(bits, width) + input.below(2);
        default:
            return input.below(bits - std::min(bits, width) + 1);
        }
    }

    void read() {
        const std::uint64_t at = position();
        const std::string said = test::outcome([&] {
            bits2Number(buffer, at, number);
            return "";
        });
        const std::string expected = test::outcome([&] {
            static_cast<void>(textBuffer.getBitsLL(at, width));
            return "";
        });
        require(said == expected, "a refused read");
        if (said.empty())
            textNumber.set('x', textOf(textBuffer, at));
    }
    void write() {
        const std::uint64_t at = position();
        const std::string said = test::outcome([&] {
            number2Bits(number, buffer, at);
            return "";
        });
        const std::string expected = test::outcome([&] {
            textBuffer.setBitsLL(at, width, 0);
            return "";
        });
        require(said == expected, "a refused write");
        if (said.empty())
            putText(textNumber.toString('x'), textBuffer, at);
    }
    /// The array ends with the field, so a sanitizer notices an access past it.
    void readArray() {
        const std::uint64_t at = input.below(130);
        Bytes bytes(sizeUpTo(at + width));
        for (auto& byte : bytes)
            byte = static_cast<unsigned char>(input.character());
        bits2Number(bytes.data(), at, number);
        Kel_ByteBuffer copy(bytes.data(), bytes.size(), 0, 0);
        textNumber.set('x', textOf(copy, at));
    }
    void writeArray() {
        const std::uint64_t at = input.below(130);
        Bytes bytes(sizeUpTo(at + width), static_cast<unsigned char>(input.character()));
        Kel_ByteBuffer copy(bytes.data(), bytes.size(), 0, 0);
        number2Bits(number, bytes.data(), at);
        putText(textNumber.toString('x'), copy, at);
        require(std::equal(bytes.begin(), bytes.end(), copy.uPtr()), "an array");
    }
    void setUnsigned() {
        const std::uint64_t value = input.value() >> input.below(64);
        uLL2Number(value, number);
        textNumber.set('u', std::to_string(value));
    }
    void setSigned() {
        const auto value = static_cast<std::int64_t>(input.value()) >> input.below(64);
        lL2Number(value, number);
        textNumber.set('d', std::to_string(value));
    }
    /// A negative or positive number of any size, so that the integers are often at their limits.
    void extendSign() {
        std::string one = "1";
        one.append(input.below(width), '0');
        for (Kel_Number* const changed : {&number, &textNumber})
            changed->set('b', one);
        if (input.below(2) == 0)
            return;
        number.negate();
        textNumber.negate();
    }
    void changeBytes() {
        if (textBuffer.getSize() == 0)
            return;
        const auto at = static_cast<std::int32_t>(input.below(textBuffer.getSize()));
        buffer[at] = textBuffer[at] = input.character();
    }
    void shift() {
        const std::uint64_t most = std::min<std::uint64_t>(8 * textBuffer.getSize(), 9);
        const auto bits = static_cast<std::int32_t>(input.below(most + 1));
        // A shift that is still pending may drop one more byte.
        if (textBuffer.getSize() < 2)
            return;
        buffer.shiftBitsDown(bits);
        textBuffer.shiftBitsDown(bits);
    }

    /// Compares copies, because reading realigns.
    void expectSame() const {
        require(number.toString('x') == textNumber.toString('x'), "the number");
        require(buffer.getSize() == textBuffer.getSize(), "the size of the buffer");
        Kel_ByteBuffer copy(buffer);
        Kel_ByteBuffer textCopy(textBuffer);
        require(std::equal(copy.uPtr(), copy.uPtr() + copy.getSize(), textCopy.uPtr()), "a byte");

        const auto unsignedInteger = integerIn<unsigned long long>(
            number.toString('u'), [](auto... of) { return std::stoull(of...); });
        std::uint64_t value = 7;
        require(number2ULL(number, value) == unsignedInteger.has_value(), "whether it is unsigned");
        require(value == unsignedInteger.value_or(7), "the unsigned integer");
        const auto signedInteger = integerIn<long long>(
            number.toString('d'), [](auto... of) { return std::stoll(of...); });
        std::int64_t signedValue = 7;
        require(number2LL(number, signedValue) == signedInteger.has_value(),
                "whether it is signed");
        require(signedValue == signedInteger.value_or(7), "the signed integer");
    }

    static std::size_t sizeUpTo(std::uint64_t bit) {
        return static_cast<std::size_t>((bit + 7) / 8);
    }
    static void copyBits(Kel_ByteBuffer& from, std::uint64_t fromBit, Kel_ByteBuffer& to,
                         std::uint64_t toBit, std::uint64_t count) {
        for (std::uint64_t done = 0; done < count; done += 64) {
            const std::uint64_t step = std::min<std::uint64_t>(64, count - done);
            to.setBitsLL(toBit + done, step, from.getBitsLL(fromBit + done, step));
        }
    }
    std::string textOf(Kel_ByteBuffer& from, std::uint64_t at) const {
        Kel_ByteBuffer bits(sizeUpTo(width), 0, 0);
        Kel_ByteBuffer text;
        copyBits(from, at, bits, 0, width);
        bits.bin2HexString(0, text);
        return text.ptr();
    }
    void putText(const std::string& digits, Kel_ByteBuffer& to, std::uint64_t at) const {
        Kel_ByteBuffer text(reinterpret_cast<const unsigned char*>(digits.data()), digits.size(), 0,
                            0);
        Kel_ByteBuffer bits;
        text.hex2Bin(0, digits.size() - 1, bits);
        copyBits(bits, 0, to, at, width);
    }

    fuzz::Input& input;
    std::uint64_t width;
    Kel_ByteBuffer buffer;
    Kel_Number number;
    Kel_ByteBuffer textBuffer; // what the work as text gives
    Kel_Number textNumber;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::uint64_t widest = input.below(2) == 0 ? 700 : 140;
    Program program(input, 1 + input.value(2) % widest);
    while (!input.empty())
        program.step();
    return 0;
}
