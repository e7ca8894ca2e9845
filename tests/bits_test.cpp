// SPDX-License-Identifier: MIT
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Number.h"
#include "KelRT/NumberValue.h"
#include "support/failing_new.h"
#include "support/outcome.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <future>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using namespace KelRT;
using Bytes = std::vector<unsigned char>;

namespace {

constexpr std::uint64_t HUGE_COUNT = std::numeric_limits<std::uint64_t>::max();

Kel_ByteBuffer make(const Bytes& bytes, std::uint64_t padLow = 0, std::uint64_t padHigh = 0) {
    return {bytes.data(), bytes.size(), padLow, padHigh};
}

Bytes bytesOf(Kel_ByteBuffer& buffer) {
    const unsigned char* const first = buffer.uPtr();
    return {first, first + buffer.getSize()};
}

Bytes taken(Kel_ByteBuffer* made) {
    return bytesOf(*std::unique_ptr<Kel_ByteBuffer>(made));
}

/// Returns the bytes of a text with its terminating NUL.
Bytes textBytes(const std::string& text) {
    return {text.c_str(), text.c_str() + text.size() + 1};
}

TEST(ByteBufferStorage, AReserveIsUsedBeforeABlockIsTaken) {
    Kel_ByteBuffer buffer = make({1, 2, 3, 4});
    const char* const block = buffer.ptr();
    buffer.removeBytesAtEnd(2);
    buffer.insertBytes(2, 2);
    buffer.moveStartPositionForward(1);
    buffer.insertBytes(0, 1);
    EXPECT_EQ(buffer.ptr(), block);
    buffer[3] = 'x';
    EXPECT_EQ(bytesOf(buffer), Bytes({1, 2, 3, 'x'}));
}

template <std::size_t ALIGNMENT>
struct alignas(ALIGNMENT) Aligned : Kel_ByteBuffer {
    explicit Aligned(std::uint64_t bytes = 1) : Kel_ByteBuffer(bytes, 0, 0) {}
};

template <typename Object>
class ByteBufferObjects : public testing::Test {};

using Objects = testing::Types<Aligned<alignof(Kel_ByteBuffer)>, Aligned<256>>;
TYPED_TEST_SUITE(ByteBufferObjects, Objects, );

TYPED_TEST(ByteBufferObjects, LiveWhereverAClientPutsThem) {
    using Object = TypeParam;
    const std::unique_ptr<Object> one(new Object);
    const std::unique_ptr<Object> other(new (std::nothrow) Object);
    const std::unique_ptr<Object[]> many(new Object[2]);
    const std::unique_ptr<Object[]> more(new (std::nothrow) Object[2]);
    EXPECT_EQ(one->getSize() + other->getSize() + many[1].getSize() + more[1].getSize(), 4U);
    alignas(Object) unsigned char place[2 * sizeof(Object)];
    auto* const inPlace = new (place) Object;
    EXPECT_EQ(static_cast<void*>(inPlace), place);
    inPlace->~Object();
    EXPECT_EQ(Object::operator new[](sizeof place, place), place);
    // If a constructor throws, its memory is released; the leak checker would report a leak.
    EXPECT_THROW(new Object(HUGE_COUNT), std::bad_alloc);
    EXPECT_THROW(new (std::nothrow) Object(HUGE_COUNT), std::bad_alloc);
    EXPECT_THROW(new (place) Object(HUGE_COUNT), std::bad_alloc);
    EXPECT_THROW(new Object[1]{Object(HUGE_COUNT)}, std::bad_alloc);
    EXPECT_THROW(new (std::nothrow) Object[1]{Object(HUGE_COUNT)}, std::bad_alloc);
}

TEST(ByteBufferObjects, OverAlignedMemoryIsAlignedOrExhausted) {
    using Buffer = Kel_ByteBuffer;
    constexpr auto ALIGNMENT = std::align_val_t(256);
    for (int round = 0; round < 20; ++round) { // memory may be aligned by chance
        const std::unique_ptr<Aligned<256>> object(new Aligned<256>);
        void* const array = Buffer::operator new[](9, ALIGNMENT);
        void* const other = Buffer::operator new[](9, ALIGNMENT, std::nothrow);
        for (const void* const memory : {static_cast<void*>(object.get()), array, other})
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % 256, 0U);
        Buffer::operator delete[](array, ALIGNMENT);
        Buffer::operator delete[](other, ALIGNMENT, std::nothrow);
    }
    constexpr auto HUGE_SIZE = std::numeric_limits<std::size_t>::max();
    EXPECT_THROW((void)Buffer::operator new(HUGE_SIZE, ALIGNMENT), std::bad_alloc);
    EXPECT_EQ(Buffer::operator new[](HUGE_SIZE, ALIGNMENT, std::nothrow), nullptr);
    Buffer::operator delete[](nullptr, ALIGNMENT, std::nothrow);
}

