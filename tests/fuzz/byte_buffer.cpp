// SPDX-License-Identifier: MIT
//
// Runs a random sequence of buffer operations and compares the buffer with the bit-by-bit model.
#include "KelRT/Kel_ByteBuffer.h"

#include "KelRT/Kel_Number.h"
#include "KelRT/NumberValue.h"

#include "input.h"
#include "models/byte_buffer_model.h"
#include "support/outcome.h"

#include <algorithm>
#include <memory>

using fuzz::requireEqual;
using KelRT::Kel_ByteBuffer;
using KelRT::Kel_Number;
using model::Bytes;
using Arguments = std::initializer_list<std::uint64_t>;

namespace {

constexpr const char* DIGITS = "0123456789ABCDEFabcdef";

class Program {
public:
    explicit Program(fuzz::Input& bytes) : input(bytes) { replaceBuffer(); }

    /// Applies one random operation to the buffer and to the model.
    void step() {
        static constexpr void (Program::* OPERATIONS[])() = {
            &Program::insert,       &Program::remove,      &Program::moveStart,
            &Program::shift,        &Program::shift,       &Program::field,
            &Program::field,        &Program::numberField, &Program::reorder,
            &Program::hexText,      &Program::cutHex,      &Program::readHex,
            &Program::readMirrored, &Program::clearOrInit, &Program::replaceBuffer};
        (this->*input.oneOf(OPERATIONS))();
    }

    /// Compares the size and every byte of the block. Uses copies, because reading realigns.
    void expectSame() const {
        Kel_ByteBuffer found(buffer);
        model::ByteBuffer aligned(expected);
        aligned.access();
        compare(found.getSize(), aligned.size);
        if (!aligned.block.empty()) {
            const unsigned char* const block = found.uPtr() - aligned.start;
            compare(Bytes(block, block + aligned.block.size()), aligned.block);
        }
    }

private:
    /// Notes an operation. A comparison that fails prints all noted operations.
    void note(const char* name, Arguments arguments) {
        operations.append("\n    ").append(name);
        for (const std::uint64_t argument : arguments)
            operations += ' ' + std::to_string(argument);
    }
    template <typename Value>
    void compare(const Value& found, const std::type_identity_t<Value>& wanted) const {
        requireEqual(found, wanted, operations.c_str());
    }
    /// Applies an operation to both, and compares what it returns or throws.
    void both(const char* name, Arguments arguments, const auto& operation) {
        note(name, arguments);
        const auto resultOf = [&operation](auto& of) {
            return test::outcome([&] {
                if constexpr (std::is_void_v<decltype(operation(of))>)
                    return operation(of), std::string();
                else
                    return fuzz::shown(operation(of));
            });
        };
        compare(resultOf(buffer), resultOf(expected));
    }
    /// Runs a conversion. Its target is another buffer, which is checked here, or the buffer
    /// itself, which expectSame() checks later.
    void convert(const Bytes& made, std::size_t reserve, const auto& operation) {
        if (expected.size < 200 && input.below(2) == 0) {
            operation(buffer);
            expected = model::ByteBuffer(made, reserve, reserve);
            return;
        }
        Kel_ByteBuffer target(reinterpret_cast<const unsigned char*>("old"), 3, 0, 0);
        operation(target);
        compare(contentOf(target), made);
    }

