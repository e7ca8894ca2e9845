// SPDX-License-Identifier: MIT
#include "KelRT/Kel_ByteBuffer.h"

#include "failing_new.h"
#include "models/byte_buffer_model.h"
#include "models/byte_buffer_program.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <stdexcept>
#include <utility>

using namespace KelRT;
using model::Bytes;

namespace {

constexpr std::uint64_t HUGE_COUNT = std::numeric_limits<std::uint64_t>::max();

Kel_ByteBuffer make(const Bytes& bytes, std::uint64_t padLow = 0, std::uint64_t padHigh = 0) {
    return {bytes.data(), bytes.size(), padLow, padHigh};
}

Kel_ByteBuffer makeText(const char* text) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text);
    return {bytes, std::strlen(text) + 1, 0, 0};
}

Bytes bytesOf(Kel_ByteBuffer& buffer) {
    const unsigned char* const first = buffer.uPtr();
    return {first, first + buffer.getSize()};
}

Bytes taken(Kel_ByteBuffer* made) {
    return bytesOf(*std::unique_ptr<Kel_ByteBuffer>(made));
}

Bytes textBytes(const std::string& text) {
    return {text.begin(), text.end()};
}

std::string messageOf(const auto& action) {
    try {
        action();
    } catch (const std::logic_error& error) {
        return error.what();
    }
    return "";
}

constexpr const char* BAD_GET = "Internal Error - Kel_ByteBuffer::getBits bad params.";
constexpr const char* BAD_SET = "Internal Error - Kel_ByteBuffer::setBits(ll) bad params.";

TEST(ByteBufferStorage, ConstructionMakesAZeroedBlockWithReserves) {
    Kel_ByteBuffer buffer(4, 2, 3);
    EXPECT_EQ(buffer.getSize(), 4U);
    const unsigned char* const block = buffer.uPtr() - 2;
    EXPECT_EQ(Bytes(block, block + 9), Bytes(9, 0));
    Kel_ByteBuffer empty;
    EXPECT_EQ(empty.getSize(), 0U);
    EXPECT_EQ(empty.ptr(), nullptr);
    empty.clear();
    Kel_ByteBuffer fromNothing(nullptr, 0, 1, 1);
    EXPECT_EQ(fromNothing.getSize(), 0U);
    EXPECT_NE(fromNothing.ptr(), nullptr);
}

TEST(ByteBufferStorage, ClearZeroesTheReservesToo) {
    Kel_ByteBuffer buffer = make({1, 2, 3, 4});
    buffer.moveStartPositionForward(1);
    buffer.removeBytesAtEnd(1);
    buffer.clear();
    EXPECT_EQ(buffer.getSize(), 2U);
    buffer.moveStartPositionForward(-1);
    buffer.insertBytes(buffer.getSize(), 1);
    EXPECT_EQ(bytesOf(buffer), Bytes(4, 0));
}

TEST(ByteBufferStorage, GapsOpenOnTheSmallerSide) {
    // Growing a reserve appends or prepends zeros; a gap keeps what lay under it.
    struct {
        std::uint64_t at, count;
        Bytes expected;
        bool lowReserveGrows;
    } const cases[] = {
        {3, 2, {1, 2, 3, 4, 0, 4}, false}, {2, 1, {1, 2, 2, 3, 4}, true},
        {4, 2, {1, 2, 3, 4, 0, 0}, false}, {0, 1, {0, 1, 2, 3, 4}, true},
        {9, 1, {1, 2, 3, 4, 0}, false},    {1, 0, {1, 2, 3, 4}, true},
    };
    for (const auto& [at, count, expected, low] : cases) {
        Kel_ByteBuffer buffer = make({1, 2, 3, 4});
        EXPECT_EQ(buffer.insertBytes(at, count), 0);
        EXPECT_EQ(bytesOf(buffer), expected) << at << ' ' << count;
    }
}

TEST(ByteBufferStorage, AReserveIsUsedBeforeABlockIsTaken) {
    Kel_ByteBuffer buffer = make({1, 2, 3, 4});
    const char* const block = buffer.ptr();
    buffer.removeBytesAtEnd(2);
    buffer.insertBytes(2, 2);
    buffer.moveStartPositionForward(1);
    buffer.insertBytes(0, 1);
    EXPECT_EQ(buffer.ptr(), block);
    EXPECT_EQ(bytesOf(buffer), Bytes({1, 2, 3, 4}));
    buffer[3] = 'x';
    EXPECT_EQ(bytesOf(buffer), Bytes({1, 2, 3, 'x'}));
}