TEST(ByteBufferStorage, SizesBeyondMemoryAreRefusedAndChangeNothing) {
    // Where std::size_t has 32 bits, this is truncated to 8.
    constexpr std::uint64_t wrapping =
        sizeof(std::size_t) == 4 ? (std::uint64_t{1} << 32) + 8 : HUGE_COUNT;
    constexpr std::uint64_t cases[][3] = {{HUGE_COUNT, 1, 0}, {1, HUGE_COUNT, 0},
                                          {1, 0, HUGE_COUNT}, {HUGE_COUNT, 0, 0},
                                          {wrapping, 0, 0},   {0, wrapping, 0},
                                          {0, 0, wrapping},   {wrapping / 2, wrapping / 2, 8}};
    Kel_ByteBuffer buffer = make({1, 2, 3, 4}, 1, 1);
    for (const auto& [size, low, high] : cases) {
        EXPECT_THROW(Kel_ByteBuffer(size, low, high), std::bad_alloc);
        EXPECT_THROW(buffer.init(size, low, high), std::bad_alloc);
    }
    for (const std::uint64_t at : {0U, 4U})
        for (const std::uint64_t count : {HUGE_COUNT, HUGE_COUNT - 5, HUGE_COUNT / 2, wrapping})
            EXPECT_THROW(buffer.insertBytes(at, count), std::bad_alloc);
    for (const std::uint64_t last : {HUGE_COUNT, 2 * wrapping - 2})
        EXPECT_THROW(buffer.hex2Bin(0, last, buffer), std::bad_alloc);
    EXPECT_EQ(bytesOf(buffer), Bytes({1, 2, 3, 4}));
    buffer.init(2, 0, 0);
    EXPECT_EQ(bytesOf(buffer), Bytes({0, 0}));
}

TEST(ByteBufferStorage, MovesLeaveADefaultBuffer) {
    Kel_ByteBuffer original = make({0x21, 0x43, 0x65}, 1, 2);
    original.shiftBitsDown(12);
    Kel_ByteBuffer moved(std::move(original));
    // NOLINTBEGIN(bugprone-use-after-move, clang-analyzer-cplusplus.Move): the test is about
    // the moved-from buffer
    EXPECT_EQ(original.getSize(), 0U);
    EXPECT_EQ(original.ptr(), nullptr);
    original.insertBytes(0, 1);
    EXPECT_EQ(bytesOf(original), Bytes({0}));
    original = std::move(moved);
    EXPECT_EQ(moved.getSize(), 0U);
    moved.insertBytes(0, 1);
    EXPECT_EQ(bytesOf(moved), Bytes({0}));
    // NOLINTEND(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
    Kel_ByteBuffer& same = original;
    const char* const block = original.ptr();
    original = same;
    original = std::move(same);
    EXPECT_EQ(original.ptr(), block);
    original.moveStartPositionForward(-2);
    EXPECT_EQ(bytesOf(original), Bytes({0, 0x21, 0x54, 0x06}));
}

TEST(ByteBufferFields, DroppedBitsStayPendingUntilTheNextAccess) {
    Kel_ByteBuffer buffer = make({0x21, 0x43});
    const char* const block = buffer.ptr();
    buffer.shiftBitsDown(4);
    const Kel_ByteBuffer copy(buffer);
    EXPECT_EQ(*block, 0x21); // the shift has changed no byte
    EXPECT_THROW((void)buffer.getBits(9, 8), std::logic_error);
    EXPECT_EQ(*block, 0x32); // the read has realigned, although it failed
    Kel_ByteBuffer nothing;
    nothing.shiftBitsDown(5);
    EXPECT_EQ(nothing.ptr(), nullptr);
}

