// SPDX-License-Identifier: MIT
#include "KelRT/Kel_StrTok.h"

#include "common/memory.h"
#include "common/vectors.h"
#include "common/words.h"

#include <bit>
#include <cassert>
#include <cctype>
#include <cstring>

namespace KelRT {
namespace {

using common::WORD_BITS;

// Named arrays, since a linker may merge equal string literals: another "," must stay another
// pointer.
constexpr char COMMA[] = ",";
constexpr char BLANKS[] = "\n\t \v\r\b\f";

// Bit i is set where character i of the 64 is in `set`.
std::uint64_t membersOf(const char* set, const char* characters) {
    // Four variables: an array would pass through memory.
    const auto* const from = reinterpret_cast<const unsigned char*>(characters);
    const auto a = common::loadVector(from);
    const auto b = common::loadVector(from + common::VECTOR_BYTES);
    const auto c = common::loadVector(from + 2 * common::VECTOR_BYTES);
    const auto d = common::loadVector(from + 3 * common::VECTOR_BYTES);
    common::Vector inA{};
    common::Vector inB{};
    common::Vector inC{};
    common::Vector inD{};
    for (; *set != '\0'; ++set) {
        inA = inA | common::equal(a, *set);
        inB = inB | common::equal(b, *set);
        inC = inC | common::equal(c, *set);
        inD = inD | common::equal(d, *set);
    }
    return common::topBits(inA) | common::topBits(inB) << 16 | common::topBits(inC) << 32 |
           common::topBits(inD) << 48;
}

/// The \a length characters of \a text, filled up with NULs (at least one) to whole blocks of 64,
/// so that a block can be examined as a whole.
std::unique_ptr<char[]> copyOf(const char* text, std::uint64_t length) {
    const std::uint64_t lastBlock = length / WORD_BITS * WORD_BITS;
    auto copy =
        std::make_unique_for_overwrite<char[]>(common::checkedCount<char>(lastBlock + WORD_BITS));
    std::memset(copy.get() + lastBlock, 0, WORD_BITS);
    std::memcpy(copy.get(), text, static_cast<std::size_t>(length));
    return copy;
}

void foldToLowerCase(char* text) {
    for (; *text != '\0'; ++text) {
        const auto character = static_cast<unsigned char>(*text);
        if (std::isupper(character) != 0)
            *text = static_cast<char>(std::tolower(character));
    }
}

} // namespace

const char* const Kel_StrTok::CSV_DELIM = COMMA;
const char* const Kel_StrTok::WHITE_SPACE = BLANKS;

Kel_StrTok::Kel_StrTok(const char* text, const char* newDelimiters, bool newHandleQuotes,
                       bool toLowerCase, bool newKeepQuotes)
    : handleQuotes(newHandleQuotes), keepQuotes(newKeepQuotes),
      length(text == nullptr ? 0 : std::strlen(text)), delimiters(newDelimiters) {
    assert(delimiters != nullptr && "delimiters is not null");
    buffer = copyOf(text == nullptr ? "" : text, length);
    if (toLowerCase)
        foldToLowerCase(buffer.get());
    if (delimiters == CSV_DELIM && length > 0 && buffer.get()[length - 1] == *CSV_DELIM)
        pendingEmptyToken = 1;
}

Kel_StrTok::~Kel_StrTok() = default;

// Finds the delimiters of a block. Large enough to stay out of line, so what is done for every
// token is inlined instead.
void Kel_StrTok::examine(std::uint64_t newBlock) noexcept {
    block = newBlock;
    blockDelimiters = membersOf(delimiters, buffer.get() + block * WORD_BITS);
}

/// The delimiters from character \a from (below the length) to the end of its block, \a from at
/// bit 0.
std::uint64_t Kel_StrTok::delimitersFrom(std::uint64_t from) noexcept {
    if (from / WORD_BITS != block) [[unlikely]]
        examine(from / WORD_BITS);
    return blockDelimiters >> from % WORD_BITS;
}

/// The index of the first delimiter at or behind \a from, or the length.
std::uint64_t Kel_StrTok::findDelimiter(std::uint64_t from) noexcept {
    if (from >= length)
        return length;
    for (std::uint64_t found = delimitersFrom(from);; found = blockDelimiters) {
        if (found != 0) [[likely]]
            return from + static_cast<unsigned>(std::countr_zero(found));
        // The next block follows from the last one and not from the token, so that the processor
        // can examine it while it still looks for the end of the token in front.
        from = (block + 1) * WORD_BITS;
        if (from >= length)
            return length;
        examine(block + 1);
    }
}

/// The index of the first character at or behind \a from that is no delimiter, or the length.
std::uint64_t Kel_StrTok::skipDelimiters(std::uint64_t from) noexcept {
    while (from < length) {
        const auto run = static_cast<unsigned>(std::countr_one(delimitersFrom(from)));
        from += run;
        // In this order: whether a run ends in its block is easily foreseen, its length is not.
        if (from % WORD_BITS != 0 || run == 0)
            return from;
    }
    return length;
}

/// The index of the first double quote at or behind \a from, or the length.
std::uint64_t Kel_StrTok::findQuote(std::uint64_t from) const noexcept {
    const char* const text = buffer.get();
    const void* const quote =
        std::memchr(text + from, '"', static_cast<std::size_t>(length - from));
    return quote == nullptr ? length
                            : static_cast<std::uint64_t>(static_cast<const char*>(quote) - text);
}

/// The token from \a first to in front of \a end, whose character is used up.
const char* Kel_StrTok::cut(std::uint64_t first, std::uint64_t end) noexcept {
    char* const text = buffer.get();
    text[end] = '\0';
    position = end + 1;
    return text + first;
}

/// The token whose opening quote stands at the current position.
const char* Kel_StrTok::cutQuoted() noexcept {
    const std::uint64_t opening = position;
    const std::uint64_t closing = findQuote(opening + 1);
    if (!keepQuotes)
        return cut(opening + 1, closing);
    return cut(opening, closing < length ? closing + 1 : length);
}

const char* Kel_StrTok::getNext() noexcept {
    if (position >= length) {
        if (pendingEmptyToken == 0)
            return nullptr;
        pendingEmptyToken = 0;
        return "";
    }
    if (delimiters != CSV_DELIM)
        position = skipDelimiters(position);
    if (handleQuotes && buffer.get()[position] == '"')
        return cutQuoted();
    return cut(position, findDelimiter(position));
}

} // namespace KelRT