TEST(ByteBufferStorage, CopiesAreDeepAndMovesLeaveADefaultBuffer) {
    Kel_ByteBuffer original = make({0x21, 0x43, 0x65}, 1, 2);
    original.shiftBitsDown(12);
    Kel_ByteBuffer copy(original);
    EXPECT_EQ(bytesOf(copy), Bytes({0x54, 0x06}));
    original[0] = 0;
    EXPECT_EQ(bytesOf(copy), Bytes({0x54, 0x06}));
    copy.moveStartPositionForward(-2); // the copied low reserve
    EXPECT_EQ(bytesOf(copy), Bytes({0, 0x21, 0x54, 0x06}));

    Kel_ByteBuffer moved(std::move(copy));
    EXPECT_EQ(moved.getSize(), 4U);
    // NOLINTBEGIN(bugprone-use-after-move, clang-analyzer-cplusplus.Move): what is left is the
    // point
    EXPECT_EQ(copy.getSize(), 0U);
    EXPECT_EQ(copy.ptr(), nullptr);
    copy.insertBytes(0, 1);
    EXPECT_EQ(bytesOf(copy), Bytes({0}));
    // NOLINTEND(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
    copy = std::move(moved);
    // NOLINTNEXTLINE(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
    EXPECT_EQ(moved.getSize(), 0U);
    Kel_ByteBuffer& same = copy;
    copy = same;
    copy = std::move(same);
    EXPECT_EQ(bytesOf(copy), Bytes({0, 0x21, 0x54, 0x06}));
    moved = Kel_ByteBuffer();
    copy = moved;
    EXPECT_EQ(copy.ptr(), nullptr);
}

TEST(ByteBufferStorage, ObjectsLiveWhereverAClientPutsThem) {
    alignas(Kel_ByteBuffer) unsigned char place[sizeof(Kel_ByteBuffer)];
    auto* const inPlace = new (place) Kel_ByteBuffer(1, 0, 0);
    EXPECT_EQ(inPlace->getSize(), 1U);
    inPlace->~Kel_ByteBuffer();
    const std::unique_ptr<Kel_ByteBuffer> one(new (std::nothrow) Kel_ByteBuffer(2, 0, 0));
    const auto many = std::make_unique<Kel_ByteBuffer[]>(3);
    EXPECT_EQ(one->getSize() + many[2].getSize(), 2U);
    const std::unique_ptr<Kel_ByteBuffer[]> more(new (std::nothrow) Kel_ByteBuffer[2]);
    EXPECT_EQ(more[1].getSize(), 0U);
    alignas(Kel_ByteBuffer) unsigned char places[2 * sizeof(Kel_ByteBuffer)];
    EXPECT_EQ(Kel_ByteBuffer::operator new[](sizeof places, places), places);
    // What a constructor that throws calls; the leak checker watches.
    EXPECT_THROW(new (std::nothrow) Kel_ByteBuffer(HUGE_COUNT, 0, 0), std::bad_alloc);
    EXPECT_THROW(new (place) Kel_ByteBuffer(HUGE_COUNT, 0, 0), std::bad_alloc);
    Kel_ByteBuffer::operator delete[](Kel_ByteBuffer::operator new[](9, std::nothrow),
                                      std::nothrow);
}

TEST(ByteBufferStorage, SizesBeyondMemoryAreRefusedAndChangeNothing) {
    struct {
        std::uint64_t size, low, high;
    } const cases[] = {{HUGE_COUNT, 0, 0},
                       {HUGE_COUNT, 1, 0},
                       {1, HUGE_COUNT, 0},
                       {1, 0, HUGE_COUNT},
                       {HUGE_COUNT / 2 + 1, HUGE_COUNT / 2 + 1, 4}};
    Kel_ByteBuffer buffer = make({1, 2, 3, 4}, 1, 1);
    for (const auto& [size, low, high] : cases) {
        EXPECT_THROW(Kel_ByteBuffer(size, low, high), std::bad_alloc);
        EXPECT_THROW(buffer.init(size, low, high), std::bad_alloc);
    }
    for (const std::uint64_t at : {0U, 4U})
        for (const std::uint64_t count : {HUGE_COUNT, HUGE_COUNT - 5, HUGE_COUNT / 2})
            EXPECT_THROW(buffer.insertBytes(at, count), std::bad_alloc);
    EXPECT_THROW(buffer.hex2Bin(0, HUGE_COUNT, buffer), std::bad_alloc);
    EXPECT_EQ(bytesOf(buffer), Bytes({1, 2, 3, 4}));
    buffer.init(2, 0, 0);
    EXPECT_EQ(bytesOf(buffer), Bytes({0, 0}));
}

