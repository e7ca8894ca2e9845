// SPDX-License-Identifier: MIT
//
// What a client was compiled with: sizes, alignments and places of fields, the same on every 64-bit
// host. A change here breaks every program that is linked with an earlier build of this major
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

static_assert(sizeof(void*) == 8 && sizeof(std::string) == 32 && sizeof(std::vector<int>) == 24);

static_assert(sizeof(Kel_ByteBuffer) == 48 && alignof(Kel_ByteBuffer) == 8);
template struct FieldAt<"startPosition", &Kel_ByteBuffer::startPosition, 0>;
template struct FieldAt<"pendingBitShift", &Kel_ByteBuffer::pendingBitShift, 8>;
template struct FieldAt<"size", &Kel_ByteBuffer::size, 16>;
template struct FieldAt<"padLow", &Kel_ByteBuffer::padLow, 24>;
template struct FieldAt<"padHigh", &Kel_ByteBuffer::padHigh, 32>;
template struct FieldAt<"storage", &Kel_ByteBuffer::storage, 40>;

static_assert(sizeof(Kel_Exception) == 40 && alignof(Kel_Exception) == 8);
template struct FieldAt<"message", &Kel_Exception::message, 8>; // behind the table of virtuals

static_assert(sizeof(Kel_Number) == 48 && alignof(Kel_Number) == 8);
template struct FieldAt<"topWordMask", &Kel_Number::topWordMask, 0>;
template struct FieldAt<"words", &Kel_Number::words, 8>;
template struct FieldAt<"bitCount", &Kel_Number::bitCount, 32>;
template struct FieldAt<"wordCount", &Kel_Number::wordCount, 40>;

static_assert(sizeof(Kel_StrTok) == 64 && alignof(Kel_StrTok) == 8);
template struct FieldAt<"buffer", &Kel_StrTok::buffer, 0>;
template struct FieldAt<"handleQuotes", &Kel_StrTok::handleQuotes, 8>;
template struct FieldAt<"keepQuotes", &Kel_StrTok::keepQuotes, 9>;
template struct FieldAt<"position", &Kel_StrTok::position, 16>;
template struct FieldAt<"length", &Kel_StrTok::length, 24>;
template struct FieldAt<"delimiters", &Kel_StrTok::delimiters, 32>;
template struct FieldAt<"pendingEmptyToken", &Kel_StrTok::pendingEmptyToken, 40>;
template struct FieldAt<"block", &Kel_StrTok::block, 48>;
template struct FieldAt<"blockDelimiters", &Kel_StrTok::blockDelimiters, 56>;

static_assert(sizeof(Logger) == 80 && alignof(Logger) == 8);
template struct FieldAt<"stream", &Logger::stream, 0>;
template struct FieldAt<"detailLevel", &Logger::detailLevel, 16>;
template struct FieldAt<"nestingDepth", &Logger::nestingDepth, 20>;
template struct FieldAt<"writtenLevels", &Logger::writtenLevels, 24>;
template struct FieldAt<"atLineStart", &Logger::atLineStart, 32>;
template struct FieldAt<"methodStack", &Logger::methodStack, 40>;
template struct FieldAt<"methodStack.names", &Logger::MethodStack::names, 0>;
template struct FieldAt<"methodStack.nameless", &Logger::MethodStack::nameless, 24>;
template struct FieldAt<"printBits", &Logger::printBits, 72>;
template struct FieldAt<"printLargeBufs", &Logger::printLargeBufs, 73>;

static_assert(sizeof(MethodLogger) == 64 && alignof(MethodLogger) == 8);
template struct FieldAt<"methodName", &MethodLogger::methodName, 0>;
template struct FieldAt<"returnText", &MethodLogger::returnText, 32>;

TEST(Layout, FieldsLieWhereClientsExpectThem) {
    ASSERT_EQ(places().size(), 32U);
    for (const Place& place : places())
        EXPECT_EQ(place.actual, place.expected) << place.field;
}

} // namespace
