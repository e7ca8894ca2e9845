// SPDX-License-Identifier: MIT
//
// These functions parse decimal text. A reader gathers digits into chunks, the most significant
// first, notes minus signs and skips separators. The size of the number decides which engine
// (engines.h) converts the chunks. Gathering takes linear time, so the conversion dominates above
// some 500 bits.
#include "numbers/decimal/parse.h"

#include "common/u64.h"
#include "numbers/decimal/engines.h"
#include "numbers/decimal/limb_text.h"
#include "numbers/decimal/natural.h"
#include "numbers/decimal/radix_conversion.h"
#include "numbers/decimal/schoolbook.h"
#include "numbers/word_sink.h"

#include <algorithm>
#include <vector>

namespace KelRT::numbers {
namespace {

constexpr unsigned STEP = 8; // characters

struct Chunk {
    Limb value = 0;
    unsigned digits = 0;
};

// Splits a text into chunks of DIGITS digits. The last chunk has fewer digits, possibly none.
template <unsigned DIGITS>
class ChunkReader {
public:
    explicit ChunkReader(const std::string& text) : at(text.data()), end(at + text.size()) {}

    // Reads the next chunk. It has fewer than DIGITS digits if the text ends or a digit is refused;
    // further chunks are then empty.
    Chunk next() {
        Chunk chunk;
        if (left() >= DIGITS && readWhole(chunk))
            return chunk;
        while (at != end && chunk.digits < DIGITS) {
            const auto count =
                static_cast<unsigned>(std::min<std::size_t>({STEP, left(), DIGITS - chunk.digits}));
            const std::uint64_t characters = common::loadHighBytes(at, count, '0');
            if (areDecimalDigits(characters))
                append(chunk, valueOfEightDigits(characters), count);
            else
                readOneByOne(chunk, count);
            at += count;
        }
        return chunk;
    }

    // Returns the result for the part of the text that was read.
    [[nodiscard]] ParseResult result() const { return parsed; }

private:
    [[nodiscard]] std::size_t left() const { return static_cast<std::size_t>(end - at); }

    static void append(Chunk& chunk, Limb value, unsigned digits) {
        chunk.value = chunk.value * POWERS_OF_TEN[digits] + value;
        chunk.digits += digits;
    }

    // Reads a chunk without separators, or returns false if there are any. The last of the three
    // loads overlaps the second. Without this fast path, the benchmark row "parse decimal, 512 b"
    // takes 25 % longer.
    bool readWhole(Chunk& chunk) {
        static_assert(DIGITS > 2 * STEP && DIGITS < 3 * STEP);
        const std::uint64_t first = common::loadU64(at);
        const std::uint64_t second = common::loadU64(at + STEP);
        const std::uint64_t last = common::loadU64(at + DIGITS - STEP);
        if (!areDecimalDigits(first) || !areDecimalDigits(second) || !areDecimalDigits(last))
            return false;
        constexpr Limb TAIL_WEIGHT = POWERS_OF_TEN[DIGITS - 2 * STEP];
        const Limb high = valueOfEightDigits(first) * POWERS_OF_TEN[STEP];
        const Limb low = valueOfEightDigits(last) % TAIL_WEIGHT;
        chunk = {(high + valueOfEightDigits(second)) * TAIL_WEIGHT + low, DIGITS};
        at += DIGITS;
        return true;
    }

    void readOneByOne(Chunk& chunk, unsigned count) {
        for (unsigned i = 0; i < count; ++i) {
            switch (classify(at[i], 10)) {
            case CharacterClass::digit:
                append(chunk, static_cast<Limb>(at[i] - '0'), 1);
                break;
            case CharacterClass::refused:
                parsed = ParseResult::refused;
                end = at + count; // stops the reading
                return;
            case CharacterClass::minus:
                parsed = ParseResult::negative;
                break;
            case CharacterClass::skipped:
                break;
            }
        }
    }

    const char* at;
    const char* end;
    ParseResult parsed = ParseResult::positive;
};

ParseResult parseBySchoolbook(const std::string& text, std::span<std::uint16_t> words,
                              std::size_t limbCount) {
    constexpr unsigned CHUNK_DIGITS = READ_SCHOOLBOOK.chunkDigits;
    Natural value(limbCount);
    ChunkReader<CHUNK_DIGITS> reader(text);
    // Two chunks per pass halve the loads and stores of limbs. With one chunk, the benchmark row
    // "parse decimal, 4096 b" takes 70 % longer.
    Chunk low;
    do {
        const Chunk high = reader.next();
        low = reader.next();
        // The factor is at most 10^38 < 2^128, and the addend is below the factor. An empty chunk
        // multiplies by 1 and adds 0.
        static_assert(2 * CHUNK_DIGITS == 38);
        const Limb power = POWERS_OF_TEN[low.digits];
        schoolbook::multiplyAdd(value, DoubleLimb{POWERS_OF_TEN[high.digits]} * power,
                                DoubleLimb{high.value} * power + low.value);
    } while (low.digits == CHUNK_DIGITS);
    if (reader.result() != ParseResult::refused)
        value.store(words);
    return reader.result();
}

ParseResult parseByDivideAndConquer(const std::string& text, std::span<std::uint16_t> words) {
    constexpr unsigned CHUNK_DIGITS = READ_DIVIDE_AND_CONQUER.chunkDigits;
    ChunkReader<CHUNK_DIGITS> reader(text);
    std::vector<Limb> chunks;
    chunks.reserve(text.size() / CHUNK_DIGITS + 1);
    Chunk last;
    do {
        last = reader.next();
        chunks.push_back(last.value);
    } while (last.digits == CHUNK_DIGITS);
    if (reader.result() == ParseResult::refused)
        return ParseResult::refused;
    std::reverse(chunks.begin(), chunks.end());
    // If at least `bits` digits follow a chunk, it counts as 0 modulo 2^bits, because 10^n is
    // divisible by 2^n. Such chunks are dropped. The `+ 1` is for the lowest chunk, which may be
    // empty.
    const std::uint64_t bits = std::uint64_t{16} * words.size();
    const std::uint64_t counted = common::divideUp(bits, CHUNK_DIGITS) + 1;
    if (chunks.size() > counted)
        chunks.resize(static_cast<std::size_t>(counted));
    WordSink target(words);
    for (const Limb digit : divide_and_conquer::fromDecimalChunks(chunks, last.digits))
        target.put(digit, READ_RADIX_BITS);
    target.finish();
    return reader.result();
}

} // namespace

ParseResult parseDecimal(const std::string& text, std::span<std::uint16_t> words) {
    // A chunk adds at most one limb, so a short text needs few limbs even if the number is wide.
    const std::size_t limbCount =
        std::min(text.size() / READ_SCHOOLBOOK.chunkDigits + 1, limbsFor(words.size()));
    return limbCount < READ_DIVIDE_AND_CONQUER.minLimbs ? parseBySchoolbook(text, words, limbCount)
                                                        : parseByDivideAndConquer(text, words);
}

} // namespace KelRT::numbers