TEST(ByteBufferStorage, ExhaustedMemoryLeavesBufferAndTargetUnchanged) {
    if (!test::failingNewReachesTheLibrary())
        GTEST_SKIP() << "the library has an operator new of its own here";
    Kel_ByteBuffer buffer = makeText("4321");
    Kel_ByteBuffer target = make({7});
    const auto fails = [](const auto& action) {
        const test::FailingNew noMemory;
        EXPECT_THROW(action(), std::bad_alloc);
    };
    fails([&] { buffer.init(9, 0, 0); });
    fails([&] { buffer.insertBytes(0, 1); });
    fails([&] { buffer.insertBytes(5, 1); });
    fails([&] { target = buffer; });
    fails([&] { buffer.bin2HexString(0, target); });
    fails([&] { buffer.bin2HexString(0, buffer); });
    fails([&] { buffer.hex2Bin(0, 3, target); });
    fails([&] { Kel_ByteBuffer::hex2BinReverse("12", target); });
    fails([&] { delete buffer.bin2HexString(0); });
    EXPECT_EQ(bytesOf(buffer), textBytes(std::string("4321\0", 5)));
    EXPECT_EQ(bytesOf(target), Bytes({7}));
}

TEST(ByteBufferFields, EveryPairOfPositionAndCountAgreesWithTheBitLoop) {
    std::mt19937_64 random(11);
    for (const std::uint64_t size :
         {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 9U, 10U, 15U, 16U, 17U, 23U, 24U, 25U}) {
        Bytes bytes(size);
        for (auto& byte : bytes)
            byte = static_cast<unsigned char>(random());
        const model::ByteBuffer original(bytes, 1, 1);
        for (std::uint64_t position = 0; position <= 8 * size + 9; ++position)
            for (std::uint64_t count = 0; count <= 8 * size + 9; ++count) {
                model::ByteBuffer expected = original;
                Kel_ByteBuffer buffer = make(bytes, 1, 1);
                const std::uint64_t value = random();
                std::string getError;
                std::uint64_t got = 0;
                getError = messageOf([&] { got = buffer.getBitsLL(position, count); });
                const std::string setError =
                    messageOf([&] { buffer.setBitsLL(position, count, value); });
                if (expected.holds(position, count)) {
                    ASSERT_EQ(got, expected.get(position, count)) << position << ' ' << count;
                    expected.set(position, count, value);
                    ASSERT_EQ(getError + setError, "");
                } else {
                    ASSERT_EQ(getError, BAD_GET) << size << ' ' << position << ' ' << count;
                    ASSERT_EQ(setError, BAD_SET);
                }
                const unsigned char* const block = buffer.uPtr() - 1;
                ASSERT_EQ(Bytes(block, block + size + 2), expected.block)
                    << size << ' ' << position << ' ' << count;
            }
    }
}

TEST(ByteBufferFields, RangesWhoseEndWrapsAreRefused) {
    struct {
        std::uint64_t position, count;
    } const cases[] = {
        {HUGE_COUNT, 1},     {HUGE_COUNT, HUGE_COUNT}, {1, HUGE_COUNT},
        {HUGE_COUNT - 6, 0}, {16, HUGE_COUNT - 15},
    };
    Kel_ByteBuffer buffer = make({0x21, 0x43});
    for (const auto& field : cases) {
        EXPECT_EQ(messageOf([&] { (void)buffer.getBits(field.position, field.count); }), BAD_GET);
        EXPECT_EQ(messageOf([&] { buffer.setBits(field.position, field.count, 1); }), BAD_SET);
    }
    EXPECT_EQ(bytesOf(buffer), Bytes({0x21, 0x43}));
}

TEST(ByteBufferFields, The32BitFormsWidenAndNarrow) {
    Kel_ByteBuffer buffer = make(Bytes(6, 0xFF));
    buffer.setBits(4, 40, 0x12345678);
    EXPECT_EQ(buffer.getBitsLL(0, 48), 0xF0012345678FU);
    EXPECT_EQ(buffer.getBits(4, 40), 0x12345678U);
    buffer.setBitsLL(3, 40, 0xFEDCBA9876543210);
    EXPECT_EQ(buffer.getBits(3, 40), 0x76543210U);
}

