// SPDX-License-Identifier: MIT
//
// Runs a random sequence of buffer operations and compares the buffer with the bit-by-bit model.
#include "KelRT/Kel_ByteBuffer.h"

#include "input.h"
#include "models/byte_buffer_model.h"
#include "support/outcome.h"

#include <algorithm>
#include <memory>
#include <utility>

using KelRT::Kel_ByteBuffer;
using model::Bytes;

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

    /// Compares the size and every byte of the block. Uses a copy, because reading realigns.
    void expectSame() const {
        Kel_ByteBuffer copy(buffer);
        model::ByteBuffer aligned = expected;
        aligned.access();
        requireEqual(copy.getSize(), aligned.size, "size");
        if (!aligned.block.empty()) {
            const unsigned char* const block = copy.uPtr() - aligned.start;
            requireEqual(Bytes(block, block + aligned.block.size()), aligned.block, "block");
        }
    }

private:
    void require(bool holds, const char* what) const { fuzz::require(holds, what, &input); }
    void requireEqual(const auto& found, const auto& expectedValue, const char* what) const {
        fuzz::requireEqual(found, expectedValue, what, &input);
    }

    void insert() {
        const std::size_t at = input.below(expected.size + 3);
        const std::size_t count = input.below(12);
        input.note("insertBytes", {at, count});
        requireEqual(buffer.insertBytes(at, count), 0, "insertBytes gives 0");
        expected.access();
        expected.insertBytes(at, count);
    }
    void remove() {
        const std::size_t count = input.below(std::min<std::uint64_t>(expected.size, 5) + 1);
        input.note("removeBytesAtEnd", {count});
        buffer.removeBytesAtEnd(count);
        expected.access();
        expected.size -= count;
    }
    void moveStart() {
        const auto forward = input.below(std::min<std::uint64_t>(expected.size, 4) + 1);
        const auto back = input.below(std::min<std::uint64_t>(expected.start, 4) + 1);
        const std::int64_t count = static_cast<std::int64_t>(forward - back);
        input.note("moveStartPositionForward", {forward, back});
        buffer.moveStartPositionForward(static_cast<std::int32_t>(count));
        expected.access();
        expected.moveStart(count);
    }
    void shift() {
        const std::uint64_t bits = 8 * expected.size;
        const std::uint64_t most = bits < expected.pending ? 0 : bits - expected.pending;
        const std::uint64_t count = input.below(30) % (most + 1);
        input.note("shiftBitsDown", {count});
        buffer.shiftBitsDown(static_cast<std::int32_t>(count));
        expected.shiftBitsDown(count);
    }
    void field() {
        const std::uint64_t position = belowOrHuge(8 * expected.size + 10);
        const std::uint64_t count = belowOrHuge(100);
        expected.access();
        const bool holds = expected.holds(position, count);
        if (input.below(2) == 0) {
            input.note("getBits, getBitsLL", {position, count});
            std::uint64_t all = 0;
            std::uint32_t low = 0;
            const std::string said = test::outcome([&] {
                all = buffer.getBitsLL(position, count);
                low = buffer.getBits(position, count);
                return "";
            });
            requireEqual(said, (holds ? "" : BAD_GET), "a refused read");
            requireEqual(all, (holds ? expected.get(position, count) : 0), "getBitsLL");
            requireEqual(low, static_cast<std::uint32_t>(all), "the low 32 bits");
            return;
        }
        const bool narrow = input.below(2) == 0;
        const std::uint64_t value = input.value(narrow ? 4 : 8);
        input.note(narrow ? "setBits" : "setBitsLL", {position, count, value});
        const std::string said = test::outcome([&] {
            if (narrow)
                buffer.setBits(position, count, static_cast<std::uint32_t>(value));
            else
                buffer.setBitsLL(position, count, value);
            return "";
        });
        requireEqual(said, (holds ? "" : BAD_SET), "a refused write");
        if (holds)
            expected.set(position, count, value);
    }
    std::uint64_t belowOrHuge(std::uint64_t bound) {
        return input.below(16) == 0 ? std::uint64_t{0} - input.below(80) : input.below(bound);
    }
    void reorder() {
        expected.access();
        if (input.below(2) == 0) {
            input.note("swapBitOrderWithinEachByte", {});
            buffer.swapBitOrderWithinEachByte();
            return expected.mirrorEachByte();
        }
        const std::size_t from = input.below(expected.size + 1);
        const std::size_t count = input.below(expected.size - from + 1);
        input.note("swapByteOrder", {from, count});
        buffer.swapByteOrder(from, count);
        expected.reverse(from, count);
    }
    void hexText() {
        const std::uint64_t from = input.below(expected.size + 2);
        input.note("bin2HexString", {from});
        const std::uint64_t count = from < expected.size ? expected.size - from : 0;
        Bytes text(static_cast<std::size_t>(2 * count + 1), 0xEE);
        buffer.bin2HexString(from, text.data());
        expected.access();
        requireEqual(text, expected.hexText(from), "bin2HexString");
        text.resize(static_cast<std::size_t>(2 * expected.size + 1));
        checkStored(text, 0, [from](auto& of, auto& target) { of.bin2HexString(from, target); });
    }
    void cutHex() {
        const std::uint64_t from = input.below(expected.size + 2);
        const std::uint64_t bits = input.below(8 * expected.size + 10);
        input.note("bin2HexString, cut", {from, bits});
        const std::unique_ptr<Kel_ByteBuffer> made(buffer.bin2HexString(from, bits));
        expected.access();
        const Bytes text = model::cutHexText(expected.hexText(from), bits);
        requireEqual(contentOf(*made), text, "bin2HexString, cut");
    }
    void readHex() {
        expected.access();
        if (expected.size == 0)
            return;
        const std::uint64_t first = input.below(expected.size);
        const std::uint64_t last = input.below(expected.size);
        input.note("hex2Bin", {first, last});
        const Bytes bytes = expected.hexToBin(first, last);
        Bytes out(bytes.size() + 1, 0xEE); // with one more byte, which must not change
        buffer.hex2Bin(first, last, out.data());
        require(out.back() == 0xEE && std::equal(bytes.begin(), bytes.end(), out.begin()),
                "hex2Bin to a place");
        const std::unique_ptr<Kel_ByteBuffer> made(buffer.hex2Bin(first, last));
        requireEqual(contentOf(*made), bytes, "hex2Bin");
        checkStored(bytes, 0, [=](auto& of, auto& target) { of.hex2Bin(first, last, target); });
    }
    void readMirrored() {
        const std::string text = input.text(input.below(60), DIGITS);
        input.note("hex2BinReverse", {text.size()});
        checkStored(model::mirroredTextToBin(text), 10, [&text](auto&, auto& target) {
            Kel_ByteBuffer::hex2BinReverse(text.c_str(), target);
        });
    }
    void clearOrInit() {
        const std::size_t size = input.below(60);
        input.note("clear or init", {size});
        switch (input.below(3)) {
        case 0:
            buffer.clear();
            return std::fill(expected.block.begin(), expected.block.end(), std::uint8_t{0});
        case 1:
            buffer.init(size, 2, 3);
            expected = model::ByteBuffer(Bytes(size, 0), 2, 3);
            return;
        default:
            buffer = Kel_ByteBuffer();
            expected = model::ByteBuffer();
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

    /// Runs an operation either with another buffer as its target, and checks that buffer, or with
    /// the buffer itself, which expectSame() checks later.
    void checkStored(const Bytes& made, std::size_t reserve, const auto& operation) {
        if (expected.size < 200 && input.below(2) == 0) {
            operation(buffer, buffer);
            expected = model::ByteBuffer(made, reserve, reserve);
            return;
        }
        Kel_ByteBuffer target(reinterpret_cast<const unsigned char*>("old"), 3, 0, 0);
        operation(buffer, target);
        requireEqual(contentOf(target), made, "the content of another buffer");
    }
    static Bytes contentOf(Kel_ByteBuffer& of) { return {of.uPtr(), of.uPtr() + of.getSize()}; }

    static constexpr const char* BAD_GET = "Internal Error - Kel_ByteBuffer::getBits bad params.";
    static constexpr const char* BAD_SET =
        "Internal Error - Kel_ByteBuffer::setBits(ll) bad params.";
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
