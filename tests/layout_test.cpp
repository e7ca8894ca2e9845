// SPDX-License-Identifier: MIT
//
// What a client was compiled with: sizes, alignments and places of fields. They are the same on
// every 64-bit host; 32-bit hosts differ in whether a 64-bit field is aligned to 8 bytes (Arm) or
// to 4 (x86). A change here breaks every program that is linked with an earlier build of this major
// version.
//
// The fields are private. An explicit instantiation may name them all the same: access is not
// checked there. So the classes need neither friends nor a second definition, as they would have if
// `private` were a macro.
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Number.h"
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <string>
#include <vector>

using namespace KelRT;

namespace {

template <std::size_t Length>
struct Name {
    char text[Length];
    constexpr Name(const char (&name)[Length]) noexcept { // NOLINT(google-explicit-constructor)
        std::copy(name, name + Length, text);
    }
};

struct Place {
    std::string field;
    std::ptrdiff_t expected;
    std::ptrdiff_t actual;
};

std::vector<Place>& places() {
    static std::vector<Place> all;
    return all;
}

/// Instantiated explicitly, it notes where Member lies: a pointer to a field is, on all our hosts,
/// the field's distance in bytes from the start of its class.
template <Name Field, auto Member, std::ptrdiff_t Expected>
struct FieldAt {
    static bool note() noexcept {
        places().push_back({Field.text, Expected, std::bit_cast<std::ptrdiff_t>(Member)});
        return true;
    }
    static const bool noted;
};
template <Name Field, auto Member, std::ptrdiff_t Expected>
const bool FieldAt<Field, Member, Expected>::noted = note();

struct WideField {
    char first;
    std::uint64_t wide;
};

/// The value for this host, of those for 64-bit hosts, for 32-bit Arm and for 32-bit x86.
constexpr std::ptrdiff_t at(std::ptrdiff_t on64, std::ptrdiff_t onArm, std::ptrdiff_t onX86) {
    if (sizeof(void*) == 8)
        return on64;
    return offsetof(WideField, wide) == 8 ? onArm : onX86;
}

static_assert(sizeof(std::string) == at(32, 24, 24) && sizeof(std::vector<int>) == at(24, 12, 12));

static_assert(sizeof(Kel_ByteBuffer) == at(48, 48, 40) && alignof(Kel_ByteBuffer) == at(8, 8, 4));
template struct FieldAt<"startPosition", &Kel_ByteBuffer::startPosition, 0>;
template struct FieldAt<"pendingBitShift", &Kel_ByteBuffer::pendingBitShift, 8>;
template struct FieldAt<"size", &Kel_ByteBuffer::size, at(16, 16, 12)>;
template struct FieldAt<"padLow", &Kel_ByteBuffer::padLow, at(24, 24, 20)>;
template struct FieldAt<"padHigh", &Kel_ByteBuffer::padHigh, at(32, 32, 28)>;
template struct FieldAt<"storage", &Kel_ByteBuffer::storage, at(40, 40, 36)>;

static_assert(sizeof(Kel_Exception) == at(40, 28, 28) && alignof(Kel_Exception) == at(8, 4, 4));
template struct FieldAt<"message", &Kel_Exception::message,
                        at(8, 4, 4)>; // behind the table of virtuals

static_assert(sizeof(Kel_Number) == at(48, 32, 32) && alignof(Kel_Number) == at(8, 8, 4));
template struct FieldAt<"topWordMask", &Kel_Number::topWordMask, 0>;
template struct FieldAt<"words", &Kel_Number::words, at(8, 4, 4)>;
template struct FieldAt<"bitCount", &Kel_Number::bitCount, at(32, 16, 16)>;
template struct FieldAt<"wordCount", &Kel_Number::wordCount, at(40, 24, 24)>;

static_assert(sizeof(Kel_StrTok) == at(64, 48, 48) && alignof(Kel_StrTok) == at(8, 8, 4));
template struct FieldAt<"buffer", &Kel_StrTok::buffer, 0>;
template struct FieldAt<"handleQuotes", &Kel_StrTok::handleQuotes, at(8, 4, 4)>;
template struct FieldAt<"keepQuotes", &Kel_StrTok::keepQuotes, at(9, 5, 5)>;
template struct FieldAt<"position", &Kel_StrTok::position, at(16, 8, 8)>;
template struct FieldAt<"length", &Kel_StrTok::length, at(24, 16, 16)>;
template struct FieldAt<"delimiters", &Kel_StrTok::delimiters, at(32, 24, 24)>;
template struct FieldAt<"pendingEmptyToken", &Kel_StrTok::pendingEmptyToken, at(40, 28, 28)>;
template struct FieldAt<"block", &Kel_StrTok::block, at(48, 32, 32)>;
template struct FieldAt<"blockDelimiters", &Kel_StrTok::blockDelimiters, at(56, 40, 40)>;

static_assert(sizeof(Logger) == at(80, 64, 52) && alignof(Logger) == at(8, 8, 4));
template struct FieldAt<"stream", &Logger::stream, 0>;
template struct FieldAt<"detailLevel", &Logger::detailLevel, at(16, 8, 8)>;
template struct FieldAt<"nestingDepth", &Logger::nestingDepth, at(20, 12, 12)>;
template struct FieldAt<"writtenLevels", &Logger::writtenLevels, at(24, 16, 16)>;
template struct FieldAt<"atLineStart", &Logger::atLineStart, at(32, 24, 24)>;
template struct FieldAt<"methodStack", &Logger::methodStack, at(40, 32, 28)>;
template struct FieldAt<"methodStack.names", &Logger::MethodStack::names, 0>;
template struct FieldAt<"methodStack.nameless", &Logger::MethodStack::nameless, at(24, 16, 12)>;
template struct FieldAt<"printBits", &Logger::printBits, at(72, 56, 48)>;
template struct FieldAt<"printLargeBufs", &Logger::printLargeBufs, at(73, 57, 49)>;

static_assert(sizeof(MethodLogger) == at(64, 48, 48) && alignof(MethodLogger) == at(8, 4, 4));
template struct FieldAt<"methodName", &MethodLogger::methodName, 0>;
template struct FieldAt<"returnText", &MethodLogger::returnText, at(32, 24, 24)>;

TEST(Layout, FieldsLieWhereClientsExpectThem) {
    ASSERT_EQ(places().size(), 32U);
    for (const Place& place : places())
        EXPECT_EQ(place.actual, place.expected) << place.field;
}

} // namespace