TEST(ByteBufferFields, DroppedBitsStayPendingUntilTheNextAccess) {
    Kel_ByteBuffer buffer = make({0x21, 0x43});
    const char* const block = buffer.ptr();
    buffer.shiftBitsDown(4);
    EXPECT_EQ(*block, 0x21); // no byte has changed
    EXPECT_EQ(buffer.getBitsLL(0, 12), 0x432U);
    EXPECT_EQ(bytesOf(buffer), Bytes({0x32, 0x04}));

    Kel_ByteBuffer steps = make({0x21, 0x43});
    steps.shiftBitsDown(3);
    steps.shiftBitsDown(5);
    EXPECT_EQ(steps.getSize(), 1U);
    EXPECT_EQ(bytesOf(steps), Bytes({0x43}));

    Kel_ByteBuffer refused = make({0x21, 0x43});
    refused.shiftBitsDown(4);
    EXPECT_THROW((void)refused.getBits(9, 8), std::logic_error);
    Kel_ByteBuffer copy(refused); // copying does not realign, the refused read did
    EXPECT_EQ(*(copy.ptr()), 0x32);

    Kel_ByteBuffer nothing;
    nothing.shiftBitsDown(5);
    EXPECT_EQ(nothing.ptr(), nullptr);
}

TEST(ByteBufferHexText, OrdinaryTextIsCutToItsBits) {
    struct {
        Bytes bytes;
        std::uint64_t from, bits;
        std::string expected;
    } const cases[] = {
        {{0x21, 0x43}, 0, 12, "321"},  {{0x21, 0x43}, 0, 16, "4321"}, {{0x21, 0x43}, 0, 20, "4321"},
        {{0xFF, 0xFF}, 0, 10, "3FF"},  {{0xFF, 0xFF}, 0, 13, "1FFF"}, {{0xFF, 0xFF}, 0, 0, ""},
        {{0xFF, 0xAB}, 1, 7, "2B"},    {{0xFF, 0xAB}, 1, 8, "AB"},    {{0xFF, 0xAB}, 1, 9, "AB"},
        {{0xFF, 0xAB}, 2, 4, ""},      {{0xFF, 0xAB}, 9, 1, ""},      {{}, 0, 3, ""},
        {{0xFF}, 0, HUGE_COUNT, "FF"}, {{0xFF}, 0, 7, "7F"},
    };
    for (const auto& [bytes, from, bits, expected] : cases) {
        Kel_ByteBuffer buffer = make(bytes, 3, 3);
        EXPECT_EQ(taken(buffer.bin2HexString(from, bits)), textBytes(expected + '\0'))
            << from << ' ' << bits;
    }
    Kel_ByteBuffer nothing;
    nothing.setHexStringBitCount(1); // no text at all: nothing to cut
    EXPECT_EQ(nothing.getSize(), 0U);
}

TEST(ByteBufferHexText, AStartBeyondTheFirstByteLeavesZeroCharacters) {
    Kel_ByteBuffer buffer = make({0x21, 0x43});
    EXPECT_EQ(taken(buffer.bin2HexString(0)), textBytes(std::string("4321\0", 5)));
    EXPECT_EQ(taken(buffer.bin2HexString(1)), textBytes(std::string("43\0\0\0", 5)));
    EXPECT_EQ(taken(buffer.bin2HexString(HUGE_COUNT)), Bytes(5, 0));
}

TEST(ByteBufferHexText, AnyRangeOfAnyTextReadsAsTheCharacterLoop) {
    std::mt19937 random(12);
    const std::string digits = "0123456789ABCDEFabcdef";
    for (std::size_t length = 1; length <= 40; ++length) {
        std::string text;
        for (std::size_t i = 0; i < length; ++i)
            text += random() % 16 == 0 ? static_cast<char>(random()) : digits[random() % 22];
        const model::ByteBuffer expected(textBytes(text), 0, 0);
        Kel_ByteBuffer buffer = make(textBytes(text));
        for (std::uint64_t first = 0; first < length; ++first)
            for (std::uint64_t last = 0; last < length; ++last)
                ASSERT_EQ(taken(buffer.hex2Bin(first, last)), expected.hexToBin(first, last))
                    << testing::PrintToString(text) << ' ' << first << ' ' << last;
        const std::string noZeros = text.substr(0, text.find('\0'));
        ASSERT_EQ(taken(Kel_ByteBuffer::hex2BinReverse(noZeros.c_str())),
                  model::mirroredTextToBin(noZeros))
            << testing::PrintToString(text);
    }
}

