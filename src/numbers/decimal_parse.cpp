// SPDX-License-Identifier: MIT
#include "numbers/number_parse.h"

#include "common/decimal.h"
#include "common/digits.h"
#include "numbers/limbs.h"
#include "numbers/radix.h"
#include "numbers/wide_decimal.h"
#include "numbers/word_sink.h"

#include <algorithm>
#include <array>
#include <vector>

namespace KelRT::numbers {
namespace {

constexpr unsigned STEP = 8; // characters

using PowersOfTen = std::array<Limb, common::CHUNK_DIGITS + 1>;
constexpr PowersOfTen POWERS_OF_TEN = [] {
    PowersOfTen powers{};
    Limb power = 1;
    for (Limb& each : powers) {
        each = power;
        power *= 10;
    }
    return powers;
}();

/// Gathers decimal digits into chunks of Sink::DIGITS, of which the last may be short, for a sink.
template <class Sink>
class DecimalReader {
public:
    /// \param zeros  how many leading zeros the first chunk gets
    explicit DecimalReader(Sink& target, unsigned zeros = 0) : sink(target), digits(zeros) {}

    bool read(const std::string& text, bool& negative) {
        for (std::size_t at = 0; at < text.size();) {
            if (digits == 0 && text.size() - at >= Sink::DIGITS && takeChunk(text.data() + at)) {
                at += Sink::DIGITS;
                continue;
            }
            const auto count = static_cast<unsigned>(
                std::min<std::size_t>({STEP, text.size() - at, Sink::DIGITS - digits}));
            if (!take(text.data() + at, count, negative))
                return false;
            at += count;
            if (digits == Sink::DIGITS)
                flush();
        }
        if (digits != 0)
            flush();
        return true;
    }

private:
    /// Takes a whole chunk, if all its characters are digits.
    bool takeChunk(const char* text) {
        static_assert(Sink::DIGITS > 2 * STEP && Sink::DIGITS < 3 * STEP);
        const std::uint64_t first = common::loadCharacters(text);
        const std::uint64_t second = common::loadCharacters(text + STEP);
        const std::uint64_t last = common::loadCharacters(text + Sink::DIGITS - STEP);
        if (!common::areDecimalDigits(first) || !common::areDecimalDigits(second) ||
            !common::areDecimalDigits(last))
            return false;
        constexpr Limb eightDigits = POWERS_OF_TEN[STEP];
        constexpr Limb rest = POWERS_OF_TEN[Sink::DIGITS - 2 * STEP]; // of the last step
        const Limb high = common::eightDecimalDigits(first) * eightDigits;
        const Limb low = common::eightDecimalDigits(last) % rest;
        sink.put((high + common::eightDecimalDigits(second)) * rest + low, Sink::DIGITS);
        return true;
    }

    bool take(const char* text, unsigned count, bool& negative) {
        const std::uint64_t step = common::loadLastCharacters(text, count, '0');
        if (!common::areDecimalDigits(step))
            return takeMixed(text, count, negative);
        append(common::eightDecimalDigits(step), count);
        return true;
    }

    bool takeMixed(const char* text, unsigned count, bool& negative) {
        for (unsigned i = 0; i < count; ++i) {
            const Kind kind = kindOf(text[i], 10);
            if (kind == Kind::refused)
                return false;
            if (kind == Kind::digit)
                append(common::hexValue(text[i]), 1);
            negative = negative || kind == Kind::sign;
        }
        return true;
    }

    void append(Limb value, unsigned count) {
        chunk = chunk * POWERS_OF_TEN[count] + value;
        digits += count;
    }

    void flush() {
        sink.put(chunk, digits);
        chunk = 0;
        digits = 0;
    }

    Sink& sink;
    Limb chunk = 0;
    unsigned digits;
};

/// Appends chunks to a number, two at a time.
class LimbSink {
public:
    static constexpr unsigned DIGITS = common::CHUNK_DIGITS;

    explicit LimbSink(Limbs& target) : limbs(target) {}

    void put(Limb chunk, unsigned digits) {
        if (!hasFirst && digits == DIGITS) {
            hasFirst = true;
            first = chunk;
            return;
        }
        const Limb factor = POWERS_OF_TEN[digits];
        if (hasFirst)
            limbs.multiplyAdd(DoubleLimb{common::CHUNK_BASE} * factor,
                              DoubleLimb{first} * factor + chunk);
        else
            limbs.multiplyAdd(factor, chunk);
        hasFirst = false;
    }

    void finish() {
        if (hasFirst)
            limbs.multiplyAdd(common::CHUNK_BASE, first);
    }

private:
    Limbs& limbs;
    Limb first = 0;
    bool hasFirst = false;
};

bool parseNarrowDecimal(const std::string& text, std::uint16_t* words, std::size_t wordCount,
                        std::size_t limbCount, bool& negative) {
    Limbs limbs(limbCount);
    LimbSink sink(limbs);
    if (!DecimalReader(sink).read(text, negative))
        return false;
    sink.finish();
    limbs.store(words, wordCount);
    return true;
}

/// Collects the chunks of a wide number, the highest one first.
struct ChunkSink {
    static constexpr unsigned DIGITS = READ_CHUNK_DIGITS;

    void put(Limb chunk, unsigned /*digits*/) { chunks.push_back(chunk); }

    std::vector<Limb> chunks;
};

std::size_t countDecimalDigits(const std::string& text) {
    const char* at = text.data();
    const char* const end = at + text.size();
    std::size_t count = 0;
    for (; end - at >= std::ptrdiff_t{STEP} && common::areDecimalDigits(common::loadCharacters(at));
         at += STEP)
        count += STEP;
    return count + static_cast<std::size_t>(std::count_if(at, end, common::isDecimalDigit));
}

bool parseWideDecimal(const std::string& text, std::uint16_t* words, std::size_t wordCount,
                      bool& negative) {
    const std::size_t digits = countDecimalDigits(text);
    ChunkSink sink;
    sink.chunks.reserve(digits / ChunkSink::DIGITS + 1);
    // The first chunk is the one that may be short, so it begins with zeros.
    const auto missing = ChunkSink::DIGITS - static_cast<unsigned>(digits % ChunkSink::DIGITS);
    if (!DecimalReader(sink, missing % ChunkSink::DIGITS).read(text, negative))
        return false;
    if (sink.chunks.empty())
        sink.chunks.push_back(0);
    std::reverse(sink.chunks.begin(), sink.chunks.end());
    WordSink target(words, wordCount);
    // The product may exceed std::size_t, the quotient does not.
    const std::uint64_t limbs = std::uint64_t{16} * wordCount / READ_LIMB_BITS + 1;
    for (const Limb limb : fromDecimalChunks(sink.chunks, static_cast<std::size_t>(limbs)))
        target.put(limb, READ_LIMB_BITS);
    target.finish();
    return true;
}

} // namespace

bool parseDecimal(const std::string& text, std::uint16_t* words, std::size_t wordCount,
                  bool& negative) {
    // No chunk of digits adds more than one limb, so a short text wants few whatever the width.
    const std::size_t wanted =
        std::min(text.size() / common::CHUNK_DIGITS + 1, limbsFor(wordCount));
    return wanted < WIDE_READ_LIMBS ? parseNarrowDecimal(text, words, wordCount, wanted, negative)
                                    : parseWideDecimal(text, words, wordCount, negative);
}

} // namespace KelRT::numbers