// Each operation realigns and then runs out of memory. If it did not realign first, the second
// shift by 4 bits would drop a byte.
TEST(ByteBufferFields, OperationsRealignBeforeTheyTakeMemory) {
    if (!test::failingNewReachesTheLibrary())
        GTEST_SKIP() << "the library has an operator new of its own here";
    Kel_ByteBuffer target;
    const std::function<void(Kel_ByteBuffer&)> operations[] = {
        [&](Kel_ByteBuffer& buffer) { buffer.hex2Bin(0, 1, target); },
        [&](Kel_ByteBuffer& buffer) { buffer.bin2HexString(0, target); },
        [](Kel_ByteBuffer& buffer) { buffer.bin2HexString(0, buffer); },
        [](Kel_ByteBuffer& buffer) { buffer.hex2Bin(0, 1, buffer); },
        [](Kel_ByteBuffer& buffer) { delete buffer.bin2HexString(0, 8); },
        [](Kel_ByteBuffer& buffer) { buffer.insertBytes(1, 50); },
        [](Kel_ByteBuffer& buffer) { buffer.insertBytes(2, 50); },
    };
    for (const auto& operation : operations) {
        Kel_ByteBuffer buffer = make({0x21, 0x43});
        buffer.shiftBitsDown(4);
        {
            const test::FailingNew noMemory;
            EXPECT_THROW(operation(buffer), std::bad_alloc) << &operation - operations;
        }
        buffer.shiftBitsDown(4);
        EXPECT_EQ(buffer.getSize(), 2U) << &operation - operations;
    }
}

/// Calls all functions that several threads may call at the same time, and returns their results.
std::string allReadFrom(Kel_ByteBuffer& buffer) {
    std::string all = std::to_string(buffer.getSize());
    for (std::uint64_t position = 0; position < 162; ++position)
        for (const std::uint64_t count : {1U, 40U, 64U, 70U})
            all += ' ' + test::outcome([&] {
                       Kel_Number number(count);
                       bits2Number(buffer, position, number);
                       return std::to_string(buffer.getBitsLL(position, count)) + ' ' +
                              std::to_string(buffer.getBits(position, count)) +
                              number.toString('x');
                   });
    return all;
}

// ThreadSanitizer would report a data race here.
TEST(ByteBufferFields, ManyThreadsReadABufferWithoutAPendingShift) {
    Kel_ByteBuffer buffer = make(textBytes("captured for all"), 1, 4);
    buffer.shiftBitsDown(3);
    buffer.ptr();
    std::future<std::string> threads[8];
    for (auto& thread : threads)
        thread = std::async(std::launch::async, allReadFrom, std::ref(buffer));
    for (auto& thread : threads)
        EXPECT_EQ(thread.get(), allReadFrom(buffer));
}

// Gives a buffer a block that nothing has written to, so that a text of 2^31 characters takes no
// physical memory. An explicit instantiation, such as that of Fields, may name private fields.
void takeUntouchedBlock(Kel_ByteBuffer& buffer, std::uint64_t bytes);
template <auto Storage, auto Size>
struct Fields {
    friend void takeUntouchedBlock(Kel_ByteBuffer& buffer, std::uint64_t bytes) {
        (buffer.*Storage).reset(new unsigned char[bytes]);
        buffer.*Size = bytes;
    }
};
template struct Fields<&Kel_ByteBuffer::storage, &Kel_ByteBuffer::size>;

TEST(ByteBufferHexText, ACutMayDropMoreThanInt32MaxDigits) {
    if (sizeof(std::size_t) == 4)
        GTEST_SKIP() << "no block has 2^31 bytes here";
    Kel_ByteBuffer text;
    takeUntouchedBlock(text, (std::uint64_t{1} << 31) + 3);
    std::memcpy(text.ptr() + text.getSize() - 3, "FA", 3);
    text.setHexStringBitCount(6);
    EXPECT_EQ(bytesOf(text), textBytes("3A"));
}

TEST(ByteBufferHexText, DigitsThatAreCutStayInTheLowReserve) {
    Kel_ByteBuffer buffer = make({0x21, 0x43, 0x65});
    const std::unique_ptr<Kel_ByteBuffer> text(buffer.bin2HexString(1, 6));
    EXPECT_EQ(bytesOf(*text), textBytes("03"));
    text->moveStartPositionForward(-2);
    EXPECT_EQ(bytesOf(*text), textBytes("6503"));
}

TEST(ByteBufferHexText, NothingIsReadFromNothing) {
    Kel_ByteBuffer buffer = make(textBytes("80"));
    EXPECT_EQ(taken(buffer.bin2HexString(HUGE_COUNT)), Bytes(7, 0));
    Kel_ByteBuffer::hex2BinReverse(buffer.ptr(), buffer);
    EXPECT_EQ(bytesOf(buffer), Bytes({0x01}));
    EXPECT_EQ(taken(Kel_ByteBuffer::hex2BinReverse(nullptr)), Bytes());
    Kel_ByteBuffer nothing;
    nothing.setHexStringBitCount(1);
    EXPECT_EQ(nothing.getSize(), 0U);
}

} // namespace