TEST(ByteBufferHexText, EveryCharacterHasItsValue) {
    for (unsigned code = 0; code < 256; ++code)
        for (const std::size_t place : {0U, 3U, 7U}) { // among eight digits, and alone below
            std::string text = "5a5A5b5B";
            text[place] = static_cast<char>(code);
            const model::ByteBuffer expected(textBytes(text), 0, 0);
            Kel_ByteBuffer buffer = make(textBytes(text));
            ASSERT_EQ(taken(buffer.hex2Bin(0, 7)), expected.hexToBin(0, 7)) << code;
            ASSERT_EQ(taken(buffer.hex2Bin(place, place)), expected.hexToBin(place, place));
            if (code == 0)
                continue; // ends the text
            ASSERT_EQ(taken(Kel_ByteBuffer::hex2BinReverse(text.c_str())),
                      model::mirroredTextToBin(text));
        }
}

TEST(ByteBufferHexText, MirroredTextComesWithReserves) {
    for (const auto& [text, expected] : {std::pair<const char*, Bytes>{"80", {0x01}},
                                         {"1", {0x08}},
                                         {"12", {0x48}},
                                         {"A5", {0xA5}},
                                         {"123", {0x48, 0x0C}},
                                         {"", {}},
                                         {nullptr, {}}}) {
        Kel_ByteBuffer buffer = make({1, 2, 3});
        Kel_ByteBuffer::hex2BinReverse(text, buffer);
        EXPECT_EQ(bytesOf(buffer), expected);
        const char* const block = buffer.ptr();
        buffer.insertBytes(0, 10);
        buffer.insertBytes(buffer.getSize(), 10);
        EXPECT_EQ(buffer.ptr() + 10, block);
    }
}

TEST(ByteBufferHexText, ABufferMayBeItsOwnTarget) {
    Kel_ByteBuffer buffer = make({0x21, 0x43}, 2, 2);
    buffer.bin2HexString(0, buffer);
    EXPECT_EQ(bytesOf(buffer), textBytes(std::string("4321\0", 5)));
    buffer.hex2Bin(0, 3, buffer);
    EXPECT_EQ(bytesOf(buffer), Bytes({0x21, 0x43}));
    buffer.hex2Bin(1, 0, buffer);
    EXPECT_EQ(buffer.getSize(), 0U);
    Kel_ByteBuffer text = makeText("123");
    Kel_ByteBuffer::hex2BinReverse(text.ptr(), text);
    EXPECT_EQ(bytesOf(text), Bytes({0x48, 0x0C}));
}

TEST(ByteBufferReordering, ReversingBytesAndMirroringThemReversesTheBitString) {
    std::mt19937_64 random(13);
    for (std::uint64_t size = 0; size <= 70; ++size) {
        Bytes bytes(size);
        for (auto& byte : bytes)
            byte = static_cast<unsigned char>(random());
        const model::ByteBuffer original(bytes, 0, 0);
        Kel_ByteBuffer buffer = make(bytes);
        buffer.swapByteOrder(0, size);
        buffer.swapBitOrderWithinEachByte();
        for (std::uint64_t k = 0; k < 8 * size; ++k)
            ASSERT_EQ(buffer.getBits(k, 1), original.bit(8 * size - 1 - k) ? 1U : 0U);
    }
}

struct Dice {
    static constexpr std::uint64_t SEED = 20261124;
    std::mt19937_64 random{SEED};
    std::uint64_t value() { return random(); }
    std::uint64_t below(std::uint64_t bound) { return random() % bound; }
};

TEST(ByteBuffer, RandomProgramsAgreeWithTheBitByBitModel) {
    SCOPED_TRACE(Dice::SEED);
    Dice dice;
    for (int program = 0; program < 400; ++program) {
        model::ByteBufferProgram run;
        for (int i = 0; i < 60; ++i) {
            ASSERT_TRUE(run.step(dice)) << program << ' ' << i;
            // Often enough, yet leaving shifts pending in between.
            ASSERT_TRUE(dice.below(3) != 0 || run.same()) << program << ' ' << i;
        }
    }
}

} // namespace
