// SPDX-License-Identifier: MIT
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Number.h"
#include "KelRT/NumberValue.h"
#include "support/outcome.h"

#include <gtest/gtest.h>

#include <cstring>
#include <future>
#include <limits>
#include <memory>
#include <new>
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

/// Returns the bytes of a text with its terminating NUL.
Bytes textBytes(const std::string& text) {
    return {text.c_str(), text.c_str() + text.size() + 1};
}

TEST(ByteBufferStorage, InsertionsThatFitInAReserveKeepTheBlock) {
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

using Objects = testing::Types<Aligned<alignof(Kel_ByteBuffer)>, Aligned<4096>>;
TYPED_TEST_SUITE(ByteBufferObjects, Objects, );

TYPED_TEST(ByteBufferObjects, EveryFormOfNewMakesAnAlignedObject) {
    using Object = TypeParam;
    alignas(Object) unsigned char place[2 * sizeof(Object)];
    const std::unique_ptr<Object> one(new Object);
    const std::unique_ptr<Object> other(new (std::nothrow) Object);
    const std::unique_ptr<Object[]> many(new Object[2]);
    const std::unique_ptr<Object[]> more(new (std::nothrow) Object[2]);
    for (const Object* const object : {one.get(), other.get(), &many[1], &more[1]}) {
        EXPECT_EQ(object->getSize(), 1U);
        // On 32-bit Arm, 8 bytes of the aligned memory precede an array: they hold its length.
        EXPECT_LE(reinterpret_cast<std::uintptr_t>(object) % alignof(Object), 8U);
    }
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

TEST(ByteBufferObjects, OverAlignedMemoryThatIsTooLargeIsRefused) {
    constexpr auto ALIGNMENT = std::align_val_t(4096);
    constexpr auto HUGE_SIZE = std::numeric_limits<std::size_t>::max();
    EXPECT_THROW((void)Kel_ByteBuffer::operator new(HUGE_SIZE, ALIGNMENT), std::bad_alloc);
    EXPECT_EQ(Kel_ByteBuffer::operator new[](HUGE_SIZE, ALIGNMENT, std::nothrow), nullptr);
    Kel_ByteBuffer::operator delete[](nullptr, ALIGNMENT, std::nothrow);
}

TEST(ByteBufferStorage, SizesBeyondMemoryAreRefusedAndChangeNothing) {
    // On a 32-bit host, a std::size_t would hold only the low 32 bits of `wrapping`: 8.
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

TEST(ByteBufferStorage, AMovedFromBufferIsAsIfDefaultConstructed) {
    Kel_ByteBuffer original = make({0x21, 0x43, 0x65}, 1, 2);
    original.shiftBitsDown(12);
    Kel_ByteBuffer moved(std::move(original));
    // NOLINTBEGIN(bugprone-use-after-move, clang-analyzer-cplusplus.Move): the test is about
    // the moved-from buffer
    EXPECT_EQ(original.getSize(), 0U);
    original.shiftBitsDown(5);
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

// ThreadSanitizer reports a data race if one of these calls writes to the buffer.
TEST(ByteBufferFields, ThreadsMayReadABufferTogetherIfNoShiftIsPending) {
    Kel_ByteBuffer buffer = make(textBytes("captured for all"), 1, 4);
    buffer.shiftBitsDown(3);
    buffer.ptr();
    const auto readAll = [&buffer] {
        std::string all = std::to_string(buffer.getSize());
        for (const std::uint64_t position : {0U, 66U, 130U})
            for (const std::uint64_t count : {1U, 60U, 70U})
                all += ' ' + test::outcome([&] {
                           Kel_Number number(count);
                           bits2Number(buffer, position, number);
                           return std::to_string(buffer.getBitsLL(position, count)) + ' ' +
                                  std::to_string(buffer.getBits(position, count)) +
                                  number.toString('x');
                       });
        return all;
    };
    std::future<std::string> threads[8];
    for (auto& thread : threads)
        thread = std::async(std::launch::async, readAll);
    for (auto& thread : threads)
        EXPECT_EQ(thread.get(), readAll());
}

// Gives a buffer an uninitialised block, so that a text of 2^31 characters takes no physical
// memory. C++ allows an explicit instantiation, here that of Fields, to name private fields.
void takeUntouchedBlock(Kel_ByteBuffer& buffer, std::uint64_t bytes);
template <auto Storage, auto Size>
struct Fields {
    friend void takeUntouchedBlock(Kel_ByteBuffer& buffer, std::uint64_t bytes) {
        (buffer.*Storage).reset(new unsigned char[bytes]);
        buffer.*Size = bytes;
    }
};
template struct Fields<&Kel_ByteBuffer::storage, &Kel_ByteBuffer::size>;

TEST(ByteBufferHexText, ACutMayDropMoreThan2147483647Digits) {
    if (sizeof(std::size_t) == 4)
        GTEST_SKIP() << "no block has 2^31 bytes here";
    Kel_ByteBuffer text;
    takeUntouchedBlock(text, (std::uint64_t{1} << 31) + 3);
    std::memcpy(text.ptr() + text.getSize() - 3, "FA", 3);
    text.setHexStringBitCount(6);
    EXPECT_EQ(bytesOf(text), textBytes("3A"));
}

TEST(ByteBufferHexText, DigitsThatAreCutOffStayInTheLowReserve) {
    Kel_ByteBuffer buffer = make({0x21, 0x43, 0x65});
    const std::unique_ptr<Kel_ByteBuffer> text(buffer.bin2HexString(1, 6));
    EXPECT_EQ(bytesOf(*text), textBytes("03"));
    text->moveStartPositionForward(-2);
    EXPECT_EQ(bytesOf(*text), textBytes("6503"));
}

} // namespace
