// SPDX-License-Identifier: MIT
//
// Runs a random sequence of buffer operations and compares the buffer with the bit-by-bit model.
#include "KelRT/Kel_ByteBuffer.h"

#include "input.h"
#include "models/byte_buffer_model.h"
#include "support/outcome.h"

#include <algorithm>
#include <memory>

using fuzz::requireEqual;
using KelRT::Kel_ByteBuffer;
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
            &Program::insert,      &Program::remove,       &Program::moveStart,
            &Program::shift,       &Program::shift,        &Program::field,
            &Program::field,       &Program::reorder,      &Program::hexText,
            &Program::cutHex,      &Program::readHex,      &Program::readMirrored,
            &Program::clearOrInit, &Program::replaceBuffer};
        (this->*input.oneOf(OPERATIONS))();
    }

    /// Compares the size and every byte of the block. Uses copies, because reading realigns.
    void expectSame() const {
        Kel_ByteBuffer found(buffer);
        model::ByteBuffer aligned(expected);
        aligned.access();
        requireEqual(found.getSize(), aligned.size, "size", &input);
        if (!aligned.block.empty()) {
            const unsigned char* const block = found.uPtr() - aligned.start;
            requireEqual(Bytes(block, block + aligned.block.size()), aligned.block, "block",
                         &input);
        }
    }

private:
    /// Applies an operation to both, and compares what it returns or throws.
    void both(const char* name, Arguments arguments, const auto& operation) {
        input.note(name, arguments);
        const auto resultOf = [&operation](auto& of) {
            return test::outcome([&] {
                if constexpr (std::is_void_v<decltype(operation(of))>)
                    return operation(of), std::string();
                else
                    return fuzz::shown(operation(of));
            });
        };
        requireEqual(resultOf(buffer), resultOf(expected), name, &input);
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
        requireEqual(contentOf(target), made, "the content of another buffer", &input);
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
        input.note("bin2HexString", {from});
        Bytes text = expected.hexText(from);
        Bytes out(text.size(), 0xEE); // without a spare byte, so a sanitizer sees a write past it
        buffer.bin2HexString(from, out.data());
        requireEqual(out, text, "bin2HexString to a place", &input);
        text.resize(2 * expected.size + 1);
        convert(text, 0, [&](auto& target) { buffer.bin2HexString(from, target); });
    }
    void cutHex() {
        const std::uint64_t from = input.below(expected.size + 2);
        const std::uint64_t bits = input.below(8 * expected.size + 10);
        input.note("bin2HexString, cut", {from, bits});
        const std::unique_ptr<Kel_ByteBuffer> made(buffer.bin2HexString(from, bits));
        requireEqual(contentOf(*made), expected.hexText(from, bits), "bin2HexString, cut", &input);
    }
    void readHex() {
        if (expected.size == 0)
            return;
        const std::size_t first = input.below(expected.size);
        const std::size_t last = input.below(expected.size);
        input.note("hex2Bin", {first, last});
        const Bytes bytes = expected.bytesOfHex(first, last);
        Bytes out(bytes.size() + 1, 0xEE);
        buffer.hex2Bin(first, last, out.data());
        requireEqual(out.back(), 0xEE, "the byte after the place of hex2Bin", &input);
        out.pop_back();
        requireEqual(out, bytes, "hex2Bin to a place", &input);
        const std::unique_ptr<Kel_ByteBuffer> made(buffer.hex2Bin(first, last));
        requireEqual(contentOf(*made), bytes, "hex2Bin", &input);
        convert(bytes, 0, [&](auto& target) { buffer.hex2Bin(first, last, target); });
    }
    void readMirrored() {
        const std::string text = input.text(input.below(60), DIGITS);
        input.note("hex2BinReverse", {text.size()});
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
        input.note("a new buffer", {size, low, high});
        buffer = Kel_ByteBuffer(bytes.data(), bytes.size(), low, high);
        expected = model::ByteBuffer(bytes, low, high);
    }
    static Bytes contentOf(Kel_ByteBuffer& of) { return {of.uPtr(), of.uPtr() + of.getSize()}; }

    fuzz::Input& input;
    Kel_ByteBuffer buffer;
    model::ByteBuffer expected;
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