    void insert() {
        const std::size_t at = input.below(expected.size + 3);
        const std::size_t count = input.below(12);
        both("insertBytes", {at, count}, [=](auto& of) { return of.insertBytes(at, count); });
    }
    void remove() {
        const std::size_t count = input.below(std::min<std::uint64_t>(expected.size, 5) + 1);
        both("removeBytesAtEnd", {count}, [=](auto& of) { of.removeBytesAtEnd(count); });
    }
    void moveStart() {
        const auto forward = input.below(std::min<std::uint64_t>(expected.size, 4) + 1);
        const auto back = input.below(std::min<std::uint64_t>(expected.start, 4) + 1);
        const auto count = static_cast<std::int32_t>(forward - back);
        both("moveStartPositionForward", {forward, back},
             [=](auto& of) { of.moveStartPositionForward(count); });
    }
    void shift() {
        const std::uint64_t bits = 8 * expected.size;
        const std::uint64_t most = bits < expected.pending ? 0 : bits - expected.pending;
        const auto count = static_cast<std::int32_t>(input.below(30) % (most + 1));
        both("shiftBitsDown", {static_cast<std::uint64_t>(count)},
             [=](auto& of) { of.shiftBitsDown(count); });
    }
    void field() {
        const std::uint64_t at = belowOrHuge(8 * expected.size + 10);
        const std::uint64_t count = belowOrHuge(100);
        if (input.below(2) == 0) {
            both("getBitsLL", {at, count}, [=](auto& of) { return of.getBitsLL(at, count); });
            return both("getBits", {at, count}, [=](auto& of) { return of.getBits(at, count); });
        }
        if (input.below(2) == 0) {
            const auto value = static_cast<std::uint32_t>(input.value(4));
            return both("setBits", {at, count, value},
                        [=](auto& of) { of.setBits(at, count, value); });
        }
        const std::uint64_t value = input.value();
        both("setBitsLL", {at, count, value}, [=](auto& of) { of.setBitsLL(at, count, value); });
    }
    /// Copies a field to a number, and a number to the field, in the buffer and in an array.
    void numberField() {
        const std::size_t width = 1 + input.below(8 * expected.size + 10);
        const std::size_t last = std::max(8 * expected.size, width) - width;
        const std::uint64_t at = input.below(2) == 0 ? last : belowOrHuge(last + 10);
        Kel_Number number(width);
        number.set('x', input.text(width / 4 + 1, DIGITS));
        const auto fieldOf = [=](auto& of) {
            Kel_Number field(width);
            field.set('d', "-1"); // this value stays if bits2Number() throws
            const auto read = [&] { return bits2Number(of, at, field), std::string(); };
            return test::outcome(read).append(field.toString('b'));
        };
        both("bits2Number", {at, width}, fieldOf);
        Bytes array; // ends with the field, so that the sanitizer sees an access past it
        if (expected.holds(at, width)) {
            const auto size = static_cast<std::size_t>((at + width + 7) / 8);
            array.assign(expected.used(), expected.used() + size);
            auto* const data = array.data();
            compare(fieldOf(data), fieldOf(expected));
            number2Bits(number, data, at);
        }
        both("number2Bits", {at, width}, [&](auto& of) { number2Bits(number, of, at); });
        compare(array, Bytes(expected.used(), expected.used() + array.size()));
    }
    std::uint64_t belowOrHuge(std::uint64_t bound) {
        return input.below(16) == 0 ? std::uint64_t{0} - input.below(80) : input.below(bound);
    }
    void reorder() {
        if (input.below(2) == 0)
            return both("swapBitOrderWithinEachByte", {},
                        [](auto& of) { of.swapBitOrderWithinEachByte(); });
        const std::size_t from = input.below(expected.size + 1);
        const std::size_t count = input.below(expected.size - from + 1);
        both("swapByteOrder", {from, count}, [=](auto& of) { of.swapByteOrder(from, count); });
    }
    void hexText() {
        const std::uint64_t from = input.below(expected.size + 2);
        note("bin2HexString", {from});
        Bytes text = expected.hexText(from);
        Bytes out(text.size(), 0xEE); // without a spare byte, so a sanitizer sees a write past it
        buffer.bin2HexString(from, out.data());
        compare(out, text);
        text.resize(2 * expected.size + 1);
        convert(text, 0, [&](auto& target) { buffer.bin2HexString(from, target); });
    }
    void cutHex() {
        const std::uint64_t from = input.below(expected.size + 2);
        const std::uint64_t bits = input.below(8 * expected.size + 10);
        note("bin2HexString, cut", {from, bits});
        const std::unique_ptr<Kel_ByteBuffer> made(buffer.bin2HexString(from, bits));
        compare(contentOf(*made), expected.hexText(from, bits));
    }
    void readHex() {
        if (expected.size == 0)
            return;
        const std::size_t first = input.below(expected.size);
        const std::size_t last = input.below(expected.size);
        note("hex2Bin", {first, last});
        Bytes bytes = expected.bytesOfHex(first, last);
        bytes.push_back(0xEE); // must not change
        Bytes out(bytes.size(), 0xEE);
        buffer.hex2Bin(first, last, out.data());
        compare(out, bytes);
        bytes.pop_back();
        const std::unique_ptr<Kel_ByteBuffer> made(buffer.hex2Bin(first, last));
        compare(contentOf(*made), bytes);
        convert(bytes, 0, [&](auto& target) { buffer.hex2Bin(first, last, target); });
    }
    void readMirrored() {
        const std::string text = input.text(input.below(60), DIGITS);
        note("hex2BinReverse", {text.size()});
        convert(model::bytesOfMirroredHex(text), 10,
                [&](auto& target) { Kel_ByteBuffer::hex2BinReverse(text.c_str(), target); });
    }
    void clearOrInit() {
        const std::size_t size = input.below(60);
        switch (input.below(3)) {
        case 0:
            return both("clear", {}, [](auto& of) { of.clear(); });
        case 1:
            return both("init", {size}, [size](auto& of) { of.init(size, 2, 3); });
        default:
            return both("a default buffer", {}, [](auto& of) { of = {}; });
        }
    }
    /// Replaces the buffer by one with other bytes and reserves.
    void replaceBuffer() {
        const std::size_t size = input.below(180);
        const std::string text = input.below(2) == 0 ? input.text(size) : input.text(size, DIGITS);
        const Bytes bytes(text.begin(), text.end());
        const std::size_t low = input.below(6);
        const std::size_t high = input.below(6);
        note("a new buffer", {size, low, high});
        buffer = Kel_ByteBuffer(bytes.data(), bytes.size(), low, high);
        expected = model::ByteBuffer(bytes, low, high);
    }
    static Bytes contentOf(Kel_ByteBuffer& of) { return {of.uPtr(), of.uPtr() + of.getSize()}; }

    fuzz::Input& input;
    Kel_ByteBuffer buffer;
    model::ByteBuffer expected;
    std::string operations = "the result of the last operation, or the buffer after it:";
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    Program program(input);
    while (!input.empty()) {
        program.step();
        if (input.below(3) == 0) // about every third step
            program.expectSame();
    }
    program.expectSame();
    return 0;
}
